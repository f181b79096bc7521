// memory_test.cpp - tracked blocks: their layout, their count, their faults, and the sweep.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/memory.h"

#include "SystemUtils/lifetime.h"
#include "SystemUtils/messages.h"
#include "support/alerts.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
// A size that no system has is to be refused by the allocator under test, not by the sanitizer.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
constexpr bool kSANITIZED = true;
#else
constexpr bool kSANITIZED = false;
#endif

namespace memdata::testing {
namespace {

constexpr u64 kMEGABYTE = u64{1} << 20;
constexpr u64 kGIGABYTE = u64{1} << 30;

MemoryBlockType* header_of(void* user) {
    return reinterpret_cast<MemoryBlockType*>(static_cast<char*>(user) - sizeof(MemoryBlockType));
}

std::vector<void*> listed_blocks() {
    std::vector<void*> blocks;
    for (MemoryBlockType* block = gMemoryBlockList.head; block != nullptr; block = block->next)
        blocks.push_back(block->user);
    return blocks;
}

// As alerts print a pointer: its low 32 bits.
std::string low_bits(const void* pointer) {
    std::array<char, 9> text{};
    std::snprintf(text.data(), text.size(), "%08X", static_cast<u32>(reinterpret_cast<std::uintptr_t>(pointer)));
    return text.data();
}

class Memory : public ::testing::Test {
protected:
    SystemResources system_;
    u64 usageAtStart_ = getCurrentMemoryUsage();
};

TEST_F(Memory, ABlockIsZeroFilled) {
    auto* bytes = static_cast<u8*>(getMemory("bytes", 1000));
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(bytes[i], 0) << i;
    EXPECT_EQ(releaseMemory(bytes), 0);
}

TEST_F(Memory, TheHeaderIsSeventyTwoBytesAheadOfTheCallersBytes) {
    EXPECT_EQ(sizeof(MemoryBlockType), 72u);
    void* user = getMemory("bytes", 1);
    EXPECT_EQ(header_of(user)->user, user);
    releaseMemory(user);
}

TEST_F(Memory, ABlockTellsWhereAndWhatForItWasMade) {
    const u64 usage = getCurrentMemoryUsage();
    void* user = _getMemory("some/file.cpp", 321, "a 'LaneType' record", 40);
    const MemoryBlockType* block = header_of(user);
    EXPECT_STREQ(block->sourceFile, "some/file.cpp");
    EXPECT_STREQ(block->description, "a 'LaneType' record");
    EXPECT_EQ(block->line, 321u);
    EXPECT_EQ(block->size, 40u);
    EXPECT_EQ(block->usageAtAllocation, usage);
    EXPECT_EQ(block->autoRelease, 0);
    EXPECT_EQ(block->base, block->sourceFile);
    EXPECT_EQ(std::memcmp(&block->magic, "YmEm", 4), 0);
    releaseMemory(user);
}

// The rule leaves no room for the last terminator when the lengths add up to 8n + 7: the texts hold nevertheless.
TEST_F(Memory, TheHeaderStandsAtTheRoundedOffsetForAllTextLengths) {
    for (size_t fileLength = 0; fileLength < 24; ++fileLength)
        for (size_t textLength = 0; textLength < 24; ++textLength) {
            const std::string file(fileLength, 'f');
            const std::string text(textLength, 't');
            void* user = _getMemory(file.c_str(), 1, text.c_str(), 24);
            void* later = _getMemory(file.c_str(), 1, text.c_str(), 24); // writes the links of the first
            const MemoryBlockType* block = header_of(user);
            const size_t offset = (fileLength + textLength + 8) / 8 * 8;
            ASSERT_EQ(static_cast<size_t>(reinterpret_cast<const char*>(block) - block->base), offset);
            ASSERT_EQ(block->sourceFile, file);
            ASSERT_EQ(block->description, text);
            ASSERT_EQ(block->next, header_of(later));
            ASSERT_EQ(reinterpret_cast<std::uintptr_t>(user) % 16, 0u);
            std::memset(user, 0xFF, 24);
            ASSERT_EQ(releaseMemory(user), 0);
            ASSERT_EQ(releaseMemory(later), 0);
        }
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
}

TEST_F(Memory, MissingTextsCountAsEmpty) {
    void* user = _getMemory(nullptr, 0, nullptr, 8);
    EXPECT_STREQ(header_of(user)->sourceFile, "");
    EXPECT_STREQ(header_of(user)->description, "");
    EXPECT_EQ(releaseMemory(user), 0);
}

TEST_F(Memory, BlocksWithoutBytesAreDistinct) {
    void* first = getMemory("nothing", 0);
    void* second = getMemory("nothing", 0);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(releaseMemory(first), 0);
    EXPECT_EQ(releaseMemory(second), 0);
}

TEST_F(Memory, UsageIsTheSumOfTheLiveSizes) {
    void* first = getMemory("first", 100);
    void* second = getMemory("second", 30);
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_ + 130);
    releaseMemory(first);
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_ + 30);
    releaseMemory(second);
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
}

TEST_F(Memory, TheMaximumKeepsTheHighestUsage) {
    void* first = getMemory("first", 5000);
    const u64 highest = getCurrentMemoryUsage();
    releaseMemory(first);
    void* second = getMemory("second", 10);
    EXPECT_EQ(getMaxMemoryUsage(), highest);
    releaseMemory(second);
}

TEST_F(Memory, BlocksAreListedOldestFirst) {
    const std::vector<void*> before = listed_blocks();
    std::vector<void*> expected = before;
    for (int i = 0; i < 3; ++i) expected.push_back(getMemory("block", 8));
    EXPECT_EQ(listed_blocks(), expected);
    EXPECT_EQ(gMemoryBlockList.tail, header_of(expected.back()));
    for (size_t i = before.size(); i < expected.size(); ++i) releaseMemory(expected[i]);
    EXPECT_EQ(listed_blocks(), before);
}

TEST_F(Memory, ABlockOfFiveGigabytesIsAddedInFullAndSubtractedCut) {
    if (kSANITIZED) GTEST_SKIP() << "the sanitizer's own record of a block this size fills real memory";
    const u64 size = 5 * kGIGABYTE + 24;
    void* user = getMemory("sparse", size);
    ASSERT_NE(user, nullptr);
    EXPECT_EQ(header_of(user)->size, kGIGABYTE + 24);
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_ + size);
    void* later = getMemory("later", 1);
    EXPECT_EQ(header_of(later)->usageAtAllocation, static_cast<u32>(usageAtStart_ + size));
    releaseMemory(later);
    releaseMemory(user);
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_ + 4 * kGIGABYTE);
}

TEST_F(Memory, ALargeSparseBlockIsNeverMadeResident) {
    if (kSANITIZED) GTEST_SKIP() << "the sanitizer's own record of a block this size fills real memory";
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    void* user = getMemory("sparse", kGIGABYTE);
    ASSERT_NE(user, nullptr);
    releaseMemory(user);
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 4096) << "kilobytes";
}

// The system hands the same small area out again, so that the bytes of the last owner can be seen.
TEST_F(Memory, ReleasedBytesAreOverwritten) {
    if (kSANITIZED) GTEST_SKIP() << "the sanitizer does not hand a released area out again";
    constexpr size_t kSIZE = 200;
    auto* user = static_cast<u8*>(_getMemory("f", 1, "t", kSIZE));
    const size_t offset = static_cast<size_t>(reinterpret_cast<char*>(user) - header_of(user)->base);
    const char* system = header_of(user)->base - reinterpret_cast<std::uintptr_t>(header_of(user)->base) % 16;
    const size_t shift = static_cast<size_t>(header_of(user)->base - system);
    const auto place = reinterpret_cast<std::uintptr_t>(system);
    std::memset(user, 0x11, kSIZE);
    releaseMemory(user);
    auto* again = static_cast<volatile u8*>(std::malloc(shift + offset + kSIZE));
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(again), place);
    for (size_t i = 0; i < kSIZE; ++i) ASSERT_EQ(again[shift + offset + i], 0xF0) << i;
    std::free(const_cast<u8*>(again));
}

TEST_F(Memory, ReleaseOfNothingIsReportedWithTheCallersPlace) {
    CapturedAlerts alerts;
    EXPECT_EQ(_releaseMemory("caller.cpp", 77, nullptr), 3);
    EXPECT_EQ(alerts.text(),
        "\nFATAL:Lanefill:42 - Release of NIL pointer.\n    Source file \"caller.cpp\", line number 77.\n\n");
}

TEST_F(Memory, ASecondReleaseIsReportedAndLeavesTheUsage) {
    void* kept = getMemory("kept", 8);
    void* user = getMemory("released", 1000);
    EXPECT_EQ(releaseMemory(user), 0);
    CapturedAlerts alerts;
    EXPECT_EQ(_releaseMemory("caller.cpp", 78, user), 3);
    EXPECT_EQ(alerts.text(), "\nFATAL:Lanefill:43 - Release of unknown memory pointer, 0x" + low_bits(user) +
                                 ".\n    Source file \"caller.cpp\", line number 78.\n\n");
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_ + 8);
    releaseMemory(kept);
}

TEST_F(Memory, APointerThatIsNoBlockIsUnknown) {
    void* user = getMemory("block", 100);
    int local = 0;
    std::array<void*, 4> strangers = {&local, static_cast<char*>(user) + 1, static_cast<char*>(user) + 16,
        reinterpret_cast<void*>(std::uintptr_t{1})};
    CapturedAlerts alerts;
    for (void* stranger : strangers) {
        EXPECT_EQ(releaseMemory(stranger), 3);
        EXPECT_NE(alerts.take().find("FATAL:Lanefill:43 - Release of unknown memory pointer"), std::string::npos);
        EXPECT_EQ(autoReleaseMemory(stranger), 3);
        EXPECT_NE(alerts.take().find("FATAL:Lanefill:43 - Release of unknown memory pointer"), std::string::npos);
    }
    EXPECT_EQ(releaseMemory(user), 0);
}

TEST_F(Memory, ABlockWithoutItsMagicIsUnknown) {
    void* user = getMemory("block", 100);
    const u32 magic = std::exchange(header_of(user)->magic, 0);
    CapturedAlerts alerts;
    EXPECT_EQ(releaseMemory(user), 3);
    EXPECT_NE(alerts.text().find("FATAL:Lanefill:43"), std::string::npos);
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_ + 100);
    header_of(user)->magic = magic;
    EXPECT_EQ(releaseMemory(user), 0);
}

TEST_F(Memory, AutoReleaseOfNothingIsReported) {
    CapturedAlerts alerts;
    EXPECT_EQ(_autoReleaseMemory("caller.cpp", 5, nullptr), 3);
    EXPECT_EQ(alerts.text(),
        "\nFATAL:Lanefill:42 - Release of NIL pointer.\n    Source file \"caller.cpp\", line number 5.\n\n");
}

TEST_F(Memory, AutoReleaseMarksTheBlock) {
    void* user = getMemory("block", 8);
    EXPECT_EQ(autoReleaseMemory(user), 0);
    EXPECT_EQ(header_of(user)->autoRelease, 1);
    EXPECT_EQ(releaseMemory(user), 0);
}

TEST_F(Memory, ASizeThatNoSystemHasIsOutOfMemory) {
    constexpr std::array<unsigned long, 4> kSIZES = {ULONG_MAX, ULONG_MAX - 71, ULONG_MAX / 2 + 1, ULONG_MAX / 2 - 8};
    for (unsigned long size : kSIZES) {
        CapturedAlerts alerts;
        EXPECT_EQ(_getMemory("caller.cpp", 9, "huge", size), nullptr);
        EXPECT_NE(alerts.text().find("FATAL:Lanefill:44 - Out of memory allocating 'getMemory' object of "),
            std::string::npos);
        EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
    }
}

TEST_F(Memory, OutOfMemoryTellsTheSizeAndTheUsage) {
    void* user = getMemory("block", 1000);
    const std::string usage = std::to_string(getCurrentMemoryUsage());
    failTrackedAllocation(1);
    CapturedAlerts alerts;
    EXPECT_EQ(_getMemory("caller.cpp", 9, "block", 4321), nullptr);
    EXPECT_EQ(alerts.text(), "\nFATAL:Lanefill:44 - Out of memory allocating 'getMemory' object of 4321 bytes.\n"
                             "    Total memory already in use is " +
                                 usage +
                                 " bytes.\n"
                                 "    Source file \"caller.cpp\", line number 9.\n\n");
    releaseMemory(user);
}

TEST_F(Memory, TheFaultStrikesTheNamedAllocationOnly) {
    const u64 count = trackedAllocationCount();
    failTrackedAllocation(2);
    CapturedAlerts alerts(0);
    void* first = getMemory("first", 8);
    void* second = getMemory("second", 8);
    void* third = getMemory("third", 8);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(third, nullptr);
    EXPECT_EQ(trackedAllocationCount(), count + 3);
    releaseMemory(first);
    releaseMemory(third);
}

TEST_F(Memory, TheSweepReleasesMarkedAndUnmarkedBlocksInSilence) {
    CapturedAlerts alerts(~0u);
    const size_t marked = listed_blocks().size(); // start-up marks all that it makes
    getMemory("lost", 100);
    getMemory("lost too", 100);
    autoReleaseMemory(getMemory("meant for the sweep", 8));
    EXPECT_EQ(listed_blocks().size(), marked + 3);
    CheckMemoryLeaks();
    EXPECT_EQ(alerts.text(), "");
    EXPECT_EQ(listed_blocks().size(), 0u);
    EXPECT_EQ(gMemoryBlockList.tail, nullptr);
    EXPECT_EQ(getCurrentMemoryUsage(), 0u);
    EXPECT_EQ(leakedBlockCount(), 2u);
}

TEST_F(Memory, TheSweepStopsAtAHeaderThatWasWrittenOver) {
    CheckMemoryLeaks();
    void* good = getMemory("good", 8);
    void* damaged = getMemory("damaged", 8);
    const u32 magic = std::exchange(header_of(damaged)->magic, 0);
    CheckMemoryLeaks();
    EXPECT_EQ(gMemoryBlockList.head, nullptr);
    EXPECT_EQ(leakedBlockCount(), 1u);
    CapturedAlerts alerts(0);
    EXPECT_EQ(releaseMemory(good), 3);
    header_of(damaged)->magic = magic;
    EXPECT_EQ(releaseMemory(damaged), 0);
}

TEST_F(Memory, BlocksComeAndGoInAnyOrder) {
    std::mt19937 random(1);
    std::vector<void*> live;
    u64 bytes = 0;
    for (int step = 0; step < 20000; ++step) {
        if (live.empty() || random() % 5 < 3) {
            const size_t size = random() % 100;
            live.push_back(_getMemory("f.cpp", 1, std::string(random() % 20, 'd').c_str(), size));
            bytes += size;
        } else {
            std::swap(live[random() % live.size()], live.back());
            bytes -= header_of(live.back())->size;
            ASSERT_EQ(releaseMemory(live.back()), 0);
            live.pop_back();
        }
        ASSERT_EQ(getCurrentMemoryUsage(), usageAtStart_ + bytes);
    }
    for (void* user : live) ASSERT_EQ(releaseMemory(user), 0);
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
}

TEST(MemoryLifetime, ABlockMadeBeforeTheStartIsNotSweptAndCanBeReleased) {
    void* early = getMemory("early", 100);
    {
        SystemResources system;
        for (void* user : listed_blocks()) EXPECT_NE(user, early);
    }
    EXPECT_EQ(leakedBlockCount(), 0u);
    EXPECT_EQ(getCurrentMemoryUsage(), 100u);
    EXPECT_EQ(releaseMemory(early), 0);
    EXPECT_EQ(getCurrentMemoryUsage(), 0u);
}

// Lists of blocks that are no allocations, linked by hand.
std::string names(const MemoryBlockListType& list, const std::array<MemoryBlockType, 3>& blocks) {
    std::string text;
    for (const MemoryBlockType* block = list.head; block != nullptr; block = block->next) {
        text += static_cast<char>('a' + (block - blocks.data()));
        if (block->next == nullptr && list.tail != block) text += " (lost tail)";
        if (block->next != nullptr && block->next->prev != block) text += " (bad link)";
    }
    if (list.head == nullptr && list.tail != nullptr) text += " (lost tail)";
    return text;
}

TEST(MemoryBlockList, AnEmptyListTakesTheBlockAsHeadAndTail) {
    std::array<MemoryBlockType, 3> blocks{};
    MemoryBlockListType list{};
    QueueMemoryBlock(&list, &blocks[0]);
    EXPECT_EQ(names(list, blocks), "a");
}

TEST(MemoryBlockList, ABlockIsQueuedAtTheTrueEndBehindALaggingTail) {
    std::array<MemoryBlockType, 3> blocks{};
    MemoryBlockListType list{};
    QueueMemoryBlock(&list, &blocks[0]);
    QueueMemoryBlock(&list, &blocks[1]);
    list.tail = &blocks[0];
    QueueMemoryBlock(&list, &blocks[2]);
    EXPECT_EQ(names(list, blocks), "abc");
}

TEST(MemoryBlockList, ABlockIsQueuedFromTheHeadWhenThereIsNoTail) {
    std::array<MemoryBlockType, 3> blocks{};
    MemoryBlockListType list{};
    QueueMemoryBlock(&list, &blocks[0]);
    QueueMemoryBlock(&list, &blocks[1]);
    list.tail = nullptr;
    QueueMemoryBlock(&list, &blocks[2]);
    EXPECT_EQ(names(list, blocks), "abc");
}

TEST(MemoryBlockList, DelistingRepairsTheListAndClearsTheBlocksLinks) {
    constexpr std::array<const char*, 3> kREST = {"bc", "ac", "ab"};
    for (size_t taken = 0; taken < 3; ++taken) {
        std::array<MemoryBlockType, 3> blocks{};
        MemoryBlockListType list{};
        for (MemoryBlockType& block : blocks) QueueMemoryBlock(&list, &block);
        DelistMemoryBlock(&list, &blocks[taken]);
        EXPECT_EQ(names(list, blocks), kREST[taken]);
        EXPECT_EQ(blocks[taken].prev, nullptr);
        EXPECT_EQ(blocks[taken].next, nullptr);
    }
}

TEST(MemoryBlockList, DelistingTheOnlyBlockEmptiesTheList) {
    std::array<MemoryBlockType, 3> blocks{};
    MemoryBlockListType list{};
    QueueMemoryBlock(&list, &blocks[1]);
    DelistMemoryBlock(&list, &blocks[1]);
    EXPECT_EQ(names(list, blocks), "");
}

struct RecordType {
    int value;
};

int gDeletions = 0;

void delete_record(RecordType* record) {
    ++gDeletions;
    releaseMemory(record);
}

int delete_record_at(RecordType** record) {
    delete_record(*record);
    *record = nullptr;
    return 0;
}

class TrackedOwner : public Memory {
protected:
    TrackedOwner() { gDeletions = 0; }
};

TEST_F(TrackedOwner, DeletesItsRecordAtTheEndOfTheScope) {
    { Tracked<RecordType, delete_record> owner(NEW_RECORD(RecordType)); }
    EXPECT_EQ(gDeletions, 1);
    EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
}

TEST_F(TrackedOwner, TakesADeleteOperationOfAPointerToThePointer) {
    { Tracked<RecordType, delete_record_at> owner(NEW_RECORD(RecordType)); }
    EXPECT_EQ(gDeletions, 1);
}

TEST_F(TrackedOwner, HandsItsRecordOn) {
    RecordType* record = nullptr;
    {
        Tracked<RecordType, delete_record> owner(NEW_RECORD(RecordType));
        record = owner.release();
        EXPECT_TRUE(owner == nullptr);
    }
    EXPECT_EQ(gDeletions, 0);
    releaseMemory(record);
}

TEST_F(TrackedOwner, MovesItsRecordAndDeletesTheOneItHad) {
    Tracked<RecordType, delete_record> first(NEW_RECORD(RecordType));
    Tracked<RecordType, delete_record> second(NEW_RECORD(RecordType));
    RecordType* record = first.get();
    second = std::move(first);
    EXPECT_EQ(gDeletions, 1);
    EXPECT_EQ(second.get(), record);
}

TEST_F(TrackedOwner, DeletesAnOldRecordBeforeANewOneIsWritten) {
    Tracked<RecordType, delete_record> owner(NEW_RECORD(RecordType));
    *owner.out() = NEW_RECORD(RecordType);
    EXPECT_EQ(gDeletions, 1);
    EXPECT_TRUE(owner);
}

} // namespace
} // namespace memdata::testing

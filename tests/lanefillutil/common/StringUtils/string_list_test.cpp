// string_list_test.cpp - string lists: null-terminated, of any length, owners of their strings.
// SPDX-License-Identifier: Apache-2.0
#include "string_test.h"

#include "support/allocation_faults.h"

#include "platform/HEXAll.h"

#include <climits>
#include <gmock/gmock.h>
#include <initializer_list>

namespace memdata::testing {
namespace {

class StringList : public StringTest {};

using OwnedList = Tracked<char* [256], StrListDelete>;

OwnedList list_of(std::initializer_list<const char*> texts) {
    StrList list = nullptr;
    for (const char* text : texts) EXPECT_EQ(StrListExtend(&list, managed(text)), 0);
    return OwnedList(list);
}

TEST_F(StringList, CountOfANullListIsZero) {
    EXPECT_EQ(StrListCount(nullptr), 0u);
}

TEST_F(StringList, ANullListReadsAsEmpty) {
    EXPECT_EQ(StrListGet(nullptr, 0), nullptr);
    EXPECT_EQ(StrListFind(nullptr, "a"), nullptr);
    EXPECT_EQ(StrListLookup(nullptr, "a"), 0u);
    EXPECT_EQ(StrListDelete(nullptr), 0);
}

TEST_F(StringList, ANewListHasOnlyNullEntries) {
    const OwnedList list(StrListNew(3));
    EXPECT_EQ(StrListCount(list.get()), 0u);
    for (unsigned long i = 0; i < 5; ++i) EXPECT_EQ(StrListGet(list.get(), i), nullptr);
}

TEST_F(StringList, ANewListIsOneTerminatorLongerAndLabelled) {
    const OwnedList list(StrListNew(3));
    const auto* block = reinterpret_cast<const MemoryBlockType*>(list.get()) - 1;
    EXPECT_EQ(block->size, 32u);
    EXPECT_STREQ(block->description, "CharPtrArrayType");
}

TEST_F(StringList, EntriesAreSetAndRead) {
    const OwnedList list(StrListNew(2));
    StrListSet(list.get(), 1, managed("b"));
    StrListSet(list.get(), 0, managed("a"));
    EXPECT_STREQ(StrListGet(list.get(), 0), "a");
    EXPECT_STREQ(StrListGet(list.get(), 1), "b");
    EXPECT_EQ(StrListCount(list.get()), 2u);
}

TEST_F(StringList, AnEntryBehindTheRoomOfTheListIsReported) {
    const OwnedList list(StrListNew(2));
    const OwnedString s(managed("c"));
    ::testing::internal::CaptureStdout();
    StrListSet(list.get(), 2, s.get());
    StrListSet(nullptr, 0, s.get());
    std::fflush(stdout);
    const std::string said = ::testing::internal::GetCapturedStdout();
    EXPECT_THAT(said, ::testing::HasSubstr("String list of 2 entries has no entry 2."));
    EXPECT_THAT(said, ::testing::HasSubstr("String list of 0 entries has no entry 0."));
}

TEST_F(StringList, TheTerminatorCanNotBeOverwritten) {
    const QuietAlerts quiet;
    const OwnedList list(StrListNew(2));
    const OwnedString s(managed("c"));
    StrListSet(list.get(), 2, s.get());
    StrListSet(list.get(), ULONG_MAX, s.get());
    EXPECT_EQ(StrListCount(list.get()), 0u);
    EXPECT_EQ(StrListGet(list.get(), 2), nullptr);
    EXPECT_EQ(StrListGet(list.get(), ULONG_MAX), nullptr);
}

TEST_F(StringList, ExtendingANullListMakesAListOfOne) {
    const OwnedList list = list_of({"only"});
    EXPECT_EQ(StrListCount(list.get()), 1u);
    EXPECT_STREQ(StrListGet(list.get(), 0), "only");
}

TEST_F(StringList, ExtendingKeepsTheOrder) {
    const OwnedList list = list_of({"a", "b", "c"});
    EXPECT_EQ(StrListCount(list.get()), 3u);
    EXPECT_STREQ(StrListGet(list.get(), 0), "a");
    EXPECT_STREQ(StrListGet(list.get(), 2), "c");
    EXPECT_EQ(StrListGet(list.get(), 3), nullptr);
}

TEST_F(StringList, ExtendingKeepsTheStringsThemselves) {
    StrList list = nullptr;
    char* s = managed("a");
    StrListExtend(&list, s);
    StrListExtend(&list, managed("b"));
    EXPECT_EQ(StrListGet(list, 0), s);
    StrListDelete(list);
}

TEST_F(StringList, ExtendingWithNothingAppendsNothing) {
    StrList list = nullptr;
    EXPECT_EQ(StrListExtend(&list, nullptr), 3);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(StrListExtend(nullptr, managed("a")), 3);
}

TEST_F(StringList, ExtendingAListWithAGapAppendsAtTheGap) {
    StrList list = StrListNew(3);
    StrListSet(list, 0, managed("a"));
    StrListSet(list, 2, managed("behind the gap"));
    EXPECT_EQ(StrListExtend(&list, managed("b")), 0);
    EXPECT_EQ(StrListCount(list), 2u);
    EXPECT_STREQ(StrListGet(list, 1), "b");
    StrListDelete(list);
}

TEST_F(StringList, ListsAreLongerThanTheBoundOfTheirType) {
    StrList list = nullptr;
    for (int i = 0; i < 600; ++i) ASSERT_EQ(StrListExtend(&list, NumToStr(i, 10, nullptr)), 0);
    const OwnedList owner(list);
    EXPECT_EQ(StrListCount(list), 600u);
    EXPECT_STREQ(StrListGet(list, 599), "599");
    EXPECT_EQ(StrListLookup(list, "300"), 300u);
    StrList wide = StrListNew(1000);
    StrListSet(wide, 0, managed("first"));
    StrListSet(wide, 999, managed("last"));
    EXPECT_STREQ(StrListGet(wide, 999), "last");
    StrListDelete(wide);
}

TEST_F(StringList, FindGivesTheEqualStringOrNull) {
    const OwnedList list = list_of({"a", "b", "b"});
    EXPECT_EQ(StrListFind(list.get(), "b"), StrListGet(list.get(), 1));
    EXPECT_EQ(StrListFind(list.get(), "B"), nullptr);
    EXPECT_EQ(StrListFind(list.get(), nullptr), nullptr);
}

TEST_F(StringList, LookupGivesTheIndexOrTheCount) {
    const OwnedList list = list_of({"a", "b"});
    EXPECT_EQ(StrListLookup(list.get(), "a"), 0u);
    EXPECT_EQ(StrListLookup(list.get(), "b"), 1u);
    EXPECT_EQ(StrListLookup(list.get(), "c"), 2u);
    EXPECT_EQ(StrListLookup(list.get(), nullptr), 2u);
}

TEST_F(StringList, DeletingReleasesEveryStringAndReturnsZero) {
    EXPECT_EQ(StrListDelete(list_of({"a", "b", "c"}).release()), 0);
}

TEST_F(StringList, DeletingReleasesStringsBehindAGapToo) {
    StrList list = StrListNew(3);
    StrListSet(list, 2, managed("behind the gap"));
    EXPECT_EQ(StrListDelete(list), 0);
}

std::string message_of(const std::function<void()>& run) {
    try {
        run();
    } catch (const HEXInternalException& exception) {
        return exception.getMessage();
    }
    return "nothing was thrown";
}

TEST_F(StringList, ExhaustedMemoryIsThrown) {
    const QuietAlerts quiet;
    failTrackedAllocation(1);
    EXPECT_EQ(message_of([] { StrListNew(3); }), "The application has run out of memory");
    EXPECT_EQ(message_of([] { StrListNew(ULONG_MAX); }), "The application has run out of memory");
    EXPECT_EQ(message_of([] { StrListNew(ULONG_MAX / 8); }), "The application has run out of memory");
}

TEST_F(StringList, AListLongerThanItsBlockCanTellIsNotMade) {
    const QuietAlerts quiet;
    const unsigned long n = (1ul << 29) - 1; // with its terminator 2^32 bytes, which the header keeps as 0
    EXPECT_EQ(message_of([=] { StrListNew(n); }), "The application has run out of memory");
}

TEST_F(StringList, AFailedExtensionLeavesTheListAndReleasesTheString) {
    const QuietAlerts quiet;
    OwnedList list = list_of({"a"});
    StrList extended = list.get();
    char* s = managed("b");
    failTrackedAllocation(1);
    EXPECT_EQ(message_of([&] { StrListExtend(&extended, s); }), "The application has run out of memory");
    EXPECT_EQ(extended, list.get());
    EXPECT_EQ(StrListCount(list.get()), 1u);
}

TEST_F(StringList, EveryFailedAllocationLeavesNothingBehind) {
    const FaultSweep sweep = sweepAllocationFaults([] {
        OwnedList list;
        for (const char* text : {"a", "b", "c"}) {
            StrList extended = list.release();
            char* s = managed(text);
            int status = s == nullptr ? 7 : 0;
            try {
                if (status == 0) status = StrListExtend(&extended, s);
            } catch (const HEXAll&) {
                status = 7;
            }
            list.reset(extended);
            if (status != 0) return status;
        }
        return 0;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.allocationCount, 6u);
}

} // namespace
} // namespace memdata::testing

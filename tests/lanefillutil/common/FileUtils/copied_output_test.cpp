// copied_output_test.cpp - outputs that begin as the copy of an input.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/copied_output.h"

#include "FileUtils/state.h"
#include "file_test.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <optional>
#include <sched.h>
#include <sys/resource.h>

using namespace memdata;
using namespace memdata::testing;

namespace {

class CopiedOutputs : public FileTest {
protected:
    CopiedOutputs() {
        gFileState.smallestCopy = 1 << 20;
        gFileState.copiesOnOneProcessor = true;
        for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * i / 100 + i);
        inputName = folder.write("in.bit", bytes);
    }

    // Lets the copy be made, for an output of that name.
    void beginCopy(const char* outputName = "out.bit") {
        inputSpec = CreateFileSpec(inputName.c_str());
        outputSpec = CreateFileSpec(folder.file(outputName).c_str());
        copy.emplace(inputSpec, outputSpec);
    }
    // Opens both files; whether the output begins as the copy.
    bool openBoth(const char* outputName = "out.bit") {
        input = open(inputName, kBINARY_READ);
        output = open(folder.file(outputName), kBINARY_WRITE);
        return beginAsCopy(output, input);
    }
    // Writes on from where the input holds the next bytes.
    void passOn(u64 count) {
        while (count > 0) {
            const char* at = nullptr;
            u64 taken = 0;
            ASSERT_EQ(inputPiece(input, 1, count, &at, &taken), 0);
            ASSERT_EQ(outputBlock(output, at, taken), 0);
            count -= taken;
        }
    }
    void skip(u64 count) {
        std::string skipped(count, '\0');
        ASSERT_EQ(inputBlock(input, skipped.data(), count), 0);
    }
    void put(std::string_view text) { ASSERT_EQ(outputBlock(output, text.data(), text.size()), 0); }
    std::string closed() {
        EXPECT_EQ(folder.listing(), "in.bit\n"); // nothing to be seen until now
        EXPECT_EQ(checkInputUnchanged(input), 0);
        EXPECT_EQ(Close_File(&output), 0);
        return readFile(folder.file("out.bit"));
    }
    void TearDown() override {
        abandonFile(&output);
        abandonFile(&input);
        copy.reset();
        DeleteFileSpec(&inputSpec);
        DeleteFileSpec(&outputSpec);
        FileTest::TearDown();
    }

    std::string bytes = std::string(3'000'001, '\0');
    std::string inputName;
    fileSpecType* inputSpec = nullptr;
    fileSpecType* outputSpec = nullptr;
    std::optional<CopiedOutput> copy;
    fileIODescriptor* input = nullptr;
    fileIODescriptor* output = nullptr;
};

TEST_F(CopiedOutputs, HoldWhatIsWrittenAmongBytesThatStay) {
    beginCopy();
    ASSERT_TRUE(openBoth());
    passOn(1000);
    EXPECT_EQ(GetFilePosition(output), 1000u);
    put("four");
    skip(4);
    passOn(1'500'000);
    put(std::string(300'000, 'x'));
    skip(300'000);
    put("y");
    skip(1);
    passOn(bytes.size() - 1'801'005);
    EXPECT_EQ(GetFilePosition(output), bytes.size());
    std::string expected = bytes;
    expected.replace(1000, 4, "four").replace(1'501'004, 300'000, 300'000, 'x').replace(1'801'004, 1, "y");
    EXPECT_TRUE(closed() == expected);
}

TEST_F(CopiedOutputs, EndWhereWritingEnds) {
    beginCopy();
    ASSERT_TRUE(openBoth());
    passOn(2'000'000);
    EXPECT_TRUE(closed() == bytes.substr(0, 2'000'000));
}

TEST_F(CopiedOutputs, HoldBytesThatMoveToAnotherPlace) {
    for (const bool grows : {true, false}) {
        beginCopy();
        ASSERT_TRUE(openBoth());
        if (grows)
            put("more");
        else
            skip(3);
        passOn(bytes.size() - (grows ? 0 : 3));
        EXPECT_TRUE(closed() == (grows ? "more" + bytes : bytes.substr(3)));
        abandonFile(&input);
        copy.reset();
        DeleteFileSpec(&inputSpec);
        DeleteFileSpec(&outputSpec);
        std::filesystem::remove(folder.file("out.bit"));
    }
}

TEST_F(CopiedOutputs, LeaveNothingBehindWhenTheyAreGivenUp) {
    beginCopy();
    ASSERT_TRUE(openBoth());
    passOn(1'000'000);
    abandonFile(&output);
    EXPECT_EQ(folder.listing(), "in.bit\n");
}

TEST_F(CopiedOutputs, LeaveNothingBehindWhenNobodyTakesTheCopy) {
    beginCopy();
    copy.reset();
    EXPECT_EQ(folder.listing(), "in.bit\n");
    EXPECT_FALSE(openBoth());
}

TEST_F(CopiedOutputs, TakeOverThePermissionsOfAnOldFile) {
    namespace fs = std::filesystem;
    const std::string old = folder.write("out.bit", "old");
    fs::permissions(old, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    beginCopy();
    ASSERT_TRUE(openBoth());
    put("new");
    EXPECT_EQ(readFile(old), "old");
    EXPECT_EQ(Close_File(&output), 0);
    EXPECT_EQ(readFile(old), "new");
    EXPECT_EQ(fs::status(old).permissions(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}

TEST_F(CopiedOutputs, AreMadeOfLargeInputsOnly) {
    gFileState.smallestCopy = bytes.size() + 1;
    beginCopy();
    EXPECT_EQ(gFileState.copiedOutput, nullptr);
    EXPECT_FALSE(openBoth());
    EXPECT_EQ(FileStateType().smallestCopy, 8u << 20);
}

TEST_F(CopiedOutputs, NeedASecondProcessor) {
    gFileState.copiesOnOneProcessor = false;
    cpu_set_t all;
    ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
    cpu_set_t one;
    CPU_ZERO(&one);
    size_t first = 0;
    while (!CPU_ISSET(first, &all)) ++first;
    CPU_SET(first, &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    beginCopy();
    sched_setaffinity(0, sizeof all, &all);
    EXPECT_EQ(gFileState.copiedOutput, nullptr);
    EXPECT_FALSE(openBoth());
}

TEST_F(CopiedOutputs, NeedNamelessFiles) {
    gFileState.temporaryKind = TemporaryKind::kNAMED;
    beginCopy();
    EXPECT_EQ(gFileState.copiedOutput, nullptr);
    EXPECT_FALSE(openBoth());
}

TEST_F(CopiedOutputs, AreCopiedOnceMoreWhereNamelessFilesCannotBeLinked) {
    gFileState.temporaryKind = TemporaryKind::kNAMELESS_COPIED;
    beginCopy();
    ASSERT_TRUE(openBoth());
    put("head");
    skip(4);
    passOn(bytes.size() - 4);
    EXPECT_TRUE(closed() == "head" + bytes.substr(4));
}

TEST_F(CopiedOutputs, AreNotMadeForDevices) {
    inputSpec = CreateFileSpec(inputName.c_str());
    outputSpec = CreateFileSpec("/dev/null");
    copy.emplace(inputSpec, outputSpec);
    EXPECT_EQ(gFileState.copiedOutput, nullptr);
}

TEST_F(CopiedOutputs, AreNotMadeOfWhatIsNoFile) {
    for (const char* name : {"none.bit", "."}) {
        fileSpecType* spec = CreateFileSpec(folder.file(name).c_str());
        const CopiedOutput none(spec, nullptr);
        EXPECT_EQ(gFileState.copiedOutput, nullptr);
        DeleteFileSpec(&spec);
    }
    const CopiedOutput none(nullptr, nullptr);
    EXPECT_EQ(gFileState.copiedOutput, nullptr);
}

TEST_F(CopiedOutputs, AreOneAtATime) {
    beginCopy();
    { const CopiedOutput second(inputSpec, outputSpec); }
    EXPECT_EQ(gFileState.copiedOutput, &*copy);
}

TEST_F(CopiedOutputs, StandWhereTheCopyWasMadeFor) {
    beginCopy();
    std::filesystem::create_directory(folder.file("deeper"));
    EXPECT_FALSE(openBoth("deeper/out.bit"));
    put("new");
    EXPECT_EQ(Close_File(&output), 0);
    EXPECT_EQ(readFile(folder.file("deeper/out.bit")), "new");
}

TEST_F(CopiedOutputs, KeepNoRoomWhenTheyAreNotTaken) {
    const auto openFiles = [] {
        return std::distance(
            std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
    };
    const auto before = openFiles();
    beginCopy();
    std::filesystem::create_directory(folder.file("deeper"));
    EXPECT_FALSE(openBoth("deeper/out.bit"));
    EXPECT_EQ(openFiles(), before + 2); // the input and the output, no temporary beside them
}

TEST_F(CopiedOutputs, BeginEmptyWhenTheInputWasChangedMeanwhile) {
    beginCopy();
    const auto time = std::filesystem::last_write_time(inputName);
    std::filesystem::last_write_time(inputName, time + std::chrono::seconds(1));
    EXPECT_FALSE(openBoth());
    passOn(bytes.size());
    EXPECT_TRUE(closed() == bytes);
}

TEST_F(CopiedOutputs, BeginEmptyWhenTheInputWasCutMeanwhile) {
    beginCopy();
    std::filesystem::resize_file(inputName, 2'000'000);
    EXPECT_FALSE(openBoth());
    passOn(2'000'000);
    EXPECT_TRUE(closed() == bytes.substr(0, 2'000'000));
}

TEST_F(CopiedOutputs, BeginEmptyWhenTheInputWasReplacedMeanwhile) {
    beginCopy();
    const auto time = std::filesystem::last_write_time(inputName);
    std::filesystem::rename(folder.write("other", std::string(bytes.size(), 'z')), inputName);
    std::filesystem::last_write_time(inputName, time); // alike in all but the bytes
    EXPECT_FALSE(openBoth());
    passOn(bytes.size());
    EXPECT_TRUE(closed() == std::string(bytes.size(), 'z'));
}

TEST_F(CopiedOutputs, PassOverBytesThatStayWithoutReadingThem) {
    beginCopy();
    ASSERT_TRUE(openBoth());
    u64 count = 0;
    EXPECT_EQ(passCopied(output, input, 4, 1002, &count), 0);
    EXPECT_EQ(count, 1000u);
    put("four");
    skip(4);
    EXPECT_EQ(passCopied(output, input, 4, 2'000'000, &count), 0); // far behind the window
    EXPECT_EQ(count, 2'000'000u);
    EXPECT_EQ(inputByte(input), static_cast<u8>(bytes[2'001'004]));
    put("5");
    EXPECT_EQ(passCopied(output, input, 4, bytes.size(), &count), 0);
    EXPECT_EQ(count, (bytes.size() - 2'001'005) / 4 * 4);
    passOn(bytes.size() - GetFilePosition(input));
    EXPECT_EQ(passCopied(output, input, 1, 1, &count), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(inputByte(input), kEND_OF_CONTENTS);
    EXPECT_TRUE(closed() == std::string(bytes).replace(1000, 4, "four").replace(2'001'004, 1, "5"));
}

TEST_F(CopiedOutputs, PassOverNothingThatMovesToAnotherPlace) {
    beginCopy();
    ASSERT_TRUE(openBoth());
    put("more");
    u64 count = 99;
    EXPECT_EQ(passCopied(output, input, 1, 10, &count), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(GetFilePosition(input), 0u);
    EXPECT_EQ(GetFilePosition(output), 4u);
}

TEST_F(CopiedOutputs, OutputsThatAreNoCopiesPassOverNothing) {
    EXPECT_FALSE(openBoth());
    u64 count = 99;
    EXPECT_EQ(passCopied(output, input, 1, 10, &count), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(GetFilePosition(input), 0u);
    EXPECT_FALSE(isWorthFollowing(output, bytes.size()));
}

TEST_F(CopiedOutputs, AreFollowedByAThreadWhenMuchIsWritten) {
    beginCopy();
    ASSERT_TRUE(openBoth());
    EXPECT_TRUE(isWorthFollowing(output, gFileState.smallestCopy));
    EXPECT_FALSE(isWorthFollowing(output, gFileState.smallestCopy - 1));
}

void append(void* text, const u8* taken, u64 count) {
    static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(taken), count);
}

TEST_F(CopiedOutputs, GiveTheirFollowerWhatIsWrittenAndWhatStays) {
    beginCopy();
    ASSERT_TRUE(openBoth());
    put("head"); // in the output's buffer still
    skip(4);
    std::string taken;
    {
        OutputFollower follower(output, append, &taken);
        ASSERT_TRUE(follower.isRunning());
        put("small");
        skip(5);
        follower.noteWritten();
        put(std::string(300'000, 'x'));
        skip(300'000);
        follower.noteWritten();
        u64 count = 0;
        EXPECT_EQ(passCopied(output, input, 1, 1'500'000, &count), 0);
        follower.noteWritten();
        put("end");
        skip(3);
        EXPECT_EQ(follower.finish(), 0);
    }
    passOn(10);
    const std::string expected =
        std::string(bytes).replace(4, 5, "small").replace(9, 300'000, 300'000, 'x').replace(1'800'009, 3, "end");
    EXPECT_TRUE(taken == expected.substr(4, 1'800'008));
}

TEST_F(CopiedOutputs, ThatCannotBeReadBackHaveFailed) {
    beginCopy();
    ASSERT_TRUE(openBoth());
    std::string taken;
    OutputFollower follower(output, append, &taken);
    const int unreadable = ::open("/dev/null", O_WRONLY);
    ASSERT_GE(dup2(unreadable, fileno(output->stream)), 0);
    ::close(unreadable);
    put("x");
    CapturedAlerts alerts;
    EXPECT_EQ(follower.finish(), 1);
    EXPECT_THAT(alerts.take(), ::testing::HasSubstr("can not be written: "));
    EXPECT_EQ(outputByte(output, 'y'), 1);
    EXPECT_EQ(taken, "");
}

// The size limit of a process stands in for the disk that fills up.
TEST_F(CopiedOutputs, AreWrittenAsOthersWhenTheDiskIsFull) {
    EXPECT_EQ(exitStatusOfChild([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1'500'000, 1'500'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        CapturedAlerts alerts;
        beginCopy();
        if (gFileState.copiedOutput == nullptr || openBoth()) return 1;
        if (outputBlock(output, bytes.data(), 1'000'000) != 0) return 2;
        if (outputBlock(output, bytes.data(), 1'000'000) != 1) return 3;
        return alerts.text() == "" ? 4 : 0;
    }),
        0);
    EXPECT_EQ(folder.listing(), "in.bit\n");
}

} // namespace

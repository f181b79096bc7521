// reading_test.cpp - bytes and lines of inputs, in one buffer and through a window.
// SPDX-License-Identifier: Apache-2.0

#include "file_test.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"

#include <fstream>
#include <sys/stat.h>
#include <thread>

namespace {

using namespace memdata;
using namespace memdata::testing;

class Reading : public FileTest {
protected:
    // The lines of a text, read both ways; both ways give the same.
    std::string lines(std::string_view text) {
        const std::string name = folder.write("lines", text);
        fileIODescriptor* whole = open(name, kTEXT_READ_WHOLE);
        fileIODescriptor* window = open(name, kTEXT_READ);
        const std::string result = remainingLines(whole);
        EXPECT_EQ(remainingLines(window), result);
        Close_File(&whole);
        Close_File(&window);
        return result;
    }
    // The same by inputLine, into a buffer of size bytes.
    std::string copiedLines(std::string_view text, u64 size) {
        fileIODescriptor* file = open(folder.write("copied", text), kTEXT_READ);
        std::string result;
        std::string buffer(size, '?');
        while (inputLine(file, buffer.data(), size) != nullptr) result += "[" + std::string(buffer.c_str()) + "]";
        Close_File(&file);
        return result;
    }
};

TEST_F(Reading, AFileThatIsCutShortMeanwhileIsAFailureAndNoEnd) {
    RegisterSystemToolName("Lanefill");
    const std::string name = folder.write("long", std::string(250'000, 'x') + "\nend\n");
    for (const u32 attributes : {kTEXT_READ, kREAD_ACCESS | kBINARY_FILE}) {
        folder.write("long", std::string(250'000, 'x') + "\nend\n");
        fileIODescriptor* file = open(name, attributes);
        std::filesystem::resize_file(name, 150'000);
        CapturedAlerts alerts;
        std::string block(250'000, '?');
        EXPECT_EQ(inputBlock(file, block.data(), block.size()), kREAD_FAILED);
        EXPECT_EQ(alerts.text(),
            "\nERROR:Lanefill:86 - File '" + name + "' can not be read: it was cut short while it was read.\n\n");
        Close_File(&file);
    }
}

TEST_F(Reading, AllFourLineEndsAreOneEndEach) {
    EXPECT_EQ(lines("a\nb\n"), "[a][b]");
    EXPECT_EQ(lines("a\rb\r"), "[a][b]");
    EXPECT_EQ(lines("a\n\rb\n\r"), "[a][b]");
    EXPECT_EQ(lines("a\r\nb\r\n"), "[a][b]");
}

TEST_F(Reading, LineEndsMayBeMixed) {
    EXPECT_EQ(lines("a\nb\rc\r\nd\n\re"), "[a][b][c][d][e]");
}

TEST_F(Reading, TheLastLineMayBeWithoutAnEnd) {
    EXPECT_EQ(lines("a\nb"), "[a][b]");
    EXPECT_EQ(lines("a"), "[a]");
}

TEST_F(Reading, EmptyLinesAreLines) {
    EXPECT_EQ(lines("\n\na\n\n"), "[][][a][]");
    EXPECT_EQ(lines("\r\n\r\na"), "[][][a]");
    EXPECT_EQ(lines("\n\r\r\n"), "[][]"); // LF CR, CR LF
    EXPECT_EQ(lines("\n"), "[]");
}

TEST_F(Reading, TheEndMarkEndsAText) {
    EXPECT_EQ(lines("a\nb\xFF"
                    "c\nd\n"),
        "[a][b]");
    EXPECT_EQ(lines("\xFF"
                    "a\n"),
        "");
}

TEST_F(Reading, NulIsACharacterOfTheLine) {
    EXPECT_EQ(lines(std::string_view("a\0b\nc", 5)), std::string("[a\0b][c]", 8));
}

TEST_F(Reading, EachLineIsCounted) {
    fileIODescriptor* file = open(folder.write("a", "1\n\r2\n\r3\n\r"), kTEXT_READ_WHOLE);
    EXPECT_EQ(GetCurrentLineCount(file), 0u);
    GetNextTextLine(file);
    EXPECT_EQ(GetCurrentLineCount(file), 1u);
    remainingLines(file);
    EXPECT_EQ(GetCurrentLineCount(file), 3u);
    Close_File(&file);
}

TEST_F(Reading, TheCurrentLineIsTheOneGivenLast) {
    fileIODescriptor* file = open(folder.write("a", "one\ntwo"), kTEXT_READ_WHOLE);
    EXPECT_EQ(GetCurrentTextLine(file), nullptr);
    char* line = GetNextTextLine(file);
    EXPECT_EQ(GetCurrentTextLine(file), line);
    line = GetNextTextLine(file);
    EXPECT_EQ(GetCurrentTextLine(file), line);
    EXPECT_EQ(lineText(file, line), "two");
    GetNextTextLine(file);
    EXPECT_EQ(GetCurrentTextLine(file), nullptr);
    Close_File(&file);
}

TEST_F(Reading, LinesStandInTheOneBufferOfTheFile) {
    fileIODescriptor* file = open(folder.write("a", "one\ntwo\n"), kTEXT_READ_WHOLE);
    EXPECT_EQ(GetNextTextLine(file), GetFileStorageBase(file));
    EXPECT_EQ(GetNextTextLine(file), GetFileStorageBase(file) + 4);
    Close_File(&file);
}

TEST_F(Reading, TheOneBufferIsFollowedByTheEndMarkAndNuls) {
    fileIODescriptor* file = open(folder.write("a", "one"), kTEXT_READ_WHOLE);
    EXPECT_EQ(std::string(GetFileStorageBase(file), 6), std::string("one\xFF\0\0", 6));
    Close_File(&file);
}

TEST_F(Reading, StatusTellsTheEndOfTheFileFromAnEndMark) {
    fileIODescriptor* file = open(folder.write("a", "x"), kTEXT_READ_WHOLE);
    EXPECT_EQ(inputByte(file), 'x');
    EXPECT_EQ(file->status, 0);
    EXPECT_EQ(inputByte(file), -1);
    EXPECT_EQ(inputByte(file), -1);
    EXPECT_EQ(file->status, -1);
    EXPECT_EQ(GetNextTextLine(file), nullptr);
    EXPECT_EQ(file->status, -1);
    Close_File(&file);

    file = open(folder.write("b", "x\xFFy"), kTEXT_READ_WHOLE);
    EXPECT_EQ(inputByte(file), 'x');
    EXPECT_EQ(inputByte(file), -2);
    EXPECT_EQ(file->status, -2);
    EXPECT_EQ(GetNextTextLine(file), nullptr);
    EXPECT_EQ(file->status, -2);
    Close_File(&file);
}

TEST_F(Reading, BytesOfATextComeWithTheirLineEnds) {
    fileIODescriptor* file = open(folder.write("a", "a\r\nb\n"), kTEXT_READ);
    EXPECT_EQ(bytesOf(file), "a\r\nb\n");
    Close_File(&file);
}

TEST_F(Reading, ABinaryFileGivesAllBytes) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    for (u32 attributes : {kBINARY_READ, kBINARY_READ_WHOLE}) {
        fileIODescriptor* file = open(folder.write("a", all), attributes);
        EXPECT_EQ(bytesOf(file), all);
        Close_File(&file);
    }
}

TEST_F(Reading, ABinaryFileLargerThanTheBufferGivesAllBytes) {
    std::string all;
    for (u32 i = 0; all.size() < 350001; ++i) all += static_cast<char>(i * i >> 8);
    fileIODescriptor* file = open(folder.write("a", all), kBINARY_READ);
    EXPECT_EQ(GetFileLogicalSize(file), all.size());
    EXPECT_TRUE(bytesOf(file) == all);
    EXPECT_EQ(GetFilePosition(file), all.size());
    Close_File(&file);
}

TEST_F(Reading, ALineEndPairMayStraddleTheEndOfTheBuffer) {
    for (const char* pair : {"\r\n", "\n\r"}) {
        const std::string text = std::string(99999, 'x') + pair + "b" + pair + std::string(100000, 'y');
        fileIODescriptor* file = open(folder.write("a", text), kTEXT_READ);
        EXPECT_EQ(lineText(file, GetNextTextLine(file)).size(), 99999u);
        EXPECT_EQ(lineText(file, GetNextTextLine(file)), "b");
        EXPECT_EQ(lineText(file, GetNextTextLine(file)), std::string(100000, 'y'));
        EXPECT_EQ(GetNextTextLine(file), nullptr);
        EXPECT_EQ(GetCurrentLineCount(file), 3u);
        Close_File(&file);
    }
}

TEST_F(Reading, CopiedLinesTakePairsAcrossTheEndOfTheBufferToo) {
    for (const char* pair : {"\r\n", "\n\r"}) {
        const std::string text = std::string(99999, 'x') + pair + "b" + pair + std::string(100000, 'y');
        EXPECT_EQ(copiedLines(text, 4), "[xxx][b][yyy]");
    }
}

// Every length around the buffer's, against the one-buffer reading, which has no seams.
TEST_F(Reading, TheWindowGivesTheLinesOfTheOneBuffer) {
    std::string text;
    u32 seed = 1;
    while (text.size() < 450000) {
        seed = seed * 1664525 + 1013904223;
        text += std::string(seed >> 25, static_cast<char>('a' + seed % 26));
        text += std::string_view("\n\r\r\n\n\n").substr(seed % 5, 1 + (seed >> 8) % 3);
    }
    EXPECT_FALSE(lines(text).empty());
}

TEST_F(Reading, ALineLongerThanTheBufferGrowsIt) {
    const std::string text = "a\n" + std::string(1000000, 'x') + "\nb\n";
    EXPECT_EQ(lines(text), "[a][" + std::string(1000000, 'x') + "][b]");
}

TEST_F(Reading, ALineBeyondTheLimitIsRefused) {
    RegisterSystemToolName("Lanefill");
    const std::string name = folder.write("a", "first\n");
    std::filesystem::resize_file(name, 6 + (u64{16} << 20) + 1); // a line of NULs, one too many
    fileIODescriptor* file = open(name, kTEXT_READ);
    GetNextTextLine(file);
    CapturedAlerts alerts;
    EXPECT_EQ(GetNextTextLine(file), nullptr);
    EXPECT_EQ(file->status, kLINE_TOO_LONG);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - Line #2 of file '" + name + "' is longer than 16777216 bytes.\n\n");
    EXPECT_EQ(GetNextTextLine(file), nullptr); // reported once
    Close_File(&file);
}

TEST_F(Reading, ALineAtTheLimitIsRead) {
    const std::string name = folder.write("a", "first\n");
    std::filesystem::resize_file(name, 6 + (u64{16} << 20));
    std::ofstream(name, std::ios::app) << "\r\nlast";
    fileIODescriptor* file = open(name, kTEXT_READ);
    GetNextTextLine(file);
    ASSERT_NE(GetNextTextLine(file), nullptr);
    EXPECT_EQ(lineText(file, GetNextTextLine(file)), "last");
    Close_File(&file);
}

TEST_F(Reading, InputLineCopiesLines) {
    EXPECT_EQ(copiedLines("a\nbc\r\n\r\nd\n\re", 10), "[a][bc][][d][e]");
}

TEST_F(Reading, InputLineSkipsTheExcessOfALongLine) {
    EXPECT_EQ(copiedLines("abcdef\nxyz\n", 4), "[abc][xyz]");
    EXPECT_EQ(copiedLines("abcdef\nxyz\n", 1), "[][]");
    EXPECT_EQ(copiedLines(std::string(20u << 20, 'x') + "\nb", 4), "[xxx][b]");
}

TEST_F(Reading, InputLinePutsBackWhatFollowsALoneLineEnd) {
    EXPECT_EQ(copiedLines("a\rb\nc", 10), "[a][b][c]");
}

TEST_F(Reading, InputLineEndsAtTheEndMark) {
    EXPECT_EQ(copiedLines("a\nb\xFF\nc", 10), "[a][b]");
    EXPECT_EQ(copiedLines("\xFF", 10), "");
}

TEST_F(Reading, InputLineNeedsRoom) {
    fileIODescriptor* file = open(folder.write("a", "abc"), kTEXT_READ);
    char buffer[4];
    EXPECT_EQ(inputLine(file, buffer, 0), nullptr);
    EXPECT_EQ(inputLine(file, nullptr, 4), nullptr);
    EXPECT_STREQ(inputLine(file, buffer, 4), "abc");
    Close_File(&file);
}

TEST_F(Reading, ABlockReachesOverManyWindows) {
    std::string contents(350'000, 'a');
    for (size_t i = 0; i < contents.size(); ++i) contents[i] = static_cast<char>(i * 7 / 3);
    fileIODescriptor* file = open(folder.write("a", contents), kBINARY_READ);
    std::string block(349'999, '?');
    EXPECT_EQ(static_cast<u8>(inputByte(file)), static_cast<u8>(contents[0]));
    EXPECT_EQ(inputBlock(file, block.data(), block.size()), 0);
    EXPECT_TRUE(block == contents.substr(1));
    EXPECT_EQ(inputBlock(file, block.data(), 0), 0);
    EXPECT_EQ(inputBlock(file, block.data(), 1), kEND_OF_CONTENTS);
    Close_File(&file);
}

TEST_F(Reading, ABlockThatEndsEarlyHoldsWhatThereIs) {
    fileIODescriptor* file = open(folder.write("a", "abc"), kBINARY_READ);
    char block[6] = "-----";
    EXPECT_EQ(inputBlock(file, block, 5), kEND_OF_CONTENTS);
    EXPECT_STREQ(block, "abc--");
    Close_File(&file);
    file = open(folder.write("b", "ab\xFFz"), kTEXT_READ);
    EXPECT_EQ(inputBlock(file, block, 5), kEND_MARK);
    Close_File(&file);
}

TEST_F(Reading, AnOutputCanNotBeRead) {
    fileIODescriptor* file = open(folder.file("a"), kTEXT_WRITE);
    char buffer[4];
    EXPECT_EQ(inputByte(file), kNOT_READABLE);
    EXPECT_EQ(GetNextTextLine(file), nullptr);
    EXPECT_EQ(inputLine(file, buffer, 4), nullptr);
    EXPECT_EQ(file->status, kNOT_READABLE);
    EXPECT_EQ(inputByte(nullptr), kNOT_READABLE);
    EXPECT_EQ(GetNextTextLine(nullptr), nullptr);
    abandonFile(&file);
}

TEST_F(Reading, APositionInATextMovesBackToTheStartOfItsLine) {
    fileIODescriptor* file = open(folder.write("a", "one\ntwo\r\n\r\nthree"), kTEXT_READ_WHOLE);
    struct {
        u64 position, lineStart;
    } const cases[] = {{0, 0}, {2, 0}, {3, 0}, {4, 4}, {6, 4}, {7, 4}, {8, 4}, {9, 9}, {10, 9}, {11, 11}, {13, 11},
        {16, 11}, {1000, 11}};
    for (const auto& c : cases) {
        EXPECT_EQ(SetFilePosition(file, c.position), 0);
        EXPECT_EQ(GetFilePosition(file), c.lineStart) << c.position;
    }
    EXPECT_EQ(SetFilePosition(file, 5), 0);
    EXPECT_EQ(remainingLines(file), "[two][][three]");
    Close_File(&file);
}

TEST_F(Reading, APositionBehindALastLineEndIsTheEndOfTheFile) {
    fileIODescriptor* file = open(folder.write("a", "one\n"), kTEXT_READ_WHOLE);
    EXPECT_EQ(SetFilePosition(file, 9), 0);
    EXPECT_EQ(GetFilePosition(file), 4u);
    EXPECT_EQ(GetNextTextLine(file), nullptr);
    Close_File(&file);
}

TEST_F(Reading, APositionInABinaryFileStaysAndIsClamped) {
    fileIODescriptor* file = open(folder.write("a", "one\ntwo\n"), kBINARY_READ_WHOLE);
    EXPECT_EQ(SetFilePosition(file, 6), 0);
    EXPECT_EQ(GetFilePosition(file), 6u);
    EXPECT_EQ(inputByte(file), 'o');
    EXPECT_EQ(SetFilePosition(file, 100), 0);
    EXPECT_EQ(GetFilePosition(file), 8u);
    EXPECT_EQ(inputByte(file), -1);
    EXPECT_EQ(SetFilePosition(file, 1), 0);
    EXPECT_EQ(inputByte(file), 'n');
    Close_File(&file);
}

TEST_F(Reading, OnlyFilesOfOneBufferCanBePositioned) {
    fileIODescriptor* file = open(folder.write("a", "one\ntwo\n"), kTEXT_READ);
    EXPECT_EQ(SetFilePosition(file, 4), 3);
    EXPECT_EQ(GetFilePosition(file), 0u);
    EXPECT_EQ(SetFilePosition(nullptr, 4), 3);
    Close_File(&file);
}

TEST_F(Reading, BytesOfTheBufferAreFoundByTheirOffset) {
    fileIODescriptor* file = open(folder.write("a", "one\ntwo\n"), kBINARY_READ_WHOLE);
    EXPECT_EQ(GetIndexIOBuffer(file, 0), GetFileStorageBase(file));
    EXPECT_EQ(*GetIndexIOBuffer(file, 4), 't');
    EXPECT_EQ(GetIndexIOBuffer(file, 8), GetFileStorageBase(file) + 8);
    EXPECT_EQ(GetIndexIOBuffer(file, 9), nullptr);
    Close_File(&file);

    file = open(folder.write("b", std::string(150000, 'a') + std::string(150000, 'b')), kBINARY_READ);
    for (int i = 0; i < 250000; ++i) inputByte(file);
    EXPECT_EQ(GetIndexIOBuffer(file, 0), nullptr); // no longer held
    EXPECT_EQ(*GetIndexIOBuffer(file, 250000), 'b');
    Close_File(&file);
}

TEST_F(Reading, AFileTellsItsSizes) {
    fileIODescriptor* file = open(folder.write("a", "one\ntwo\n"), kTEXT_READ);
    u64 logical = 0, physical = 0;
    EXPECT_EQ(GetFileSizes(file, &logical, &physical), 0);
    EXPECT_EQ(logical, 8u);
    EXPECT_GE(physical, 8u);
    EXPECT_EQ(GetFileLogicalSize(file), 8u);
    EXPECT_EQ(GetFileSizes(nullptr, &logical, &physical), 3);
    Close_File(&file);
}

// What a pipe gives has no size ahead of its end.
TEST_F(Reading, APipeIsReadToItsEnd) {
    const std::string name = folder.file("pipe");
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    const std::string text = std::string(250000, 'x') + "\nend\n";
    for (u32 attributes : {kTEXT_READ_WHOLE, kTEXT_READ}) {
        std::thread writer([&] { std::ofstream(name) << text; });
        fileIODescriptor* file = open(name, attributes);
        EXPECT_EQ(remainingLines(file), "[" + std::string(250000, 'x') + "][end]");
        EXPECT_EQ(GetFileLogicalSize(file), text.size());
        writer.join();
        Close_File(&file);
    }
}

TEST_F(Reading, AFileThatTheKernelMakesUpIsRead) {
    fileIODescriptor* file = open("/proc/self/status", kTEXT_READ_WHOLE);
    EXPECT_EQ(lineText(file, GetNextTextLine(file)).substr(0, 5), "Name:");
    Close_File(&file);
}

u64 residentPages() {
    std::ifstream facts("/proc/self/statm");
    u64 total = 0, resident = 0;
    facts >> total >> resident;
    return resident;
}

TEST_F(Reading, ALargeFileIsReadLineByLineInLittleMemory) {
    std::string block;
    while (block.size() < 3000000) block += "0123456789ABCDEF 0123456789ABCDEF 0123456789ABCDEF 012345678\n";
    const std::string name = folder.file("large");
    {
        std::ofstream out(name);
        for (u64 written = 0; written < 300000000; written += block.size()) out << block;
    }
    const u64 lineBytes = block.find('\n') + 1;
    const u64 size = std::filesystem::file_size(name);
    const u64 before = residentPages();
    u64 most = before;
    fileIODescriptor* file = open(name, kTEXT_READ);
    while (GetNextTextLine(file) != nullptr) {
        if (GetCurrentLineCount(file) % 65536 == 0) most = std::max(most, residentPages());
    }
    EXPECT_EQ(GetCurrentLineCount(file), size / lineBytes);
    EXPECT_LT((most - before) * 4096, u64{64} << 20);
    EXPECT_LT(getMaxMemoryUsage(), u64{64} << 20);
    Close_File(&file);
}

TEST_F(Reading, EveryFailedAllocationIsCleanedUp) {
    const std::string name = folder.write("a", "a\n" + std::string(500000, 'x') + "\n");
    for (u32 attributes : {kTEXT_READ, kTEXT_READ_WHOLE}) {
        const FaultSweep sweep = sweepAllocationFaults([&] {
            fileIODescriptor* file = nullptr;
            int status = Open_File(name.c_str(), attributes, &file);
            while (status == 0 && GetNextTextLine(file) != nullptr) {
            }
            if (status == 0 && file->status < -2) status = 7;
            abandonFile(&file);
            return status;
        });
        EXPECT_EQ(sweep.failures, "");
        EXPECT_GE(sweep.faultCount, 3u);
    }
}

TEST_F(Reading, BlocksLargerThanTheBufferComeWholeAndInTheirPlace) {
    std::string contents;
    for (u32 i = 0; contents.size() < 500'000; ++i) contents += std::to_string(i * 2654435761U) + ",";
    fileIODescriptor* file = open(folder.write("big.bin", contents), kBINARY_READ);
    std::string block(300'000, '\0');
    EXPECT_EQ(inputBlock(file, block.data(), 10), 0);
    EXPECT_EQ(block.substr(0, 10), contents.substr(0, 10));
    EXPECT_EQ(inputBlock(file, block.data(), 300'000), 0);
    EXPECT_TRUE(block == contents.substr(10, 300'000));
    EXPECT_EQ(GetFilePosition(file), 300'010u);
    EXPECT_EQ(inputByte(file), static_cast<u8>(contents[300'010]));
    const u64 left = contents.size() - 300'011;
    EXPECT_EQ(inputBlock(file, block.data(), 300'000), kEND_OF_CONTENTS);
    EXPECT_TRUE(block.substr(0, left) == contents.substr(300'011));
    EXPECT_EQ(GetFilePosition(file), contents.size());
    EXPECT_EQ(GetFileLogicalSize(file), contents.size());
    EXPECT_EQ(inputByte(file), kEND_OF_CONTENTS);
    Close_File(&file);
}

} // namespace

// demo_test.cpp - the shipped example: what ./dev demo runs, and that it finds what is wrong.
// SPDX-License-Identifier: Apache-2.0
#include "support/temporary_folder.h"
#include "support/tool_run.h"

#include <gmock/gmock.h>

namespace memdata::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

const std::string kEXAMPLE = std::string(MEMDATA_TEST_DATA) + "/../examples/soc/";

TEST(Demo, TakesTheProgramIntoMemoriesAndProvesIt) {
    const TemporaryFolder folder;
    const ToolResult result = runProgram(kEXAMPLE + "demo.sh", {toolName(), folder.file("out")});
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, HasSubstr("all 329 bytes of the program are in their memories, and nothing else is\n"));
    EXPECT_THAT(result.out, HasSubstr("8 memories compared, 8 differ; 1 CRC word, 0 wrong\n"));
    EXPECT_THAT(result.out, HasSubstr("\n    256 frames of 404 bytes, "));
    EXPECT_THAT(result.out, HasSubstr("8 memories compared, 0 differ; 1 CRC word, 0 wrong\n"));
}

TEST(Demo, FailsWithTheToolThatFails) {
    const TemporaryFolder folder;
    const ToolResult result = runProgram(kEXAMPLE + "demo.sh", {"/bin/false", folder.file("out")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, EndsWith("the demo FAILED\n"));
}

// The comparison of the demo, on MEM files of which one is changed.
class DemoComparison : public ::testing::Test {
protected:
    DemoComparison() {
        const ToolResult made =
            runTool({"-bm", kEXAMPLE + "soc.bmm", "-bd", kEXAMPLE + "app.elf", "-bx", folder_.path().string()});
        EXPECT_EQ(made.status, 0) << made.err;
    }
    void edit(const std::string& name, const std::string& from, const std::string& to) const {
        std::string text = readFile(folder_.file(name));
        const size_t at = text.find(from);
        ASSERT_NE(at, text.npos) << text;
        folder_.write(name, text.replace(at, from.size(), to));
    }
    ToolResult compare() const {
        return runProgram("python3", {kEXAMPLE + "compare.py", kEXAMPLE + "app.elf", folder_.path().string()});
    }

    const TemporaryFolder folder_;
};

TEST_F(DemoComparison, TakesWhatTheToolWrote) {
    EXPECT_EQ(compare().status, 0);
}

TEST_F(DemoComparison, FindsAWrongByte) {
    edit("soc.ram_0.mem", "17 13", "17 12");
    const ToolResult result = compare();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("1 bytes differ from ")) << result.err;
    EXPECT_THAT(result.err, EndsWith(", the first at 0x00000004\n"));
}

TEST_F(DemoComparison, FindsAByteThatDoesNotBelongThere) {
    edit("soc.ram_12.mem", "@00000000", "@00000100 55 @00000000");
    const ToolResult result = compare();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "1 bytes come from nowhere, the first at 0x0000C400\n");
}

TEST(Demo, ItsFirmwareIsWhatTheSourceGives) {
    if (runProgram("riscv64-unknown-elf-gcc", {"--version"}).status != 0)
        GTEST_SKIP() << "gcc-riscv64-unknown-elf is not installed";
    const TemporaryFolder folder;
    const ToolResult result = runProgram(kEXAMPLE + "firmware/build.sh", {folder.file("app.elf")});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(readFile(folder.file("app.elf")) == readFile(kEXAMPLE + "app.elf"));
}

// The look at two bit files, on a stream of four frames of a word, the last two of block RAM, and a CRC word.
class DemoChanges : public ::testing::Test {
protected:
    static constexpr size_t kCLB_FRAME = 12;
    static constexpr size_t kBRAM_FRAME = 16;
    static constexpr size_t kCRC = 28;

    DemoChanges()
        : old_(std::string("\xAA\x99\x55\x66\x30\0\x40\4", 8) + std::string(16, 'f') +
               std::string("\x30\0\0\1crc.", 8)) {}
    ToolResult changed(const std::vector<size_t>& places) const {
        std::string changed = old_;
        for (size_t place : places) changed[place] ^= 1;
        return runProgram("python3",
            {kEXAMPLE + "changes.py", folder_.write("old.bit", old_), folder_.write("new.bit", changed), "32", "2"});
    }

    const TemporaryFolder folder_;
    const std::string old_;
};

TEST_F(DemoChanges, TellsFramesOfBlockRamAndCrcWords) {
    const ToolResult result = changed({kBRAM_FRAME, kBRAM_FRAME + 7, kCRC});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "    2 frames of 4 bytes, number 2 to 3 of the stream; block RAM begins at 2\n"
                          "    2 bytes in them, 1 CRC word(s), and none of the other 29 bytes\n");
}

TEST_F(DemoChanges, FailsOverAnyOtherChange) {
    const ToolResult result = changed({kBRAM_FRAME, kCLB_FRAME, kCRC});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "1 bytes outside of block RAM and CRC words changed, the first at offset 12\n");
}

TEST_F(DemoChanges, FailsWhenTheCrcWordIsTheOldOne) {
    EXPECT_EQ(changed({kBRAM_FRAME}).status, 1);
    EXPECT_EQ(changed({}).status, 1);
}

} // namespace
} // namespace memdata::testing

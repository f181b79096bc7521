// map_command_test.cpp - lanefill map, as a user runs it.
// SPDX-License-Identifier: Apache-2.0
#include "support/temporary_folder.h"
#include "support/tool_run.h"

#include <gmock/gmock.h>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class MapCommand : public ::testing::Test {
protected:
    ToolResult show(std::string_view map, std::vector<std::string> more = {}) const {
        std::vector<std::string> words{"map", folder_.write("a.bmm", map)};
        words.insert(words.end(), more.begin(), more.end());
        return runTool(words);
    }

    const TemporaryFolder folder_;
};

TEST_F(MapCommand, ShowsEveryMemoryAsTheMapListsThem) {
    const ToolResult result = show("ADDRESS_MAP cpu RISCV 7 top/cpu\n"
                                   "  ADDRESS_SPACE ram RAMB16 [0x1000:0x2FFF]\n"
                                   "    BUS_BLOCK\n"
                                   "      top/hi [15:8] LOC = X0Y1;\n"
                                   "      top/lo [7:0];\n"
                                   "    END_BUS_BLOCK;\n"
                                   "    BUS_BLOCK top/hi2 [15:8]; top/lo2 [7:0]; END_BUS_BLOCK;\n"
                                   "  END_ADDRESS_SPACE;\n"
                                   "END_ADDRESS_MAP;\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "ADDRESS_MAP cpu, RISCV 7, top/cpu\n"
                          "  ADDRESS_SPACE cpu.ram, 0x00001000 to 0x00002FFF, 8192 bytes, bus of 16 bits, 4 memories\n"
                          "    addresses                 bits    memory   type    words        location\n"
                          "    0x00001000 to 0x00001FFF  [15:8]  top/hi   RAMB16  [0:2047]     X0Y1\n"
                          "                              [7:0]   top/lo   RAMB16  [0:2047]     -\n"
                          "    0x00002000 to 0x00002FFF  [15:8]  top/hi2  RAMB16  [2048:4095]  -\n"
                          "                              [7:0]   top/lo2  RAMB16  [2048:4095]  -\n");
}

TEST_F(MapCommand, ShowsCheckLanesWhereTheMapHasThem) {
    const ToolResult result = show("ADDRESS_SPACE ram RAMB16 [0:0x7FF]\n"
                                   "  BUS_BLOCK check ECCH32-7 [38:32]; data [31:0]; END_BUS_BLOCK;\n"
                                   "END_ADDRESS_SPACE;\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out.find("check") < result.out.find("data"), true) << result.out;
    EXPECT_THAT(result.out, HasSubstr("0x00000000 to 0x000007FF  [38:32]  check   RAMB16 ECCH32-7  "));
    EXPECT_THAT(result.out, HasSubstr("\n                              [31:0]   data    RAMB16 "));
}

TEST_F(MapCommand, NamesTheDeviceAndSpacesWithoutAProcessor) {
    const ToolResult result = show("ADDRESS_SPACE taps RAMB36 WORD_ADDRESSING [0:1023]\n"
                                   "  BUS_BLOCK t [35:0]; END_BUS_BLOCK;\n"
                                   "END_ADDRESS_SPACE;\n",
        {"-p", "tq7b100"});
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith("Device tq7b100\n\nWithout a processor\n  ADDRESS_SPACE taps, 0x00000000 to "
                                       "0x000003FF, 1024 words, bus of 36 bits, 1 memories\n"));
}

TEST_F(MapCommand, ShowsNothingOfAMapThatIsWrong) {
    const ToolResult result = show("ADDRESS_SPACE ram RAMB16 [0:0xFFF]\n");
    EXPECT_NE(result.status, 0);
    EXPECT_THAT(result.out, Not(HasSubstr("memories")));
    EXPECT_THAT(result.out + result.err, HasSubstr("'BRAM instance name' expected"));
}

TEST_F(MapCommand, WithoutAMapSaysWhatItTakes) {
    const ToolResult result = runTool({"map"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "lanefill: map takes an address map: lanefill map soc.bmm\n");
}

TEST_F(MapCommand, WritesNothing) {
    show("ADDRESS_SPACE ram RAMB16 [0:0x7FF]\n BUS_BLOCK a [7:0]; END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n",
        {"-o", "p", folder_.file("out.bmm"), "-bx", folder_.file("mem")});
    EXPECT_EQ(folder_.listing(), "a.bmm\n");
}

} // namespace
} // namespace memdata::testing

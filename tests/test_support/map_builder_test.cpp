// map_builder_test.cpp - the maps that tests are made of.
// SPDX-License-Identifier: Apache-2.0
#include "support/map_builder.h"
#include "support/map_dump.h"

#include <gtest/gtest.h>

using namespace memdata::testing;

TEST(MapBuilder, AWholeMapPrintsAsItWasWritten) {
    TestMap map("board.v");
    map.space("boot", 0x1000, "RAMB16", {"hi[15:8] INIT=hi.mem lo[7:0] LOC=X3Y7", "hi2[15:8] lo2[7:0] INIT=lo.mem"});
    map.map("cpu", "ARM", 2, "top/cpu");
    map.space("ram", 0, "RAMB18", {"*/a[17:9] b[8:0] PLACED=R1C4"}, {.wordAddressing = true, .path = "top/m"});
    map.space("t", 0, "RAMB4", {"x[0:7]"}, {.isTemplate = true});
    EXPECT_EQ(dumpMapping(map.get()), "mapping board.bmm spaces 3\n"
                                      "map \"\" PPC405 0\n"
                                      "  space boot 0x1000-0x2FFF\n"
                                      "    range RAMB16 0x1000-0x2FFF bus 16 lane 8 words 2048 devices 4 located 1\n"
                                      "      block 0x1000-0x1FFF\n"
                                      "        hi[15:8][0:2047] INIT=hi.mem\n"
                                      "        lo[7:0][0:2047] LOC=X3Y7\n"
                                      "      block 0x2000-0x2FFF\n"
                                      "        hi2[15:8][2048:4095]\n"
                                      "        lo2[7:0][2048:4095] INIT=lo.mem\n"
                                      "map \"cpu\" ARM 2 path \"top/cpu\"\n"
                                      "  space cpu.ram 0x0-0xFFF words path \"top/m\"\n"
                                      "    range RAMB18 0x0-0xFFF bus 18 lane 9 words 2048 devices 2 located 1\n"
                                      "      block 0x0-0xFFF\n"
                                      "        */a[17:9][0:2047] parity 1\n"
                                      "        b[8:0][0:2047] parity 1 PLACED=X4Y1\n"
                                      "map \"ADDRESS_SPACE_TEMPLATES\" PPC405 0\n"
                                      "  space t 0x0-0x1FF template\n"
                                      "    range RAMB4 0x0-0x1FF bus 8 lane 8 words 512 devices 1\n"
                                      "      block 0x0-0x1FF\n"
                                      "        x[0:7][0:511]\n"
                                      "init lo2 hi\n");
}

TEST(MapBuilder, RangesAndCheckLanesStandInOrder) {
    TestMap map;
    AddressSpaceDefType* space = map.space("mix", 0x100,
        {{"RAMB4", {"e[14:8] ECCH32-7 a[7:0]"}}, {"RAMB36", {"b[8:0][0:99] RAMB18"}}}, {.endAddress = 0xFFFF});
    EXPECT_EQ(dumpSpace(space), "  space mix 0x100-0xFFFF combined\n"
                                "    range RAMB4 0x100-0x2FF bus 8 lane 8 words 512 devices 2\n"
                                "      block 0x100-0x2FF ecc-first\n"
                                "        a[7:0][0:511]\n"
                                "        e[14:8][0:584] ECCH32-7\n"
                                "    range RAMB36 0x300-0x14FF bus 9 lane 9 words 4096 devices 1\n"
                                "      block 0x300-0x14FF\n"
                                "        b[8:0][0:99] RAMB18 parity 1\n");
}

struct TurnCase {
    const char* lanes;
    const char* memory;
    const char* processor;
    const char* order;
    u64 pitch;
};

TEST(MapBuilder, LanesOfLittleEndianProcessorsAreTurnedByBytes) {
    for (const TurnCase& c : {TurnCase{"a[31:24] b[23:16] c[15:8] d[7:0]", "RAMB16", "ARM", "dcba", 0},
             {"a[31:16] b[15:0]", "RAMB16", "RISCV", "ba", 16},
             {"a[31:28] b[27:24] c[23:20] d[19:16] e[15:12] f[11:8] g[7:4] h[3:0]", "RAMB16", "KESTREL-LE", "ghefcdab",
                 0},
             {"a[31:24] b[23:16] c[15:8] d[7:0]", "RAMB16", "KESTREL", "abcd", 0},
             {"a[35:27] b[26:18] c[17:9] d[8:0]", "RAMB18", "ARM", "abcd", 0}, {"a[31:0]", "RAMB16", "ARM", "a", 32}}) {
        TestMap map;
        map.map("cpu", c.processor);
        const BusBlockType* block = map.space("ram", 0, c.memory, {c.lanes})->ranges->busBlocks[0];
        std::string order;
        for (u64 i = 0; i < block->laneCount; ++i) order += block->lanes[i]->lane->name;
        EXPECT_EQ(order, c.order) << c.lanes << " " << c.processor;
        EXPECT_EQ(block->lanePitch, c.pitch) << c.lanes << " " << c.processor;
    }
}

TEST(MapBuilder, ADefinedMemoryHasItsSizeAndClass) {
    TestMap map;
    map.define("sram", 0x400, {8, 16});
    map.define("MEMORY", 0x800, {8});
    EXPECT_EQ(map.space("a", 0, "sram", {"x[15:0]"})->endAddress, 0x3FFu);
    EXPECT_EQ(map.space("b", 0, "MEMORY", {"y[7:0]"})->endAddress, 0x7FFu);
    EXPECT_EQ(map.lane("x")->lane->memory->type->sizeUnits, kUSER_MEMORY_CLASS);
    EXPECT_EQ(map.lane("y")->lane->memory->type->sizeUnits, kGENERIC_MEMORY_CLASS);
}

TEST(MapBuilder, AnUnfinishedSpaceHasNoComputedSizes) {
    TestMap map;
    map.map("cpu", "ARM");
    AddressSpaceDefType* space =
        map.space("ram", 0x1000, "RAMB16", {"a[15:8] b[7:0]"}, {.endAddress = 0x1FFF, .finished = false});
    EXPECT_EQ(dumpSpace(space), "  space cpu.ram 0x1000-0x1FFF\n"
                                "    range RAMB16 0x1000-0x1FFF devices 2\n"
                                "      block 0x0-0x0 bus 16\n"
                                "        a[15:8][0:2047]\n"
                                "        b[7:0][0:2047]\n");
    EXPECT_EQ(space->nextAddress, 0x1000u);
    EXPECT_EQ(space->rangeByteTotal, 0u);
}

TEST(MapBuilder, TextsThatCannotBeReadAreRefused) {
    TestMap map;
    EXPECT_THROW(map.space("u", 0, "RAMB4", {"x[7:0]"}, {.finished = false}), std::invalid_argument);
    EXPECT_THROW(map.space("a", 0, "RAMB5", {"x[7:0]"}), std::invalid_argument);
    EXPECT_THROW(map.space("b", 0, "RAMB4", {"x[7]"}), std::invalid_argument);
    EXPECT_THROW(map.space("c", 0, "RAMB4", {"x[7:0][0:5"}), std::invalid_argument);
    EXPECT_THROW(map.space("d", 0, "RAMB4", {"LOC=X0Y0"}), std::invalid_argument);
    EXPECT_THROW(map.space("e", 0, "RAMB4", {"x[7:0] LOC=7"}), std::invalid_argument);
    EXPECT_THROW(map.lane("nowhere"), std::invalid_argument);
    EXPECT_THROW(map.link("nowhere"), std::invalid_argument);
    EXPECT_EQ(listSpaces(map.get()), ":\n");
}

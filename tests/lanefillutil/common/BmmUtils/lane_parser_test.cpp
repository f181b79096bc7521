// lane_parser_test.cpp - bus blocks and their lanes.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/memory_lookup.h"
#include "map_text.h"

using namespace memdata;
using namespace memdata::testing;

namespace {

// The block of a space of the right size, as the dump shows it: from its first lane on.
std::string lanes(const std::string& memory, u64 bytes, const std::string& block) {
    MapText map;
    const int status = map.read(
        "ADDRESS_SPACE ram " + memory + " [0:" + std::to_string(bytes - 1) + "]\n" + block + "\nEND_ADDRESS_SPACE;\n");
    if (status != 0) return map.alerts();
    const std::string dump = map.dump();
    return dump.substr(dump.find("        "));
}

std::string block(const std::string& text) {
    return "BUS_BLOCK\n" + text + "\nEND_BUS_BLOCK;\n";
}

// What is said about a lane line of a RAMB16 space: line 3 of its text.
void expectAlert(
    const std::string& line, const std::string& message, size_t column, const std::string& memory = "RAMB16") {
    MapText map;
    EXPECT_EQ(map.read(laneSpace(line, memory)), 3) << line;
    EXPECT_EQ(map.alerts(), alertAt(message, 3, "    " + line, column + 4)) << line;
}

TEST(LaneText, TellsTheOrderOfItsBits) {
    EXPECT_EQ(
        lanes("RAMB16", 4096, block("hi [15:8];\nlo [0:7];")), "        hi[15:8][0:2047]\n        lo[0:7][0:2047]\n");
    for (const auto& [left, right, ordering] : {std::tuple{7u, 0u, 2u}, {0u, 7u, 1u}, {3u, 3u, 2u}}) {
        u64 first = left;
        u64 second = right;
        EXPECT_EQ(get_bitLane_ordering(&first, &second), ordering);
        EXPECT_EQ(first, std::min(left, right));
        EXPECT_EQ(second, std::max(left, right));
    }
}

TEST(LaneText, HoldsAllItsWordsByDefault) {
    EXPECT_EQ(lanes("RAMB16", 8192, block("a [1:0];\nb [3:2];\nc [5:4];\nd [7:6];")).substr(0, 24),
        "        a[1:0][0:8191]\n ");
}

TEST(LaneText, CountsParityBitsFromFiveBitsOnWhereWidthsHaveParity) {
    const auto addresses = [](const char* word, u64 width) {
        MapText map;
        const MEMORYLocType* memory = get_MEMORY_type_from_name(nullptr, word);
        u64 low = 9;
        u64 high = 9;
        defaultLaneAddresses(memory, width, 100, &low, &high);
        EXPECT_EQ(low, 100u);
        return high - 100 + 1;
    };
    EXPECT_EQ(addresses("RAMB16", 8), 2048u);
    EXPECT_EQ(addresses("RAMB18", 9), 2048u);
    EXPECT_EQ(addresses("RAMB18", 4), 4096u);
    EXPECT_EQ(addresses("RAMB18", 5), 18432u / 5);
    EXPECT_EQ(addresses("RAMB16", 5), 16384u / 5);
    EXPECT_EQ(addresses("RAMB36", 36), 1024u);
}

TEST(LaneText, OfTheGenericMemoryHasNoAddressesUntilItsSpaceIsFinished) {
    EXPECT_EQ(lanes("MEMORY", 4096, block("flash [15:0];")), "        flash[15:0][0:2047]\n");
    EXPECT_EQ(lanes("MEMORY", 4096, block("flash [15:0] [0:2047];")), "        flash[15:0][0:2047]\n");
    const SystemResources resources;
    u64 low = 9;
    u64 high = 9;
    defaultLaneAddresses(get_MEMORY_type_from_token(nullptr, &kGENERIC_MEMORY_KEYWORD), 16, 100, &low, &high);
    EXPECT_EQ(low, 0u);
    EXPECT_EQ(high, 0u);
    delete_MEMORY_extended_types();
}

TEST(LaneText, KeepsTheAddressesThatItGives) {
    EXPECT_EQ(lanes("RAMB16", 2048, block("a [7:0] [100:2147];")), "        a[7:0][100:2147]\n");
}

TEST(LaneText, GoesOnBehindTheBlockAbove) {
    EXPECT_EQ(lanes("RAMB16", 4096, block("a [7:0];") + block("b [7:0];")),
        "        a[7:0][0:2047]\n      block 0x800-0xFFF\n        b[7:0][2048:4095]\n");
}

TEST(LaneText, BeginsAtZeroInEachRange) {
    const std::string range = "ADDRESS_RANGE RAMB16\n";
    EXPECT_EQ(
        lanes("COMBINED", 4096,
            range + block("a [7:0];") + "END_ADDRESS_RANGE;\n" + range + block("b [7:0];") + "END_ADDRESS_RANGE;"),
        "        a[7:0][0:2047]\n"
        "    range RAMB16 0x800-0xFFF bus 8 lane 8 words 2048 devices 1\n"
        "      block 0x800-0xFFF\n"
        "        b[7:0][0:2047]\n");
}

TEST(LaneText, MayNameAnotherMemoryOrItsOwn) {
    EXPECT_EQ(lanes("RAMB16", 2048, block("a ramb16 [7:0];")), "        a[7:0][0:2047]\n");
    EXPECT_EQ(lanes("RAMB16", 2048, block("a RAMB18 [7:0];")), "        a[7:0][0:2303] RAMB18\n");
}

TEST(LaneText, WithACodeIsAnEccLane) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_SPACE ram RAMB16 [0:0xFFF]\nBUS_BLOCK\nhi [15:8];\nlo [7:0];\ne0 eCCH32-7 [22:16];\n"
                       "END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n"),
        0)
        << map.alerts();
    const BusBlockType* read = map.space()->ranges->busBlocks[0];
    EXPECT_EQ(read->laneCount, 2u);
    EXPECT_EQ(read->eccLaneCount, 1u);
    EXPECT_EQ(read->eccType, kECC_H32_7);
    EXPECT_EQ(read->busWidth, 16u);
    EXPECT_EQ(read->eccBusWidth, 7u);
    EXPECT_EQ(read->laneListOrder, kBitLaneListOrderDataFirst);
    EXPECT_EQ(map.space()->deviceCount, 3u);
}

TEST(LaneText, KnowsAllCodes) {
    const char* words[] = {"ECCH32-7", "ECCH64-8", "ECCHSIAO32-7", "ECCHSIAO64-8", "ECCHSIAO128-9"};
    for (u32 i = 0; i < 5; ++i) {
        MapText map;
        EXPECT_EQ(map.read("ADDRESS_SPACE ram RAMB16 [0:0x7FF]\nBUS_BLOCK\ne0 " + std::string(words[i]) +
                           " [15:8];\nu0 [7:0];\nEND_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n"),
            0)
            << map.alerts();
        EXPECT_EQ(map.space()->ranges->busBlocks[0]->eccLanes[0]->eccType, i + 1);
        EXPECT_EQ(map.space()->ranges->busBlocks[0]->laneListOrder, kBitLaneListOrderEccFirst);
    }
}

TEST(LaneText, RefusesAFileWithoutAName) {
    for (const char* word : {"INPUT", "OUTPUT", "INIT"}) {
        MapText map;
        EXPECT_EQ(map.read("ADDRESS_SPACE ram RAMB16 [0:0x7FF]\nBUS_BLOCK\na [7:0] " + std::string(word) +
                           " = \"\";\nEND_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n"),
            3);
        EXPECT_NE(map.alerts().find("ERROR:Lanefill:55 - A null file name was given for a 'mem' file.\n"
                                    "   Line #3"),
            std::string::npos)
            << map.alerts();
    }
}

TEST(LaneText, TakesItsAttributesInAnyMixAndTheLastOfEach) {
    EXPECT_EQ(lanes("RAMB16", 2048,
                  block("a [7:0] INIT = i.mem LOC = X0Y1 INPUT = \"my dir/in.mem\" OUTPUT = out.mem INIT = j.mem;")),
        "        a[7:0][0:2047] LOC=X0Y1 INIT=j.mem INPUT=my dir/in.mem OUTPUT=out.mem\ninit a\n");
    EXPECT_EQ(
        lanes("RAMB16", 2048, block("a [7:0] LOC = r1c0 PLACED = X2Y3;")), "        a[7:0][0:2047] PLACED=X2Y3\n");
    EXPECT_EQ(lanes("RAMB16", 2048, block("a [7:0] LOC = X0Y1;")), lanes("RAMB16", 2048, block("a [7:0] LOC = r1c0;")));
}

TEST(LaneText, CountsWhatIsLocated) {
    MapText map;
    ASSERT_EQ(
        map.read("ADDRESS_SPACE ram RAMB16 [0:0xFFF]\nBUS_BLOCK\nhi [15:8] LOC = X0Y1;\nlo [7:0];\nEND_BUS_BLOCK;\n"
                 "END_ADDRESS_SPACE;\n"),
        0);
    EXPECT_EQ(map.space()->ranges->locatedDeviceCount, 1u);
}

TEST(LaneText, MayBeRelative) {
    EXPECT_EQ(lanes("RAMB16", 4096, block("*/hi [15:8];\n*/lo [7:0];")),
        "        */hi[15:8][0:2047]\n        */lo[7:0][0:2047]\n");
    MapText map;
    ASSERT_EQ(map.read(laneSpace("/u0 [7:0];")), 0);
    EXPECT_TRUE(map.lane()->lane->isRelativePath);
    EXPECT_TRUE(map.space()->ranges->busBlocks[0]->hasRelativePaths);
}

TEST(LaneText, MayBeNamedAsKeywordsAre) {
    EXPECT_EQ(lanes("RAMB16", 4096, block("ramb16 [15:8];\narm/u0 [7:0];")),
        "        ramb16[15:8][0:2047]\n        arm/u0[7:0][0:2047]\n");
}

TEST(LaneText, MayHaveDirectivesAndMacrosAround) {
    EXPECT_EQ(
        lanes("RAMB16", 8192,
            "#function lane(n)\nram_##n [2*n+1:2*n];\n#endfunction\nBUS_BLOCK\n#for i 0; i < 4; i i+1\nlane(i)\n#endfor\nEND_BUS_BLOCK;\n"),
        "        ram_0[1:0][0:8191]\n        ram_1[3:2][0:8191]\n        ram_2[5:4][0:8191]\n        ram_3[7:6][0:8191]\n");
}

TEST(LaneText, MayTouchItsBits) {
    EXPECT_EQ(lanes("RAMB16", 4096, block("gen[0].ram[15:8];\ngen[1].ram[7:0];")),
        "        gen[0].ram[15:8][0:2047]\n        gen[1].ram[7:0][0:2047]\n");
}

TEST(LaneText, IsEnteredByItsNameInItsMap) {
    MapText map;
    ASSERT_EQ(map.read(byteSpace("a", "u0")), 0);
    EXPECT_EQ(map.read("\n" + byteSpace("b", "u0", "0x1000")), 3);
    EXPECT_EQ(map.alerts(), alertAt("35 - Duplicate instance name usage in address space 'b'.", 4, "    u0 [7:0];", 4));
    // A processor's map has names of its own.
    EXPECT_EQ(map.read("ADDRESS_MAP cpu ARM 0\n" + byteSpace("b", "u0") + "END_ADDRESS_MAP;"), 0) << map.alerts();
}

TEST(LaneText, LeavesItsNameFreeWhenItsSpaceFails) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_SPACE x RAMB16 [0:0x7FF] BUS_BLOCK u0 [7:0] INIT = a.mem; oops"), 3);
    EXPECT_EQ(map->initLanes, nullptr);
    EXPECT_EQ(map.read(byteSpace("x", "u0")), 0) << map.alerts();
}

TEST(LaneText, ComplainsOfItsWords) {
    expectAlert("u0 rambx [7:0];", "6 - Illegal token 'rambx', 'opening range bracket '['' expected.", 3);
    expectAlert("u0 COMBINED [7:0];",
        "104 - Unknown memory type, 'COMBINED', for the specified device ''. Or unknown user defined memory type.", 3);
    expectAlert("u0 [7:0] loc = X0Y0;", "15 - Missing statement terminator. 'loc' found, ';' expected.", 9);
    expectAlert("u0 [7:0] LOC X0Y0;", "11 - Unexpected symbol 'X0Y0', '=' expected.", 13);
    expectAlert("u0 [7:0] LOC = Q0;", "11 - Unexpected symbol 'Q0', 'R or X' expected.", 15);
    expectAlert("u0 [7:0] LOC = X0R0;", "11 - Unexpected symbol 'X0R0', 'C or Y' expected.", 15);
    expectAlert("u0 [7:0] PLACED = RC;", "6 - Illegal token 'RC', 'numeric BRAM LOC value' expected.", 18);
    expectAlert("u0 [7:0] INPUT a.mem;", "11 - Unexpected symbol 'a.mem', '=' expected.", 15);
    MapText map;
    EXPECT_EQ(map.read(laneSpace("u0 [7:0]")), 3);
    EXPECT_EQ(map.alerts(),
        alertAt("15 - Missing statement terminator. 'END_BUS_BLOCK' found, ';' expected.", 4, "  END_BUS_BLOCK;", 2));
}

// One lane of 36 bits on a device, with text behind it.
std::string locatedLane(const std::string& name, const std::string& rest) {
    return "ADDRESS_SPACE " + name + " RAMB36 [0:0x11FF]\nBUS_BLOCK\n" + name + " [35:0] LOC = X0Y12;\n" + rest;
}

TEST(LaneText, LeavesItsLocationFreeWhenItsSpaceFails) {
    const std::string end = "END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n";
    // At the next lane, at the end of the block, at the end of the space, and in the checks of the whole space.
    for (const std::string& rest : {std::string("oops"), std::string("END_BUS_BLOCK x"),
             std::string("END_BUS_BLOCK;\nEND_ADDRESS_MAP;"), "more [71:36] LOC = X0Y13;\n" + end}) {
        MapText map({}, "tq7a5");
        EXPECT_EQ(map.read(locatedLane("first", rest)), 3) << rest;
        EXPECT_EQ(map.read(locatedLane("second", end)), 0) << rest << map.alerts();
        EXPECT_EQ(map.read(locatedLane("third", end)), 3);
        EXPECT_EQ(map.alerts(), alertAt("105 - Duplicate BRAM location constraint, 'X0Y12'. Another BRAM is already "
                                        "LOC'ed to this location.\n    Devices with multiple BRAM sizes can have "
                                        "different constraint values for the same location.",
                                    3, "third [35:0] LOC = X0Y12;", 13));
    }
}

TEST(LaneText, OfATemplateLeavesItsLocationFreeToo) {
    MapText map({}, "tq7a5");
    EXPECT_EQ(map.read("ADDRESS_TEMPLATE t RAMB36 [0x1200]\nBUS_BLOCK\nfirst [35:0] LOC = X0Y12; oops"), 3);
    EXPECT_EQ(map.read(locatedLane("second", "END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n")), 0) << map.alerts();
}

TEST(LaneText, MustNotBeLocatedOutsideOfTheDevice) {
    MapText map({}, "tq7a5");
    EXPECT_EQ(map.read("ADDRESS_SPACE x RAMB36 [0:0x11FF]\nBUS_BLOCK\nu0 [35:0] LOC = X99Y12;\n"), 3);
    EXPECT_EQ(map.alerts(),
        alertAt("107 - Illegal attempt to LOC BRAM instance 'u0' to 'X99Y12'.", 3, "u0 [35:0] LOC = X99Y12;", 10));
}

TEST(LaneText, OfAMemoryThatIsNoBlockRamHasNoLocation) {
    expectAlert("u0 [7:0] LOC = X0Y0;",
        "13 - Unexpected keyword 'LOC', LOC/PLACED constraints aren't allowed in MEMORY defined ADDRESS_BLOCKs.", 9,
        "MEMORY");
    MapText map;
    const std::string line = "u0 [7:0] PLACED = X0Y0;";
    EXPECT_EQ(map.read("DEFINE_MEMORY_TYPE MINE [2048] 8;\nADDRESS_SPACE ram MINE [0:0x7FF]\nBUS_BLOCK\n" + line), 3);
    EXPECT_EQ(map.alerts(),
        alertAt("13 - Unexpected keyword 'PLACED', LOC/PLACED constraints aren't allowed in MEMORY defined "
                "ADDRESS_BLOCKs.",
            4, line, 9));
}

TEST(LaneText, OfAnotherMemoryThanItsRangeMayHaveALocation) {
    MapText map;
    const std::string start = "DEFINE_MEMORY_TYPE MINE [2048] 8;\nADDRESS_SPACE ram MINE [0:0x7FF]\nBUS_BLOCK\n";
    EXPECT_EQ(map.read(start + "u0 RAMB16 [7:0] LOC = X1Y2;\nEND_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n"), 0) << map.alerts();
    EXPECT_EQ(map.lane()->lane->locRow, 2u);
    EXPECT_EQ(map.space()->ranges->locatedDeviceCount, 1u);
}

TEST(LaneText, IsOfAMemoryThatTheDeviceHas) {
    MapText map({}, "tq7a5");
    const std::string message =
        "104 - Unknown memory type, 'RAMB4', for the specified device 'tq7a5'. Or unknown user defined memory type.";
    EXPECT_EQ(map.read(laneSpace("u0 RAMB4 [7:0];")), 3);
    EXPECT_EQ(map.alerts(), alertAt(message, 3, "    u0 RAMB4 [7:0];", 7));
    EXPECT_EQ(map.read(laneSpace("u0 [7:0];", "RAMB4")), 3);
    EXPECT_EQ(map.alerts(), alertAt(message, 1, "ADDRESS_SPACE ram RAMB4 [0:0x7FF]", 18));
}

TEST(LaneText, GoesOnBehindTheFirstDataLaneOfTheBlockAbove) {
    EXPECT_EQ(lanes("RAMB16", 4096, block("e ECCH32-7 [14:8];\na [7:0] [0:99];") + block("b [7:0];")),
        "        a[7:0][0:99]\n        e[14:8][0:2339] ECCH32-7\n      block 0x800-0xFFF\n"
        "        b[7:0][100:2147]\n");
}

TEST(BlockText, IsCheckedByTheCodeOfItsFirstEccLane) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_SPACE ram RAMB16 [0:0x7FF]\nBUS_BLOCK\nd [7:0];\ne ECCHSIAO32-7 [14:8];\n"
                       "f ECCH64-8 [22:15];\nEND_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n"),
        0)
        << map.alerts();
    const BusBlockType* read = map.space()->ranges->busBlocks[0];
    EXPECT_EQ(read->eccType, kECC_HSIAO32_7);
    EXPECT_EQ(read->eccBusWidth, 15u);
    EXPECT_EQ(read->eccLanes[1]->eccType, kECC_H64_8);
}

TEST(BlockText, MustNotBeEmpty) {
    expectAlert("END_BUS_BLOCK;", "13 - Unexpected keyword 'END_BUS_BLOCK', BUS_BLOCK definition is empty.", 0);
    MapText map;
    EXPECT_EQ(map.read(laneSpace("e0 ECCH32-7 [7:0];")), 3); // an ECC lane is no data
    EXPECT_EQ(map.alerts(),
        alertAt("13 - Unexpected keyword 'END_BUS_BLOCK', BUS_BLOCK definition is empty.", 4, "  END_BUS_BLOCK;", 2));
}

TEST(BlockText, NeedsItsEnd) {
    MapText map;
    EXPECT_EQ(map.read(laneSpace("u0 [7:0];\nBUS_BLOCK")), 3);
    EXPECT_EQ(map.alerts(),
        alertAt("14 - Missing keyword. 'BUS_BLOCK' found, 'END_ADDRESS_RANGE' expected.", 4, "BUS_BLOCK", 0));
    EXPECT_EQ(map.read("ADDRESS_SPACE ram RAMB16 [0:0x7FF] BUS_BLOCK u0 [7:0]; END_BUS_BLOCK x"), 3);
    EXPECT_EQ(map.alerts(), alertAt("15 - Missing statement terminator. 'x' found, ';' expected.", 1,
                                "ADDRESS_SPACE ram RAMB16 [0:0x7FF] BUS_BLOCK u0 [7:0]; END_BUS_BLOCK x", 69));
}

} // namespace

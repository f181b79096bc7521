// lane_checks_test.cpp - the lanes of one block: widths, paths, bits.
// SPDX-License-Identifier: Apache-2.0
#include "validation_fixture.h"

#include <sstream>

using namespace memdata::testing;

namespace {

class LaneChecks : public ValidationTest {
protected:
    // The bits of a block of the space "ram" alone. A lane is "a[7:0]"; sizes play no part.
    std::string bits(const std::string& lanes) {
        AddressSpaceDefType* space = ram(0, 0xFFF, "RAMB16", {lanes});
        return said(check_bitLane_gaps_overlaps(space->name, space->ranges->busBlocks[0]));
    }
};

// "a0[0:0] a1[1:1] ..."
std::string one_bit_lanes(u64 count) {
    std::ostringstream text;
    for (u64 i = 0; i < count; ++i) text << "a" << i << "[" << i << ":" << i << "] ";
    return text.str();
}

} // namespace

TEST_F(LaneChecks, TwoLanesThatFillTheBusPass) {
    EXPECT_EQ(bits("lo[7:0] hi[15:8]"), "0:");
}

TEST_F(LaneChecks, ABitOfTwoLanesIsReportedEachTime) {
    EXPECT_EQ(bits("lo[3:0] hi[5:2]"), "3: ERROR:Lanefill:21 - Bit lane OVERLAP in ADDRESS_SPACE 'ram'.\n"
                                       "    'lo [3:0]'\n"
                                       "    'hi [5:2]'\n"
                                       " ERROR:Lanefill:21 - Bit lane OVERLAP in ADDRESS_SPACE 'ram'.\n"
                                       "    'lo [3:0]'\n"
                                       "    'hi [5:2]'\n"
                                       " ERROR:Lanefill:20 - Bit lane GAP after Bit Lane, in ADDRESS_SPACE 'ram'.\n"
                                       "    'hi [5:2]'\n");
}

TEST_F(LaneChecks, ALaneGivenAgainOverlapsTheFirst) {
    const std::string text = bits("lo[7:0] hi[15:8] again[15:8]");
    EXPECT_EQ(text.find("3: ERROR:Lanefill:21 - Bit lane OVERLAP in ADDRESS_SPACE 'ram'.\n"
                        "    'hi [15:8]'\n"
                        "    'again [15:8]'\n"),
        0u);
}

TEST_F(LaneChecks, OfThreeLanesOnOneBitTheFirstAndTheLastAreNamed) {
    EXPECT_EQ(bits("a[0:0] b[0:0] c[0:0]"),
        "3: ERROR:Lanefill:21 - Bit lane OVERLAP in ADDRESS_SPACE 'ram'.\n"
        "    'a [0:0]'\n"
        "    'c [0:0]'\n"
        " ERROR:Lanefill:20 - Bit lane GAP after Bit Lane, in ADDRESS_SPACE 'ram'.\n"
        "    'a [0:0]'\n");
}

TEST_F(LaneChecks, BitsMissingAtTheBeginningAreReportedWithTheLaneBehindThem) {
    EXPECT_EQ(bits("hi[15:8] lo[7:4]"), "3: ERROR:Lanefill:19 - Bit lane GAP before Bit Lane, in ADDRESS_SPACE 'ram'.\n"
                                        "    'lo [7:4]'\n");
}

TEST_F(LaneChecks, BitsMissingBetweenLanesAreReportedWithBoth) {
    EXPECT_EQ(bits("lo[0:7] hi[16:23]"), "3: ERROR:Lanefill:20 - Bit lane GAP after Bit Lane, in ADDRESS_SPACE 'ram'.\n"
                                         "    'lo [0:7]'\n"); // no more than 16 bits are looked at
    map.destroy();
    TestMap other;
    AddressSpaceDefType* space = other.space("ram", 0, "RAMB16", {"lo[0:7] hi[10:17]"});
    EXPECT_EQ(said(check_bitLane_gaps_overlaps("x", space->ranges->busBlocks[0])),
        "3: ERROR:Lanefill:18 - Bit lane GAP in ADDRESS_SPACE 'x'.\n"
        "    'lo [0:7]'\n"
        "    'hi [10:17]'\n");
}

TEST_F(LaneChecks, TheBitThatEndsAGapTellsOfTheGapOnly) {
    EXPECT_EQ(bits("lo[3:0] hi[7:6] more[6:5]"), "3: ERROR:Lanefill:18 - Bit lane GAP in ADDRESS_SPACE 'ram'.\n"
                                                 "    'lo [3:0]'\n"
                                                 "    'more [6:5]'\n"
                                                 " ERROR:Lanefill:21 - Bit lane OVERLAP in ADDRESS_SPACE 'ram'.\n"
                                                 "    'hi [7:6]'\n"
                                                 "    'more [6:5]'\n");
    map.destroy();
    TestMap other;
    AddressSpaceDefType* space = other.space("ram", 0, "RAMB16", {"lo[3:0] hi[5:5] more[5:5]"});
    EXPECT_EQ(said(check_bitLane_gaps_overlaps("ram", space->ranges->busBlocks[0])),
        "3: ERROR:Lanefill:18 - Bit lane GAP in ADDRESS_SPACE 'ram'.\n"
        "    'lo [3:0]'\n"
        "    'hi [5:5]'\n");
}

TEST_F(LaneChecks, CheckLanesAboveTheDataAreNotLookedAt) {
    EXPECT_EQ(bits("d[7:0] e[20:14] ECCH32-7"), "0:");
}

TEST_F(LaneChecks, CheckLanesBelowTheDataHideItsLastBits) {
    EXPECT_EQ(bits("e[6:0] ECCH32-7 d[14:7] f[40:33]"),
        "3: ERROR:Lanefill:20 - Bit lane GAP after Bit Lane, in ADDRESS_SPACE 'ram'.\n"
        "    'd [14:7]'\n");
    map.destroy();
    TestMap other;
    AddressSpaceDefType* space = other.space("ram", 0, "RAMB16", {"e[6:0] ECCH32-7 d[14:7]"});
    EXPECT_EQ(said(check_bitLane_gaps_overlaps("ram", space->ranges->busBlocks[0])), "0:");
}

TEST_F(LaneChecks, ACheckLaneOverDataIsAnOverlap) {
    EXPECT_EQ(bits("d[1:0] e[0:0] ECCH32-7"), "3: ERROR:Lanefill:21 - Bit lane OVERLAP in ADDRESS_SPACE 'ram'.\n"
                                              "    'd [1:0]'\n"
                                              "    'e [0:0]'\n");
}

TEST_F(LaneChecks, TheHighestBusBitIs2047) {
    EXPECT_EQ(bits(one_bit_lanes(2048)), "0:");
}

TEST_F(LaneChecks, ABusBitAbove2047IsRefused) {
    EXPECT_EQ(bits(one_bit_lanes(2048) + "above[2048:2048]"),
        "3: ERROR:Lanefill:86 - Illegal bus bit in ADDRESS_SPACE 'ram'.\n"
        "    'above [2048:2048]'\n"
        "    The highest bit of a bus is 2047.\n");
}

TEST_F(LaneChecks, ACheckLaneAbove2047IsRefusedToo) {
    EXPECT_EQ(bits("d[7:0] e[5000000000:4999999999] ECCH32-7"),
        "3: ERROR:Lanefill:86 - Illegal bus bit in ADDRESS_SPACE 'ram'.\n"
        "    'e [5000000000:4999999999]'\n"
        "    The highest bit of a bus is 2047.\n");
}

TEST_F(LaneChecks, LanesThatOverlapEverywhereCanNotLeaveTheUsageArray) {
    std::string lanes;
    for (int i = 0; i < 40; ++i) lanes += "a" + std::to_string(i) + "[2047:0][0:0] ";
    AddressSpaceDefType* space = ram(0, 0xFFF, "RAMB16", {lanes});
    const std::string text = said(check_bitLane_gaps_overlaps("ram", space->ranges->busBlocks[0]));
    EXPECT_NE(text.find("20 - Bit lane GAP after Bit Lane, in ADDRESS_SPACE 'ram'.\n    'a0 [2047:0]'\n"), text.npos);
}

TEST_F(LaneChecks, ABlockWithoutLanesHasNoBits) {
    EXPECT_EQ(bits(""), "0:");
    EXPECT_EQ(check_bitLane_gaps_overlaps("ram", nullptr), 3);
}

TEST_F(LaneChecks, AWidthThatTheDeviceDoesNotHaveIsReportedOnce) {
    AddressSpaceDefType* space = ram(0, 0xFFF, "RAMB16", {"a[8:0] b[17:9]"});
    printWidths(space, "1, 2, 4, 8, 16 and 32");
    EXPECT_EQ(finish(space), "3: ERROR:Lanefill:26 - Illegal bit lane width in ADDRESS_SPACE 'ram'.\n"
                             "    'a [8:0]' is 9 bits wide. Only 1, 2, 4, 8, 16 and 32 bit widths are allowed for this "
                             "device.\n");
}

TEST_F(LaneChecks, TheWidthIsFoundByItsIndex) {
    AddressSpaceDefType* space = ram(0, 0xFFF, "RAMB18", {"a[8:0] b[17:9]"});
    BitLaneGridElemType* element = map.lane("a");
    const MEMORYType* type = space->ranges->memory->type;
    EXPECT_EQ(check_for_valid_bitLanes(element, type), 3);
    EXPECT_EQ(element->parityWidth, 1u);
    EXPECT_EQ(element->lane->parityWidth, 1u);
    element->laneWidth = 8;
    EXPECT_EQ(check_for_valid_bitLanes(element, type), -1);
    element->laneWidth = 0; // the end of the list is no width
    EXPECT_EQ(check_for_valid_bitLanes(element, type), -1);
    EXPECT_EQ(check_for_valid_bitLanes(element, nullptr), -1);
    EXPECT_EQ(check_for_valid_bitLanes(nullptr, type), -1);
}

TEST_F(LaneChecks, AFullListOfWidthsHasNoEndMark) {
    std::vector<u32> widths;
    for (u32 i = 1; i <= 16; ++i) widths.push_back(i);
    map.define("mine", 64, widths);
    AddressSpaceDefType* space = ram(0, 63, "mine", {"a[15:0]"});
    EXPECT_EQ(check_for_valid_bitLanes(map.lane("a"), space->ranges->memory->type), 15);
    map.lane("a")->laneWidth = 17;
    EXPECT_EQ(check_for_valid_bitLanes(map.lane("a"), space->ranges->memory->type), -1);
}

TEST_F(LaneChecks, CheckLanesMayHaveAnyWidth) {
    EXPECT_EQ(finish(ram(0, 0x1FFF, "RAMB16", {"e[38:32] ECCH32-7 a[31:24] b[23:16] c[15:8] d[7:0]"})), "0:");
}

TEST_F(LaneChecks, MoreThan64DataBitsAreRefused) {
    map.define("wide", 0x1000, {72, 128});
    EXPECT_EQ(finish(ram(0, 0xFFF, "wide", {"a[127:0]"})),
        "3: ERROR:Lanefill:26 - Illegal bit lane width in ADDRESS_SPACE 'ram'.\n"
        "    'a [127:0]' is 128 bits wide. Only 1 to 64 bit widths are allowed for this device.\n");
}

TEST_F(LaneChecks, SeventyTwoBitsWithParityAreLegal) {
    EXPECT_EQ(finish(ram(0, 4607, "RAMB36", {"a[71:0]"})), "0:");
}

TEST_F(LaneChecks, ACheckLaneOfMoreThan64BitsIsRefused) {
    EXPECT_EQ(finish(ram(0, 0x7FF, "RAMB16", {"d[7:0] e[72:8] ECCH64-8"})),
        "3: ERROR:Lanefill:26 - Illegal bit lane width in ADDRESS_SPACE 'ram'.\n"
        "    'e [72:8]' is 65 bits wide. Only 1 to 64 bit widths are allowed for this device.\n");
}

TEST_F(LaneChecks, CheckLanesNeedABusOf128BitsAtMost) {
    std::string lanes;
    for (int i = 0; i < 5; ++i)
        lanes += "d" + std::to_string(i) + "[" + std::to_string(i * 32 + 31) + ":" + std::to_string(i * 32) + "] ";
    EXPECT_EQ(finish(ram(0, 5 * 2048 - 1, "RAMB16", {lanes + "e[168:160] ECCHSIAO128-9"})),
        "3: ERROR:Lanefill:86 - Illegal bus width in ADDRESS_SPACE 'ram'.\n"
        "    ECC lanes check a bus of up to 128 bits, but this one has 160.\n");
}

TEST_F(LaneChecks, LanesOfDifferentWidthsAreReportedOnce) {
    EXPECT_EQ(finish(ram(0, 6143, "RAMB16", {"a[7:0] b[15:8] c[19:16] */"})),
        "3: ERROR:Lanefill:25 - Inconsistent bit lane width in ADDRESS_SPACE 'ram'.\n"
        "    'b [15:8]' is by 8\n"
        "    'c [19:16]' is by 4\n");
}

TEST_F(LaneChecks, MixedPathsInABlockAreReported) {
    EXPECT_EQ(finish(ram(0, 6143, "RAMB16", {"a[7:0] b[15:8] */ c[23:16] */"})),
        "3: ERROR:Lanefill:95 - Inconsistent instance path 'b', in ADDRESS_SPACE 'ram'.\n"
        "    All instance paths in an ADDRESS_SPACE must be either relative or absolute\n");
}

TEST_F(LaneChecks, LanesOfBothBitOrdersPass) {
    EXPECT_EQ(finish(ram(0, 0xFFF, "RAMB16", {"a[0:7] b[15:8]"})), "0:");
}

TEST_F(LaneChecks, ABlockThatIsNotAsLargeAsItsLanesIsReported) {
    AddressSpaceDefType* space = ram(0x100, 0x10FF, "RAMB16", {"a[7:0] b[15:8]"});
    EXPECT_EQ(finish(space), "0:");
    BusBlockType* block = space->ranges->busBlocks[0];
    block->endAddress += 4;
    EXPECT_EQ(said(check_bitLanes(space, space->ranges, block)),
        "3: ERROR:Lanefill:27 - Inconsistent bus block definition in ADDRESS_SPACE 'ram'.\n"
        "    'ADDRESS_RANGE [0x00000100:0x00001103]' is defined as 4100 bytes,\n"
        "    but 4096 Bit Lane bytes was found.\n");
    EXPECT_EQ(check_bitLanes(nullptr, space->ranges, block), 3);
    EXPECT_EQ(check_bitLanes(space, nullptr, block), 3);
    EXPECT_EQ(check_bitLanes(space, space->ranges, nullptr), 3);
}

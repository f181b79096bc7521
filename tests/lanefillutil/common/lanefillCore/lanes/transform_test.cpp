// transform_test.cpp - bytes of a segment on the lanes of a space: order, partial words, parity, check lanes.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/bus_blocks.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/lane_words.h"
#include "support/allocation_faults.h"
#include "support/map_builder.h"
#include "support/map_dump.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace memdata::testing {
namespace {

using Bytes = std::vector<u8>;

int store(AddressSpaceDefType* space, u64 address, Bytes bytes) {
    if (!allocate_addressSpace_transform_buffers(space)) return 7;
    return transform_segment_data("a.elf", space, address, bytes.data(), bytes.size());
}

std::string stored(AddressSpaceDefType* space, u64 address, const Bytes& bytes) {
    EXPECT_EQ(store(space, address, bytes), 0);
    return dumpData(space);
}

TEST(Transform, AnAddressInMidBusWordStartsAtItsLaneAndEarlierLanesTakeTheNextWord) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"l0[31:24] l1[23:16] l2[15:8] l3[7:0]"});
    EXPECT_EQ(stored(space, 0x12, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66}), "lane l0 5: 33\n"
                                                                         "lane l1 5: 44\n"
                                                                         "lane l2 4: 11 55\n"
                                                                         "lane l3 4: 22 66\n");
}

TEST(Transform, TheStartingPlaceIsCountedInLaneSteps) {
    unsigned long word = 0;
    unsigned long count = 0;
    EXPECT_EQ(calculate_starting_bitLane_offset_positions(false, 0, 0x7FF, 4, 8, 0x12, &word, &count), 2u);
    EXPECT_EQ(word, 4u);
    EXPECT_EQ(count, 2030u);
}

TEST(Transform, TheStartingLaneIsTakenOfTheAbsoluteAddress) {
    unsigned long word = 0;
    unsigned long count = 0;
    EXPECT_EQ(calculate_starting_bitLane_offset_positions(false, 0x1002, 0x1801, 4, 8, 0x1002, &word, &count), 2u);
    EXPECT_EQ(word, 0u);
    EXPECT_EQ(count, 0x800u);
}

TEST(Transform, UnderWordAddressingAddressesCountWords) {
    unsigned long word = 0;
    unsigned long count = 0;
    EXPECT_EQ(calculate_starting_bitLane_offset_positions(true, 100, 199, 2, 18, 105, &word, &count), 1u);
    EXPECT_EQ(word, 2u);
    EXPECT_EQ(count, 95u);
}

TEST(Transform, ThePlaceOfAnAddressNearTheEndOfAllAddressesDoesNotWrap) {
    unsigned long word = 0;
    unsigned long count = 0;
    EXPECT_EQ(calculate_starting_bitLane_offset_positions(
                  false, 0xFFFFFFFFFFFFF000, 0xFFFFFFFFFFFFFFFF, 4, 8, 0xFFFFFFFFFFFFFFFE, &word, &count),
        2u);
    EXPECT_EQ(word, 0x3FFu);
    EXPECT_EQ(count, 2u);
}

TEST(Transform, WidthsAndLanesOfNothingHaveNoPlace) {
    unsigned long word = 1;
    unsigned long count = 1;
    EXPECT_EQ(calculate_starting_bitLane_offset_positions(false, 0, 9, 0, 8, 5, &word, &count), 0u);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(calculate_starting_bitLane_offset_positions(false, 0, 9, 4, 0, 5, &word, &count), 0u);
    EXPECT_EQ(count, 0u);
}

TEST(Transform, LaneAddressesTruncate) {
    EXPECT_EQ(convert_from_byte_to_bitLane_address(9, 10), 8u);
    EXPECT_EQ(convert_from_byte_to_bitLane_address(16, 3), 1u);
    EXPECT_EQ(convert_from_bitLane_address_to_byte(9, 8), 9u);
    EXPECT_EQ(convert_from_bitLane_address_to_byte(4, 3), 1u);
}

TEST(Transform, ALaneHoldsItsWordsLowByteFirstAndTheFirstBytesAreTheTopBitsOfTheFirstLane) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"hi[31:16] lo[15:0]"});
    EXPECT_EQ(stored(space, 0, {0xAA, 0xBB, 0xCC, 0xDD}), "lane hi 0: BB AA\n"
                                                          "lane lo 0: DD CC\n");
}

TEST(Transform, AnAddressInsideALaneWordKeepsTheBytesAheadOfIt) {
    TestMap map;
    map.define("SMALL", 16, {16, 32});
    AddressSpaceDefType* space = map.space("ram", 0x100, "SMALL", {"w[31:0]"});
    EXPECT_EQ(stored(space, 0x104, {1, 2, 3, 4, 5, 6, 7, 8}), "lane w 4: 04 03 02 01 08 07 06 05\n");
    EXPECT_EQ(stored(space, 0x106, {0xAA, 0xBB, 0xCC}), "lane w 4: BB AA 02 01 08 07 06 CC\n");
}

TEST(Transform, ASegmentInsideOneLaneWordChangesItsBytesAlone) {
    TestMap map;
    map.define("SMALL", 16, {16, 32});
    AddressSpaceDefType* space = map.space("ram", 0, "SMALL", {"w[31:0]"});
    EXPECT_EQ(stored(space, 0, {1, 2, 3, 4}), "lane w 0: 04 03 02 01\n");
    EXPECT_EQ(stored(space, 1, {0xAA, 0xBB}), "lane w 0: 04 BB AA 01\n");
}

TEST(Transform, AnAddressInsideALaneWordStandsRightForLittleEndianProcessorsToo) {
    TestMap map;
    map.define("SMALL", 16, {16, 32});
    map.map("cpu", "ARM", 1);
    AddressSpaceDefType* space = map.space("ram", 0, "SMALL", {"hi[31:16] lo[15:0]"});
    // Lanes of little-endian processors are filled from the low one, low byte first.
    const std::string whole = stored(space, 0, {1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(store(space, 0, {1, 2, 3, 4, 5, 6, 7, 8}), 0);
    EXPECT_EQ(stored(space, 3, {4, 5}), whole);
}

TEST(Transform, AnAddressInsideAMirroredLaneWordKeepsTheBytesAheadOfIt) {
    TestMap map;
    map.define("SMALL", 16, {16, 32});
    AddressSpaceDefType* space = map.space("ram", 0, "SMALL", {"w[0:31]"});
    const std::string whole = stored(space, 0, {1, 2, 3, 4});
    EXPECT_EQ(stored(space, 2, {3, 4}), whole);
}

TEST(Transform, ASegmentFromInsideAWordToTheEndOfTheSpaceIsWhole) {
    TestMap map;
    map.define("SMALL", 8, {32});
    AddressSpaceDefType* space = map.space("ram", 0, "SMALL", {"w[31:0]"});
    EXPECT_EQ(stored(space, 2, {1, 2, 3, 4, 5, 6}), "lane w 0: 02 01 00 00 06 05 04 03\n");
}

TEST(Transform, AWordThatFindsNoRoomInItsLaneDoesNotCountAsWritten) {
    TestMap map;
    // Addresses count the parity bits, which lanes of one bit do not have.
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"a[0:0] e[7:0] ECCH32-7"});
    EXPECT_EQ(stored(space, 2100, {0xFF}), "");
    const BusBlockType* block = space->ranges->busBlocks[0];
    EXPECT_EQ(block->lanes[0]->lane->laneState, 0u);
    EXPECT_EQ(block->eccLanes[0]->lane->laneState, 0u);
    EXPECT_EQ(store(space, 2047, {0xFF}), 0);
    EXPECT_EQ(block->lanes[0]->lane->laneState, 8u);
    EXPECT_EQ(block->eccLanes[0]->lane->laneState, 1u);
}

TEST(Transform, ParityBitsStandRightAlignedInAHexDigitAheadOfTheDataBits) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"p[8:0]"}, {.wordAddressing = true});
    // 000 1 10101011, then 010 1: the source ends behind the parity bit of the second word.
    EXPECT_EQ(stored(space, 0, {0x1A, 0xB5}), "lane p 0: AB\n"
                                              "parity p 0: 03\n");
}

TEST(Transform, AParityBitGoesToItsBitCountedFromTheLowEnd) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"p[8:0]"}, {.wordAddressing = true});
    // Nine words of 12 bits, the parity bit set in the first, second and ninth; a digit of pad at the end.
    EXPECT_EQ(stored(space, 0, {0x10, 0x11, 0x02, 0x00, 0x30, 0x04, 0x00, 0x50, 0x06, 0x00, 0x70, 0x08, 0x10, 0x90}),
        "lane p 0: 01 02 03 04 05 06 07 08 09\n"
        "parity p 0: 03 01\n");
}

TEST(Transform, ASourceThatEndsInsideAWordKeepsTheOldLowBits) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0]"});
    ASSERT_EQ(store(space, 0, {0x11, 0x22, 0x33, 0x44}), 0);
    EXPECT_EQ(stored(space, 0, {0xAA, 0xBB}), "lane w 0: 44 33 BB AA\n"); // 0xAABB3344
}

TEST(Transform, ASourceThatEndsInsideASwappedWordKeepsTheOldLowBitsOfItsLogicalForm) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0]"});
    space->ranges->busBlocks[0]->lanePitch = 32;
    ASSERT_EQ(store(space, 0, {0x11, 0x22, 0x33, 0x44}), 0);
    EXPECT_EQ(stored(space, 0, {0xAA, 0xBB}), "lane w 0: AA BB 33 44\n");
}

// All that a source can leave of a word's data bits is the word itself: it is not turned round a second time.
TEST(Transform, ASourceThatEndsBehindTheParityBitsKeepsAMirroredWord) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"p[0:8]"}, {.wordAddressing = true});
    ASSERT_EQ(store(space, 0, {0x00, 0x10, 0x01}), 0);
    EXPECT_EQ(dumpData(space), "lane p 0: 80 80\n");
    EXPECT_EQ(stored(space, 0, {0x00, 0x10}), "lane p 0: 80 80\n");
}

TEST(Transform, ASourceThatEndsAtALaneInsideABusWordLeavesTheOtherLanes) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[15:8] b[7:0]"});
    ASSERT_EQ(store(space, 0, {0x11, 0x22}), 0);
    EXPECT_EQ(stored(space, 0, {0x99}), "lane a 0: 99\n"
                                        "lane b 0: 22\n");
}

TEST(Transform, AnAddressInNoRangeStoresNothing) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(stored(space, 0x4000, {0x11}), "");
}

TEST(Transform, DataRunsOnThroughBlocksAndRangesAndEndsWithTheLast) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, {{"RAMB4", {"a[7:0]", "b[7:0]"}}, {"RAMB4", {"c[7:0]"}}});
    Bytes bytes(512 * 2 + 600, 0);
    bytes[0] = 1;
    bytes[511] = 2;
    bytes[512] = 3;
    bytes[1024] = 4;
    bytes[1535] = 5;
    bytes[1536] = 6; // behind the last block
    EXPECT_EQ(stored(space, 0, bytes), "lane a 0: 01\n"
                                       "lane a 511: 02\n"
                                       "lane b 0: 03\n"
                                       "lane c 0: 04\n"
                                       "lane c 511: 05\n");
}

TEST(Transform, ASegmentThatBeginsInALaterBlockGoesThere) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB4", {"a[7:0]", "b[7:0]"});
    EXPECT_EQ(stored(space, 0x1200, {0x77}), "lane b 0: 77\n");
}

TEST(Transform, ASegmentAtAddressZeroIsWrittenFromTheBlocksStart) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(stored(space, 0, {0x77}), "lane a 0: 77\n");
}

TEST(Transform, LanesWithTheMirroredOrderStoreTheirBitsTurnedRound) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[0:7]"});
    EXPECT_EQ(stored(space, 0, {0x01, 0xC0}), "lane a 0: 80 03\n");
}

// 0x1234 mirrored in 16 bits is 0x2C48.
TEST(Transform, MirroringWorksOnTheWholeLaneWord) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[0:15]"});
    EXPECT_EQ(stored(space, 0, {0x12, 0x34}), "lane a 0: 48 2C\n");
}

TEST(Transform, ASwapOfTwoBytesInAWiderLaneSwapsOnlyTheLowTwo) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0]"});
    space->ranges->busBlocks[0]->lanePitch = 16;
    EXPECT_EQ(stored(space, 0, {0x11, 0x22, 0x33, 0x44}), "lane w 0: 33 44 22 11\n");
}

TEST(Transform, ASwapOfTheWholeLaneTurnsItsBytes) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0]"});
    space->ranges->busBlocks[0]->lanePitch = 32;
    EXPECT_EQ(stored(space, 0, {0x11, 0x22, 0x33, 0x44}), "lane w 0: 11 22 33 44\n");
}

TEST(Transform, CheckBitsComeFromTheWholeBusWord) {
    TestMap map;
    AddressSpaceDefType* space =
        map.space("ram", 0, "RAMB16", {"a[31:24] b[23:16] c[15:8] d[7:0] e[7:0] ECCHSIAO32-7"});
    space->ranges->busBlocks[0]->eccLanes[0]->laneWidth = 7;
    space->ranges->busBlocks[0]->eccBusWidth = 7;
    EXPECT_EQ(stored(space, 0, {0x80, 0, 0, 0}), "lane a 0: 80\n"
                                                 "lane e 0: 38\n");
}

TEST(Transform, TheFirstCheckLaneTakesTheTopBits) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[31:16] b[15:0] hi[7:4] ECCH64-8 lo[3:0] ECCH64-8"});
    // 64 bits are the input; the bus word 1 has the check value 0xE3.
    EXPECT_EQ(stored(space, 0, {0, 0, 0, 1}), "lane b 0: 01\n"
                                              "lane hi 0: 0E\n"
                                              "lane lo 0: 03\n");
}

// The places of check lanes are dealt out round the number of data lanes.
TEST(Transform, WithMoreCheckLanesThanDataLanesTheFirstIsPlacedTwiceAndTheLastNotAtAll) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0] hi[7:4] ECCH64-8 lo[3:0] ECCH64-8"});
    EXPECT_EQ(stored(space, 0, {0, 0, 0, 1}), "lane w 0: 01\n"
                                              "lane hi 0: E0\n");
}

TEST(Transform, ASourceThatEndsInsideABusWordStillGivesAWholeCheckValue) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0] e[7:0] ECCH64-8"});
    ASSERT_EQ(store(space, 0, {0x00, 0x01}), 0);
    const std::string both = stored(space, 0, {0x12, 0x01});
    EXPECT_EQ(stored(space, 0, {0x12}), both); // lane b keeps 1, and counts
}

// Only the low 32 bits of a word that the source does not reach count.
TEST(Transform, AWordThatTheSourceDoesNotReachIsCutTo32BitsInTheCheckValue) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB36", {"a[63:32] b[31:0] e[7:0] ECCH64-8"});
    BusBlockType* block = space->ranges->busBlocks[0];
    space->ranges->laneWidth = 64;
    for (u64 i = 0; i < 2; ++i) block->lanes[i]->laneWidth = 64;
    ASSERT_EQ(store(space, 0, {0, 0, 0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 1}), 0);
    EXPECT_EQ(stored(space, 0, {0, 0, 0, 0, 0, 0, 0, 0}), "lane b 0: 01 00 00 00 00 00 00 80\n"
                                                          "lane e 0: E3\n"); // of the word 1
}

TEST(Transform, AWordThatTheSourceDoesNotReachIsSwappedBackForTheCheckValue) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[63:32] b[31:0] e[7:0] ECCH64-8"});
    space->ranges->busBlocks[0]->lanePitch = 32;
    ASSERT_EQ(store(space, 0, {0, 0, 0, 0, 0, 0, 0, 1}), 0);
    EXPECT_EQ(stored(space, 0, {0, 0, 0, 0}), "lane b 3: 01\n"
                                              "lane e 0: E3\n");
}

// The lanes ahead of the start are not read back.
TEST(Transform, ACheckValueOfAStartInMidBusWordIsThatOfTheLanesFromThereOn) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0] e[7:0] ECCH64-8"});
    ASSERT_EQ(store(space, 0, {0x77, 0}), 0);
    EXPECT_EQ(stored(space, 1, {1}), "lane a 0: 77\n"
                                     "lane b 0: 01\n"
                                     "lane e 0: E3\n");
}

TEST(Transform, MirroredLanesEnterTheCheckValueMirrored) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[0:7] e[7:0] ECCH64-8"});
    EXPECT_EQ(stored(space, 0, {0x80}), "lane a 0: 01\n"
                                        "lane e 0: E3\n");
}

TEST(Transform, AnEccTypeAboveFiveGivesCheckBitsOfZero) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0] e[7:0] ECCH64-8"});
    space->ranges->busBlocks[0]->eccType = 6;
    EXPECT_EQ(stored(space, 0, {0xFF}), "lane a 0: FF\n");
}

TEST(Transform, ABlockWithoutLanesTakesNothing) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    BusBlockType empty{};
    empty.endAddress = 511;
    Bytes bytes = {1, 2};
    BufferChunkAccess source(bytes.data(), 16, 16, kDATA_ORDER, 0, 8);
    EXPECT_EQ(transform_data_busBlock("a.elf", space->ranges, &empty, 0, &source, false), 0);
    EXPECT_EQ(source.GetNumberBufferBitsRemaining(), 16u);
}

// What no sound map holds still gives a result, and nothing outside of a buffer is touched.
TEST(Transform, LanesOfMoreThanSixtyFourBitsTakeTheirWordsWithoutHarm) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB36", {"w[31:0]"});
    map.lane("w")->laneWidth = 72;
    space->ranges->laneWidth = 72;
    EXPECT_EQ(store(space, 0, Bytes(4096, 0xFF)), 0);
}

TEST(Transform, ABusOfMoreThanTheAccumulatorHoldsKeepsItsDataAndGivesACheckValueOfTheLastBits) {
    TestMap map;
    AddressSpaceDefType* space =
        map.space("ram", 0, "RAMB16", {"a[159:128] b[127:96] c[95:64] d[63:32] e[31:0] k[8:0] ECCHSIAO128-9"});
    Bytes bytes(20, 0);
    bytes[0] = 0xFF;  // lane a has left the accumulator
    bytes[19] = 0x01; // the last column is 7
    const std::string text = stored(space, 0, bytes);
    EXPECT_NE(text.find("lane a 3: FF\n"), text.npos) << text;
    EXPECT_NE(text.find("lane e 0: 01\n"), text.npos) << text;
    EXPECT_NE(text.find("lane k 0: 07\n"), text.npos) << text;
}

// A 7-bit check lane keeps each word in a byte.
TEST(Transform, CheckLanesOfOddWidthKeepTheirWordsInSlots) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0] e[6:0] ECCHSIAO32-7"});
    EXPECT_EQ(stored(space, 0, {0, 0, 0, 1, 0x80, 0, 0, 0}), "lane w 0: 01 00 00 00 00 00 00 80\n"
                                                             "lane e 0: 07 38\n");
}

TEST(Transform, CheckLanesFollowTheAddressOfTheSegment) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[31:24] b[23:16] c[15:8] d[7:0] e[7:0] ECCH64-8"});
    EXPECT_EQ(stored(space, 8, {0, 0, 0, 1}), "lane d 2: 01\n"
                                              "lane e 2: E3\n");
}

TEST(Transform, ARangeRecordsWhereALaneWasWritten) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[15:8] b[7:0]"});
    ASSERT_EQ(store(space, 3, {1, 2, 3, 4}), 0);
    const BitLaneType* a = map.lane("a")->lane;
    const BitLaneType* b = map.lane("b")->lane;
    EXPECT_EQ(a->transformRanges->dataFirst - a->dataSliver, 2);
    EXPECT_EQ(a->transformRanges->dataSize, 2u);
    EXPECT_EQ(a->transformRanges->bitCount, 16u);
    EXPECT_EQ(b->transformRanges->dataFirst - b->dataSliver, 1);
    EXPECT_EQ(b->transformRanges->dataSize, 2u);
    EXPECT_EQ(a->laneState, 2u);
    EXPECT_EQ(b->laneState, 2u);
}

TEST(Transform, AShorterSectionAtTheSameStartHidesNothingOfTheRange) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    ASSERT_EQ(store(space, 0, {1, 2, 3, 4}), 0);
    ASSERT_EQ(store(space, 0, {9}), 0);
    const TransformRangeType* range = map.lane("a")->lane->transformRanges;
    EXPECT_EQ(range->next, nullptr);
    EXPECT_EQ(range->dataSize, 4u);
    EXPECT_EQ(range->bitCount, 32u);
    EXPECT_EQ(dumpData(space), "lane a 0: 09 02 03 04\n");
}

TEST(Transform, AMemoryWithParityHasARangeForItsParityPart) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"p[8:0]"}, {.wordAddressing = true});
    ASSERT_EQ(store(space, 0, {0x1A, 0xB1, 0xCD}), 0);
    const TransformRangeType* parity = map.lane("p")->lane->transformRanges->parityRange;
    ASSERT_NE(parity, nullptr);
    EXPECT_EQ(parity->bitCount, 2u);
    EXPECT_EQ(parity->dataFirst, map.lane("p")->lane->paritySliver);
}

TEST(Transform, MemoryThatRunsOutIsAStatusAndLosesNothing) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"a[17:9] b[8:0]"});
    const FaultSweep sweep = sweepAllocationFaults([&map, space] {
        const int status = store(space, 0, {1, 2, 3, 4});
        deallocate_addressSpace_transform_buffers(space);
        for (const char* name : {"a", "b"}) {
            BitLaneType* lane = map.lane(name)->lane;
            delete_transform_range_list(&lane->transformRanges);
            lane->currentRange = nullptr;
            deleteChunkAccess(lane->dataChunks);
            deleteChunkAccess(lane->parityChunks);
            lane->dataChunks = lane->parityChunks = nullptr;
        }
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.allocationCount, 6u);
}

TEST(SwapLaneBytes, KnowsThreeWidthsAndLeavesTheRest) {
    EXPECT_EQ(swapLaneBytes(0, 0x1122334455667788), 0x1122334455667788u);
    EXPECT_EQ(swapLaneBytes(16, 0x11223344), 0x11224433u);
    EXPECT_EQ(swapLaneBytes(32, 0x11223344), 0x44332211u);
    EXPECT_EQ(swapLaneBytes(64, 0x1122334455667788), 0x8877665544332211u);
    EXPECT_EQ(swapLaneBytes(36, 0x11223344), 0x11223344u);
}

TEST(LaneSlots, AreTheNextWidthThatNoByteCuts) {
    const unsigned kWIDTHS[][2] = {
        {1, 1}, {2, 2}, {3, 4}, {4, 4}, {5, 8}, {7, 8}, {8, 8}, {9, 16}, {16, 16}, {17, 24}, {64, 64}};
    for (const auto& [width, slot] : kWIDTHS) EXPECT_EQ(laneSlotBits(width), slot) << width;
}

} // namespace
} // namespace memdata::testing

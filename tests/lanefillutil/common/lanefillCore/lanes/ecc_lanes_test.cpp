// ecc_lanes_test.cpp - the word that a code sees, and its check value cut into check lanes.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/ecc_lanes.h"

#include "lanefillCore/lanes/bus_blocks.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "support/map_builder.h"
#include "support/map_dump.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace memdata::testing {
namespace {

using EndianConvert::UInt128;

constexpr UInt128 kWORD{0x0011223344556677, 0x8899AABBCCDDEEFF};

TEST(EccInput, WithoutByteSwapIsTheWordAsItStands) {
    EXPECT_EQ(eccInput(kECC_H32_7, false, kWORD), (UInt128{0, 0xCCDDEEFF}));
    for (const u32 type : {kECC_H64_8, kECC_HSIAO32_7, kECC_HSIAO64_8, kECC_HSIAO128_9})
        EXPECT_EQ(eccInput(type, false, kWORD), kWORD) << type;
}

TEST(EccInput, TheNarrowHammingCodeSwapsFourBytes) {
    EXPECT_EQ(eccInput(kECC_H32_7, true, {0, 0x11223344}), (UInt128{0, 0x44332211}));
    EXPECT_EQ(eccInput(kECC_H32_7, true, kWORD), (UInt128{0, 0xFFEEDDCC}));
}

TEST(EccInput, CodesOfUpToSixtyFourBitsSwapEightBytesAndPassTheHighWordOn) {
    for (const u32 type : {kECC_H64_8, kECC_HSIAO32_7, kECC_HSIAO64_8})
        EXPECT_EQ(eccInput(type, true, kWORD), (UInt128{0x0011223344556677, 0xFFEEDDCCBBAA9988})) << type;
}

TEST(EccInput, TheWidestCodeExchangesBothWordsEachSwapped) {
    EXPECT_EQ(eccInput(kECC_HSIAO128_9, true, kWORD), (UInt128{0xFFEEDDCCBBAA9988, 0x7766554433221100}));
}

// One check value in the check lanes of a block of four data lanes, which stay empty, and each lane's count of words.
std::string checked(const std::string& lanes, u32 eccType, bool byteSwap, UInt128 word) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[31:24] b[23:16] c[15:8] d[7:0] " + lanes});
    EXPECT_TRUE(allocate_addressSpace_transform_buffers(space));
    BusBlockType* block = space->ranges->busBlocks[0];
    block->eccType = eccType;
    u64 count = 0;
    EXPECT_EQ(initialize_busBlock_ECC_transform_positions("a.elf", space->ranges, block, 0, &count), 0);
    transform_bus_access_ECC_value(block, byteSwap, word);
    std::string states;
    for (u64 i = 0; i < block->eccLaneCount; ++i) states += std::to_string(block->eccLanes[i]->lane->laneState);
    return dumpData(space) + states;
}

TEST(EccLanes, TheFirstTakesTheTopBits) {
    const u64 word = u64{1} << 43 | u64{1} << 20; // columns 0x64 and 0xC1
    EXPECT_EQ(checked("hi[7:4] ECCHSIAO64-8 lo[3:0] ECCHSIAO64-8", kECC_HSIAO64_8, false, {0, word}), "lane hi 0: 0A\n"
                                                                                                      "lane lo 0: 05\n"
                                                                                                      "11");
}

TEST(EccLanes, TypeZeroTouchesNoLane) {
    EXPECT_EQ(checked("e[7:0] ECCH64-8", kECC_NONE, false, {0, 1}), "0");
}

TEST(EccLanes, ATypeAboveFiveGivesBitsOfZero) {
    EXPECT_EQ(checked("e[7:0] ECCH64-8", 6, false, {0, 1}), "1");
}

TEST(EccLanes, ByteSwapReachesTheCheckBits) {
    EXPECT_EQ(checked("e[7:0] ECCH64-8", kECC_H64_8, false, {0, 1}), "lane e 0: E3\n1");
    EXPECT_EQ(checked("e[7:0] ECCH64-8", kECC_H64_8, true, {0, u64{1} << 56}), "lane e 0: E3\n1");
}

// The same through a whole segment: a space whose lanes are held in reversed byte order asks for the swap.
TEST(EccLanes, ASpaceInReversedByteOrderSwapsTheWordForItsCode) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[31:24] b[23:16] c[15:8] d[7:0] e[7:0] ECCH32-7"});
    space->leLaneOrderApplied = true;
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    u8 bytes[] = {1, 0, 0, 0, 0, 0, 0, 1};
    ASSERT_EQ(transform_segment_data("a.elf", space, 0, bytes, sizeof bytes), 0);
    char expected[64];
    std::snprintf(expected, sizeof expected, "lane e 0: %02X %02X\n", CalculateECCH32_7(0x00000001),
        CalculateECCH32_7(0x01000000));
    EXPECT_EQ(dumpData(space), std::string("lane a 0: 01\nlane d 1: 01\n") + expected);
}

} // namespace
} // namespace memdata::testing

// bit_access_test.cpp - bits of images and frames, and bit order inside bytes.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/bit_access.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<u8>;

TEST(BitAccess, CountsFromTheMostSignificantBitOfTheFirstByte) {
    Bytes bytes(4);
    SetBit(bytes.data(), 32, 32, 0, true);
    SetBit(bytes.data(), 32, 32, 9, true);
    SetBit(bytes.data(), 32, 32, 31, true);
    EXPECT_EQ(bytes, (Bytes{0x80, 0x40, 0x00, 0x01}));
    EXPECT_TRUE(GetBit(bytes.data(), 32, 32, 9));
    SetBit(bytes.data(), 32, 32, 9, false);
    EXPECT_FALSE(GetBit(bytes.data(), 32, 32, 9));
}

TEST(BitAccess, FindsABitOfARowBehindTheStridesOfTheRowsAhead) {
    // Slice bit 1 of frame 5 in frames of 404 bytes: byte 2020, mask 0x40.
    Bytes frames(3000);
    SetBit(frames.data(), 320, 3232, 5 * 320 + 1, true);
    EXPECT_EQ(frames[2020], 0x40);
    EXPECT_TRUE(GetBit(frames.data(), 320, 3232, 1601));
}

TEST(BitAccess, ShiftsARunAsOneNumber) {
    Bytes bytes{0x12, 0x34, 0x56};
    ShiftDataLeft(bytes.data(), bytes.size(), 4);
    EXPECT_EQ(bytes, (Bytes{0x23, 0x45, 0x60}));
    ShiftDataRight(bytes.data(), bytes.size(), 4);
    EXPECT_EQ(bytes, (Bytes{0x02, 0x34, 0x56}));
}

TEST(BitAccess, ShiftsAnEmptyRunAndByNoBits) {
    Bytes bytes{0xA5, 0x5A};
    ShiftDataLeft(bytes.data(), 0, 2);
    ShiftDataRight(bytes.data(), 2, 0);
    ShiftDataLeft(bytes.data(), 2, 0);
    EXPECT_EQ(bytes, (Bytes{0xA5, 0x5A}));
}

TEST(BitOrder, OfOneBitReversesEachByte) {
    Bytes bytes{0x80, 0x13};
    DecodeBitlaneWidths(bytes.data(), 1, 2);
    EXPECT_EQ(bytes, (Bytes{0x01, 0xC8}));
}

TEST(BitOrder, OfTwoBitsReversesThePairs) {
    Bytes bytes{0xC0, 0x1B};
    DecodeBitlaneWidths(bytes.data(), 2, 2);
    EXPECT_EQ(bytes, (Bytes{0x03, 0xE4}));
}

TEST(BitOrder, OfFourBitsSwapsTheHalves) {
    Bytes bytes{0xF0, 0x12};
    DecodeBitlaneWidths(bytes.data(), 4, 2);
    EXPECT_EQ(bytes, (Bytes{0x0F, 0x21}));
}

TEST(BitOrder, OfSixteenAndThirtyTwoBitsReversesTheBytesOfAUnit) {
    Bytes bytes{1, 2, 3, 4, 5, 6, 7, 8};
    DecodeBitlaneWidths(bytes.data(), 16, 8);
    EXPECT_EQ(bytes, (Bytes{2, 1, 4, 3, 6, 5, 8, 7}));
    DecodeBitlaneWidths(bytes.data(), 32, 8);
    EXPECT_EQ(bytes, (Bytes{3, 4, 1, 2, 7, 8, 5, 6}));
}

TEST(BitOrder, OfOtherWidthsIsLeftAlone) {
    for (u64 width : {0U, 3U, 8U, 9U, 18U, 36U, 64U}) {
        Bytes bytes{1, 2, 3, 4};
        DecodeBitlaneWidths(bytes.data(), width, 4);
        EXPECT_EQ(bytes, (Bytes{1, 2, 3, 4})) << width;
    }
}

TEST(BitOrder, LeavesACutUnitAtTheEnd) {
    Bytes bytes{1, 2, 3, 4, 5, 6, 7};
    DecodeBitlaneWidths(bytes.data(), 32, 7);
    EXPECT_EQ(bytes, (Bytes{4, 3, 2, 1, 5, 6, 7}));
}

TEST(BitOrder, OfALongRunIsThatOfItsBytes) {
    std::mt19937 random(2);
    Bytes bytes(21);
    for (u8& byte : bytes) byte = static_cast<u8>(random());
    for (u64 width : {1U, 2U, 4U}) {
        Bytes run = bytes;
        Bytes one = bytes;
        DecodeBitlaneWidths(run.data(), width, run.size());
        for (u8& byte : one) DecodeBitlaneWidths(&byte, width, 1);
        EXPECT_EQ(run, one) << width;
    }
}

TEST(BitOrder, TurnedTwiceGivesTheBytesBack) {
    std::mt19937 random(1);
    Bytes bytes(64);
    for (u8& byte : bytes) byte = static_cast<u8>(random());
    for (u64 width : {1U, 2U, 4U, 8U, 16U, 32U}) {
        Bytes turned = bytes;
        DecodeBitlaneWidths(turned.data(), width, turned.size());
        DecodeBitlaneWidths(turned.data(), width, turned.size());
        EXPECT_EQ(turned, bytes) << width;
    }
}

} // namespace

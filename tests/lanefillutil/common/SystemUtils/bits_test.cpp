// bits_test.cpp - mask and bit helpers.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/bits.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(ModesMask, SetsAndClearsBitsAndGivesTheOldMask) {
    unsigned mask = 0x5;
    EXPECT_EQ(setModesMask(&mask, 0x6, true), 0x5u);
    EXPECT_EQ(mask, 0x7u);
    EXPECT_EQ(setModesMask(&mask, 0x3, false), 0x7u);
    EXPECT_EQ(mask, 0x4u);
}

TEST(ModesMask, ANullMaskIsLeftAlone) {
    EXPECT_EQ(setModesMask(nullptr, 1, true), 0u);
}

struct TestCase {
    unsigned mask, bits;
    bool all, expected;
};

TEST(ModesMask, AllAsksForEveryBitAndNotAllForNone) {
    constexpr TestCase kCASES[] = {
        {0x6, 0x6, true, true},
        {0x6, 0x7, true, false},
        {0x6, 0x0, true, true},
        {0x6, 0x9, false, true},
        {0x6, 0x2, false, false},
        {0x6, 0x3, false, false}, // one of them is set
        {0x6, 0x0, false, true},
    };
    for (const TestCase& c : kCASES)
        EXPECT_EQ(testModesMask(c.mask, c.bits, c.all), c.expected) << c.mask << ' ' << c.bits << ' ' << c.all;
}

TEST(BitMask, HoldsTheLowBitsOfTheWidth) {
    EXPECT_EQ(getBitMask(0), 0u);
    u64 expected = 0;
    for (unsigned width = 1; width <= 63; ++width) {
        expected = expected * 2 + 1;
        EXPECT_EQ(getBitMask(width), expected) << width;
    }
}

TEST(BitMask, OfSixtyFourBitsOrMoreIsAllOnes) {
    for (unsigned width : {64u, 65u, 100u, UINT32_MAX}) EXPECT_EQ(getBitMask(width), UINT64_MAX) << width;
}

TEST(ValueBitWidth, CountsTheBitsUpToTheHighestOne) {
    EXPECT_EQ(getValueBitWidth(1), 1u);
    for (unsigned bit = 1; bit < 64; ++bit) EXPECT_EQ(getValueBitWidth(1ul << bit), bit + 1) << bit;
    for (unsigned bit = 1; bit < 48; ++bit) EXPECT_EQ(getValueBitWidth((1ul << bit) - 1), bit) << bit;
}

TEST(ValueBitWidth, OfZeroIsZero) {
    EXPECT_EQ(getValueBitWidth(0), 0u);
    EXPECT_EQ(getValueBitMask(0), 0u);
}

TEST(ValueBitWidth, RoundsAsADoubleDoesBelowLargePowersOfTwo) {
    struct WidthCase {
        unsigned long value;
        unsigned width;
    };
    constexpr WidthCase kCASES[] = {
        {(1ul << 48) - 1, 48},
        {(1ul << 53) - 1, 54}, // exact as a double, but its logarithm rounds to 53
        {1ul << 53, 54},
        {(1ul << 53) + 1, 54},
        {UINT64_MAX, 65},         // 2^64 as a double
        {UINT64_MAX - 0x7FF, 65}, // exact, but its logarithm rounds to 64
        {0xFF00000000000000ul, 64},
    };
    for (const WidthCase& c : kCASES) {
        EXPECT_EQ(getValueBitWidth(c.value), c.width) << std::hex << c.value;
        EXPECT_EQ(c.width, std::floor(std::log2(static_cast<double>(c.value))) + 1) << std::hex << c.value;
    }
}

TEST(ValueBitMask, IsTheMaskOfTheWidth) {
    EXPECT_EQ(getValueBitMask(1), 0x1u);
    EXPECT_EQ(getValueBitMask(0x80), 0xFFu);
    EXPECT_EQ(getValueBitMask(0x1234), 0x1FFFu);
    EXPECT_EQ(getValueBitMask(UINT64_MAX), UINT64_MAX);
}

} // namespace

// bus_word_test.cpp - a bus word as its lanes assemble it.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/bus_word.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using EndianConvert::UInt128;

std::string bitText(UInt128 value, unsigned width) {
    unsigned bits[128];
    convert_accumulated_value_to_bit_array(value, width, bits);
    std::string text;
    for (unsigned i = 0; i < width; ++i) text += bits[i] == 0 ? '0' : bits[i] == 1 ? '1' : '?';
    return text;
}

TEST(BusWord, WidthZeroClears) {
    UInt128 bus{1, 2};
    accumulate_bus_width_value(0, 7, &bus);
    EXPECT_EQ(bus, (UInt128{0, 0}));
}

TEST(BusWord, ALanesWordMovesTheOthersUp) {
    UInt128 bus{0, 0};
    accumulate_bus_width_value(8, 0x11, &bus);
    accumulate_bus_width_value(16, 0x2233, &bus);
    EXPECT_EQ(bus, (UInt128{0, 0x112233}));
}

TEST(BusWord, WhatLeavesTheLowWordEntersTheHighOne) {
    UInt128 bus{0, 0x8899AABBCCDDEEFF};
    accumulate_bus_width_value(32, 0x12345678, &bus);
    EXPECT_EQ(bus, (UInt128{0x8899AABB, 0xCCDDEEFF12345678}));
}

TEST(BusWord, AWidthOfSixtyFourMergesWithoutMoving) {
    UInt128 bus{0x0F, 0xF0};
    accumulate_bus_width_value(64, 0x01, &bus);
    EXPECT_EQ(bus, (UInt128{0xFF, 0xF1}));
}

TEST(BusWord, AValueIsNotMaskedToItsWidth) {
    UInt128 bus{0, 0};
    accumulate_bus_width_value(4, 0xFF, &bus);
    EXPECT_EQ(bus, (UInt128{0, 0xFF}));
}

TEST(BusWord, BitsComeMostSignificantFirst) {
    EXPECT_EQ(bitText({0, 0b1011}, 4), "1011");
    EXPECT_EQ(bitText({0, 0b1011}, 6), "001011");
    EXPECT_EQ(bitText({0b10, 0x8000000000000001}, 66), "10" + std::string("1") + std::string(62, '0') + "1");
}

TEST(BusWord, BytesSwap) {
    EXPECT_EQ(EndianConvert::swapTwoBytes(0x11223344), 0x11224433u);
    EXPECT_EQ(EndianConvert::swapFourBytes(0x9911223344), 0x44332211u);
    EXPECT_EQ(EndianConvert::swapEightBytes(0x1122334455667788), 0x8877665544332211u);
}

} // namespace

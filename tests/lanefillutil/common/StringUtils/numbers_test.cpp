// numbers_test.cpp - numbers as managed strings.
// SPDX-License-Identifier: Apache-2.0
#include "string_test.h"

#include <climits>
#include <cmath>
#include <limits>

namespace memdata::testing {
namespace {

class Numbers : public StringTest {};

constexpr char kSIXTY_FOUR_ONES[] = "1111111111111111111111111111111111111111111111111111111111111111 64";

// The text and the digit count.
std::string number(i64 value, int radix) {
    unsigned digits = 99;
    const std::string text = taken(NumToStr(value, radix, &digits));
    return text + " " + std::to_string(digits);
}

std::string digits_of(u64 value, unsigned radix, unsigned depth = 0) {
    unsigned digits = 99;
    const std::string text = taken(digits_to_string(value, depth, radix, &digits));
    return text + " " + std::to_string(digits);
}

std::string real(long double value, int precision) {
    unsigned digits = 99;
    const std::string text = taken(FloatToStr(value, precision, &digits));
    return text + " " + std::to_string(digits);
}

TEST_F(Numbers, ANegativeDecimalCountsItsSign) {
    EXPECT_EQ(number(-5, 10), "-5 2");
    EXPECT_EQ(number(-5, -10), "-5 2");
    EXPECT_EQ(number(5, 10), "5 1");
}

TEST_F(Numbers, ANegativeRadixAsksForAPrefixThatIsNotCounted) {
    EXPECT_EQ(number(255, -16), "0xFF 2");
    EXPECT_EQ(number(8, -8), "0o10 2");
    EXPECT_EQ(number(5, -2), "0b101 3");
    EXPECT_EQ(number(35, -36), "Z 1");
    EXPECT_EQ(number(7, -10), "7 1");
}

TEST_F(Numbers, OtherRadicesPrintNegativeValuesAsTheirPattern) {
    EXPECT_EQ(number(-1, 16), "FFFFFFFFFFFFFFFF 16");
    EXPECT_EQ(number(-1, -16), "0xFFFFFFFFFFFFFFFF 16");
    EXPECT_EQ(number(-1, 8), "1777777777777777777777 22");
    EXPECT_EQ(number(-1, 2), kSIXTY_FOUR_ONES);
}

TEST_F(Numbers, TheEndsOfTheRange) {
    EXPECT_EQ(number(INT64_MIN, 10), "-9223372036854775808 20");
    EXPECT_EQ(number(INT64_MAX, 10), "9223372036854775807 19");
    EXPECT_EQ(number(INT64_MIN, 16), "8000000000000000 16");
    EXPECT_EQ(number(0, 10), "0 1");
    EXPECT_EQ(number(0, -2), "0b0 1");
}

TEST_F(Numbers, ARadixThatHasNoDigitsCountsAsTen) {
    for (const int radix : {0, 1, -1, 37, INT_MAX, INT_MIN}) EXPECT_EQ(number(-12, radix), "-12 3") << radix;
}

TEST_F(Numbers, TheCountMayBeLeftOut) {
    EXPECT_EQ(taken(NumToStr(12, 10, nullptr)), "12");
    EXPECT_EQ(taken(FloatToStr(12, 1, nullptr)), "12.0");
    EXPECT_EQ(taken(digits_to_string(12, 0, 10, nullptr)), "12");
}

TEST_F(Numbers, DigitsAreUnsignedAndUpperCase) {
    EXPECT_EQ(digits_of(0xABCDEF, 16), "ABCDEF 6");
    EXPECT_EQ(digits_of(UINT64_MAX, 10), "18446744073709551615 20");
    EXPECT_EQ(digits_of(UINT64_MAX, 2), kSIXTY_FOUR_ONES);
    EXPECT_EQ(digits_of(35 * 36 + 10, 36), "ZA 2");
    EXPECT_EQ(digits_of(26, 3), "222 3");
    EXPECT_EQ(digits_of(0, 7), "0 1");
}

TEST_F(Numbers, DigitsInARadixBelowTwoAreDecimal) {
    EXPECT_EQ(digits_of(12, 0), "12 2");
    EXPECT_EQ(digits_of(12, 1), "12 2");
}

TEST_F(Numbers, DepthMakesRoomBehindTheDigits) {
    const OwnedString s(digits_to_string(12, 5, 10, nullptr));
    EXPECT_EQ((reinterpret_cast<const MemoryBlockType*>(s.get() - 16) - 1)->size, 2u + 5u + 24u);
    EXPECT_STREQ(s.get(), "12");
}

TEST_F(Numbers, AFloatHasItsIntegerPartAPointAndFractionDigits) {
    EXPECT_EQ(real(3.25L, 2), "3.25 4");
    EXPECT_EQ(real(3.25L, 5), "3.25000 7");
    EXPECT_EQ(real(0.0L, 1), "0.0 3");
}

TEST_F(Numbers, FractionDigitsAreCutNotRounded) {
    EXPECT_EQ(real(3.875L, 2), "3.87 4");
    EXPECT_EQ(real(0.9999L, 2), "0.99 4");
}

TEST_F(Numbers, AFloatWithoutFractionDigitsHasNoPoint) {
    EXPECT_EQ(real(4.5L, 0), "4 1");
    EXPECT_EQ(real(4.5L, -3), "4 1");
}

TEST_F(Numbers, ANegativeFloatHasAMinusAhead) {
    EXPECT_EQ(real(-3.5L, 1), "-3.5 4");
    EXPECT_EQ(real(-0.25L, 2), "-0.25 5");
}

TEST_F(Numbers, AFloatAboveSixtyFourBitsKeepsAllDigits) {
    EXPECT_EQ(real(18446744073709551615.0L, 0), "18446744073709551615 20");
    EXPECT_EQ(real(18446744073709551616.0L, 1), "18446744073709551616.0 22");
    EXPECT_EQ(real(std::ldexp(1.0L, 100), 0), "1267650600228229401496703205376 31");
    EXPECT_EQ(taken(FloatToStr(std::numeric_limits<long double>::max(), 0, nullptr)).size(), 4933u);
}

TEST_F(Numbers, WhatIsNoNumberHasAName) {
    EXPECT_EQ(real(std::numeric_limits<long double>::quiet_NaN(), 3), "nan 3");
    EXPECT_EQ(real(std::numeric_limits<long double>::infinity(), 3), "inf 3");
    EXPECT_EQ(real(-std::numeric_limits<long double>::infinity(), 3), "-inf 4");
}

TEST_F(Numbers, ThePrecisionOfAFloatIsBounded) {
    EXPECT_EQ(taken(FloatToStr(1.5L, INT_MAX, nullptr)).size(), 2u + kMAX_FIELD_CHARACTERS);
}

TEST_F(Numbers, TheSmallestFloatIsPrintedDigitByDigit) {
    const std::string text = taken(FloatToStr(std::numeric_limits<long double>::denorm_min(), 4960, nullptr));
    EXPECT_EQ(text.substr(0, 8), "0.000000");
    EXPECT_EQ(text.find_first_of("123456789"), 4952u);
}

} // namespace
} // namespace memdata::testing

// numbers_test.cpp - digits to values.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/numbers.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>

using namespace memdata;

namespace {

struct NumberCase {
    const char* text;
    unsigned base;
    u32 used;
    unsigned radix = 10;
    long double value = 0;
    bool isFloat = false;
    bool strict = true;
};

void PrintTo(const NumberCase& number, std::ostream* out) {
    *out << number.text << " in base " << number.base;
}

constexpr NumberCase kNUMBERS[] = {
    // text  base used radix value
    {"0", 0, 1, 10, 0}, {"12", 0, 2, 10, 12}, {"12 ", 0, 2, 10, 12}, {"007", 0, 3, 10, 7}, {"0x1F", 0, 4, 16, 31},
    {"0Xff", 0, 4, 16, 255}, {"0o17", 0, 4, 8, 15}, {"0O17", 0, 4, 8, 15}, {"0n101", 0, 5, 2, 5}, {"0N101", 0, 5, 2, 5},
    {"-5", 0, 2, 10, -5}, {"-0", 0, 2, 10, 0}, {"12U", 0, 2, 10, 12}, {"12u", 0, 2, 10, 12}, {"12L", 0, 2, 10, 12},
    {"12UL", 0, 2, 10, 12}, {"12-3", 0, 2, 10, 12}, {"12.5", 0, 4, 10, 12.5L, true}, {"12.", 0, 3, 10, 12, true},
    {"1.5.2", 0, 3, 10, 1.5L, true}, {"1..2", 0, 2, 10, 1, true}, {"-1.25", 0, 5, 10, -1.25L, true},
    {"0x1.8", 0, 5, 16, 1.5L, true}, {"0n1.1", 0, 5, 2, 1.5L, true}, {"0o1.4", 0, 5, 8, 1.5L, true},
    {"0xFFFFFFFFFFFFFFFF", 0, 18, 16, 18446744073709551615.0L},
    {"18446744073709551615", 0, 20, 10, 18446744073709551615.0L},
    {"0o1777777777777777777777", 0, 24, 8, 18446744073709551615.0L},
    {"0n1111111111111111111111111111111111111111111111111111111111111111", 0, 66, 2, 18446744073709551615.0L},
    {"0x1FFFFFFFFFFFFFFFF", 0, 19, 16, 18446744073709551615.0L},  // a hexadecimal number loses its top
    {"18446744073709551616", 0, 20, 10, 18446744073709551616.0L}, // others lose low bits
    {"36893488147419103232", 0, 20, 10, 36893488147419103232.0L},
    // With a base, digits are read in it, prefixes or not.
    {"12", 16, 2, 16, 18}, {"AB", 16, 2, 16, 171}, {"-AB", 16, 3, 16, -171}, {"a.8", 16, 3, 16, 10.5L, true},
    {".8", 16, 2, 16, 0.5L, true}, {"101", 2, 3, 2, 5}, {"17", 8, 2, 8, 15}, {"0x10", 10, 4, 16, 16},
    {"-0x10", 10, 5, 16, -16}, {"0n11", 16, 4, 2, 3}, {"0b11", 16, 4, 16, 0xB11},
    {"12", 7, 2, 10, 12}, // a radix that there is none of counts as ten
    // Without strictness what follows does not matter.
    {"12abc", 0, 2, 10, 12, false, false}, {"12_", 0, 2, 10, 12, false, false},
    {"0n2", 0, 2, 2, 0, false, false}, // the 2 lets the prefix through and then ends the number
    {"0n12", 0, 3, 2, 1, false, false}, {"-0x10", 0, 2, 10, 0, false, false},
    {"0xg", 16, 1, 16, 0, false, false}, // falls back to the given base
};

struct NoNumberCase {
    const char* text;
    unsigned base;
    bool strict = true;
};

void PrintTo(const NoNumberCase& number, std::ostream* out) {
    *out << number.text << " in base " << number.base;
}

constexpr NoNumberCase kNO_NUMBERS[] = {
    {"", 0},
    {"-", 0},
    {"- 5", 0},
    {"--5", 0},
    {"x", 0},
    {"AB", 0},
    {".5", 0},
    {"0x", 0},
    {"0x", 0, false},
    {"0xg", 0},
    {"0o8", 0},
    {"0n3", 0},
    {"0n2", 0},
    {"0b101", 0},
    {"12abc", 0},
    {"12_", 0},
    {"1.b", 0},
    {"-0x10", 0},
    {"12G", 16},
    {"2", 2},
    {"12", 2},
    {"8", 8},
    {"0xg", 16},
    {"-", 16},
    {".", 16},
    {"..", 10},
    {"-.", 10},
};

class Numbers : public ::testing::TestWithParam<NumberCase> {};
class NoNumbers : public ::testing::TestWithParam<NoNumberCase> {};

TEST_P(Numbers, AreReadWithTheirRadix) {
    const NumberCase& number = GetParam();
    unsigned radix = 99;
    bool isFloat = !number.isFloat;
    long double value = -99;
    EXPECT_EQ(StrToNum(number.text, number.base, number.strict, &radix, &isFloat, &value), number.used);
    EXPECT_EQ(radix, number.radix);
    EXPECT_EQ(isFloat, number.isFloat);
    EXPECT_EQ(value, number.value);
}

TEST_P(NoNumbers, LeaveTheResultsAlone) {
    unsigned radix = 99;
    bool isFloat = true;
    long double value = -99;
    EXPECT_EQ(StrToNum(GetParam().text, GetParam().base, GetParam().strict, &radix, &isFloat, &value), 0u);
    EXPECT_EQ(radix, 99u);
    EXPECT_TRUE(isFloat);
    EXPECT_EQ(value, -99);
}

INSTANTIATE_TEST_SUITE_P(StrToNum, Numbers, ::testing::ValuesIn(kNUMBERS));
INSTANTIATE_TEST_SUITE_P(StrToNum, NoNumbers, ::testing::ValuesIn(kNO_NUMBERS));

TEST(StrToNum, TakesNullResultsAndANullText) {
    EXPECT_EQ(StrToNum("12", 0, true, nullptr, nullptr, nullptr), 2u);
    EXPECT_EQ(StrToNum(nullptr, 0, true, nullptr, nullptr, nullptr), 0u);
}

TEST(StrToNum, AMinusGivesANegativeZero) {
    long double value = 1;
    StrToNum("-0", 0, true, nullptr, nullptr, &value);
    EXPECT_TRUE(std::signbit(value));
}

TEST(StrToNum, AVeryLongNumberIsRead) {
    const std::string digits(100000, '9');
    long double value = 0;
    EXPECT_EQ(StrToNum(digits.c_str(), 0, true, nullptr, nullptr, &value), digits.size());
    EXPECT_TRUE(std::isinf(value));
}

TEST(ScanNumber, StopsAtTheEndOfTheText) {
    const char text[] = {'1', '2', '3'};
    long double value = 0;
    EXPECT_EQ(scanNumber(text, text + 2, 0, true, nullptr, nullptr, &value), 2u);
    EXPECT_EQ(value, 12);
    for (const char* start : {"0x", "-", "0", "0o", "12."}) {
        const char* end = start + std::strlen(start);
        EXPECT_EQ(scanNumber(start, end, 0, true, nullptr, nullptr, nullptr),
            StrToNum(start, 0, true, nullptr, nullptr, nullptr));
    }
}

struct PatternCase {
    long double value;
    u64 pattern;
};

TEST(UnsignedFromValue, KeepsSixtyFourBits) {
    constexpr long double kINFINITY = std::numeric_limits<long double>::infinity();
    const PatternCase cases[] = {
        {0, 0},
        {1.9L, 1},
        {-1.9L, UINT64_MAX},
        {-0.5L, 0},
        {-1, UINT64_MAX},
        {9223372036854775808.0L, u64{1} << 63},
        {18446744073709551615.0L, UINT64_MAX},
        {-9223372036854775808.0L, u64{1} << 63},
        {18446744073709551616.0L, u64{1} << 63},
        {-9223372036854775809.0L, u64{1} << 63},
        {kINFINITY, u64{1} << 63},
        {-kINFINITY, u64{1} << 63},
        {std::numeric_limits<long double>::quiet_NaN(), u64{1} << 63},
    };
    for (const PatternCase& c : cases) EXPECT_EQ(unsignedFromValue(c.value), c.pattern) << static_cast<double>(c.value);
    EXPECT_EQ(signedFromValue(18446744073709551615.0L), -1);
    EXPECT_EQ(signedFromValue(-7.9L), -7);
}

} // namespace

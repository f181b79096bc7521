// numbers.h - digits of integers and floats, shared by the number functions and the formatter.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_STRING_UTILS_NUMBERS_H
#define MEMDATA_STRING_UTILS_NUMBERS_H

#include "platform/BasicTypes.h"

#include <string>
#include <string_view>

namespace memdata {

inline constexpr unsigned kSMALLEST_RADIX = 2;
inline constexpr unsigned kLARGEST_RADIX = 36; // 0 to 9, A to Z
inline constexpr unsigned kMAX_DIGITS = 64;    // of a 64-bit value in radix 2

// The digits of an unsigned value, upper case, without leading zeros ("0" for 0).
class Digits {
public:
    // A radix outside 2 to 36 has no digits to write with and counts as 10.
    Digits(u64 value, unsigned radix);
    std::string_view text() const { return {text_ + first_, kMAX_DIGITS - first_}; }

private:
    char text_[kMAX_DIGITS];
    unsigned first_ = kMAX_DIGITS; // digits stand at the end of text_
};

// "0b", "0o" or "0x" for the radices 2, 8 and 16, else nothing.
std::string_view radixPrefix(unsigned radix);

// The digits of a float that is not negative: all digits of the integer part, a point and precision fraction
// digits, cut, not rounded; no point when precision is 0. "inf" and "nan" for what has no digits.
std::string floatDigits(long double magnitude, unsigned precision);

} // namespace memdata

#endif

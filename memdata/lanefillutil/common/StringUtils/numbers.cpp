// numbers.cpp - digits of integers and floats, and managed strings of them.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/numbers.h"

#include "StringUtils/internal.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdio>

namespace {

struct RadixPrefixType {
    unsigned radix;
    const char* prefix;
};
constexpr RadixPrefixType kRADIX_PREFIXES[] = {
    {2, "0b"},
    {8, "0o"},
    {16, "0x"},
};

constexpr char kDIGITS[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
static_assert(sizeof(kDIGITS) - 1 == memdata::kLARGEST_RADIX);

constexpr long double kTWO_TO_64 = 18446744073709551616.0L;

unsigned usable_radix(u64 radix) {
    const bool usable = radix >= memdata::kSMALLEST_RADIX && radix <= memdata::kLARGEST_RADIX;
    return usable ? static_cast<unsigned>(radix) : 10;
}

// Every digit of a whole number, however large: the library's own conversion is exact for whole numbers.
std::string whole_digits(long double whole) {
    if (whole < kTWO_TO_64) return std::string(memdata::Digits(static_cast<u64>(whole), 10).text());
    char text[LDBL_MAX_10_EXP + 2]; // digits of the largest float, terminator
    const int length = std::snprintf(text, sizeof text, "%.0Lf", whole);
    return std::string(text, static_cast<size_t>(length));
}

void set_digits(unsigned* digits, size_t count) {
    if (digits != nullptr) *digits = static_cast<unsigned>(count);
}

// A managed string of lead and digits, with room for more characters behind them.
char* joined(std::string_view lead, std::string_view digits, size_t room = 0) {
    char* s = StrNew("a number", lead.size() + digits.size() + room);
    if (s == nullptr) return nullptr;
    std::ranges::copy(digits, std::ranges::copy(lead, s).out);
    return s;
}

} // namespace

namespace memdata {

Digits::Digits(u64 value, unsigned radix) {
    radix = usable_radix(radix);
    if (std::has_single_bit(radix)) {
        const int shift = std::countr_zero(radix);
        do {
            text_[--first_] = kDIGITS[value & (radix - 1)];
            value >>= shift;
        } while (value != 0);
    } else if (radix == 10) { // apart, because the compiler divides by a constant several times as fast
        do {
            text_[--first_] = kDIGITS[value % 10];
            value /= 10;
        } while (value != 0);
    } else {
        do {
            text_[--first_] = kDIGITS[value % radix];
            value /= radix;
        } while (value != 0);
    }
}

std::string_view radixPrefix(unsigned radix) {
    for (const RadixPrefixType& row : kRADIX_PREFIXES)
        if (row.radix == radix) return row.prefix;
    return {};
}

std::string floatDigits(long double magnitude, unsigned precision) {
    if (std::isnan(magnitude)) return "nan";
    if (std::isinf(magnitude)) return "inf";

    const long double whole = std::floor(magnitude);
    long double fraction = magnitude - whole;
    std::string text = whole_digits(whole);
    if (precision == 0) return text;

    text.push_back('.');
    for (; precision > 0 && fraction != 0; --precision) {
        fraction *= 10;
        text.push_back(kDIGITS[std::min(static_cast<unsigned>(fraction), 9U)]);
        fraction = fmodl(fraction, 1.0L);
    }
    text.append(precision, '0');
    return text;
}

} // namespace memdata

char* digits_to_string(u64 value, unsigned depth, unsigned radix, unsigned* digits) {
    const memdata::Digits written(value, radix);
    const std::string_view text = written.text();
    set_digits(digits, text.size());
    return joined({}, text, depth);
}

char* NumToStr(i64 value, int radix, unsigned* digits) {
    const bool wantsPrefix = radix < 0;
    const u64 magnitudeOfRadix = wantsPrefix ? 0 - static_cast<u64>(static_cast<i64>(radix)) : static_cast<u64>(radix);
    const unsigned usedRadix = usable_radix(magnitudeOfRadix);
    const bool isNegative = value < 0 && usedRadix == 10;
    const u64 pattern = static_cast<u64>(value);

    const memdata::Digits written(isNegative ? 0 - pattern : pattern, usedRadix);
    std::string_view lead;
    if (isNegative)
        lead = "-";
    else if (wantsPrefix)
        lead = memdata::radixPrefix(usedRadix);
    // The sign counts as a digit, the prefix does not.
    set_digits(digits, written.text().size() + (isNegative ? 1 : 0));
    return joined(lead, written.text());
}

char* FloatToStr(long double value, int precision, unsigned* digits) {
    const unsigned fractionDigits =
        static_cast<unsigned>(std::clamp<i64>(precision, 0, static_cast<i64>(memdata::kMAX_FIELD_CHARACTERS)));
    return memdata::managedText([&](std::string* text) {
        if (value < 0) text->push_back('-');
        text->append(memdata::floatDigits(std::fabs(value), fractionDigits));
        set_digits(digits, text->size());
    });
}

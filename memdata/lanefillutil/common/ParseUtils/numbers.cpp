// numbers.cpp - digits to values, in four radixes.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/numbers.h"

#include "ParseUtils/characters.h"

#include <cmath>

namespace {

using memdata::isOf;

constexpr u32 kLONGEST_NUMBER = u32{1} << 30; // characters; longer runs of digits end there
constexpr u64 kINDEFINITE = u64{1} << 63;     // what 64 bits can not hold

// A text that ends at end, or at a NUL when end is null. Places are asked for in order, so that none behind a NUL is
// read.
struct NumberTextType {
    const char* text;
    const char* end;

    char at(u32 index) const {
        if (end != nullptr && index >= static_cast<size_t>(end - text)) return '\0';
        return text[index];
    }
};

u32 digit_value(char c) {
    if (c >= '0' && c <= '9') return static_cast<u32>(c - '0');
    const char folded = memdata::foldedCase(c);
    return folded >= 'a' && folded <= 'f' ? static_cast<u32>(folded - 'a') + 10 : 16;
}

u32 prefix_radix(char letter) {
    switch (memdata::foldedCase(letter)) {
    case 'x':
        return 16;
    case 'o':
        return 8;
    case 'n':
        return 2;
    default:
        return 0;
    }
}

// A prefix counts only with a digit behind it. A 2 is let through behind "0n" on purpose: the number then ends at
// once, ahead of the 2.
bool may_follow_prefix(u32 radix, char c) {
    return digit_value(c) < (radix == 2 ? 3 : radix);
}

struct DigitsType {
    u32 digits;
    u32 used; // characters, the point too
    bool isFloat;
    long double value;
};

// Exact while it fits 64 bits. Beyond, a hexadecimal number loses its top and others lose low bits.
struct WholePartType {
    u64 exact = 0;
    long double rounded = 0;
    bool isRounded = false;

    void append(u32 digit, u32 radix) {
        if (radix == 16) {
            exact = exact << 4 | digit;
        } else if (!isRounded && exact <= (UINT64_MAX - digit) / radix) {
            exact = exact * radix + digit;
        } else if (!isRounded) {
            rounded = static_cast<long double>(exact) * radix + digit;
            isRounded = true;
        } else if (!std::isinf(rounded)) { // arithmetic with infinities is slow, and a text can hold a million digits
            rounded = rounded * radix + digit;
        }
    }
    long double value() const { return isRounded ? rounded : static_cast<long double>(exact); }
};

DigitsType read_digits(const NumberTextType& text, u32 from, u32 radix) {
    DigitsType result{};
    WholePartType whole;
    long double fraction = 0;
    long double scale = 1;
    u32 at = from;
    for (; at < kLONGEST_NUMBER; ++at) {
        const char c = text.at(at);
        const u32 digit = digit_value(c);
        if (digit < radix) {
            ++result.digits;
            if (!result.isFloat)
                whole.append(digit, radix);
            else if (!std::isinf(scale))
                fraction += digit / (scale *= radix);
        } else if (c == '.' && !result.isFloat) {
            result.isFloat = true;
        } else {
            break;
        }
    }
    result.used = at - from;
    result.value = whole.value() + fraction;
    return result;
}

// Letters, digits and "_" may not touch a number, but for the suffixes U and L.
bool may_follow_number(char c) {
    const char folded = memdata::foldedCase(c);
    return folded == 'u' || folded == 'l' || !isOf(c, memdata::kWORD_START);
}

} // namespace

u32 memdata::scanNumber(
    const char* start, const char* end, u32 base, bool strict, u32* baseOut, bool* isFloat, long double* value) {
    const NumberTextType text{start, end};
    const bool isNegative = text.at(0) == '-';
    const u32 sign = isNegative ? 1 : 0;
    const char first = text.at(sign);
    if (base == 0 && !isOf(first, kDIGIT_CHARACTER)) return 0;

    u32 radix = base == 2 || base == 8 || base == 16 ? base : 10;
    u32 prefix = 0;
    // Without a given base a "-" goes straight to decimal: "-0x10" is no number.
    const u32 prefixed = first == '0' && !(base == 0 && isNegative) ? prefix_radix(text.at(sign + 1)) : 0;
    if (prefixed != 0) {
        if (may_follow_prefix(prefixed, text.at(sign + 2))) {
            radix = prefixed;
            prefix = 2;
        } else if (base == 0) {
            return 0;
        }
    }

    const DigitsType number = read_digits(text, sign + prefix, radix);
    if (number.digits == 0 && prefix == 0) return 0;
    const u32 used = sign + prefix + number.used;
    if (strict && !may_follow_number(text.at(used))) return 0;
    if (baseOut != nullptr) *baseOut = radix;
    if (isFloat != nullptr) *isFloat = number.isFloat;
    if (value != nullptr) *value = isNegative ? -number.value : number.value;
    return used;
}

u32 StrToNum(const char* text, unsigned base, bool strict, unsigned* baseOut, bool* isFloat, long double* value) {
    return text == nullptr ? 0 : memdata::scanNumber(text, nullptr, base, strict, baseOut, isFloat, value);
}

u64 memdata::unsignedFromValue(long double value) {
    constexpr long double kTWO_TO_63 = 9223372036854775808.0L;
    if (value >= 0 && value < 2 * kTWO_TO_63) return static_cast<u64>(value);
    if (value < 0 && value >= -kTWO_TO_63) return static_cast<u64>(static_cast<i64>(value));
    return kINDEFINITE;
}

i64 memdata::signedFromValue(long double value) {
    return static_cast<i64>(unsignedFromValue(value));
}

// bits.cpp - mask and bit helpers.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/bits.h"

#include <cmath>

unsigned setModesMask(unsigned* mask, unsigned bits, bool set) {
    if (mask == nullptr) return 0;
    const unsigned old = *mask;
    *mask = set ? old | bits : old & ~bits;
    return old;
}

bool testModesMask(unsigned mask, unsigned bits, bool all) {
    return all ? (mask & bits) == bits : (mask & bits) == 0;
}

u64 getBitMask(unsigned width) {
    return width >= 64 ? ~u64{0} : (u64{1} << width) - 1;
}

unsigned getValueBitWidth(unsigned long value) {
    if (value == 0) return 0; // its logarithm is no number
    // On purpose in double precision: just below a power of two from 2^49 on, the result is one too wide.
    return static_cast<unsigned>(std::floor(std::log2(static_cast<double>(value)))) + 1;
}

u64 getValueBitMask(unsigned long value) {
    return getBitMask(getValueBitWidth(value));
}

// bits.h - mask and bit helpers.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_BITS_H
#define MEMDATA_SYSTEM_UTILS_BITS_H

#include "platform/BasicTypes.h"

// Sets (set) or clears the bits in *mask. Returns the old mask; a null mask is left alone and gives 0.
unsigned setModesMask(unsigned* mask, unsigned bits, bool set);

// With all: every one of the bits is set in mask. Without: none of them is.
bool testModesMask(unsigned mask, unsigned bits, bool all);

// The lowest width bits set: 0 for width 0, all ones for 64 and more.
u64 getBitMask(unsigned width);

// Bits that the value takes: floor(log2(value)) + 1, 0 for 0. The logarithm is taken in double precision, and callers
// rely on it: from 2^49 - 1 on, a value just below a power of two counts one bit more (2^53 - 1 gives 54, 2^64 - 1
// gives 65).
unsigned getValueBitWidth(unsigned long value);

// getBitMask(getValueBitWidth(value)).
u64 getValueBitMask(unsigned long value);

#endif

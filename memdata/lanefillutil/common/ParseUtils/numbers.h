// numbers.h - digits to values.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_NUMBERS_H
#define MEMDATA_PARSE_UTILS_NUMBERS_H

#include "platform/BasicTypes.h"

// Reads the number at the start of a text.
//   base     2, 8, 10 or 16 (others count as 10): digits are read in this radix, unless a prefix gives another one;
//            0: the text must begin with a digit, or with "-" and a digit, which is decimal
//   strict   refuses a number that a letter, digit or "_" follows, other than U and L in either case
//   baseOut, isFloat, value   untouched unless a number was found; may be null
// Prefixes, in either case: 0x hexadecimal, 0o octal, 0n binary. One "." makes a float, in any radix. Integers are
// exact up to 64 bits; hexadecimal ones lose the bits above.
// The count of characters used, 0 for no number. A suffix is not used up.
u32 StrToNum(const char* text, unsigned base, bool strict, unsigned* baseOut, bool* isFloat, long double* value);

namespace memdata {

// StrToNum over a text that ends at end and need not be terminated.
u32 scanNumber(
    const char* text, const char* end, u32 base, bool strict, u32* baseOut, bool* isFloat, long double* value);

// A value as a 64-bit pattern: its fraction is cut off; a negative one gets 2 to the power 64 added. What 64 bits
// can not hold, and what is no number, gives 0x8000000000000000.
u64 unsignedFromValue(long double value);
// The same pattern read as a signed number.
i64 signedFromValue(long double value);

} // namespace memdata

#endif

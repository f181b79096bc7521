// ecc_codes.h - the check bits of a bus word, by two Hamming and three Hsiao codes.
// SPDX-License-Identifier: Apache-2.0
//
// All five codes are linear over single bits: the check value of a word is the exclusive or of the check
// values of its set bits. (Hamming, "Error detecting and error correcting codes", 1950; Hsiao, "A class of
// optimal minimum odd-weight-column SEC-DED codes", 1970.)
#ifndef MEMDATA_LANEFILL_CORE_ECC_CODES_H
#define MEMDATA_LANEFILL_CORE_ECC_CODES_H

#include "BmmUtils/model/text.h" // ECC types of a bus block
#include "lanefillCore/lanes/bus_word.h"

#include <array>

// A matrix record: data bit count, check bit count, then for each data bit, most significant first, one byte
// (0 or 1) per check bit, check 0 first.
extern const std::array<unsigned char, 226> h_matrix_32_7;
extern const std::array<unsigned char, 514> h_matrix_64_8;
extern const std::array<unsigned char, 1154> h_matrix_128_9;

unsigned CalculateECCH32_7(unsigned value);      // 7 check bits
unsigned CalculateECCH64_8(unsigned long value); // 8 check bits

// Check 0 is the highest bit of the result. Plain form of the definition; the engine's own work goes through
// eccCheckValue.
unsigned CalculateECCHsiao(EndianConvert::UInt128 value, const unsigned char* matrix);

namespace memdata {

// The check value of a word by one table lookup per byte; bits of the word above the code's data bits do not
// count. Types 0 and above 5 give 0.
u32 eccCheckValue(u32 eccType, EndianConvert::UInt128 word);

} // namespace memdata

#endif

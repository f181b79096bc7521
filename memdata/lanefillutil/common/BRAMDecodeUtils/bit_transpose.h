// bit_transpose.h - blocks of bits with their rows and columns exchanged.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BRAM_DECODE_UTILS_BIT_TRANSPOSE_H
#define MEMDATA_BRAM_DECODE_UTILS_BIT_TRANSPOSE_H

#include "platform/BasicTypes.h"

#include <span>

namespace memdata {

// Blocks of bits: word w of row r, of up to 128 rows, stands at index w / 2 * 256 + r % 64 * 4 + w % 2 * 2 + r / 64. After
// the transposition bits 64 * w + b of the rows stand as word w of rows b and b + 64 did, a row to each bit.
inline constexpr u64 kBLOCK_WORDS = 256;

// In each block bit j of the word at index 4 * i + k becomes bit i of that at 4 * j + k; bit 0 is the least significant
// one.
void transposePlainly(std::span<u64> blocks);
void transposeByWideRegisters(std::span<u64> blocks); // where the processor has them
// By squares of eight bits, each by one instruction over Galois fields, where the processor has these; else the form
// above.
void transpose(std::span<u64> blocks);

} // namespace memdata

#endif

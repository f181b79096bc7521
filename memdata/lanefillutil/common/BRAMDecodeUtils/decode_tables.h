// decode_tables.h - where the bits of a memory lie in the configuration frames: the tables of all memory forms.
//
// A table has a row for each frame that a memory crosses; a row names the array that tells what each bit of the
// memory's slice of that frame holds. Image bits count from the most significant bit of the first byte.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BRAM_DECODE_UTILS_DECODE_TABLES_H
#define MEMDATA_BRAM_DECODE_UTILS_DECODE_TABLES_H

#include "DeviceTableUtils/families.h"

#include <array>
#include <span>

// Entries of the bit arrays: 0 or more a data bit, from -1 to kLAST_PARITY_ENTRY the complement of a parity bit, below
// that no bit of the memory. The two entries without a bit are alike.
inline constexpr i32 kLAST_PARITY_ENTRY = -9999;
inline constexpr i32 kNO_BIT_ENTRY = -10000;
inline constexpr i32 kNO_BIT_ENTRY_2 = -10001;

extern const std::array<i32, 72> tarselBitDecodeTable;
extern const std::array<i32, 320> tarsel2BitDecodeTable;
extern const std::array<i32, 256> dunmare3BitDecodeTable1;
extern const std::array<i32, 256> dunmare3BitDecodeTable2;
extern const std::array<i32, 320> tarsel4LowerBitDecodeTable;
extern const std::array<i32, 320> tarsel4UpperBitDecodeTable;
extern const std::array<i32, 320> tarsel5_36BitDecodeTable;
extern const std::array<i32, 160> tarsel5_18LowerEvenBitDecodeTable;
extern const std::array<i32, 160> tarsel5_18LowerOddBitDecodeTable;
extern const std::array<i32, 160> tarsel5_18UpperEvenBitDecodeTable;
extern const std::array<i32, 160> tarsel5_18UpperOddBitDecodeTable;
extern const std::array<i32, 288> dunmare6BitDecodeTable;

namespace memdata {

struct DecodeTable {
    const char* name;
    std::span<const TranslationTableType> rows;
};

struct BitArray {
    const char* name;
    std::span<const i32> bits;
};

std::span<const DecodeTable> decodeTables();
std::span<const BitArray> bitArrays();

// By the pointer that a location or a family holds; null for a null or unknown one.
const DecodeTable* decodeTableOf(const TranslationTableType* rows);
const BitArray* bitArrayOf(const i32* bits);

} // namespace memdata

#endif

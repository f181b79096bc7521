// mem_text.h - words of lane buffers as the lines of a MEM record, made in blocks by lookup tables.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_MEM_TEXT_H
#define MEMDATA_LANEFILL_CORE_MEM_TEXT_H

#include "platform/BasicTypes.h"

#include <span>

struct fileIODescriptor;

namespace memdata {

// A part of each word: bits of a buffer, printed as hex digits. Bit 0 of a byte is its first bit, and the first bit
// is the least significant one.
struct MemColumn {
    const u8* buffer;
    u64 bufferBits; // bits behind them read as 0
    u64 firstBit;   // of the first word's part
    u64 stepBits;   // from one word's part to the next one's
    u32 bits;       // 1 to 64
    u32 digits;     // 1 to 16, zeros in front; bits above them are cut
};

inline constexpr u32 kMAX_MEM_COLUMNS = 4;

// Digits of a number of so many bits.
constexpr u32 hexDigits(u64 bits) {
    return static_cast<u32>((bits + 3) / 4);
}

// Words on one line: the line ends with the word by which it holds more than 255 bits or more than 127 characters.
u64 memWordsPerLine(u64 countedBits, u64 characters);

// Writes wordCount words, at most kMAX_MEM_COLUMNS columns each: lines of three blanks, then for each word a blank
// and the digits of its columns without a blank between them. Status: that of writing; 7 without memory.
int outputMemLines(fileIODescriptor* file, std::span<const MemColumn> columns, u64 wordCount, u64 wordsPerLine);

} // namespace memdata

#endif

// mem_text.cpp - see mem_text.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/mem_text.h"

#include "FileUtils/descriptor.h"
#include "SystemUtils/bits.h"
#include "SystemUtils/memory.h"
#include "lanefillCore/records/progress_stages.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace memdata {
namespace {

constexpr u64 kLINE_BITS = 255;
constexpr u64 kLINE_CHARACTERS = 127;
constexpr char kLINE_HEAD[] = "   ";
constexpr u64 kLINE_HEAD_BYTES = sizeof kLINE_HEAD - 1;
constexpr u64 kBLOCK_BYTES = 1 << 18; // of text handed over at a time: more than a file's own buffer holds
constexpr u64 kSLACK_BYTES = 8;       // words may be stored a little beyond their end

using BlockBuffer = Tracked<char, [](char* block) { releaseMemory(block); }>;

constexpr char kDIGITS[] = "0123456789ABCDEF";

// Byte -> its two digits, in the order in which they are printed.
constexpr auto kDIGIT_PAIRS = [] {
    std::array<std::array<char, 2>, 256> pairs{};
    for (unsigned byte = 0; byte < 256; ++byte) pairs[byte] = {kDIGITS[byte >> 4], kDIGITS[byte & 15]};
    return pairs;
}();

char* putPair(char* out, u8 byte) {
    std::memcpy(out, kDIGIT_PAIRS[byte].data(), 2);
    return out + 2;
}

char* putDigits(char* out, u64 value, u32 digits) {
    if (digits % 2 != 0) {
        --digits;
        *out++ = kDIGITS[value >> (digits * 4) & 15];
    }
    while (digits > 0) {
        digits -= 2;
        out = putPair(out, static_cast<u8>(value >> (digits * 4)));
    }
    return out;
}

// The column's part that begins at a bit of its buffer.
u64 bitsAt(const MemColumn& column, u64 firstBit) {
    if (firstBit >= column.bufferBits) return 0;
    const u64 bits = std::min<u64>(column.bits, column.bufferBits - firstBit);
    const u8* at = column.buffer + firstBit / 8;
    const u64 shift = firstBit % 8;
    const u64 byteCount = (column.bufferBits - firstBit + shift + 7) / 8; // from at on
    u64 word = 0;
    if (byteCount >= sizeof word)
        std::memcpy(&word, at, sizeof word);
    else
        std::memcpy(&word, at, byteCount);
    word >>= shift;
    if (shift + bits > 64) word |= u64{at[8]} << (64 - shift);
    return word & getBitMask(static_cast<unsigned>(bits));
}

// Prints words from firstWord on; returns where the text ends.
using PutWords = char* (*)(char* out, std::span<const MemColumn> columns, u64 firstWord, u64 wordCount);

// The plain way, for any columns.
char* putWords(char* out, std::span<const MemColumn> columns, u64 firstWord, u64 wordCount) {
    for (u64 word = firstWord; word < firstWord + wordCount; ++word) {
        *out++ = ' ';
        for (const MemColumn& column : columns)
            out = putDigits(out, bitsAt(column, column.firstBit + word * column.stepBits), column.digits);
    }
    return out;
}

template<u64 Bytes>
char* putBytes(char* out, const u8* at) {
    for (u64 byte = Bytes; byte-- > 0;) out = putPair(out, at[byte]);
    return out;
}

// One column of whole bytes.
template<u64 Bytes>
char* putWholeWords(char* out, std::span<const MemColumn> columns, u64 firstWord, u64 wordCount) {
    const u8* at = columns[0].buffer + columns[0].firstBit / 8 + firstWord * Bytes;
    for (; wordCount > 0; --wordCount, at += Bytes) {
        *out++ = ' ';
        out = putBytes<Bytes>(out, at);
    }
    return out;
}

// A blank and a byte's digits at once; the fourth byte is overwritten by what follows.
constexpr auto kBYTE_WORDS = [] {
    std::array<std::array<char, 4>, 256> words{};
    for (unsigned byte = 0; byte < 256; ++byte) words[byte] = {' ', kDIGITS[byte >> 4], kDIGITS[byte & 15], ' '};
    return words;
}();

template<>
char* putWholeWords<1>(char* out, std::span<const MemColumn> columns, u64 firstWord, u64 wordCount) {
    const u8* at = columns[0].buffer + columns[0].firstBit / 8 + firstWord;
    for (; wordCount > 0; --wordCount, out += 3) std::memcpy(out, kBYTE_WORDS[*at++].data(), 4);
    return out;
}

// Two words of four bits at once, the low half of a byte first.
constexpr auto kHALF_BYTE_WORDS = [] {
    std::array<std::array<char, 4>, 256> words{};
    for (unsigned byte = 0; byte < 256; ++byte) words[byte] = {' ', kDIGITS[byte & 15], ' ', kDIGITS[byte >> 4]};
    return words;
}();

char* putHalfBytes(char* out, std::span<const MemColumn> columns, u64 firstWord, u64 wordCount) {
    u64 place = columns[0].firstBit / 4 + firstWord;
    const auto putOne = [&] {
        *out++ = ' ';
        *out++ = kDIGITS[columns[0].buffer[place / 2] >> (place % 2 * 4) & 15];
        ++place;
        --wordCount;
    };
    if (wordCount > 0 && place % 2 != 0) putOne();
    for (const u8* at = columns[0].buffer + place / 2; wordCount >= 2; wordCount -= 2, place += 2, out += 4)
        std::memcpy(out, kHALF_BYTE_WORDS[*at++].data(), 4);
    if (wordCount > 0) putOne();
    return out;
}

// A parity bit for each byte, then the bytes.
template<u64 Bytes>
char* putParityWords(char* out, std::span<const MemColumn> columns, u64 firstWord, u64 wordCount) {
    u64 parityBit = columns[0].firstBit + firstWord * Bytes;
    const u8* at = columns[1].buffer + columns[1].firstBit / 8 + firstWord * Bytes;
    for (; wordCount > 0; --wordCount, at += Bytes, parityBit += Bytes) {
        const unsigned parity = u32{columns[0].buffer[parityBit / 8]} >> parityBit % 8 & ((1u << Bytes) - 1);
        *out++ = ' ';
        if constexpr (Bytes == 8)
            out = putPair(out, static_cast<u8>(parity));
        else
            *out++ = kDIGITS[parity];
        out = putBytes<Bytes>(out, at);
    }
    return out;
}

// Whole digits side by side, at a place that is a multiple of their width, and all of them inside the buffer.
bool isPlain(const MemColumn& column, u64 wordCount) {
    return column.stepBits == column.bits && column.digits == hexDigits(column.bits) &&
           column.firstBit % std::min(column.bits, 8u) == 0 && column.firstBit <= column.bufferBits &&
           wordCount <= (column.bufferBits - column.firstBit) / column.bits;
}

// The quickest way for these words.
PutWords wayOf(std::span<const MemColumn> columns, u64 wordCount) {
    if (!std::ranges::all_of(columns, [&](const MemColumn& column) { return isPlain(column, wordCount); }))
        return putWords;
    if (columns.size() == 1) {
        switch (columns[0].bits) {
        case 4:
            return putHalfBytes;
        case 8:
            return putWholeWords<1>;
        case 16:
            return putWholeWords<2>;
        case 32:
            return putWholeWords<4>;
        case 64:
            return putWholeWords<8>;
        default:
            return putWords;
        }
    }
    if (columns.size() != 2 || columns[0].bits * 8 != columns[1].bits) return putWords;
    switch (columns[0].bits) {
    case 1:
        return putParityWords<1>;
    case 2:
        return putParityWords<2>;
    case 4:
        return putParityWords<4>;
    case 8:
        return putParityWords<8>;
    default:
        return putWords;
    }
}

u64 wordCharacters(std::span<const MemColumn> columns) {
    u64 characters = 1; // the blank
    for (const MemColumn& column : columns) characters += column.digits;
    return characters;
}

} // namespace

u64 memWordsPerLine(u64 countedBits, u64 characters) {
    const u64 byBits = kLINE_BITS / std::max<u64>(countedBits, 1) + 1;
    const u64 byCharacters = kLINE_CHARACTERS / std::max<u64>(characters, 1) + 1;
    return std::min(byBits, byCharacters);
}

int outputMemLines(fileIODescriptor* file, std::span<const MemColumn> columns, u64 wordCount, u64 wordsPerLine) {
    const u64 lineBytes = kLINE_HEAD_BYTES + wordsPerLine * wordCharacters(columns) + 1;
    const u64 lineCount = (wordCount + wordsPerLine - 1) / wordsPerLine;
    const u64 linesPerBlock = std::clamp<u64>(kBLOCK_BYTES / lineBytes, 1, std::max<u64>(lineCount, 1));
    const BlockBuffer block(
        static_cast<char*>(getMemory("lines of a MEM file", linesPerBlock * lineBytes + kSLACK_BYTES)));
    if (block == nullptr) return 7;

    const PutWords put = wayOf(columns, wordCount);
    const u64 stepBits = columns.empty() ? 0 : columns.back().stepBits;
    for (u64 word = 0; word < wordCount;) {
        char* out = block.get();
        const u64 first = word;
        for (u64 line = 0; line < linesPerBlock && word < wordCount; ++line) {
            const u64 words = std::min(wordsPerLine, wordCount - word);
            out = std::copy_n(kLINE_HEAD, kLINE_HEAD_BYTES, out);
            out = put(out, columns, word, words);
            *out++ = '\n';
            word += words;
        }
        int status = outputBlock(file, block.get(), static_cast<u64>(out - block.get()));
        if (status == 0) status = advanceProgress((word - first) * stepBits);
        if (status != 0) return status;
    }
    return 0;
}

} // namespace memdata

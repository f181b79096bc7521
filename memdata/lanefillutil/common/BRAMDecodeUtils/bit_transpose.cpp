// bit_transpose.cpp - see bit_transpose.h.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/bit_transpose.h"

#ifdef __x86_64__
#include <immintrin.h>
#endif

#include <array>

namespace memdata {

namespace {

// Exchanges quarters of ever smaller squares of bits, two sizes in one pass: the upper right with the lower left one of
// squares of 4 * quarter bits, then of 2 * quarter.
template<u32 quarter>
[[gnu::always_inline]] inline void exchangeQuarters(u64* rows) {
    constexpr u32 kROW_WORDS = 4;
    constexpr u64 kLOW_OF_LARGE = ~u64{0} / ((u64{1} << 2 * quarter) + 1);
    constexpr u64 kLOW_OF_SMALL = ~u64{0} / ((u64{1} << quarter) + 1);
    const auto exchange = [](u64& upper, u64& lower, u32 shift, u64 low) {
        const u64 differ = (upper >> shift ^ lower) & low;
        lower ^= differ;
        upper ^= differ << shift;
    };
    for (u32 square = 0; square < 64; square += 4 * quarter) {
        u64* const at = rows + square * kROW_WORDS;
        constexpr u32 kSTEP = quarter * kROW_WORDS;
        for (u32 i = 0; i < kSTEP; ++i) {
            u64 a = at[i];
            u64 b = at[i + kSTEP];
            u64 c = at[i + 2 * kSTEP];
            u64 d = at[i + 3 * kSTEP];
            exchange(a, c, 2 * quarter, kLOW_OF_LARGE);
            exchange(b, d, 2 * quarter, kLOW_OF_LARGE);
            exchange(a, b, quarter, kLOW_OF_SMALL);
            exchange(c, d, quarter, kLOW_OF_SMALL);
            at[i] = a;
            at[i + kSTEP] = b;
            at[i + 2 * kSTEP] = c;
            at[i + 3 * kSTEP] = d;
        }
    }
}

[[gnu::always_inline]] inline void transposeAll(std::span<u64> blocks) {
    for (u64 at = 0; at < blocks.size(); at += kBLOCK_WORDS) {
        u64* const rows = &blocks[at];
        exchangeQuarters<16>(rows);
        exchangeQuarters<4>(rows);
        exchangeQuarters<1>(rows);
    }
}

#ifdef __x86_64__
// The compiler warns of registers that its own header leaves undefined on purpose.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#ifndef __clang__
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#define FOR_SQUARES [[gnu::target("avx512f,avx512bw,avx512vbmi,gfni")]]

bool hasSquareInstructions() {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("gfni");
}

// In what follows a register is eight words, and a block is four columns of 64 words that stand side by side. Rows of a
// square come last first, which is how the matrix of the Galois field instruction counts them.
using Indexes = std::array<u8, 64>;

// From two registers, four rows of four columns: of two columns each byte's rows, four bytes a byte.
constexpr Indexes rowsOfBytes(u32 firstColumn) {
    Indexes at{};
    for (u32 i = 0; i < at.size(); ++i) {
        const u32 row = 3 - i % 4;
        const u32 byte = i / 4 % 8;
        const u32 column = firstColumn + i / 32;
        at[i] = static_cast<u8>(row / 2 * 64 + (row % 2 * 4 + column) * 8 + byte);
    }
    return at;
}

// From two such registers, the upper rows second: one column, eight bytes a byte.
constexpr std::array<u32, 16> squaresOfColumn(u32 column) {
    std::array<u32, 16> at{};
    for (u32 i = 0; i < at.size(); ++i) at[i] = (i % 2 == 0 ? 16 : 0) + column % 2 * 8 + i / 2;
    return at;
}

constexpr Indexes turnedBytes() {
    Indexes at{};
    for (u32 i = 0; i < at.size(); ++i) at[i] = static_cast<u8>(i % 8 * 8 + i / 8);
    return at;
}

constexpr Indexes kLOW_COLUMNS = rowsOfBytes(0);
constexpr Indexes kHIGH_COLUMNS = rowsOfBytes(2);
constexpr std::array<u32, 16> kEVEN_COLUMN = squaresOfColumn(0);
constexpr std::array<u32, 16> kODD_COLUMN = squaresOfColumn(1);
constexpr Indexes kTURNED_BYTES = turnedBytes();
constexpr long long kEACH_BIT = static_cast<long long>(0x8040201008040201); // bit j in byte j

// Quarter l of register k becomes quarter k of register l.
FOR_SQUARES inline void turnQuarters(__m512i (&z)[4]) {
    const __m512i low01 = _mm512_shuffle_i64x2(z[0], z[1], 0x44);
    const __m512i high01 = _mm512_shuffle_i64x2(z[0], z[1], 0xEE);
    const __m512i low23 = _mm512_shuffle_i64x2(z[2], z[3], 0x44);
    const __m512i high23 = _mm512_shuffle_i64x2(z[2], z[3], 0xEE);
    z[0] = _mm512_shuffle_i64x2(low01, low23, 0x88);
    z[1] = _mm512_shuffle_i64x2(low01, low23, 0xDD);
    z[2] = _mm512_shuffle_i64x2(high01, high23, 0x88);
    z[3] = _mm512_shuffle_i64x2(high01, high23, 0xDD);
}

// Eight rows of four columns at words: the squares of each column turned, word c of a register for byte c of its words.
FOR_SQUARES inline void turnSquares(const u64* words, __m512i (&columns)[4]) {
    const __m512i lowColumns = _mm512_loadu_si512(kLOW_COLUMNS.data());
    const __m512i highColumns = _mm512_loadu_si512(kHIGH_COLUMNS.data());
    __m512i z[4];
    for (u32 i = 0; i < 4; ++i) z[i] = _mm512_loadu_si512(words + i * 8);
    const __m512i lower[2] = {
        _mm512_permutex2var_epi8(z[0], lowColumns, z[1]), _mm512_permutex2var_epi8(z[0], highColumns, z[1])};
    const __m512i upper[2] = {
        _mm512_permutex2var_epi8(z[2], lowColumns, z[3]), _mm512_permutex2var_epi8(z[2], highColumns, z[3])};
    for (u32 column = 0; column < 4; ++column) {
        const __m512i squares = _mm512_permutex2var_epi32(lower[column / 2],
            _mm512_loadu_si512(column % 2 == 0 ? kEVEN_COLUMN.data() : kODD_COLUMN.data()), upper[column / 2]);
        columns[column] = _mm512_gf2p8affine_epi64_epi8(_mm512_set1_epi64(kEACH_BIT), squares, 0);
    }
}

// Eight registers of turned squares, of the rows from 8 * i on: word j of register c is row 8 * c + j of the column.
FOR_SQUARES inline void joinSquares(const __m512i (&squares)[8], __m512i (&rows)[8]) {
    __m512i even[4];
    __m512i odd[4];
    for (u32 i = 0; i < 4; ++i) {
        even[i] = _mm512_unpacklo_epi64(squares[2 * i], squares[2 * i + 1]);
        odd[i] = _mm512_unpackhi_epi64(squares[2 * i], squares[2 * i + 1]);
    }
    turnQuarters(even);
    turnQuarters(odd);
    const __m512i turned = _mm512_loadu_si512(kTURNED_BYTES.data());
    for (u32 i = 0; i < 4; ++i) {
        rows[2 * i] = _mm512_permutexvar_epi8(turned, even[i]);
        rows[2 * i + 1] = _mm512_permutexvar_epi8(turned, odd[i]);
    }
}

FOR_SQUARES void transposeBySquares(std::span<u64> blocks) {
    for (u64 at = 0; at < blocks.size(); at += kBLOCK_WORDS) {
        u64* const words = &blocks[at];
        __m512i squares[4][8];
        for (u32 i = 0; i < 8; ++i) {
            __m512i columns[4];
            turnSquares(words + i * 32, columns);
            for (u32 column = 0; column < 4; ++column) squares[column][i] = columns[column];
        }
        __m512i rows[4][8];
        for (u32 column = 0; column < 4; ++column) joinSquares(squares[column], rows[column]);
        for (u32 i = 0; i < 8; ++i) {
            __m512i z[4] = {_mm512_unpacklo_epi64(rows[0][i], rows[1][i]),
                _mm512_unpacklo_epi64(rows[2][i], rows[3][i]), _mm512_unpackhi_epi64(rows[0][i], rows[1][i]),
                _mm512_unpackhi_epi64(rows[2][i], rows[3][i])};
            turnQuarters(z);
            for (u32 j = 0; j < 4; ++j) _mm512_storeu_si512(words + i * 32 + j * 8, z[j]);
        }
    }
}
#pragma GCC diagnostic pop

[[gnu::target("avx2")]] void transposeByAvx2(std::span<u64> blocks) {
    transposeAll(blocks);
}
#endif

} // namespace

void transposePlainly(std::span<u64> blocks) {
    transposeAll(blocks);
}

void transposeByWideRegisters(std::span<u64> blocks) {
#ifdef __x86_64__
    if (__builtin_cpu_supports("avx2")) return transposeByAvx2(blocks);
#endif
    transposePlainly(blocks);
}

void transpose(std::span<u64> blocks) {
#ifdef __x86_64__
    if (hasSquareInstructions()) return transposeBySquares(blocks);
#endif
    transposeByWideRegisters(blocks);
}

} // namespace memdata

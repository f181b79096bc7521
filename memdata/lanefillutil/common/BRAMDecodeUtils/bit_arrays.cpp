// bit_arrays.cpp - what each bit of a memory's slice of a frame holds, made at compile time from groups.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/decode_tables.h"

#include <algorithm>
#include <array>

namespace {

constexpr size_t kGROUP_BITS = 16;

enum GroupKind : u8 { kDATA, kPARITY, kNO_BITS };

// 16 neighbouring bits of a slice.
struct BitGroup {
    GroupKind kind;
    u32 shape; // which list of steps
    i32 first; // entry at step 0
};

#include "devices/dunmare_3_decode.inc"
#include "devices/tarsel_4_decode.inc"

// Steps from the first entry of a group: down from it in data bits, up in complements of parity bits.
struct GroupShape {
    i32 steps[kGROUP_BITS]; // 0 to 15, each once
    i32 dataStride;
    i32 parityStride;
};

template<size_t N>
consteval std::array<i32, N * kGROUP_BITS> bitsOf(const BitGroup (&groups)[N], auto&& shapeOf) {
    std::array<i32, N * kGROUP_BITS> bits{};
    i32* at = bits.data();
    for (const BitGroup& group : groups) {
        const GroupShape shape = shapeOf(group.shape);
        for (i32 step : shape.steps) {
            i32 entry = kNO_BIT_ENTRY;
            if (group.kind == kDATA) entry = group.first - step * shape.dataStride;
            if (group.kind == kPARITY) entry = group.first + step * shape.parityStride;
            *at++ = entry;
        }
    }
    return bits;
}

template<size_t N>
consteval std::array<i32, N> withSecondNoBit(std::array<i32, N> bits, size_t group, size_t entry) {
    bits[group * kGROUP_BITS + entry - 1] = kNO_BIT_ENTRY_2; // entries count from 1, as the 15th
    return bits;
}

// The bits of the other half of a large memory: data bits stand a half further, parity bits too.
template<size_t N>
consteval std::array<i32, N> oddRow(std::array<i32, N> bits, i32 dataBits, i32 parityBits) {
    for (i32& entry : bits) {
        if (entry >= 0)
            entry += dataBits;
        else if (entry >= kLAST_PARITY_ENTRY)
            entry -= parityBits;
    }
    return bits;
}

consteval auto always(const GroupShape& shape) {
    return [shape](u32) { return shape; };
}

// clang-format off

constexpr GroupShape kTARSEL_2_SHAPE   {{0, 2, 4, 6, 14, 12, 10, 8, 9, 11, 13, 15, 7, 5, 3, 1}, 16, 2};
constexpr GroupShape kTARSEL_5_36_SHAPE{{0, 4, 8, 12, 2, 6, 10, 14, 1, 5, 9, 13, 3, 7, 11, 15}, 16, 2};
constexpr GroupShape kTARSEL_5_18_SHAPE{{0, 4, 8, 12, 2, 6, 10, 14, 1, 5, 9, 13, 3, 7, 11, 15},  8, 1};

constexpr BitGroup kTARSEL_2_GROUPS[] = {
    {kDATA, 0, 248}, {kDATA, 0, 249}, {kDATA, 0, 250}, {kDATA, 0, 251}, {kPARITY, 0, -32},
    {kDATA, 0, 252}, {kDATA, 0, 253}, {kDATA, 0, 254}, {kDATA, 0, 255}, {kNO_BITS, 0, 0},
    {kNO_BITS, 0, 0}, {kDATA, 0, 240}, {kDATA, 0, 241}, {kDATA, 0, 242}, {kDATA, 0, 243},
    {kPARITY, 0, -31}, {kDATA, 0, 244}, {kDATA, 0, 245}, {kDATA, 0, 246}, {kDATA, 0, 247},
};

constexpr BitGroup kTARSEL_5_36_GROUPS[] = {
    {kDATA, 0, 245}, {kDATA, 0, 247}, {kDATA, 0, 241}, {kDATA, 0, 243}, {kDATA, 0, 255},
    {kPARITY, 0, -31}, {kDATA, 0, 251}, {kDATA, 0, 253}, {kNO_BITS, 0, 0}, {kDATA, 0, 249},
    {kDATA, 0, 246}, {kNO_BITS, 0, 0}, {kDATA, 0, 242}, {kDATA, 0, 244}, {kPARITY, 0, -32},
    {kDATA, 0, 240}, {kDATA, 0, 252}, {kDATA, 0, 254}, {kDATA, 0, 248}, {kDATA, 0, 250},
};

constexpr BitGroup kTARSEL_5_18_LOWER_GROUPS[] = {
    {kDATA, 0, 126}, {kDATA, 0, 127}, {kDATA, 0, 124}, {kDATA, 0, 125}, {kDATA, 0, 123},
    {kPARITY, 0, -16}, {kDATA, 0, 121}, {kDATA, 0, 122}, {kNO_BITS, 0, 0}, {kDATA, 0, 120},
};

constexpr BitGroup kTARSEL_5_18_UPPER_GROUPS[] = {
    {kDATA, 0, 127}, {kNO_BITS, 0, 0}, {kDATA, 0, 125}, {kDATA, 0, 126}, {kPARITY, 0, -16},
    {kDATA, 0, 124}, {kDATA, 0, 122}, {kDATA, 0, 123}, {kDATA, 0, 120}, {kDATA, 0, 121},
};

constexpr i32 kTARSEL_BITS[] = { // positions 32 to 39 hold no bits
    56, 24, 25, 57, 49, 17, 16, 48, 60, 28, 30, 62, 54, 22, 20, 52, 58, 26, 27, 59, 51, 19, 18, 50, 61, 29, 31, 63, 55, 23, 21, 53,
    kNO_BIT_ENTRY, kNO_BIT_ENTRY, kNO_BIT_ENTRY, kNO_BIT_ENTRY, kNO_BIT_ENTRY, kNO_BIT_ENTRY, kNO_BIT_ENTRY, kNO_BIT_ENTRY,
    37, 5, 7, 39, 47, 15, 13, 45, 34, 2, 3, 35, 43, 11, 10, 42, 36, 4, 6, 38, 46, 14, 12, 44, 32, 0, 1, 33, 41, 9, 8, 40,
};

// clang-format on

// Dunmare-III: groups of seven around a gap.
constexpr size_t kSEVEN = 7;
constexpr size_t kGAP_POSITION = 128;
constexpr size_t kGAP_BITS = 4;
constexpr i32 kSEVEN_DATA_STRIDE = 128;
constexpr i32 kSEVEN_PARITY_STRIDE = 16;

// kept: entries of every group that hold bits.
consteval std::array<i32, 256> sevensOf(size_t kept) {
    std::array<i32, 256> bits{};
    bits.fill(kNO_BIT_ENTRY);
    size_t position = 0;
    for (i32 first : kDUNMARE_3_GROUPS)
        for (size_t n = 0; n < kSEVEN; ++n, ++position) {
            if (position == kGAP_POSITION) position += kGAP_BITS;
            if (n >= kept) continue;
            const i32 step = static_cast<i32>(n);
            bits[position] = first >= 0 ? first + step * kSEVEN_DATA_STRIDE : first - step * kSEVEN_PARITY_STRIDE;
        }
    return bits;
}

// Dunmare6: groups of two parity bits and sixteen data bits, all descending.
consteval std::array<i32, 288> descendingGroups() {
    std::array<i32, 288> bits{};
    i32* at = bits.data();
    for (i32 group = 0; group < 16; ++group) {
        *at++ = -(2 * group + 2);
        *at++ = -(2 * group + 1);
        for (i32 bit = 15; bit >= 0; --bit) *at++ = 16 * group + bit;
    }
    return bits;
}

constexpr std::array<i32, 160> kLOWER_HALF = bitsOf(kTARSEL_5_18_LOWER_GROUPS, always(kTARSEL_5_18_SHAPE));
constexpr std::array<i32, 160> kUPPER_HALF = bitsOf(kTARSEL_5_18_UPPER_GROUPS, always(kTARSEL_5_18_SHAPE));
constexpr i32 kHALF_DATA_BITS = 128;
constexpr i32 kHALF_PARITY_BITS = 16;

consteval GroupShape tarsel4Shape(u32 shape) {
    GroupShape result{{}, 16, 2};
    std::ranges::copy(kTARSEL_4_SHAPES[shape], result.steps);
    return result;
}

} // namespace

constexpr std::array<i32, 72> tarselBitDecodeTable = std::to_array(kTARSEL_BITS);
constexpr std::array<i32, 320> tarsel2BitDecodeTable =
    withSecondNoBit(bitsOf(kTARSEL_2_GROUPS, always(kTARSEL_2_SHAPE)), 10, 12);
constexpr std::array<i32, 256> dunmare3BitDecodeTable1 = sevensOf(kSEVEN);
constexpr std::array<i32, 256> dunmare3BitDecodeTable2 = sevensOf(2);
constexpr std::array<i32, 320> tarsel4LowerBitDecodeTable = bitsOf(kTARSEL_4_LOWER_GROUPS, tarsel4Shape);
constexpr std::array<i32, 320> tarsel4UpperBitDecodeTable = bitsOf(kTARSEL_4_UPPER_GROUPS, tarsel4Shape);
constexpr std::array<i32, 320> tarsel5_36BitDecodeTable =
    withSecondNoBit(bitsOf(kTARSEL_5_36_GROUPS, always(kTARSEL_5_36_SHAPE)), 8, 15);
constexpr std::array<i32, 160> tarsel5_18LowerEvenBitDecodeTable = kLOWER_HALF;
constexpr std::array<i32, 160> tarsel5_18LowerOddBitDecodeTable =
    withSecondNoBit(oddRow(kLOWER_HALF, kHALF_DATA_BITS, kHALF_PARITY_BITS), 8, 15);
constexpr std::array<i32, 160> tarsel5_18UpperEvenBitDecodeTable = kUPPER_HALF;
constexpr std::array<i32, 160> tarsel5_18UpperOddBitDecodeTable =
    withSecondNoBit(oddRow(kUPPER_HALF, kHALF_DATA_BITS, kHALF_PARITY_BITS), 1, 15);
constexpr std::array<i32, 288> dunmare6BitDecodeTable = descendingGroups();

namespace memdata {
namespace {

#define NAMED(array)                                                                                                   \
    { #array, array }
constexpr BitArray kBIT_ARRAYS[] = {
    NAMED(tarselBitDecodeTable),
    NAMED(tarsel2BitDecodeTable),
    NAMED(dunmare3BitDecodeTable1),
    NAMED(dunmare3BitDecodeTable2),
    NAMED(tarsel4LowerBitDecodeTable),
    NAMED(tarsel4UpperBitDecodeTable),
    NAMED(tarsel5_36BitDecodeTable),
    NAMED(tarsel5_18LowerEvenBitDecodeTable),
    NAMED(tarsel5_18LowerOddBitDecodeTable),
    NAMED(tarsel5_18UpperEvenBitDecodeTable),
    NAMED(tarsel5_18UpperOddBitDecodeTable),
    NAMED(dunmare6BitDecodeTable),
};
#undef NAMED

} // namespace

std::span<const BitArray> bitArrays() {
    return kBIT_ARRAYS;
}

const BitArray* bitArrayOf(const i32* bits) {
    const auto* found = std::ranges::find_if(kBIT_ARRAYS, [bits](const BitArray& a) { return a.bits.data() == bits; });
    return found == std::end(kBIT_ARRAYS) ? nullptr : found;
}

} // namespace memdata

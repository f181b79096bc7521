// chunk_tables.cpp - the tables of the bit cursor, computed by the compiler from their rules.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/chunk_access.h"

#include <array>

namespace {

// What crosses into the next byte looks alike in both orders: s bits lie there.
constexpr TransformLookupType crossing(u32 offset, u32 count) {
    const u32 s = offset + count - 8;
    return {0, (1u << s) - 1, s};
}

constexpr TransformLookupType inside(u32 count, u32 shift) {
    const u32 mask = ((1u << count) - 1) << shift;
    return {mask, 255 - mask, shift};
}

constexpr TransformLookupType entry(bool laneOrder, u32 offset, u32 count) {
    if (count == 0) return {0, 0, 0};
    if (offset + count > 8) return crossing(offset, count);
    return inside(count, laneOrder ? offset : 8 - offset - count);
}

constexpr u8 mirrored(u32 width, u32 value) {
    u32 result = 0;
    for (u32 bit = 0; bit < width; ++bit)
        if ((value >> bit & 1) != 0) result |= 1u << (width - 1 - bit);
    return static_cast<u8>(result);
}

template<u32 Width>
constexpr std::array<u8, (1u << Width)> mirrorTable() {
    std::array<u8, (1u << Width)> table{};
    for (u32 value = 0; value < table.size(); ++value) table[value] = mirrored(Width, value);
    return table;
}

constexpr auto kMIRROR_1 = mirrorTable<1>();
constexpr auto kMIRROR_2 = mirrorTable<2>();
constexpr auto kMIRROR_3 = mirrorTable<3>();
constexpr auto kMIRROR_4 = mirrorTable<4>();
constexpr auto kMIRROR_5 = mirrorTable<5>();
constexpr auto kMIRROR_6 = mirrorTable<6>();
constexpr auto kMIRROR_7 = mirrorTable<7>();
constexpr auto kMIRROR_8 = mirrorTable<8>();

} // namespace

// One row of counts 0 to 8 at a bit offset.
#define LOOKUP_ROW(lane, o)                                                                                            \
    {                                                                                                                  \
        entry(lane, o, 0), entry(lane, o, 1), entry(lane, o, 2), entry(lane, o, 3), entry(lane, o, 4),                 \
            entry(lane, o, 5), entry(lane, o, 6), entry(lane, o, 7), entry(lane, o, 8)                                 \
    }
#define LOOKUP_ROWS(lane)                                                                                              \
    LOOKUP_ROW(lane, 0), LOOKUP_ROW(lane, 1), LOOKUP_ROW(lane, 2), LOOKUP_ROW(lane, 3), LOOKUP_ROW(lane, 4),           \
        LOOKUP_ROW(lane, 5), LOOKUP_ROW(lane, 6), LOOKUP_ROW(lane, 7)

constinit const TransformLookupType dataTransformUnitLookup[8][9] = {LOOKUP_ROWS(false)};
constinit const TransformLookupType bitLaneTransformUnitLookup[8][9] = {LOOKUP_ROWS(true)};

constinit const u8* const reverseBitValueTable[9] = {nullptr, kMIRROR_1.data(), kMIRROR_2.data(), kMIRROR_3.data(),
    kMIRROR_4.data(), kMIRROR_5.data(), kMIRROR_6.data(), kMIRROR_7.data(), kMIRROR_8.data()};

const u32 reverseValueMask[8] = {0, 1, 3, 7, 15, 31, 63, 127};

// bit_access.cpp - shifts of byte runs, and bit order inside bytes and units.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/bit_access.h"

#include <algorithm>
#include <array>

namespace {

// Each byte with its groups of groupBits in reversed order.
consteval std::array<u8, 256> reversedGroups(u32 groupBits) {
    std::array<u8, 256> table{};
    for (u32 byte = 0; byte < 256; ++byte) {
        u32 reversed = 0;
        for (u32 at = 0; at < 8; at += groupBits)
            reversed |= (byte >> at & ((1U << groupBits) - 1)) << (8 - groupBits - at);
        table[byte] = static_cast<u8>(reversed);
    }
    return table;
}

constexpr std::array<u8, 256> kREVERSED_BITS = reversedGroups(1);
constexpr std::array<u8, 256> kREVERSED_PAIRS = reversedGroups(2);
constexpr std::array<u8, 256> kREVERSED_NIBBLES = reversedGroups(4);

void mapBytes(u8* data, u64 byteCount, const std::array<u8, 256>& table) {
    for (u64 i = 0; i < byteCount; ++i) data[i] = table[data[i]];
}

void reverseUnits(u8* data, u64 byteCount, u64 unitBytes) {
    for (u64 at = 0; at + unitBytes <= byteCount; at += unitBytes) std::reverse(data + at, data + at + unitBytes);
}

} // namespace

void ShiftDataLeft(u8* data, u64 byteCount, u32 bits) {
    for (u64 i = 0; i < byteCount; ++i) {
        const u32 next = i + 1 < byteCount ? data[i + 1] : 0;
        data[i] = static_cast<u8>(u32{data[i]} << bits | next >> (8 - bits));
    }
}

void ShiftDataRight(u8* data, u64 byteCount, u32 bits) {
    u32 previous = 0;
    for (u64 i = 0; i < byteCount; ++i) {
        const u32 byte = data[i];
        data[i] = static_cast<u8>(previous << (8 - bits) | byte >> bits);
        previous = byte;
    }
}

void DecodeBitlaneWidths(u8* data, u64 laneWidth, u64 byteCount) {
    switch (laneWidth) {
    case 1:
        return mapBytes(data, byteCount, kREVERSED_BITS);
    case 2:
        return mapBytes(data, byteCount, kREVERSED_PAIRS);
    case 4:
        return mapBytes(data, byteCount, kREVERSED_NIBBLES);
    case 16:
        return reverseUnits(data, byteCount, 2);
    case 32:
        return reverseUnits(data, byteCount, 4);
    default:
        return;
    }
}

// bit_access.cpp - shifts of byte runs, and bit order inside bytes and units.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/bit_access.h"

#include <algorithm>
#include <cstring>

namespace {

// The groups of groupBits of each byte in reversed order: 1, 2 or 4.
template<u32 groupBits>
void reverseGroups(u8* data, u64 byteCount) {
    const auto reversed = [](u64 bytes) {
        constexpr u64 kEACH_BYTE = ~u64{0} / 0xFF;
        bytes = (bytes >> 4 & kEACH_BYTE * 0x0F) | (bytes & kEACH_BYTE * 0x0F) << 4;
        if (groupBits <= 2) bytes = (bytes >> 2 & kEACH_BYTE * 0x33) | (bytes & kEACH_BYTE * 0x33) << 2;
        if (groupBits == 1) bytes = (bytes >> 1 & kEACH_BYTE * 0x55) | (bytes & kEACH_BYTE * 0x55) << 1;
        return bytes;
    };
    u64 at = 0;
    for (u64 bytes = 0; at + 8 <= byteCount; at += 8) {
        std::memcpy(&bytes, data + at, 8);
        bytes = reversed(bytes);
        std::memcpy(data + at, &bytes, 8);
    }
    for (; at < byteCount; ++at) data[at] = static_cast<u8>(reversed(data[at]));
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
        return reverseGroups<1>(data, byteCount);
    case 2:
        return reverseGroups<2>(data, byteCount);
    case 4:
        return reverseGroups<4>(data, byteCount);
    case 16:
        return reverseUnits(data, byteCount, 2);
    case 32:
        return reverseUnits(data, byteCount, 4);
    default:
        return;
    }
}

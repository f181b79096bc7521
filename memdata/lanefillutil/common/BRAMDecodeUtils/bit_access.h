// bit_access.h - bits of images and frames, and bit order inside bytes.
//
// Bits count from the most significant one of the first byte: bit k is in byte k / 8 under mask 0x80 >> (k mod 8).
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BRAM_DECODE_UTILS_BIT_ACCESS_H
#define MEMDATA_BRAM_DECODE_UTILS_BIT_ACCESS_H

#include "platform/BasicTypes.h"

namespace memdata {

// Byte of a bit in rows of rowBits that lie strideBits apart. Both are multiples of 8, rowBits is not 0.
inline u64 byteOfBit(u64 rowBits, u64 strideBits, u64 index) {
    return index % rowBits / 8 + index / rowBits * strideBits / 8;
}

inline u8 maskOfBit(u64 index) {
    return static_cast<u8>(0x80U >> (index & 7));
}

} // namespace memdata

inline void SetBit(u8* buffer, u64 rowBits, u64 strideBits, u64 index, bool value) {
    u8& byte = buffer[memdata::byteOfBit(rowBits, strideBits, index)];
    const u8 mask = memdata::maskOfBit(index);
    byte = static_cast<u8>(value ? byte | mask : byte & ~mask);
}

inline bool GetBit(const u8* buffer, u64 rowBits, u64 strideBits, u64 index) {
    return (buffer[memdata::byteOfBit(rowBits, strideBits, index)] & memdata::maskOfBit(index)) != 0;
}

// Shift byteCount bytes as one big number, the first byte the most significant, by fewer than 8 bits; zeros come in.
void ShiftDataLeft(u8* data, u64 byteCount, u32 bits);
void ShiftDataRight(u8* data, u64 byteCount, u32 bits);

// Turns the order inside each unit of byteCount bytes, in place; doing it twice gives the bytes back.
//   1   the bits of each byte           16  the bytes of each 16-bit unit
//   2   the bit pairs of each byte      32  the bytes of each 32-bit unit
//   4   the two halves of each byte     any other width: nothing
// A cut unit at the end stays as it is.
void DecodeBitlaneWidths(u8* data, u64 laneWidth, u64 byteCount);

#endif

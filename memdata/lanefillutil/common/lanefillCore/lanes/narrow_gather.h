// narrow_gather.h - a lane of 1, 2 or 4 bits, several bus words to a byte of it.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_NARROW_GATHER_H
#define MEMDATA_LANEFILL_CORE_NARROW_GATHER_H

#include "platform/BasicTypes.h"

namespace memdata {

// Bus words that fill a byte of the lane.
constexpr u64 wordsPerLaneByte(unsigned laneBits) {
    return 8 / laneBits;
}

struct NarrowForm {
    unsigned laneBits; // 1, 2 or 4
    bool mirrorBits;   // the bits of each word are turned round
    u64 busBits;       // from a word of the lane to its next one in the source; a multiple of laneBits
};

// Stores byteCount bytes into a lane. Its first word stands at bit firstBit of the source, a multiple of laneBits (bit
// 7 of a byte is its first). The first word of a byte takes its low bits.
void gatherNarrowLane(const NarrowForm& form, const u8* source, u64 firstBit, u8* lane, u64 byteCount);

} // namespace memdata

#endif

// narrow_gather.h - lanes of 1, 2 or 4 bits, several bus words to a byte of each.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_NARROW_GATHER_H
#define MEMDATA_LANEFILL_CORE_NARROW_GATHER_H

#include "platform/BasicTypes.h"

#include <span>

namespace memdata {

// Bus words that fill a byte of each lane.
constexpr u64 wordsPerLaneByte(unsigned laneBits) {
    return 8 / laneBits;
}

// Stores byteCount bytes into each lane. The words follow one another without gaps from bit firstBit of the source
// on (bit 7 of a byte is its first), the first lane first in each; the first word of a byte takes its low bits.
//   laneBits    1, 2 or 4
//   mirrorBits  the bits of each word are turned round
//   firstBit    a multiple of laneBits
void gatherNarrowLanes(
    unsigned laneBits, bool mirrorBits, const u8* source, u64 firstBit, std::span<u8* const> lanes, u64 byteCount);

} // namespace memdata

#endif

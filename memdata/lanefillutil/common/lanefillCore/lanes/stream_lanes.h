// stream_lanes.h - whole bus words of any lane width, with parity bits or without, read as a stream of bits.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_STREAM_LANES_H
#define MEMDATA_LANEFILL_CORE_STREAM_LANES_H

#include "BmmUtils/model/records.h"

namespace memdata {

constexpr u64 kMAX_STREAM_LANES = 2048; // lanes of one bit on the widest bus

// Stores words bus words from lane 0 on, check values too. The lanes of the block, no more than these, have 1 to 64
// data bits and 0, 1, 2, 4 or 8 parity bits each; source and lanes hold so many words. The data cursors stay where they are, the source's too; parity and check lanes'
// cursors move.
void transformStreamWords(BusBlockType* block, const BufferChunkAccess* source, u64 words, bool byteSwapEcc);

} // namespace memdata

#endif

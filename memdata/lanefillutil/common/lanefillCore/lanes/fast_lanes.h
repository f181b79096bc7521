// fast_lanes.h - whole bus words of blocks with like lanes at once. Same results as the plain form, word by word.
// SPDX-License-Identifier: Apache-2.0
//
// Lanes that are all alike, as in every sound map, go here: lanes of 8, 16, 32 or 64 bits without parity bits by
// moving bytes, all others as a stream of bits. Both orders of bits and bytes, with check lanes or without.
#ifndef MEMDATA_LANEFILL_CORE_FAST_LANES_H
#define MEMDATA_LANEFILL_CORE_FAST_LANES_H

#include "BmmUtils/model/records.h"

namespace memdata {

// Whether the block's lanes are alike in width (1 to 64 data bits), parity bits (0, 1, 2, 4 or 8 a word) and order.
// Its cursors have been placed.
bool hasFastShape(const BusBlockType* block);

// Transforms up to maxWords whole bus words from lane 0 on: as many as source and lanes hold. Gives their
// number.
u64 transformWholeBusWords(BusBlockType* block, BufferChunkAccess* source, u64 maxWords, bool byteSwapEcc);

} // namespace memdata

#endif

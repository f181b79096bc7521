// fast_lanes.h - whole bus words of a block, many at once. Same results as the plain form, word by word.
// SPDX-License-Identifier: Apache-2.0
//
// Lanes that are all alike, without parity bits and of 8, 16, 32 or 64 bits, go by moving bytes; all others as a stream
// of bits, lane by lane, several words at once where they fill a byte of their lane. Both orders of bits and bytes, with
// check lanes or without.
#ifndef MEMDATA_LANEFILL_CORE_FAST_LANES_H
#define MEMDATA_LANEFILL_CORE_FAST_LANES_H

#include "BmmUtils/model/records.h"

namespace memdata {

// Whether each of the block's lanes has 1 to 64 data bits and 0, 1, 2, 4 or 8 parity bits a word. Its cursors have
// been placed.
bool hasFastShape(const BusBlockType* block);

// Transforms up to maxWords whole bus words from lane 0 on: as many as source and lanes hold, fewer once the run is to
// end. Gives their number.
u64 transformWholeBusWords(BusBlockType* block, BufferChunkAccess* source, u64 maxWords, bool byteSwapEcc);

} // namespace memdata

#endif

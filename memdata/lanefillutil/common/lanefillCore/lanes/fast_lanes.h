// fast_lanes.h - whole bus words of regular blocks at once. Same results as the plain form, word by word.
// SPDX-License-Identifier: Apache-2.0
//
// Regular is what real designs use: lanes of one width of 8, 16, 32 or 64 data bits, with or without parity
// bits of 1, 2, 4 or 8 a word, in either order of bits and bytes, with or without check lanes.
#ifndef MEMDATA_LANEFILL_CORE_FAST_LANES_H
#define MEMDATA_LANEFILL_CORE_FAST_LANES_H

#include "BmmUtils/model/records.h"

namespace memdata {

// Whether the block's shape is regular. Its cursors have been placed.
bool hasFastShape(const BusBlockType* block);

// Transforms up to maxWords whole bus words from lane 0 on: as many as source and lanes hold. Gives their
// number, 0 when the source does not stand at a place from which this form can read.
u64 transformWholeBusWords(BusBlockType* block, BufferChunkAccess* source, u64 maxWords, bool byteSwapEcc);

} // namespace memdata

#endif

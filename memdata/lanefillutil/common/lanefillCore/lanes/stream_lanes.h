// stream_lanes.h - whole bus words of any lane width, with parity bits or without, read as a stream of bits.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_STREAM_LANES_H
#define MEMDATA_LANEFILL_CORE_STREAM_LANES_H

#include "BmmUtils/model/records.h"

namespace memdata {

// Stores words bus words from lane 0 on, check values too. All lanes of the block are alike, and source and
// lanes hold so many words. The data cursors stay where they are, the source's too; parity and check lanes'
// cursors move.
void transformStreamWords(BusBlockType* block, const BufferChunkAccess* source, u64 words, bool byteSwapEcc);

} // namespace memdata

#endif

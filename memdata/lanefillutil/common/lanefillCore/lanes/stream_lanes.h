// stream_lanes.h - whole bus words of any lane width, with parity bits or without, read as a stream of bits.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_STREAM_LANES_H
#define MEMDATA_LANEFILL_CORE_STREAM_LANES_H

#include "BmmUtils/model/records.h"

namespace memdata {

// Stores words bus words from lane 0 on. The lanes of the block have 1 to 64 data bits and 0, 1, 2, 4 or 8 parity bits
// each; source and lanes hold so many words. All cursors stay where they are. Check values are left to the caller.
void transformStreamWords(const BusBlockType* block, const BufferChunkAccess* source, u64 words);

} // namespace memdata

#endif

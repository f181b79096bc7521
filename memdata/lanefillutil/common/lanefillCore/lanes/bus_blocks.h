// bus_blocks.h - a segment's bytes through the bus blocks of a space: the way from data to lanes.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_BUS_BLOCKS_H
#define MEMDATA_LANEFILL_CORE_BUS_BLOCKS_H

#include "BmmUtils/model/records.h"

// Stores what the block takes of the source (data order) from an address on, 0 meaning the block's start, and
// computes the check bits of every bus word that was touched. Status: 0; 7 without memory; 15 the run is to
// end.
int transform_data_busBlock(const char* fileName, AddressRangeDefType* range, BusBlockType* block,
    unsigned long address, BufferChunkAccess* source, bool byteSwapEcc);

// Stores size bytes of data into the space's lanes from an address on (bytes; words under word addressing).
// The space's transform buffers exist. An address in no range stores nothing, and data behind the last block
// is dropped without a word: the search for the space has reported it. Status: 0; 7; 15.
int transform_segment_data(
    const char* fileName, AddressSpaceDefType* space, unsigned long address, unsigned char* data, unsigned long size);

namespace memdata {

enum class TransformPath {
    kBY_SHAPE, // whole bus words by the fast path, all else by the plain one
    kPLAIN,    // everything word by word: the reference
};

int transformBusBlock(const char* fileName, const AddressRangeDefType* range, BusBlockType* block, u64 address,
    BufferChunkAccess* source, bool byteSwapEcc, TransformPath path);
int transformSegment(
    const char* fileName, AddressSpaceDefType* space, u64 address, u8* data, u64 size, TransformPath path);

} // namespace memdata

#endif

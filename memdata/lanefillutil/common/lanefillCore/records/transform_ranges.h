// transform_ranges.h - what was written where: contiguous stretches of data in a space or in a lane.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_TRANSFORM_RANGES_H
#define MEMDATA_LANEFILL_CORE_RECORDS_TRANSFORM_RANGES_H

#include "lanefillCore/records/chunk_access.h"

#include <algorithm>

namespace memdata {
class MappedCopy;
}

// One stretch. Lists of them are sorted by ascending start.
struct TransformRangeType {
    TransformRangeType* next;
    u64 size;             // bytes
    u64 start;            // bytes, absolute in a space, from the start of the block in a lane
    u64 end;              // start + size - 1
    bool hasStartAddress; // startAddress holds where the data asked to be placed
    u64 startAddress;     // bytes, absolute
    u64 dataSize;         // bytes between dataFirst and dataLast
    u8* dataFirst;        // lowest byte of the data, inside a buffer
    u8* dataLast;         // highest byte of the data, inside the same buffer
    u64 bitCount;
    u8* ownedData;                   // a private copy of the data, or null; a tracked block, or in ownedPages
    char* name;                      // managed; the data file that the data came from
    TransformRangeType* parityRange; // the parity part of a lane's range, or null; owned

    memdata::MappedCopy*
        ownedPages; // ours: what large ownedData stands in, where they came from a mapped file; or null

    // Ours: what cursors passed over, in bits of the buffer that the data is in. Equal while nothing was written.
    u64 firstBit;
    u64 endBit; // behind the last one
};

// A range of size bytes (at least 1) from start. With copy the range owns a copy of the dataSize bytes at
// data, and dataLast is its last byte; without, dataFirst is the caller's pointer. Null without memory.
TransformRangeType* create_transform_range(
    const char* name, u64 start, u64 size, const u8* data, u64 dataSize, bool copy);

// The first range of equal start and size that has no start address, or null.
TransformRangeType* lookup_transform_range(TransformRangeType* list, u64 start, u64 size);

// The range of equal start and size, or a new one, linked in order of start: a new range stands ahead of older
// ones of equal start, except at the head. A range that was found takes the name and the copied data of this
// call: the later data wins. Null without memory; the list is as it was then.
TransformRangeType* insert_transform_range(
    const char* name, TransformRangeType** list, u64 start, u64 size, const u8* data, u64 dataSize, bool copy);

// Widens dataFirst and dataLast to the byte under the cursor; dataSize is their distance, and bitCount the
// most bits that a cursor has passed over this range. firstBit and endBit take in all that it has passed.
inline void set_max_transform_buffer_addresses(const BufferChunkAccess* access, TransformRangeType* range) {
    u8* const current = access->GetCurrentBufferByteAddress();
    range->dataFirst = std::min(range->dataFirst, current);
    range->dataLast = std::max(range->dataLast, current);
    range->dataSize = static_cast<u64>(range->dataLast - range->dataFirst);
    // The most, so that a shorter run at the same start hides nothing that an earlier one wrote.
    range->bitCount = std::max(range->bitCount, access->GetBufferBitCount());

    if (access->GetBufferBitCount() == 0) return;
    const u64 end = static_cast<u64>(current - access->buffer) * 8 + access->bitOffset;
    const u64 first = end - access->GetBufferBitCount();
    const bool isFirst = range->firstBit == range->endBit;
    range->firstBit = isFirst ? first : std::min(range->firstBit, first);
    range->endBit = isFirst ? end : std::max(range->endBit, end);
}

// Release the range with what it owns, its parityRange too; a null pointer is allowed. The pointer is
// cleared. The list form follows next from the head.
void delete_transform_range(TransformRangeType** range);
void delete_transform_range_list(TransformRangeType** head);

namespace memdata {

// Gives the private copy back, if the range has one. What pointed into it points nowhere.
void releaseOwnedData(TransformRangeType* range);

} // namespace memdata

#endif

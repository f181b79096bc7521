// transform_ranges.h - what was written where: contiguous stretches of data in a space or in a lane.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_TRANSFORM_RANGES_H
#define MEMDATA_LANEFILL_CORE_RECORDS_TRANSFORM_RANGES_H

#include "platform/BasicTypes.h"

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
    u8* ownedData;                   // a private copy of the data, or null
    char* name;                      // managed; the data file that the data came from
    TransformRangeType* parityRange; // the parity part of a lane's range, or null; owned
};

// Release the range with what it owns, its parityRange too; a null pointer is allowed. The pointer is
// cleared. The list form follows next from the head.
void delete_transform_range(TransformRangeType** range);
void delete_transform_range_list(TransformRangeType** head);

#endif

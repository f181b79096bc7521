// memory_check.h - the memories of one configuration column compared with what bit lanes hold.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BRAM_DECODE_UTILS_MEMORY_CHECK_H
#define MEMDATA_BRAM_DECODE_UTILS_MEMORY_CHECK_H

#include "BmmUtils/model/records.h"
#include "DeviceTableUtils/records.h"

#include <vector>

namespace memdata {

// The first word of a lane in which a stream differs.
struct LaneDifference {
    const BitLaneType* lane;
    u64 word; // of the device, from 0
    bool inParity;
    u64 expected; // the word's data bits, or its parity bits
    u64 found;
};

struct MemoryCheck {
    u64 comparedLanes = 0;
    std::vector<LaneDifference> differences; // one a lane at the most
};

// Compares each bit lane that holds data with its memory's frames, and marks it as ReplaceBRAMColumn does; nothing else
// is changed. Arguments and result as there; null without memory.
u8* compareBRAMColumn(const TarselDeviceType* device, u8* data, u64 byteCount, i32 physicalColumn,
    const AddressMappingType* addressMapping, MemoryCheck* check);

} // namespace memdata

#endif

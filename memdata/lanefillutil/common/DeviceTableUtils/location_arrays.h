// location_arrays.h - the location arrays of one device, made from its row, its holes and its irregular columns.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_LOCATION_ARRAYS_H
#define MEMDATA_DEVICE_TABLE_UTILS_LOCATION_ARRAYS_H

#include "DeviceTableUtils/device_rows.h"

#include <memory>

namespace memdata {

// Which arrays a layout gives. A device whose memories come in one size has the small arrays alone.
struct LayoutArrays {
    bool physical;
    bool logical;
    u32 largeSizeUnits; // of the types that the large arrays belong to; 0 none
};

const LayoutArrays& arraysOf(Layout layout);

// Null where the device has no such array.
struct LocationArrays {
    std::unique_ptr<BRAMPhysLocDataType[]> smallPhysical;
    std::unique_ptr<BRAMLogLocDataType[]> smallLogical;
    std::unique_ptr<BRAMPhysLocDataType[]> largePhysical;
    std::unique_ptr<BRAMLogLocDataType[]> largeLogical;
};

// Of the record at an index; made on the first call, constant from then on.
const LocationArrays& locationArrays(size_t index, const DeviceRow& row);

// 1 or -1 by physicalRows * column + row; null for a device with location arrays or without holes. Made on the first
// call, as above.
const i8* existenceMap(size_t index, const DeviceRow& row);

// Made anew, without being kept.
LocationArrays expandLocationArrays(const DeviceRow& row);

} // namespace memdata

#endif

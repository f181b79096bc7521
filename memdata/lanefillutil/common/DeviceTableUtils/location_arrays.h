// location_arrays.h - the location arrays of one device, made from its row, its holes and its irregular columns.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_LOCATION_ARRAYS_H
#define MEMDATA_DEVICE_TABLE_UTILS_LOCATION_ARRAYS_H

#include "DeviceTableUtils/device_rows.h"

#include <memory>

namespace memdata {

// Null where the device has no such array. A device whose memories come in one size has the small arrays alone.
struct LocationArrays {
    u32 largeSizeUnits = 0; // of the types that the large arrays belong to; 0 none
    std::unique_ptr<BRAMPhysLocDataType[]> smallPhysical;
    std::unique_ptr<BRAMLogLocDataType[]> smallLogical;
    std::unique_ptr<BRAMPhysLocDataType[]> largePhysical;
    std::unique_ptr<BRAMLogLocDataType[]> largeLogical;
    std::unique_ptr<i8[]> existenceMap;
};

// Of the record at an index; made on the first call.
const LocationArrays& locationArrays(size_t index, const DeviceRow& row);

// Made anew, without being kept.
LocationArrays expandLocationArrays(const DeviceRow& row);

} // namespace memdata

#endif

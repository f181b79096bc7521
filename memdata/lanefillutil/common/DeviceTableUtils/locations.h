// locations.h - where a memory is: the two coordinate systems of a device and what stands at them.
//
// Logical coordinates are those of a location constraint: row Y, column X, on a grid of the memory's own size.
// Physical coordinates are those of the configuration stream: a configuration column and a row inside it.
// Existence is told as kT (1) or k_ (-1). A place outside the device's grid does not exist.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_LOCATIONS_H
#define MEMDATA_DEVICE_TABLE_UTILS_LOCATIONS_H

#include "DeviceTableUtils/records.h"

// Elements of a device's arrays; row and column must lie on the grid.
const BRAMPhysLocDataType& index_BRAM_phys_loc_array(
    const TarselDeviceType* device, const MEMORYType* type, const BRAMPhysLocDataType* array, u32 row, u32 column);
const BRAMLogLocDataType& index_BRAM_log_loc_array(
    const TarselDeviceType* device, const MEMORYType* type, const BRAMLogLocDataType* array, u32 row, u32 column);

// Existence at a physical place, and its logical coordinates. The coordinates are given for holes too.
int lookup_BRAM_phys_existence(const TarselDeviceType* device, const MEMORYLocType* memoryLoc, u32 row, u32 column,
    i32* logicalRow, i32* logicalColumn);
// Existence at a location, and its physical coordinates. logicalArray may be null.
int lookup_BRAM_log_existence(const TarselDeviceType* device, const MEMORYType* type,
    const BRAMLogLocDataType* logicalArray, u32 row, u32 column, i32* physicalRow, i32* physicalColumn);
// Number of memories of a type that the device has.
u32 count_existent_BRAM_type(const TarselDeviceType* device, const MEMORYLocType* memoryLoc);

// Place in the cross-coordinate table, kept at the finest grain of the device. Returns its number of rows per row of
// the type, 0 for a type that no location names.
u32 convert_BRAM_indexes_to_lookup_indexes(
    const TarselDeviceType* device, const MEMORYType* type, i32 row, i32 column, i32* rowIndex, i32* columnIndex);

// Frame-address column to configuration column; false, and -1, where the frame column holds no block RAM.
bool translate_logical_column_number(const TarselDeviceType* device, i32 frameColumn, i32* physicalColumn);

namespace memdata {

// Rows of the grids of a type.
inline u32 logicalGridRows(const TarselDeviceType* device, const MEMORYType* type) {
    return device->logicalRows * type->subRowFactor;
}
inline u32 physicalGridRows(const TarselDeviceType* device, const MEMORYType* type) {
    return device->physicalRows * type->subRowFactor;
}

} // namespace memdata

#endif

// locations.cpp - where a memory is: location arrays, existence maps and the rules of the early families.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/locations.h"

#include <algorithm>
#include <cstdint>

using memdata::logicalGridRows;
using memdata::physicalGridRows;

namespace {

// The second generation counts the rows of a column from its other end; elsewhere both coordinates are the same. The
// first generation does so by rule, later families have arrays.
i32 otherRow(const TarselDeviceType* device, u32 rows, u32 row) {
    const bool reversed = (device->family->familyMask & kSECOND_GENERATION_MASK) != 0;
    return static_cast<i32>(reversed ? rows - 1 - row : row);
}

} // namespace

const BRAMPhysLocDataType& index_BRAM_phys_loc_array(
    const TarselDeviceType* device, const MEMORYType* type, const BRAMPhysLocDataType* array, u32 row, u32 column) {
    return array[size_t{column} * physicalGridRows(device, type) + row];
}

const BRAMLogLocDataType& index_BRAM_log_loc_array(
    const TarselDeviceType* device, const MEMORYType* type, const BRAMLogLocDataType* array, u32 row, u32 column) {
    return array[size_t{column} * logicalGridRows(device, type) + row];
}

int lookup_BRAM_phys_existence(const TarselDeviceType* device, const MEMORYLocType* memoryLoc, u32 row, u32 column,
    i32* logicalRow, i32* logicalColumn) {
    *logicalColumn = static_cast<i32>(column);
    *logicalRow = otherRow(device, device->physicalRows, row);
    if (row >= physicalGridRows(device, memoryLoc->type) || column >= device->physicalColumns) return k_;

    if (device->existenceMap != nullptr) {
        // A map is kept in rows of the device; the devices that have one offer no type that divides them.
        return row < device->physicalRows ? device->existenceMap[size_t{device->physicalRows} * column + row] : k_;
    }
    if (memoryLoc->physicalLocs == nullptr) return kT;
    const BRAMPhysLocDataType& element =
        index_BRAM_phys_loc_array(device, memoryLoc->type, memoryLoc->physicalLocs, row, column);
    const bool present = element.logicalRow >= 0;
    *logicalRow = present ? element.logicalRow : ~element.logicalRow;
    *logicalColumn = element.logicalColumn;
    return present ? kT : k_;
}

int lookup_BRAM_log_existence(const TarselDeviceType* device, const MEMORYType* type,
    const BRAMLogLocDataType* logicalArray, u32 row, u32 column, i32* physicalRow, i32* physicalColumn) {
    *physicalColumn = static_cast<i32>(column);
    *physicalRow = otherRow(device, device->logicalRows, row);
    if (row >= logicalGridRows(device, type) || column >= device->logicalColumns) return k_;

    if (device->existenceMap != nullptr) {
        const u64 place = u64{device->physicalRows} * column + static_cast<u32>(*physicalRow);
        return place < u64{device->physicalRows} * device->physicalColumns ? device->existenceMap[place] : k_;
    }
    if (logicalArray == nullptr) return kT;
    const BRAMLogLocDataType& element = index_BRAM_log_loc_array(device, type, logicalArray, row, column);
    *physicalRow = element.physicalRow;
    *physicalColumn = element.physicalColumn;
    return element.exists;
}

u32 count_existent_BRAM_type(const TarselDeviceType* device, const MEMORYLocType* memoryLoc) {
    if (memoryLoc->physicalLocs == nullptr && device->existenceMap == nullptr)
        return device->logicalRows * device->logicalColumns;
    u32 count = 0;
    i32 logicalRow = 0;
    i32 logicalColumn = 0;
    for (u32 column = 0; column < device->physicalColumns; ++column)
        for (u32 row = 0; row < physicalGridRows(device, memoryLoc->type); ++row)
            count += lookup_BRAM_phys_existence(device, memoryLoc, row, column, &logicalRow, &logicalColumn) == kT;
    return count;
}

u32 convert_BRAM_indexes_to_lookup_indexes(
    const TarselDeviceType* device, const MEMORYType* type, i32 row, i32 column, i32* rowIndex, i32* columnIndex) {
    const u32 factor = type->subRowFactor == 0 ? 0 : device->family->bramsPerLookupRow / type->subRowFactor;
    *rowIndex = static_cast<i32>(std::clamp<i64>(i64{row} * factor, INT32_MIN, INT32_MAX)); // no device reaches either
    *columnIndex = column;
    return factor;
}

bool translate_logical_column_number(const TarselDeviceType* device, i32 frameColumn, i32* physicalColumn) {
    if (device->columnMap[0] < -1) {
        *physicalColumn = frameColumn;
        return true;
    }
    const bool listed = frameColumn >= 0 && static_cast<size_t>(frameColumn) < kCOLUMN_MAP_ENTRIES;
    *physicalColumn = listed ? device->columnMap[frameColumn] : -1;
    return *physicalColumn >= 0;
}

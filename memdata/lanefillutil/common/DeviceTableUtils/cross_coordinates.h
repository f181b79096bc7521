// cross_coordinates.h - which bit lane of an address mapping sits on which memory of the device.
//
// One table per root mapping answers from both sides: by lookup index of a location and by lookup index of a physical
// place (see convert_BRAM_indexes_to_lookup_indexes). It covers the grids of the mapping's device; a place outside of
// them was never set. Bit lanes are recorded while a map is read; all of them before the first frame is walked.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_CROSS_COORDINATES_H
#define MEMDATA_DEVICE_TABLE_UTILS_CROSS_COORDINATES_H

#include "BmmUtils/model/records.h"
#include "DeviceTableUtils/records.h"

struct parse_stream;
struct token_element;

// One row of a location, at the finest grain of the device.
struct BitLaneLogicalLookupType {
    BitLaneType* bitLane; // null where none is located
    i8 exists;            // kT, k_; 0 never set
    const BRAMPhysLocDataType* physLoc;
    const TranslationTableType* decodeTable;
    i32 row; // of the location
    i32 column;
    i32 physicalRowIndex;
    i32 physicalColumnIndex;
};

// One row of a physical place, at the same grain.
struct BitLanePhysicalLookupType {
    i8 exists;
    i32 logicalRowIndex; // of the first row that its memory claims
    i32 logicalColumnIndex;
};

// A single tracked block: the header, the logical part, the physical part.
struct BitLaneLookupTable {
    u32 logicalRows; // lookup indexes
    u32 logicalColumns;
    u32 physicalRows;
    u32 physicalColumns;
    BitLaneLogicalLookupType* logical;   // by row * logicalColumns + column
    BitLanePhysicalLookupType* physical; // by row * physicalColumns + column
};

// Makes the mapping's table unless it has one, and enters what exists on the device. Status: 0, also without a device,
// where no table is made; 7 without memory.
int initialize_cross_coordinate_lookup_table(AddressMappingType* addressMapping);

// Enters one memory, with the bit lane on it or null. The element claims all rows that its type covers. Status: 0; -1
// another instance stands on one of them.
int set_cross_coordinate_lookup_table_element(AddressMappingType* addressMapping, int exists, const MEMORYType* type,
    const BRAMPhysLocDataType* physicalArray, i32 physicalRow, i32 physicalColumn, i32 logicalRow, i32 logicalColumn,
    BitLaneType* bitLane);

// Records a located bit lane, until the lane is deleted. stream and token say where an alert points; token may be null.
// Does nothing without a device, nor on a location without silicon. Status: 0; 3 the location is taken by another instance, or lies outside
// the device; 7 without memory.
int record_bitLane_LOC_constraint(
    parse_stream* stream, const token_element* token, AddressMappingType* addressMapping, BitLaneType* bitLane);

// What stands at a physical place, in lookup rows: kT, k_, or 0 where nothing was ever set; all outputs are 0 then.
int lookup_BRAM_existence(const AddressMappingType* addressMapping, i32 physicalRowIndex, i32 physicalColumn, i32* row,
    i32* column, const TranslationTableType** decodeTable, const BRAMPhysLocDataType** physLoc, BitLaneType** bitLane);

namespace memdata {

// Leaves the rows of a recorded lane without a lane; what exists there stays as that lane's memory told it. Does
// nothing for a lane that was not recorded. Called when a lane is deleted.
void forgetLocatedLane(BitLaneType* bitLane);

} // namespace memdata

#endif

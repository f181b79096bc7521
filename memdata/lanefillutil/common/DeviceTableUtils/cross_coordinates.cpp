// cross_coordinates.cpp - which bit lane of an address mapping sits on which memory of the device.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/cross_coordinates.h"

#include "BmmUtils/model/creation.h"
#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/locations.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <cstring>
#include <utility>

using memdata::logicalGridRows;
using memdata::physicalGridRows;

namespace {

constexpr u32 kPAIR_SIZE_UNITS = 4; // of the memory that takes both sites of a Dunmare6 pair
constexpr u32 kPAIR_SITES = 2;

// A filtered view of a mapping shares the table of its root.
BitLaneLookupTable* tableOf(const AddressMappingType* addressMapping) {
    while (addressMapping->parentMapping != nullptr) addressMapping = addressMapping->parentMapping;
    return static_cast<BitLaneLookupTable*>(addressMapping->scratch);
}

// The table is released with the root.
void giveTable(AddressMappingType* addressMapping, BitLaneLookupTable* table) {
    while (addressMapping->parentMapping != nullptr) addressMapping = addressMapping->parentMapping;
    addressMapping->scratch = table;
}

BitLaneLogicalLookupType* logicalAt(BitLaneLookupTable* table, i64 row, i64 column) {
    if (row < 0 || row >= table->logicalRows || column < 0 || column >= table->logicalColumns) return nullptr;
    return &table->logical[row * table->logicalColumns + column];
}

BitLanePhysicalLookupType* physicalAt(BitLaneLookupTable* table, i64 row, i64 column) {
    if (row < 0 || row >= table->physicalRows || column < 0 || column >= table->physicalColumns) return nullptr;
    return &table->physical[row * table->physicalColumns + column];
}

// Only as large as the device's own grids. A pair claims one row more than its grid may have.
BitLaneLookupTable* newTable(const TarselDeviceType* device) {
    const u32 scale = device->family->bramsPerLookupRow;
    const u32 logicalRows = device->logicalRows * scale + kPAIR_SITES - 1;
    const u32 physicalRows = device->physicalRows * scale + kPAIR_SITES - 1;
    const u64 logicalCount = u64{logicalRows} * device->logicalColumns;
    const u64 physicalCount = u64{physicalRows} * device->physicalColumns;
    auto* table = static_cast<BitLaneLookupTable*>(getMemory(
        "a 'BitLaneLookupTable' record", sizeof(BitLaneLookupTable) + logicalCount * sizeof(BitLaneLogicalLookupType) +
                                             physicalCount * sizeof(BitLanePhysicalLookupType)));
    if (table == nullptr) return nullptr;
    table->logicalRows = logicalRows;
    table->logicalColumns = device->logicalColumns;
    table->physicalRows = physicalRows;
    table->physicalColumns = device->physicalColumns;
    table->logical = reinterpret_cast<BitLaneLogicalLookupType*>(table + 1);
    table->physical = reinterpret_cast<BitLanePhysicalLookupType*>(table->logical + logicalCount);
    return table;
}

// The device's own array of a type, or null: arrays of another device have other grids.
const BRAMPhysLocDataType* ownArray(const TarselDeviceType* device, const BRAMPhysLocDataType* array) {
    const bool own = std::ranges::any_of(
        device->memoryLocs, [array](const MEMORYLocType& memory) { return memory.physicalLocs == array; });
    return own ? array : nullptr;
}

const BRAMLogLocDataType* ownArray(const TarselDeviceType* device, const BRAMLogLocDataType* array) {
    const bool own = std::ranges::any_of(
        device->memoryLocs, [array](const MEMORYLocType& memory) { return memory.logicalLocs == array; });
    return own ? array : nullptr;
}

// Element of a physical array, or null where there is no array or the place lies beyond it. A row beyond its column
// is the start of the next one, on purpose: pairs are two columns of one row each.
const BRAMPhysLocDataType* elementAt(
    const TarselDeviceType* device, const MEMORYType* type, const BRAMPhysLocDataType* array, i64 row, i64 column) {
    if (array == nullptr || row < 0 || column < 0) return nullptr;
    const i64 place = column * physicalGridRows(device, type) + row;
    const i64 count = i64{physicalGridRows(device, type)} * device->physicalColumns;
    return place < count ? array + place : nullptr;
}

// How many lookup rows a memory claims. count: those that its type covers.
u32 claimedRows(const TarselDeviceType* device, const MEMORYType* type, i32 logicalRow, u32 count) {
    const bool isPair =
        device->family == &kDunmare6FamilyTable && type->sizeUnits == kPAIR_SIZE_UNITS && logicalRow % 2 == 0;
    return isPair ? kPAIR_SITES : count;
}

// What a memory says about each row that it claims.
struct Claim {
    int exists;
    const BRAMPhysLocDataType* physLoc;
    const TranslationTableType* decodeTable;
};

void setLogical(BitLaneLogicalLookupType* record, const Claim& claim) {
    record->exists = static_cast<i8>(claim.exists);
    record->physLoc = claim.physLoc;
    record->decodeTable = claim.decodeTable;
}

int refuseLocation(parse_stream* stream, const token_element* token, const BitLaneType* bitLane) {
    const bool byRowAndColumn = bitLane->memory->type->sizeUnits == 1;
    const u64 row = bitLane->locRow;
    const u64 column = bitLane->locColumn;
    const std::string place =
        byRowAndColumn ? memdata::formatted("R%lldC%lld", row, column) : memdata::formatted("X%lldY%lld", column, row);
    if (token == nullptr) return PrintError(kERROR_ILLEAGL_LOC_ATTEMPT, 3, bitLane->name, place);
    return PrintErrorLocation(stream, kERROR_ILLEAGL_LOC_ATTEMPT, 3, token, bitLane->name, place);
}

int reportDuplicate(parse_stream* stream, const token_element* token, const BitLaneType* bitLane) {
    if (token == nullptr) return PrintError(kERROR_DUPLICATE_BRAM_LOC, 3, bitLane->locColumn, bitLane->locRow);
    return PrintErrorLocation(stream, kERROR_DUPLICATE_BRAM_LOC, 3, token, bitLane->locColumn, bitLane->locRow);
}

} // namespace

int initialize_cross_coordinate_lookup_table(AddressMappingType* addressMapping) {
    const TarselDeviceType* device = addressMapping->device;
    if (device == nullptr || tableOf(addressMapping) != nullptr) return 0;
    BitLaneLookupTable* table = newTable(device);
    if (table == nullptr) return 7;
    giveTable(addressMapping, table);

    const MEMORYLocType& smallest = device->memoryLocs[0];
    for (u32 column = 0; column < device->physicalColumns; ++column)
        for (u32 row = 0; row < physicalGridRows(device, smallest.type); ++row) {
            i32 logicalRow = 0;
            i32 logicalColumn = 0;
            const int exists = lookup_BRAM_phys_existence(device, &smallest, row, column, &logicalRow, &logicalColumn);
            set_cross_coordinate_lookup_table_element(addressMapping, exists, smallest.type, smallest.physicalLocs,
                static_cast<i32>(row), static_cast<i32>(column), logicalRow, logicalColumn, nullptr);
        }
    return 0;
}

int set_cross_coordinate_lookup_table_element(AddressMappingType* addressMapping, int exists, const MEMORYType* type,
    const BRAMPhysLocDataType* physicalArray, i32 physicalRow, i32 physicalColumn, i32 logicalRow, i32 logicalColumn,
    BitLaneType* bitLane) {
    const TarselDeviceType* device = addressMapping->device;
    BitLaneLookupTable* table = tableOf(addressMapping);
    if (device == nullptr || table == nullptr) return 0;
    physicalArray = ownArray(device, physicalArray);

    Claim claim{exists, elementAt(device, type, physicalArray, physicalRow, physicalColumn), nullptr};
    if (claim.physLoc != nullptr)
        claim.decodeTable = claim.physLoc->decodeTable;
    else if (physicalArray == nullptr)
        claim.decodeTable = device->family->decodeTable;

    i32 rowIndex = 0;
    i32 columnIndex = 0;
    i32 physicalRowIndex = 0;
    i32 physicalColumnIndex = 0;
    convert_BRAM_indexes_to_lookup_indexes(device, type, logicalRow, logicalColumn, &rowIndex, &columnIndex);
    const u32 count = claimedRows(device, type, logicalRow,
        convert_BRAM_indexes_to_lookup_indexes(
            device, type, physicalRow, physicalColumn, &physicalRowIndex, &physicalColumnIndex));

    const i64 laneColumn = bitLane == nullptr ? columnIndex : i64{bitLane->locColumn};
    for (u32 i = 0; i < count; ++i) {
        BitLaneLogicalLookupType* laneRecord = logicalAt(table, i64{rowIndex} + i, laneColumn);
        if (bitLane != nullptr && laneRecord != nullptr && laneRecord->bitLane != nullptr) {
            if (std::strcmp(laneRecord->bitLane->name, bitLane->name) != 0) return -1;
            continue; // another lane of the same memory: the first stays
        }
        BitLanePhysicalLookupType* physical = physicalAt(table, i64{physicalRowIndex} + i, physicalColumnIndex);
        if (physical != nullptr)
            *physical = {static_cast<i8>(claim.exists), rowIndex, columnIndex}; // without i: both halves find the base
        if (BitLaneLogicalLookupType* logical = logicalAt(table, i64{rowIndex} + i, columnIndex)) {
            setLogical(logical, claim);
            logical->row = logicalRow;
            logical->column = logicalColumn;
            logical->physicalRowIndex = physicalRowIndex;
            logical->physicalColumnIndex = physicalColumnIndex;
        }
        if (bitLane == nullptr || laneRecord == nullptr) continue;
        laneRecord->bitLane = bitLane;
        laneRecord->row = static_cast<i32>(bitLane->locRow);
        laneRecord->column = static_cast<i32>(bitLane->locColumn);
        const BRAMPhysLocDataType* laneArray = ownArray(device, bitLane->memory->physicalLocs);
        if (laneArray == nullptr) {
            laneRecord->decodeTable = device->family->decodeTable;
        } else if (const BRAMPhysLocDataType* element =
                       elementAt(device, bitLane->memory->type, laneArray, i64{physicalRow} + i, physicalColumn)) {
            claim = {element->logicalRow < 0 ? k_ : kT, element, element->decodeTable};
            setLogical(laneRecord, claim);
            if (physical != nullptr) physical->exists = static_cast<i8>(claim.exists);
        }
    }
    return 0;
}

int record_bitLane_LOC_constraint(
    parse_stream* stream, const token_element* token, AddressMappingType* addressMapping, BitLaneType* bitLane) {
    TarselDeviceType* device = addressMapping->device;
    if (device == nullptr) return 0;
    if (int status = initialize_cross_coordinate_lookup_table(addressMapping); status != 0) return status;

    const MEMORYLocType* memory = bitLane->memory;
    if (bitLane->locRow >= logicalGridRows(device, memory->type) || bitLane->locColumn >= device->logicalColumns)
        return refuseLocation(stream, token, bitLane);
    i32 physicalRow = 0;
    i32 physicalColumn = 0;
    if (lookup_BRAM_log_existence(device, memory->type, ownArray(device, memory->logicalLocs), bitLane->locRow,
            bitLane->locColumn, &physicalRow, &physicalColumn) == k_)
        return 0;
    bitLane->locatedIn = root_addressMapping(addressMapping); // also when only some of its rows can be had
    if (set_cross_coordinate_lookup_table_element(addressMapping, kT, memory->type, memory->physicalLocs, physicalRow,
            physicalColumn, static_cast<i32>(bitLane->locRow), static_cast<i32>(bitLane->locColumn), bitLane) != 0)
        return reportDuplicate(stream, token, bitLane);
    return 0;
}

void memdata::forgetLocatedLane(BitLaneType* bitLane) {
    const AddressMappingType* addressMapping = std::exchange(bitLane->locatedIn, nullptr);
    BitLaneLookupTable* table = addressMapping == nullptr ? nullptr : tableOf(addressMapping);
    if (table == nullptr) return;
    const TarselDeviceType* device = addressMapping->device;
    const MEMORYType* type = bitLane->memory->type;
    const i32 row = static_cast<i32>(bitLane->locRow);
    i32 rowIndex = 0;
    i32 columnIndex = 0;
    const u32 count = claimedRows(device, type, row,
        convert_BRAM_indexes_to_lookup_indexes(
            device, type, row, static_cast<i32>(bitLane->locColumn), &rowIndex, &columnIndex));
    for (u32 i = 0; i < count; ++i) {
        BitLaneLogicalLookupType* record = logicalAt(table, i64{rowIndex} + i, bitLane->locColumn);
        if (record != nullptr && record->bitLane == bitLane) record->bitLane = nullptr;
    }
}

int lookup_BRAM_existence(const AddressMappingType* addressMapping, i32 physicalRowIndex, i32 physicalColumn, i32* row,
    i32* column, const TranslationTableType** decodeTable, const BRAMPhysLocDataType** physLoc, BitLaneType** bitLane) {
    *row = 0;
    *column = 0;
    *decodeTable = nullptr;
    *physLoc = nullptr;
    *bitLane = nullptr;
    BitLaneLookupTable* table = tableOf(addressMapping);
    if (table == nullptr) return 0;
    const BitLanePhysicalLookupType* physical = physicalAt(table, physicalRowIndex, physicalColumn);
    if (physical == nullptr || physical->exists == 0) return 0;
    const BitLaneLogicalLookupType* logical = logicalAt(table, physical->logicalRowIndex, physical->logicalColumnIndex);
    if (logical != nullptr) {
        *row = logical->row;
        *column = logical->column;
        *decodeTable = logical->decodeTable;
        *physLoc = logical->physLoc;
        *bitLane = logical->bitLane;
    }
    return physical->exists;
}

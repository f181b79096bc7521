// device_table.cpp - the device records, made from their rows on demand.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/device_table.h"

#include "DeviceTableUtils/location_arrays.h"
#include "DeviceTableUtils/memory_types.h"

#include <algorithm>
#include <functional>

namespace memdata {
namespace {

struct TypeList {
    const MEMORYType* types[kMEMORY_LOC_ENTRIES]; // ended by null
};

// By TypeSet.
constexpr TypeList kTYPE_LISTS[] = {
    {{&RAMB4_BRAM}},
    {{&T2RAMB16_BRAM, &T2RAMB18_BRAM}},
    {{&T4RAMB16_BRAM, &T4RAMB18_BRAM}},
    {{&D3RAMB16_BRAM, &D3RAMB18_BRAM}},
    {{&T5RAMB16_BRAM, &T5RAMB18_BRAM, &T5RAMB32_BRAM, &T5RAMB36_BRAM}},
    {{&T6RAMB16_BRAM, &T6RAMB18_BRAM, &T6RAMB32_BRAM, &T6RAMB36_BRAM}},
    {{&D6RAMB8_BRAM, &D6RAMB9_BRAM, &D6RAMB16_BRAM, &D6RAMB18_BRAM}},
};

// The row behind a record that is not generic, and its family.
struct FamilyRow {
    const TarselFamilyType& family;
    const DeviceRow& row;
};

FamilyRow familyRow(size_t index) {
    size_t left = index - kGENERIC_ROWS.size();
    for (const FamilyRows& family : kFAMILY_ROWS) {
        if (left < family.rows.size()) return {*family.family, family.rows[left]};
        left -= family.rows.size();
    }
    return {*kFAMILY_ROWS.back().family, kFAMILY_ROWS.back().rows.back()}; // not reached below kDEVICE_COUNT
}

size_t genericGeometryIndex() {
    size_t index = kGENERIC_ROWS.size();
    while (index + 1 < kDEVICE_COUNT && std::string_view(familyRow(index).row.longNames) != kGENERIC_GEOMETRY) ++index;
    return index;
}

using PhysicalField = LazyLocations<BRAMPhysLocDataType>;
using LogicalField = LazyLocations<BRAMLogLocDataType>;

// One of the arrays of the record at an index.
template<class Element, std::unique_ptr<Element[]> LocationArrays::*array>
const Element* madeArray(u32 owner) {
    return (locationArrays(owner, tableRow(owner).geometry).*array).get();
}

void giveArrays(MEMORYLocType& memory, Layout layout, u32 owner) {
    const LayoutArrays& given = arraysOf(layout);
    const bool isLarge = memory.type->sizeUnits == given.largeSizeUnits;
    if (given.physical)
        memory.physicalLocs = PhysicalField(isLarge ? madeArray<BRAMPhysLocDataType, &LocationArrays::largePhysical>
                                                    : madeArray<BRAMPhysLocDataType, &LocationArrays::smallPhysical>,
            owner);
    if (given.logical)
        memory.logicalLocs = LogicalField(isLarge ? madeArray<BRAMLogLocDataType, &LocationArrays::largeLogical>
                                                  : madeArray<BRAMLogLocDataType, &LocationArrays::smallLogical>,
            owner);
}

void fillRecord(TarselDeviceType& record, const TableRow& table) {
    const DeviceRow& row = table.geometry;
    size_t names = 0;
    anyName(table.longNames, table.hasShortNames, [&](std::string_view name) {
        record.names[names++] = name.data(); // a literal, so it ends with a null character
        return names + 1 >= std::size(record.names);
    });
    record.isListed = table.isListed;
    record.family = &table.family;
    record.logicalRows = row.logicalRows;
    record.physicalRows = row.physicalRows;
    record.logicalColumns = row.logicalColumns;
    record.physicalColumns = row.physicalColumns;
    if (row.columnMap == nullptr)
        record.columnMap[0] = kIDENTITY_COLUMN_MAP;
    else
        std::copy_n(row.columnMap, kCOLUMN_MAP_ENTRIES, record.columnMap);
    record.framePadBits = row.framePadBits;
    record.clbFrameBits = row.clbFrameBits;
    record.bramFrameBits = row.bramFrameBits;
    record.bramFrameOffset = row.bramFrameOffset;
    record.dieCount = row.dieCount;
    size_t memories = 0;
    for (const MEMORYType* type : kTYPE_LISTS[static_cast<size_t>(row.types)].types)
        if (type != nullptr) record.memoryLocs[memories++].type = type;
    record.existenceMap = existenceMap(table.owner, row);
}

} // namespace

TableRow tableRow(size_t index) {
    if (index >= kGENERIC_ROWS.size()) {
        const auto& [family, row] = familyRow(index);
        return {row, family, row.longNames, row.hasShortNames, row.isListed, index};
    }
    const GenericRow& row = kGENERIC_ROWS[index];
    const size_t owner = genericGeometryIndex();
    return {familyRow(owner).row, *row.family, row.longNames, row.hasShortNames, false, owner};
}

TarselDeviceType* deviceRecord(size_t index) {
    if (index >= kDEVICE_COUNT) return &kTarselDeviceTable[kDEVICE_COUNT];
    TarselDeviceType& record = kTarselDeviceTable[index];
    const TableRow row = tableRow(index);
    if (record.family == nullptr) fillRecord(record, row);
    // Each time: arrays that builders had put here are gone with the engine that they were built for.
    for (MEMORYLocType& memory : record.memoryLocs)
        if (memory.type != nullptr) giveArrays(memory, row.geometry.layout, static_cast<u32>(row.owner));
    return &record;
}

bool isInDeviceTable(const void* field) {
    const std::less<const void*> before;
    return !before(field, kTarselDeviceTable) && before(field, kTarselDeviceTable + kDEVICE_COUNT);
}

} // namespace memdata

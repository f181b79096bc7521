// table_builders.cpp - location arrays of a new device, derived from the one of its large memory, and as source text.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/table_builders.h"

#include "DeviceTableUtils/device_lookup.h"
#include "DeviceTableUtils/device_table.h"
#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/locations.h"
#include "DeviceTableUtils/state.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

using namespace memdata;

namespace {

constexpr u32 kHALF_SIZE_UNITS = 4;
constexpr u32 kWHOLE_SIZE_UNITS = 8;

constexpr char kPRINT_HEADING[] =
    "\n//                                        rows * cols (physical instead of logical)\n";
constexpr char kNIL_TABLE[] = "nilTranslationTable";

// Blocks of built arrays are swept with the engine: fields of the device table must not keep pointing at them.
template<class Field>
void keepUntilTheEnd(std::vector<Field*>& fields, Field* field, const void* block) {
    registerDeviceTableFinalizer();
    autoReleaseMemory(const_cast<void*>(block));
    if (isInDeviceTable(field)) fields.push_back(field);
}

u32 presentRow(const BRAMPhysLocDataType& element) {
    return static_cast<u32>(element.logicalRow < 0 ? ~element.logicalRow : element.logicalRow);
}

MEMORYLocType* firstOfSize(TarselDeviceType* device, u32 sizeUnits) {
    for (MEMORYLocType& memory : device->memoryLocs)
        if (memory.type != nullptr && memory.type->sizeUnits == sizeUnits) return &memory;
    return nullptr;
}

// Prints columns of elements, a line each.
template<class PrintElement>
void printColumns(u32 columns, u32 rows, PrintElement&& printElement) {
    for (u32 column = 0; column < columns; ++column) {
        std::printf("\t");
        for (u32 row = 0; row < rows; ++row) {
            printElement(row, column);
            if (row + 1 != rows) std::printf(", ");
        }
        std::printf(column + 1 == columns ? "\n" : ",\n");
    }
    std::printf("\t};\n");
}

u32 kilobits(const MEMORYType* type) {
    return static_cast<u32>((type->dataBits + type->parityBits) >> 10);
}

} // namespace

void build_missing_lookup_tables(TarselDeviceType* device, MEMORYLocType* memoryLoc) {
    if ((device->family->familyMask & kEARLY_GENERATIONS_MASK) != 0) return;
    build_logical_to_physical_lookup_table(device, memoryLoc);
    build_T5_18k_physical_and_logical_lookup_tables(
        device, T5_18LowerDecodeTable, "T5_18LowerDecodeTable", T5_18UpperDecodeTable, "T5_18UpperDecodeTable");
}

void build_logical_to_physical_lookup_table(TarselDeviceType* device, MEMORYLocType* memoryLoc) {
    if (memoryLoc == nullptr || memoryLoc->physicalLocs == nullptr || memoryLoc->logicalLocs != nullptr) return;
    const MEMORYType* type = memoryLoc->type;
    const u32 logicalRows = logicalGridRows(device, type);
    const u32 physicalRows = physicalGridRows(device, type);
    const u64 count = u64{logicalRows} * device->logicalColumns;
    auto* logical = static_cast<BRAMLogLocDataType*>(
        getMemory("a 'BRAMLogLocDataType' pointer for an array of 'BRAMLogLocDataType' records",
            count * sizeof(BRAMLogLocDataType)));
    if (logical == nullptr) return;
    for (u32 row = 0; row < physicalRows; ++row)
        for (u32 column = 0; column < device->physicalColumns; ++column) {
            const BRAMPhysLocDataType& element =
                index_BRAM_phys_loc_array(device, type, memoryLoc->physicalLocs, row, column);
            const u32 logicalRow = presentRow(element);
            const u32 logicalColumn = static_cast<u32>(element.logicalColumn);
            if (logicalRow >= logicalRows || logicalColumn >= device->logicalColumns) continue;
            logical[size_t{logicalColumn} * logicalRows + logicalRow] = {
                static_cast<i32>(row), static_cast<i32>(column), element.logicalRow < 0 ? k_ : kT};
        }
    memoryLoc->logicalLocs = logical;
    keepUntilTheEnd(gDeviceTableState.builtLogicalLocs, &memoryLoc->logicalLocs, logical);
    if (gDeviceTableState.printBuiltTables) print_logical_to_physical_lookup_table(device, memoryLoc);
}

void build_T5_18k_physical_and_logical_lookup_tables(TarselDeviceType* device, const TranslationTableType* lowerTable,
    const char* lowerName, const TranslationTableType* upperTable, const char* upperName) {
    MEMORYLocType* half = &device->memoryLocs[0];
    if (half->type == nullptr || half->type->sizeUnits != kHALF_SIZE_UNITS || half->physicalLocs != nullptr) return;
    const MEMORYLocType* whole = firstOfSize(device, kWHOLE_SIZE_UNITS);
    if (whole == nullptr || whole->physicalLocs == nullptr) return;

    const u32 factor = half->type->subRowFactor;
    const u64 wholes = u64{device->physicalRows} * device->physicalColumns;
    auto* halves = static_cast<BRAMPhysLocDataType*>(
        getMemory("a 'BRAMPhysLocDataType' pointer for an array of 'BRAMPhysLocDataType' records",
            wholes * factor * sizeof(BRAMPhysLocDataType)));
    if (halves == nullptr) return;
    for (u64 i = 0; i < wholes; ++i) {
        const BRAMPhysLocDataType& source = whole->physicalLocs[i];
        const u32 baseRow = presentRow(source) * factor;
        // By the base row, not by the half: with two halves all elements carry the lower table. Kept on purpose.
        const TranslationTableType* table = baseRow % 2 == 0 ? lowerTable : upperTable;
        for (u32 n = 0; n < factor; ++n) {
            const i32 row = static_cast<i32>(baseRow + n);
            halves[i * factor + n] = {source.logicalRow < 0 ? k_ - row : row, source.logicalColumn,
                source.decodeTable == nullptr ? nullptr : table, n + 1 == factor ? source.padBits : 0};
        }
    }
    half->physicalLocs = halves;
    keepUntilTheEnd(gDeviceTableState.builtPhysicalLocs, &half->physicalLocs, halves);
    if (gDeviceTableState.printBuiltTables) print_physical_to_logical_lookup_table(device, half, lowerName, upperName);
    build_logical_to_physical_lookup_table(device, half);
}

void print_logical_to_physical_lookup_table(const TarselDeviceType* device, const MEMORYLocType* memoryLoc) {
    if (memoryLoc->logicalLocs == nullptr) return;
    const u32 rows = logicalGridRows(device, memoryLoc->type);
    std::printf("%s", kPRINT_HEADING);
    std::printf("BRAMLogLocDataType\t%s_%uBRAMLogData[ %u * %u ] =\n\t{\n", deviceName(device),
        kilobits(memoryLoc->type), rows, device->logicalColumns);
    printColumns(device->logicalColumns, rows, [&](u32 row, u32 column) {
        const BRAMLogLocDataType& element =
            index_BRAM_log_loc_array(device, memoryLoc->type, memoryLoc->logicalLocs, row, column);
        std::printf(
            "{ %2d, %2d, %s }", element.physicalRow, element.physicalColumn, element.exists == kT ? "kT" : "k_");
    });
}

void print_physical_to_logical_lookup_table(
    const TarselDeviceType* device, const MEMORYLocType* memoryLoc, const char* lowerName, const char* upperName) {
    if (memoryLoc->physicalLocs == nullptr) return;
    const u32 rows = physicalGridRows(device, memoryLoc->type);
    const BRAMPhysLocDataType* elements = memoryLoc->physicalLocs;
    const auto* end = elements + size_t{rows} * device->physicalColumns;
    const bool hasAbsent =
        std::any_of(elements, end, [](const BRAMPhysLocDataType& element) { return element.logicalRow < 0; });
    const int rowWidth = hasAbsent ? 8 : 3;

    std::printf("%s", kPRINT_HEADING);
    std::printf("BRAMPhysLocDataType\t%s_%uBRAMPhysData[ %u * %u ] =\n\t{\n", deviceName(device),
        kilobits(memoryLoc->type), rows, device->physicalColumns);
    printColumns(device->physicalColumns, rows, [&](u32 row, u32 column) {
        const BRAMPhysLocDataType& element = index_BRAM_phys_loc_array(device, memoryLoc->type, elements, row, column);
        if (row == 0 && column != 0 && element.logicalColumn == 0) std::printf("\n\t"); // a new group of columns
        if (element.logicalRow < 0)
            std::printf("{ k_ - %3d,", ~element.logicalRow);
        else
            std::printf("{ %*d,", rowWidth, element.logicalRow);
        const char* name = row % 2 == 0 ? lowerName : upperName;
        if (element.decodeTable != nullptr)
            std::printf(" %2d, %s,", element.logicalColumn, name);
        else
            std::printf(" %2d, %*s,", element.logicalColumn, static_cast<int>(std::strlen(name)), kNIL_TABLE);
        std::printf(element.padBits == 0 ? " %04d }" : " %4d }", element.padBits);
    });
}

void memdata::printBuiltTables(bool print) {
    registerDeviceTableFinalizer();
    gDeviceTableState.printBuiltTables = print;
}

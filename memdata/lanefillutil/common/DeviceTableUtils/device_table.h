// device_table.h - the device records, made from their rows on demand.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_DEVICE_TABLE_H
#define MEMDATA_DEVICE_TABLE_UTILS_DEVICE_TABLE_H

#include "DeviceTableUtils/device_rows.h"

#include <string_view>

namespace memdata {

// A row of either kind.
struct TableRow {
    const DeviceRow& geometry;      // of the row itself, or the one that it borrows
    const TarselFamilyType& family; // of the row itself
    const char* longNames;
    bool hasShortNames;
    bool isListed;
    size_t owner; // index of the record whose location arrays these are
};

// index below kDEVICE_COUNT.
TableRow tableRow(size_t index);

// The record at an index; the empty one past the end. Its location arrays are made once, when one of them is first
// read, and stay for the life of the process.
TarselDeviceType* deviceRecord(size_t index);

// True for a field of one of the records.
bool isInDeviceTable(const void* field);

// Calls visit(name) for every name of a row in order, until it returns true; true when it did.
template<class Visit>
bool anyName(const char* longNames, bool hasShortNames, Visit&& visit) {
    for (std::string_view name(longNames); !name.empty(); name = std::string_view(name.data() + name.size() + 1))
        if (visit(name) || (hasShortNames && visit(name.substr(1)))) return true;
    return false;
}

// Calls visit(index, name) for every name of the table in order.
template<class Visit>
void everyName(Visit&& visit) {
    size_t index = 0;
    const auto visitRow = [&](const auto& row) {
        anyName(row.longNames, row.hasShortNames, [&](std::string_view name) {
            visit(index, name);
            return false;
        });
        ++index;
    };
    for (const GenericRow& row : kGENERIC_ROWS) visitRow(row);
    for (const FamilyRows& family : kFAMILY_ROWS)
        for (const DeviceRow& row : family.rows) visitRow(row);
}

} // namespace memdata

#endif

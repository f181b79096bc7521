// table_builders.h - location arrays of a new device, derived from the one of its large memory.
//
// The data of devices/ is complete, so that the builders find nothing to do; they stay as the means to derive the
// arrays of a device that has its large physical array alone, and to print them as source text.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_TABLE_BUILDERS_H
#define MEMDATA_DEVICE_TABLE_UTILS_TABLE_BUILDERS_H

#include "DeviceTableUtils/records.h"

// Both builders below, with the tables of the Tarsel-5 halves. Does nothing for the first two generations.
void build_missing_lookup_tables(TarselDeviceType* device, MEMORYLocType* memoryLoc);

// Gives a memory that has a physical array alone its logical one. The array lives until the engine ends.
void build_logical_to_physical_lookup_table(TarselDeviceType* device, MEMORYLocType* memoryLoc);

// Gives the device's first type, when it is a half of a large memory and has no physical array, both arrays.
void build_T5_18k_physical_and_logical_lookup_tables(TarselDeviceType* device, const TranslationTableType* lowerTable,
    const char* lowerName, const TranslationTableType* upperTable, const char* upperName);

// The arrays as source text on standard output, one line a column.
void print_logical_to_physical_lookup_table(const TarselDeviceType* device, const MEMORYLocType* memoryLoc);
void print_physical_to_logical_lookup_table(
    const TarselDeviceType* device, const MEMORYLocType* memoryLoc, const char* lowerName, const char* upperName);

namespace memdata {

// Whether the builders print what they make; off unless a caller asks for it.
void printBuiltTables(bool print);

} // namespace memdata

#endif

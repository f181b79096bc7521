// device_lookup.h - finding devices by name and walking over all of them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_DEVICE_LOOKUP_H
#define MEMDATA_DEVICE_TABLE_UTILS_DEVICE_LOOKUP_H

#include "DeviceTableUtils/records.h"

// The record with the longest name that the asked name begins with, case ignored; of equally long ones the first in the
// table. Speed grades and packages behind the name need no stripping. Null when no name fits. The record lives as long
// as the process.
TarselDeviceType* get_device_record_by_name(const char* name);

// A walk over the names of all records in table order.
//   includeUnlisted    records that a listing leaves out as well
//   includeShortNames  names without the maker's letter
//   includeLongNames   names with it
// The iterator stands on the first accepted name, if there is one. Null without memory.
device_iterator_type* create_device_record_iterator(
    bool includeUnlisted, bool includeShortNames, bool includeLongNames);
// Steps to the next accepted name; null at the end of the table.
const char* iterate_next_device_record(device_iterator_type* iterator);
// Where the iterator stands; null at the end of the table.
TarselDeviceType* get_iterated_device_record(const device_iterator_type* iterator);
const char* get_iterated_device_name(const device_iterator_type* iterator);
void delete_device_iterator(device_iterator_type** iterator); // clears the caller's pointer

namespace memdata {

// First name of a record; empty for null.
const char* deviceName(const TarselDeviceType* device);

} // namespace memdata

#endif

// device_lookup.cpp - finding devices by name and walking over all of them.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/device_lookup.h"

#include "DeviceTableUtils/device_table.h"
#include "SystemUtils/memory.h"

#include <string_view>

using namespace memdata;

namespace {

constexpr char kPREFIX_LETTER = 't'; // of the maker; long names begin with it

char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// Names of the table are in lower case.
bool beginsWith(const char* name, std::string_view tableName) {
    for (char expected : tableName)
        if (lowerCase(*name++) != expected) return false; // also at the end of the asked name
    return true;
}

bool isAccepted(const device_iterator_type& iterator, const char* name) {
    return name[0] == kPREFIX_LETTER ? iterator.includeLongNames : iterator.includeShortNames;
}

// A name of a record by its place; null past the last, or without a record.
const char* get_device_name(const TarselDeviceType* record, size_t index) {
    if (record == nullptr || index >= std::size(record->names)) return nullptr;
    return record->names[index];
}

} // namespace

TarselDeviceType* get_device_record_by_name(const char* name) {
    if (name == nullptr) return nullptr;
    // The names are read from the rows, in the order of an iteration: only the record that is found is filled.
    size_t found = kDEVICE_COUNT;
    size_t foundLength = 0;
    everyName([&](size_t index, std::string_view tableName) {
        if (tableName.size() <= foundLength || !beginsWith(name, tableName)) return;
        found = index;
        foundLength = tableName.size();
    });
    return found == kDEVICE_COUNT ? nullptr : deviceRecord(found);
}

device_iterator_type* create_device_record_iterator(
    bool includeUnlisted, bool includeShortNames, bool includeLongNames) {
    device_iterator_type* iterator = NEW_RECORD(device_iterator_type);
    if (iterator == nullptr) return nullptr;
    iterator->recordIndex = -1; // ahead of the table
    iterator->includeShortNames = includeShortNames;
    iterator->includeLongNames = includeLongNames;
    iterator->includeUnlisted = includeUnlisted;
    iterate_next_device_record(iterator);
    return iterator;
}

const char* iterate_next_device_record(device_iterator_type* iterator) {
    if (iterator->recordIndex >= static_cast<i32>(kDEVICE_COUNT)) return nullptr;
    for (;;) {
        const char* name = get_device_name(iterator->currentRecord, static_cast<size_t>(++iterator->nameIndex));
        if (name == nullptr) {
            iterator->currentRecord = deviceRecord(static_cast<size_t>(++iterator->recordIndex));
            iterator->nameIndex = 0;
            name = get_device_name(iterator->currentRecord, 0);
            if (name == nullptr) { // the record that ends the table
                iterator->currentRecord = nullptr;
                return iterator->currentName = nullptr;
            }
        }
        if (iterator->currentRecord->isListed == 0 && !iterator->includeUnlisted) continue;
        if (isAccepted(*iterator, name)) return iterator->currentName = name;
    }
}

TarselDeviceType* get_iterated_device_record(const device_iterator_type* iterator) {
    if (iterator->currentRecord == nullptr) return nullptr;
    return deviceRecord(static_cast<size_t>(iterator->recordIndex));
}

const char* get_iterated_device_name(const device_iterator_type* iterator) {
    return iterator->currentName;
}

void delete_device_iterator(device_iterator_type** iterator) {
    if (*iterator == nullptr) return;
    releaseMemory(*iterator);
    *iterator = nullptr;
}

const char* memdata::deviceName(const TarselDeviceType* device) {
    const char* name = get_device_name(device, 0);
    return name == nullptr ? "" : name;
}

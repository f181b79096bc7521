// all_devices.h - the devices of the table as a test walks them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_DEVICE_TABLE_UTILS_ALL_DEVICES_H
#define MEMDATA_TESTS_DEVICE_TABLE_UTILS_ALL_DEVICES_H

#include "DeviceTableUtils/DeviceTableUtils.h"

#include <string>
#include <vector>

namespace memdata::testing {

// Every record with its location arrays, in table order.
inline std::vector<TarselDeviceType*> allDevices() {
    std::vector<TarselDeviceType*> devices;
    device_iterator_type* iterator = create_device_record_iterator(true, true, true);
    for (; get_iterated_device_name(iterator) != nullptr; iterate_next_device_record(iterator))
        if (devices.empty() || devices.back() != get_iterated_device_record(iterator))
            devices.push_back(get_iterated_device_record(iterator));
    delete_device_iterator(&iterator);
    return devices;
}

inline std::vector<TarselDeviceType*> devicesOf(const TarselFamilyType& family) {
    std::vector<TarselDeviceType*> devices = allDevices();
    std::erase_if(devices, [&](const TarselDeviceType* device) { return device->family != &family; });
    return devices;
}

inline std::vector<std::string> namesOf(const TarselDeviceType& device) {
    std::vector<std::string> names;
    for (const char* const* name = device.names; *name != nullptr; ++name) names.emplace_back(*name);
    return names;
}

// The types that a device offers.
inline std::vector<const MEMORYLocType*> memoriesOf(const TarselDeviceType& device) {
    std::vector<const MEMORYLocType*> memories;
    for (const MEMORYLocType& memory : device.memoryLocs)
        if (memory.type != nullptr) memories.push_back(&memory);
    return memories;
}

// "tq7b100 RAMB36", for what a failing test says.
inline std::string label(const TarselDeviceType& device, const MEMORYLocType& memory) {
    return std::string(device.names[0]) + " " + memory.type->name;
}

inline std::string text(const BRAMPhysLocDataType& element) {
    return std::to_string(element.logicalRow) + " " + std::to_string(element.logicalColumn) + " pad " +
           std::to_string(element.padBits);
}

inline std::string text(const BRAMLogLocDataType& element) {
    return std::to_string(element.physicalRow) + " " + std::to_string(element.physicalColumn) + " " +
           std::to_string(element.exists);
}

} // namespace memdata::testing

#endif

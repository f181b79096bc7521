// state.h - all process state of the device tables. One thread, no locks. Back to these values in
// FinalizeSystemResources. The device records themselves are constants, made when they are first asked for: they stay.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_STATE_H
#define MEMDATA_DEVICE_TABLE_UTILS_STATE_H

#include "DeviceTableUtils/records.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace memdata {

struct DeviceTableState {
    bool finalizerRegistered = false;
    MEMORYLocType* lastExtendedType = nullptr;                     // tail of definedExtendedMEMORYTypes
    std::unordered_map<std::string, MEMORYLocType*> extendedTypes; // by names in lower case, the first of each
    bool printBuiltTables = false; // the builders of location arrays print what they make
    // Arrays that the builders made, as the fields that point at them; their blocks are swept with the engine.
    std::vector<LazyLocations<BRAMPhysLocDataType>*> builtPhysicalLocs;
    std::vector<LazyLocations<BRAMLogLocDataType>*> builtLogicalLocs;
};

extern DeviceTableState gDeviceTableState;

// To be called before the state is first changed.
void registerDeviceTableFinalizer();

} // namespace memdata

#endif

// state.cpp - process state of the device tables and its way back to the start.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/state.h"

#include "DeviceTableUtils/memory_lookup.h"
#include "SystemUtils/lifetime.h"

namespace memdata {

DeviceTableState gDeviceTableState;

namespace {

void resetDeviceTables() {
    delete_MEMORY_extended_types();
    restoreMemoryTypeTokens();
    for (LazyLocations<BRAMPhysLocDataType>* field : gDeviceTableState.builtPhysicalLocs) *field = nullptr;
    for (LazyLocations<BRAMLogLocDataType>* field : gDeviceTableState.builtLogicalLocs) *field = nullptr;
    gDeviceTableState = {};
}

} // namespace

void registerDeviceTableFinalizer() {
    if (gDeviceTableState.finalizerRegistered) return;
    gDeviceTableState.finalizerRegistered = true;
    RegisterSystemFinalizationFunction(resetDeviceTables);
}

} // namespace memdata

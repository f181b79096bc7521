// frame_sizes.cpp - how many bytes of a configuration stream a device's frames take.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/frame_sizes.h"

#include "DeviceTableUtils/locations.h"

#include <algorithm>

namespace memdata {

u64 blockRamColumnBytes(const TarselDeviceType* device, u32 physicalColumn) {
    if (physicalColumn >= device->physicalColumns) return 0;
    const MEMORYLocType& memory = device->memoryLocs[0];
    const u64 columnBytes = device->bramFrameBits / 8 * memory.type->frameCount;
    if (memory.physicalLocs == nullptr) return columnBytes;
    const u32 rows = physicalGridRows(device, memory.type);
    const BRAMPhysLocDataType* first =
        &index_BRAM_phys_loc_array(device, memory.type, memory.physicalLocs, 0, physicalColumn);
    const bool hasFrames = std::any_of(
        first, first + rows, [](const BRAMPhysLocDataType& element) { return element.decodeTable != nullptr; });
    const i32 gapBits = std::max(first[rows - 1].padBits, 0); // behind the last memory of the column
    return (hasFrames ? columnBytes : 0) + static_cast<u64>(gapBits) / 8;
}

u64 blockRamBytes(const TarselDeviceType* device) {
    u64 bytes = 0;
    for (u32 column = 0; column < device->physicalColumns; ++column) bytes += blockRamColumnBytes(device, column);
    return bytes;
}

u64 frameDataBytes(const TarselDeviceType* device) {
    if (device->bramFrameOffset == 0) return 0;
    const u64 dice = std::max(device->dieCount, 1u);
    return dice * device->bramFrameOffset * (device->clbFrameBits / 8) + blockRamBytes(device);
}

} // namespace memdata

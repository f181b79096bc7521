// frame_sizes.h - how many bytes of a configuration stream a device's frames take.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_FRAME_SIZES_H
#define MEMDATA_DEVICE_TABLE_UTILS_FRAME_SIZES_H

#include "DeviceTableUtils/records.h"

namespace memdata {

// Bytes that one configuration column of block RAM takes, with what is passed over behind it; 0 past the last column.
// Columns without frames take what is passed over alone.
u64 blockRamColumnBytes(const TarselDeviceType* device, u32 physicalColumn);

// All of the device's columns, the dice of a stack together.
u64 blockRamBytes(const TarselDeviceType* device);

// All frames of the device: the CLB frames ahead of the block RAM of each die, and the block RAM. 0 where the number
// of CLB frames is not known.
u64 frameDataBytes(const TarselDeviceType* device);

} // namespace memdata

#endif

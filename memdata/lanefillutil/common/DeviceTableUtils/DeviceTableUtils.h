// DeviceTableUtils.h - which devices and memories exist, and where a device's memories are.
//
//   device_lookup      a device by its name, and a walk over all
//   memory_lookup      a memory type by its keyword: of a device, of all families, of the user
//   locations          a memory by its location constraint and by its place in the configuration stream
//   cross_coordinates  which bit lane of an address mapping sits on which memory
//   frame_sizes        bytes of the configuration stream
//   table_builders     location arrays of a new device
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_H
#define MEMDATA_DEVICE_TABLE_UTILS_H

#include "DeviceTableUtils/cross_coordinates.h"
#include "DeviceTableUtils/device_lookup.h"
#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/frame_sizes.h"
#include "DeviceTableUtils/locations.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "DeviceTableUtils/memory_types.h"
#include "DeviceTableUtils/records.h"
#include "DeviceTableUtils/table_builders.h"

#endif

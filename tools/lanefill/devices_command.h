// devices_command.h - lanefill devices: the devices as a table, one of them in detail, all of them as JSON.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TOOLS_LANEFILL_DEVICES_COMMAND_H
#define MEMDATA_TOOLS_LANEFILL_DEVICES_COMMAND_H

#include "DeviceTableUtils/records.h"

#include <cstdio>
#include <span>
#include <string>
#include <vector>

namespace memdata {

// Runs the sub-command on the words behind "devices". Results go to standard output, what is wrong to standard error.
// Status: 0; 1 a word that it does not know, or output that can not be written; 14 no such device.
int runDevicesCommand(std::span<char* const> words);

// Every record with its location arrays, in table order.
std::vector<const TarselDeviceType*> everyDevice();

// A line per device under a heading, and a legend.
std::string deviceTable(std::span<const TarselDeviceType* const> devices);

// One device with a drawing of its memory columns, a dozen lines or more.
std::string deviceDetails(const TarselDeviceType* device);

// All devices with every array, and all decode tables, as one JSON object on one line. False when writing failed.
bool writeDevicesJson(std::FILE* out);

} // namespace memdata

#endif

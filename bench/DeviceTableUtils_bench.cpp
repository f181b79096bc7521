// DeviceTableUtils_bench.cpp - finding a device, expanding it, placing located lanes.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/DeviceTableUtils.h"

#include "DeviceTableUtils/device_table.h"
#include "DeviceTableUtils/location_arrays.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

#include <benchmark/benchmark.h>
#include <string_view>

namespace {

// The mark is 50 microseconds.
void deviceByName(benchmark::State& state, const char* name) {
    for (auto _ : state) benchmark::DoNotOptimize(get_device_record_by_name(name));
}
BENCHMARK_CAPTURE(deviceByName, first_of_table, "tp7");
BENCHMARK_CAPTURE(deviceByName, with_package, "tq7b100-2ff1136");
BENCHMARK_CAPTURE(deviceByName, last_of_table, "d6a528");
BENCHMARK_CAPTURE(deviceByName, unknown, "zz1000");

// What the first use of a device costs on top.
void expandDevice(benchmark::State& state, const char* name) {
    const memdata::DeviceRow* row = nullptr;
    for (size_t i = 0; i < memdata::kDEVICE_COUNT; ++i)
        if (std::string_view(memdata::tableRow(i).longNames) == name) row = &memdata::tableRow(i).geometry;
    for (auto _ : state) benchmark::DoNotOptimize(memdata::expandLocationArrays(*row));
}
BENCHMARK_CAPTURE(expandDevice, smallest, "tq7a5");
BENCHMARK_CAPTURE(expandDevice, middle, "tq7b100");
BENCHMARK_CAPTURE(expandDevice, largest, "tq7b1000");

// The table of located lanes, made and released.
void crossCoordinateTable(benchmark::State& state, const char* name) {
    const memdata::SystemResources resources;
    AddressMappingType mapping = {};
    mapping.device = get_device_record_by_name(name);
    for (auto _ : state) {
        initialize_cross_coordinate_lookup_table(&mapping);
        releaseMemory(mapping.scratch);
        mapping.scratch = nullptr;
    }
}
BENCHMARK_CAPTURE(crossCoordinateTable, middle, "tq7b100");
BENCHMARK_CAPTURE(crossCoordinateTable, largest, "tq7b1000");

} // namespace

// DeviceTableUtils_bench.cpp - finding a device, expanding it, placing located lanes.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/DeviceTableUtils.h"

#include "DeviceTableUtils/device_table.h"
#include "DeviceTableUtils/location_arrays.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <string_view>
#include <vector>

namespace {

double processorMicroseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

// Devices found while their records are empty. The mark is 50 microseconds for each. Processor time, so that other work on the machine does not count. It can be
// taken once a process for each device, and has to come ahead of all that looks devices up.
void firstLookup(benchmark::State& state) {
    std::vector<const char*> names;
    for (size_t i = 0; i < memdata::kDEVICE_COUNT; ++i) names.push_back(memdata::tableRow(i).longNames);
    double longest = 0;
    double sum = 0;
    for (auto _ : state)
        for (const char* name : names) {
            const double start = processorMicroseconds();
            benchmark::DoNotOptimize(get_device_record_by_name(name));
            const double taken = processorMicroseconds() - start;
            longest = std::max(longest, taken);
            sum += taken;
        }
    state.counters["longest_us"] = longest;
    state.counters["mean_us"] = sum / static_cast<double>(names.size());
}
BENCHMARK(firstLookup)->Iterations(1);

// Devices found again.
void deviceByName(benchmark::State& state, const char* name) {
    for (auto _ : state) benchmark::DoNotOptimize(get_device_record_by_name(name));
}
BENCHMARK_CAPTURE(deviceByName, first_of_table, "tp7");
BENCHMARK_CAPTURE(deviceByName, with_package, "tq7b100-2ff1136");
BENCHMARK_CAPTURE(deviceByName, last_of_table, "d6a528");
BENCHMARK_CAPTURE(deviceByName, unknown, "zz1000");

// What the first reading of a device's arrays costs on top.
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

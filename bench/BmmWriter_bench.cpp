// BmmWriter_bench.cpp - checking generated maps and writing them annotated.
//
// What the figures must hold: writing at 100 MB/s of text or more; the time for a lane the same from 1,000 to 100,000
// lanes, in many small blocks as in few wide ones (the counter "ns_per_lane").
// SPDX-License-Identifier: Apache-2.0

#include "BmmUtils/annotated_map.h"
#include "BmmUtils/model/creation.h"
#include "BmmUtils/validation.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "FileUtils/FileUtils.h"
#include "SystemUtils/SystemUtils.h"

#include <benchmark/benchmark.h>
#include <ctime>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

using namespace memdata;

constexpr u64 kDEVICE_BYTES = 4096; // of a RAMB32
constexpr u64 kLANE_BITS = 8;
constexpr u64 kWORDS = kDEVICE_BYTES * 8 / kLANE_BITS;

template<class T>
T* made(T* record) {
    if (record == nullptr) throw std::runtime_error("out of memory");
    return record;
}

// One space of RAMB32s with located byte lanes, as a reader hands it to the checks.
class GeneratedMap {
public:
    GeneratedMap(u64 laneCount, u64 lanesPerBlock)
        : mapping_(made(create_addressMapping_element("bench.bmm", nullptr, false, nullptr, nullptr))),
          memory_(made(get_MEMORY_type_from_name(nullptr, "RAMB32"))) {
        create_and_insert_addressMap(mapping_.get(), true, "cpu", "top/cpu", 1, 0, &map_);
        const u64 blockCount = laneCount / lanesPerBlock;
        create_addressSpace_element(nullptr, mapping_->symbolSpaces->addressSpaceNames, nullptr, "ram", nullptr,
            mapping_.get(), map_, 0, blockCount * lanesPerBlock * kDEVICE_BYTES - 1, nullptr, kAddressSpaceStyleSingle,
            false, false, false, &space_);
        AddressRangeDefType* range = made(create_addressRange_element(memory_, 0, space_->endAddress));
        insert_addressRange_element(space_, range);
        range->busBlocks = made(newBusBlockArray(blockCount));
        while (range->busBlockCount < blockCount) addBlock(range, lanesPerBlock);
        range->deviceCount = space_->deviceCount = laneCount;
        finish();
        insert_addressSpace_element(mapping_.get(), mapping_->symbolSpaces->addressSpaceNames, space_, map_);
    }

    void finish() {
        if (finish_addressSpace_data(space_) != 0) throw std::runtime_error("unsound map");
    }
    AddressMappingType* mapping() const { return mapping_.get(); }

private:
    void addBlock(AddressRangeDefType* range, u64 lanesPerBlock) {
        const u64 index = range->busBlockCount;
        BusBlockType* block = range->busBlocks[range->busBlockCount++] = made(create_busBlock_element(0, 0));
        block->laneListOrder = kBitLaneListOrderDataFirst;
        block->lanes = made(newBitLaneArray(lanesPerBlock));
        while (block->laneCount < lanesPerBlock) {
            const u64 low = (lanesPerBlock - 1 - block->laneCount) * kLANE_BITS;
            const std::string name = formatted("design/memory/bank_%lld/ramb32_%lld", index, block->laneCount);
            block->lanes[block->laneCount] =
                made(create_bitLane_grid_element(nullptr, name.c_str(), memory_, false, low, low + kLANE_BITS - 1,
                    index * kWORDS, (index + 1) * kWORDS - 1, kBIT_ORDERING_DESCENDING, 0, static_cast<u32>(index),
                    static_cast<u32>(block->laneCount), kLOC_KIND_LOC, space_, nullptr, nullptr, nullptr));
            ++block->laneCount;
        }
        block->busWidth = lanesPerBlock * kLANE_BITS;
    }

    SystemResources resources_;
    OwnedMapping mapping_;
    MEMORYLocType* memory_;
    AddressMapType* map_ = nullptr;
    AddressSpaceDefType* space_ = nullptr;
};

void countLanes(benchmark::State& state, double spent) {
    const double lanes = static_cast<double>(state.iterations()) * static_cast<double>(state.range(0));
    state.counters["ns_per_lane"] = 1e9 * spent / lanes;
}

// Time of this thread on a processor: what others do on the machine is left out.
double seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Lanes, lanes in a block.
void finishSpace(benchmark::State& state) {
    GeneratedMap map(static_cast<u64>(state.range(0)), static_cast<u64>(state.range(1)));
    const double start = seconds();
    for ([[maybe_unused]] auto step : state) map.finish();
    countLanes(state, seconds() - start);
}
BENCHMARK(finishSpace)
    ->Args({1000, 4})
    ->Args({10000, 4})
    ->Args({100000, 4})
    ->Args({100000, 1})
    ->Args({100000, 250})
    ->Unit(benchmark::kMillisecond);

// To a file that nobody keeps, and to nothing.
void writeAnnotated(benchmark::State& state, const std::string& name) {
    GeneratedMap map(static_cast<u64>(state.range(0)), static_cast<u64>(state.range(1)));
    const double start = seconds();
    u64 bytes = 0;
    for ([[maybe_unused]] auto step : state) {
        fileIODescriptor* file = nullptr;
        if (Open_File(name.c_str(), kTEXT_WRITE, &file) != 0) return state.SkipWithError("no file");
        if (output_BMM_addressMapping(file, map.mapping()) != 0) return state.SkipWithError("not written");
        bytes += GetFilePosition(file);
        Close_File(&file);
    }
    countLanes(state, seconds() - start);
    state.SetBytesProcessed(static_cast<i64>(bytes));
}
void writeToFile(benchmark::State& state) {
    const auto name = std::filesystem::temp_directory_path() / ("memdata-bench-" + std::to_string(getpid()) + ".bmm");
    writeAnnotated(state, name.string());
    std::filesystem::remove(name);
}
void writeToNothing(benchmark::State& state) {
    writeAnnotated(state, "/dev/null");
}
BENCHMARK(writeToFile)->Args({1000, 4})->Args({100000, 4})->Unit(benchmark::kMillisecond);
BENCHMARK(writeToNothing)->Args({1000, 4})->Args({100000, 4})->Unit(benchmark::kMillisecond);

} // namespace

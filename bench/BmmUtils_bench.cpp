// BmmUtils_bench.cpp - reading address maps, in bytes of text a second, with the checks of their spaces.
// SPDX-License-Identifier: Apache-2.0
//
// A map of N lanes of a hundred bytes, four to a block, in spaces of 1,024 lanes. `memory` is the peak of the memory that
// reading takes, in bytes per byte of text: tracked is what records ask for, resident what the system gives for it.
//
// BareBlocks shows what of the time is the memory's: it takes and clears as many blocks of the same sizes.
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/parser.h"
#include "SystemUtils/SystemUtils.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr u32 kLANES_OF_BLOCK = 4;
constexpr u32 kLANES_OF_SPACE = 1024;
constexpr u64 kBLOCK_BYTES = 16384; // four RAMB32 of 32768 data bits

std::string hex(u64 value) {
    return memdata::formatted("0x%llX", value);
}

std::string lane_line(u32 lane) {
    const u32 low = (kLANES_OF_BLOCK - 1 - lane % kLANES_OF_BLOCK) * 8;
    std::string line = "        system_i/axi_bram_ctrl_" + std::to_string(lane) + "/ramloop.ram_r/prim_noinit.ram [" +
                       std::to_string(low + 7) + ":" + std::to_string(low) + "] LOC = X" + std::to_string(lane % 90) +
                       "Y" + std::to_string(lane / 90);
    line.resize(std::max<size_t>(line.size(), 97), ' ');
    return line + ";\n";
}

std::string map_text(u32 laneCount) {
    std::string text;
    u64 address = 0;
    for (u32 first = 0; first < laneCount; first += kLANES_OF_SPACE) {
        const u32 count = std::min(kLANES_OF_SPACE, laneCount - first);
        const u64 bytes = count / kLANES_OF_BLOCK * kBLOCK_BYTES;
        text += "ADDRESS_SPACE ram_" + std::to_string(first) + " RAMB32 [" + hex(address) + ":" +
                hex(address + bytes - 1) + "]\n";
        for (u32 lane = first; lane < first + count; ++lane) {
            if (lane % kLANES_OF_BLOCK == 0) text += "    BUS_BLOCK\n";
            text += lane_line(lane);
            if (lane % kLANES_OF_BLOCK == kLANES_OF_BLOCK - 1) text += "    END_BUS_BLOCK;\n";
        }
        text += "END_ADDRESS_SPACE;\n";
        address += bytes;
    }
    return text;
}

int parse(const std::string& text, AddressMappingType* mapping) {
    parse_stream* stream = nullptr;
    int status =
        open_parse_MemoryFile("map.bmm", text.data(), text.size(), &bmm_keyword_set, nullptr, nullptr, &stream);
    if (status == 0) status = parse_bmm_file(stream, nullptr, mapping);
    close_parse_stream(&stream);
    return status;
}

// A figure of the process in kB, 0 where the system does not tell.
u64 process_kilobytes(const std::string& name) {
    std::ifstream in("/proc/self/status");
    for (std::string word; in >> word;)
        if (word == name) {
            u64 value = 0;
            in >> value;
            return value;
        }
    return 0;
}

void ParseMap(benchmark::State& state) {
    const std::string text = map_text(static_cast<u32>(state.range(0)));
    u64 residentBytes = 0;
    u64 trackedBytes = 0;
    for (auto _ : state) {
        const memdata::SystemResources resources;
        const u64 before = process_kilobytes("VmRSS:");
        memdata::OwnedMapping mapping(create_addressMapping_element("map.bmm", nullptr, false, nullptr, nullptr));
        if (parse(text, mapping.get()) != 0) state.SkipWithError("the map was refused");
        state.PauseTiming();
        residentBytes = std::max(residentBytes, (process_kilobytes("VmRSS:") - before) * 1024);
        trackedBytes = getMaxMemoryUsage();
        mapping.reset();
        state.ResumeTiming();
    }
    const auto textBytes = static_cast<double>(text.size());
    state.SetBytesProcessed(state.iterations() * static_cast<i64>(text.size()));
    state.counters["tracked_memory"] = static_cast<double>(trackedBytes) / textBytes;
    state.counters["resident_memory"] = static_cast<double>(residentBytes) / textBytes;
}
BENCHMARK(ParseMap)->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

// Bytes that the records and names of one lane take from the C library, rounded up to 16: what nearly every lane
// asks malloc for.
constexpr std::array<size_t, 8> kBLOCKS_OF_LANE{208, 160, 112, 80, 64, 64, 48, 32};

void BareBlocks(benchmark::State& state) {
    std::vector<void*> blocks(static_cast<size_t>(state.range(0)) * kBLOCKS_OF_LANE.size());
    for (auto _ : state) {
        size_t taken = 0;
        for (i64 lane = 0; lane < state.range(0); ++lane)
            for (const size_t bytes : kBLOCKS_OF_LANE)
                blocks[taken++] = std::memset(std::malloc(bytes), 0, bytes); // as tracked blocks are
        state.PauseTiming();
        for (void* block : blocks) std::free(block);
        state.ResumeTiming();
    }
    state.counters["ns_per_lane"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)) * 1e-9,
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BareBlocks)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace

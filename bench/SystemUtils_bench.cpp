// SystemUtils_bench.cpp - what a tracked block costs beside one of the system.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/containers.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <vector>

namespace {

// The peer: the same bytes from the system, zeroed, and back.
void system_allocation(benchmark::State& state) {
    const auto size = static_cast<size_t>(state.range(0));
    for (auto _ : state) {
        void* p = std::calloc(1, size);
        benchmark::DoNotOptimize(p);
        std::free(p);
    }
}
BENCHMARK(system_allocation)->Arg(16)->Arg(64)->Arg(1024);

// To hold: under 150 ns for one allocation with its release, three times the system's.
void tracked_allocation(benchmark::State& state) {
    memdata::SystemResources system;
    const auto size = static_cast<size_t>(state.range(0));
    for (auto _ : state) {
        void* p = getMemory("a 'BitLaneType' record", size);
        benchmark::DoNotOptimize(p);
        releaseMemory(p);
    }
}
BENCHMARK(tracked_allocation)->Arg(16)->Arg(64)->Arg(1024);

// Many live blocks at a time, as a large map makes them; the figure is for one allocation with its release.
void tracked_blocks_live_together(benchmark::State& state) {
    memdata::SystemResources system;
    std::vector<void*> blocks(static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        for (void*& p : blocks) p = getMemory("a 'BitLaneType' record", 64);
        for (void* p : blocks) releaseMemory(p);
    }
    state.counters["per_block"] = benchmark::Counter(static_cast<double>(state.range(0)),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(tracked_blocks_live_together)->RangeMultiplier(10)->Range(1000, 1000000);

// A sparse block of a device's whole memory: neither made resident by its creation nor by its release.
void tracked_sparse_gigabyte(benchmark::State& state) {
    memdata::SystemResources system;
    for (auto _ : state) {
        void* p = getMemory("a 'sparse' buffer", size_t{1} << 30);
        benchmark::DoNotOptimize(p);
        releaseMemory(p);
    }
}
BENCHMARK(tracked_sparse_gigabyte);

void queue_put_and_get(benchmark::State& state) {
    memdata::SystemResources system;
    QueueType* queue = Queue_Create();
    for (auto _ : state) {
        Queue_Put(queue, queue, nullptr);
        benchmark::DoNotOptimize(Queue_Get(queue, false));
    }
    Queue_Delete(&queue);
}
BENCHMARK(queue_put_and_get);

} // namespace

// SymbolUtils_bench.cpp - what a symbol costs to insert and to look up, by the number of symbols.
// SPDX-License-Identifier: Apache-2.0
//
// The table never grows: made for as many symbols as it holds, it has at most 4093 chains, which hold two on average up
// to 8000 symbols. Beyond, its index keeps the cost of a symbol level, but for what the cache no longer holds.
#include "SymbolUtils/SymbolUtils.h"
#include "SystemUtils/lifetime.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

namespace {

std::vector<std::string> names(size_t count) {
    std::vector<std::string> list(count);
    for (size_t i = 0; i < count; ++i) list[i] = "top/cpu/ram_" + std::to_string(i);
    return list;
}

void set_cost_per_symbol(benchmark::State& state, size_t symbolsPerIteration) {
    state.counters["per_symbol"] = benchmark::Counter(static_cast<double>(symbolsPerIteration),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

symbol_table* fill_table(const std::vector<std::string>& list) {
    symbol_table* table = create_symbol_table(static_cast<unsigned>(list.size()));
    for (const std::string& name : list) insert_symbol(name.c_str(), table, 1, 1, nullptr, nullptr);
    return table;
}

void symbol_insert(benchmark::State& state) {
    memdata::SystemResources system;
    const std::vector<std::string> list = names(static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        symbol_table* table = fill_table(list);
        state.PauseTiming();
        delete_symbol_table(&table);
        state.ResumeTiming();
    }
    set_cost_per_symbol(state, list.size());
}
BENCHMARK(symbol_insert)->Arg(8000)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);

void symbol_lookup(benchmark::State& state) {
    constexpr size_t kLOOKUPS = 1000;
    memdata::SystemResources system;
    const std::vector<std::string> list = names(static_cast<size_t>(state.range(0)));
    symbol_table* table = fill_table(list);
    std::vector<const char*> wanted;
    std::mt19937 random(1);
    for (size_t i = 0; i < kLOOKUPS; ++i) wanted.push_back(list[random() % list.size()].c_str());
    for (auto _ : state)
        for (const char* name : wanted) benchmark::DoNotOptimize(lookup_symbol(name, table, 1, 1));
    set_cost_per_symbol(state, kLOOKUPS);
    delete_symbol_table(&table);
}
BENCHMARK(symbol_lookup)->Arg(8000)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMicrosecond);

} // namespace

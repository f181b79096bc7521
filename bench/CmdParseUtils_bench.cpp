// CmdParseUtils_bench.cpp - option texts into records, in bytes of text a second, by the number of switches.
// SPDX-License-Identifier: Apache-2.0
//
// Reading is linear when the speed stays from 100 switches to 100,000.
#include "CmdParseUtils/CmdParseUtils.h"
#include "SystemUtils/SystemUtils.h"

#include <benchmark/benchmark.h>
#include <string>

namespace {

void readSwitches(benchmark::State& state, const char* piece) {
    const memdata::SystemResources resources;
    std::string text;
    for (int64_t i = 0; i < state.range(0); ++i) text += piece;
    for (auto _ : state) {
        CmdStringOptionsType options{};
        int count = -1;
        if (ParseCmdStringOptions(text.c_str(), &options, &count) != 0) state.SkipWithError("not read");
        DeleteCmdStringOptions(&options);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK_CAPTURE(readSwitches, flags, "-i ")->Range(100, 100000);
BENCHMARK_CAPTURE(readSwitches, maps, "-bm soc.bmm ")->Range(100, 100000);
BENCHMARK_CAPTURE(readSwitches, data files, "-bd boot.elf tag ram ")->Range(100, 100000);
BENCHMARK_CAPTURE(readSwitches, macros, "-D DEPTH=0x1000 ")->Range(100, 100000);
BENCHMARK_CAPTURE(readSwitches, include folders, "-I include ")->Range(100, 100000);

} // namespace

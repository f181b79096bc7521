// StringUtils_bench.cpp - what a formatted line and a managed string cost, beside the C library.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/StringUtils.h"
#include "SystemUtils/lifetime.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>

namespace {

// A typical line of a listing: texts, a padded address, two counts.
constexpr char kFORMAT[] = "    %s [%ld:%ld] PLACED = %s at 0x%08lX\n";
constexpr char kC_FORMAT[] = "    %s [%d:%d] PLACED = %s at 0x%08X\n";
constexpr char kNAME[] = "system/memory/ram0";
constexpr char kPLACE[] = "X12Y104";

void FormatLineWithSnprintf(benchmark::State& state) {
    char line[256];
    for (auto _ : state) {
        std::snprintf(line, sizeof line, kC_FORMAT, kNAME, 31, 24, kPLACE, 0x80001000U);
        benchmark::DoNotOptimize(line);
    }
}
BENCHMARK(FormatLineWithSnprintf);

// As snprintf would have to be used when the length is not known: measured, allocated, printed.
void FormatLineWithSnprintfIntoString(benchmark::State& state) {
    for (auto _ : state) {
        const int length = std::snprintf(nullptr, 0, kC_FORMAT, kNAME, 31, 24, kPLACE, 0x80001000U);
        std::string line(static_cast<size_t>(length), '\0');
        std::snprintf(line.data(), line.size() + 1, kC_FORMAT, kNAME, 31, 24, kPLACE, 0x80001000U);
        benchmark::DoNotOptimize(line);
    }
}
BENCHMARK(FormatLineWithSnprintfIntoString);

void FormatLineTyped(benchmark::State& state) {
    for (auto _ : state) {
        std::string line = memdata::formatted(kFORMAT, kNAME, 31, 24, kPLACE, 0x80001000U);
        benchmark::DoNotOptimize(line);
    }
}
BENCHMARK(FormatLineTyped);

void FormatLineVariadicIntoManagedString(benchmark::State& state) {
    const memdata::SystemResources system;
    for (auto _ : state) {
        const memdata::OwnedString line(StrPrintf(nullptr, kFORMAT, kNAME, 31, 24, kPLACE, 0x80001000U));
        benchmark::DoNotOptimize(line.get());
    }
}
BENCHMARK(FormatLineVariadicIntoManagedString);

// One long text argument: bytes a second, beside memcpy.
void CopyTextWithMemcpy(benchmark::State& state) {
    const std::string text(static_cast<size_t>(state.range(0)), 'x');
    std::string copy(text.size(), '\0');
    for (auto _ : state) {
        std::memcpy(copy.data(), text.data(), text.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(CopyTextWithMemcpy)->Arg(1 << 20);

void FormatLongText(benchmark::State& state) {
    const std::string text(static_cast<size_t>(state.range(0)), 'x');
    for (auto _ : state) {
        std::string line = memdata::formatted("%s\n", text);
        benchmark::DoNotOptimize(line);
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(FormatLongText)->Arg(1 << 20);

void StringMadeAndReleased(benchmark::State& state) {
    const memdata::SystemResources system;
    for (auto _ : state) {
        const memdata::OwnedString copy(StrDup(kNAME));
        benchmark::DoNotOptimize(copy.get());
    }
}
BENCHMARK(StringMadeAndReleased);

void NumberAsString(benchmark::State& state) {
    const memdata::SystemResources system;
    for (auto _ : state) {
        const memdata::OwnedString text(NumToStr(-1234567, 10, nullptr));
        benchmark::DoNotOptimize(text.get());
    }
}
BENCHMARK(NumberAsString);

} // namespace

// MemUtils_bench.cpp - text bytes a second of data files: MEM, MIF and COE, values of 8, 32 and 64 bits.
//
// The mark is 150 MB of text a second for MEM and MIF, and the same speed for a short text as for a long one. The text
// is in memory: what is measured is the reader, not the disk. Times are processor times.
// SPDX-License-Identifier: Apache-2.0
#include "MemUtils/MemUtils.h"
#include "SystemUtils/SystemUtils.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

constexpr size_t kSHORT_TEXT = size_t{1} << 20;
constexpr size_t kLONG_TEXT = size_t{32} << 20;
constexpr unsigned kVALUES_A_LINE = 8;

struct TextShape {
    const char* head;
    const char* separator; // between values of a line
    const char* lineEnd;   // between lines
    const char* tail;
    unsigned radix;
    const char* name; // of the file
};

constexpr TextShape kMEM{"@00000000\n", " ", "\n", "\n", 16, "a.mem"};
constexpr TextShape kMIF{"@00000000\n", "\n", "\n", "\n", 2, "a.mif"};
constexpr TextShape kCOE{
    "memory_initialization_radix=16;\nmemory_initialization_vector=\n", ", ", ",\n", ";\n", 16, "a.coe"};
// Each line with its address, as simulators' dumps have them.
constexpr TextShape kADDRESSED{"", " ", "\n@00001000 ", "\n", 16, "b.mem"};

std::string makeText(const TextShape& shape, unsigned valueBits, size_t byteCount) {
    const unsigned digits = shape.radix == 2 ? valueBits : valueBits / 4;
    std::string text = shape.head;
    text.reserve(byteCount + 100);
    u32 random = 1;
    for (size_t i = 0;; ++i) {
        for (unsigned d = 0; d < digits; ++d) {
            random = random * 1664525 + 1013904223;
            text += "0123456789ABCDEF"[(random >> 24) % shape.radix];
        }
        if (text.size() >= byteCount) break;
        text += i % kVALUES_A_LINE == kVALUES_A_LINE - 1 ? shape.lineEnd : shape.separator;
    }
    return text + shape.tail;
}

void read(benchmark::State& state, const TextShape& shape) {
    const std::string text =
        makeText(shape, static_cast<unsigned>(state.range(0)), static_cast<size_t>(state.range(1)));
    const memdata::SystemResources resources;
    fileSpecType* spec = CreateFileSpecWithFileData(shape.name, text.data(), text.size());
    for (auto _ : state) {
        LNF_MEMDataFile file(shape.radix);
        if (file.OpenDataFile(spec, nullptr, 1) != 0) state.SkipWithError("the text was refused");
        benchmark::DoNotOptimize(file.GetProgramSectionCount());
    }
    DeleteFileSpec(&spec);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"bits", "bytes"})->Unit(benchmark::kMillisecond);
    for (const int64_t bits : {8, 32, 64})
        for (const size_t bytes : {kSHORT_TEXT, kLONG_TEXT}) benchmark->Args({bits, static_cast<int64_t>(bytes)});
}

BENCHMARK_CAPTURE(read, mem, kMEM)->Apply(sizes);
BENCHMARK_CAPTURE(read, mif, kMIF)->Apply(sizes);
BENCHMARK_CAPTURE(read, coe, kCOE)->Apply(sizes);
BENCHMARK_CAPTURE(read, addressed_lines, kADDRESSED)->Apply(sizes);

} // namespace

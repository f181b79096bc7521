// BitFileUtils_bench.cpp - the CRC of a configuration stream, beside the processor's CRC instruction alone.
// SPDX-License-Identifier: Apache-2.0
//
// A word with its register's address is a unit of 37 bits. "of_instruction" is the speed's share of the bare instruction
// over as many bits in one string: what packing the units costs. It is missing where the processor has no such
// instruction.
#include "BitFileUtils/stream_crc.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <ctime>
#include <vector>

namespace {

constexpr u64 kUNIT_BITS = 37;

// Processor time, so that other work on the machine does not count.
double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

#ifdef __x86_64__
bool hasInstruction() {
    return __builtin_cpu_supports("sse4.2") != 0;
}

__attribute__((target("sse4.2"))) u64 bareInstruction(const u8* bytes, u64 count) {
    u64 crc = 0;
    for (u64 at = 0; at + 8 <= count; at += 8) {
        u64 piece = 0;
        std::memcpy(&piece, bytes + at, 8);
        crc = __builtin_ia32_crc32di(crc, piece);
    }
    return crc;
}
#else
bool hasInstruction() {
    return false;
}

u64 bareInstruction(const u8*, u64) {
    return 0;
}
#endif

template<auto crcOf>
void crcOfStream(benchmark::State& state) {
    const u64 byteCount = static_cast<u64>(state.range(0)) << 20;
    std::vector<u8> words(byteCount);
    for (u64 i = 0; i < byteCount; ++i) words[i] = static_cast<u8>(i * 131 >> 3);
    const std::vector<u8> bits(byteCount / 32 * kUNIT_BITS);
    double ours = 0;
    double bare = 0;
    for (auto _ : state) {
        const double start = processorSeconds();
        benchmark::DoNotOptimize(crcOf(0, 2, words.data(), byteCount / 4));
        const double between = processorSeconds();
        if (hasInstruction()) benchmark::DoNotOptimize(bareInstruction(bits.data(), bits.size()));
        bare += processorSeconds() - between;
        ours += between - start;
        state.SetIterationTime(between - start);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<i64>(byteCount));
    if (hasInstruction()) state.counters["of_instruction"] = bare / ours;
}
BENCHMARK(crcOfStream<memdata::crcOfWords>)->Name("crc/packed")->Arg(16)->UseManualTime();
BENCHMARK(crcOfStream<memdata::crcOfWordsByTable>)->Name("crc/by table")->Arg(16)->UseManualTime();

} // namespace

// BRAMDecodeUtils_bench.cpp - memories into configuration frames and back, against the bit-by-bit form.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/decode_tables.h"
#include "BRAMDecodeUtils/frame_codec.h"
#include "DeviceTableUtils/device_lookup.h"
#include "DeviceTableUtils/memory_types.h"

#include <benchmark/benchmark.h>
#include <random>
#include <vector>

namespace {

using Codec = decltype(EncodeBRAM);

// Image bytes a second of one 36-kbit memory, in the frames of a mid-size device.
struct Memory {
    const TarselDeviceType* device = get_device_record_by_name("tq7b100");
    const MEMORYType* type = &T6RAMB36_BRAM;
    std::vector<u8> frames, data, parity;

    Memory() : frames(memdata::codecFrameBytes(device, type)), data(type->dataBits / 8), parity(type->parityBits / 8) {
        std::mt19937 random(1);
        for (u8& byte : data) byte = static_cast<u8>(random());
    }
    void count(benchmark::State& state) const {
        state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(data.size() + parity.size()));
    }
};

template<Codec* encode>
void encodeMemory(benchmark::State& state) {
    Memory memory;
    for (auto _ : state) {
        encode(memory.device, memory.type, tarsel5_36DecodeTables, 36, memory.frames.data(), memory.data.data(),
            memory.parity.data());
        benchmark::ClobberMemory();
    }
    memory.count(state);
}
BENCHMARK(encodeMemory<EncodeBRAM>)->Name("encode a RAMB36")->Unit(benchmark::kMicrosecond);
BENCHMARK(encodeMemory<memdata::encodeBitByBit>)->Name("encode a RAMB36, bit by bit")->Unit(benchmark::kMicrosecond);

template<decltype(DecodeBRAM)* decode>
void decodeMemory(benchmark::State& state) {
    Memory memory;
    for (auto _ : state) {
        decode(memory.device, memory.type, tarsel5_36DecodeTables, 36, memory.frames.data(), memory.data.data(),
            memory.parity.data());
        benchmark::ClobberMemory();
    }
    memory.count(state);
}
BENCHMARK(decodeMemory<DecodeBRAM>)->Name("decode a RAMB36")->Unit(benchmark::kMicrosecond);
BENCHMARK(decodeMemory<memdata::decodeBitByBit>)->Name("decode a RAMB36, bit by bit")->Unit(benchmark::kMicrosecond);

} // namespace

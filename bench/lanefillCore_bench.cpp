// lanefillCore_bench.cpp - payload bytes a second through the lanes, against memcpy in the same run.
//
// The counter "of_memcpy" is the share of memcpy's speed over as many bytes: 0.125 is the mark for plain lanes,
// 0.05 for lanes with check bits.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/records.h"
#include "SystemUtils/lifetime.h"
#include "lanefillCore/lanes/bus_blocks.h"
#include "lanefillCore/lanes/ecc_codes.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <ctime>
#include <list>
#include <numeric>
#include <vector>

namespace {

constexpr u64 kMIB = 1 << 20;

struct Shape {
    unsigned laneBits;
    u64 laneCount;
    u32 eccType;
    u32 ordering;
    unsigned parityBits;
};

// One block as long as the payload.
class Space {
public:
    Space(const Shape& shape, u64 payloadBytes) : memory_{&type_, nullptr, nullptr, 0, nullptr} {
        const u64 words = payloadBytes / (shape.laneCount * shape.laneBits / 8);
        type_.dataBits = words * shape.laneBits;
        type_.parityBits = static_cast<u32>(words * shape.parityBits);
        type_.hasParityWidths = shape.parityBits > 0;
        for (u64 i = 0; i < shape.laneCount; ++i)
            lanePointers_.push_back(addLane(shape, shape.laneBits, shape.parityBits));
        block_.laneCount = shape.laneCount;
        block_.lanes = lanePointers_.data();
        if (shape.eccType != kECC_NONE) {
            eccPointers_.push_back(addLane(shape, 8, 0));
            block_.eccType = shape.eccType;
            block_.eccLaneCount = 1;
            block_.eccBusWidth = 8;
            block_.eccLanes = eccPointers_.data();
        }
        range_.laneWidth = shape.laneBits;
        range_.busBlocks = &blockPointer_;
        range_.busBlockCount = 1;
        range_.memory = &memory_;
        range_.blockByteSize = payloadBytes;
        range_.endAddress = block_.endAddress = space_.endAddress = payloadBytes - 1;
        space_.ranges = &range_;
    }
    ~Space() {
        for (auto& lane : lanes_) {
            memdata::deleteChunkAccess(lane.dataChunks);
            memdata::deleteChunkAccess(lane.parityChunks);
            delete_transform_range_list(&lane.transformRanges);
        }
    }
    Space& operator=(Space&&) = delete; // neither copied nor moved

    AddressSpaceDefType* get() { return &space_; }

private:
    BitLaneGridElemType* addLane(const Shape& shape, unsigned width, unsigned parityWidth) {
        BitLaneType& lane = lanes_.emplace_back();
        lane.memory = &memory_;
        lane.dataSliver = buffers_.emplace_back(type_.dataBits / 8).data();
        lane.paritySliver = buffers_.emplace_back(type_.parityBits / 8 + 1).data();
        BitLaneGridElemType& element = elements_.emplace_back();
        element.lane = &lane;
        element.laneWidth = width + parityWidth;
        element.parityWidth = parityWidth;
        element.bitOrdering = shape.ordering;
        return &element;
    }

    MEMORYType type_{};
    MEMORYLocType memory_;
    AddressSpaceDefType space_{};
    AddressRangeDefType range_{};
    BusBlockType block_{};
    BusBlockType* blockPointer_ = &block_;
    std::vector<BitLaneGridElemType*> lanePointers_;
    std::vector<BitLaneGridElemType*> eccPointers_;
    std::list<BitLaneType> lanes_;
    std::list<BitLaneGridElemType> elements_;
    std::list<std::vector<u8>> buffers_;
};

// Processor time, so that other work on the machine does not count.
double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double secondsOf(const auto& work) {
    const double start = processorSeconds();
    work();
    return processorSeconds() - start;
}

// Each round times the transform and a memcpy of the same payload one after the other.
void transformAgainstMemcpy(benchmark::State& state, const Shape& shape, memdata::TransformPath path) {
    const memdata::SystemResources resources;
    const u64 bytes = static_cast<u64>(state.range(0)) * kMIB;
    const u64 busBytes = shape.laneBits * shape.laneCount / 8;
    const u64 payload = bytes / busBytes * busBytes;
    std::vector<u8> data(payload);
    std::iota(data.begin(), data.end(), u8{0});
    std::vector<u8> copy(payload);
    Space space(shape, payload);
    double transformSeconds = 0;
    double copySeconds = 0;
    for (auto _ : state) {
        transformSeconds += secondsOf([&] {
            memdata::transformSegment("bench.elf", space.get(), 0, data.data(), payload, path);
            benchmark::ClobberMemory();
        });
        copySeconds += secondsOf([&] {
            std::memcpy(copy.data(), data.data(), payload);
            benchmark::ClobberMemory();
        });
    }
    const double total = static_cast<double>(payload) * static_cast<double>(state.iterations());
    state.counters["MB/s"] = total / transformSeconds / 1e6;
    state.counters["of_memcpy"] = copySeconds / transformSeconds;
}

constexpr u32 kDOWN = kBIT_ORDERING_DESCENDING;
using memdata::TransformPath;

#define TRANSFORM_BENCH(name, path, ...)                                                                               \
    BENCHMARK_CAPTURE(transformAgainstMemcpy, name, Shape{__VA_ARGS__}, path)                                          \
        ->Arg(1)                                                                                                       \
        ->Arg(8)                                                                                                       \
        ->Arg(64)                                                                                                      \
        ->Unit(benchmark::kMillisecond)

TRANSFORM_BENCH(4x8_of_32, TransformPath::kBY_SHAPE, 8, 4, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(2x16_of_32, TransformPath::kBY_SHAPE, 16, 2, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(8x8_of_64, TransformPath::kBY_SHAPE, 8, 8, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(4x8_mirrored, TransformPath::kBY_SHAPE, 8, 4, kECC_NONE, kBIT_ORDERING_ASCENDING, 0);
TRANSFORM_BENCH(8x8_hsiao_64_8, TransformPath::kBY_SHAPE, 8, 8, kECC_HSIAO64_8, kDOWN, 0);
TRANSFORM_BENCH(4x9_parity, TransformPath::kBY_SHAPE, 8, 4, kECC_NONE, kDOWN, 1);
TRANSFORM_BENCH(8x4_narrow, TransformPath::kBY_SHAPE, 4, 8, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(32x1_narrow, TransformPath::kBY_SHAPE, 1, 32, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(16x2_narrow, TransformPath::kBY_SHAPE, 2, 16, kECC_NONE, kDOWN, 0);

// The reference.
#define PLAIN_BENCH(name, ...)                                                                                         \
    BENCHMARK_CAPTURE(transformAgainstMemcpy, name, Shape{__VA_ARGS__}, TransformPath::kPLAIN)                         \
        ->Arg(1)                                                                                                       \
        ->Arg(8)                                                                                                       \
        ->Unit(benchmark::kMillisecond)

PLAIN_BENCH(plain_4x12, 12, 4, kECC_NONE, kDOWN, 0);
PLAIN_BENCH(plain_4x8, 8, 4, kECC_NONE, kDOWN, 0);
PLAIN_BENCH(plain_8x4, 4, 8, kECC_NONE, kDOWN, 0);
PLAIN_BENCH(plain_32x1, 1, 32, kECC_NONE, kDOWN, 0);

} // namespace

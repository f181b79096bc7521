// lanefillCore_bench.cpp - payload bytes a second through the lanes, against memcpy in the same run.
//
// The counter "of_memcpy" is the share of memcpy's speed over as many bytes, and "mark" what it is to reach where there
// is a mark; for odd shapes the mark is in megabytes a second ("mark_MB/s"). The rows of overSizes hold 64 MB against
// 1 MB, and beside the lanes a memcpy and a loop that does nothing but deal its source out to as many lanes: what
// these lose with size, the machine's memory takes, and no arrangement of the transform gets it back.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/records.h"
#include "SystemUtils/lifetime.h"
#include "lanefillCore/lanes/bus_blocks.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/lane_positions.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <list>
#include <numeric>
#include <span>
#include <vector>

namespace {

constexpr u64 kMIB = 1 << 20;

struct Shape {
    unsigned laneBits;
    u64 laneCount;
    u32 eccType;
    u32 ordering;
    unsigned parityBits;
    unsigned lastLaneBits = 0; // of the last lane where it differs, else 0

    unsigned lastBits() const { return lastLaneBits == 0 ? laneBits : lastLaneBits; }
    u64 busBits() const { return laneBits * (laneCount - 1) + lastBits(); }
};

// One block as long as the payload.
class Space {
public:
    Space(const Shape& shape, u64 payloadBytes) : words_(payloadBytes * 8 / shape.busBits()) {
        for (u64 i = 0; i < shape.laneCount; ++i)
            lanePointers_.push_back(
                addLane(shape, i + 1 < shape.laneCount ? shape.laneBits : shape.lastBits(), shape.parityBits));
        block_.laneCount = shape.laneCount;
        block_.lanes = lanePointers_.data();
        if (shape.eccType != kECC_NONE) {
            eccPointers_.push_back(addLane(shape, 8, 0));
            block_.eccType = shape.eccType;
            block_.eccLaneCount = 1;
            block_.eccBusWidth = 8;
            block_.eccLanes = eccPointers_.data();
        }
        range_.laneWidth =
            std::min(shape.laneBits, shape.lastBits()); // so that the block has steps for all of the payload
        range_.busBlocks = &blockPointer_;
        range_.busBlockCount = 1;
        range_.memory = &memories_.front();
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
        MEMORYType& type = types_.emplace_back(); // as large as the lane
        type.dataBits = words_ * memdata::laneSlotBits(width);
        type.parityBits = static_cast<u32>(words_ * parityWidth);
        type.hasParityWidths = parityWidth > 0;
        BitLaneType& lane = lanes_.emplace_back();
        lane.memory = &memories_.emplace_back(MEMORYLocType{&type, nullptr, nullptr, 0, nullptr});
        lane.dataSliver = buffers_.emplace_back(type.dataBits / 8 + 1).data();
        lane.paritySliver = buffers_.emplace_back(type.parityBits / 8 + 1).data();
        BitLaneGridElemType& element = elements_.emplace_back();
        element.lane = &lane;
        element.laneWidth = width + parityWidth;
        element.parityWidth = parityWidth;
        element.bitOrdering = shape.ordering;
        return &element;
    }

    u64 words_; // of the bus
    std::list<MEMORYType> types_;
    std::list<MEMORYLocType> memories_;
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

double secondsOf(auto&& work) {
    const double start = processorSeconds();
    work();
    return processorSeconds() - start;
}

// Whole bus words of about so many bytes, and the lanes for them.
class TransformWork {
public:
    TransformWork(const Shape& shape, u64 byteCount, memdata::TransformPath path)
        : data_(byteCount / shape.busBits() * shape.busBits()), space_(shape, data_.size()), path_(path) {
        std::iota(data_.begin(), data_.end(), u8{0});
    }
    u64 byteCount() const { return data_.size(); }
    std::span<const u8> data() const { return data_; }
    void operator()() {
        memdata::transformSegment("bench.elf", space_.get(), 0, data_.data(), data_.size(), path_);
        benchmark::ClobberMemory();
    }

private:
    std::vector<u8> data_;
    Space space_;
    memdata::TransformPath path_;
};

class CopyWork {
public:
    explicit CopyWork(u64 byteCount) : own_(byteCount, 1), data_(own_), copy_(byteCount) {}
    explicit CopyWork(std::span<const u8> data) : data_(data), copy_(data.size()) {} // as warm as its owner leaves it
    CopyWork& operator=(CopyWork&&) = delete;                                        // neither copied nor moved

    u64 byteCount() const { return data_.size(); }
    void operator()() {
        std::memcpy(copy_.data(), data_.data(), data_.size());
        benchmark::ClobberMemory();
    }

private:
    std::vector<u8> own_;
    std::span<const u8> data_;
    std::vector<u8> copy_;
};

// Deals a source out to lanes, a line of the cache to each in turn and nothing rearranged: the least that a loop with
// so many lanes can do.
class DealWork {
public:
    DealWork(u64 laneCount, u64 byteCount) : data_(byteCount, 1), lanes_(laneCount) {
        for (auto& lane : lanes_) lane.resize(byteCount / laneCount);
    }
    u64 byteCount() const { return data_.size(); }
    void operator()() {
        const u8* source = data_.data();
        for (u64 at = 0; at < lanes_[0].size(); at += kLINE_BYTES)
            for (auto& lane : lanes_) {
                std::memcpy(lane.data() + at, source, kLINE_BYTES);
                source += kLINE_BYTES;
            }
        benchmark::ClobberMemory();
    }

private:
    static constexpr u64 kLINE_BYTES = 64;

    std::vector<u8> data_;
    std::vector<std::vector<u8>> lanes_;
};

// What a row is to reach.
struct Mark {
    double ofMemcpy = 0;
    double megabytes = 0; // a second
};

// Each round times the transform and a memcpy of the same payload one after the other.
void transformAgainstMemcpy(
    benchmark::State& state, const Shape& shape, memdata::TransformPath path, const Mark& mark) {
    const memdata::SystemResources resources;
    TransformWork transform(shape, static_cast<u64>(state.range(0)) * kMIB, path);
    CopyWork copy(transform.data());
    double transformSeconds = 0;
    double copySeconds = 0;
    for (auto _ : state) {
        transformSeconds += secondsOf(transform);
        copySeconds += secondsOf(copy);
    }
    const double total = static_cast<double>(transform.byteCount()) * static_cast<double>(state.iterations());
    state.counters["MB/s"] = total / transformSeconds / 1e6;
    state.counters["of_memcpy"] = copySeconds / transformSeconds;
    if (mark.ofMemcpy > 0) state.counters["mark"] = mark.ofMemcpy;
    if (mark.megabytes > 0) state.counters["mark_MB/s"] = mark.megabytes;
}

// Each round does 1 MB 64 times and 64 MB once. "of_1MB" is the speed over 64 MB as a share of that over 1 MB, and
// "more_ns_a_KB" the time that each kilobyte costs more.
void overSizes(benchmark::State& state, auto& small, auto& large) {
    constexpr u64 kROUNDS = 64;
    double smallSeconds = 0;
    double largeSeconds = 0;
    for (auto _ : state) {
        smallSeconds += secondsOf([&] {
            for (u64 round = 0; round < kROUNDS; ++round) small();
        });
        largeSeconds += secondsOf(large);
    }
    const auto rounds = static_cast<double>(state.iterations());
    const double smallTime = smallSeconds / static_cast<double>(small.byteCount() * kROUNDS) / rounds; // a byte
    const double largeTime = largeSeconds / static_cast<double>(large.byteCount()) / rounds;
    state.counters["MB/s_1"] = 1e-6 / smallTime;
    state.counters["MB/s_64"] = 1e-6 / largeTime;
    state.counters["of_1MB"] = smallTime / largeTime;
    state.counters["more_ns_a_KB"] = (largeTime - smallTime) * 1024e9;
}

void transformOverSizes(benchmark::State& state, const Shape& shape) {
    const memdata::SystemResources resources;
    TransformWork small(shape, kMIB, memdata::TransformPath::kBY_SHAPE);
    TransformWork large(shape, 64 * kMIB, memdata::TransformPath::kBY_SHAPE);
    overSizes(state, small, large);
}

void copyOverSizes(benchmark::State& state) {
    CopyWork small(kMIB);
    CopyWork large(64 * kMIB);
    overSizes(state, small, large);
}

void dealOverSizes(benchmark::State& state) {
    DealWork small(static_cast<u64>(state.range(0)), kMIB);
    DealWork large(static_cast<u64>(state.range(0)), 64 * kMIB);
    overSizes(state, small, large);
}

constexpr Mark kPLAIN_LANES{0.125, 0};
constexpr Mark kCHECKED_LANES{0.05, 0};
constexpr Mark kODD_SHAPE{0, 20};
constexpr u32 kDOWN = kBIT_ORDERING_DESCENDING;
using memdata::TransformPath;

#define TRANSFORM_BENCH(name, mark, ...)                                                                               \
    BENCHMARK_CAPTURE(transformAgainstMemcpy, name, Shape{__VA_ARGS__}, TransformPath::kBY_SHAPE, mark)                \
        ->Arg(1)                                                                                                       \
        ->Arg(8)                                                                                                       \
        ->Arg(64)                                                                                                      \
        ->Unit(benchmark::kMillisecond)

TRANSFORM_BENCH(4x8_of_32, kPLAIN_LANES, 8, 4, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(2x16_of_32, kPLAIN_LANES, 16, 2, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(8x8_of_64, kPLAIN_LANES, 8, 8, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(4x8_mirrored, kPLAIN_LANES, 8, 4, kECC_NONE, kBIT_ORDERING_ASCENDING, 0);
TRANSFORM_BENCH(8x8_hsiao_64_8, kCHECKED_LANES, 8, 8, kECC_HSIAO64_8, kDOWN, 0);
TRANSFORM_BENCH(4x9_parity, kODD_SHAPE, 8, 4, kECC_NONE, kDOWN, 1);
TRANSFORM_BENCH(8x4_narrow, kODD_SHAPE, 4, 8, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(32x1_narrow, kODD_SHAPE, 1, 32, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(16x2_narrow, kODD_SHAPE, 2, 16, kECC_NONE, kDOWN, 0);
TRANSFORM_BENCH(32x1_checked, kODD_SHAPE, 1, 32, kECC_H32_7, kDOWN, 0);
TRANSFORM_BENCH(31x1_and_9, kODD_SHAPE, 1, 32, kECC_NONE, kDOWN, 0, 9);
TRANSFORM_BENCH(3x12_and_4, kODD_SHAPE, 12, 4, kECC_NONE, kDOWN, 0, 4);

// The plain form, word by word: what the ends of a segment go by, and parity bits that cross bytes.
#define PLAIN_BENCH(name, mark, ...)                                                                                   \
    BENCHMARK_CAPTURE(transformAgainstMemcpy, name, Shape{__VA_ARGS__}, TransformPath::kPLAIN, mark)                   \
        ->Arg(1)                                                                                                       \
        ->Arg(8)                                                                                                       \
        ->Unit(benchmark::kMillisecond)

PLAIN_BENCH(plain_4x12, kODD_SHAPE, 12, 4, kECC_NONE, kDOWN, 0);
PLAIN_BENCH(plain_4x8, kODD_SHAPE, 8, 4, kECC_NONE, kDOWN, 0);
PLAIN_BENCH(plain_8x4, kODD_SHAPE, 4, 8, kECC_NONE, kDOWN, 0);
PLAIN_BENCH(plain_32x1, kODD_SHAPE, 1, 32, kECC_NONE, kDOWN, 0);

#define SIZES_BENCH(name, ...)                                                                                         \
    BENCHMARK_CAPTURE(transformOverSizes, name, Shape{__VA_ARGS__})->Unit(benchmark::kMillisecond)

BENCHMARK(copyOverSizes)->Unit(benchmark::kMillisecond);
BENCHMARK(dealOverSizes)->Arg(2)->Arg(4)->Arg(8)->Unit(benchmark::kMillisecond);
SIZES_BENCH(2x16_of_32, 16, 2, kECC_NONE, kDOWN, 0);
SIZES_BENCH(4x8_of_32, 8, 4, kECC_NONE, kDOWN, 0);
SIZES_BENCH(8x8_of_64, 8, 8, kECC_NONE, kDOWN, 0);
SIZES_BENCH(8x8_hsiao_64_8, 8, 8, kECC_HSIAO64_8, kDOWN, 0);

} // namespace

// mem_writer_bench.cpp - payload bytes a second into MEM files, against a bare write of as much text in the same run.
//
// The files stand in a folder of their own in the temporary directory. "of_write" is the speed's share of writing as
// many bytes to as many new files, 256 KiB at a time: 1 is all that the kernel takes.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/records.h"
#include "FileUtils/opening.h"
#include "SystemUtils/lifetime.h"
#include "lanefillCore/lane_records.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr u64 kMIB = 1 << 20;
constexpr u64 kWRITE_BYTES = 1 << 18;

struct Shape {
    u64 laneCount;
    unsigned laneBits; // without parity
    unsigned parityBits;
};

// A lane whose memory is full.
struct FullLane {
    FullLane(const Shape& shape, u64 bytes)
        : data(bytes),
          parity(bytes * 8 / shape.laneBits * shape.parityBits / 8 + 1), memory{&type, nullptr, nullptr, 0, nullptr} {
        for (u64 i = 0; i < bytes; ++i) data[i] = static_cast<u8>(i * 7 + i / 255);
        type.dataBits = bytes * 8;
        type.parityBits = static_cast<u32>(bytes * 8 / shape.laneBits * shape.parityBits);
        type.hasParityWidths = shape.parityBits > 0;
        range.endBit = bytes * 8;
        lane.memory = &memory;
        lane.dataSliver = data.data();
        lane.paritySliver = parity.data();
        lane.transformRanges = &range;
        element.lane = &lane;
        element.laneWidth = shape.laneBits + shape.parityBits;
        element.parityWidth = shape.parityBits;
    }
    FullLane& operator=(FullLane&&) = delete; // neither copied nor moved

    std::vector<u8> data;
    std::vector<u8> parity;
    MEMORYType type{};
    MEMORYLocType memory;
    TransformRangeType range{};
    BitLaneType lane{};
    BitLaneGridElemType element{};
};

class Folder {
public:
    Folder() : path_(std::filesystem::temp_directory_path() / ("mem_writer_bench." + std::to_string(getpid()))) {
        std::filesystem::create_directory(path_);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder& operator=(Folder&&) = delete; // neither copied nor moved

    std::string file(const char* kind, u64 index) const { return path_ / (kind + std::to_string(index) + ".mem"); }
    // Removes what stands there and gives its bytes.
    u64 clear() const {
        u64 bytes = 0;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            bytes += entry.file_size();
            std::filesystem::remove(entry);
        }
        return bytes;
    }

private:
    std::filesystem::path path_;
};

double secondsOf(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

bool writeLanes(const std::vector<std::string>& names, const FullLane& lane) {
    for (const std::string& name : names) {
        fileIODescriptor* file = nullptr;
        if (Open_File(name.c_str(), kTEXT_WRITE, &file) != 0) return false;
        if (memdata::outputLaneRecords(file, &lane.element, false) != 0 || Close_File(&file) != 0) return false;
    }
    return true;
}

bool writeBare(const std::vector<std::string>& names, const std::vector<char>& text, u64 bytesEach) {
    for (const std::string& name : names) {
        const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        if (file < 0) return false;
        for (u64 left = bytesEach; left > 0;) {
            const ssize_t put = ::write(file, text.data(), std::min(left, kWRITE_BYTES));
            if (put <= 0) return false;
            left -= static_cast<u64>(put);
        }
        close(file);
    }
    return true;
}

void writeAgainstBare(benchmark::State& state, const Shape& shape) {
    const memdata::SystemResources resources;
    const Folder folder;
    const u64 payload = static_cast<u64>(state.range(0)) * kMIB;
    const FullLane lane(shape, payload / shape.laneCount);
    const std::vector<char> text(kWRITE_BYTES, '0');
    std::vector<std::string> names;
    for (u64 i = 0; i < shape.laneCount; ++i) names.push_back(folder.file("lane", i));

    double laneSeconds = 0;
    double bareSeconds = 0;
    u64 textBytes = 0;
    for (auto _ : state) {
        bool done = true;
        laneSeconds += secondsOf([&] { done = writeLanes(names, lane); });
        textBytes = folder.clear();
        bareSeconds += secondsOf([&] { done = done && writeBare(names, text, textBytes / shape.laneCount); });
        folder.clear();
        if (!done) return state.SkipWithError("a file could not be written");
    }
    const double total = static_cast<double>(payload) * static_cast<double>(state.iterations());
    state.counters["MB/s"] = total / laneSeconds / 1e6;
    state.counters["text_per_byte"] = static_cast<double>(textBytes) / static_cast<double>(payload);
    state.counters["of_write"] = bareSeconds / laneSeconds;
}

// The text alone: a device takes it without a copy.
void writeToNowhere(benchmark::State& state, const Shape& shape) {
    const memdata::SystemResources resources;
    const u64 payload = static_cast<u64>(state.range(0)) * kMIB;
    const FullLane lane(shape, payload / shape.laneCount);
    const std::vector<std::string> names(shape.laneCount, "/dev/null");
    double seconds = 0;
    for (auto _ : state) seconds += secondsOf([&] { benchmark::DoNotOptimize(writeLanes(names, lane)); });
    state.counters["MB/s"] = static_cast<double>(payload) * static_cast<double>(state.iterations()) / seconds / 1e6;
}

#define WRITER_BENCH(name, ...)                                                                                        \
    BENCHMARK_CAPTURE(writeAgainstBare, name, Shape{__VA_ARGS__})->Arg(8)->Arg(64)->Unit(benchmark::kMillisecond);     \
    BENCHMARK_CAPTURE(writeToNowhere, name, Shape{__VA_ARGS__})->Arg(8)->Unit(benchmark::kMillisecond)

WRITER_BENCH(4x8, 4, 8, 0);
WRITER_BENCH(2x16, 2, 16, 0);
WRITER_BENCH(1x32, 1, 32, 0);
WRITER_BENCH(8x4, 8, 4, 0);
WRITER_BENCH(4x9_parity, 4, 8, 1);
WRITER_BENCH(2x18_parity, 2, 16, 2);
WRITER_BENCH(1x36_parity, 1, 32, 4);

} // namespace

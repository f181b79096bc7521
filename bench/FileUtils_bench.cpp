// FileUtils_bench.cpp - lines and blocks of files against the plain loops and the C library.
//
// The counter "ratio" is the speed of ours over that of the peer, both taken in turn in one run: 1 is as fast, 2 twice
// as fast. What the figures must hold: lines of one buffer at 0.5 of memchr or more, blocks at 0.7 of fwrite or more.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/FileUtils.h"
#include "SystemUtils/SystemUtils.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace memdata;

constexpr size_t kTEXT_BYTES = 16u << 20;
constexpr u32 kTEXT_READ = 0x12;
constexpr u32 kTEXT_READ_WHOLE = 0x112;
constexpr u32 kBINARY_WRITE = 0x23;

// Large blocks come fresh from the system, as in a run that opens a file once, and not from an earlier iteration.
const bool gLargeBlocksAreFresh = mallopt(M_MMAP_THRESHOLD, 128 << 10) == 1;

class Folder {
public:
    Folder() {
        if (mkdtemp(pattern_.data()) == nullptr) throw std::runtime_error("no folder: " + pattern_);
    }
    ~Folder() { std::filesystem::remove_all(pattern_); }
    Folder& operator=(Folder&&) = delete; // neither copied nor moved
    std::string file(const char* name) const { return pattern_ + "/" + name; }

private:
    std::string pattern_ = (std::filesystem::temp_directory_path() / "memdata-bench-XXXXXX").string();
};

// Lines of half to one and a half of a mean length.
std::string makeText(size_t meanLength, const char* lineEnd) {
    std::string text;
    u32 seed = 1;
    while (text.size() < kTEXT_BYTES) {
        seed = seed * 1664525 + 1013904223;
        text.append(meanLength / 2 + (seed >> 8) % (meanLength + 1), 'x').append(lineEnd);
    }
    return text;
}

// Time of this thread on a processor, the system's part with it: what others do on the machine is left out.
double seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template<class Action>
double secondsOf(const Action& action) {
    const double start = seconds();
    action();
    return seconds() - start;
}

// Times ours and the peer in turn; the iteration's time is ours.
template<class Ours, class Peer>
void compare(benchmark::State& state, size_t bytes, const Ours& ours, const Peer& peer) {
    double oursTotal = 0, peerTotal = 0;
    for ([[maybe_unused]] auto step : state) {
        peerTotal += secondsOf(peer);
        const double time = secondsOf(ours);
        oursTotal += time;
        state.SetIterationTime(time);
    }
    state.counters["ratio"] = peerTotal / oursTotal;
    state.SetBytesProcessed(state.iterations() * static_cast<i64>(bytes));
}

size_t countByMemchr(const char* text, size_t size) {
    size_t lines = 0;
    const char* const end = text + size;
    while (const void* found = std::memchr(text, '\n', static_cast<size_t>(end - text))) {
        text = static_cast<const char*>(found) + 1;
        ++lines;
    }
    return lines;
}

void linesOfOneBuffer(benchmark::State& state, const char* lineEnd) {
    const SystemResources resources;
    const Folder folder;
    const std::string text = makeText(static_cast<size_t>(state.range(0)), lineEnd);
    std::ofstream(folder.file("text")) << text;
    fileIODescriptor* file = nullptr;
    if (Open_File(folder.file("text").c_str(), kTEXT_READ_WHOLE, &file) != 0) return state.SkipWithError("no file");
    const size_t lines = countByMemchr(text.data(), text.size());
    compare(
        state, text.size(),
        [&] {
            SetFilePosition(file, 0);
            size_t count = 0;
            while (GetNextTextLine(file) != nullptr) ++count;
            if (count != lines) std::abort();
        },
        [&] { benchmark::DoNotOptimize(countByMemchr(GetFileStorageBase(file), text.size())); });
    Close_File(&file);
}
BENCHMARK_CAPTURE(linesOfOneBuffer, over_memchr, "\n")
    ->Arg(8)
    ->Arg(40)
    ->Arg(200)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(linesOfOneBuffer, cr_lf_over_memchr, "\r\n")->Arg(40)->UseManualTime()->Unit(benchmark::kMillisecond);

void linesThroughTheWindow(benchmark::State& state) {
    const SystemResources resources;
    const Folder folder;
    const std::string name = folder.file("text");
    const std::string text = makeText(40, "\n");
    std::ofstream(name) << text;
    compare(
        state, text.size(),
        [&] {
            fileIODescriptor* file = nullptr;
            Open_File(name.c_str(), kTEXT_READ, &file);
            while (GetNextTextLine(file) != nullptr) {
            }
            Close_File(&file);
        },
        [&] {
            FILE* const file = std::fopen(name.c_str(), "rb");
            char line[200];
            while (std::fgets(line, sizeof line, file) != nullptr) {
            }
            std::fclose(file);
        });
}
BENCHMARK(linesThroughTheWindow)
    ->Name("linesThroughTheWindow/over_fgets")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// The whole file in one buffer, against one read() into fresh memory.
void openOneBuffer(benchmark::State& state) {
    const SystemResources resources;
    if (!gLargeBlocksAreFresh) return state.SkipWithError("no fresh memory");
    const Folder folder;
    const std::string name = folder.file("data");
    const std::string data = makeText(40, "\n");
    std::ofstream(name) << data;
    compare(
        state, data.size(),
        [&] {
            fileIODescriptor* file = nullptr;
            Open_File(name.c_str(), kBINARY_READ_WHOLE, &file);
            Close_File(&file);
        },
        [&] {
            const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
            void* const bytes = std::malloc(data.size());
            if (read(file, bytes, data.size()) < 0) std::abort();
            benchmark::DoNotOptimize(bytes);
            std::free(bytes);
            close(file);
        });
}
BENCHMARK(openOneBuffer)->Name("openOneBuffer/over_read")->UseManualTime()->Unit(benchmark::kMillisecond);

// Blocks into a fresh file each time, on both sides.
void blocks(benchmark::State& state) {
    const SystemResources resources;
    const Folder folder;
    const size_t blockBytes = static_cast<size_t>(state.range(0));
    const std::string block(blockBytes, 'x');
    const size_t count = kTEXT_BYTES / blockBytes;
    const std::string name = folder.file("ours");
    const std::string peerName = folder.file("peer");
    compare(
        state, count * blockBytes,
        [&] {
            fileIODescriptor* file = nullptr;
            Open_File(name.c_str(), kBINARY_WRITE, &file);
            for (size_t i = 0; i < count; ++i) outputBlock(file, block.data(), blockBytes);
            Close_File(&file);
            std::filesystem::remove(name);
        },
        [&] {
            FILE* const file = std::fopen(peerName.c_str(), "wb");
            for (size_t i = 0; i < count; ++i) std::fwrite(block.data(), 1, blockBytes, file);
            std::fclose(file);
            std::filesystem::remove(peerName);
        });
}
BENCHMARK(blocks)
    ->Name("blocks/over_fwrite")
    ->Arg(16)
    ->Arg(256)
    ->Arg(4096)
    ->Arg(1 << 20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// The same without a disk behind: what a call costs.
void blocksToNothing(benchmark::State& state) {
    const SystemResources resources;
    const size_t blockBytes = static_cast<size_t>(state.range(0));
    const std::string block(blockBytes, 'x');
    const size_t count = kTEXT_BYTES / blockBytes;
    fileIODescriptor* file = nullptr;
    Open_File("/dev/null", kBINARY_WRITE, &file);
    FILE* const peer = std::fopen("/dev/null", "wb");
    compare(
        state, count * blockBytes,
        [&] {
            for (size_t i = 0; i < count; ++i) outputBlock(file, block.data(), blockBytes);
        },
        [&] {
            for (size_t i = 0; i < count; ++i) std::fwrite(block.data(), 1, blockBytes, peer);
        });
    Close_File(&file);
    std::fclose(peer);
}
BENCHMARK(blocksToNothing)
    ->Name("blocksToNothing/over_fwrite")
    ->Arg(1)
    ->Arg(16)
    ->Arg(256)
    ->Arg(4096)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// Lines of 40 characters with each way to end them, against fputs.
void textLines(benchmark::State& state) {
    const SystemResources resources;
    const std::string line = std::string(39, 'x').append("\n");
    const size_t count = kTEXT_BYTES / line.size();
    fileIODescriptor* file = nullptr;
    Open_File("/dev/null", kWRITE_ACCESS | static_cast<u32>(state.range(0)), &file);
    FILE* const peer = std::fopen("/dev/null", "wb");
    compare(
        state, count * line.size(),
        [&] {
            for (size_t i = 0; i < count; ++i) outputLine(file, line.c_str());
        },
        [&] {
            for (size_t i = 0; i < count; ++i) std::fputs(line.c_str(), peer);
        });
    Close_File(&file);
    std::fclose(peer);
}
BENCHMARK(textLines)
    ->Name("textLines/over_fputs")
    ->Arg(kTEXT_CR_LF)
    ->Arg(kTEXT_LF)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

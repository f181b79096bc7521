// Preprocessor_bench.cpp - the run that only preprocesses, in bytes of text a second, beside GNU cpp on the same text.
// SPDX-License-Identifier: Apache-2.0
//
// Both get texts that give the same lines, in turn. cpp knows no loops: it gets the lines that ours repeats. Both read a
// file and write one; cpp runs as a process of its own. Times are processor times, so that a busy machine does not show.
// "speed_over_cpp" is missing where cpp is not installed.
#include "ParseUtils/preprocess_file.h"
#include "SystemUtils/SystemUtils.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr size_t kTEXT_BYTES = 10'000'000;
constexpr u32 kLANE_LINES = 100'000;
constexpr u32 kROUNDS = 4;

// Texts stand in a folder that goes with the process.
struct FolderType {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("memdata_bench_" + std::to_string(::getpid()));
    FolderType() { std::filesystem::create_directories(path); }
    ~FolderType() { std::filesystem::remove_all(path); }
    FolderType& operator=(FolderType&&) = delete; // neither copied nor moved

    std::string write(const char* name, const std::string& text) const {
        std::ofstream(path / name, std::ios::binary) << text;
        return (path / name).string();
    }
};

const FolderType& folder() {
    static const FolderType kFOLDER;
    return kFOLDER;
}

// A map of lane lines, a hundred bytes each.
std::string plain_text() {
    std::string text;
    for (u32 i = 0; i < kLANE_LINES; ++i) {
        const std::string number = std::to_string(i);
        text += "        system_i/axi_bram_" + number + "/ramloop_" + number + ".ram_r/prim_noinit.ram [" +
                std::to_string(i % 32 + 7) + ":" + std::to_string(i % 32) + "] LOC = X" + std::to_string(i % 90) + "Y" +
                std::to_string(i % 700) + " ;\n";
    }
    return text;
}

constexpr const char* kMACROS = "#define RANGE(hi, lo) [hi:lo]\n"
                                "#define LANE(path, n, hi, lo) path/ram_##n RANGE(hi, lo) ;\n";

std::string call_lines(size_t bytes) {
    std::string text;
    for (u32 i = 0; text.size() < bytes; ++i)
        text += "LANE(system_i/axi, " + std::to_string(i % 1000) + ", " + std::to_string(i % 32 + 7) + ", " +
                std::to_string(i % 32) + ")\n";
    return text;
}

std::string repeated(const std::string& text) {
    std::string all;
    for (u32 i = 0; i < kROUNDS; ++i) all += text;
    return all;
}

// Seconds of this process, or of those that it has waited for.
double processor_seconds(int who) {
    rusage usage{};
    ::getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

bool is_cpp_here() {
    return std::system("cpp --version >/dev/null 2>&1") == 0;
}

double seconds_of_cpp(const std::string& name) {
    const std::string command = "cpp -P -w " + name + " " + (folder().path / "cpp.txt").string();
    const double start = processor_seconds(RUSAGE_CHILDREN);
    if (std::system(command.c_str()) != 0) throw std::runtime_error("cpp failed");
    return processor_seconds(RUSAGE_CHILDREN) - start;
}

// `cppName` is the text that gives cpp the same lines, "" for none.
void preprocess_file(benchmark::State& state, const std::string& name, const std::string& cppName, size_t bytes) {
    const memdata::SystemResources resources;
    memdata::OwnedFileSpec in(CreateFileSpec(name.c_str()));
    memdata::OwnedFileSpec out(CreateFileSpec((folder().path / "ours.txt").c_str()));
    SetDefaultFileAttributes(kOVERWRITING_ALLOWED, true);
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    const bool hasPeer = !cppName.empty() && is_cpp_here();
    double ours = 0;
    double peer = 0;
    for (auto _ : state) {
        const double start = processor_seconds(RUSAGE_SELF);
        if (open_and_preprocess_file(in.get(), "", nullptr, out.get()) != 0)
            state.SkipWithError("preprocessing failed");
        const double seconds = processor_seconds(RUSAGE_SELF) - start;
        state.SetIterationTime(seconds);
        ours += seconds;
        if (hasPeer) peer += seconds_of_cpp(cppName);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
    state.counters["memory_per_byte"] = static_cast<double>(getMaxMemoryUsage()) / static_cast<double>(bytes);
    if (hasPeer) state.counters["speed_over_cpp"] = peer / ours;
}

void PlainMap(benchmark::State& state) {
    const std::string text = plain_text();
    preprocess_file(state, folder().write("plain.bmm", text), folder().write("plain.h", text), text.size());
}
BENCHMARK(PlainMap)->Unit(benchmark::kMillisecond)->UseManualTime();

std::string loop(size_t rounds, const std::string& lines) {
    return "#for round 0; round < " + std::to_string(rounds) + "; round round+1\n" + lines + "#endfor\n";
}

void MacrosInALoop(benchmark::State& state) {
    const std::string lines = call_lines(kTEXT_BYTES / kROUNDS);
    const std::string name = folder().write("macros.bmm", kMACROS + loop(kROUNDS, lines));
    const std::string cppName = folder().write("macros.h", kMACROS + repeated(lines));
    preprocess_file(state, name, cppName, lines.size() * kROUNDS);
}
BENCHMARK(MacrosInALoop)->Unit(benchmark::kMillisecond)->UseManualTime();

// One line in a loop of many rounds: the cost of a round stays the same.
void RoundsOfALoop(benchmark::State& state) {
    const auto rounds = static_cast<size_t>(state.range(0));
    const std::string line = "LANE(system_i/axi, round, 7, 0)\n";
    const std::string name = folder().write("rounds.bmm", kMACROS + loop(rounds, line));
    preprocess_file(state, name, "", line.size() * rounds);
}
BENCHMARK(RoundsOfALoop)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace

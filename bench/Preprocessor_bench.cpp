// Preprocessor_bench.cpp - the run that only preprocesses, in bytes of text a second, beside GNU cpp on the same text.
// SPDX-License-Identifier: Apache-2.0
//
// Each pair runs on texts that give the same lines. cpp knows no loops: it gets the lines that ours repeats. Both read a
// file and write one; cpp runs as a process of its own. Times are processor times, so that a busy machine does not show.
#include "ParseUtils/preprocess_file.h"
#include "SystemUtils/SystemUtils.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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

void preprocess_file(benchmark::State& state, const std::string& name, size_t bytes) {
    const memdata::SystemResources resources;
    memdata::Tracked<fileSpecType, DeleteFileSpec> in(CreateFileSpec(name.c_str()));
    memdata::Tracked<fileSpecType, DeleteFileSpec> out(CreateFileSpec((folder().path / "ours.txt").c_str()));
    SetDefaultFileAttributes(kOVERWRITING_ALLOWED, true);
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    for (auto _ : state) {
        const double start = processor_seconds(RUSAGE_SELF);
        if (open_and_preprocess_file(in.get(), "", nullptr, out.get()) != 0)
            state.SkipWithError("preprocessing failed");
        state.SetIterationTime(processor_seconds(RUSAGE_SELF) - start);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
    state.counters["memory_per_byte"] = static_cast<double>(getMaxMemoryUsage()) / static_cast<double>(bytes);
}

void run_cpp(benchmark::State& state, const std::string& name, size_t bytes) {
    const std::string command = "cpp -P -w " + name + " " + (folder().path / "cpp.txt").string();
    for (auto _ : state) {
        const double start = processor_seconds(RUSAGE_CHILDREN);
        if (std::system(command.c_str()) != 0) state.SkipWithError("cpp failed");
        state.SetIterationTime(processor_seconds(RUSAGE_CHILDREN) - start);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

void PlainMapWithCpp(benchmark::State& state) {
    const std::string text = plain_text();
    run_cpp(state, folder().write("plain.h", text), text.size());
}
BENCHMARK(PlainMapWithCpp)->Unit(benchmark::kMillisecond)->UseManualTime();

void PlainMap(benchmark::State& state) {
    const std::string text = plain_text();
    preprocess_file(state, folder().write("plain.bmm", text), text.size());
}
BENCHMARK(PlainMap)->Unit(benchmark::kMillisecond)->UseManualTime();

void MacrosWithCpp(benchmark::State& state) {
    const std::string text = kMACROS + repeated(call_lines(kTEXT_BYTES / kROUNDS));
    run_cpp(state, folder().write("macros.h", text), text.size());
}
BENCHMARK(MacrosWithCpp)->Unit(benchmark::kMillisecond)->UseManualTime();

void MacrosInALoop(benchmark::State& state) {
    const std::string lines = call_lines(kTEXT_BYTES / kROUNDS);
    const std::string text =
        kMACROS + ("#for round 0; round < " + std::to_string(kROUNDS)) + "; round round+1\n" + lines + "#endfor\n";
    preprocess_file(state, folder().write("macros.bmm", text), lines.size() * kROUNDS);
}
BENCHMARK(MacrosInALoop)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace

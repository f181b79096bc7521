// LNF_ELFDataFile_bench.cpp - an ELF file opened and all its data read, beside reading the file once.
//
// "of_reading" is the time of opening and reading over that of reading the whole file through one small buffer, both
// taken in turns: 1.5 is the mark. "resident_over_file" is what the process held more at its peak than before, in MiB,
// less the size of the file: a mapping counts once, 8 is the mark. Files are in the page cache.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/file_spec.h"
#include "LNF_ELFDataFile/LNF_ELFDataFile.h"
#include "SystemUtils/lifetime.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr u64 kMIB = 1 << 20;
constexpr u64 kBUFFER_BYTES = 256 * 1024; // stays in the cache
constexpr u64 kSEGMENT_COUNT = 4;

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

// A file of 64 bits with the data in a few segments, gone with the object.
class LargeElf {
public:
    explicit LargeElf(u64 dataBytes)
        : name_((std::filesystem::temp_directory_path() / ("memdata_bench_" + std::to_string(::getpid()) + ".elf"))
                    .string()) {
        const u64 segmentBytes = dataBytes / kSEGMENT_COUNT;
        Elf64_Ehdr header{};
        std::memcpy(header.e_ident, ELFMAG, SELFMAG);
        header.e_ident[EI_CLASS] = ELFCLASS64;
        header.e_ident[EI_DATA] = ELFDATA2LSB;
        header.e_ident[EI_VERSION] = EV_CURRENT;
        header.e_type = ET_EXEC;
        header.e_machine = EM_RISCV;
        header.e_phoff = header.e_ehsize = sizeof header;
        header.e_phentsize = sizeof(Elf64_Phdr);
        header.e_phnum = kSEGMENT_COUNT;
        std::ofstream out(name_, std::ios::binary);
        out.write(reinterpret_cast<const char*>(&header), sizeof header);
        for (u64 i = 0; i < kSEGMENT_COUNT; ++i) {
            Elf64_Phdr segment{};
            segment.p_type = PT_LOAD;
            segment.p_offset = sizeof header + kSEGMENT_COUNT * sizeof segment + i * segmentBytes;
            segment.p_paddr = segment.p_vaddr = 0x80000000 + i * segmentBytes;
            segment.p_filesz = segment.p_memsz = segmentBytes;
            out.write(reinterpret_cast<const char*>(&segment), sizeof segment);
        }
        std::string line(64 * 1024, '\0');
        for (size_t i = 0; i < line.size(); ++i) line[i] = static_cast<char>(i * 131 >> 3);
        for (u64 written = 0; written < dataBytes; written += line.size())
            out.write(line.data(), static_cast<std::streamsize>(line.size()));
    }
    ~LargeElf() { std::filesystem::remove(name_); }
    LargeElf& operator=(LargeElf&&) = delete; // neither copied nor moved

    const char* name() const { return name_.c_str(); }

private:
    std::string name_;
};

void readFileOnce(const char* name, std::vector<char>* buffer) {
    const int file = ::open(name, O_RDONLY);
    while (::read(file, buffer->data(), buffer->size()) > 0) benchmark::DoNotOptimize(buffer->data());
    ::close(file);
}

// Every byte of data passes through the same small buffer. False when the file does not open.
bool openAndRead(const char* name, std::vector<char>* buffer) {
    fileSpecType* spec = CreateFileSpec(name);
    bool isOpen = false;
    {
        LNF_ELFDataFile elf;
        isOpen = elf.OpenDataFile(spec, nullptr, 1) == 0;
        for (unsigned long i = 0; i < elf.GetProgramSectionCount(); ++i) {
            DataFileSectionTypeX<unsigned long> section{};
            elf.GetProgramSectionData(i, &section);
            for (u64 at = 0; at < section.size; at += buffer->size()) {
                std::memcpy(buffer->data(), section.data + at, std::min<u64>(buffer->size(), section.size - at));
                benchmark::DoNotOptimize(buffer->data());
            }
        }
    }
    DeleteFileSpec(&spec);
    return isOpen;
}

// A figure of the process in KiB, by its name in the system's status file.
u64 statusFigure(const std::string& label) {
    std::ifstream in("/proc/self/status");
    for (std::string line; std::getline(in, line);)
        if (line.starts_with(label + ":")) return std::stoull(line.substr(label.size() + 1));
    return 0;
}

// The peak starts anew.
void forgetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

void open_and_read(benchmark::State& state) {
    memdata::SystemResources system;
    const u64 dataBytes = static_cast<u64>(state.range(0)) * kMIB;
    const LargeElf file(dataBytes);
    std::vector<char> buffer(kBUFFER_BYTES);
    readFileOnce(file.name(), &buffer);
    openAndRead(file.name(), &buffer);

    const u64 residentBefore = statusFigure("VmRSS");
    forgetPeak();
    double readingSeconds = 0;
    double elfSeconds = 0;
    for (auto _ : state) {
        const auto begin = Clock::now();
        readFileOnce(file.name(), &buffer);
        readingSeconds += secondsSince(begin);
        const auto between = Clock::now();
        if (!openAndRead(file.name(), &buffer)) return state.SkipWithError("the file does not open");
        const double seconds = secondsSince(between);
        elfSeconds += seconds;
        state.SetIterationTime(seconds);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<i64>(dataBytes));
    state.counters["of_reading"] = elfSeconds / readingSeconds;
    state.counters["resident_over_file"] =
        static_cast<double>(statusFigure("VmHWM") - residentBefore) / 1024 - static_cast<double>(state.range(0));
}
BENCHMARK(open_and_read)->Arg(4)->Arg(16)->Arg(64)->Arg(256)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

// XMLUtils_bench.cpp - address maps as XML: read and written, in bytes of text a second, by the number of lanes.
// SPDX-License-Identifier: Apache-2.0
//
// "document" is the generic reader alone, "map" the whole way from the text to a checked model. Reading is linear when
// the speed stays from 1,000 lanes to 100,000. "memory" is the peak of tracked memory over the size of the text.
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/xml_map.h"
#include "SystemUtils/SystemUtils.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

constexpr u32 kLANES_OF_BLOCK = 8;
constexpr u32 kBLOCKS_OF_SPACE = 4;
constexpr u32 kLANES_OF_SPACE = kLANES_OF_BLOCK * kBLOCKS_OF_SPACE;
constexpr u64 kSPACE_BYTES = u64{kLANES_OF_SPACE} * 2048; // of RAMB16
constexpr u32 kWORDS = 2048;                              // of a lane

std::string hex(u64 value) {
    return memdata::formatted("0x%llX", value);
}

std::string device_line(u32 lane) {
    const u32 bit = lane % kLANES_OF_BLOCK * 8;
    const u32 word = lane % kLANES_OF_SPACE / kLANES_OF_BLOCK * kWORDS;
    const std::string number = std::to_string(lane);
    return "\t\t\t\t\t<Device Instance=\"system_i/axi_bram_" + number + "/ramloop_" + number +
           ".ram/prim\" Type=\"RAMB16\" Width=\"" + std::to_string(bit + 7) + ":" + std::to_string(bit) +
           "\" Depth=\"" + std::to_string(word) + ":" + std::to_string(word + kWORDS - 1) + "\" Loc=\"X" +
           std::to_string(lane % 90) + "Y" + std::to_string(lane % 700) + "\">\n\t\t\t\t\t</Device>\n";
}

std::string space_text(u32 index) {
    const u64 start = index * kSPACE_BYTES;
    std::string text = "\t\t<AddressSpace Name=\"ram" + std::to_string(index) + "\" Style=\"byte\" StartAddress=\"" +
                       hex(start) + "\" EndAddress=\"" + hex(start + kSPACE_BYTES - 1) +
                       "\" RangeElementCount=\"1\">\n\t\t\t<Range Type=\"RAMB16\" BusBlockElementCount=\"4\">\n";
    for (u32 block = 0; block < kBLOCKS_OF_SPACE; ++block) {
        text += "\t\t\t\t<Block DeviceElementCount=\"8\">\n";
        for (u32 lane = 0; lane < kLANES_OF_BLOCK; ++lane)
            text += device_line(index * kLANES_OF_SPACE + block * kLANES_OF_BLOCK + lane);
        text += "\t\t\t\t</Block>\n";
    }
    return text + "\t\t\t</Range>\n\t\t</AddressSpace>\n";
}

std::string map_text(u32 lanes) {
    const u32 spaces = lanes / kLANES_OF_SPACE;
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<AddressMap Version=\"1\" Minor=\"0\">\n"
                       "\t<Processor Name=\"cpu\" Type=\"PPC440\" Id=\"0\">\n";
    for (u32 i = 0; i < spaces; ++i) text += space_text(i);
    return text + "\t</Processor>\n</AddressMap>\n";
}

memdata::OwnedFileSpec spec_of(const std::string& text) {
    return memdata::OwnedFileSpec(CreateFileSpecWithFileData("map.xml", text.data(), text.size()));
}

void set_figures(benchmark::State& state, size_t bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<i64>(bytes));
    state.counters["memory"] = static_cast<double>(getMaxMemoryUsage()) / static_cast<double>(bytes);
}

void xml_document_read(benchmark::State& state) {
    const memdata::SystemResources system;
    const std::string text = map_text(static_cast<u32>(state.range(0)));
    const memdata::OwnedFileSpec spec = spec_of(text);
    for ([[maybe_unused]] auto step : state) {
        LNF_XML document;
        if (document.ReadXML(spec.get(), nullptr, 0) != 0) return state.SkipWithError("not read");
    }
    set_figures(state, text.size());
}
BENCHMARK(xml_document_read)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

void xml_map_read(benchmark::State& state) {
    const memdata::SystemResources system;
    const std::string text = map_text(static_cast<u32>(state.range(0)));
    const memdata::OwnedFileSpec spec = spec_of(text);
    for ([[maybe_unused]] auto step : state) {
        AddressMappingType* mapping = create_addressMapping_element("map.bmm", nullptr, false, nullptr, nullptr);
        if (open_and_parse_bmm_XML(spec.get(), mapping, nullptr, nullptr, nullptr, nullptr) != 0)
            return state.SkipWithError("not read");
        delete_addressMapping(&mapping);
    }
    set_figures(state, text.size());
}
BENCHMARK(xml_map_read)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

void xml_map_write(benchmark::State& state) {
    const memdata::SystemResources system;
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    const std::string text = map_text(static_cast<u32>(state.range(0)));
    AddressMappingType* mapping = create_addressMapping_element("map.bmm", nullptr, false, nullptr, nullptr);
    if (open_and_parse_bmm_XML(spec_of(text).get(), mapping, nullptr, nullptr, nullptr, nullptr) != 0)
        return state.SkipWithError("not read");
    const std::filesystem::path name =
        std::filesystem::temp_directory_path() / ("memdata_bench_" + std::to_string(::getpid()) + ".xml");
    const memdata::OwnedFileSpec output(CreateFileSpec(name.c_str()));
    for ([[maybe_unused]] auto step : state)
        if (output_XML_BMM_file(output.get(), nullptr, 0, mapping) != 0) return state.SkipWithError("not written");
    set_figures(state, std::filesystem::file_size(name));
    std::filesystem::remove(name);
    delete_addressMapping(&mapping);
}
BENCHMARK(xml_map_write)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

} // namespace

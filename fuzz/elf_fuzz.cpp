// elf_fuzz.cpp - an ELF file is opened, its sections, names and start read to their last byte, and all of it dumped.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/FileUtils.h"
#include "LNF_ELFDataFile/LNF_ELFDataFile.h"
#include "support/engine_run.h"

#include <cstring>
#include <memory>
#include <vector>

namespace {

using Section = DataFileSectionTypeX<unsigned long>;

// Keeps the compiler from leaving the reading out.
u64 gSum = 0;

void readBytes(const Section& section) {
    for (u64 i = 0; section.data != nullptr && i < section.size; ++i) gSum += section.data[i];
}

void readAll(LNF_ELFDataFile* elf) {
    for (unsigned long i = 0; i < elf->GetProgramSectionCount(); ++i)
        if (Section section{}; elf->GetProgramSectionData(i, &section) == 0) readBytes(section);
    for (unsigned long i = 0; i < elf->GetSectionCount(); ++i) {
        if (Section section{}; elf->GetSectionData(i, &section) == 0) readBytes(section);
        if (const char* name = elf->GetSectionName(i)) gSum += std::strlen(name);
    }
    unsigned long low = 0;
    unsigned long high = 0;
    elf->GetProgramSectionAddressRange(&low, &high);
    elf->GetDataFileStatupAddress();
    elf->IsMatchingProcessorType(~0UL);
    elf->DumpELF(&StandardOut, kDUMP_ELF_HEADERS);
    elf->DumpELFAsMEM(&StandardOut, 0);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const memdata::fuzz::EngineRun run;
    std::vector<char> bytes(data, data + size); // a file in memory is not read-only
    fileIODescriptor* file = nullptr;
    if (OpenMemoryFile("a.elf", kBINARY_READ_WHOLE, bytes.data(), bytes.size(), &file) != 0) return 0;
    const auto elf = std::make_unique<LNF_ELFDataFile>();
    const int status = elf->OpenDataFile(file);
    Close_File(&file);
    if (status == 0) readAll(elf.get());
    return 0;
}

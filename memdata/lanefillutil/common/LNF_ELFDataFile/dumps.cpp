// dumps.cpp - an ELF file as a listing of its headers, and as a MEM text.
// SPDX-License-Identifier: Apache-2.0
#include "LNF_ELFDataFile/LNF_ELFDataFile.h"
#include "ListingUtils/ListingUtils.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "lanefillCore/records/progress_stages.h"

#include <algorithm>
#include <new>
#include <optional>
#include <sstream>

namespace {

using namespace memdata;

// A line ends behind the value with which it has more than 255 bits or more than 127 characters.
constexpr unsigned kBITS_PER_VALUE = 8;
constexpr unsigned kCHARACTERS_PER_VALUE = 3; // a blank, two digits
constexpr unsigned kVALUES_PER_LINE = std::min(255 / kBITS_PER_VALUE, 127 / kCHARACTERS_PER_VALUE) + 1;
static_assert(kVALUES_PER_LINE == 32);

constexpr u64 kLINES_PER_BLOCK = 512; // written in one go

void appendLine(std::string* text, const u8* values, u64 count) {
    constexpr const char* kDIGITS = "0123456789ABCDEF";
    *text += "   ";
    for (const u8 value : std::span(values, count)) {
        const char characters[kCHARACTERS_PER_VALUE] = {' ', kDIGITS[value >> 4], kDIGITS[value & 15]};
        text->append(characters, kCHARACTERS_PER_VALUE);
    }
    *text += '\n';
}

// Bytes in the order of their addresses: what a cursor in the order of bit lanes gives in units of 8.
int writeValues(fileIODescriptor* target, const DataFileSectionTypeX<unsigned long>& section) {
    std::string text;
    constexpr u64 kBLOCK = kLINES_PER_BLOCK * kVALUES_PER_LINE;
    for (u64 begin = 0; begin < section.size; begin += kBLOCK) {
        const u64 end = std::min<u64>(section.size, begin + kBLOCK);
        text.clear();
        for (u64 at = begin; at < end; at += kVALUES_PER_LINE)
            appendLine(&text, section.data + at, std::min<u64>(kVALUES_PER_LINE, end - at));
        int status = outputLine(target, text.c_str());
        if (status == 0) status = advanceProgress(end - begin);
        if (status != 0) return status;
    }
    return 0;
}

// Addresses of more than 32 bits show whole, so that a reader of the text refuses what it cannot hold.
int writeSection(fileIODescriptor* target, u64 index, const DataFileSectionTypeX<unsigned long>& section) {
    int status =
        PutNextLine(target, "\n\n// Program header record #%lld, Size = 0x%llX, at 0x%08llX to 0x%08llX.\n\n@%08llX\n",
            index, section.size, section.address, section.address + (section.size - 1), section.address);
    return status != 0 ? status : writeValues(target, section);
}

// The head of a data file that comes from no map.
int writeHead(fileIODescriptor* target, const char* name) {
    int status = PutNextLine(target, "// MEM file.\n//\n");
    if (status == 0) status = OutputVersionHeader(target, "//", nullptr);
    return status != 0 ? status : PutNextLine(target, "//     %s\n", name);
}

int outOfMemory(u64 byteCount) {
    return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "an ELF dump", byteCount, getCurrentMemoryUsage());
}

} // namespace

int LNF_ELFDataFile::DumpELF(fileIODescriptor* target, u32 mask) {
    if (elf == nullptr) return 3;
    int status = OutputVersionHeader(
        target, nullptr, "\n\n%s ELF file dump.\n\nFile = \"%s\".\n\n", GetSystemToolName(), GetDataFileName());
    if (status != 0 || (mask & kDUMP_ELF_HEADERS) == 0) return status;
    try {
        std::ostringstream text;
        text.exceptions(std::ios_base::badbit); // or it would end early without a word when memory does
        elf->dumpELF(text);
        text << '\n';
        return outputLine(target, text.str().c_str());
    } catch (const std::bad_alloc&) {
        return outOfMemory(0);
    }
}

int LNF_ELFDataFile::DumpELFAsMEM(fileIODescriptor* target, u32) {
    if (elf == nullptr) return 3;
    try {
        std::optional<ProgressStage> stage; // a terminal shows the text itself
        if (!isTerminal(target))
            stage.emplace(formatted("Dumping '%s'...", GetDataFileName()), GetFileLogicalSize(file));
        int status = writeHead(target, GetDataFileName());
        for (u64 i = 0; status == 0 && i < GetProgramSectionCount(); ++i) {
            DataFileSectionTypeX<unsigned long> section{};
            status = GetProgramSectionData(i, &section);
            if (status == 0 && section.size > 0) status = writeSection(target, i, section);
        }
        return status == 0 && stage ? stage->finish() : status;
    } catch (const std::bad_alloc&) {
        return outOfMemory(0);
    }
}

// mem_data_file.cpp - see mem_data_file.h.
// SPDX-License-Identifier: Apache-2.0
#include "MemUtils/mem_data_file.h"

#include "MemUtils/keywords.h"
#include "MemUtils/parser.h"
#include "SystemUtils/alerts.h"
#include "lanefillCore/records/progress_stages.h"

namespace {

constexpr u32 kHEXADECIMAL = 16;
constexpr int kEMPTY_TEXT = 17;

// What a stream reports of its text: everything but these is damage.
int openStatus(int status) {
    return status == 0 || status == 1 || status == 7 || status == kEMPTY_TEXT ? status : 2;
}

int closeStatus(int status) {
    return status == 0 || status == 7 ? status : 2;
}

} // namespace

LNF_MEMDataFile::LNF_MEMDataFile(unsigned radix) : defaultRadix_(radix == 0 ? kHEXADECIMAL : radix) {}

LNF_MEMDataFile::~LNF_MEMDataFile() {
    close_();
}

void LNF_MEMDataFile::close_() {
    close_parse_stream(&stream_);
    CloseDataFileHdr(&block_);
}

int LNF_MEMDataFile::OpenDataFile(fileSpecType* spec, const char* macroDefines, unsigned) {
    close_();
    fileSpec = spec;
    int status = openText_(macroDefines);
    if (status == 0) status = readText_();
    if (status != 0) close_();
    return status;
}

int LNF_MEMDataFile::openText_(const char* macroDefines) {
    const int status =
        openStatus(open_parse_DiskFile(fileSpec, "mem", &mem_symbol_set, macroDefines, nullptr, &stream_));
    if (status == kEMPTY_TEXT) return PrintError(kERROR_EMPTY_INPUT_FILE, kEMPTY_TEXT, GetDataFileName(), "MEM");
    if (status != 0) return status;
    // Data that the specification holds is that of the file with its name.
    memdata::showAsFile(stream_);
    return InitializeDataStructureBlock(GetFileLogicalSize(stream_->root->file), defaultRadix_, &block_);
}

int LNF_MEMDataFile::readText_() {
    memdata::ProgressStage stage(memdata::formatted("Reading '%s'...", GetDataFileName()), get_stream_size(stream_));
    int status = ParseTextDataFile(stream_, block_);
    if (status == 0) status = stage.finish();
    if (status != 0) return status;
    // The text is not needed any more. What was left open at its end has swallowed data: closing reports it.
    return closeStatus(close_parse_stream(&stream_));
}

const char* LNF_MEMDataFile::GetDataFileName() const {
    return fileSpec == nullptr || fileSpec->fullName == nullptr ? "" : fileSpec->fullName;
}

int LNF_MEMDataFile::GetProgramSectionAddressRange(unsigned long* low, unsigned long* high) {
    if (block_ == nullptr) return 3;
    *low = block_->lowestAddress;
    *high = block_->highestAddress;
    return 0;
}

unsigned long LNF_MEMDataFile::GetProgramSectionCount() {
    return block_ == nullptr ? 0 : block_->sectionCount;
}

int LNF_MEMDataFile::GetProgramSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) {
    if (index >= GetProgramSectionCount()) return 3;
    *section = memdata::programSection(*block_->sectionArray[index]);
    return 0;
}

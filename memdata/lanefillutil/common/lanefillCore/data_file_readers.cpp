// data_file_readers.cpp - see data_file_readers.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/data_file_readers.h"

#include "LNF_ELFDataFile/LNF_ELFDataFile.h"
#include "MemUtils/mem_data_file.h"
#include "SystemUtils/alerts.h"

namespace {

constexpr int kABSENT_STATUS = 3;

LNF_DataFile* newElfReader() {
    return new LNF_ELFDataFile;
}

template<unsigned radix>
LNF_DataFile* newTextReader() {
    return new LNF_MEMDataFile(radix);
}

// A format of the format table and what makes its reader; null gives up for want of memory.
struct ReaderType {
    u32 format;
    LNF_DataFile* (*create)();
};
constexpr ReaderType kREADERS[] = {
    {13, newTextReader<16>}, // MEM
    {24, newTextReader<16>}, // COE
    {23, newTextReader<2>},  // MIF
    {16, newElfReader},      // ELF
    {17, newElfReader},      // DRF
};

} // namespace

namespace memdata {

int newDataFileReader(const fileSpecType* spec, LNF_DataFile** file) {
    *file = nullptr;
    for (const ReaderType& reader : kREADERS) {
        if (reader.format != spec->format) continue;
        *file = reader.create();
        return *file == nullptr ? 7 : 0;
    }
    return PrintError(kERROR_MESSAGE_STRING, kABSENT_STATUS,
        formatted("Data file '%s' has a format that this build cannot read yet.", spec->fullName));
}

} // namespace memdata

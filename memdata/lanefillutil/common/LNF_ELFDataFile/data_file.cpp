// data_file.cpp - an ELF file is opened and gives out its sections.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/opening.h"
#include "LNF_ELFDataFile/LNF_ELFDataFile.h"
#include "LNF_ELFDataFile/elf_names.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"

#include <cstring>
#include <new>

namespace {

using namespace memdata;

constexpr int kDAMAGED_STATUS = 2;
constexpr int kOTHER_PROCESSOR_STATUS = 23;
constexpr const char* kCHANGED = "it was changed or cut short while it was read";

// Machines whose software runs on certain processors only; all others pass.
struct MachineProcessors {
    u32 machine;
    unsigned long processors; // mask of processor types
};
constexpr MachineProcessors kMACHINE_PROCESSORS[] = {
    {kARM_MACHINE, 32},                // ARM
    {kSOFT_PROCESSOR_MACHINE, 16 | 2}, // KESTREL-LE, KESTREL
};

int refuse(const char* name, const std::string& reason) {
    return PrintError(kERROR_MESSAGE_STRING, kDAMAGED_STATUS,
        formatted("Data file '%s' cannot be read as an ELF file: %s.", name, reason));
}

} // namespace

void* LNF_ELFDataFile::operator new(size_t byteCount) noexcept {
    return _getMemory(__FILE__, __LINE__, "an 'LNF_ELFDataFile' object", byteCount);
}

void LNF_ELFDataFile::operator delete(void* reader) {
    if (reader != nullptr) releaseMemory(reader);
}

LNF_ELFDataFile::~LNF_ELFDataFile() {
    closeImage_();
}

void LNF_ELFDataFile::closeImage_() {
    delete elf;
    elf = nullptr;
    Close_File(&file);
    image_.close();
    if (copy_ != nullptr) releaseMemory(copy_);
    copy_ = nullptr;
}

int LNF_ELFDataFile::OpenDataFile(fileSpecType* spec, const char*, unsigned) {
    if (spec == nullptr) return 3;
    closeImage_();
    fileSpec = spec;
    std::string reason;
    switch (image_.open(spec->fullName, &reason)) {
    case WholeFile::kREAD:
        return read_(spec->fullName, image_.data(), image_.size());
    case WholeFile::kCANNOT_OPEN:
        return reportUnopened(spec->fullName, reason);
    default:
        return refuse(spec->fullName, reason);
    }
}

int LNF_ELFDataFile::OpenDataFile(fileIODescriptor* source) {
    if (source == nullptr) return 3;
    closeImage_();
    const u64 byteCount = GetFileLogicalSize(source);
    const char* bytes = GetIndexIOBuffer(source, 0);
    if (byteCount > 0 && (bytes == nullptr || GetIndexIOBuffer(source, byteCount - 1) == nullptr)) return 3;
    if (byteCount > 0) {
        copy_ = static_cast<char*>(getMemory("an ELF image", byteCount));
        if (copy_ == nullptr) return 7;
        std::memcpy(copy_, bytes, byteCount);
    }
    return read_(GetFileName(source), copy_, byteCount);
}

// A class that is unknown reaches no reader: there is none left from an earlier file.
int LNF_ELFDataFile::read_(const char* name, const char* bytes, u64 byteCount) {
    try {
        int status = OpenMemoryFile(name, kBINARY_READ_WHOLE, const_cast<char*>(bytes), byteCount, &file);
        if (status == 0) status = makeReader_(name, bytes, byteCount);
        if (status == 0) status = elf->readElfData(bytes, byteCount);
        if (status == kDAMAGED_STATUS && elf != nullptr)
            refuse(name, image_.isUnchanged() ? elf->failureReason() : kCHANGED);
        if (status != 0) return closeImage_(), status;
    } catch (const std::bad_alloc&) {
        closeImage_();
        return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "ElfData", byteCount, getCurrentMemoryUsage());
    }
    return 0;
}

int LNF_ELFDataFile::makeReader_(const char* name, const char* bytes, u64 byteCount) {
    if (byteCount <= EI_CLASS) return refuse(name, formatted("it has only %lld bytes", byteCount));
    if (std::memcmp(bytes, ELFMAG, SELFMAG) != 0) return refuse(name, "it does not begin as an ELF file does");
    switch (bytes[EI_CLASS]) {
    case ELFCLASS32:
        elf = new ElfXData<unsigned int>;
        break;
    case ELFCLASS64:
        elf = new ElfXData<unsigned long>;
        break;
    default:
        return refuse(name, formatted("its class %ld is unknown", static_cast<u8>(bytes[EI_CLASS])));
    }
    return elf == nullptr ? 7 : 0;
}

const ElfXData<unsigned int>* LNF_ELFDataFile::narrow_() const {
    return dynamic_cast<const ElfXData<unsigned int>*>(elf);
}

const ElfXData<unsigned long>* LNF_ELFDataFile::wide_() const {
    return dynamic_cast<const ElfXData<unsigned long>*>(elf);
}

unsigned LNF_ELFDataFile::getAddressWidth() const {
    if (wide_() != nullptr) return kADDRESS_WIDTH_64;
    return narrow_() != nullptr ? kADDRESS_WIDTH_32 : kADDRESS_WIDTH_UNKNOWN;
}

const char* LNF_ELFDataFile::GetDataFileName() const {
    if (file != nullptr) return GetFileName(file);
    return fileSpec == nullptr ? "" : fileSpec->fullName;
}

const BootAddressTypeX<unsigned long>* LNF_ELFDataFile::GetDataFileStatupAddress() {
    if (const auto* wide = wide_(); wide != nullptr) return &wide->getEntry();
    const auto* narrow = narrow_();
    if (narrow == nullptr) return nullptr;
    entry_ = {narrow->getEntry().kind, narrow->getEntry().address};
    return &entry_;
}

int LNF_ELFDataFile::GetProgramSectionAddressRange(unsigned long* low, unsigned long* high) {
    if (const auto* wide = wide_(); wide != nullptr) return wide->getProgramAddressRange(low, high), 0;
    const auto* narrow = narrow_();
    if (narrow == nullptr) return 3;
    unsigned int narrowLow = 0;
    unsigned int narrowHigh = 0;
    narrow->getProgramAddressRange(&narrowLow, &narrowHigh);
    *low = narrowLow;
    *high = narrowHigh;
    return 0;
}

unsigned long LNF_ELFDataFile::GetProgramSectionCount() {
    return elf == nullptr ? 0 : elf->getProgramSectionCount();
}

int LNF_ELFDataFile::GetProgramSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) {
    const int status = getEitherSectionData(index, section, true);
    if (status == 0) section->isMapped = image_.isMapped();
    return status;
}

unsigned long LNF_ELFDataFile::GetSectionCount() {
    return elf == nullptr ? 0 : elf->getSectionCount();
}

int LNF_ELFDataFile::GetSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) {
    return getEitherSectionData(index, section, false);
}

int LNF_ELFDataFile::getEitherSectionData(
    unsigned long index, DataFileSectionTypeX<unsigned long>* section, bool isProgram) const {
    if (const auto* wide = wide_(); wide != nullptr)
        return isProgram ? wide->getProgramSectionData(index, section) : wide->getSectionData(index, section);
    const auto* narrow = narrow_();
    if (narrow == nullptr) return 3;
    DataFileSectionTypeX<unsigned int> from{};
    const int status = isProgram ? narrow->getProgramSectionData(index, &from) : narrow->getSectionData(index, &from);
    if (status != 0) return status;
    // The bits of 512 MiB and more do not fit into the narrow record; they are counted again.
    *section = {from.address, from.reserved, from.data, from.size, u64{from.size} * 8, from.kind};
    return 0;
}

const char* LNF_ELFDataFile::GetSectionName(unsigned long index) {
    return elf == nullptr ? nullptr : elf->getSectionName(index);
}

int LNF_ELFDataFile::CheckUnchanged() {
    return image_.isUnchanged() ? 0 : refuse(GetDataFileName(), kCHANGED);
}

int LNF_ELFDataFile::IsMatchingProcessorType(unsigned long mask) {
    if (elf == nullptr) return 0;
    for (const MachineProcessors& row : kMACHINE_PROCESSORS)
        if (row.machine == elf->getMachine() && (mask & row.processors) == 0) return kOTHER_PROCESSOR_STATUS;
    return 0;
}

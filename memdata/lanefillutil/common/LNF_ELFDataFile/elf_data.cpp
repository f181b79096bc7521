// elf_data.cpp - see elf_data.h.
// SPDX-License-Identifier: Apache-2.0
#include "LNF_ELFDataFile/elf_data.h"

#include "LNF_ELFDataFile/elf_image.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <new>
#include <vector>

namespace {

using namespace memdata;

constexpr int kDAMAGED_STATUS = 2;

// Where bytes of the file are no data although a segment holds them.
class SegmentHeads {
public:
    explicit SegmentHeads(const ElfImage& image) : headerEnd_(image.headerBytes()) {
        tableBegin_ = image.header().e_phoff;
        tableEnd_ = tableBegin_ + image.programHeaderCount() * image.programHeaderBytes();
        for (u64 i = 0; i < image.sectionCount(); ++i) {
            const GElf_Shdr section = image.sectionHeader(i);
            if (hasContents(section) && (section.sh_flags & SHF_ALLOC) != 0) sections_.push_back(section.sh_offset);
        }
        std::ranges::sort(sections_); // a look-up for each of many segments stays cheap
    }

    // Bytes at the head of count bytes at an offset of the file.
    u64 headBytes(u64 offset, u64 count) const {
        const u64 behindHeaders = passHeaders_(passHeaders_(offset)); // the program headers mostly follow the header
        if (behindHeaders == offset) return 0;
        const auto first = std::ranges::lower_bound(sections_, offset);
        if (first != sections_.end() && *first - offset < count) return *first - offset;
        return std::min(behindHeaders - offset, count);
    }

private:
    u64 passHeaders_(u64 offset) const {
        if (offset < headerEnd_) return headerEnd_;
        return offset >= tableBegin_ && offset < tableEnd_ ? tableEnd_ : offset;
    }

    u64 headerEnd_;
    u64 tableBegin_;
    u64 tableEnd_;
    std::vector<u64> sections_; // offsets of those that are loaded and have contents, ascending
};

bool isLoadable(const GElf_Phdr& segment) {
    return segment.p_type == PT_LOAD;
}

std::string segmentText(u64 index, const GElf_Phdr& segment) {
    return formatted("segment %lld, 0x%llX bytes at offset 0x%llX,", index, segment.p_filesz, segment.p_offset);
}

// What is wrong with a loadable segment; empty when nothing is.
std::string segmentFault(const ElfImage& image, u64 index, const GElf_Phdr& segment, u64 address, u64 lastAddress) {
    if (segment.p_filesz == 0) return "";
    if (segment.p_offset > image.byteCount() || segment.p_filesz > image.byteCount() - segment.p_offset)
        return segmentText(index, segment) + " runs past its end";
    if (address > lastAddress || segment.p_filesz - 1 > lastAddress - address)
        return segmentText(index, segment) +
               formatted(" has the address 0x%llX and runs past 0x%llX", address, lastAddress);
    return "";
}

} // namespace

ElfData::ElfData() : image_(std::make_unique<ElfImage>()) {}
ElfData::~ElfData() = default;

void* ElfData::operator new(size_t byteCount) noexcept {
    return _getMemory(__FILE__, __LINE__, "an 'ElfData' object", byteCount);
}

void ElfData::operator delete(void* reader) {
    if (reader != nullptr) releaseMemory(reader);
}

int ElfData::readElfData(const char* bytes, u64 byteCount) {
    try {
        return image_->open(bytes, byteCount, elfClass_()) ? populate_() : kDAMAGED_STATUS;
    } catch (const std::bad_alloc&) {
        return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "ELF headers", byteCount, getCurrentMemoryUsage());
    }
}

const std::string& ElfData::failureReason() const {
    return image_->failureReason();
}

u32 ElfData::getMachine() const {
    return image_->header().e_machine;
}

u64 ElfData::getProgramHeaderCount() const {
    return image_->programHeaderCount();
}

u64 ElfData::getSectionCount() const {
    return image_->sectionCount();
}

const char* ElfData::getSectionName(u64 index) const {
    return index < image_->sectionCount() ? image_->sectionName(index) : nullptr;
}

template<class Address>
ElfXData<Address>::~ElfXData() {
    if (programSections_ != nullptr) releaseMemory(programSections_);
}

template<class Address>
int ElfXData<Address>::elfClass_() const {
    return sizeof(Address) == sizeof(u64) ? ELFCLASS64 : ELFCLASS32;
}

template<class Address>
int ElfXData<Address>::populate_() {
    entry_ = {kBOOT_FROM_FILE, static_cast<Address>(image_->header().e_entry)};

    u64 loadableCount = 0;
    bool hasPhysical = false;
    for (u64 i = 0; i < image_->programHeaderCount(); ++i) {
        const GElf_Phdr segment = image_->programHeader(i);
        if (!isLoadable(segment)) continue;
        ++loadableCount;
        hasPhysical = hasPhysical || segment.p_paddr != 0;
    }
    if (loadableCount == 0) return 0;

    using SectionType = DataFileSectionTypeX<Address>;
    programSections_ =
        static_cast<SectionType*>(getMemory("an array of ELF segments", loadableCount * sizeof(SectionType)));
    if (programSections_ == nullptr) return 7;

    const SegmentHeads heads(*image_);
    const u64 dataLimit = image_->byteCount() * kMAX_DATA_BYTES_PER_FILE_BYTE;
    u64 dataBytes = 0;
    for (u64 i = 0; i < image_->programHeaderCount(); ++i) {
        const GElf_Phdr segment = image_->programHeader(i);
        if (!isLoadable(segment)) continue;
        const u64 address = hasPhysical ? segment.p_paddr : segment.p_vaddr;
        const std::string fault = segmentFault(*image_, i, segment, address, static_cast<Address>(-1));
        if (!fault.empty()) return image_->refuse(fault), kDAMAGED_STATUS;

        const u64 head = segment.p_filesz == 0 ? 0 : heads.headBytes(segment.p_offset, segment.p_filesz);
        const u64 size = segment.p_filesz - head;
        dataBytes += size;
        if (dataBytes > dataLimit)
            return image_->refuse(formatted("its segments hold more than %lld times its bytes: they overlap",
                       kMAX_DATA_BYTES_PER_FILE_BYTE)),
                   kDAMAGED_STATUS;

        SectionType& section = programSections_[programSectionCount_++];
        section.address = static_cast<Address>(address + (size == 0 ? 0 : head));
        section.size = static_cast<Address>(size);
        section.bitCount = static_cast<Address>(8 * size);
        section.kind = segment.p_type;
        if (size == 0) continue;
        section.data = const_cast<u8*>(reinterpret_cast<const u8*>(image_->bytes())) + segment.p_offset + head;
        lowestAddress_ = std::min(lowestAddress_, section.address);
        highestAddress_ = std::max(highestAddress_, static_cast<Address>(section.address + (section.size - 1)));
    }
    return 0;
}

template<class Address>
int ElfXData<Address>::getProgramSectionData(u64 index, DataFileSectionTypeX<Address>* section) const {
    if (index >= programSectionCount_) return 3;
    *section = programSections_[index];
    return 0;
}

template<class Address>
int ElfXData<Address>::getSectionData(u64 index, DataFileSectionTypeX<Address>* section) const {
    if (index >= image_->sectionCount()) return 3;
    const GElf_Shdr header = image_->sectionHeader(index);
    *section = {};
    section->address = static_cast<Address>(header.sh_addr);
    section->kind = header.sh_type;
    if (!hasContents(header)) return 0;
    section->data = const_cast<u8*>(reinterpret_cast<const u8*>(image_->bytes())) + header.sh_offset;
    section->size = static_cast<Address>(header.sh_size);
    section->bitCount = static_cast<Address>(8 * header.sh_size);
    return 0;
}

template<class Address>
void ElfXData<Address>::getProgramAddressRange(Address* low, Address* high) const {
    *low = lowestAddress_;
    *high = highestAddress_;
}

template class ElfXData<unsigned int>;
template class ElfXData<unsigned long>;

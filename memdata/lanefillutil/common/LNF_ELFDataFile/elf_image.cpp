// elf_image.cpp - see elf_image.h.
// SPDX-License-Identifier: Apache-2.0
#include "LNF_ELFDataFile/elf_image.h"

#include "StringUtils/format.h"

#include <cstring>

namespace {

using namespace memdata;

// Whether count bytes at an offset lie in the first size ones, without a sum that could wrap.
bool liesInside(u64 offset, u64 count, u64 size) {
    return offset <= size && count <= size - offset;
}
bool tableLiesInside(u64 offset, u64 count, u64 recordBytes, u64 size) {
    return offset <= size && count <= (size - offset) / recordBytes;
}

using TranslateType = Elf_Data*(Elf_Data*, const Elf_Data*, unsigned);

// One record of the file in the machine's byte order.
template<class Record>
Record recordAt(const char* bytes, Elf_Type type, unsigned encoding, TranslateType* translate) {
    Record fileRecord;
    std::memcpy(&fileRecord, bytes, sizeof fileRecord); // the file aligns nothing
    Record record{};
    Elf_Data from{};
    from.d_buf = &fileRecord;
    from.d_size = sizeof fileRecord;
    from.d_type = type;
    from.d_version = EV_CURRENT;
    Elf_Data to = from;
    to.d_buf = &record;
    translate(&to, &from, encoding);
    return record;
}

template<class Ehdr>
GElf_Ehdr wideHeader(const Ehdr& from) {
    GElf_Ehdr to{};
    std::memcpy(to.e_ident, from.e_ident, EI_NIDENT);
    to.e_type = from.e_type;
    to.e_machine = from.e_machine;
    to.e_version = from.e_version;
    to.e_entry = from.e_entry;
    to.e_phoff = from.e_phoff;
    to.e_shoff = from.e_shoff;
    to.e_flags = from.e_flags;
    to.e_ehsize = from.e_ehsize;
    to.e_phentsize = from.e_phentsize;
    to.e_phnum = from.e_phnum;
    to.e_shentsize = from.e_shentsize;
    to.e_shnum = from.e_shnum;
    to.e_shstrndx = from.e_shstrndx;
    return to;
}

// What section 0 has instead of the header when a count does not fit there.
struct LargeCounts {
    u64 sections;
    u64 nameSection;
    u64 programHeaders;
};
template<class Shdr>
LargeCounts largeCounts(const Shdr& section) {
    return {section.sh_size, section.sh_link, section.sh_info};
}

} // namespace

namespace memdata {

bool ElfImage::refuse(std::string reason) {
    reason_ = std::move(reason);
    return false;
}

bool ElfImage::open(const char* bytes, u64 byteCount, int elfClass) {
    bytes_ = bytes;
    byteCount_ = byteCount;
    const bool isWide = elfClass == ELFCLASS64;
    headerBytes_ = isWide ? sizeof(Elf64_Ehdr) : sizeof(Elf32_Ehdr);
    programHeaderBytes_ = isWide ? sizeof(Elf64_Phdr) : sizeof(Elf32_Phdr);
    sectionHeaderBytes_ = isWide ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr);

    if (byteCount < headerBytes_)
        return refuse(formatted("it ends inside its header, after %lld of %lld bytes", byteCount, headerBytes_));
    if (std::memcmp(bytes, ELFMAG, SELFMAG) != 0) return refuse("it does not begin as an ELF file does");
    if (bytes[EI_CLASS] != elfClass) return refuse(formatted("its class %ld is unknown", u8(bytes[EI_CLASS])));
    const auto encoding = static_cast<u8>(bytes[EI_DATA]);
    if (encoding != ELFDATA2LSB && encoding != ELFDATA2MSB)
        return refuse(formatted("its byte order %ld is unknown", encoding));
    if (bytes[EI_VERSION] != EV_CURRENT) return refuse(formatted("its version %ld is unknown", u8(bytes[EI_VERSION])));

    if (!readCounts_(encoding) || !checkTables_()) return false;
    // From here on the tables that the headers name lie in the file: libelf makes room for as many records as it
    // is told.
    elf_version(EV_CURRENT);
    elf_.reset(elf_memory(const_cast<char*>(bytes), byteCount)); // not written to
    if (elf_ == nullptr) return refuse(elf_errmsg(-1));
    size_t programHeaders = 0;
    size_t sections = 0;
    if (elf_getphdrnum(elf_.get(), &programHeaders) != 0 || elf_getshdrnum(elf_.get(), &sections) != 0)
        return refuse(elf_errmsg(-1));
    if (programHeaders != programHeaderCount_ || sections != sectionCount_)
        return refuse("its header and its tables disagree about their sizes");
    GElf_Phdr first;
    if (programHeaders > 0 && gelf_getphdr(elf_.get(), 0, &first) == nullptr) return refuse(elf_errmsg(-1));
    return checkSections_();
}

// Counts that do not fit into the header stand in section 0.
bool ElfImage::readCounts_(unsigned encoding) {
    const bool isWide = headerBytes_ == sizeof(Elf64_Ehdr);
    header_ = isWide ? wideHeader(recordAt<Elf64_Ehdr>(bytes_, ELF_T_EHDR, encoding, elf64_xlatetom))
                     : wideHeader(recordAt<Elf32_Ehdr>(bytes_, ELF_T_EHDR, encoding, elf32_xlatetom));
    programHeaderCount_ = header_.e_phnum;
    sectionCount_ = header_.e_shnum;
    nameSection_ = header_.e_shstrndx;
    if (header_.e_shoff == 0) {
        if (sectionCount_ == 0) return true;
        return refuse(formatted("its header names %lld section headers, but no place for them", sectionCount_));
    }
    if (!liesInside(header_.e_shoff, sectionHeaderBytes_, byteCount_))
        return refuse(formatted("its section headers at offset 0x%llX lie behind its end", header_.e_shoff));
    const char* first = bytes_ + header_.e_shoff;
    const LargeCounts large = isWide ? largeCounts(recordAt<Elf64_Shdr>(first, ELF_T_SHDR, encoding, elf64_xlatetom))
                                     : largeCounts(recordAt<Elf32_Shdr>(first, ELF_T_SHDR, encoding, elf32_xlatetom));
    if (sectionCount_ == 0) sectionCount_ = large.sections;
    if (nameSection_ == SHN_XINDEX) nameSection_ = large.nameSection;
    if (programHeaderCount_ == PN_XNUM && sectionCount_ > 0) programHeaderCount_ = large.programHeaders;
    return true;
}

bool ElfImage::checkTables_() {
    if (programHeaderCount_ > 0) {
        if (header_.e_phentsize != programHeaderBytes_)
            return refuse(formatted(
                "its program headers have %lld bytes each, not %lld", u64{header_.e_phentsize}, programHeaderBytes_));
        if (header_.e_phoff == 0)
            return refuse(
                formatted("its header names %lld program headers, but no place for them", programHeaderCount_));
        if (!tableLiesInside(header_.e_phoff, programHeaderCount_, programHeaderBytes_, byteCount_))
            return refuse(formatted(
                "its %lld program headers at offset 0x%llX run past its end", programHeaderCount_, header_.e_phoff));
    }
    if (sectionCount_ > 0) {
        if (header_.e_shentsize != sectionHeaderBytes_)
            return refuse(formatted(
                "its section headers have %lld bytes each, not %lld", u64{header_.e_shentsize}, sectionHeaderBytes_));
        if (!tableLiesInside(header_.e_shoff, sectionCount_, sectionHeaderBytes_, byteCount_))
            return refuse(formatted(
                "its %lld section headers at offset 0x%llX run past its end", sectionCount_, header_.e_shoff));
    }
    return true;
}

bool ElfImage::checkSections_() {
    for (u64 i = 0; i < sectionCount_; ++i) {
        GElf_Shdr section;
        if (gelf_getshdr(elf_getscn(elf_.get(), i), &section) == nullptr) return refuse(elf_errmsg(-1));
        if (hasContents(section) && !liesInside(section.sh_offset, section.sh_size, byteCount_))
            return refuse(formatted("section %lld, 0x%llX bytes at offset 0x%llX, runs past its end", i,
                section.sh_size, section.sh_offset));
    }
    if (nameSection_ >= sectionCount_) nameSection_ = 0;
    if (nameSection_ == 0) return true;
    const GElf_Shdr names = sectionHeader(nameSection_);
    if (!hasContents(names)) return true;
    names_ = {bytes_ + names.sh_offset, names.sh_size};
    names_ = names_.substr(0, names_.rfind('\0') + 1); // npos + 1 is 0: every name that begins in here ends in here
    return true;
}

GElf_Phdr ElfImage::programHeader(u64 index) const {
    GElf_Phdr segment{};
    gelf_getphdr(elf_.get(), static_cast<int>(index), &segment);
    return segment;
}

GElf_Shdr ElfImage::sectionHeader(u64 index) const {
    GElf_Shdr section{};
    gelf_getshdr(elf_getscn(elf_.get(), index), &section);
    return section;
}

const char* ElfImage::sectionName(u64 index) const {
    const GElf_Shdr section = sectionHeader(index);
    return section.sh_name < names_.size() ? names_.data() + section.sh_name : "";
}

} // namespace memdata

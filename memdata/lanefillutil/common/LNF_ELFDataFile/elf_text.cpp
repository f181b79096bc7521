// elf_text.cpp - the records of ELF headers in clear text.
// SPDX-License-Identifier: Apache-2.0
#include "LNF_ELFDataFile/elf_data.h"
#include "LNF_ELFDataFile/elf_image.h"
#include "LNF_ELFDataFile/elf_names.h"
#include "StringUtils/format.h"

#include <algorithm>
#include <span>

namespace {

using namespace memdata;

constexpr size_t kMAX_NAME_CHARACTERS = 256; // of a section, in a dump

// One line of a record, ahead of it the end of the line before.
void line(std::ostream& out, const char* label, const std::string& value) {
    out << formatted("\n  %-17s ", label) << value;
}

std::string hexText(u64 value) {
    return formatted("0x%llX", value);
}

std::string named(u64 number, std::span<const ElfNameType> names) {
    const auto found = std::ranges::find(names, number, &ElfNameType::number);
    return found == names.end() ? std::to_string(number) : std::to_string(number) + ", " + found->name;
}

std::string flagsText(u64 flags, std::span<const ElfNameType> names) {
    std::string text = hexText(flags);
    const char* separator = ", ";
    for (const ElfNameType& flag : names) {
        if ((flags & flag.number) == 0) continue;
        text += std::string(separator) + flag.name;
        separator = " ";
    }
    return text;
}

// A name as a file may hold it, on one line of a listing.
std::string printableName(const char* name) {
    std::string text;
    for (; *name != '\0' && text.size() < kMAX_NAME_CHARACTERS; ++name)
        text += *name >= ' ' && *name <= '~' ? *name : '?';
    return *name == '\0' ? text : text + "...";
}

std::string tableText(u64 count, u64 recordBytes, u64 offset) {
    return count == 0 ? "none" : formatted("%lld of %lld bytes at offset 0x%llX", count, recordBytes, offset);
}

} // namespace

void ElfData::dumpELFHdrInfo(std::ostream& out) const {
    const GElf_Ehdr& header = image_->header();
    out << "ELF header";
    line(out, "Class", header.e_ident[EI_CLASS] == ELFCLASS64 ? "64-bit" : "32-bit");
    line(out, "Byte order", header.e_ident[EI_DATA] == ELFDATA2MSB ? "big-endian" : "little-endian");
    line(out, "System interface", std::to_string(header.e_ident[EI_OSABI]));
    line(out, "Type", named(header.e_type, kFILE_TYPE_NAMES));
    line(out, "Machine", named(header.e_machine, kMACHINE_NAMES));
    line(out, "Flags", hexText(header.e_flags));
    line(out, "Entry", hexText(header.e_entry));
    line(out, "Program headers", tableText(image_->programHeaderCount(), image_->programHeaderBytes(), header.e_phoff));
    line(out, "Section headers", tableText(image_->sectionCount(), image_->sectionHeaderBytes(), header.e_shoff));
    line(
        out, "Section names", image_->nameSection() == 0 ? "none" : "section " + std::to_string(image_->nameSection()));
}

void ElfData::dumpELFProgramHdr(std::ostream& out, u64 index) const {
    if (index >= image_->programHeaderCount()) return;
    const GElf_Phdr segment = image_->programHeader(index);
    out << "Program header " << index;
    line(out, "Type", named(segment.p_type, kSEGMENT_TYPE_NAMES));
    line(out, "Flags", flagsText(segment.p_flags, kSEGMENT_FLAG_NAMES));
    line(out, "Offset", hexText(segment.p_offset));
    line(out, "Virtual address", hexText(segment.p_vaddr));
    line(out, "Physical address", hexText(segment.p_paddr));
    line(out, "Size in file", hexText(segment.p_filesz));
    line(out, "Size in memory", hexText(segment.p_memsz));
    line(out, "Alignment", hexText(segment.p_align));
}

void ElfData::dumpELFSectionHdr(std::ostream& out, u64 index) const {
    if (index >= image_->sectionCount()) return;
    const GElf_Shdr section = image_->sectionHeader(index);
    out << "Section header " << index;
    line(out, "Name", "\"" + printableName(image_->sectionName(index)) + "\"");
    line(out, "Type", named(section.sh_type, kSECTION_TYPE_NAMES));
    line(out, "Flags", flagsText(section.sh_flags, kSECTION_FLAG_NAMES));
    line(out, "Address", hexText(section.sh_addr));
    line(out, "Offset", hexText(section.sh_offset));
    line(out, "Size", hexText(section.sh_size));
    line(out, "Link", std::to_string(section.sh_link));
    line(out, "Information", std::to_string(section.sh_info));
    line(out, "Alignment", hexText(section.sh_addralign));
    line(out, "Size of an entry", hexText(section.sh_entsize));
}

void ElfData::dumpELF(std::ostream& out) const {
    dumpELFHdrInfo(out);
    for (u64 i = 0; i < image_->programHeaderCount(); ++i) {
        out << "\n\n";
        dumpELFProgramHdr(out, i);
    }
    for (u64 i = 0; i < image_->sectionCount(); ++i) {
        out << "\n\n";
        dumpELFSectionHdr(out, i);
    }
}

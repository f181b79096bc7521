// elf_builder.cpp - see elf_builder.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/elf_builder.h"

#include <cstddef>
#include <elf.h>
#include <stdexcept>

namespace memdata::testing {

namespace {

#define FIELD(Record, field)                                                                                           \
    {                                                                                                                  \
#field, {offsetof(Elf32_##Record, field), offsetof(Elf64_##Record, field) }, {                                 \
            sizeof(Elf32_##Record::field), sizeof(Elf64_##Record::field)                                               \
        }                                                                                                              \
    }

const std::vector<ElfField> kFIELDS = {
    FIELD(Ehdr, e_type),
    FIELD(Ehdr, e_machine),
    FIELD(Ehdr, e_version),
    FIELD(Ehdr, e_entry),
    FIELD(Ehdr, e_phoff),
    FIELD(Ehdr, e_shoff),
    FIELD(Ehdr, e_flags),
    FIELD(Ehdr, e_ehsize),
    FIELD(Ehdr, e_phentsize),
    FIELD(Ehdr, e_phnum),
    FIELD(Ehdr, e_shentsize),
    FIELD(Ehdr, e_shnum),
    FIELD(Ehdr, e_shstrndx),
    FIELD(Phdr, p_type),
    FIELD(Phdr, p_flags),
    FIELD(Phdr, p_offset),
    FIELD(Phdr, p_vaddr),
    FIELD(Phdr, p_paddr),
    FIELD(Phdr, p_filesz),
    FIELD(Phdr, p_memsz),
    FIELD(Phdr, p_align),
    FIELD(Shdr, sh_name),
    FIELD(Shdr, sh_type),
    FIELD(Shdr, sh_flags),
    FIELD(Shdr, sh_addr),
    FIELD(Shdr, sh_offset),
    FIELD(Shdr, sh_size),
    FIELD(Shdr, sh_link),
    FIELD(Shdr, sh_info),
    FIELD(Shdr, sh_addralign),
    FIELD(Shdr, sh_entsize),
};

bool isWide(const Bytes& file) {
    return file.at(EI_CLASS) == ELFCLASS64;
}

const ElfField& fieldNamed(const std::string& name) {
    for (const ElfField& field : kFIELDS)
        if (name == field.name) return field;
    throw std::invalid_argument("no ELF field " + name);
}

u64 roundedUp(u64 value, u64 unit) {
    return (value + unit - 1) / unit * unit;
}

void append(Bytes* to, const Bytes& bytes) {
    to->insert(to->end(), bytes.begin(), bytes.end());
}

struct Placed { // a section header to come
    std::string name;
    u64 type, flags, address, offset, size;
};

} // namespace

const std::vector<ElfField>& elfFields() {
    return kFIELDS;
}

size_t elfOffset(const Bytes& file, const std::string& name, size_t index) {
    const bool wide = isWide(file);
    const size_t base = fieldNamed(name).offset[wide ? 1 : 0];
    if (name.starts_with("p_"))
        return base + elfField(file, "e_phoff") + index * (wide ? sizeof(Elf64_Phdr) : sizeof(Elf32_Phdr));
    if (name.starts_with("sh_"))
        return base + elfField(file, "e_shoff") + index * (wide ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr));
    return base;
}

u64 elfField(const Bytes& file, const std::string& name, size_t index) {
    const size_t offset = elfOffset(file, name, index);
    const size_t count = fieldNamed(name).bytes[isWide(file) ? 1 : 0];
    const bool isBig = file.at(EI_DATA) == ELFDATA2MSB;
    u64 value = 0;
    for (size_t i = 0; i < count; ++i) value = value << 8 | file.at(offset + (isBig ? i : count - 1 - i));
    return value;
}

Bytes setElfField(Bytes file, const std::string& name, u64 value, size_t index) {
    const size_t offset = elfOffset(file, name, index);
    const size_t count = fieldNamed(name).bytes[isWide(file) ? 1 : 0];
    const bool isBig = file.at(EI_DATA) == ELFDATA2MSB;
    for (size_t i = 0; i < count; ++i, value >>= 8)
        file.at(offset + (isBig ? count - 1 - i : i)) = static_cast<u8>(value);
    return file;
}

Bytes elfFile(const ElfFile& file) {
    const bool wide = file.bits == 64;
    const size_t headerBytes = wide ? sizeof(Elf64_Ehdr) : sizeof(Elf32_Ehdr);
    const size_t segmentHeaderBytes = wide ? sizeof(Elf64_Phdr) : sizeof(Elf32_Phdr);
    const size_t sectionHeaderBytes = wide ? sizeof(Elf64_Shdr) : sizeof(Elf32_Shdr);

    Bytes out(headerBytes + file.segments.size() * segmentHeaderBytes);
    const u8 ident[] = {0x7F, 'E', 'L', 'F', static_cast<u8>(wide ? ELFCLASS64 : ELFCLASS32),
        static_cast<u8>(file.isBigEndian ? ELFDATA2MSB : ELFDATA2LSB), EV_CURRENT};
    std::copy(std::begin(ident), std::end(ident), out.begin());
    const auto set = [&out](const char* field, u64 value, size_t index = 0) {
        out = setElfField(std::move(out), field, value, index);
    };
    set("e_type", file.type);
    set("e_machine", file.machine);
    set("e_version", EV_CURRENT);
    set("e_entry", file.entry);
    set("e_phoff", file.segments.empty() ? 0 : headerBytes);
    set("e_ehsize", headerBytes);
    set("e_phentsize", segmentHeaderBytes);
    set("e_phnum", file.segments.size());
    set("e_shentsize", sectionHeaderBytes);

    std::vector<Placed> placed = {{"", SHT_NULL, 0, 0, 0, 0}};
    for (size_t i = 0; i < file.segments.size(); ++i) {
        const ElfSegment& segment = file.segments[i];
        const u64 offset = std::max(roundedUp(out.size(), 4), segment.headerRoom);
        const u64 head = segment.headerRoom; // bytes of the segment ahead of its contents
        const u64 begin = head != 0 ? 0 : offset;
        out.resize(offset);
        append(&out, segment.bytes);
        set("p_type", segment.type, i);
        set("p_flags", PF_R | PF_X, i);
        set("p_offset", begin, i);
        set("p_vaddr", segment.virtualAddress.value_or(segment.address) - head, i);
        set("p_paddr", segment.address - head, i);
        set("p_filesz", out.size() - begin, i);
        set("p_memsz", out.size() - begin + segment.bssBytes, i);
        set("p_align", 4, i);
        if (!segment.section.empty())
            placed.push_back({segment.section, SHT_PROGBITS, SHF_ALLOC | SHF_EXECINSTR,
                segment.virtualAddress.value_or(segment.address), offset, segment.bytes.size()});
    }
    if (!file.hasSections) return out;

    for (const ElfSection& section : file.sections) {
        placed.push_back({section.name, section.type, 0, section.address, out.size(),
            section.bytes.empty() ? section.size : section.bytes.size()});
        append(&out, section.bytes);
    }
    placed.push_back({".shstrtab", SHT_STRTAB, 0, 0, out.size(), 0});
    std::vector<u64> names;
    for (const Placed& section : placed) {
        names.push_back(out.size() - placed.back().offset);
        append(&out, {section.name.begin(), section.name.end()});
        out.push_back(0);
    }
    placed.back().size = out.size() - placed.back().offset;

    out.resize(roundedUp(out.size(), 8));
    set("e_shoff", out.size());
    set("e_shnum", placed.size());
    set("e_shstrndx", placed.size() - 1);
    out.resize(out.size() + placed.size() * sectionHeaderBytes);
    for (size_t i = 0; i < placed.size(); ++i) {
        set("sh_name", names[i], i);
        set("sh_type", placed[i].type, i);
        set("sh_flags", placed[i].flags, i);
        set("sh_addr", placed[i].address, i);
        set("sh_offset", placed[i].offset, i);
        set("sh_size", placed[i].size, i);
        set("sh_addralign", i == 0 ? 0 : 1, i);
    }
    return out;
}

} // namespace memdata::testing

// elf_builder.h - ELF files for tests, sound unless a test spoils a field, of 32 and 64 bits in either byte order.
//
//   Bytes file = elfFile({.segments = {{.address = 0x1000, .bytes = {1, 2, 3}}}});
//   Bytes wide = elfFile({.bits = 64, .isBigEndian = true, .machine = 40, .segments = {...}});
//   Bytes damaged = setElfField(file, "p_filesz", 65535);       // of program header 0
//   Bytes other = setElfField(file, "sh_type", 8, 2);           // of section header 2
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_ELF_BUILDER_H
#define MEMDATA_TESTS_SUPPORT_ELF_BUILDER_H

#include "support/damage.h"

#include <optional>
#include <string>
#include <vector>

namespace memdata::testing {

struct ElfSegment {
    u64 address = 0; // physical; virtual too, unless that is given
    Bytes bytes = {};
    u64 bssBytes = 0; // memory behind the bytes
    std::optional<u64> virtualAddress = std::nullopt;
    std::string section = ".text"; // allocated, over the bytes; "" for none
    u32 type = 1;                  // loadable
    u64 headerRoom = 0;            // not 0: begins at offset 0, the bytes at this offset; address is that of the bytes
};

struct ElfSection { // that no segment holds
    std::string name;
    Bytes bytes = {};
    u32 type = 1;
    u64 address = 0;
    u64 size = 0; // without bytes
};

struct ElfFile {
    unsigned bits = 32;
    bool isBigEndian = false;
    u32 type = 2;      // executable
    u32 machine = 243; // RISC-V
    u64 entry = 0;
    std::vector<ElfSegment> segments = {};
    std::vector<ElfSection> sections = {};
    bool hasSections = true;
};

// ELF header, program headers, segments, sections, their names, section headers. Section 0 is empty, those of
// segments follow in order, then the others, last ".shstrtab". The room for headers of a segment must hold them.
Bytes elfFile(const ElfFile& file);

struct ElfField {
    const char* name; // "e_phoff", "p_offset", "sh_type": the prefix tells the record
    size_t offset[2]; // in the record of 32 and of 64 bits
    size_t bytes[2];
};
const std::vector<ElfField>& elfFields(); // of all records but e_ident

// By the file's own class, byte order and table offsets; index counts headers of the field's kind. A name that does
// not exist throws std::invalid_argument.
size_t elfOffset(const Bytes& file, const std::string& field, size_t index = 0);
u64 elfField(const Bytes& file, const std::string& field, size_t index = 0);
Bytes setElfField(Bytes file, const std::string& field, u64 value, size_t index = 0);

} // namespace memdata::testing

#endif

// elf_image.h - the bytes of an ELF file behind libelf, with all that its headers claim checked against the file.
//
// What has to hold, so that everything else can be read without another check:
//   - the identification: magic number, class, byte order, version 1
//   - program headers and section headers have the size of their class and lie inside the file
//   - the contents of every section lie inside the file
// Numbers come in the machine's byte order and 64 bits wide, whatever the file has.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LNF_ELF_DATA_FILE_ELF_IMAGE_H
#define MEMDATA_LNF_ELF_DATA_FILE_ELF_IMAGE_H

#include "platform/BasicTypes.h"

#include <gelf.h>
#include <memory>
#include <string>
#include <string_view>

namespace memdata {

class ElfImage {
public:
    // The bytes stay the caller's and must live as long as the image. Without a result of true the reason says, in
    // words that follow "NAME: ", what is wrong, and nothing else may be called. elfClass: ELFCLASS32 or ELFCLASS64,
    // which the file must have.
    bool open(const char* bytes, u64 byteCount, int elfClass);
    const std::string& failureReason() const { return reason_; }

    const char* bytes() const { return bytes_; }
    u64 byteCount() const { return byteCount_; }
    const GElf_Ehdr& header() const { return header_; }
    u64 headerBytes() const { return headerBytes_; }               // of the ELF header
    u64 programHeaderBytes() const { return programHeaderBytes_; } // of one
    u64 sectionHeaderBytes() const { return sectionHeaderBytes_; } // of one

    // Counts beyond 16 bits, which stand in section 0, included. Indexes are below the count.
    u64 programHeaderCount() const { return programHeaderCount_; }
    u64 sectionCount() const { return sectionCount_; }
    u64 nameSection() const { return nameSection_; } // index of the section with names; 0 for none
    GElf_Phdr programHeader(u64 index) const;
    GElf_Shdr sectionHeader(u64 index) const;
    // Inside the file and terminated; "" where the file has none.
    const char* sectionName(u64 index) const;

    // A text for messages: "it ends inside ...".
    bool refuse(std::string reason);

private:
    bool readCounts_(unsigned encoding);
    bool checkTables_();
    bool checkSections_();

    struct CloseElf {
        void operator()(Elf* elf) const { elf_end(elf); }
    };

    const char* bytes_ = nullptr;
    u64 byteCount_ = 0;
    std::unique_ptr<Elf, CloseElf> elf_;
    GElf_Ehdr header_{};
    u64 headerBytes_ = 0;
    u64 programHeaderBytes_ = 0;
    u64 sectionHeaderBytes_ = 0;
    u64 programHeaderCount_ = 0;
    u64 sectionCount_ = 0;
    u64 nameSection_ = 0;
    std::string_view names_; // contents of the section with names
    std::string reason_;
};

// Whether the section has contents in the file.
inline bool hasContents(const GElf_Shdr& section) {
    return section.sh_type != SHT_NULL && section.sh_type != SHT_NOBITS && section.sh_size > 0;
}

} // namespace memdata

#endif

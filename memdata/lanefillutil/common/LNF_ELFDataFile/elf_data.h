// elf_data.h - what of an ELF file is data: its loadable segments, its sections, its entry.
//
// Program sections are the loadable segments (PT_LOAD), in the order of the program headers, other segments not counted.
//   address  p_paddr: where the loader puts the bytes. When it is 0 in all loadable segments, p_vaddr in all of them.
//   size     p_filesz. Memory beyond it (bss) is no data: nothing is stored there.
//   head     Where a segment begins with the ELF header or the program headers, these are no data, and neither is
//            what stands between them and the first allocated section in the segment: the program section starts
//            with that section. Without such a section it starts behind the headers.
// Refused, besides what elf_image.h refuses: bytes of a segment outside of the file; addresses that run past the last
// one of the class; segments that hold the same bytes again and again (kMAX_DATA_BYTES_PER_FILE_BYTE).
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LNF_ELF_DATA_FILE_ELF_DATA_H
#define MEMDATA_LNF_ELF_DATA_FILE_ELF_DATA_H

#include "lanefillCore/records/data_file.h"

#include <memory>
#include <ostream>
#include <string>

namespace memdata {
class ElfImage;

// Segments may share bytes of the file, but all together hold at most so many times its size.
inline constexpr u64 kMAX_DATA_BYTES_PER_FILE_BYTE = 16;
} // namespace memdata

// The part that has no width. Readers are tracked records: new gives null when memory is exhausted.
class ElfData {
public:
    ElfData();
    virtual ~ElfData();
    ElfData& operator=(ElfData&&) = delete; // neither copied nor moved
    static void* operator new(size_t byteCount) noexcept;
    static void operator delete(void* reader);

    // Takes an ELF file of the reader's class, in either byte order, in place: the bytes must live as long as the
    // reader and are not written to. Called once. Memory beside them: a few records a header. Status: 0; 2 it is no
    // such file, failureReason() says why; 7 no memory, reported.
    int readElfData(const char* bytes, u64 byteCount);
    // The same with true for 0.
    bool readAndPopulateElfData(const char* bytes, u64 byteCount) { return readElfData(bytes, byteCount) == 0; }
    // Follows "NAME: ".
    const std::string& failureReason() const;

    u32 getMachine() const;
    u64 getProgramSectionCount() const { return programSectionCount_; }
    u64 getProgramHeaderCount() const; // of all kinds
    u64 getSectionCount() const;       // with section 0, which is empty
    const char* getSectionName(u64 index) const;

    // Records in clear text, lines of two columns, without a line end behind the last. An index that does not exist
    // writes nothing.
    void dumpELFHdrInfo(std::ostream& out) const;
    void dumpELFProgramHdr(std::ostream& out, u64 index) const;
    void dumpELFSectionHdr(std::ostream& out, u64 index) const;
    // All of them, a blank line ahead of each but the first.
    void dumpELF(std::ostream& out) const;

protected:
    virtual int elfClass_() const = 0;
    // Takes the facts of the image: 0, 2 or 7 as readElfData.
    virtual int populate_() = 0;

    std::unique_ptr<memdata::ElfImage> image_; // never null
    u64 programSectionCount_ = 0;
};

// Address: unsigned int for files of 32 bits, unsigned long for those of 64.
template<class Address>
class ElfXData : public ElfData {
public:
    ElfXData() = default;
    ~ElfXData() override;

    // Status 0, or 3 for an index that does not exist. The kind is p_type or sh_type. A section without contents in
    // the file (bss, section 0) has size 0 and null data.
    int getProgramSectionData(u64 index, DataFileSectionTypeX<Address>* section) const;
    int getSectionData(u64 index, DataFileSectionTypeX<Address>* section) const;
    // e_entry as it stands, also when it is 0: software may well start there.
    const BootAddressTypeX<Address>& getEntry() const { return entry_; }
    // Of all program sections of non-zero size, inclusive; all ones and 0 when there are none.
    void getProgramAddressRange(Address* low, Address* high) const;

private:
    int elfClass_() const override;
    int populate_() override;

    DataFileSectionTypeX<Address>* programSections_ = nullptr; // a tracked array
    BootAddressTypeX<Address> entry_{};
    Address lowestAddress_ = static_cast<Address>(-1);
    Address highestAddress_ = 0;
};

extern template class ElfXData<unsigned int>;
extern template class ElfXData<unsigned long>;

#endif

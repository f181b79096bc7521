// LNF_ELFDataFile.h - ELF files, of 32 and 64 bits and in both byte orders, behind the data-file interface.
//
// What of the file counts as data, and at which address, stands in elf_data.h: p_paddr (p_vaddr when all physical
// addresses are 0) and the bytes in the file, without headers at a segment's head and without bss.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LNF_ELF_DATA_FILE_H
#define MEMDATA_LNF_ELF_DATA_FILE_H

#include "FileUtils/descriptor.h"
#include "LNF_ELFDataFile/elf_data.h"
#include "lanefillCore/records/data_file.h"
#include "platform/file_image.h"

// Bit of the dump mask that asks for the headers of the ELF file.
inline constexpr u32 kDUMP_ELF_HEADERS = 4;

// An engine lifetime surrounds its use. Readers are tracked records: new gives null when memory is exhausted.
class LNF_ELFDataFile : public LNF_DataFile {
public:
    LNF_ELFDataFile() = default;
    ~LNF_ELFDataFile() override;
    static void* operator new(size_t byteCount) noexcept;
    static void operator delete(void* reader);

    unsigned getAddressWidth() const override;
    // Maps the file that the spec names; a packed one is unpacked. macroDefines and flags mean nothing here. The spec
    // must live as long as the object. Status: 0; 1 with kERROR_OPENING_FILE; 2 with an alert that names the file and
    // says what is wrong with it; 7 no memory, reported. After a failure, and before, there are no sections.
    int OpenDataFile(fileSpecType* spec, const char* macroDefines, unsigned flags) override;
    // Takes a copy of an input that is one buffer (kBINARY_READ_WHOLE), which stays the caller's and may be closed.
    // Status as above; 3 for null or for another kind of file.
    virtual int OpenDataFile(fileIODescriptor* source);

    const char* GetDataFileName() const override; // "" before it is opened
    const BootAddressTypeX<unsigned long>* GetDataFileStatupAddress() override;
    int GetProgramSectionAddressRange(unsigned long* low, unsigned long* high) override;
    // Loadable segments; bytes are not to be written to.
    unsigned long GetProgramSectionCount() override;
    int GetProgramSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) override;
    unsigned long GetSectionCount() override;
    int GetSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) override;
    const char* GetSectionName(unsigned long index) override; // null for an index that does not exist
    int IsMatchingProcessorType(unsigned long mask) override;
    int CheckUnchanged() override;

    // Write to an open output. Status: 0; 3 nothing is open here; 7; else that of the first write that failed.
    // DumpELF writes a banner, and with kDUMP_ELF_HEADERS all headers.
    int DumpELF(fileIODescriptor* target, u32 mask);
    // All program sections as a MEM text: addresses of at least 8 digits, lines of 32 bytes. Sections of size 0 are
    // passed over, their numbers too. The mask means nothing here.
    int DumpELFAsMEM(fileIODescriptor* target, u32 mask);

private:
    int read_(const char* name, const char* bytes, u64 byteCount);
    int makeReader_(const char* name, const char* bytes, u64 byteCount);
    void closeImage_();
    const ElfXData<unsigned int>* narrow_() const;
    const ElfXData<unsigned long>* wide_() const;
    int getEitherSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section, bool isProgram) const;

    ElfData* elf = nullptr;           // owned
    fileIODescriptor* file = nullptr; // over the image in memory; owned
    memdata::FileImage image_;        // of a file on disk
    char* copy_ = nullptr;            // of a descriptor's bytes; a tracked block
    BootAddressTypeX<unsigned long> entry_{};
};

#endif

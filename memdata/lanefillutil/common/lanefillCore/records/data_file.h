// data_file.h - a software image behind one interface: sections with addresses, and a start-up address.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_DATA_FILE_H
#define MEMDATA_LANEFILL_CORE_RECORDS_DATA_FILE_H

#include "FileUtils/file_spec.h"
#include "lanefillCore/records/data_addresses.h"

// What a data file gives out per section. The data belongs to the file.
template<class Address>
struct DataFileSectionTypeX {
    Address address; // of the first byte; a word index for words of other widths
    Address reserved;
    unsigned char* data;
    Address size;     // bytes
    Address bitCount; // bits of data; at most size * 8
    Address kind;     // a word of the file's own

    // Ours.
    bool isMapped = false; // the data is part of a mapped file: releaseMappedPages is allowed
};

inline constexpr u32 kADDRESS_WIDTH_UNKNOWN = 0;
inline constexpr u32 kADDRESS_WIDTH_32 = 1;
inline constexpr u32 kADDRESS_WIDTH_64 = 2;

class LNF_DataFile {
public:
    LNF_DataFile() = default;
    virtual ~LNF_DataFile() = default;
    LNF_DataFile& operator=(LNF_DataFile&&) = delete; // neither copied nor moved

    // One of kADDRESS_WIDTH_...
    virtual unsigned getAddressWidth() const { return addressWidth; }
    // Status: 0; 1 the file cannot be opened; 2 it is damaged; each with its alert.
    virtual int OpenDataFile(fileSpecType* spec, const char* macroDefines, unsigned flags) = 0;
    virtual const char* GetDataFileName() const = 0;
    // Null when the file has none. Belongs to the file.
    virtual const BootAddressTypeX<unsigned long>* GetDataFileStatupAddress() = 0;
    // Lowest and highest address of all program sections, inclusive.
    virtual int GetProgramSectionAddressRange(unsigned long* low, unsigned long* high) = 0;
    virtual unsigned long GetProgramSectionCount() = 0;
    // Status: 0; 3 an index that does not exist.
    virtual int GetProgramSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) = 0;
    virtual unsigned long GetSectionCount() = 0;
    virtual int GetSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) = 0;
    virtual const char* GetSectionName(unsigned long index) = 0;
    // 0 when the file's processor is among the mask's processor types, or when it tells none; else 23.
    virtual int IsMatchingProcessorType(unsigned long mask) { return static_cast<void>(mask), 0; }

    // Asked when all data was taken: whether it was that of one state of the file. Status 0; 2 with an alert that names
    // the file.
    virtual int CheckUnchanged() { return 0; }

    // Of the file's name, without its dot; empty when there is none.
    const char* GetDataFileExtension() const { return fileSpec == nullptr ? "" : fileSpec->extension; }

protected:
    u32 addressWidth = kADDRESS_WIDTH_UNKNOWN; // until set
    fileSpecType* fileSpec = nullptr;          // the name under which the file was opened; not owned
};

#endif

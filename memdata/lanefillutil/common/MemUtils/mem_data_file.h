// mem_data_file.h - a MEM, COE or MIF text behind the interface of data files.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_MEM_UTILS_MEM_DATA_FILE_H
#define MEMDATA_MEM_UTILS_MEM_DATA_FILE_H

#include "MemUtils/data_block.h"
#include "ParseUtils/streams.h"
#include "lanefillCore/records/data_file.h"

class LNF_MEMDataFile : public LNF_DataFile {
public:
    // radix: that the values have from the start of the text; 0 means 16.
    explicit LNF_MEMDataFile(unsigned radix);
    ~LNF_MEMDataFile() override;

    // Reads the whole text: its sections stand in its order, and in memory until the object goes.
    //   spec          a name without an extension takes "mem"; data that it holds is read in place of the file. Must
    //                 outlive the object
    //   macroDefines  directives that are read first; may be null
    // Status 0; 1 the file cannot be opened; 17 it is empty; 2 it is damaged or has no section; 7; each with its
    // alert. No sections unless the status is 0.
    int OpenDataFile(fileSpecType* spec, const char* macroDefines, unsigned flags) override;
    const char* GetDataFileName() const override; // "" before it is opened
    const BootAddressTypeX<unsigned long>* GetDataFileStatupAddress() override { return nullptr; } // texts tell none
    // Status 0; 3 no file is open.
    int GetProgramSectionAddressRange(unsigned long* low, unsigned long* high) override;
    unsigned long GetProgramSectionCount() override;
    int GetProgramSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) override;
    // Of sections other than those of the program there are none.
    unsigned long GetSectionCount() override { return 0; }
    int GetSectionData(unsigned long, DataFileSectionTypeX<unsigned long>*) override { return 0; }
    const char* GetSectionName(unsigned long) override { return nullptr; }
    int IsMatchingProcessorType(unsigned long) override { return 0; }

private:
    int openText_(const char* macroDefines);
    int readText_();
    void close_();

    parse_stream* stream_ = nullptr; // while the text is read
    DataStructureBlockType* block_ = nullptr;
    u32 defaultRadix_;
};

#endif

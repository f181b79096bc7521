// data_files.h - the data files of a run: opened, checked, cut into segments, one after the other.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_DATA_FILES_H
#define MEMDATA_LANEFILL_CORE_DATA_FILES_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/records/data_file.h"
#include "lanefillCore/records/option_record.h"

// Translates every data file of the record into the mapping, in order, until one fails. is64Bit: whether the
// last one has 64-bit addresses. A file without a start address that follows one with it continues behind it.
// progress (may be null) is told how far the reading and the translation of each file are, and may end the run: 15.
int transform_data_files(CmdStringOptionsType* options, AddressMappingType* mapping, bool& is64Bit,
    const char* macroDefines, ProgressSinkType progress);

// Opens a data file with the reader of its format. *file: the caller's, to delete; null on a failure.
// Status: 0; 1 it cannot be opened or its format is no data file's; else the reader's.
int open_data_file(fileSpecType* spec, const char* macroDefines, unsigned flags, LNF_DataFile** file);

// A file without program sections is an error (status 2) unless the map comes from the design. Other sections, which
// only some formats have, do not count.
int prepare_data_file(LNF_DataFile* file, BDSwitchDataType* request, AddressMappingType* mapping);

// Translates all segments of a file, until one fails. The file has at least one. Status: 0; 23 the file's
// processor is not the map's; else the segment's.
int transform_data_file_segments(LNF_DataFile* file, BDSwitchDataType* request, AddressMappingType* mapping,
    StartAddressTypeX<unsigned long>* nextStart, bool ignoreUnmapped);

namespace memdata {

// What goes from one data file of a run to the next.
struct DataFileWalk {
    AddressSpaceIteratorType iterator{-1, 0, 0, nullptr, nullptr, 0}; // of files that take the spaces one by one
    StartAddressTypeX<unsigned long> nextStart{};                     // behind the last segment, once a start was named
};

// Translates one opened file: notes its name, selects the spaces that it may fill, stores its segments. Every
// failure has its alert. Status: 0; 2 no sections; 4 no space is eligible; 11 or 19 an unknown tag; 23 another
// processor; else that of a segment.
int translateDataFile(LNF_DataFile* file, BDSwitchDataType* request, AddressMappingType* mapping, bool ignoreUnmapped,
    DataFileWalk* walk);

} // namespace memdata

#endif

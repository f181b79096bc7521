// mem_writer.h - the MEM files of a run: one for each bit lane, or one for a data lane and its check lane together.
//
// A file that could not be written whole is not there at all; those that were finished before it stay. Files that
// exist are refused unless overwriting was allowed, and inputs of the run always.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_MEM_WRITER_H
#define MEMDATA_LANEFILL_CORE_MEM_WRITER_H

#include "lanefillCore/mem_file_names.h"
#include "lanefillCore/records/bd_switch.h"

// Writes the files of each node's spaces (its tags, all without) into its folder. updateAll: also of ranges that no
// data came near. is64Bit: record addresses have 16 digits. Lanes that the map names no file for are given one, as
// their INPUT file. Status: 0; 1 a file cannot be created or written; 4 no space; 7 without memory; 11 or 19 an
// unknown tag; 22 check lanes are to stand beside the data and a block has none.
int output_bitLane_mem_files(BDSwitchDataType* bxList, bool updateAll, bool is64Bit, AddressMappingType* mapping);

namespace memdata {

// The bus block whose files are written, and where they go.
struct MemFilePlace {
    const char* folder;
    bool is64Bit;
    const AddressMappingType* mapping;
    const AddressSpaceDefType* space;
    const AddressRangeDefType* range;
    const BusBlockType* block;
    WrittenMemFiles* files;
    DefaultMemNames* names;
};

} // namespace memdata

// A file for each of count lanes, which are the block's data lanes or check lanes. firstIndex: the number of such
// lanes in earlier blocks of the space, for default names.
int output_bitLane_mem_file(
    const memdata::MemFilePlace& place, BitLaneArrayType* lanes, u64 count, u64 firstIndex, bool isEcc);

// A file for each data lane of the block and the check lane of the same number; a lane without a partner has a file
// for itself.
int output_combined_bitLane_mem_file(const memdata::MemFilePlace& place, u64 firstIndex, u64 firstEccIndex);

#endif

// auto_data.h - data files that the address map itself names for single memories.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_AUTO_DATA_H
#define MEMDATA_LANEFILL_CORE_AUTO_DATA_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/records/data_file.h"

// Fills every lane of the mapping that has an INIT file from it, addresses counting in the lane's own memory,
// up to the memory's end. Bytes are not swapped and check lanes not touched. Ends at the first failure.
// Status: 0; 7 without memory; else that of opening the file.
int transform_auto_data_files(AddressMappingType* mapping, const char* macroDefines);

namespace memdata {

// The same for one lane and an opened file. The lane's space has its transform buffers. Status: 0; 7 without
// memory; else that of reading a section.
int fillLane(BitLaneGridElemType* element, LNF_DataFile* file);

} // namespace memdata

#endif

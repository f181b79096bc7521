// data_header.h - the comment lines at the head of a file that a run writes: what it is, from what, for which memory.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_DATA_HEADER_H
#define MEMDATA_BMM_UTILS_DATA_HEADER_H

#include "BmmUtils/model/records.h"

struct fileIODescriptor;

// Writes the head of a file; each line is led by the prefix ("//").
//   title      what the file is; may be null with a mapping
//   lanes      the lane at laneIndex is the one that the file is for; null: the file is for all of the range
//   spaceName  of the range
//   range      null: nothing is said of a space
//   mapping    names the map and data files; null: only the title and who made the file
// Status: that of writing.
int output_data_header(fileIODescriptor* file, const char* prefix, const char* title, BitLaneGridElemType** lanes,
    unsigned long laneIndex, const char* spaceName, const AddressRangeDefType* range,
    const AddressMappingType* mapping);

#endif

// lane_records.h - what was written to a lane, or to a lane and its check lane, as the records of a MEM file.
//
// A record covers every word of its lane that a range wrote; its address is the first of them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_LANE_RECORDS_H
#define MEMDATA_LANEFILL_CORE_LANE_RECORDS_H

#include "BmmUtils/model/records.h"

struct fileIODescriptor;

namespace memdata {

// One record for each range of the lane. Addresses have 16 digits when is64Bit is set, and 8 where words print with
// parity digits. Status: that of writing; 7 without memory.
int outputLaneRecords(fileIODescriptor* file, const BitLaneGridElemType* element, bool is64Bit);

// One record for each range of the data lane or the check lane: the words of the data lane, each followed by the
// check word of the same bus word. Status as above.
int outputCombinedRecords(fileIODescriptor* file, const AddressRangeDefType* range, const BusBlockType* block,
    const BitLaneGridElemType* dataElement, const BitLaneGridElemType* eccElement, bool is64Bit);

} // namespace memdata

#endif

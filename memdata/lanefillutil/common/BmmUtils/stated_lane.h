// stated_lane.h - a bit lane as a map states it, in text or in XML.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_STATED_LANE_H
#define MEMDATA_BMM_UTILS_STATED_LANE_H

#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/records.h"
#include "BmmUtils/model/text.h"
#include "FileUtils/file_spec.h"

#include <string>

namespace memdata {

struct StatedLane {
    std::string name;
    bool isRelative = false;
    MEMORYLocType* memory = nullptr;
    u32 eccType = kECC_NONE;
    u32 bitOrdering = 0;
    u64 bitLow = 0;
    u64 bitHigh = 0;
    u64 addressLow = 0; // words of the device
    u64 addressHigh = 0;
    u32 locKind = kLOC_KIND_NONE;
    u32 locRow = 0;
    u32 locColumn = 0;
    OwnedFileSpec input;
    OwnedFileSpec output;
    OwnedFileSpec init;
};

// A lane's record, which owns its files from then on, with its element. Status 0 or 7.
int makeLaneElement(StatedLane* stated, AddressSpaceDefType* space, OwnedLaneElement* element);

// Whether the lane takes the place of a block RAM.
bool isLocatedBlockRam(const StatedLane& stated);

} // namespace memdata

#endif

// stated_lane.cpp - see stated_lane.h.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/stated_lane.h"

#include "BmmUtils/model/internal.h"
#include "DeviceTableUtils/records.h"

int memdata::makeLaneElement(StatedLane* stated, AddressSpaceDefType* space, OwnedLaneElement* element) {
    element->reset(create_bitLane_grid_element(nullptr, stated->name.c_str(), stated->memory, stated->isRelative,
        stated->bitLow, stated->bitHigh, stated->addressLow, stated->addressHigh, stated->bitOrdering, stated->eccType,
        stated->locRow, stated->locColumn, stated->locKind, space, stated->init.get(), stated->input.get(),
        stated->output.get()));
    if (*element == nullptr) return OUT_OF_MEMORY("bitLane", sizeof(BitLaneType) + stated->name.size());
    stated->init.release(); // the lane owns them now
    stated->input.release();
    stated->output.release();
    return 0;
}

bool memdata::isLocatedBlockRam(const StatedLane& stated) {
    return stated.locKind != kLOC_KIND_NONE && (stated.memory->type->sizeUnits & kBLOCK_RAM_CLASSES) != 0;
}

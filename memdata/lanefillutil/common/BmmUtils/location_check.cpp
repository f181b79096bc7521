// location_check.cpp - whether the lanes of block-RAM spaces know where they are.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/iteration.h"
#include "BmmUtils/validation.h"
#include "FileUtils/descriptor.h"
#include "SystemUtils/alerts.h"

namespace {

constexpr long kREPLACEMENT_STATUS = 12;

void list_lanes_without_location(const AddressRangeDefType* range) {
    PutNextLine(&StandardOut, "      Bitlane(s)\n   ----------------\n");
    for (u64 i = 0; i < range->busBlockCount; ++i) {
        const BusBlockType* block = range->busBlocks[i];
        for (u64 k = 0; k < block->laneCount; ++k) {
            const BitLaneGridElemType* element = block->lanes[k];
            if (element->lane->locKind == kLOC_KIND_NONE)
                PutNextLine(&StandardOut, "   %s [%ld:%ld]\n", element->lane->name, return_bitLane_left_value(element),
                    return_bitLane_right_value(element));
        }
    }
    PutNextLine(&StandardOut, "\n");
}

} // namespace

int check_addressMapping_Locs(AddressMappingType* mapping) {
    if (mapping == nullptr) return 0;
    AddressSpaceIteratorType iterator{};
    AddressSpaceLinkType* link =
        iterate_first_addressSpace(mapping, kFIRST_SPACE_OF_MAPPING, &iterator, 0, 0, 0, kBLOCK_RAM_CLASSES);
    if (link == nullptr)
        return PrintError(kERROR_NO_BRAM_ADDRESS_SPACES_FOUND, kREPLACEMENT_STATUS, "bit stream replacement");
    for (; link != nullptr; link = iterate_next_addressSpace(kNEXT_SPACE_OF_MAPPING, &iterator)) {
        const AddressRangeDefType* range = link->space->ranges;
        if (range == nullptr || range->deviceCount == range->locatedDeviceCount) continue;
        // What has no location is left out of the replacement; the rest is replaced.
        PrintWarning(kWARNING_UNLOCED_ADDRESSBLOCK_BRAMS, kREPLACEMENT_STATUS, link->space->name);
        list_lanes_without_location(range);
    }
    return 0;
}

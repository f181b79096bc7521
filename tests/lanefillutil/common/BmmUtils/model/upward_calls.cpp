// upward_calls.cpp - stand-ins for the rooms above the model.
// SPDX-License-Identifier: Apache-2.0
#include "upward_calls.h"

#include "support/map_builder.h"

memdata::testing::UpwardCalls memdata::testing::gUpwardCalls;

void delete_MEMORY_extended_types();
void delete_MEMORY_extended_types() {
    ++memdata::testing::gUpwardCalls.extendedTypesDeleted;
}

// Sizes and addresses as the checks would leave them, without the checks.
int finish_addressSpace_data(AddressSpaceDefType* space) {
    ++memdata::testing::gUpwardCalls.spacesFinished;
    memdata::testing::layOut(space);
    return memdata::testing::gUpwardCalls.finishStatus;
}

// No lane of these tests is located on a device.
namespace memdata {
void forgetLocatedLane(BitLaneType* lane);
}
void memdata::forgetLocatedLane(BitLaneType*) {}

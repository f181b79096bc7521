// lanes.cpp - bit lanes and the elements of their columns.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/internal.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

// Upward: the table of locations names lanes. Defined with the device tables.
namespace memdata {
void forgetLocatedLane(BitLaneType* lane);
}

namespace {

// The record with room for the name behind it.
BitLaneType* new_lane_with_name(const char* name) {
    const size_t nameBytes = std::strlen(name) + 1;
    const size_t bytes = std::max(sizeof(BitLaneType), offsetof(BitLaneType, name) + nameBytes);
    auto* lane = static_cast<BitLaneType*>(getMemory("a 'BitLaneType' record with name", bytes));
    if (lane != nullptr) std::memcpy(reinterpret_cast<char*>(lane) + offsetof(BitLaneType, name), name, nameBytes);
    return lane;
}

// The newest element stands at the head.
void join_init_lanes(BitLaneGridElemType* element, AddressSpaceDefType* space) {
    if (space == nullptr || space->map == nullptr) return;
    AddressMappingType* root = root_addressMapping(space->map->mapping);
    if (root == nullptr) return; // a template is no memory of its own
    BitLaneGridElemType* oldHead = root->initLanes;
    element->lane->nextInitLane = oldHead;
    if (oldHead != nullptr) oldHead->initLaneOwner = &element->lane->nextInitLane;
    root->initLanes = element;
    element->initLaneOwner = &root->initLanes;
}

void leave_instance_names(const BitLaneGridElemType* element) {
    const AddressSpaceDefType* space = element->lane->addressSpace;
    if (space != nullptr && space->map != nullptr)
        memdata::removeSymbolOf(element->lane->name, space->map->instanceNames, element);
}

void delete_lane_array(BitLaneArrayType** lanes, u64* count) {
    if (*lanes != nullptr) {
        for (u64 i = 0; i < *count; ++i) delete_bitLane_grid_element((*lanes)[i]);
        releaseMemory(*lanes);
    }
    *lanes = nullptr;
    *count = 0;
}

} // namespace

void memdata::leaveInitLanes(BitLaneGridElemType* element) {
    if (element->initLaneOwner == nullptr) return;
    BitLaneGridElemType* next = element->lane->nextInitLane;
    *element->initLaneOwner = next;
    if (next != nullptr) next->initLaneOwner = element->initLaneOwner;
    element->initLaneOwner = nullptr;
    element->lane->nextInitLane = nullptr;
}

BitLaneType* create_bitLane_element(const char* name, MEMORYLocType* memory, bool relative, u64 bitLow, u64 bitHigh,
    u64 addressLow, u64 addressHigh, u32 bitOrdering, u32 eccType, u32 locRow, u32 locColumn, u32 locKind,
    AddressSpaceDefType* space, fileSpecType* initFile, fileSpecType* inputFile, fileSpecType* outputFile) {
    BitLaneType* lane = new_lane_with_name(name == nullptr ? "" : name);
    if (lane == nullptr) return nullptr;
    lane->memory = memory;
    lane->bitOrdering = bitOrdering;
    lane->eccType = eccType;
    lane->bitLow = bitLow;
    lane->bitHigh = bitHigh;
    lane->laneWidth = bitHigh + 1 - bitLow;
    lane->addressLow = addressLow;
    lane->addressHigh = addressHigh;
    lane->wordCount = addressHigh + 1 - addressLow;
    lane->locRow = locRow;
    lane->locColumn = locColumn;
    lane->locKind = locKind;
    lane->inputFile = inputFile;
    lane->outputFile = outputFile;
    lane->initFile = initFile;
    lane->addressSpace = space;
    lane->isRelativePath = relative;
    return lane;
}

BitLaneGridElemType* create_bitLane_grid_element(BitLaneType* existing, const char* name, MEMORYLocType* memory,
    bool relative, u64 bitLow, u64 bitHigh, u64 addressLow, u64 addressHigh, u32 bitOrdering, u32 eccType, u32 locRow,
    u32 locColumn, u32 locKind, AddressSpaceDefType* space, fileSpecType* initFile, fileSpecType* inputFile,
    fileSpecType* outputFile) {
    memdata::Tracked<BitLaneGridElemType, delete_bitLane_grid_element> element(NEW_RECORD(BitLaneGridElemType));
    if (element == nullptr) return nullptr;
    element->bitOrdering = bitOrdering;
    element->eccType = eccType;
    element->bitLow = bitLow;
    element->bitHigh = bitHigh;
    element->laneWidth = bitHigh + 1 - bitLow;
    element->addressLow = addressLow;
    element->addressHigh = addressHigh;
    element->wordCount = addressHigh + 1 - addressLow;
    element->sharesLane = false;
    if (existing != nullptr) {
        element->lane = existing;
        return element.release();
    }

    element->lane = create_bitLane_element(name, memory, relative, bitLow, bitHigh, addressLow, addressHigh,
        bitOrdering, eccType, locRow, locColumn, locKind, space, initFile, inputFile, outputFile);
    if (element->lane == nullptr) return nullptr;
    element->lane->laneState = 0;
    if (initFile != nullptr) join_init_lanes(element.get(), space);
    return element.release();
}

void delete_bitLane_element(BitLaneType* lane) {
    if (lane == nullptr) return;
    if (lane->locatedIn != nullptr) memdata::forgetLocatedLane(lane);
    DeleteFileSpec(&lane->inputFile);
    DeleteFileSpec(&lane->outputFile);
    DeleteFileSpec(&lane->initFile);
    delete_transform_range_list(&lane->transformRanges);
    memdata::deleteChunkAccess(lane->dataChunks);
    memdata::deleteChunkAccess(lane->parityChunks);
    releaseMemory(lane);
}

void delete_bitLane_grid_element(BitLaneGridElemType* element) {
    if (element == nullptr) return;
    memdata::leaveInitLanes(element);
    // A shared lane belongs to another element, which may be gone already.
    if (!element->sharesLane && element->lane != nullptr) {
        leave_instance_names(element);
        delete_bitLane_element(element->lane);
    }
    releaseMemory(element);
}

void delete_bitLane_list(BusBlockType* block) {
    if (block == nullptr) return;
    delete_lane_array(&block->lanes, &block->laneCount);
    delete_lane_array(&block->eccLanes, &block->eccLaneCount);
    if (block->writtenLanes != nullptr) releaseMemory(block->writtenLanes); // the elements stood in lanes
    block->writtenLanes = nullptr;
}

u64 return_bitLane_left_value(const BitLaneGridElemType* element) {
    return element->bitOrdering == kBIT_ORDERING_ASCENDING ? element->bitLow : element->bitHigh;
}

u64 return_bitLane_right_value(const BitLaneGridElemType* element) {
    return element->bitOrdering == kBIT_ORDERING_ASCENDING ? element->bitHigh : element->bitLow;
}

// ranges.cpp - address ranges, bus blocks, and their arrays.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/internal.h"

namespace {

void* new_pointer_array(const char* description, u64 count) {
    constexpr u64 kMAX_COUNT = UINT64_MAX / 2 / sizeof(void*);
    if (count > kMAX_COUNT) {
        OUT_OF_MEMORY(description, UINT64_MAX);
        return nullptr;
    }
    return getMemory(description, count * sizeof(void*));
}

} // namespace

BusBlockArrayType* memdata::newBusBlockArray(u64 count) {
    return static_cast<BusBlockArrayType*>(
        new_pointer_array("a 'BusBlockArrayType' pointer for an array of 'BusBlockType *' records", count));
}

BitLaneArrayType* memdata::newBitLaneArray(u64 count) {
    return static_cast<BitLaneArrayType*>(
        new_pointer_array("a 'BitLaneArrayType' pointer for an array of 'BitLaneType *' records", count));
}

AddressRangeDefType* create_addressRange_element(MEMORYLocType* memory, u64 start, u64 end) {
    AddressRangeDefType* range = NEW_RECORD(AddressRangeDefType);
    if (range == nullptr) return nullptr;
    range->memory = memory;
    range->startAddress = start;
    range->endAddress = end;
    return range;
}

void insert_addressRange_element(AddressSpaceDefType* space, AddressRangeDefType* range) {
    if (space == nullptr || range == nullptr) return;
    AddressRangeDefType** place = space->lastRange == nullptr ? &space->ranges : &space->lastRange->next;
    while (*place != nullptr) place = &(*place)->next;
    *place = range;
    space->lastRange = range;
    ++space->rangeCount;
}

void delete_addressRange_element(AddressRangeDefType* range) {
    if (range == nullptr) return;
    delete_busBlock_list(range);
    if (range->transformBuffer != nullptr) releaseMemory(range->transformBuffer);
    releaseMemory(range);
}

BusBlockType* create_busBlock_element(u64 start, u64 end) {
    BusBlockType* block = NEW_RECORD(BusBlockType);
    if (block == nullptr) return nullptr;
    block->startAddress = start;
    block->endAddress = end;
    return block;
}

void delete_busBlock_element(BusBlockType* block) {
    if (block == nullptr) return;
    delete_bitLane_list(block);
    releaseMemory(block);
}

void delete_busBlock_list(AddressRangeDefType* range) {
    if (range == nullptr) return;
    if (range->busBlocks != nullptr) {
        for (u64 i = 0; i < range->busBlockCount; ++i) delete_busBlock_element(range->busBlocks[i]);
        releaseMemory(range->busBlocks);
    }
    range->busBlocks = nullptr;
    range->busBlockCount = 0;
}

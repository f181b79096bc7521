// space_sizes.cpp - the sizes and addresses of a space, from its devices up.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/validation.h"
#include "SystemUtils/alerts.h"

namespace {

using namespace memdata;

int report_too_many_addresses(const AddressSpaceDefType* space) {
    return PrintError(
        kERROR_MESSAGE_STRING, 3, formatted("The addresses of ADDRESS_SPACE '%s' exceed 64 bits.", space->name));
}

// The addresses that the map states for a range. Those of a lone range are the space's, also where only that was told
// them, as in an instance of a template.
u64 stated_size(const AddressSpaceDefType* space, const AddressRangeDefType* range) {
    if (range->startAddress == 0 && range->endAddress == 0 && space->rangeCount == 1)
        return space->endAddress + 1 - space->startAddress;
    return range->endAddress + 1 - range->startAddress;
}

// A generic memory is as large as the map says: its addresses, shared out evenly among the devices.
int size_generic_memory(const AddressSpaceDefType* space, AddressRangeDefType* range) {
    const u64 size = stated_size(space, range);
    const u64 deviceBytes = range->deviceCount == 0 ? 0 : size / range->deviceCount;
    if (deviceBytes > UINT64_MAX / 8) return report_too_many_addresses(space);
    setMemoryDataBits(range->memory, deviceBytes * 8);
    return 0;
}

// A lane of a generic memory could not have a depth until now. Explicit addresses stay.
void size_generic_lane(BitLaneGridElemType* element, u64 dataBits, u64 firstWord) {
    BitLaneType* lane = element->lane;
    if (!isGenericMemory(lane->memory)) return;
    setMemoryDataBits(lane->memory, dataBits);
    const u64 words = element->laneWidth == 0 ? 0 : dataBits / element->laneWidth;
    if (element->addressLow != 0 || element->addressHigh != 0 || words == 0) return;
    element->addressLow = lane->addressLow = firstWord;
    element->addressHigh = lane->addressHigh = firstWord + words - 1;
    element->wordCount = lane->wordCount = words;
}

// firstWord: the device word at which the block's lanes begin; becomes that of the next block.
void size_generic_lanes(const BusBlockType* block, u64 dataBits, u64* firstWord) {
    for (u64 i = 0; i < block->laneCount; ++i) size_generic_lane(block->lanes[i], dataBits, *firstWord);
    for (u64 i = 0; i < block->eccLaneCount; ++i) size_generic_lane(block->eccLanes[i], dataBits, *firstWord);
    *firstWord = block->lanes[0]->addressHigh + 1;
}

int size_block(const AddressSpaceDefType* space, const AddressRangeDefType* range, BusBlockType* block) {
    if (block->laneCount == 0)
        return PrintError(
            kERROR_MESSAGE_STRING, 3, formatted("A BUS_BLOCK of ADDRESS_SPACE '%s' has no data lanes.", space->name));
    const u64 bits = deviceBits(range->memory == nullptr ? nullptr : range->memory->type);
    block->laneWidth = block->lanes[0]->laneWidth;
    block->wordsPerDevice = block->laneWidth == 0 ? 0 : bits / block->laneWidth;
    const u64 deviceSize = space->wordAddressing ? block->wordsPerDevice : bits / 8;
    if (__builtin_mul_overflow(deviceSize, block->laneCount, &block->byteSize)) return report_too_many_addresses(space);
    return 0;
}

// Puts the block behind those that the space has so far. sizeSoFar: their bytes, those of other ranges too.
int place_block(AddressSpaceDefType* space, BusBlockType* block, u64 sizeSoFar) {
    const u64 room = UINT64_MAX - space->startAddress; // one less than what fits
    if (block->byteSize > 0 && (sizeSoFar > room || block->byteSize - 1 > room - sizeSoFar))
        return report_too_many_addresses(space);
    block->startAddress = space->nextAddress;
    block->endAddress = block->startAddress + block->byteSize - 1;
    space->nextAddress = block->endAddress + 1;
    return 0;
}

int size_blocks(AddressSpaceDefType* space, AddressRangeDefType* range) {
    u64 firstWord = 0;
    for (u64 i = 0; i < range->busBlockCount; ++i) {
        BusBlockType* block = range->busBlocks[i];
        if (int status = size_block(space, range, block); status != 0) return status;
        if (isGenericMemory(range->memory)) size_generic_lanes(block, range->memory->type->dataBits, &firstWord);
        if (int status = place_block(space, block, space->rangeByteTotal + range->byteTotal); status != 0)
            return status;
        range->byteTotal += block->byteSize;
    }
    return 0;
}

void describe_by_first_block(AddressRangeDefType* range) {
    if (range->busBlockCount == 0) return;
    const BusBlockType* first = range->busBlocks[0];
    range->wordsPerDevice = first->wordsPerDevice;
    range->laneWidth = first->laneWidth;
    range->blockByteSize = first->byteSize;
    range->busWidth = first->busWidth;
}

// Told last: a lane that is too wide for its device has been told by name by then.
int check_depths(const AddressSpaceDefType* space, const AddressRangeDefType* range) {
    for (u64 i = 0; i < range->busBlockCount; ++i)
        if (range->busBlocks[i]->wordsPerDevice == 0)
            return PrintError(kERROR_MESSAGE_STRING, 3,
                formatted("The devices of ADDRESS_SPACE '%s' have no room for a word of their lanes.", space->name));
    return 0;
}

int finish_range(AddressSpaceDefType* space, AddressRangeDefType* range) {
    range->wordAddressing = space->wordAddressing;
    range->byteTotal = 0;
    if (isGenericMemory(range->memory))
        if (int status = size_generic_memory(space, range); status != 0) return status;

    range->startAddress = space->nextAddress;
    if (int status = size_blocks(space, range); status != 0) return status;
    range->endAddress = space->nextAddress - 1;
    describe_by_first_block(range);
    space->rangeByteTotal += range->byteTotal;

    if (int status = check_busBlock_addresses(space, range); status != 0) return status;
    return check_depths(space, range);
}

} // namespace

bool memdata::isGenericMemory(const MEMORYLocType* memory) {
    return memory != nullptr && memory->type != nullptr && (memory->type->sizeUnits & kGENERIC_MEMORY_CLASS) != 0;
}

u64 memdata::deviceBits(const MEMORYType* type) {
    if (type == nullptr) return 0;
    const u64 parityBits = type->hasParityWidths ? type->parityBits : 0;
    return type->dataBits > UINT64_MAX - parityBits ? UINT64_MAX : type->dataBits + parityBits;
}

int finish_addressSpace_data(AddressSpaceDefType* space) {
    if (space == nullptr) return 3;
    space->nextAddress = space->startAddress;
    space->rangeByteTotal = 0;
    for (AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next)
        if (int status = finish_range(space, range); status != 0) return status;

    space->hasRelativePaths = space->ranges != nullptr && space->ranges->hasRelativePaths;
    const u64 size = space->endAddress + 1 - space->startAddress;
    if (space->rangeByteTotal == size) return 0;
    return PrintError(kERROR_INCONSISTENT_ADDRESS_SPACE_SIZE, 3, space->name, size, space->rangeByteTotal);
}

// block_checks.cpp - the bus blocks of a range, against each other and against the range.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/messages.h"
#include "BmmUtils/validation.h"
#include "SystemUtils/alerts.h"

namespace {

using namespace memdata;

const char* first_lane_name(const BusBlockType* block) {
    return block->laneCount == 0 ? "" : block->lanes[0]->lane->name;
}

int check_neighbours(const AddressSpaceDefType* space, const BusBlockType* block, const BusBlockType* next) {
    if (block->hasRelativePaths != next->hasRelativePaths)
        return PrintError(kERROR_INCONSISTENT_INSTANCE_PATH, 3, first_lane_name(next), space->name);
    // On purpose: the message about paths, although there is one about block sizes.
    if (block->byteSize != next->byteSize)
        return PrintError(kERROR_INCONSISTENT_INSTANCE_PATH, 3, "in one or more BUS_BLOCKs", space->name);
    if (block->endAddress + 1 == next->startAddress) return 0;
    const Alert_message_type& message =
        block->endAddress + 1 > next->startAddress ? kERROR_BLOCK_ADDRESS_OVERLAP : kERROR_BLOCK_ADDRESS_GAP;
    return PrintError(message, 3, space->name, kBUS_BLOCK_MESSAGE_WORD, block->startAddress, block->endAddress,
        kBUS_BLOCK_MESSAGE_WORD, next->startAddress, next->endAddress);
}

// All blocks but the last, each with the one behind it. total: grows by the size of each block behind another.
int check_pairs(AddressSpaceDefType* space, AddressRangeDefType* range, u64* total) {
    int failure = 0;
    for (u64 i = 0; i + 1 < range->busBlockCount; ++i) {
        BusBlockType* block = range->busBlocks[i];
        const BusBlockType* next = range->busBlocks[i + 1];
        if (int status = check_bitLanes(space, range, block); status != 0)
            failure = status;
        else if (int difference = check_neighbours(space, block, next); difference != 0)
            return difference;
        *total += next->byteSize;
    }
    return failure;
}

// size * 8 may pass 64 bits.
bool is_whole_bus_words(u64 size, u64 busWidth) {
    if (busWidth == 0) return size == 0;
    const u64 rest = size % busWidth;
    return rest <= UINT64_MAX / 8 && rest * 8 % busWidth == 0;
}

} // namespace

int check_busBlock_addresses(AddressSpaceDefType* space, AddressRangeDefType* range) {
    if (space == nullptr || range == nullptr) return 3;
    u64 total = range->blockByteSize;
    if (int status = check_pairs(space, range, &total); status != 0) return status;

    int status = 0;
    const u64 size = range->endAddress + 1 - range->startAddress;
    if (range->busBlockCount > 0) {
        const BusBlockType* first = range->busBlocks[0];
        status = check_bitLanes(space, range, range->busBlocks[range->busBlockCount - 1]);
        const MEMORYType* type = range->memory == nullptr ? nullptr : range->memory->type;
        if (type != nullptr && type->sizeUnits == kGENERIC_MEMORY_CLASS && !is_whole_bus_words(size, first->busWidth))
            status = PrintError(kERROR_ILLEGAL_EXTERNAL_MEMORY_SIZE, 3, space->name, size, first->busWidth / 8);
        range->hasRelativePaths = first->hasRelativePaths;
    }
    if (total == size) return status;
    return PrintError(kERROR_INCONSISTENT_ADDRESS_RANGE_SIZE, 3, space->name, size, total);
}

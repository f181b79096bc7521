// transform_buffers.cpp - the buffers of ranges and the slivers of their lanes.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/transform_buffers.h"

#include "BmmUtils/model/internal.h"
#include "platform/memory_pages.h"

namespace {

u64 range_byte_size(const AddressRangeDefType* range) {
    u64 total = 0;
    for (u64 i = 0; i < range->busBlockCount; ++i) {
        const BusBlockType* block = range->busBlocks[i];
        if (block == nullptr) continue;
        total = get_bitLane_list_BRAM_byte_size(block->lanes, block->laneCount, total);
        total = get_bitLane_list_BRAM_byte_size(block->eccLanes, block->eccLaneCount, total);
    }
    return total;
}

// Every block hands out slivers for the lanes that it has; in a sound range all blocks have as many data lanes.
bool allocate_range_buffer(AddressRangeDefType* range) {
    range->transformBuffer = static_cast<u8*>(getMemory("'std::uint8_t' data", range_byte_size(range)));
    if (range->transformBuffer == nullptr) return false;
    u8* cursor = range->transformBuffer;
    for (u64 i = 0; i < range->busBlockCount; ++i) {
        const BusBlockType* block = range->busBlocks[i];
        if (block == nullptr) continue;
        cursor = set_bitLane_sliver_buffers(block->lanes, block->laneCount, cursor);
        cursor = set_bitLane_sliver_buffers(block->eccLanes, block->eccLaneCount, cursor);
    }
    return true;
}

// Nothing of the lane may point into the buffer any more.
void forget_slivers(const BitLaneArrayType* lanes, u64 count) {
    for (u64 i = 0; lanes != nullptr && i < count; ++i) {
        if (lanes[i] == nullptr || lanes[i]->lane == nullptr) continue;
        BitLaneType* lane = lanes[i]->lane;
        memdata::deleteChunkAccess(lane->dataChunks);
        memdata::deleteChunkAccess(lane->parityChunks);
        delete_transform_range_list(&lane->transformRanges);
        lane->dataChunks = nullptr;
        lane->parityChunks = nullptr;
        lane->currentRange = nullptr;
        lane->dataSliver = nullptr;
        lane->paritySliver = nullptr;
    }
}

void release_range_buffer(AddressRangeDefType* range) {
    if (range->transformBuffer == nullptr) return;
    for (u64 i = 0; i < range->busBlockCount; ++i) {
        const BusBlockType* block = range->busBlocks[i];
        if (block == nullptr) continue;
        forget_slivers(block->lanes, block->laneCount);
        forget_slivers(block->eccLanes, block->eccLaneCount);
    }
    releaseMemory(range->transformBuffer);
    range->transformBuffer = nullptr;
}

} // namespace

u64 get_bitLane_list_BRAM_byte_size(const BitLaneArrayType* lanes, u64 count, u64 total) {
    for (u64 i = 0; lanes != nullptr && i < count; ++i) {
        if (lanes[i] == nullptr || lanes[i]->lane == nullptr) continue;
        const u64 bytes = memdata::memoryByteSize(lanes[i]->lane->memory);
        total = bytes > UINT64_MAX - total ? UINT64_MAX : total + bytes;
    }
    return total;
}

unsigned char* set_bitLane_sliver_buffers(BitLaneArrayType* lanes, u64 count, unsigned char* cursor) {
    for (u64 i = 0; lanes != nullptr && i < count; ++i) {
        if (lanes[i] == nullptr || lanes[i]->lane == nullptr) continue;
        BitLaneType* lane = lanes[i]->lane;
        const MEMORYType* type = lane->memory == nullptr ? nullptr : lane->memory->type;
        const bool hasParity = type != nullptr && type->parityBits != 0;
        lane->dataSliver = cursor;
        lane->paritySliver = hasParity ? cursor + type->dataBits / 8 : nullptr;
        cursor += memdata::memoryByteSize(lane->memory);
    }
    return cursor;
}

bool allocate_addressSpace_transform_buffers(AddressSpaceDefType* space) {
    if (space == nullptr) return false;
    for (AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next) {
        if (range->transformBuffer != nullptr || allocate_range_buffer(range)) continue;
        deallocate_addressSpace_transform_buffers(space);
        return false;
    }
    return true;
}

void memdata::populateTransformBuffers(AddressSpaceDefType* space, u64 segmentBytes) {
    u64 bytes = 0;
    for (AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next)
        if (range->transformBuffer != nullptr) bytes += range_byte_size(range);
    if (segmentBytes < bytes - bytes / 8) return; // parity takes a ninth
    for (AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next)
        if (range->transformBuffer != nullptr) populatePages(range->transformBuffer, range_byte_size(range));
}

bool deallocate_addressSpace_transform_buffers(AddressSpaceDefType* space) {
    if (space == nullptr) return true;
    for (AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next) release_range_buffer(range);
    return true;
}

// The lists themselves are walked: no class is left out, and no empty map ends it.
bool deallocate_bmm_transform_buffers(AddressMappingType* mapping) {
    if (mapping == nullptr) return true;
    for (AddressMapType* map = mapping->addressMaps; map != nullptr; map = map->next)
        for (AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next)
            deallocate_addressSpace_transform_buffers(link->space);
    return true;
}

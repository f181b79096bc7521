// bus_blocks.cpp - see bus_blocks.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/bus_blocks.h"

#include "lanefillCore/lanes/ecc_lanes.h"
#include "lanefillCore/lanes/fast_lanes.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/lane_words.h"
#include "lanefillCore/lanes/unit_words.h"
#include "lanefillCore/records/progress_stages.h"

namespace {

constexpr unsigned kSOURCE_UNIT_BITS = 8;

// Where in a bus word a segment begins.
struct StartPlace {
    u64 lane = 0;
    unsigned headBits = 0; // of that lane's word, ahead of the segment

    bool isWholeWord() const { return lane == 0 && headBits == 0; }
};

// Bits of the start lane's word that lie ahead of an address which is inside of it: they keep what they are, and the
// segment's bytes stand where their addresses say. Words with parity bits have no byte addresses inside.
unsigned bitsAhead(const AddressRangeDefType* range, const BusBlockType* block, u64 startLane, u64 address) {
    if (address <= block->startAddress || range->wordAddressing || startLane >= block->laneCount) return 0;
    const BitLaneGridElemType* element = block->lanes[startLane];
    const u64 width = range->laneWidth;
    if (element->parityWidth != 0 || element->laneWidth != width || width > 64 || element->lane->dataChunks == nullptr)
        return 0;
    return memdata::bitsIntoWord(width, block->startAddress) != 0 ? 0 : memdata::bitsIntoWord(width, address);
}

// One bus word from its start place on. Lanes that the source does not reach any more keep their words, which
// still count for the check bits. count goes down by one a lane and stays at 0.
void transformBusWord(
    BusBlockType* block, const StartPlace& start, BufferChunkAccess* source, bool byteSwapEcc, u64* count) {
    const unsigned swapWidth = static_cast<unsigned>(block->lanePitch);
    EndianConvert::UInt128 bus{0, 0};
    for (u64 lane = start.lane; lane < block->laneCount; ++lane) {
        if (*count > 0) --*count;
        if (lane == start.lane && start.headBits != 0)
            memdata::transformRestOfLaneValue(block->lanes[lane], start.headBits, swapWidth, source, &bus);
        else if (source->GetNumberBufferBitsRemaining() > 0)
            transform_bitLane_value(block->lanes[lane], swapWidth, source, &bus);
        else
            memdata::accumulateStoredWord(block->lanes[lane], swapWidth, &bus);
    }
    transform_bus_access_ECC_value(block, byteSwapEcc, bus);
}

AddressRangeDefType* rangeOf(const AddressSpaceDefType* space, u64 address) {
    for (AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next)
        if (range->startAddress <= address && address <= range->endAddress) return range;
    return nullptr;
}

} // namespace

namespace memdata {

int transformBusBlock(const char* fileName, const AddressRangeDefType* range, BusBlockType* block, u64 address,
    BufferChunkAccess* source, bool byteSwapEcc, TransformPath path) {
    u64 count = 0;
    u64 eccCount = 0; // the check lanes count for themselves; the data lanes' count rules the walk
    StartPlace start;
    int status = initialize_busBlock_transform_positions(fileName, range, block, address, &count, &start.lane);
    if (status == 0) status = initialize_busBlock_ECC_transform_positions(fileName, range, block, address, &eccCount);
    if (status != 0) return status;

    start.headBits = bitsAhead(range, block, start.lane, address);
    if (start.headBits != 0) ++count; // the steps left were counted from the address on, not from its word
    const bool fast = path == TransformPath::kBY_SHAPE && hasFastShape(block);
    const bool units = source->endianness == kDATA_ORDER && hasUnitWords(block);
    while (count > 0 && source->GetNumberBufferBitsRemaining() > 0) {
        if (fast && start.isWholeWord()) {
            count -= transformWholeBusWords(block, source, count / block->laneCount, byteSwapEcc) * block->laneCount;
            if (int ended = progressStatus(); ended != 0) return ended;
            if (count == 0 || source->GetNumberBufferBitsRemaining() == 0) break;
        }
        transformBusWord(block, start, source, byteSwapEcc, &count);
        if (units && start.isWholeWord()) // behind which each lane has taken a word
            count -= transformUnitWords(block, source, count / block->laneCount, byteSwapEcc) * block->laneCount;
        start = {};
    }
    return 0;
}

int transformSegment(
    const char* fileName, AddressSpaceDefType* space, u64 address, u8* data, u64 size, TransformPath path) {
    AddressRangeDefType* range = rangeOf(space, address);
    if (range == nullptr || range->blockByteSize == 0) return 0;
    u64 index = (address - range->startAddress) / range->blockByteSize;
    BufferChunkAccess source = BufferChunkAccess::OverWholeBuffer(data, size * 8, kDATA_ORDER, 0, kSOURCE_UNIT_BITS);
    for (; range != nullptr; range = range->next, index = 0)
        for (; index < range->busBlockCount; ++index) {
            if (source.GetNumberBufferBitsRemaining() == 0) return 0;
            const int status = transformBusBlock(
                fileName, range, range->busBlocks[index], address, &source, space->leLaneOrderApplied, path);
            if (status != 0) return status;
            address = 0; // from here on each block is filled from its start
        }
    return 0;
}

} // namespace memdata

int transform_data_busBlock(const char* fileName, AddressRangeDefType* range, BusBlockType* block,
    unsigned long address, BufferChunkAccess* source, bool byteSwapEcc) {
    return memdata::transformBusBlock(
        fileName, range, block, address, source, byteSwapEcc, memdata::TransformPath::kBY_SHAPE);
}

int transform_segment_data(
    const char* fileName, AddressSpaceDefType* space, unsigned long address, unsigned char* data, unsigned long size) {
    return memdata::transformSegment(fileName, space, address, data, size, memdata::TransformPath::kBY_SHAPE);
}

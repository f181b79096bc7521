// lane_positions.cpp - see lane_positions.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/lane_positions.h"

#include <memory>

namespace {

// Addresses reach up to 2^64 bytes, and bits of them beyond.
__extension__ using u128 = unsigned __int128;

u128 laneSteps(bool wordAddressing, u64 width, u128 address) {
    return wordAddressing ? address : address * 8 / width;
}

// A cursor over one of a lane's buffers, in place of the one that it had. False without memory or buffer.
bool replaceCursor(BufferChunkAccess** cursor, u8* buffer, u64 bits, u64 word, unsigned unitBits) {
    memdata::deleteChunkAccess(*cursor);
    *cursor = nullptr;
    if (buffer == nullptr) return false;
    *cursor = BufferChunkAccess::OverWholeBuffer(buffer, bits, kBIT_LANE_ORDER, word, unitBits).DupBufferChunkAccess();
    return *cursor != nullptr;
}

bool hasParity(const MEMORYType* type) {
    return type->hasParityWidths || type->hasInterleavedParity;
}

int openParity(const char* fileName, BitLaneGridElemType* element, u64 word, u64 offset) {
    BitLaneType* lane = element->lane;
    const MEMORYType* type = lane->memory->type;
    if (!hasParity(type) || lane->paritySliver == nullptr) return 0;
    if (!replaceCursor(&lane->parityChunks, lane->paritySliver, type->parityBits, word, element->parityWidth)) return 7;
    if (lane->currentRange->parityRange == nullptr)
        lane->currentRange->parityRange = create_transform_range(
            fileName, offset, type->parityBits / 8, lane->parityChunks->GetCurrentBufferByteAddress(), 0, false);
    return lane->currentRange->parityRange == nullptr ? 7 : 0;
}

} // namespace

unsigned long convert_from_byte_to_bitLane_address(unsigned long width, unsigned long byteAddress) {
    return width == 0 ? 0 : static_cast<unsigned long>(u128{byteAddress} * 8 / width);
}

unsigned long convert_from_bitLane_address_to_byte(unsigned long width, unsigned long laneAddress) {
    return static_cast<unsigned long>(u128{laneAddress} * width >> 3);
}

unsigned long calculate_starting_bitLane_offset_positions(bool wordAddressing, unsigned long blockStart,
    unsigned long blockEnd, unsigned long lanes, unsigned long width, unsigned long address, unsigned long* word,
    unsigned long* count) {
    *word = *count = 0;
    if (lanes == 0 || width == 0 || address < blockStart || address > blockEnd) return 0;
    *count = static_cast<unsigned long>(laneSteps(wordAddressing, width, u128{blockEnd - address} + 1));
    const u128 first = laneSteps(wordAddressing, width, address);
    const u128 base = laneSteps(wordAddressing, width, blockStart);
    *word = static_cast<unsigned long>((first - base) / lanes);
    return static_cast<unsigned long>(first % lanes);
}

int initialize_bitLane_transform_positions(
    const char* fileName, BitLaneGridElemType* element, unsigned long word, unsigned long offset) {
    BitLaneType* lane = element->lane;
    const u64 deviceBits = lane->memory->type->dataBits;
    const unsigned slotBits = memdata::laneSlotBits(memdata::laneDataBits(element));
    lane->currentRange = nullptr;
    if (!replaceCursor(&lane->dataChunks, lane->dataSliver, deviceBits, word, slotBits)) return 7;
    lane->currentRange = insert_transform_range(fileName, &lane->transformRanges, offset, deviceBits / 8,
        lane->dataChunks->GetCurrentBufferByteAddress(), 0, false);
    if (lane->currentRange == nullptr) return 7;
    return openParity(fileName, element, word, offset);
}

int initialize_busBlock_transform_positions(const char* fileName, const AddressRangeDefType* range,
    const BusBlockType* block, unsigned long address, unsigned long* count, unsigned long* startLane) {
    const u64 effective = address == 0 ? block->startAddress : address;
    unsigned long word = 0;
    *startLane = calculate_starting_bitLane_offset_positions(range->wordAddressing, block->startAddress,
        block->endAddress, block->laneCount, range->laneWidth, effective, &word, count);
    for (u64 lane = 0; lane < block->laneCount; ++lane) {
        const u64 laneWord = lane >= *startLane ? word : word + 1; // the address has passed the earlier lanes
        const int status = initialize_bitLane_transform_positions(
            fileName, block->lanes[lane], laneWord, effective - block->startAddress);
        if (status != 0) return status;
    }
    return 0;
}

int initialize_busBlock_ECC_transform_positions(const char* fileName, const AddressRangeDefType* range,
    const BusBlockType* block, unsigned long address, unsigned long* count) {
    *count = 0;
    if (block->eccLaneCount == 0) return 0;
    const u64 effective = address == 0 ? block->startAddress : address;
    unsigned long word = 0;
    calculate_starting_bitLane_offset_positions(range->wordAddressing, block->startAddress, block->endAddress,
        block->laneCount, block->eccLanes[0]->laneWidth, effective, &word, count);
    u64 lane = 0;
    for (u64 step = 0; step < block->eccLaneCount; ++step) {
        const int status = initialize_bitLane_transform_positions(
            fileName, block->eccLanes[lane], word, effective - block->startAddress);
        if (status != 0) return status;
        if (++lane == block->laneCount) { // on purpose not eccLaneCount
            lane = 0;
            ++word;
        }
    }
    return 0;
}

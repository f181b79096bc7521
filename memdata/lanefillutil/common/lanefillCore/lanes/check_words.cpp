// check_words.cpp - see check_words.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/check_words.h"

#include "SystemUtils/bits.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/ecc_lanes.h"
#include "lanefillCore/lanes/lane_positions.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace memdata {
namespace {

// One bus word of byteCount bytes, the first byte most significant.
EndianConvert::UInt128 busWordAt(const u8* bytes, u64 byteCount) {
    EndianConvert::UInt128 word{0, 0};
    if (byteCount == 8) {
        std::memcpy(&word.low, bytes, 8);
        word.low = __builtin_bswap64(word.low);
        return word;
    }
    for (u64 i = 0; i < byteCount; ++i) word = {word.high << 8 | word.low >> 56, word.low << 8 | bytes[i]};
    return word;
}

// The bus word as the lanes hold it logically: with mirrored lanes, each lane's bits turned round.
EndianConvert::UInt128 mirroredLanes(const u8* bytes, u64 laneCount, unsigned dataBits) {
    EndianConvert::UInt128 word{0, 0};
    for (u64 i = 0; i < laneCount; ++i) {
        const u64 lane = reverseDataBits(dataBits, busWordAt(bytes + i * dataBits / 8, dataBits / 8).low);
        accumulate_bus_width_value(dataBits, lane, &word);
    }
    return word;
}

// A check lane whose words stand in whole bytes.
struct CheckLane {
    u8* at;
    unsigned down; // of the lane's bits in the check value
    u32 mask;
    unsigned bytes; // of a slot, 1 or 2
};

constexpr u64 kMAX_CHECK_LANES = 9; // one for each check bit of the longest code

bool plainCheckLanes(const BusBlockType* block, u64 words) {
    if (block->eccLaneCount > kMAX_CHECK_LANES || block->eccLaneCount > block->laneCount) return false;
    return std::all_of(block->eccLanes, block->eccLanes + block->eccLaneCount, [=](const BitLaneGridElemType* element) {
        const unsigned slotBits = laneSlotBits(laneDataBits(element));
        const BufferChunkAccess* access = element->lane->dataChunks;
        return element->parityWidth == 0 && (slotBits == 8 || slotBits == 16) && access->bitOffset == 0 &&
               access->GetNumberBufferBitsRemaining() >= words * slotBits;
    });
}

void storeCheckValue(CheckLane& lane, u32 check) {
    const u32 piece = check >> lane.down & lane.mask;
    const u32 old = lane.bytes == 1 ? lane.at[0] : lane.at[0] | u32{lane.at[1]} << 8;
    const u32 word = (old & ~lane.mask) | piece;
    lane.at[0] = static_cast<u8>(word);
    if (lane.bytes == 2) lane.at[1] = static_cast<u8>(word >> 8);
    lane.at += lane.bytes;
}

// The bus words of a run, one after the other, handed to take.
void forEachBusWord(const BusBlockType* block, const u8* bytes, u64 words, unsigned dataBits, const auto& take) {
    const bool mirror = block->lanes[0]->bitOrdering == kBIT_ORDERING_ASCENDING;
    const u64 busBytes = block->laneCount * dataBits / 8;
    for (u64 word = 0; word < words; ++word, bytes += busBytes)
        take(mirror ? mirroredLanes(bytes, block->laneCount, dataBits) : busWordAt(bytes, busBytes));
}

void storeCheckWords(BusBlockType* block, const u8* bytes, u64 words, unsigned dataBits, bool byteSwapEcc) {
    std::array<CheckLane, kMAX_CHECK_LANES> lanes{};
    u64 taken = 0;
    for (u64 i = 0; i < block->eccLaneCount; ++i) {
        const BitLaneGridElemType* element = block->eccLanes[i];
        taken += element->laneWidth;
        const u64 down = block->eccBusWidth - taken;
        lanes[i] = {element->lane->dataChunks->current, static_cast<unsigned>(down < 32 ? down : 31),
            static_cast<u32>(getBitMask(static_cast<unsigned>(element->laneWidth))),
            laneSlotBits(laneDataBits(element)) / 8};
    }
    forEachBusWord(block, bytes, words, dataBits, [&](EndianConvert::UInt128 word) {
        const u32 check = eccCheckValue(block->eccType, eccInput(block->eccType, byteSwapEcc, word));
        for (u64 i = 0; i < block->eccLaneCount; ++i) storeCheckValue(lanes[i], check);
    });
    for (u64 i = 0; i < block->eccLaneCount; ++i) {
        BitLaneGridElemType* element = block->eccLanes[i];
        element->lane->dataChunks->SkipBits(words * laneSlotBits(laneDataBits(element)));
        update_max_transform_buffer_addresses(element);
        element->lane->laneState += static_cast<u32>(words);
    }
}

} // namespace

void transformCheckWords(BusBlockType* block, const u8* bytes, u64 words, unsigned dataBits, bool byteSwapEcc) {
    if (plainCheckLanes(block, words)) return storeCheckWords(block, bytes, words, dataBits, byteSwapEcc);
    forEachBusWord(block, bytes, words, dataBits,
        [&](EndianConvert::UInt128 word) { transform_bus_access_ECC_value(block, byteSwapEcc, word); });
}

} // namespace memdata

// fast_lanes.cpp - see fast_lanes.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/fast_lanes.h"

#include "SystemUtils/bits.h"
#include "lanefillCore/lanes/byte_gather.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/ecc_lanes.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/lane_words.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace memdata {
namespace {

constexpr u64 kMAX_LANES = 256; // lanes of 8 bits on the widest bus, 2048 bits
constexpr u64 kMAX_CHECKED_BUS_BITS = 128;

using LanePointers = std::array<u8*, kMAX_LANES>;

bool oneOf(u64 value, std::initializer_list<u64> values) {
    return std::ranges::find(values, value) != values.end();
}

bool alignedCursor(const BufferChunkAccess* access) {
    return access != nullptr && access->bitOffset == 0;
}

bool regularLane(const BitLaneGridElemType* element, const BitLaneGridElemType* first) {
    if (element->laneWidth != first->laneWidth || element->parityWidth != first->parityWidth ||
        element->bitOrdering != first->bitOrdering || !alignedCursor(element->lane->dataChunks))
        return false;
    return element->parityWidth == 0 || element->lane->parityChunks != nullptr;
}

// Byte swaps that turn a whole lane word round, or leave it.
bool regularSwap(u64 lanePitch, u64 dataBits) {
    return lanePitch == dataBits || !oneOf(lanePitch, {16, 32, 64});
}

bool regularCheckLanes(const BusBlockType* block, unsigned dataBits, unsigned parityWidth) {
    if (block->eccType == kECC_NONE) return true;
    // Lanes of 64 bits merge in the bus word, unless there is only one; that is left to the plain form.
    if (parityWidth > 0 || dataBits * block->laneCount > kMAX_CHECKED_BUS_BITS ||
        (dataBits == 64 && block->laneCount > 1))
        return false;
    return std::all_of(block->eccLanes, block->eccLanes + block->eccLaneCount,
        [](const BitLaneGridElemType* element) { return element->lane->dataChunks != nullptr; });
}

// How many words of so many bits the lanes' cursors still hold.
u64 roomInLanes(const BusBlockType* block, unsigned dataBits, unsigned parityWidth) {
    u64 words = UINT64_MAX;
    for (u64 i = 0; i < block->laneCount; ++i) {
        const BitLaneType* lane = block->lanes[i]->lane;
        words = std::min(words, lane->dataChunks->GetNumberBufferBitsRemaining() / dataBits);
        if (parityWidth > 0) words = std::min(words, lane->parityChunks->GetNumberBufferBitsRemaining() / parityWidth);
    }
    return words;
}

LanePointers lanePointers(const BusBlockType* block) {
    LanePointers lanes{};
    for (u64 i = 0; i < block->laneCount; ++i) lanes[i] = block->lanes[i]->lane->dataChunks->current;
    return lanes;
}

void advanceLanes(const BusBlockType* block, unsigned dataBits, u64 words) {
    for (u64 i = 0; i < block->laneCount; ++i) {
        block->lanes[i]->lane->dataChunks->SkipBits(words * dataBits);
        update_max_transform_buffer_addresses(block->lanes[i]);
        block->lanes[i]->lane->laneState += static_cast<u32>(words);
    }
}

// Bits of a byte stream, most significant first, up to 64 at once from any bit.
u64 streamBits(const u8* bytes, u64 firstBit, unsigned count) {
    u64 value = 0;
    const u8* at = bytes + firstBit / 8;
    unsigned have = 8 - static_cast<unsigned>(firstBit % 8);
    value = *at++ & getBitMask(have);
    for (; have + 8 <= count; have += 8) value = value << 8 | *at++;
    if (have >= count) return value >> (have - count);
    const unsigned rest = count - have;
    return value << rest | static_cast<u64>(*at) >> (8 - rest);
}

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

// Words with parity: pad and parity bits stand ahead of each lane's data bits, so that the source is a stream
// of hex digits.
void transformParityWords(const BusBlockType* block, const u8* bytes, u64 firstBit, u64 words, unsigned dataBits,
    unsigned parityWidth, unsigned headBits) {
    const bool mirror = block->lanes[0]->bitOrdering == kBIT_ORDERING_ASCENDING;
    const LanePointers lanes = lanePointers(block);
    for (u64 word = 0; word < words; ++word)
        for (u64 i = 0; i < block->laneCount; ++i) {
            BufferChunkAccess* parity = block->lanes[i]->lane->parityChunks;
            parity->PutNextTransformChunk(
                parityWidth, streamBits(bytes, firstBit + headBits - parityWidth, parityWidth));
            u64 value = streamBits(bytes, firstBit + headBits, dataBits);
            if (mirror) value = reverseDataBits(dataBits, value);
            value = swapLaneBytes(static_cast<unsigned>(block->lanePitch), value);
            std::memcpy(lanes[i] + word * (dataBits / 8), &value, dataBits / 8); // low byte first
            firstBit += headBits + dataBits;
        }
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

void transformCheckWords(BusBlockType* block, const u8* bytes, u64 words, unsigned dataBits, bool byteSwapEcc) {
    if (plainCheckLanes(block, words)) return storeCheckWords(block, bytes, words, dataBits, byteSwapEcc);
    forEachBusWord(block, bytes, words, dataBits,
        [&](EndianConvert::UInt128 word) { transform_bus_access_ECC_value(block, byteSwapEcc, word); });
}

} // namespace

bool hasFastShape(const BusBlockType* block) {
    if (block->laneCount == 0 || block->laneCount > kMAX_LANES) return false;
    const BitLaneGridElemType* first = block->lanes[0];
    const unsigned dataBits = laneDataBits(first);
    return oneOf(dataBits, {8, 16, 32, 64}) && oneOf(first->parityWidth, {0, 1, 2, 4, 8}) &&
           regularSwap(block->lanePitch, dataBits) && regularCheckLanes(block, dataBits, first->parityWidth) &&
           std::all_of(block->lanes, block->lanes + block->laneCount,
               [first](const BitLaneGridElemType* element) { return regularLane(element, first); });
}

u64 transformWholeBusWords(BusBlockType* block, BufferChunkAccess* source, u64 maxWords, bool byteSwapEcc) {
    const BitLaneGridElemType* first = block->lanes[0];
    const unsigned dataBits = laneDataBits(first);
    const unsigned parityWidth = first->parityWidth;
    const unsigned headBits = (parityWidth + 3) / 4 * 4; // pad bits and parity bits
    if (parityWidth == 0 && source->bitOffset != 0) return 0;
    const u64 wordBits = block->laneCount * (headBits + dataBits);
    const u64 words = std::min(
        {maxWords, source->GetNumberBufferBitsRemaining() / wordBits, roomInLanes(block, dataBits, parityWidth)});
    if (words == 0) return 0;

    if (parityWidth > 0) {
        transformParityWords(block, source->current, source->bitOffset, words, dataBits, parityWidth, headBits);
    } else {
        const GatherForm form{dataBits / 8,
            (block->lanePitch == dataBits) == (first->bitOrdering == kBIT_ORDERING_ASCENDING),
            first->bitOrdering == kBIT_ORDERING_ASCENDING};
        const LanePointers lanes = lanePointers(block);
        gatherLanes(form, source->current, std::span(lanes.data(), block->laneCount), words);
        if (block->eccType != kECC_NONE) transformCheckWords(block, source->current, words, dataBits, byteSwapEcc);
    }
    advanceLanes(block, dataBits, words);
    source->SkipBits(words * wordBits);
    return words;
}

} // namespace memdata

// fast_lanes.cpp - see fast_lanes.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/fast_lanes.h"

#include "lanefillCore/lanes/bus_fields.h"
#include "lanefillCore/lanes/byte_gather.h"
#include "lanefillCore/lanes/check_words.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/stream_lanes.h"
#include "lanefillCore/records/progress_stages.h"

#include <algorithm>
#include <array>

namespace memdata {
namespace {

constexpr u64 kMAX_GATHERED_LANES = 256; // lanes of a byte
constexpr u64 kSTEP_WORDS = 256 * 1024;  // between two reports of progress; whole bytes of the narrowest lane

bool oneOf(u64 value, std::initializer_list<u64> values) {
    return std::ranges::find(values, value) != values.end();
}

bool allLanes(const BusBlockType* block, const auto& holds) {
    return std::all_of(block->lanes, block->lanes + block->laneCount, holds);
}

bool allAlike(const BusBlockType* block) {
    return allLanes(block, [first = block->lanes[0]](const BitLaneGridElemType* element) {
        return element->laneWidth == first->laneWidth && element->parityWidth == first->parityWidth &&
               element->bitOrdering == first->bitOrdering;
    });
}

bool fitsStream(const BitLaneGridElemType* element) {
    const unsigned dataBits = laneDataBits(element);
    return dataBits >= 1 && dataBits <= 64 && oneOf(element->parityWidth, {0, 1, 2, 4, 8}) &&
           element->lane->dataChunks != nullptr &&
           (element->parityWidth == 0 || element->lane->parityChunks != nullptr);
}

unsigned slotBitsOf(const BitLaneGridElemType* element) {
    return laneSlotBits(laneDataBits(element));
}

// A swap that turns a whole lane word round, or leaves it.
bool wholeSwap(u64 lanePitch, u64 dataBits) {
    return lanePitch == dataBits || !oneOf(lanePitch, {16, 32, 64});
}

// Lanes of whole bytes without parity bits, in source and buffers on whole bytes: bytes only change places.
bool canGather(const BusBlockType* block, const BufferChunkAccess* source) {
    const BitLaneGridElemType* first = block->lanes[0];
    const unsigned dataBits = laneDataBits(first);
    return oneOf(dataBits, {8, 16, 32, 64}) && first->parityWidth == 0 && block->laneCount <= kMAX_GATHERED_LANES &&
           allAlike(block) && source->bitOffset == 0 && wholeSwap(block->lanePitch, dataBits) &&
           allLanes(
               block, [](const BitLaneGridElemType* element) { return element->lane->dataChunks->bitOffset == 0; });
}

void gatherWords(const BusBlockType* block, const BufferChunkAccess* source, u64 words) {
    const BitLaneGridElemType* first = block->lanes[0];
    const unsigned dataBits = laneDataBits(first);
    const bool mirror = first->bitOrdering == kBIT_ORDERING_ASCENDING;
    std::array<u8*, kMAX_GATHERED_LANES> lanes;
    for (u64 i = 0; i < block->laneCount; ++i) lanes[i] = block->lanes[i]->lane->dataChunks->current;
    // The first byte of a word is its most significant and the last in the lane; swap and mirror turn that round.
    const bool reverse = (block->lanePitch == dataBits) == mirror;
    gatherLanes({dataBits / 8, reverse, mirror}, source->current, std::span(lanes.data(), block->laneCount), words);
}

void storeRun(BusBlockType* block, const BufferChunkAccess* source, u64 words, bool byteSwapEcc) {
    if (canGather(block, source))
        gatherWords(block, source, words);
    else
        transformStreamWords(block, source, words);
    if (block->eccType != kECC_NONE) transformCheckWords(block, source, words, byteSwapEcc);
}

// How many words the lanes' cursors still hold.
u64 roomInLanes(const BusBlockType* block) {
    u64 words = UINT64_MAX;
    for (u64 i = 0; i < block->laneCount; ++i) {
        const BitLaneGridElemType* element = block->lanes[i];
        const BitLaneType* lane = element->lane;
        words = std::min(words, lane->dataChunks->GetNumberBufferBitsRemaining() / slotBitsOf(element));
        if (element->parityWidth > 0)
            words = std::min(words, lane->parityChunks->GetNumberBufferBitsRemaining() / element->parityWidth);
    }
    return words;
}

void advanceLanes(const BusBlockType* block, u64 words) {
    for (u64 i = 0; i < block->laneCount; ++i) {
        BitLaneGridElemType* element = block->lanes[i];
        BitLaneType* lane = element->lane;
        lane->dataChunks->SkipBits(words * slotBitsOf(element));
        if (element->parityWidth > 0) lane->parityChunks->SkipBits(words * element->parityWidth);
        update_max_transform_buffer_addresses(element);
        lane->laneState += static_cast<u32>(words);
    }
}

} // namespace

bool hasFastShape(const BusBlockType* block) {
    return block->laneCount > 0 && allLanes(block, fitsStream);
}

u64 transformWholeBusWords(BusBlockType* block, BufferChunkAccess* source, u64 maxWords, bool byteSwapEcc) {
    const u64 wordBits = busWordBits(block);
    const u64 words = std::min({maxWords, source->GetNumberBufferBitsRemaining() / wordBits, roomInLanes(block)});
    u64 left = words;
    int status = 0;
    while (left > 0 && status == 0) {
        const u64 stored = std::min(left, kSTEP_WORDS);
        storeRun(block, source, stored, byteSwapEcc);
        advanceLanes(block, stored);
        source->SkipBits(stored * wordBits);
        left -= stored;
        status = advanceProgress(stored * wordBits / 8);
    }
    return words - left;
}

} // namespace memdata

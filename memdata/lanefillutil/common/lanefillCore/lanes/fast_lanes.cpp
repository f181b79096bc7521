// fast_lanes.cpp - see fast_lanes.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/fast_lanes.h"

#include "lanefillCore/lanes/byte_gather.h"
#include "lanefillCore/lanes/check_words.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/narrow_gather.h"
#include "lanefillCore/lanes/stream_lanes.h"
#include "lanefillCore/records/progress_stages.h"

#include <algorithm>
#include <array>

namespace memdata {
namespace {

constexpr u64 kMAX_GATHERED_LANES = 256; // lanes of a byte
constexpr u64 kMAX_CHECKED_BUS_BITS = 128;
constexpr u64 kSTEP_WORDS = 256 * 1024; // between two reports of progress; a multiple of all words that fill bytes

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

// Of a lane's word in a source: pad bits and parity bits, then the data bits.
u64 sourceBitsOf(const BitLaneGridElemType* element) {
    return u64{(element->parityWidth + 3) / 4 * 4} + laneDataBits(element);
}

// A swap that turns a whole lane word round, or leaves it.
bool wholeSwap(u64 lanePitch, u64 dataBits) {
    return lanePitch == dataBits || !oneOf(lanePitch, {16, 32, 64});
}

// Check values can be taken from the source's bytes. Lanes of 64 bits merge in the bus word, unless there is
// only one; those are left to the stream.
bool checkedFromBytes(const BusBlockType* block, unsigned dataBits) {
    if (block->eccType == kECC_NONE) return true;
    if (dataBits * block->laneCount > kMAX_CHECKED_BUS_BITS || (dataBits == 64 && block->laneCount > 1)) return false;
    return std::all_of(block->eccLanes, block->eccLanes + block->eccLaneCount,
        [](const BitLaneGridElemType* element) { return element->lane->dataChunks != nullptr; });
}

// Lanes of whole bytes without parity bits, in source and buffers on whole bytes: bytes only change places.
bool canGather(const BusBlockType* block, const BufferChunkAccess* source) {
    const BitLaneGridElemType* first = block->lanes[0];
    const unsigned dataBits = laneDataBits(first);
    return oneOf(dataBits, {8, 16, 32, 64}) && first->parityWidth == 0 && block->laneCount <= kMAX_GATHERED_LANES &&
           allAlike(block) && source->bitOffset == 0 && wholeSwap(block->lanePitch, dataBits) &&
           checkedFromBytes(block, dataBits) && allLanes(block, [](const BitLaneGridElemType* element) {
               return element->lane->dataChunks->bitOffset == 0;
           });
}

void gatherWords(BusBlockType* block, const BufferChunkAccess* source, u64 words, bool byteSwapEcc) {
    const BitLaneGridElemType* first = block->lanes[0];
    const unsigned dataBits = laneDataBits(first);
    const bool mirror = first->bitOrdering == kBIT_ORDERING_ASCENDING;
    std::array<u8*, kMAX_GATHERED_LANES> lanes;
    for (u64 i = 0; i < block->laneCount; ++i) lanes[i] = block->lanes[i]->lane->dataChunks->current;
    // The first byte of a word is its most significant and the last in the lane; swap and mirror turn that round.
    const bool reverse = (block->lanePitch == dataBits) == mirror;
    gatherLanes({dataBits / 8, reverse, mirror}, source->current, std::span(lanes.data(), block->laneCount), words);
    if (block->eccType != kECC_NONE) transformCheckWords(block, source->current, words, dataBits, byteSwapEcc);
}

// Lanes of less than a byte without parity and check bits, whose words fill bytes.
bool canGatherNarrow(const BusBlockType* block, const BufferChunkAccess* source) {
    const BitLaneGridElemType* first = block->lanes[0];
    const unsigned dataBits = laneDataBits(first);
    return oneOf(dataBits, {1, 2, 4}) && first->parityWidth == 0 && block->eccType == kECC_NONE && allAlike(block) &&
           !oneOf(block->lanePitch, {16, 32, 64}) && source->bitOffset % dataBits == 0 &&
           allLanes(block, [first](const BitLaneGridElemType* element) {
               return element->lane->dataChunks->bitOffset == first->lane->dataChunks->bitOffset;
           });
}

void gatherNarrowWords(BusBlockType* block, const BufferChunkAccess* source, u64 laneBytes) {
    const BitLaneGridElemType* first = block->lanes[0];
    std::array<u8*, kMAX_STREAM_LANES> lanes;
    for (u64 i = 0; i < block->laneCount; ++i) lanes[i] = block->lanes[i]->lane->dataChunks->current;
    gatherNarrowLanes(laneDataBits(first), first->bitOrdering == kBIT_ORDERING_ASCENDING, source->current,
        source->bitOffset, std::span(lanes.data(), block->laneCount), laneBytes);
}

// Stores a run of words, at most maxWords, in the best way that their place allows; their number.
u64 storeRun(BusBlockType* block, const BufferChunkAccess* source, u64 maxWords, bool byteSwapEcc) {
    u64 words = maxWords;
    if (canGather(block, source)) {
        gatherWords(block, source, words, byteSwapEcc);
        return words;
    }
    if (canGatherNarrow(block, source)) {
        const unsigned dataBits = laneDataBits(block->lanes[0]);
        const u64 perByte = wordsPerLaneByte(dataBits);
        const u64 intoByte = block->lanes[0]->lane->dataChunks->bitOffset / dataBits;
        if (intoByte == 0 && words >= perByte) {
            gatherNarrowWords(block, source, words / perByte);
            return words / perByte * perByte;
        }
        words = std::min(words, perByte - intoByte); // as a stream up to the next byte, or to the end
    }
    transformStreamWords(block, source, words, byteSwapEcc);
    return words;
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
        block->lanes[i]->lane->dataChunks->SkipBits(words * slotBitsOf(block->lanes[i]));
        update_max_transform_buffer_addresses(block->lanes[i]);
        block->lanes[i]->lane->laneState += static_cast<u32>(words);
    }
}

} // namespace

bool hasFastShape(const BusBlockType* block) {
    return block->laneCount > 0 && block->laneCount <= kMAX_STREAM_LANES && allLanes(block, fitsStream);
}

u64 transformWholeBusWords(BusBlockType* block, BufferChunkAccess* source, u64 maxWords, bool byteSwapEcc) {
    u64 wordBits = 0;
    for (u64 i = 0; i < block->laneCount; ++i) wordBits += sourceBitsOf(block->lanes[i]);
    const u64 words = std::min({maxWords, source->GetNumberBufferBitsRemaining() / wordBits, roomInLanes(block)});
    u64 left = words;
    int status = 0;
    while (left > 0 && status == 0) {
        const u64 stored = storeRun(block, source, std::min(left, kSTEP_WORDS), byteSwapEcc);
        advanceLanes(block, stored);
        source->SkipBits(stored * wordBits);
        left -= stored;
        status = advanceProgress(stored * wordBits / 8);
    }
    return words - left;
}

} // namespace memdata

// unit_words.cpp - see unit_words.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/unit_words.h"

#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/ecc_lanes.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/lane_words.h"

#include <algorithm>
#include <span>

namespace memdata {
namespace {

constexpr unsigned kUNIT_BITS = 8;
constexpr u8 kUNIT_MASKS[kUNIT_BITS + 1] = {0, 1, 3, 7, 15, 31, 63, 127, 255}; // [bits]
constexpr u64 kCHUNK_BITS = 56; // beside what is left of a chunk, less than a unit, it fits into 64

std::span<BitLaneGridElemType* const> lanesOf(const BusBlockType* block) {
    return {block->lanes, block->laneCount};
}

bool isUnit(const BitLaneGridElemType* element) {
    const u64 bits = element->laneWidth;
    return element->parityWidth == 0 && (bits == 1 || bits == 2 || bits == 4 || bits == kUNIT_BITS);
}

u64 sumOfWidths(const BusBlockType* block) {
    u64 bits = 0;
    for (const BitLaneGridElemType* element : lanesOf(block)) bits += element->laneWidth;
    return bits;
}

// The next busBits bits of the source, which holds them, lane by lane. Gives the bus word where there is a code to
// read it, else 0.
EndianConvert::UInt128 takeBusWord(const BusBlockType* block, u64 busBits, BufferChunkAccess* source) {
    const bool checked = block->eccType != kECC_NONE;
    EndianConvert::UInt128 bus{0, 0};
    u64 chunk = 0; // the low chunkBits bits of it are for the lanes to come, the first lane's are the highest
    unsigned chunkBits = 0;
    for (const BitLaneGridElemType* element : lanesOf(block)) {
        const auto bits = static_cast<unsigned>(element->laneWidth);
        if (chunkBits < bits) {
            auto more = static_cast<unsigned>(std::min(busBits, kCHUNK_BITS));
            busBits -= more;
            chunk = chunk << more | source->GetNextTransformChunk(&more);
            chunkBits += more;
        }
        chunkBits -= bits;
        u64 word = chunk >> chunkBits & kUNIT_MASKS[bits];
        if (element->bitOrdering == kBIT_ORDERING_ASCENDING) word = reverseDataBits(bits, word);

        BitLaneType* lane = element->lane;
        if (lane->dataChunks->GetNumberBufferBitsRemaining() > 0) ++lane->laneState; // a word without room is none
        lane->dataChunks->PutNextTransformChunk(bits, word);
        if (checked) accumulate_bus_width_value(bits, word, &bus);
    }
    return bus;
}

} // namespace

bool hasUnitWords(const BusBlockType* block) {
    return block->laneCount > 0 && !swapsLaneBytes(static_cast<unsigned>(block->lanePitch)) &&
           std::ranges::all_of(lanesOf(block), isUnit);
}

u64 transformUnitWords(BusBlockType* block, BufferChunkAccess* source, u64 maxWords, bool byteSwapEcc) {
    const u64 busBits = std::max<u64>(sumOfWidths(block), 1); // the block has lanes
    const u64 words = std::min(maxWords, source->GetNumberBufferBitsRemaining() / busBits);
    for (u64 word = 0; word < words; ++word)
        transform_bus_access_ECC_value(block, byteSwapEcc, takeBusWord(block, busBits, source));
    if (words > 0)
        for (BitLaneGridElemType* element : lanesOf(block)) update_max_transform_buffer_addresses(element);
    return words;
}

} // namespace memdata

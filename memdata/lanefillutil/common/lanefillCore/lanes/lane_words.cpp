// lane_words.cpp - see lane_words.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/lane_words.h"

#include "SystemUtils/bits.h"
#include "lanefillCore/lanes/lane_positions.h"

namespace {

constexpr unsigned kHEX_DIGIT_BITS = 4;

u64 storedWord(const BufferChunkAccess* access, unsigned bits) {
    BufferChunkAccess copy = *access;
    return copy.GetNextTransformChunk(&bits);
}

// The next bits of the source. When it holds fewer, they are the top bits, and the word that the lane holds
// gives the rest. access may be null: its word is 0.
u64 nextWord(BufferChunkAccess* source, unsigned bits, unsigned swapWidth, const BufferChunkAccess* access) {
    unsigned got = bits;
    const u64 value = source->GetNextTransformChunk(&got);
    if (got == bits) return value;
    const unsigned missing = bits - got;
    const u64 old = access == nullptr ? 0 : memdata::swapLaneBytes(swapWidth, storedWord(access, bits));
    return (missing < 64 ? value << missing : 0) | (old & getBitMask(missing));
}

void skipPad(BufferChunkAccess* source, unsigned parityWidth) {
    if (parityWidth % kHEX_DIGIT_BITS == 0) return;
    unsigned pad = kHEX_DIGIT_BITS - parityWidth % kHEX_DIGIT_BITS;
    source->GetNextTransformChunk(&pad);
}

void takeParity(BitLaneGridElemType* element, BufferChunkAccess* source, EndianConvert::UInt128* bus) {
    BufferChunkAccess* access = element->lane->parityChunks;
    const unsigned bits = element->parityWidth;
    skipPad(source, bits);
    const u64 value = nextWord(source, bits, 0, access);
    if (access != nullptr) access->PutNextTransformChunk(bits, value);
    accumulate_bus_width_value(bits, value, bus);
}

void storeWord(BitLaneGridElemType* element, unsigned swapWidth, unsigned bits, u64 word, EndianConvert::UInt128* bus) {
    BitLaneType* lane = element->lane;
    if (lane->dataChunks->GetNumberBufferBitsRemaining() > 0) ++lane->laneState; // a word that finds no room is none
    lane->dataChunks->PutNextTransformChunk(bits, memdata::swapLaneBytes(swapWidth, word));
    if (const unsigned slotBits = memdata::laneSlotBits(bits); slotBits > bits)
        lane->dataChunks->SkipBits(slotBits - bits);
    update_max_transform_buffer_addresses(element);
    accumulate_bus_width_value(bits, word, bus);
}

} // namespace

namespace memdata {

void accumulateStoredWord(const BitLaneGridElemType* element, unsigned swapWidth, EndianConvert::UInt128* bus) {
    const BitLaneType* lane = element->lane;
    if (element->parityWidth > 0)
        accumulate_bus_width_value(element->parityWidth,
            lane->parityChunks == nullptr ? 0 : storedWord(lane->parityChunks, element->parityWidth), bus);
    const unsigned bits = laneDataBits(element);
    const u64 word = swapLaneBytes(swapWidth, storedWord(lane->dataChunks, bits));
    accumulate_bus_width_value(bits, word & 0xFFFFFFFF, bus); // on purpose 32 bits
}

} // namespace memdata

void transform_bitLane_value(
    BitLaneGridElemType* element, unsigned swapWidth, BufferChunkAccess* source, EndianConvert::UInt128* bus) {
    if (element->parityWidth > 0) takeParity(element, source, bus);

    const unsigned bits = memdata::laneDataBits(element);
    const bool isNew = source->GetNumberBufferBitsRemaining() > 0;
    u64 word = nextWord(source, bits, swapWidth, element->lane->dataChunks);
    // A word that stays as the lane holds it has been mirrored already.
    if (isNew && element->bitOrdering == kBIT_ORDERING_ASCENDING) word = reverseDataBits(bits, word);
    storeWord(element, swapWidth, bits, word, bus);
}

void memdata::transformRestOfLaneValue(BitLaneGridElemType* element, unsigned headBits, unsigned swapWidth,
    BufferChunkAccess* source, EndianConvert::UInt128* bus) {
    const unsigned bits = laneDataBits(element);
    const bool mirrors = element->bitOrdering == kBIT_ORDERING_ASCENDING;
    const auto mirrored = [&](u64 word) { return mirrors ? reverseDataBits(bits, word) : word; };
    const u64 old = mirrored(swapLaneBytes(swapWidth, storedWord(element->lane->dataChunks, bits)));
    unsigned got = bits - headBits;
    u64 word = source->GetNextTransformChunk(&got);
    const unsigned missing = bits - headBits - got; // the source may end inside the word too
    word = (old & ~getBitMask(bits - headBits)) | word << missing | (old & getBitMask(missing));
    storeWord(element, swapWidth, bits, mirrored(word), bus);
}

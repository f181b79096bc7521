// stream_lanes.cpp - see stream_lanes.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/stream_lanes.h"

#include "SystemUtils/bits.h"
#include "lanefillCore/lanes/bus_word.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/ecc_lanes.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/lane_words.h"

#include <cstring>

namespace memdata {
namespace {

// Bits of bytes, the most significant bit of a byte first, taken one field after the other.
class BitStream {
public:
    BitStream(const u8* bytes, const u8* end, u64 firstBit) : bytes_(bytes), end_(end), at_(firstBit) {}

    // The next count bits (1 to 64); the stream has them.
    u64 take(unsigned count) {
        const u8* first = bytes_ + at_ / 8;
        const auto passed = static_cast<unsigned>(at_ % 8); // bits of the first byte that are taken already
        at_ += count;
        if (passed + count <= 64 && end_ - first >= 8) {
            u64 word;
            std::memcpy(&word, first, sizeof word);
            return __builtin_bswap64(word) << passed >> (64 - count);
        }
        return takeBytes(first, passed, count);
    }
    void skip(unsigned count) { at_ += count; }

private:
    static u64 takeBytes(const u8* at, unsigned passed, unsigned count) {
        unsigned have = 8 - passed;
        u64 value = *at++ & getBitMask(have);
        for (; have + 8 <= count; have += 8) value = value << 8 | *at++;
        if (have >= count) return value >> (have - count);
        const unsigned rest = count - have;
        return value << rest | static_cast<u64>(*at) >> (8 - rest);
    }

    const u8* bytes_;
    const u8* end_;
    u64 at_; // bits
};

// Puts a word of dataBits bits into the slot at a bit of the lane, low byte first. A slot lies inside a byte or
// is whole bytes; the bits of the slot above the word stay.
void storeWord(u8* lane, u64 firstBit, unsigned dataBits, u64 word) {
    u8* at = lane + firstBit / 8;
    unsigned left = dataBits;
    for (; left >= 8; left -= 8, word >>= 8) *at++ = static_cast<u8>(word);
    if (left == 0) return;
    const unsigned mask = ((1u << left) - 1) << firstBit % 8;
    *at = static_cast<u8>((*at & ~mask) | (static_cast<unsigned>(word) << firstBit % 8 & mask));
}

struct LaneForm {
    unsigned dataBits;
    unsigned parityBits;
    unsigned padBits; // up to a whole hex digit of parity
    unsigned slotBits;
    unsigned swapWidth;
    bool mirror;
};

LaneForm formOf(const BusBlockType* block) {
    const BitLaneGridElemType* first = block->lanes[0];
    const unsigned dataBits = laneDataBits(first);
    return {dataBits, first->parityWidth, (4 - first->parityWidth % 4) % 4, laneSlotBits(dataBits),
        static_cast<unsigned>(block->lanePitch), first->bitOrdering == kBIT_ORDERING_ASCENDING};
}

// One lane's word number wordIndex of the run, from the stream to its buffers; its logical value to the bus.
void transformLane(
    BitLaneType* lane, const LaneForm& form, u64 wordIndex, BitStream* stream, EndianConvert::UInt128* bus) {
    if (form.parityBits > 0) {
        stream->skip(form.padBits);
        const u64 parity = stream->take(form.parityBits);
        lane->parityChunks->PutNextTransformChunk(form.parityBits, parity);
        accumulate_bus_width_value(form.parityBits, parity, bus);
    }
    u64 word = stream->take(form.dataBits);
    if (form.mirror) word = reverseDataBits(form.dataBits, word);
    accumulate_bus_width_value(form.dataBits, word, bus);
    const BufferChunkAccess* cursor = lane->dataChunks;
    storeWord(cursor->current, cursor->bitOffset + wordIndex * form.slotBits, form.dataBits,
        swapLaneBytes(form.swapWidth, word));
}

} // namespace

void transformStreamWords(BusBlockType* block, const BufferChunkAccess* source, u64 words, bool byteSwapEcc) {
    const LaneForm form = formOf(block);
    BitStream stream(source->current, source->buffer + source->byteSize, source->bitOffset);
    for (u64 word = 0; word < words; ++word) {
        EndianConvert::UInt128 bus{0, 0};
        for (u64 i = 0; i < block->laneCount; ++i) transformLane(block->lanes[i]->lane, form, word, &stream, &bus);
        if (block->eccType != kECC_NONE) transform_bus_access_ECC_value(block, byteSwapEcc, bus);
    }
}

} // namespace memdata

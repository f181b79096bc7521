// stream_lanes.cpp - see stream_lanes.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/stream_lanes.h"

#include "SystemUtils/bits.h"
#include "lanefillCore/lanes/bus_word.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/ecc_lanes.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/lane_words.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

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

// One lane of a run: where its next word goes, and what a word is made of.
struct StreamLane {
    u8* at;      // the byte under the lane's cursor
    u64 nextBit; // of the lane's next slot, from there
    BufferChunkAccess* parity;
    unsigned dataBits;
    unsigned slotBits;
    unsigned parityBits;
    unsigned padBits; // up to a whole hex digit of parity
    bool mirror;

    // Puts a word into the next slot, low byte first. A slot lies inside a byte or is whole bytes; the bits of
    // the slot above the word stay.
    void append(u64 word) {
        u8* byte = at + nextBit / 8;
        const unsigned offset = nextBit % 8;
        nextBit += slotBits;
        unsigned left = dataBits;
        for (; left >= 8; left -= 8, word >>= 8) *byte++ = static_cast<u8>(word);
        if (left == 0) return;
        const unsigned mask = ((1u << left) - 1) << offset;
        *byte = static_cast<u8>((*byte & ~mask) | (static_cast<unsigned>(word) << offset & mask));
    }
};

StreamLane streamLane(const BitLaneGridElemType* element) {
    const BitLaneType* lane = element->lane;
    const unsigned dataBits = laneDataBits(element);
    return {lane->dataChunks->current, lane->dataChunks->bitOffset, lane->parityChunks, dataBits,
        laneSlotBits(dataBits), element->parityWidth, (4 - element->parityWidth % 4) % 4,
        element->bitOrdering == kBIT_ORDERING_ASCENDING};
}

// One word of a lane, from the stream to its buffers; its logical value to the bus.
void transformLane(StreamLane& lane, unsigned swapWidth, BitStream* stream, EndianConvert::UInt128* bus) {
    if (lane.parityBits > 0) {
        stream->skip(lane.padBits);
        const u64 parity = stream->take(lane.parityBits);
        lane.parity->PutNextTransformChunk(lane.parityBits, parity);
        accumulate_bus_width_value(lane.parityBits, parity, bus);
    }
    u64 word = stream->take(lane.dataBits);
    if (lane.mirror) word = reverseDataBits(lane.dataBits, word);
    accumulate_bus_width_value(lane.dataBits, word, bus);
    lane.append(swapLaneBytes(swapWidth, word));
}

} // namespace

void transformStreamWords(BusBlockType* block, const BufferChunkAccess* source, u64 words, bool byteSwapEcc) {
    std::array<StreamLane, kMAX_STREAM_LANES> lanes;
    const std::span<StreamLane> used(lanes.data(), block->laneCount);
    std::transform(block->lanes, block->lanes + block->laneCount, used.begin(), streamLane);
    const auto swapWidth = static_cast<unsigned>(block->lanePitch);
    BitStream stream(source->current, source->buffer + source->byteSize, source->bitOffset);
    for (u64 word = 0; word < words; ++word) {
        EndianConvert::UInt128 bus{0, 0};
        for (StreamLane& lane : used) transformLane(lane, swapWidth, &stream, &bus);
        if (block->eccType != kECC_NONE) transform_bus_access_ECC_value(block, byteSwapEcc, bus);
    }
}

} // namespace memdata

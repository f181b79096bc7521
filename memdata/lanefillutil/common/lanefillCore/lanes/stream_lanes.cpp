// stream_lanes.cpp - see stream_lanes.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/stream_lanes.h"

#include "lanefillCore/lanes/bit_stream.h"
#include "lanefillCore/lanes/bus_fields.h"
#include "lanefillCore/lanes/lane_words.h"
#include "lanefillCore/lanes/narrow_gather.h"

#include <algorithm>

namespace memdata {
namespace {

constexpr u64 kTILE_BITS = 64 * 1024; // of the source at a time: stays in the first cache over all lanes

// The slots of a lane from some bit of its buffer on.
struct LaneSlots {
    u8* at;
    u64 nextBit; // of the next slot, from there

    // Puts a word into the next slot, low byte first. A slot lies inside a byte or is whole bytes; the bits of
    // the slot above the word stay.
    void append(const BusField& field, u64 word) {
        u8* byte = at + nextBit / 8;
        const unsigned offset = nextBit % 8;
        nextBit += field.slotBits;
        unsigned left = field.bits;
        for (; left >= 8; left -= 8, word >>= 8) *byte++ = static_cast<u8>(word);
        if (left == 0) return;
        const unsigned mask = ((1u << left) - 1) << offset;
        *byte = static_cast<u8>((*byte & ~mask) | (static_cast<unsigned>(word) << offset & mask));
    }
};

// The words of one field of words bus words, of which the first begins at the stream's next bit.
void storeEach(const BusField& field, BitStream* stream, u64 wordBits, LaneSlots* slots, u64 words) {
    stream->skip(field.firstBit);
    for (; words > 0; --words) {
        u64 word = stream->take(field.bits);
        if (field.mirror) word = reverseDataBits(field.bits, word);
        slots->append(field, swapLaneBytes(field.swapWidth, word));
        stream->skip(wordBits - field.bits);
    }
    stream->skip(0 - field.firstBit);
}

// Words that fill bytes of the lane and never cross bytes of the source.
bool canGatherNarrow(const BusField& field, u64 nextBit, u64 wordBits) {
    const unsigned bits = field.bits;
    if (bits != 1 && bits != 2 && bits != 4) return false;
    if (swapsLaneBytes(field.swapWidth)) return false;
    return (nextBit + field.firstBit) % bits == 0 && wordBits % bits == 0;
}

void storeField(const BusField& field, BitStream stream, u64 wordBits, LaneSlots slots, u64 words) {
    if (canGatherNarrow(field, stream.nextBit(), wordBits)) {
        const u64 perByte = wordsPerLaneByte(field.bits);
        const u64 ahead = std::min(words, (8 - slots.nextBit % 8) % 8 / field.bits);
        storeEach(field, &stream, wordBits, &slots, ahead);
        const u64 laneBytes = (words - ahead) / perByte;
        gatherNarrowLane({field.bits, field.mirror, wordBits}, stream.bytes(), stream.nextBit() + field.firstBit,
            slots.at + slots.nextBit / 8, laneBytes);
        stream.skip(laneBytes * perByte * wordBits);
        slots.nextBit += laneBytes * 8;
        words -= ahead + laneBytes * perByte;
    }
    storeEach(field, &stream, wordBits, &slots, words);
}

} // namespace

void transformStreamWords(const BusBlockType* block, const BufferChunkAccess* source, u64 words) {
    const u64 wordBits = busWordBits(block);
    const u64 tileWords = std::max<u64>(8, kTILE_BITS / wordBits / 8 * 8); // whole bytes of the narrowest lane
    BitStream stream(source);
    for (u64 done = 0; done < words; done += tileWords) {
        const u64 count = std::min(tileWords, words - done);
        forEachBusField(block, [&](const BusField& field) {
            const LaneSlots slots{field.access->current, field.access->bitOffset + done * field.slotBits};
            storeField(field, stream, wordBits, slots, count);
        });
        stream.skip(count * wordBits);
    }
}

} // namespace memdata

// check_words.cpp - see check_words.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/check_words.h"

#include "SystemUtils/bits.h"
#include "lanefillCore/lanes/bit_stream.h"
#include "lanefillCore/lanes/bus_fields.h"
#include "lanefillCore/lanes/check_table.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/ecc_lanes.h"
#include "lanefillCore/lanes/lane_positions.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstring>
#include <span>

namespace memdata {
namespace {

constexpr u64 kCHECK_BITS = 9;        // of the longest code
constexpr u64 kRUN_WORDS = 512;       // at a time: their check values stay in the first cache
constexpr u64 kTABLE_PAYS_WORDS = 64; // shorter runs are over before a table would be made

// The word at the stream's next bit, as the lanes hold it logically: with mirrored lanes, each lane's bits turned round.
EndianConvert::UInt128 logicalWord(const BusBlockType* block, const BitStream& stream) {
    EndianConvert::UInt128 word{0, 0};
    forEachBusField(block, [&](const BusField& field) {
        BitStream at = stream;
        at.skip(field.firstBit);
        const u64 value = at.take(field.bits);
        accumulate_bus_width_value(field.bits, field.mirror ? reverseDataBits(field.bits, value) : value, &word);
    });
    return word;
}

// The check values of a block's bus words.
class WordChecks {
public:
    WordChecks(const BusBlockType* block, bool byteSwap) : block_(block), byteSwap_(byteSwap) {}

    u16 of(const BitStream& stream) const {
        const u32 type = block_->eccType;
        return static_cast<u16>(eccCheckValue(type, eccInput(type, byteSwap_, logicalWord(block_, stream))));
    }
    u16 ofBytes(const u8* word) const { return of(BitStream(word, word + CheckTable::kMAX_BUS_BYTES, 0)); }

private:
    const BusBlockType* block_;
    bool byteSwap_;
};

// Each bit of a word has a check value of its own. Lanes of 64 bits merge with what is in the bus word already.
bool fitsTable(const BusBlockType* block, u64 wordBits) {
    bool merges = false;
    forEachBusField(block, [&](const BusField& field) { merges = merges || (field.bits == 64 && field.firstBit > 0); });
    return !merges && wordBits <= CheckTable::kMAX_BUS_BYTES * 8;
}

// Words of wordBits bits, each moved to a byte of its own.
void packWords(BitStream stream, u64 wordBits, u64 words, u8* bytes) {
    for (; words > 0; --words) {
        u64 left = wordBits;
        for (; left >= 8; left -= 8) *bytes++ = static_cast<u8>(stream.take(8));
        if (left > 0) *bytes++ = static_cast<u8>(stream.take(static_cast<unsigned>(left)) << (8 - left));
    }
}

// Check lanes whose words stand in whole bytes.
bool plainCheckLanes(const BusBlockType* block, u64 words) {
    return std::all_of(block->eccLanes, block->eccLanes + block->eccLaneCount, [=](const BitLaneGridElemType* element) {
        const unsigned slotBits = laneSlotBits(laneDataBits(element));
        const BufferChunkAccess* access = element->lane->dataChunks;
        return access != nullptr && element->parityWidth == 0 && (slotBits == 8 || slotBits == 16) &&
               access->bitOffset == 0 && access->GetNumberBufferBitsRemaining() >= words * slotBits;
    });
}

// Puts the piece of each check value into its slot; the bits of the slot above the piece stay.
template<std::unsigned_integral Slot>
void storePieces(u8* at, unsigned down, u64 mask, std::span<const u16> checks) {
    const auto taken = static_cast<Slot>(mask);
    for (const u16 check : checks) {
        Slot slot;
        std::memcpy(&slot, at, sizeof slot);
        slot = static_cast<Slot>((slot & ~taken) | (check >> down & taken));
        std::memcpy(at, &slot, sizeof slot);
        at += sizeof slot;
    }
}

// Appends to a check lane its bits of check values, which stand down bits above the lowest.
void appendPieces(BitLaneGridElemType* element, u64 down, std::span<const u16> checks) {
    const u64 mask = getBitMask(static_cast<unsigned>(element->laneWidth));
    const auto shift = static_cast<unsigned>(std::min(down, kCHECK_BITS));
    const unsigned slotBits = laneSlotBits(laneDataBits(element));
    BufferChunkAccess* access = element->lane->dataChunks;
    if (slotBits == 8)
        storePieces<u8>(access->current, shift, mask, checks);
    else
        storePieces<u16>(access->current, shift, mask, checks);
    access->SkipBits(checks.size() * slotBits);
    update_max_transform_buffer_addresses(element);
    element->lane->laneState += static_cast<u32>(checks.size());
}

void storeChecks(BusBlockType* block, bool plain, std::span<const u16> checks) {
    if (!plain) {
        for (const u16 check : checks) appendCheckValue(block, check);
        return;
    }
    u64 taken = 0; // bits, from the top of eccBusWidth
    for (u64 i = 0; i < block->eccLaneCount; ++i) {
        taken += block->eccLanes[i]->laneWidth;
        appendPieces(block->eccLanes[i], block->eccBusWidth - taken, checks);
    }
}

// Stores the check values of words, run by run, as checksOf(stream, span of values) gives them.
void storeRuns(BusBlockType* block, BitStream stream, u64 wordBits, u64 words, const auto& checksOf) {
    const bool plain = plainCheckLanes(block, words);
    std::array<u16, kRUN_WORDS> values;
    while (words > 0) {
        const std::span<u16> run(values.data(), std::min<u64>(words, values.size()));
        checksOf(stream, run);
        storeChecks(block, plain, run);
        stream.skip(run.size() * wordBits);
        words -= run.size();
    }
}

} // namespace

void transformCheckWords(BusBlockType* block, const BufferChunkAccess* source, u64 words, bool byteSwapEcc) {
    const WordChecks checks(block, byteSwapEcc);
    const u64 wordBits = busWordBits(block);
    const BitStream stream(source);
    if (words < kTABLE_PAYS_WORDS || !fitsTable(block, wordBits))
        return storeRuns(block, stream, wordBits, words, [&](BitStream at, std::span<u16> run) {
            for (u16& check : run) {
                check = checks.of(at);
                at.skip(wordBits);
            }
        });

    const CheckTable table((wordBits + 7) / 8, [&](const u8* word) { return checks.ofBytes(word); });
    storeRuns(block, stream, wordBits, words, [&](const BitStream& at, std::span<u16> run) {
        if (wordBits % 8 == 0 && at.nextBit() % 8 == 0) return table.checksOf(at.bytes() + at.nextBit() / 8, run);
        std::array<u8, kRUN_WORDS * CheckTable::kMAX_BUS_BYTES> packed;
        packWords(at, wordBits, run.size(), packed.data());
        table.checksOf(packed.data(), run);
    });
}

} // namespace memdata

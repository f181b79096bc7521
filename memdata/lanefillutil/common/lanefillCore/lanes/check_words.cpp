// check_words.cpp - see check_words.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/check_words.h"

#include "SystemUtils/bits.h"
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

// The word at bytes, as the lanes hold it.
EndianConvert::UInt128 logicalWord(const BusBlockType* block, const u8* bytes, unsigned dataBits) {
    const bool mirror = block->lanes[0]->bitOrdering == kBIT_ORDERING_ASCENDING;
    return mirror ? mirroredLanes(bytes, block->laneCount, dataBits)
                  : busWordAt(bytes, block->laneCount * dataBits / 8);
}

// Check lanes whose words stand in whole bytes.
bool plainCheckLanes(const BusBlockType* block, u64 words) {
    if (block->eccLaneCount > block->laneCount) return false; // some have no cursor
    return std::all_of(block->eccLanes, block->eccLanes + block->eccLaneCount, [=](const BitLaneGridElemType* element) {
        const unsigned slotBits = laneSlotBits(laneDataBits(element));
        const BufferChunkAccess* access = element->lane->dataChunks;
        return element->parityWidth == 0 && (slotBits == 8 || slotBits == 16) && access->bitOffset == 0 &&
               access->GetNumberBufferBitsRemaining() >= words * slotBits;
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

void storeCheckWords(BusBlockType* block, const CheckTable& table, const u8* bytes, u64 words, u64 busBytes) {
    std::array<u16, kRUN_WORDS> values;
    while (words > 0) {
        const std::span<u16> run(values.data(), std::min<u64>(words, values.size()));
        table.checksOf(bytes, run);
        u64 taken = 0; // bits, from the top of eccBusWidth
        for (u64 i = 0; i < block->eccLaneCount; ++i) {
            taken += block->eccLanes[i]->laneWidth;
            appendPieces(block->eccLanes[i], block->eccBusWidth - taken, run);
        }
        bytes += run.size() * busBytes;
        words -= run.size();
    }
}

} // namespace

void transformCheckWords(BusBlockType* block, const u8* bytes, u64 words, unsigned dataBits, bool byteSwapEcc) {
    const u64 busBytes = block->laneCount * dataBits / 8;
    if (words >= kTABLE_PAYS_WORDS && plainCheckLanes(block, words)) {
        const CheckTable table(busBytes, [=](const u8* word) {
            return eccCheckValue(
                block->eccType, eccInput(block->eccType, byteSwapEcc, logicalWord(block, word, dataBits)));
        });
        return storeCheckWords(block, table, bytes, words, busBytes);
    }
    for (; words > 0; --words, bytes += busBytes)
        transform_bus_access_ECC_value(block, byteSwapEcc, logicalWord(block, bytes, dataBits));
}

} // namespace memdata

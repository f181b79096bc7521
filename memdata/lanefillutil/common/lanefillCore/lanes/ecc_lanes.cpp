// ecc_lanes.cpp - see ecc_lanes.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/ecc_lanes.h"

#include "SystemUtils/bits.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/lanes/lane_positions.h"

namespace {

// Appends one word to a lane: its parity bits, which are the top bits, beside its data bits.
void appendWord(BitLaneGridElemType* element, u64 word) {
    BitLaneType* lane = element->lane;
    if (lane->dataChunks == nullptr) return;
    const unsigned dataBits = memdata::laneDataBits(element);
    if (lane->dataChunks->GetNumberBufferBitsRemaining() > 0) ++lane->laneState; // a word that finds no room is none
    if (element->parityWidth > 0 && lane->parityChunks != nullptr)
        lane->parityChunks->PutNextTransformChunk(element->parityWidth, word >> dataBits);
    lane->dataChunks->PutNextTransformChunk(dataBits, word & getBitMask(dataBits));
    lane->dataChunks->SkipBits(memdata::laneSlotBits(dataBits) - dataBits);
    update_max_transform_buffer_addresses(element);
}

} // namespace

namespace memdata {

EndianConvert::UInt128 eccInput(u32 eccType, bool byteSwap, EndianConvert::UInt128 word) {
    using namespace EndianConvert;
    switch (eccType) {
    case kECC_H32_7:
        return {0, byteSwap ? swapFourBytes(word.low) : word.low & 0xFFFFFFFF};
    case kECC_HSIAO128_9:
        return byteSwap ? UInt128{swapEightBytes(word.low), swapEightBytes(word.high)} : word;
    // On purpose eight bytes for the 32-bit code too.
    default:
        return byteSwap ? UInt128{word.high, swapEightBytes(word.low)} : word;
    }
}

void appendCheckValue(BusBlockType* block, u64 check) {
    u64 taken = 0; // bits, from the top of eccBusWidth
    for (u64 i = 0; i < block->eccLaneCount; ++i) {
        BitLaneGridElemType* element = block->eccLanes[i];
        taken += element->laneWidth;
        const u64 down = block->eccBusWidth - taken;
        const u64 piece = down < 64 ? check >> down : 0;
        appendWord(element, piece & getBitMask(static_cast<unsigned>(element->laneWidth)));
    }
}

} // namespace memdata

void transform_bus_access_ECC_value(BusBlockType* block, bool byteSwap, EndianConvert::UInt128 value) {
    if (block->eccType == kECC_NONE) return;
    memdata::appendCheckValue(
        block, memdata::eccCheckValue(block->eccType, memdata::eccInput(block->eccType, byteSwap, value)));
}

// frame_codec.cpp - one memory between its images and its frames, bit after bit, and the choice of the fast form.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/frame_codec.h"

#include "BRAMDecodeUtils/bit_access.h"
#include "BRAMDecodeUtils/codec_plan.h"
#include "BRAMDecodeUtils/decode_tables.h"

namespace {

constexpr u64 kUNIT_BITS = 16; // of the images of a Dunmare6 memory

} // namespace

u64 AdjustBitIndexes(const TarselDeviceType* device, u64 laneWidth, u64 index, u64 memoryBits) {
    if (device->family != &kDunmare6FamilyTable) return index;
    switch (laneWidth) {
    case 2:
    case 4:
    case 8:
    case 16:
        return index ^ (laneWidth - 1);
    case 32: {
        // The units of the low half go to the odd positions, those of the high half to the even ones.
        const u64 spread = index / kUNIT_BITS * kUNIT_BITS * 2 + index % kUNIT_BITS;
        return (index < memoryBits / 2 ? spread + kUNIT_BITS : spread - memoryBits) ^ (kUNIT_BITS - 1);
    }
    default:
        return index;
    }
}

void DecodeBRAM(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, const u8* frames, u8* data, u8* parity) {
    if (const memdata::CodecPlan* plan = memdata::codecPlan(device, type, table, laneWidth))
        plan->decode(device, frames, data, parity);
    else
        memdata::decodeBitByBit(device, type, table, laneWidth, frames, data, parity);
}

void EncodeBRAM(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, u8* frames, const u8* data, const u8* parity) {
    if (const memdata::CodecPlan* plan = memdata::codecPlan(device, type, table, laneWidth))
        plan->encode(device, frames, data, parity);
    else
        memdata::encodeBitByBit(device, type, table, laneWidth, frames, data, parity);
}

namespace memdata {

u64 codecFrameBytes(const TarselDeviceType* device, const MEMORYType* type) {
    return (type->frameCount - 1) * (device->bramFrameBits / 8) + type->frameSliceBits / 8;
}

BitPlace placeOfEntry(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, u64 row, u64 sliceBit) {
    const i32 entry = table[row].bits[sliceBit];
    if (entry < kLAST_PARITY_ENTRY) return {};
    if (entry < 0) {
        const u64 bit = static_cast<u64>(~entry) + table[row].parityBase;
        return bit < type->parityBits ? BitPlace{BitPlace::PARITY, bit} : BitPlace{};
    }
    const bool countsRows = (device->family->familyMask & kFIRST_GENERATION_MASK) != 0;
    const u64 base = countsRows ? row * type->dataRowBits : u64{table[row].dataBase};
    const u64 bit = AdjustBitIndexes(device, laneWidth, static_cast<u64>(entry) + base, type->dataBits);
    return bit < type->dataBits ? BitPlace{BitPlace::DATA, bit} : BitPlace{};
}

void decodeBitByBit(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, const u8* frames, u8* data, u8* parity) {
    for (u64 row = 0; row < type->frameCount; ++row) {
        const u64 source = table[row].frame * type->frameSliceBits;
        for (u64 bit = 0; bit < type->frameSliceBits; ++bit) {
            const BitPlace place = placeOfEntry(device, type, table, laneWidth, row, bit);
            const bool value = GetBit(frames, type->frameSliceBits, device->bramFrameBits, source + bit);
            if (place.image == BitPlace::PARITY)
                SetBit(parity, type->parityRowBits, type->parityRowBits, place.bit, value);
            else if (place.image == BitPlace::DATA)
                SetBit(data, type->dataRowBits, type->dataRowBits, place.bit, value);
        }
    }
}

void encodeBitByBit(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, u8* frames, const u8* data, const u8* parity) {
    for (u64 row = 0; row < type->frameCount; ++row) {
        const u64 source = table[row].frame * type->frameSliceBits;
        for (u64 bit = 0; bit < type->frameSliceBits; ++bit) {
            const BitPlace place = placeOfEntry(device, type, table, laneWidth, row, bit);
            if (place.image == BitPlace::NONE) continue;
            const bool value = place.image == BitPlace::PARITY
                                   ? GetBit(parity, type->parityRowBits, type->parityRowBits, place.bit)
                                   : GetBit(data, type->dataRowBits, type->dataRowBits, place.bit);
            SetBit(frames, type->frameSliceBits, device->bramFrameBits, source + bit, value);
        }
    }
}

} // namespace memdata

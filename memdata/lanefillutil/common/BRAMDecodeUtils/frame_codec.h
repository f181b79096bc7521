// frame_codec.h - one memory between its images and the configuration frames that hold its bits.
//
// Images: dataBits / 8 and parityBits / 8 bytes, bit k in byte k / 8 under mask 0x80 >> (k mod 8). A memory whose type
// has no parity has no parity image: null. Frames: frame f of the memory's slice begins f * bramFrameBits / 8 bytes
// behind the memory's first byte; codecFrameBytes tells how far the last one reaches. Bits that a table calls no
// bits of the memory, and image bits that lie outside of the image, are left alone on either side.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BRAM_DECODE_UTILS_FRAME_CODEC_H
#define MEMDATA_BRAM_DECODE_UTILS_FRAME_CODEC_H

#include "DeviceTableUtils/records.h"

// Where a data bit of a Dunmare6 memory goes in its image, by the width of the lane that uses it (parity counted); other
// families and widths above 32 leave it. memoryBits are the data bits of the memory: a 32-bit lane takes its 16-bit
// units from both halves by turns.
u64 AdjustBitIndexes(const TarselDeviceType* device, u64 laneWidth, u64 index, u64 memoryBits = 16384);

void DecodeBRAM(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, const u8* frames, u8* data, u8* parity);
void EncodeBRAM(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, u8* frames, const u8* data, const u8* parity);

namespace memdata {

// Bytes from the first to the last that a memory's slice reaches.
u64 codecFrameBytes(const TarselDeviceType* device, const MEMORYType* type);

// The same two, bit after bit as the tables say: what the fast forms are held against.
void decodeBitByBit(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, const u8* frames, u8* data, u8* parity);
void encodeBitByBit(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, u8* frames, const u8* data, const u8* parity);

} // namespace memdata

#endif

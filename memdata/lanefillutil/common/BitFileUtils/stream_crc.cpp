// stream_crc.cpp - the running CRC of a configuration stream, in its plain form: bit after bit.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/stream_crc.h"

u32 gAccumulated_CRC = 0;
u32 gCRC_Address_Length = 0;

void CRC_Bit(u32 bit) {
    const u32 feedback = (bit ^ gAccumulated_CRC) & 1;
    gAccumulated_CRC >>= 1;
    if (feedback != 0) gAccumulated_CRC ^= 0xA001;
}

void CRC_Word(u32 address, u32 word) {
    for (u32 i = 0; i < 32; ++i) CRC_Bit(word >> i & 1);
    for (u32 i = 0; i < gCRC_Address_Length && i < 32; ++i) CRC_Bit(address >> i & 1);
}

void CRC_32_37(u32 address, u32 word) {
    u64 input = u64{address & 0x1F} << 32 | word;
    u32 crc = gAccumulated_CRC;
    for (int i = 0; i < 37; ++i, input >>= 1) {
        const bool feedback = ((crc ^ input) & 1) != 0;
        crc >>= 1;
        if (feedback) crc ^= 0x82F63B78;
    }
    gAccumulated_CRC = crc;
}

void CRC_16_37(u32 address, u32 word) {
    const u32 top = gAccumulated_CRC >> 21 & 1;
    u32 next = (gAccumulated_CRC << 1 & 0x3FFFFF) | top;
    if (top != 0) next ^= 0x9080;
    gAccumulated_CRC = next ^ ((address & 0x3F) << 16 | (word & 0xFFFF));
}

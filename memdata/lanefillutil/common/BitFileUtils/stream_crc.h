// stream_crc.h - the running CRC of a configuration stream: one word with its register address at a time.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_STREAM_CRC_H
#define MEMDATA_BIT_FILE_UTILS_STREAM_CRC_H

#include "platform/BasicTypes.h"

// State of the one stream that is walked at a time. Set when a stream, or a segment of it, begins.
extern u32 gAccumulated_CRC;
extern u32 gCRC_Address_Length; // register address bits that CRC_Word enters

// One bit into the 16-bit CRC, polynomial 0xA001, shifting right.
void CRC_Bit(u32 bit);

// The 32 bits of the word, least significant first, then gCRC_Address_Length bits of the address likewise.
void CRC_Word(u32 address, u32 word);

// CRC-32C, reflected polynomial 0x82F63B78, start 0, no final inversion: 32 word bits, then 5 address bits, least
// significant first.
void CRC_32_37(u32 address, u32 word);

// A 22-bit signature register with parallel input, taps at bits 0, 7, 12 and 15: 6 address bits above 16 word bits.
void CRC_16_37(u32 address, u32 word);

#endif

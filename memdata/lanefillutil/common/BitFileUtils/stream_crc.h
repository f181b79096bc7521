// stream_crc.h - the running CRC of a configuration stream.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_STREAM_CRC_H
#define MEMDATA_BIT_FILE_UTILS_STREAM_CRC_H

#include "DeviceTableUtils/records.h"

// State of the one stream that is walked at a time. Set when a stream, or a segment of it, begins.
extern u32 gAccumulated_CRC;
extern u32 gCRC_Address_Length; // register address bits that CRC_Word enters
extern void (*gCRC_Word)(u32 address, u32 word);

// Starts at 0, with the function and the address length of the family.
void CRC_Reset(const TarselDeviceType* device);

// One bit into the 16-bit CRC, polynomial 0xA001, shifting right.
void CRC_Bit(u32 bit);

// The 32 bits of the word, least significant first, then gCRC_Address_Length bits of the address likewise.
void CRC_Word(u32 address, u32 word);

// CRC-32C, reflected polynomial 0x82F63B78, start 0, no final inversion: 32 word bits, then 5 address bits, least
// significant first.
void CRC_32_37(u32 address, u32 word);

// A 22-bit signature register with parallel input, taps at bits 0, 7, 12 and 15: 6 address bits above 16 word bits.
void CRC_16_37(u32 address, u32 word);

// The words of a burst, big-endian at the family's word size, with the register address of the command word.
void CRC_Data(const TarselDeviceType* device, u32 commandWord, const u8* data, u64 wordCount);

// A register value of wordCount words, the most significant first. Shifts beyond the value wrap at 32 bits.
void CRCRegValue(const TarselDeviceType* device, u32 address, u32 value, u32 wordCount);

// Where the COR value turns the check off, the CRC becomes the family's bypass value.
void CRC_Disabled_Check(const TarselDeviceType* device);

// Whether the CTL value says that what follows is encrypted.
bool Encryption_Enabled_Check(const TarselDeviceType* device);

namespace memdata {

// CRC-32C over a run of words with one address: by the processor's own products and CRC instruction, 64 words at a time,
// where it has them, and by tables elsewhere.
u32 crcOfWords(u32 crc, u32 address, const u8* data, u64 wordCount); // big-endian 32-bit words
u32 crcOfWordsByTable(u32 crc, u32 address, const u8* data, u64 wordCount);
// Whether CRC_Data enters bursts of the device so.
bool entersRunsOfWords(const TarselDeviceType* device);

} // namespace memdata

#endif

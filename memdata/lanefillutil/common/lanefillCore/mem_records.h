// mem_records.h - the records of a MEM file: an "@" address, counted in words, and the words from there on.
//
// Each operation writes one record over the words that stand in a buffer from a place of a bus block on.
//   byteAddress  of the place, from the start of the block; the record's address is the number of whole words of
//                width bits up to there, divided by lanes
//   totalBits    of the buffer, which holds words from address 0 on, low bits first
//   maxBits      that the record holds at most
//   lanes        that share the block
//   width        bits of a lane word, with parity bits; 1 to 72. Without them at most 64
//   wide         the address has 16 digits, else 8
// A word of the buffer takes memdata::laneSlotBits of its data bits.
// Status: that of writing; 3 a null buffer or a width or number of lanes that is 0; 7 without memory.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_MEM_RECORDS_H
#define MEMDATA_LANEFILL_CORE_MEM_RECORDS_H

#include "lanefillCore/mem_text.h"

// Words of width bits.
int output_regular_mem_data_records(fileIODescriptor* file, unsigned long byteAddress, unsigned char* buffer,
    unsigned long totalBits, unsigned long maxBits, unsigned long lanes, unsigned long width, bool wide);

// Words with parity bits, which stand in a buffer of their own: the parity digits, then the data digits. The address
// always has 8 digits. A width without parity bits has no words.
int output_parity_mem_data_records(fileIODescriptor* file, unsigned long byteAddress, unsigned char* dataBuffer,
    unsigned long dataTotalBits, unsigned long dataMaxBits, unsigned char* parityBuffer, unsigned long parityTotalBits,
    unsigned long lanes, unsigned long width);

// Data words, each followed by the word of a check lane, whose place is counted with its own width and lanes.
int output_combined_mem_data_records(fileIODescriptor* file, unsigned long byteAddress, unsigned char* dataBuffer,
    unsigned long dataTotalBits, unsigned long maxBits, unsigned long lanes, unsigned long width,
    unsigned char* eccBuffer, unsigned long eccTotalBits, unsigned long eccLanes, unsigned long eccWidth, bool wide);

namespace memdata {

// What a lane word of a memory with parity is made of, by its width (bits). All 0 for a width that has no parity.
struct ParityWord {
    u32 dataBits;
    u32 dataDigits;
    u32 parityBits;
    u32 parityDigits;
};
ParityWord parityWordOf(u64 laneWidth);

// A record as it stands: its address, then wordCount words. countedBits are the bits of a word that fill a line.
struct MemRecord {
    u64 wordIndex;
    bool wide;
    u64 wordCount;
    u64 countedBits;
    std::span<const MemColumn> columns;
};
int outputMemRecord(fileIODescriptor* file, const MemRecord& record);

} // namespace memdata

#endif

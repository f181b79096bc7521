// frame_bursts.h - the long writes of frame data: their length, their way through a copy, or told as text.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_FRAME_BURSTS_H
#define MEMDATA_BIT_FILE_UTILS_FRAME_BURSTS_H

#include "BitFileUtils/stream_state.h"
#include "SystemUtils/memory.h"

// First place of a signature in a buffer, byte by byte; null when it is not there.
const u8* FindBRAMDataSignature(const u8* buffer, u64 size, const u8* signature, u64 signatureSize);

// CLB frames ahead of the block-RAM data of a burst, found by what untouched memories look like. 0 when the signature
// is not there, or the family has none (then with a warning).
u32 GetBRAMDataFrameOffset(const TarselDeviceType* device, const u8* data, u64 size);

// The count of data words of a burst: the short count, or what stands in the words behind the command word. A copy takes
// the command word and these.
int GetFDRIregWordLength(memdata::StreamWalk& walk, u32 commandWord, u64* wordCount);

namespace memdata {

void releaseBurst(u8* data);

struct Burst {
    Tracked<u8, releaseBurst> data;
    u64 wordCount = 0;

    u64 bytes(const StreamWalk& walk) const { return wordCount * walk.family().configWordBytes; }
};

// Where the block-RAM columns of a burst lie.
struct BramColumns {
    u64 start = 0;       // byte of the first one
    u64 columnBytes = 0; // of each, as far as the burst tells
    u32 first = 0;       // frame column
    u32 count = 0;       // 0: none
};

// The data of a write: its count (short, or in the words behind the command word) and so many words. In a copy the
// command word and the count words are written. Status 7 without memory; 2 with an alert when the stream is shorter.
int readBurst(StreamWalk& walk, u32 commandWord, Burst* burst);
int writeBurst(StreamWalk& walk, const Burst& burst);

// Bytes of a burst that has been counted off the stream; status 2 with an alert when the file is shorter.
int readBytes(StreamWalk& walk, u8* to, u64 byteCount);
// Whole words into the copy, and into the CRC.
int writeWords(StreamWalk& walk, u32 commandWord, const u8* words, u64 byteCount);
// Words that nobody changes: from where the input holds them, so that no memory is touched for them.
int copyWords(StreamWalk& walk, u32 commandWord, u64 wordCount);

// The columns of the die in turn, as many as it has; none when the stream names more dice than the device has.
void columnsOfDie(const StreamWalk& walk, BramColumns* columns);

// Columns to change in a burst, by the last frame address. Status 3 with an alert: the device's streams cannot be
// changed.
int bramColumns(const StreamWalk& walk, u64 burstBytes, BramColumns* columns);

// Lines of 32 bytes.
int dumpHexLines(StreamWalk& walk, const u8* data, u64 byteCount);

} // namespace memdata

// A burst as text: CLB data as hex, block-RAM columns as memories or as frames.
int DumpFDRIData(memdata::StreamWalk& walk, u32 commandWord, memdata::Burst& burst);

#endif

// frame_bursts.cpp - frame data: its length, its way in and out, and its change in place.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/frame_bursts.h"

#include "BitFileUtils/burst_crc.h"
#include "BitFileUtils/byte_primitives.h"
#include "BitFileUtils/column_window.h"
#include "BitFileUtils/config_words.h"
#include "BitFileUtils/register_ops.h"
#include "BitFileUtils/stream_crc.h"
#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/frame_sizes.h"
#include "DeviceTableUtils/locations.h"
#include "SystemUtils/alerts.h"

#include <algorithm>

namespace {

using namespace memdata;

constexpr int kUNSUPPORTED_STATUS = 3;
constexpr u32 kLONG_COUNT_BYTES = 4; // in one word or two
constexpr u64 kCOPY_BLOCK_BYTES = 256 * 1024;
constexpr u64 kPASSED_BYTES = u64{4} << 20; // at a time: the second thread begins, and the progress is told

bool isFirstGeneration(const TarselDeviceType* device) {
    return (device->family->familyMask & kFIRST_GENERATION_MASK) != 0;
}

// Counts a burst off the stream: from here on its words are there, or the file is shorter than its header says.
int beginBurst(StreamWalk& walk, u32 commandWord, u64* wordCount) {
    if (int status = GetFDRIregWordLength(walk, commandWord, wordCount); status != 0) return status;
    const u64 bytes = *wordCount * walk.family().configWordBytes;
    if (bytes > *walk.remaining) return streamEndsEarly(walk, bytes);
    *walk.remaining -= static_cast<u32>(bytes);
    return 0;
}

int readWords(StreamWalk& walk, u64 wordCount, Burst* burst) {
    burst->wordCount = wordCount;
    const u64 bytes = burst->bytes(walk);
    burst->data.reset(static_cast<u8*>(getMemory("'std::uint8_t' data", std::max<u64>(bytes, 1))));
    if (burst->data == nullptr) return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "BRAM data buffer", bytes, bytes);
    return readBytes(walk, burst->data.get(), bytes);
}

int copyBurst(StreamWalk& walk, u32 commandWord) {
    u64 wordCount = 0;
    if (int status = beginBurst(walk, commandWord, &wordCount); status != 0) return status;
    BramColumns columns;
    if (walk.addressMapping != nullptr)
        if (int status = bramColumns(walk, wordCount * walk.family().configWordBytes, &columns); status != 0)
            return status;
    BurstCrc crc(walk, commandWord, wordCount);
    const int status = columns.count == 0 ? copyWords(walk, commandWord, wordCount)
                                          : copyColumns(walk, commandWord, wordCount, columns);
    return status != 0 ? status : crc.finish();
}

} // namespace

int GetFDRIregWordLength(StreamWalk& walk, u32 commandWord, u64* count) {
    if (walk.copies())
        if (int status = WriteConfigWord(walk.output, walk.device, commandWord); status != 0) return status;
    *count = walk.field(kSHORT_COUNT_FIELD, commandWord);
    if (*count != 0) return 0;
    for (u32 bytes = 0; bytes < kLONG_COUNT_BYTES; bytes += walk.family().configWordBytes) {
        u32 word = 0;
        if (int status = readStreamWord(walk, &word); status != 0) return status;
        if (walk.copies())
            if (int status = WriteConfigWord(walk.output, walk.device, word); status != 0) return status;
        *count = *count << walk.family().configWordBytes * 8 | walk.field(kLONG_COUNT_FIELD, word);
    }
    return 0;
}

void memdata::releaseBurst(u8* data) {
    releaseMemory(data);
}

int memdata::readBurst(StreamWalk& walk, u32 commandWord, Burst* burst) {
    u64 wordCount = 0;
    const int status = beginBurst(walk, commandWord, &wordCount);
    return status != 0 ? status : readWords(walk, wordCount, burst);
}

int memdata::writeBurst(StreamWalk& walk, const Burst& burst) {
    return WriteData(walk.output, burst.data.get(), burst.bytes(walk));
}

int memdata::readBytes(StreamWalk& walk, u8* to, u64 byteCount) {
    const int status = ReadData(walk.input, to, byteCount);
    return status == kEND_OF_CONTENTS ? streamEndsEarly(walk, byteCount) : status;
}

int memdata::writeWords(StreamWalk& walk, u32 commandWord, const u8* words, u64 byteCount) {
    if (int status = WriteData(walk.output, words, byteCount); status != 0) return status;
    if (walk.burstCrc != nullptr)
        walk.burstCrc->noteWritten();
    else
        CRC_Data(walk.device, commandWord, words, byteCount / walk.family().configWordBytes);
    return 0;
}

int memdata::copyWords(StreamWalk& walk, u32 commandWord, u64 wordCount) {
    const u64 wordBytes = walk.family().configWordBytes;
    for (u64 left = wordCount * wordBytes; left > 0;) {
        u64 count = 0;
        if (walk.burstCrc != nullptr)
            if (int status = walk.burstCrc->passWords(std::min(left, kPASSED_BYTES), &count); status != 0)
                return status;
        left -= count;
        if (count != 0) continue;
        const u8* words = nullptr;
        const int status = readPiece(walk.input, wordBytes, std::min(left, kCOPY_BLOCK_BYTES), &words, &count);
        if (status == kEND_OF_CONTENTS) return streamEndsEarly(walk, left);
        if (status != 0) return status;
        if (int written = writeWords(walk, commandWord, words, count); written != 0) return written;
        left -= count;
    }
    return 0;
}

void memdata::columnsOfDie(const StreamWalk& walk, BramColumns* columns) {
    const u32 dice = std::max(walk.device->dieCount, 1U);
    columns->count = walk.dieIndex < dice ? walk.device->physicalColumns / dice : 0;
    columns->first = columns->count * walk.dieIndex;
}

int memdata::bramColumns(const StreamWalk& walk, u64 burstBytes, BramColumns* columns) {
    const TarselDeviceType* device = walk.device;
    const bool isBram = gLast_frame_address_type == walk.family().bramBlockType;
    *columns = {};
    if (isFirstGeneration(device)) {
        if (isBram) *columns = {0, burstBytes, gLast_frame_address_column, 1};
        return 0;
    }
    if (walk.fdriWrites >= 2) {
        if (isBram) {
            columnsOfDie(walk, columns);
            columns->columnBytes = burstBytes;
        }
        return 0;
    }
    if (gLast_frame_address_type == walk.family().clbBlockType && device->bramFrameOffset == 0)
        return PrintError(kERROR_UNSUPPORTED_BIT_FILE_REPLACEMENT, kUNSUPPORTED_STATUS);
    columnsOfDie(walk, columns);
    columns->columnBytes = device->bramFrameBits / 8 * device->memoryLocs[0].type->frameCount;
    columns->start = u64{device->bramFrameOffset} * (device->clbFrameBits / 8);
    const u64 allColumns = columns->columnBytes * columns->count;
    u64 present = 0; // without the columns whose frames the stream leaves out
    for (u32 i = 0; i < columns->count; ++i) present += blockRamColumnBytes(device, columns->first + i);
    present = std::min(present, allColumns);
    if (burstBytes <= allColumns || columns->start > burstBytes - present) columns->count = 0;
    return 0;
}

int OutputFDRIregOp(StreamWalk& walk, u32 commandWord) {
    if (walk.operation(commandWord) != kWRITE_OPERATION) {
        if (walk.copies()) return WriteConfigWord(walk.output, walk.device, commandWord);
        return 0;
    }
    int status = 0;
    if (walk.copies()) {
        status = copyBurst(walk, commandWord);
    } else {
        Burst burst;
        status = readBurst(walk, commandWord, &burst);
        if (status == 0) status = DumpFDRIData(walk, commandWord, burst);
    }
    ++walk.fdriWrites;
    return status;
}

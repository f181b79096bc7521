// config_words.cpp - words of a configuration stream: single ones, register values, sync words, Auto CRC words.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/config_words.h"

#include "BitFileUtils/byte_primitives.h"
#include "BitFileUtils/stream_crc.h"
#include "SystemUtils/alerts.h"

u32 gCurrCORregValue = 0;
u32 gCurrCOR1regValue = 0;
u32 gCurrCTLregValue = 0;
u32 gLast_frame_address_type = 0;
u32 gLast_frame_address_column = 0;

namespace {

using namespace memdata;

constexpr u32 kBUS_WIDTH_WORD = 187; // two more words follow it ahead of the sync word
constexpr u32 kNOP_TYPE = 1;

} // namespace

int memdata::streamEndsEarly(const StreamWalk& walk, u64 missingBytes) {
    return PrintError(kERROR_MESSAGE_STRING, 2,
        formatted("The configuration stream of file '%s' is cut: at %ld bytes into it, a packet needs %lld bytes and "
                  "%ld are left.\n    Please make the file again, or fetch it again.",
            GetFileName(walk.input), walk.position(), missingBytes, *walk.remaining));
}

int ReadConfigWord(fileIODescriptor* input, const TarselDeviceType* device, u32* value) {
    switch (device->family->configWordBytes) {
    case 2:
        return ReadShort(input, value);
    case 4:
        return ReadLong(input, value);
    default:
        return 0;
    }
}

int WriteConfigWord(fileIODescriptor* output, const TarselDeviceType* device, u32 value) {
    switch (device->family->configWordBytes) {
    case 2:
        return WriteShort(output, value);
    case 4:
        return WriteLong(output, value);
    default:
        return 0;
    }
}

int WriteRegValue(fileIODescriptor* output, const TarselDeviceType* device, u32 value, u32 wordCount) {
    for (u32 n = wordCount; n > 0; --n) {
        const u32 shift = device->family->configWordBytes * (n - 1) * 8;
        if (int status = WriteConfigWord(output, device, value >> (shift & 31)); status != 0) return status;
    }
    return 0;
}

namespace memdata {

int readStreamWord(StreamWalk& walk, u32* value) {
    const u32 bytes = walk.family().configWordBytes;
    *value = 0;
    if (*walk.remaining < bytes) return streamEndsEarly(walk, bytes);
    const int status = ReadConfigWord(walk.input, walk.device, value);
    if (status == kEND_OF_CONTENTS) return streamEndsEarly(walk, bytes); // the file is shorter than its header says
    *walk.remaining -= bytes;
    return status;
}

int copyPacket(StreamWalk& walk, u32 commandWord) {
    int status = WriteConfigWord(walk.output, walk.device, commandWord);
    for (size_t i = 0; i < walk.words.size() && status == 0; ++i)
        status = WriteConfigWord(walk.output, walk.device, walk.words[i]);
    return status;
}

int passRest(StreamWalk& walk, bool isCopied) {
    while (*walk.remaining > 0) {
        u8 byte = 0;
        const int status = ReadByte(walk.input, &byte);
        if (status == kEND_OF_CONTENTS) return streamEndsEarly(walk, *walk.remaining);
        if (status != 0) return status;
        --*walk.remaining;
        if (isCopied)
            if (int written = WriteByte(walk.output, byte); written != 0) return written;
    }
    return 0;
}

} // namespace memdata

int ReadRegValue(StreamWalk& walk, u32 commandWord, u32* value) {
    u32 count = walk.field(kSHORT_COUNT_FIELD, commandWord);
    if (count == 0) count = 1;
    if (u64{count} * walk.family().configWordBytes > *walk.remaining)
        return streamEndsEarly(walk, u64{count} * walk.family().configWordBytes);
    *value = 0;
    walk.words.clear();
    for (u32 i = 0; i < count; ++i) {
        u32 word = 0;
        if (int status = readStreamWord(walk, &word); status != 0) return status;
        *value = static_cast<u32>(u64{*value} << walk.family().configWordBytes * 8 | word);
        walk.words.push_back(word);
    }
    return 0;
}

// A sync-size value: as many words as a sync word has, the first the most significant.
int ReadWriteSyncWord(StreamWalk& walk, u32* value) {
    *value = 0;
    for (u32 bytes = 0; bytes < walk.family().syncWordBytes; bytes += walk.family().configWordBytes) {
        u32 word = 0;
        if (int status = readStreamWord(walk, &word); status != 0) return status;
        *value = static_cast<u32>(u64{*value} << walk.family().configWordBytes * 8 | word);
        if (walk.copies() && (walk.flags & kWALK_DROP_SYNC) == 0)
            if (int status = WriteConfigWord(walk.output, walk.device, word); status != 0) return status;
    }
    return 0;
}

namespace {

// The two values behind a bus-width detection word.
int passBusWidthValues(StreamWalk& walk) {
    for (int i = 0; i < 2 && *walk.remaining >= walk.family().syncWordBytes; ++i) {
        u32 value = 0;
        if (int status = ReadWriteSyncWord(walk, &value); status != 0) return status;
    }
    return 0;
}

} // namespace

int OutputSyncData(StreamWalk& walk) {
    while (*walk.remaining >= walk.family().syncWordBytes) {
        u32 value = 0;
        if (int status = ReadWriteSyncWord(walk, &value); status != 0) return status;
        if (value == walk.family().syncWord) return 0;
        if (value == walk.family().dummyWord) continue;
        int status = 0;
        if (value == kBUS_WIDTH_WORD)
            status = passBusWidthValues(walk);
        else if (!walk.copies() && walk.operation(value) == kNO_OPERATION &&
                 walk.field(kTYPE_FIELD, value) == kNOP_TYPE)
            status = PutNextLine(walk.dump, "Write of NOP command word 0x%08lX.\n\n", value);
        if (status != 0) return status;
    }
    return passRest(walk, walk.copies() && (walk.flags & kWALK_DROP_SYNC) == 0);
}

int ReadWriteAutoCRCWord(StreamWalk& walk, u32* value) {
    const u32 wordBytes = walk.family().configWordBytes;
    for (u32 bytes = wordBytes; bytes < walk.family().syncWordBytes; bytes += wordBytes) {
        u32 word = 0;
        if (int status = readStreamWord(walk, &word); status != 0) return status;
        *value = static_cast<u32>(u64{*value} << wordBytes * 8 | word);
    }
    return 0;
}

int WriteAutoCRCWord(fileIODescriptor* output, const TarselDeviceType* device, u32 crc) {
    return device->family->syncWordBytes == 2 ? WriteShort(output, crc) : WriteLong(output, crc);
}

u32 memdata::crcInWords(const StreamWalk& walk, u64 wordCount) {
    const u64 bits = wordCount * walk.family().configWordBytes * 8;
    return bits < 32 ? gAccumulated_CRC & ((1U << bits) - 1) : gAccumulated_CRC;
}

int memdata::passAutoCRCWord(StreamWalk& walk, u32 first) {
    CRC_Disabled_Check(walk.device);
    u32 value = first;
    if (int status = ReadWriteAutoCRCWord(walk, &value); status != 0) return status;
    const u32 words = walk.family().syncWordBytes / walk.family().configWordBytes;
    if (walk.check != nullptr) walk.check->noteCrc(value == crcInWords(walk, words), walk.position());
    if (!walk.copies())
        return PutNextLine(
            walk.dump, "Write of Auto CRC word 0x%08lX. Calculated CRC value = 0x%08lX.\n\n", value, gAccumulated_CRC);
    return WriteAutoCRCWord(walk.output, walk.device, gAccumulated_CRC);
}

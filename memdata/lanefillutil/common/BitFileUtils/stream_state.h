// stream_state.h - what one walk over a configuration stream knows, and the values that live from segment to segment.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_STREAM_STATE_H
#define MEMDATA_BIT_FILE_UTILS_STREAM_STATE_H

#include "BRAMDecodeUtils/memory_check.h"
#include "BmmUtils/model/records.h"
#include "DeviceTableUtils/records.h"
#include "FileUtils/descriptor.h"

#include <vector>

// The registers as the stream of the one walk at a time has written them. They stay in force over segments; a walk
// begins with zeros.
extern u32 gCurrCORregValue;
extern u32 gCurrCOR1regValue;
extern u32 gCurrCTLregValue;
extern u32 gLast_frame_address_type;
extern u32 gLast_frame_address_column;

namespace memdata {

// Flags of a walk.
inline constexpr u32 kWALK_NO_CLB_HEX = 0x01;  // dump: without the hex of CLB data
inline constexpr u32 kWALK_RAW = 0x02;         // dump: block-RAM columns as frames
inline constexpr u32 kWALK_FIND_BRAM = 0x08;   // dump: the start of the block-RAM data by its signature
inline constexpr u32 kWALK_DROP_SYNC = 0x80;   // copy: without sync words and the closing DESYNCH
inline constexpr u32 kWALK_ALLOW_MFWR = 0x100; // copy: multi-frame writes are let through
inline constexpr u32 kNO_REGISTER_KIND = 255;  // no packet yet, or an Auto CRC word came behind it
inline constexpr u32 kFDRI_KIND = 2;           // of registerKinds
inline constexpr u32 kCMD_KIND = 4;
inline constexpr u32 kLOUT_KIND = 8;
inline constexpr u32 kBOUT_KIND = 70;
inline constexpr u32 kDESYNCH_COMMAND = 13; // values of CMD
inline constexpr u32 kRCRC_COMMAND = 7;
inline constexpr u32 kREBOOT_COMMAND = 14;

enum Operation : u32 { kNO_OPERATION = 0, kREAD_OPERATION = 1, kWRITE_OPERATION = 2 };

// Rows of a family's commandFields; the masks apply ahead of the shifts.
enum CommandField : u32 {
    kTYPE_FIELD,
    kOPERATION_FIELD,
    kADDRESS_FIELD,
    kSHORT_COUNT_FIELD,
    kLONG_COUNT_FIELD,
};

// What a walk that only compares has found.
struct StreamCheck {
    MemoryCheck memories;
    u64 crcWords = 0;
    u64 wrongCrcWords = 0;
    u32 firstWrongCrc = 0; // where it ends, in bytes from the start of the stream

    void noteCrc(bool isRight, u32 position) {
        ++crcWords;
        if (!isRight && wrongCrcWords++ == 0) firstWrongCrc = position;
    }
};

class BurstCrc;

struct StreamWalk {
    fileIODescriptor* input;
    fileIODescriptor* output; // one of the two is null
    fileIODescriptor* dump;
    TarselDeviceType* device;
    u32 flags;
    u32* remaining; // bytes of stream behind the input's position
    AddressMappingType* addressMapping;
    u32 startSize;
    StreamCheck* check = nullptr; // of a copy that is thrown away: memories are compared and not changed

    BurstCrc* burstCrc = nullptr; // while a burst is copied whose CRC a second thread takes

    u32 lastKind = kNO_REGISTER_KIND;
    u32 lastCommand = 0; // value of the last write of CMD
    u32 dieIndex = 0;
    u32 fdriWrites = 1;          // of the segment; the first burst is number 1
    std::vector<u32> words = {}; // data of the packet

    bool copies() const { return output != nullptr; }
    const TarselFamilyType& family() const { return *device->family; }
    u32 position() const { return startSize - *remaining; } // bytes into the stream

    u32 field(CommandField row, u32 word) const {
        const RegisterBitFieldType& at = family().commandFields[row];
        return (word & at.mask) >> at.shift;
    }
    u32 operation(u32 word) const { return field(kOPERATION_FIELD, word); }
    u32 address(u32 word) const { return field(kADDRESS_FIELD, word); }
    const char* registerName(u32 word) const {
        const u32 at = address(word);
        const char* name = at < 256 ? family().registerNames[at] : nullptr;
        return name == nullptr ? "" : name;
    }
};

// An alert that the stream ends inside a packet, with the place and what is missing; status 2.
int streamEndsEarly(const StreamWalk& walk, u64 missingBytes);

} // namespace memdata

#endif

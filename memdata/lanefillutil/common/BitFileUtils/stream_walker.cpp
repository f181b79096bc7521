// stream_walker.cpp - one pass over a configuration stream, from sync word to sync word.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/stream_walker.h"

#include "BitFileUtils/config_words.h"
#include "BitFileUtils/register_ops.h"
#include "BitFileUtils/stream_crc.h"
#include "DeviceTableUtils/cross_coordinates.h"
#include "SystemUtils/alerts.h"

#include <new>

namespace {

using namespace memdata;

constexpr u32 kNOP_TYPE = 1;
constexpr int kUNRECOGNIZED_STATUS = 4;

// The registers that this walk's stream has not written yet.
void resetRegisters() {
    gCurrCORregValue = 0;
    gCurrCOR1regValue = 0;
    gCurrCTLregValue = 0;
    gLast_frame_address_type = 0;
    gLast_frame_address_column = 0;
}

int refuseRegister(const StreamWalk& walk, u32 word) {
    return PrintError(kERROR_UNRECOGNIZED_REGISTER_ADDRESS_TYPE, kUNRECOGNIZED_STATUS, walk.address(word), word,
        gAccumulated_CRC, walk.position(), GetFileName(walk.input));
}

// Whether a packet was the last of its segment: the device restarts, or the next one in the chain takes over. A dump
// says so where the cause is a daisy chain word.
int endSegment(StreamWalk& walk, u32 commandWord, bool* ended) {
    if (walk.operation(commandWord) != kWRITE_OPERATION) return 0;
    const char* line = nullptr;
    switch (walk.lastKind) {
    case kCMD_KIND:
        *ended = walk.lastCommand == kDESYNCH_COMMAND || walk.lastCommand == kREBOOT_COMMAND;
        return 0;
    case kLOUT_KIND:
        line = "\nReboot device and restart at last LOUT command offset value.\n\n\n";
        break;
    case kBOUT_KIND:
        line = "\nReboot device and restart at last BOUT command offset value.\n\n\n";
        ++walk.dieIndex;
        break;
    default:
        return 0;
    }
    *ended = true;
    return walk.copies() ? 0 : PutNextLine(walk.dump, line);
}

int walkPacket(StreamWalk& walk, u32 word, bool* ended) {
    const u32 address = walk.address(word);
    if (address >= kREGISTER_KIND_COUNT) return refuseRegister(walk, word);
    walk.lastKind = walk.family().registerKinds[address];
    const RegisterOp op = registerOp(walk.lastKind);
    if (op == nullptr) return refuseRegister(walk, word);
    const int status = op(walk, word);
    return status != 0 ? status : endSegment(walk, word, ended);
}

// Words without an operation: pads, no-operations, and the Auto CRC word behind a burst.
int walkPlainWord(StreamWalk& walk, u32 word) {
    const bool isPad = word == 0 && walk.lastKind != kFDRI_KIND;
    if (isPad || walk.field(kTYPE_FIELD, word) == kNOP_TYPE) {
        if (walk.copies()) return WriteConfigWord(walk.output, walk.device, word);
        return PutNextLine(
            walk.dump, isPad ? "Write of PAD word 0x%08lX.\n\n" : "Write of NOP command word 0x%08lX.\n\n", word);
    }
    const int status = passAutoCRCWord(walk, word);
    walk.lastKind = kNO_REGISTER_KIND;
    if (walk.family().crcResetAfterAutoCRC) CRC_Reset(walk.device);
    return status;
}

// From behind a sync word to the end of the segment or of the stream.
int walkSegment(StreamWalk& walk) {
    walk.fdriWrites = 1;
    CRC_Reset(walk.device);
    bool ended = false;
    while (!ended && *walk.remaining >= walk.family().configWordBytes) {
        u32 word = 0;
        if (int status = readStreamWord(walk, &word); status != 0) return status;
        const int status =
            walk.operation(word) != kNO_OPERATION ? walkPacket(walk, word, &ended) : walkPlainWord(walk, word);
        if (status != 0) return status;
    }
    return 0;
}

int walkStream(StreamWalk& walk) {
    resetRegisters();
    // Also where no lane is located: a dump asks it for every memory.
    if (walk.addressMapping != nullptr)
        if (int status = initialize_cross_coordinate_lookup_table(walk.addressMapping); status != 0) return status;
    while (*walk.remaining > 0) {
        if (int status = OutputSyncData(walk); status != 0) return status;
        if (*walk.remaining == 0) break;
        if (int status = walkSegment(walk); status != 0) return status;
        if (*walk.remaining < walk.family().configWordBytes)
            if (int status = passRest(walk, walk.copies()); status != 0) return status;
    }
    return 0;
}

int guarded(StreamWalk walk) {
    try {
        return walkStream(walk);
    } catch (const std::bad_alloc&) {
        return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "a configuration stream", u64{0}, u64{0});
    }
}

} // namespace

int OutputBITData(fileIODescriptor* input, fileIODescriptor* output, fileIODescriptor* dump, TarselDeviceType* device,
    u32 flags, u32* remaining, AddressMappingType* addressMapping) {
    return guarded({input, output, dump, device, flags, remaining, addressMapping, *remaining});
}

int memdata::checkStream(fileIODescriptor* input, fileIODescriptor* output, TarselDeviceType* device, u32* remaining,
    AddressMappingType* addressMapping, StreamCheck* check) {
    return guarded({input, output, nullptr, device, kWALK_ALLOW_MFWR, remaining, addressMapping, *remaining, check});
}

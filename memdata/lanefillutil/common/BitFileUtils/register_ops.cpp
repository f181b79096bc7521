// register_ops.cpp - what a walk does with a packet, by the kind of its register.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/register_ops.h"

#include "BitFileUtils/config_words.h"
#include "BitFileUtils/frame_bursts.h"
#include "BitFileUtils/stream_crc.h"
#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/locations.h"
#include "SystemUtils/alerts.h"

#include <array>

namespace {

using namespace memdata;

constexpr int kUNSUPPORTED_STATUS = 3;
constexpr u32 kCOLUMN_SHIFT = 17; // of a first-generation frame address
constexpr u32 kCOLUMN_MASK = 0xFF;

// Reads that have no data words, and operations that are neither: all there is to them is the command word.
int passCommand(StreamWalk& walk, u32 commandWord, const char* readLine) {
    if (walk.copies()) return WriteConfigWord(walk.output, walk.device, commandWord);
    if (walk.operation(commandWord) != kREAD_OPERATION) return 0;
    return PutNextLine(walk.dump, readLine, walk.registerName(commandWord));
}

bool isWrite(const StreamWalk& walk, u32 commandWord) {
    return walk.operation(commandWord) == kWRITE_OPERATION;
}

void enterWords(const StreamWalk& walk, u32 commandWord) {
    for (u32 word : walk.words) gCRC_Word(walk.address(commandWord), word);
}

int unsupportedFormat(const char* kind) {
    return PrintError(kERROR_UNSUPPORTED_BIT_FILE_FORMAT, kUNSUPPORTED_STATUS, kind, kind);
}

// The data words of a write, entered in the CRC.
int takeValue(StreamWalk& walk, u32 commandWord, u32* value) {
    if (int status = ReadRegValue(walk, commandWord, value); status != 0) return status;
    enterWords(walk, commandWord);
    return 0;
}

// A register of which a dump only tells the value: the write line takes the name and the value.
int outputValueRegister(StreamWalk& walk, u32 commandWord, const char* readLine, const char* writeLine) {
    if (!isWrite(walk, commandWord)) return passCommand(walk, commandWord, readLine);
    u32 value = 0;
    if (int status = takeValue(walk, commandWord, &value); status != 0) return status;
    if (walk.copies()) return copyPacket(walk, commandWord);
    return PutNextLine(walk.dump, writeLine, walk.registerName(commandWord), value);
}

int dumpFields(
    StreamWalk& walk, u32 commandWord, const char* writeLine, const RegisterBitFieldType* fields, u32 value) {
    int status = PutNextLine(walk.dump, writeLine, walk.registerName(commandWord), value);
    if (status == 0) status = PrintRegisterBitValues(walk.dump, fields, value);
    return status != 0 ? status : PutNextLine(walk.dump, "\n");
}

// COR and COR1: one word, whatever the count says.
int outputOptionRegister(StreamWalk& walk, u32 commandWord, u32* current, const char* readLine, const char* writeLine,
    const RegisterBitFieldType* fields) {
    if (!isWrite(walk, commandWord)) return passCommand(walk, commandWord, readLine);
    if (int status = readStreamWord(walk, current); status != 0) return status;
    gCRC_Word(walk.address(commandWord), *current);
    walk.words.assign(1, *current);
    if (walk.copies()) return copyPacket(walk, commandWord);
    return dumpFields(walk, commandWord, writeLine, fields, *current);
}

// A write that is copied word for word and means nothing here: not entered in the CRC, not told in a dump, where what
// follows is read as packets, on purpose.
int passUninterpreted(StreamWalk& walk, u32 commandWord) {
    if (!walk.copies()) return 0;
    if (!isWrite(walk, commandWord)) return WriteConfigWord(walk.output, walk.device, commandWord);
    u32 value = 0;
    if (int status = ReadRegValue(walk, commandWord, &value); status != 0) return status;
    return copyPacket(walk, commandWord);
}

int dumpFrameAddress(StreamWalk& walk, u32 commandWord, u32 value) {
    const bool isBram = gLast_frame_address_type == walk.family().bramBlockType;
    i32 column = 0;
    if (isBram && !translate_logical_column_number(walk.device, static_cast<i32>(gLast_frame_address_column), &column))
        return 0; // no block RAM there: nothing is said
    int status = PutNextLine(walk.dump,
        isBram ? "Write of %s register with 0x%08lX BRAM FAR address value.\n"
               : "Write of %s register with 0x%08lX CLB FAR address value.\n",
        walk.registerName(commandWord), value);
    if (status == 0) status = PrintFrameAddressBitValues(walk.dump, walk.family().farFields, value);
    return status != 0 ? status : PutNextLine(walk.dump, "\n");
}

} // namespace

bool GetRegisterBitValues(
    const RegisterBitFieldType* table, u32 row, u32 value, const char** name, u32* mask, u32* fieldValue) {
    const RegisterBitFieldType& field = table[row];
    *name = field.name;
    if (field.name == nullptr) return false;
    *mask = field.mask;
    *fieldValue = value >> field.shift & field.mask;
    return true;
}

u32 GetRegisterBitValue(const RegisterBitFieldType* table, u32 row, u32 value) {
    const char* name = nullptr;
    u32 mask = 0;
    u32 fieldValue = 0;
    GetRegisterBitValues(table, row, value, &name, &mask, &fieldValue);
    return fieldValue;
}

int PrintRegisterBitValues(fileIODescriptor* dump, const RegisterBitFieldType* table, u32 value) {
    const char* name = nullptr;
    u32 mask = 0;
    u32 field = 0;
    int status = 0;
    for (u32 row = 0; status == 0 && table != nullptr && GetRegisterBitValues(table, row, value, &name, &mask, &field);
         ++row) {
        if (mask >= 2)
            status = PutNextLine(dump, "    %s = %ld.\n", name, field);
        else
            status = PutNextLine(dump, field != 0 ? "    %s = on.\n" : "    %s = off.\n", name);
    }
    return status;
}

int PrintFrameAddressBitValues(fileIODescriptor* dump, const RegisterBitFieldType* table, u32 value) {
    const char* name = nullptr;
    u32 mask = 0;
    u32 field = 0;
    int status = 0;
    for (u32 row = 0; status == 0 && GetRegisterBitValues(table, row, value, &name, &mask, &field); ++row)
        status = PutNextLine(dump, "    %s = %ld.\n", name, field);
    return status;
}

int OutputCRCregOp(StreamWalk& walk, u32 commandWord) {
    if (!isWrite(walk, commandWord))
        return passCommand(walk, commandWord, "Read of %s register of the current CRC value.\n\n");
    u32 value = 0;
    if (int status = ReadRegValue(walk, commandWord, &value); status != 0) return status;
    CRC_Disabled_Check(walk.device);
    const u32 count = static_cast<u32>(walk.words.size());
    if (walk.check != nullptr) walk.check->noteCrc(value == crcInWords(walk, count), walk.position());
    int status = 0;
    if (walk.copies()) {
        value = gAccumulated_CRC;
        status = WriteConfigWord(walk.output, walk.device, commandWord);
        if (status == 0) status = WriteRegValue(walk.output, walk.device, value, count);
    } else {
        status =
            PutNextLine(walk.dump, "Write of %s register with 0x%08lX CRC value. Calculated CRC value = 0x%08lX.\n\n",
                walk.registerName(commandWord), value, gAccumulated_CRC);
    }
    if (walk.family().crcRegisterFedBack) CRCRegValue(walk.device, walk.address(commandWord), value, count);
    return status;
}

int OutputFARregOp(StreamWalk& walk, u32 commandWord) {
    if (!isWrite(walk, commandWord))
        return passCommand(walk, commandWord, "Read of %s register of the current frame address value.\n\n");
    u32 value = 0;
    if (int status = takeValue(walk, commandWord, &value); status != 0) return status;
    gLast_frame_address_type = GetRegisterBitValue(walk.family().farFields, 0, value);
    if (gLast_frame_address_type == walk.family().bramBlockType)
        gLast_frame_address_column = value >> kCOLUMN_SHIFT & kCOLUMN_MASK;
    return walk.copies() ? copyPacket(walk, commandWord) : dumpFrameAddress(walk, commandWord, value);
}

int OutputFDROregOp(StreamWalk& walk, u32 commandWord) {
    return passUninterpreted(walk, commandWord);
}

int OutputCMDregOp(StreamWalk& walk, u32 commandWord) {
    if (!isWrite(walk, commandWord))
        return passCommand(walk, commandWord, "Read of %s register of the current command value.\n\n");
    u32 value = 0;
    if (int status = ReadRegValue(walk, commandWord, &value); status != 0) return status;
    if (value == kRCRC_COMMAND)
        CRC_Reset(walk.device);
    else
        enterWords(walk, commandWord);
    walk.lastCommand = value;
    if (!walk.copies()) {
        const char* name = value < 256 ? walk.family().commandNames[value] : nullptr;
        return PutNextLine(walk.dump, "Write of %s register with %s command value.\n\n", walk.registerName(commandWord),
            name != nullptr ? std::string(name) : formatted("0x%08lX (unknown)", value));
    }
    if (value == kDESYNCH_COMMAND && (walk.flags & kWALK_DROP_SYNC) != 0) return 0;
    return copyPacket(walk, commandWord);
}

int OutputCTLregOp(StreamWalk& walk, u32 commandWord) {
    if (!isWrite(walk, commandWord))
        return passCommand(walk, commandWord, "Read of %s register of the current CTL value.\n\n");
    if (int status = takeValue(walk, commandWord, &gCurrCTLregValue); status != 0) return status;
    if (!walk.copies())
        return dumpFields(walk, commandWord, "Write of %s register with 0x%08lX CTL value.\n", walk.family().ctlFields,
            gCurrCTLregValue);
    return Encryption_Enabled_Check(walk.device) ? unsupportedFormat("Encrypted") : copyPacket(walk, commandWord);
}

int OutputMASKregOp(StreamWalk& walk, u32 commandWord) {
    return outputValueRegister(walk, commandWord, "Read of %s register of the current control mask value.\n\n",
        "Write of %s register with 0x%08lX control mask value.\n\n");
}

int OutputSTATregOp(StreamWalk& walk, u32 commandWord) {
    return passUninterpreted(walk, commandWord);
}

int OutputLOUTregOp(StreamWalk& walk, u32 commandWord) {
    return outputValueRegister(walk, commandWord, "Read of %s register of the current LOUT value.\n\n",
        "Write of %s register with 0x%08lX LOUT word.\n\n");
}

int OutputCORregOp(StreamWalk& walk, u32 commandWord) {
    return outputOptionRegister(walk, commandWord, &gCurrCORregValue,
        "Read of %s register of the current COR value.\n\n", "Write of %s register with 0x%08lX COR value.\n",
        walk.family().corFields);
}

int OutputMFWRregOp(StreamWalk& walk, u32 commandWord) {
    if (!isWrite(walk, commandWord))
        return passCommand(walk, commandWord, "Read of %s register of the current command value.\n\n");
    Burst burst;
    if (int status = readBurst(walk, commandWord, &burst); status != 0) return status;
    CRC_Data(walk.device, commandWord, burst.data.get(), burst.wordCount);
    if (walk.copies()) {
        if (int status = writeBurst(walk, burst); status != 0) return status;
        return (walk.flags & kWALK_ALLOW_MFWR) != 0 ? 0 : unsupportedFormat("Compressed");
    }
    int status = PutNextLine(walk.dump, "Write of %s register with %ld words of sync data.\n\n",
        walk.registerName(commandWord), burst.wordCount);
    if (status == 0) status = dumpHexLines(walk, burst.data.get(), burst.bytes(walk));
    return status != 0 ? status : PutNextLine(walk.dump, "\n");
}

int OutputFLRregOp(StreamWalk& walk, u32 commandWord) {
    if (!isWrite(walk, commandWord))
        return passCommand(walk, commandWord, "Read of %s register of the current frame length.\n\n");
    u32 value = 0;
    if (int status = takeValue(walk, commandWord, &value); status != 0) return status;
    if (walk.copies()) return copyPacket(walk, commandWord);
    const u64 words = u64{value} + 1;
    return PutNextLine(walk.dump, "Write of %s register with a %ld - 1 word length, or %ld frame bit length.\n\n",
        walk.registerName(commandWord), words, words * walk.family().configWordBytes * 8);
}

int OutputIDregOp(StreamWalk& walk, u32 commandWord) {
    return outputValueRegister(walk, commandWord, "Read of %s register of the current ID word.\n\n",
        "Write of %s register with 0x%08lX ID word.\n\n");
}

int OutputCTL1regOp(StreamWalk& walk, u32 commandWord) {
    if (!isWrite(walk, commandWord))
        return passCommand(walk, commandWord, "Read of %s register of the current CTL1 value.\n\n");
    u32 value = 0;
    if (int status = takeValue(walk, commandWord, &value); status != 0) return status;
    if (walk.copies()) return copyPacket(walk, commandWord);
    return dumpFields(
        walk, commandWord, "Write of %s register with 0x%08lX CTL1 value.\n", walk.family().ctl1Fields, value);
}

int OutputCOR1regOp(StreamWalk& walk, u32 commandWord) {
    return outputOptionRegister(walk, commandWord, &gCurrCOR1regValue,
        "Read of %s register of the current COR1 value.\n\n", "Write of %s register with 0x%08lX COR1 value.\n",
        walk.family().cor1Fields);
}

int OutputWBSTARregOp(StreamWalk& walk, u32 commandWord) {
    return outputValueRegister(walk, commandWord, "Read of %s register of the current WBSTAR value.\n\n",
        "Write of %s register with 0x%08lX WBSTAR value.\n\n");
}

int OutputTIMERregOp(StreamWalk& walk, u32 commandWord) {
    return outputValueRegister(walk, commandWord, "Read of %s register of the current TIMER value.\n\n",
        "Write of %s register with 0x%08lX TIMER value.\n\n");
}

int OutputRBCRC1regOp(StreamWalk& walk, u32 commandWord) {
    return outputValueRegister(walk, commandWord, "Read of %s register of the current RBCRC1 value.\n\n",
        "Write of %s register with 0x%08lX RBCRC1 value.\n\n");
}

int OutputBOUTregOp(StreamWalk& walk, u32 commandWord) {
    return outputValueRegister(walk, commandWord, "Read of %s register of the current BOUT value.\n\n",
        "Write of %s register with 0x%08lX BOUT word.\n\n");
}

int OutputDunmare3aExtraRegOp(StreamWalk& walk, u32 commandWord) {
    return outputValueRegister(walk, commandWord, "Read of %s register of the current value.\n\n",
        "Write of %s register with 0x%08lX value.\n\n");
}

namespace {

// Registers that need no meaning.
constexpr size_t kEXTRA_KINDS[] = {
    20, 28, 29, 30, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 48, 49, 50, 51, 52, 65, 66, 67, 68, 69, 71};

consteval std::array<RegisterOp, kREGISTER_KIND_COUNT> registerOps() {
    std::array<RegisterOp, kREGISTER_KIND_COUNT> ops{};
    ops[0] = OutputCRCregOp;
    ops[1] = OutputFARregOp;
    ops[kFDRI_KIND] = OutputFDRIregOp;
    ops[3] = OutputFDROregOp;
    ops[kCMD_KIND] = OutputCMDregOp;
    ops[5] = OutputCTLregOp;
    ops[6] = OutputMASKregOp;
    ops[7] = OutputSTATregOp;
    ops[kLOUT_KIND] = OutputLOUTregOp;
    ops[9] = OutputCORregOp;
    ops[10] = OutputMFWRregOp;
    ops[11] = OutputFLRregOp;
    ops[12] = OutputIDregOp;
    ops[17] = OutputCTL1regOp;
    ops[18] = OutputCOR1regOp;
    ops[22] = OutputWBSTARregOp;
    ops[23] = OutputTIMERregOp;
    ops[25] = OutputRBCRC1regOp;
    ops[kBOUT_KIND] = OutputBOUTregOp;
    for (size_t kind : kEXTRA_KINDS) ops[kind] = OutputDunmare3aExtraRegOp;
    return ops;
}

constexpr std::array<RegisterOp, kREGISTER_KIND_COUNT> kREGISTER_OPS = registerOps();

} // namespace

RegisterOp memdata::registerOp(u32 kind) {
    return kind < kREGISTER_KIND_COUNT ? kREGISTER_OPS[kind] : nullptr;
}

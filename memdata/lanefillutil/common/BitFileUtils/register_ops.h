// register_ops.h - what a walk does with a packet, by the kind of its register.
//
// A packet is a command word and, for a write, the data words behind it. In a copy it comes out again, with a new CRC
// where it is one; in a dump it is told in text. Status of all: 0, or that of the first failure.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_REGISTER_OPS_H
#define MEMDATA_BIT_FILE_UTILS_REGISTER_OPS_H

#include "BitFileUtils/stream_state.h"

int OutputCRCregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputFARregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputFDRIregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputFDROregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputCMDregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputCTLregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputMASKregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputSTATregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputLOUTregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputCORregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputMFWRregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputFLRregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputIDregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputCTL1regOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputCOR1regOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputWBSTARregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputTIMERregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputRBCRC1regOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputBOUTregOp(memdata::StreamWalk& walk, u32 commandWord);
int OutputDunmare3aExtraRegOp(memdata::StreamWalk& walk, u32 commandWord); // every register that needs no meaning

// One field of a register: false at the end of the table. value is that of the field.
bool GetRegisterBitValues(
    const RegisterBitFieldType* table, u32 row, u32 value, const char** name, u32* mask, u32* fieldValue);
u32 GetRegisterBitValue(const RegisterBitFieldType* table, u32 row, u32 value); // 0 behind the end of the table
// A line a field; fields of one bit read on or off. A null table has none.
int PrintRegisterBitValues(fileIODescriptor* dump, const RegisterBitFieldType* table, u32 value);
int PrintFrameAddressBitValues(fileIODescriptor* dump, const RegisterBitFieldType* table, u32 value);

namespace memdata {

using RegisterOp = int (*)(StreamWalk& walk, u32 commandWord);

inline constexpr u32 kREGISTER_KIND_COUNT = 72;

// The handler of a kind; null where there is none.
RegisterOp registerOp(u32 kind);

} // namespace memdata

#endif

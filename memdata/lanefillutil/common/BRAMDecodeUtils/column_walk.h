// column_walk.h - all memories of one configuration column: dumped as text, or replaced by what bit lanes hold.
//
// A column is a run of frames in a burst, frameCount frames of bramFrameBits each. data is where it begins; byteCount
// says how far the burst may be used from there on. A memory whose frames reach further is left out of a dump and is
// not replaced (its lane then stays unmarked, see BitLaneType::isReplaced). Both functions give the start of the next column.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BRAM_DECODE_UTILS_COLUMN_WALK_H
#define MEMDATA_BRAM_DECODE_UTILS_COLUMN_WALK_H

#include "BmmUtils/model/records.h"
#include "DeviceTableUtils/records.h"
#include "FileUtils/descriptor.h"

// Prints the memories of a column. flags: 0x10 memories that no bit lane uses are left out, and hex has no addresses;
// 0x40 parity is printed for every lane. Without memory for the scratch images nothing is printed, status becomes 7, and
// data comes back unmoved. A first-generation column is shifted while it is read, and shifted back. status stays, or takes
// that of the first memory that could not be printed.
u8* DumpBRAMColumn(const TarselDeviceType* device, fileIODescriptor* dump, u8* data, u64 byteCount, i32 physicalColumn,
    u32 flags, const AddressMappingType* addressMapping, int* status);

// Writes each bit lane that holds data into its memory's frames; other memories keep their bits. The lanes' own
// buffers are only read, so that a lane can be replaced any number of times. Null without memory for scratch images.
u8* ReplaceBRAMColumn(const TarselDeviceType* device, u8* data, u64 byteCount, i32 physicalColumn,
    const AddressMappingType* addressMapping);

// One memory as DumpBRAMColumn prints it, without the heading. data and parity are scratch images of the type's sizes,
// zero on entry. Status: 0; 7 no memory for the lane's buffers; or that of the first line that could not be written.
int DumpBRAM(const TarselDeviceType* device, fileIODescriptor* dump, const BitLaneType* bitLane, const MEMORYType* type,
    const TranslationTableType* table, const u8* frames, u8* data, u8* parity, u32 flags);

// Pointer moves of a walk. physLoc may be null.
u8* SkipToNextEncodedBRAM(const MEMORYType* type, const BRAMPhysLocDataType* physLoc, u8* pointer);
u8* SkipToNextEncodedFrame(const TarselDeviceType* device, const MEMORYType* type, const BRAMPhysLocDataType* physLoc,
    u8* start, const u8* current);
// Of the first generation: shifts the whole column left by two bits, so that its memories begin on bytes.
u8* SkipAnyFramePadBits(const TarselDeviceType* device, const BRAMPhysLocDataType* physLoc, u8* data, u64 byteCount);

#endif

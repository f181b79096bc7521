// records.h - the records of the device tables: families, devices, location arrays, decode rows, iterators.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_RECORDS_H
#define MEMDATA_DEVICE_TABLE_UTILS_RECORDS_H

#include "BmmUtils/model/memory_types.h"
#include "platform/BasicTypes.h"

// One row of the decode table of a memory form: a frame that the memory crosses. The tables themselves stand in
// BRAMDecodeUtils, above; the record is here because families and location arrays point at tables.
struct TranslationTableType {
    u32 frame;       // in the configuration column, from 0
    u32 dataBase;    // added to every data bit number of the row
    u32 parityBase;  // added to every parity bit number of the row
    const i32* bits; // frameSliceBits entries: 0 or more a data bit; -1 to -9999 the complement of a parity bit;
                     // below that no memory bit
};

// One field of a configuration register, or of a command word. A table of them ends at a null name.
struct RegisterBitFieldType {
    const char* name; // the field and its explanation, padded to the width of its table
    u32 shift;
    u32 mask; // after the shift; in the fields of a command word, before it
};

// One device family: how its configuration stream is to be read. All constant.
struct TarselFamilyType {
    const char* name;                        // label
    u64 familyMask;                          // one bit
    const TranslationTableType* decodeTable; // of all its memories; null where the location arrays carry tables
    i32 encryptFieldIndex;                   // row of ctlFields
    u32 crcAddressBits;
    void (*crcWordFunction)(u32 address, u32 word);
    i32 corCrcBypassIndex; // row of corFields, -1 none
    u32 crcBypassValue;
    bool crcRegisterFedBack;
    bool crcResetAfterAutoCRC;
    u32 bramsPerLookupRow; // rows of the cross-coordinate table per row of the largest memory
    u32 configWordBytes;
    u32 dummyWord;
    u32 syncWord;
    u32 syncWordBytes;
    const RegisterBitFieldType* commandFields; // type, operation, address, short count, long count
    const char* const* registerNames;          // 256, by register address; null where none
    u32 registerKinds[72];                     // by register address
    const char* const* commandNames;           // 256, by CMD value; null where none
    const RegisterBitFieldType* farFields;     // the first row is the block type
    u32 clbBlockType;
    u32 bramBlockType;
    u32 ioBlockType;
    u32 pcfgBlockType;
    const RegisterBitFieldType* corFields; // null where the family lacks the register, as the next three
    const RegisterBitFieldType* ctlFields;
    const RegisterBitFieldType* cor1Fields;
    const RegisterBitFieldType* ctl1Fields;
};

// Groups of families, by mask.
inline constexpr u64 kFIRST_GENERATION_MASK = 0x000F;
inline constexpr u64 kSECOND_GENERATION_MASK = 0x7030;
inline constexpr u64 kEARLY_GENERATIONS_MASK = 0x703F; // the two together; all other families are modern

// One memory of a device by its place in the configuration stream. An array has physicalColumns columns of
// physicalRows * subRowFactor elements, the rows of a column adjacent.
struct BRAMPhysLocDataType {
    i32 logicalRow; // Y of the location; its complement where no memory of this type exists
    i32 logicalColumn;
    const TranslationTableType* decodeTable; // null where the stream holds no frames for the place
    i32 padBits; // frame bits to pass over after this memory; -1: shares its slice with the next
};

// One memory of a device by its location. An array has logicalColumns columns of logicalRows * subRowFactor
// elements, the rows of a column adjacent.
struct BRAMLogLocDataType {
    i32 physicalRow;
    i32 physicalColumn;
    i8 exists; // kT or k_
};

inline constexpr i8 kT = 1;  // present
inline constexpr i8 k_ = -1; // absent; k_ - n is the complement of n

inline constexpr size_t kCOLUMN_MAP_ENTRIES = 25;
inline constexpr size_t kMEMORY_LOC_ENTRIES = 8;
inline constexpr i32 kIDENTITY_COLUMN_MAP = -2; // as the first entry of a column map

// One device. Geometry is counted in units of the device's largest memory.
struct TarselDeviceType {
    const char* names[256]; // ended by null; the first is the record's name
    u8 isListed;
    const TarselFamilyType* family;
    u32 logicalRows;
    u32 physicalRows; // in one configuration column
    u32 logicalColumns;
    u32 physicalColumns;
    i32 columnMap[kCOLUMN_MAP_ENTRIES]; // frame-address column to physical column, -1 no block RAM
    u32 framePadBits;                   // at the head of every frame
    u32 clbFrameBits;
    u32 bramFrameBits;
    u32 bramFrameOffset; // CLB frames ahead of the block-RAM data in a burst; 0 separate bursts, or not known
    u32 dieCount;        // 0 (one die), 3 or 4
    MEMORYLocType memoryLocs[kMEMORY_LOC_ENTRIES]; // smallest memory first, ended by an entry without a type
    const i8* existenceMap; // by physicalRows * column + row: 1 exists, -1 does not; null where all do
};

struct device_iterator_type {
    TarselDeviceType* currentRecord;
    const char* currentName;
    i32 recordIndex;
    i32 nameIndex;
    bool includeShortNames;
    bool includeLongNames;
    bool includeUnlisted;
};

#endif

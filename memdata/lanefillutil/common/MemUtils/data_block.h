// data_block.h - what was read from a text data file: one pool of bytes, and the sections that lie in it.
// SPDX-License-Identifier: Apache-2.0
//
// Sections stand in the order of the text, each behind the bytes of the one before it. They are neither merged nor
// sorted. The last one takes data until the next one is opened or the file is closed; its counts are those of its
// cursor until then.
#ifndef MEMDATA_MEM_UTILS_DATA_BLOCK_H
#define MEMDATA_MEM_UTILS_DATA_BLOCK_H

#include "SystemUtils/memory.h"
#include "lanefillCore/records/chunk_access.h"
#include "lanefillCore/records/data_file.h"

namespace memdata {
struct SectionSlab;
}

struct DataSectionHdrType {
    DataSectionHdrType* next;
    u64 address;               // of the first byte
    u64 endAddress;            // a copy of address
    u8* data;                  // in the pool; the first bit is bit 7 of the first byte
    u64 byteCount;             // bitCount in bytes, rounded up
    u64 bitCount;              // bits of data
    BufferChunkAccess* access; // in data order, while the section takes data; then null
};

struct DataStructureBlockType {
    u8* data;      // the pool
    u64 dataSize;  // bytes of the pool
    u64 usedBytes; // by closed sections
    u64 sectionCount;
    DataSectionHdrType* firstSection;
    DataSectionHdrType** sectionArray; // sectionCount entries once the file is read; null before
    u64 lowestAddress;                 // of all closed sections; all ones without one
    u64 highestAddress;                // inclusive
    u32 radix;                         // number base at the start of the text
    u64 reserved[2];
    // From here on the record is this module's own.
    DataSectionHdrType* lastSection;
    memdata::SectionSlab* sections; // where the section records live
    u64 sizeLimit;                  // bytes that the pool may grow to
};

// A block without sections.
//   textBytes  of the file. The pool has a byte for two characters: no plain text holds more. Macros, loops and
//              included files can, so the pool grows, up to memdata::kMAX_EXPANDED_BYTES more.
// Status 0; 7.
int InitializeDataStructureBlock(u64 textBytes, u32 radix, DataStructureBlockType** block);

// Closes the last section and opens the next one. Status 0; 7.
int InsertNewSectionHeader(DataStructureBlockType* block, u64 address);

// Makes the array for access by index. Status 0; 7.
int BuildSectionArrayTable(DataStructureBlockType* block);

// Releases the block with its sections and its pool, and nulls the pointer. Null is accepted.
void CloseDataFileHdr(DataStructureBlockType** block);

namespace memdata {

inline constexpr u64 kMAX_EXPANDED_BYTES = u64{1} << 30;

// Closes the last section, if one is open.
void closeLastSection(DataStructureBlockType* block);

// Bits that the pool has left for the last section, which is open.
inline u64 poolBitsLeft(const DataStructureBlockType* block) {
    const BufferChunkAccess* access = block->lastSection->access;
    return access->byteSize * 8 - access->bitCount;
}
// Makes the pool larger; what lies in it moves along. Status 0; 7.
int growPool(DataStructureBlockType* block);

// What the driver gets to see of a section.
DataFileSectionTypeX<unsigned long> programSection(const DataSectionHdrType& section);

using BlockOwner = Tracked<DataStructureBlockType, CloseDataFileHdr>;

} // namespace memdata

#endif

// data_block.cpp - see data_block.h.
// SPDX-License-Identifier: Apache-2.0
#include "MemUtils/data_block.h"

#include "SystemUtils/memory.h"
#include "platform/memory_pages.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace memdata {

// Records of sections in one piece: a file can have a section for every few characters.
struct SectionSlab {
    SectionSlab* next; // older
    u64 capacity;      // records
    u64 count;         // in use
    DataSectionHdrType records[1];
};

} // namespace memdata

namespace {

using memdata::SectionSlab;

constexpr u64 kFIRST_SLAB_SECTIONS = 8;
constexpr u64 kLARGEST_SLAB_SECTIONS = 262144; // 14 MiB hold six whole large pages, wherever they begin
constexpr u64 kLEAST_GROWTH_BYTES = 4096;
constexpr u64 kOPEN_ENDED_BITS = static_cast<u64>(-8);
constexpr u64 kSECTION_KIND = 1026;

SectionSlab* new_slab(u64 capacity) {
    const u64 bytes = sizeof(SectionSlab) + (capacity - 1) * sizeof(DataSectionHdrType);
    auto* slab = static_cast<SectionSlab*>(getMemory("section records", bytes));
    if (slab == nullptr) return nullptr;
    memdata::preferLargePages(slab, bytes);
    slab->capacity = capacity;
    return slab;
}

DataSectionHdrType* new_section(DataStructureBlockType* block) {
    SectionSlab* slab = block->sections;
    if (slab == nullptr || slab->count == slab->capacity) {
        const u64 capacity =
            slab == nullptr ? kFIRST_SLAB_SECTIONS : std::min(2 * slab->capacity, kLARGEST_SLAB_SECTIONS);
        SectionSlab* added = new_slab(capacity);
        if (added == nullptr) return nullptr;
        added->next = slab;
        block->sections = slab = added;
    }
    return &slab->records[slab->count];
}

// A cursor without an end of its own: the pool bounds it. It begins behind the closed sections.
BufferChunkAccess open_ended_access(const DataStructureBlockType* block) {
    BufferChunkAccess access(block->data + block->usedBytes, kOPEN_ENDED_BITS, kOPEN_ENDED_BITS, kDATA_ORDER, 0, 0);
    access.byteSize = block->dataSize - block->usedBytes;
    return access;
}

// Takes the counts of the last section from its cursor, which is the caller's then; null without an open section.
BufferChunkAccess* take_counts(DataStructureBlockType* block) {
    DataSectionHdrType* section = block->lastSection;
    if (section == nullptr || section->access == nullptr) return nullptr;
    section->bitCount = section->access->GetBufferBitCount();
    section->byteCount = section->access->GetBufferByteCount();
    block->usedBytes += section->byteCount;
    block->lowestAddress = std::min(block->lowestAddress, section->address);
    // A section without data has no last byte.
    if (section->byteCount != 0)
        block->highestAddress = std::max(block->highestAddress, section->address + (section->byteCount - 1));
    return std::exchange(section->access, nullptr);
}

using AccessOwner = memdata::Tracked<BufferChunkAccess, memdata::deleteChunkAccess>;

u8* new_pool(u64 byteCount) {
    void* const pool = getMemory("data of a text file", std::max<u64>(byteCount, 1));
    if (pool != nullptr) memdata::preferLargePages(pool, byteCount);
    return static_cast<u8*>(pool);
}

} // namespace

int InitializeDataStructureBlock(u64 textBytes, u32 radix, DataStructureBlockType** block) {
    *block = nullptr;
    memdata::BlockOwner created(NEW_RECORD(DataStructureBlockType));
    if (created == nullptr) return 7;
    created->dataSize = textBytes / 2 + textBytes % 2;
    created->sizeLimit = created->dataSize + memdata::kMAX_EXPANDED_BYTES;
    created->data = new_pool(created->dataSize);
    if (created->data == nullptr) return 7;
    created->lowestAddress = UINT64_MAX;
    created->radix = radix;
    *block = created.release();
    return 0;
}

int InsertNewSectionHeader(DataStructureBlockType* block, u64 address) {
    // One cursor goes from section to section.
    AccessOwner access(take_counts(block));
    DataSectionHdrType* section = new_section(block);
    if (section == nullptr) return 7;
    if (access == nullptr)
        access.reset(new BufferChunkAccess(open_ended_access(block)));
    else
        *access = open_ended_access(block);
    if (access == nullptr) return 7;
    section->address = section->endAddress = address;
    section->data = access->buffer;
    section->access = access.release();
    ++block->sections->count;
    ++block->sectionCount;
    (block->lastSection == nullptr ? block->firstSection : block->lastSection->next) = section;
    block->lastSection = section;
    return 0;
}

int BuildSectionArrayTable(DataStructureBlockType* block) {
    const u64 bytes = std::max<u64>(block->sectionCount, 1) * sizeof(void*);
    auto** entry = static_cast<DataSectionHdrType**>(getMemory("an array of sections", bytes));
    if (entry == nullptr) return 7;
    memdata::preferLargePages(entry, bytes);
    block->sectionArray = entry;
    for (DataSectionHdrType* section = block->firstSection; section != nullptr; section = section->next)
        *entry++ = section;
    return 0;
}

void CloseDataFileHdr(DataStructureBlockType** block) {
    if (block == nullptr || *block == nullptr) return;
    DataStructureBlockType* closed = std::exchange(*block, nullptr);
    if (closed->lastSection != nullptr) memdata::deleteChunkAccess(closed->lastSection->access);
    while (SectionSlab* slab = closed->sections) {
        closed->sections = slab->next;
        releaseMemory(slab);
    }
    if (closed->sectionArray != nullptr) releaseMemory(closed->sectionArray);
    if (closed->data != nullptr) releaseMemory(closed->data);
    releaseMemory(closed);
}

void memdata::closeLastSection(DataStructureBlockType* block) {
    deleteChunkAccess(take_counts(block));
}

int memdata::growPool(DataStructureBlockType* block) {
    const u64 size = std::min(std::max(2 * block->dataSize, kLEAST_GROWTH_BYTES), block->sizeLimit);
    u8* pool = new_pool(size);
    if (pool == nullptr) return 7;
    std::memcpy(pool, block->data, block->dataSize);
    for (DataSectionHdrType* section = block->firstSection; section != nullptr; section = section->next)
        section->data = pool + (section->data - block->data);
    BufferChunkAccess* access = block->lastSection->access;
    access->current = pool + (access->current - block->data);
    access->buffer = block->lastSection->data;
    access->byteSize = size - block->usedBytes;
    releaseMemory(std::exchange(block->data, pool));
    block->dataSize = size;
    return 0;
}

DataFileSectionTypeX<unsigned long> memdata::programSection(const DataSectionHdrType& section) {
    return {section.address, section.endAddress, section.data, section.byteCount, section.bitCount, kSECTION_KIND};
}

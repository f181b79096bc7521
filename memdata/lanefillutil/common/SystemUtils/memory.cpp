// memory.cpp - the tracked allocator.
// SPDX-License-Identifier: Apache-2.0
//
// One tracked block, from its base:
//   offset            bytes             field
//   0                 strlen(file) + 1  source file name
//   behind it         strlen(text) + 1  description
//   H                 72                MemoryBlockType
//   H + 72            size              the caller's bytes
// with H = strlen(file) + strlen(text) + 8, rounded down to a multiple of 8.
//
// Around that stand at most a few bytes that only the system allocator sees:
// - the base is 0 or 8 bytes into the system's block, so that the caller's bytes are 16-aligned for every H;
// - H leaves no room for the last terminator when the two lengths add up to 8n + 7. The description of such a
//   block stands ahead of the base instead, so that neither it nor the header is ever damaged.
#include "SystemUtils/memory.h"

#include "SystemUtils/alerts.h"
#include "SystemUtils/state.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

using memdata::gSystemState;

namespace {

constexpr size_t kUSER_ALIGNMENT = 16;
constexpr size_t kHEADER_BYTES = 72;
constexpr u32 kLIVE_MAGIC = std::bit_cast<u32>(std::array<char, 4>{'Y', 'm', 'E', 'm'});
constexpr u8 kRELEASED_BYTE = 0xF0;
// Larger blocks are overwritten at their head only: a sparse block must not become resident to be released.
constexpr size_t kOVERWRITE_WHOLE_LIMIT = size_t{1} << 20;
constexpr size_t kOVERWRITE_HEAD_BYTES = size_t{64} << 10;
constexpr size_t kCLEAR_BY_HAND_LIMIT = 1024; // bytes of the system's block

static_assert(sizeof(MemoryBlockType) == kHEADER_BYTES);
static_assert(alignof(MemoryBlockType) == 8);

constexpr size_t round_up(size_t value, size_t unit) {
    return (value + unit - 1) / unit * unit;
}

// Where the parts of one block stand. Offsets and counts in bytes.
struct BlockPlanType {
    size_t fileBytes;        // with its terminator
    size_t descriptionBytes; // with its terminator
    size_t baseOffset;       // from the system's block
    size_t headerOffset;     // from the base
    bool descriptionAhead;   // of the base, at the start of the system's block
    size_t overheadBytes;    // of the system's block, all but the caller's bytes
};

BlockPlanType plan_block(const char* file, const char* description) {
    BlockPlanType plan;
    plan.fileBytes = std::strlen(file) + 1;
    plan.descriptionBytes = std::strlen(description) + 1;
    plan.headerOffset = (plan.fileBytes + plan.descriptionBytes + 6) / 8 * 8;
    plan.descriptionAhead = plan.fileBytes + plan.descriptionBytes > plan.headerOffset;
    const size_t ahead = plan.descriptionAhead ? round_up(plan.descriptionBytes, kUSER_ALIGNMENT) : 0;
    const size_t block = plan.headerOffset + kHEADER_BYTES;
    plan.baseOffset = ahead + (round_up(block, kUSER_ALIGNMENT) - block);
    plan.overheadBytes = plan.baseOffset + block;
    return plan;
}

bool fault_is_due() {
    ++gSystemState.allocationCount;
    return gSystemState.allocationsToFault != 0 && --gSystemState.allocationsToFault == 0;
}

// A large zeroed block comes from the system unread, so that a sparse one costs no memory; for a small one it is
// three times faster to take any block and clear it.
void* take_zeroed(size_t bytes) {
    if (void* pooled = gSystemState.pool.take(bytes); pooled != nullptr) return pooled;
    if (bytes > kCLEAR_BY_HAND_LIMIT) return std::calloc(1, bytes);
    void* block = std::malloc(bytes);
    return block == nullptr ? nullptr : std::memset(block, 0, bytes);
}

void give_back(char* system, size_t bytes) {
    if (gSystemState.pool.holds(system))
        gSystemState.pool.give(system, bytes);
    else
        std::free(system);
}

// The system's block for a plan, zeroed, its user pointer entered as live. Null when there is none, the sum of the
// sizes overflows, or the live set can not grow.
char* take_system_block(const BlockPlanType& plan, size_t size) {
    if (size > static_cast<size_t>(PTRDIFF_MAX) - plan.overheadBytes) return nullptr;
    char* system = static_cast<char*>(take_zeroed(plan.overheadBytes + size));
    if (system == nullptr) return nullptr;
    if (memdata::insertLiveBlock(&gSystemState.liveBlocks, system + plan.overheadBytes)) return system;
    give_back(system, plan.overheadBytes + size);
    return nullptr;
}

char* system_block_of(const MemoryBlockType* block) {
    if (block->description < block->base) return block->description;
    return block->base - reinterpret_cast<std::uintptr_t>(block->base) % kUSER_ALIGNMENT;
}

MemoryBlockType* fill_block(
    char* system, const BlockPlanType& plan, const char* file, unsigned line, const char* description, size_t size) {
    char* base = system + plan.baseOffset;
    char* text = plan.descriptionAhead ? system : base + plan.fileBytes;
    std::memcpy(base, file, plan.fileBytes);
    std::memcpy(text, description, plan.descriptionBytes);
    char* header = base + plan.headerOffset;
    MemoryBlockType* block = new (header) MemoryBlockType{};
    block->description = text;
    block->magic = kLIVE_MAGIC;
    block->size = static_cast<u32>(size);
    block->usageAtAllocation = static_cast<u32>(gCurrentMemoryUsage);
    block->line = line;
    block->base = base;
    block->sourceFile = base;
    block->user = header + kHEADER_BYTES;
    return block;
}

MemoryBlockType* header_of(void* user) {
    return std::launder(reinterpret_cast<MemoryBlockType*>(static_cast<char*>(user) - kHEADER_BYTES));
}

bool is_live(void* user) {
    return memdata::containsLiveBlock(&gSystemState.liveBlocks, user) && header_of(user)->magic == kLIVE_MAGIC;
}

// The block of a caller's pointer, or null with the fault reported.
MemoryBlockType* find_block(const char* file, unsigned line, void* user) {
    if (user == nullptr) {
        _PrintFatalError(file, line, kFATAL_RELEASE_OF_NIL_POINTER, 3);
        return nullptr;
    }
    // The set is asked first: a pointer that is none of ours, or no longer, is never read.
    if (!is_live(user)) {
        _PrintFatalError(file, line, kFATAL_RELEASE_OF_UNKNOWN_POINTER, 3, user);
        return nullptr;
    }
    return header_of(user);
}

void overwrite_released(void* user, size_t size) {
    std::memset(user, kRELEASED_BYTE, size > kOVERWRITE_WHOLE_LIMIT ? kOVERWRITE_HEAD_BYTES : size);
    asm volatile("" : : "r"(user) : "memory"); // or the optimiser drops stores that nobody may read again
}

void free_block(MemoryBlockType* block) {
    // On purpose by the 32 bits of the header, although the block was added in full: a block beyond 4 GiB leaves
    // the rest of its size in the current usage. Never below 0.
    gCurrentMemoryUsage -= std::min<u64>(gCurrentMemoryUsage, block->size);
    char* system = system_block_of(block);
    block->magic = 0;
    DelistMemoryBlock(&gMemoryBlockList, block);
    memdata::eraseLiveBlock(&gSystemState.liveBlocks, block->user);
    const size_t bytes = static_cast<size_t>(static_cast<char*>(block->user) - system) + block->size;
    overwrite_released(block->user, block->size);
    give_back(system, bytes);
}

} // namespace

void* _getMemory(const char* file, unsigned line, const char* description, unsigned long size) {
    const char* fileText = file == nullptr ? "" : file;
    const char* descriptionText = description == nullptr ? "" : description;
    const BlockPlanType plan = plan_block(fileText, descriptionText);
    char* system = fault_is_due() ? nullptr : take_system_block(plan, size);
    if (system == nullptr) {
        // An alert is worded outside tracked memory, so this ends here.
        _PrintFatalError(fileText, line, kFATAL_OUT_OF_MEMORY, 7, "getMemory", size, gCurrentMemoryUsage);
        return nullptr;
    }

    MemoryBlockType* block = fill_block(system, plan, fileText, line, descriptionText, size);
    gCurrentMemoryUsage += size;
    gMaxMemoryUsage = std::max(gMaxMemoryUsage, gCurrentMemoryUsage);
    QueueMemoryBlock(&gMemoryBlockList, block);
    return block->user;
}

int _releaseMemory(const char* file, unsigned line, void* p) {
    MemoryBlockType* block = find_block(file, line, p);
    if (block == nullptr) return 3;
    free_block(block);
    return 0;
}

int _autoReleaseMemory(const char* file, unsigned line, void* p) {
    MemoryBlockType* block = find_block(file, line, p);
    if (block == nullptr) return 3;
    block->autoRelease = 1;
    return 0;
}

u64 getCurrentMemoryUsage() {
    return gCurrentMemoryUsage;
}

u64 getMaxMemoryUsage() {
    return gMaxMemoryUsage;
}

void CheckMemoryLeaks() {
    gSystemState.leakedBlockCount = 0;
    if (gSystemState.endsWithRun) return; // the list stays, so that leak checkers see the blocks
    while (gMemoryBlockList.head != nullptr) {
        MemoryBlockType* block = gMemoryBlockList.head;
        char* user = reinterpret_cast<char*>(block) + kHEADER_BYTES;
        // A header that was written over leads nowhere safe: what it hides is given up.
        if (!is_live(user)) break;
        if (block->autoRelease == 0) ++gSystemState.leakedBlockCount;
        free_block(block);
    }
    gMemoryBlockList = {nullptr, nullptr};
}

void QueueMemoryBlock(MemoryBlockListType* list, MemoryBlockType* block) {
    if (list->head == nullptr) {
        *list = {block, block};
        return;
    }
    MemoryBlockType* last = list->tail == nullptr ? list->head : list->tail;
    while (last->next != nullptr) last = last->next;
    last->next = block;
    block->prev = last;
    list->tail = block;
}

void DelistMemoryBlock(MemoryBlockListType* list, MemoryBlockType* block) {
    if (list->head == block) list->head = block->next;
    if (list->tail == block) list->tail = block->prev;
    if (block->prev != nullptr) block->prev->next = block->next;
    if (block->next != nullptr) block->next->prev = block->prev;
    block->prev = nullptr;
    block->next = nullptr;
}

namespace memdata {

void failTrackedAllocation(u64 n) {
    gSystemState.allocationsToFault = n;
}

u64 trackedAllocationCount() {
    return gSystemState.allocationCount;
}

u64 leakedBlockCount() {
    return gSystemState.leakedBlockCount;
}

} // namespace memdata

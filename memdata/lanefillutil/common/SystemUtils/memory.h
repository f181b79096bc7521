// memory.h - the tracked allocator: every block of the engine knows where and what for it was made.
// SPDX-License-Identifier: Apache-2.0
//
// A block is, from its base: the source file name, the description, padding to a multiple of 8, a MemoryBlockType,
// the caller's bytes. The whole allocation is strlen(file) + strlen(description) + 8, rounded down to a multiple of
// 8, plus 72, plus the caller's size. The caller's bytes are 16-aligned; the header is 8-aligned.
#ifndef MEMDATA_SYSTEM_UTILS_MEMORY_H
#define MEMDATA_SYSTEM_UTILS_MEMORY_H

#include "platform/BasicTypes.h"

struct MemoryBlockType {
    MemoryBlockType* prev;
    MemoryBlockType* next;
    char* description;
    u32 magic; // the four bytes "YmEm" while live, 0 after release
    u32 size;  // bytes, the low 32 bits
    u8 autoRelease;
    u32 usageAtAllocation; // bytes in use before this block, the low 32 bits
    u32 line;
    char* base;       // start of the allocation
    char* sourceFile; // equal to base
    void* user;       // the caller's bytes
};

struct MemoryBlockListType {
    MemoryBlockType* head;
    MemoryBlockType* tail;
};

extern MemoryBlockListType gMemoryBlockList; // all live blocks, oldest first
extern u64 gCurrentMemoryUsage;              // bytes
extern u64 gMaxMemoryUsage;                  // bytes

// A zero-filled block.
//   file, line    where it is asked for; relative to the tree
//   description   what for: "a 'LaneType' record"; both texts are copied, a null counts as empty
//   size          bytes; any size that the system gives. Large blocks stay sparse until they are written to
// Null when there is no memory: kFATAL_OUT_OF_MEMORY has then been raised, callers pass on status 7.
void* _getMemory(const char* file, unsigned line, const char* description, unsigned long size);

// Gives a block back. Its bytes are overwritten with 0xF0 (the first 64 KiB of blocks above 1 MiB), so that a use
// after release shows.
//   file, line    where it is released, for the alert
// Status: 0; 3 with kFATAL_RELEASE_OF_NIL_POINTER for null, or with kFATAL_RELEASE_OF_UNKNOWN_POINTER for a pointer
// that is no live block (a second release too) or whose header has lost its magic. Nothing is changed then, and a
// pointer that is no live block is not read either.
int _releaseMemory(const char* file, unsigned line, void* p);

// Marks a block as one that the sweep is meant to release. Status as _releaseMemory.
int _autoReleaseMemory(const char* file, unsigned line, void* p);

// Bytes asked for by live blocks. A block beyond 4 GiB leaves its upper part behind when it is released: sizes are
// added in full and subtracted as the header holds them. Never below 0.
u64 getCurrentMemoryUsage();
// The highest usage since the start of this lifetime.
u64 getMaxMemoryUsage();

// Releases every listed block, marked or not, and prints nothing. Runs as the last finalization function. It stops at
// a block whose header was written over: what hangs behind it is given up.
void CheckMemoryLeaks();

// Appends a block that is in no list: at the true end, from the tail on (from the head when the tail is null).
void QueueMemoryBlock(MemoryBlockListType* list, MemoryBlockType* block);
// Takes a block out, repairs head and tail, and nulls the links of the block.
void DelistMemoryBlock(MemoryBlockListType* list, MemoryBlockType* block);

#define getMemory(description, size) _getMemory(__FILE__, __LINE__, description, size)
#define releaseMemory(p)             _releaseMemory(__FILE__, __LINE__, p)
#define autoReleaseMemory(p)         _autoReleaseMemory(__FILE__, __LINE__, p)
#define NEW_RECORD(Type)             static_cast<Type*>(_getMemory(__FILE__, __LINE__, "a '" #Type "' record", sizeof(Type)))

namespace memdata {

// For tests: the n-th tracked allocation from now fails as if the system had no memory (1 is the next
// one, 0 switches the fault off). Counts down by itself.
void failTrackedAllocation(u64 n);
// Number of tracked allocations that this process has asked for.
u64 trackedAllocationCount();
// Blocks without the mark of auto release that the latest CheckMemoryLeaks had to release: what a run has lost.
// Stays readable after FinalizeSystemResources.
u64 leakedBlockCount();

// Owns one tracked record until release() hands it on. Delete is the record's own delete operation,
// void or int of one pointer, or of a pointer to the pointer.
template<class T, auto Delete>
class Tracked {
public:
    explicit Tracked(T* p = nullptr) : record_(p) {}
    Tracked(Tracked&& other) noexcept : record_(other.release()) {}
    Tracked& operator=(Tracked&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~Tracked() { reset(); }

    T* get() const { return record_; }
    T* operator->() const { return record_; }
    T& operator*() const { return *record_; }
    explicit operator bool() const { return record_ != nullptr; }
    friend bool operator==(const Tracked& owner, std::nullptr_t) { return owner.record_ == nullptr; }
    // For operations that write a new record to where they are told; an old one is deleted first.
    T** out() {
        reset();
        return &record_;
    }
    T* release() {
        T* p = record_;
        record_ = nullptr;
        return p;
    }
    void reset(T* p = nullptr) {
        T* old = record_;
        record_ = p;
        if (old == nullptr) return;
        if constexpr (requires { Delete(&old); })
            Delete(&old);
        else
            Delete(old);
    }

private:
    T* record_;
};

} // namespace memdata

#endif

// memory.h - the tracked allocator: every block of the engine knows where and what for it was made.
// SPDX-License-Identifier: Apache-2.0
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

void* _getMemory(const char* file, unsigned line, const char* description, unsigned long size);
int _releaseMemory(const char* file, unsigned line, void* p);
int _autoReleaseMemory(const char* file, unsigned line, void* p);
u64 getCurrentMemoryUsage();
u64 getMaxMemoryUsage();
void CheckMemoryLeaks();
void QueueMemoryBlock(MemoryBlockListType* list, MemoryBlockType* block);
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

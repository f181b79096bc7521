// block_pool.h - small blocks of memory, cut from large pages.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_BLOCK_POOL_H
#define MEMDATA_SYSTEM_UTILS_BLOCK_POOL_H

#include "platform/BasicTypes.h"

#include <array>
#include <cstddef>

namespace memdata {

// A map of thousands of lanes is made of small blocks: where each of its pages comes from the system at its first touch,
// that takes as long as reading the map. The pool is one range of addresses that costs nothing until it is used. Behind
// its first two megabytes, which a small run does not leave, the system is asked for large pages. A block that was given
// back serves the next one of its size.
class BlockPool {
public:
    static constexpr size_t kLARGEST_BLOCK = 1024; // bytes

    // Has no effect twice, nor where the system has no such range: the pool then holds nothing.
    void open();
    // Gives all blocks back.
    void close();

    // A zeroed block, 16-aligned. Null for 0 bytes or more than the largest, when the pool is used up, and when it is not
    // open.
    void* take(size_t bytes);
    // A block of the pool, with the size that it was taken for.
    void give(void* block, size_t bytes);
    bool holds(const void* block) const { return block >= start_ && block < end_; }

private:
    struct FreeBlock {
        FreeBlock* next;
    };
    static constexpr size_t kUNIT = 16;

    char* start_ = nullptr;
    char* next_ = nullptr; // the first byte that no block ever had
    char* end_ = nullptr;
    std::array<FreeBlock*, kLARGEST_BLOCK / kUNIT> free_{}; // by units of size, less one
};

} // namespace memdata

#endif

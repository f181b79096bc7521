// block_pool.cpp - see block_pool.h.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/block_pool.h"

#include "platform/memory_pages.h"

#include <cstring>
#include <new>

namespace memdata {

namespace {

constexpr u64 kPOOL_BYTES = u64{4} << 30; // of addresses
constexpr u64 kSMALL_PAGES_BYTES = u64{2} << 20;

} // namespace

void BlockPool::open() {
    if (start_ != nullptr) return;
    start_ = next_ = static_cast<char*>(reservePages(kPOOL_BYTES));
    if (start_ == nullptr) return;
    end_ = start_ + kPOOL_BYTES;
    preferLargePages(start_ + kSMALL_PAGES_BYTES, kPOOL_BYTES - kSMALL_PAGES_BYTES);
}

void BlockPool::close() {
    if (start_ != nullptr) returnPages(start_, kPOOL_BYTES);
    *this = {};
}

void* BlockPool::take(size_t bytes) {
    if (bytes == 0 || bytes > kLARGEST_BLOCK) return nullptr;
    const size_t units = (bytes + kUNIT - 1) / kUNIT;
    FreeBlock*& free = free_[units - 1];
    if (free != nullptr) {
        FreeBlock* const block = free;
        free = block->next;
        return std::memset(static_cast<void*>(block), 0, bytes);
    }
    if (static_cast<size_t>(end_ - next_) < units * kUNIT) return nullptr;
    void* const block = next_; // the system's pages are zero
    next_ += units * kUNIT;
    return block;
}

void BlockPool::give(void* block, size_t bytes) {
    FreeBlock*& free = free_[(bytes + kUNIT - 1) / kUNIT - 1];
    free = new (block) FreeBlock{free};
}

} // namespace memdata

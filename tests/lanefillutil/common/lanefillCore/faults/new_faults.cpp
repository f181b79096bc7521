// new_faults.cpp - see new_faults.h.
// SPDX-License-Identifier: Apache-2.0
#include "new_faults.h"

#include <cstdlib>
#include <new>

namespace {

u64 gNewCount = 0;
u64 gNewsToFault = 0;

void* take(std::size_t size) {
    ++gNewCount;
    if (gNewsToFault != 0 && --gNewsToFault == 0) throw std::bad_alloc();
    if (void* block = std::malloc(size == 0 ? 1 : size); block != nullptr) return block;
    throw std::bad_alloc();
}

} // namespace

// Arrays come here by themselves.
void* operator new(std::size_t size) {
    return take(size);
}
// Asked for by algorithms that can do without: it never counts.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

namespace memdata::testing {

void failNew(u64 n) {
    gNewsToFault = n;
}

u64 newCount() {
    return gNewCount;
}

} // namespace memdata::testing

// memory_pages.cpp - see memory_pages.h.
// SPDX-License-Identifier: Apache-2.0
#include "platform/memory_pages.h"

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr u64 kLARGE_PAGE_BYTES = u64{2} << 20;

struct Pages {
    char* start;
    u64 bytes;
};

// The whole pages inside a block.
Pages pagesInside(void* bytes, u64 byteCount, u64 pageBytes) {
    const u64 head = (pageBytes - reinterpret_cast<std::uintptr_t>(bytes) % pageBytes) % pageBytes;
    if (byteCount < head) return {static_cast<char*>(bytes), 0};
    return {static_cast<char*>(bytes) + head, (byteCount - head) / pageBytes * pageBytes};
}

[[maybe_unused]] void advise(const Pages& pages, int advice) {
    if (pages.bytes != 0) ::madvise(pages.start, static_cast<size_t>(pages.bytes), advice);
}

} // namespace

namespace memdata {

void preferLargePages([[maybe_unused]] void* bytes, [[maybe_unused]] u64 byteCount) {
#ifdef MADV_HUGEPAGE
    advise(pagesInside(bytes, byteCount, kLARGE_PAGE_BYTES), MADV_HUGEPAGE);
#endif
}

void* reservePages(u64 byteCount) {
    void* const bytes = ::mmap(nullptr, static_cast<size_t>(byteCount), PROT_READ | PROT_WRITE,
        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return bytes == MAP_FAILED ? nullptr : bytes;
}

void returnPages(void* bytes, u64 byteCount) {
    ::munmap(bytes, static_cast<size_t>(byteCount));
}

void populatePages(void* bytes, u64 byteCount) {
    constexpr u64 kSMALLEST_BYTES = 256 * 1024; // below that the calls are not worth their while
    if (byteCount < kSMALLEST_BYTES) return;
    preferLargePages(bytes, byteCount);
#ifdef MADV_POPULATE_WRITE
    advise(pagesInside(bytes, byteCount, static_cast<u64>(::sysconf(_SC_PAGESIZE))), MADV_POPULATE_WRITE);
#endif
}

} // namespace memdata

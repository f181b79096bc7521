// memory_pages.cpp - see memory_pages.h.
// SPDX-License-Identifier: Apache-2.0
#include "platform/memory_pages.h"

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace memdata {

void populatePages([[maybe_unused]] void* bytes, [[maybe_unused]] u64 byteCount) {
#ifdef MADV_POPULATE_WRITE
    constexpr u64 kSMALLEST_BYTES = 256 * 1024; // below that the call is not worth its while
    if (byteCount < kSMALLEST_BYTES) return;
    const u64 pageBytes = static_cast<u64>(::sysconf(_SC_PAGESIZE));
    const u64 head = (pageBytes - reinterpret_cast<std::uintptr_t>(bytes) % pageBytes) % pageBytes; // whole pages only
    const u64 whole = (byteCount - head) / pageBytes * pageBytes;
    ::madvise(static_cast<char*>(bytes) + head, static_cast<size_t>(whole), MADV_POPULATE_WRITE);
#endif
}

} // namespace memdata

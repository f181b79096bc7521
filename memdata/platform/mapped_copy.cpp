// mapped_copy.cpp - see mapped_copy.h.
// SPDX-License-Identifier: Apache-2.0
#include "platform/mapped_copy.h"

#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace memdata {

std::unique_ptr<MappedCopy> MappedCopy::of(const void* bytes, u64 byteCount) {
    WatchedMapping* const original = watchedMappingOf(bytes, byteCount);
    if (original == nullptr || byteCount == 0) return nullptr;
    std::unique_ptr<MappedCopy> copy(new (std::nothrow) MappedCopy);
    if (copy == nullptr) return nullptr;

    const u64 place = original->offset + static_cast<u64>(static_cast<const char*>(bytes) - original->begin);
    const u64 head = place % static_cast<u64>(::sysconf(_SC_PAGESIZE));
    void* const pages = ::mmap(nullptr, static_cast<size_t>(head + byteCount), PROT_READ | PROT_WRITE, MAP_PRIVATE,
        original->descriptor, static_cast<off_t>(place - head));
    if (pages == MAP_FAILED) return nullptr;
#ifdef MADV_POPULATE_READ
    ::madvise(pages, static_cast<size_t>(head + byteCount), MADV_POPULATE_READ); // a failure costs time only
#endif
    copy->mapping_ = *original;
    copy->mapping_.begin = static_cast<char*>(pages);
    copy->mapping_.byteCount = head + byteCount;
    copy->mapping_.original = original;
    copy->mapping_.descriptor = -1; // a copy is not copied once more: the file may be closed by then
    copy->bytes_ = static_cast<u8*>(pages) + head;
    startWatching(&copy->mapping_);
    return copy;
}

MappedCopy::~MappedCopy() {
    if (bytes_ == nullptr) return;
    stopWatching(&mapping_);
    ::munmap(mapping_.begin, static_cast<size_t>(mapping_.byteCount));
}

} // namespace memdata

// mapped_copy.h - a private copy of bytes of a mapped file that shares the file's pages while nobody writes to it.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_MAPPED_COPY_H
#define MEMDATA_PLATFORM_MAPPED_COPY_H

#include "platform/BasicTypes.h"
#include "platform/watched_mapping.h"

#include <memory>

namespace memdata {

// A second mapping of the same pages, in which a page is copied when it is first written to. It lives on when the
// mapping that it was made of is gone. Until then that one answers for both: whoever took bytes of the copy asks there
// whether the file is unchanged. Afterwards another program that writes into the file changes pages of the copy that
// nobody has written to.
class MappedCopy {
public:
    // Null where the bytes do not lie in a watched mapping, or the system gives no other one: a plain copy serves then.
    static std::unique_ptr<MappedCopy> of(const void* bytes, u64 byteCount);
    ~MappedCopy();
    MappedCopy& operator=(MappedCopy&&) = delete; // neither copied nor moved

    u8* bytes() const { return bytes_; }

private:
    MappedCopy() = default;

    WatchedMapping mapping_{};
    u8* bytes_ = nullptr; // in the mapping, which begins with a page
};

} // namespace memdata

#endif

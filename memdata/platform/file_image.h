// file_image.h - all bytes of a file in memory, without a copy of those that stand in the file as they are.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_FILE_IMAGE_H
#define MEMDATA_PLATFORM_FILE_IMAGE_H

#include "platform/BasicTypes.h"
#include "platform/watched_mapping.h"
#include "platform/whole_file.h"

#include <string>
#include <vector>

namespace memdata {

// A plain regular file is mapped: opening it costs nothing, and its pages stay those of the system. A packed file is
// unpacked, a pipe or device is read to its end. Another program may write into a mapped file, or cut it short, while it
// is open: whoever took bytes asks isUnchanged before they count. Replacing the file by rename does no harm.
class FileImage {
public:
    FileImage() = default;
    ~FileImage() { close(); }
    FileImage& operator=(FileImage&&) = delete; // neither copied nor moved

    // name, reason  as for readWholeFile
    // limit         bytes after unpacking or reading; a mapping takes no memory and has none
    // Whatever was open is closed first; without kREAD nothing is open.
    WholeFile open(const std::string& name, std::string* reason = nullptr, u64 limit = kMAX_WHOLE_FILE_BYTES);
    void close();

    // Stay until close; null when there are none. Not to be written to.
    const char* data() const { return isMapped() ? mapping_.begin : unpacked_.data(); }
    u64 size() const { return isMapped() ? mapping_.byteCount : unpacked_.size(); }
    bool isMapped() const { return mapping_.begin != nullptr; }
    // Whether the bytes were those of one state of the file from open to now. Always so for what was copied. See
    // watched_mapping.h for pages that are lost.
    bool isUnchanged() const;

private:
    bool map_(const std::string& name);

    WatchedMapping mapping_{};
    std::string unpacked_;
};

// Bytes of a mapped image that are not needed for now: the memory that they take in the process is given back. They
// stay readable and come from the file again.
void releaseMappedPages(const void* bytes, u64 byteCount);

} // namespace memdata

#endif

// whole_file.h - a file read whole, unpacked when it was stored packed.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_WHOLE_FILE_H
#define MEMDATA_PLATFORM_WHOLE_FILE_H

#include "platform/BasicTypes.h"

#include <string>
#include <vector>

namespace memdata {

inline constexpr u64 kMAX_WHOLE_FILE_BYTES = u64{4} << 30;
// What a file may hold that does not tell its size. A packed file of a few kilobytes can stand for more than any
// machine holds, and a device for ever.
inline constexpr u64 kMAX_UNSIZED_FILE_BYTES = u64{1} << 30;

enum class WholeFile {
    kREAD,
    kCANNOT_OPEN,
    kDAMAGED, // packed data is damaged or ends early, the disk failed, or another program cut the file short meanwhile
    kTOO_LARGE, // above a limit, or above the memory of the machine
};

// name     of the file, in the system's own encoding
// content  out: all bytes; empty unless the result is kREAD
// reason   out: why not, worded to follow "cannot read NAME: "; may be null; untouched when kREAD
// limit    bytes after unpacking, plain files included; packed files, pipes and devices stop at
//          kMAX_UNSIZED_FILE_BYTES already
WholeFile readWholeFile(
    const std::string& name, std::string* content, std::string* reason = nullptr, u64 limit = kMAX_WHOLE_FILE_BYTES);
WholeFile readWholeFile(const std::string& name, std::vector<u8>* content, std::string* reason = nullptr,
    u64 limit = kMAX_WHOLE_FILE_BYTES);

} // namespace memdata

#endif

// watched_mapping.h - memory mapped over a file that other programs may change meanwhile.
//
// Another program that writes into the file changes bytes that were given out; one that cuts it short takes pages away.
// Whoever took bytes asks isUnchanged before they count. Replacing the file by rename does no harm.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_WATCHED_MAPPING_H
#define MEMDATA_PLATFORM_WATCHED_MAPPING_H

#include "platform/BasicTypes.h"

namespace memdata {

// What tells one state of a file from another.
struct FileState {
    u64 device;
    u64 node;
    u64 byteCount;
    i64 seconds; // of the last change
    i64 nanoseconds;
    bool operator==(const FileState&) const = default;
};
bool fileStateOf(int descriptor, FileState* state); // false when the system does not tell

// A plain record: all zero while nothing is mapped.
struct WatchedMapping {
    char* begin;
    u64 byteCount;
    FileState state; // of the file, when its first bytes were mapped
    bool hasLostPages;
    int descriptor;           // of the file
    u64 offset;               // in the file, of begin
    WatchedMapping* original; // of a mapped copy, while that is mapped: pages that the copy loses are lost there too
    WatchedMapping* next;     // of all that are mapped now
};

// From here on the bytes of begin and byteCount are watched; until they are unmapped, which the caller does behind
// stopWatching.
void startWatching(WatchedMapping* mapping);
void stopWatching(WatchedMapping* mapping);
// Whether the file is in the state that the mapping was made of, and no page of it was lost. Its descriptor is open.
bool isUnchanged(const WatchedMapping& mapping);
// The mapping that bytes lie in as a whole, or null.
WatchedMapping* watchedMappingOf(const void* bytes, u64 byteCount);

// Installs a handler for the whole process, for programs: a library leaves the signals of its host alone. A page of a
// watched mapping that the system can not give, because the file was cut short or its disk failed, then reads as zeros,
// and isUnchanged is false. Without the handler it ends the process (SIGBUS). One thread.
void surviveLostPages();

} // namespace memdata

#endif

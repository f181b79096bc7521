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
    WatchedMapping* next; // of all that are mapped now
};

// From here on the bytes of begin and byteCount are watched; until they are unmapped, which the caller does behind
// stopWatching.
void startWatching(WatchedMapping* mapping);
void stopWatching(WatchedMapping* mapping);
// Whether the file of an open descriptor is in the state that the mapping was made of, and no page of it was lost.
bool isUnchanged(const WatchedMapping& mapping, int descriptor);

// Installs a handler for the whole process, for programs: a library leaves the signals of its host alone. A page of a
// watched mapping that the system can not give, because the file was cut short or its disk failed, then reads as zeros,
// and isUnchanged is false. Without the handler it ends the process (SIGBUS). One thread.
void surviveLostPages();

} // namespace memdata

#endif

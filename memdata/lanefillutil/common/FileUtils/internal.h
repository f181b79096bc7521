// internal.h - what the files of this folder share.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_INTERNAL_H
#define MEMDATA_FILE_UTILS_INTERNAL_H

#include "FileUtils/descriptor.h"

namespace memdata {

inline constexpr u64 kBUFFER_BYTES = 100000;
inline constexpr u64 kSPARE_BYTES = 3; // behind the bytes of a buffer: 0xFF, NUL, NUL
inline constexpr char kEND_BYTE = '\xFF';
inline constexpr u64 kMAX_LINE_BYTES = u64{16} << 20;         // of a line in a file that is not one buffer
inline constexpr u64 kMAX_WINDOW_BYTES = kMAX_LINE_BYTES + 2; // with its end, or the end's first half and a neighbour
inline constexpr u64 kMAX_UNSIZED_BYTES = u64{1} << 30;       // of a pipe or device that is read as one buffer

inline bool isInput(const fileIODescriptor* file) {
    return file != nullptr && file->isOpen != 0 && (file->attributes & kWRITE_ACCESS) == 0;
}
inline bool isOutput(const fileIODescriptor* file) {
    return file != nullptr && file->isOpen != 0 && (file->attributes & kWRITE_ACCESS) != 0;
}
inline bool isText(const fileIODescriptor* file) {
    return (file->attributes & kTEXT_ENDING_MASK) < kBINARY_FILE;
}

// descriptor.cpp
// A record with its name, not open yet, entered in the list of open files; null when memory is exhausted.
fileIODescriptor* newDescriptor(const char* name, u32 attributes);
// False, and the old name, when memory is exhausted. Allocates nothing while the name fits the memory of the old one.
bool renameDescriptor(fileIODescriptor* file, const char* name);
// Gives the file a buffer of its own of size bytes and the spare ones, with the bytes that it held before. False,
// and the old buffer, when memory is exhausted.
bool resizeBuffer(fileIODescriptor* file, u64 size);

// reading.cpp
// Sets textEnd from the first end mark in [from, bufferEnd), and the spare bytes of a buffer of its own.
void markTextEnd(fileIODescriptor* file, u64 from);
// Reads the first bytes of a disk input: all of it when it is to be one buffer or is small. sizeIsKnown is false
// for pipes, devices and files that a kernel makes up. Status 0, kREAD_FAILED (not reported), kNO_MEMORY (reported).
int primeDiskInput(fileIODescriptor* file, u64 size, bool sizeIsKnown);

// mapped_input.cpp
// Maps the first window of a binary input of size bytes. False, and nothing has changed, when the file is small, or
// the system will not map it.
bool primeMappedInput(fileIODescriptor* file, u64 size);
void unmapWindow(fileIODescriptor* file);
// The next byte to read is that of a place further on, which is not mapped before it is read.
void moveMappedInputTo(fileIODescriptor* file, u64 position);

// writing.cpp
int moveDiskOutput(fileIODescriptor* file, int flag);
// Reports the first failure of an output, and only that; the output's status.
int failOutput(fileIODescriptor* file, const char* cause);
// Leaves the next count bytes of an output on disk as they stand. Status as outputBlock.
int passOver(fileIODescriptor* file, u64 count);

// failures.cpp
inline constexpr const char* kCUT_SHORT = "it was cut short while it was read";
// A failure of the system in its own words.
const char* causeText(int error);
// Of a file that can not be opened: status 1. The cause is kept for reportCause when the alert does not tell it.
int failReading(int error);
int failCreating(int error);

} // namespace memdata

#endif

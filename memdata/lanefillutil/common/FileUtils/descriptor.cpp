// descriptor.cpp - the life of a descriptor, and what can be asked of it.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/descriptor.h"

#include "FileUtils/internal.h"
#include "FileUtils/output_target.h"
#include "FileUtils/state.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

using namespace memdata;

void enterOpenFile(fileIODescriptor* file) {
    file->nextOpen = gFileState.openFiles;
    if (file->nextOpen != nullptr) file->nextOpen->previousOpen = file;
    gFileState.openFiles = file;
}

void leaveOpenFiles(fileIODescriptor* file) {
    (file->previousOpen != nullptr ? file->previousOpen->nextOpen : gFileState.openFiles) = file->nextOpen;
    if (file->nextOpen != nullptr) file->nextOpen->previousOpen = file->previousOpen;
}

void deleteDescriptor(fileIODescriptor* file) {
    leaveOpenFiles(file);
    if (file == StandardLog) {
        StandardLog = nullptr;
        gJournalingEnabled = false;
    }
    if (file->ownsBuffer != 0) releaseMemory(file->buffer);
    unmapWindow(file);
    for (char* text : {file->name, file->targetName, file->temporaryName}) StrDelete(text);
    releaseMemory(file);
}

// Outputs that grow know their size from where they have been written to.
bool growsByWriting(const fileIODescriptor* file) {
    return isOutput(file) && (file->stream != nullptr || file->ownsBuffer != 0);
}

} // namespace

fileIODescriptor* memdata::newDescriptor(const char* name, u32 attributes) {
    fileIODescriptor* file = NEW_RECORD(fileIODescriptor);
    if (file == nullptr) return nullptr;
    enterOpenFile(file);
    file->attributes = attributes;
    file->name = StrDup(name == nullptr ? "" : name);
    if (file->name == nullptr) {
        deleteDescriptor(file);
        return nullptr;
    }
    file->nameCapacity = std::strlen(file->name);
    return file;
}

bool memdata::renameDescriptor(fileIODescriptor* file, const char* name) {
    if (name == nullptr) name = "";
    const u64 length = std::strlen(name);
    if (length > file->nameCapacity) {
        const u64 capacity = std::bit_ceil(length + 1) - 1; // so that names that come and go soon fit
        char* room = StrNew("a file's name", capacity);
        if (room == nullptr) return false;
        StrDelete(file->name);
        file->name = room;
        file->nameCapacity = capacity;
    }
    std::memcpy(file->name, name, length + 1);
    return true;
}

bool memdata::resizeBuffer(fileIODescriptor* file, u64 size) {
    char* buffer = static_cast<char*>(getMemory("file buffer", size + kSPARE_BYTES));
    if (buffer == nullptr) return false;
    if (file->ownsBuffer != 0) {
        std::memcpy(buffer, file->buffer, std::min(size, file->bufferSize));
        releaseMemory(file->buffer);
    }
    file->buffer = buffer;
    file->bufferSize = size;
    file->ownsBuffer = 1;
    return true;
}

int Close_File(fileIODescriptor** file) {
    if (file == nullptr || *file == nullptr) return 0;
    fileIODescriptor* const open = *file;
    if (open == &StandardOut) {
        *file = nullptr;
        return Flush_File(open);
    }
    if (isOutput(open)) {
        if (int status = Flush_File(open); status != 0) return status;
        if (!commitOutputTarget(open)) return failOutput(open, causeText(errno));
    }
    memdata::abandonFile(file); // nothing is unfinished any more
    return 0;
}

void memdata::abandonFile(fileIODescriptor** file) {
    if (file == nullptr || *file == nullptr) return;
    fileIODescriptor* const open = *file;
    if (open != &StandardOut) {
        dropOutputTarget(open);
        deleteDescriptor(open); // while file, which may be StandardLog itself, still tells what it is
    }
    *file = nullptr;
}

bool memdata::isTerminal(const fileIODescriptor* file) {
    return file != nullptr && file->stream != nullptr && isatty(fileno(file->stream)) != 0;
}

bool FileIsOpen(const fileIODescriptor* file) {
    return file != nullptr && file->isOpen != 0;
}

int GetFileSizes(fileIODescriptor* file, u64* logicalSize, u64* physicalSize) {
    if (file == nullptr) return 3;
    const u64 logical = GetFileLogicalSize(file);
    if (logicalSize != nullptr) *logicalSize = logical;
    if (physicalSize != nullptr) {
        const bool inMemory = (file->attributes & kMEMORY_STORAGE) != 0;
        *physicalSize = inMemory ? file->bufferSize : std::max(file->physicalSize, logical);
    }
    return 0;
}

u64 GetFileLogicalSize(const fileIODescriptor* file) {
    if (file == nullptr) return 0;
    return growsByWriting(file) ? file->bufferBase + file->bufferPosition : file->logicalSize;
}

char* GetFileStorageBase(const fileIODescriptor* file) {
    if (!FileIsOpen(file)) return nullptr;
    return (file->attributes & (kMEMORY_STORAGE | kWHOLE_FILE_BUFFER)) != 0 ? file->buffer : nullptr;
}

const char* GetFileName(const fileIODescriptor* file) {
    return file == nullptr || file->name == nullptr ? "" : file->name;
}

char* GetIndexIOBuffer(fileIODescriptor* file, u64 offset) {
    if (!FileIsOpen(file) || file->buffer == nullptr || offset < file->bufferBase) return nullptr;
    const u64 held = growsByWriting(file) ? file->bufferPosition : file->bufferEnd;
    return offset - file->bufferBase <= held ? file->buffer + (offset - file->bufferBase) : nullptr;
}

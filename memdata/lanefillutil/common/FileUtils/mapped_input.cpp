// mapped_input.cpp - windows of large binary inputs, mapped over the file: no byte is copied, no memory taken.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/internal.h"
#include "SystemUtils/alerts.h"

#include <algorithm>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

using namespace memdata;

constexpr u64 kWINDOW_BYTES = u64{1} << 20;

// Maps what stands from position on: a window, or twice what was not read of a window that was too small. The size of
// the file is asked for again, since what lies behind its end can not be read. Status 0, kEND_OF_CONTENTS, or
// kREAD_FAILED (not reported).
int mapWindow(fileIODescriptor* file, u64 position) {
    const u64 unread = file->bufferEnd - file->bufferPosition;
    const u64 start = position - position % static_cast<u64>(sysconf(_SC_PAGESIZE));
    struct stat facts {};
    if (fstat(fileno(file->stream), &facts) != 0) return kREAD_FAILED;
    const u64 end = std::min(file->logicalSize, static_cast<u64>(facts.st_size));
    if (end <= position + unread) return kEND_OF_CONTENTS;
    const u64 bytes = std::min(std::max(kWINDOW_BYTES, 2 * (position - start + unread)), end - start);
    void* pages =
        mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fileno(file->stream), static_cast<off_t>(start));
    if (pages == MAP_FAILED) return kREAD_FAILED;

    unmapWindow(file);
    file->buffer = static_cast<char*>(pages);
    file->mappedBytes = file->bufferSize = file->bufferEnd = bytes;
    file->bufferBase = start;
    file->bufferPosition = position - start;
    file->filePosition = start + bytes;
    file->textLine = nullptr;
    markTextEnd(file, bytes);
    file->window.begin = file->buffer;
    file->window.byteCount = bytes;
    file->window.descriptor = fileno(file->stream);
    file->window.offset = start;
    startWatching(&file->window);
    return 0;
}

// The mover of mapped inputs. Bytes not yet read stay in the window.
int moveMappedInput(fileIODescriptor* file, int) {
    file->eofState = mapWindow(file, file->bufferBase + file->bufferPosition);
    if (file->eofState == kREAD_FAILED) PrintError(kERROR_OPENING_FILE, 1, file->name);
    return file->eofState;
}

} // namespace

bool memdata::primeMappedInput(fileIODescriptor* file, u64 size) {
    if (isText(file) || size <= kWINDOW_BYTES || !fileStateOf(fileno(file->stream), &file->window.state)) return false;
    file->logicalSize = size;
    if (mapWindow(file, 0) != 0) {
        file->window = {};
        return false;
    }
    file->mover = moveMappedInput;
    return true;
}

void memdata::unmapWindow(fileIODescriptor* file) {
    const u64 bytes = std::exchange(file->mappedBytes, 0);
    if (bytes == 0) return;
    stopWatching(&file->window);
    munmap(file->buffer, bytes);
}

void memdata::moveMappedInputTo(fileIODescriptor* file, u64 position) {
    if (position <= file->bufferBase + file->bufferEnd) {
        file->bufferPosition = position - file->bufferBase;
        return;
    }
    file->bufferBase = position; // the old window holds nothing of it, and goes with the next move
    file->bufferPosition = file->bufferEnd = file->textEnd = 0;
}

int memdata::checkInputUnchanged(fileIODescriptor* file) {
    if (file->mappedBytes == 0 || isUnchanged(file->window)) return 0;
    return PrintError(kERROR_MESSAGE_STRING, 1,
        formatted("File '%s' can not be read: it was changed or cut short while it was read.", file->name));
}

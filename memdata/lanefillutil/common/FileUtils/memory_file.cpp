// memory_file.cpp - files in memory: over a caller's bytes, or in a buffer that grows.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/internal.h"
#include "FileUtils/opening.h"
#include "SystemUtils/memory.h"

namespace {

using namespace memdata;

// Over a caller's bytes everything is there from the start: only positions move.
int moveInPlace(fileIODescriptor* file, int) {
    return isOutput(file) ? failOutput(file, "its buffer is full") : file->eofState;
}

int moveGrowing(fileIODescriptor* file, int) {
    if (!isOutput(file)) return file->eofState;
    if (resizeBuffer(file, 2 * file->bufferSize)) return 0;
    return file->status = file->writeStatus = 7; // the allocator has reported it
}

void placeOver(fileIODescriptor* file, char* data, u64 size) {
    file->buffer = data;
    file->bufferSize = file->bufferEnd = file->logicalSize = file->physicalSize = size;
    file->mover = moveInPlace;
}

} // namespace

int memdata::reopenMemoryFile(fileIODescriptor* file, const char* name, char* data, u64 size) {
    const bool inPlace = isInput(file) && (file->attributes & kMEMORY_STORAGE) != 0 && file->ownsBuffer == 0;
    if (!inPlace || data == nullptr || size == 0) return 3;
    if (!renameDescriptor(file, name)) return 7;
    fileIODescriptor fresh{};
    fresh.attributes = file->attributes;
    fresh.name = file->name;
    fresh.nameCapacity = file->nameCapacity;
    fresh.nextOpen = file->nextOpen;
    fresh.previousOpen = file->previousOpen;
    placeOver(&fresh, data, size);
    fresh.eofState = kEND_OF_CONTENTS;
    fresh.isOpen = 1;
    *file = fresh;
    markTextEnd(file, 0);
    return 0;
}

int OpenMemoryFile(const char* name, u32 attributes, char* data, u64 size, fileIODescriptor** file) {
    if (file == nullptr) return 3;
    *file = nullptr;
    const bool inPlace = data != nullptr && size > 0;
    attributes |= kMEMORY_STORAGE;
    if (inPlace) attributes |= kWHOLE_FILE_BUFFER;

    Tracked<fileIODescriptor, abandonFile> created(newDescriptor(name, attributes));
    if (created == nullptr) return 7;
    if (inPlace) {
        placeOver(created.get(), data, size);
    } else {
        if (!resizeBuffer(created.get(), kBUFFER_BYTES)) return 7;
        created->mover = moveGrowing;
    }
    created->eofState = kEND_OF_CONTENTS;
    created->isOpen = 1;
    if (isInput(created.get())) markTextEnd(created.get(), 0);
    *file = created.release();
    return 0;
}

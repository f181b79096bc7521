// bit_image.cpp - see bit_image.h.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_image.h"

#include "BitFileUtils/stream_walker.h"
#include "SystemUtils/memory.h"

#include <algorithm>

namespace {

using namespace memdata;

void releaseImage(u8* image) {
    releaseMemory(image);
}

using ImageOwner = Tracked<u8, releaseImage>;
using FileOwner = Tracked<fileIODescriptor, abandonFile>;

// Status of the walk; the image holds what it has written.
int copyStream(fileIODescriptor* source, u32 dumpFlags, u32 byteCount, TarselDeviceType* device, ImageOwner* image,
    FileOwner* target) {
    constexpr u32 kBINARY_WRITE = kWRITE_ACCESS | kBINARY_FILE;
    image->reset(static_cast<u8*>(getMemory("a configuration stream", std::max(byteCount, u32{1}))));
    if (*image == nullptr) return 7;
    if (int status = OpenMemoryFile(
            GetFileName(source), kBINARY_WRITE, reinterpret_cast<char*>(image->get()), byteCount, target->out());
        status != 0)
        return status;
    u32 remaining = byteCount;
    return OutputBITData(source, target->get(), nullptr, device, dumpFlags, &remaining, nullptr);
}

} // namespace

int OpenBITFileData(fileSpecType* fileSpec, u32 dumpFlags, u32* dataLength, TarselDeviceType** device,
    BitFileHeaderType* header, fileIODescriptor** memoryFile) {
    if (memoryFile == nullptr) return 3;
    *memoryFile = nullptr;
    FileOwner source;
    if (int status = OpenBITFile(fileSpec, 0, dataLength, device, header, source.out()); status != 0) return status;
    header->dataPointer = nullptr; // what it pointed to goes with the source

    ImageOwner image;
    FileOwner target;
    if (int status = copyStream(source.get(), dumpFlags, *dataLength, *device, &image, &target); status != 0) {
        *dataLength = 0;
        return status;
    }
    *dataLength = header->dataLength = static_cast<u32>(GetFilePosition(target.get()));
    header->dataPointer = image.release();
    *memoryFile = target.release();
    return 0;
}

// column_walk.cpp - all memories of one configuration column: dumped as text, or replaced by what bit lanes hold.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/column_walk.h"

#include "BRAMDecodeUtils/bit_access.h"
#include "BRAMDecodeUtils/frame_codec.h"
#include "BRAMDecodeUtils/memory_check.h"
#include "BmmUtils/model/transform_buffers.h"
#include "DeviceTableUtils/cross_coordinates.h"
#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "ListingUtils/ListingUtils.h"
#include "SystemUtils/memory.h"
#include "lanefillCore/lanes/lane_positions.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr int kNO_MEMORY_STATUS = 7;
constexpr u32 kDUMP_USED_ONLY = 0x10; // memories of the design alone, hex without addresses
constexpr u32 kDUMP_PARITY = 0x40;
constexpr u32 kDUMP_BYTES_PER_LINE = 32;
constexpr u32 kHEAD_SHIFT = 2; // bits by which a first-generation column is off the byte grid

bool isFirstGeneration(const TarselDeviceType* device) {
    return (device->family->familyMask & kFIRST_GENERATION_MASK) != 0;
}

// A memory on the way through a column.
struct Site {
    i32 row = 0; // of the location
    i32 column = 0;
    const TranslationTableType* table = nullptr;
    const BRAMPhysLocDataType* physLoc = nullptr;
    BitLaneType* bitLane = nullptr;
    bool exists = false;
    const MEMORYType* type = nullptr; // the bit lane's, else the device's first one
};

Site siteAt(const TarselDeviceType* device, const AddressMappingType* addressMapping, i32 rowIndex, i32 column) {
    Site site;
    site.exists = lookup_BRAM_existence(addressMapping, rowIndex, column, &site.row, &site.column, &site.table,
                      &site.physLoc, &site.bitLane) == kT;
    if (device->family == &kDunmare6FamilyTable && site.physLoc != nullptr && site.physLoc->logicalRow < 0)
        site.exists = false;
    site.type = site.bitLane != nullptr ? site.bitLane->memory->type : device->memoryLocs[0].type;
    return site;
}

// Visits the memories of a column with visit(site, frames); gives the start of the next column.
u8* walkColumn(const TarselDeviceType* device, u8* data, u64 byteCount, i32 physicalColumn,
    const AddressMappingType* addressMapping, auto&& visit) {
    const u32 scale = device->family->bramsPerLookupRow;
    const u32 rowLimit = scale * device->physicalRows;
    u8* pointer = data;
    bool shifted = false;
    u64 wholeBytes = byteCount; // of those from data on
    Site site;
    site.type = device->memoryLocs[0].type;
    for (u32 row = 0; row < rowLimit; row += std::max(scale / std::max(site.type->subRowFactor, 1U), 1U)) {
        site = siteAt(device, addressMapping, static_cast<i32>(row), physicalColumn);
        if (site.table == nullptr) continue;
        if (row == 0) {
            pointer = SkipAnyFramePadBits(device, site.physLoc, data, byteCount);
            shifted = isFirstGeneration(device);
            if (shifted && byteCount != 0) --wholeBytes; // the last one has lost its low bits to the shift
        }
        const u64 offset = static_cast<u64>(pointer - data);
        const bool fits = offset <= wholeBytes && memdata::codecFrameBytes(device, site.type) <= wholeBytes - offset;
        if (site.exists && fits) visit(site, pointer);
        pointer = SkipToNextEncodedBRAM(site.type, site.physLoc, pointer);
    }
    if (shifted) ShiftDataRight(data, byteCount, kHEAD_SHIFT);
    return SkipToNextEncodedFrame(device, site.type, site.physLoc, data, pointer);
}

// Images from the order of lanes to that of frames, or back.
void turnImages(const TarselDeviceType* device, const Site& site, u8* data, u8* parity) {
    if (device->family == &kDunmare6FamilyTable)
        DecodeBitlaneWidths(data, site.bitLane->laneWidth - site.bitLane->parityWidth, site.type->dataBits / 8);
    DecodeBitlaneWidths(parity, 1, site.type->parityBits / 8);
}

// The lane's own images stay: what is turned is a copy.
void replaceMemory(const TarselDeviceType* device, const Site& site, u8* frames, u8* data, u8* parity) {
    BitLaneType* lane = site.bitLane;
    const bool turnsData = device->family == &kDunmare6FamilyTable;
    if (turnsData) std::memcpy(data, lane->dataSliver, site.type->dataBits / 8);
    if (site.type->parityBits != 0) std::memcpy(parity, lane->paritySliver, site.type->parityBits / 8);
    turnImages(device, site, data, parity);
    EncodeBRAM(device, site.type, site.table, lane->laneWidth, frames, turnsData ? data : lane->dataSliver, parity);
    lane->isReplaced = true;
}

// Images of a memory's frames, in the order of its lane.
struct LaneImages {
    std::vector<u8> data, parity;

    LaneImages(const TarselDeviceType* device, const Site& site, const u8* frames)
        : data(site.type->dataBits / 8), parity(site.type->parityBits / 8) {
        DecodeBRAM(device, site.type, site.table, site.bitLane->laneWidth, frames, data.data(), parity.data());
        turnImages(device, site, data.data(), parity.data());
    }
};

// The first word of wordBits bits in which two images differ; false when they are equal.
bool findDifference(
    std::vector<u8>& expected, std::vector<u8>& found, u64 wordBits, memdata::LaneDifference* difference) {
    const auto [at, other] = std::ranges::mismatch(expected, found);
    if (at == expected.end() || wordBits == 0) return false;
    const auto firstBit = static_cast<u64>(at - expected.begin()) * 8 +
                          static_cast<u64>(std::countr_zero(static_cast<u32>(*at ^ *other)));
    difference->word = firstBit / wordBits;
    const auto wordOf = [&](std::vector<u8>& image) {
        auto bits = static_cast<unsigned>(wordBits);
        return BufferChunkAccess::OverWholeBuffer(
            image.data(), image.size() * 8, kBIT_LANE_ORDER, difference->word, bits)
            .GetNextTransformChunk(&bits);
    };
    difference->expected = wordOf(expected);
    difference->found = wordOf(found);
    return true;
}

// Compares frames, so that image bits that no frame holds make no difference.
void compareMemory(const TarselDeviceType* device, const Site& site, const u8* frames, u8* data, u8* parity,
    memdata::MemoryCheck* check) {
    std::vector<u8> expected(frames, frames + memdata::codecFrameBytes(device, site.type));
    replaceMemory(device, site, expected.data(), data, parity);
    ++check->comparedLanes;
    if (std::equal(expected.begin(), expected.end(), frames)) return;
    LaneImages wanted(device, site, expected.data());
    LaneImages found(device, site, frames);
    const BitLaneType* lane = site.bitLane;
    memdata::LaneDifference difference{lane, 0, false, 0, 0};
    if (!findDifference(wanted.data, found.data,
            memdata::laneSlotBits(static_cast<unsigned>(lane->laneWidth - lane->parityWidth)), &difference))
        difference.inParity = findDifference(wanted.parity, found.parity, std::max(lane->parityWidth, 1U), &difference);
    check->differences.push_back(difference);
}

bool holdsData(const BitLaneType* lane) {
    return lane != nullptr && lane->laneState != 0 && lane->dataSliver != nullptr;
}

void releaseImages(u8* images) {
    releaseMemory(images);
}

struct Images {
    u8* parity = nullptr; // ahead of data, whose initialiser sets it
    memdata::Tracked<u8, releaseImages> data;
    explicit Images(const TarselDeviceType* device) : data(get_BRAM_largest_from_device(device, &parity)) {}

    // Both parts at the sizes of a type, zero; the parity part stands behind the largest data part.
    void clear(const MEMORYType* type) {
        std::memset(data.get(), 0, type->dataBits / 8);
        std::memset(parity, 0, type->parityBits / 8);
    }
};

} // namespace

u8* SkipToNextEncodedBRAM(const MEMORYType* type, const BRAMPhysLocDataType* physLoc, u8* pointer) {
    if (physLoc != nullptr && physLoc->padBits < 0) return pointer; // the next memory shares the slice
    const u64 padBits = physLoc == nullptr ? 0 : static_cast<u64>(physLoc->padBits);
    return pointer + padBits / 8 + type->frameSliceBits / 8;
}

u8* SkipToNextEncodedFrame(const TarselDeviceType* device, const MEMORYType* type, const BRAMPhysLocDataType* physLoc,
    u8* start, const u8* current) {
    const u64 columnBytes = device->bramFrameBits / 8 * type->frameCount;
    if (physLoc == nullptr) return start + columnBytes;
    if (physLoc->padBits < 0) return start;
    return (current > start ? start + columnBytes : start) + physLoc->padBits / 8;
}

u8* SkipAnyFramePadBits(const TarselDeviceType* device, const BRAMPhysLocDataType* physLoc, u8* data, u64 byteCount) {
    if (isFirstGeneration(device)) {
        ShiftDataLeft(data, byteCount, kHEAD_SHIFT);
        return data + (device->framePadBits - kHEAD_SHIFT) / 8;
    }
    return physLoc != nullptr && physLoc->padBits < 0 ? data : data + device->framePadBits / 8;
}

u8* ReplaceBRAMColumn(const TarselDeviceType* device, u8* data, u64 byteCount, i32 physicalColumn,
    const AddressMappingType* addressMapping) {
    Images images(device);
    if (images.data == nullptr) return nullptr;
    return walkColumn(device, data, byteCount, physicalColumn, addressMapping, [&](const Site& site, u8* frames) {
        if (holdsData(site.bitLane)) replaceMemory(device, site, frames, images.data.get(), images.parity);
    });
}

u8* memdata::compareBRAMColumn(const TarselDeviceType* device, u8* data, u64 byteCount, i32 physicalColumn,
    const AddressMappingType* addressMapping, MemoryCheck* check) {
    Images images(device);
    if (images.data == nullptr) return nullptr;
    const u8 head = byteCount != 0 ? data[0] : u8{0};
    u8* next =
        walkColumn(device, data, byteCount, physicalColumn, addressMapping, [&](const Site& site, const u8* frames) {
            if (holdsData(site.bitLane)) compareMemory(device, site, frames, images.data.get(), images.parity, check);
        });
    if (byteCount != 0) data[0] = head; // a shifted column comes back without two pad bits
    return next;
}

u8* DumpBRAMColumn(const TarselDeviceType* device, fileIODescriptor* dump, u8* data, u64 byteCount, i32 physicalColumn,
    u32 flags, const AddressMappingType* addressMapping, int* status) {
    Images images(device);
    if (images.data == nullptr) {
        if (device->memoryLocs[0].type != nullptr) *status = kNO_MEMORY_STATUS;
        return data;
    }
    return walkColumn(device, data, byteCount, physicalColumn, addressMapping, [&](const Site& site, const u8* frames) {
        if (site.bitLane == nullptr && (flags & kDUMP_USED_ONLY) != 0) return;
        if (*status == 0)
            *status = site.bitLane != nullptr
                          ? PutNextLine(dump, "BRAM data, Column %02d, Row %02d. Design instance \"%s\".\n\n",
                                site.column, site.row, site.bitLane->name)
                          : PutNextLine(dump, "BRAM data, Column %02d, Row %02d. Not used in this design.\n\n",
                                site.column, site.row);
        if (*status != 0) return;
        images.clear(site.type);
        *status = DumpBRAM(
            device, dump, site.bitLane, site.type, site.table, frames, images.data.get(), images.parity, flags);
    });
}

int DumpBRAM(const TarselDeviceType* device, fileIODescriptor* dump, const BitLaneType* bitLane, const MEMORYType* type,
    const TranslationTableType* table, const u8* frames, u8* data, u8* parity, u32 flags) {
    const u64 dataBytes = type->dataBits / 8;
    const u64 parityBytes = type->parityBits / 8;
    DecodeBRAM(device, type, table, bitLane != nullptr ? bitLane->laneWidth : 1, frames, data, parity);
    if (bitLane != nullptr) {
        if (!allocate_addressSpace_transform_buffers(bitLane->addressSpace)) return kNO_MEMORY_STATUS;
        // On purpose only here and not in a replacement, where Dunmare6 is the one family whose bits are reordered.
        if (device->family != &kDunmare6FamilyTable) {
            DecodeBitlaneWidths(data, bitLane->laneWidth - bitLane->parityWidth, dataBytes);
            if (parityBytes != 0) DecodeBitlaneWidths(parity, 1, parityBytes);
        }
    }
    const int mode = static_cast<int>(flags);
    int status = DumpHex(dump, mode, 0, data, static_cast<unsigned>(dataBytes), kDUMP_BYTES_PER_LINE);
    const bool hasParity = bitLane != nullptr ? type->hasParityWidths : parityBytes != 0;
    if (status == 0 && ((flags & kDUMP_PARITY) != 0 || hasParity)) {
        status = PutNextLine(dump, "\nBRAM parity.\n\n");
        if (status == 0)
            status = DumpHex(dump, mode, 0, parity, static_cast<unsigned>(parityBytes), kDUMP_BYTES_PER_LINE);
    }
    return status != 0 ? status : PutNextLine(dump, "\n\n");
}

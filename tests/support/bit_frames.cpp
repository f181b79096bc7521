// bit_frames.cpp - see bit_frames.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/bit_frames.h"

#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/frame_sizes.h"
#include "DeviceTableUtils/locations.h"

#include <algorithm>
#include <stdexcept>

namespace memdata::testing {

namespace {

constexpr u64 kDUNMARE_6 = 0x8000;
constexpr i32 kLEAST_PARITY = -9999;

bool bitOf(const Bytes& bytes, u64 bit) {
    return (bytes.at(bit / 8) >> (7 - bit % 8) & 1) != 0;
}

void setBit(Bytes& bytes, u64 bit, bool value) {
    u8& byte = bytes.at(bit / 8);
    const u8 mask = static_cast<u8>(1 << (7 - bit % 8));
    byte = static_cast<u8>(value ? byte | mask : byte & ~mask);
}

// Where bit k of a lane's data lands in the order of the decode tables.
u64 tableBit(u64 k, u64 laneWidth, u32 parityWidth, u64 memoryBits) {
    switch (laneWidth - parityWidth) { // inside the units of the lane
    case 1:
        k = k / 8 * 8 + (7 - k % 8);
        break;
    case 2:
        k = k / 8 * 8 + (3 - k % 8 / 2) * 2 + k % 2;
        break;
    case 4:
        k = k / 8 * 8 + (k % 8 + 4) % 8;
        break;
    case 16:
        k = k / 16 * 16 + (1 - k % 16 / 8) * 8 + k % 8;
        break;
    case 32:
        k = k / 32 * 32 + (3 - k % 32 / 8) * 8 + k % 8;
        break;
    default:
        break;
    }
    if (laneWidth == 32) { // units of 16 from both halves by turns, the odd ones from the lower
        const u64 unit = k / 16;
        const u64 half = unit % 2 == 1 ? 0 : memoryBits / 2;
        return half + unit / 2 * 16 + (15 - k % 16);
    }
    if (laneWidth == 2 || laneWidth == 4 || laneWidth == 8 || laneWidth == 16)
        return k / laneWidth * laneWidth + (laneWidth - 1 - k % laneWidth);
    return k;
}

} // namespace

std::vector<MemorySite> sitesOf(const TarselDeviceType* device, u32 typeIndex) {
    std::vector<MemorySite> sites;
    const MEMORYLocType* memory = &device->memoryLocs[typeIndex];
    for (u32 column = 0; column < device->physicalColumns; ++column)
        for (u32 row = 0; row < device->physicalRows * memory->type->subRowFactor; ++row) {
            i32 y = 0;
            i32 x = 0;
            if (lookup_BRAM_phys_existence(device, memory, row, column, &y, &x) == kT)
                sites.push_back({memory, static_cast<u32>(x), static_cast<u32>(y)});
        }
    return sites;
}

u32 columnsPerDie(const TarselDeviceType* device) {
    return device->physicalColumns / std::max(device->dieCount, 1U);
}

size_t columnStart(const TarselDeviceType* device, u32 column) {
    size_t bytes = 0;
    for (u32 c = column / columnsPerDie(device) * columnsPerDie(device); c < column; ++c)
        bytes += blockRamColumnBytes(device, c);
    return bytes;
}

MemoryFrames::MemoryFrames(const TarselDeviceType* device, const MemorySite& site)
    : device_(device), type_(site.memory->type) {
    i32 row = 0;
    i32 column = 0;
    if (lookup_BRAM_log_existence(device, type_, site.memory->logicalLocs, site.y, site.x, &row, &column) != kT)
        throw std::invalid_argument("no memory at X" + std::to_string(site.x) + "Y" + std::to_string(site.y));
    column_ = static_cast<u32>(column);
    table_ = device->family->decodeTable;
    sliceStart_ = device->framePadBits + static_cast<u32>(row) * u64{type_->frameSliceBits};
    const BRAMPhysLocDataType* locations = site.memory->physicalLocs;
    if (locations == nullptr) return;
    for (i32 r = 0; r <= row; ++r) {
        const BRAMPhysLocDataType& element =
            index_BRAM_phys_loc_array(device, type_, locations, static_cast<u32>(r), column_);
        table_ = element.decodeTable;
        if (r < row) sliceStart_ += static_cast<u64>(std::max(element.padBits, 0));
    }
}

size_t MemoryFrames::reach() const {
    const u64 lastFrame = u64{type_->frameCount - 1U} * device_->bramFrameBits;
    return (lastFrame + sliceStart_ + type_->frameSliceBits + 7) / 8;
}

// visit(image is parity, bit of the image, bit of the column)
template<class Visit>
void MemoryFrames::forEachBit_(Visit&& visit) const {
    const bool countsRows = (device_->family->familyMask & kFIRST_GENERATION_MASK) != 0;
    for (u32 r = 0; r < type_->frameCount; ++r) {
        const TranslationTableType& row = table_[r];
        const u64 frame = u64{row.frame} * device_->bramFrameBits + sliceStart_;
        for (u32 b = 0; b < type_->frameSliceBits; ++b) {
            const i32 entry = row.bits[b];
            if (entry >= 0) {
                const u64 bit = static_cast<u64>(entry) + (countsRows ? u64{r} * type_->dataRowBits : row.dataBase);
                if (bit < type_->dataBits) visit(false, bit, frame + b);
            } else if (entry >= kLEAST_PARITY) {
                const u64 bit = static_cast<u64>(-(entry + 1)) + row.parityBase;
                if (bit < type_->parityBits) visit(true, bit, frame + b);
            }
        }
    }
}

MemoryImages MemoryFrames::read(const Bytes& burst, size_t columnStart) const {
    MemoryImages images{Bytes(type_->dataBits / 8), Bytes(type_->parityBits / 8)};
    forEachBit_([&](bool isParity, u64 bit, u64 at) {
        setBit(isParity ? images.parity : images.data, bit, bitOf(burst, columnStart * 8 + at));
    });
    return images;
}

void MemoryFrames::write(Bytes& burst, size_t columnStart, const MemoryImages& images) const {
    forEachBit_([&](bool isParity, u64 bit, u64 at) {
        setBit(burst, columnStart * 8 + at, bitOf(isParity ? images.parity : images.data, bit));
    });
}

MemoryImages imagesOfLane(
    const TarselDeviceType* device, const MEMORYType* type, u64 laneWidth, u32 parityWidth, const MemoryImages& lane) {
    MemoryImages images = lane;
    if ((device->family->familyMask & kDUNMARE_6) != 0)
        for (u64 k = 0; k < type->dataBits; ++k)
            setBit(images.data, tableBit(k, laneWidth, parityWidth, type->dataBits), bitOf(lane.data, k));
    for (u64 k = 0; k < type->parityBits; ++k) setBit(images.parity, k / 8 * 8 + (7 - k % 8), bitOf(lane.parity, k));
    return images;
}

void clearLostBits(const TarselDeviceType* device, const MemorySite& site, MemoryImages& images) {
    const MemoryFrames frames(device, site);
    Bytes column((site.memory->type->frameCount + 2) * (device->bramFrameBits + device->framePadBits) / 8);
    frames.write(column, 0, images);
    images = frames.read(column, 0);
}

} // namespace memdata::testing

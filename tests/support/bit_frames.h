// bit_frames.h - where the bits of a memory lie in the frames of a device, worked out from the device's own figures.
//
// Made to check the engine: it reads the device rows and decode tables, and nothing of the engine that moves bits or
// walks columns. Positions are absolute sums (column, frame, slice), not the outcome of a walk.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_BIT_FRAMES_H
#define MEMDATA_TESTS_SUPPORT_BIT_FRAMES_H

#include "DeviceTableUtils/records.h"
#include "support/damage.h"

#include <string>
#include <vector>

namespace memdata::testing {

// The bits of a memory in the order of the decode tables: bit k under mask 0x80 >> (k mod 8) of byte k / 8.
struct MemoryImages {
    Bytes data, parity;
    bool operator==(const MemoryImages&) const = default;
};

// A memory of a device by its location, X column and Y row.
struct MemorySite {
    const MEMORYLocType* memory;
    u32 x, y;
    bool operator==(const MemorySite&) const = default;
};

// All that exist of a type, by configuration column; typeIndex counts from the smallest.
std::vector<MemorySite> sitesOf(const TarselDeviceType* device, u32 typeIndex = 0);

// One memory in the frames of its configuration column.
class MemoryFrames {
public:
    // Throws std::invalid_argument for a place without memory.
    MemoryFrames(const TarselDeviceType* device, const MemorySite& site);

    u32 column() const { return column_; } // configuration column
    // Bytes from the start of the column to behind the memory's part of its last frame.
    size_t reach() const;
    // column begins at bit 0: of the column's bytes in a burst.
    MemoryImages read(const Bytes& burst, size_t columnStart) const;
    void write(Bytes& burst, size_t columnStart, const MemoryImages& images) const;

private:
    template<class Visit>
    void forEachBit_(Visit&& visit) const;

    const TarselDeviceType* device_;
    const MEMORYType* type_;
    const TranslationTableType* table_ = nullptr;
    u32 column_ = 0;
    u64 sliceStart_ = 0; // bit of a frame
};

// Bytes ahead of a configuration column in the columns of its die.
size_t columnStart(const TarselDeviceType* device, u32 column);
u32 columnsPerDie(const TarselDeviceType* device);

// What a bit lane of this width holds, in the order of its buffers, when a memory's frames hold images, and back.
// A replacement writes the first as the second.
MemoryImages imagesOfLane(
    const TarselDeviceType* device, const MEMORYType* type, u64 laneWidth, u32 parityWidth, const MemoryImages& lane);

// Bits that no row of the type's table names; a replacement does not carry them.
void clearLostBits(const TarselDeviceType* device, const MemorySite& site, MemoryImages& images);

} // namespace memdata::testing

#endif

// column_walk_test.cpp - the memories of a column: replaced by what lanes hold, and dumped.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/column_walk.h"

#include "BRAMDecodeUtils/bit_access.h"
#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/locations.h"
#include "DeviceTableUtils/memory_types.h"
#include "FileUtils/FileUtils.h"
#include "SystemUtils/memory.h"
#include "support/alerts.h"
#include "support/placed_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace memdata;
using namespace memdata::testing;

namespace {

Bytes randomBytes(std::mt19937& random, size_t count) {
    Bytes bytes(count);
    for (u8& byte : bytes) byte = static_cast<u8>(random());
    return bytes;
}

bool isFirstGeneration(const TarselDeviceType* device) {
    return (device->family->familyMask & kFIRST_GENERATION_MASK) != 0;
}

// Bytes of the burst from a column on: the first generation has a burst for each column.
u64 bytesFrom(const TarselDeviceType* device, const Bytes& frames, const u8* at) {
    if (isFirstGeneration(device)) return columnStart(device, 1);
    return static_cast<u64>(frames.data() + frames.size() - at);
}

// Frames of all columns of a device, one behind the other, with room for what reaches beyond the last.
Bytes framesOf(const TarselDeviceType* device, u32 seed) {
    std::mt19937 random(seed);
    Bytes frames = randomBytes(random, columnStart(device, device->physicalColumns - 1) +
                                           (device->memoryLocs[0].type->frameCount + 3) * device->bramFrameBits / 8);
    if (isFirstGeneration(device))
        for (u32 column = 0; column < device->physicalColumns; ++column) frames[columnStart(device, column)] &= 0x3F;
    return frames;
}

// All columns as a burst has them.
void replaceAll(const TarselDeviceType* device, Bytes& frames, AddressMappingType* map) {
    ASSERT_EQ(initialize_cross_coordinate_lookup_table(map), 0);
    u8* at = frames.data();
    for (u32 column = 0; column < device->physicalColumns; ++column) {
        // The first site of a pair takes the frames of both when a large memory is on it.
        const bool isSecondOfPair = device->physicalRows == 1 && column % 2 == 1;
        if (!isSecondOfPair) {
            EXPECT_EQ(static_cast<size_t>(at - frames.data()), columnStart(device, column)) << column;
        }
        at = ReplaceBRAMColumn(device, at, bytesFrom(device, frames, at), static_cast<i32>(column), map);
        ASSERT_NE(at, nullptr);
    }
}

// The frames with the contents of all lanes, bit by bit.
Bytes withContents(const TarselDeviceType* device, Bytes frames, const PlacedMap& map) {
    for (const auto& [site, images] : map.contents()) {
        const MemoryFrames memory(device, site);
        memory.write(frames, columnStart(device, memory.column()), images);
    }
    return frames;
}

std::string dumpAll(const TarselDeviceType* device, Bytes frames, u32 flags, AddressMappingType* map) {
    EXPECT_EQ(initialize_cross_coordinate_lookup_table(map), 0);
    fileIODescriptor* output = nullptr;
    EXPECT_EQ(OpenMemoryFile("dump", kTEXT_WRITE, nullptr, 0, &output), 0);
    u8* at = frames.data();
    int status = 0;
    for (u32 column = 0; column < device->physicalColumns; ++column)
        at = DumpBRAMColumn(
            device, output, at, bytesFrom(device, frames, at), static_cast<i32>(column), flags, map, &status);
    EXPECT_EQ(status, 0);
    std::string text(GetFileStorageBase(output), GetFileLogicalSize(output));
    Close_File(&output);
    return text;
}

std::string hexLines(const Bytes& bytes) {
    std::string text;
    for (size_t i = 0; i < bytes.size(); ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", bytes[i]);
        text += digits;
        if (i % 32 == 31 || i + 1 == bytes.size()) text += "\n";
    }
    return text;
}

bool bitOf(const Bytes& bytes, u64 bit) {
    return (bytes[bit / 8] >> (7 - bit % 8) & 1) != 0;
}

// What a dump makes of the images of a memory that a lane of this width uses.
MemoryImages dumpedImages(
    const TarselDeviceType* device, const MEMORYType* type, u64 width, u32 parityWidth, const MemoryImages& images) {
    MemoryImages shown{Bytes(images.data.size()), Bytes(images.parity.size())};
    const auto take = [](Bytes& to, u64 bit, bool value) { to[bit / 8] |= static_cast<u8>(value << (7 - bit % 8)); };
    const bool short6 = device->family == &kDunmare6FamilyTable;
    for (u64 i = 0; i < type->dataBits; ++i) {
        u64 k = i;
        const u64 unit = width - parityWidth;
        if (short6 && width == 32) {
            const u64 half = type->dataBits / 2;
            k = (i % half / 16 * 32 + i % 16 + (i < half ? 16 : 0)) ^ 15;
        } else if (short6) {
            if (width == 2 || width == 4 || width == 8 || width == 16) k = i ^ (width - 1);
        } else if (unit == 1 || unit == 2 || unit == 4) {
            k = i / 8 * 8 + (8 / unit - 1 - i % 8 / unit) * unit + i % unit; // groups of a byte
        } else if (unit == 16 || unit == 32) {
            k = i / unit * unit + (unit / 8 - 1 - i % unit / 8) * 8 + i % 8; // bytes of a unit
        }
        take(shown.data, k, bitOf(images.data, i));
    }
    for (u64 i = 0; i < type->parityBits; ++i) take(shown.parity, short6 ? i : i ^ 7, bitOf(images.parity, i));
    return shown;
}

class ColumnWalk : public ::testing::Test {
protected:
    SystemResources system;
};

constexpr const char* kDEVICES[] = {
    "tq1a8", "td2e36", "tq2a4", "tq4a32", "tq5a4", "tq7a7", "td3c4", "td3a16", "td6a24"};

} // namespace

TEST_F(ColumnWalk, ReplacesLanesOfAllWidthsOfAllTypes) {
    for (const char* name : kDEVICES) {
        const TarselDeviceType* device = get_device_record_by_name(name);
        const Bytes before = framesOf(device, 1);
        for (u32 type = 0; device->memoryLocs[type].type != nullptr; ++type) {
            const MEMORYLocType& memory = device->memoryLocs[type];
            const std::vector<MemorySite> sites = sitesOf(device, type);
            for (size_t i = 0; i < kMAX_LANE_WIDTHS && memory.type->widths[i] != 0; ++i) {
                PlacedMap map(name);
                map.add(sites[i % sites.size()], memory.type->widths[i]);
                map.add(sites[(i + 1) % sites.size()], memory.type->widths[i]);
                map.fill(type);
                Bytes frames = before;
                replaceAll(device, frames, map.get());
                EXPECT_TRUE(frames == withContents(device, before, map))
                    << name << " " << memory.type->name << " by " << memory.type->widths[i];
            }
        }
    }
}

TEST_F(ColumnWalk, LeavesColumnsOfWhichNothingIsUsed) {
    for (const char* name : kDEVICES) {
        const TarselDeviceType* device = get_device_record_by_name(name);
        PlacedMap map(name);
        map.addOfEveryKind(4); // without data
        const Bytes before = framesOf(device, 2);
        Bytes frames = before;
        replaceAll(device, frames, map.get());
        EXPECT_TRUE(frames == before) << name;
    }
}

TEST_F(ColumnWalk, TheTwoTopBitsOfAFirstGenerationColumnBecomeZeros) {
    const TarselDeviceType* device = get_device_record_by_name("tq1a8");
    PlacedMap map("tq1a8");
    Bytes before = framesOf(device, 3);
    before[0] |= 0xC0;
    Bytes frames = before;
    ASSERT_EQ(initialize_cross_coordinate_lookup_table(map.get()), 0);
    ReplaceBRAMColumn(device, frames.data(), columnStart(device, 1), 0, map.get());
    before[0] &= 0x3F;
    EXPECT_TRUE(frames == before);
}

TEST_F(ColumnWalk, ALaneIsReplacedAsAWholeWithZerosWhereNoDataReachedIt) {
    const TarselDeviceType* device = get_device_record_by_name("tq2a4");
    PlacedMap map("tq2a4");
    BitLaneType* lane = map.add(sitesOf(device)[1], 8);
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(lane->addressSpace));
    lane->dataSliver[5] = 0xA5;
    lane->laneState = 1;
    const Bytes before = framesOf(device, 4);
    Bytes frames = before;
    replaceAll(device, frames, map.get());
    EXPECT_TRUE(frames == withContents(device, before, map));
    EXPECT_TRUE(lane->isReplaced);
    const MemoryFrames memory(device, map.lanes()[0].site);
    const MemoryImages images = memory.read(frames, columnStart(device, memory.column()));
    EXPECT_EQ(images.data[5], 0xA5);
    EXPECT_EQ(std::ranges::count(images.data, 0), 2047);
    EXPECT_EQ(std::ranges::count(images.parity, 0), 256);
}

TEST_F(ColumnWalk, TheBuffersOfALaneAreOnlyRead) {
    for (const char* name : {"tq2a4", "td6a24"}) {
        const TarselDeviceType* device = get_device_record_by_name(name);
        PlacedMap map(name);
        map.addOfEveryKind(4);
        map.fill(5);
        const auto contents = map.contents();
        Bytes once = framesOf(device, 5);
        replaceAll(device, once, map.get());
        EXPECT_TRUE(map.contents() == contents);
        Bytes twice = once;
        replaceAll(device, twice, map.get());
        EXPECT_TRUE(twice == once) << name;
    }
}

TEST_F(ColumnWalk, MemoriesBehindTheEndOfABurstAreLeftAlone) {
    const TarselDeviceType* device = get_device_record_by_name("td3c4");
    PlacedMap map("td3c4");
    for (const MemorySite& site : sitesOf(device)) map.add(site, 8);
    map.fill(6);
    ASSERT_EQ(initialize_cross_coordinate_lookup_table(map.get()), 0);
    const Bytes all = framesOf(device, 6);
    for (size_t size : {size_t{0}, size_t{1}, size_t{100}, size_t{75 * 148}, size_t{75 * 148 + 100}}) {
        Bytes frames(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(size));
        const Bytes before = frames;
        for (const PlacedLane& placed : map.lanes()) placed.lane->isReplaced = false;
        ReplaceBRAMColumn(device, frames.data(), frames.size(), 0, map.get());
        size_t replaced = 0;
        for (const PlacedLane& placed : map.lanes()) replaced += placed.lane->isReplaced;
        EXPECT_EQ(frames == before, replaced == 0) << size;
        EXPECT_EQ(replaced, size == 75 * 148 + 100 ? 2U : 0U) << size;
    }
}

TEST_F(ColumnWalk, AMemoryWhoseLastBitsLieBehindTheEndOfABurstIsLeftAlone) {
    const TarselDeviceType* device = get_device_record_by_name("tq1a8");
    PlacedMap map("tq1a8");
    for (const MemorySite& site : sitesOf(device)) map.add(site, 8);
    map.fill(7);
    ASSERT_EQ(initialize_cross_coordinate_lookup_table(map.get()), 0);
    const Bytes all = framesOf(device, 7);
    for (const PlacedLane& placed : map.lanes()) {
        const MemoryFrames memory(device, placed.site);
        if (memory.column() != 0) continue;
        for (const size_t size : {memory.reach() - 1, memory.reach()}) {
            Bytes frames(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(size));
            placed.lane->isReplaced = false;
            ReplaceBRAMColumn(device, frames.data(), frames.size(), 0, map.get());
            EXPECT_EQ(placed.lane->isReplaced, size == memory.reach()) << memory.reach();
        }
    }
}

TEST_F(ColumnWalk, APairsSecondSiteSharesTheFramesOfTheFirst) {
    const TarselDeviceType* device = get_device_record_by_name("td6a24");
    for (u32 y = 0; y < 12; y += 2) {
        PlacedMap map("td6a24");
        map.add({&device->memoryLocs[3], 0, y}, 36, "large");
        map.add({&device->memoryLocs[0], 1, y}, 8, "low");
        map.add({&device->memoryLocs[1], 1, y + 1}, 16, "high");
        map.fill(y);
        const Bytes before = framesOf(device, 7);
        Bytes frames = before;
        replaceAll(device, frames, map.get());
        EXPECT_TRUE(frames == withContents(device, before, map)) << y;
    }
    const BRAMPhysLocDataType shared{0, 0, nullptr, -1};
    u8 bytes[4] = {};
    EXPECT_EQ(SkipToNextEncodedBRAM(&D6RAMB16_BRAM, &shared, bytes + 1), bytes + 1);
    EXPECT_EQ(SkipToNextEncodedFrame(device, &D6RAMB16_BRAM, &shared, bytes, bytes + 1), bytes);
    EXPECT_EQ(SkipAnyFramePadBits(device, &shared, bytes, 4), bytes);
    EXPECT_EQ(D6RAMB16_BRAM.frameSliceBits, device->bramFrameBits);
}

TEST_F(ColumnWalk, LanesOfOneSpaceAndItsCheckLanesGoToTheirOwnMemories) {
    for (const char* name : {"tq7a7", "td6a24"}) {
        TarselDeviceType* device = get_device_record_by_name(name);
        const bool pairs = device->physicalRows == 1;
        PlacedMap map(name);
        // A combined space: two small memories with a check lane, then a large one.
        AddressSpaceDefType* space = map.map().space(
            "mix", 0, {{"RAMB16", {"hi[15:8] lo[7:0] check[22:16] ECCH32-7"}}, {"RAMB16", {"wide[31:0]"}}}, {});
        const BusBlockType* block = space->ranges->busBlocks[0];
        const auto small = [&](u32 x, u32 y) { return MemorySite{&device->memoryLocs[0], x, y}; };
        map.place(space->ranges, block->lanes[0], small(0, 0));
        map.place(space->ranges, block->lanes[1], small(0, 1));
        map.place(space->ranges, block->eccLanes[0], small(1, 3));
        const MemorySite large{&device->memoryLocs[2], 0, pairs ? 4U : 3U};
        map.place(space->ranges->next, space->ranges->next->busBlocks[0]->lanes[0], large);
        map.fill(8);
        const Bytes before = framesOf(device, 8);
        Bytes frames = before;
        replaceAll(device, frames, map.get());
        EXPECT_EQ(map.contents().size(), 4U);
        EXPECT_TRUE(frames == withContents(device, before, map)) << name;
        // One lane alone: the rest of the space keeps its contents.
        for (const PlacedLane& placed : map.lanes()) placed.lane->laneState = 0;
        block->eccLanes[0]->lane->laneState = 1;
        Bytes checks = before;
        replaceAll(device, checks, map.get());
        EXPECT_TRUE(checks == withContents(device, before, map)) << name;
        EXPECT_FALSE(checks == before);
    }
}

TEST_F(ColumnWalk, ADumpShowsLanesInTheOrderOfTheirWidth) {
    for (const char* name : {"tq1a8", "tq2a4", "tq4a32", "tq7a7", "td3c4", "td6a24"}) {
        const TarselDeviceType* device = get_device_record_by_name(name);
        for (u32 typeIndex = 0; device->memoryLocs[typeIndex].type != nullptr; ++typeIndex) {
            const MEMORYLocType& memory = device->memoryLocs[typeIndex];
            for (size_t i = 0; i < kMAX_LANE_WIDTHS && memory.type->widths[i] != 0; ++i) {
                const u64 width = memory.type->widths[i];
                const MemorySite site = sitesOf(device, typeIndex)[0];
                PlacedMap map(name);
                const BitLaneType* lane = map.add(site, width, "top/m");
                const Bytes frames = framesOf(device, 9);
                const MemoryFrames place(device, site);
                const MemoryImages shown = dumpedImages(device, memory.type, width, lane->parityWidth,
                    place.read(frames, columnStart(device, place.column())));
                char heading[100];
                std::snprintf(heading, sizeof heading,
                    "BRAM data, Column %02u, Row %02u. Design instance \"top/m\".\n\n", site.x, site.y);
                std::string expected = heading + hexLines(shown.data);
                if (memory.type->hasParityWidths) expected += "\nBRAM parity.\n\n" + hexLines(shown.parity);
                EXPECT_EQ(dumpAll(device, frames, 0x10, map.get()), expected + "\n\n")
                    << name << " " << memory.type->name << " by " << width;
            }
        }
    }
}

TEST_F(ColumnWalk, ADumpShowsParityWhereItIsAskedFor) {
    const TarselDeviceType* device = get_device_record_by_name("tq2a4");
    PlacedMap map("tq2a4");
    map.add(sitesOf(device)[0], 8, "m");
    const Bytes frames = framesOf(device, 10);
    EXPECT_THAT(dumpAll(device, frames, 0x10, map.get()), ::testing::Not(::testing::HasSubstr("BRAM parity.")));
    EXPECT_THAT(dumpAll(device, frames, 0x50, map.get()), ::testing::HasSubstr("\nBRAM parity.\n\n"));
}

TEST_F(ColumnWalk, ADumpNamesEveryMemoryOnce) {
    for (const char* name : {"tq1a8", "tq2a4", "tq4a32", "td3c4", "td6a24"}) {
        const TarselDeviceType* device = get_device_record_by_name(name);
        PlacedMap map(name);
        const std::string text = dumpAll(device, framesOf(device, 11), 0, map.get());
        size_t headings = 0;
        for (size_t at = text.find("BRAM data, "); at != text.npos; at = text.find("BRAM data, ", at + 1)) ++headings;
        EXPECT_EQ(headings, sitesOf(device).size()) << name;
        for (const MemorySite& site : sitesOf(device)) {
            char heading[100];
            std::snprintf(heading, sizeof heading, "BRAM data, Column %02u, Row %02u. Not used in this design.\n\n",
                site.x, site.y);
            EXPECT_THAT(text, ::testing::HasSubstr(heading));
        }
    }
}

TEST_F(ColumnWalk, ADumpLeavesTheFramesAsTheyAre) {
    const TarselDeviceType* device = get_device_record_by_name("tq1a8");
    PlacedMap map("tq1a8");
    ASSERT_EQ(initialize_cross_coordinate_lookup_table(map.get()), 0);
    const Bytes before = framesOf(device, 12);
    Bytes frames = before;
    fileIODescriptor* output = nullptr;
    ASSERT_EQ(OpenMemoryFile("dump", kTEXT_WRITE, nullptr, 0, &output), 0);
    int status = 0;
    EXPECT_EQ(DumpBRAMColumn(device, output, frames.data(), columnStart(device, 1), 0, 0, map.get(), &status),
        frames.data() + columnStart(device, 1));
    Close_File(&output);
    EXPECT_TRUE(frames == before);
}

TEST_F(ColumnWalk, ADumpWithoutMemorySaysSo) {
    const TarselDeviceType* device = get_device_record_by_name("tq1a8");
    PlacedMap map("tq1a8");
    ASSERT_EQ(initialize_cross_coordinate_lookup_table(map.get()), 0);
    Bytes frames = framesOf(device, 12);
    fileIODescriptor* output = nullptr;
    ASSERT_EQ(OpenMemoryFile("dump", kTEXT_WRITE, nullptr, 0, &output), 0);
    int status = 0;
    const CapturedAlerts alerts;
    failTrackedAllocation(1);
    EXPECT_EQ(
        DumpBRAMColumn(device, output, frames.data(), columnStart(device, 1), 0, 0, map.get(), &status), frames.data());
    EXPECT_EQ(status, 7);
    EXPECT_EQ(GetFileLogicalSize(output), 0u);
    Close_File(&output);
}

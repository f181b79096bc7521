// device_data_test.cpp - the device table as a whole: how many devices, in which ranges, under which names.
// A device that is added changes the counts here.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/device_rows.h"

#include "SystemUtils/lifetime.h"
#include "all_devices.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

namespace {

using memdata::testing::allDevices;
using memdata::testing::devicesOf;
using memdata::testing::memoriesOf;
using memdata::testing::namesOf;

class DeviceData : public ::testing::Test {
private:
    memdata::SystemResources resources_;
};

struct FamilyCase {
    const TarselFamilyType* family;
    size_t records;
    u32 smallestFrame; // CLB frame bits
    u32 largestFrame;
    std::set<u32> padBits;
    const char* memories; // record names of the types
};

const FamilyCase kFAMILY_CASES[] = {
    {&kTarselFamilyTable, 9, 384, 1248, {18}, "RAMB4"},
    {&kTarselEFamilyTable, 13, 384, 1952, {18}, "RAMB4"},
    {&kDunmareIIFamilyTable, 6, 224, 576, {18}, "RAMB4"},
    {&kDunmareIIEFamilyTable, 7, 384, 960, {18}, "RAMB4"},
    {&kTarselIIFamilyTable, 12, 832, 10432, {96}, "T2RAMB16 T2RAMB18"},
    {&kTarselPROIIFamilyTable, 11, 1472, 9792, {96}, "T2RAMB16 T2RAMB18"},
    {&kTarsel4FamilyTable, 17, 1312, 1312, {0}, "T4RAMB16 T4RAMB18"},
    {&kTarsel5FamilyTable, 26, 1312, 1312, {0}, "T5RAMB16 T5RAMB18 T5RAMB32 T5RAMB36"},
    {&kTarsel6FamilyTable, 14, 2592, 2592, {0}, nullptr}, // of two kinds
    {&kTarsel7FamilyTable, 28, 3232, 3232, {0}, "T6RAMB16 T6RAMB18 T6RAMB32 T6RAMB36"},
    {&kPelkFamilyTable, 7, 3232, 3232, {0}, "T6RAMB16 T6RAMB18 T6RAMB32 T6RAMB36"},
    {&kTarsel8FamilyTable, 7, 3232, 3232, {0}, "T6RAMB16 T6RAMB18 T6RAMB32 T6RAMB36"},
    {&kDunmareIIIFamilyTable, 8, 1184, 6816, {80}, "D3RAMB16 D3RAMB18"},
    {&kDunmareIIIEFamilyTable, 5, 1568, 5024, {208, 272, 400}, "D3RAMB16 D3RAMB18"},
    {&kDunmareIIIaFamilyTable, 7, 1184, 6816, {80, 336}, "D3RAMB16 D3RAMB18"},
    {&kDunmare6FamilyTable, 8, 1040, 1040, {144}, "D6RAMB8 D6RAMB9 D6RAMB16 D6RAMB18"},
};

std::string memoryNames(const TarselDeviceType& device) {
    std::string names;
    for (const MEMORYLocType* memory : memoriesOf(device)) {
        const std::string name = memdata::memoryTypeRecordName(memory->type);
        names += (names.empty() ? "" : " ") + name.substr(0, name.find('_'));
    }
    return names;
}

TEST_F(DeviceData, ThereAre185RecordsAndAnEmptyOneBehindThem) {
    EXPECT_EQ(allDevices().size(), 185u);
    EXPECT_EQ(memdata::kDEVICE_COUNT, 185u);
    EXPECT_EQ(memdata::kTarselDeviceTable[185].names[0], nullptr);
    EXPECT_EQ(memdata::kTarselDeviceTable[185].family, nullptr);
}

TEST_F(DeviceData, EachFamilyHasItsRecordsInItsRanges) {
    for (const FamilyCase& c : kFAMILY_CASES) {
        SCOPED_TRACE(c.family->name);
        const std::vector<TarselDeviceType*> devices = devicesOf(*c.family);
        ASSERT_EQ(devices.size(), c.records);
        const auto [smallest, largest] = std::ranges::minmax_element(
            devices, {}, [](const TarselDeviceType* device) { return device->clbFrameBits; });
        EXPECT_EQ((*smallest)->clbFrameBits, c.smallestFrame);
        EXPECT_EQ((*largest)->clbFrameBits, c.largestFrame);
        std::set<u32> pads;
        for (const TarselDeviceType* device : devices) {
            pads.insert(device->framePadBits);
            if (c.memories != nullptr) {
                EXPECT_EQ(memoryNames(*device), c.memories) << device->names[0];
            }
        }
        EXPECT_EQ(pads, c.padBits);
    }
}

TEST_F(DeviceData, OneTarsel6DeviceHasTheTypesOfTheNextFamily) {
    std::map<std::string, int> kinds;
    for (const TarselDeviceType* device : devicesOf(kTarsel6FamilyTable)) ++kinds[memoryNames(*device)];
    EXPECT_EQ(kinds, (std::map<std::string, int>{
                         {"T5RAMB16 T5RAMB18 T5RAMB32 T5RAMB36", 13}, {"T6RAMB16 T6RAMB18 T6RAMB32 T6RAMB36", 1}}));
}

TEST_F(DeviceData, BlockRamFramesAreAsLongAsOthersButInDunmare6) {
    for (const TarselDeviceType* device : allDevices())
        EXPECT_EQ(device->bramFrameBits, device->family == &kDunmare6FamilyTable ? 288 : device->clbFrameBits)
            << device->names[0];
}

TEST_F(DeviceData, ALongNameBeginsWithTheMakersLetterAndDropsItInTheShortForm) {
    for (const TarselDeviceType* device : allDevices()) {
        const std::vector<std::string> names = namesOf(*device);
        ASSERT_GE(names.size(), 1u);
        ASSERT_LE(names.size(), 38u);
        EXPECT_EQ(names[0][0], 't');
        if (names.size() == 1) continue;
        ASSERT_EQ(names.size() % 2, 0u) << names[0];
        for (size_t i = 0; i < names.size(); i += 2) {
            EXPECT_EQ(names[i], "t" + names[i + 1]);
            EXPECT_NE(names[i + 1][0], 't');
        }
    }
}

TEST_F(DeviceData, NamesHaveBetweenOneAnd38Forms) {
    std::set<size_t> counts;
    for (const TarselDeviceType* device : allDevices()) counts.insert(namesOf(*device).size());
    EXPECT_EQ(*counts.begin(), 1u);
    EXPECT_EQ(*counts.rbegin(), 38u);
}

TEST_F(DeviceData, NoNameIsGivenTwice) {
    std::set<std::string> seen;
    for (const TarselDeviceType* device : allDevices())
        for (const std::string& name : namesOf(*device)) {
            EXPECT_TRUE(seen.insert(name).second) << name;
            EXPECT_TRUE(std::ranges::all_of(name, [](char c) { return std::isdigit(c) || std::islower(c); })) << name;
        }
}

TEST_F(DeviceData, EightUnlistedGenericRecordsOpenTheTable) {
    const std::vector<TarselDeviceType*> devices = allDevices();
    for (size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(devices[i]->family, i == 0 ? &kPelkFamilyTable : &kTarsel8FamilyTable);
        EXPECT_EQ(devices[i]->isListed, 0);
    }
    EXPECT_EQ(devicesOf(kTarsel8FamilyTable).size(), 7u); // none but generic ones
}

TEST_F(DeviceData, GenericRecordsBorrowTheMidSizeTarsel7Device) {
    const TarselDeviceType* lender = get_device_record_by_name("tq7b100");
    EXPECT_EQ(lender->family, &kTarsel7FamilyTable);
    const std::vector<TarselDeviceType*> devices = allDevices();
    for (size_t i = 0; i < 8; ++i) {
        const TarselDeviceType* device = devices[i];
        EXPECT_EQ(device->logicalRows, 70u);
        EXPECT_EQ(device->physicalRows, 10u);
        EXPECT_EQ(device->logicalColumns, 12u);
        EXPECT_EQ(device->physicalColumns, 84u);
        EXPECT_EQ(device->bramFrameOffset, 29806u);
        for (size_t m = 0; m < 4; ++m) {
            EXPECT_EQ(device->memoryLocs[m].type, lender->memoryLocs[m].type);
            EXPECT_EQ(device->memoryLocs[m].physicalLocs, lender->memoryLocs[m].physicalLocs);
            EXPECT_EQ(device->memoryLocs[m].logicalLocs, lender->memoryLocs[m].logicalLocs);
        }
    }
}

TEST_F(DeviceData, TypesOfOneSizeShareTheirArrays) {
    const TarselDeviceType* device = get_device_record_by_name("tq5a20");
    EXPECT_EQ(device->memoryLocs[0].physicalLocs, device->memoryLocs[1].physicalLocs);
    EXPECT_EQ(device->memoryLocs[2].logicalLocs, device->memoryLocs[3].logicalLocs);
    EXPECT_NE(device->memoryLocs[0].physicalLocs, device->memoryLocs[2].physicalLocs);
}

TEST_F(DeviceData, OnlyTheFirstGenerationHasColumnMaps) {
    for (const TarselDeviceType* device : allDevices()) {
        const bool first = (device->family->familyMask & kFIRST_GENERATION_MASK) != 0;
        EXPECT_EQ(device->columnMap[0] == kIDENTITY_COLUMN_MAP, !first) << device->names[0];
    }
}

TEST_F(DeviceData, AColumnMapReachesEachConfigurationColumnOnce) {
    for (const TarselDeviceType* device : allDevices()) {
        if (device->columnMap[0] == kIDENTITY_COLUMN_MAP) continue;
        std::multiset<i32> columns;
        for (i32 column : device->columnMap)
            if (column >= 0) columns.insert(column);
        EXPECT_EQ(columns.size(), device->physicalColumns) << device->names[0];
        EXPECT_EQ(std::set<i32>(columns.begin(), columns.end()).size(), device->physicalColumns);
        EXPECT_EQ(*columns.rbegin(), static_cast<i32>(device->physicalColumns) - 1);
    }
}

TEST_F(DeviceData, ColumnsAreNumberedFromTheCentreOutward) {
    const TarselDeviceType* device = get_device_record_by_name("tq1a128");
    EXPECT_EQ(
        std::vector<i32>(device->columnMap, device->columnMap + 9), (std::vector<i32>{0, 4, 3, 5, 2, 6, 1, 7, -1}));
    const TarselDeviceType* small = get_device_record_by_name("td2e8");
    EXPECT_EQ(std::vector<i32>(small->columnMap, small->columnMap + 5), (std::vector<i32>{0, -1, -1, 1, -1}));
}

TEST_F(DeviceData, EightTarselProDevicesHaveExistenceMapsAndNoOthers) {
    std::map<const TarselFamilyType*, int> maps;
    for (const TarselDeviceType* device : allDevices()) maps[device->family] += device->existenceMap != nullptr;
    for (const auto& [family, count] : maps) EXPECT_EQ(count, family == &kTarselPROIIFamilyTable ? 8 : 0);
}

TEST_F(DeviceData, ArraysCoverTheModernFamiliesAndDunmareIIIa) {
    for (const TarselDeviceType* device : allDevices()) {
        const bool modern = (device->family->familyMask & kEARLY_GENERATIONS_MASK) == 0;
        const bool full = modern || device->family == &kDunmareIIIaFamilyTable;
        for (const MEMORYLocType* memory : memoriesOf(*device)) {
            EXPECT_EQ(memory->logicalLocs != nullptr, full) << device->names[0];
            if (full) {
                EXPECT_NE(memory->physicalLocs, nullptr) << device->names[0];
            }
        }
    }
}

TEST_F(DeviceData, SomeDunmareIIeDevicesHaveAPhysicalArrayAlone) {
    int count = 0;
    for (const TarselDeviceType* device : allDevices())
        if ((device->family->familyMask & kEARLY_GENERATIONS_MASK) != 0 && device->family != &kDunmareIIIaFamilyTable &&
            device->memoryLocs[0].physicalLocs != nullptr) {
            EXPECT_EQ(device->family, &kDunmareIIEFamilyTable);
            ++count;
        }
    EXPECT_EQ(count, 2);
}

TEST_F(DeviceData, StackedDevicesHaveThreeOrFourDiceOfWholeColumns) {
    std::map<u32, int> dice;
    for (const TarselDeviceType* device : allDevices()) {
        ++dice[device->dieCount];
        if (device->dieCount != 0) {
            EXPECT_EQ(device->physicalColumns % device->dieCount, 0u);
        }
    }
    EXPECT_GT(dice[3], 0);
    EXPECT_GT(dice[4], 0);
    EXPECT_EQ(dice.size(), 3u);
}

TEST_F(DeviceData, BothGridsHoldAsManyPlaces) {
    for (const TarselDeviceType* device : allDevices())
        EXPECT_EQ(device->logicalRows * device->logicalColumns, device->physicalRows * device->physicalColumns)
            << device->names[0];
}

TEST_F(DeviceData, RuledDevicesHaveOneGridForBothCoordinates) {
    for (const TarselDeviceType* device : allDevices()) {
        if (device->memoryLocs[0].logicalLocs != nullptr) continue;
        EXPECT_EQ(device->logicalRows, device->physicalRows) << device->names[0];
        EXPECT_EQ(device->logicalColumns, device->physicalColumns) << device->names[0];
    }
}

TEST_F(DeviceData, TheMemoriesOfAColumnFitItsFrames) {
    for (const TarselDeviceType* device : allDevices())
        for (const MEMORYLocType* memory : memoriesOf(*device))
            EXPECT_LE(memory->type->frameSliceBits * memory->type->subRowFactor * device->physicalRows,
                device->bramFrameBits - (device->family == &kDunmare6FamilyTable ? 0 : device->framePadBits))
                << device->names[0];
}

TEST_F(DeviceData, FramesAreWholeConfigurationWords) {
    for (const TarselDeviceType* device : allDevices()) {
        EXPECT_EQ(device->clbFrameBits % (device->family->configWordBytes * 8), 0u) << device->names[0];
        EXPECT_EQ(device->bramFrameBits % (device->family->configWordBytes * 8), 0u) << device->names[0];
    }
}

TEST_F(DeviceData, OffsetsAreZeroWhereColumnsAreBurstsOfTheirOwnOrUnknown) {
    int unknown = 0;
    for (const TarselDeviceType* device : allDevices()) {
        if ((device->family->familyMask & kFIRST_GENERATION_MASK) == 0) {
            unknown += device->bramFrameOffset == 0;
            continue;
        }
        EXPECT_EQ(device->bramFrameOffset, 0u) << device->names[0];
    }
    EXPECT_EQ(unknown, 4);
}

TEST_F(DeviceData, TheLargestTarsel7StreamPasses100MB) {
    const TarselDeviceType* device = get_device_record_by_name("tq7b1000");
    const u64 columnBytes = u64{device->bramFrameBits} / 8 * 128;
    const u64 bytes = device->dieCount * (u64{device->bramFrameOffset} * device->clbFrameBits / 8) +
                      columnBytes * device->physicalColumns;
    EXPECT_GT(bytes, 100'000'000u);
}

TEST_F(DeviceData, HolesAndIrregularColumnsNameDevicesAndLieOnTheirGrids) {
    for (const memdata::HoleRow& hole : memdata::kHOLES) {
        const TarselDeviceType* device = get_device_record_by_name(hole.device);
        ASSERT_NE(device, nullptr) << hole.device;
        EXPECT_STREQ(device->names[0], hole.device);
        EXPECT_LT(hole.column, device->logicalColumns) << hole.device;
        EXPECT_LE(hole.firstRow + hole.rowCount, device->logicalRows) << hole.device;
        if (hole.kind == memdata::HoleKind::SITES) continue;
        EXPECT_EQ(hole.firstRow % device->physicalRows, 0u) << hole.device;
        EXPECT_EQ(hole.rowCount % device->physicalRows, 0u) << hole.device;
    }
    for (const memdata::IrregularColumn& column : memdata::kIRREGULAR_COLUMNS) {
        const TarselDeviceType* device = get_device_record_by_name(column.device);
        ASSERT_NE(device, nullptr) << column.device;
        EXPECT_STREQ(device->names[0], column.device);
        EXPECT_EQ(device->family, &kDunmareIIIaFamilyTable);
        EXPECT_LT(column.physicalColumn, device->physicalColumns);
        EXPECT_LT(column.logicalColumn, device->logicalColumns);
    }
}

} // namespace

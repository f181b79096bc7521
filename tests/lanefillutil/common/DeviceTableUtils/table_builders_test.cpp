// table_builders_test.cpp - deriving a device's location arrays from the one of its large memory, and printing them.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/table_builders.h"

#include "DeviceTableUtils/locations.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "all_devices.h"

#include <memory>

namespace {

using memdata::physicalGridRows;
using memdata::testing::allDevices;
using memdata::testing::devicesOf;
using memdata::testing::label;
using memdata::testing::memoriesOf;
using memdata::testing::text;

class TableBuilders : public ::testing::Test {
private:
    memdata::SystemResources resources_;
};

// A copy of a device that has the physical array of its large memory alone.
std::unique_ptr<TarselDeviceType> bare(const TarselDeviceType& device) {
    auto copy = std::make_unique<TarselDeviceType>(device);
    for (MEMORYLocType& memory : copy->memoryLocs) {
        if (memory.type == nullptr) break;
        memory.logicalLocs = nullptr;
        if (memory.type->sizeUnits != 8) memory.physicalLocs = nullptr;
    }
    return copy;
}

TEST_F(TableBuilders, FindNothingToDoOnTheDevicesOfTheTable) {
    for (TarselDeviceType* device : allDevices())
        for (MEMORYLocType& memory : device->memoryLocs) {
            if (memory.type == nullptr) break;
            const MEMORYLocType before = memory;
            const u64 blocks = memdata::trackedAllocationCount();
            build_missing_lookup_tables(device, &memory);
            EXPECT_EQ(memdata::trackedAllocationCount(), blocks) << label(*device, memory);
            EXPECT_EQ(memory.physicalLocs, before.physicalLocs);
            EXPECT_EQ(memory.logicalLocs, before.logicalLocs);
        }
}

TEST_F(TableBuilders, DeriveTheLogicalArrayOfALargeMemory) {
    for (const char* name : {"tq7a5", "tq7b150", "tq5d60"}) {
        const TarselDeviceType* device = get_device_record_by_name(name);
        const auto copy = bare(*device);
        build_logical_to_physical_lookup_table(copy.get(), &copy->memoryLocs[2]);
        const size_t count = size_t{device->logicalRows} * device->logicalColumns;
        for (size_t i = 0; i < count; ++i)
            ASSERT_EQ(text(copy->memoryLocs[2].logicalLocs[i]), text(device->memoryLocs[2].logicalLocs[i])) << name;
    }
}

TEST_F(TableBuilders, DeriveTheArraysOfTheHalvesFromTheLargeOne) {
    for (const char* name : {"tq7a5", "tq7b150", "tq5d60"}) {
        const TarselDeviceType* device = get_device_record_by_name(name);
        const auto copy = bare(*device);
        build_missing_lookup_tables(copy.get(), &copy->memoryLocs[0]);
        const MEMORYLocType& built = copy->memoryLocs[0];
        const MEMORYLocType& known = device->memoryLocs[0];
        const size_t count = size_t{device->logicalRows} * device->logicalColumns * 2;
        ASSERT_NE(built.physicalLocs, nullptr);
        for (size_t i = 0; i < count; ++i) {
            ASSERT_EQ(text(built.physicalLocs[i]), text(known.physicalLocs[i])) << name;
            ASSERT_EQ(text(built.logicalLocs[i]), text(known.logicalLocs[i])) << name;
        }
    }
}

TEST_F(TableBuilders, GiveEveryHalfTheLowerTable) {
    const auto copy = bare(*get_device_record_by_name("tq7a5"));
    build_missing_lookup_tables(copy.get(), &copy->memoryLocs[0]);
    for (size_t i = 0; i < 80; ++i)
        EXPECT_EQ(copy->memoryLocs[0].physicalLocs[i].decodeTable, T5_18LowerDecodeTable) << i;
}

TEST_F(TableBuilders, GiveHalvesWithoutFramesNoTable) {
    const TarselDeviceType* device = get_device_record_by_name("tp7a11");
    const auto copy = bare(*device);
    build_missing_lookup_tables(copy.get(), &copy->memoryLocs[0]);
    const size_t count = size_t{device->logicalRows} * device->logicalColumns * 2;
    size_t without = 0;
    for (size_t i = 0; i < count; ++i) {
        const bool none = copy->memoryLocs[0].physicalLocs[i].decodeTable == nullptr;
        EXPECT_EQ(none, device->memoryLocs[0].physicalLocs[i].decodeTable == nullptr) << i;
        without += none;
    }
    EXPECT_EQ(without, 20u); // X0Y20 to X0Y29
}

TEST_F(TableBuilders, DeriveHalvesForAFirstTypeOfTheirSizeAlone) {
    const auto copy = bare(*get_device_record_by_name("tq7a5"));
    copy->memoryLocs[0].type = &D6RAMB8_BRAM;
    build_missing_lookup_tables(copy.get(), &copy->memoryLocs[0]);
    EXPECT_EQ(copy->memoryLocs[0].physicalLocs, nullptr);
}

TEST_F(TableBuilders, LeaveTheFirstTwoGenerationsAlone) {
    for (const TarselFamilyType* family : {&kDunmareIIEFamilyTable, &kDunmareIIIaFamilyTable, &kTarselIIFamilyTable}) {
        const TarselDeviceType* device = devicesOf(*family).back();
        const auto copy = bare(*device);
        copy->memoryLocs[0].physicalLocs = device->memoryLocs[0].physicalLocs;
        build_missing_lookup_tables(copy.get(), &copy->memoryLocs[0]);
        EXPECT_EQ(copy->memoryLocs[0].logicalLocs, nullptr);
    }
}

TEST_F(TableBuilders, DoNothingWithoutAMemoryOrItsPhysicalArray) {
    const auto copy = bare(*get_device_record_by_name("tq7a5"));
    build_logical_to_physical_lookup_table(copy.get(), nullptr);
    build_logical_to_physical_lookup_table(copy.get(), &copy->memoryLocs[1]);
    EXPECT_EQ(copy->memoryLocs[1].logicalLocs, nullptr);
    copy->memoryLocs[2].physicalLocs = copy->memoryLocs[3].physicalLocs = nullptr;
    build_T5_18k_physical_and_logical_lookup_tables(
        copy.get(), T5_18LowerDecodeTable, "lower", T5_18UpperDecodeTable, "upper");
    EXPECT_EQ(copy->memoryLocs[0].physicalLocs, nullptr);
}

TEST_F(TableBuilders, WithoutMemoryTheArraysStayAway) {
    const auto copy = bare(*get_device_record_by_name("tq7a5"));
    const u32 mask = EnablePrintAlerts(0);
    memdata::failTrackedAllocation(1);
    build_logical_to_physical_lookup_table(copy.get(), &copy->memoryLocs[2]);
    EXPECT_EQ(copy->memoryLocs[2].logicalLocs, nullptr);
    memdata::failTrackedAllocation(1);
    build_T5_18k_physical_and_logical_lookup_tables(
        copy.get(), T5_18LowerDecodeTable, "lower", T5_18UpperDecodeTable, "upper");
    EXPECT_EQ(copy->memoryLocs[0].physicalLocs, nullptr);
    EnablePrintAlerts(mask);
}

TEST(TableBuildersLifetime, ARecordOfTheTableForgetsBuiltArraysWithTheEngine) {
    TarselDeviceType* device = get_device_record_by_name("tq7a7");
    MEMORYLocType& memory = device->memoryLocs[2];
    const BRAMLogLocDataType* known = memory.logicalLocs;
    {
        memdata::SystemResources resources;
        memory.logicalLocs = nullptr;
        build_missing_lookup_tables(device, &memory);
        EXPECT_NE(memory.logicalLocs, nullptr);
    }
    EXPECT_EQ(memory.logicalLocs, nullptr);
    EXPECT_EQ(get_device_record_by_name("tq7a7")->memoryLocs[2].logicalLocs, known);
}

// Prints.

// A device of two columns of two large memories, one of them absent.
struct SmallDevice {
    std::unique_ptr<TarselDeviceType> device = std::make_unique<TarselDeviceType>();
    BRAMPhysLocDataType physical[4] = {{0, 0, tarsel5_36DecodeTables, 32}, {1, 0, tarsel5_36DecodeTables, 6464},
        {~0, 1, nullptr, 0}, {1, 1, tarsel5_36DecodeTables, -1}};
    BRAMLogLocDataType logical[4] = {{0, 0, 1}, {1, 0, 1}, {0, 1, -1}, {1, 1, 1}};

    SmallDevice() {
        device->names[0] = "tq0a1";
        device->family = &kTarsel7FamilyTable;
        device->logicalRows = device->physicalRows = 2;
        device->logicalColumns = device->physicalColumns = 2;
        device->memoryLocs[0] = {&T6RAMB18_BRAM, nullptr, nullptr, 0, nullptr};
        device->memoryLocs[1] = {&T6RAMB36_BRAM, physical, logical, 0, nullptr};
    }
};

std::string printed(const std::function<void()>& print) {
    ::testing::internal::CaptureStdout();
    print();
    return ::testing::internal::GetCapturedStdout();
}

TEST_F(TableBuilders, PrintALogicalArrayAsSource) {
    const SmallDevice small;
    EXPECT_EQ(
        printed([&] { print_logical_to_physical_lookup_table(small.device.get(), &small.device->memoryLocs[1]); }),
        "\n//                                        rows * cols (physical instead of logical)\n"
        "BRAMLogLocDataType\ttq0a1_36BRAMLogData[ 2 * 2 ] =\n\t{\n"
        "\t{  0,  0, kT }, {  1,  0, kT },\n"
        "\t{  0,  1, k_ }, {  1,  1, kT }\n"
        "\t};\n");
}

TEST_F(TableBuilders, PrintAPhysicalArrayAsSource) {
    const SmallDevice small;
    EXPECT_EQ(printed([&] {
        print_physical_to_logical_lookup_table(
            small.device.get(), &small.device->memoryLocs[1], "T5_18LowerDecodeTable", "T5_18UpperDecodeTable");
    }),
        "\n//                                        rows * cols (physical instead of logical)\n"
        "BRAMPhysLocDataType\ttq0a1_36BRAMPhysData[ 2 * 2 ] =\n\t{\n"
        "\t{        0,  0, T5_18LowerDecodeTable,   32 }, {        1,  0, T5_18UpperDecodeTable, 6464 },\n"
        "\t{ k_ -   0,  1,   nilTranslationTable, 0000 }, {        1,  1, T5_18UpperDecodeTable,   -1 }\n"
        "\t};\n");
}

TEST_F(TableBuilders, PrintNarrowRowsWithoutAbsentPlacesAndSetGroupsApart) {
    const TarselDeviceType* device = get_device_record_by_name("tq7a5");
    const std::string text =
        printed([&] { print_physical_to_logical_lookup_table(device, &device->memoryLocs[2], "low", "up"); });
    EXPECT_NE(text.find("\n\t{  10,  0, low, 0000 }, {  11,  0, up, 0000 }, "), std::string::npos);
    EXPECT_NE(text.find(" 6464 },\n\t\n\t{   0,  0, low,"), std::string::npos); // ahead of the second group
}

TEST_F(TableBuilders, PrintWhatTheyMakeOnlyWhenAsked) {
    SmallDevice quiet;
    EXPECT_EQ(printed([&] { build_missing_lookup_tables(quiet.device.get(), &quiet.device->memoryLocs[0]); }), "");
    SmallDevice loud;
    memdata::printBuiltTables(true);
    const std::string text =
        printed([&] { build_missing_lookup_tables(loud.device.get(), &loud.device->memoryLocs[0]); });
    EXPECT_NE(text.find("tq0a1_18BRAMPhysData[ 4 * 2 ]"), std::string::npos);
    EXPECT_NE(text.find("tq0a1_18BRAMLogData[ 4 * 2 ]"), std::string::npos);
}

} // namespace

// data_header_test.cpp - the head of written files.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/data_header.h"

#include "FileUtils/opening.h"
#include "SystemUtils/lifetime.h"
#include "support/allocation_faults.h"
#include "support/map_builder.h"

#include <gtest/gtest.h>

#include <regex>

namespace memdata::testing {
namespace {

// What output_data_header writes, with "DATE" for the date and without the lines of build, product and notices.
std::string header(const char* title, BitLaneGridElemType** lanes, u64 lane, const char* spaceName,
    const AddressRangeDefType* range, const AddressMappingType* mapping) {
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(OpenMemoryFile("head", kTEXT_WRITE, nullptr, 0, &file), 0);
    EXPECT_EQ(output_data_header(file, "//", title, lanes, lane, spaceName, range, mapping), 0);
    std::string text(GetFileStorageBase(file), GetFileLogicalSize(file));
    EXPECT_EQ(Close_File(&file), 0);
    text = std::regex_replace(text, std::regex("Created on .*(am|pm)"), "Created on DATE");
    // Build, product and notices stand together ahead of the date.
    const size_t first = title == nullptr ? 0 : text.find('\n', text.find('\n') + 1) + 1;
    size_t last = first;
    for (int line = 0; line < 3; ++line) last = text.find('\n', last) + 1;
    EXPECT_EQ(text.substr(first, 3), "// ");
    return text.erase(first, last - first);
}

TEST(DataHeader, WithoutAMappingIsATitleAndWhoMadeTheFile) {
    const SystemResources resources;
    EXPECT_EQ(header("MEM file", nullptr, 0, nullptr, nullptr, nullptr), "// MEM file.\n"
                                                                         "//\n");
}

TEST(DataHeader, OfALaneTellsItsBitsAsTheyWereWritten) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB16", {"hi[15:8] lo[0:7]"});
    ASSERT_EQ(insert_data_filename("a.elf", map->dataFiles), 0);
    ASSERT_EQ(insert_data_filename("b.mem", map->dataFiles), 0);
    BitLaneGridElemType** lanes = space->ranges->busBlocks[0]->lanes;
    EXPECT_EQ(header("Title", lanes, 0, space->name, space->ranges, map.get()),
        "// Title.\n"
        "//\n"
        "// Created on DATE, from:\n"
        "//\n"
        "//     Map file     - test.bmm\n"
        "//     Data file(s) - a.elf, b.mem\n"
        "//\n"
        "// Address space 'ram', bit lane [15:8].\n"
        "//\n"
        "// Bus width = 16 bits, number of bus blocks = 1.\n");
    EXPECT_NE(
        header("Title", lanes, 1, space->name, space->ranges, map.get()).find("bit lane [0:7]."), std::string::npos);
}

TEST(DataHeader, OfARangeTellsItsAddresses) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB16", {"hi[15:8] lo[7:0]", "h2[15:8] l2[7:0]"});
    EXPECT_EQ(header("Title", nullptr, 0, space->name, space->ranges, map.get()),
        "// Title.\n"
        "//\n"
        "// Created on DATE, from:\n"
        "//\n"
        "//     Map file     - test.bmm\n"
        "//     Data file(s) - none\n"
        "//\n"
        "// Address space 'ram' [0x00001000:0x00002FFF], 8192 bytes in size.\n"
        "//\n"
        "// Bus width = 16 bits, number of bus blocks = 2.\n");
}

TEST(DataHeader, AddressesBeyondFourGigabytesAreWhole) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0x100000000, "RAMB16", {"a[7:0]"});
    EXPECT_NE(header("T", nullptr, 0, space->name, space->ranges, map.get()).find("[0x100000000:0x1000007FF], 2048 "),
        std::string::npos);
}

TEST(DataHeader, WithoutATitleBeginsWithWhoMadeTheFile) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0]"});
    EXPECT_TRUE(header(nullptr, nullptr, 0, space->name, space->ranges, map.get()).starts_with("// Created on DATE"));
}

TEST(DataHeader, WithoutARangeSaysNothingOfASpace) {
    TestMap map;
    EXPECT_EQ(header("BMM LOC annotation file", nullptr, 0, nullptr, nullptr, map.get()),
        "// BMM LOC annotation file.\n"
        "//\n"
        "// Created on DATE, from:\n"
        "//\n"
        "//     Map file     - test.bmm\n"
        "//     Data file(s) - none\n"
        "//\n");
}

TEST(DataHeader, WithoutMemoryForItsDateIsAStatus) {
    TestMap map;
    const FaultSweep sweep = sweepAllocationFaults([&map] {
        fileIODescriptor* file = nullptr;
        if (int status = OpenMemoryFile("head", kTEXT_WRITE, nullptr, 0, &file); status != 0) return status;
        const int status = output_data_header(file, "//", "T", nullptr, 0, nullptr, nullptr, map.get());
        Close_File(&file);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
}

} // namespace
} // namespace memdata::testing

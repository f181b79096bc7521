// auto_data_test.cpp - memories that are filled from files that the address map itself names.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/auto_data.h"

#include "fake_data_file.h"
#include "support/alerts.h"
#include "support/host_messages.h"
#include "support/map_builder.h"
#include "support/map_dump.h"

#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

int fill(AddressSpaceDefType* space, BitLaneGridElemType* element, const FakeFile& contents) {
    FakeDataFile file(contents);
    return allocate_addressSpace_transform_buffers(space) ? fillLane(element, &file) : 7;
}

TEST(AutoData, AddressesOfTheFileCountInTheMemoryItself) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0x4000, "RAMB4", {"a[15:8] b[7:0]"});
    EXPECT_EQ(fill(space, map.lane("b"), {"b.mem", {{0, {0x11, 0x22}}, {0x10, {0x33}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane b 0: 11 22\n"
                               "lane b 16: 33\n");
}

TEST(AutoData, TheRecordsOfALaneReachItsMemorysEnd) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{0x100, {1}}}}), 0);
    const TransformRangeType* range = map.lane("a")->lane->transformRanges;
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->dataFirst - map.lane("a")->lane->dataSliver, 0x100);
    EXPECT_EQ(range->dataSize, 0x100u);
}

TEST(AutoData, WordsBehindTheFileKeepWhatTheyHold) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{0, {1, 2, 3}}}}), 0);
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{0, {9}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 09 02 03\n");
}

TEST(AutoData, WordsBehindTheFileAlsoStayInAMirroredLane) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[0:7]"});
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{2, {0x01}}, {0, {0x02}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 40 00 80\n");
}

TEST(AutoData, BytesAreNotSwappedAndCheckLanesNotTouched) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[31:0] e[7:0] ECCH64-8"});
    space->ranges->busBlocks[0]->lanePitch = 32;
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{0, {0x11, 0x22, 0x33, 0x44}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 44 33 22 11\n");
}

TEST(AutoData, AnAddressOutsideOfTheMemoryStoresNothing) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{0x200, {1}}}}), 0);
    EXPECT_EQ(dumpData(space), "");
    EXPECT_EQ(map.lane("a")->lane->transformRanges, nullptr);
}

TEST(AutoData, AMemoryWithParityIsFilledToItsLastWord) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"a[8:0]"});
    // Three digits a word: pad and parity, then the byte.
    std::vector<u8> bytes(2048 / 2 * 3);
    bytes[bytes.size() - 2] = 0x01;
    bytes[bytes.size() - 1] = 0xAB;
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{0, bytes}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 2047: AB\n"
                               "parity a 255: 80\n");
}

TEST(AutoData, WordAddressesOfNarrowLanesReachTheMemorysEnd) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[0:0]"}, {.wordAddressing = true});
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{4095, {0x80}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 511: 80\n");
}

TEST(AutoData, AnAddressInsideALaneWordKeepsTheBytesAheadOfItToTheMemorysEnd) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[15:0]"});
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{506, {1, 2, 3, 4, 5, 6}}, {507, {0xAA, 0xBB}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 506: AA 01 04 BB 06 05\n");
    const TransformRangeType* range = map.lane("a")->lane->transformRanges->next;
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->dataFirst - map.lane("a")->lane->dataSliver, 506);
    EXPECT_EQ(range->dataSize, 6u);
}

TEST(AutoData, TheLastByteOfAMemoryIsFilledFromAnAddressInsideItsWord) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[15:0]"});
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{511, {0xCC}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 510: CC\n");
}

TEST(AutoData, AnAddressInsideAWordWithParityFillsToTheLastWord) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"a[8:0]"});
    EXPECT_EQ(fill(space, map.lane("a"), {"a.mem", {{2300, {0x0A, 0xA0, 0xBB, 0x0C, 0xC0, 0xDD}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 2044: AA BB CC DD\n");
}

TEST(AutoData, AMapWithoutInitFilesHasNothingToFill) {
    TestMap map;
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(transform_auto_data_files(map.get(), nullptr), 0);
}

TEST(AutoData, AFileThatIsNoDataFileEndsTheWalk) {
    TestMap map;
    const CapturedMessages messages;
    const CapturedAlerts alerts;
    map.space("ram", 0, "RAMB4", {"a[7:0] INIT=notes.txt"});
    EXPECT_EQ(transform_auto_data_files(map.get(), nullptr), 1);
}

} // namespace
} // namespace memdata::testing

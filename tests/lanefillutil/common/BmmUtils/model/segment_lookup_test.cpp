// segment_lookup_test.cpp - the space that holds a segment of data.
// SPDX-License-Identifier: Apache-2.0
#include "model_fixture.h"
#include "support/alerts.h"
#include "support/host_messages.h"
#include "support/host_parameters.h"

using namespace memdata::testing;

namespace {

using EndingAddress = ModelTest;
using SegmentLookUp = ModelTest;

// All spaces that take the segment, with the status that ends the search.
std::string find_all(AddressMappingType* mapping, u64 start, u64 end) {
    AddressSpaceIteratorType at{};
    AddressSpaceLinkType* link = iterate_first_addressSpace(mapping, 1, &at, 0, 0, 0, kALL_MEMORY_CLASSES);
    std::string text;
    for (;;) {
        AddressSpaceLinkType* found = link; // cleared by a miss
        const int status = lookup_matching_addressSpace(mapping, 7, start, end, link, &at, &found);
        if (status != 0) return text + std::to_string(status) + (found == nullptr ? "" : " and a link");
        text += std::string(found->space->name) + " ";
        link = iterate_next_addressSpace(3, &at);
    }
}

u64 ending(AddressSpaceDefType* space, u64 start, u64 end) {
    AddressSpaceLinkType link{space->map, nullptr, space};
    return compute_ending_address(&link, start, end);
}

} // namespace

TEST_F(EndingAddress, IsTheEndUnlessWordsAreAddressed) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0]"});
    EXPECT_EQ(ending(space, 0x10, 0x1F), 0x1Fu);
    EXPECT_EQ(ending(space, 0x10, 0x00), 0x00u);
    EXPECT_EQ(compute_ending_address(nullptr, 1, 2), 2u);
}

TEST_F(EndingAddress, CountsWordsAndIsNotOffsetByTheStart) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[31:16] b[15:0]"}, {.wordAddressing = true});
    EXPECT_EQ(ending(space, 0, 63), 15u);
    EXPECT_EQ(ending(space, 0x100, 0x100 + 63), 15u);
}

TEST_F(EndingAddress, ABusOf18BitsCountsAs20) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"a[17:0]"}, {.wordAddressing = true});
    EXPECT_EQ(ending(space, 0, 24), 9u); // 25 bytes are ten times 20 bits
    EXPECT_EQ(ending(space, 0, 23), 8u); // 24 bytes are nine and a rest
}

TEST_F(EndingAddress, LessThanOneWordEndsAtZero) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[31:16] b[15:0]"}, {.wordAddressing = true});
    EXPECT_EQ(ending(space, 0, 0), 0u);
    EXPECT_EQ(ending(space, 0, 2), 0u);
    EXPECT_EQ(ending(space, 0, 3), 0u);
    EXPECT_EQ(ending(space, 0, 7), 1u);
}

TEST_F(EndingAddress, DoesNotWrapOnTheLargestSegments) {
    TestMap map;
    AddressSpaceDefType* byBit = map.space("bits", 0, "RAMB16", {"a[0:0]"}, {.wordAddressing = true});
    AddressSpaceDefType* byWord = map.space("words", 0, "RAMB32", {"b[63:0]"}, {.wordAddressing = true});
    EXPECT_EQ(ending(byBit, 0, UINT64_MAX), UINT64_MAX); // counts as 4 bits: 2^65 words
    EXPECT_EQ(ending(byWord, 0, UINT64_MAX), UINT64_MAX / 8);
}

TEST_F(EndingAddress, ASpaceWithoutABusKeepsTheEnd) {
    TestMap map;
    AddressSpaceDefType* bare = map.space("bare", 0, std::vector<RangeText>{}, {.wordAddressing = true});
    AddressSpaceDefType* empty = map.space("empty", 0, "RAMB16", {""}, {.wordAddressing = true});
    EXPECT_EQ(ending(bare, 0, 99), 99u);
    EXPECT_EQ(ending(empty, 0, 99), 99u);
}

TEST_F(SegmentLookUp, FindsEverySpaceThatHoldsTheSegment) {
    TestMap map;
    plainSpace(map, "low", 0x0000, 0x0FFF);
    plainSpace(map, "wide", 0x0000, 0x2FFF);
    map.map("cpu");
    plainSpace(map, "ram", 0x1000, 0x1FFF);
    EXPECT_EQ(find_all(map.get(), 0x0000, 0x0FFF), "low wide 4");
    EXPECT_EQ(find_all(map.get(), 0x1000, 0x100F), "wide cpu.ram 4");
    EXPECT_EQ(find_all(map.get(), 0x2000, 0x2000), "wide 4");
    EXPECT_EQ(find_all(map.get(), 0x3000, 0x3000), "4");
}

TEST_F(SegmentLookUp, WithoutAFirstSpaceNothingIsFound) {
    TestMap map;
    plainSpace(map, "ram", 0x0000, 0x0FFF);
    AddressSpaceIteratorType at{};
    AddressSpaceLinkType* out = map.link("ram");
    EXPECT_EQ(lookup_matching_addressSpace(map.get(), 0, 0, 1, nullptr, &at, &out), 4);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(lookup_matching_addressSpace(map.get(), 0, 0, 1, map.link("ram"), &at, nullptr), 3);
}

TEST_F(SegmentLookUp, AMatchHasItsBuffers) {
    TestMap map;
    AddressSpaceDefType* space = plainSpace(map, "ram", 0x0000, 0x0FFF);
    AddressSpaceDefType* other = plainSpace(map, "rom", 0x1000, 0x1FFF);
    EXPECT_EQ(find_all(map.get(), 0x10, 0x1F), "ram 4");
    EXPECT_NE(space->ranges->transformBuffer, nullptr);
    EXPECT_EQ(other->ranges->transformBuffer, nullptr);
}

TEST_F(SegmentLookUp, ASegmentThatEndsBeyondItsSpaceGivesSevenAndNamesBoth) {
    TestMap map;
    plainSpace(map, "ram", 0x1000, 0x1FFF);
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(find_all(map.get(), 0x1800, 0x2000), "7");
    EXPECT_EQ(messages.text(), "1 28-207 test.bmm, ram, 00001000, 1fff, 7, 00001800, 00002000\n");
    EXPECT_EQ(alerts.text(), "");
    EXPECT_EQ(map.link("ram")->space->ranges->transformBuffer, nullptr);
}

TEST_F(SegmentLookUp, TheLegacyAlertSaysTheSame) {
    TestMap map;
    plainSpace(map, "ram", 0x1000, 0x1FFF);
    ScopedParameter legacy("memdata.debugLegacyMessages", true);
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(find_all(map.get(), 0x1800, 0x2000), "7");
    EXPECT_THAT(alerts.text(), ::testing::HasSubstr("31 - Out of bounds code segment for ram space in 'test.bmm'.\n"
                                                    "    Memory space 'ram' occupies [0x00001000:0x00001FFF]\n"
                                                    "    Code segment #7 occupies [0x00001800:0x00002000]"));
}

TEST_F(SegmentLookUp, ASegmentBeyondTheLastAddressOfAllIsOutOfBounds) {
    TestMap map;
    plainSpace(map, "all", 0, UINT64_MAX);
    plainSpace(map, "top", UINT64_MAX - 0xFFF, UINT64_MAX);
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(find_all(map.get(), UINT64_MAX - 15, UINT64_MAX), "top all 4");
    EXPECT_EQ(find_all(map.get(), UINT64_MAX - 15, 16), "7"); // 32 bytes
}

TEST_F(SegmentLookUp, WordAddressedSpacesCompareTheWordCountWithTheirBounds) {
    TestMap map;
    map.space("ram", 0, "RAMB16", {"a[31:16] b[15:0]"}, {.wordAddressing = true}); // 2 x 1024 words
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(find_all(map.get(), 0, 8191), "ram 4");
    EXPECT_EQ(find_all(map.get(), 0, 8195), "7");
}

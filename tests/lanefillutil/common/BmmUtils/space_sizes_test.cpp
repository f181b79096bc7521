// space_sizes_test.cpp - sizes and addresses that finishing a space computes, and what it refuses.
// SPDX-License-Identifier: Apache-2.0
#include "support/allocation_faults.h"
#include "validation_fixture.h"

using namespace memdata::testing;

namespace {

using SpaceSizes = ValidationTest;

const char* const kNO_ROOM =
    "3: ERROR:Lanefill:86 - The devices of ADDRESS_SPACE 'ram' have no room for a word of their lanes.\n";
const char* const kTOO_MANY_ADDRESSES = "3: ERROR:Lanefill:86 - The addresses of ADDRESS_SPACE 'ram' exceed 64 bits.\n";

// Back to the lanes as they were written.
void forgetOrder(BusBlockType* block) {
    if (block->writtenLanes == nullptr) return;
    std::copy_n(block->writtenLanes, block->laneCount, block->lanes);
    releaseMemory(block->writtenLanes);
    block->writtenLanes = nullptr;
}

} // namespace

TEST_F(SpaceSizes, FollowFromTheDevicesBlockByBlock) {
    AddressSpaceDefType* space = ram(0x1000, 0x2FFF, "RAMB16", {"a[15:8] b[7:0]", "c[15:8] d[7:0]"});
    EXPECT_EQ(finish(space), "0:");
    EXPECT_EQ(dumpSpace(space), "  space ram 0x1000-0x2FFF\n"
                                "    range RAMB16 0x1000-0x2FFF bus 16 lane 8 words 2048 devices 4\n"
                                "      block 0x1000-0x1FFF\n"
                                "        a[15:8][0:2047]\n"
                                "        b[7:0][0:2047]\n"
                                "      block 0x2000-0x2FFF\n"
                                "        c[15:8][2048:4095]\n"
                                "        d[7:0][2048:4095]\n");
    const AddressRangeDefType* range = space->ranges;
    EXPECT_EQ(range->byteTotal, 0x2000u);
    EXPECT_EQ(range->blockByteSize, 0x1000u);
    EXPECT_EQ(range->busBlocks[1]->wordsPerDevice, 2048u);
    EXPECT_EQ(range->busBlocks[1]->laneWidth, 8u);
    EXPECT_EQ(space->rangeByteTotal, 0x2000u);
    EXPECT_EQ(space->nextAddress, 0x3000u);
}

TEST_F(SpaceSizes, RangesFollowOneAnother) {
    AddressSpaceDefType* space = map.space("ram", 0x100, {{"RAMB4", {"a[7:0]"}}, {"RAMB16", {"b[7:0]"}}},
        {.endAddress = 0x100 + 512 + 2048 - 1, .finished = false});
    EXPECT_EQ(finish(space), "0:");
    EXPECT_EQ(space->ranges->startAddress, 0x100u);
    EXPECT_EQ(space->ranges->endAddress, 0x2FFu);
    EXPECT_EQ(space->ranges->next->startAddress, 0x300u);
    EXPECT_EQ(space->ranges->next->endAddress, 0xAFFu);
}

TEST_F(SpaceSizes, ParityBitsCountWhereLaneWidthsCountThem) {
    AddressSpaceDefType* space = ram(0, 2304 * 2 - 1, "RAMB18", {"a[17:9] b[8:0]"});
    EXPECT_EQ(finish(space), "0:");
    EXPECT_EQ(space->ranges->wordsPerDevice, 2048u);
    EXPECT_EQ(map.lane("a")->parityWidth, 1u);
}

TEST_F(SpaceSizes, WordsCountUnderWordAddressing) {
    AddressSpaceDefType* space = words(0, 2 * 1024 - 1, "RAMB16", {"a[31:16] b[15:0]"});
    EXPECT_EQ(finish(space), "0:");
    EXPECT_TRUE(space->ranges->wordAddressing);
    EXPECT_EQ(space->ranges->blockByteSize, 2048u);
}

TEST_F(SpaceSizes, AreTheSameWhenASpaceIsFinishedAgain) {
    map.map("cpu", "ARM");
    AddressSpaceDefType* space = ram(0x1000, 0x2FFF, "RAMB16", {"a[15:8] b[7:0]", "c[15:8] d[7:0]"});
    EXPECT_EQ(finish(space), "0:");
    const std::string once = dumpSpace(space);
    EXPECT_EQ(finish(space), "0:");
    EXPECT_EQ(dumpSpace(space), once);
}

TEST_F(SpaceSizes, ASpaceBelowItsDeclaredSizeIsReported) {
    EXPECT_EQ(finish(ram(0, 0x1FFF, "RAMB16", {"a[15:8] b[7:0]"})),
        "3: ERROR:Lanefill:29 - Inconsistent address space size in ADDRESS_SPACE 'ram'.\n"
        "    ADDRESS_SPACE was defined as 0x00002000 bytes, but the ADDRESS_RANGE total is 0x00001000 bytes.\n");
}

TEST_F(SpaceSizes, UnderWordAddressingBothSizesAreInWords) {
    EXPECT_EQ(finish(words(0, 0x7FF, "RAMB16", {"a[15:0]"})),
        "3: ERROR:Lanefill:29 - Inconsistent address space size in ADDRESS_SPACE 'ram'.\n"
        "    ADDRESS_SPACE was defined as 0x00000800 bytes, but the ADDRESS_RANGE total is 0x00000400 bytes.\n");
}

TEST_F(SpaceSizes, AFailingRangeEndsTheWalkAndItsSpaceIsNotCompared) {
    AddressSpaceDefType* space = map.space(
        "ram", 0, {{"RAMB4", {"a[15:8]"}}, {"RAMB16", {"b[15:8]"}}}, {.endAddress = 0xFFFF, .finished = false});
    EXPECT_EQ(finish(space), "3: ERROR:Lanefill:19 - Bit lane GAP before Bit Lane, in ADDRESS_SPACE 'ram'.\n"
                             "    'a [15:8]'\n");
}

TEST_F(SpaceSizes, ASpaceWithoutRangesHasNoBytes) {
    AddressSpaceDefType* space = map.space("ram", 0, std::vector<RangeText>{}, {.endAddress = 0xF, .finished = false});
    EXPECT_EQ(finish(space),
        "3: ERROR:Lanefill:29 - Inconsistent address space size in ADDRESS_SPACE 'ram'.\n"
        "    ADDRESS_SPACE was defined as 0x00000010 bytes, but the ADDRESS_RANGE total is 0x00000000 bytes.\n");
    EXPECT_EQ(finish_addressSpace_data(nullptr), 3);
}

TEST_F(SpaceSizes, RelativePathsComeFromTheFirstLane) {
    AddressSpaceDefType* space = ram(0, 0xFFF, "RAMB16", {"a[15:8] */ b[7:0] */"});
    EXPECT_EQ(finish(space), "0:");
    EXPECT_TRUE(space->ranges->hasRelativePaths);
    EXPECT_TRUE(space->hasRelativePaths);
}

TEST_F(SpaceSizes, AGenericMemoryTakesItsSizeFromTheSpace) {
    map.define("MEMORY", 0, {8, 16});
    AddressSpaceDefType* space = ram(0x100, 0x100 + 0x800 - 1, "MEMORY", {"a[15:8][0:0] b[7:0][0:0]"});
    EXPECT_EQ(finish(space), "0:");
    EXPECT_EQ(space->ranges->memory->type->dataBits, 0x400u * 8);
    EXPECT_EQ(space->ranges->wordsPerDevice, 0x400u);
    EXPECT_EQ(map.lane("a")->wordCount, 0x400u);
    EXPECT_EQ(map.lane("b")->addressHigh, 0x3FFu);
    EXPECT_EQ(map.lane("b")->lane->addressHigh, 0x3FFu);
}

TEST_F(SpaceSizes, BlocksOfAGenericMemoryFollowOneAnother) {
    map.define("MEMORY", 0, {8});
    AddressSpaceDefType* space = ram(0, 0x7FF, "MEMORY", {"a[7:0][0:0]", "b[7:0][0:0]"});
    EXPECT_EQ(finish(space), "0:");
    EXPECT_EQ(map.lane("b")->addressLow, 0x400u);
    EXPECT_EQ(map.lane("b")->addressHigh, 0x7FFu);
}

TEST_F(SpaceSizes, LanesOfAGenericMemoryWithATypeOfTheirOwnGetTheSizeToo) {
    map.define("MEMORY", 0, {8});
    MEMORYLocType* own = map.define("MEMORY", 0, {8});
    MEMORYLocType* user = map.define("mine", 16, {8});
    AddressSpaceDefType* space = ram(0, 0x7FF, "MEMORY", {"a[15:8][0:0] b[7:0][0:9]"});
    map.lane("a")->lane->memory = own;
    map.lane("b")->lane->memory = user;
    EXPECT_EQ(finish(space), "0:");
    EXPECT_EQ(own->type->dataBits, 0x400u * 8);
    EXPECT_EQ(user->type->dataBits, 16u * 8); // a type that a map defines has its size
    EXPECT_EQ(map.lane("b")->addressHigh, 9u);
}

TEST_F(SpaceSizes, AnInstanceOfAGenericTemplateIsAsLargeAsTheTemplate) {
    map.define("MEMORY", 0, {8});
    AddressSpaceDefType* original = map.space(
        "t", 0, "MEMORY", {"a[15:8][0:0] b[7:0][0:0]"}, {.endAddress = 0x7FF, .isTemplate = true, .finished = false});
    EXPECT_EQ(finish(original), "0:");
    memdata::OwnedSpace copy;
    EXPECT_EQ(said(dup_addressSpace_element(nullptr, map.spaceNames(), map.map(nullptr), original, nullptr, 0x1000,
                  0x17FF, "u/", false, copy.out())),
        "0:");
    EXPECT_EQ(original->ranges->memory->type->dataBits, 0x400u * 8);
    EXPECT_EQ(copy->ranges->endAddress, 0x17FFu);
}

TEST_F(SpaceSizes, AGenericMemorySharedUnevenlyLosesItsRest) {
    map.define("MEMORY", 0, {8});
    EXPECT_EQ(finish(ram(0, 0x800, "MEMORY", {"a[15:8] b[7:0]"})),
        "3: ERROR:Lanefill:29 - Inconsistent address space size in ADDRESS_SPACE 'ram'.\n"
        "    ADDRESS_SPACE was defined as 0x00000801 bytes, but the ADDRESS_RANGE total is 0x00000800 bytes.\n");
}

TEST_F(SpaceSizes, DevicesWithoutAWordAreRefused) {
    map.define("MEMORY", 0, {8});
    map.define("tiny", 1, {8, 16});
    AddressSpaceDefType* space = map.space("ram", 0, {{"MEMORY", {"a[15:8][0:0] b[7:0][0:0]"}}, {"RAMB4", {"c[7:0]"}}},
        {.endAddress = 0xFFF, .finished = false});
    EXPECT_EQ(finish(space), kNO_ROOM); // 1 address for 2 devices
    EXPECT_EQ(said(finish_addressSpace_data(
                  map.space("ram2", 0, "tiny", {"d[15:0][0:0]"}, {.endAddress = 0, .finished = false}))),
        "3: ERROR:Lanefill:86 - The devices of ADDRESS_SPACE 'ram2' have no room for a word of their lanes.\n");
}

TEST_F(SpaceSizes, AnAllOutGenericSizeIsRefused) {
    map.define("MEMORY", 0, {8});
    EXPECT_EQ(finish(ram(1, UINT64_MAX, "MEMORY", {"a[7:0]"})), kTOO_MANY_ADDRESSES);
}

TEST_F(SpaceSizes, ASizeAbove64BitsIsRefused) {
    map.define("huge", UINT64_MAX / 8, {8});
    EXPECT_EQ(finish(ram(0, 0xFFF, "huge",
                  {"a[15:8][0:1] b[7:0][0:1] c[23:16][0:1] d[31:24][0:1] e[39:32][0:1] "
                   "f[47:40][0:1] g[55:48][0:1] h[63:56][0:1] i[71:64][0:1]"})),
        kTOO_MANY_ADDRESSES);
}

TEST_F(SpaceSizes, AddressesThatWrapAreRefused) {
    EXPECT_EQ(finish(ram(UINT64_MAX - 0xFFE, UINT64_MAX, "RAMB16", {"a[15:8] b[7:0]"})), kTOO_MANY_ADDRESSES);
}

TEST_F(SpaceSizes, ABlockBehindTheLastAddressIsRefused) {
    EXPECT_EQ(finish(ram(UINT64_MAX - 0x7FF, UINT64_MAX, "RAMB16", {"a[7:0]", "b[7:0]"})), kTOO_MANY_ADDRESSES);
}

TEST_F(SpaceSizes, ASpaceMayEndAtTheLastAddress) {
    AddressSpaceDefType* space = ram(UINT64_MAX - 0xFFF, UINT64_MAX, "RAMB16", {"a[7:0]", "b[7:0]"});
    EXPECT_EQ(finish(space), "0:");
    EXPECT_EQ(space->ranges->endAddress, UINT64_MAX);
}

TEST_F(SpaceSizes, ABlockWithoutDataLanesIsRefused) {
    const char* refused = "3: ERROR:Lanefill:86 - A BUS_BLOCK of ADDRESS_SPACE 'ram' has no data lanes.\n";
    EXPECT_EQ(finish(ram(0, 0x7FF, "RAMB16", {"a[7:0]", ""})), refused);
    map.destroy();
    TestMap other;
    EXPECT_EQ(finish(other.space("ram", 0, "RAMB16", {"e[6:0] ECCH32-7"}, {.endAddress = 0x7FF, .finished = false})),
        refused);
}

TEST_F(SpaceSizes, ALaneWhoseWidthPasses64BitsDividesNothing) {
    AddressSpaceDefType* space = ram(0, 0x7FF, "RAMB16", {"a[7:0]"});
    printWidths(space, "8");
    BitLaneGridElemType* element = map.lane("a");
    element->bitHigh = UINT64_MAX;
    element->laneWidth = 0; // what bitHigh + 1 - bitLow gives
    EXPECT_EQ(finish(space), "3: ERROR:Lanefill:26 - Illegal bit lane width in ADDRESS_SPACE 'ram'.\n"
                             "    'a [-1:0]' is 0 bits wide. Only 8 bit widths are allowed for this device.\n"
                             " ERROR:Lanefill:86 - Illegal bus bit in ADDRESS_SPACE 'ram'.\n"
                             "    'a [-1:0]'\n"
                             "    The highest bit of a bus is 2047.\n");
}

TEST_F(SpaceSizes, WithoutMemoryNothingIsLeftBehind) {
    map.map("cpu", "ARM");
    AddressSpaceDefType* space = ram(0, 0x1FFF, "RAMB16", {"a[15:8] b[7:0]", "c[15:8] d[7:0]"});
    const auto sweep = sweepAllocationFaults([&] {
        const int status = finish_addressSpace_data(space);
        for (u64 i = 0; i < 2; ++i) forgetOrder(space->ranges->busBlocks[i]);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.faultCount, 4u); // the bits and the written order of each block
}

TEST_F(SpaceSizes, MissingMemoryIsReportedWhereItWasNeeded) {
    map.map("cpu", "ARM");
    AddressSpaceDefType* space = ram(0, 0xFFF, "RAMB16", {"a[15:8] b[7:0]"});
    const char* const objects[] = {"'bitUsageArray' object of 256 bytes", "'bitLaneArray' object of 16 bytes"};
    for (u64 i = 0; i < 2; ++i) {
        memdata::failTrackedAllocation(i + 1);
        const std::string text = finish(space);
        EXPECT_EQ(text.find("7: FATAL:Lanefill:44 - Out of memory allocating"), 0u) << text;
        EXPECT_NE(text.find(objects[i]), text.npos) << text;
    }
}

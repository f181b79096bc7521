// block_checks_test.cpp - the blocks of a range against each other and against the range.
// SPDX-License-Identifier: Apache-2.0
#include "validation_fixture.h"

using namespace memdata::testing;

namespace {

class BlockChecks : public ValidationTest {
protected:
    // Finished and sound: a test makes one thing wrong and checks again.
    AddressSpaceDefType* sound(const std::vector<std::string>& blocks, u64 end = 0x1FFF) {
        AddressSpaceDefType* space = ram(0, end, "RAMB16", blocks);
        EXPECT_EQ(finish(space), "0:");
        return space;
    }
    std::string check(AddressSpaceDefType* space) { return said(check_busBlock_addresses(space, space->ranges)); }
};

} // namespace

TEST_F(BlockChecks, SoundBlocksPass) {
    EXPECT_EQ(check(sound({"a[15:8] b[7:0]", "c[15:8] d[7:0]"})), "0:");
}

TEST_F(BlockChecks, AGapInWhatAMapWritesOnlyShowsInTheSize) {
    // The addresses of blocks are computed: none can be written for the second one.
    EXPECT_EQ(finish(ram(0, 0x2FFF, "RAMB16", {"a[15:8] b[7:0]", "c[15:8] d[7:0]"})),
        "3: ERROR:Lanefill:29 - Inconsistent address space size in ADDRESS_SPACE 'ram'.\n"
        "    ADDRESS_SPACE was defined as 0x00003000 bytes, but the ADDRESS_RANGE total is 0x00002000 bytes.\n");
}

TEST_F(BlockChecks, BlocksOfDifferentPathsAreReported) {
    EXPECT_EQ(finish(ram(0, 0x1FFF, "RAMB16", {"a[15:8] b[7:0]", "c[15:8] */ d[7:0] */"})),
        "3: ERROR:Lanefill:95 - Inconsistent instance path 'c', in ADDRESS_SPACE 'ram'.\n"
        "    All instance paths in an ADDRESS_SPACE must be either relative or absolute\n");
}

TEST_F(BlockChecks, BlocksOfDifferentSizesAreReportedAsPaths) {
    EXPECT_EQ(finish(ram(0, 0x17FF, "RAMB16", {"a[15:8] b[7:0]", "c[7:0]"})),
        "3: ERROR:Lanefill:95 - Inconsistent instance path 'in one or more BUS_BLOCKs', in ADDRESS_SPACE 'ram'.\n"
        "    All instance paths in an ADDRESS_SPACE must be either relative or absolute\n");
}

TEST_F(BlockChecks, ABlockThatBeginsTooLateIsAGap) {
    AddressSpaceDefType* space = sound({"a[15:8] b[7:0]", "c[15:8] d[7:0]"});
    space->ranges->busBlocks[1]->startAddress += 0x1000;
    EXPECT_EQ(check(space), "3: ERROR:Lanefill:22 - Address GAP in ADDRESS_SPACE 'ram'.\n"
                            "    'ADDRESS_RANGE [0x00000000:0x00000FFF]'\n"
                            "    'ADDRESS_RANGE [0x00002000:0x00001FFF]'\n");
}

TEST_F(BlockChecks, ABlockThatBeginsTooEarlyIsAnOverlap) {
    AddressSpaceDefType* space = sound({"a[15:8] b[7:0]", "c[15:8] d[7:0]"});
    space->ranges->busBlocks[1]->startAddress -= 4;
    EXPECT_EQ(check(space), "3: ERROR:Lanefill:23 - Address OVERLAP in ADDRESS_SPACE 'ram'.\n"
                            "    'ADDRESS_RANGE [0x00000000:0x00000FFF]'\n"
                            "    'ADDRESS_RANGE [0x00000FFC:0x00001FFF]'\n");
}

TEST_F(BlockChecks, EveryPairWithBadLanesIsReportedAndTheLastBlockIsNotLookedAt) {
    EXPECT_EQ(finish(ram(0, 0x37FF, "RAMB16", {"a[15:8]", "b[7:0]", "c[15:8]", "d[15:8]"})),
        "3: ERROR:Lanefill:19 - Bit lane GAP before Bit Lane, in ADDRESS_SPACE 'ram'.\n"
        "    'a [15:8]'\n"
        " ERROR:Lanefill:19 - Bit lane GAP before Bit Lane, in ADDRESS_SPACE 'ram'.\n"
        "    'c [15:8]'\n");
}

TEST_F(BlockChecks, TheLastBlocksLanesAreCheckedToo) {
    EXPECT_EQ(finish(ram(0, 0x1FFF, "RAMB16", {"a[15:8] b[7:0]", "c[8:1] d[16:9]"})),
        "3: ERROR:Lanefill:19 - Bit lane GAP before Bit Lane, in ADDRESS_SPACE 'ram'.\n"
        "    'c [8:1]'\n");
}

TEST_F(BlockChecks, AGenericMemoryMustHoldWholeBusWords) {
    map.define("MEMORY", 0, {16});
    EXPECT_EQ(finish(ram(0, 0x801, "MEMORY", {"a[31:16] b[15:0]"})),
        "3: ERROR:Lanefill:41 - Illegal MEMORY address space size for ADDRESS_SPACE 'ram' (0x00000802 bytes).\n"
        "    Size must be an even multiple of the BUS_BLOCK bus widths (0x00000004 bytes).\n");
}

TEST_F(BlockChecks, AUsersMemoryMayEndInsideABusWord) {
    map.define("mine", 0x401, {16});
    EXPECT_EQ(finish(ram(0, 0x801, "mine", {"a[31:16] b[15:0]"})), "0:");
}

TEST_F(BlockChecks, ARangeThatIsNotAsLargeAsItsBlocksIsReported) {
    AddressSpaceDefType* space = sound({"a[15:8] b[7:0]", "c[15:8] d[7:0]"});
    space->ranges->endAddress = 0x123456789;
    EXPECT_EQ(check(space),
        "3: ERROR:Lanefill:93 - Inconsistent address range size in ADDRESS_RANGE 'ram'.\n"
        "    ADDRESS_RANGE was defined as 0x12345678A bytes, but the devices total 0x000002000 bytes.\n");
}

TEST_F(BlockChecks, TheRangesPathsAreThoseOfItsFirstBlock) {
    AddressSpaceDefType* space = sound({"a[15:8] b[7:0]"}, 0xFFF);
    space->ranges->busBlocks[0]->hasRelativePaths = true;
    EXPECT_EQ(check(space), "0:");
    EXPECT_TRUE(space->ranges->hasRelativePaths);
}

TEST_F(BlockChecks, NullArgumentsGiveThree) {
    AddressSpaceDefType* space = sound({"a[15:8] b[7:0]"}, 0xFFF);
    EXPECT_EQ(check_busBlock_addresses(nullptr, space->ranges), 3);
    EXPECT_EQ(check_busBlock_addresses(space, nullptr), 3);
}

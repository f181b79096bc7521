// transform_buffers_test.cpp - the buffers of ranges and the slivers of their devices.
// SPDX-License-Identifier: Apache-2.0
#include "model_fixture.h"
#include "support/alerts.h"

using namespace memdata::testing;

namespace {

using TransformBuffers = ModelTest;

// "data/parity" positions of a lane in its range's buffer; "-" where there is none.
std::string slivers(const TestMap& map, const char* name) {
    const BitLaneType* lane = map.lane(name)->lane;
    const u8* base = lane->addressSpace->ranges->transformBuffer;
    const auto at = [&](const u8* p) { return p == nullptr ? "-" : std::to_string(p - base); };
    return at(lane->dataSliver) + "/" + at(lane->paritySliver);
}

} // namespace

TEST_F(TransformBuffers, DataLanesComeFirstInEachBlockThenItsCheckLanes) {
    TestMap map;
    AddressSpaceDefType* space =
        map.space("ram", 0, "RAMB16", {"e0[22:16] ECCH32-7 a0[15:8] b0[7:0]", "a1[15:8] b1[7:0] e1[22:16] ECCH32-7"});
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_EQ(slivers(map, "a0"), "0/2048");
    EXPECT_EQ(slivers(map, "b0"), "2304/4352");
    EXPECT_EQ(slivers(map, "e0"), "4608/6656");
    EXPECT_EQ(slivers(map, "a1"), "6912/8960");
    EXPECT_EQ(slivers(map, "b1"), "9216/11264");
    EXPECT_EQ(slivers(map, "e1"), "11520/13568");
}

TEST_F(TransformBuffers, ADeviceWithoutParityGetsNoParitySliver) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[15:8] b[7:0]"});
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_EQ(slivers(map, "a"), "0/-");
    EXPECT_EQ(slivers(map, "b"), "512/-");
}

TEST_F(TransformBuffers, EachLaneIsSizedByItsOwnMemory) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[15:8] RAMB36 b[7:0]"});
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_EQ(slivers(map, "a"), "0/4096");
    EXPECT_EQ(slivers(map, "b"), "4608/-");
}

TEST_F(TransformBuffers, AreFilledWithZeros) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0]"});
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_EQ(dumpData(space), "");
    map.lane("b")->lane->dataSliver[2] = 0x5A;
    map.lane("b")->lane->dataSliver[4] = 0x0B;
    map.lane("b")->lane->dataSliver[13] = 0xFF;
    map.lane("a")->lane->paritySliver[255] = 0x80;
    EXPECT_EQ(dumpData(space), "parity a 255: 80\nlane b 2: 5A 00 0B\nlane b 13: FF\n");
}

TEST_F(TransformBuffers, ASecondCallAllocatesNothing) {
    TestMap map;
    AddressSpaceDefType* space = map.space("mix", 0, {{"RAMB16", {"a[7:0]"}}, {"RAMB36", {"b[7:0]"}}});
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    const u64 count = memdata::trackedAllocationCount();
    const u8* buffer = space->ranges->transformBuffer;
    EXPECT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_EQ(memdata::trackedAllocationCount(), count);
    EXPECT_EQ(space->ranges->transformBuffer, buffer);
}

TEST_F(TransformBuffers, ARangeIsOneAllocationOfItsDevices) {
    TestMap map;
    AddressSpaceDefType* space = map.space("mix", 0, {{"RAMB16", {"a[7:0]", "b[7:0]"}}, {"RAMB36", {"c[7:0]"}}});
    const u64 count = memdata::trackedAllocationCount();
    const u64 bytes = getCurrentMemoryUsage();
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_EQ(memdata::trackedAllocationCount() - count, 2u);
    EXPECT_EQ(getCurrentMemoryUsage() - bytes, 2u * 2304 + 4608);
    EXPECT_STREQ(gMemoryBlockList.tail->description, "'std::uint8_t' data");
}

TEST_F(TransformBuffers, ARangeWithoutBlocksGetsABufferOfNoBytes) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {});
    EXPECT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_NE(space->ranges->transformBuffer, nullptr);
}

TEST_F(TransformBuffers, ABlockWithoutLanesIsPassed) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"", "a[7:0]"});
    EXPECT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_EQ(slivers(map, "a"), "0/2048");
}

TEST_F(TransformBuffers, BlocksOfUnequalLaneCountsEachGetWhatTheyHave) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]", "b[15:8] c[7:0]", "d[7:0]"});
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_EQ(slivers(map, "a"), "0/-");
    EXPECT_EQ(slivers(map, "c"), "1024/-");
    EXPECT_EQ(slivers(map, "d"), "1536/-");
}

TEST_F(TransformBuffers, ReleaseClearsEveryRangeAndEverySliver) {
    TestMap map;
    AddressSpaceDefType* space = map.space("mix", 0, {{"RAMB16", {"a[7:0] e[14:8] ECCH32-7"}}, {"RAMB36", {"b[7:0]"}}});
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_TRUE(deallocate_addressSpace_transform_buffers(space));
    EXPECT_EQ(space->ranges->transformBuffer, nullptr);
    EXPECT_EQ(space->ranges->next->transformBuffer, nullptr);
    for (const char* name : {"a", "e", "b"}) {
        EXPECT_EQ(map.lane(name)->lane->dataSliver, nullptr) << name;
        EXPECT_EQ(map.lane(name)->lane->paritySliver, nullptr) << name;
    }
    EXPECT_TRUE(deallocate_addressSpace_transform_buffers(space));
}

TEST_F(TransformBuffers, ReleaseTakesWhatPointsIntoTheBuffer) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0]"});
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    BitLaneType* lane = map.lane("a")->lane;
    lane->dataChunks = new BufferChunkAccess(lane->dataSliver, 16384, 16384, kBIT_LANE_ORDER, 0, 8);
    lane->transformRanges = lane->currentRange = NEW_RECORD(TransformRangeType);
    deallocate_addressSpace_transform_buffers(space);
    EXPECT_EQ(lane->dataChunks, nullptr);
    EXPECT_EQ(lane->transformRanges, nullptr);
    EXPECT_EQ(lane->currentRange, nullptr);
}

TEST_F(TransformBuffers, ASpaceWithoutRangesHasNothingToRelease) {
    TestMap map;
    AddressSpaceDefType* space = map.space("bare", 0, std::vector<RangeText>{});
    EXPECT_TRUE(allocate_addressSpace_transform_buffers(space));
    EXPECT_TRUE(deallocate_addressSpace_transform_buffers(space));
    EXPECT_TRUE(deallocate_addressSpace_transform_buffers(nullptr));
    EXPECT_FALSE(allocate_addressSpace_transform_buffers(nullptr));
}

TEST_F(TransformBuffers, AMappingReleasesThoseOfAllClassesAlsoBehindAnEmptyMap) {
    TestMap map;
    map.define("MEMORY", 0x1000, {8, 16, 32});
    map.map("one");
    plainSpace(map, "a", 0x0000, 0x0FFF);
    map.map("empty");
    map.map("two");
    plainSpace(map, "b", 0x0000, 0x0FFF, "MEMORY");
    for (const char* name : {"one.a", "two.b"}) allocate_addressSpace_transform_buffers(map.link(name)->space);
    EXPECT_TRUE(deallocate_bmm_transform_buffers(map.get()));
    for (const char* name : {"one.a", "two.b"})
        EXPECT_EQ(map.link(name)->space->ranges->transformBuffer, nullptr) << name;
    EXPECT_TRUE(deallocate_bmm_transform_buffers(nullptr));
}

TEST_F(TransformBuffers, AFailedAllocationReleasesAllBuffersOfTheSpace) {
    TestMap map;
    AddressSpaceDefType* space = map.space("mix", 0, {{"RAMB16", {"a[7:0]"}}, {"RAMB36", {"b[7:0]"}}});
    CapturedAlerts alerts;
    const u64 bytes = getCurrentMemoryUsage();
    for (u64 n = 1; n <= 2; ++n) {
        memdata::failTrackedAllocation(n);
        EXPECT_FALSE(allocate_addressSpace_transform_buffers(space));
        memdata::failTrackedAllocation(0);
        EXPECT_EQ(getCurrentMemoryUsage(), bytes);
        EXPECT_EQ(space->ranges->transformBuffer, nullptr);
        EXPECT_EQ(map.lane("a")->lane->dataSliver, nullptr);
    }
    EXPECT_TRUE(allocate_addressSpace_transform_buffers(space));
}

TEST_F(TransformBuffers, DevicesThatNoMemoryHoldsAreRefused) {
    TestMap map;
    map.define("huge", u64{1} << 60, {8});
    AddressSpaceDefType* space = map.space("ram", 0, "huge",
        {"a[7:0] b[7:0] c[7:0] d[7:0] e[7:0] f[7:0] g[7:0] h[7:0] i[7:0] j[7:0] k[7:0] l[7:0] m[7:0] n[7:0] o[7:0] p[7:0]"});
    CapturedAlerts alerts;
    EXPECT_FALSE(allocate_addressSpace_transform_buffers(space)); // the sum passes 64 bits
    EXPECT_EQ(map.lane("a")->lane->dataSliver, nullptr);
}

TEST_F(TransformBuffers, TheSizeOfAListAddsToATotal) {
    TestMap map;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0]"});
    const BusBlockType* block = space->ranges->busBlocks[0];
    EXPECT_EQ(get_bitLane_list_BRAM_byte_size(block->lanes, 2, 100), 100u + 2 * 2304);
    EXPECT_EQ(get_bitLane_list_BRAM_byte_size(block->lanes, 0, 100), 100u);
    EXPECT_EQ(get_bitLane_list_BRAM_byte_size(nullptr, 2, 100), 100u);
}

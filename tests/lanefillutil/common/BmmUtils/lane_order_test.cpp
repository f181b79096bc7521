// lane_order_test.cpp - the lanes of little-endian processors, turned from written to processing order.
// SPDX-License-Identifier: Apache-2.0
#include "validation_fixture.h"

using namespace memdata::testing;

namespace {

const char* const kFOUR_BYTES = "3[31:24] 2[23:16] 1[15:8] 0[7:0]";
const char* const kEIGHT_NIBBLES = "0[31:28] 1[27:24] 2[23:20] 3[19:16] 4[15:12] 5[11:8] 6[7:4] 7[3:0]";

struct OrderCase {
    const char* name;
    const char* processor;
    const char* memory;
    u64 bytes;
    const char* lanes;
    const char* order;   // of lanes
    const char* written; // of writtenLanes; empty when there is none
    u64 pitch;
    bool applied;
};
void PrintTo(const OrderCase& c, std::ostream* out) {
    *out << c.name;
}

class LaneOrder : public ValidationTest, public ::testing::WithParamInterface<OrderCase> {};

std::string names(const BitLaneArrayType* lanes, u64 count) {
    std::string text;
    for (u64 i = 0; lanes != nullptr && i < count; ++i) text += lanes[i]->lane->name;
    return text;
}

} // namespace

TEST_P(LaneOrder, IsAsTheProcessorNeedsIt) {
    const OrderCase& c = GetParam();
    map.map("cpu", c.processor);
    AddressSpaceDefType* space = ram(0, c.bytes - 1, c.memory, {c.lanes});
    EXPECT_EQ(finish(space), "0:");
    const BusBlockType* block = space->ranges->busBlocks[0];
    EXPECT_EQ(names(block->lanes, block->laneCount), c.order);
    EXPECT_EQ(names(block->writtenLanes, block->laneCount), c.written);
    EXPECT_EQ(block->lanePitch, c.pitch);
    EXPECT_EQ(space->leLaneOrderApplied, c.applied);
}

INSTANTIATE_TEST_SUITE_P(All, LaneOrder,
    ::testing::Values(OrderCase{"bytes", "ARM", "RAMB16", 8192, kFOUR_BYTES, "0123", "3210", 0, true},
        OrderCase{"nibbles", "ARM", "RAMB16", 16384, kEIGHT_NIBBLES, "67452301", "01234567", 0, true},
        OrderCase{"riscv", "RISCV", "RAMB16", 8192, kFOUR_BYTES, "0123", "3210", 0, true},
        OrderCase{"kestrel_le", "KESTREL-LE", "RAMB16", 8192, kFOUR_BYTES, "0123", "3210", 0, true},
        OrderCase{"kestrel", "KESTREL", "RAMB16", 8192, kFOUR_BYTES, "3210", "", 0, false},
        OrderCase{"configprom", "CONFIGPROM", "RAMB16", 8192, kFOUR_BYTES, "3210", "", 0, false},
        OrderCase{"words", "ARM", "RAMB16", 4096, "1[31:16] 0[15:0]", "01", "10", 16, true},
        OrderCase{"one_word", "ARM", "RAMB16", 2048, "0[31:0]", "0", "", 32, true},
        OrderCase{"one_byte", "ARM", "RAMB16", 2048, "0[7:0]", "0", "", 0, true},
        OrderCase{"one_byte_of_bits", "ARM", "RAMB16", 8192, "0[7:6] 1[5:4] 2[3:2] 3[1:0]", "0123", "0123", 0, true},
        OrderCase{"with_parity", "ARM", "RAMB18", 9216, "3[35:27] 2[26:18] 1[17:9] 0[8:0]", "3210", "", 0, false},
        OrderCase{"half_a_byte", "ARM", "RAMB16", 4096, "1[3:2] 0[1:0]", "10", "", 0, false},
        OrderCase{"eight_parity_bytes", "ARM", "RAMB18", 18432,
            "0[71:63] 1[62:54] 2[53:45] 3[44:36] 4[35:27] 5[26:18] 6[17:9] 7[8:0]", "76543210", "01234567", 9, true}),
    [](const auto& test) { return test.param.name; });

using LaneOrderTest = ValidationTest;

TEST_F(LaneOrderTest, EveryBlockIsTurnedOnce) {
    map.map("cpu", "ARM");
    AddressSpaceDefType* space = ram(0, 0x1FFF, "RAMB16", {"a[15:8] b[7:0]", "c[15:8] d[7:0]"});
    EXPECT_EQ(finish(space), "0:");
    const AddressRangeDefType* range = space->ranges;
    EXPECT_EQ(names(range->busBlocks[0]->lanes, 2), "ba");
    EXPECT_EQ(names(range->busBlocks[1]->lanes, 2), "dc");
    EXPECT_EQ(said(le_bmm_order_hack(space, space->ranges, range->busBlocks[0])), "0:");
    EXPECT_EQ(names(range->busBlocks[0]->lanes, 2), "ba");
}

TEST_F(LaneOrderTest, CheckLanesStay) {
    map.map("cpu", "ARM");
    AddressSpaceDefType* space = ram(0, 0xFFF, "RAMB16", {"x[19:16] ECCH32-7 y[22:20] ECCH32-7 a[15:8] b[7:0]"});
    EXPECT_EQ(finish(space), "0:");
    EXPECT_EQ(names(space->ranges->busBlocks[0]->eccLanes, 2), "xy");
}

TEST_F(LaneOrderTest, LanesThatMakeNoWholeBytesStay) {
    map.map("cpu", "ARM");
    AddressSpaceDefType* space = ram(0, 0xFFF, "RAMB16", {"a[15:8] b[7:0]"});
    for (const u64 laneWidth : {1u, 3u, 5u, 0u}) { // a bus of 16 bits would need more lanes, or there is no width
        BusBlockType* block = space->ranges->busBlocks[0];
        space->ranges->busWidth = 160;
        space->ranges->laneWidth = laneWidth;
        EXPECT_EQ(said(le_bmm_order_hack(space, space->ranges, block)), "0:");
        EXPECT_EQ(names(block->lanes, 2), "ab") << laneWidth;
        releaseMemory(block->writtenLanes);
        block->writtenLanes = nullptr;
    }
    EXPECT_EQ(le_bmm_order_hack(nullptr, space->ranges, space->ranges->busBlocks[0]), 3);
    EXPECT_EQ(le_bmm_order_hack(space, nullptr, space->ranges->busBlocks[0]), 3);
    EXPECT_EQ(le_bmm_order_hack(space, space->ranges, nullptr), 3);
}

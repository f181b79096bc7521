// frame_sizes_test.cpp - bytes that a device's frames take of its configuration stream.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/frame_sizes.h"

#include "SystemUtils/lifetime.h"
#include "all_devices.h"

namespace {

using memdata::blockRamBytes;
using memdata::blockRamColumnBytes;
using memdata::frameDataBytes;

class FrameSizes : public ::testing::Test {
private:
    memdata::SystemResources resources_;
};

TEST_F(FrameSizes, ATarsel7ColumnTakes128FramesAndTheGapBehindItsGroup) {
    const TarselDeviceType* device = get_device_record_by_name("tq7a5");
    EXPECT_EQ(blockRamColumnBytes(device, 0), 51712u);
    EXPECT_EQ(blockRamColumnBytes(device, 1), 51712u + 808);
    EXPECT_EQ(blockRamColumnBytes(device, 3), 51712u);
    EXPECT_EQ(blockRamColumnBytes(device, 4), 0u);
    EXPECT_EQ(blockRamBytes(device), 4 * 51712u + 808);
    EXPECT_EQ(frameDataBytes(device), 4096u * 404 + 4 * 51712u + 808);
}

TEST_F(FrameSizes, AColumnWithoutFramesTakesTheGapAlone) {
    const TarselDeviceType* device = get_device_record_by_name("tq7b150"); // X13Y80 to X13Y89: the end of a group
    u32 found = 0;
    for (u32 column = 0; column < device->physicalColumns; ++column)
        found += blockRamColumnBytes(device, column) == 808;
    EXPECT_EQ(found, 1u);
}

TEST_F(FrameSizes, ADunmare6PairTakesItsFramesAndOneMore) {
    const TarselDeviceType* device = get_device_record_by_name("td6a24");
    EXPECT_EQ(blockRamColumnBytes(device, 0), 32u * 36);
    EXPECT_EQ(blockRamColumnBytes(device, 1), 32u * 36 + 36);
}

TEST_F(FrameSizes, DevicesWithoutArraysTakeWholeColumns) {
    const TarselDeviceType* device = get_device_record_by_name("tq2a60");
    EXPECT_EQ(blockRamBytes(device), u64{64} * device->bramFrameBits / 8 * device->physicalColumns);
}

TEST_F(FrameSizes, EachDieHasItsOwnFrames) {
    const TarselDeviceType* device = get_device_record_by_name("tq7b1000");
    EXPECT_EQ(frameDataBytes(device) - blockRamBytes(device), u64{4} * device->bramFrameOffset * 404);
    EXPECT_GT(frameDataBytes(device), 100'000'000u);
}

TEST_F(FrameSizes, AnUnknownOffsetLeavesTheStreamUnknown) {
    EXPECT_EQ(frameDataBytes(get_device_record_by_name("tq1a8")), 0u);
    EXPECT_EQ(frameDataBytes(get_device_record_by_name("tq6c67")), 0u);
}

} // namespace

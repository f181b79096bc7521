// burst_crc_test.cpp - the CRC of a burst that a second thread takes.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/burst_crc.h"

#include "BitFileUtils/frame_bursts.h"
#include "BitFileUtils/stream_crc.h"
#include "DeviceTableUtils/device_lookup.h"
#include "FileUtils/FileUtils.h"
#include "FileUtils/state.h"
#include "SystemUtils/lifetime.h"
#include "support/alerts.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

using namespace memdata;
using namespace memdata::testing;

namespace {

constexpr u32 kCOMMAND = 0x30004000; // a write of FDRI
constexpr u64 kWORDS = 600'000;

class BurstCrcs : public ::testing::Test {
protected:
    BurstCrcs() {
        for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * i / 100 + i);
        gFileState.smallestCopy = 1 << 20;
        gFileState.copiesOnOneProcessor = true;
    }
    ~BurstCrcs() override {
        abandonFile(&output);
        abandonFile(&input);
        copy.reset();
        DeleteFileSpec(&inputSpec);
        DeleteFileSpec(&outputSpec);
    }
    // A walk that stands ahead of the words.
    void begin(const char* device, bool isCopy = true) {
        inputSpec = CreateFileSpec(folder.write("in.bit", bytes).c_str());
        outputSpec = CreateFileSpec(folder.file("out.bit").c_str());
        if (isCopy) copy.emplace(inputSpec, outputSpec);
        ASSERT_EQ(Open_File(folder.file("in.bit").c_str(), kREAD_ACCESS | kBINARY_FILE, &input), 0);
        ASSERT_EQ(Open_File(folder.file("out.bit").c_str(), kWRITE_ACCESS | kBINARY_FILE, &output), 0);
        ASSERT_EQ(beginAsCopy(output, input), isCopy);
        walk.emplace(StreamWalk{input, output, nullptr, get_device_record_by_name(device), 0, &remaining, nullptr, 0});
        CRC_Reset(walk->device);
        gAccumulated_CRC = kSTART;
    }
    u32 expectedCrc() const {
        return crcOfWords(kSTART, walk->address(kCOMMAND), reinterpret_cast<const u8*>(bytes.data()), kWORDS);
    }

    static constexpr u32 kSTART = 0x12345678;
    SystemResources system;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    std::string bytes = std::string(kWORDS * 4 + 3, '\0');
    fileSpecType* inputSpec = nullptr;
    fileSpecType* outputSpec = nullptr;
    std::optional<CopiedOutput> copy;
    fileIODescriptor* input = nullptr;
    fileIODescriptor* output = nullptr;
    u32 remaining = 0;
    std::optional<StreamWalk> walk;
};

TEST_F(BurstCrcs, OfWordsThatStayIsThatOfTheWords) {
    begin("tq7a7");
    BurstCrc crc(*walk, kCOMMAND, kWORDS);
    ASSERT_EQ(walk->burstCrc, &crc);
    ASSERT_EQ(copyWords(*walk, kCOMMAND, kWORDS), 0);
    EXPECT_EQ(gAccumulated_CRC, +kSTART); // not yet
    EXPECT_EQ(crc.finish(), 0);
    EXPECT_EQ(gAccumulated_CRC, expectedCrc());
    EXPECT_EQ(GetFilePosition(output), kWORDS * 4);
}

TEST_F(BurstCrcs, OfWordsThatChangeIsThatOfTheNewOnes) {
    begin("tq7a7");
    {
        BurstCrc crc(*walk, kCOMMAND, kWORDS);
        ASSERT_NE(walk->burstCrc, nullptr);
        std::string changed = bytes.substr(0, 400'000);
        for (const u64 count : {40u, 399'960u}) { // buffered, and not
            ASSERT_EQ(inputBlock(input, changed.data(), count), 0);
            bytes.replace(GetFilePosition(output), count, count, 'x');
            changed.assign(count, 'x');
            ASSERT_EQ(writeWords(*walk, kCOMMAND, reinterpret_cast<const u8*>(changed.data()), count), 0);
        }
        ASSERT_EQ(copyWords(*walk, kCOMMAND, kWORDS - 100'000), 0);
        EXPECT_EQ(crc.finish(), 0);
    }
    EXPECT_EQ(walk->burstCrc, nullptr);
    EXPECT_EQ(gAccumulated_CRC, expectedCrc());
}

TEST_F(BurstCrcs, OfABurstThatIsGivenUpChangeNothing) {
    begin("tq7a7");
    {
        BurstCrc crc(*walk, kCOMMAND, kWORDS);
        ASSERT_EQ(copyWords(*walk, kCOMMAND, kWORDS / 2), 0);
    }
    EXPECT_EQ(walk->burstCrc, nullptr);
    EXPECT_EQ(gAccumulated_CRC, +kSTART);
}

TEST_F(BurstCrcs, ThatAreSmallAreLeftToTheWalk) {
    begin("tq7a7");
    BurstCrc crc(*walk, kCOMMAND, (1 << 18) - 1);
    EXPECT_EQ(walk->burstCrc, nullptr);
    EXPECT_EQ(crc.finish(), 0);
    EXPECT_EQ(gAccumulated_CRC, +kSTART);
}

TEST_F(BurstCrcs, OfOutputsThatAreNoCopiesAreLeftToTheWalk) {
    begin("tq7a7", false);
    const BurstCrc crc(*walk, kCOMMAND, kWORDS);
    EXPECT_EQ(walk->burstCrc, nullptr);
    ASSERT_EQ(copyWords(*walk, kCOMMAND, kWORDS), 0);
    EXPECT_EQ(gAccumulated_CRC, expectedCrc());
}

TEST_F(BurstCrcs, OfOtherChecksAreLeftToTheWalk) {
    begin("td6a24");
    const BurstCrc crc(*walk, kCOMMAND, kWORDS);
    EXPECT_EQ(walk->burstCrc, nullptr);
}

} // namespace

// bit_check_test.cpp - bit files compared with what they should be, where a comparison has to look closely.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "BitFileUtils/stream_state.h"
#include "bit_file_test.h"
#include "support/placed_map.h"

using namespace memdata;
using namespace memdata::testing;

namespace {

class BitCheck : public BitFileTest {
protected:
    StreamCheck check(const char* device, const Bytes& stream, AddressMappingType* map) {
        StreamCheck found;
        fileSpecType* input =
            CreateFileSpec(folder.write("top.bit", textOf(t4kBitFile({.partName = device}, stream))).c_str());
        EXPECT_EQ(checkBitFile(input, map, &found), 0) << alerts.text();
        DeleteFileSpec(&input);
        return found;
    }
};

} // namespace

TEST_F(BitCheck, PadBitsAheadOfAColumnAreEnteredInTheCrc) {
    PlacedMap map("tq1a8");
    map.add(sitesOf(map.device()).front(), 8);
    map.fill(1);
    for (const u8 head : std::initializer_list<u8>{0x00, 0x40, 0x80, 0xC0}) {
        StreamWriter stream(map.device());
        stream.sync();
        stream.write(reg::kFAR, map.device()->family->bramBlockType << map.device()->family->farFields[0].shift);
        Bytes frames(columnStart(map.device(), 1));
        frames[0] = head;
        stream.burst(reg::kFDRI, frames);
        stream.crcRegister();
        const StreamCheck found = check("tq1a8", stream.bytes(), map.get());
        EXPECT_EQ(found.crcWords, 1U);
        EXPECT_EQ(found.wrongCrcWords, 0U) << int{head};
        EXPECT_EQ(found.memories.comparedLanes, 1U);
    }
}

TEST_F(BitCheck, ACrcInOneShortWordIsTheLowHalfOfTheSum) {
    for (const char* device : {"td3a16", "td6a24"})
        for (const u32 wrongBits : {0x0000U, 0x0001U, 0x8000U}) {
            StreamWriter stream(get_device_record_by_name(device));
            stream.sync();
            stream.write(reg::kIDCODE, 0x12345678, 2);
            ASSERT_GT(stream.crc(), 0xFFFFU);
            stream.word(stream.form().command(2, 0, 1));
            stream.word((stream.crc() & 0xFFFF) ^ wrongBits);
            const StreamCheck found = check(device, stream.bytes(), nullptr);
            EXPECT_EQ(found.crcWords, 1U);
            EXPECT_EQ(found.wrongCrcWords, wrongBits != 0 ? 1U : 0U) << device;
        }
}

TEST_F(BitCheck, AnAutoCrcOfOneShortWordIsTheLowHalfOfTheSum) {
    StreamWriter stream(get_device_record_by_name("td3a16"));
    stream.sync();
    // Data whose sum has more than 16 bits, and low ones that no packet begins with.
    Bytes data(2);
    StreamCrc sum(get_device_record_by_name("td3a16")->family);
    const u32 address = stream.form().addressOf(reg::kFDRI).value();
    do {
        ++data[1];
        ASSERT_NE(data[1], 0);
        sum.reset();
        sum.enter(address, data[1]);
    } while (sum.value() <= 0xFFFF || (sum.value() & 0x3800) != 0);
    stream.burst(reg::kFDRI, data);
    stream.autoCrc();
    const StreamCheck found = check("td3a16", stream.bytes(), nullptr);
    EXPECT_EQ(found.crcWords, 1U);
    EXPECT_EQ(found.wrongCrcWords, 0U);
}

TEST_F(BitCheck, ADifferenceInParityAloneIsToldAsSuch) {
    const char* device = "td3a16";
    constexpr u32 kRAMB18 = 1; // among the kinds of its memories
    const BitRecipe recipe{.device = device};
    PlacedMap map(device);
    BitLaneType* lane = map.add(sitesOf(map.device(), kRAMB18).front(), 9);
    ASSERT_EQ(lane->parityWidth, 1U);
    map.fill(1);
    fileSpecType* input =
        CreateFileSpec(folder.write("in.bit", textOf(bitFileOf(recipe, makeBit(recipe).stream))).c_str());
    fileSpecType* output = CreateFileSpec(folder.file("out.bit").c_str());
    ASSERT_EQ(DoBITReplacement(input, output, 0, map.get(), nullptr, nullptr), 0) << alerts.text();

    const auto wordParity = [&] { return lane->paritySliver[2] & 1U; }; // of the word 16, whose bit comes first
    const u64 inFile = wordParity();
    lane->paritySliver[2] ^= 1;
    StreamCheck found;
    EXPECT_EQ(checkBitFile(output, map.get(), &found), 0) << alerts.text();
    ASSERT_EQ(found.memories.differences.size(), 1U);
    const LaneDifference& difference = found.memories.differences.front();
    EXPECT_EQ(difference.lane, lane);
    EXPECT_TRUE(difference.inParity);
    EXPECT_EQ(difference.word, 16U);
    EXPECT_EQ(difference.expected, wordParity());
    EXPECT_EQ(difference.found, inFile);
    DeleteFileSpec(&input);
    DeleteFileSpec(&output);
}

// stream_crc_test.cpp - the CRC of configuration words.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/stream_crc.h"

#include <gtest/gtest.h>
#include <random>
#include <utility>
#include <vector>

namespace {

TEST(StreamCrc, TheCastagnoliCrcTakesWordThenAddress) {
    gAccumulated_CRC = 0;
    CRC_32_37(1, 0);
    EXPECT_EQ(gAccumulated_CRC, 0x8AD958CFu);
    gAccumulated_CRC = 0;
    CRC_32_37(0, 1);
    EXPECT_EQ(gAccumulated_CRC, 0xC5670B91u);
}

TEST(StreamCrc, TheCastagnoliCrcIgnoresAddressBitsAboveFive) {
    gAccumulated_CRC = 0;
    CRC_32_37(0x21, 0);
    EXPECT_EQ(gAccumulated_CRC, 0x8AD958CFu);
}

TEST(StreamCrc, OneBitEntersTheSixteenBitCrc) {
    gAccumulated_CRC = 0;
    CRC_Bit(1);
    EXPECT_EQ(gAccumulated_CRC, 0xA001u);
    CRC_Bit(1); // equals the low bit: no feedback
    EXPECT_EQ(gAccumulated_CRC, 0x5000u);
}

TEST(StreamCrc, AWordIsItsBitsThenTheAddressLowestFirst) {
    for (u32 addressBits : {4u, 5u}) {
        gCRC_Address_Length = addressBits;
        gAccumulated_CRC = 0x1234;
        CRC_Word(0x12, 0x80000001);
        const u32 whole = gAccumulated_CRC;
        gAccumulated_CRC = 0x1234;
        CRC_Bit(1);
        for (int i = 0; i < 30; ++i) CRC_Bit(0);
        CRC_Bit(1);
        for (u32 bit : {0u, 1u, 0u, 0u}) CRC_Bit(bit);
        if (addressBits == 5) CRC_Bit(1);
        EXPECT_EQ(whole, gAccumulated_CRC);
    }
}

TEST(StreamCrc, TheSignatureRegisterFeedsItsTopBitBack) {
    gAccumulated_CRC = 0;
    CRC_16_37(0x3F, 0xABCD);
    EXPECT_EQ(gAccumulated_CRC, 0x3FABCDu);
    CRC_16_37(0, 0); // shifted to 0x3F579A | 1 in 22 bits, then the taps 7, 12 and 15
    EXPECT_EQ(gAccumulated_CRC, 0x3F579Bu ^ 0x9080u);
}

TEST(StreamCrc, ARunOfWordsIsItsWordsOneByOne) {
    std::mt19937 engine(5);
    const auto random = [&engine] { return static_cast<u32>(engine()); };
    for (u64 wordCount = 0; wordCount < 200; ++wordCount) {
        std::vector<u8> bytes(4 * wordCount);
        for (u8& byte : bytes) byte = static_cast<u8>(random());
        const u32 address = random();
        const u32 start = random();
        gAccumulated_CRC = start;
        for (u64 i = 0; i < wordCount; ++i)
            CRC_32_37(address,
                u32{bytes[4 * i]} << 24 | u32{bytes[4 * i + 1]} << 16 | u32{bytes[4 * i + 2]} << 8 | bytes[4 * i + 3]);
        EXPECT_EQ(memdata::crcOfWords(start, address, bytes.data(), wordCount), gAccumulated_CRC) << wordCount;
        EXPECT_EQ(memdata::crcOfWordsByTable(start, address, bytes.data(), wordCount), gAccumulated_CRC) << wordCount;
    }
}

TEST(StreamCrc, ACastagnoliWordIsItsBitsOneByOne) {
    std::mt19937 engine(7);
    const auto random = [&engine] { return static_cast<u32>(engine()); };
    for (int i = 0; i < 1000; ++i) {
        const u32 word = random();
        const u32 address = random();
        const u32 start = random();
        u32 plain = start;
        for (u64 unit = u64{address & 31} << 32 | word, bit = 0; bit < 37; ++bit)
            plain = plain >> 1 ^ (((plain ^ unit >> bit) & 1) != 0 ? 0x82F63B78 : 0);
        gAccumulated_CRC = start;
        CRC_32_37(address, word);
        EXPECT_EQ(gAccumulated_CRC, plain);
    }
}

TEST(StreamCrc, AWordByTableIsItsBitsOneByOne) {
    std::mt19937 engine(6);
    const auto random = [&engine] { return static_cast<u32>(engine()); };
    for (int i = 0; i < 1000; ++i) {
        const u32 word = random();
        const u32 address = random();
        gCRC_Address_Length = 4 + random() % 2;
        const u32 start = random() & 0xFFFF;
        gAccumulated_CRC = start;
        for (u32 bit = 0; bit < 32; ++bit) CRC_Bit(word >> bit & 1);
        for (u32 bit = 0; bit < gCRC_Address_Length; ++bit) CRC_Bit(address >> bit & 1);
        const u32 plain = std::exchange(gAccumulated_CRC, start);
        CRC_Word(address, word);
        EXPECT_EQ(gAccumulated_CRC, plain);
    }
}

} // namespace

// mem_records_test.cpp - the three forms of records of a MEM file.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/mem_records.h"

#include "FileUtils/opening.h"
#include "SystemUtils/lifetime.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

namespace memdata::testing {
namespace {

class MemRecords : public ::testing::Test {
protected:
    MemRecords() : bytes(64) {
        EXPECT_EQ(OpenMemoryFile("memory", kTEXT_WRITE, nullptr, 0, &file), 0);
        std::iota(bytes.begin(), bytes.end(), u8{0});
    }
    ~MemRecords() override { Close_File(&file); }

    std::string text() const { return {GetFileStorageBase(file), GetFileLogicalSize(file)}; }
    std::string regular(u64 byteAddress, u64 maxBits, u64 lanes, u64 width, bool wide = false) {
        EXPECT_EQ(output_regular_mem_data_records(
                      file, byteAddress, bytes.data(), bytes.size() * 8, maxBits, lanes, width, wide),
            0);
        return text();
    }
    std::string parity(u64 byteAddress, u64 maxBits, u64 lanes, u64 width) {
        EXPECT_EQ(output_parity_mem_data_records(file, byteAddress, bytes.data(), bytes.size() * 8, maxBits,
                      parityBytes.data(), parityBytes.size() * 8, lanes, width),
            0);
        return text();
    }

    SystemResources resources_;
    fileIODescriptor* file = nullptr;
    std::vector<u8> bytes;
    std::vector<u8> parityBytes = std::vector<u8>(8, 0xFF);
};

TEST_F(MemRecords, BeginWithAnEmptyLineAndTheWordsIndex) {
    EXPECT_EQ(regular(16, 16, 4, 8), "\n"
                                     "@00000004\n"
                                     "    04 05\n");
}

TEST_F(MemRecords, HaveAddressesOfSixteenDigitsForWideData) {
    EXPECT_EQ(regular(16, 8, 4, 8, true), "\n"
                                          "@0000000000000004\n"
                                          "    04\n");
}

TEST_F(MemRecords, OfThirtyTwoBitWordsPrintEightDigitsLowByteLast) {
    EXPECT_EQ(regular(0, 32, 1, 32), "\n@00000000\n    03020100\n");
}

TEST_F(MemRecords, OfFourBitWordsPrintOneDigitLowHalfFirst) {
    bytes[0] = 0xA5;
    EXPECT_EQ(regular(0, 8, 1, 4), "\n@00000000\n    5 A\n");
}

TEST_F(MemRecords, BeginAtAWordInsideAByte) {
    bytes[1] = 0xB7;
    // Byte 3 of a bus of two 4-bit lanes is bus word 3.
    EXPECT_EQ(regular(3, 4, 2, 4), "\n@00000003\n    B\n");
}

TEST_F(MemRecords, EndALineAfterTheEighthWordOfThirtyTwoBits) {
    EXPECT_EQ(regular(0, 32 * 9, 1, 32), "\n@00000000\n"
                                         "    03020100 07060504 0B0A0908 0F0E0D0C 13121110 17161514 1B1A1918 1F1E1D1C\n"
                                         "    23222120\n");
}

TEST_F(MemRecords, ThatFillALineAddNoEmptyOne) {
    EXPECT_EQ(regular(0, 32 * 8, 1, 32),
        "\n@00000000\n"
        "    03020100 07060504 0B0A0908 0F0E0D0C 13121110 17161514 1B1A1918 1F1E1D1C\n");
}

TEST_F(MemRecords, EndWithTheBuffer) {
    EXPECT_EQ(regular(62, 1000, 1, 8), "\n@0000003E\n    3E 3F\n");
    EXPECT_EQ(regular(64, 1000, 1, 8), "\n@0000003E\n    3E 3F\n\n@00000040\n");
    EXPECT_EQ(regular(1 << 20, 1000, 1, 8), "\n@0000003E\n    3E 3F\n\n@00000040\n\n@00100000\n");
}

TEST_F(MemRecords, OfWidthsThatNoByteHoldsTakeWholeSlots) {
    bytes = {0x7F, 0x11, 0x91, 0x22};
    EXPECT_EQ(regular(0, 32, 1, 7), "\n@00000000\n    7F 11 11 22\n"); // the eighth bit is no part of a word
}

TEST_F(MemRecords, OfSixtyFourBitWordsPrintSixteenDigits) {
    EXPECT_EQ(regular(8, 64, 1, 64), "\n@00000001\n    0F0E0D0C0B0A0908\n");
}

TEST_F(MemRecords, WithParityPrintTheParityDigitInFrontOfNineBitWords) {
    parityBytes = {0b101};
    EXPECT_EQ(parity(0, 24, 1, 9), "\n@00000000\n    100 001 102\n");
}

TEST_F(MemRecords, OfThirtySixBitsPrintOneParityDigitAndEightDataDigits) {
    EXPECT_EQ(parity(0, 32, 1, 36), "\n@00000000\n    F03020100\n");
}

TEST_F(MemRecords, OfEighteenAndSeventyTwoBitsHaveTheirOwnDigits) {
    parityBytes = {0x1B, 0x42};
    EXPECT_EQ(parity(0, 32, 1, 18), "\n@00000000\n    30100 20302\n");
    EXPECT_EQ(parity(9, 64, 1, 72), "\n@00000000\n    30100 20302\n\n@00000001\n    420F0E0D0C0B0A0908\n");
}

TEST_F(MemRecords, WithParityCountTheirAddressByTheWholeWord) {
    // Byte 18 of two 9-bit lanes: 18 * 8 / 9 / 2.
    EXPECT_EQ(parity(18, 8, 2, 9), "\n@00000008\n    108\n");
}

TEST_F(MemRecords, WithParityTakeLanesThatHaveOnlyTheDataBitsToo) {
    EXPECT_EQ(parity(0, 16, 1, 16), "\n@00000000\n    30100\n");
}

TEST_F(MemRecords, WithParityEndALineAfter256DataBits) {
    bytes.assign(64, 0);
    parityBytes.assign(8, 0);
    const std::string line = parity(0, 33 * 8, 1, 9);
    std::string expected = "\n@00000000\n   ";
    for (int i = 0; i < 32; ++i) expected += " 000";
    EXPECT_EQ(line, expected + "\n    000\n");
}

TEST_F(MemRecords, OfAWidthWithoutParityBitsHaveNoWords) {
    EXPECT_EQ(parity(0, 16, 1, 12), "\n@00000000\n");
}

TEST_F(MemRecords, CombinedPrintTheCheckWordBehindTheDataWord) {
    std::vector<u8> check = {0xA0, 0xA1, 0xA2, 0xA3};
    ASSERT_EQ(
        output_combined_mem_data_records(file, 4, bytes.data(), 512, 64, 1, 32, check.data(), 32, 4, 8, false), 0);
    EXPECT_EQ(text(), "\n@00000001\n    07060504A1 0B0A0908A2\n");
}

TEST_F(MemRecords, CombinedOfWideDataHaveWideAddresses) {
    std::vector<u8> check = {0x70, 0x71};
    ASSERT_EQ(output_combined_mem_data_records(file, 0, bytes.data(), 512, 32, 1, 32, check.data(), 16, 4, 7, true), 0);
    EXPECT_EQ(text(), "\n@0000000000000000\n    0302010070\n");
}

TEST_F(MemRecords, CombinedEndALineByDataBitsOrCharacters) {
    std::vector<u8> check(64, 0);
    bytes.assign(64, 0);
    ASSERT_EQ(
        output_combined_mem_data_records(file, 0, bytes.data(), 512, 512, 1, 8, check.data(), 512, 1, 8, false), 0);
    // Five characters a word: 130 behind the 26th.
    std::string expected = "\n@00000000\n";
    for (int line = 0; line < 2; ++line) {
        expected += "   ";
        for (int i = 0; i < 26; ++i) expected += " 0000";
        expected += "\n";
    }
    expected += "   ";
    for (int i = 0; i < 12; ++i) expected += " 0000";
    EXPECT_EQ(text(), expected + "\n");
}

TEST_F(MemRecords, OfNothingAreRefused) {
    EXPECT_EQ(output_regular_mem_data_records(file, 0, nullptr, 8, 8, 1, 8, false), 3);
    EXPECT_EQ(output_regular_mem_data_records(file, 0, bytes.data(), 8, 8, 0, 8, false), 3);
    EXPECT_EQ(output_regular_mem_data_records(file, 0, bytes.data(), 8, 8, 1, 0, false), 3);
    EXPECT_EQ(output_regular_mem_data_records(file, 0, bytes.data(), 8, 8, 1, 65, false), 3);
    EXPECT_EQ(output_parity_mem_data_records(file, 0, bytes.data(), 8, 8, nullptr, 0, 1, 9), 3);
    EXPECT_EQ(output_combined_mem_data_records(file, 0, bytes.data(), 8, 8, 1, 8, nullptr, 0, 1, 8, false), 3);
    EXPECT_EQ(text(), "");
}

TEST(ParityWords, AreKnownForEightWidths) {
    const u64 kROWS[][5] = {// width, data bits, digits, parity bits, digits
        {8, 8, 2, 1, 1}, {9, 8, 2, 1, 1}, {16, 16, 4, 2, 1}, {18, 16, 4, 2, 1}, {32, 32, 8, 4, 1}, {36, 32, 8, 4, 1},
        {64, 64, 16, 8, 2}, {72, 64, 16, 8, 2}, {7, 0, 0, 0, 0}, {12, 0, 0, 0, 0}, {73, 0, 0, 0, 0}};
    for (const auto& row : kROWS) {
        const ParityWord word = parityWordOf(row[0]);
        EXPECT_EQ(word.dataBits, row[1]) << row[0];
        EXPECT_EQ(word.dataDigits, row[2]) << row[0];
        EXPECT_EQ(word.parityBits, row[3]) << row[0];
        EXPECT_EQ(word.parityDigits, row[4]) << row[0];
    }
}

} // namespace
} // namespace memdata::testing

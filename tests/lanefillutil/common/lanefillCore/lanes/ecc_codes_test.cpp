// ecc_codes_test.cpp - check bits of the five codes: known values, definition, and the tables against it.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/ecc_codes.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>

namespace {

using EndianConvert::UInt128;

u32 byDefinition(u32 type, UInt128 word) {
    switch (type) {
    case kECC_H32_7:
        return CalculateECCH32_7(static_cast<unsigned>(word.low));
    case kECC_H64_8:
        return CalculateECCH64_8(word.low);
    case kECC_HSIAO32_7:
        return CalculateECCHsiao(word, h_matrix_32_7.data());
    case kECC_HSIAO64_8:
        return CalculateECCHsiao(word, h_matrix_64_8.data());
    case kECC_HSIAO128_9:
        return CalculateECCHsiao(word, h_matrix_128_9.data());
    default:
        return 0;
    }
}

TEST(EccCodes, AWordOfZeroHasTheCheckValueZero) {
    for (u32 type = 0; type <= 7; ++type) {
        EXPECT_EQ(byDefinition(type, {0, 0}), 0u) << type;
        EXPECT_EQ(memdata::eccCheckValue(type, {0, 0}), 0u) << type;
    }
}

TEST(EccCodes, TheLeastSignificantBitOfTheWideHammingCodeGivesE3) {
    EXPECT_EQ(CalculateECCH64_8(1), 0xE3u);
}

TEST(EccCodes, EachHammingCheckBitIsTheParityUnderItsMask) {
    EXPECT_EQ(CalculateECCH32_7(0x00000001), 0b0110010u); // in the masks of check bits 1, 4 and 5
    EXPECT_EQ(CalculateECCH32_7(0x80000000), 0b1100001u); // in the masks of check bits 0, 5 and 6
    EXPECT_EQ(CalculateECCH64_8(0x8000000000000000), 0b11000001u);
}

TEST(EccCodes, TheMostSignificantDataBitOfTheNarrowHsiaoCodeGives38) {
    EXPECT_EQ(CalculateECCHsiao({0, 0x80000000}, h_matrix_32_7.data()), 0x38u);
    EXPECT_EQ(CalculateECCHsiao({0, 1}, h_matrix_32_7.data()), 0x07u);
}

TEST(EccCodes, EndColumnsOfTheOtherHsiaoCodes) {
    EXPECT_EQ(CalculateECCHsiao({0, u64{1} << 63}, h_matrix_64_8.data()), 0x67u);
    EXPECT_EQ(CalculateECCHsiao({0, 1}, h_matrix_64_8.data()), 0x07u);
    EXPECT_EQ(CalculateECCHsiao({u64{1} << 63, 0}, h_matrix_128_9.data()), 0x14Du);
    EXPECT_EQ(CalculateECCHsiao({1, 0}, h_matrix_128_9.data()), 0x038u);
    EXPECT_EQ(CalculateECCHsiao({0, u64{1} << 63}, h_matrix_128_9.data()), 0x184u);
    EXPECT_EQ(CalculateECCHsiao({0, 1}, h_matrix_128_9.data()), 0x007u);
}

TEST(EccCodes, AMatrixRecordBeginsWithItsDataAndCheckBitCounts) {
    EXPECT_EQ(h_matrix_32_7[0], 32);
    EXPECT_EQ(h_matrix_32_7[1], 7);
    EXPECT_EQ(h_matrix_64_8[0], 64);
    EXPECT_EQ(h_matrix_64_8[1], 8);
    EXPECT_EQ(h_matrix_128_9[0], 128);
    EXPECT_EQ(h_matrix_128_9[1], 9);
}

TEST(EccCodes, HsiaoColumnsAreDistinctAndOfOddWeight) {
    for (const u32 type : {kECC_HSIAO32_7, kECC_HSIAO64_8, kECC_HSIAO128_9}) {
        const unsigned dataBits = type == kECC_HSIAO32_7 ? 32 : type == kECC_HSIAO64_8 ? 64 : 128;
        std::vector<bool> seen(512);
        for (unsigned bit = 0; bit < dataBits; ++bit) {
            const UInt128 word = bit < 64 ? UInt128{0, u64{1} << bit} : UInt128{u64{1} << (bit - 64), 0};
            const u32 column = byDefinition(type, word);
            EXPECT_EQ(std::popcount(column) % 2, 1) << "type " << type << " bit " << bit;
            EXPECT_FALSE(seen[column]) << "type " << type << " bit " << bit;
            seen[column] = true;
        }
    }
}

TEST(EccCodes, TheTablesEqualTheDefinition) {
    std::mt19937_64 random(5);
    for (int round = 0; round < 20000; ++round) {
        const UInt128 word{random(), random()};
        for (u32 type = 0; type <= 6; ++type)
            ASSERT_EQ(memdata::eccCheckValue(type, word), byDefinition(type, word)) << "type " << type;
    }
}

} // namespace

// damage_test.cpp - the verbs that spoil bytes do what they say and nothing else.
// SPDX-License-Identifier: Apache-2.0
#include "support/damage.h"

#include <gtest/gtest.h>
#include <numeric>
#include <stdexcept>

namespace memdata::testing {
namespace {

const Bytes kGOOD = {0x00, 0xFF, 0x12, 0x34, 0x56, 0x78};

TEST(Damage, FlipsOneBitCountedFromTheTopOfTheFirstByte) {
    EXPECT_EQ(flip_bit(kGOOD, 0), (Bytes{0x80, 0xFF, 0x12, 0x34, 0x56, 0x78}));
    EXPECT_EQ(flip_bit(kGOOD, 15), (Bytes{0x00, 0xFE, 0x12, 0x34, 0x56, 0x78}));
    EXPECT_THROW(flip_bit(kGOOD, 48), std::out_of_range);
}

TEST(Damage, CutsBehindTheGivenByte) {
    EXPECT_EQ(cut_at(kGOOD, 2), (Bytes{0x00, 0xFF}));
    EXPECT_EQ(cut_at(kGOOD, 6), kGOOD);
    EXPECT_THROW(cut_at(kGOOD, 7), std::out_of_range);
}

TEST(Damage, SetsALengthMostSignificantByteFirst) {
    EXPECT_EQ(set_length(kGOOD, 1, 2, 0xABCD), (Bytes{0x00, 0xAB, 0xCD, 0x34, 0x56, 0x78}));
    EXPECT_THROW(set_length(kGOOD, 5, 2, 1), std::out_of_range);
    EXPECT_THROW(set_length(kGOOD, 0, 9, 1), std::out_of_range);
}

TEST(Damage, FixesTheChecksumOverAllBytesBeforeIt) {
    const auto sum = [](const u8* bytes, size_t byteCount) { return std::accumulate(bytes, bytes + byteCount, 0u); };
    EXPECT_EQ(fix_crc(kGOOD, 2, sum), (Bytes{0x00, 0xFF, 0x00, 0x00, 0x00, 0xFF}));
    EXPECT_THROW(fix_crc(kGOOD, 3, sum), std::out_of_range);
}

} // namespace
} // namespace memdata::testing

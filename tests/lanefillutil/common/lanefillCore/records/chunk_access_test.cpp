// chunk_access_test.cpp - the bit cursor: order of bits, clamps, crossings, ends of the buffer.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/chunk_access.h"

#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

BufferChunkAccess dataOrder(Bytes& bytes) {
    return {bytes.data(), bytes.size() * 8, bytes.size() * 8, kDATA_ORDER, 0, 8};
}
BufferChunkAccess laneOrder(Bytes& bytes, unsigned long startUnit = 0, unsigned unitBits = 8) {
    return {bytes.data(), bytes.size() * 8, bytes.size() * 8, kBIT_LANE_ORDER, startUnit, unitBits};
}
u64 next(BufferChunkAccess& access, unsigned bits) {
    return access.GetNextTransformChunk(&bits);
}

// Bit n of a buffer in the order of an access.
u64 bitAt(const Bytes& bytes, TransformEndiannessType order, u64 n) {
    const u64 inByte = order == kDATA_ORDER ? 7 - n % 8 : n % 8;
    return bytes[n / 8] >> inByte & 1;
}

TEST(ChunkTables, DataOrderCountsFromTheTopOfAByte) {
    const TransformLookupType& entry = dataTransformUnitLookup[1][3];
    EXPECT_EQ(entry.mask, 0x70u);
    EXPECT_EQ(entry.keep, 0x8Fu);
    EXPECT_EQ(entry.shift, 4u);
}

TEST(ChunkTables, BitLaneOrderCountsFromTheBottomOfAByte) {
    const TransformLookupType& entry = bitLaneTransformUnitLookup[1][3];
    EXPECT_EQ(entry.mask, 0x0Eu);
    EXPECT_EQ(entry.keep, 0xF1u);
    EXPECT_EQ(entry.shift, 1u);
}

TEST(ChunkTables, ColumnZeroIsAllZeros) {
    for (unsigned offset = 0; offset < 8; ++offset)
        for (const auto* table : {&dataTransformUnitLookup, &bitLaneTransformUnitLookup}) {
            EXPECT_EQ((*table)[offset][0].mask, 0u);
            EXPECT_EQ((*table)[offset][0].keep, 0u);
            EXPECT_EQ((*table)[offset][0].shift, 0u);
        }
}

TEST(ChunkTables, ACrossingUnitHasNoMaskAndTellsTheBitsThatCross) {
    for (const auto* table : {&dataTransformUnitLookup, &bitLaneTransformUnitLookup}) {
        EXPECT_EQ((*table)[6][5].mask, 0u);
        EXPECT_EQ((*table)[6][5].keep, 7u);
        EXPECT_EQ((*table)[6][5].shift, 3u);
    }
}

TEST(ReverseDataBits, MirrorsEveryWidth) {
    EXPECT_EQ(reverseDataBits(0, 0xFF), 0u);
    EXPECT_EQ(reverseDataBits(1, 3), 1u);
    EXPECT_EQ(reverseDataBits(7, 0x81), 0x40u);
    EXPECT_EQ(reverseDataBits(8, 0x01), 0x80u);
    EXPECT_EQ(reverseDataBits(12, 0x123), 0xC48u);
    EXPECT_EQ(reverseDataBits(32, 0x00000001), 0x80000000u);
    EXPECT_EQ(reverseDataBits(64, 1), 0x8000000000000000u);
    EXPECT_EQ(reverseDataBits(36, 0x1), 0x800000000u);
}

TEST(ReverseDataBits, TwiceGivesTheLowBitsBack) {
    std::mt19937_64 random(1);
    for (unsigned width = 1; width <= 64; ++width) {
        const u64 value = random();
        const u64 mask = width == 64 ? ~u64{0} : (u64{1} << width) - 1;
        EXPECT_EQ(reverseDataBits(width, reverseDataBits(width, value)), value & mask) << width;
    }
}

TEST(ChunkAccess, StandsAtTheStartUnit) {
    Bytes bytes(8);
    const BufferChunkAccess access(bytes.data(), 64, 64, kBIT_LANE_ORDER, 5, 4);
    EXPECT_EQ(access.GetCurrentBufferByteAddress(), bytes.data() + 2);
    EXPECT_EQ(access.bitOffset, 4u);
    EXPECT_EQ(access.GetNumberBufferBitsRemaining(), 44u);
    EXPECT_EQ(access.GetBufferBitCount(), 0u);
    EXPECT_EQ(access.GetBufferByteCount(), 0u);
}

TEST(ChunkAccess, PassesNoMoreThanTheGivenMaximum) {
    Bytes bytes(8);
    const BufferChunkAccess access(bytes.data(), 64, 10, kDATA_ORDER, 0, 8);
    EXPECT_EQ(access.GetNumberBufferBitsRemaining(), 10u);
}

TEST(ChunkAccess, AStartBehindTheEndLeavesACountThatReadsAsNonZeroAndTouchesNothing) {
    Bytes bytes(2, 0xFF);
    BufferChunkAccess access(bytes.data(), 16, 16, kBIT_LANE_ORDER, 3, 8);
    EXPECT_NE(access.GetNumberBufferBitsRemaining(), 0u);
    EXPECT_EQ(next(access, 8), 0u);
    access.PutNextTransformChunk(8, 0);
    EXPECT_EQ(bytes, (Bytes{0xFF, 0xFF}));
}

// Nothing of so large a buffer is touched, and none is there.
TEST(ChunkAccess, OverAWholeBufferCountsIn64Bits) {
    Bytes bytes(1);
    const u64 bits = u64{1} << 33;
    EXPECT_EQ(BufferChunkAccess::OverWholeBuffer(bytes.data(), bits, kBIT_LANE_ORDER, 0, 8).bitsRemaining, bits);
    const BufferChunkAccess late = BufferChunkAccess::OverWholeBuffer(bytes.data(), bits, kBIT_LANE_ORDER, 1u << 29, 8);
    EXPECT_EQ(late.bitsRemaining, bits / 2);
    EXPECT_EQ(late.current - late.buffer, i64{1} << 29);
}

TEST(ChunkAccess, OverAWholeBufferAStartBehindTheEndLeavesNothing) {
    Bytes bytes(2);
    for (const u64 start : {u64{2}, u64{3}, UINT64_MAX})
        EXPECT_EQ(BufferChunkAccess::OverWholeBuffer(bytes.data(), 16, kBIT_LANE_ORDER, start, 8).bitsRemaining, 0u);
}

TEST(ChunkAccess, ReadsDataOrderWithTheFirstUnitMostSignificant) {
    Bytes bytes = {0xAA, 0xBB, 0xCC, 0xDD};
    BufferChunkAccess access = dataOrder(bytes);
    EXPECT_EQ(next(access, 16), 0xAABBu);
    EXPECT_EQ(next(access, 12), 0xCCDu);
    EXPECT_EQ(access.GetBufferBitCount(), 28u);
    EXPECT_EQ(access.GetBufferByteCount(), 4u);
}

TEST(ChunkAccess, ReadsLaneOrderWithTheFirstUnitLeastSignificant) {
    Bytes bytes = {0xAA, 0xBB, 0xCC, 0xDD};
    BufferChunkAccess access = laneOrder(bytes);
    EXPECT_EQ(next(access, 16), 0xBBAAu);
    EXPECT_EQ(next(access, 4), 0xCu);
}

TEST(ChunkAccess, TheFirstPartOfACrossingReadIsTheHighPartInBothOrders) {
    Bytes bytes = {0b00000011, 0b10000000};
    BufferChunkAccess data = dataOrder(bytes);
    next(data, 6);
    EXPECT_EQ(data.ReadTransformUnitValue(3), 0b111u);

    bytes = {0b11000000, 0b00000000};
    BufferChunkAccess lane = laneOrder(bytes);
    next(lane, 6);
    EXPECT_EQ(lane.ReadTransformUnitValue(3), 0b110u);
}

TEST(ChunkAccess, AChunkIsLoweredToTheBitsThatRemain) {
    Bytes bytes = {0xAB};
    BufferChunkAccess access = dataOrder(bytes);
    unsigned bits = 12;
    EXPECT_EQ(access.GetNextTransformChunk(&bits), 0xABu);
    EXPECT_EQ(bits, 8u);
    EXPECT_EQ(access.GetNextTransformChunk(&bits), 0u);
    EXPECT_EQ(bits, 0u);
}

TEST(ChunkAccess, AChunkOfNoBitsGivesZero) {
    Bytes bytes = {0xAB};
    BufferChunkAccess access = dataOrder(bytes);
    EXPECT_EQ(next(access, 0), 0u);
    EXPECT_EQ(access.GetBufferBitCount(), 0u);
}

TEST(ChunkAccess, TheBitLaneChunkHasItsFirstUnitMostSignificantInEitherOrder) {
    for (const TransformEndiannessType order : {kDATA_ORDER, kBIT_LANE_ORDER}) {
        Bytes bytes = {0x12, 0x34};
        BufferChunkAccess access(bytes.data(), 16, 16, order, 0, 8);
        unsigned bits = 20;
        EXPECT_EQ(access.GetNextBitLaneTransformChunk(&bits), 0x1234u);
        EXPECT_EQ(bits, 16u);
    }
}

TEST(ChunkAccess, TheBitLaneChunkEndsWithAUnitOfOneToEightBits) {
    Bytes bytes = {0x12, 0x34};
    BufferChunkAccess access = laneOrder(bytes);
    unsigned bits = 12;
    EXPECT_EQ(access.GetNextBitLaneTransformChunk(&bits), 0x124u);
}

TEST(ChunkAccess, WritesLaneOrderLowBitsFirst) {
    Bytes bytes(3);
    BufferChunkAccess access = laneOrder(bytes);
    access.PutNextTransformChunk(16, 0xAABB);
    access.PutNextTransformChunk(4, 0xC);
    EXPECT_EQ(bytes, (Bytes{0xBB, 0xAA, 0x0C}));
    EXPECT_EQ(access.GetBufferByteCount(), 3u);
}

TEST(ChunkAccess, WritesDataOrderHighBitsFirst) {
    Bytes bytes(3);
    BufferChunkAccess access = dataOrder(bytes);
    access.PutNextTransformChunk(16, 0xAABB);
    access.PutNextTransformChunk(4, 0xC);
    EXPECT_EQ(bytes, (Bytes{0xAA, 0xBB, 0xC0}));
}

TEST(ChunkAccess, APutLeavesTheOtherBitsOfAByte) {
    Bytes bytes = {0xFF};
    BufferChunkAccess access = laneOrder(bytes, 1, 2);
    access.PutNextTransformChunk(3, 0);
    EXPECT_EQ(bytes, (Bytes{0b11100011}));
}

TEST(ChunkAccess, APutLargerThanTheRoomKeepsTheTopBits) {
    Bytes bytes(1);
    BufferChunkAccess access(bytes.data(), 8, 4, kBIT_LANE_ORDER, 0, 8);
    access.PutNextTransformChunk(8, 0xA5);
    EXPECT_EQ(bytes, (Bytes{0x0A}));
    EXPECT_EQ(access.GetNumberBufferBitsRemaining(), 0u);
    access.PutNextTransformChunk(8, 0xFF);
    EXPECT_EQ(bytes, (Bytes{0x0A}));
}

TEST(ChunkAccess, APutOfNoBitsOnlyRefreshesTheByteCount) {
    Bytes bytes(2);
    BufferChunkAccess access = laneOrder(bytes);
    access.WriteTransformUnitValue(3, 7);
    EXPECT_EQ(access.GetBufferByteCount(), 0u);
    access.PutNextTransformChunk(0, 0xFF);
    EXPECT_EQ(access.GetBufferByteCount(), 1u);
    EXPECT_EQ(bytes, (Bytes{0x07, 0x00}));
}

// Five bits at offset 6: two bits of value >> 2 end the byte, one byte is passed over, then keep (7) is the
// width and value & shift (3) the value of the rest.
TEST(ChunkAccess, ACrossingWriteIsNotTheMirrorOfACrossingRead) {
    Bytes bytes(4, 0xFF);
    BufferChunkAccess access = laneOrder(bytes);
    next(access, 6);
    access.WriteTransformUnitValue(5, 0b00110);
    EXPECT_EQ(bytes, (Bytes{0b01111111, 0xFF, 0b10000010, 0xFF}));
    EXPECT_EQ(access.bitOffset, 7u);
    EXPECT_EQ(access.GetBufferBitCount(), 6u + 2 + 7);
}

TEST(ChunkAccess, ACrossingWriteStaysInsideTheBuffer) {
    for (unsigned offset = 1; offset < 8; ++offset)
        for (unsigned bits = 9 - offset; bits <= 8; ++bits) {
            auto bytes = std::make_unique<Bytes>(1); // one byte: the write leaves it at once
            BufferChunkAccess access = laneOrder(*bytes);
            next(access, offset);
            access.WriteTransformUnitValue(bits, ~0ul);
            EXPECT_EQ((*bytes)[0] & ((1u << offset) - 1), 0u);
        }
}

TEST(ChunkAccess, SkippingPassesBitsWithoutTouchingThem) {
    Bytes bytes = {0xFF, 0xFF};
    BufferChunkAccess access = laneOrder(bytes);
    access.PutNextTransformChunk(7, 0);
    access.SkipBits(1);
    EXPECT_EQ(bytes, (Bytes{0x80, 0xFF}));
    EXPECT_EQ(access.GetCurrentBufferByteAddress(), bytes.data() + 1);
    EXPECT_EQ(access.GetBufferBitCount(), 8u);
    access.SkipBits(100);
    EXPECT_EQ(access.GetNumberBufferBitsRemaining(), 0u);
    EXPECT_EQ(access.GetCurrentBufferByteAddress(), bytes.data() + 2);
}

TEST(ChunkAccess, ACopyMovesByItself) {
    const memdata::SystemResources system;
    Bytes bytes = {0x12, 0x34};
    BufferChunkAccess access = dataOrder(bytes);
    next(access, 4);
    const std::unique_ptr<BufferChunkAccess> copy(access.DupBufferChunkAccess());
    EXPECT_EQ(next(*copy, 8), 0x23u);
    EXPECT_EQ(next(access, 12), 0x234u);
}

TEST(ChunkAccess, ACopyIsNullWhenMemoryIsExhausted) {
    const memdata::SystemResources system;
    Bytes bytes = {0x12, 0x34};
    BufferChunkAccess access = dataOrder(bytes);
    const auto sweep = memdata::testing::sweepAllocationFaults([&access] {
        const std::unique_ptr<BufferChunkAccess> copy(access.DupBufferChunkAccess());
        return copy ? 0 : 7;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.allocationCount, 1u);
}

// Reads in widths that never make a unit cross a byte in lane order, any width in data order.
TEST(ChunkAccess, RandomReadsEqualABitByBitReading) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        Bytes bytes(1 + random() % 40);
        for (auto& byte : bytes) byte = static_cast<unsigned char>(random());
        BufferChunkAccess access = dataOrder(bytes);
        u64 at = 0;
        while (access.GetNumberBufferBitsRemaining() > 0) {
            unsigned bits = 1 + random() % 64;
            const u64 value = access.GetNextTransformChunk(&bits);
            u64 expected = 0;
            for (unsigned i = 0; i < bits; ++i) expected = expected << 1 | bitAt(bytes, kDATA_ORDER, at++);
            ASSERT_EQ(value, expected);
        }
        ASSERT_EQ(at, bytes.size() * 8);
    }
}

TEST(ChunkAccess, LaneWordsOfAlignedWidthsReadBackAsWritten) {
    std::mt19937_64 random(11);
    for (const unsigned width : {1u, 2u, 4u, 8u, 16u, 24u, 32u, 40u, 64u}) {
        Bytes bytes(64);
        const u64 mask = width == 64 ? ~u64{0} : (u64{1} << width) - 1;
        std::vector<u64> words;
        BufferChunkAccess out = laneOrder(bytes);
        while (out.GetNumberBufferBitsRemaining() >= width) {
            words.push_back(random() & mask);
            out.PutNextTransformChunk(width, words.back());
        }
        BufferChunkAccess in = laneOrder(bytes);
        for (size_t i = 0; i < words.size(); ++i) ASSERT_EQ(next(in, width), words[i]) << width << " word " << i;
    }
}

} // namespace

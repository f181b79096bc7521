// frame_codec_test.cpp - memories into frames and back, fast and bit by bit.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/frame_codec.h"

#include "BRAMDecodeUtils/bit_access.h"
#include "BRAMDecodeUtils/bit_transpose.h"
#include "BRAMDecodeUtils/codec_plan.h"
#include "BRAMDecodeUtils/decode_tables.h"
#include "DeviceTableUtils/device_lookup.h"
#include "DeviceTableUtils/memory_types.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<u8>;
using Table = const TranslationTableType*;

// A family's form of a memory: a device of the family gives frame length and orders.
struct Form {
    const TarselFamilyType* family;
    const MEMORYType* type;
    Table table;
};

const Form kFORMS[] = {
    {&kTarselFamilyTable, &RAMB4_BRAM, tarselDecodeTables},
    {&kTarselIIFamilyTable, &T2RAMB16_BRAM, tarsel2DecodeTables},
    {&kTarselIIFamilyTable, &T2RAMB18_BRAM, tarsel2DecodeTables},
    {&kDunmareIIIFamilyTable, &D3RAMB16_BRAM, dunmare3DecodeTables},
    {&kDunmareIIIFamilyTable, &D3RAMB18_BRAM, dunmare3DecodeTables},
    {&kTarsel4FamilyTable, &T4RAMB16_BRAM, T4LowerDecodeTable},
    {&kTarsel4FamilyTable, &T4RAMB18_BRAM, T4UpperDecodeTable},
    {&kTarsel5FamilyTable, &T5RAMB36_BRAM, tarsel5_36DecodeTables},
    {&kTarsel7FamilyTable, &T6RAMB32_BRAM, tarsel5_36DecodeTables},
    {&kTarsel5FamilyTable, &T5RAMB16_BRAM, T5_18LowerDecodeTable},
    {&kTarsel6FamilyTable, &T6RAMB18_BRAM, T5_18UpperDecodeTable},
    {&kDunmare6FamilyTable, &D6RAMB8_BRAM, dunmare6_18DecodeTables},
    {&kDunmare6FamilyTable, &D6RAMB9_BRAM, dunmare6_18DecodeTables},
    {&kDunmare6FamilyTable, &D6RAMB16_BRAM, dunmare6_18DecodeTables},
    {&kDunmare6FamilyTable, &D6RAMB18_BRAM, dunmare6_18DecodeTables},
};

const TarselDeviceType* deviceOf(const TarselFamilyType* family) {
    device_iterator_type* walk = create_device_record_iterator(false, false, true);
    while (get_iterated_device_record(walk) != nullptr && get_iterated_device_record(walk)->family != family)
        iterate_next_device_record(walk);
    const TarselDeviceType* device = get_iterated_device_record(walk);
    delete_device_iterator(&walk);
    return device;
}

Bytes randomBytes(std::mt19937& random, size_t count) {
    Bytes bytes(count);
    for (u8& byte : bytes) byte = static_cast<u8>(random());
    return bytes;
}

constexpr u64 kWIDTHS[] = {1, 2, 4, 8, 9, 16, 18, 32, 36, 64, 72};

struct Images {
    Bytes data, parity;
    bool operator==(const Images&) const = default;
};

Images randomImages(std::mt19937& random, const MEMORYType* type) {
    return {randomBytes(random, type->dataBits / 8), randomBytes(random, type->parityBits / 8)};
}

TEST(FrameCodec, EncodesAsTheBitByBitFormDoes) {
    std::mt19937 random(7);
    for (const Form& form : kFORMS) {
        const TarselDeviceType* device = deviceOf(form.family);
        for (u64 width : kWIDTHS) {
            const Images images = randomImages(random, form.type);
            const Bytes before = randomBytes(random, memdata::codecFrameBytes(device, form.type));
            Bytes plain = before;
            Bytes fast = before;
            memdata::encodeBitByBit(
                device, form.type, form.table, width, plain.data(), images.data.data(), images.parity.data());
            EncodeBRAM(device, form.type, form.table, width, fast.data(), images.data.data(), images.parity.data());
            EXPECT_NE(plain, before);
            EXPECT_EQ(fast, plain) << form.type->cellName << " by " << width;
        }
    }
}

TEST(FrameCodec, DecodesAsTheBitByBitFormDoes) {
    std::mt19937 random(8);
    for (const Form& form : kFORMS) {
        const TarselDeviceType* device = deviceOf(form.family);
        for (u64 width : kWIDTHS) {
            const Bytes frames = randomBytes(random, memdata::codecFrameBytes(device, form.type));
            Images plain = randomImages(random, form.type);
            Images fast = plain;
            memdata::decodeBitByBit(
                device, form.type, form.table, width, frames.data(), plain.data.data(), plain.parity.data());
            DecodeBRAM(device, form.type, form.table, width, frames.data(), fast.data.data(), fast.parity.data());
            EXPECT_EQ(fast, plain) << form.type->cellName << " by " << width;
        }
    }
}

TEST(FrameCodec, GivesTheImagesBackButForTheParityThatNoFrameHolds) {
    std::mt19937 random(9);
    for (const Form& form : kFORMS) {
        const TarselDeviceType* device = deviceOf(form.family);
        for (u64 width : kWIDTHS) {
            Images images = randomImages(random, form.type);
            Bytes frames(memdata::codecFrameBytes(device, form.type));
            EncodeBRAM(device, form.type, form.table, width, frames.data(), images.data.data(), images.parity.data());
            Images back = {Bytes(images.data.size()), Bytes(images.parity.size())};
            DecodeBRAM(device, form.type, form.table, width, frames.data(), back.data.data(), back.parity.data());
            const bool row60IsOdd = form.type->parityBits == 2048 && form.table[60].parityBase == 1924;
            if (row60IsOdd) {
                EXPECT_EQ(back.parity[240] & 0xF0, 0) << "bits 1920 to 1923 are in no frame";
                images.parity[240] &= 0x0F;
            }
            EXPECT_EQ(back, images) << form.type->cellName << " by " << width;
        }
    }
}

TEST(FrameCodec, LeavesFrameBitsThatHoldNoMemoryBit) {
    const TarselDeviceType* device = deviceOf(&kTarsel7FamilyTable);
    Bytes frames(memdata::codecFrameBytes(device, &T6RAMB36_BRAM), 0xFF);
    const Bytes zeros(4608);
    EncodeBRAM(device, &T6RAMB36_BRAM, tarsel5_36DecodeTables, 36, frames.data(), zeros.data(), zeros.data());
    for (u64 row = 0; row < 128; ++row)
        for (u64 bit = 0; bit < 320; ++bit)
            ASSERT_EQ(GetBit(frames.data(), 320, device->bramFrameBits, row * 320 + bit),
                tarsel5_36DecodeTables[row].bits[bit] < kLAST_PARITY_ENTRY)
                << row << " " << bit;
    EXPECT_EQ(frames[40], 0xFF) << "the next memory of the frame";
}

TEST(FrameCodec, FindsDataBit1461OfA36KbitMemoryInFrame5) {
    const TarselDeviceType* device = get_device_record_by_name("tq7b100");
    ASSERT_EQ(device->bramFrameBits, 3232U);
    Bytes frames(memdata::codecFrameBytes(device, &T6RAMB36_BRAM));
    frames[2020] = 0x40; // slice bit 1 of frame 5
    frames[2030] = 0x80; // slice bit 80: a parity bit
    Images images = {Bytes(4096), Bytes(512)};
    DecodeBRAM(
        device, &T6RAMB36_BRAM, tarsel5_36DecodeTables, 36, frames.data(), images.data.data(), images.parity.data());
    Images expected = {Bytes(4096), Bytes(512)};
    expected.data[182] = 0x04;
    expected.parity[190 / 8] = 0x80 >> 190 % 8;
    EXPECT_EQ(images, expected);
}

TEST(FrameCodec, FramesOfAMemoryEndWithItsSliceOfTheLastOne) {
    const TarselDeviceType* device = get_device_record_by_name("tq7b100");
    EXPECT_EQ(memdata::codecFrameBytes(device, &T6RAMB36_BRAM), 127U * 404 + 40);
}

TEST(BitIndexes, AreAdjustedInOneFamilyAlone) {
    EXPECT_EQ(AdjustBitIndexes(deviceOf(&kTarsel7FamilyTable), 16, 5), 5U);
    const TarselDeviceType* device = deviceOf(&kDunmare6FamilyTable);
    EXPECT_EQ(AdjustBitIndexes(device, 1, 5), 5U);
    EXPECT_EQ(AdjustBitIndexes(device, 2, 4), 5U);
    EXPECT_EQ(AdjustBitIndexes(device, 4, 4), 7U);
    EXPECT_EQ(AdjustBitIndexes(device, 8, 9), 14U);
    EXPECT_EQ(AdjustBitIndexes(device, 9, 9), 9U);
    EXPECT_EQ(AdjustBitIndexes(device, 16, 17), 30U);
    EXPECT_EQ(AdjustBitIndexes(device, 18, 17), 17U);
    EXPECT_EQ(AdjustBitIndexes(device, 36, 17), 17U);
}

TEST(BitIndexes, Of32BitLanesTakeUnitsFromBothHalvesByTurns) {
    const TarselDeviceType* device = deviceOf(&kDunmare6FamilyTable);
    EXPECT_EQ(AdjustBitIndexes(device, 32, 0), 31U);
    EXPECT_EQ(AdjustBitIndexes(device, 32, 8192), 15U);
    EXPECT_EQ(AdjustBitIndexes(device, 32, 16), 63U);
}

TEST(BitIndexes, Of32BitLanesStayInsideASmallMemory) {
    const TarselDeviceType* device = deviceOf(&kDunmare6FamilyTable);
    std::vector<bool> seen(8192);
    for (u64 i = 0; i < 8192; ++i) {
        const u64 at = AdjustBitIndexes(device, 32, i, 8192);
        ASSERT_LT(at, 8192U);
        EXPECT_FALSE(seen[at]) << i;
        seen[at] = true;
    }
}

TEST(CodecPlan, TransposesFourSquaresOfEachBlock) {
    std::mt19937_64 random(3);
    std::vector<u64> words(2 * memdata::kBLOCK_WORDS);
    for (u64& word : words) word = random();
    std::vector<u64> expected(words.size());
    for (size_t at = 0; at < words.size(); ++at)
        for (u64 bit = 0; bit < 64; ++bit) {
            const size_t row = at % memdata::kBLOCK_WORDS / 4;
            expected[at - row * 4 + bit * 4] |= (words[at] >> bit & 1) << row;
        }
    for (auto* transpose : {memdata::transpose, memdata::transposeByWideRegisters, memdata::transposePlainly}) {
        std::vector<u64> turned = words;
        transpose(turned);
        EXPECT_EQ(turned, expected);
    }
}

TEST(CodecPlan, FitsEveryForm) {
    for (const Form& form : kFORMS)
        for (u64 width : kWIDTHS)
            EXPECT_NE(memdata::codecPlan(deviceOf(form.family), form.type, form.table, width), nullptr)
                << form.type->cellName << " by " << width;
}

} // namespace

// bit_maker_test.cpp - the bit files that tests are made of.
// SPDX-License-Identifier: Apache-2.0
#include "support/bit_maker.h"

#include "DeviceTableUtils/device_lookup.h"
#include "DeviceTableUtils/families.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <stdexcept>

using namespace memdata::testing;

namespace {

// A small device of each family.
constexpr const char* kDEVICES[] = {"tq1a8", "tq1e8", "td2a4", "td2e8", "tq2a4", "tq2p8", "tq4a32", "tq5a4", "tq6a10",
    "tq7a7", "tp7a11", "td3c4", "td3e4", "td3a16", "td6a24"};

MemoryImages randomImages(std::mt19937& random, const TarselDeviceType* device, const MemorySite& site) {
    const MEMORYType* type = site.memory->type;
    MemoryImages images{Bytes(type->dataBits / 8), Bytes(type->parityBits / 8)};
    for (Bytes* bytes : {&images.data, &images.parity})
        for (u8& byte : *bytes) byte = static_cast<u8>(random());
    clearLostBits(device, site, images);
    return images;
}

} // namespace

TEST(BitMaker, StreamsOfEveryFamilyComeApartWithSoundCrcs) {
    for (const char* name : kDEVICES) {
        const MadeBit made = makeBit({.device = name});
        const std::vector<StreamPiece> pieces = takeApart(made.device, made.stream);
        EXPECT_EQ(wrongCrcs(pieces), std::vector<size_t>{}) << name;
        size_t end = 0;
        size_t crcs = 0;
        for (const StreamPiece& piece : pieces) {
            EXPECT_EQ(piece.offset, end) << name;
            end = piece.offset + piece.size;
            crcs += piece.isCrc();
        }
        EXPECT_EQ(end, made.stream.size()) << name;
        EXPECT_GE(crcs, 1U) << name;
    }
}

TEST(BitMaker, ASpoiltBitOfABurstShowsInItsCrcs) {
    for (const char* name : {"tq1a8", "tq2a4", "td3c4", "tq4a32", "td3a16", "td6a24"}) {
        const MadeBit made = makeBit({.device = name});
        for (const StreamPiece& piece : takeApart(made.device, made.stream)) {
            if (!piece.isBurst()) continue;
            const Bytes spoilt = flip_bit(made.stream, piece.dataOffset * 8 + 5);
            EXPECT_NE(wrongCrcs(takeApart(made.device, spoilt)), std::vector<size_t>{}) << name;
        }
    }
}

TEST(BitMaker, GivenContentsComeOutAgainAndLeaveTheOthers) {
    std::mt19937 random(1);
    for (const char* name :
        {"tq1a8", "td2e8", "tq2a4", "tq2p8", "tq4a32", "tq7a7", "td3c4", "td3e4", "td3a16", "td6a24"})
        for (const bool separate : {false, true}) {
            BitRecipe recipe{.device = name, .separateBram = separate};
            if (separate) recipe.clbFrames = 1;
            const MadeBit before = makeBit(recipe);
            const std::vector<MemorySite> sites = sitesOf(before.device);
            for (size_t i : {size_t{0}, sites.size() / 2, sites.size() - 1})
                recipe.contents.emplace_back(sites[i], randomImages(random, before.device, sites[i]));
            const MadeBit made = makeBit(recipe);
            for (const auto& [site, images] : recipe.contents)
                EXPECT_EQ(memoryOf(made.device, made.stream, site), images) << name << " " << site.x << " " << site.y;
            const MemorySite& other = sites[1];
            EXPECT_EQ(memoryOf(made.device, made.stream, other), memoryOf(made.device, before.stream, other)) << name;
        }
}

TEST(BitMaker, MemoriesOfADeviceShareNoFrameBits) {
    for (const char* name : {"tq1a8", "tq2a4", "td3c4", "td6a24", "tq4a32"}) {
        const TarselDeviceType* device = get_device_record_by_name(name);
        const std::vector<MemorySite> sites = sitesOf(device);
        u64 ones = 0;
        u64 wanted = 0;
        for (u32 column = 0; column < device->physicalColumns; ++column) {
            Bytes bytes(
                columnStart(device, column) + 2 * device->memoryLocs[0].type->frameCount * device->bramFrameBits / 8);
            for (const MemorySite& site : sites) {
                const MemoryFrames frames(device, site);
                if (frames.column() != column) continue;
                MemoryImages images{
                    Bytes(site.memory->type->dataBits / 8, 0xFF), Bytes(site.memory->type->parityBits / 8, 0xFF)};
                frames.write(bytes, columnStart(device, column), images);
                wanted += site.memory->type->dataBits + site.memory->type->parityBits;
            }
            for (u8 byte : bytes) ones += static_cast<u64>(__builtin_popcount(byte));
        }
        EXPECT_EQ(ones, wanted) << name;
    }
}

TEST(BitMaker, DiceOfAStackEachHaveTheirSegment) {
    std::mt19937 random(2);
    BitRecipe recipe{.device = "tq7c118", .separateBram = true, .clbFrames = 1};
    const TarselDeviceType* device = get_device_record_by_name("tq7c118");
    const std::vector<MemorySite> sites = sitesOf(device, 2);
    for (size_t i : {size_t{0}, sites.size() / 2, sites.size() - 1})
        recipe.contents.emplace_back(sites[i], randomImages(random, device, sites[i]));
    const MadeBit made = makeBit(recipe);
    const std::vector<StreamPiece> pieces = takeApart(device, made.stream);
    EXPECT_EQ(wrongCrcs(pieces), std::vector<size_t>{});
    u32 syncs = 0;
    for (const StreamPiece& piece : pieces) syncs += piece.kind == StreamPiece::SYNC;
    EXPECT_EQ(syncs, 3U);
    for (const auto& [site, images] : recipe.contents) EXPECT_EQ(memoryOf(device, made.stream, pieces, site), images);
}

TEST(BitMaker, VariantsDifferInWhatTheyNameAlone) {
    const MadeBit plain = makeBit({.device = "tq2a4"});
    EXPECT_EQ(makeBit({.device = "tq2a4"}).stream, plain.stream) << "by seed";
    EXPECT_NE(makeBit({.device = "tq2a4", .seed = 2}).stream, plain.stream);
    const auto kinds = [](const BitRecipe& recipe) {
        const MadeBit made = makeBit(recipe);
        std::set<u32> seen;
        for (const StreamPiece& piece : takeApart(made.device, made.stream))
            if (piece.kind == StreamPiece::PACKET) seen.insert(piece.registerKind);
        return seen;
    };
    EXPECT_FALSE(kinds({.device = "tq2a4"}).contains(reg::kMFWR));
    EXPECT_TRUE(kinds({.device = "tq2a4", .compressed = true}).contains(reg::kMFWR));
    EXPECT_TRUE(kinds({.device = "tq2a4", .readRegisters = true}).contains(reg::kSTAT));
    EXPECT_FALSE(kinds({.device = "tq2a4", .closingCrc = false}).contains(reg::kCRC));
}

TEST(BitMaker, BypassedCrcsAreTheBypassValue) {
    for (const auto& [name, value] : {std::pair{"tq2a4", 0xDEFCU}, {"tq7a7", 0xDEFCU}, {"td3a16", 0x9876DEFCU}}) {
        const MadeBit made = makeBit({.device = name, .crcBypassed = true});
        for (const StreamPiece& piece : takeApart(made.device, made.stream)) {
            if (!piece.isCrc()) continue;
            EXPECT_EQ(piece.value, value) << name;
            EXPECT_EQ(piece.crc, value) << name;
        }
    }
}

TEST(BitMaker, RefusesADeviceThatIsNone) {
    EXPECT_THROW(makeBit({.device = "zz"}), std::invalid_argument);
}

TEST(BitMaker, TheCrcsHaveTheirKnownValues) {
    StreamCrc castagnoli(&kTarsel7FamilyTable);
    castagnoli.enter(1, 0);
    EXPECT_EQ(castagnoli.value(), 0x8AD958CFU);
    castagnoli.reset();
    castagnoli.enter(0, 1);
    EXPECT_EQ(castagnoli.value(), 0xC5670B91U);
    StreamCrc signature(&kDunmare6FamilyTable);
    signature.enter(0x3F, 0xABCD);
    signature.enter(0, 0);
    EXPECT_EQ(signature.value(), 0x3F579BU ^ 0x9080U);
}

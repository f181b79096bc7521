// memory_lookup_test.cpp - memory types: the static ones, those of a device, those that a user defines.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/memory_lookup.h"

#include "DeviceTableUtils/device_lookup.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "all_devices.h"
#include "support/allocation_faults.h"

#include <algorithm>

namespace {

using memdata::memoryTypeRecordName;
using memdata::SystemResources;

class MemoryLookup : public ::testing::Test {
protected:
    ~MemoryLookup() override { delete_MEMORY_extended_types(); }

    static constexpr u32 kWIDTHS[] = {8, 24};
    static MEMORYLocType* define(const char* name, u64 byteSize = 512, const token_type* token = nullptr) {
        return create_MEMORY_extended_type(name, kUSER_MEMORY_CLASS, token, byteSize, kWIDTHS, 2);
    }
    static size_t userTypes() {
        size_t count = 0;
        MEMORYLocType* cursor = get_MEMORY_extended_list();
        for (MEMORYLocType* at = get_MEMORY_next_record(&cursor, true); at != nullptr;
             at = get_MEMORY_next_record(&cursor, false))
            ++count;
        return count;
    }
    TarselDeviceType* device(const char* name) { return get_device_record_by_name(name); }

private:
    SystemResources resources_;
};

// Walks.

std::string walk(MEMORYLocType* collection) {
    std::string names;
    MEMORYLocType* cursor = collection;
    for (MEMORYLocType* at = get_MEMORY_next_record(&cursor, true); at != nullptr;
         at = get_MEMORY_next_record(&cursor, false))
        names += std::string(at->type->name) + " ";
    EXPECT_EQ(cursor, nullptr);
    return names;
}

TEST_F(MemoryLookup, AWalkGivesADevicesTypesSmallestFirst) {
    EXPECT_EQ(walk(device("tq7b100")->memoryLocs), "RAMB16 RAMB18 RAMB32 RAMB36 ");
    EXPECT_EQ(walk(device("td6a84")->memoryLocs), "RAMB8 RAMB9 RAMB16 RAMB18 ");
}

TEST_F(MemoryLookup, AWalkOverTheUsersTypesLeavesTheHeaderOut) {
    define("alpha");
    define("beta");
    EXPECT_EQ(walk(get_MEMORY_extended_list()), "alpha beta ");
}

TEST_F(MemoryLookup, AWalkOverNoUsersTypesIsEmpty) {
    EXPECT_EQ(walk(get_MEMORY_extended_list()), "");
}

TEST_F(MemoryLookup, AWalkBehindItsEndStaysThere) {
    MEMORYLocType* cursor = device("tq1a8")->memoryLocs;
    EXPECT_NE(get_MEMORY_next_record(&cursor, true), nullptr);
    EXPECT_EQ(get_MEMORY_next_record(&cursor, false), nullptr);
    EXPECT_EQ(get_MEMORY_next_record(&cursor, false), nullptr);
}

TEST_F(MemoryLookup, TheStaticTypesStandInTheirOrder) {
    std::string names;
    for (const MEMORYLocType* at = definedStaticMEMORYTypes; at->type != nullptr; ++at) {
        names += std::string(memoryTypeRecordName(at->type)) + "\n";
        EXPECT_EQ(at->physicalLocs, nullptr);
        EXPECT_EQ(at->logicalLocs, nullptr);
    }
    EXPECT_EQ(names, "RAMB4_BRAM\n"
                     "T2RAMB16_BRAM\nT2RAMB18_BRAM\n"
                     "T4RAMB16_BRAM\nT4RAMB18_BRAM\n"
                     "D3RAMB16_BRAM\nD3RAMB18_BRAM\n"
                     "T5RAMB16_BRAM\nT5RAMB18_BRAM\nT5RAMB32_BRAM\nT5RAMB36_BRAM\n"
                     "T6RAMB16_BRAM\nT6RAMB18_BRAM\nT6RAMB32_BRAM\nT6RAMB36_BRAM\n"
                     "D6RAMB8_BRAM\nD6RAMB9_BRAM\nD6RAMB16_BRAM\nD6RAMB18_BRAM\n");
}

// By name.

TEST_F(MemoryLookup, ANameIsFoundWithoutCase) {
    EXPECT_EQ(lookup_MEMORY_type_by_name(definedStaticMEMORYTypes, "ramb36")->type, &T5RAMB36_BRAM);
}

TEST_F(MemoryLookup, ANullNameGivesTheFirstElement) {
    EXPECT_EQ(lookup_MEMORY_type_by_name(definedStaticMEMORYTypes, nullptr)->type, &RAMB4_BRAM);
    EXPECT_EQ(lookup_MEMORY_type_by_name(get_MEMORY_extended_list(), nullptr), nullptr);
}

TEST_F(MemoryLookup, WithADeviceItsOwnTypesAnswer) {
    EXPECT_EQ(get_MEMORY_type_from_name(device("tq7b100"), "RAMB18")->type, &T6RAMB18_BRAM);
    EXPECT_EQ(get_MEMORY_type_from_name(device("tq4a32"), "RAMB18")->type, &T4RAMB18_BRAM);
    EXPECT_EQ(get_MEMORY_type_from_name(device("tq4a32"), "RAMB36"), nullptr);
}

TEST_F(MemoryLookup, WithoutADeviceTheStaticTypesAnswer) {
    EXPECT_EQ(get_MEMORY_type_from_name(nullptr, "RAMB18")->type, &T2RAMB18_BRAM);
    EXPECT_EQ(get_MEMORY_type_from_name(nullptr, "RAMB9")->type, &D6RAMB9_BRAM);
    EXPECT_EQ(get_MEMORY_type_from_name(nullptr, "RAMB5"), nullptr);
}

TEST_F(MemoryLookup, AUsersTypeIsFoundWithAndWithoutADevice) {
    MEMORYLocType* mine = define("mine");
    EXPECT_EQ(get_MEMORY_type_from_name(nullptr, "mine"), mine);
    EXPECT_EQ(get_MEMORY_type_from_name(device("tq7b100"), "MINE"), mine);
}

TEST_F(MemoryLookup, UsersTypesAreFoundWithoutCaseTheFirstOfANameAndTheFirstOfAllForNone) {
    MEMORYLocType* first = get_MEMORY_type_from_token(nullptr, &kGENERIC_MEMORY_KEYWORD);
    get_MEMORY_type_from_token(nullptr, &kGENERIC_MEMORY_KEYWORD);
    MEMORYLocType* other = create_MEMORY_extended_type("Sram_A", 0, nullptr, 1024, nullptr, 0);
    EXPECT_EQ(get_MEMORY_type_from_name(nullptr, "sRAM_a"), other);
    EXPECT_EQ(get_MEMORY_type_from_name(nullptr, "memory"), first);
    EXPECT_EQ(get_MEMORY_type_from_name(nullptr, "sram"), nullptr);
    delete_MEMORY_extended_types();
    EXPECT_EQ(get_MEMORY_type_from_name(nullptr, "Sram_A"), nullptr);
}

// By token.

TEST_F(MemoryLookup, ATokenIsFoundInTheDevice) {
    EXPECT_EQ(get_MEMORY_type_from_token(device("td6a84"), &kBRAM_RAMB9_KEYWORD)->type, &D6RAMB9_BRAM);
    EXPECT_EQ(get_MEMORY_type_from_token(device("td6a84"), &kBRAM_RAMB36_KEYWORD), nullptr);
}

TEST_F(MemoryLookup, ATokenIsFoundAmongTheStaticTypesWithoutADevice) {
    EXPECT_EQ(get_MEMORY_type_from_token(nullptr, &kBRAM_RAMB16_KEYWORD)->type, &T2RAMB16_BRAM);
}

TEST_F(MemoryLookup, AUsersTokenIsFoundLast) {
    const token_type word{&kMEMORY_TYPE_TOKEN, 2, 11, 0};
    MEMORYLocType* mine = define("mine", 512, &word);
    EXPECT_EQ(get_MEMORY_type_from_token(nullptr, &word), mine);
    EXPECT_EQ(get_MEMORY_type_from_token(device("tq7b100"), &word), mine);
    EXPECT_EQ(lookup_MEMORY_type_by_token(get_MEMORY_extended_list(), &word), mine);
}

TEST_F(MemoryLookup, EachUseOfTheWordMemoryMakesATypeOfItsOwn) {
    MEMORYLocType* first = get_MEMORY_type_from_token(nullptr, &kGENERIC_MEMORY_KEYWORD);
    MEMORYLocType* second = get_MEMORY_type_from_token(device("tq7b100"), &kGENERIC_MEMORY_KEYWORD);
    EXPECT_NE(first, second);
    EXPECT_EQ(userTypes(), 2u);
    EXPECT_STREQ(first->type->name, "MEMORY");
    EXPECT_EQ(first->type->sizeUnits, 4096u);
    EXPECT_EQ(first->type->dataBits, 0u);
    EXPECT_EQ(first->type->token, &kGENERIC_MEMORY_KEYWORD);
    EXPECT_STREQ(first->type->widthsText, "8 16 32");
    EXPECT_EQ(first->type->widths[2], 32u);
    EXPECT_EQ(first->type->widths[3], 0u);
}

// Definitions.

TEST_F(MemoryLookup, ADefinitionKeepsWhatItIsGiven) {
    const token_type word{&kMEMORY_TYPE_TOKEN, 2, 11, 0};
    const MEMORYLocType* mine = define("mine", 512, &word);
    EXPECT_EQ(mine->isListLink, 1u);
    EXPECT_STREQ(mine->type->name, "mine");
    EXPECT_EQ(mine->type->sizeUnits, 0x8000u);
    EXPECT_EQ(mine->type->token, &word);
    EXPECT_EQ(mine->type->dataBits, 4096u);
    EXPECT_STREQ(mine->type->widthsText, "8 24");
    EXPECT_EQ(mine->type->parityBits, 0u);
    EXPECT_FALSE(mine->type->isBlockRam);
    EXPECT_EQ(mine->type->subRowFactor, 0u);
}

TEST_F(MemoryLookup, ASecondDefinitionKeepsTheFirstSizesAndTakesTheToken) {
    const token_type word{&kMEMORY_TYPE_TOKEN, 2, 11, 0};
    MEMORYLocType* first = define("mine", 512);
    MEMORYLocType* second = define("MINE", 2048, &word);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first->type->dataBits, 4096u);
    EXPECT_EQ(first->type->token, &word);
    EXPECT_EQ(userTypes(), 1u);
}

TEST_F(MemoryLookup, OnlyTheWordMemoryAsItStandsMakesATypeEachTime) {
    MEMORYLocType* first = define("Memory");
    EXPECT_EQ(define("memory"), first);
    EXPECT_NE(define("MEMORY"), first);
    EXPECT_NE(define("MEMORY"), nullptr);
    EXPECT_EQ(userTypes(), 3u);
}

TEST_F(MemoryLookup, AHitBuildsTheArraysThatADeviceLacks) {
    TarselDeviceType lacking = *device("tq7a5");
    lacking.memoryLocs[3].logicalLocs = nullptr;
    EXPECT_NE(get_MEMORY_type_from_name(&lacking, "RAMB36")->logicalLocs, nullptr);
    lacking.memoryLocs[3].logicalLocs = nullptr;
    EXPECT_NE(get_MEMORY_type_from_token(&lacking, &kBRAM_RAMB36_KEYWORD)->logicalLocs, nullptr);
}

TEST_F(MemoryLookup, AHitAmongTheUsersTypesBuildsThemToo) {
    TarselDeviceType lacking = *device("tq7a5");
    lacking.memoryLocs[0].physicalLocs = nullptr;
    define("mine");
    ASSERT_NE(get_MEMORY_type_from_name(&lacking, "mine"), nullptr);
    EXPECT_NE(lacking.memoryLocs[0].physicalLocs, nullptr);
}

TEST_F(MemoryLookup, ADefinitionOfAStaticNameReplacesItsTokenAlone) {
    const token_type word{&kMEMORY_TYPE_TOKEN, 2, 11, 0};
    EXPECT_EQ(define("RAMB16", 1, &word)->type, &T2RAMB16_BRAM);
    EXPECT_EQ(T2RAMB16_BRAM.token, &word);
    EXPECT_EQ(T2RAMB16_BRAM.dataBits, 16384u);
    EXPECT_EQ(userTypes(), 0u);
}

TEST(MemoryTypes, AReplacedTokenIsBackInTheNextLifetime) {
    const token_type word{&kMEMORY_TYPE_TOKEN, 2, 11, 0};
    {
        SystemResources resources;
        const u32 width = 8;
        create_MEMORY_extended_type("RAMB16", kUSER_MEMORY_CLASS, &word, 1, &width, 1);
        create_MEMORY_extended_type("mine", kUSER_MEMORY_CLASS, &word, 1, &width, 1);
    }
    EXPECT_EQ(T2RAMB16_BRAM.token, &kBRAM_RAMB16_KEYWORD);
    EXPECT_EQ(get_MEMORY_extended_list()->next, nullptr);
    EXPECT_EQ(getCurrentMemoryUsage(), 0u);
}

TEST_F(MemoryLookup, MoreWidthsThanATypeHoldsAreCut) {
    std::vector<u32> widths(40);
    for (u32 i = 0; i < 40; ++i) widths[i] = i + 1;
    const MEMORYLocType* mine = create_MEMORY_extended_type("mine", kUSER_MEMORY_CLASS, nullptr, 1, widths.data(), 40);
    EXPECT_EQ(mine->type->widths[14], 15u);
    EXPECT_EQ(mine->type->widths[15], 0u);
}

TEST_F(MemoryLookup, DeletingLeavesNoUsersTypes) {
    define("mine");
    delete_MEMORY_extended_types();
    EXPECT_EQ(get_MEMORY_type_from_name(nullptr, "mine"), nullptr);
    EXPECT_EQ(userTypes(), 0u);
    define("yours");
    EXPECT_EQ(walk(get_MEMORY_extended_list()), "yours ");
}

TEST_F(MemoryLookup, ADefinitionWithoutMemoryGivesNullAndLeavesNothing) {
    const auto sweep = memdata::testing::sweepAllocationFaults([] {
        MEMORYLocType* mine = define("mine");
        const int status = mine == nullptr ? 7 : 0;
        delete_MEMORY_extended_types();
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 3u);
}

// Widths.

i32 widthIndex(const MEMORYType& type, u32 width) {
    for (i32 i = 0; type.widths[i] != 0; ++i)
        if (type.widths[i] == width) return i;
    return -1;
}

TEST(MemoryTypes, NineBitLanesNeedATypeWithParityWidths) {
    EXPECT_EQ(widthIndex(T2RAMB16_BRAM, 9), -1);
    const i32 index = widthIndex(T2RAMB18_BRAM, 9);
    ASSERT_EQ(index, 3);
    EXPECT_EQ(T2RAMB18_BRAM.parityWidths[index], 1u);
}

TEST(MemoryTypes, ParityWidthsFollowTheWidth) {
    for (const MEMORYLocType* at = definedStaticMEMORYTypes; at->type != nullptr; ++at)
        for (u32 i = 0; i < kMAX_LANE_WIDTHS; ++i) {
            const u32 width = at->type->widths[i];
            const u32 parity = width == 9 || width == 18 || width == 36 || width == 72 ? width / 9 : 0;
            EXPECT_EQ(at->type->parityWidths[i], parity) << memoryTypeRecordName(at->type) << " " << width;
        }
}

TEST(MemoryTypes, RAMB9KeepsAListWithoutNineBitLanes) {
    EXPECT_TRUE(D6RAMB9_BRAM.hasParityWidths);
    EXPECT_STREQ(D6RAMB9_BRAM.widthsText, "1, 2, 4, 8, 16, 32");
}

// All static types as one table: cell, units, bits, widths, frames, slice, address rows, image rows, flags.
std::string describe(const MEMORYType& type) {
    std::string line = std::string(memoryTypeRecordName(&type)) + " " + type.name + "/" + type.cellName;
    for (u64 value : {u64{type.sizeUnits}, type.dataBits, u64{type.parityBits}}) line += " " + std::to_string(value);
    line += std::string(" \"") + type.widthsText + "\"";
    for (u64 value : {type.frameCount, type.frameSliceBits, type.addressRows, u64{type.dataRowBits},
             u64{type.parityRows}, u64{type.parityRowBits}, u64{type.subRowFactor}})
        line += " " + std::to_string(value);
    line += std::string(" ") + (type.isBlockRam ? "1" : "0") + (type.hasParityWidths ? "1" : "0") +
            (type.hasInterleavedParity ? "1" : "0");
    return line + "\n";
}

TEST(MemoryTypes, HaveTheirFigures) {
    std::string all;
    for (const MEMORYLocType* at = definedStaticMEMORYTypes; at->type != nullptr; ++at) all += describe(*at->type);
    EXPECT_EQ(all, "RAMB4_BRAM RAMB4/RAMB4 1 4096 0 \"1, 2, 4, 8, 16\" 64 72 64 64 0 0 1 100\n"
                   "T2RAMB16_BRAM RAMB16/RAMB16 4 16384 2048 \"1, 2, 4, 8, 16, 32\" 64 320 64 256 64 32 1 100\n"
                   "T2RAMB18_BRAM RAMB18/RAMB16 4 16384 2048 \"1, 2, 4, 9, 18, 36\" 64 320 64 256 64 32 1 110\n"
                   "T4RAMB16_BRAM RAMB16/RAMB16 4 16384 2048 \"1, 2, 4, 8, 16, 32\" 64 320 64 256 64 32 1 101\n"
                   "T4RAMB18_BRAM RAMB18/RAMB16 4 16384 2048 \"1, 2, 4, 9, 18, 36\" 64 320 64 256 64 32 1 111\n"
                   "D3RAMB16_BRAM RAMB16/RAMB16 4 16384 2048 \"1, 2, 4, 8, 16, 32\" 76 256 64 256 64 32 1 100\n"
                   "D3RAMB18_BRAM RAMB18/RAMB16 4 16384 2048 \"1, 2, 4, 9, 18, 36\" 76 256 64 256 64 32 1 110\n"
                   "T5RAMB16_BRAM RAMB16/RAMB18 4 16384 2048 \"1, 2, 4, 8, 16, 32\" 128 160 128 128 128 16 2 101\n"
                   "T5RAMB18_BRAM RAMB18/RAMB18 4 16384 2048 \"1, 2, 4, 9, 18, 36\" 128 160 128 128 128 16 2 111\n"
                   "T5RAMB32_BRAM RAMB32/RAMB36 8 32768 4096 \"1, 2, 4, 8, 16, 32, 64\" 128 320 128 256 128 32 1 101\n"
                   "T5RAMB36_BRAM RAMB36/RAMB36 8 32768 4096 \"1, 2, 4, 9, 18, 36, 72\" 128 320 128 256 128 32 1 111\n"
                   "T6RAMB16_BRAM RAMB16/RAMB18 4 16384 2048 \"1, 2, 4, 8, 16, 32\" 128 160 128 128 128 16 2 101\n"
                   "T6RAMB18_BRAM RAMB18/RAMB18 4 16384 2048 \"1, 2, 4, 9, 18, 36\" 128 160 128 128 128 16 2 111\n"
                   "T6RAMB32_BRAM RAMB32/RAMB36 8 32768 4096 \"1, 2, 4, 8, 16, 32, 64\" 128 320 128 256 128 32 1 101\n"
                   "T6RAMB36_BRAM RAMB36/RAMB36 8 32768 4096 \"1, 2, 4, 9, 18, 36, 72\" 128 320 128 256 128 32 1 111\n"
                   "D6RAMB8_BRAM RAMB8/RAMB8 2 8192 1024 \"1, 2, 4, 8, 16, 32\" 32 288 32 256 32 32 1 101\n"
                   "D6RAMB9_BRAM RAMB9/RAMB8 2 8192 1024 \"1, 2, 4, 8, 16, 32\" 32 288 32 256 32 32 1 111\n"
                   "D6RAMB16_BRAM RAMB16/RAMB16 4 16384 2048 \"1, 2, 4, 8, 16, 32\" 64 288 64 256 64 32 1 101\n"
                   "D6RAMB18_BRAM RAMB18/RAMB16 4 16384 2048 \"1, 2, 4, 9, 18, 36\" 64 288 64 256 64 32 1 111\n");
}

// Image buffers.

TEST_F(MemoryLookup, TheLargestMemoryHasOneBufferForBothImages) {
    u8* parity = nullptr;
    u8* data = get_BRAM_largest_from_device(device("tq7b100"), &parity);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(parity - data, 4096);
    EXPECT_TRUE(std::all_of(data, data + 4608, [](u8 byte) { return byte == 0; }));
    releaseMemory(data);
}

TEST_F(MemoryLookup, TheFirstOfEquallyLargeTypesGivesTheBuffer) {
    u8* parity = nullptr;
    u8* data = get_BRAM_largest_from_device(device("tq1a8"), &parity);
    EXPECT_EQ(parity - data, 512);
    releaseMemory(data);
}

TEST_F(MemoryLookup, ThereIsNoBufferWithoutADeviceOrMemory) {
    u8* parity = nullptr;
    EXPECT_EQ(get_BRAM_largest_from_device(nullptr, &parity), nullptr);
    const u32 mask = EnablePrintAlerts(0);
    memdata::failTrackedAllocation(1);
    EXPECT_EQ(get_BRAM_largest_from_device(device("tq7b100"), &parity), nullptr);
    EnablePrintAlerts(mask);
}

} // namespace

// text_test.cpp - words of processors, check codes and memories.
// SPDX-License-Identifier: Apache-2.0
#include "model_fixture.h"

using namespace memdata::testing;

namespace {

using Words = ModelTest;

struct EccCase {
    u32 type;
    const char* word;
};
constexpr EccCase kECC_CASES[] = {
    {1, "ECCH32-7"}, {2, "ECCH64-8"}, {3, "ECCHSIAO32-7"}, {4, "ECCHSIAO64-8"}, {5, "ECCHSIAO128-9"}};

struct ProcessorCase {
    u64 type;
    const char* word;
};
constexpr ProcessorCase kPROCESSOR_CASES[] = {{1, "PPC405"}, {2, "KESTREL"}, {4, "WRENLET"}, {8, "PPC440"},
    {16, "KESTREL-LE"}, {32, "ARM"}, {256, "CONFIGPROM"}, {512, "RISCV"}};

} // namespace

TEST_F(Words, EccTypesHaveTheirWords) {
    for (const EccCase& c : kECC_CASES) {
        EXPECT_EQ(get_ECC_type(c.word), c.type);
        EXPECT_STREQ(get_ECCAlgorithmType_string(c.type), c.word);
    }
}

TEST_F(Words, OtherEccTextsAndTypesAreNone) {
    for (const char* word : {"", "ECC", "ecch32-7", "ECCH32-7 ", "none"}) EXPECT_EQ(get_ECC_type(word), 0u) << word;
    EXPECT_EQ(get_ECC_type(nullptr), 0u);
    for (u32 type : {0u, 6u, 0xFFFFFFFFu}) EXPECT_STREQ(get_ECCAlgorithmType_string(type), "") << type;
}

TEST_F(Words, TheEccTextOfALaneBeginsWithABlank) {
    char* word = construct_ECC_string(kECC_HSIAO64_8);
    char* none = construct_ECC_string(kECC_NONE);
    EXPECT_STREQ(word, " ECCHSIAO64-8");
    EXPECT_STREQ(none, "");
    StrDelete(word);
    StrDelete(none);
}

TEST_F(Words, ProcessorTypesHaveTheirWords) {
    for (const ProcessorCase& c : kPROCESSOR_CASES) {
        EXPECT_EQ(get_processorType(c.word), c.type);
        EXPECT_STREQ(get_processorType_string(c.type), c.word);
    }
}

TEST_F(Words, OtherProcessorTextsAndTypesAreUnknown) {
    for (const char* word : {"", "arm", "ARM64", "PPC"}) EXPECT_EQ(get_processorType(word), 0u) << word;
    EXPECT_EQ(get_processorType(nullptr), 0u);
    for (u64 type : {u64{0}, u64{3}, u64{64}, UINT64_MAX}) EXPECT_STREQ(get_processorType_string(type), "???CPU");
}

TEST_F(Words, AMemoryTypeGivesItsName) {
    TestMap map;
    map.space("ram", 0, "RAMB36", {"a[7:0]"});
    EXPECT_STREQ(get_memory_type_string(map.lane("a")->lane->memory->type), "RAMB36");
    EXPECT_STREQ(get_memory_type_string(nullptr), "");
}

TEST_F(Words, MemoryWordsStandInTheirClassInOrder) {
    const token_type* leaves[] = {&kBRAM_RAMB4_KEYWORD, &kBRAM_RAMB8_KEYWORD, &kBRAM_RAMB9_KEYWORD,
        &kBRAM_RAMB16_KEYWORD, &kBRAM_RAMB18_KEYWORD, &kBRAM_RAMB32_KEYWORD, &kBRAM_RAMB36_KEYWORD,
        &kGENERIC_MEMORY_KEYWORD, &kGRID_MEMORY_KEYWORD, &kCOMBINED_MEMORY_KEYWORD};
    u32 ordinal = 0;
    for (const token_type* leaf : leaves) {
        EXPECT_EQ(leaf->parent, &kMEMORY_TYPE_TOKEN);
        EXPECT_EQ(leaf->level, 2u);
        EXPECT_EQ(leaf->ordinal, ++ordinal);
    }
    EXPECT_EQ(kMEMORY_TYPE_TOKEN.parent, &kBMM_KEYWORD_TOKEN);
    EXPECT_EQ(kMEMORY_TYPE_TOKEN.ordinal, 5u);
    EXPECT_EQ(kMEMORY_TYPE_TOKEN.childCount, ordinal); // words of users follow
}

TEST_F(Words, OnlyMemoriesOfOtherClassesChangeTheirSize) {
    TestMap map;
    MEMORYLocType* memory = map.define("MEMORY", 0x1000, {8});
    memdata::setMemoryDataBits(memory, 64);
    EXPECT_EQ(memory->type->dataBits, 64u);
    map.space("ram", 0, "RAMB36", {"a[7:0]"});
    memdata::setMemoryDataBits(map.lane("a")->lane->memory, 64);
    EXPECT_EQ(map.lane("a")->lane->memory->type->dataBits, 32768u);
    memdata::setMemoryDataBits(nullptr, 64);
}

TEST_F(Words, ADevicesBytesHoldItsDataAndParityBits) {
    TestMap map;
    map.space("ram", 0, "RAMB36", {"a[7:0]"});
    EXPECT_EQ(memdata::memoryByteSize(map.lane("a")->lane->memory), 4608u);
    EXPECT_EQ(memdata::memoryByteSize(nullptr), 0u);
    const MEMORYLocType none{};
    EXPECT_EQ(memdata::memoryByteSize(&none), 0u);
}

// iteration_test.cpp - walks over the spaces of a mapping, and look-ups.
// SPDX-License-Identifier: Apache-2.0
#include "model_fixture.h"

using namespace memdata::testing;

namespace {

using Walk = ModelTest;
using LookUp = ModelTest;

// Two maps: cpu with a, b, c and dsp with d, e.
struct TwoMaps : TestMap {
    TwoMaps() {
        map("cpu");
        plainSpace(*this, "a", 0x0000, 0x0FFF);
        plainSpace(*this, "b", 0x1000, 0x1FFF);
        plainSpace(*this, "c", 0x2000, 0x2FFF);
        map("dsp");
        plainSpace(*this, "d", 0x0000, 0x0FFF);
        plainSpace(*this, "e", 0x1000, 0x1FFF);
    }
};

std::string name_of(const AddressSpaceLinkType* link) {
    return link == nullptr ? "none" : link->space->name;
}

// Where the iterator stands: "name spaceIndex/mapIndex/indexInMap".
std::string place(const AddressSpaceIteratorType& at) {
    return name_of(at.link) + " " + std::to_string(at.spaceIndex) + "/" + std::to_string(at.mapIndex) + "/" +
           std::to_string(at.indexInMap);
}

std::string walk(AddressMappingType* mapping, u32 mask) {
    AddressSpaceIteratorType at;
    std::string text;
    for (auto* link = iterate_first_addressSpace(mapping, kFIRST_SPACE_OF_MAPPING, &at, 0, 0, 0, mask); link != nullptr;
         link = iterate_next_addressSpace(kNEXT_SPACE_OF_MAPPING, &at))
        text += place(at) + "\n";
    return text;
}

std::string walk_map(AddressMappingType* mapping, u64 mapIndex, u32 mask = kALL_MEMORY_CLASSES) {
    AddressSpaceIteratorType at;
    std::string text;
    for (auto* link = iterate_first_addressSpace(mapping, kFIRST_SPACE_OF_MAP, &at, 0, mapIndex, 0, mask);
         link != nullptr; link = iterate_next_addressSpace(kNEXT_SPACE_OF_MAP, &at))
        text += place(at) + "\n";
    return text;
}

} // namespace

TEST_F(Walk, VisitsAllSpacesMapByMap) {
    TwoMaps map;
    EXPECT_EQ(walk(map.get(), kALL_MEMORY_CLASSES), "cpu.a 0/0/0\n"
                                                    "cpu.b 1/0/1\n"
                                                    "cpu.c 2/0/2\n"
                                                    "dsp.d 3/1/0\n"
                                                    "dsp.e 4/1/1\n");
}

TEST_F(Walk, OfOneMapEndsWithIt) {
    TwoMaps map;
    EXPECT_EQ(walk_map(map.get(), 0), "cpu.a 0/0/0\ncpu.b 1/0/1\ncpu.c 2/0/2\n");
    EXPECT_EQ(walk_map(map.get(), 1), "dsp.d 3/1/0\ndsp.e 4/1/1\n");
    EXPECT_EQ(walk_map(map.get(), 2), "");
}

TEST_F(Walk, BeginsAtTheSpaceOfAnyIndex) {
    TwoMaps map;
    const char* expected[] = {"cpu.a 0/0/0", "cpu.b 1/0/1", "cpu.c 2/0/2", "dsp.d 3/1/0", "dsp.e 4/1/1"};
    for (u64 i = 0; i < std::size(expected); ++i) {
        AddressSpaceIteratorType at;
        ASSERT_NE(iterate_first_addressSpace(map.get(), 1, &at, i, 0, 0, kALL_MEMORY_CLASSES), nullptr) << i;
        EXPECT_EQ(place(at), expected[i]);
    }
    AddressSpaceIteratorType at;
    EXPECT_EQ(iterate_first_addressSpace(map.get(), 1, &at, 5, 0, 0, kALL_MEMORY_CLASSES), nullptr);
    EXPECT_EQ(iterate_first_addressSpace(map.get(), 1, &at, UINT64_MAX, 0, 0, kALL_MEMORY_CLASSES), nullptr);
}

TEST_F(Walk, BeginsAtAnIndexInsideAMap) {
    TwoMaps map;
    AddressSpaceIteratorType at;
    iterate_first_addressSpace(map.get(), 2, &at, 0, 0, 2, kALL_MEMORY_CLASSES);
    EXPECT_EQ(place(at), "cpu.c 2/0/2");
    iterate_first_addressSpace(map.get(), 2, &at, 0, 1, 1, kALL_MEMORY_CLASSES);
    EXPECT_EQ(place(at), "dsp.e 4/1/1");
    EXPECT_EQ(iterate_first_addressSpace(map.get(), 2, &at, 0, 0, 3, kALL_MEMORY_CLASSES), nullptr);
}

// On the way to a map every earlier one must have the index too.
TEST_F(Walk, AShorterMapOnTheWayEndsIt) {
    TestMap map;
    map.map("short");
    plainSpace(map, "a", 0, 0xF);
    map.map("long");
    plainSpace(map, "b", 0, 0xF);
    plainSpace(map, "c", 0, 0x1F);
    AddressSpaceIteratorType at;
    EXPECT_EQ(iterate_first_addressSpace(map.get(), 2, &at, 0, 1, 1, kALL_MEMORY_CLASSES), nullptr);
    EXPECT_EQ(walk_map(map.get(), 1), "long.b 1/1/0\nlong.c 2/1/1\n");
}

TEST_F(Walk, AnEmptyMapBetweenTwoFilledOnesEndsIt) {
    TestMap map;
    map.map("one");
    plainSpace(map, "a", 0, 0xF);
    map.map("empty");
    map.map("two");
    plainSpace(map, "b", 0, 0xF);
    EXPECT_EQ(walk(map.get(), kALL_MEMORY_CLASSES), "one.a 0/0/0\n");
    EXPECT_EQ(walk_map(map.get(), 2), "");
}

TEST_F(Walk, StaysEndedBehindAnEmptyMap) {
    TestMap map;
    map.map("one");
    plainSpace(map, "a", 0, 0xF);
    map.map("empty");
    map.map("two");
    plainSpace(map, "b", 0, 0xF);
    AddressSpaceIteratorType at;
    iterate_first_addressSpace(map.get(), 1, &at, 0, 0, 0, kALL_MEMORY_CLASSES);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(iterate_next_addressSpace(3, &at), nullptr);
        EXPECT_EQ(place(at), "one.a 0/0/0");
    }
}

TEST_F(Walk, AnEmptyFirstMapIsPassed) {
    TestMap map;
    map.map("empty");
    map.map("one");
    plainSpace(map, "a", 0, 0xF);
    EXPECT_EQ(walk(map.get(), kALL_MEMORY_CLASSES), "one.a 0/1/0\n");
}

TEST_F(Walk, AMaskOfBlockRamsSkipsAMemorySpaceAndDoesNotCountIt) {
    TestMap map;
    map.define("MEMORY", 0x1000, {8, 16, 32});
    plainSpace(map, "a", 0x0000, 0x0FFF);
    plainSpace(map, "flash", 0x1000, 0x1FFF, "MEMORY");
    plainSpace(map, "b", 0x2000, 0x2FFF);
    map.map("cpu");
    plainSpace(map, "rom", 0x0000, 0x0FFF, "MEMORY");
    plainSpace(map, "c", 0x1000, 0x1FFF);
    EXPECT_EQ(walk(map.get(), kBLOCK_RAM_CLASSES), "a 0/0/0\nb 1/0/1\ncpu.c 2/1/0\n");
    EXPECT_EQ(walk(map.get(), kGENERIC_MEMORY_CLASS), "flash 0/0/0\ncpu.rom 1/1/0\n");
    EXPECT_EQ(walk_map(map.get(), 1, kBLOCK_RAM_CLASSES), "cpu.c 2/1/0\n");
    EXPECT_EQ(walk(map.get(), 0), "");
}

TEST_F(Walk, ASpaceWithoutAMemoryTypeCountsUnderEveryMask) {
    TestMap map;
    map.space("bare", 0, std::vector<RangeText>{});
    EXPECT_EQ(walk(map.get(), 0), "bare 0/0/0\n");
    EXPECT_EQ(walk(map.get(), kBLOCK_RAM_CLASSES), "bare 0/0/0\n");
}

TEST_F(Walk, NoOrAnEmptyMappingAndOtherModesGiveNull) {
    TestMap empty;
    TwoMaps map;
    AddressSpaceIteratorType at;
    EXPECT_EQ(iterate_first_addressSpace(nullptr, 1, &at, 0, 0, 0, kALL_MEMORY_CLASSES), nullptr);
    EXPECT_EQ(iterate_next_addressSpace(3, &at), nullptr);
    EXPECT_EQ(iterate_first_addressSpace(empty.get(), 1, &at, 0, 0, 0, kALL_MEMORY_CLASSES), nullptr);
    EXPECT_EQ(iterate_next_addressSpace(4, &at), nullptr);
    for (unsigned mode : {0u, 3u, 4u, 5u})
        EXPECT_EQ(iterate_first_addressSpace(map.get(), mode, &at, 0, 0, 0, kALL_MEMORY_CLASSES), nullptr) << mode;
    iterate_first_addressSpace(map.get(), 1, &at, 0, 0, 0, kALL_MEMORY_CLASSES);
    for (unsigned mode : {0u, 1u, 2u, 5u}) EXPECT_EQ(iterate_next_addressSpace(mode, &at), nullptr) << mode;
    EXPECT_EQ(iterate_first_addressSpace(map.get(), 1, nullptr, 0, 0, 0, 1), nullptr);
    EXPECT_EQ(iterate_next_addressSpace(3, nullptr), nullptr);
}

TEST_F(Walk, DoesNotGoBack) {
    TwoMaps map;
    AddressSpaceIteratorType at;
    iterate_first_addressSpace(map.get(), 1, &at, 3, 0, 0, kALL_MEMORY_CLASSES);
    EXPECT_EQ(next_addressSpace_in_addressMapping(&at, 1), nullptr);
    EXPECT_EQ(next_addressMap_in_addressMapping(&at, 0, 0), nullptr);
    EXPECT_EQ(place(at), "dsp.d 3/1/0");
}

TEST_F(Walk, SteppersGoToTheirTargets) {
    TwoMaps map;
    AddressSpaceIteratorType at;
    iterate_first_addressSpace(map.get(), 1, &at, 0, 0, 0, kALL_MEMORY_CLASSES);
    next_addressSpace_in_addressMap(&at, 2);
    EXPECT_EQ(place(at), "cpu.c 2/0/2");
    next_addressSpace_in_addressMapping(&at, 4);
    EXPECT_EQ(place(at), "dsp.e 4/1/1");
    EXPECT_EQ(next_addressSpace_in_addressMap(&at, 2), nullptr);
    EXPECT_EQ(place(at), "dsp.e 4/1/1");
}

TEST_F(LookUp, FindsSpacesByTheirFullName) {
    TwoMaps map;
    AddressSpaceLinkType* link = nullptr;
    EXPECT_EQ(lookup_addressSpace_by_name("dsp.e", map.spaceNames(), &link), 0);
    EXPECT_EQ(name_of(link), "dsp.e");
    EXPECT_EQ(lookup_addressSpace_by_name("e", map.spaceNames(), &link), 11);
    EXPECT_EQ(link, nullptr);
    EXPECT_EQ(lookup_addressSpace_by_name("cpu.a", map.spaceNames(), nullptr), 0);
    EXPECT_EQ(lookup_addressSpace_by_name("cpu.a", nullptr, nullptr), 11);
    EXPECT_EQ(lookup_addressSpace_by_name(nullptr, map.spaceNames(), nullptr), 11);
}

TEST_F(LookUp, FindsSpacesThroughTheScopeChain) {
    TwoMaps map;
    symbol_context* scope = map.spaceNames();
    push_trunk_symbol_scope(&scope);
    EXPECT_EQ(lookup_addressSpace_by_name("cpu.a", scope, nullptr), 0);
    pop_symbol_scope(&scope);
}

TEST_F(LookUp, FindsMapsByName) {
    TwoMaps map;
    AddressMapType* found = nullptr;
    EXPECT_EQ(lookup_addressMap_by_name("dsp", map->symbolSpaces, &found), 0);
    EXPECT_STREQ(found->name, "dsp");
    EXPECT_EQ(lookup_addressMap_by_name("DSP", map->symbolSpaces, &found), 11);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(lookup_addressMap_by_name("cpu", map->symbolSpaces, nullptr), 0);
    EXPECT_EQ(lookup_addressMap_by_name("cpu", nullptr, nullptr), 11);
}

TEST_F(LookUp, FindsMapsByIndex) {
    TwoMaps map;
    EXPECT_STREQ(find_addressMap_by_index(map.get(), 1)->name, "dsp");
    EXPECT_EQ(find_addressMap_by_index(map.get(), 2), nullptr);
    EXPECT_EQ(find_addressMap_by_index(nullptr, 0), nullptr);
}

TEST_F(LookUp, FindsMapsAlongTheListWithTheirPosition) {
    TwoMaps map;
    u64 index = 99;
    EXPECT_STREQ(find_addressMap_by_name(map->addressMaps, "dsp", &index)->name, "dsp");
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(find_addressMap_by_name(map->addressMaps, "xyz", &index), nullptr);
    EXPECT_EQ(index, 1u); // the last one tried
    EXPECT_EQ(find_addressMap_by_name(nullptr, "cpu", &index), nullptr);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(find_addressMap_by_name(map->addressMaps, nullptr, nullptr), nullptr);
}

TEST_F(LookUp, FindsSpacesOfAMapWithTheirPosition) {
    TwoMaps map;
    u64 index = 99;
    EXPECT_EQ(name_of(find_addressSpace_by_name(map->addressMaps, "cpu.c", &index)), "cpu.c");
    EXPECT_EQ(index, 2u);
    EXPECT_EQ(find_addressSpace_by_name(map->addressMaps, "c", &index), nullptr);
    EXPECT_EQ(index, 2u);
    EXPECT_EQ(find_addressSpace_by_name(nullptr, "c", &index), nullptr);
}

TEST_F(LookUp, FindsNothingByAProcessorNumberThatExists) {
    TestMap map;
    map.map("cpu", "ARM", 7);
    u64 index = 5;
    EXPECT_EQ(find_addressMap_by_ID(map.get(), 7, &index), nullptr);
    EXPECT_EQ(index, 5u);
}

// insertion_test.cpp - the sorted list of spaces.
// SPDX-License-Identifier: Apache-2.0
#include "model_fixture.h"

#include <algorithm>
#include <random>

using namespace memdata::testing;

namespace {
using Insertion = ModelTest;
}

TEST_F(Insertion, SpacesAreSortedByTheirEndAddress) {
    TestMap map;
    plainSpace(map, "c", 0x0000, 0x3FFF); // begins first, ends last
    plainSpace(map, "a", 0x1000, 0x1FFF);
    plainSpace(map, "b", 0x2000, 0x2FFF);
    EXPECT_EQ(listSpaces(map.get()), ": a b c\n");
}

TEST_F(Insertion, SpacesOfEqualEndStandNewestFirst) {
    TestMap map;
    plainSpace(map, "first", 0x0000, 0x1FFF);
    plainSpace(map, "second", 0x1000, 0x1FFF);
    plainSpace(map, "below", 0x0000, 0x0FFF);
    plainSpace(map, "third", 0x0800, 0x1FFF);
    EXPECT_EQ(listSpaces(map.get()), ": below third second first\n");
}

TEST_F(Insertion, ANameThatTheMapHasChangesNothingAndGivesZero) {
    TestMap map;
    AddressSpaceDefType* space = plainSpace(map, "ram", 0x1000, 0x1FFF);
    EXPECT_EQ(insert_addressSpace_element(map.get(), map.spaceNames(), space, space->map), 0);
    EXPECT_EQ(listSpaces(map.get()), ": ram\n");
    EXPECT_EQ(space->map->addressSpaceCount, 1u);
    EXPECT_EQ(map->addressSpaceCount, 1u);
}

TEST_F(Insertion, AnotherSpaceOfTheSameFullNameChangesNothing) {
    TestMap map;
    AddressMapType* standard = map.map(nullptr);
    AddressSpaceDefType* other = nullptr;
    ASSERT_EQ(create_addressSpace_element(nullptr, map.spaceNames(), nullptr, "ram", nullptr, map.get(), standard, 0,
                  0x10, nullptr, kAddressSpaceStyleSingle, false, false, false, &other),
        0);
    AddressSpaceDefType* space = plainSpace(map, "ram", 0x1000, 0x1FFF);
    EXPECT_EQ(insert_addressSpace_element(map.get(), map.spaceNames(), other, standard), 0);
    EXPECT_EQ(standard->addressSpaces->space, space);
    EXPECT_EQ(standard->addressSpaceCount, 1u);
    delete_addressSpace_element(&other, map.spaceNames()); // it stayed with its maker
    EXPECT_EQ(map.link("ram")->space, space);
}

TEST_F(Insertion, CountsGrowInTheMapAndInTheMapping) {
    TestMap map;
    AddressMapType* one = map.map("one");
    plainSpace(map, "a", 0, 0xF);
    AddressMapType* two = map.map("two");
    plainSpace(map, "a", 0, 0xF);
    plainSpace(map, "b", 0, 0xF);
    EXPECT_EQ(one->addressSpaceCount, 1u);
    EXPECT_EQ(two->addressSpaceCount, 2u);
    EXPECT_EQ(map->addressSpaceCount, 3u);
    EXPECT_EQ(listSpaces(map.get()), "one: one.a\ntwo: two.b two.a\n");
}

TEST_F(Insertion, TheNameStandsForTheLink) {
    TestMap map;
    AddressSpaceDefType* space = plainSpace(map, "ram", 0x1000, 0x1FFF);
    AddressSpaceLinkType* link = map.link("ram");
    EXPECT_EQ(link->space, space);
    EXPECT_EQ(link, space->map->addressSpaces);
    EXPECT_EQ(link->map, space->map);
}

TEST_F(Insertion, NullArgumentsGiveThree) {
    TestMap map;
    AddressSpaceDefType* space = plainSpace(map, "ram", 0, 0xF);
    EXPECT_EQ(insert_addressSpace_element(nullptr, map.spaceNames(), space, space->map), 3);
    EXPECT_EQ(insert_addressSpace_element(map.get(), nullptr, space, space->map), 3);
    EXPECT_EQ(insert_addressSpace_element(map.get(), map.spaceNames(), nullptr, space->map), 3);
    EXPECT_EQ(insert_addressSpace_element(map.get(), map.spaceNames(), space, nullptr), 3);
}

// Against a plain model: before the first element that does not end below.
TEST_F(Insertion, AnyOrderOfArrivalGivesTheTellingOrder) {
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        TestMap map;
        map.map(nullptr);
        std::vector<std::pair<u64, std::string>> expected;
        for (int i = 0; i < 20; ++i) {
            const u64 end = 1 + random() % 8;
            const std::string name = "s" + std::to_string(i);
            plainSpace(map, name.c_str(), 0, end);
            expected.insert(std::ranges::find_if(expected, [&](const auto& e) { return e.first >= end; }), {end, name});
        }
        std::string list = ":";
        for (const auto& [end, name] : expected) list += " " + name;
        ASSERT_EQ(listSpaces(map.get()), list + "\n");
    }
}

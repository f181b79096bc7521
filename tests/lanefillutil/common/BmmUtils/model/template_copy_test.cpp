// template_copy_test.cpp - spaces as copies of a template.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/tokens.h"
#include "model_fixture.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"
#include "support/host_messages.h"
#include "support/host_parameters.h"

using namespace memdata::testing;

namespace {

using TemplateCopy = ModelTest;

// Two blocks of two byte lanes on RAMB16s: 8 KiB.
AddressSpaceDefType* make_template(TestMap& map) {
    return map.space("t", 0, "RAMB16", {"b0/hi[15:8] b0/lo[7:0]", "b1/hi[15:8] b1/lo[7:0]"}, {.isTemplate = true});
}

int copy(TestMap& map, AddressSpaceDefType* original, AddressMapType* into, const char* prefix,
    memdata::OwnedSpace* out, u64 start = 0x4000, u64 end = 0x5FFF, token_element* token = nullptr) {
    return dup_addressSpace_element(
        nullptr, map.spaceNames(), into, original, token, start, end, prefix, false, out->out());
}

} // namespace

TEST_F(TemplateCopy, HasTheTemplatesRangesBlocksAndLanesUnderNewNames) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    AddressMapType* standard = map.map(nullptr);
    memdata::OwnedSpace space;
    ASSERT_EQ(copy(map, original, standard, "top/u1/", &space), 0);
    EXPECT_EQ(dumpSpace(space.get()), "  space t 0x4000-0x5FFF path \"top/u1/\" of \"t\"\n"
                                      "    range RAMB16 0x4000-0x5FFF bus 16 lane 8 words 2048 devices 4\n"
                                      "      block 0x4000-0x4FFF\n"
                                      "        top/u1/b0/hi[15:8][0:2047]\n"
                                      "        top/u1/b0/lo[7:0][0:2047]\n"
                                      "      block 0x5000-0x5FFF\n"
                                      "        top/u1/b1/hi[15:8][2048:4095]\n"
                                      "        top/u1/b1/lo[7:0][2048:4095]\n");
    EXPECT_EQ(space->map, standard);
    EXPECT_EQ(space->deviceCount, 4u);
    EXPECT_FALSE(space->isTemplate);
    EXPECT_NE(space->dataFiles, nullptr);
    EXPECT_EQ(space->ranges->busBlocks[0]->laneListOrder, kBitLaneListOrderDataFirst);
}

TEST_F(TemplateCopy, StandsInNoList) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    memdata::OwnedSpace space;
    ASSERT_EQ(copy(map, original, map.map(nullptr), "u1/", &space), 0);
    EXPECT_EQ(listSpaces(map.get()), ":\n");
    EXPECT_EQ(lookup_addressSpace_by_name("t", map.spaceNames(), nullptr), 11);
}

TEST_F(TemplateCopy, TakesThePrefixOfANamedMap) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    memdata::OwnedSpace space;
    ASSERT_EQ(copy(map, original, map.map("cpu"), "u1/", &space), 0);
    EXPECT_STREQ(space->name, "cpu.t");
}

TEST_F(TemplateCopy, LeavesCheckLanesOut) {
    TestMap map;
    AddressSpaceDefType* original =
        map.space("t", 0, "RAMB16", {"e[22:16] ECCH32-7 d1[15:8] d0[7:0]"}, {.eccCombined = true, .isTemplate = true});
    memdata::OwnedSpace space;
    ASSERT_EQ(copy(map, original, map.map(nullptr), "u/", &space, 0, 0xFFF), 0);
    EXPECT_EQ(dumpSpace(space.get()), "  space t 0x0-0xFFF path \"u/\" of \"t\"\n"
                                      "    range RAMB16 0x0-0xFFF bus 16 lane 8 words 2048 devices 2\n"
                                      "      block 0x0-0xFFF\n"
                                      "        u/d1[15:8][0:2047]\n"
                                      "        u/d0[7:0][0:2047]\n");
}

TEST_F(TemplateCopy, LanesKeepOrderingMemoryAndFilesButNoLocation) {
    TestMap map;
    AddressSpaceDefType* original = map.space(
        "t", 0, "RAMB16", {"*/a[0:7] LOC=X1Y2 RAMB18 INIT=i.mem INPUT=in.mem OUTPUT=out.mem"}, {.isTemplate = true});
    memdata::OwnedSpace space;
    ASSERT_EQ(copy(map, original, map.map(nullptr), "u/", &space, 0, 0x7FF), 0);
    EXPECT_THAT(dumpSpace(space.get()),
        ::testing::HasSubstr("        u/*/a[0:7][0:2303] RAMB18 INIT=i.mem INPUT=in.mem OUTPUT=out.mem\n"));
    const BitLaneType* lane = space->ranges->busBlocks[0]->lanes[0]->lane;
    EXPECT_NE(lane->initFile, original->ranges->busBlocks[0]->lanes[0]->lane->initFile); // each owns its own
    EXPECT_EQ(map->initLanes, space->ranges->busBlocks[0]->lanes[0]);
}

TEST_F(TemplateCopy, EntersItsLanesInTheMap) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    AddressMapType* cpu = map.map("cpu");
    memdata::OwnedSpace space;
    ASSERT_EQ(copy(map, original, cpu, "u/", &space), 0);
    EXPECT_EQ(map.lane("u/b1/lo"), space->ranges->busBlocks[1]->lanes[1]);
    space.reset();
    EXPECT_EQ(lookup_context_symbol("u/b1/lo", true, cpu->instanceNames), nullptr);
}

TEST_F(TemplateCopy, ATakenLaneNameIsRefusedWithThree) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    map.space("ram", 0, "RAMB16", {"u/b1/lo[7:0]"});
    memdata::TokenOwner token(get_token_element());
    set_token_element(token.get(), "u", 0, true, &kIDENTIFIER_TOKEN, 0);
    memdata::OwnedSpace space;
    CapturedAlerts alerts;
    EXPECT_EQ(copy(map, original, map.map(nullptr), "u/", &space, 0, 0x1FFF, token.get()), 3);
    EXPECT_EQ(space.get(), nullptr);
    EXPECT_THAT(
        alerts.text(), ::testing::HasSubstr("97 - Duplicate instance name usage, 'u/b1/lo', in address space 'u'."));
    EXPECT_EQ(lookup_context_symbol("u/b0/hi", true, map->defaultMap->instanceNames), nullptr);
    EXPECT_STREQ(map.lane("u/b1/lo")->lane->name, "u/b1/lo"); // the other's stays
}

TEST_F(TemplateCopy, ATakenSpaceNameIsRefusedWithThree) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    plainSpace(map, "t", 0, 0xFFF);
    memdata::OwnedSpace space;
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(copy(map, original, map.map(nullptr), "u/", &space), 3);
    EXPECT_EQ(messages.text(), "1 28-209 t\n");
    EXPECT_EQ(alerts.text(), "");
    ScopedParameter legacy("memdata.debugLegacyMessages", true);
    EXPECT_EQ(copy(map, original, map.map(nullptr), "u/", &space), 3);
    EXPECT_THAT(alerts.text(), ::testing::HasSubstr("34 - Duplicate ADDRESS_SPACE or ADDRESS_MAP name usage 't'."));
    EXPECT_STREQ(map.link("t")->space->name, "t");
}

TEST_F(TemplateCopy, ASecondInstanceCanHaveANameOfItsOwn) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    AddressMapType* standard = map.map(nullptr);
    AddressSpaceDefType* first = nullptr;
    ASSERT_EQ(dup_addressSpace_element(
                  nullptr, map.spaceNames(), standard, original, nullptr, 0, 0x1FFF, "u1/", false, &first),
        0);
    insert_addressSpace_element(map.get(), map.spaceNames(), first, standard);
    AddressSpaceDefType* second = nullptr;
    ASSERT_EQ(memdata::copyTemplateAs(
                  nullptr, map.spaceNames(), standard, original, "u2", nullptr, 0x2000, 0x3FFF, "u2/", false, &second),
        0);
    insert_addressSpace_element(map.get(), map.spaceNames(), second, standard);
    EXPECT_EQ(listSpaces(map.get()), ": t u2\n");
}

TEST_F(TemplateCopy, IsFinishedOnceAlsoWithoutRanges) {
    TestMap map;
    AddressSpaceDefType* original = map.space("t", 0, std::vector<RangeText>{}, {.isTemplate = true});
    memdata::OwnedSpace space;
    ASSERT_EQ(copy(map, original, map.map(nullptr), "u/", &space), 0);
    EXPECT_EQ(gUpwardCalls.spacesFinished, 1);
    EXPECT_EQ(space->rangeCount, 0u);
}

TEST_F(TemplateCopy, IsTakenBackWhenItCannotBeFinished) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    gUpwardCalls.finishStatus = 3;
    memdata::OwnedSpace space;
    EXPECT_EQ(copy(map, original, map.map(nullptr), "u/", &space), 3);
    EXPECT_EQ(space.get(), nullptr);
    EXPECT_EQ(lookup_context_symbol("u/b0/hi", true, map->defaultMap->instanceNames), nullptr);
}

TEST_F(TemplateCopy, KeepsACopyOfTheMemoryWord) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    original->memoryTypeToken = get_token_element();
    set_token_element(original->memoryTypeToken, "RAMB16", 0, false, &kBRAM_RAMB16_KEYWORD, 0);
    memdata::OwnedSpace space;
    ASSERT_EQ(copy(map, original, map.map(nullptr), "u/", &space), 0);
    ASSERT_NE(space->memoryTypeToken, nullptr);
    EXPECT_NE(space->memoryTypeToken, original->memoryTypeToken);
    EXPECT_STREQ(space->memoryTypeToken->text, "RAMB16");
    EXPECT_EQ(space->memoryTypeToken->type, &kBRAM_RAMB16_KEYWORD);
}

TEST_F(TemplateCopy, WordAddressingIsTheInstancesOwn) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    memdata::OwnedSpace space;
    ASSERT_EQ(dup_addressSpace_element(
                  nullptr, map.spaceNames(), map.map(nullptr), original, nullptr, 0, 0x1FFF, "u/", true, space.out()),
        0);
    EXPECT_TRUE(space->wordAddressing);
    EXPECT_FALSE(original->wordAddressing);
}

TEST_F(TemplateCopy, NullArgumentsGiveThree) {
    TestMap map;
    AddressSpaceDefType* original = make_template(map);
    memdata::OwnedSpace space;
    EXPECT_EQ(copy(map, nullptr, map.map(nullptr), "u/", &space), 3);
    EXPECT_EQ(copy(map, original, nullptr, "u/", &space), 3);
    EXPECT_EQ(dup_addressSpace_element(
                  nullptr, map.spaceNames(), map.map(nullptr), original, nullptr, 0, 1, "u/", false, nullptr),
        3);
}

TEST_F(TemplateCopy, WithoutMemoryNothingIsLeftBehind) {
    TestMap map;
    AddressSpaceDefType* original =
        map.space("t", 0, "RAMB16", {"a[15:8] INIT=a.mem OUTPUT=o.mem b[7:0]", "c[15:8] d[7:0]"}, {.isTemplate = true});
    AddressMapType* standard = map.map(nullptr);
    const auto sweep = sweepAllocationFaults([&] {
        memdata::OwnedSpace space;
        return copy(map, original, standard, "u/", &space, 0, 0x1FFF);
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 20u);
    EXPECT_EQ(map->initLanes, nullptr);
}

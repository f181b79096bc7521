// allocation_faults_test.cpp - every allocation of the model may fail: each time a status or null, and no byte stays.
// SPDX-License-Identifier: Apache-2.0
#include "model_fixture.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"

using namespace memdata::testing;

namespace {

using ModelFaults = ModelTest;

// A map with one space of one range, one block and one lane, by the plain operations.
int build_map(AddressMappingType* mapping, AddressSpaceDefType** out) {
    AddressMapType* map = nullptr;
    if (int status = create_and_insert_addressMap(mapping, true, "cpu", "top", kPROCESSOR_ARM, 1, &map); status != 0)
        return status;
    symbol_context* names = mapping->symbolSpaces->addressSpaceNames;
    memdata::OwnedSpace space;
    if (int status = create_addressSpace_element(nullptr, names, nullptr, "ram", nullptr, mapping, map, 0, 0xFF,
            nullptr, kAddressSpaceStyleSingle, false, false, false, space.out());
        status != 0)
        return status;
    AddressRangeDefType* range = create_addressRange_element(nullptr, 0, 0);
    if (range == nullptr) return 7;
    insert_addressRange_element(space.get(), range);
    range->busBlocks = memdata::newBusBlockArray(1);
    if (range->busBlocks == nullptr) return 7;
    BusBlockType* block = create_busBlock_element(0, 0);
    if (block == nullptr) return 7;
    range->busBlocks[range->busBlockCount++] = block;
    block->lanes = memdata::newBitLaneArray(1);
    if (block->lanes == nullptr) return 7;
    memdata::OwnedFileSpec init(CreateFileSpec("a.mem"));
    if (init == nullptr) return 7;
    block->lanes[0] = create_bitLane_grid_element(nullptr, "u1", nullptr, false, 0, 7, 0, 0, kBIT_ORDERING_DESCENDING,
        kECC_NONE, 0, 0, kLOC_KIND_NONE, space.get(), init.get(), nullptr, nullptr);
    if (block->lanes[0] == nullptr) return 7;
    block->laneCount = 1;
    init.release();
    if (enter_context_symbol("u1", map->instanceNames, block->lanes[0], nullptr) == nullptr) return 7;
    if (int status = insert_addressSpace_element(mapping, names, space.get(), map); status != 0) return status;
    *out = space.release();
    return 0;
}

} // namespace

TEST_F(ModelFaults, AWholeMappingIsBuiltOrNothingIs) {
    const auto sweep = sweepAllocationFaults([] {
        memdata::OwnedMapping mapping(create_addressMapping_element("a.bmm", nullptr, false, nullptr, nullptr));
        if (mapping == nullptr) return 7;
        AddressSpaceDefType* space = nullptr;
        return build_map(mapping.get(), &space);
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 30u);
}

TEST_F(ModelFaults, AMapIsUndoneWithItsName) {
    TestMap map;
    const auto sweep = sweepAllocationFaults([&] {
        AddressMapType* made = create_addressMap_element(map.get(), true, "cpu", "top", kPROCESSOR_ARM, 1);
        if (made == nullptr) return lookup_addressMap_by_name("cpu", map->symbolSpaces, nullptr) == 11 ? 7 : 0;
        delete_addressMap_element(map.get(), map.spaceNames(), true, &made);
        return 0;
    });
    EXPECT_EQ(sweep.failures, "");
}

TEST_F(ModelFaults, AnInsertionThatFailsChangesNothing) {
    TestMap map;
    plainSpace(map, "a", 0, 0xF);
    AddressSpaceDefType* space = nullptr;
    create_addressSpace_element(nullptr, map.spaceNames(), nullptr, "b", nullptr, map.get(), map->defaultMap, 0, 1,
        nullptr, kAddressSpaceStyleSingle, false, false, false, &space);
    CapturedAlerts alerts;
    u64 faultCount = 0;
    for (;; ++faultCount) {
        memdata::failTrackedAllocation(faultCount + 1);
        const int status = insert_addressSpace_element(map.get(), map.spaceNames(), space, map->defaultMap);
        memdata::failTrackedAllocation(0);
        if (status == 0) break;
        EXPECT_EQ(status, 7) << faultCount;
        EXPECT_EQ(listSpaces(map.get()), ": a\n");
        EXPECT_EQ(map->defaultMap->addressSpaceCount, 1u);
        EXPECT_EQ(lookup_addressSpace_by_name("b", map.spaceNames(), nullptr), 11);
    }
    EXPECT_GE(faultCount, 2u); // the link and its name
    EXPECT_EQ(listSpaces(map.get()), ": b a\n");
}

TEST_F(ModelFaults, AFilteredMappingIsMadeOrNothingIs) {
    TestMap map;
    map.map("one");
    plainSpace(map, "a", 0, 0xF);
    map.map("two");
    plainSpace(map, "b", 0, 0xF);
    for (const std::vector<const char*>& names : {std::vector<const char*>{}, {"one", "two.b"}}) {
        const auto sweep = sweepAllocationFaults([&] {
            AddressSpaceIteratorType at{};
            memdata::OwnedMapping target;
            return filter_eligible_addressSpaces(map.get(), names.empty() ? -1 : 2,
                names.empty() ? nullptr : names.data(), nullptr, 0, &at, target.out());
        });
        EXPECT_EQ(sweep.failures, "");
        EXPECT_GT(sweep.faultCount, 10u);
    }
    EXPECT_EQ(listSpaces(map.get()), "one: one.a\ntwo: two.b\n");
}

TEST_F(ModelFaults, AMatchWithoutBuffersGivesSevenAndNoLink) {
    TestMap map;
    plainSpace(map, "ram", 0, 0xFFF);
    const auto sweep = sweepAllocationFaults([&] {
        AddressSpaceIteratorType at{};
        AddressSpaceLinkType* first = iterate_first_addressSpace(map.get(), 1, &at, 0, 0, 0, kALL_MEMORY_CLASSES);
        AddressSpaceLinkType* found = first;
        const int status = lookup_matching_addressSpace(map.get(), 0, 0, 15, first, &at, &found);
        deallocate_bmm_transform_buffers(map.get());
        return (found == nullptr) == (status == 7) ? status : 0;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.faultCount, 1u);
}

TEST_F(ModelFaults, FatalAlertsNameTheObjectAndItsSize) {
    TestMap map;
    AddressMapType* made = nullptr;
    CapturedAlerts alerts;
    memdata::failTrackedAllocation(1);
    EXPECT_EQ(create_and_insert_addressMap(map.get(), true, "cpu", "", 1, 0, &made), 7);
    memdata::failTrackedAllocation(0);
    EXPECT_EQ(made, nullptr);
    EXPECT_THAT(alerts.text(), ::testing::HasSubstr("44 - Out of memory allocating 'addressMap' object of " +
                                                    std::to_string(sizeof(AddressMapType)) + " bytes."));
}

TEST_F(ModelFaults, BlocksSayWhatTheyAreFor) {
    TestMap map;
    plainSpace(map, "ram", 0, 0xFFF);
    std::string descriptions;
    for (const MemoryBlockType* block = gMemoryBlockList.head; block != nullptr; block = block->next)
        descriptions += std::string(block->description) + "\n";
    for (const char* description : {"a 'AddressMappingType' record", "a 'AddressMapType' record",
             "a 'AddressSpaceDefType' record", "a 'AddressSpaceLinkType' record", "a 'AddressRangeDefType' record",
             "a 'BusBlockType' record", "a 'BitLaneType' record with name", "a 'BitLaneGridElemType' record",
             "a 'SymbolSpacesType' record", "a 'BusBlockArrayType' pointer for an array of 'BusBlockType *' records",
             "a 'BitLaneArrayType' pointer for an array of 'BitLaneType *' records"})
        EXPECT_THAT(descriptions, ::testing::HasSubstr(description));
}

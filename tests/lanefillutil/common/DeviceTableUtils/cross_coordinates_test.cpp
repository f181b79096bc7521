// cross_coordinates_test.cpp - which bit lane sits on which memory, from both coordinates.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/cross_coordinates.h"

#include "BmmUtils/model/creation.h"
#include "DeviceTableUtils/locations.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "all_devices.h"
#include "support/alerts.h"
#include "support/parse.h"

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

using memdata::logicalGridRows;
using memdata::physicalGridRows;
using memdata::testing::allDevices;
using memdata::testing::CapturedAlerts;
using memdata::testing::memoriesOf;
using memdata::testing::TextReader;

struct LaneDeleter {
    void operator()(BitLaneType* lane) const { std::free(lane); }
};
using Lane = std::unique_ptr<BitLaneType, LaneDeleter>;

// A mapping for a device, with nothing in it but located lanes.
struct Mapping {
    AddressMappingType record = {};

    explicit Mapping(const char* device) { record.device = get_device_record_by_name(device); }
    explicit Mapping(TarselDeviceType* device) { record.device = device; }
    ~Mapping() {
        if (record.scratch != nullptr) releaseMemory(record.scratch);
    }
    Mapping& operator=(Mapping&&) = delete;

    MEMORYLocType* memory(const char* name) {
        for (MEMORYLocType& at : record.device->memoryLocs)
            if (at.type != nullptr && std::strcmp(at.type->name, name) == 0) return &at;
        return nullptr;
    }
    Lane lane(const char* instance, const char* memoryName, u32 x, u32 y) {
        Lane made(static_cast<BitLaneType*>(std::calloc(1, sizeof(BitLaneType) + std::strlen(instance) + 1)));
        made->memory = memory(memoryName);
        made->locColumn = x;
        made->locRow = y;
        std::strcpy(made->name, instance);
        return made;
    }
    int record_lane(const Lane& lane) { return record_bitLane_LOC_constraint(nullptr, nullptr, &record, lane.get()); }

    struct Answer {
        int exists;
        i32 row, column;
        const TranslationTableType* table;
        const BRAMPhysLocDataType* physLoc;
        BitLaneType* lane;
    };
    Answer at(i32 physicalRow, i32 physicalColumn) {
        Answer answer = {};
        answer.exists = lookup_BRAM_existence(&record, physicalRow, physicalColumn, &answer.row, &answer.column,
            &answer.table, &answer.physLoc, &answer.lane);
        return answer;
    }
};

class CrossCoordinates : public ::testing::Test {
private:
    memdata::SystemResources resources_;
};

TEST_F(CrossCoordinates, AMappingWithoutADeviceRecordsNothingAndMakesNoTable) {
    Mapping donor("tq7a5");
    const Lane lane = donor.lane("top/a", "RAMB36", 0, 12);
    Mapping mapping(static_cast<TarselDeviceType*>(nullptr));
    EXPECT_EQ(mapping.record_lane(lane), 0);
    EXPECT_EQ(initialize_cross_coordinate_lookup_table(&mapping.record), 0);
    EXPECT_EQ(mapping.record.scratch, nullptr);
    EXPECT_EQ(mapping.at(0, 0).exists, 0);
}

TEST_F(CrossCoordinates, ALocatedLaneIsFoundAtItsPhysicalPlace) {
    Mapping mapping("tq7a5");
    const Lane lane = mapping.lane("top/a", "RAMB36", 0, 12); // physical row 2 of column 0
    EXPECT_EQ(mapping.record_lane(lane), 0);
    const Mapping::Answer answer = mapping.at(4, 0);
    EXPECT_EQ(answer.exists, 1);
    EXPECT_EQ(answer.row, 12);
    EXPECT_EQ(answer.column, 0);
    EXPECT_EQ(answer.lane, lane.get());
    EXPECT_EQ(answer.table, tarsel5_36DecodeTables);
    EXPECT_EQ(answer.physLoc, lane->memory->physicalLocs + 2);
}

TEST_F(CrossCoordinates, TheSecondHalfOfALargeMemoryPointsBackAtItsFirst) {
    Mapping mapping("tq7a5");
    const Lane lane = mapping.lane("top/a", "RAMB36", 0, 12);
    mapping.record_lane(lane);
    EXPECT_EQ(mapping.at(5, 0).lane, lane.get());
    EXPECT_EQ(mapping.at(5, 0).row, 12);
}

TEST_F(CrossCoordinates, PlacesWithoutALaneTellTheSmallestMemory) {
    Mapping mapping("tq7a5");
    EXPECT_EQ(initialize_cross_coordinate_lookup_table(&mapping.record), 0);
    const Mapping::Answer answer = mapping.at(5, 0);
    EXPECT_EQ(answer.exists, 1);
    EXPECT_EQ(answer.row, 25);
    EXPECT_EQ(answer.column, 0);
    EXPECT_EQ(answer.lane, nullptr);
    EXPECT_EQ(answer.table, T5_18UpperDecodeTable);
}

TEST_F(CrossCoordinates, ASecondInitialisationKeepsTheTable) {
    Mapping mapping("tq7a5");
    const Lane lane = mapping.lane("top/a", "RAMB36", 0, 12);
    mapping.record_lane(lane);
    void* table = mapping.record.scratch;
    EXPECT_EQ(initialize_cross_coordinate_lookup_table(&mapping.record), 0);
    EXPECT_EQ(mapping.record.scratch, table);
    EXPECT_EQ(mapping.at(4, 0).lane, lane.get());
}

TEST_F(CrossCoordinates, AFilteredViewSharesTheTableOfItsRoot) {
    Mapping root("tq7a5");
    AddressMappingType view = {};
    view.device = root.record.device;
    view.parentMapping = &root.record;
    const Lane lane = root.lane("top/a", "RAMB36", 0, 12);
    EXPECT_EQ(record_bitLane_LOC_constraint(nullptr, nullptr, &view, lane.get()), 0);
    EXPECT_EQ(view.scratch, nullptr);
    EXPECT_EQ(root.at(4, 0).lane, lane.get());
}

// Two lanes.

TEST_F(CrossCoordinates, TwoLanesOfOneInstanceShareASiteAndTheFirstStays) {
    Mapping mapping("tq7a5");
    const Lane first = mapping.lane("top/a", "RAMB36", 0, 12);
    const Lane second = mapping.lane("top/a", "RAMB36", 0, 12);
    CapturedAlerts alerts;
    EXPECT_EQ(mapping.record_lane(first), 0);
    EXPECT_EQ(mapping.record_lane(second), 0);
    EXPECT_EQ(alerts.text(), "");
    EXPECT_EQ(mapping.at(4, 0).lane, first.get());
}

TEST_F(CrossCoordinates, AnotherInstanceOnASiteIsADuplicate) {
    Mapping mapping("tq7a5");
    const Lane first = mapping.lane("top/a", "RAMB36", 1, 12);
    const Lane second = mapping.lane("top/b", "RAMB36", 1, 12);
    CapturedAlerts alerts;
    EXPECT_EQ(mapping.record_lane(first), 0);
    EXPECT_EQ(mapping.record_lane(second), 3);
    EXPECT_EQ(alerts.text(),
        "\nERROR:Lanefill:105 - Duplicate BRAM location constraint, 'X1Y12'. Another BRAM is already LOC'ed to this "
        "location.\n    Devices with multiple BRAM sizes can have different constraint values for the same "
        "location.\n\n");
    EXPECT_EQ(mapping.at(4, 1).lane, first.get());
}

TEST_F(CrossCoordinates, ALargeMemoryConflictsWithEitherHalf) {
    for (u32 y : {24u, 25u}) {
        Mapping mapping("tq7a5");
        const Lane large = mapping.lane("top/a", "RAMB36", 0, 12);
        const Lane half = mapping.lane("top/b", "RAMB18", 0, y);
        CapturedAlerts alerts;
        EXPECT_EQ(mapping.record_lane(large), 0);
        EXPECT_EQ(mapping.record_lane(half), 3) << y;
    }
}

TEST_F(CrossCoordinates, TwoHalvesOfOneSiteDoNotConflict) {
    Mapping mapping("tq7a5");
    const Lane lower = mapping.lane("top/a", "RAMB18", 0, 24);
    const Lane upper = mapping.lane("top/b", "RAMB18", 0, 25);
    EXPECT_EQ(mapping.record_lane(lower), 0);
    EXPECT_EQ(mapping.record_lane(upper), 0);
    EXPECT_EQ(mapping.at(4, 0).lane, lower.get());
    EXPECT_EQ(mapping.at(5, 0).lane, upper.get());
    EXPECT_EQ(mapping.at(5, 0).table, T5_18UpperDecodeTable);
}

TEST_F(CrossCoordinates, AHalfAheadOfALargeMemoryConflictsToo) {
    Mapping mapping("tq7a5");
    const Lane upper = mapping.lane("top/b", "RAMB18", 0, 25);
    const Lane large = mapping.lane("top/a", "RAMB36", 0, 12);
    CapturedAlerts alerts;
    EXPECT_EQ(mapping.record_lane(upper), 0);
    EXPECT_EQ(mapping.record_lane(large), 3);
}

TEST_F(CrossCoordinates, ALaneThatIsForgottenFreesItsSite) {
    Mapping mapping("tq7a5");
    const Lane first = mapping.lane("top/a", "RAMB36", 0, 12);
    const Lane second = mapping.lane("top/b", "RAMB36", 0, 12);
    EXPECT_EQ(mapping.record_lane(first), 0);
    EXPECT_EQ(first->locatedIn, &mapping.record);
    memdata::forgetLocatedLane(first.get());
    EXPECT_EQ(first->locatedIn, nullptr);
    EXPECT_EQ(mapping.at(4, 0).lane, nullptr);
    EXPECT_EQ(mapping.at(5, 0).lane, nullptr);
    EXPECT_EQ(mapping.record_lane(second), 0);
    EXPECT_EQ(mapping.at(4, 0).lane, second.get());
    memdata::forgetLocatedLane(first.get()); // not recorded any more
    EXPECT_EQ(mapping.at(4, 0).lane, second.get());
}

TEST_F(CrossCoordinates, ALaneThatIsForgottenLeavesTheSiteToALaneOfItsInstance) {
    Mapping mapping("tq7a5");
    const Lane first = mapping.lane("top/a", "RAMB36", 0, 12);
    const Lane second = mapping.lane("top/a", "RAMB36", 0, 12);
    EXPECT_EQ(mapping.record_lane(first), 0);
    EXPECT_EQ(mapping.record_lane(second), 0);
    memdata::forgetLocatedLane(second.get());
    EXPECT_EQ(mapping.at(4, 0).lane, first.get());
}

TEST_F(CrossCoordinates, ADuplicateThatIsForgottenLeavesNoRowBehind) {
    Mapping mapping("tq7a5");
    const Lane upper = mapping.lane("top/b", "RAMB18", 0, 25);
    const Lane large = mapping.lane("top/a", "RAMB36", 0, 12); // gets the lower row and then fails
    const Lane lower = mapping.lane("top/c", "RAMB18", 0, 24);
    CapturedAlerts alerts;
    EXPECT_EQ(mapping.record_lane(upper), 0);
    EXPECT_EQ(mapping.record_lane(large), 3);
    memdata::forgetLocatedLane(large.get());
    EXPECT_EQ(mapping.record_lane(lower), 0);
    EXPECT_EQ(mapping.at(5, 0).lane, upper.get());
}

TEST_F(CrossCoordinates, APairThatIsForgottenFreesBothRows) {
    Mapping mapping("td6a24");
    const Lane pair = mapping.lane("top/a", "RAMB18", 0, 2);
    const Lane even = mapping.lane("top/b", "RAMB9", 0, 2);
    const Lane odd = mapping.lane("top/c", "RAMB9", 0, 3);
    EXPECT_EQ(mapping.record_lane(pair), 0);
    memdata::forgetLocatedLane(pair.get());
    EXPECT_EQ(mapping.record_lane(even), 0);
    EXPECT_EQ(mapping.record_lane(odd), 0);
}

// Places without silicon.

TEST_F(CrossCoordinates, ALocationOnNoSiliconIsNeitherRecordedNorRefused) {
    Mapping mapping("tq7c171"); // X7Y40 to X7Y49 are absent
    const Lane lane = mapping.lane("top/a", "RAMB36", 7, 41);
    CapturedAlerts alerts;
    EXPECT_EQ(mapping.record_lane(lane), 0);
    EXPECT_EQ(alerts.text(), "");
    EXPECT_EQ(mapping.at(2, 7).exists, -1);
    EXPECT_EQ(mapping.at(2, 7).lane, nullptr);
}

TEST_F(CrossCoordinates, ALocationOutsideTheDeviceIsRefused) {
    Mapping mapping("tq7a5"); // two columns of 20 large memories
    CapturedAlerts alerts;
    EXPECT_EQ(mapping.record_lane(mapping.lane("top/a", "RAMB36", 0, 20)), 3);
    EXPECT_EQ(alerts.take(), "\nERROR:Lanefill:107 - Illegal attempt to LOC BRAM instance 'top/a' to 'X0Y20'.\n\n");
    EXPECT_EQ(mapping.record_lane(mapping.lane("top/a", "RAMB36", 2, 0)), 3);
    EXPECT_EQ(alerts.take(), "\nERROR:Lanefill:107 - Illegal attempt to LOC BRAM instance 'top/a' to 'X2Y0'.\n\n");
    EXPECT_EQ(mapping.record_lane(mapping.lane("top/a", "RAMB18", 4294967295u, 4294967295u)), 3);
    EXPECT_EQ(alerts.take(),
        "\nERROR:Lanefill:107 - Illegal attempt to LOC BRAM instance 'top/a' to 'X4294967295Y4294967295'.\n\n");
    EXPECT_EQ(mapping.record_lane(mapping.lane("top/a", "RAMB18", 0, 39)), 0);
    EXPECT_EQ(mapping.record_lane(mapping.lane("top/b", "RAMB18", 0, 40)), 3);
}

TEST_F(CrossCoordinates, RefusalsPointAtTheTokenWhenThereIsOne) {
    Mapping mapping("tq7a5");
    TextReader text("LOC = X0Y20");
    text.next();
    const Lane lane = mapping.lane("top/a", "RAMB36", 0, 20);
    CapturedAlerts alerts;
    EXPECT_EQ(record_bitLane_LOC_constraint(text, text.token(), &mapping.record, lane.get()), 3);
    EXPECT_EQ(alerts.take(), "\nERROR:Lanefill:107 - Illegal attempt to LOC BRAM instance 'top/a' to 'X0Y20'.\n"
                             "   Line #1, File \"text.bmm\".\nLOC = X0Y20\n^\n\n");
    const Lane first = mapping.lane("top/a", "RAMB36", 0, 12);
    const Lane second = mapping.lane("top/b", "RAMB36", 0, 12);
    EXPECT_EQ(record_bitLane_LOC_constraint(text, text.token(), &mapping.record, first.get()), 0);
    EXPECT_EQ(record_bitLane_LOC_constraint(text, text.token(), &mapping.record, second.get()), 3);
    EXPECT_THAT(alerts.text(), ::testing::EndsWith("location.\n   Line #1, File \"text.bmm\".\nLOC = X0Y20\n^\n\n"));
}

TEST_F(CrossCoordinates, ARefusedRAMB4LocationReadsAsRowAndColumn) {
    Mapping mapping("tq1a8"); // four rows of two
    CapturedAlerts alerts;
    EXPECT_EQ(mapping.record_lane(mapping.lane("top/a", "RAMB4", 1, 4)), 3);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:107 - Illegal attempt to LOC BRAM instance 'top/a' to 'R4C1'.\n\n");
}

TEST_F(CrossCoordinates, APlaceOutsideTheTableWasNeverSet) {
    Mapping mapping("tq7a5");
    initialize_cross_coordinate_lookup_table(&mapping.record);
    for (const auto& [row, column] :
        {std::pair{20, 0}, {0, 4}, {-1, 0}, {0, -1}, {3999, 3999}, {INT32_MAX, INT32_MAX}}) {
        const Mapping::Answer answer = mapping.at(row, column);
        EXPECT_EQ(answer.exists, 0);
        EXPECT_EQ(answer.lane, nullptr);
        EXPECT_EQ(answer.table, nullptr);
    }
}

// Families.

TEST_F(CrossCoordinates, ADeviceWithoutArraysAnswersWithTheTableOfItsFamily) {
    Mapping mapping("tq2a60"); // 15 rows, from the other end
    const Lane lane = mapping.lane("top/a", "RAMB16", 1, 11);
    EXPECT_EQ(mapping.record_lane(lane), 0);
    const Mapping::Answer answer = mapping.at(3, 1);
    EXPECT_EQ(answer.exists, 1);
    EXPECT_EQ(answer.row, 11);
    EXPECT_EQ(answer.lane, lane.get());
    EXPECT_EQ(answer.physLoc, nullptr);
    EXPECT_EQ(answer.table, tarsel2DecodeTables);
}

TEST_F(CrossCoordinates, ADunmare6PairClaimsTwoRowsFromItsEvenOne) {
    Mapping mapping("td6a24");
    const Lane pair = mapping.lane("top/a", "RAMB18", 0, 2);
    const Lane odd = mapping.lane("top/b", "RAMB9", 0, 3);
    CapturedAlerts alerts;
    EXPECT_EQ(mapping.record_lane(pair), 0);
    EXPECT_EQ(mapping.record_lane(odd), 3);
}

TEST_F(CrossCoordinates, ADunmare6PairShowsItsSecondSiteAsAbsent) {
    Mapping mapping("td6a24");
    const Lane pair = mapping.lane("top/a", "RAMB18", 0, 2);
    mapping.record_lane(pair);
    i32 row = 0, column = 0;
    const MEMORYLocType* memory = pair->memory;
    lookup_BRAM_log_existence(mapping.record.device, memory->type, memory->logicalLocs, 2, 0, &row, &column);
    EXPECT_EQ(mapping.at(row, column).lane, pair.get());
    EXPECT_EQ(mapping.at(row, column).physLoc->padBits, 288);
    EXPECT_EQ(mapping.at(row, column + 1).physLoc->padBits, -1);
    EXPECT_LT(mapping.at(row, column + 1).physLoc->logicalRow, 0);
}

TEST_F(CrossCoordinates, ADunmare6MemoryAtAnOddRowClaimsOneRow) {
    Mapping mapping("td6a24");
    initialize_cross_coordinate_lookup_table(&mapping.record);
    const Lane lane = mapping.lane("top/a", "RAMB18", 0, 3);
    const Lane next = mapping.lane("top/b", "RAMB9", 0, 4);
    EXPECT_EQ(set_cross_coordinate_lookup_table_element(
                  &mapping.record, 1, lane->memory->type, lane->memory->physicalLocs, 0, 3, 3, 0, lane.get()),
        0);
    EXPECT_EQ(mapping.record_lane(next), 0);
}

TEST_F(CrossCoordinates, TheLastPairReadsNothingBehindItsArray) {
    Mapping mapping("td6a24");
    initialize_cross_coordinate_lookup_table(&mapping.record);
    const Lane lane = mapping.lane("top/a", "RAMB18", 1, 10);
    // An even row at the last configuration column: its second element would lie behind the array.
    EXPECT_EQ(set_cross_coordinate_lookup_table_element(
                  &mapping.record, 1, lane->memory->type, lane->memory->physicalLocs, 0, 23, 10, 1, lane.get()),
        0);
    EXPECT_EQ(mapping.at(0, 23).lane, lane.get());
}

TEST_F(CrossCoordinates, AnElementWithoutATableToHoldItIsLeftOut) {
    Mapping mapping("tq7a5");
    const Lane lane = mapping.lane("top/a", "RAMB36", 0, 0);
    EXPECT_EQ(set_cross_coordinate_lookup_table_element(
                  &mapping.record, 1, lane->memory->type, lane->memory->physicalLocs, 0, 0, 0, 0, lane.get()),
        0);
    initialize_cross_coordinate_lookup_table(&mapping.record);
    EXPECT_EQ(set_cross_coordinate_lookup_table_element(
                  &mapping.record, 1, lane->memory->type, lane->memory->physicalLocs, 5000, -7, 5000, -7, lane.get()),
        0);
    EXPECT_EQ(mapping.at(0, 0).lane, nullptr);
}

TEST_F(CrossCoordinates, AMemoryOfAnotherDeviceIsPlacedByRule) {
    Mapping other("tq7b100");
    Mapping mapping("tq7a5");
    Lane lane = mapping.lane("top/a", "RAMB36", 1, 3);
    lane->memory = other.memory("RAMB36"); // its arrays have another grid
    EXPECT_EQ(mapping.record_lane(lane), 0);
    EXPECT_EQ(mapping.at(6, 1).lane, lane.get());
}

TEST_F(CrossCoordinates, ALaneOnAHoleThatOnlyItsPhysicalArrayKnowsIsAbsent) {
    Mapping mapping("td2e36"); // X1Y4 is missing, which a location alone does not tell
    const Lane lane = mapping.lane("top/a", "RAMB4", 1, 4);
    EXPECT_EQ(mapping.record_lane(lane), 0);
    EXPECT_EQ(mapping.at(4, 1).exists, k_);
    EXPECT_EQ(mapping.at(4, 1).lane, lane.get());
}

TEST_F(CrossCoordinates, ALaneStandsInItsOwnColumnUnderItsOwnRow) {
    Mapping mapping("tq7a5");
    initialize_cross_coordinate_lookup_table(&mapping.record);
    const Lane lane = mapping.lane("top/a", "RAMB36", 1, 7);
    // Set as the memory of X0Y10: row 10 of the lane's column takes the lane.
    EXPECT_EQ(set_cross_coordinate_lookup_table_element(
                  &mapping.record, 1, lane->memory->type, lane->memory->physicalLocs, 0, 0, 10, 0, lane.get()),
        0);
    EXPECT_EQ(mapping.at(0, 0).lane, nullptr);
    EXPECT_EQ(mapping.at(0, 0).row, 10);
    EXPECT_EQ(mapping.at(0, 1).lane, lane.get());
    EXPECT_EQ(mapping.at(0, 1).row, 7);
    EXPECT_EQ(mapping.at(0, 1).column, 1);
}

TEST_F(CrossCoordinates, ALaneWhoseMemoryHasNoArrayTakesTheTableOfTheFamily) {
    Mapping mapping("td2e40");
    initialize_cross_coordinate_lookup_table(&mapping.record);
    Lane lane = mapping.lane("top/a", "RAMB4", 0, 0);
    const BRAMPhysLocDataType* array = lane->memory->physicalLocs;
    MEMORYLocType bare = *lane->memory;
    bare.physicalLocs = nullptr;
    lane->memory = &bare;
    TarselDeviceType device = *mapping.record.device;
    TarselFamilyType family = *device.family;
    family.decodeTable = tarsel2DecodeTables;
    device.family = &family;
    mapping.record.device = &device;
    EXPECT_EQ(
        set_cross_coordinate_lookup_table_element(&mapping.record, 1, bare.type, array, 0, 0, 0, 0, lane.get()), 0);
    EXPECT_EQ(mapping.at(0, 0).table, tarsel2DecodeTables);
}

// All devices against a slow search.

TEST_F(CrossCoordinates, AnswersEqualASlowSearchOnEveryDevice) {
    for (TarselDeviceType* device : allDevices())
        for (const MEMORYLocType* memory : memoriesOf(*device)) {
            Mapping mapping(device);
            Lane lane = mapping.lane("top/a", memory->type->name, 0, 0);
            // The last existing place, found by trying each.
            for (u32 column = 0; column < device->physicalColumns; ++column)
                for (u32 row = 0; row < physicalGridRows(device, memory->type); ++row) {
                    i32 y = 0, x = 0;
                    if (lookup_BRAM_phys_existence(device, memory, row, column, &y, &x) != 1) continue;
                    lane->locRow = static_cast<u32>(y);
                    lane->locColumn = static_cast<u32>(x);
                }
            ASSERT_EQ(mapping.record_lane(lane), 0) << device->names[0];

            u32 hits = 0;
            const u32 step = device->family->bramsPerLookupRow / memory->type->subRowFactor;
            for (u32 column = 0; column < device->physicalColumns; ++column)
                for (u32 row = 0; row < physicalGridRows(device, memory->type); ++row) {
                    i32 y = 0, x = 0;
                    const int exists = lookup_BRAM_phys_existence(device, memory, row, column, &y, &x);
                    const Mapping::Answer answer = mapping.at(static_cast<i32>(row * step), static_cast<i32>(column));
                    const bool isTheLane =
                        x == static_cast<i32>(lane->locColumn) && y == static_cast<i32>(lane->locRow);
                    if (isTheLane) {
                        ASSERT_EQ(answer.lane, lane.get()) << device->names[0] << " " << memory->type->name;
                        ASSERT_EQ(answer.exists, 1);
                        ASSERT_EQ(answer.row, y);
                        ASSERT_EQ(answer.column, x);
                        ASSERT_EQ(answer.physLoc,
                            memory->physicalLocs == nullptr
                                ? nullptr
                                : &index_BRAM_phys_loc_array(device, memory->type, memory->physicalLocs, row, column));
                        ++hits;
                    } else if (memory->type->sizeUnits == device->memoryLocs[0].type->sizeUnits) {
                        ASSERT_EQ(answer.exists, exists) << device->names[0] << " " << row << " " << column;
                        ASSERT_EQ(answer.row, y);
                        ASSERT_EQ(answer.column, x);
                        ASSERT_EQ(answer.lane, nullptr);
                    }
                }
            ASSERT_EQ(hits, 1u) << device->names[0] << " " << memory->type->name;
        }
}

// Memory.

TEST_F(CrossCoordinates, TheTableGoesWithItsMapping) {
    const u64 before = getCurrentMemoryUsage();
    AddressMappingType* mapping =
        create_addressMapping_element("top.bmm", get_device_record_by_name("tq7a5"), false, nullptr, nullptr);
    ASSERT_NE(mapping, nullptr);
    EXPECT_EQ(initialize_cross_coordinate_lookup_table(mapping), 0);
    EXPECT_NE(mapping->scratch, nullptr);
    delete_addressMapping(&mapping);
    EXPECT_EQ(getCurrentMemoryUsage(), before);
}

TEST_F(CrossCoordinates, TheUsersTypesGoWithTheMapping) {
    AddressMappingType* mapping =
        create_addressMapping_element("top.bmm", get_device_record_by_name("tq7a5"), false, nullptr, nullptr);
    get_MEMORY_type_from_token(nullptr, &kGENERIC_MEMORY_KEYWORD);
    delete_addressMapping(&mapping);
    EXPECT_EQ(get_MEMORY_extended_list()->next, nullptr);
}

TEST_F(CrossCoordinates, NoMemoryForTheTableIsStatus7) {
    Mapping mapping("tq7a5");
    const Lane lane = mapping.lane("top/a", "RAMB36", 0, 12);
    CapturedAlerts alerts(0);
    memdata::failTrackedAllocation(1);
    EXPECT_EQ(mapping.record_lane(lane), 7);
    EXPECT_EQ(mapping.record.scratch, nullptr);
}

TEST_F(CrossCoordinates, TheTableIsAsLargeAsTheDeviceNotAsTheIndexSpace) {
    Mapping mapping("tq7b1000"); // the largest
    const u64 before = getCurrentMemoryUsage();
    for (u32 i = 0; i < 100; ++i) {
        const Lane lane = mapping.lane(("top/a" + std::to_string(i)).c_str(), "RAMB36", i % 30, i);
        ASSERT_EQ(mapping.record_lane(lane), 0);
    }
    EXPECT_LT(getCurrentMemoryUsage() - before, 4'000'000u);
}

} // namespace

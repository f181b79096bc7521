// locations_test.cpp - both coordinates of every memory of every device, holes, counts, worked examples.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/locations.h"

#include "SystemUtils/lifetime.h"
#include "all_devices.h"

#include <algorithm>
#include <set>

namespace {

using memdata::logicalGridRows;
using memdata::physicalGridRows;
using memdata::testing::allDevices;
using memdata::testing::devicesOf;
using memdata::testing::label;
using memdata::testing::memoriesOf;
using memdata::testing::text;

class Locations : public ::testing::Test {
protected:
    static const MEMORYLocType& memory(const char* device, const char* name) {
        for (const MEMORYLocType& at : get_device_record_by_name(device)->memoryLocs)
            if (at.type != nullptr && std::string(at.type->name) == name) return at;
        throw std::runtime_error(name);
    }
    static const BRAMPhysLocDataType& physical(const char* name, const char* type, u32 row, u32 column) {
        const MEMORYLocType& at = memory(name, type);
        return index_BRAM_phys_loc_array(get_device_record_by_name(name), at.type, at.physicalLocs, row, column);
    }
    static std::string physicalText(const char* name, const char* type, u32 row, u32 column) {
        return text(physical(name, type, row, column));
    }
    static std::string logicalText(const char* name, const char* type, u32 row, u32 column) {
        const MEMORYLocType& at = memory(name, type);
        return text(index_BRAM_log_loc_array(get_device_record_by_name(name), at.type, at.logicalLocs, row, column));
    }

private:
    memdata::SystemResources resources_;
};

// The smallest Tarsel-7 grid.

TEST_F(Locations, TheSmallestTarsel7DeviceHasItsFourColumns) {
    const struct {
        u32 column;
        i32 firstRow;
        i32 logicalColumn;
    } kCOLUMNS[] = {{0, 10, 0}, {1, 10, 1}, {2, 0, 0}, {3, 0, 1}};
    const TarselDeviceType* device = get_device_record_by_name("tq7a5");
    EXPECT_EQ(device->logicalRows, 20u);
    EXPECT_EQ(device->logicalColumns, 2u);
    EXPECT_EQ(device->physicalRows, 10u);
    EXPECT_EQ(device->physicalColumns, 4u);
    EXPECT_EQ(device->bramFrameOffset, 4096u);
    for (const auto& c : kCOLUMNS)
        for (u32 row = 0; row < 10; ++row) {
            const i32 pad = row == 4 ? 32 : (row == 9 && c.column == 1 ? 6464 : 0);
            const BRAMPhysLocDataType& element = physical("tq7a5", "RAMB36", row, c.column);
            EXPECT_EQ(text(element), text({c.firstRow + static_cast<i32>(row), c.logicalColumn, nullptr, pad}));
            EXPECT_EQ(element.decodeTable, tarsel5_36DecodeTables);
        }
}

TEST_F(Locations, X0Y12OfTheSmallestTarsel7DeviceIsRow2OfColumn0) {
    EXPECT_EQ(logicalText("tq7a5", "RAMB36", 12, 0), "2 0 1");
}

TEST_F(Locations, HalvesDoubleTheRowsAndTakeTheLowerAndUpperTableInTurn) {
    for (u32 n = 0; n < 10; ++n) {
        EXPECT_EQ(physical("tq7a5", "RAMB18", 2 * n, 0).decodeTable, T5_18LowerDecodeTable);
        EXPECT_EQ(physical("tq7a5", "RAMB18", 2 * n + 1, 0).decodeTable, T5_18UpperDecodeTable);
        EXPECT_EQ(physical("tq7a5", "RAMB18", 2 * n, 1).logicalRow, static_cast<i32>(20 + 2 * n));
    }
    EXPECT_EQ(physicalText("tq7a5", "RAMB18", 8, 0), "28 0 pad 0");
    EXPECT_EQ(physicalText("tq7a5", "RAMB18", 9, 0), "29 0 pad 32");
    EXPECT_EQ(physicalText("tq7a5", "RAMB18", 19, 1), "39 1 pad 6464");
}

// Others.

TEST_F(Locations, ATarsel4ColumnRunsDownInItsLowerHalf) {
    const char* kNAME = "tq4b128";                                                           // 16 rows, 8 columns
    const char* kPLACES[] = {"3 24", "2 24", "1 24", "0 24", "3 16", "2 16", "1 16", "0 16", //
        "0 0", "1 0", "2 0", "3 0", "0 8", "1 8", "2 8", "3 8"};
    for (u32 row = 0; row < 16; ++row) {
        EXPECT_EQ(logicalText(kNAME, "RAMB16", row, 0), kPLACES[row] + std::string(" 1"));
        const MEMORYLocType& at = memory(kNAME, "RAMB16");
        const BRAMLogLocDataType& place =
            index_BRAM_log_loc_array(get_device_record_by_name(kNAME), at.type, at.logicalLocs, row, 0);
        EXPECT_EQ(physical(kNAME, "RAMB16", static_cast<u32>(place.physicalRow), static_cast<u32>(place.physicalColumn))
                      .decodeTable,
            row < 8 ? T4LowerDecodeTable : T4UpperDecodeTable);
    }
    EXPECT_EQ(physical(kNAME, "RAMB16", 1, 3).padBits, 32);
    EXPECT_EQ(physical(kNAME, "RAMB16", 3, 7).padBits, 2624);
    EXPECT_EQ(physical(kNAME, "RAMB16", 3, 31).padBits, 0);
}

TEST_F(Locations, DiceOfAStackFollowOneAnother) {
    // 16 groups of 15 columns on four dice: a die's 40 rows begin above its own centre.
    EXPECT_EQ(physicalText("tq7c286", "RAMB36", 0, 0), "20 0 pad 0");
    EXPECT_EQ(physicalText("tq7c286", "RAMB36", 0, 60), "60 0 pad 0");
    EXPECT_EQ(physicalText("tq7c286", "RAMB36", 0, 30), "10 0 pad 0");
    EXPECT_EQ(physicalText("tq7c286", "RAMB36", 9, 14), "29 14 pad 6464");
    EXPECT_EQ(physicalText("tq7c286", "RAMB36", 9, 59), "9 14 pad 0"); // ends its die's burst
}

TEST_F(Locations, AnOddNumberOfGroupsHasTheMoreAboveTheCentre) {
    EXPECT_EQ(physicalText("tq7b100", "RAMB36", 0, 0), "30 0 pad 0");
    EXPECT_EQ(physicalText("tq7b100", "RAMB36", 0, 36), "60 0 pad 0");
    EXPECT_EQ(physicalText("tq7b100", "RAMB36", 0, 48), "20 0 pad 0");
    EXPECT_EQ(physicalText("tq7b100", "RAMB36", 9, 83), "9 11 pad 0");
}

TEST_F(Locations, Dunmare6PairsShareASlice) {
    for (u32 column = 0; column < 24; column += 2) {
        const i32 row = physical("td6a24", "RAMB9", 0, column).logicalRow;
        EXPECT_EQ(row % 2, 0);
        EXPECT_EQ(physical("td6a24", "RAMB9", 0, column).padBits, 0);
        EXPECT_EQ(physical("td6a24", "RAMB9", 0, column + 1).padBits, 288);
        EXPECT_EQ(physical("td6a24", "RAMB9", 0, column + 1).logicalRow, row + 1);
        EXPECT_EQ(physical("td6a24", "RAMB18", 0, column).padBits, 288);
        EXPECT_EQ(physical("td6a24", "RAMB18", 0, column).logicalRow, row);
        EXPECT_EQ(physical("td6a24", "RAMB18", 0, column + 1).padBits, -1);
        EXPECT_EQ(physical("td6a24", "RAMB18", 0, column + 1).logicalRow, ~(row + 1));
    }
}

TEST_F(Locations, AMissingHalfTakesTheWholePairAway) {
    EXPECT_EQ(logicalText("td6a528", "RAMB9", 21, 3).substr(logicalText("td6a528", "RAMB9", 21, 3).rfind(' ')), " -1");
    EXPECT_TRUE(logicalText("td6a528", "RAMB9", 20, 3).ends_with(" 1"));
    EXPECT_TRUE(logicalText("td6a528", "RAMB18", 20, 3).ends_with(" -1"));
}

TEST_F(Locations, DunmareIIIaColumnsStandOutOfOrderWhereListed) {
    EXPECT_EQ(physicalText("td3a95", "RAMB16", 0, 0), "18 0 pad 0");
    EXPECT_EQ(physicalText("td3a95", "RAMB16", 0, 1), "18 3 pad 0");
    EXPECT_EQ(physicalText("td3a95", "RAMB16", 18, 3), "0 1 pad 0");
    EXPECT_EQ(logicalText("td3a130", "RAMB16", 25, 2), "0 0 1");
}

TEST_F(Locations, AHoleOfSitesKeepsItsSliceInTheFrame) {
    const BRAMPhysLocDataType& element = physical("tq7c171", "RAMB36", 0, 7);
    // Groups 9 with 4 below the centre: the first configuration columns hold rows 40 to 49.
    EXPECT_EQ(text(element), text({~40, 7, nullptr, 0}));
    EXPECT_EQ(element.decodeTable, tarsel5_36DecodeTables);
    EXPECT_EQ(physical("tq7c171", "RAMB36", 4, 7).padBits, 32);
}

TEST_F(Locations, AHoleOfFramesHasNoTableAndKeepsTheGapBehindItsGroup) {
    for (u32 row = 0; row < 10; ++row) {
        const MEMORYLocType& at = memory("tq7b150", "RAMB36");
        const TarselDeviceType* device = get_device_record_by_name("tq7b150");
        const BRAMLogLocDataType& place = index_BRAM_log_loc_array(device, at.type, at.logicalLocs, 80 + row, 13);
        const BRAMPhysLocDataType& element = index_BRAM_phys_loc_array(device, at.type, at.physicalLocs,
            static_cast<u32>(place.physicalRow), static_cast<u32>(place.physicalColumn));
        EXPECT_EQ(element.decodeTable, nullptr);
        EXPECT_EQ(element.padBits, row == 9 ? 6464 : 0);
    }
}

// All devices.

TEST_F(Locations, PhysicalAndLogicalArraysAreInverse) {
    for (const TarselDeviceType* device : allDevices())
        for (const MEMORYLocType* memory : memoriesOf(*device)) {
            if (memory->logicalLocs == nullptr) continue;
            const u32 logicalRows = logicalGridRows(device, memory->type);
            std::vector<bool> reached(size_t{logicalRows} * device->logicalColumns);
            for (u32 column = 0; column < device->physicalColumns; ++column)
                for (u32 row = 0; row < physicalGridRows(device, memory->type); ++row) {
                    const BRAMPhysLocDataType& element =
                        index_BRAM_phys_loc_array(device, memory->type, memory->physicalLocs, row, column);
                    const u32 logicalRow =
                        static_cast<u32>(element.logicalRow < 0 ? ~element.logicalRow : element.logicalRow);
                    const u32 logicalColumn = static_cast<u32>(element.logicalColumn);
                    ASSERT_LT(logicalRow, logicalRows) << label(*device, *memory);
                    ASSERT_LT(logicalColumn, device->logicalColumns) << label(*device, *memory);
                    ASSERT_FALSE(reached[size_t{logicalColumn} * logicalRows + logicalRow]) << label(*device, *memory);
                    reached[size_t{logicalColumn} * logicalRows + logicalRow] = true;
                    const BRAMLogLocDataType& back =
                        index_BRAM_log_loc_array(device, memory->type, memory->logicalLocs, logicalRow, logicalColumn);
                    ASSERT_EQ(back.physicalRow, static_cast<i32>(row)) << label(*device, *memory);
                    ASSERT_EQ(back.physicalColumn, static_cast<i32>(column)) << label(*device, *memory);
                    ASSERT_EQ(back.exists, element.logicalRow < 0 ? k_ : kT) << label(*device, *memory);
                }
            ASSERT_TRUE(std::ranges::all_of(reached, [](bool r) { return r; })) << label(*device, *memory);
        }
}

TEST_F(Locations, ExistenceIsTheSameFromBothSides) {
    for (const TarselDeviceType* device : allDevices())
        for (const MEMORYLocType* memory : memoriesOf(*device)) {
            if (device->family == &kDunmareIIEFamilyTable) continue; // see below
            for (u32 column = 0; column < device->physicalColumns; ++column)
                for (u32 row = 0; row < physicalGridRows(device, memory->type); ++row) {
                    i32 y = -1, x = -1, backRow = -1, backColumn = -1;
                    const int exists = lookup_BRAM_phys_existence(device, memory, row, column, &y, &x);
                    const int back = lookup_BRAM_log_existence(device, memory->type, memory->logicalLocs,
                        static_cast<u32>(y), static_cast<u32>(x), &backRow, &backColumn);
                    ASSERT_EQ(exists, back) << label(*device, *memory) << " " << row << " " << column;
                    ASSERT_EQ(backRow, static_cast<i32>(row)) << label(*device, *memory);
                    ASSERT_EQ(backColumn, static_cast<i32>(column)) << label(*device, *memory);
                }
        }
}

TEST_F(Locations, APhysicalArrayAloneTellsHolesFromThePhysicalSideOnly) {
    const TarselDeviceType* device = get_device_record_by_name("td2e36");
    const MEMORYLocType& memory = device->memoryLocs[0];
    i32 row = -1, column = -1;
    EXPECT_EQ(lookup_BRAM_phys_existence(device, &memory, 4, 1, &row, &column), k_);
    EXPECT_EQ(row, 4);
    EXPECT_EQ(column, 1);
    EXPECT_EQ(lookup_BRAM_log_existence(device, memory.type, memory.logicalLocs, 4, 1, &row, &column), kT);
    EXPECT_EQ(lookup_BRAM_phys_existence(device, &memory, 6, 1, &row, &column), kT);
}

TEST_F(Locations, CountsAreThoseOfTheExistingMemories) {
    for (const TarselDeviceType* device : allDevices())
        for (const MEMORYLocType* memory : memoriesOf(*device)) {
            u32 count = 0;
            for (u32 column = 0; column < device->physicalColumns; ++column)
                for (u32 row = 0; row < physicalGridRows(device, memory->type); ++row) {
                    i32 y = 0, x = 0;
                    count += lookup_BRAM_phys_existence(device, memory, row, column, &y, &x) == 1;
                }
            EXPECT_EQ(count_existent_BRAM_type(device, memory), count) << label(*device, *memory);
        }
}

TEST_F(Locations, CountsAreTheGridLessTheHoles) {
    EXPECT_EQ(count_existent_BRAM_type(get_device_record_by_name("tq7b100"), &memory("tq7b100", "RAMB36")), 840u);
    EXPECT_EQ(count_existent_BRAM_type(get_device_record_by_name("tq7b100"), &memory("tq7b100", "RAMB18")), 1680u);
    EXPECT_EQ(count_existent_BRAM_type(get_device_record_by_name("tq2p36"), &memory("tq2p36", "RAMB16")), 30u);
    EXPECT_EQ(count_existent_BRAM_type(get_device_record_by_name("tq2a60"), &memory("tq2a60", "RAMB16")), 60u);
    EXPECT_EQ(count_existent_BRAM_type(get_device_record_by_name("tp7a11"), &memory("tp7a11", "RAMB36")), 80u);
    EXPECT_EQ(count_existent_BRAM_type(get_device_record_by_name("td6a24"), &memory("td6a24", "RAMB9")), 24u);
    EXPECT_EQ(count_existent_BRAM_type(get_device_record_by_name("td6a24"), &memory("td6a24", "RAMB18")), 12u);
}

// The tables that a place of a type may carry.
std::vector<const TranslationTableType*> tablesOf(const MEMORYType* type, u32 row) {
    if (type == &RAMB4_BRAM) return {tarselDecodeTables};
    if (type == &D3RAMB16_BRAM || type == &D3RAMB18_BRAM) return {dunmare3DecodeTables};
    if (type == &T4RAMB16_BRAM || type == &T4RAMB18_BRAM) return {T4LowerDecodeTable, T4UpperDecodeTable};
    if (type->subRowFactor == 2) return {row % 2 == 0 ? T5_18LowerDecodeTable : T5_18UpperDecodeTable};
    if (type->sizeUnits == 8) return {tarsel5_36DecodeTables};
    return {dunmare6_18DecodeTables};
}

TEST_F(Locations, EachElementOfATypeHasATableOfItsForm) {
    for (const TarselDeviceType* device : allDevices())
        for (const MEMORYLocType* memory : memoriesOf(*device)) {
            if (memory->physicalLocs == nullptr) continue;
            const u32 rows = physicalGridRows(device, memory->type);
            for (u32 i = 0; i < rows * device->physicalColumns; ++i) {
                const BRAMPhysLocDataType& element = memory->physicalLocs[i];
                if (element.logicalRow < 0 && element.decodeTable == nullptr) continue; // no frames for the hole
                const std::vector<const TranslationTableType*> tables = tablesOf(memory->type, i % rows);
                ASSERT_NE(std::ranges::find(tables, element.decodeTable), tables.end()) << label(*device, *memory);
            }
        }
}

// What a column walk passes over: each column of a device with frames takes its slices, its clock word and its gap.
TEST_F(Locations, TheSlicesAndPadsOfAColumnFillItsFrames) {
    for (const TarselDeviceType* device : allDevices()) {
        if ((device->family->familyMask & kEARLY_GENERATIONS_MASK) != 0 || device->family == &kDunmare6FamilyTable)
            continue;
        for (const MEMORYLocType* memory : memoriesOf(*device))
            for (u32 column = 0; column < device->physicalColumns; ++column) {
                u64 bits = 0;
                const u32 rows = physicalGridRows(device, memory->type);
                for (u32 row = 0; row < rows; ++row) {
                    const BRAMPhysLocDataType& element =
                        index_BRAM_phys_loc_array(device, memory->type, memory->physicalLocs, row, column);
                    if (element.decodeTable == nullptr) continue;
                    bits += memory->type->frameSliceBits;
                    if (row + 1 != rows) bits += static_cast<u64>(element.padBits);
                }
                if (bits != 0) {
                    ASSERT_EQ(bits, device->bramFrameBits) << label(*device, *memory) << " " << column;
                }
            }
    }
}

// Rules.

TEST_F(Locations, TheSecondGenerationCountsRowsFromTheOtherEnd) {
    TarselDeviceType device = {}; // four rows, no arrays
    device.family = &kTarselIIFamilyTable;
    device.logicalRows = device.physicalRows = 4;
    device.logicalColumns = device.physicalColumns = 2;
    device.memoryLocs[0].type = &T2RAMB16_BRAM;
    i32 row = -1, column = -1;
    EXPECT_EQ(lookup_BRAM_phys_existence(&device, &device.memoryLocs[0], 0, 1, &row, &column), 1);
    EXPECT_EQ(row, 3);
    EXPECT_EQ(column, 1);
    EXPECT_EQ(lookup_BRAM_log_existence(&device, &T2RAMB16_BRAM, nullptr, 3, 1, &row, &column), 1);
    EXPECT_EQ(row, 0);
    EXPECT_EQ(column, 1);
}

TEST_F(Locations, TheFirstGenerationTakesCoordinatesAsTheyStand) {
    const TarselDeviceType* device = get_device_record_by_name("tq1a24");
    i32 row = -1, column = -1;
    EXPECT_EQ(lookup_BRAM_phys_existence(device, &device->memoryLocs[0], 1, 3, &row, &column), 1);
    EXPECT_EQ(row, 1);
    EXPECT_EQ(column, 3);
    EXPECT_EQ(lookup_BRAM_log_existence(device, &RAMB4_BRAM, nullptr, 2, 0, &row, &column), 1);
    EXPECT_EQ(row, 2);
    EXPECT_EQ(column, 0);
}

TEST_F(Locations, AHoleOfAnExistenceMapGivesCoordinatesByRule) {
    const TarselDeviceType* device = get_device_record_by_name("tq2p36"); // 9 rows; X1Y3 to X2Y5 are taken
    i32 row = -1, column = -1;
    EXPECT_EQ(lookup_BRAM_phys_existence(device, &device->memoryLocs[0], 5, 1, &row, &column), -1);
    EXPECT_EQ(row, 3);
    EXPECT_EQ(column, 1);
    EXPECT_EQ(lookup_BRAM_log_existence(device, &T2RAMB16_BRAM, nullptr, 5, 2, &row, &column), -1);
    EXPECT_EQ(row, 3);
    EXPECT_EQ(column, 2);
    EXPECT_EQ(lookup_BRAM_phys_existence(device, &device->memoryLocs[0], 6, 1, &row, &column), 1);
}

TEST_F(Locations, APlaceOutsideTheGridDoesNotExist) {
    const TarselDeviceType* device = get_device_record_by_name("tq7a5");
    const MEMORYLocType& large = memory("tq7a5", "RAMB36");
    const MEMORYLocType& small = memory("tq7a5", "RAMB18");
    i32 row = 0, column = 0;
    EXPECT_EQ(lookup_BRAM_phys_existence(device, &large, 10, 0, &row, &column), k_);
    EXPECT_EQ(lookup_BRAM_phys_existence(device, &large, 0, 4, &row, &column), k_);
    EXPECT_EQ(lookup_BRAM_phys_existence(device, &small, 19, 3, &row, &column), kT);
    EXPECT_EQ(lookup_BRAM_phys_existence(device, &small, 20, 3, &row, &column), k_);
    EXPECT_EQ(lookup_BRAM_log_existence(device, large.type, large.logicalLocs, 20, 0, &row, &column), k_);
    EXPECT_EQ(lookup_BRAM_log_existence(device, large.type, large.logicalLocs, 0, 2, &row, &column), k_);
    EXPECT_EQ(
        lookup_BRAM_log_existence(device, large.type, large.logicalLocs, UINT32_MAX, UINT32_MAX, &row, &column), k_);
    const TarselDeviceType* mapped = get_device_record_by_name("tq2p36");
    EXPECT_EQ(lookup_BRAM_log_existence(mapped, &T2RAMB16_BRAM, nullptr, 9, 0, &row, &column), k_);
    EXPECT_EQ(lookup_BRAM_phys_existence(mapped, &mapped->memoryLocs[0], 0, 4, &row, &column), k_);
}

// Indexes of the cross-coordinate table.

TEST_F(Locations, LookupRowsAreKeptAtTheFinestGrain) {
    const TarselDeviceType* device = get_device_record_by_name("tq7a5");
    i32 row = 0, column = 0;
    EXPECT_EQ(convert_BRAM_indexes_to_lookup_indexes(device, &T6RAMB36_BRAM, 7, 1, &row, &column), 2u);
    EXPECT_EQ(row, 14);
    EXPECT_EQ(column, 1);
    EXPECT_EQ(convert_BRAM_indexes_to_lookup_indexes(device, &T6RAMB18_BRAM, 7, 1, &row, &column), 1u);
    EXPECT_EQ(row, 7);
    EXPECT_EQ(convert_BRAM_indexes_to_lookup_indexes(
                  get_device_record_by_name("tq4a32"), &T4RAMB16_BRAM, 7, 1, &row, &column),
        1u);
    EXPECT_EQ(row, 7);
}

TEST_F(Locations, ARowFarOutsideKeepsItsSideOfTheTable) {
    const TarselDeviceType* device = get_device_record_by_name("tq7a5");
    i32 row = 0, column = 0;
    convert_BRAM_indexes_to_lookup_indexes(device, &T6RAMB36_BRAM, INT32_MAX, 0, &row, &column);
    EXPECT_EQ(row, INT32_MAX);
    convert_BRAM_indexes_to_lookup_indexes(
        device, &T6RAMB36_BRAM, INT32_MIN, 0, &row, &column); // twice it is 0 modulo 2^32
    EXPECT_EQ(row, INT32_MIN);
}

TEST_F(Locations, ATypeThatNoLocationNamesClaimsNoRows) {
    const MEMORYType user = {};
    i32 row = 0, column = 0;
    EXPECT_EQ(
        convert_BRAM_indexes_to_lookup_indexes(get_device_record_by_name("tq7a5"), &user, 7, 1, &row, &column), 0u);
}

// Frame columns.

TEST_F(Locations, AFrameColumnWithoutBlockRamIsRefused) {
    const TarselDeviceType* device = get_device_record_by_name("td2e8"); // 0, -1, -1, 1
    i32 column = 0;
    EXPECT_FALSE(translate_logical_column_number(device, 1, &column));
    EXPECT_EQ(column, -1);
    EXPECT_TRUE(translate_logical_column_number(device, 3, &column));
    EXPECT_EQ(column, 1);
}

TEST_F(Locations, AMapMayBeginWithAColumnWithoutBlockRam) {
    TarselDeviceType device = *get_device_record_by_name("td2e8");
    device.columnMap[0] = -1;
    device.columnMap[1] = 0;
    i32 column = 7;
    EXPECT_FALSE(translate_logical_column_number(&device, 0, &column));
    EXPECT_EQ(column, -1);
    EXPECT_TRUE(translate_logical_column_number(&device, 1, &column));
    EXPECT_EQ(column, 0);
}

TEST_F(Locations, AFrameColumnBeyondTheMapIsRefused) {
    const TarselDeviceType* device = get_device_record_by_name("td2e8");
    for (i32 frameColumn : {4, 24, 25, 255, -1}) {
        i32 column = 0;
        EXPECT_FALSE(translate_logical_column_number(device, frameColumn, &column)) << frameColumn;
        EXPECT_EQ(column, -1);
    }
}

TEST_F(Locations, WithoutAMapEveryFrameColumnIsItself) {
    i32 column = 0;
    EXPECT_TRUE(translate_logical_column_number(get_device_record_by_name("tq7a5"), 37, &column));
    EXPECT_EQ(column, 37);
}

} // namespace

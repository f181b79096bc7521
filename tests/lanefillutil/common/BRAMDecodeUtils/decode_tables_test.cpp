// decode_tables_test.cpp - the decode tables place every bit of their memories.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/decode_tables.h"

#include "DeviceTableUtils/memory_types.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using memdata::bitArrayOf;
using memdata::bitArrays;
using memdata::DecodeTable;
using memdata::decodeTableOf;
using memdata::decodeTables;

struct FormCase {
    const TranslationTableType* table;
    const MEMORYType* type; // whose memories the table decodes
    bool parityRow60IsOdd;  // its parity base is 1924 where the rule gives 1920
};

const FormCase kFORMS[] = {
    {tarselDecodeTables, &RAMB4_BRAM, false},
    {tarsel2DecodeTables, &T2RAMB16_BRAM, true},
    {dunmare3DecodeTables, &D3RAMB16_BRAM, false},
    {T4LowerDecodeTable, &T4RAMB16_BRAM, true},
    {T4UpperDecodeTable, &T4RAMB16_BRAM, true},
    {tarsel5_36DecodeTables, &T5RAMB36_BRAM, false},
    {T5_18LowerDecodeTable, &T5RAMB18_BRAM, false},
    {T5_18UpperDecodeTable, &T5RAMB18_BRAM, false},
    {dunmare6_18DecodeTables, &D6RAMB18_BRAM, true},
};

struct Placement {
    std::vector<int> data, parity; // how often each bit is placed
    std::set<u32> frames;
};

// The first generation counts a row's data from its own number.
Placement place(const FormCase& form, u32 rows) {
    Placement result{std::vector<int>(form.type->dataBits), std::vector<int>(form.type->parityBits), {}};
    for (u32 r = 0; r < rows; ++r) {
        const TranslationTableType& row = form.table[r];
        result.frames.insert(row.frame);
        const u32 dataBase = form.table == tarselDecodeTables ? r * form.type->dataRowBits : row.dataBase;
        for (i32 entry : bitArrayOf(row.bits)->bits) {
            if (entry < kLAST_PARITY_ENTRY) continue;
            if (entry >= 0)
                ++result.data.at(static_cast<u32>(entry) + dataBase);
            else
                ++result.parity.at(static_cast<u32>(~entry) + row.parityBase);
        }
    }
    return result;
}

TEST(DecodeTables, NineTablesHaveNames) {
    std::string names;
    for (const DecodeTable& table : decodeTables()) names += table.name + std::string(" ");
    EXPECT_EQ(names, "tarselDecodeTables tarsel2DecodeTables dunmare3DecodeTables T4LowerDecodeTable "
                     "T4UpperDecodeTable tarsel5_36DecodeTables T5_18LowerDecodeTable T5_18UpperDecodeTable "
                     "dunmare6_18DecodeTables ");
    EXPECT_EQ(decodeTableOf(T4UpperDecodeTable)->name, std::string("T4UpperDecodeTable"));
    EXPECT_EQ(decodeTableOf(nullptr), nullptr);
    EXPECT_EQ(bitArrayOf(nullptr), nullptr);
}

TEST(DecodeTables, HaveARowForEachFrameOfTheirMemory) {
    for (const FormCase& form : kFORMS) {
        const DecodeTable* table = decodeTableOf(form.table);
        EXPECT_EQ(table->rows.size(), form.type->frameCount) << table->name;
        EXPECT_EQ(place(form, static_cast<u32>(table->rows.size())).frames.size(), form.type->frameCount);
        EXPECT_EQ(*place(form, static_cast<u32>(table->rows.size())).frames.rbegin(), form.type->frameCount - 1);
    }
}

TEST(DecodeTables, HaveAnEntryForEachBitOfASlice) {
    for (const FormCase& form : kFORMS)
        for (const TranslationTableType& row : decodeTableOf(form.table)->rows)
            ASSERT_EQ(bitArrayOf(row.bits)->bits.size(), form.type->frameSliceBits);
}

TEST(DecodeTables, PlaceEveryDataBitOnce) {
    for (const FormCase& form : kFORMS) {
        const Placement placed = place(form, static_cast<u32>(form.type->frameCount));
        EXPECT_TRUE(std::ranges::all_of(placed.data, [](int n) { return n == 1; })) << decodeTableOf(form.table)->name;
    }
}

TEST(DecodeTables, PlaceEveryParityBitOnceButForRow60) {
    for (const FormCase& form : kFORMS) {
        Placement placed = place(form, static_cast<u32>(form.type->frameCount));
        if (form.parityRow60IsOdd) {
            // The row lands four places on: its first four bits are in no frame, the next row's in two.
            for (u32 bit = 1920; bit < 1924; ++bit) EXPECT_EQ(std::exchange(placed.parity[bit], 1), 0);
            for (u32 bit = 1952; bit < 1956; ++bit) EXPECT_EQ(std::exchange(placed.parity[bit], 1), 2);
        }
        EXPECT_TRUE(std::ranges::all_of(placed.parity, [](int n) { return n == 1; }))
            << decodeTableOf(form.table)->name;
    }
}

TEST(DecodeTables, TheSmallDunmare6MemoriesUseTheFirstHalfOfTheRows) {
    const FormCase small{dunmare6_18DecodeTables, &D6RAMB9_BRAM, false};
    const Placement placed = place(small, 32);
    EXPECT_TRUE(std::ranges::all_of(placed.data, [](int n) { return n == 1; }));
    EXPECT_TRUE(std::ranges::all_of(placed.parity, [](int n) { return n == 1; }));
}

TEST(DecodeTables, TheParityBaseOfRow60IsOffByFourInThreeForms) {
    for (const FormCase& form : kFORMS)
        if (form.parityRow60IsOdd) {
            EXPECT_EQ(form.table[59].parityBase, 1888u);
            EXPECT_EQ(form.table[60].parityBase, 1924u);
            EXPECT_EQ(form.table[61].parityBase, 1952u);
        }
}

TEST(DecodeTables, FirstGenerationFramesComeInMirroredOrder) {
    const u32 kFRAMES[] = {0, 32, 16, 48, 8, 40};
    for (u32 r = 0; r < 6; ++r) EXPECT_EQ(tarselDecodeTables[r].frame, kFRAMES[r]);
    EXPECT_EQ(tarselDecodeTables[63].frame, 63u);
    EXPECT_EQ(tarselDecodeTables[1].dataBase, 0u);
}

TEST(DecodeTables, EveryRowHasItsFrameItsStartAndItsArray) {
    for (const DecodeTable& table : decodeTables())
        for (u32 r = 0; r < table.rows.size(); ++r) {
            const TranslationTableType& row = table.rows[r];
            const TranslationTableType* rows = table.rows.data();
            u32 frame = r, units = r; // a unit is 256 data bits and 32 parity bits
            if (rows == tarselDecodeTables) {
                frame = (r & 1) << 5 | (r & 2) << 3 | (r & 4) << 1 | (r & 8) >> 1 | (r & 16) >> 3 | (r & 32) >> 5;
                units = 0;
            }
            if (rows == T5_18LowerDecodeTable || rows == T5_18UpperDecodeTable) units = r / 2;
            u32 data = units * 256, parity = units * 32;
            if (rows == dunmare3DecodeTables) {
                data = r / 4 * 896 + r % 4 * 32;
                parity = r / 4 * 112 + r % 4 * 4;
            }
            const bool oddParity = rows == tarsel2DecodeTables || rows == T4LowerDecodeTable ||
                                   rows == T4UpperDecodeTable || rows == dunmare6_18DecodeTables;
            if (oddParity && r == 60) parity = 1924;
            EXPECT_EQ(row.frame, frame) << table.name << " row " << r;
            EXPECT_EQ(row.dataBase, data) << table.name << " row " << r;
            EXPECT_EQ(row.parityBase, parity) << table.name << " row " << r;
        }
    for (u32 r = 0; r < 128; r += 2) {
        EXPECT_EQ(T5_18LowerDecodeTable[r].bits, tarsel5_18LowerEvenBitDecodeTable.data());
        EXPECT_EQ(T5_18LowerDecodeTable[r + 1].bits, tarsel5_18LowerOddBitDecodeTable.data());
        EXPECT_EQ(T5_18UpperDecodeTable[r].bits, tarsel5_18UpperEvenBitDecodeTable.data());
        EXPECT_EQ(T5_18UpperDecodeTable[r + 1].bits, tarsel5_18UpperOddBitDecodeTable.data());
    }
}

TEST(DecodeTables, DunmareIIIRowsAdvanceInGroupsOfFour) {
    EXPECT_EQ(dunmare3DecodeTables[6].dataBase, 896u + 64);
    EXPECT_EQ(dunmare3DecodeTables[6].parityBase, 112u + 8);
    EXPECT_EQ(dunmare3DecodeTables[71].bits, dunmare3BitDecodeTable1.data());
    EXPECT_EQ(dunmare3DecodeTables[72].bits, dunmare3BitDecodeTable2.data());
}

TEST(DecodeTables, HalvesShareTheStartOfTwoRows) {
    EXPECT_EQ(T5_18LowerDecodeTable[5].dataBase, 512u);
    EXPECT_EQ(T5_18LowerDecodeTable[5].parityBase, 64u);
    EXPECT_EQ(T5_18LowerDecodeTable[4].bits, tarsel5_18LowerEvenBitDecodeTable.data());
    EXPECT_EQ(T5_18UpperDecodeTable[5].bits, tarsel5_18UpperOddBitDecodeTable.data());
}

// Arrays.

std::string part(std::span<const i32> bits, size_t first, size_t count) {
    std::string text;
    for (i32 bit : bits.subspan(first, count)) text += std::to_string(bit) + " ";
    return text;
}

TEST(BitArrays, RowFiveOfTheLargeMemoryReadsAsWorkedOut) {
    EXPECT_EQ(tarsel5_36DecodeTables[5].frame, 5u);
    EXPECT_EQ(tarsel5_36DecodeTables[5].dataBase, 1280u);
    EXPECT_EQ(tarsel5_36DecodeTables[5].parityBase, 160u);
    EXPECT_EQ(tarsel5_36BitDecodeTable[1], 181);
    EXPECT_EQ(tarsel5_36BitDecodeTable[80], -31);
    for (size_t b = 128; b < 144; ++b) EXPECT_LT(tarsel5_36BitDecodeTable[b], kLAST_PARITY_ENTRY);
}

TEST(BitArrays, GroupsFollowTheirShapes) {
    EXPECT_EQ(part(tarsel5_36BitDecodeTable, 0, 16), "245 181 117 53 213 149 85 21 229 165 101 37 197 133 69 5 ");
    EXPECT_EQ(part(tarsel5_36BitDecodeTable, 80, 16), "-31 -23 -15 -7 -27 -19 -11 -3 -29 -21 -13 -5 -25 -17 -9 -1 ");
    EXPECT_EQ(part(tarsel5_18LowerEvenBitDecodeTable, 0, 16), "126 94 62 30 110 78 46 14 118 86 54 22 102 70 38 6 ");
    EXPECT_EQ(part(tarsel5_18LowerOddBitDecodeTable, 80, 16),
        "-32 -28 -24 -20 -30 -26 -22 -18 -31 -27 -23 -19 -29 -25 -21 -17 ");
    EXPECT_EQ(part(tarsel5_18UpperOddBitDecodeTable, 0, 4), "255 223 191 159 ");
    EXPECT_EQ(part(tarsel2BitDecodeTable, 0, 16), "248 216 184 152 24 56 88 120 104 72 40 8 136 168 200 232 ");
    EXPECT_EQ(part(tarsel2BitDecodeTable, 64, 16), "-32 -28 -24 -20 -4 -8 -12 -16 -14 -10 -6 -2 -18 -22 -26 -30 ");
    EXPECT_EQ(part(tarsel2BitDecodeTable, 240, 16), "-31 -27 -23 -19 -3 -7 -11 -15 -13 -9 -5 -1 -17 -21 -25 -29 ");
    EXPECT_EQ(part(dunmare6BitDecodeTable, 18, 18), "-4 -3 31 30 29 28 27 26 25 24 23 22 21 20 19 18 17 16 ");
    EXPECT_EQ(part(tarselBitDecodeTable, 30, 3), "21 53 -10000 ");
    EXPECT_EQ(part(tarselBitDecodeTable, 39, 3), "-10000 37 5 ");
}

// A slice as groups of 16 entries, each by its first one; 0 stands for a group without bits. A data group goes down from
// its first entry by the steps, a parity group goes up by its own.
struct GroupCase {
    std::span<const i32> bits;
    std::vector<i32> firsts;
    std::vector<i32> dataSteps;
    std::vector<i32> paritySteps;
};

std::vector<i32> moved(std::vector<i32> firsts, i32 data, i32 parity) {
    for (i32& first : firsts)
        if (first != 0) first += first > 0 ? data : -parity;
    return firsts;
}

std::string written(const GroupCase& c) {
    std::string text;
    for (i32 first : c.firsts)
        for (size_t i = 0; i < 16; ++i)
            text += first == 0 ? "no "
                               : std::to_string(first > 0 ? first - c.dataSteps[i] : first + c.paritySteps[i]) + " ";
    return text;
}

std::string read(std::span<const i32> bits) {
    std::string text;
    for (i32 bit : bits) text += bit < kLAST_PARITY_ENTRY ? "no " : std::to_string(bit) + " ";
    return text;
}

TEST(BitArrays, HaveTheirGroupsInOrder) {
    const std::vector<i32> data36 = {0, 64, 128, 192, 32, 96, 160, 224, 16, 80, 144, 208, 48, 112, 176, 240};
    const std::vector<i32> parity36 = {0, 8, 16, 24, 4, 12, 20, 28, 2, 10, 18, 26, 6, 14, 22, 30};
    const std::vector<i32> data18 = {0, 32, 64, 96, 16, 48, 80, 112, 8, 40, 72, 104, 24, 56, 88, 120};
    const std::vector<i32> parity18 = {0, 4, 8, 12, 2, 6, 10, 14, 1, 5, 9, 13, 3, 7, 11, 15};
    const std::vector<i32> data2 = {0, 32, 64, 96, 224, 192, 160, 128, 144, 176, 208, 240, 112, 80, 48, 16};
    const std::vector<i32> parity2 = {0, 4, 8, 12, 28, 24, 20, 16, 18, 22, 26, 30, 14, 10, 6, 2};
    const std::vector<i32> lower = {126, 127, 124, 125, 123, -16, 121, 122, 0, 120};
    const std::vector<i32> upper = {127, 0, 125, 126, -16, 124, 122, 123, 120, 121};
    const GroupCase kCASES[] = {
        {tarsel5_36BitDecodeTable,
            {245, 247, 241, 243, 255, -31, 251, 253, 0, 249, 246, 0, 242, 244, -32, 240, 252, 254, 248, 250}, data36,
            parity36},
        {tarsel5_18LowerEvenBitDecodeTable, lower, data18, parity18},
        {tarsel5_18LowerOddBitDecodeTable, moved(lower, 128, 16), data18, parity18},
        {tarsel5_18UpperEvenBitDecodeTable, upper, data18, parity18},
        {tarsel5_18UpperOddBitDecodeTable, moved(upper, 128, 16), data18, parity18},
        {tarsel2BitDecodeTable,
            {248, 249, 250, 251, -32, 252, 253, 254, 255, 0, 0, 240, 241, 242, 243, -31, 244, 245, 246, 247}, data2,
            parity2},
    };
    for (const GroupCase& c : kCASES) EXPECT_EQ(read(c.bits), written(c)) << bitArrayOf(c.bits.data())->name;
}

TEST(BitArrays, TheFirstGenerationHasItsOrder) {
    EXPECT_EQ(read(tarselBitDecodeTable),
        "56 24 25 57 49 17 16 48 60 28 30 62 54 22 20 52 58 26 27 59 51 19 18 50 61 29 31 63 55 23 21 53 "
        "no no no no no no no no "
        "37 5 7 39 47 15 13 45 34 2 3 35 43 11 10 42 36 4 6 38 46 14 12 44 32 0 1 33 41 9 8 40 ");
}

TEST(BitArrays, Dunmare6GroupsDescendThroughParityAndData) {
    std::string expected;
    for (int g = 0; g < 16; ++g) {
        expected += std::to_string(-(2 * g + 2)) + " " + std::to_string(-(2 * g + 1)) + " ";
        for (int bit = 16 * g + 15; bit >= 16 * g; --bit) expected += std::to_string(bit) + " ";
    }
    EXPECT_EQ(read(dunmare6BitDecodeTable), expected);
}

TEST(BitArrays, TheSecondNoBitEntryStandsAtItsPositions) {
    std::map<std::string, std::vector<size_t>> positions;
    for (const memdata::BitArray& array : bitArrays())
        for (size_t i = 0; i < array.bits.size(); ++i)
            if (array.bits[i] == kNO_BIT_ENTRY_2) positions[array.name].push_back(i);
    EXPECT_EQ(positions, (std::map<std::string, std::vector<size_t>>{
                             {"tarsel2BitDecodeTable", {10 * 16 + 11}},
                             {"tarsel5_36BitDecodeTable", {8 * 16 + 14}},
                             {"tarsel5_18LowerOddBitDecodeTable", {8 * 16 + 14}},
                             {"tarsel5_18UpperOddBitDecodeTable", {1 * 16 + 14}},
                         }));
}

TEST(BitArrays, DunmareIIIGroupsOfSevenAscendAroundTheGap) {
    std::vector<i32> full, last;
    for (size_t i = 0; i < 256; ++i) {
        if (i >= 128 && i < 132) {
            EXPECT_EQ(dunmare3BitDecodeTable1[i], kNO_BIT_ENTRY);
            EXPECT_EQ(dunmare3BitDecodeTable2[i], kNO_BIT_ENTRY);
            continue;
        }
        full.push_back(dunmare3BitDecodeTable1[i]);
        last.push_back(dunmare3BitDecodeTable2[i]);
    }
    ASSERT_EQ(full.size(), 36u * 7);
    int dataGroups = 0, parityGroups = 0;
    for (size_t g = 0; g < 36; ++g) {
        const i32 first = full[g * 7];
        (first >= 0 ? dataGroups : parityGroups) += 1;
        for (i32 n = 0; n < 7; ++n) {
            const size_t i = g * 7 + static_cast<size_t>(n);
            EXPECT_EQ(full[i], first >= 0 ? first + 128 * n : first - 16 * n);
            EXPECT_EQ(last[i], n < 2 ? full[i] : kNO_BIT_ENTRY);
        }
    }
    EXPECT_EQ(dataGroups, 32);
    EXPECT_EQ(parityGroups, 4);
}

TEST(BitArrays, Tarsel4GroupsHoldOneKindOfBitEach) {
    for (const auto* bits : {&tarsel4LowerBitDecodeTable, &tarsel4UpperBitDecodeTable}) {
        int kinds[3] = {}; // data, parity, none
        for (size_t g = 0; g < 20; ++g) {
            const auto kind = [&](i32 entry) { return entry >= 0 ? 0 : (entry >= kLAST_PARITY_ENTRY ? 1 : 2); };
            const int first = kind((*bits)[g * 16]);
            ++kinds[first];
            for (size_t i = 1; i < 16; ++i) EXPECT_EQ(kind((*bits)[g * 16 + i]), first);
        }
        EXPECT_EQ(kinds[0], 16);
        EXPECT_EQ(kinds[1], 2);
        EXPECT_EQ(kinds[2], 2);
    }
}

} // namespace

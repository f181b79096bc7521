// decode_tables.cpp - the frames of each memory form: which frame, and where the row's bits begin in the images.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/decode_tables.h"

#include <algorithm>

namespace memdata {
namespace {

// How the rows of a table go on from one to the next.
enum class RowRule : u8 {
    MIRRORED,    // frames in the order of the mirrored row number; all bits count from 0
    LINEAR,      // row r begins at its dataBits and parityBits times r
    HALVED,      // two rows share a start: the second array holds the other half
    GROUPS_OF_4, // group g, member m: seven times as much per group, one share per member
};

constexpr u32 kMIRROR_BITS = 6; // of a row number
constexpr u32 kGROUP_ROWS = 4;
constexpr u32 kODD_PARITY_ROW = 60;    // its parity base is off by four in three tables, on purpose: files depend on it
constexpr u32 kODD_PARITY_BASE = 1924; // and not 1920

constexpr u32 mirrored(u32 row) {
    u32 result = 0;
    for (u32 bit = 0; bit < kMIRROR_BITS; ++bit) result |= (row >> bit & 1) << (kMIRROR_BITS - 1 - bit);
    return result;
}

// bitsOf(r) gives the array of row r.
template<size_t Rows>
consteval DecodeRows<Rows> rowsOf(RowRule rule, u32 dataBits, u32 parityBits, auto&& bitsOf) {
    DecodeRows<Rows> rows{};
    for (u32 r = 0; r < Rows; ++r) {
        TranslationTableType& row = rows[r];
        row = {.frame = r, .dataBase = 0, .parityBase = 0, .bits = bitsOf(r)};
        switch (rule) {
        case RowRule::MIRRORED:
            row.frame = mirrored(r);
            break;
        case RowRule::LINEAR:
            row.dataBase = r * dataBits;
            row.parityBase = r * parityBits;
            break;
        case RowRule::HALVED:
            row.dataBase = r / 2 * dataBits;
            row.parityBase = r / 2 * parityBits;
            break;
        case RowRule::GROUPS_OF_4:
            row.dataBase = r / kGROUP_ROWS * 7 * kGROUP_ROWS * dataBits + r % kGROUP_ROWS * dataBits;
            row.parityBase = r / kGROUP_ROWS * 7 * kGROUP_ROWS * parityBits + r % kGROUP_ROWS * parityBits;
            break;
        }
    }
    return rows;
}

template<size_t Rows>
consteval DecodeRows<Rows> withOddParityRow(DecodeRows<Rows> rows) {
    rows[kODD_PARITY_ROW].parityBase = kODD_PARITY_BASE;
    return rows;
}

consteval auto always(const auto& bits) {
    return [at = bits.data()](u32) { return at; };
}

consteval auto byTurns(const auto& even, const auto& odd) {
    return [evenAt = even.data(), oddAt = odd.data()](u32 row) { return row % 2 == 0 ? evenAt : oddAt; };
}

constexpr u32 kDUNMARE_3_FULL_ROWS = 72; // the last four rows hold two entries of each group

} // namespace

constexpr DecodeRows<64> kTARSEL_DECODE_ROWS = rowsOf<64>(RowRule::MIRRORED, 0, 0, always(tarselBitDecodeTable));
constexpr DecodeRows<64> kTARSEL_2_DECODE_ROWS =
    withOddParityRow(rowsOf<64>(RowRule::LINEAR, 256, 32, always(tarsel2BitDecodeTable)));
constexpr DecodeRows<76> kDUNMARE_3_DECODE_ROWS = rowsOf<76>(RowRule::GROUPS_OF_4, 32, 4, [](u32 row) {
    return row < kDUNMARE_3_FULL_ROWS ? dunmare3BitDecodeTable1.data() : dunmare3BitDecodeTable2.data();
});
constexpr DecodeRows<64> kT4_LOWER_DECODE_ROWS =
    withOddParityRow(rowsOf<64>(RowRule::LINEAR, 256, 32, always(tarsel4LowerBitDecodeTable)));
constexpr DecodeRows<64> kT4_UPPER_DECODE_ROWS =
    withOddParityRow(rowsOf<64>(RowRule::LINEAR, 256, 32, always(tarsel4UpperBitDecodeTable)));
constexpr DecodeRows<128> kTARSEL_5_36_DECODE_ROWS =
    rowsOf<128>(RowRule::LINEAR, 256, 32, always(tarsel5_36BitDecodeTable));
constexpr DecodeRows<128> kT5_18_LOWER_DECODE_ROWS =
    rowsOf<128>(RowRule::HALVED, 256, 32, byTurns(tarsel5_18LowerEvenBitDecodeTable, tarsel5_18LowerOddBitDecodeTable));
constexpr DecodeRows<128> kT5_18_UPPER_DECODE_ROWS =
    rowsOf<128>(RowRule::HALVED, 256, 32, byTurns(tarsel5_18UpperEvenBitDecodeTable, tarsel5_18UpperOddBitDecodeTable));
constexpr DecodeRows<64> kDUNMARE_6_18_DECODE_ROWS =
    withOddParityRow(rowsOf<64>(RowRule::LINEAR, 256, 32, always(dunmare6BitDecodeTable)));

namespace {

constexpr DecodeTable kDECODE_TABLES[] = {
    {"tarselDecodeTables", kTARSEL_DECODE_ROWS},
    {"tarsel2DecodeTables", kTARSEL_2_DECODE_ROWS},
    {"dunmare3DecodeTables", kDUNMARE_3_DECODE_ROWS},
    {"T4LowerDecodeTable", kT4_LOWER_DECODE_ROWS},
    {"T4UpperDecodeTable", kT4_UPPER_DECODE_ROWS},
    {"tarsel5_36DecodeTables", kTARSEL_5_36_DECODE_ROWS},
    {"T5_18LowerDecodeTable", kT5_18_LOWER_DECODE_ROWS},
    {"T5_18UpperDecodeTable", kT5_18_UPPER_DECODE_ROWS},
    {"dunmare6_18DecodeTables", kDUNMARE_6_18_DECODE_ROWS},
};

} // namespace

std::span<const DecodeTable> decodeTables() {
    return kDECODE_TABLES;
}

const DecodeTable* decodeTableOf(const TranslationTableType* rows) {
    const auto* found =
        std::ranges::find_if(kDECODE_TABLES, [rows](const DecodeTable& table) { return table.rows.data() == rows; });
    return found == std::end(kDECODE_TABLES) ? nullptr : found;
}

} // namespace memdata

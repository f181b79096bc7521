// location_arrays.cpp - the location arrays of one device, made from its row, its holes and its irregular columns.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/location_arrays.h"

#include "DeviceTableUtils/families.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace memdata {
namespace {

constexpr u32 kGAP_FRAMES = 2;         // passed over between groups of columns
constexpr u32 kHALVES = 2;             // small memories in a large one
constexpr u32 kGROUP_SLICE_BITS = 320; // of a frame, per element of GROUPS and MIRRORED_GROUPS

using PhysicalArray = std::unique_ptr<BRAMPhysLocDataType[]>;
using LogicalArray = std::unique_ptr<BRAMLogLocDataType[]>;

// By Layout.
constexpr LayoutArrays kLAYOUT_ARRAYS[] = {
    // physical logical large
    {false, false, 0}, // BY_RULE
    {true, false, 0},  // PLAIN
    {true, true, 0},   // REVERSED
    {true, true, 8},   // GROUPS
    {true, true, 0},   // MIRRORED_GROUPS
    {true, true, 4},   // PAIRS
};
static_assert(std::size(kLAYOUT_ARRAYS) == static_cast<size_t>(Layout::PAIRS) + 1);

// By index of the record. Constants of the process once they are made: records point at them.
std::vector<std::unique_ptr<const LocationArrays>> gLocationArrays;
std::vector<std::unique_ptr<const i8[]>> gExistenceMaps;

bool belongsTo(const DeviceRow& row, const char* device) {
    return std::string_view(row.longNames) == device;
}

i32 complement(u32 logicalRow) {
    return k_ - static_cast<i32>(logicalRow);
}

// The base arrays: one element per large memory, per small one for PAIRS.

// First row of the group that the stream writes at a place, from 0.
u32 groupBaseRow(const DeviceRow& row, u32 place, u32 groupRows) {
    const u32 groupsPerDie = groupCount(row) / std::max(row.dieCount, 1u);
    const u32 upperGroups = groupsPerDie - row.lowerGroups;
    const u32 die = place / groupsPerDie;
    const u32 step = place % groupsPerDie; // from the centre upward, then from the centre downward
    const u32 group = step < upperGroups ? row.lowerGroups + step : row.lowerGroups - 1 - (step - upperGroups);
    return (die * groupsPerDie + group) * groupRows;
}

bool isLowerGroup(const DeviceRow& row, u32 place) {
    const u32 groupsPerDie = groupCount(row) / std::max(row.dieCount, 1u);
    return place % groupsPerDie >= groupsPerDie - row.lowerGroups;
}

// Behind the last memory of a group, unless the group ends its die's burst.
i32 gapBits(const DeviceRow& row, u32 place, u32 column) {
    const u32 groupsPerDie = groupCount(row) / std::max(row.dieCount, 1u);
    const bool lastColumn = column + 1 == row.logicalColumns;
    const bool lastGroup = place % groupsPerDie + 1 == groupsPerDie;
    return lastColumn && !lastGroup ? static_cast<i32>(kGAP_FRAMES * row.bramFrameBits) : 0;
}

void fillGroups(const DeviceRow& row, BRAMPhysLocDataType* elements) {
    const u32 rows = row.physicalRows;
    const bool mirrored = row.layout == Layout::MIRRORED_GROUPS;
    const i32 clockBits = static_cast<i32>(row.bramFrameBits - rows * kGROUP_SLICE_BITS);
    for (u32 place = 0; place < groupCount(row); ++place) {
        const u32 base = groupBaseRow(row, place, rows);
        const bool descends = mirrored && isLowerGroup(row, place);
        const TranslationTableType* table =
            !mirrored ? tarsel5_36DecodeTables : (descends ? T4LowerDecodeTable : T4UpperDecodeTable);
        for (u32 column = 0; column < row.logicalColumns; ++column)
            for (u32 r = 0; r < rows; ++r) {
                const i32 pad = (r + 1 == rows / 2 ? clockBits : 0) + (r + 1 == rows ? gapBits(row, place, column) : 0);
                *elements++ = {
                    static_cast<i32>(descends ? base + rows - 1 - r : base + r), static_cast<i32>(column), table, pad};
            }
    }
}

void fillPairs(const DeviceRow& row, BRAMPhysLocDataType* elements) {
    const i32 gap = static_cast<i32>(row.bramFrameBits);
    for (u32 place = 0; place < groupCount(row); ++place) {
        const u32 base = groupBaseRow(row, place, row.groupRows);
        for (u32 column = 0; column < row.logicalColumns; ++column)
            for (u32 r = 0; r < row.groupRows; ++r)
                *elements++ = {static_cast<i32>(base + r), static_cast<i32>(column), dunmare6_18DecodeTables,
                    r % 2 == 0 ? 0 : gap};
    }
}

u32 listedColumn(const DeviceRow& row, u32 physicalColumn) {
    for (const IrregularColumn& irregular : kIRREGULAR_COLUMNS)
        if (irregular.physicalColumn == physicalColumn && belongsTo(row, irregular.device))
            return irregular.logicalColumn;
    return physicalColumn;
}

void fillColumns(const DeviceRow& row, BRAMPhysLocDataType* elements) {
    const bool reversed = row.layout == Layout::REVERSED;
    const TranslationTableType* table = reversed ? dunmare3DecodeTables : tarselDecodeTables;
    for (u32 column = 0; column < row.physicalColumns; ++column) {
        const u32 logicalColumn = reversed ? listedColumn(row, column) : column;
        for (u32 r = 0; r < row.physicalRows; ++r)
            *elements++ = {
                static_cast<i32>(reversed ? row.logicalRows - 1 - r : r), static_cast<i32>(logicalColumn), table, 0};
    }
}

// Holes, as one mark per location: columns of logicalRows rows.
using HoleMarks = std::vector<const HoleRow*>;

HoleMarks holesOf(const DeviceRow& row) {
    HoleMarks marks(size_t{row.logicalRows} * row.logicalColumns);
    for (const HoleRow& hole : kHOLES) {
        if (!belongsTo(row, hole.device)) continue;
        for (u32 r = hole.firstRow; r < hole.firstRow + hole.rowCount; ++r)
            marks[size_t{hole.column} * row.logicalRows + r] = &hole;
    }
    return marks;
}

bool hasHoles(const DeviceRow& row) {
    return std::ranges::any_of(kHOLES, [&](const HoleRow& hole) { return belongsTo(row, hole.device); });
}

void punchHoles(const DeviceRow& row, BRAMPhysLocDataType* elements, size_t count) {
    if (!hasHoles(row)) return;
    const HoleMarks holes = holesOf(row);
    const i32 gap = static_cast<i32>(kGAP_FRAMES * row.bramFrameBits);
    for (BRAMPhysLocDataType* element = elements; element != elements + count; ++element) {
        const u32 logicalRow = static_cast<u32>(element->logicalRow);
        const HoleRow* hole = holes[static_cast<size_t>(element->logicalColumn) * row.logicalRows + logicalRow];
        if (hole == nullptr) continue;
        element->logicalRow = complement(logicalRow);
        if (hole->kind == HoleKind::SITES) continue;
        element->decodeTable = nullptr;
        if (element->padBits < gap) element->padBits = 0; // only the gap between groups stays
    }
}

PhysicalArray basePhysical(const DeviceRow& row) {
    const size_t count = size_t{row.physicalRows} * row.physicalColumns;
    PhysicalArray elements = std::make_unique<BRAMPhysLocDataType[]>(count);
    switch (row.layout) {
    case Layout::BY_RULE:
        break;
    case Layout::PLAIN:
    case Layout::REVERSED:
        fillColumns(row, elements.get());
        break;
    case Layout::GROUPS:
    case Layout::MIRRORED_GROUPS:
        fillGroups(row, elements.get());
        break;
    case Layout::PAIRS:
        fillPairs(row, elements.get());
        break;
    }
    punchHoles(row, elements.get(), count);
    return elements;
}

// The arrays of the other size, from the base.

// Two small memories for each large one: the lower one first.
PhysicalArray halvesOf(const DeviceRow& row, const BRAMPhysLocDataType* large) {
    const size_t count = size_t{row.physicalRows} * row.physicalColumns;
    PhysicalArray halves = std::make_unique<BRAMPhysLocDataType[]>(count * kHALVES);
    for (size_t i = 0; i < count; ++i) {
        const bool present = large[i].logicalRow >= 0;
        const u32 baseRow = static_cast<u32>(present ? large[i].logicalRow : ~large[i].logicalRow) * kHALVES;
        for (u32 half = 0; half < kHALVES; ++half) {
            const TranslationTableType* table = half == 0 ? T5_18LowerDecodeTable : T5_18UpperDecodeTable;
            halves[i * kHALVES + half] = {
                present ? static_cast<i32>(baseRow + half) : complement(baseRow + half),
                large[i].logicalColumn,
                large[i].decodeTable == nullptr ? nullptr : table,
                half + 1 == kHALVES ? large[i].padBits : 0,
            };
        }
    }
    return halves;
}

// A large memory in the first element of each pair; the second shares its slice.
PhysicalArray pairsOf(const DeviceRow& row, const BRAMPhysLocDataType* small) {
    const size_t count = size_t{row.physicalRows} * row.physicalColumns;
    PhysicalArray pairs = std::make_unique<BRAMPhysLocDataType[]>(count);
    for (size_t i = 0; i + 1 < count; i += 2) {
        const bool present = small[i].logicalRow >= 0 && small[i + 1].logicalRow >= 0;
        pairs[i] = small[i];
        pairs[i + 1] = small[i + 1];
        if (!present && small[i].logicalRow >= 0) pairs[i].logicalRow = ~small[i].logicalRow;
        if (small[i + 1].logicalRow >= 0) pairs[i + 1].logicalRow = ~small[i + 1].logicalRow;
        pairs[i].padBits = small[i + 1].padBits;
        pairs[i + 1].padBits = -1;
    }
    return pairs;
}

LogicalArray inverseOf(const DeviceRow& row, const BRAMPhysLocDataType* physical, u32 subRowFactor) {
    const u32 logicalRows = row.logicalRows * subRowFactor;
    const u32 physicalRows = row.physicalRows * subRowFactor;
    LogicalArray logical = std::make_unique<BRAMLogLocDataType[]>(size_t{logicalRows} * row.logicalColumns);
    for (u32 column = 0; column < row.physicalColumns; ++column)
        for (u32 r = 0; r < physicalRows; ++r) {
            const BRAMPhysLocDataType& element = *physical++;
            const bool present = element.logicalRow >= 0;
            const u32 logicalRow = static_cast<u32>(present ? element.logicalRow : ~element.logicalRow);
            logical[static_cast<size_t>(element.logicalColumn) * logicalRows + logicalRow] = {
                static_cast<i32>(r), static_cast<i32>(column), present ? kT : k_};
        }
    return logical;
}

// For devices without arrays that have holes: by physical place, rows counted from the other end.
std::unique_ptr<i8[]> existenceMapOf(const DeviceRow& row) {
    const HoleMarks holes = holesOf(row);
    auto map = std::make_unique<i8[]>(holes.size());
    for (u32 column = 0; column < row.physicalColumns; ++column)
        for (u32 r = 0; r < row.physicalRows; ++r) {
            const HoleRow* hole = holes[size_t{column} * row.logicalRows + row.logicalRows - 1 - r];
            map[size_t{column} * row.physicalRows + r] = hole == nullptr ? kT : k_;
        }
    return map;
}

} // namespace

const LayoutArrays& arraysOf(Layout layout) {
    return kLAYOUT_ARRAYS[static_cast<size_t>(layout)];
}

LocationArrays expandLocationArrays(const DeviceRow& row) {
    LocationArrays arrays;
    switch (row.layout) {
    case Layout::BY_RULE:
        break;
    case Layout::PLAIN:
        arrays.smallPhysical = basePhysical(row);
        break;
    case Layout::REVERSED:
    case Layout::MIRRORED_GROUPS:
        arrays.smallPhysical = basePhysical(row);
        arrays.smallLogical = inverseOf(row, arrays.smallPhysical.get(), 1);
        break;
    case Layout::GROUPS:
        arrays.largePhysical = basePhysical(row);
        arrays.largeLogical = inverseOf(row, arrays.largePhysical.get(), 1);
        arrays.smallPhysical = halvesOf(row, arrays.largePhysical.get());
        arrays.smallLogical = inverseOf(row, arrays.smallPhysical.get(), kHALVES);
        break;
    case Layout::PAIRS:
        arrays.smallPhysical = basePhysical(row);
        arrays.smallLogical = inverseOf(row, arrays.smallPhysical.get(), 1);
        arrays.largePhysical = pairsOf(row, arrays.smallPhysical.get());
        arrays.largeLogical = inverseOf(row, arrays.largePhysical.get(), 1);
        break;
    }
    return arrays;
}

const LocationArrays& locationArrays(size_t index, const DeviceRow& row) {
    if (gLocationArrays.empty()) gLocationArrays.resize(kDEVICE_COUNT);
    std::unique_ptr<const LocationArrays>& arrays = gLocationArrays[index];
    if (arrays == nullptr) arrays = std::make_unique<const LocationArrays>(expandLocationArrays(row));
    return *arrays;
}

const i8* existenceMap(size_t index, const DeviceRow& row) {
    if (row.layout != Layout::BY_RULE || !hasHoles(row)) return nullptr;
    if (gExistenceMaps.empty()) gExistenceMaps.resize(kDEVICE_COUNT);
    std::unique_ptr<const i8[]>& map = gExistenceMaps[index];
    if (map == nullptr) map = existenceMapOf(row);
    return map.get();
}

} // namespace memdata

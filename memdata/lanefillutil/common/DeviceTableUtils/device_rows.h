// device_rows.h - the form of the device data under devices/: a row per device, and what is irregular about it.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_DEVICE_ROWS_H
#define MEMDATA_DEVICE_TABLE_UTILS_DEVICE_ROWS_H

#include "DeviceTableUtils/records.h"

#include <span>

namespace memdata {

// Which memory types a device offers, smallest first.
enum class TypeSet : u8 { R4, T2, T4, D3, T5, T6, D6 };

// How the two coordinates of a memory follow from a row. logicalRows, physicalRows and so on are those of the row.
enum class Layout : u8 {
    // No location arrays: the family's rule holds. Absent sites become an existence map.
    BY_RULE,
    // A physical array only; both coordinates are the same.
    PLAIN,
    // Both arrays. A configuration column is a whole column of locations, rows counted from its other end; columns
    // that stand out of order are listed.
    REVERSED,
    // Both arrays. A die is cut in groups of physicalRows rows, each written as logicalColumns configuration columns
    // side by side. The stream begins with the group above the die's centre and goes up, then goes down from the
    // group below the centre. Rows of a column ascend. What the memories leave of a frame lies behind the middle one,
    // and two frames are passed over between groups.
    GROUPS,
    // GROUPS, but rows of a column descend in the lower half, which has a decode table of its own.
    MIRRORED_GROUPS,
    // A configuration column holds one memory (physicalRows is 1), cut in groups of groupRows rows as GROUPS is. Two
    // columns are a pair: the larger types have a memory in the first alone. A frame is passed over between pairs.
    PAIRS,
};

struct DeviceRow {
    const char* longNames; // each ended by a null character, the list by an empty name; a short name drops the first
                           // letter
    bool hasShortNames;
    bool isListed;
    u32 logicalRows;
    u32 physicalRows;
    u32 logicalColumns;
    u32 physicalColumns;
    const i8* columnMap; // null for the identity, else kCOLUMN_MAP_ENTRIES
    u32 framePadBits;
    u32 clbFrameBits;
    u32 bramFrameBits;
    u32 bramFrameOffset; // CLB frames
    u32 dieCount;
    TypeSet types;
    Layout layout;
    u32 lowerGroups; // of a die, for GROUPS, MIRRORED_GROUPS and PAIRS: groups below the centre
    u32 groupRows;   // for PAIRS
};

// A record for a line of devices that has no rows of its own yet: it borrows the geometry of another row.
struct GenericRow {
    const char* longNames;
    bool hasShortNames;
    const TarselFamilyType* family;
};

struct FamilyRows {
    const TarselFamilyType* family;
    std::span<const DeviceRow> rows;
};

enum class HoleKind : u8 {
    SITES,  // no memory here; the frames keep its slice
    FRAMES, // a whole configuration column that the stream does not hold at all
};

// A rectangle one location wide without memories. Rows count the device's largest memory, except that PAIRS counts
// the smallest.
struct HoleRow {
    const char* device; // first long name
    HoleKind kind;
    u32 column;   // logical
    u32 firstRow; // logical
    u32 rowCount;
};

// A configuration column of a REVERSED device that does not stand at its own place.
struct IrregularColumn {
    const char* device; // first long name
    u32 physicalColumn;
    u32 logicalColumn;
};

// All data, in the order of the table: the generic records, then the families.
extern const std::span<const GenericRow> kGENERIC_ROWS;
extern const char* const kGENERIC_GEOMETRY; // first long name of the row that the generic records borrow from
extern const std::span<const FamilyRows> kFAMILY_ROWS;
extern const std::span<const HoleRow> kHOLES;
extern const std::span<const IrregularColumn> kIRREGULAR_COLUMNS;

// The records, one per row in the order of the data, and an empty one that ends them. A record is filled when it is
// first asked for: use deviceRecord.
extern TarselDeviceType kTarselDeviceTable[];
extern const size_t kDEVICE_COUNT; // without the last

// Configuration columns of a group, and groups of a device.
inline u32 groupCount(const DeviceRow& row) {
    if (row.layout == Layout::PAIRS) return row.logicalRows / row.groupRows;
    return row.physicalColumns / row.logicalColumns;
}

} // namespace memdata

#endif

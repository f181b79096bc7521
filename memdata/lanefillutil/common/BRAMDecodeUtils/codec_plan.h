// codec_plan.h - the fast form of the frame codec: many rows of a decode table at once.
//
// Nearly all rows of a table permute their bits alike: they differ in where their windows of the images begin. Up to 128
// such rows are taken together and transposed, so that one bit of a row becomes one word that holds it for 64 rows, and
// two of these for all; the permutation is then a plain move of words, and a second transposition gives the rows back.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BRAM_DECODE_UTILS_CODEC_PLAN_H
#define MEMDATA_BRAM_DECODE_UTILS_CODEC_PLAN_H

#include "DeviceTableUtils/records.h"

#include <span>
#include <vector>

namespace memdata {

// Where a bit of a slice lives.
struct BitPlace {
    enum Image : u8 { NONE, DATA, PARITY };
    Image image = NONE;
    u64 bit = 0;
    bool operator==(const BitPlace&) const = default;
};

// Slice bit sliceBit of a row: bit numbers of the images, all bases and orders applied.
BitPlace placeOfEntry(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table,
    u64 laneWidth, u64 row, u64 sliceBit);

// Bits of one side of a row, in bytes from the row's start on: which of them take part, as 64-bit words of which the
// least significant byte is the first one.
struct CodecWindow {
    u64 bytes = 0;
    std::vector<u64> mask;
};

// Rows that permute alike.
struct CodecGroup {
    struct Move {
        u32 slice;  // index among the transposed blocks of the slice, where the bit's two words begin
        u32 window; // and of the windows: the data window, behind its words the parity window
    };
    struct Row {
        u32 frame;
        u32 dataByte; // where the row's windows begin in the images
        u32 parityByte;
    };
    std::vector<Move> moves;
    CodecWindow slice, data, parity;
    std::vector<Row> rows; // in table order

    u64 windowWords() const { return data.mask.size() + parity.mask.size(); }
};

class CodecPlan {
public:
    CodecPlan(const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table, u64 laneWidth);

    // Whether the windows are small enough for decode and encode; all of the tables that exist are.
    bool fits() const;

    void decode(const TarselDeviceType* device, const u8* frames, u8* data, u8* parity) const;
    void encode(const TarselDeviceType* device, u8* frames, const u8* data, const u8* parity) const;

private:
    std::vector<CodecGroup> groups_;
};

// The plan of a memory form as a family stores it; made at its first use, kept until the end of the engine's lifetime.
// Null when it does not fit, or without memory.
const CodecPlan* codecPlan(
    const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table, u64 laneWidth);

} // namespace memdata

#endif

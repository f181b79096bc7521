// memory_types.cpp - the nineteen static memory types: cells, widths, frame figures.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/memory_types.h"

#include <span>

namespace {

// Lane widths of a kind of memory, with the parity bits of a lane of each width.
struct WidthList {
    const char* text;
    u32 widths[kMAX_LANE_WIDTHS];
    u32 parityWidths[kMAX_LANE_WIDTHS];
};

// The rest of a row: image and frame figures.
struct FrameFigures {
    u32 sizeUnits; // of 4096 data bits
    u32 frameCount;
    u32 frameSliceBits;
    u32 addressRows;
    u32 dataRowBits;
    u32 parityRows;
    u32 parityRowBits;
    u32 subRowFactor;
};

// clang-format off

constexpr WidthList kTO_16  {"1, 2, 4, 8, 16",         {1, 2, 4, 8, 16},         {}};
constexpr WidthList kTO_32  {"1, 2, 4, 8, 16, 32",     {1, 2, 4, 8, 16, 32},     {}};
constexpr WidthList kTO_64  {"1, 2, 4, 8, 16, 32, 64", {1, 2, 4, 8, 16, 32, 64}, {}};
constexpr WidthList kTO_36  {"1, 2, 4, 9, 18, 36",     {1, 2, 4, 9, 18, 36},     {0, 0, 0, 1, 2, 4}};
constexpr WidthList kTO_72  {"1, 2, 4, 9, 18, 36, 72", {1, 2, 4, 9, 18, 36, 72}, {0, 0, 0, 1, 2, 4, 8}};

//                         units frames slice address  data parity parity sub
//                                       bits    rows   row   rows    row rows
constexpr FrameFigures kR4   {1,     64,   72,     64,   64,     0,     0,  1};
constexpr FrameFigures kT2   {4,     64,  320,     64,  256,    64,    32,  1};
constexpr FrameFigures kD3   {4,     76,  256,     64,  256,    64,    32,  1};
constexpr FrameFigures kT5_18{4,    128,  160,    128,  128,   128,    16,  2};
constexpr FrameFigures kT5_36{8,    128,  320,    128,  256,   128,    32,  1};
constexpr FrameFigures kD6_9 {2,     32,  288,     32,  256,    32,    32,  1};
constexpr FrameFigures kD6_18{4,     64,  288,     64,  256,    64,    32,  1};

// clang-format on

constexpr u32 kDATA_BITS_PER_UNIT = 4096;

consteval MEMORYType memoryType(const char* name, const char* cell, const token_type* token,
    const FrameFigures& figures, const WidthList& widths, bool parityWidths, bool interleaved) {
    MEMORYType type{.name = name,
        .cellName = cell,
        .token = token,
        .sizeUnits = figures.sizeUnits,
        .dataBits = u64{figures.sizeUnits} * kDATA_BITS_PER_UNIT,
        .parityBits = figures.parityRows * figures.parityRowBits,
        .isBlockRam = true,
        .hasParityWidths = parityWidths,
        .hasInterleavedParity = interleaved,
        .frameCount = figures.frameCount,
        .frameSliceBits = figures.frameSliceBits,
        .addressRows = figures.addressRows,
        .dataRowBits = figures.dataRowBits,
        .parityRows = figures.parityRows,
        .parityRowBits = figures.parityRowBits,
        .widthsText = widths.text,
        .widths = {},
        .parityWidths = {},
        .subRowFactor = figures.subRowFactor};
    for (size_t i = 0; i < kMAX_LANE_WIDTHS; ++i) {
        type.widths[i] = widths.widths[i];
        type.parityWidths[i] = widths.parityWidths[i];
    }
    return type;
}

} // namespace

// clang-format off

//                                            keyword    cell      token                  figures  widths  parity interleaved
constinit MEMORYType RAMB4_BRAM    = memoryType("RAMB4",  "RAMB4",  &kBRAM_RAMB4_KEYWORD,  kR4,     kTO_16, false, false);
constinit MEMORYType T2RAMB16_BRAM = memoryType("RAMB16", "RAMB16", &kBRAM_RAMB16_KEYWORD, kT2,     kTO_32, false, false);
constinit MEMORYType T2RAMB18_BRAM = memoryType("RAMB18", "RAMB16", &kBRAM_RAMB18_KEYWORD, kT2,     kTO_36, true,  false);
constinit MEMORYType T4RAMB16_BRAM = memoryType("RAMB16", "RAMB16", &kBRAM_RAMB16_KEYWORD, kT2,     kTO_32, false, true);
constinit MEMORYType T4RAMB18_BRAM = memoryType("RAMB18", "RAMB16", &kBRAM_RAMB18_KEYWORD, kT2,     kTO_36, true,  true);
constinit MEMORYType D3RAMB16_BRAM = memoryType("RAMB16", "RAMB16", &kBRAM_RAMB16_KEYWORD, kD3,     kTO_32, false, false);
constinit MEMORYType D3RAMB18_BRAM = memoryType("RAMB18", "RAMB16", &kBRAM_RAMB18_KEYWORD, kD3,     kTO_36, true,  false);
constinit MEMORYType T5RAMB16_BRAM = memoryType("RAMB16", "RAMB18", &kBRAM_RAMB16_KEYWORD, kT5_18,  kTO_32, false, true);
constinit MEMORYType T5RAMB18_BRAM = memoryType("RAMB18", "RAMB18", &kBRAM_RAMB18_KEYWORD, kT5_18,  kTO_36, true,  true);
constinit MEMORYType T5RAMB32_BRAM = memoryType("RAMB32", "RAMB36", &kBRAM_RAMB32_KEYWORD, kT5_36,  kTO_64, false, true);
constinit MEMORYType T5RAMB36_BRAM = memoryType("RAMB36", "RAMB36", &kBRAM_RAMB36_KEYWORD, kT5_36,  kTO_72, true,  true);
constinit MEMORYType T6RAMB16_BRAM = memoryType("RAMB16", "RAMB18", &kBRAM_RAMB16_KEYWORD, kT5_18,  kTO_32, false, true);
constinit MEMORYType T6RAMB18_BRAM = memoryType("RAMB18", "RAMB18", &kBRAM_RAMB18_KEYWORD, kT5_18,  kTO_36, true,  true);
constinit MEMORYType T6RAMB32_BRAM = memoryType("RAMB32", "RAMB36", &kBRAM_RAMB32_KEYWORD, kT5_36,  kTO_64, false, true);
constinit MEMORYType T6RAMB36_BRAM = memoryType("RAMB36", "RAMB36", &kBRAM_RAMB36_KEYWORD, kT5_36,  kTO_72, true,  true);
constinit MEMORYType D6RAMB8_BRAM  = memoryType("RAMB8",  "RAMB8",  &kBRAM_RAMB8_KEYWORD,  kD6_9,   kTO_32, false, true);
// On purpose: a name that promises 9-bit lanes over a list of widths without them.
constinit MEMORYType D6RAMB9_BRAM  = memoryType("RAMB9",  "RAMB8",  &kBRAM_RAMB9_KEYWORD,  kD6_9,   kTO_32, true,  true);
constinit MEMORYType D6RAMB16_BRAM = memoryType("RAMB16", "RAMB16", &kBRAM_RAMB16_KEYWORD, kD6_18,  kTO_32, false, true);
constinit MEMORYType D6RAMB18_BRAM = memoryType("RAMB18", "RAMB16", &kBRAM_RAMB18_KEYWORD, kD6_18,  kTO_36, true,  true);

// clang-format on

namespace {

struct NamedType {
    const char* recordName;
    MEMORYType* type;
    const token_type* keyword;
};

#define NAMED(record, keyword)                                                                                         \
    { #record, &(record), &(keyword) }
constexpr NamedType kNAMED_TYPES[] = {
    NAMED(RAMB4_BRAM, kBRAM_RAMB4_KEYWORD),
    NAMED(T2RAMB16_BRAM, kBRAM_RAMB16_KEYWORD),
    NAMED(T2RAMB18_BRAM, kBRAM_RAMB18_KEYWORD),
    NAMED(T4RAMB16_BRAM, kBRAM_RAMB16_KEYWORD),
    NAMED(T4RAMB18_BRAM, kBRAM_RAMB18_KEYWORD),
    NAMED(D3RAMB16_BRAM, kBRAM_RAMB16_KEYWORD),
    NAMED(D3RAMB18_BRAM, kBRAM_RAMB18_KEYWORD),
    NAMED(T5RAMB16_BRAM, kBRAM_RAMB16_KEYWORD),
    NAMED(T5RAMB18_BRAM, kBRAM_RAMB18_KEYWORD),
    NAMED(T5RAMB32_BRAM, kBRAM_RAMB32_KEYWORD),
    NAMED(T5RAMB36_BRAM, kBRAM_RAMB36_KEYWORD),
    NAMED(T6RAMB16_BRAM, kBRAM_RAMB16_KEYWORD),
    NAMED(T6RAMB18_BRAM, kBRAM_RAMB18_KEYWORD),
    NAMED(T6RAMB32_BRAM, kBRAM_RAMB32_KEYWORD),
    NAMED(T6RAMB36_BRAM, kBRAM_RAMB36_KEYWORD),
    NAMED(D6RAMB8_BRAM, kBRAM_RAMB8_KEYWORD),
    NAMED(D6RAMB9_BRAM, kBRAM_RAMB9_KEYWORD),
    NAMED(D6RAMB16_BRAM, kBRAM_RAMB16_KEYWORD),
    NAMED(D6RAMB18_BRAM, kBRAM_RAMB18_KEYWORD),
};
#undef NAMED
static_assert(std::size(kNAMED_TYPES) == kSTATIC_MEMORY_TYPES);

} // namespace

constinit MEMORYLocType definedStaticMEMORYTypes[kSTATIC_MEMORY_TYPES + 1] = {
    {&RAMB4_BRAM, nullptr, nullptr, 0, nullptr},
    {&T2RAMB16_BRAM, nullptr, nullptr, 0, nullptr},
    {&T2RAMB18_BRAM, nullptr, nullptr, 0, nullptr},
    {&T4RAMB16_BRAM, nullptr, nullptr, 0, nullptr},
    {&T4RAMB18_BRAM, nullptr, nullptr, 0, nullptr},
    {&D3RAMB16_BRAM, nullptr, nullptr, 0, nullptr},
    {&D3RAMB18_BRAM, nullptr, nullptr, 0, nullptr},
    {&T5RAMB16_BRAM, nullptr, nullptr, 0, nullptr},
    {&T5RAMB18_BRAM, nullptr, nullptr, 0, nullptr},
    {&T5RAMB32_BRAM, nullptr, nullptr, 0, nullptr},
    {&T5RAMB36_BRAM, nullptr, nullptr, 0, nullptr},
    {&T6RAMB16_BRAM, nullptr, nullptr, 0, nullptr},
    {&T6RAMB18_BRAM, nullptr, nullptr, 0, nullptr},
    {&T6RAMB32_BRAM, nullptr, nullptr, 0, nullptr},
    {&T6RAMB36_BRAM, nullptr, nullptr, 0, nullptr},
    {&D6RAMB8_BRAM, nullptr, nullptr, 0, nullptr},
    {&D6RAMB9_BRAM, nullptr, nullptr, 0, nullptr},
    {&D6RAMB16_BRAM, nullptr, nullptr, 0, nullptr},
    {&D6RAMB18_BRAM, nullptr, nullptr, 0, nullptr},
    {nullptr, nullptr, nullptr, 0, nullptr},
};

namespace memdata {

const char* memoryTypeRecordName(const MEMORYType* type) {
    for (const NamedType& named : kNAMED_TYPES)
        if (named.type == type) return named.recordName;
    return "";
}

void restoreMemoryTypeTokens() {
    for (const NamedType& named : kNAMED_TYPES) named.type->token = named.keyword;
}

} // namespace memdata

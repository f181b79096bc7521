// memory_types.h - kinds of memory devices, their link to one device, and the words that name them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MODEL_MEMORY_TYPES_H
#define MEMDATA_BMM_UTILS_MODEL_MEMORY_TYPES_H

#include "BmmUtils/model/lazy_locations.h"
#include "ParseUtils/token_types.h"
#include "platform/BasicTypes.h"

struct BRAMLogLocDataType;
struct BRAMPhysLocDataType;

// Class masks over MEMORYType::sizeUnits.
inline constexpr u32 kBLOCK_RAM_CLASSES = 15;         // any of these bits: a block-RAM style device
inline constexpr u32 kNON_BLOCK_RAM_CLASSES = 0xF000; // any of these bits: another kind of device
inline constexpr u32 kGENERIC_MEMORY_CLASS = 0x1000;  // MEMORY: the size comes from the address map
inline constexpr u32 kUSER_MEMORY_CLASS = 0x8000;     // defined in an address map
inline constexpr u32 kALL_MEMORY_CLASSES = 0x7FFFFFFF;
inline constexpr u32 kMAX_LANE_WIDTHS = 16; // entries of MEMORYType::widths

// One per memory kind. The static ones are constants.
struct MEMORYType {
    const char* name;        // keyword, as in "RAMB36"
    const char* cellName;    // cell that implements it
    const token_type* token; // token of the keyword in the map language
    u32 sizeUnits;           // capacity in units of 4096 data bits, 1, 2, 4 or 8; 4096 for MEMORY; the class mask
    u64 dataBits;
    u32 parityBits;
    bool isBlockRam;      // set on the static types
    bool hasParityWidths; // lane widths count parity bits
    bool hasInterleavedParity;
    u64 frameCount;                     // frames that one memory's data crosses
    u64 frameSliceBits;                 // bits of one frame that belong to one memory
    u64 addressRows;                    // frames that carry data rows
    u32 dataRowBits;                    // row width of the unpacked data image
    u32 parityRows;                     // rows of the unpacked parity image
    u32 parityRowBits;                  // row width of the unpacked parity image
    const char* widthsText;             // allowed widths as printed
    u32 widths[kMAX_LANE_WIDTHS];       // allowed lane widths, bits; ends at 0
    u32 parityWidths[kMAX_LANE_WIDTHS]; // parity bits of a lane of the matching width
    u32 subRowFactor;                   // sub-rows per location row, 1 or 2
};

// The link of a type to one device: an element of an array that ends at one without a type, or a node of
// a list.
struct MEMORYLocType {
    const MEMORYType* type;
    memdata::LazyLocations<BRAMPhysLocDataType> physicalLocs; // or null
    memdata::LazyLocations<BRAMLogLocDataType> logicalLocs;   // or null
    u32 isListLink;      // 1 on a node of a linked list, 0 on an element of an array
    MEMORYLocType* next; // when isListLink is 1
};

// The memory words of the map language, with their ordinals in the class. A memory type that a map
// defines adds a further word with the next ordinal.
inline constexpr token_type kMEMORY_TYPE_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 5, 10};
inline constexpr token_type kBRAM_RAMB4_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 1, 0};       // RAMB4
inline constexpr token_type kBRAM_RAMB8_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 2, 0};       // RAMB8
inline constexpr token_type kBRAM_RAMB9_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 3, 0};       // RAMB9
inline constexpr token_type kBRAM_RAMB16_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 4, 0};      // RAMB16
inline constexpr token_type kBRAM_RAMB18_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 5, 0};      // RAMB18
inline constexpr token_type kBRAM_RAMB32_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 6, 0};      // RAMB32
inline constexpr token_type kBRAM_RAMB36_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 7, 0};      // RAMB36
inline constexpr token_type kGENERIC_MEMORY_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 8, 0};   // MEMORY
inline constexpr token_type kGRID_MEMORY_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 9, 0};      // GRID
inline constexpr token_type kCOMBINED_MEMORY_KEYWORD{&kMEMORY_TYPE_TOKEN, 2, 10, 0}; // COMBINED

// The type's name; empty for null.
const char* get_memory_type_string(const MEMORYType* type);

namespace memdata {

// Sets the data bits of a type that is no block RAM; such types are made at run time, one per use, so the
// constants never change. Does nothing for a null or a block-RAM type.
void setMemoryDataBits(const MEMORYLocType* memory, u64 dataBits);

// (data bits + parity bits) / 8 of a device; 0 for none.
u64 memoryByteSize(const MEMORYLocType* memory);

} // namespace memdata

#endif

// attributes.h - the attribute word of a file.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_ATTRIBUTES_H
#define MEMDATA_FILE_UTILS_ATTRIBUTES_H

#include "platform/BasicTypes.h"

// Bits 0-3: what a newline becomes.
inline constexpr u32 kTEXT_ENDING_MASK = 0xF;
inline constexpr u32 kTEXT_CR = 0;
inline constexpr u32 kTEXT_CR_LF = 1;
inline constexpr u32 kTEXT_LF = 2;
inline constexpr u32 kBINARY_FILE = 3;
inline constexpr u32 kREAD_ACCESS = 0x10;
inline constexpr u32 kWRITE_ACCESS = 0x20;
inline constexpr u32 kWHOLE_FILE_BUFFER = 0x100;
inline constexpr u32 kNEWLINE_AS_BLANK = 0x200000;
inline constexpr u32 kREFUSE_OVERWRITE = 0x400000; // when the default attributes say so
inline constexpr u32 kQUIET_OPEN = 0x800000;
inline constexpr u32 kOVERWRITING_ALLOWED = 0x1000000; // a default attribute
inline constexpr u32 kOVERWRITING_REFUSED = 0x2000000; // a default attribute
inline constexpr u32 kWARN_EXTENSION_REPLACED = 0x4000000;
inline constexpr u32 kKEEP_EXTENSION = 0x8000000;
inline constexpr u32 kDISK_STORAGE = 0x10000000;
inline constexpr u32 kMEMORY_STORAGE = 0x20000000;

inline constexpr u32 kTEXT_WRITE = 0x22;
inline constexpr u32 kBINARY_READ_WHOLE = 0x113;
inline constexpr u32 kOUTPUT_FILE = 0x4000022;

#endif

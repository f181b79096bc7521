// init_strings.h - contents of a memory as the digits of an initialisation attribute.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_INIT_STRINGS_H
#define MEMDATA_LANEFILL_CORE_INIT_STRINGS_H

#include "platform/BasicTypes.h"

inline constexpr size_t kINIT_STRING_BYTES = 32;                              // of data in one string
inline constexpr size_t kINIT_STRING_TEXT_BYTES = kINIT_STRING_BYTES * 2 + 1; // with the terminator

// 64 hex digits of 32 bytes, the last byte first, and a terminator, to out (kINIT_STRING_TEXT_BYTES). Returns the
// data behind them. Null data gives 64 zeros and a null result.
unsigned char* construct_initialization_string(char* out, unsigned char* data);

#endif

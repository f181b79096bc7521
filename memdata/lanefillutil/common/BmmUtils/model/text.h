// text.h - the words of processors and of error-correcting codes.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MODEL_TEXT_H
#define MEMDATA_BMM_UTILS_MODEL_TEXT_H

#include "platform/BasicTypes.h"

// ECC types.
inline constexpr u32 kECC_NONE = 0;
inline constexpr u32 kECC_H32_7 = 1;
inline constexpr u32 kECC_H64_8 = 2;
inline constexpr u32 kECC_HSIAO32_7 = 3;
inline constexpr u32 kECC_HSIAO64_8 = 4;
inline constexpr u32 kECC_HSIAO128_9 = 5;

// Processor types: single bits, so that a set of them fits one word.
inline constexpr u64 kPROCESSOR_PPC405 = 1;
inline constexpr u64 kPROCESSOR_KESTREL = 2;
inline constexpr u64 kPROCESSOR_WRENLET = 4;
inline constexpr u64 kPROCESSOR_PPC440 = 8;
inline constexpr u64 kPROCESSOR_KESTREL_LE = 16;
inline constexpr u64 kPROCESSOR_ARM = 32;
inline constexpr u64 kPROCESSOR_CONFIGPROM = 256;
inline constexpr u64 kPROCESSOR_RISCV = 512;

u32 get_ECC_type(const char* word);                      // exact; 0 for any other text
const char* get_ECCAlgorithmType_string(u32 eccType);    // empty for 0 and unknown types
char* construct_ECC_string(u32 eccType);                 // managed: " word", empty for 0; null without memory
u64 get_processorType(const char* word);                 // exact; 0 for any other text
const char* get_processorType_string(u64 processorType); // "???CPU" for any other value

#endif

// memory_lookup.h - finding memory types: of a device, of all families, of the user.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_MEMORY_LOOKUP_H
#define MEMDATA_DEVICE_TABLE_UTILS_MEMORY_LOOKUP_H

#include "DeviceTableUtils/memory_types.h"

// A collection is an array of types that ends at an element without one (a device's memoryLocs), or a list behind a
// header whose isListLink is 1 (the user's types). The header itself is never given out.

// Header of the types that address maps defined: process-wide, in order of definition.
extern MEMORYLocType definedExtendedMEMORYTypes;

// Steps through a collection. cursor begins at its first element or header; firstCall is true on the first step
// alone. Null at the end, and *cursor is null then.
MEMORYLocType* get_MEMORY_next_record(MEMORYLocType** cursor, bool firstCall);

// Search one collection; null when it holds no such type. Names compare without case; a null name gives the first
// element.
MEMORYLocType* lookup_MEMORY_type_by_token(MEMORYLocType* collection, const token_type* token);
MEMORYLocType* lookup_MEMORY_type_by_name(MEMORYLocType* collection, const char* name);

// The searches of the map readers: the device's types, or without one all static types, then the user's. The generic
// word MEMORY makes a new user type on every call. Null when there is no such type, or no memory for one.
MEMORYLocType* get_MEMORY_type_from_name(TarselDeviceType* device, const char* name);
MEMORYLocType* get_MEMORY_type_from_token(TarselDeviceType* device, const token_type* token);

// Defines a user type, or refreshes one: a name that is known already, but for MEMORY, keeps all it has and takes the
// token. byteSize counts data bytes; widths are lane widths in bits, of which the first 15 are kept. Null without
// memory.
MEMORYLocType* create_MEMORY_extended_type(
    const char* name, u32 sizeUnits, const token_type* token, u64 byteSize, const u32* widths, u32 widthCount);
void delete_MEMORY_extended_types();
MEMORYLocType* get_MEMORY_extended_list(); // the header

// One buffer for the data and parity images of the device's largest memory, zero-filled. The caller releases it with
// releaseMemory. Null without memory or without a device; parityBuffer points into it.
u8* get_BRAM_largest_from_device(const TarselDeviceType* device, u8** parityBuffer);

#endif

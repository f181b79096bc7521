// location_strings.h - how a memory and its place on the device are written.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_LOCATION_STRINGS_H
#define MEMDATA_BMM_UTILS_LOCATION_STRINGS_H

#include "BmmUtils/model/records.h"

// Each writes a terminated text to out, which has room for it (kLOCATION_TEXT_BYTES for a location, as many more as
// the memory's name has characters for the others), and returns out. The lane has a memory.

inline constexpr size_t kLOCATION_TEXT_BYTES = 24; // two numbers of ten digits, two letters, the terminator

char* get_BRAM_LOC_string(const BitLaneType* lane, char* out);        // "X3Y7"; "R7C3" for a RAMB4
char* get_BRAM_device_LOC_string(const BitLaneType* lane, char* out); // "RAMB36_X3Y7", with the name of the cell
char* get_BRAM_type_string(const BitLaneType* lane, char* out);       // "RAMB36_S18", with the width of the lane

#endif

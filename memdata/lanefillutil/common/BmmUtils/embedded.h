// embedded.h - numbers and locations inside a text: "3", "4*8-1", "7:0", "X3Y7", "R7C3".
//
// Numbers are decimal. Further numbers fold in with * + - / strictly from left to right, on purpose: "1+2*3" is 9.
// stream and token say where an alert points; without a stream nothing is said, and the status is 3 all the same.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_EMBEDDED_H
#define MEMDATA_BMM_UTILS_EMBEDDED_H

#include "ParseUtils/streams.h"

// A number at the cursor, with the blanks around it. The cursor moves behind them. False, and the cursor stays behind
// leading blanks, when there is no digit.
bool parse_number(const char** cursor, long double* value);
// The same with the numbers folded in. False when a number is missing.
bool parse_embedded_number(const char** cursor, long double* value);

// "first:second", or "first" alone, which counts as both. Status 0; 3.
int parse_embedded_number_range(
    parse_stream* stream, const token_element* token, const char* text, u64* first, u64* second);

// "RrowCcolumn" or "XcolumnYrow", in either case. Status 0; 3, the numbers are untouched then.
int parse_BRAM_location_string(
    parse_stream* stream, const token_element* token, const char* text, unsigned* row, unsigned* column);

// Any sequence of X and Y with their numbers; the last of each counts, one that is missing stays as it was.
// Status 0; 3.
int parse_embedded_location_string(
    parse_stream* stream, const token_element* token, const char* text, unsigned* row, unsigned* column);

#endif

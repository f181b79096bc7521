// text_values.h - the digits of a value become bits of the section being filled.
// SPDX-License-Identifier: Apache-2.0
//
// Every digit counts, leading zeros too: the width of a value is that of its digits. The first digit is the most
// significant, and the next value goes on at the next bit: "12 34" and "1234" are the same two bytes.
#ifndef MEMDATA_MEM_UTILS_TEXT_VALUES_H
#define MEMDATA_MEM_UTILS_TEXT_VALUES_H

#include "MemUtils/data_block.h"
#include "ParseUtils/streams.h"

inline constexpr u32 kVALUE_CHUNK_BITS = 64; // that one call of a packer takes at the most

// Appends a value to the last section; without one a section at address 0 is opened first.
// Status 0; 7; 2 with an alert at the token: it is no integer, has characters that are no digits, its radix carries no
// data, or the section has run past the last 32-bit address.
int parse_MEM_data_value(parse_stream* stream, DataStructureBlockType* block, const token_element* token);

// Appends up to bitLimit bits of a token in the number base of the stream: 2 or 16, others carry no data.
//   text  in the token; moved behind the characters used
// Status 0; 2 with an alert.
int PackTextDataValue(
    parse_stream* stream, const token_element* token, DataSectionHdrType* section, const char** text, u32 bitLimit);
// The same for one base each.
int PackTextHexValue(
    parse_stream* stream, const token_element* token, DataSectionHdrType* section, const char** text, u32 bitLimit);
int PackTextBinaryValue(
    parse_stream* stream, const token_element* token, DataSectionHdrType* section, const char** text, u32 bitLimit);

namespace memdata {

inline constexpr u64 kLAST_DATA_ADDRESS = 0xFFFFFFFF;
inline constexpr u32 kNO_DATA_DIGIT = 16;

// Bits of one digit in a radix; 0 when the radix carries no data.
constexpr u32 digitBits(u32 radix) {
    return radix == 16 ? 4 : radix == 2 ? 1 : 0;
}

// 0 to 15, or kNO_DATA_DIGIT.
constexpr u32 dataDigit(char c) {
    if (c >= '0' && c <= '9') return static_cast<u32>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<u32>(c - 'a') + 10;
    if (c >= 'A' && c <= 'F') return static_cast<u32>(c - 'A') + 10;
    return kNO_DATA_DIGIT;
}

// Reports a token that stands where something else was expected. Status 2.
int unexpectedSymbol(parse_stream* stream, const token_element* token, const char* expected);

inline constexpr const char* kVALID_DATA_VALUE = "valid data value";

} // namespace memdata

#endif

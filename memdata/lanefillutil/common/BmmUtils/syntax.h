// syntax.h - what the statements of an address map are built from: terminators, ranges of numbers, complaints.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_SYNTAX_H
#define MEMDATA_BMM_UTILS_SYNTAX_H

#include "BmmUtils/keywords.h"
#include "ParseUtils/streams.h"

// The ";" that token must be; then token is the one behind it. Status 0; 3 with an alert; that of reading.
int parse_statement_terminator(parse_stream* stream, token_element* token);

// "[first]" or "[first:second]"; a single number counts as both. Numbers are expressions.
//   token  in: the "["; out: the token behind the "]"
// Status 0; 3 with an alert; that of reading.
int parse_number_range(parse_stream* stream, token_element* token, long double* first, long double* second);

namespace memdata {

inline constexpr int kSYNTAX_STATUS = 3;

// The same as 64-bit patterns.
int parseNumberRange(parse_stream* stream, token_element* token, u64* first, u64* second);

// "Unexpected symbol", "Illegal token", "Unexpected keyword", "Missing keyword": status 3.
int refuseSymbol(parse_stream* stream, const token_element* token, const char* expected);
int refuseIllegalToken(parse_stream* stream, const token_element* token, const char* expected);
int refuseKeyword(parse_stream* stream, const token_element* token, const char* clause);
int refuseMissingKeyword(parse_stream* stream, const token_element* token, const token_type& expected);

// The place of a token without its text: for an alert that can only be raised when the token is gone.
token_element placeOf(const token_element* token);

} // namespace memdata

#endif

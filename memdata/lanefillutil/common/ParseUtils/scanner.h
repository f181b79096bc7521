// scanner.h - characters to tokens, and the first filter: comments, escapes, joined strings, blanks, line ends.
// SPDX-License-Identifier: Apache-2.0
//
// From the outside in, each step calls the next one:
//   get_next_token           what clients call
//   internal_get_next_token  acts on directives and expands macros (preprocessor.h)
//   parse_filtered_token     drops or delivers comments, blanks and line ends; pops texts that end
//   parse_next_token         takes the look-ahead queue first
//   parse_token              reads one token from the text
// All return a status and fill the token on 0: 0; 3 syntax, with an alert; 7; 21 preprocessor, with an alert. At
// the end of a text they deliver kEND_OF_FILE, again and again.
#ifndef MEMDATA_PARSE_UTILS_SCANNER_H
#define MEMDATA_PARSE_UTILS_SCANNER_H

#include "ParseUtils/streams.h"

// As internal_get_next_token; while kMODE_DISCARD is on it drops tokens other than kEND_OF_FILE.
int get_next_token(parse_stream* stream, token_element* token);
int parse_filtered_token(parse_stream* stream, token_element* token);
int parse_next_token(parse_stream* stream, token_element* token);
int parse_token(parse_stream* stream, token_element* token);

// Joins the texts of tokens, as parse_filtered_token gives them, into one kTEXT_STRING_TOKEN, up to a token of a
// list or kEND_OF_FILE. Neither directives nor macros are acted on.
//   terminator  out: the token that ended it, from the pool, the caller's with status 0; may be null
int parse_to_token(
    parse_stream* stream, token_element* token, token_element** terminator, const token_type* const* list);
// Joins and takes the rest of the line and its end, in macro bodies too. Quotes are plain characters.
int parse_to_EOL(parse_stream* stream, token_element* token);

inline constexpr const token_type* EOLTerminators[] = {&kEND_OF_LINE, nullptr};

// Behind the blanks, tabs and form feeds at the start of a text.
const char* skip_whitespace(const char* text);

namespace memdata {

// Makes an identifier the keyword that it is for the sets in force now: for words that were read while words were
// ignored.
void lookUpAgain(parse_stream* stream, token_element* token);

} // namespace memdata

#endif

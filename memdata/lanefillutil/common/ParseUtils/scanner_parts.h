// scanner_parts.h - the pieces of the scanner, shared by its files.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_SCANNER_PARTS_H
#define MEMDATA_PARSE_UTILS_SCANNER_PARTS_H

#include "ParseUtils/streams.h"

namespace memdata {

// Says that a token is longer than one may be. Status 3.
int refuseLongToken(parse_stream* context, const token_element* token);

// quoted.cpp
// Reads a string or text from its opening quote, at the context's position. The token has its place.
int setQuotedToken(parse_stream* context, token_element* token, const token_type* type);
// What a backslash that was read as a token stands for. Reads on behind it.
//   isJoin  out: it joined two lines, there is no token
int parseCharacterEscape(parse_stream* context, token_element* token, bool* isJoin);
// Appends the strings that follow, across blanks, line ends and comments.
int joinStrings(parse_stream* stream, token_element* token);

// comments.cpp
// Reads the rest of a comment whose opening token was just read. The token becomes a kCOMMENT_BLOCK_TOKEN, with the
// text of the comment when comments are delivered, else without.
int parseComment(parse_stream* context, token_element* token);

// Makes the context read on behind a token of its text. Tokens that were queued behind it are dropped: they were read
// on the wrong understanding.
void resumeBehind(parse_stream* context, const token_element* token, u32 length);

} // namespace memdata

#endif

// plain_text.h - looking at the text of a stream directly, where no scanner is needed to understand it.
// SPDX-License-Identifier: Apache-2.0
//
// For clients whose texts are long runs of one kind of token (the values of data files): they step over such a run by
// themselves and let the scanner go on behind it. What they step over must be what get_next_token would have given
// them, or have dropped.
#ifndef MEMDATA_PARSE_UTILS_PLAIN_TEXT_H
#define MEMDATA_PARSE_UTILS_PLAIN_TEXT_H

#include "ParseUtils/streams.h"

namespace memdata {

struct TextPlace {
    const char* at;
    const char* lineStart; // of the line that holds at
    u32 lineNumber;
};

struct PlainText {
    TextPlace place; // of the next character
    const char* end; // one behind the last character; the text need not be terminated
};

// The rest of the active text, when numbers, blanks and line ends in it stand for themselves: it is live text of a
// file, nothing is queued, blanks and line ends are not delivered, tokens are neither discarded nor traced. False
// otherwise.
bool plainTextAhead(const parse_stream* stream, PlainText* text);

// Lets the scanner go on at a place of that text.
void continueAt(parse_stream* stream, const TextPlace& place);

} // namespace memdata

#endif

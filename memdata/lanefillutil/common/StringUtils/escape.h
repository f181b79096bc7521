// escape.h - backslash escapes of strings, character constants and formats.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_STRING_UTILS_ESCAPE_H
#define MEMDATA_STRING_UTILS_ESCAPE_H

#include "platform/BasicTypes.h"

#include <string>
#include <string_view>

// Takes one character of a text, which may be written as an escape.
//   cursor     in: a place in a terminated text; out: behind what was taken. At the terminator it stays.
//   hadEscape  set when an escape was taken, else left alone, so that one flag serves a whole text; may be null
//   count      out: characters yielded, 0 or 1; may be null
//   out        out: the character when count is 1, else NUL; may be null
// A character other than the backslash yields itself. After a backslash:
//   LF or CR         nothing is yielded; all LF and CR that follow are taken: the lines are joined
//   a b f n r t v    7 8 12 10 13 9 11
//   0 to 7           up to three octal digits, the low eight bits of their value
//   x or X           up to two hexadecimal digits; without any, the letter itself
//   anything else    that character, among them \" \' and a second backslash
// A backslash at the very end of the text has nothing to escape and yields itself.
void convert_escaped_char(const char** cursor, bool* hadEscape, unsigned* count, char* out);

namespace memdata {

// A text as it is written between double quotes: control characters, the quote and the backslash as escapes, which
// convert_escaped_char reads back.
std::string escapedText(std::string_view text);

} // namespace memdata

#endif

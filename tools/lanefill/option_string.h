// option_string.h - the words of a command line as one option text of the engine.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_OPTION_STRING_H
#define LANEFILL_OPTION_STRING_H

#include <span>
#include <string>

namespace memdata {

// Joins the words by blanks. Words that name files are put in quotes, so that any name reaches the engine as it is:
// blanks, quotes, signs, bytes above 0x7F. The word behind a switch for a file is such a name, also when it begins with
// a dash, unless it is itself a switch. Other words stay as they are: they may hold several words of option text.
// False, with the word in *refused, for a name that no option text can hold: line ends, or the byte 0xFF.
bool joinOptionWords(std::span<char* const> words, std::string* text, std::string* refused);

} // namespace memdata

#endif

// letters.h - arguments that are a word of letters: -o, -d, -q.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_CMD_PARSE_UTILS_LETTERS_H
#define MEMDATA_CMD_PARSE_UTILS_LETTERS_H

#include "CmdParseUtils/option_reader.h"

namespace memdata {

// Carries out one letter. spec: the file of the switch, null when it has none.
using LetterSetter = int (*)(OptionReader* reader, const token_element* token, char letter, const fileSpecType* spec);

// Carries out each letter of a word.
//   token    the word; alerts point at it
//   letters  those that are allowed; those behind a blank are not named in the alert about others
// Status 0; 14 with an alert for a letter that is not allowed or stands twice; that of the setter.
int check_char_options(OptionReader* reader, const token_element* token, const char* switchName, const char* letters,
    const fileSpecType* spec, LetterSetter setter);

} // namespace memdata

#endif

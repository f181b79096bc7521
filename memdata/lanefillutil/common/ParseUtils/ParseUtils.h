// ParseUtils.h - the language front end: tokens, scanner, parse streams, preprocessor, expressions.
// SPDX-License-Identifier: Apache-2.0
//
// Every text of the engine is read here: maps, options, data files. Lowest first:
//   token_types    the tree of token kinds
//   tokens         token records and their pool
//   keyword_sets   words that are more than identifiers
//   numbers        digits to values
//   limits         what a text may not exceed, and what is said then
//   modes          how a context is being read
//   streams        a text, and the stack of texts inside it (includes, macro bodies, overlays)
//   scanner        characters to tokens
//   look_ahead     tokens read early or put back
//   plain_text     stepping over runs of plain tokens without the scanner
//   preprocessor   directives and macros, between the scanner and get_next_token
//   macros         macros: defined, looked up, expanded
//   directives     the directives, one operation each
//   include_paths  lists of folders to look for files in
//   preprocess_file  the run that only preprocesses
//   file_path      file names in a text
//   expressions    numbers written as expressions
#ifndef MEMDATA_PARSE_UTILS_H
#define MEMDATA_PARSE_UTILS_H

#include "ParseUtils/directives.h"
#include "ParseUtils/expressions.h"
#include "ParseUtils/file_path.h"
#include "ParseUtils/include_paths.h"
#include "ParseUtils/keyword_sets.h"
#include "ParseUtils/limits.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/macros.h"
#include "ParseUtils/modes.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/plain_text.h"
#include "ParseUtils/preprocess_file.h"
#include "ParseUtils/preprocessor.h"
#include "ParseUtils/scanner.h"
#include "ParseUtils/streams.h"
#include "ParseUtils/token_types.h"
#include "ParseUtils/tokens.h"

#endif

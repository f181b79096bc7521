// include_paths.h - lists of the folders that files are looked for in.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_INCLUDE_PATHS_H
#define MEMDATA_PARSE_UTILS_INCLUDE_PATHS_H

#include "ParseUtils/streams.h"
#include "StringUtils/StringUtils.h"

// Reads path names with ";" or ":" between them and appends them to a list, each with a "/" at its end. A single name
// that a ":" follows directly is a volume ("c:/"), so ":" separates only paths that begin with "/", "." or "\".
//   token  in: the one ahead of the list; out: the one behind it
//   out    null counts as an empty list; what was read before a failure stays in it
// Status as parse_file_pathname.
int compile_file_paths(parse_stream* stream, token_element* token, StrList* out);

#endif

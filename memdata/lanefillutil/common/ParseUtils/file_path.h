// file_path.h - file names in a text.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_FILE_PATH_H
#define MEMDATA_PARSE_UTILS_FILE_PATH_H

#include "ParseUtils/streams.h"

// Reads a file name: names of letters, digits, "_", "-" and "." or quoted strings, joined by "/", "\" and ".", with
// an optional volume ("c:/") or server ("\\server") in front. Macros expand, words of keyword sets are names, a
// backslash separates like "/" and is stored as "/".
//   token              in: the first token of the path, or the one ahead of it; out: the token behind the path
//   skipFirst          the path begins behind the token, behind blanks and line ends
//   quiet              a first token that can not begin a path gives status 1 and no alert
//   eatTrailingSpace   a blank or line end behind the path is passed over
//   out                the name taken apart; the caller's
// Status 0; 1 no path and quiet; 3 with an alert; 7; or that of reading.
int parse_file_pathname(
    parse_stream* stream, token_element* token, bool skipFirst, bool quiet, bool eatTrailingSpace, fileSpecType** out);

// The first piece of a path: "/", "\", "\\" with a server's name, ".", "..", or a name with an optional ":". Reads the
// token behind it. For callers that have pushed file_path_token_set themselves.
//   name  the text so far, a managed string or null; replaced by the longer one
//   last  kind of the last token that became part of it; left alone when none did
// Status as parse_file_pathname.
int parse_file_path_beginning(
    parse_stream* stream, token_element* token, bool quiet, char** name, const token_type** last);

namespace memdata {

// Says that a token can not begin a path, for callers that have read quietly. Status 3.
int refusePathSymbol(parse_stream* stream, const token_element* token);

} // namespace memdata

#endif

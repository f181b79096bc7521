// preprocess_file.h - the run that only preprocesses.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_PREPROCESS_FILE_H
#define MEMDATA_PARSE_UTILS_PREPROCESS_FILE_H

#include "FileUtils/FileUtils.h"

// Writes the tokens of a text, directives acted on and macros expanded. Blanks and line ends are kept, but those of
// macro bodies are not; strings are written in double quotes, with their escapes replaced.
//   in          its extension is kept
//   extension   default for both names
//   rescanText  read ahead of the file, may be null: definitions
//   out         null for standard output. A file that exists is refused unless overwriting is allowed; it appears
//               only when the status is 0. The file of in itself is refused always, under any name (status 1)
// Status 0, also for an empty file; 1 for a file that can not be opened; 21 and others as the text gives them.
int open_and_preprocess_file(fileSpecType* in, const char* extension, const char* rescanText, fileSpecType* out);

#endif

// header_dump.h - a header as text.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_HEADER_DUMP_H
#define MEMDATA_BIT_FILE_UTILS_HEADER_DUMP_H

#include "BitFileUtils/header.h"
#include "FileUtils/descriptor.h"

// Six labelled lines and an empty one. Status 0, or the first failure of the output.
int DumpBITHeader(fileIODescriptor* out, const char* fileName, const BitFileHeaderType* header);

#endif

// opening.h - how files come to be open: on disk, in memory, by search.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_OPENING_H
#define MEMDATA_FILE_UTILS_OPENING_H

#include "FileUtils/descriptor.h"
#include "FileUtils/file_spec.h"
#include "StringUtils/StringUtils.h"

u32 SetDefaultFileAttributes(u32 bits, bool set); // the old attributes
int Open_File(const char* name, u32 attributes, fileIODescriptor** file);
int OpenMemoryFile(const char* name, u32 attributes, char* data, u64 size, fileIODescriptor** file);
int OpenDiskFile(fileSpecType* spec, const char* directory, const char* defaultExtension, const char* suffix,
    u32 attributes, fileIODescriptor** file);
int SearchAndOpenDiskReadFile(fileSpecType* spec, const char* defaultExtension, const char* suffix, StrList searchPaths,
    u32 attributes, fileIODescriptor** file);
int Delete_File(const char* name);
int Rename_File(const char* from, const char* to);

#endif

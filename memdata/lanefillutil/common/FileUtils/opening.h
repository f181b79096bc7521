// opening.h - how files come to be open: on disk, in memory, by search.
//
// An output to a regular file is written to a temporary beside it and takes its name, in one step, at Close_File;
// until then, and for ever when the run fails or ends, an old file keeps its contents. The new file has the old one's
// permissions. A name that is a link means the file that it leads to. What is not a regular file (a device, a pipe,
// an open file of the process such as /dev/stdout) is written directly.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_OPENING_H
#define MEMDATA_FILE_UTILS_OPENING_H

#include "FileUtils/descriptor.h"
#include "FileUtils/file_spec.h"
#include "StringUtils/StringUtils.h"

u32 SetDefaultFileAttributes(u32 bits, bool set); // the old attributes

// Opens for writing when the attributes hold kWRITE_ACCESS, else for reading; the default attributes are added.
// A file that the run has read is refused as an output, status 1 (see platform/run_inputs.h).
// Null in *file on any other way out than an open file. Status 0, also for an input without any byte, which gives
// a null handle; 1 with kERROR_OPENING_FILE or kERROR_CREATING_FILE (silent with kQUIET_OPEN) when the file can not
// be opened, is a directory or can not be read; 3 a null argument; 7 no memory.
int Open_File(const char* name, u32 attributes, fileIODescriptor** file);

// A file over size bytes at data, used in place: they stay the caller's, must live until Close_File, and should be
// followed by a NUL or 0xFF when their reader scans without a count. Without data a buffer that grows as it is
// written and goes with the file. Status 0; 3 a null argument; 7 no memory.
int OpenMemoryFile(const char* name, u32 attributes, char* data, u64 size, fileIODescriptor** file);

// Opens the file of a spec under the name that BuildNewFileName gives; for reading a given extension is kept. An
// output with kREFUSE_OVERWRITE whose file exists already stops with kERROR_OVERWRITING_FILE, status 1, unless
// overwriting was allowed. Devices and pipes are not overwritten by writing to them and are never refused.
// Status as Open_File.
int OpenDiskFile(fileSpecType* spec, const char* directory, const char* defaultExtension, const char* suffix,
    u32 attributes, fileIODescriptor** file);

// Opens an input: the name as it stands, then in each folder of searchPaths in order (null for none): with the
// directories that the name itself has, then without. Status as Open_File, one alert when it is nowhere.
int SearchAndOpenDiskReadFile(fileSpecType* spec, const char* defaultExtension, const char* suffix, StrList searchPaths,
    u32 attributes, fileIODescriptor** file);

namespace memdata {

// Tells why the latest file on disk could not be opened, behind the alert that names it. Nothing when that tells it.
// Status 1.
int reportCause(const char* name, bool writes);
// Both alerts, for an input that was opened in another way. cause: in the system's words. Status 1.
int reportUnopened(const char* name, const std::string& cause);

// Turns an input over a caller's bytes into one over others, as if it had been closed and opened again. Allocates
// nothing while the name fits the memory of those before. Status 0; 3 it is no such input, or there are no bytes; 7,
// the file is as before then.
int reopenMemoryFile(fileIODescriptor* file, const char* name, char* data, u64 size);

} // namespace memdata

int Delete_File(const char* name);                 // status 0, or 1 when there is no such file to delete; silent
int Rename_File(const char* from, const char* to); // status 0, or 1; silent; replaces what stands under "to"

#endif

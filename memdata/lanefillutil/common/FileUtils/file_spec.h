// file_spec.h - file names taken apart and put together, lists of them, and their formats.
//
// A name is volume, directory, base name, ".", extension. "C:/work/a.b.elf" has the volume "C:", the directory
// "/work/", the base name "a.b" and the extension "elf". Names may be of any length and hold any bytes but NUL.
// All strings given out as char* are managed strings; the caller owns them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_FILE_SPEC_H
#define MEMDATA_FILE_UTILS_FILE_SPEC_H

#include "SystemUtils/memory.h"
#include "platform/BasicTypes.h"

struct fileSpecType {
    char* fullName;
    char* volume;    // path up to the root
    char* directory; // up to and with the last "/"
    char* baseName;
    char* extension; // without its dot
    u8 separator;    // the last path separator seen, 0 for none
    u32 format;      // code of the format table, 0 unknown
    u32 subType;     // a character code
    void* attribute;
    char* fileData; // contents, for specs that hold them; owned, 0xFF, NUL, NUL stand behind them
    u64 fileDataSize;
};

// A null-terminated array of specs that it owns. The bound of the type is nominal: lists have any length.
using FileSpecList = fileSpecType* (*)[256];

// Takes a name apart. The volume is everything up to the colon of the first ":/", the directory ends with the last
// "/", the extension starts behind the last "." of what is left. Parts that are not there are "". Parts whose pointer
// is null are not made. Status 0; 3 a null name; 7 no memory (no part is set then).
int SeparateFilePathAndName(const char* name, char** volume, char** directory, char** baseName, char** extension);
// volume + directory with every "\" as "/". Null counts as "". Null when memory is exhausted.
char* CopyAndTranslateFilePath(const char* volume, const char* directory);
char* CopyFileName(const char* name);                       // null gives null
char* CatFileName(const char* directory, const char* name); // with a "/" between them where it is missing
// The name under which a file is opened: directory (a "/" is added when missing; null or "" keeps that of name), base
// name + suffix, ".", extension. A name without an extension takes defaultExtension; another keeps its own with
// kKEEP_EXTENSION, else defaultExtension replaces it. Under kWARN_EXTENSION_REPLACED there is a warning when the two
// differ, also for one that is kept. An empty extension brings no dot. Status 0; 3 a null argument; 7 no memory.
int BuildNewFileName(const char* name, char** out, const char* directory, const char* defaultExtension,
    const char* suffix, u32 attributes);

u32 DecodeFileFormatType(const char* extension); // any case; 0 for an unknown extension; null counts as ""
const char* DecodeFileExtensionType(u32 format); // the first extension of a format; null for an unknown one
void SetFileSpecFormatType(fileSpecType* spec);  // from its extension

// Fills the record from a name; what it held before is released. An extension, when given, replaces that of the
// name. fullName is put together again from the parts. Status 0; 3 a null argument; 7 no memory (the record is
// unchanged then).
int InitializeFileSpec(fileSpecType* spec, const char* name, const char* extension);
fileSpecType* NewFileSpec();                         // empty; null when memory is exhausted, like the next two
fileSpecType* CreateFileSpec(const char* name);      // null for a null name
fileSpecType* DupFileSpec(const fileSpecType* spec); // with its file data; null for null
void DeleteFileSpec(fileSpecType** spec);            // nulls the pointer; null is accepted
void FileSpecSetSubType(fileSpecType* spec, u32 subType);
u32 FileSpecGetSubType(const fileSpecType* spec); // 0 for null
void FileSpecSetAttribute(fileSpecType* spec, void* attribute);
void* FileSpecGetAttribute(const fileSpecType* spec); // null for null
// Keeps a copy of the bytes, in place of what the spec held; size 0 keeps none. Status 0; 3 a null argument; 7.
int FileSpecSetFileData(fileSpecType* spec, const char* data, u64 size);
fileSpecType* CreateFileSpecWithFileData(const char* name, const char* data, u64 size);
char* FileSpecGetFileData(const fileSpecType* spec, u64* size); // the spec's own; null and 0 for none

FileSpecList FileSpecListNew(unsigned long n); // n null entries; throws HEXInternalException without memory
void FileSpecListSet(FileSpecList list, unsigned long index, fileSpecType* spec); // beyond its n entries: nothing
fileSpecType* FileSpecListGet(FileSpecList list, unsigned long index);            // beyond: null
unsigned long FileSpecListCount(FileSpecList list); // entries ahead of the first null one; 0 for null
// Appends; a null list becomes a list of one. The list owns the spec only on status 0; 7 no memory; 3 null.
int FileSpecListExtend(FileSpecList* list, fileSpecType* spec);
// Takes the spec out and hands it back to the caller, not deleted. Status 0; 4 it is not in the list; 3 null.
int FileSpecListRemove(FileSpecList* list, fileSpecType* spec);
int FileSpecListDelete(FileSpecList list); // with its specs; 0

namespace memdata {

using OwnedFileSpec = Tracked<fileSpecType, DeleteFileSpec>;

} // namespace memdata

#endif

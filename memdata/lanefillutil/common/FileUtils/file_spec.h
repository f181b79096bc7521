// file_spec.h - file names taken apart and put together, lists of them, and their formats.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_FILE_SPEC_H
#define MEMDATA_FILE_UTILS_FILE_SPEC_H

#include "platform/BasicTypes.h"

struct fileSpecType {
    char* fullName;
    char* volume;    // path up to the root
    char* directory; // up to and with the last "/"
    char* baseName;
    char* extension; // without its dot
    u8 separator;    // the last path separator seen
    u32 format;      // code of the format table, 0 unknown
    u32 subType;     // a character code
    void* attribute;
    char* fileData; // contents, for specs that hold them
    u64 fileDataSize;
};

using FileSpecList = fileSpecType* (*)[256];

int SeparateFilePathAndName(const char* name, char** volume, char** directory, char** baseName, char** extension);
char* CopyAndTranslateFilePath(const char* volume, const char* directory);
char* CopyFileName(const char* name);
char* CatFileName(const char* directory, const char* name);
int BuildNewFileName(const char* name, char** out, const char* directory, const char* defaultExtension,
    const char* suffix, u32 attributes);
u32 DecodeFileFormatType(const char* extension); // 0 for an unknown extension
const char* DecodeFileExtensionType(u32 format); // null for an unknown format
void SetFileSpecFormatType(fileSpecType* spec);
int InitializeFileSpec(fileSpecType* spec, const char* name, const char* extension);
fileSpecType* NewFileSpec();
fileSpecType* CreateFileSpec(const char* name);
fileSpecType* DupFileSpec(const fileSpecType* spec);
void DeleteFileSpec(fileSpecType** spec);
void FileSpecSetSubType(fileSpecType* spec, u32 subType);
u32 FileSpecGetSubType(const fileSpecType* spec);
void FileSpecSetAttribute(fileSpecType* spec, void* attribute);
void* FileSpecGetAttribute(const fileSpecType* spec);
int FileSpecSetFileData(fileSpecType* spec, const char* data, u64 size);
fileSpecType* CreateFileSpecWithFileData(const char* name, const char* data, u64 size);
char* FileSpecGetFileData(const fileSpecType* spec, u64* size);

FileSpecList FileSpecListNew(unsigned long n);
void FileSpecListSet(FileSpecList list, unsigned long index, fileSpecType* spec);
fileSpecType* FileSpecListGet(FileSpecList list, unsigned long index);
unsigned long FileSpecListCount(FileSpecList list);
int FileSpecListExtend(FileSpecList* list, fileSpecType* spec);
int FileSpecListRemove(FileSpecList* list, fileSpecType* spec);
int FileSpecListDelete(FileSpecList list);

#endif

// descriptor.h - a file over disk or memory, read and written through one record.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_DESCRIPTOR_H
#define MEMDATA_FILE_UTILS_DESCRIPTOR_H

#include "FileUtils/attributes.h"
#include "StringUtils/format.h"

#include <cstdio>

struct fileIODescriptor;
using FileMoverType = int (*)(fileIODescriptor* file, int flag);

struct fileIODescriptor {
    i32 status; // last result
    u8 isOpen;
    FILE* stream;
    char* buffer;
    u64 bufferSize; // starts at 100000
    u64 bufferPosition;
    u64 filePosition;
    u64 bufferEnd;
    u64 bufferBase;
    i32 eofState;
    FileMoverType mover; // refills or flushes the buffer
    u32 attributes;
    char* name;
    u64 logicalSize;
    u64 physicalSize;
    char* textLine; // start of the current line
    u32 lineCount;
};

extern fileIODescriptor StandardOut;
extern fileIODescriptor* StandardLog; // the journal, or null

int inputByte(fileIODescriptor* file);
char* inputLine(fileIODescriptor* file, char* buffer, u64 size);
char* GetNextTextLine(fileIODescriptor* file);
char* GetCurrentTextLine(fileIODescriptor* file);
u32 GetCurrentLineCount(const fileIODescriptor* file);
int outputByte(fileIODescriptor* file, int byte);
int outputLine(fileIODescriptor* file, const char* text);
int vPutNextLine(fileIODescriptor* file, const char* format, va_list arguments);
bool EnabledPutLineOutput(bool enabled); // the old state
bool FileIsOpen(const fileIODescriptor* file);
int GetFileSizes(fileIODescriptor* file, u64* logicalSize, u64* physicalSize);
u64 GetFilePosition(const fileIODescriptor* file);
int SetFilePosition(fileIODescriptor* file, u64 position);
char* GetFileStorageBase(const fileIODescriptor* file);
const char* GetFileName(const fileIODescriptor* file);
u64 GetFileLogicalSize(const fileIODescriptor* file);
int Flush_File(fileIODescriptor* file);
int Close_File(fileIODescriptor** file);
char* GetIndexIOBuffer(fileIODescriptor* file, u64 offset);
void InitializeFileIO();

namespace memdata {

// The typed core of PutNextLine.
int putFormatted(fileIODescriptor* file, const char* format, std::span<const FormatArgument> arguments);
// Writes bytes as they are in one block: no formatting, no newline translation.
int outputBlock(fileIODescriptor* file, const char* bytes, u64 count);

} // namespace memdata

template<class... Arguments>
int PutNextLine(fileIODescriptor* file, const char* format, const Arguments&... arguments) {
    return memdata::putFormatted(file, format, memdata::formatArguments(arguments...));
}

#endif

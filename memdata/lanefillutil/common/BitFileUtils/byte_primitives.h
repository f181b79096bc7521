// byte_primitives.h - bytes, numbers and strings of a bit file. Each byte counts towards the progress of the run.
// SPDX-License-Identifier: Apache-2.0
//
// Numbers are big-endian: the most significant byte comes first.
//
// Status of all operations: 0; 15 when the progress callback has aborted the run; a failure of the file layer as it
// is: memdata::FileStatus for inputs (kEND_OF_CONTENTS at the end of the file, not reported), that of outputByte for
// outputs (reported); what an operation adds is said there. After a failure the value may be half filled.
#ifndef MEMDATA_BIT_FILE_UTILS_BYTE_PRIMITIVES_H
#define MEMDATA_BIT_FILE_UTILS_BYTE_PRIMITIVES_H

#include "BitFileUtils/header.h"
#include "FileUtils/descriptor.h"

int inputDataByte(fileIODescriptor* file, u8* byte);
int outputDataByte(fileIODescriptor* file, u8 byte);

int ReadByte(fileIODescriptor* file, u8* value);
int WriteByte(fileIODescriptor* file, u8 value);
int ReadShort(fileIODescriptor* file, u32* value); // 2 bytes
int WriteShort(fileIODescriptor* file, u32 value); // the low 16 bits
int ReadLong(fileIODescriptor* file, u32* value);  // 4 bytes
int WriteLong(fileIODescriptor* file, u32 value);

// count bytes as they are; a count of 0 succeeds, whatever the rest is.
int ReadData(fileIODescriptor* file, void* buffer, u64 count);
int WriteData(fileIODescriptor* file, const void* buffer, u64 count);

// The strings that are read go to the caller, who releases them with DeleteHeaderString, also after a failure. What
// the record held before is not released.

// A 16-bit length L, then L bytes, of which the last is meant to be a terminator: the length stored is L - 1, and all
// L bytes are kept and terminated, so that writing gives them back. An L of 0 has no terminator and reads as empty.
// Status 7: no memory.
int ReadPascalString(fileIODescriptor* file, HeaderStringType* string);
// The length with the terminator, then so many bytes. A text that is null is written as an empty one. Status 2 with
// kERROR_INVALID_OR_CORRUPTED_BIT_STREAM_HEADER: the length does not fit 16 bits; nothing is written.
int WritePascalString(fileIODescriptor* file, const HeaderStringType* string);

// Bytes up to a zero byte, which the length does not count. Status 2, with the same alert: longer than
// memdata::kMAX_HEADER_STRING_BYTES; 7 no memory.
int ReadCString(fileIODescriptor* file, HeaderStringType* string);
int WriteCString(fileIODescriptor* file, const HeaderStringType* string); // through the first zero byte

namespace memdata {

// Far above what a tool writes: a file without a zero byte is not taken for one string.
inline constexpr u32 kMAX_HEADER_STRING_BYTES = u32{256} << 20;

// kERROR_INVALID_OR_CORRUPTED_BIT_STREAM_HEADER with the file's name; status 2.
int corruptedHeader(const fileIODescriptor* file);

// The next bytes where they stand, in whole units of unitBytes, up to limit: see inputPiece.
int readPiece(fileIODescriptor* file, u64 unitBytes, u64 limit, const u8** bytes, u64* count);

// The next bytes of the input, in whole units, where the output holds them already: see passCopied. They count as read
// and written.
int passCopiedData(fileIODescriptor* input, fileIODescriptor* output, u64 unitBytes, u64 limit, u64* count);

} // namespace memdata

#endif

// byte_primitives.cpp - see byte_primitives.h.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/byte_primitives.h"

#include "BitFileUtils/progress.h"
#include "FileUtils/copied_output.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/alerts.h"
#include "lanefillCore/records/progress_stages.h"

#include <algorithm>
#include <cstring>

namespace {

using namespace memdata;

constexpr u32 kLONGEST_PASCAL_TEXT = 0xFFFF - 1; // the stored length counts a terminator
constexpr u32 kFIRST_CSTRING_ROOM = 64;

// The run's own callback rules when it ends; a host only watches.
int moved(u64 byteCount) {
    advanceProgress(byteCount);
    return static_cast<int>(UpdateProgress(static_cast<u32>(byteCount)));
}

int readNumber(fileIODescriptor* file, u32 byteCount, u32* value) {
    *value = 0;
    for (u32 i = 0; i < byteCount; ++i) {
        u8 byte = 0;
        if (int status = inputDataByte(file, &byte); status != 0) return status;
        *value = *value << 8 | byte;
    }
    return 0;
}

int writeNumber(fileIODescriptor* file, u32 byteCount, u32 value) {
    for (u32 shift = 8 * byteCount; shift > 0;) {
        shift -= 8;
        if (int status = outputDataByte(file, static_cast<u8>(value >> shift)); status != 0) return status;
    }
    return 0;
}

// Room for twice as many characters, up to the limit. Status 0, 2, 7.
int growText(const fileIODescriptor* file, OwnedString* text, u32* room) {
    if (*room >= kMAX_HEADER_STRING_BYTES) return corruptedHeader(file);
    const u32 newRoom = std::min(std::max(2 * *room, kFIRST_CSTRING_ROOM), kMAX_HEADER_STRING_BYTES);
    OwnedString grown(StrNew("header string", newRoom));
    if (grown == nullptr) return 7;
    if (*room != 0) std::memcpy(grown.get(), text->get(), *room);
    *text = std::move(grown);
    *room = newRoom;
    return 0;
}

} // namespace

int memdata::corruptedHeader(const fileIODescriptor* file) {
    return PrintError(kERROR_INVALID_OR_CORRUPTED_BIT_STREAM_HEADER, 2, GetFileName(file));
}

int inputDataByte(fileIODescriptor* file, u8* byte) {
    const int read = inputByte(file);
    if (read < 0) return read;
    *byte = static_cast<u8>(read);
    return moved(1);
}

int outputDataByte(fileIODescriptor* file, u8 byte) {
    const int status = outputByte(file, byte);
    return status != 0 ? status : moved(1);
}

int ReadByte(fileIODescriptor* file, u8* value) {
    return inputDataByte(file, value);
}
int WriteByte(fileIODescriptor* file, u8 value) {
    return outputDataByte(file, value);
}
int ReadShort(fileIODescriptor* file, u32* value) {
    return readNumber(file, 2, value);
}
int WriteShort(fileIODescriptor* file, u32 value) {
    return writeNumber(file, 2, value);
}
int ReadLong(fileIODescriptor* file, u32* value) {
    return readNumber(file, 4, value);
}
int WriteLong(fileIODescriptor* file, u32 value) {
    return writeNumber(file, 4, value);
}

// A run that does not report each byte can not be aborted between two of them: its bytes move in blocks.

int ReadData(fileIODescriptor* file, void* buffer, u64 count) {
    if (count == 0) return 0;
    if (!progressReportsEachByte()) {
        const int status = inputBlock(file, static_cast<char*>(buffer), count);
        return status != 0 ? status : moved(count);
    }
    u8* bytes = static_cast<u8*>(buffer);
    for (u64 i = 0; i < count; ++i)
        if (int status = inputDataByte(file, bytes + i); status != 0) return status;
    return 0;
}

int memdata::readPiece(fileIODescriptor* file, u64 unitBytes, u64 limit, const u8** bytes, u64* count) {
    const bool eachByte = progressReportsEachByte();
    const char* at = nullptr;
    if (int status = inputPiece(file, unitBytes, eachByte ? unitBytes : limit, &at, count); status != 0) return status;
    *bytes = reinterpret_cast<const u8*>(at);
    if (!eachByte) return moved(*count);
    for (u64 i = 0; i < *count; ++i)
        if (int status = moved(1); status != 0) return status;
    return 0;
}

int memdata::passCopiedData(fileIODescriptor* input, fileIODescriptor* output, u64 unitBytes, u64 limit, u64* count) {
    if (int status = passCopied(output, input, unitBytes, limit, count); status != 0) return status;
    if (int status = moved(*count); status != 0) return status;
    return moved(*count);
}

int WriteData(fileIODescriptor* file, const void* buffer, u64 count) {
    if (count == 0) return 0;
    if (!progressReportsEachByte()) {
        const int status = outputBlock(file, static_cast<const char*>(buffer), count);
        return status != 0 ? status : moved(count);
    }
    const u8* bytes = static_cast<const u8*>(buffer);
    for (u64 i = 0; i < count; ++i)
        if (int status = outputDataByte(file, bytes[i]); status != 0) return status;
    return 0;
}

int ReadPascalString(fileIODescriptor* file, HeaderStringType* string) {
    *string = {};
    u32 storedLength = 0;
    if (int status = ReadShort(file, &storedLength); status != 0) return status;
    string->text = StrNew("header string", storedLength);
    if (string->text == nullptr) return 7;
    if (int status = ReadData(file, string->text, storedLength); status != 0) return status;
    string->length = storedLength == 0 ? 0 : storedLength - 1;
    return 0;
}

int WritePascalString(fileIODescriptor* file, const HeaderStringType* string) {
    const u32 length = string->text == nullptr ? 0 : string->length;
    if (length > kLONGEST_PASCAL_TEXT) return corruptedHeader(file);
    if (int status = WriteShort(file, length + 1); status != 0) return status;
    return WriteData(file, headerText(*string), length + 1);
}

int ReadCString(fileIODescriptor* file, HeaderStringType* string) {
    *string = {};
    OwnedString text;
    u32 room = 0;
    for (u32 length = 0;; ++length) {
        u8 byte = 0;
        if (int status = inputDataByte(file, &byte); status != 0) return status;
        if (length == room)
            if (int status = growText(file, &text, &room); status != 0) return status;
        text.get()[length] = static_cast<char>(byte);
        if (byte != 0) continue;
        *string = {length, text.release()};
        return 0;
    }
}

int WriteCString(fileIODescriptor* file, const HeaderStringType* string) {
    const char* text = headerText(*string);
    return WriteData(file, text, std::strlen(text) + 1);
}

// bit_container.cpp - see bit_container.h.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_container.h"

#include "BitFileUtils/byte_primitives.h"
#include "BitFileUtils/rbt_container.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/alerts.h"

#include <string_view>

namespace {

using namespace memdata;

constexpr u32 kRBT_FORMAT = 15;
constexpr u32 kLONGEST_FENWICK_STREAM = 0xFFFFFFFF / 8; // bytes; the field counts bits

// The tagged strings of t4k in the order of the file.
struct TaggedStringType {
    u8 tag;
    u8 BitFileHeaderType::*tagField;
    HeaderStringType BitFileHeaderType::*string;
};
constexpr TaggedStringType kT4K_STRINGS[] = {
    {'a', &BitFileHeaderType::designTag, &BitFileHeaderType::designName},
    {'b', &BitFileHeaderType::partTag, &BitFileHeaderType::partName},
    {'c', &BitFileHeaderType::dateTag, &BitFileHeaderType::date},
    {'d', &BitFileHeaderType::timeTag, &BitFileHeaderType::time},
};

// The strings of Fenwick in the order of the file.
constexpr HeaderStringType BitFileHeaderType::*kFENWICK_STRINGS[] = {&BitFileHeaderType::designName,
    &BitFileHeaderType::fenwickUser, &BitFileHeaderType::partName, &BitFileHeaderType::dateTime};

// The end of the file inside a field says nothing by itself; all other failures have been reported.
int fieldStatus(const fileIODescriptor* file, int status) {
    return status == kEND_OF_CONTENTS ? corruptedHeader(file) : status;
}

// Whether the size of what follows is known: the rest has been read, or the system has told the size of the file.
bool knowsSize(const fileIODescriptor* file) {
    return file->eofState != 0 || GetFileLogicalSize(file) > file->bufferBase + file->bufferEnd;
}

// The stream must be there; where the buffer holds all that is left, and so will not move any more, it is pointed to.
int locateStream(fileIODescriptor* file, BitFileHeaderType* header) {
    // Looks on behind what the buffer holds. A pipe that still gives bytes then may end where it likes.
    if (!knowsSize(file)) file->mover(file, 0);
    const u64 position = GetFilePosition(file);
    if (knowsSize(file) && header->dataLength > GetFileLogicalSize(file) - position) return corruptedHeader(file);
    if (file->eofState != 0) header->dataPointer = reinterpret_cast<u8*>(GetIndexIOBuffer(file, position));
    return 0;
}

bool isFilledString(const HeaderStringType& string) {
    return string.text[0] != '\0' && string.text[string.length] == '\0';
}

bool isSoundT4k(const BitFileHeaderType* header) {
    constexpr std::string_view kPREAMBLE = "\x0F\xF0\x0F\xF0\x0F\xF0\x0F\xF0";
    for (const TaggedStringType& row : kT4K_STRINGS)
        if (header->*row.tagField != row.tag || !isFilledString(header->*row.string)) return false;
    return std::string_view(header->preamble.text, header->preamble.length) == kPREAMBLE;
}

int readT4kStrings(fileIODescriptor* file, BitFileHeaderType* header) {
    if (int status = ReadPascalString(file, &header->preamble); status != 0) return status;
    if (int status = ReadShort(file, &header->fieldCount); status != 0) return status;
    for (const TaggedStringType& row : kT4K_STRINGS) {
        if (int status = ReadByte(file, &(header->*row.tagField)); status != 0) return status;
        if (int status = ReadPascalString(file, &(header->*row.string)); status != 0) return status;
    }
    return 0;
}

int readT4kData(fileIODescriptor* file, BitFileHeaderType* header) {
    if (int status = ReadByte(file, &header->dataTag); status != 0) return status;
    return ReadLong(file, &header->dataLength);
}

int readFenwickFields(fileIODescriptor* file, BitFileHeaderType* header) {
    if (int status = ReadByte(file, &header->dialect); status != 0) return status;
    for (HeaderStringType BitFileHeaderType::*string : kFENWICK_STRINGS)
        if (int status = ReadCString(file, &(header->*string)); status != 0) return status;
    if (int status = ReadData(file, header->fenwickStamp, kFENWICK_STAMP_BYTES); status != 0) return status;
    u32 bitCount = 0;
    if (int status = ReadLong(file, &bitCount); status != 0) return status;
    header->dataLength = bitCount >> 3;
    return 0;
}

int openContainer(fileSpecType* fileSpec, u32 openFlags, fileIODescriptor** file) {
    constexpr u32 kBINARY_READ = kREAD_ACCESS | kBINARY_FILE;
    if (int status = OpenDiskFile(fileSpec, nullptr, "bit", nullptr, openFlags | kBINARY_READ, file); status != 0)
        return status;
    return *file != nullptr ? 0 : PrintError(kERROR_EMPTY_INPUT_FILE, 17, fileSpec->fullName, "BIT");
}

} // namespace

int ReadBITHeader(fileIODescriptor* file, BitFileHeaderType* header) {
    if (file == nullptr || header == nullptr) return 3;
    *header = {};
    const char* first = GetFileLogicalSize(file) == 0 ? nullptr : GetIndexIOBuffer(file, 0);
    if (first == nullptr) return corruptedHeader(file);
    switch (static_cast<u8>(*first)) {
    case kT4K_DIALECT:
        return ReadBITHeader_t4k(file, header);
    case kFENWICK_DIALECT:
        return ReadBITHeader_Fenwick(file, header);
    default:
        return 0;
    }
}

int ReadBITHeader_t4k(fileIODescriptor* file, BitFileHeaderType* header) {
    *header = {};
    header->dialect = kT4K_DIALECT;
    if (int status = readT4kStrings(file, header); status != 0) return fieldStatus(file, status);
    if (!isSoundT4k(header)) return corruptedHeader(file);
    // From here on date and time are texts.
    if (int status =
            setHeaderString(&header->dateTime, appendFormat(nullptr, "%s %s", header->date.text, header->time.text));
        status != 0)
        return status;
    if (int status = readT4kData(file, header); status != 0) return fieldStatus(file, status);
    return locateStream(file, header);
}

int ReadBITHeader_Fenwick(fileIODescriptor* file, BitFileHeaderType* header) {
    *header = {};
    if (int status = readFenwickFields(file, header); status != 0) return fieldStatus(file, status);
    return locateStream(file, header);
}

int WriteBITHeader(fileIODescriptor* file, const BitFileHeaderType* header) {
    if (file == nullptr || header == nullptr) return 3;
    switch (header->dialect) {
    case kT4K_DIALECT:
        return WriteBITHeader_t4k(file, header);
    case kFENWICK_DIALECT:
        return WriteBITHeader_Fenwick(file, header);
    default:
        return 0;
    }
}

int WriteBITHeader_t4k(fileIODescriptor* file, const BitFileHeaderType* header) {
    if (int status = WritePascalString(file, &header->preamble); status != 0) return status;
    if (int status = WriteShort(file, header->fieldCount); status != 0) return status;
    for (const TaggedStringType& row : kT4K_STRINGS) {
        if (int status = WriteByte(file, header->*row.tagField); status != 0) return status;
        if (int status = WritePascalString(file, &(header->*row.string)); status != 0) return status;
    }
    if (int status = WriteByte(file, header->dataTag); status != 0) return status;
    return WriteLong(file, header->dataLength);
}

int WriteBITHeader_Fenwick(fileIODescriptor* file, const BitFileHeaderType* header) {
    if (header->dataLength > kLONGEST_FENWICK_STREAM) return corruptedHeader(file);
    if (int status = WriteByte(file, header->dialect); status != 0) return status;
    for (HeaderStringType BitFileHeaderType::*string : kFENWICK_STRINGS)
        if (int status = WriteCString(file, &(header->*string)); status != 0) return status;
    if (int status = WriteData(file, header->fenwickStamp, kFENWICK_STAMP_BYTES); status != 0) return status;
    return WriteLong(file, header->dataLength * 8);
}

int OpenBITFile(fileSpecType* fileSpec, u32 openFlags, u32* dataLength, TarselDeviceType** device,
    BitFileHeaderType* header, fileIODescriptor** file) {
    if (fileSpec == nullptr || dataLength == nullptr || device == nullptr || header == nullptr || file == nullptr)
        return PrintError(kERROR_MESSAGE_STRING, 3, "A bit file cannot be opened without its arguments.");
    if (fileSpec->format == kRBT_FORMAT) return OpenRBTFile(fileSpec, dataLength, device, header, file);
    *dataLength = 0;
    *device = nullptr;
    *header = {};
    *file = nullptr;

    Tracked<fileIODescriptor, abandonFile> opened;
    if (int status = openContainer(fileSpec, openFlags, opened.out()); status != 0) return status;
    int status = ReadBITHeader(opened.get(), header);
    if (status == 0) status = deviceOfHeader(header, fileSpec->fullName, device);
    if (status != 0) {
        header->dataPointer = nullptr; // the buffer goes with the file
        return status;
    }
    *dataLength = header->dataLength;
    *file = opened.release();
    return 0;
}

int memdata::deviceOfBitFile(fileSpecType* bitFile, TarselDeviceType** device) {
    BitFileHeaderType header{};
    Tracked<fileIODescriptor, abandonFile> file;
    u32 dataLength = 0;
    const int status = OpenBITFile(bitFile, 0, &dataLength, device, &header, file.out());
    DeleteBITHeader(&header);
    return status;
}

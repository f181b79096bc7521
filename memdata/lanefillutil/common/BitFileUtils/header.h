// header.h - what the wrapper of a configuration stream says.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_HEADER_H
#define MEMDATA_BIT_FILE_UTILS_HEADER_H

#include "platform/BasicTypes.h"

struct TarselDeviceType;

struct HeaderStringType {
    u32 length; // characters, without a terminator; the text may hold NUL characters
    char* text; // a managed string, or null
};

inline constexpr u8 kT4K_DIALECT = 0;
inline constexpr u8 kFENWICK_DIALECT = 25;
inline constexpr u32 kFENWICK_STAMP_BYTES = 8;

struct BitFileHeaderType {
    u8 dialect;                // first byte of the file
    HeaderStringType preamble; // opaque first string of t4k
    u32 fieldCount;            // 16 bits; kept and written back
    u8 designTag;
    HeaderStringType designName; // with whatever the generating tool appended
    u8 partTag;
    HeaderStringType partName; // a device's name, with package and speed grade
    u8 dateTag;
    HeaderStringType date;
    u8 timeTag;
    HeaderStringType time;
    u8 dataTag;
    u32 dataLength;            // bytes of configuration stream
    HeaderStringType bitCount; // the "Bits" line of an RBT file; empty for binary files
    // Start of the stream in the file's buffer or image, as long as that stands. Null when the buffer does not hold
    // the whole stream, see OpenBITFile.
    u8* dataPointer;
    HeaderStringType fenwickUser; // first extra string of Fenwick
    HeaderStringType dateTime;    // as printed
    u8 fenwickStamp[kFENWICK_STAMP_BYTES];
};

// Releases the text; pointer and length are cleared. Null is accepted.
void DeleteHeaderString(HeaderStringType* string);
// Releases the eight strings, and clears the pointer to the stream. May be called again, and after a failed read.
// The stream is not the header's. Null is accepted.
void DeleteBITHeader(BitFileHeaderType* header);

namespace memdata {

inline const char* headerText(const HeaderStringType& string) {
    return string.text == nullptr ? "" : string.text;
}

// Takes over a managed string. Status 0, or 7 for null (no memory, reported).
int setHeaderString(HeaderStringType* string, char* text);

// The device that the part name begins with. An alert names the part, or the file when it has none. Status 0, or 4 with kERROR_UNRECOGNIZED_BIT_DEVICE_TYPE and null.
int deviceOfHeader(const BitFileHeaderType* header, const char* fileName, TarselDeviceType** device);

} // namespace memdata

#endif

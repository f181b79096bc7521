// ListingUtils.h - version headers, dates, hex dumps and message files.
//
// All of these write through PutNextLine: its rules of standard output, journal and line ends hold. Unless a comment
// says otherwise the status is 0, or that of the first write that failed (-1 for a file that is not open for writing).
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LISTING_UTILS_H
#define MEMDATA_LISTING_UTILS_H

#include "FileUtils/descriptor.h"
#include "FileUtils/file_spec.h"

#include <ctime>

extern const char* const dayNames[7];    // "Sunday" first
extern const char* const monthNames[12]; // "January" first

// The local time as "Monday March 03, 2025 - 01:02:03 pm", names cut to three characters unless longNames. A managed
// string of the caller's, or null when memory is exhausted.
char* GetDateTimeString(bool longNames);

// Writes text as it is; null writes nothing.
int OutputConsoleMessage(fileIODescriptor* file, const char* text);

// Writes size bytes in lines of perLine, the last one padded:
//   " AAAAAAAA:   BB BB BB    cccc"   address in hexadecimal, low 32 bits; bytes; what of them prints in ASCII
// With the value 16 in mode a line is the bytes alone: "BBBBBB".
// Status 3 when perLine is 0 or data is null; a perLine above memdata::kMAX_DUMP_BYTES_PER_LINE counts as that.
int DumpHex(
    fileIODescriptor* file, int mode, unsigned address, const unsigned char* data, unsigned size, unsigned perLine);

// Writes one message for translators as a line: name, then text in quotes, each conversion of the format as
// "!%c%ld!" with its letter and number from 1 on, control characters, quotes and backslashes as escapes; then a
// comma unless it is the last.
int OutputFormatString(fileIODescriptor* file, const char* name, const char* text, bool last);

// Write a file of a banner, default extension "msg" (lines of "#") or "c" (lines of "//"); the registry whose entries
// would follow is empty. An existing file is refused unless overwriting is allowed. Status as OpenDiskFile and
// Close_File; 3 for null.
int OutputAlertMsgFile(fileSpecType* spec);
int OutputPortLocMsgFile(fileSpecType* spec);

namespace memdata {

inline constexpr unsigned kMAX_DUMP_BYTES_PER_LINE = 1U << 16;

// The typed core of OutputVersionHeader.
int outputVersionHeader(
    fileIODescriptor* file, const char* prefix, const char* format, std::span<const FormatArgument> arguments);

// GetDateTimeString of a given time.
char* dateTimeString(const std::tm& time, bool longNames);

} // namespace memdata

// Writes who made a file: build, product and notices of the host; with a prefix or a format and a registered system
// command, that command; with a format, the date followed by the formatted text. With a prefix each line is led by it
// and a blank, so that a header is a comment of its file, also where a command or text has several lines. Null or an
// empty text is no prefix. Status also 7, with nothing written, when there is no memory for the date.
template<class... Arguments>
int OutputVersionHeader(fileIODescriptor* file, const char* prefix, const char* format, const Arguments&... arguments) {
    return memdata::outputVersionHeader(file, prefix, format, memdata::formatArguments(arguments...));
}

#endif

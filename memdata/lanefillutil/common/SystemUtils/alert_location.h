// alert_location.h - the place of an alert as text: the lines of the files and macros that led there, and a
// caret under the token.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_ALERT_LOCATION_H
#define MEMDATA_SYSTEM_UTILS_ALERT_LOCATION_H

#include "platform/BasicTypes.h"

#include <span>
#include <string>

struct parse_stream;
struct token_element;

namespace memdata {

// One level of the texts that were being read when an alert was raised: a file, a macro's body or a text in
// memory.
struct AlertLevel {
    // A map that was read from a file through memory counts as that file: kDISK_FILE.
    enum Kind : u8 { kDISK_FILE, kMEMORY_TEXT, kMACRO };

    Kind kind = kDISK_FILE;
    const char* name = nullptr;          // of the file or macro; not used for kMEMORY_TEXT
    u32 line = 0;                        // line number, from 1
    const char* lineText = nullptr;      // the source line; ends at NUL, 0xFF, line feed or carriage return
    const char* errorPosition = nullptr; // in that line: the token, on outer levels the place of the call
};

// Describes one level of a parse stream.
//   innermost  any context of the stream; the active one counts
//   token      the token that the alert points at; gives line, text and position of level 0
//   depth      0 for the level of the token, 1 for the text that called or included it, and so on outward
//   level      out: valid until the stream is read on; untouched unless the result is true
// False when there is no such level. An upward call: declared here, because alerts are the floor under the
// parse streams, and defined in ParseUtils/alert_levels.cpp.
bool alertLevel(const parse_stream* innermost, const token_element* token, u32 depth, AlertLevel* level);

// The location lines of an alert, innermost level first: "   Line #%ld, File \"%s\".\n" for a file, "   Line
// #%ld, Macro \"%s\".\n" for a macro, none for a text in memory. The first level's are followed by its source
// line and the caret.
std::string locationText(std::span<const AlertLevel> levels);

// Lines of so many characters are shown whole. Of longer ones, which no one reads, a window of so many characters
// around the error position is shown, "..." standing for what is left out at either side.
inline constexpr u64 kLONGEST_WHOLE_LINE = 1000;
inline constexpr u64 kSHOWN_LINE_CHARACTERS = 200;
inline constexpr const char* kCUT_LINE_MARK = "...";

} // namespace memdata

// The location lines for a token of a stream: locationText over all its levels. Empty without a stream or a
// token.
std::string CreateFileLocations(const parse_stream* stream, const token_element* token);

// Appends a source line and the indicator under it.
//   lineStart      the line; copied up to NUL, 0xFF, line feed or carriage return, each tab as eight blanks; a long
//                  one is cut to a window
//   errorPosition  in that line; when it holds the end-of-file mark 0xFF nothing is appended
void CreateErrorLocation(std::string* out, const char* lineStart, const char* errorPosition);

// Appends the indicator alone: a blank for each character ahead of errorPosition, eight for a tab, then "^\n".
// A position behind the line's end is marked at its end.
void CreateErrorIndicator(std::string* out, const char* lineStart, const char* errorPosition);

#endif

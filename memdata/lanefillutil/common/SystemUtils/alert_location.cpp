// alert_location.cpp - words the place of an alert: location lines, source line, caret.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/alert_location.h"

#include "StringUtils/format.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

constexpr char kEND_OF_FILE_MARK = '\xFF';
constexpr std::size_t kTAB_BLANKS = 8;

bool ends_line(char c) {
    return c == '\0' || c == kEND_OF_FILE_MARK || c == '\n' || c == '\r';
}

// Characters of a line that are shown: from first, up to but not including last.
struct LineWindow {
    u64 first;
    u64 last;
};

// Half of the characters stand ahead of the position, more where the line ends soon behind it.
LineWindow shown_part(u64 length, u64 position) {
    if (length <= memdata::kLONGEST_WHOLE_LINE) return {0, length};
    const u64 half = memdata::kSHOWN_LINE_CHARACTERS / 2;
    const u64 first = std::min(position - std::min(position, half), length - memdata::kSHOWN_LINE_CHARACTERS);
    return {first, first + memdata::kSHOWN_LINE_CHARACTERS};
}

} // namespace

void CreateErrorIndicator(std::string* out, const char* lineStart, const char* errorPosition) {
    for (const char* at = lineStart; at < errorPosition && !ends_line(*at); ++at)
        out->append(*at == '\t' ? kTAB_BLANKS : 1, ' ');
    out->append("^\n");
}

void CreateErrorLocation(std::string* out, const char* lineStart, const char* errorPosition) {
    if (lineStart == nullptr || errorPosition == nullptr || *errorPosition == kEND_OF_FILE_MARK) return;
    const char* lineEnd = lineStart;
    while (!ends_line(*lineEnd)) ++lineEnd;
    const auto length = static_cast<u64>(lineEnd - lineStart);
    const auto position = static_cast<u64>(std::clamp(errorPosition, lineStart, lineEnd) - lineStart);
    const LineWindow window = shown_part(length, position);
    const std::string_view cutAhead = window.first == 0 ? "" : memdata::kCUT_LINE_MARK;

    *out += cutAhead;
    for (const char* at = lineStart + window.first; at < lineStart + window.last; ++at) {
        if (*at == '\t')
            out->append(kTAB_BLANKS, ' ');
        else
            out->push_back(*at);
    }
    if (window.last < length) *out += memdata::kCUT_LINE_MARK;
    out->push_back('\n');
    out->append(cutAhead.size(), ' ');
    CreateErrorIndicator(out, lineStart + window.first, errorPosition);
}

std::string memdata::locationText(std::span<const AlertLevel> levels) {
    std::string text;
    for (const AlertLevel& level : levels) {
        if (level.kind == AlertLevel::kDISK_FILE)
            text += formatted("   Line #%ld, File \"%s\".\n", level.line, level.name);
        else if (level.kind == AlertLevel::kMACRO)
            text += formatted("   Line #%ld, Macro \"%s\".\n", level.line, level.name);
        // The caret stands where the user looks first; the levels around it only tell how one got there.
        if (&level == levels.data()) CreateErrorLocation(&text, level.lineText, level.errorPosition);
    }
    return text;
}

std::string CreateFileLocations(const parse_stream* stream, const token_element* token) {
    if (stream == nullptr || token == nullptr) return {};
    std::vector<memdata::AlertLevel> levels;
    memdata::AlertLevel level;
    while (memdata::alertLevel(stream, token, static_cast<u32>(levels.size()), &level)) levels.push_back(level);
    return memdata::locationText(levels);
}

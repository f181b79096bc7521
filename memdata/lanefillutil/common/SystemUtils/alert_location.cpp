// alert_location.cpp - words the place of an alert: location lines, source line, caret.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/alert_location.h"

#include "StringUtils/format.h"

#include <vector>

namespace {

constexpr char kEND_OF_FILE_MARK = '\xFF';
constexpr std::size_t kTAB_BLANKS = 8;

bool ends_line(char c) {
    return c == '\0' || c == kEND_OF_FILE_MARK || c == '\n' || c == '\r';
}

} // namespace

void CreateErrorIndicator(std::string* out, const char* lineStart, const char* errorPosition) {
    for (const char* at = lineStart; at < errorPosition && !ends_line(*at); ++at)
        out->append(*at == '\t' ? kTAB_BLANKS : 1, ' ');
    out->append("^\n");
}

void CreateErrorLocation(std::string* out, const char* lineStart, const char* errorPosition) {
    if (lineStart == nullptr || errorPosition == nullptr || *errorPosition == kEND_OF_FILE_MARK) return;
    for (const char* at = lineStart; !ends_line(*at); ++at) {
        if (*at == '\t')
            out->append(kTAB_BLANKS, ' ');
        else
            out->push_back(*at);
    }
    out->push_back('\n');
    CreateErrorIndicator(out, lineStart, errorPosition);
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

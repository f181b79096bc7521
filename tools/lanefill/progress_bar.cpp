// progress_bar.cpp - see progress_bar.h.
// SPDX-License-Identifier: Apache-2.0
#include "progress_bar.h"

#include <algorithm>
#include <utility>

namespace memdata {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kBETWEEN_CHANGES{100};
constexpr int kMAX_BAR_COLUMNS = 40;
constexpr int kMIN_BAR_COLUMNS = 10;
constexpr int kPERCENT_COLUMNS = 4;            // "100%"
constexpr int kBRACKET_COLUMNS = 3;            // with the blank behind them
constexpr const char* kTAKE_AWAY = "\r\x1B[K"; // to the line's start, and all of it

// Bytes of the UTF-8 character that stands at the start of a text, 0 when none does.
size_t characterBytes(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const size_t bytes = first < 0x80 ? 1 : first >= 0xF0 && first < 0xF5 ? 4 : first >= 0xE0 ? 3 : 2;
    if ((first >= 0x80 && first < 0xC2) || first >= 0xF5 || bytes > text.size()) return 0;
    for (const char next : text.substr(1, bytes - 1))
        if ((static_cast<unsigned char>(next) & 0xC0) != 0x80) return 0;
    return bytes;
}

// Whether a character stands for itself on a terminal; "" is none.
bool isPrintable(std::string_view character) {
    const auto byte = [character](size_t i) { return static_cast<unsigned char>(character[i]); };
    if (character.size() <= 1) return !character.empty() && byte(0) >= ' ' && byte(0) != 0x7F;
    return byte(0) != 0xC2 || byte(1) >= 0xA0; // control signs of eight bits
}

// As much of the text as has room. A character beyond ASCII counts for two columns, as the widest do.
std::string fitted(std::string_view text, int columns) {
    std::string line;
    while (!text.empty()) {
        const size_t bytes = characterBytes(text);
        columns -= bytes > 1 ? 2 : 1;
        if (columns < 0) break;
        line += isPrintable(text.substr(0, bytes)) ? text.substr(0, bytes) : "?";
        text.remove_prefix(std::max<size_t>(bytes, 1));
    }
    return line;
}

} // namespace

std::string barLine(std::string_view stage, int percent, int columns) {
    percent = std::clamp(percent, 0, 100);
    int left =
        columns - 1 - kPERCENT_COLUMNS; // the last column stays free: some terminals go on to the next line there
    if (left < 0) return {};
    std::string line;
    if (const int bar = std::min(kMAX_BAR_COLUMNS, left / 2 - kBRACKET_COLUMNS); bar >= kMIN_BAR_COLUMNS) {
        const auto filled = static_cast<size_t>(percent * bar / 100);
        line = "[" + std::string(filled, '#') + std::string(static_cast<size_t>(bar) - filled, '.') + "] ";
        left -= bar + kBRACKET_COLUMNS;
    }
    const std::string number = std::to_string(percent) + "%";
    line += std::string(kPERCENT_COLUMNS - number.size(), ' ') + number;
    return left > 1 ? line + " " + fitted(stage, left - 1) : line;
}

ProgressBar::ProgressBar(BarTerminal terminal, milliseconds delay)
    : terminal_(std::move(terminal)), next_(terminal_.now() + delay) {}

void ProgressBar::show(std::string_view stage, int percent) {
    const milliseconds now = terminal_.now();
    if (now < next_) return;
    next_ = now + kBETWEEN_CHANGES;
    const int columns = terminal_.columns();
    if (columns <= 0) return;
    const std::string line = barLine(stage, percent, columns);
    if (line == shown_) return;
    terminal_.write(kTAKE_AWAY + line);
    shown_ = line;
}

void ProgressBar::clear() {
    if (shown_.empty()) return;
    shown_.clear();
    terminal_.write(kTAKE_AWAY);
}

} // namespace memdata

// escape.cpp - one character of a text, written plainly or as a backslash escape.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/escape.h"

#include <algorithm>
#include <iterator>

namespace {

struct EscapeLetterType {
    char letter;
    char value;
};
constexpr EscapeLetterType kESCAPE_LETTERS[] = {
    {'a', 7},
    {'b', 8},
    {'f', 12},
    {'n', 10},
    {'r', 13},
    {'t', 9},
    {'v', 11},
};

constexpr unsigned kOCTAL_ESCAPE_DIGITS = 3;
constexpr unsigned kHEX_ESCAPE_DIGITS = 2;
constexpr unsigned kNOT_A_DIGIT = 255;

bool is_line_end(char c) {
    return c == '\n' || c == '\r';
}

unsigned digit_value(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
    return kNOT_A_DIGIT;
}

// Takes up to digitCount digits of the radix, the low eight bits of their value.
char take_digits(const char** cursor, unsigned radix, unsigned digitCount) {
    unsigned value = 0;
    for (; digitCount > 0 && digit_value(**cursor) < radix; --digitCount)
        value = value * radix + digit_value(*(*cursor)++);
    return static_cast<char>(value & 0xFF);
}

// Takes what stands behind a backslash; there is at least one character, and it is no line end.
char take_escape(const char** cursor) {
    if (digit_value(**cursor) < 8) return take_digits(cursor, 8, kOCTAL_ESCAPE_DIGITS);
    const char letter = *(*cursor)++;
    if ((letter == 'x' || letter == 'X') && digit_value(**cursor) < 16)
        return take_digits(cursor, 16, kHEX_ESCAPE_DIGITS);
    for (const EscapeLetterType& row : kESCAPE_LETTERS)
        if (row.letter == letter) return row.value;
    return letter;
}

// One character, as an escape where it has to be.
void append_escaped(std::string* out, char c) {
    const auto* row = std::ranges::find(kESCAPE_LETTERS, c, &EscapeLetterType::value);
    const auto code = static_cast<unsigned char>(c);
    if (row != std::end(kESCAPE_LETTERS)) {
        out->append({'\\', row->letter});
    } else if (c == '"' || c == '\\') {
        out->append({'\\', c});
    } else if (code < 0x20 || code == 0x7F) {
        // Always three digits, so that a digit behind is none of it.
        out->push_back('\\');
        for (const int digit : {code >> 6, code >> 3 & 7, code & 7}) out->push_back(static_cast<char>('0' + digit));
    } else {
        out->push_back(c);
    }
}

} // namespace

std::string memdata::escapedText(std::string_view text) {
    std::string escaped;
    for (const char c : text) append_escaped(&escaped, c);
    return escaped;
}

void convert_escaped_char(const char** cursor, bool* hadEscape, unsigned* count, char* out) {
    unsigned taken = 0;
    char value = '\0';
    if (const char first = **cursor; first != '\0') {
        ++*cursor;
        taken = 1;
        value = first;
        if (first == '\\' && **cursor != '\0') {
            if (hadEscape != nullptr) *hadEscape = true;
            if (is_line_end(**cursor)) {
                while (is_line_end(**cursor)) ++*cursor;
                taken = 0;
                value = '\0';
            } else {
                value = take_escape(cursor);
            }
        }
    }
    if (count != nullptr) *count = taken;
    if (out != nullptr) *out = value;
}

// characters.h - classes of characters, the same in every locale.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_CHARACTERS_H
#define MEMDATA_PARSE_UTILS_CHARACTERS_H

#include "platform/BasicTypes.h"

#include <array>

namespace memdata {

enum CharacterClass : u8 {
    kBLANK_CHARACTER = 1, // space, tab, form feed; no others
    kDIGIT_CHARACTER = 2,
    kLETTER_CHARACTER = 4,  // ASCII letters
    kWORD_START = 8,        // letters, digits, "_"
    kWORD_PART = 16,        // the same, "-" and "."
    kBRACKET_PART = 32,     // letters, digits, "-", ".", "[", "]", "_"
    kSYMBOL_CHARACTER = 64, // control characters, punctuation, 0xFF
    kLINE_END_CHARACTER = 128,
};

inline constexpr char kEND_OF_FILE_MARK = '\xFF';

inline constexpr std::array<u8, 256> kCHARACTER_CLASSES = [] {
    std::array<u8, 256> classes{};
    for (u32 c = 0; c < 128; ++c) {
        const bool digit = c >= '0' && c <= '9';
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        const bool blank = c == ' ' || c == '\t' || c == '\f';
        u8& mask = classes[c];
        if (blank) mask |= kBLANK_CHARACTER;
        if (digit) mask |= kDIGIT_CHARACTER;
        if (letter) mask |= kLETTER_CHARACTER;
        if (letter || digit || c == '_') mask |= kWORD_START | kWORD_PART | kBRACKET_PART;
        if (c == '-' || c == '.') mask |= kWORD_PART | kBRACKET_PART;
        if (c == '[' || c == ']') mask |= kBRACKET_PART;
        if (!letter && !digit && c != ' ') mask |= kSYMBOL_CHARACTER;
        if (c == '\n' || c == '\r') mask |= kLINE_END_CHARACTER;
    }
    classes[0xFF] = kSYMBOL_CHARACTER;
    return classes;
}();

inline bool isOf(char c, u8 classes) {
    return (kCHARACTER_CLASSES[static_cast<u8>(c)] & classes) != 0;
}

constexpr char foldedCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Characters of the line end at a place that holds one: 2 for CR LF and LF CR, else 1.
inline u32 lineEndLength(const char* at, const char* end) {
    return at + 1 < end && isOf(at[1], kLINE_END_CHARACTER) && at[1] != at[0] ? 2 : 1;
}

} // namespace memdata

#endif

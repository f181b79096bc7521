// entities.cpp - see entities.h.
// SPDX-License-Identifier: Apache-2.0
#include "XMLUtils/entities.h"

#include "platform/BasicTypes.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

struct EntityType {
    std::string_view name; // between "&" and ";"
    char character;
};
constexpr EntityType kENTITIES[] = {
    {"lt", '<'},
    {"gt", '>'},
    {"amp", '&'},
    {"quot", '"'},
    {"apos", '\''},
};
constexpr size_t kLONGEST_REFERENCE = 12; // characters between "&" and ";" that are looked at
constexpr u32 kLAST_CHARACTER = 0x10FFFF;

// The character's bytes; the count of them.
size_t put_utf8(u32 code, char* to) {
    const auto tail = [code](u32 shift) { return static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) {
        to[0] = static_cast<char>(code);
        return 1;
    }
    if (code < 0x800) {
        to[0] = static_cast<char>(0xC0 | (code >> 6));
        to[1] = tail(0);
        return 2;
    }
    if (code < 0x10000) {
        to[0] = static_cast<char>(0xE0 | (code >> 12));
        to[1] = tail(6);
        to[2] = tail(0);
        return 3;
    }
    to[0] = static_cast<char>(0xF0 | (code >> 18));
    to[1] = tail(12);
    to[2] = tail(6);
    to[3] = tail(0);
    return 4;
}

// The number of "#65" or "#x41"; 0 for anything else.
u32 character_number(std::string_view name) {
    if (name.size() < 2 || name[0] != '#') return 0;
    const bool isHex = name[1] == 'x';
    const std::string_view digits = name.substr(isHex ? 2 : 1);
    u32 code = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code, isHex ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size() || code > kLAST_CHARACTER) return 0;
    return code;
}

// What a name stands for, written to where it stood, which it is never longer than; the count of bytes, 0 for nothing.
size_t put_entity(std::string_view name, char* to) {
    for (const EntityType& entity : kENTITIES) {
        if (entity.name != name) continue;
        *to = entity.character;
        return 1;
    }
    const u32 code = character_number(name);
    return code == 0 ? 0 : put_utf8(code, to);
}

} // namespace

void memdata::appendXmlValue(std::string* to, std::string_view value) {
    for (const char c : value) {
        if (c == '"')
            *to += "&quot;";
        else if (c == '<')
            *to += "&lt;";
        else if (c == '&')
            *to += "&amp;";
        else if (static_cast<u8>(c) < ' ')
            *to += "&#" + std::to_string(c) + ";";
        else
            *to += c;
    }
}

size_t memdata::replaceXmlEntities(char* text, size_t length) {
    const char* const end = text + length;
    char* to = static_cast<char*>(std::memchr(text, '&', length));
    if (to == nullptr) return length;
    for (const char* from = to; from < end;) {
        if (*from == '&') {
            const char* const limit = from + std::min(static_cast<size_t>(end - from), kLONGEST_REFERENCE + 2);
            const char* const close = std::find(from, limit, ';');
            const size_t nameLength = static_cast<size_t>(close - from) - 1;
            char character[4];
            const size_t used = close == limit ? 0 : put_entity({from + 1, nameLength}, character);
            if (used != 0) {
                to = std::copy_n(character, used, to);
                from = close + 1;
                continue;
            }
        }
        *to++ = *from++;
    }
    *to = '\0';
    return static_cast<size_t>(to - text);
}

// strings.cpp - managed strings: made, copied, joined, cut and released.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/internal.h"

#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"

#include <climits>
#include <cstring>

namespace {

// What stands in front of the characters.
struct ManagedStringType {
    u32 flags;  // bit 0: a managed string
    u32 unused; // 0
    void* attribute;
};
constexpr u32 kMANAGED_STRING = 1;
constexpr unsigned long kSPARE_BYTES = 8; // behind the characters, all zero: the first ends the text
static_assert(sizeof(ManagedStringType) + kSPARE_BYTES == 24);

ManagedStringType* header_of(char* s) {
    return reinterpret_cast<ManagedStringType*>(s) - 1;
}

std::string_view view_of(const char* s) {
    return s == nullptr ? std::string_view() : std::string_view(s);
}

// The first characters of a text, which need not be terminated when it has that many.
std::string_view first_of(const char* s, unsigned long n) {
    return s == nullptr ? std::string_view() : std::string_view(s, strnlen(s, n));
}

char* new_string(const char* file, unsigned line, std::string_view a, std::string_view b = {}) {
    char* s = _StrNew(file, line, "a string", a.size() + b.size());
    if (s == nullptr) return nullptr;
    if (!a.empty()) std::memcpy(s, a.data(), a.size());
    if (!b.empty()) std::memcpy(s + a.size(), b.data(), b.size());
    return s;
}

} // namespace

char* _StrNew(const char* file, unsigned line, const char* description, unsigned long length) {
    constexpr unsigned long kEXTRA_BYTES = sizeof(ManagedStringType) + kSPARE_BYTES;
    // A length that leaves no room for the header asks for more than there can be: the allocator reports it.
    const unsigned long size = length > ULONG_MAX - kEXTRA_BYTES ? ULONG_MAX : length + kEXTRA_BYTES;
    auto* header = static_cast<ManagedStringType*>(_getMemory(file, line, description, size));
    if (header == nullptr) return nullptr;
    header->flags = kMANAGED_STRING;
    return reinterpret_cast<char*>(header + 1);
}

int _StrDelete(const char* file, unsigned line, char* s) {
    if (s == nullptr) return 0;
    _releaseMemory(file, line, header_of(s));
    return 1;
}

char* memdata::newString(std::string_view text) {
    return new_string(__FILE__, __LINE__, text);
}

char* memdata::reportTextOutOfMemory(size_t byteCount) {
    PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "a formatted text", byteCount, getCurrentMemoryUsage());
    return nullptr;
}

char* _StrDup(const char* file, unsigned line, const char* s) {
    return s == nullptr ? nullptr : new_string(file, line, s);
}

char* StrNDup(const char* s, unsigned long n) {
    return s == nullptr ? nullptr : memdata::newString(first_of(s, n));
}

char* StrSubDup(const char* first, const char* last) {
    if (first == nullptr || last == nullptr) return nullptr;
    if (last < first) return memdata::newString({});
    return memdata::newString(std::string_view(first, static_cast<size_t>(last - first) + 1));
}

char* StrCat(const char* a, const char* b) {
    return new_string(__FILE__, __LINE__, view_of(a), view_of(b));
}

char* StrDupCat(const char* a, const char* b) {
    return StrCat(a, b);
}

char* StrNCat(const char* a, const char* b, unsigned long n) {
    return new_string(__FILE__, __LINE__, view_of(a), first_of(b, n));
}

// The operands that a function releases are held by owners, so that they go on every way out, also when the
// result could not be made; they go after the result was built, so that one may point into the other.

char* StrNewCat(char* a, char* b) {
    const memdata::OwnedString first(a);
    const memdata::OwnedString second(a == b ? nullptr : b);
    return StrCat(a, b);
}

char* StrPreCat(const char* a, char* b) {
    const memdata::OwnedString released(b);
    return StrCat(a, b);
}

char* StrPreNCat(const char* a, char* b, unsigned long n) {
    const memdata::OwnedString released(b);
    return StrNCat(a, b, n);
}

char* _StrPostCat(const char* file, unsigned line, char* a, const char* b) {
    const memdata::OwnedString released(a);
    return new_string(file, line, view_of(a), view_of(b));
}

char* StrPostNCat(char* a, const char* b, unsigned long n) {
    const memdata::OwnedString released(a);
    return StrNCat(a, b, n);
}

void StrSetAttribute(char* s, void* value) {
    if (s != nullptr) header_of(s)->attribute = value;
}

void* StrGetAttribute(const char* s) {
    return s == nullptr ? nullptr : header_of(const_cast<char*>(s))->attribute;
}

char* StrTok(char** cursor, const char* separators, char* found) {
    char separator = '\0';
    char* token = nullptr;
    if (cursor != nullptr && *cursor != nullptr && **cursor != '\0') {
        if (separators == nullptr) separators = "";
        char* end = *cursor + std::strcspn(*cursor, separators);
        token = memdata::newString(std::string_view(*cursor, static_cast<size_t>(end - *cursor)));
        if (token != nullptr) {
            separator = *end;
            *cursor = end + std::strspn(end, separators);
        }
    }
    if (found != nullptr) *found = separator;
    return token;
}

char* StrCharReplace(char* s, char from, char to) {
    if (s == nullptr) return nullptr;
    const size_t length = std::strlen(s); // taken before a NUL may be written
    for (size_t i = 0; i < length; ++i)
        if (s[i] == from) s[i] = to;
    return s;
}

char* strrstr(const char* haystack, const char* needle) {
    if (haystack == nullptr || needle == nullptr) return nullptr;
    const size_t needleLength = std::strlen(needle);
    // An empty needle has no length to step by; its last occurrence is the end of the text.
    if (needleLength == 0) return const_cast<char*>(haystack + std::strlen(haystack));
    const char* last = nullptr;
    // Steps over what it found, on purpose: "aaa" holds "aa" once, at its beginning.
    for (const char* at = haystack; (at = std::strstr(at, needle)) != nullptr; at += needleLength) last = at;
    return const_cast<char*>(last);
}

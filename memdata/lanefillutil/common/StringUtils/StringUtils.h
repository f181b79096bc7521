// StringUtils.h - managed strings, string lists and the formatter.
//
// A managed string is a tracked block: u32 flags (bit 0 set), four unused bytes, an attribute word, then the
// characters; the pointer handed out points at the characters. Functions whose names hold Pre, Post or New
// release the operands so named, which must be managed strings.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_STRING_UTILS_H
#define MEMDATA_STRING_UTILS_H

#include "StringUtils/format.h"

// A null-terminated array of managed strings. The bound of the type is nominal: lists have any length.
using StrList = char* (*)[256];

char* _StrNew(const char* file, unsigned line, const char* description, unsigned long length);
int _StrDelete(const char* file, unsigned line, char* s);
char* _StrDup(const char* file, unsigned line, const char* s);
char* StrNDup(const char* s, unsigned long n);
char* StrSubDup(const char* first, const char* last);
char* StrCat(const char* a, const char* b);
char* StrDupCat(const char* a, const char* b);
char* StrNCat(const char* a, const char* b, unsigned long n);
char* StrNewCat(char* a, char* b);
char* StrPreCat(const char* a, char* b);
char* StrPreNCat(const char* a, char* b, unsigned long n);
char* _StrPostCat(const char* file, unsigned line, char* a, const char* b);
char* StrPostNCat(char* a, const char* b, unsigned long n);
void StrSetAttribute(char* s, void* value);
void* StrGetAttribute(const char* s);
char* StrTok(char** cursor, const char* separators, char* found);
char* StrCharReplace(char* s, char from, char to);
char* strrstr(const char* haystack, const char* needle);
char* NumToStr(i64 value, int radix, unsigned* digits);
char* FloatToStr(long double value, int precision, unsigned* digits);
char* digits_to_string(u64 value, unsigned depth, unsigned radix, unsigned* digits);
char* StrPrintf(char* s, const char* format, ...);
char* vStrPrintf(char* s, const char* format, va_list arguments);

StrList StrListNew(unsigned long n);
void StrListSet(StrList list, unsigned long index, char* s);
char* StrListGet(StrList list, unsigned long index);
unsigned long StrListCount(StrList list);
char* StrListFind(StrList list, const char* s);
unsigned long StrListLookup(StrList list, const char* s);
int StrListExtend(StrList* list, char* s);
int StrListDelete(StrList list);

#define StrNew(description, length) _StrNew(__FILE__, __LINE__, description, length)
#define StrDelete(s)                _StrDelete(__FILE__, __LINE__, s)
#define StrDup(s)                   _StrDup(__FILE__, __LINE__, s)
#define StrPostCat(a, b)            _StrPostCat(__FILE__, __LINE__, a, b)

namespace memdata {

// Owns a managed string; null is allowed.
class OwnedString {
public:
    explicit OwnedString(char* s = nullptr) : text_(s) {}
    OwnedString(OwnedString&& other) noexcept : text_(other.release()) {}
    OwnedString& operator=(OwnedString&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~OwnedString() { reset(); }

    char* get() const { return text_; }
    explicit operator bool() const { return text_ != nullptr; }
    friend bool operator==(const OwnedString& owner, std::nullptr_t) { return owner.text_ == nullptr; }
    char** out() {
        reset();
        return &text_;
    }
    char* release() {
        char* s = text_;
        text_ = nullptr;
        return s;
    }
    void reset(char* s = nullptr) {
        char* old = text_;
        text_ = s;
        StrDelete(old);
    }

private:
    char* text_;
};

// A managed string of a view's characters; null when memory is exhausted.
char* newString(std::string_view text);

// Appends formatted text to s, which is released; s may be null. The typed form of StrPrintf.
char* appendFormatted(char* s, const char* format, std::span<const FormatArgument> arguments);
template<class... Arguments>
char* appendFormat(char* s, const char* format, const Arguments&... arguments) {
    return appendFormatted(s, format, formatArguments(arguments...));
}

} // namespace memdata

#endif

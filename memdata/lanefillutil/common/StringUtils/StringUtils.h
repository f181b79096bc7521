// StringUtils.h - managed strings, string lists and the formatter.
//
// A managed string is a tracked block: u32 flags (bit 0 set), four unused bytes, an attribute word, then the
// characters; the pointer handed out points at the characters. Functions whose names hold Pre, Post or New
// release the operands so named, which must be managed strings.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_STRING_UTILS_H
#define MEMDATA_STRING_UTILS_H

#include "StringUtils/format.h"

// Unless a comment says otherwise: texts are terminated; a null text reads as an empty one; a result is a new managed
// string that the caller releases, with a null attribute, and is null only when memory is exhausted, after the fatal
// alert. Operands that a function releases are released then too.

// An empty string with room for length characters: a block of length + 24 bytes, all zero behind its header.
char* _StrNew(const char* file, unsigned line, const char* description, unsigned long length);
// Releases s, which must be managed or null: 1, or 0 for null.
int _StrDelete(const char* file, unsigned line, char* s);

// Copies; null gives null. StrNDup takes up to n characters of s, StrSubDup the characters from first to last,
// last included (empty when last stands before first).
char* _StrDup(const char* file, unsigned line, const char* s);
char* StrNDup(const char* s, unsigned long n);
char* StrSubDup(const char* first, const char* last);

// a + b, with N: a + up to n characters of b.
char* StrCat(const char* a, const char* b);
char* StrDupCat(const char* a, const char* b);
char* StrNCat(const char* a, const char* b, unsigned long n);
char* StrNewCat(char* a, char* b);                                          // releases a and b
char* StrPreCat(const char* a, char* b);                                    // releases b
char* StrPreNCat(const char* a, char* b, unsigned long n);                  // releases b
char* _StrPostCat(const char* file, unsigned line, char* a, const char* b); // releases a
char* StrPostNCat(char* a, const char* b, unsigned long n);                 // releases a

// The hidden word of a managed string; null is accepted and reads as null. It is not copied with the text.
void StrSetAttribute(char* s, void* value);
void* StrGetAttribute(const char* s);

// The text from the cursor to the first separator, empty when it begins with one; the cursor moves behind all
// separators that follow, and *found (may be null) gets the first of them, NUL at the end of the text. Null when the
// text at the cursor is empty, and when memory is exhausted: the cursor stays and *found is NUL.
char* StrTok(char** cursor, const char* separators, char* found);
// Replaces in place; returns s.
char* StrCharReplace(char* s, char from, char to);
// The last occurrence of needle, or null. The search steps by the needle's length: overlaps are not seen. An empty
// needle occurs last at the end of the haystack; a null operand has no occurrence.
char* strrstr(const char* haystack, const char* needle);

// A number in the radix 2 to 36; any other counts as 10. A negative radix asks for a prefix: -2 "0b", -8 "0o",
// -16 "0x", others none. Radix 10 and -10 print negative values with "-", all others the unsigned 64-bit pattern.
// *digits (may be null): digits, and the minus sign; a prefix is not counted.
char* NumToStr(i64 value, int radix, unsigned* digits);
// All digits of the integer part, a point and precision fraction digits, cut and not rounded; no point without
// fraction digits (precision 0 or less); "-" ahead of a negative value; "inf" and "nan". *digits (may be null): the
// characters written. Precision counts up to memdata::kMAX_FIELD_CHARACTERS.
char* FloatToStr(long double value, int precision, unsigned* digits);
// The digits of an unsigned value, radix as in NumToStr without a sign, with room for depth more characters.
// *digits (may be null): their count.
char* digits_to_string(u64 value, unsigned depth, unsigned radix, unsigned* digits);

// s + the formatted text (format.h); releases s. d, c, b, o and x take an int (a long will do) or with two length
// letters a long long; f takes a double, with L or two length letters a long double; s takes a char pointer; '*'
// takes an int. As with any C variadic, the arguments must be those that the format names: code of the engine
// prefers memdata::appendFormat.
char* StrPrintf(char* s, const char* format, ...);
char* vStrPrintf(char* s, const char* format, va_list arguments);

// A null-terminated array of managed strings, made by StrListNew or StrListExtend. The bound of the type is nominal:
// lists have any length. A null list reads as an empty one. A list owns its strings.
using StrList = char* (*)[256];

// A list of n null entries and the terminator. Throws HEXInternalException when memory is exhausted.
StrList StrListNew(unsigned long n);
// Stores s, which the list owns then; an earlier entry is not released. An index behind the room that the list was
// made with is an internal error: it is reported, nothing changes, and s stays the caller's.
void StrListSet(StrList list, unsigned long index, char* s);
char* StrListGet(StrList list, unsigned long index);      // null behind the end
unsigned long StrListCount(StrList list);                 // entries ahead of the first null one
char* StrListFind(StrList list, const char* s);           // the entry equal to s, or null
unsigned long StrListLookup(StrList list, const char* s); // its index, or the count
// Appends s to a list that may be null, by making a list one longer: quadratic by design, lists are short. s is the
// list's from the call on. Status: 0; 3 a null argument, nothing appended. Throws as StrListNew does: the list is as
// it was, s is released.
int StrListExtend(StrList* list, char* s);
// Releases every string and the array; 0.
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

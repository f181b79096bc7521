// annotated_text.h - the text of annotated maps on its way to a file, in large pieces and without formats.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_ANNOTATED_TEXT_H
#define MEMDATA_BMM_UTILS_ANNOTATED_TEXT_H

#include "platform/BasicTypes.h"

#include <string>
#include <string_view>

struct fileIODescriptor;

namespace memdata {

// The number in hexadecimal, upper case, 16 digits: "0X0000000000001000".
std::string addressText(u64 value);

// A file name as a map says it: in quotes where it would not read back as one name.
std::string fileNameText(std::string_view name);

class AnnotatedText {
public:
    explicit AnnotatedText(fileIODescriptor* file) : file_(file) {}
    ~AnnotatedText() { flush(); }
    AnnotatedText& operator=(AnnotatedText&&) = delete; // neither copied nor moved

    AnnotatedText& operator<<(std::string_view text) {
        text_ += text;
        return *this;
    }
    AnnotatedText& operator<<(const char* text) { return *this << std::string_view(text == nullptr ? "" : text); }
    AnnotatedText& operator<<(u64 number); // decimal
    AnnotatedText& address(u64 value);     // as addressText
    AnnotatedText& line(unsigned indent);  // begins a line behind that many blanks

    // Writes what has gathered. Status: the first failure of the file so far.
    int flush();

private:
    fileIODescriptor* file_;
    std::string text_;
    int status_ = 0;
};

} // namespace memdata

#endif

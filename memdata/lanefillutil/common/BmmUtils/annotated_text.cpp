// annotated_text.cpp - see annotated_text.h.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_text.h"

#include "FileUtils/descriptor.h"

#include <array>
#include <charconv>

namespace {

constexpr size_t kPIECE_BYTES = 32u << 10;
constexpr size_t kADDRESS_CHARACTERS = 18;

using AddressCharacters = std::array<char, kADDRESS_CHARACTERS>;

AddressCharacters address_characters(u64 value) {
    AddressCharacters text;
    for (size_t i = kADDRESS_CHARACTERS; i-- > 2; value >>= 4) text[i] = "0123456789ABCDEF"[value & 15];
    text[0] = '0';
    text[1] = 'X';
    return text;
}

} // namespace

std::string memdata::addressText(u64 value) {
    const AddressCharacters text = address_characters(value);
    return std::string(text.data(), text.size());
}

std::string memdata::fileNameText(std::string_view name) {
    constexpr std::string_view kPLAIN = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./:~";
    const bool isPlain = name.find_first_not_of(kPLAIN) == name.npos && name.find("//") == name.npos;
    return isPlain ? std::string(name) : "\"" + std::string(name) + "\"";
}

memdata::AnnotatedText& memdata::AnnotatedText::operator<<(u64 number) {
    std::array<char, 20> digits; // of 2^64 - 1
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    text_.append(digits.data(), result.ptr);
    return *this;
}

memdata::AnnotatedText& memdata::AnnotatedText::address(u64 value) {
    const AddressCharacters text = address_characters(value);
    text_.append(text.data(), text.size());
    return *this;
}

memdata::AnnotatedText& memdata::AnnotatedText::line(unsigned indent) {
    if (text_.size() >= kPIECE_BYTES) flush();
    text_.append(indent, ' ');
    return *this;
}

int memdata::AnnotatedText::flush() {
    if (status_ == 0 && !text_.empty()) status_ = outputLine(file_, text_.c_str());
    text_.clear();
    return status_;
}

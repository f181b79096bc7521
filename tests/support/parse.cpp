// parse.cpp - reads texts in tests and words the tokens that come out.
// SPDX-License-Identifier: Apache-2.0
#include "support/parse.h"

#include <cstring>

namespace memdata::testing {

namespace {

struct KindRow {
    const token_type* type;
    const char* name;
};

constexpr KindRow kKINDS[] = {
#define TOKEN_ROOT(name)                {&name, #name},
#define TOKEN_NODE(level, name, parent) {&name, #name},
#include "ParseUtils/token_types.def"
#undef TOKEN_ROOT
#undef TOKEN_NODE
    {&kWHITESPACE_TOKEN, "kWHITESPACE_TOKEN"},
    {&kIDENTIFIER_TOKEN, "kIDENTIFIER_TOKEN"},
    {&kQUOTED_STRING_TOKEN, "kQUOTED_STRING_TOKEN"},
    {&kQUOTED_TEXT_TOKEN, "kQUOTED_TEXT_TOKEN"},
    {&kLITERAL_CHARACTER_TOKEN, "kLITERAL_CHARACTER_TOKEN"},
    {&kTEXT_STRING_TOKEN, "kTEXT_STRING_TOKEN"},
    {&kCOMMENT_BLOCK_TOKEN, "kCOMMENT_BLOCK_TOKEN"},
};

std::string shown(const token_element& token) {
    if (token.text == nullptr) return "(null)";
    std::string text;
    for (char c : std::string_view(token.text, token.length)) {
        if (c == '\n')
            text += "\\n";
        else if (c == '\0')
            text += "\\0";
        else if (c == '\xFF')
            text += "\\xFF";
        else
            text += c;
    }
    return text;
}

} // namespace

std::string kindName(const token_type* type) {
    if (type == nullptr) return "none";
    for (const KindRow& row : kKINDS)
        if (row.type == type) return row.name + 1;
    return "other";
}

std::string tokenText(const token_element& token) {
    return kindName(token.type) + "(" + shown(token) + ")";
}

TextReader::TextReader(std::string_view text, token_set* keywords, const char* name) : token_(get_token_element()) {
    const std::string_view own = copy(text);
    openStatus_ = open_parse_MemoryFile(name, own.data(), own.size(), keywords, nullptr, nullptr, &stream_);
    if (stream_ != nullptr) showAsFile(stream_);
}

std::string_view TextReader::copy(std::string_view text) {
    text_ = new char[text.size()];
    if (!text.empty()) std::memcpy(text_, text.data(), text.size());
    return {text_, text.size()};
}

TextReader& TextReader::modes(u32 mask, bool on) {
    set_parse_modes(stream_, nullptr, mask, on);
    return *this;
}

TextReader& TextReader::base(u32 numberBase) {
    set_stream_number_base(stream_, numberBase);
    return *this;
}

std::string TextReader::next() {
    const int status = get_next_token(stream_, token_.get());
    return status == 0 ? tokenText(*token_) : "status " + std::to_string(status);
}

std::string TextReader::all() {
    std::string text;
    for (;;) {
        const int status = get_next_token(stream_, token_.get());
        if (status == 0 && token_->type == &kEND_OF_FILE) return text;
        if (!text.empty()) text += ' ';
        if (status != 0) return text + "status " + std::to_string(status);
        text += tokenText(*token_);
    }
}

int TextReader::close() {
    const int status = close_parse_stream(&stream_);
    delete[] text_;
    text_ = nullptr;
    return status;
}

} // namespace memdata::testing

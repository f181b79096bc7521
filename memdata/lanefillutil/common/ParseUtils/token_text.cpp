// token_text.cpp - copies a piece of a text by its tokens: bodies of macros, arguments, messages.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"

#include <string>
#include <string_view>

using namespace memdata;

namespace {

// 143, and the layout of macros inside. Comments are no part of what is copied.
constexpr u32 kCOPY_MODES = kLINE_MODES | kMODE_PLAIN_QUOTES | kMODE_RAW_BACKSLASH | kMODE_WHITESPACE;

struct CopyType {
    std::string text;
    size_t usedLength = 0; // up to the last token that is no layout
    u32 depth = 0;         // of brackets
};

void count_brackets(const token_type* type, const token_type* const* brackets, u32* depth) {
    if (brackets == nullptr) return;
    if (type == brackets[0]) ++*depth;
    if (type == brackets[1] && *depth > 0) --*depth;
}

void append_token(CopyType* copy, const token_element* token, bool isInnerLineEnd) {
    const bool isLayout = token->type == &kWHITESPACE_TOKEN || token->type == &kEND_OF_LINE;
    const bool isBlank = token->type == &kWHITESPACE_TOKEN || isInnerLineEnd;
    if (isBlank && copy->text.empty()) return;
    if (isInnerLineEnd)
        copy->text += ' ';
    else
        copy->text.append(token->text, token->length);
    if (!isLayout) copy->usedLength = copy->text.size();
}

} // namespace

int strdup_to_token(parse_stream* stream, token_element* token, const token_type* const* brackets,
    const token_type* const* terminators, u32* length, char** text) {
    const parse_stream* context = activeContext(stream);
    const DirectiveModes copying(stream, kCOPY_MODES, kMODE_COMMENTS);
    CopyType copy;
    for (;;) {
        if (int status = internal_get_next_token(stream, token); status != 0) return status;
        if (token->type == &kEND_OF_FILE) break;
        // The lines of a macro that is expanded meanwhile are not those of the text.
        const bool isInnerLineEnd = token->type == &kEND_OF_LINE && activeContext(stream) != context;
        if (copy.depth == 0 && !isInnerLineEnd && One_Of_Tokens(token->type, terminators)) break;
        count_brackets(token->type, brackets, &copy.depth);
        append_token(&copy, token, isInnerLineEnd);
    }
    *length = static_cast<u32>(copy.usedLength);
    *text = newString(std::string_view(copy.text).substr(0, copy.usedLength));
    return *text == nullptr ? 7 : 0;
}

// trace.cpp - shows what the preprocessor reads.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/FileUtils.h"
#include "ParseUtils/characters.h"
#include "ParseUtils/directives.h"

#include <string>

using namespace memdata;

namespace {

// The line that a token stands in, up to its end; empty when its text is closed.
std::string source_line(const parse_stream* stream, const token_element* token) {
    if (token->lineStart == nullptr || token->textId == 0) return {};
    const parse_stream* context = activeContext(stream);
    while (context != nullptr && context->textId != token->textId) context = context->parent;
    if (context == nullptr) return {};
    const char* end = token->lineStart;
    while (end < context->textEnd && !isOf(*end, kLINE_END_CHARACTER)) ++end;
    return {token->lineStart, end};
}

std::string traced_macro(const MacroElementType* macro) {
    std::string text;
    for (u32 i = 0; i < macro->parameterCount; ++i)
        text += formatted(i == 0 ? " %s" : ", %s", StrListGet(macro->parameters, i));
    return text + formatted(" )' %.*s\n", static_cast<int>(macro->bodyLength), macro->body);
}

} // namespace

void output_preprocess_trace(
    parse_stream* stream, const token_element* token, const char* title, const MacroElementType* macro) {
    std::string text = formatted(
        "\nTRACE: %s, file \"%s\", line %ld ", title, get_stream_file_name(stream), get_stream_line_number(stream));
    if (macro != nullptr)
        text += formatted("'%s(", token->text) + traced_macro(macro);
    else if (isOfClass(token->type, kPREPROCESS_TOKEN))
        text += formatted("\"%s\"\n", source_line(stream, token));
    else
        text += formatted("'%s' \"%s\"\n", token->text, source_line(stream, token));
    PutNextLine(&StandardOut, "%s", text);
}

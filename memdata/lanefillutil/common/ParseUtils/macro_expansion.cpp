// macro_expansion.cpp - macros become streams of their text; words of bodies are stringized and pasted.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/characters.h"
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"
#include "ParseUtils/limits.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/scanner_parts.h"
#include "SystemUtils/alerts.h"

#include <string>
#include <utility>

using namespace memdata;

namespace {

constexpr u32 kSCOPES_OF_A_TOKEN = 4;     // looked through in the time of reading one
constexpr u32 kLONGEST_PLAIN_NUMBER = 32; // longer ones are rare

bool copies_layout(const parse_stream* context) {
    constexpr u32 kCOPYING = kMODE_MACRO_LAYOUT | kMODE_WHITESPACE;
    return (context->parseModes & kCOPYING) == kCOPYING;
}

long end_macro_stream(parse_stream* context) {
    auto* macro = static_cast<MacroElementType*>(context->userData);
    macro->inExpansion = false;
    StrDelete(std::exchange(macro->quotedBody, nullptr));
    macro->quotedLength = 0;
    if (macro->kind != kSIMPLE_MACRO) pop_symbol_scope(&context->root->macroSymbols);
    if (macro->deleteWhenPopped) delete_macro_element(macro);
    return 0;
}

int quote_body(MacroElementType* macro) {
    const std::string quoted = '"' + std::string(macro->body, macro->bodyLength) + '"';
    macro->quotedBody = newString(quoted);
    macro->quotedLength = static_cast<u32>(quoted.size());
    return macro->quotedBody == nullptr ? 7 : 0;
}

// How the text of a macro is read: without its blanks and line ends, unless it is copied. A function's directives work
// wherever it is called.
void set_macro_modes(parse_stream* context, const MacroElementType* macro, bool quoted) {
    u32 off = kMODE_NO_AUTO_POP;
    if (!copies_layout(context)) off |= kMODE_WHITESPACE | kMODE_MACRO_LAYOUT;
    if (macro->kind == kFUNCTION_MACRO) off |= kMODE_NO_DIRECTIVES;
    context->parseModes &= ~off;
    if (quoted) context->parseModes |= kMODE_NO_MACROS; // what is in quotes stays as it is
}

int push_body(const char* name, parse_stream* stream, MacroElementType* macro, bool quoted) {
    if (quoted) {
        if (int status = quote_body(macro); status != 0) return status;
    }
    const u32 state = kCONTEXT_MACRO_BODY | (macro->kind == kFUNCTION_MACRO ? kCONTEXT_FUNCTION_BODY : 0);
    const char* text = quoted ? macro->quotedBody : macro->body;
    const u32 length = quoted ? macro->quotedLength : macro->bodyLength;
    parse_stream* context = nullptr;
    const int status =
        push_parse_MemoryFile_stream(name, text, length, stream, state, macro, end_macro_stream, &context);
    if (status != 0) return status;
    macro->inExpansion = true;
    set_macro_modes(context, macro, quoted);
    return 0;
}

// A simple macro that is a number, as most arguments and variables are, takes the token's place without a stream of its
// own: what is read is the same. Its text counts like any that is pushed.
bool becomes_number(parse_stream* stream, token_element* token, const MacroElementType* macro, int* status) {
    if (macro->kind != kSIMPLE_MACRO || macro->bodyLength == 0 || macro->bodyLength > kLONGEST_PLAIN_NUMBER)
        return false;
    if (macro->bodyLength > kMAX_PUSHED_BYTES - stream->root->pushedBytes ||
        stream->root->repeatedTokens > kMAX_REPEATED_TOKENS)
        return false; // refused when pushed
    if (test_parse_modes(stream, kMODE_TRACE_TOKENS, true)) return false;
    const char* end = macro->body + macro->bodyLength;
    u32 radix = 0;
    bool isFloat = false;
    long double value = 0;
    const u32 used = scanNumber(macro->body, end, get_stream_number_base(stream), true, &radix, &isFloat, &value);
    if (used != macro->bodyLength) return false;
    stream->root->pushedBytes += used;
    token->numberBase = radix;
    *status = set_token_element(token, macro->body, used, false, isFloat ? &kFLOAT_NUMBER : &kINTEGER_NUMBER, value);
    return true;
}

bool expand_name(parse_stream* stream, token_element* token, bool quoted, int* status) {
    // A name is looked for in the scopes of all macros around it.
    stream->root->repeatedTokens += activeContext(stream)->expansionDepth / kSCOPES_OF_A_TOKEN;
    const symbol_entry* entry = lookup_context_symbol(token->text, false, stream->root->macroSymbols);
    if (entry == nullptr) return false;
    auto* macro = static_cast<MacroElementType*>(entry->value);
    if (test_parse_modes(stream, kMODE_TRACE_MACROS, true)) output_preprocess_trace(stream, token, "Macro", macro);
    if (!quoted && becomes_number(stream, token, macro, status)) return false;
    bool pushed = false;
    *status = push_macro_stream(entry->name, stream, token, macro, quoted, false, &pushed);
    return pushed;
}

// Whether a text is that of a macro, or was made of one.
bool is_macro_text(const parse_stream* context) {
    while ((context->contextState & (kCONTEXT_MACRO_BODY | kCONTEXT_RESCAN)) == kCONTEXT_RESCAN &&
           context->parent != nullptr)
        context = context->parent;
    return (context->contextState & kCONTEXT_MACRO_BODY) != 0;
}

const char* behind_blanks(const char* at, const char* end) {
    while (at < end && isOf(*at, kBLANK_CHARACTER)) ++at;
    return at;
}

bool is_paste(const char* at, const char* end) {
    if (at == end || *at != '#') return false;
    at = behind_blanks(at + 1, end);
    return at < end && *at == '#';
}

// Whether a paste comes next. Where the text ends, as that of an argument does, the one around it goes on.
bool paste_follows(const parse_stream* stream) {
    for (const parse_stream* context = activeContext(stream); is_macro_text(context); context = context->parent) {
        const token_element* queued = context->lookAhead->head;
        while (queued != nullptr && queued->type == &kWHITESPACE_TOKEN) queued = queued->next;
        if (queued != nullptr) return queued->type == &kPREPROCESS_CONCAT_KEYWORD;
        const char* at = behind_blanks(context->position, context->textEnd);
        if (at != context->textEnd) return is_paste(at, context->textEnd);
        if ((context->parseModes & kMODE_NO_AUTO_POP) != 0 || context->parent == nullptr) return false;
    }
    return false;
}

bool can_be_pasted(const token_element* token) {
    return token->type != &kWHITESPACE_TOKEN && !endsLine(token);
}

long end_joined_stream(parse_stream* context) {
    release_token_element(static_cast<token_element*>(context->userData));
    return 0;
}

// Rescans that have been read to their end go, so that many pastes in a row do not stand inside each other.
int pop_ended_rescans(parse_stream* stream) {
    for (;;) {
        const parse_stream* context = activeContext(stream);
        const bool isRescan = (context->contextState & (kCONTEXT_RESCAN | kCONTEXT_OVERLAY)) == kCONTEXT_RESCAN;
        const bool isEnded = context->position == context->textEnd && context->lookAhead->depth == 0;
        if (!isRescan || !isEnded || context->parent == nullptr) return 0;
        if (int status = pop_parse_stream(stream); status != 0) return status;
    }
}

int push_joined(parse_stream* stream, token_element* token) {
    if (int status = pop_ended_rescans(stream); status != 0) return status;
    TokenOwner joined(dup_token_element(token));
    if (joined == nullptr) return 7;
    parse_stream* context = nullptr;
    const int status = push_parse_MemoryFile_stream(
        "rescan", joined->text, joined->length, stream, kCONTEXT_RESCAN, joined.get(), end_joined_stream, &context);
    if (status != 0) return status;
    joined.release();
    context->parseModes &= ~kMODE_NO_AUTO_POP;
    return 0;
}

// Joins the token with the one behind "##".
bool do_paste(parse_stream* stream, token_element* token, int* status) {
    const NestedRead nested(stream);
    if (*status = nested.check(token, token->text); *status != 0) return false;
    TokenOwner next(get_token_element());
    *status = next == nullptr ? 7 : nextPlainToken(stream, next.get()); // the paste itself
    do {
        if (*status == 0) *status = internal_get_next_token(stream, next.get());
    } while (*status == 0 && next->type == &kWHITESPACE_TOKEN);
    if (*status != 0) return false;
    if (!can_be_pasted(next.get())) {
        // There is nothing to be joined with.
        *status = push_back_token(stream, next.get());
        return false;
    }
    *status = cat_token_element(token, next.get(), &kTEXT_STRING_TOKEN);
    if (*status == 3) *status = refuseLongToken(activeContext(stream), token);
    if (*status == 0) *status = push_joined(stream, token);
    return *status == 0;
}

// What "#" makes of the word behind it: a number or an unknown word stays, a macro's text is quoted.
bool do_macro_parameter_op(parse_stream* stream, token_element* token, int* status) {
    *status = nextPlainToken(stream, token);
    if (*status != 0 || isOfClass(token->type, kNUMBER)) return false;
    if (token->type == &kIDENTIFIER_TOKEN) return expand_name(stream, token, true, status);
    *status = expectedToken(stream, token, "macro parameter");
    return false;
}

} // namespace

int memdata::pushRescan(parse_stream* stream, OwnedString text, u32 length) {
    parse_stream* context = nullptr;
    const auto release = [](parse_stream* ended) -> long {
        StrDelete(static_cast<char*>(ended->userData));
        return 0;
    };
    const int status = push_parse_MemoryFile_stream(
        "rescan", text.get(), length, stream, kCONTEXT_RESCAN, text.get(), release, &context);
    if (status != 0) return status;
    text.release();
    context->parseModes &= ~kMODE_NO_AUTO_POP;
    return 0;
}

int push_macro_stream(const char* name, parse_stream* stream, token_element* token, MacroElementType* macro,
    bool quoted, bool deleteWhenPopped, bool* pushed) {
    *pushed = false;
    if (macro->inExpansion) return 0;
    if (macro->kind != kSIMPLE_MACRO) {
        const NestedRead nested(stream);
        if (int status = nested.check(token, name); status != 0) return status;
        if (int status = parse_macro_arguments(stream, token, macro); status != 0) return status;
    }
    if (int status = push_body(name, stream, macro, quoted); status != 0) {
        StrDelete(std::exchange(macro->quotedBody, nullptr));
        if (macro->kind != kSIMPLE_MACRO) pop_symbol_scope(&stream->root->macroSymbols);
        return status;
    }
    macro->deleteWhenPopped = deleteWhenPopped;
    *pushed = true;
    return 0;
}

bool do_macro_expansion(parse_stream* stream, token_element* token, bool quoted, int* status) {
    *status = 0;
    const parse_stream* context = activeContext(stream);
    if ((context->parseModes & kMODE_NO_MACROS) != 0) return false;
    if (isOfClass(token->type, kPREPROCESS_BUILTIN_TOKEN)) return do_builtin_macro(stream, token, status);
    const bool isStringize = token->type == &kPOUND_SIGN && (context->contextState & kCONTEXT_MACRO_BODY) != 0;
    bool pushed = false;
    if (token->type == &kIDENTIFIER_TOKEN) pushed = expand_name(stream, token, quoted, status);
    if (isStringize) pushed = do_macro_parameter_op(stream, token, status);
    if (pushed || *status != 0 || !paste_follows(stream)) return pushed;
    return do_paste(stream, token, status);
}

int do_inline_macro_op(parse_stream* stream, token_element* token) {
    // In dead text the braces and what is between them are dropped as tokens.
    if (!isTextLive(stream)) return 0;
    OwnedString body;
    u32 length = 0;
    {
        const DirectiveModes line(stream, kLINE_MODES | kMODE_NO_MACROS, kMODE_COMMENTS, kCONTEXT_MACRO_DEFINITION);
        if (int status = strdup_to_token(stream, token, nullptr, inLineMacroTerminators, &length, body.out());
            status != 0)
            return status;
    }
    if (token->type != &kRIGHT_BRACES)
        return PrintErrorLocation(stream, kERROR_MISSING_KEYWORD_AND_EXPECTED, kPREPROCESS_FAILURE, token,
            "end-of-line", "terminating '}' not found before the end of the line");
    MacroOwner macro(create_macro_element(kSIMPLE_MACRO, nullptr, 0, body.release(), length));
    if (macro == nullptr) return 7;
    bool pushed = false;
    if (int status = push_macro_stream("inline", stream, token, macro.get(), false, true, &pushed); status != 0)
        return status;
    macro.release(); // goes with its stream
    return 0;
}

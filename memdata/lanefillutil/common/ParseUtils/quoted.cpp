// quoted.cpp - strings and texts in quotes, and what a backslash stands for.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/context_texts.h"
#include "ParseUtils/limits.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/preprocessor.h"
#include "ParseUtils/scanner_parts.h"
#include "StringUtils/escape.h"
#include "SystemUtils/alerts.h"

#include <algorithm>

using namespace memdata;

namespace {

constexpr u32 kLONGEST_ESCAPE = 4; // a backslash and three octal digits

struct QuotedSpanType {
    const char* end; // the closing quote, or where the text ended without one
    bool isClosed;
    bool hasEscape;
};

// Passes over all line ends at the position, as an escape does that joins lines.
void pass_line_ends(parse_stream* context) {
    while (context->position < context->textEnd && isOf(*context->position, kLINE_END_CHARACTER)) passLineEnd(context);
}

// Moves the context to the closing quote. A string ends at the end of its line even without one, so that a stray
// quote does not swallow the rest of a file.
QuotedSpanType find_closing_quote(parse_stream* context, char quote, bool isRaw) {
    QuotedSpanType span{};
    while (context->position < context->textEnd) {
        const char c = *context->position;
        if (c == quote) {
            span.isClosed = true;
            break;
        }
        if (c == kEND_OF_FILE_MARK || isOf(c, kLINE_END_CHARACTER)) break;
        ++context->position;
        if (c != '\\' || isRaw || context->position == context->textEnd) continue;
        const char escaped = *context->position;
        span.hasEscape = true;
        if (isOf(escaped, kLINE_END_CHARACTER))
            pass_line_ends(context);
        else if (escaped != kEND_OF_FILE_MARK)
            ++context->position; // digits that may follow are no quotes
    }
    span.end = context->position;
    return span;
}

// Replaces the escapes of a token's text in place; it does not become longer.
void replace_escapes(token_element* token) {
    const char* from = token->text;
    const char* end = from + token->length;
    char* to = token->text;
    while (from < end) {
        if (*from != '\\') {
            *to++ = *from++;
            continue;
        }
        unsigned count = 0;
        char c = '\0';
        convert_escaped_char(&from, nullptr, &count, &c);
        if (count != 0) *to++ = c;
    }
    *to = '\0';
    token->length = static_cast<u32>(to - token->text);
}

int report_unclosed(parse_stream* context, const token_element* token, char quote) {
    // Text that does not count may hold anything.
    if (!isTextLive(context)) return 0;
    const bool isLineEnd = context->position < context->textEnd && isOf(*context->position, kLINE_END_CHARACTER);
    const char expected[] = {quote, '\0'};
    return PrintErrorLocation(
        context, kERROR_MISSING_SYMBOL_AND_EXPECTED, 3, token, isLineEnd ? "end-of-line" : "end-of-file", expected);
}

void drop_queued(parse_stream* stream, u32 count) {
    for (; count != 0; --count) dequeue_look_ahead_token(stream);
}

// Whether a string can follow: a cheap look that spares reading tokens early.
bool string_may_follow(const parse_stream* context) {
    if (context->lookAhead->depth != 0) return true;
    if ((context->parseModes & kMODE_PLAIN_QUOTES) != 0) return false;
    const char* at = context->position;
    while (at < context->textEnd && isOf(*at, kBLANK_CHARACTER | kLINE_END_CHARACTER)) ++at;
    if (at == context->textEnd) return false;
    // A string, or a comment that one may stand behind.
    return *at == '"' || *at == '#' || (*at == '/' && at + 1 < context->textEnd && (at[1] == '/' || at[1] == '*'));
}

bool is_between_strings(const token_element* token) {
    return token->type == &kWHITESPACE_TOKEN || token->type == &kEND_OF_LINE || token->type == &kCOMMENT_BLOCK_TOKEN;
}

// The next token that is neither blank nor line end nor comment; it stays queued, behind *passed others. Comments are
// read whole. Null when a token can not be read.
const token_element* next_significant(parse_stream* stream, u32* passed) {
    parse_stream* context = activeContext(stream);
    const token_element* token = context->lookAhead->head;
    for (*passed = 0;; ++*passed, token = token->next) {
        if (token == nullptr) token = look_ahead_stream_tokens(stream, context->lookAhead->depth);
        if (token == nullptr) return nullptr;
        if (token->type == &kC_PLUS_PLUS_COMMENT || token->type == &kSTART_C_COMMENT) {
            // A comment's opening can only be the last that was read.
            context->pendingStatus = parseComment(context, context->lookAhead->tail);
            if (context->pendingStatus != 0) return nullptr;
        }
        if (!is_between_strings(token)) return token;
    }
}

} // namespace

int memdata::setQuotedToken(parse_stream* context, token_element* token, const token_type* type) {
    const char quote = *context->position;
    const char* text = ++context->position;
    const bool isRaw = (context->parseModes & kMODE_RAW_BACKSLASH) != 0;
    const QuotedSpanType span = find_closing_quote(context, quote, isRaw);
    const u64 length = static_cast<u64>(span.end - text);
    if (span.isClosed) ++context->position;
    if (length > kMAX_TOKEN_BYTES) return refuseLongToken(context, token);
    const int status = set_token_element(token, length == 0 ? nullptr : text, static_cast<long>(length), true, type, 0);
    if (status != 0) return status;
    if (span.hasEscape) replace_escapes(token);
    return span.isClosed ? 0 : report_unclosed(context, token, quote);
}

int memdata::parseCharacterEscape(parse_stream* context, token_element* token, bool* isJoin) {
    resumeBehind(context, token, 1);
    *isJoin = context->position < context->textEnd && isOf(*context->position, kLINE_END_CHARACTER);
    if (*isJoin) {
        passLineEnd(context);
        return 0;
    }
    // A terminated copy of what an escape can take, since the text itself need not be terminated.
    char escape[kLONGEST_ESCAPE + 1] = {'\\'};
    const u64 left = static_cast<u64>(context->textEnd - context->position);
    std::copy_n(context->position, std::min<u64>(left, kLONGEST_ESCAPE - 1), escape + 1);
    const char* cursor = escape;
    unsigned count = 0;
    char c = '\0';
    convert_escaped_char(&cursor, nullptr, &count, &c);
    context->position += cursor - escape - 1;
    return set_token_element(token, &c, 1, true, &kLITERAL_CHARACTER_TOKEN, static_cast<u8>(c));
}

int memdata::joinStrings(parse_stream* stream, token_element* token) {
    while (string_may_follow(activeContext(stream))) {
        u32 passed = 0;
        const token_element* next = next_significant(stream, &passed);
        if (next == nullptr || next->type != &kQUOTED_STRING_TOKEN) break;
        if (int status = cat_token_element(token, next, token->type); status != 0)
            return status == 3 ? refuseLongToken(activeContext(stream), token) : status;
        drop_queued(stream, passed + 1);
    }
    return 0;
}

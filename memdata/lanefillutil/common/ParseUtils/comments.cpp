// comments.cpp - comments of one line and of many, which nest.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/context_texts.h"
#include "ParseUtils/limits.h"
#include "ParseUtils/scanner_parts.h"

using namespace memdata;

namespace {

bool at_end(const parse_stream* context) {
    return context->position == context->textEnd || *context->position == kEND_OF_FILE_MARK;
}

void pass_line(parse_stream* context) {
    while (!at_end(context) && !isOf(*context->position, kLINE_END_CHARACTER)) ++context->position;
}

bool is_pair(const parse_stream* context, char first, char second) {
    const char* at = context->position;
    return *at == first && at + 1 < context->textEnd && at[1] == second;
}

void open_comment(parse_stream* context, const token_element* token) {
    if (context->commentNestLevel++ != 0) return;
    context->openComment = token->sourcePosition;
    context->openCommentLine = token->lineStart;
    context->openCommentLineNumber = token->lineNumber;
}

// Goes on to the end of the comment, or of the text: the level then stays up, and closing the stream reports it.
// Nesting is counted. "//" counts as one symbol inside a comment, so "//*" opens nothing.
void pass_comment(parse_stream* context, u32 outerLevel) {
    while (!at_end(context)) {
        const char c = *context->position;
        if (isOf(c, kLINE_END_CHARACTER)) {
            passLineEnd(context);
        } else if (is_pair(context, '/', '*')) {
            context->position += 2;
            ++context->commentNestLevel;
        } else if (is_pair(context, '*', '/')) {
            context->position += 2;
            if (--context->commentNestLevel == outerLevel) return;
        } else {
            context->position += is_pair(context, '/', '/') ? 2 : 1;
        }
    }
}

// Line ends of all kinds become line feeds.
void unify_line_ends(token_element* token) {
    const char* from = token->text;
    const char* end = from + token->length;
    char* to = token->text;
    while (from < end) {
        if (isOf(*from, kLINE_END_CHARACTER)) {
            from += lineEndLength(from, end);
            *to++ = '\n';
        } else {
            *to++ = *from++;
        }
    }
    *to = '\0';
    token->length = static_cast<u32>(to - token->text);
}

} // namespace

int memdata::parseComment(parse_stream* context, token_element* token) {
    resumeBehind(context, token, token->length);
    if (token->type == &kSTART_C_COMMENT) {
        const u32 outerLevel = context->commentNestLevel;
        open_comment(context, token);
        pass_comment(context, outerLevel);
    } else {
        pass_line(context);
    }
    if (int status = set_token_element(token, nullptr, 0, true, &kCOMMENT_BLOCK_TOKEN, 0); status != 0) return status;
    if ((context->parseModes & kMODE_COMMENTS) == 0) return 0;
    const u64 length = static_cast<u64>(context->position - token->sourcePosition);
    if (length > kMAX_TOKEN_BYTES) return refuseLongToken(context, token);
    const int status =
        set_token_element(token, token->sourcePosition, static_cast<long>(length), true, &kCOMMENT_BLOCK_TOKEN, 0);
    if (status == 0) unify_line_ends(token);
    return status;
}

void memdata::resumeBehind(parse_stream* context, const token_element* token, u32 length) {
    const bool isLast = context->lookAhead->depth == 0 || context->lookAhead->tail == token;
    if (isLast || token->textId != context->textId) return;
    clearTokens(context->lookAhead);
    context->position = token->sourcePosition + length;
    context->lineStart = token->lineStart;
    context->lineNumber = token->lineNumber;
}

// filter.cpp - which of the scanned tokens are delivered.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/characters.h"
#include "ParseUtils/context_texts.h"
#include "ParseUtils/limits.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/preprocessor.h"
#include "ParseUtils/scanner.h"
#include "ParseUtils/scanner_parts.h"

using namespace memdata;

namespace {

bool has_mode(const parse_stream* context, u32 mode) {
    return (context->parseModes & mode) != 0;
}

// Blanks and line ends of a macro's body are not those of the text that it is used in.
bool delivers_layout(const parse_stream* context, u32 mode) {
    const bool isMacro = (context->contextState & kCONTEXT_MACRO_BODY) != 0;
    return has_mode(context, mode) && (!isMacro || has_mode(context, kMODE_MACRO_LAYOUT));
}

bool directive_follows(parse_stream* stream) {
    const parse_stream* context = activeContext(stream);
    if (context->lookAhead->depth == 0 && (context->position == context->textEnd || *context->position != '#'))
        return false;
    const token_element* next = look_ahead_stream_tokens(stream, 0);
    return next != nullptr && isOfClass(next->type, kPREPROCESS_TOKEN);
}

bool delivers_whitespace(parse_stream* stream) {
    const parse_stream* context = activeContext(stream);
    if (!delivers_layout(context, kMODE_WHITESPACE)) return false;
    return has_mode(context, kMODE_NO_DIRECTIVES) || !directive_follows(stream);
}

enum class Verdict { kDELIVER, kDROP };

int filter_comment(parse_stream* context, token_element* token, Verdict* verdict) {
    // A closing mark that closes nothing is left to the reader of the text: it is an error nearly everywhere.
    if (token->type == &kEND_C_COMMENT) return 0;
    if (token->type != &kCOMMENT_BLOCK_TOKEN) {
        if (int status = parseComment(context, token); status != 0) return status;
    }
    const bool isWhole = context->commentNestLevel == 0;
    *verdict = has_mode(context, kMODE_COMMENTS) && isWhole ? Verdict::kDELIVER : Verdict::kDROP;
    return 0;
}

int filter_escape(parse_stream* context, token_element* token, Verdict* verdict) {
    if (has_mode(context, kMODE_RAW_BACKSLASH)) return 0;
    bool isJoin = false;
    const int status = parseCharacterEscape(context, token, &isJoin);
    if (isJoin) *verdict = Verdict::kDROP;
    return status;
}

int filter_string(parse_stream* stream, token_element* token) {
    const bool joins = !has_mode(activeContext(stream), kMODE_NO_JOINING) && isTextLive(stream);
    return joins ? joinStrings(stream, token) : 0;
}

int filter_end_of_file(parse_stream* stream, Verdict* verdict) {
    const parse_stream* context = activeContext(stream);
    if ((context->contextState & kCONTEXT_AUTO_POP) == 0 || has_mode(context, kMODE_NO_AUTO_POP)) return 0;
    *verdict = Verdict::kDROP;
    return auto_pop_parse_stream(stream);
}

int filter_token(parse_stream* stream, token_element* token, Verdict* verdict) {
    parse_stream* context = activeContext(stream);
    const token_type* type = token->type;
    if (isOfClass(type, kCOMMENT_OP) || type == &kCOMMENT_BLOCK_TOKEN) return filter_comment(context, token, verdict);
    if (type == &kBACK_SLASH) return filter_escape(context, token, verdict);
    if (type == &kQUOTED_STRING_TOKEN) return filter_string(stream, token);
    if (type == &kEND_OF_FILE) return filter_end_of_file(stream, verdict);
    if (type == &kWHITESPACE_TOKEN && !delivers_whitespace(stream)) *verdict = Verdict::kDROP;
    if (type == &kEND_OF_LINE && !delivers_layout(context, kMODE_LINE_ENDS)) *verdict = Verdict::kDROP;
    return 0;
}

// Blanks and line ends that would be dropped are counted as tokens, but need none made. (No keyword begins with one.)
void pass_layout(parse_stream* stream) {
    parse_stream* context = activeContext(stream);
    constexpr u8 kLAYOUT_CHARACTER = kBLANK_CHARACTER | kLINE_END_CHARACTER;
    if (context->position == context->textEnd || !isOf(*context->position, kLAYOUT_CHARACTER)) return;
    if (context->lookAhead->depth != 0 || context->pendingStatus != 0) return;
    const bool passesBlanks = !delivers_layout(context, kMODE_WHITESPACE);
    const bool passesLineEnds = !delivers_layout(context, kMODE_LINE_ENDS);
    u64& tokens = scannedTokens(context);
    while (context->position < context->textEnd) {
        const char first = *context->position;
        if (passesLineEnds && isOf(first, kLINE_END_CHARACTER)) {
            passLineEnd(context);
        } else if (passesBlanks && isOf(first, kBLANK_CHARACTER)) {
            const char* end = context->position + 1;
            while (end < context->textEnd && isOf(*end, kBLANK_CHARACTER)) ++end;
            if (static_cast<u64>(end - context->position) > kMAX_TOKEN_BYTES) return; // the scanner refuses it
            context->position = end;
        } else {
            return;
        }
        ++tokens;
    }
}

int append_token(parse_stream* stream, token_element* joined, const token_element* token) {
    const int status = cat_token_element(joined, token, &kTEXT_STRING_TOKEN);
    return status == 3 ? refuseLongToken(activeContext(stream), joined) : status;
}

} // namespace

int parse_filtered_token(parse_stream* stream, token_element* token) {
    for (;;) {
        Verdict verdict = Verdict::kDELIVER;
        pass_layout(stream);
        int status = parse_next_token(stream, token);
        if (status == 0) status = filter_token(stream, token, &verdict);
        if (status != 0 || verdict == Verdict::kDELIVER) return status;
    }
}

int get_next_token(parse_stream* stream, token_element* token) {
    int status = internal_get_next_token(stream, token);
    while (status == 0 && has_mode(activeContext(stream), kMODE_DISCARD) && token->type != &kEND_OF_FILE)
        status = internal_get_next_token(stream, token);
    return status;
}

int parse_to_token(
    parse_stream* stream, token_element* token, token_element** terminator, const token_type* const* list) {
    TokenOwner joined(get_token_element());
    TokenOwner next(get_token_element());
    if (joined == nullptr || next == nullptr) return 7;
    if (int status = set_token_element(joined.get(), nullptr, 0, true, &kTEXT_STRING_TOKEN, 0); status != 0)
        return status;
    // The text does not run on behind the end of an included file or macro.
    ParseModes modes(stream, kMODE_NO_AUTO_POP, true);
    for (;;) {
        if (int status = parse_filtered_token(stream, next.get()); status != 0) return status;
        if (next->type == &kEND_OF_FILE || One_Of_Tokens(next->type, list)) break;
        if (int status = append_token(stream, joined.get(), next.get()); status != 0) return status;
    }
    moveToken(token, joined.release());
    if (terminator != nullptr) *terminator = next.release();
    return 0;
}

int parse_to_EOL(parse_stream* stream, token_element* token) {
    ParseModes modes(stream,
        kMODE_PLAIN_QUOTES | kMODE_LINE_ENDS | kMODE_NO_DIRECTIVES | kMODE_NO_JOINING | kMODE_MACRO_LAYOUT, true);
    return parse_to_token(stream, token, nullptr, EOLTerminators);
}

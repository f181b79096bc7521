// scanner.cpp - characters to tokens.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/scanner.h"

#include "ParseUtils/context_texts.h"
#include "ParseUtils/limits.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/scanner_parts.h"
#include "ParseUtils/symbol_tables.h"
#include "SystemUtils/alerts.h"

#include <cstring>
#include <utility>

using namespace memdata;

namespace {

// What a step of the scanner made of the characters at the position.
enum StepResult : int {
    kNOT_MINE = -1, // nothing; the next step looks at them
};

const char* end_of_run(const char* at, const char* end, u8 classes) {
    while (at < end && isOf(*at, classes)) ++at;
    return at;
}

int take_token(parse_stream* context, token_element* token, u64 length, const token_type* type, bool caseSensitive,
    long double value) {
    const char* text = context->position;
    context->position += length;
    if (length > kMAX_TOKEN_BYTES) return refuseLongToken(context, token);
    return set_token_element(token, text, static_cast<long>(length), caseSensitive, type, value);
}

int scan_whitespace(parse_stream* context, token_element* token) {
    const char* end = end_of_run(context->position, context->textEnd, kBLANK_CHARACTER);
    return take_token(context, token, static_cast<u64>(end - context->position), &kWHITESPACE_TOKEN, false, 0);
}

int scan_number(parse_stream* context, token_element* token) {
    bool isFloat = false;
    long double value = 0;
    u32 radix = 0;
    const u32 length =
        scanNumber(context->position, context->textEnd, context->numberBase, true, &radix, &isFloat, &value);
    if (length == 0) return kNOT_MINE;
    token->numberBase = radix;
    return take_token(context, token, length, isFloat ? &kFLOAT_NUMBER : &kINTEGER_NUMBER, false, value);
}

// The first character that can not stand in brackets, from a "[" on. Runs are remembered, so that a text of many
// brackets is looked through once.
const char* end_of_brackets(parse_stream* context, const char* bracket) {
    if (bracket < context->bracketRun || bracket >= context->bracketRunEnd) {
        context->bracketRun = bracket;
        context->bracketRunEnd = end_of_run(bracket, context->textEnd, kBRACKET_PART);
    }
    return context->bracketRunEnd;
}

// Words take "-" and "." along, and brackets too unless a range stands in them: a[3].b is one word, a[3:0] is not.
const char* end_of_word(parse_stream* context) {
    const char* end = end_of_run(context->position, context->textEnd, kWORD_PART);
    if (end == context->textEnd || *end != '[') return end;
    const char* run = end_of_brackets(context, end);
    const bool isRange = run < context->textEnd && *run == ':';
    return isRange ? end : run;
}

// The sets of this context and of those below, up to the first without one.
u32 look_up_keyword(parse_stream* context, const char* text, const char* end, u32 length, token_element* token) {
    for (parse_stream* at = context; at != nullptr && at->keywords != nullptr; at = at->keywordsBelow) {
        const u32 used = lookupSymbol(at->keywords, text, end, length, token);
        if (used != 0) return used;
    }
    return 0;
}

int scan_word(parse_stream* context, token_element* token) {
    const char* text = context->position;
    const u64 length = static_cast<u64>(end_of_word(context) - text);
    if (!context->noKeywordLookup && length <= kMAX_TOKEN_BYTES) {
        const auto wordLength = static_cast<u32>(length);
        u32 used = lookupSymbol(&builtin_keywords_set, text, context->textEnd, wordLength, token);
        if (used == 0) used = look_up_keyword(context, text, context->textEnd, wordLength, token);
        if (used == kLOOKUP_WITHOUT_MEMORY) return 7;
        if (used != 0) {
            context->position += used;
            return 0;
        }
    }
    return take_token(context, token, length, &kIDENTIFIER_TOKEN, true, 0);
}

// A "#" and the word behind it, blanks between them or not.
int scan_directive(parse_stream* context, token_element* token) {
    const char* start = context->position;
    const char* end = context->textEnd;
    const char* word = end_of_run(start + 1, end, kBLANK_CHARACTER);
    if (word == end) return kNOT_MINE;
    const bool isSymbol = *word == '#' || *word == '{';
    const char* wordEnd = isSymbol ? word + 1 : end_of_run(word, end, kWORD_START);
    const u64 wordLength = static_cast<u64>(wordEnd - word);
    if (wordLength == 0 || wordLength > kMAX_TOKEN_BYTES) return kNOT_MINE;
    // Directives are whole words; "-" and "." end them.
    const u32 used = lookupSymbol(&preprocess_keyword_set, word, wordEnd, static_cast<u32>(wordLength), token);
    if (used == kLOOKUP_WITHOUT_MEMORY) return 7;
    if (used == 0) return kNOT_MINE;

    const token_type* type = token->type;
    // A paste outside of macros begins a comment of one line.
    if (type == &kPREPROCESS_CONCAT_KEYWORD &&
        (context->contextState & (kCONTEXT_MACRO_BODY | kCONTEXT_MACRO_DEFINITION)) == 0)
        type = &kC_PLUS_PLUS_COMMENT;
    return take_token(context, token, static_cast<u64>(wordEnd - start), type, token->caseSensitive, 0);
}

// Nothing is moved over: the end is delivered again and again.
int scan_end_of_file(token_element* token) {
    return set_token_element(token, kOPERATOR_SYMBOLS[0].word, 1, true, &kEND_OF_FILE, 0);
}

int scan_line_end(parse_stream* context, token_element* token) {
    passLineEnd(context);
    return set_token_element(token, "\n", 1, true, &kEND_OF_LINE, 0);
}

int scan_symbol(parse_stream* context, token_element* token) {
    const u32 used = look_up_keyword(context, context->position, context->textEnd, 1, token);
    if (used == kLOOKUP_WITHOUT_MEMORY) return 7;
    if (used != 0) {
        context->position += used;
        return 0;
    }
    const keyword_row* row = operatorAt(context->position, context->textEnd);
    if (row == nullptr) return kNOT_MINE;
    if (row->type == &kEND_OF_LINE) return scan_line_end(context, token);
    const size_t length = std::strlen(row->word);
    context->position += length;
    return set_token_element(token, row->word, static_cast<long>(length), row->caseSensitive, row->type, 0);
}

int scan_literal(parse_stream* context, token_element* token) {
    const auto code = static_cast<u8>(*context->position);
    return take_token(context, token, 1, &kLITERAL_CHARACTER_TOKEN, true, code);
}

bool can_begin_number(const parse_stream* context, char first) {
    return context->numberBase != 0 || first == '-' || isOf(first, kDIGIT_CHARACTER);
}

int scan_punctuation(parse_stream* context, token_element* token) {
    const char first = *context->position;
    if (first == '#') {
        if (int status = scan_directive(context, token); status != kNOT_MINE) return status;
    }
    if ((first == '"' || first == '\'') && (context->parseModes & kMODE_PLAIN_QUOTES) == 0)
        return setQuotedToken(context, token, first == '"' ? &kQUOTED_STRING_TOKEN : &kQUOTED_TEXT_TOKEN);
    return scan_symbol(context, token);
}

int scan_token(parse_stream* context, token_element* token) {
    if (context->position == context->textEnd) return scan_end_of_file(token);
    const char first = *context->position;
    if (isOf(first, kBLANK_CHARACTER)) return scan_whitespace(context, token);
    int status = kNOT_MINE;
    if (can_begin_number(context, first)) status = scan_number(context, token);
    if (status == kNOT_MINE && isOf(first, kWORD_START)) status = scan_word(context, token);
    if (status == kNOT_MINE && isOf(first, kSYMBOL_CHARACTER)) status = scan_punctuation(context, token);
    if (status == kNOT_MINE) status = scan_literal(context, token);
    return status;
}

} // namespace

int memdata::refuseLongToken(parse_stream* context, const token_element* token) {
    return PrintErrorLocation(context, kERROR_TOKEN_TOO_LONG, 3, token, kMAX_TOKEN_BYTES);
}

void memdata::lookUpAgain(parse_stream* stream, token_element* token) {
    parse_stream* context = activeContext(stream);
    if (token->type != &kIDENTIFIER_TOKEN || context->noKeywordLookup) return;
    look_up_keyword(context, token->text, token->text + token->length, token->length, token);
}

int parse_token(parse_stream* stream, token_element* token) {
    parse_stream* context = activeContext(stream);
    markPlace(token, context);
    token->numberBase = 0;
    if (int status = scan_token(context, token); status != 0) return status;
    ++scannedTokens(context);
    return noteLastToken(context, token);
}

int parse_next_token(parse_stream* stream, token_element* token) {
    parse_stream* context = activeContext(stream);
    if (context->lookAhead->depth != 0 && retrive_next_queued_token(stream, token)) return 0;
    const int pending = std::exchange(context->pendingStatus, 0);
    return pending != 0 ? pending : parse_token(stream, token);
}

const char* skip_whitespace(const char* text) {
    while (isOf(*text, kBLANK_CHARACTER)) ++text;
    return text;
}

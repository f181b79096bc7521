// directive_line.cpp - what the directives share about reading their line.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_line.h"

#include "ParseUtils/limits.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

namespace memdata {

DirectiveModes::DirectiveModes(Of place, u32 on, u32 off, u32 states)
    : root_(place.context->root), context_(place.context), contextId_(context_->contextId),
      modes_(context_->parseModes), modeMask_(on | off), states_(context_->contextState), stateMask_(states) {
    context_->parseModes = (modes_ | on) & ~off;
    context_->contextState |= states;
}

DirectiveModes::~DirectiveModes() {
    for (parse_stream* context = root_->current; context != nullptr; context = context->parent) {
        if (context != context_ || context->contextId != contextId_) continue;
        context->parseModes = (context->parseModes & ~modeMask_) | (modes_ & modeMask_);
        context->contextState = (context->contextState & ~stateMask_) | (states_ & stateMask_);
        return;
    }
}

int NestedRead::check(const token_element* token, const char* name) const {
    if (root_->nestedReads <= kMAX_EXPANSION_DEPTH) return 0;
    return PrintErrorLocation(
        root_, kERROR_EXPANSIONS_TOO_DEEP, kPREPROCESS_FAILURE, token, name, kMAX_EXPANSION_DEPTH);
}

int refuseToken(parse_stream* stream, const token_element* token, const char* clause) {
    return PrintErrorLocation(stream, kERROR_UNEXPECTED_KEYWORD, kPREPROCESS_FAILURE, token, token->text, clause);
}

int expectedToken(parse_stream* stream, const token_element* token, const char* expected) {
    return PrintErrorLocation(
        stream, kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, kPREPROCESS_FAILURE, token, token->text, expected);
}

bool endsLine(const token_element* token) {
    return token->type == &kEND_OF_LINE || token->type == &kEND_OF_FILE;
}

int nextPlainToken(parse_stream* stream, token_element* token) {
    int status = 0;
    do status = parse_filtered_token(stream, token);
    while (status == 0 && token->type == &kWHITESPACE_TOKEN);
    return status;
}

int nextMacroName(parse_stream* stream, token_element* token) {
    if (int status = nextPlainToken(stream, token); status != 0) return status;
    return token->type == &kIDENTIFIER_TOKEN ? 0 : refuseToken(stream, token, "macro name expected");
}

int skipLine(parse_stream* context, token_element* token) {
    // Nothing in the rest of a line counts: no string is looked for its end, no escape joins it to the next line.
    const DirectiveModes skipping(DirectiveModes::Of{context},
        kLINE_MODES | kMODE_PLAIN_QUOTES | kMODE_RAW_BACKSLASH | kMODE_NO_JOINING, kMODE_WHITESPACE | kMODE_COMMENTS);
    int status = 0;
    do status = parse_filtered_token(context, token);
    while (status == 0 && !(endsLine(token) && activeContext(context) == context));
    return status;
}

} // namespace memdata

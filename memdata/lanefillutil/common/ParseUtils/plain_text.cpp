// plain_text.cpp - see plain_text.h.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/plain_text.h"

#include "ParseUtils/preprocessor.h"

namespace {

// In these contexts numbers can be macros too.
constexpr u32 kEXPANDING_STATES =
    kCONTEXT_MACRO_BODY | kCONTEXT_MACRO_DEFINITION | kCONTEXT_FUNCTION_BODY | kCONTEXT_RESCAN;
constexpr u32 kTELLING_MODES = kMODE_WHITESPACE | kMODE_LINE_ENDS | kMODE_DISCARD | kMODE_TRACE_TOKENS;

} // namespace

bool memdata::plainTextAhead(const parse_stream* stream, PlainText* text) {
    const parse_stream* context = activeContext(stream);
    const bool isPlain =
        (context->contextState & kEXPANDING_STATES) == 0 && (context->parseModes & kTELLING_MODES) == 0;
    const bool isPending =
        context->lookAhead->depth != 0 || context->pendingStatus != 0 || context->commentNestLevel != 0;
    if (!isPlain || isPending || !isTextLive(stream)) return false;
    *text = {{context->position, context->lineStart, context->lineNumber}, context->textEnd};
    return true;
}

void memdata::continueAt(parse_stream* stream, const TextPlace& place) {
    parse_stream* context = activeContext(stream);
    context->position = place.at;
    context->lineStart = place.lineStart;
    context->lineNumber = place.lineNumber;
}

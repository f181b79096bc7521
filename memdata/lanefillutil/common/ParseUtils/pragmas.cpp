// pragmas.cpp - #pragma: modes that outlast their line.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"

using namespace memdata;

namespace {

struct ModeChangeType {
    u32 on;
    u32 off;
};

struct TraceRow {
    const token_type* type;
    u32 mode;
};

constexpr TraceRow kTRACES[] = {
    {&kPRAGMA_DIRECTIVES_KEYWORD, kMODE_TRACE_DIRECTIVES},
    {&kPRAGMA_MACROS_KEYWORD, kMODE_TRACE_MACROS},
    {&kPRAGMA_TOKENS_KEYWORD, kMODE_TRACE_TOKENS},
};
constexpr u32 kALL_TRACES = kMODE_TRACE_DIRECTIVES | kMODE_TRACE_MACROS | kMODE_TRACE_TOKENS;

u32 trace_mode(const token_type* type) {
    for (const TraceRow& row : kTRACES)
        if (row.type == type) return row.mode;
    return 0;
}

// Reads "enabled" or "disabled".
//   whenEnabled  the mode is on when it is enabled
int read_switch(parse_stream* stream, token_element* token, u32 mode, bool whenEnabled, ModeChangeType* change) {
    if (int status = nextPlainToken(stream, token); status != 0) return status;
    const bool isEnabled = token->type == &kPRAGMA_ENABLED_KEYWORD;
    if (!isEnabled && token->type != &kPRAGMA_DISABLED_KEYWORD)
        return expectedToken(stream, token, "enabled, or disabled pragma mode");
    (isEnabled == whenEnabled ? change->on : change->off) = mode;
    return 0;
}

// Reads the modes to be traced. Without any, tracing ends.
int read_traces(parse_stream* stream, token_element* token, ModeChangeType* change) {
    change->off = kALL_TRACES;
    if (int status = nextPlainToken(stream, token); status != 0) return status;
    if (endsLine(token)) return 0;
    for (;;) {
        const u32 mode = trace_mode(token->type);
        if (mode == 0) return expectedToken(stream, token, "preprocessor trace mode");
        change->on |= mode;
        if (int status = nextPlainToken(stream, token); status != 0) return status;
        if (endsLine(token)) return 0;
        if (token->type != &kCOMMA)
            return refuseToken(stream, token, "either missing separating comma, or unknown preprocessor trace mode");
        if (int status = nextPlainToken(stream, token); status != 0) return status;
    }
}

int read_pragma(parse_stream* stream, token_element* token, ModeChangeType* change) {
    if (int status = nextPlainToken(stream, token); status != 0) return status;
    if (token->type == &kPRAGMA_COMMENTS_KEYWORD) return read_switch(stream, token, kMODE_COMMENTS, true, change);
    if (token->type == &kPRAGMA_OUTPUT_KEYWORD) return read_switch(stream, token, kMODE_DISCARD, false, change);
    if (token->type == &kPRAGMA_TRACE_KEYWORD) return read_traces(stream, token, change);
    return expectedToken(stream, token, "comments, output, or trace #pragma type");
}

} // namespace

int do_pragma_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    ModeChangeType change{};
    {
        KeywordOverlay words(stream, &pragma_keyword_set);
        if (words.status() != 0) return words.status();
        words.setModes(kLINE_MODES, true);
        words.setModes(kMODE_WHITESPACE | kMODE_COMMENTS, false);
        if (int status = read_pragma(stream, token, &change); status != 0) return status;
        if (int status = words.close(); status != 0) return status;
    }
    // Behind the line's own modes: these are not put back.
    set_parse_modes(stream, nullptr, change.off, false);
    set_parse_modes(stream, nullptr, change.on, true);
    return 0;
}

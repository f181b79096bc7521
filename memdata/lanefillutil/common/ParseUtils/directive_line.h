// directive_line.h - what the directives share: the modes that a line is read in, and how errors in it are said.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_DIRECTIVE_LINE_H
#define MEMDATA_PARSE_UTILS_DIRECTIVE_LINE_H

#include "ParseUtils/streams.h"

namespace memdata {

inline constexpr int kPREPROCESS_FAILURE = 21;

// A directive ends with its line, or with the text that it stands in: the end of an included file or of a macro's body
// is not passed over in search of more.
inline constexpr u32 kLINE_MODES = kMODE_LINE_ENDS | kMODE_NO_DIRECTIVES | kMODE_NO_AUTO_POP | kMODE_MACRO_LAYOUT;

// Modes and states of one context, the active one unless another is given, as a scope. They are put back wherever the
// context stands on the stack then: a macro that the line has opened may stand above it.
class DirectiveModes {
public:
    struct Of {
        parse_stream* context;
    };
    DirectiveModes(Of place, u32 on, u32 off, u32 states = 0);
    DirectiveModes(parse_stream* stream, u32 on, u32 off, u32 states = 0)
        : DirectiveModes(Of{activeContext(stream)}, on, off, states) {}
    ~DirectiveModes();
    DirectiveModes& operator=(DirectiveModes&&) = delete; // neither copied nor moved

private:
    parse_stream* root_;
    parse_stream* context_;
    u32 contextId_;
    u32 modes_;
    u32 modeMask_;
    u32 states_;
    u32 stateMask_;
};

// Counts tokens that are read on behalf of other tokens (arguments, pastes, inline macros, directives in macros): the
// reader calls itself there, so the depth is bounded.
class NestedRead {
public:
    explicit NestedRead(parse_stream* stream) : root_(stream->root) { ++root_->nestedReads; }
    ~NestedRead() { --root_->nestedReads; }
    NestedRead& operator=(NestedRead&&) = delete; // neither copied nor moved

    // Status 0; 21 with an alert that names what can not be read.
    int check(const token_element* token, const char* name) const;

private:
    parse_stream* root_;
};

// Alerts at a token. Status 21.
int refuseToken(parse_stream* stream, const token_element* token, const char* clause);     // "Unexpected keyword"
int expectedToken(parse_stream* stream, const token_element* token, const char* expected); // "Illegal token"

// Whether a token ends a line: a line end, or the end of the text.
bool endsLine(const token_element* token);

// The next token other than a blank, without directives and macros.
int nextPlainToken(parse_stream* stream, token_element* token);
// The same, which must be a name. Status 21 with "macro name expected" when it is not.
int nextMacroName(parse_stream* stream, token_element* token);

// Reads on to the end of the line of a context, dropping tokens, those of macros that are open above it too.
int skipLine(parse_stream* context, token_element* token);

} // namespace memdata

#endif

// preprocessor.h - directives and macros, between the scanner and the clients of a stream.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_PREPROCESSOR_H
#define MEMDATA_PARSE_UTILS_PREPROCESSOR_H

#include "ParseUtils/streams.h"
#include "StringUtils/StringUtils.h"

// One open conditional or loop on the directive stack.
struct PP_Directive_Element {
    token_element* directive; // its own copy of the directive's token
    bool active;              // text under the directive is live
    bool branchTaken;         // some branch of this chain has been live
    u64 loopPosition;         // offset behind the loop's opening word and first part
    u32 loopLine;             // line number there
    u64 endPosition;          // offset behind the closing directive; 0 until it was first reached
    u32 endLine;              // line number there
    // From here on the record is this module's own.
    u64 rounds;       // of the loop, begun so far
    u64 tokensAtOpen; // fileTokens of the root when the loop was opened
};

// Folders that files are looked for in besides their own name, each with a "/" at its end; null for none. The list
// stays its owner's.
extern StrList gPP_include_path_list;
void register_parsing_include_search_paths(StrList paths);

// The next token of live text, with directives acted on and macros expanded. Status as get_next_token.
int internal_get_next_token(parse_stream* stream, token_element* token);

// Whether a closing directive, or the end of a file, fits the innermost open directive.
//   stack  of PP_Directive_Element
//   token  the closing directive, or kEND_OF_FILE
// Status 0; 21 with an alert.
int test_matching_PP_directives(parse_stream* stream, StackType* stack, const token_element* token);

namespace memdata {

// Whether the text being read counts: no directive is open, or the innermost one is active.
inline bool isTextLive(const parse_stream* stream) {
    const auto* top = static_cast<const PP_Directive_Element*>(Stacked_Value(stream->root->directiveStack, 0));
    return top == nullptr || top->active;
}

} // namespace memdata

#endif

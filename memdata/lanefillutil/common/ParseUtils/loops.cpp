// loops.cpp - #while and #for: the read position moves back to the loop's condition for each round.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"
#include "ParseUtils/limits.h"
#include "SystemUtils/SystemUtils.h"

#include <algorithm>
#include <utility>

using namespace memdata;

namespace {

void go_to(parse_stream* stream, u64 position, u32 line) {
    set_stream_position(stream, position);
    set_stream_line_number(stream, line);
}

// What is read again is counted: the text from the condition on, and its tokens, without those that a loop inside of
// this one has counted.
int count_repeated(parse_stream* stream, const PP_Directive_Element* loop) {
    parse_stream* root = stream->root;
    root->repeatedBytes += get_stream_position(stream) - loop->loopPosition;
    const u64 begin = std::max(loop->tokensAtOpen, root->countedTokens);
    root->repeatedTokens += root->fileTokens - begin + kTOKENS_OF_A_JUMP;
    root->countedTokens = root->fileTokens;
    if (root->repeatedBytes > kMAX_REPEATED_BYTES)
        return PrintErrorLocation(stream, kERROR_TOO_MUCH_REPEATED_TEXT, kPREPROCESS_FAILURE, loop->directive,
            loop->directive->text, kMAX_REPEATED_BYTES);
    if (root->repeatedTokens > kMAX_REPEATED_TOKENS)
        return PrintErrorLocation(stream, kERROR_TOO_MANY_REPEATED_TOKENS, kPREPROCESS_FAILURE, loop->directive,
            loop->directive->text, kMAX_REPEATED_TOKENS);
    return 0;
}

int go_to_condition(parse_stream* stream, const PP_Directive_Element* loop) {
    const bool goesBack = get_stream_position(stream) > loop->loopPosition;
    const int status = goesBack ? count_repeated(stream, loop) : 0;
    go_to(stream, loop->loopPosition, loop->loopLine);
    return status;
}

int begin_round(parse_stream* stream, DirectiveOwner loop) {
    if (++loop->rounds > kMAX_LOOP_ITERATIONS)
        return PrintErrorLocation(stream, kERROR_TOO_MANY_ITERATIONS, kPREPROCESS_FAILURE, loop->directive,
            loop->directive->text, kMAX_LOOP_ITERATIONS);
    if (test_parse_modes(stream, kMODE_TRACE_DIRECTIVES, true))
        output_preprocess_trace(stream, loop->directive, "Directive", nullptr);
    return pushDirective(stream, std::move(loop), true, true);
}

bool is_for(const PP_Directive_Element* loop) {
    return loop->directive->type == &kPREPROCESS_FOR_KEYWORD;
}

int open_loop(parse_stream* stream, token_element* token, DirectiveOwner loop, bool live) {
    loop->loopPosition = get_stream_position(stream);
    loop->loopLine = get_stream_line_number(stream);
    loop->tokensAtOpen = stream->root->fileTokens;
    const token_type* const* terminators = is_for(loop.get()) ? forExpressionTerminators : whileExpressionTerminators;
    return test_loop_conditional_statement(stream, token, std::move(loop), terminators, live);
}

int next_round(parse_stream* stream, token_element* token, DirectiveOwner loop, bool live) {
    if (is_for(loop.get())) return test_next_loop_iteration(stream, token, std::move(loop), live);
    return test_loop_conditional_statement(stream, token, std::move(loop), whileExpressionTerminators, live);
}

int close_loop(parse_stream* stream, token_element* token) {
    if (int status = test_matching_PP_directives(stream, stream->root->directiveStack, token); status != 0)
        return status;
    DirectiveOwner loop = popDirective(stream);
    loop->endPosition = get_stream_position(stream);
    loop->endLine = get_stream_line_number(stream);
    const bool live = loop->active && isTextLive(stream);
    return next_round(stream, token, std::move(loop), live);
}

// Passes over the condition of a #for and carries out what stands behind it.
int do_third_part(parse_stream* stream, token_element* token) {
    {
        const DirectiveModes line(stream, kLINE_MODES | kMODE_PLAIN_QUOTES | kMODE_RAW_BACKSLASH, kMODE_COMMENTS);
        do {
            if (int status = nextPlainToken(stream, token); status != 0) return status;
        } while (token->type != &kEND_OF_FILE && !One_Of_Tokens(token->type, forExpressionTerminators));
    }
    if (token->type != &kSEMICOLON) return refuseToken(stream, token, "';' terminator expected");
    if (int status = define_macro(stream, token, kSIMPLE_MACRO, nullptr, forExpressionTerminators, true); status != 0)
        return status;
    return token->type == &kEND_OF_LINE ? 0 : refuseToken(stream, token, "EOL terminator expected");
}

void delete_stack(StackType* stack) {
    Stack_Delete(&stack);
}
using StackOwner = Tracked<StackType, delete_stack>;

} // namespace

int test_loop_conditional_statement(
    parse_stream* stream, token_element* token, DirectiveOwner loop, const token_type* const* terminators, bool live) {
    bool condition = false;
    if (live) {
        if (int status = go_to_condition(stream, loop.get()); status != 0) return status;
        if (int status = get_conditional_expression(stream, token, terminators, &condition); status != 0) return status;
        if (token->type != terminators[0]) return refuseToken(stream, token, "';' terminator expected");
    }
    if (condition) return begin_round(stream, std::move(loop));
    // The closing directive was not reached yet: it ends the dead text that begins here.
    if (loop->endPosition == 0) return pushDirective(stream, std::move(loop), false, false);
    go_to(stream, loop->endPosition, loop->endLine);
    blank_token_element(token);
    return 0;
}

int test_next_loop_iteration(parse_stream* stream, token_element* token, DirectiveOwner loop, bool live) {
    if (live) {
        if (int status = go_to_condition(stream, loop.get()); status != 0) return status;
        blank_token_element(token);
        if (int status = do_third_part(stream, token); status != 0) return status;
    }
    return test_loop_conditional_statement(stream, token, std::move(loop), forExpressionTerminators, live);
}

int do_while_op(parse_stream* stream, token_element* token) {
    DirectiveOwner loop = newDirective(token);
    return loop == nullptr ? 7 : open_loop(stream, token, std::move(loop), isTextLive(stream));
}

int do_for_op(parse_stream* stream, token_element* token) {
    DirectiveOwner loop = newDirective(token);
    if (loop == nullptr) return 7;
    const bool live = isTextLive(stream);
    if (live) {
        const int status = define_macro(stream, token, kSIMPLE_MACRO, nullptr, forExpressionTerminators, true);
        if (status != 0) return status;
        if (token->type != &kSEMICOLON) return refuseToken(stream, token, "';' terminator expected");
    }
    return open_loop(stream, token, std::move(loop), live);
}

int do_endwhile_op(parse_stream* stream, token_element* token) {
    return close_loop(stream, token);
}

int do_endfor_op(parse_stream* stream, token_element* token) {
    return close_loop(stream, token);
}

int do_break_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    const StackOwner unwound(Stack_Create());
    if (unwound == nullptr) return 7;
    if (int status = pop_nested_contexts(stream, unwound.get(), token); status != 0) return status;
    // All stay open, but dead: the closing directives still match, and the loop's own one ends it.
    topDirective(stream)->active = false;
    topDirective(stream)->branchTaken = true;
    return restore_unwound_PP_Stack(stream, unwound.get());
}

int do_continue_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    const StackOwner unwound(Stack_Create());
    if (unwound == nullptr) return 7;
    if (int status = pop_nested_contexts(stream, unwound.get(), token); status != 0) return status;
    // The position of a loop counts in its own text only.
    if (Stack_Depth(stream->root->directiveStack) <= activeContext(stream)->directiveDepthAtOpen)
        return PrintErrorLocation(stream, kMISSING_ENCLOSING_CONTEXT, kPREPROCESS_FAILURE, token, "continue");
    return next_round(stream, token, popDirective(stream), true);
}

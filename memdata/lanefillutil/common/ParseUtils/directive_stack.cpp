// directive_stack.cpp - open conditionals and loops, and what closes them.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_stack.h"

#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"
#include "ParseUtils/limits.h"
#include "SystemUtils/SystemUtils.h"

#include <utility>

using namespace memdata;

namespace {

// What each opening word is called for, and by.
struct OpeningRow {
    const token_type* type;
    const token_type* closings[4]; // ended by null
    const char* atEndOfFile;
};

constexpr const char* kCHAIN_AT_END = "expected a #else or #endif, but encountered EOF instead";
constexpr const char* kBRANCH_AT_END = "expected a #endif, but encountered EOF instead";

#define IF_CLOSINGS                                                                                                    \
    { &kPREPROCESS_ELSE_KEYWORD, &kPREPROCESS_ELIF_KEYWORD, &kPREPROCESS_ENDIF_KEYWORD, nullptr }
constexpr OpeningRow kOPENINGS[] = {
    {&kPREPROCESS_IF_KEYWORD, IF_CLOSINGS, kCHAIN_AT_END},
    {&kPREPROCESS_IFDEF_KEYWORD, IF_CLOSINGS, kCHAIN_AT_END},
    {&kPREPROCESS_IFNDEF_KEYWORD, IF_CLOSINGS, kCHAIN_AT_END},
    {&kPREPROCESS_ELIF_KEYWORD, IF_CLOSINGS, kBRANCH_AT_END},
    {&kPREPROCESS_ELSE_KEYWORD, {&kPREPROCESS_ENDIF_KEYWORD, nullptr}, kBRANCH_AT_END},
    {&kPREPROCESS_FOR_KEYWORD, {&kPREPROCESS_ENDFOR_KEYWORD, nullptr},
        "expected a #endfor, but encountered EOF instead"},
    {&kPREPROCESS_WHILE_KEYWORD, {&kPREPROCESS_ENDWHILE_KEYWORD, nullptr},
        "expected a #endwhile, but encountered EOF instead"},
};
#undef IF_CLOSINGS

struct ClosingRow {
    const token_type* type;
    const char* expected; // when nothing is open
};

constexpr ClosingRow kCLOSINGS[] = {
    {&kPREPROCESS_ELSE_KEYWORD, "a #if directive expected"},
    {&kPREPROCESS_ELIF_KEYWORD, "a #if #ifdef #ifndef or #else directive expected"},
    {&kPREPROCESS_ENDIF_KEYWORD, "a #if #ifdef #ifndef or #else directive expected"},
    {&kPREPROCESS_ENDFOR_KEYWORD, "a #for directive expected"},
    {&kPREPROCESS_ENDWHILE_KEYWORD, "a #while directive expected"},
};

const OpeningRow* opening_row(const token_type* type) {
    for (const OpeningRow& row : kOPENINGS)
        if (row.type == type) return &row;
    return nullptr;
}

int report_unopened(parse_stream* stream, const token_element* token) {
    const char* expected = "an opening directive expected";
    for (const ClosingRow& row : kCLOSINGS)
        if (row.type == token->type) expected = row.expected;
    return PrintErrorLocation(
        stream, kERROR_UNMATCHED_PREPROCESS_AND_EXPECTED, kPREPROCESS_FAILURE, token, token->text, expected);
}

int report_unclosed(parse_stream* stream, const token_element* opening) {
    const OpeningRow* row = opening_row(opening->type);
    return PrintErrorLocation(stream, kERROR_UNMATCHED_PREPROCESS_AND_EXPECTED, kPREPROCESS_FAILURE, opening,
        opening->text, row == nullptr ? kBRANCH_AT_END : row->atEndOfFile);
}

void release_element(void* element) {
    deleteDirective(static_cast<PP_Directive_Element*>(element));
}

bool is_loop(const PP_Directive_Element* element) {
    return One_Of_Tokens(element->directive->type, breakContextTerminators);
}

bool has_loop(const StackType* stack) {
    for (u32 i = 0; i < Stack_Depth(stack); ++i)
        if (is_loop(static_cast<const PP_Directive_Element*>(Stacked_Value(stack, i)))) return true;
    return false;
}

// The word without "#" and blanks.
const char* directive_word(const token_element* token) {
    const char* word = token->text;
    while (*word == '#' || *word == ' ' || *word == '\t' || *word == '\f') ++word;
    return word;
}

int push_element(StackType* stack, DirectiveOwner element) {
    const int status = Stack_Push(stack, element.get(), release_element);
    if (status == 0) element.release();
    return status;
}

DirectiveOwner pop_element(StackType* stack) {
    return DirectiveOwner(static_cast<PP_Directive_Element*>(Stack_Pop(stack, false)));
}

} // namespace

int test_matching_PP_directives(parse_stream* stream, StackType* stack, const token_element* token) {
    // What is open around the text, an included file or a macro's body, is not the text's to close.
    const u32 depthAround = activeContext(stream)->directiveDepthAtOpen;
    if (Stack_Depth(stack) <= depthAround) return report_unopened(stream, token);
    const token_element* opening = static_cast<const PP_Directive_Element*>(Stacked_Value(stack, 0))->directive;
    if (token->type == &kEND_OF_FILE) return report_unclosed(stream, opening);
    const OpeningRow* row = opening_row(opening->type);
    if (row != nullptr && One_Of_Tokens(token->type, row->closings)) return 0;
    return PrintErrorLocation(stream, kERROR_UNEXPECTED_PREPROCESS_AND_EXPECTED, kPREPROCESS_FAILURE, token,
        token->text, opening->text, opening->lineNumber);
}

int pop_nested_contexts(parse_stream* stream, StackType* unwound, const token_element* token) {
    StackType* stack = stream->root->directiveStack;
    if (!has_loop(stack))
        return PrintErrorLocation(
            stream, kMISSING_ENCLOSING_CONTEXT, kPREPROCESS_FAILURE, token, directive_word(token));
    while (!is_loop(topDirective(stream))) {
        DirectiveOwner element = pop_element(stack);
        element->active = false;
        element->branchTaken = true;
        if (int status = push_element(unwound, std::move(element)); status != 0) return status;
    }
    return 0;
}

int restore_unwound_PP_Stack(parse_stream* stream, StackType* unwound) {
    while (Stack_Depth(unwound) != 0) {
        if (int status = push_element(stream->root->directiveStack, pop_element(unwound)); status != 0) return status;
    }
    return 0;
}

void memdata::deleteDirective(PP_Directive_Element* element) {
    if (element == nullptr) return;
    delete_token_element(element->directive);
    releaseMemory(element);
}

DirectiveOwner memdata::newDirective(const token_element* token) {
    DirectiveOwner element(NEW_RECORD(PP_Directive_Element));
    if (element == nullptr) return element;
    element->directive = dup_token_element(token);
    if (element->directive == nullptr) element.reset();
    return element;
}

int memdata::pushDirective(parse_stream* stream, DirectiveOwner element, bool active, bool branchTaken) {
    StackType* stack = stream->root->directiveStack;
    const token_element* directive = element->directive;
    if (Stack_Depth(stack) >= kMAX_DIRECTIVE_DEPTH)
        return PrintErrorLocation(
            stream, kERROR_DIRECTIVES_TOO_DEEP, kPREPROCESS_FAILURE, directive, directive->text, kMAX_DIRECTIVE_DEPTH);
    element->active = active;
    element->branchTaken = branchTaken;
    return push_element(stack, std::move(element));
}

PP_Directive_Element* memdata::topDirective(const parse_stream* stream) {
    return static_cast<PP_Directive_Element*>(Stacked_Value(stream->root->directiveStack, 0));
}

DirectiveOwner memdata::popDirective(parse_stream* stream) {
    return pop_element(stream->root->directiveStack);
}

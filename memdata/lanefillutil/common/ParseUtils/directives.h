// directives.h - the directives, one operation each, and what they read their lines with.
// SPDX-License-Identifier: Apache-2.0
//
// Every operation gets the directive's token, just read, and leaves in it the last token that it has read. A line that
// has not been read to its end is skipped by do_preprocess_op. Text is dead when a conditional or loop around it is:
// directives other than those that open and close do nothing there.
// Status 0; 21 with an alert; 7; or that of reading. A status other than 0 ends the reading of the text.
#ifndef MEMDATA_PARSE_UTILS_DIRECTIVES_H
#define MEMDATA_PARSE_UTILS_DIRECTIVES_H

#include "ParseUtils/directive_stack.h"
#include "ParseUtils/macros.h"
#include "ParseUtils/preprocessor.h"
#include "ParseUtils/scanner.h"

int do_preprocess_op(parse_stream* stream, token_element* token);

int do_if_op(parse_stream* stream, token_element* token);
int do_ifdef_op(parse_stream* stream, token_element* token);
int do_ifndef_op(parse_stream* stream, token_element* token);
int do_elif_op(parse_stream* stream, token_element* token);
int do_else_op(parse_stream* stream, token_element* token);
int do_endif_op(parse_stream* stream, token_element* token);
int do_while_op(parse_stream* stream, token_element* token);
int do_endwhile_op(parse_stream* stream, token_element* token);
int do_for_op(parse_stream* stream, token_element* token);
int do_endfor_op(parse_stream* stream, token_element* token);
int do_break_op(parse_stream* stream, token_element* token);
int do_continue_op(parse_stream* stream, token_element* token);
int do_switch_op(parse_stream* stream, token_element* token); // with case, default, endswitch: nothing happens
int do_define_op(parse_stream* stream, token_element* token);
int do_set_op(parse_stream* stream, token_element* token);
int do_undef_op(parse_stream* stream, token_element* token);
int do_function_op(parse_stream* stream, token_element* token);
int do_endfunction_op(parse_stream* stream, token_element* token);
int do_return_op(parse_stream* stream, token_element* token);
int do_export_op(parse_stream* stream, token_element* token);
int do_global_op(parse_stream* stream, token_element* token);
int do_inline_macro_op(parse_stream* stream, token_element* token);
int do_include_op(parse_stream* stream, token_element* token); // reads its line to the end
int do_pragma_op(parse_stream* stream, token_element* token);
int do_error_op(parse_stream* stream, token_element* token);
int do_warning_op(parse_stream* stream, token_element* token);
int do_info_op(parse_stream* stream, token_element* token);
int do_emit_op(parse_stream* stream, token_element* token);

// The text of a message directive up to the end of its line.
//   expanded  macros in it are expanded
//   text      out: a managed string, the caller's
int output_directive_message(parse_stream* stream, token_element* token, bool expanded, char** text);

// Evaluates a condition up to one of the terminators. Macros expand, `defined` is live.
//   token      out: the terminator
//   condition  out: whether the value is not 0
int get_conditional_expression(
    parse_stream* stream, token_element* token, const token_type* const* terminators, bool* condition);

// Begins another round of a loop, or ends it.
//   loop         its endPosition is 0 at the opening directive
//   terminators  of the condition; the first one must end it
//   live         the loop may go on, and the text around it counts
int test_loop_conditional_statement(parse_stream* stream, token_element* token, memdata::DirectiveOwner loop,
    const token_type* const* terminators, bool live);
// The same at the end of a round of a #for: its third part is carried out first.
int test_next_loop_iteration(parse_stream* stream, token_element* token, memdata::DirectiveOwner loop, bool live);

// Prints what has just been read on standard output.
//   title  "Directive", "Macro", "Token"
//   macro  what the token names, null for none
void output_preprocess_trace(
    parse_stream* stream, const token_element* token, const char* title, const MacroElementType* macro);

// Copies texts of tokens up to a terminator outside of brackets, or the end of the text. Blanks at both ends are left
// out. A line end of a macro inside counts as a blank.
//   token     out: the terminator, or kEND_OF_FILE
//   brackets  two types that raise and lower the depth; null for none
//   length    out: characters of text
//   text      out: a managed string, the caller's; it can hold NUL characters
int strdup_to_token(parse_stream* stream, token_element* token, const token_type* const* brackets,
    const token_type* const* terminators, u32* length, char** text);

inline constexpr const token_type* ifExpressionTerminators[] = {&kEND_OF_LINE, nullptr};
inline constexpr const token_type* whileExpressionTerminators[] = {&kEND_OF_LINE, nullptr};
inline constexpr const token_type* macroTerminators[] = {&kEND_OF_LINE, nullptr};
inline constexpr const token_type* messageTerminators[] = {&kEND_OF_LINE, nullptr};
inline constexpr const token_type* forExpressionTerminators[] = {&kSEMICOLON, &kEND_OF_LINE, nullptr};
inline constexpr const token_type* parameterTerminators[] = {&kCOMMA, &kRIGHT_PARENTHESIS, nullptr};
inline constexpr const token_type* parameterBrackets[] = {&kLEFT_PARENTHESIS, &kRIGHT_PARENTHESIS};
inline constexpr const token_type* inLineMacroTerminators[] = {&kEND_OF_LINE, &kRIGHT_BRACES, nullptr};
inline constexpr const token_type* functionBrackets[] = {
    &kPREPROCESS_FUNCTION_KEYWORD, &kPREPROCESS_ENDFUNCTION_KEYWORD};
inline constexpr const token_type* functionTerminators[] = {&kPREPROCESS_ENDFUNCTION_KEYWORD, nullptr};
inline constexpr const token_type* breakContextTerminators[] = {
    &kPREPROCESS_FOR_KEYWORD, &kPREPROCESS_WHILE_KEYWORD, nullptr};
inline constexpr const token_type* continueContextTerminators[] = {
    &kPREPROCESS_FOR_KEYWORD, &kPREPROCESS_WHILE_KEYWORD, nullptr};

#endif

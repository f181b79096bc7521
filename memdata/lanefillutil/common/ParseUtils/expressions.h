// expressions.h - numbers written as expressions.
// SPDX-License-Identifier: Apache-2.0
//
// Values are extended floats; integers up to 64 bits are exact as long as they stand alone. The result of an
// operation passes through a double, so it is exact up to 2 to the power 53.
//
// Precedence, a higher number binds tighter, equal numbers go from left to right:
//   15 ! ~   13 / % *   12 - +   11 << >>   10 < > <= >= <~ >~   9 != == =~ !~   8 &   7 ^   6 |   5 &&   4 ||
// Required oddities, which old texts rely on: there is no unary minus ("-5" is one number, "- 5" an error, "1-2" two
// numbers); ! and ~ take a number only; << and >> do not arise from text, where they are two tokens each; string
// comparisons yield 0.
#ifndef MEMDATA_PARSE_UTILS_EXPRESSIONS_H
#define MEMDATA_PARSE_UTILS_EXPRESSIONS_H

#include "ParseUtils/streams.h"

// Evaluates from the token behind the current one.
//   token        out: what ended the expression, one of the terminators
//   value        out: set with status 0
//   terminators  ended by null
// Status 0; 3, with an alert except where a value was expected: that one is the caller's to report, at the token;
// 7; or that of reading.
int Get_Expression_Value(
    parse_stream* stream, token_element* token, long double* value, const token_type* const* terminators);

// One level of parentheses, 0 for the outermost.
int Do_Sub_Expression(parse_stream* stream, token_element* token, unsigned depth, long double* value,
    const token_type* const* terminators);
int Get_Value(parse_stream* stream, token_element* token, unsigned depth, long double* value,
    const token_type* const* terminators);
int Get_Operator(
    parse_stream* stream, token_element* token, const token_type** op, const token_type* const* terminators);

// The precedence; 1 for ")" and terminators, 0 for null and all else.
int Get_Op_Precedence(const token_type* type, const token_type* const* terminators);
// Shifts and bit operations work on the values cut to signed 64-bit integers.
double Do_Binary_Op(long double left, const token_type* op, long double right);

// The n-th element of an evaluation stack from the top; null when there is none.
void* Get_Stacked_Eval_Element(const StackType* stack, unsigned n);
int Eval_Stack_TOS_Precedence(const StackType* operators, const token_type* const* terminators);
int Eval_Stack_NOS_Precedence(const StackType* operators, const token_type* const* terminators);
// A copy of size bytes for an evaluation stack, and its releaser.
void* Eval_Element_Allocator(const void* data, unsigned long size);
void Eval_Element_Deallocator(void* element);

#endif

// expressions.cpp - numbers written as expressions: an operator-precedence evaluator over two stacks.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/expressions.h"

#include "ParseUtils/limits.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/preprocessor.h"
#include "SystemUtils/SystemUtils.h"

#include <cmath>
#include <cstring>

using namespace memdata;

namespace {

constexpr int kSYNTAX = 3;
constexpr int kCLOSING_PRECEDENCE = 1;
constexpr u32 kTOKENS_OF_STACKS = 8; // read in the time that making and filling the stacks takes

struct PrecedenceRow {
    const token_type* type;
    int precedence;
};

// Operators that bind tighter have higher numbers.
constexpr PrecedenceRow kPRECEDENCES[] = {
    {&kLOGICAL_NOT, 15},
    {&kUNARY_NEGATION, 15},
    {&kDIVIDE, 13},
    {&kMODULUS, 13},
    {&kMULTIPLY, 13},
    {&kMINUS, 12},
    {&kADDITION, 12},
    {&kLEFT_SHIFT, 11}, // these two do not arise from text
    {&kRIGHT_SHIFT, 11},
    {&kLESS_THAN, 10},
    {&kGREATER_THAN, 10},
    {&kLESS_THAN_EQUAL_TO, 10},
    {&kGREATER_THAN_EQUAL_TO, 10},
    {&kSTRING_LESS_THAN_EQUAL_TO, 10},
    {&kSTRING_GREATER_THAN_EQUAL_TO, 10},
    {&kNOT_EQUAL, 9},
    {&kLOGICAL_EQUAL, 9},
    {&kSTRING_EQUAL, 9},
    {&kSTRING_NOT_EQUAL, 9},
    {&kAND, 8},
    {&kXOR, 7},
    {&kOR, 6},
    {&kLOGICAL_AND, 5},
    {&kLOGICAL_OR, 4},
    {&kRIGHT_PARENTHESIS, kCLOSING_PRECEDENCE},
};

constexpr const token_type* kOPERATOR_CLASSES[] = {
    &kSHIFT_OP, &kSTRING_OP, &kRELATIONAL_OP, &kARITHMETIC_OP, &kUNARY_NEGATION_OP, nullptr};

struct OperatorRow {
    const token_type* type;
    double (*apply)(long double left, long double right);
};

double as_truth(bool truth) {
    return truth ? 1.0 : 0.0;
}

// Bit operations see their operands cut to whole numbers; from 2 to the power 63 on, as the unsigned pattern.
double left_shift(long double left, long double right) {
    const u64 places = unsignedFromValue(right) % 64;
    return static_cast<double>(static_cast<i64>(unsignedFromValue(left) << places));
}

double right_shift(long double left, long double right) {
    const u64 places = unsignedFromValue(right) % 64;
    return static_cast<double>(signedFromValue(left) >> places);
}

// Operators that stand in none of these rows yield 0, on purpose: strings are not compared.
constexpr OperatorRow kOPERATORS[] = {
    {&kDIVIDE, [](long double a, long double b) { return static_cast<double>(a / b); }},
    {&kMULTIPLY, [](long double a, long double b) { return static_cast<double>(a * b); }},
    {&kMINUS, [](long double a, long double b) { return static_cast<double>(a - b); }},
    {&kADDITION, [](long double a, long double b) { return static_cast<double>(a + b); }},
    {&kMODULUS, [](long double a, long double b) { return static_cast<double>(std::fmod(a, b)); }},
    {&kLEFT_SHIFT, left_shift},
    {&kRIGHT_SHIFT, right_shift},
    {&kAND, [](long double a, long double b) { return static_cast<double>(signedFromValue(a) & signedFromValue(b)); }},
    {&kXOR, [](long double a, long double b) { return static_cast<double>(signedFromValue(a) ^ signedFromValue(b)); }},
    {&kOR, [](long double a, long double b) { return static_cast<double>(signedFromValue(a) | signedFromValue(b)); }},
    {&kLESS_THAN, [](long double a, long double b) { return as_truth(a < b); }},
    {&kGREATER_THAN, [](long double a, long double b) { return as_truth(a > b); }},
    {&kLESS_THAN_EQUAL_TO, [](long double a, long double b) { return as_truth(a <= b); }},
    {&kGREATER_THAN_EQUAL_TO, [](long double a, long double b) { return as_truth(a >= b); }},
    {&kNOT_EQUAL, [](long double a, long double b) { return as_truth(a != b); }},
    {&kLOGICAL_EQUAL, [](long double a, long double b) { return as_truth(a == b); }},
    {&kLOGICAL_AND, [](long double a, long double b) { return as_truth(a != 0 && b != 0); }},
    {&kLOGICAL_OR, [](long double a, long double b) { return as_truth(a != 0 || b != 0); }},
};

void delete_stack(StackType* stack) {
    Stack_Delete(&stack);
}
using StackOwner = Tracked<StackType, delete_stack>;

template<class Element>
int push_copy(StackType* stack, const Element& element) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): of operators the pointer itself is the element
    void* copy = Eval_Element_Allocator(&element, sizeof(Element));
    if (copy == nullptr) return 7;
    const int status = Stack_Push(stack, copy, Eval_Element_Deallocator);
    if (status != 0) Eval_Element_Deallocator(copy);
    return status;
}

const token_type* stacked_operator(const StackType* stack, unsigned n) {
    const auto* element = static_cast<const token_type* const*>(Get_Stacked_Eval_Element(stack, n));
    return element == nullptr ? nullptr : *element;
}

long double stacked_value(const StackType* stack, unsigned n) {
    const auto* element = static_cast<const long double*>(Get_Stacked_Eval_Element(stack, n));
    return element == nullptr ? 0 : *element;
}

bool ends_expression(const token_type* type, const token_type* const* terminators) {
    return type == &kRIGHT_PARENTHESIS || One_Of_Tokens(type, terminators);
}

// Applies the operator under the top one to the two top values.
int reduce(StackType* operators, StackType* values) {
    Stack_Swap_TOS_NOS(operators);
    const long double result =
        Do_Binary_Op(stacked_value(values, 1), stacked_operator(operators, 0), stacked_value(values, 0));
    Stack_Pop(operators, true);
    Stack_Pop(values, true);
    Stack_Pop(values, true);
    return push_copy(values, result);
}

// Puts a value and the operator behind it on the stacks, and applies what binds at least as tight as that operator.
int take_in(StackType* operators, StackType* values, long double operand, const token_type* op,
    const token_type* const* terminators) {
    int status = push_copy(values, operand);
    if (status == 0) status = push_copy(operators, op);
    while (status == 0 &&
           Eval_Stack_TOS_Precedence(operators, terminators) <= Eval_Stack_NOS_Precedence(operators, terminators))
        status = reduce(operators, values);
    return status;
}

int refuse_depth(parse_stream* stream, const token_element* token) {
    return PrintErrorLocation(stream, kERROR_EXPRESSION_TOO_DEEP, kSYNTAX, token, kMAX_EXPRESSION_DEPTH);
}

int parenthesized_value(parse_stream* stream, token_element* token, unsigned depth, long double* value,
    const token_type* const* terminators) {
    // Expressions stand inside each other too: one may call a macro whose own directives evaluate. All count together.
    u32& open = stream->root->openParentheses;
    if (open >= kMAX_EXPRESSION_DEPTH) return refuse_depth(stream, token);
    ++open;
    const int status = Do_Sub_Expression(stream, token, depth + 1, value, terminators);
    --open;
    if (status != 0) return status;
    if (token->type == &kRIGHT_PARENTHESIS) return 0;
    return PrintErrorLocation(stream, kERROR_UNMATCHED_PAREN_AND_EXPECTED, kSYNTAX, token, "(", "end of expression");
}

// A value and the operator behind it.
int read_operand(parse_stream* stream, token_element* token, unsigned depth, long double* operand,
    const token_type** op, const token_type* const* terminators) {
    int status = Get_Value(stream, token, depth, operand, terminators);
    if (status == 0) status = Get_Operator(stream, token, op, terminators);
    if (status == 0 && depth == 0 && *op == &kRIGHT_PARENTHESIS)
        status = PrintErrorLocation(
            stream, kERROR_UNMATCHED_PAREN_AND_EXPECTED, kSYNTAX, token, token->text, "end of sub expression");
    return status;
}

// Only numbers can be negated, on purpose: "!(1)" and "!!1" are errors.
int negated_value(parse_stream* stream, token_element* token, long double* value) {
    const bool isLogical = token->type == &kLOGICAL_NOT;
    if (int status = internal_get_next_token(stream, token); status != 0) return status;
    if (!isOfClass(token->type, kNUMBER))
        return PrintErrorLocation(
            stream, kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, kSYNTAX, token, token->text, "expression value");
    *value = isLogical ? (token->value == 0 ? 1 : 0) : static_cast<long double>(~unsignedFromValue(token->value));
    return 0;
}

} // namespace

void* Eval_Element_Allocator(const void* data, unsigned long size) {
    void* element = getMemory("'void' data", size);
    if (element != nullptr) std::memcpy(element, data, size);
    return element;
}

void Eval_Element_Deallocator(void* element) {
    releaseMemory(element);
}

void* Get_Stacked_Eval_Element(const StackType* stack, unsigned n) {
    return Stacked_Value(stack, n);
}

int Get_Op_Precedence(const token_type* type, const token_type* const* terminators) {
    if (type == nullptr) return 0;
    if (One_Of_Tokens(type, terminators)) return kCLOSING_PRECEDENCE;
    for (const PrecedenceRow& row : kPRECEDENCES)
        if (row.type == type) return row.precedence;
    return 0;
}

int Eval_Stack_TOS_Precedence(const StackType* operators, const token_type* const* terminators) {
    return Get_Op_Precedence(stacked_operator(operators, 0), terminators);
}

int Eval_Stack_NOS_Precedence(const StackType* operators, const token_type* const* terminators) {
    return Get_Op_Precedence(stacked_operator(operators, 1), terminators);
}

double Do_Binary_Op(long double left, const token_type* op, long double right) {
    for (const OperatorRow& row : kOPERATORS)
        if (row.type == op) return row.apply(left, right);
    return 0.0;
}

int Get_Operator(
    parse_stream* stream, token_element* token, const token_type** op, const token_type* const* terminators) {
    if (int status = internal_get_next_token(stream, token); status != 0) return status;
    const bool isOperator = ends_expression(token->type, terminators) || One_Of_Tokens(token->type, kOPERATOR_CLASSES);
    if (!isOperator)
        return PrintErrorLocation(
            stream, kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, kSYNTAX, token, token->text, "expression operator");
    *op = token->type;
    return 0;
}

int Get_Value(parse_stream* stream, token_element* token, unsigned depth, long double* value,
    const token_type* const* terminators) {
    if (int status = internal_get_next_token(stream, token); status != 0) return status;
    if (isOfClass(token->type, kNUMBER)) {
        *value = token->value;
        return 0;
    }
    if (token->type == &kLEFT_PARENTHESIS) return parenthesized_value(stream, token, depth, value, terminators);
    if (token->type == &kLOGICAL_NOT || token->type == &kUNARY_NEGATION) return negated_value(stream, token, value);
    return kSYNTAX; // the caller knows what kind of value was meant
}

int Do_Sub_Expression(parse_stream* stream, token_element* token, unsigned depth, long double* value,
    const token_type* const* terminators) {
    long double operand = 0;
    const token_type* op = nullptr;
    if (int status = read_operand(stream, token, depth, &operand, &op, terminators); status != 0) return status;
    // Most expressions are one number: those need no stacks.
    if (ends_expression(op, terminators)) {
        *value = operand;
        return 0;
    }
    // Nor do two with an operator between them, which most conditions and steps of loops are.
    const long double first = operand;
    const token_type* firstOperator = op;
    if (int status = read_operand(stream, token, depth, &operand, &op, terminators); status != 0) return status;
    if (ends_expression(op, terminators) && Get_Op_Precedence(firstOperator, terminators) >= kCLOSING_PRECEDENCE) {
        *value = Do_Binary_Op(first, firstOperator, operand);
        return 0;
    }
    stream->root->fileTokens += kTOKENS_OF_STACKS;
    StackOwner operators(Stack_Create());
    StackOwner values(Stack_Create());
    if (operators == nullptr || values == nullptr) return 7;
    int status = take_in(operators.get(), values.get(), first, firstOperator, terminators);
    for (;;) {
        if (status == 0) status = take_in(operators.get(), values.get(), operand, op, terminators);
        if (status != 0) return status;
        if (ends_expression(stacked_operator(operators.get(), 0), terminators)) break;
        status = read_operand(stream, token, depth, &operand, &op, terminators);
    }
    *value = stacked_value(values.get(), 0);
    return 0;
}

int Get_Expression_Value(
    parse_stream* stream, token_element* token, long double* value, const token_type* const* terminators) {
    return Do_Sub_Expression(stream, token, 0, value, terminators);
}

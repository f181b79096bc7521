// directive_errors_test.cpp - what is said about directives that are wrong: the whole text of each alert.
// SPDX-License-Identifier: Apache-2.0
#include "preprocess_test.h"

namespace memdata::testing {
namespace {

using DirectiveErrors = PreprocessTest;

struct ErrorCase {
    const char* text; // the line that is wrong is its last one
    const char* message;
    size_t column; // of the caret
};

// The line with the error is the last one of the text.
void check(const ErrorCase& row, const std::string& said) {
    std::string text = row.text;
    if (text.ends_with('\n')) text.pop_back();
    const size_t lineStart = text.rfind('\n') == std::string::npos ? 0 : text.rfind('\n') + 1;
    const auto number = std::count(text.begin(), text.end(), '\n') + 1;
    const std::string expected = "\nERROR:Lanefill:" + std::string(row.message) + "\n   Line #" +
                                 std::to_string(number) + ", File \"text.bmm\".\n" + text.substr(lineStart) + "\n" +
                                 std::string(row.column, ' ') + "^\n\nstatus 21";
    EXPECT_EQ(said, expected) << row.text;
}

constexpr ErrorCase kCASES[] = {
    // Matching.
    {"#else\n", "82 - Unmatched preprocessor directive '#else', a #if directive expected.", 0},
    {"#elif 1\n", "82 - Unmatched preprocessor directive '#elif', a #if #ifdef #ifndef or #else directive expected.",
        0},
    {" #endif\n", "82 - Unmatched preprocessor directive '#endif', a #if #ifdef #ifndef or #else directive expected.",
        1},
    {"#endfor\n", "82 - Unmatched preprocessor directive '#endfor', a #for directive expected.", 0},
    {"# endwhile\n", "82 - Unmatched preprocessor directive '# endwhile', a #while directive expected.", 0},
    {"#if 1\n#else\n#else\n",
        "83 - Unexpected preprocessor directive '#else', a directive that matches '#else' of line #2 expected.", 0},
    {"#if 1\n#else\n#elif 1\n",
        "83 - Unexpected preprocessor directive '#elif', a directive that matches '#else' of line #2 expected.", 0},
    {"\n#if 1\n#endwhile\n",
        "83 - Unexpected preprocessor directive '#endwhile', a directive that matches '#if' of line #2 expected.", 0},
    {"#while 1\n#endfor\n",
        "83 - Unexpected preprocessor directive '#endfor', a directive that matches '#while' of line #1 expected.", 0},
    {"#for i 0; i < 1; i i+1\n#endif\n",
        "83 - Unexpected preprocessor directive '#endif', a directive that matches '#for' of line #1 expected.", 0},
    {"#endfunction\n", "82 - Unmatched preprocessor directive '#endfunction', a #function directive expected.", 0},
    // Names.
    {"#define 5\n", "13 - Unexpected keyword '5', macro name expected.", 8},
    {"#define\n", "13 - Unexpected keyword 'end-of-line', macro name expected.", 7},
    {"#set (\n", "13 - Unexpected keyword '(', macro name expected.", 5},
    {"#function 5()\n", "13 - Unexpected keyword '5', macro name expected.", 10},
    {"#undef 5\n", "13 - Unexpected keyword '5', macro name expected.", 7},
    {"#ifdef 5\n", "13 - Unexpected keyword '5', macro name expected.", 7},
    {"#ifndef\n", "13 - Unexpected keyword 'end-of-line', macro name expected.", 7},
    {"#export NOTHING\n", "8 - Unexpected end of line encountered, macro name expected.", 15},
    {"#global\n", "8 - Unexpected end of line encountered, macro name expected.", 7},
    // Definitions.
    {"#function F\n", "13 - Unexpected keyword 'F', illegal macro type for preprocessor directive.", 10},
    {"#set X(1)\n", "13 - Unexpected keyword '(', illegal macro type for preprocessor directive.", 6},
    {"#define X=1\n", "13 - Unexpected keyword '=', illegal token after macro name.", 9},
    {"#define F(1) x\n", "13 - Unexpected keyword '1', formal parameter name expected.", 10},
    {"#define F(a b) x\n", "13 - Unexpected keyword 'b', formal parameter name expected.", 12},
    {"#define F(a, a) x\n", "13 - Unexpected keyword 'a', formal parameter name expected.", 13},
    {"#define F(a,) x\n", "13 - Unexpected keyword ')', formal parameter name expected.", 12},
    {"#define F(a) x\n#set F 1\n",
        "13 - Unexpected keyword 'F', illegal token after macro name. Only simple macro definitions are allowed.", 5},
    {"#define A 1\n#define A 2\n",
        "84 - Illegal redefinition of macro 'A'. The macro is already defined with a different value.", 8},
    // Arguments.
    {"#define F(a) x\nF;\n", "13 - Unexpected keyword ';', opening macro '(' expected.", 1},
    {"#define F(a) x\nF()\n", "13 - Unexpected keyword ')', missing macro argument.", 2},
    {"#define F(a, b) x\nF(1, )\n", "13 - Unexpected keyword ')', missing macro argument.", 5},
    {"#define F(a, b) x\nF(,1)\n", "13 - Unexpected keyword ',', missing macro argument.", 2},
    {"#define F(a, b) x\nF(1)\n", "13 - Unexpected keyword ')', too few arguments for macro.", 3},
    {"#define F(a) x\nF(1, 2)\n", "13 - Unexpected keyword ',', too many arguments for macro.", 3},
    {"#define F() x\nF(1)\n", "13 - Unexpected keyword '1', closing macro ')' expected.", 2},
    // Loops.
    {"#for i 0\n", "13 - Unexpected keyword 'end-of-line', ';' terminator expected.", 8},
    {"#for i 0; 1\n", "13 - Unexpected keyword 'end-of-line', ';' terminator expected.", 11},
    {"#break\n", "87 - An enclosing #while or #for loop was not found for the #break statement.", 0},
    {"#if 1\n#continue\n", "87 - An enclosing #while or #for loop was not found for the #continue statement.", 0},
    // Others.
    {"x #return\n", "13 - Unexpected keyword '#return', #return directives can only be used in function macros.", 2},
    {"#{ a\n",
        "14 - Missing keyword. 'end-of-line' found, 'terminating '}' not found before the end of the line' expected.",
        4},
    {"#include x\n", "6 - Illegal token 'x', 'leading file name bracket character, '\"' or '<'' expected.", 9},
    {"#include \"x;\n", "6 - Illegal token ';', 'trailing file name bracket character, '\"' or '>'' expected.", 11},
    {"#include \"x>\n", "13 - Unexpected keyword '>', trailing file name bracket character is different then leading.",
        11},
    {"#pragma off\n", "6 - Illegal token 'off', 'comments, output, or trace #pragma type' expected.", 8},
    {"#pragma comments\n", "6 - Illegal token 'end-of-line', 'enabled, or disabled pragma mode' expected.", 16},
    {"#pragma output on\n", "6 - Illegal token 'on', 'enabled, or disabled pragma mode' expected.", 15},
    {"#pragma trace all\n", "6 - Illegal token 'all', 'preprocessor trace mode' expected.", 14},
    {"#pragma trace tokens,\n", "6 - Illegal token 'end-of-line', 'preprocessor trace mode' expected.", 21},
    {"#pragma trace macros directives\n",
        "13 - Unexpected keyword 'directives', either missing separating comma, or unknown preprocessor trace mode.",
        21},
    // Conditions.
    {"#if x\n", "6 - Illegal token 'x', 'valid conditional expression' expected.", 4},
    {"#while\n", "6 - Illegal token 'end-of-line', 'valid conditional expression' expected.", 6},
    {"#if 0\n#elif x\n", "6 - Illegal token 'x', 'valid conditional expression' expected.", 6},
};

TEST_F(DirectiveErrors, SayWhatStoodThereAndWhatWasExpected) {
    for (const ErrorCase& row : kCASES) check(row, alertsOf(row.text));
}

} // namespace
} // namespace memdata::testing

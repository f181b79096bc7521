// expressions_test.cpp - numbers written as expressions.
// SPDX-License-Identifier: Apache-2.0
#include "support/alerts.h"
#include "support/parse.h"

#include <cmath>
#include <gtest/gtest.h>
#include <ostream>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::TextReader;
using memdata::testing::tokenText;

namespace {

constexpr const token_type* kRANGE_ENDS[] = {&kCOLON, &kRIGHT_BRACKET, nullptr};

struct Outcome {
    int status;
    long double value;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << "status " << outcome.status << ", value " << static_cast<double>(outcome.value);
}

struct Evaluation {
    const char* text;
    long double value;
};

void PrintTo(const Evaluation& evaluation, std::ostream* out) {
    *out << evaluation.text;
}

class Expressions : public ::testing::TestWithParam<Evaluation> {
protected:
    Expressions() { RegisterSystemToolName("Lanefill"); }

    static Outcome evaluate(const std::string& expression) {
        TextReader text("[" + expression + "]");
        text.next();
        long double value = -99;
        const int status = Get_Expression_Value(text, text.token(), &value, kRANGE_ENDS);
        return {status, value};
    }

    SystemResources resources_;
};

constexpr Evaluation kEVALUATIONS[] = {
    {"12", 12},
    {"4+4*2", 12},
    {"4*2+4", 12},
    {"(4+4)*2", 16},
    {"((((7))))", 7},
    {"1|2==2", 1},
    {"(1|2)==2", 0},
    {"8 - 2 - 1", 5},
    {"64/4/2", 8},
    {"2*3%4", 2},
    {"1 - 2", -1},
    {"-5", -5},
    {"3 - -5", 8},
    {"10/4", 2.5L},
    {"7%3", 1},
    {"7.5%2", 1.5L},
    {"0x1000+4", 0x1004},
    {"1<2", 1},
    {"2<1", 0},
    {"2>1", 1},
    {"2>=2", 1},
    {"2<=1", 0},
    {"2!=2", 0},
    {"2==2", 1},
    {"1<2==1", 1},
    {"6&3", 2},
    {"6^3", 5},
    {"6|3", 7},
    {"1|6&3^1", 3},
    {"6.9&3.9", 2},
    {"2&&3", 1},
    {"2&&0", 0},
    {"0||3", 1},
    {"0||0", 0},
    {"1||0&&0", 1},
    {"!0", 1},
    {"!5", 0},
    {"!0.5", 0},
    {"!0+1", 2},
    {"~0", 18446744073709551615.0L},
    {"~0xFFFFFFFFFFFFFFFF", 0},
    {"~-1", 0},
    {"0xFFFFFFFFFFFFFFFF", 18446744073709551615.0L},
    {"(0xFFFFFFFFFFFFFFFF)", 18446744073709551615.0L},
    {"0xFFFFFFFFFFFFFFFF&0xFF", 255},
    {"9007199254740993+0", 9007199254740992.0L}, // a result passes through a double
    {"2<~1", 0},                                 // strings are not compared
    {"2>~1", 0},
    {"2=~2", 0},
    {"2!~3", 0},
    {"2~3", 0},
    {"2!3", 0},
};

TEST_P(Expressions, Yield) {
    EXPECT_EQ(evaluate(GetParam().text), (Outcome{0, GetParam().value}));
}

INSTANTIATE_TEST_SUITE_P(All, Expressions, ::testing::ValuesIn(kEVALUATIONS));

using ExpressionRules = Expressions;

TEST_F(ExpressionRules, DivisionByZeroIsInfinity) {
    EXPECT_TRUE(std::isinf(evaluate("1/0").value));
    EXPECT_TRUE(std::isnan(evaluate("0/0").value));
    EXPECT_TRUE(std::isnan(evaluate("1%0").value));
}

TEST_F(ExpressionRules, TheTokenIsWhatEndedTheExpression) {
    TextReader text("[1+2:3]");
    text.next();
    long double value = 0;
    EXPECT_EQ(Get_Expression_Value(text, text.token(), &value, kRANGE_ENDS), 0);
    EXPECT_EQ(tokenText(*text.token()), "COLON(:)");
    EXPECT_EQ(Get_Expression_Value(text, text.token(), &value, kRANGE_ENDS), 0);
    EXPECT_EQ(tokenText(*text.token()), "RIGHT_BRACKET(])");
    EXPECT_EQ(value, 3);
}

TEST_F(ExpressionRules, AValueThatIsNoneIsTheCallersToReport) {
    CapturedAlerts alerts;
    for (const char* text : {"", "+", "- 5", "a", "\"a\"=~\"a\"", "1<<4", "1+", "(", "(1+", "*2"})
        EXPECT_EQ(evaluate(text), (Outcome{3, -99})) << text;
    EXPECT_EQ(alerts.text(), "");
}

struct Refusal {
    const char* expression;
    const char* said;
};

TEST_F(ExpressionRules, WhatIsNoExpressionIsReported) {
    const Refusal refusals[] = {
        {"1-2", "\nERROR:Lanefill:6 - Illegal token '-2', 'expression operator' expected.\n"
                "   Line #1, File \"text.bmm\".\n[1-2]\n  ^\n\n"},
        {"1 2", "\nERROR:Lanefill:6 - Illegal token '2', 'expression operator' expected.\n"
                "   Line #1, File \"text.bmm\".\n[1 2]\n   ^\n\n"},
        {"1=2", "\nERROR:Lanefill:6 - Illegal token '=', 'expression operator' expected.\n"
                "   Line #1, File \"text.bmm\".\n[1=2]\n  ^\n\n"},
        {"!(1)", "\nERROR:Lanefill:6 - Illegal token '(', 'expression value' expected.\n"
                 "   Line #1, File \"text.bmm\".\n[!(1)]\n  ^\n\n"},
        {"!!1", "\nERROR:Lanefill:6 - Illegal token '!', 'expression value' expected.\n"
                "   Line #1, File \"text.bmm\".\n[!!1]\n  ^\n\n"},
        {"~a", "\nERROR:Lanefill:6 - Illegal token 'a', 'expression value' expected.\n"
               "   Line #1, File \"text.bmm\".\n[~a]\n  ^\n\n"},
        {"(1+2", "\nERROR:Lanefill:81 - Unmatched expression parenthesis '(', end of expression found instead.\n"
                 "   Line #1, File \"text.bmm\".\n[(1+2]\n     ^\n\n"},
        {"1+2)", "\nERROR:Lanefill:81 - Unmatched expression parenthesis ')', end of sub expression found instead.\n"
                 "   Line #1, File \"text.bmm\".\n[1+2)]\n    ^\n\n"},
    };
    for (const Refusal& refusal : refusals) {
        CapturedAlerts alerts;
        EXPECT_EQ(evaluate(refusal.expression).status, 3) << refusal.expression;
        EXPECT_EQ(alerts.text(), refusal.said) << refusal.expression;
    }
}

TEST_F(ExpressionRules, ParenthesesNestUpToTheLimit) {
    const std::string open(kMAX_EXPRESSION_DEPTH, '(');
    const std::string close(kMAX_EXPRESSION_DEPTH, ')');
    EXPECT_EQ(evaluate(open + "1" + close), (Outcome{0, 1}));
    CapturedAlerts alerts;
    EXPECT_EQ(evaluate("(" + open + "1" + close + ")").status, 3);
    const std::string said = alerts.text();
    EXPECT_EQ(said.substr(0, said.find("\n...")),
        "\nERROR:Lanefill - The limit of 1000 nested expression parentheses is reached.\n"
        "   Line #1, File \"text.bmm\".");
}

TEST_F(ExpressionRules, ManyOperatorsAreFine) {
    std::string sum = "1";
    for (int i = 0; i < 20000; ++i) sum += " + 1";
    EXPECT_EQ(evaluate(sum), (Outcome{0, 20001}));
}

TEST_F(ExpressionRules, ATextThatEndsInTheExpressionIsRefused) {
    TextReader text("[1+2");
    text.next();
    long double value = 0;
    CapturedAlerts alerts;
    EXPECT_EQ(Get_Expression_Value(text, text.token(), &value, kRANGE_ENDS), 3);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:6 - Illegal token 'end-of-file', 'expression operator' expected.\n"
                             "   Line #1, File \"text.bmm\".\n\n");
}

TEST(BinaryOperators, ShiftsWorkOnSignedIntegers) {
    EXPECT_EQ(Do_Binary_Op(1, &kLEFT_SHIFT, 4), 16);
    EXPECT_EQ(Do_Binary_Op(1, &kLEFT_SHIFT, 68), 16);
    EXPECT_EQ(Do_Binary_Op(3.9L, &kLEFT_SHIFT, 1.9L), 6);
    EXPECT_EQ(Do_Binary_Op(1, &kLEFT_SHIFT, 63), -9223372036854775808.0);
    EXPECT_EQ(Do_Binary_Op(-16, &kRIGHT_SHIFT, 2), -4);
    EXPECT_EQ(Do_Binary_Op(16, &kRIGHT_SHIFT, 66), 4);
    EXPECT_EQ(Do_Binary_Op(1, &kLEFT_SHIFT, -1), -9223372036854775808.0);
}

TEST(BinaryOperators, BitOperationsReadLargeValuesAsPatterns) {
    EXPECT_EQ(Do_Binary_Op(18446744073709551615.0L, &kAND, 18446744073709551615.0L), -1);
    EXPECT_EQ(Do_Binary_Op(INFINITY, &kOR, 0), -9223372036854775808.0);
    EXPECT_EQ(Do_Binary_Op(NAN, &kXOR, 0), -9223372036854775808.0);
}

TEST(BinaryOperators, OthersYieldZero) {
    for (const token_type* type : {&kSTRING_EQUAL, &kSTRING_NOT_EQUAL, &kSTRING_LESS_THAN_EQUAL_TO,
             &kSTRING_GREATER_THAN_EQUAL_TO, &kUNARY_NEGATION, &kLOGICAL_NOT, &kEQUAL})
        EXPECT_EQ(Do_Binary_Op(2, type, 2), 0);
    EXPECT_EQ(Do_Binary_Op(2, nullptr, 2), 0);
}

struct PrecedenceCase {
    const token_type* type;
    int precedence;
};

TEST(Precedence, FollowsTheTable) {
    constexpr PrecedenceCase kCASES[] = {
        {&kLOGICAL_NOT, 15},
        {&kUNARY_NEGATION, 15},
        {&kDIVIDE, 13},
        {&kMODULUS, 13},
        {&kMULTIPLY, 13},
        {&kMINUS, 12},
        {&kADDITION, 12},
        {&kLEFT_SHIFT, 11},
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
        {&kRIGHT_PARENTHESIS, 1},
        {&kCOLON, 1},
        {&kRIGHT_BRACKET, 1},
        {&kSEMICOLON, 0},
        {&kEQUAL, 0},
        {nullptr, 0},
    };
    for (const PrecedenceCase& c : kCASES)
        EXPECT_EQ(Get_Op_Precedence(c.type, kRANGE_ENDS), c.precedence) << memdata::testing::kindName(c.type);
}

TEST(EvaluationStack, GivesElementsFromTheTop) {
    SystemResources resources;
    StackType* stack = Stack_Create();
    for (const token_type* type : {&kADDITION, &kMULTIPLY})
        Stack_Push(stack, Eval_Element_Allocator(&type, sizeof type), Eval_Element_Deallocator);
    EXPECT_EQ(*static_cast<const token_type**>(Get_Stacked_Eval_Element(stack, 0)), &kMULTIPLY);
    EXPECT_EQ(*static_cast<const token_type**>(Get_Stacked_Eval_Element(stack, 1)), &kADDITION);
    EXPECT_EQ(Get_Stacked_Eval_Element(stack, 2), nullptr);
    EXPECT_EQ(Eval_Stack_TOS_Precedence(stack, kRANGE_ENDS), 13);
    EXPECT_EQ(Eval_Stack_NOS_Precedence(stack, kRANGE_ENDS), 12);
    Stack_Pop(stack, true);
    EXPECT_EQ(Eval_Stack_NOS_Precedence(stack, kRANGE_ENDS), 0);
    Stack_Delete(&stack);
}

} // namespace

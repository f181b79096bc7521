// scanner_test.cpp - characters to tokens.
// SPDX-License-Identifier: Apache-2.0
#include "support/alerts.h"
#include "support/allocation_faults.h"
#include "support/parse.h"

#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::TextReader;

namespace {

class Scanner : public ::testing::Test {
protected:
    Scanner() { RegisterSystemToolName("Lanefill"); }

    static std::string read(std::string_view text, u32 modes = 0, u32 base = 0) {
        TextReader reader(text);
        return reader.modes(modes).base(base).all();
    }

    SystemResources resources_;
};

constexpr u32 kLAYOUT = kMODE_WHITESPACE | kMODE_LINE_ENDS;

TEST_F(Scanner, APrefixWithoutDigitsIsAWord) {
    EXPECT_EQ(read("0x"), "IDENTIFIER_TOKEN(0x)");
}

TEST_F(Scanner, ADigitThatALetterFollowsBeginsAWord) {
    EXPECT_EQ(read("12abc"), "IDENTIFIER_TOKEN(12abc)");
}

TEST_F(Scanner, ASuffixIsAWordOfItsOwn) {
    EXPECT_EQ(read("12U"), "INTEGER_NUMBER(12) IDENTIFIER_TOKEN(U)");
    EXPECT_EQ(read("12UL"), "INTEGER_NUMBER(12) IDENTIFIER_TOKEN(UL)");
}

TEST_F(Scanner, TheBinaryPrefixIsN) {
    EXPECT_EQ(read("0b101"), "IDENTIFIER_TOKEN(0b101)");
    EXPECT_EQ(read("0n101"), "INTEGER_NUMBER(0n101)");
}

TEST_F(Scanner, LayoutThatIsNotDeliveredIsCountedLikeAnyOther) {
    TextReader dropped(" \t a\r\n \n\n b \n");
    EXPECT_EQ(dropped.all(), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b)");
    TextReader delivered(" \t a\r\n \n\n b \n");
    delivered.modes(kLAYOUT).all();
    EXPECT_EQ(dropped->fileTokens, delivered->fileTokens);
    EXPECT_EQ(get_stream_line_number(dropped), get_stream_line_number(delivered));
}

TEST_F(Scanner, BlanksAreBoundedWhetherTheyAreDeliveredOrNot) {
    const std::string longest(kMAX_TOKEN_BYTES, ' ');
    EXPECT_EQ(read(longest + "a"), "IDENTIFIER_TOKEN(a)");
    CapturedAlerts alerts;
    EXPECT_EQ(read(longest + " a"), "status 3");
    EXPECT_EQ(read(longest + " a", kLAYOUT), "status 3");
}

TEST_F(Scanner, AShiftIsTwoTokens) {
    EXPECT_EQ(read("1<<2"), "INTEGER_NUMBER(1) LESS_THAN(<) LESS_THAN(<) INTEGER_NUMBER(2)");
    EXPECT_EQ(read("1>>2"), "INTEGER_NUMBER(1) GREATER_THAN(>) GREATER_THAN(>) INTEGER_NUMBER(2)");
    EXPECT_EQ(read("<<="), "LESS_THAN(<) LESS_THAN_EQUAL_TO(<=)");
}

TEST_F(Scanner, AKeywordSetReachesAShift) {
    static constexpr token_type kTYPE{nullptr, 2, 0, 0};
    static constexpr keyword_row kROWS[] = {{"<<", &kTYPE, true}, {}};
    static token_set shifts{kROWS};
    TextReader text("1<<2", &shifts);
    EXPECT_EQ(text.all(), "INTEGER_NUMBER(1) other(<<) INTEGER_NUMBER(2)");
}

TEST_F(Scanner, NumbersKeepTheirRadixAndValue) {
    TextReader text("0x1F 1.5");
    text.next();
    EXPECT_EQ(text.token()->numberBase, 16u);
    EXPECT_EQ(text.token()->value, 31);
    EXPECT_FALSE(text.token()->caseSensitive);
    EXPECT_EQ(text.next(), "FLOAT_NUMBER(1.5)");
    EXPECT_EQ(text.token()->numberBase, 10u);
    EXPECT_EQ(text.token()->value, 1.5L);
}

TEST_F(Scanner, IntegersOfSixtyFourBitsAreExact) {
    TextReader text("18446744073709551615");
    text.next();
    EXPECT_EQ(text.token()->value, 18446744073709551615.0L);
}

TEST_F(Scanner, AMinusBelongsToTheNumberThatItTouches) {
    EXPECT_EQ(read("1-2"), "INTEGER_NUMBER(1) INTEGER_NUMBER(-2)");
    EXPECT_EQ(read("1 - 2"), "INTEGER_NUMBER(1) MINUS(-) INTEGER_NUMBER(2)");
    EXPECT_EQ(read("a-1"), "IDENTIFIER_TOKEN(a-1)");
    EXPECT_EQ(read("-0x10"), "MINUS(-) INTEGER_NUMBER(0x10)");
}

TEST_F(Scanner, TheStreamsBaseReadsDigits) {
    EXPECT_EQ(read("AB", 0, 16), "INTEGER_NUMBER(AB)");
    EXPECT_EQ(read("AG", 0, 16), "IDENTIFIER_TOKEN(AG)");
    EXPECT_EQ(read("12", 0, 2), "IDENTIFIER_TOKEN(12)");
    EXPECT_EQ(read("-", 0, 16), "MINUS(-)");
}

TEST_F(Scanner, WordsTakeDashesAndPeriodsAlong) {
    EXPECT_EQ(read("KESTREL-LE ECCH32-7 a.b x-1 _u"),
        "IDENTIFIER_TOKEN(KESTREL-LE) IDENTIFIER_TOKEN(ECCH32-7) IDENTIFIER_TOKEN(a.b) IDENTIFIER_TOKEN(x-1) "
        "IDENTIFIER_TOKEN(_u)");
}

TEST_F(Scanner, WordsAreCaseSensitive) {
    TextReader text("word");
    text.next();
    EXPECT_TRUE(text.token()->caseSensitive);
}

TEST_F(Scanner, BracketsBelongToAWordUnlessTheyHoldARange) {
    EXPECT_EQ(read("a[3]"), "IDENTIFIER_TOKEN(a[3])");
    EXPECT_EQ(read("a[3].b[2]_c"), "IDENTIFIER_TOKEN(a[3].b[2]_c)");
    EXPECT_EQ(read("a[3:0]"),
        "IDENTIFIER_TOKEN(a) LEFT_BRACKET([) INTEGER_NUMBER(3) COLON(:) INTEGER_NUMBER(0) RIGHT_BRACKET(])");
    EXPECT_EQ(read("a [3]"), "IDENTIFIER_TOKEN(a) LEFT_BRACKET([) INTEGER_NUMBER(3) RIGHT_BRACKET(])");
}

TEST_F(Scanner, AnUnfinishedBracketBelongsToTheWordToo) {
    EXPECT_EQ(read("a[3"), "IDENTIFIER_TOKEN(a[3)");
    EXPECT_EQ(read("a["), "IDENTIFIER_TOKEN(a[)");
    EXPECT_EQ(read("a[3+1]"), "IDENTIFIER_TOKEN(a[3) ADDITION(+) INTEGER_NUMBER(1) RIGHT_BRACKET(])");
}

TEST_F(Scanner, OnlySpaceTabAndFormFeedAreBlanks) {
    EXPECT_EQ(read("a \t\f b", kLAYOUT), "IDENTIFIER_TOKEN(a) WHITESPACE_TOKEN( \t\f ) IDENTIFIER_TOKEN(b)");
    EXPECT_EQ(read("a\vb", kLAYOUT), "IDENTIFIER_TOKEN(a) LITERAL_CHARACTER_TOKEN(\v) IDENTIFIER_TOKEN(b)");
}

TEST_F(Scanner, EachPairOfLineEndCharactersIsOneLineEnd) {
    EXPECT_EQ(read("a\r\nb\n\rc\nd\re", kLAYOUT),
        "IDENTIFIER_TOKEN(a) END_OF_LINE(\\n) IDENTIFIER_TOKEN(b) END_OF_LINE(\\n) IDENTIFIER_TOKEN(c) "
        "END_OF_LINE(\\n) IDENTIFIER_TOKEN(d) END_OF_LINE(\\n) IDENTIFIER_TOKEN(e)");
}

TEST_F(Scanner, LinesAreCountedByTheirEnds) {
    TextReader text("a\r\nb\n\rc\n\n\rd\r\re");
    std::string lines;
    while (text.next() != "END_OF_FILE(\\xFF)") lines += text.token()->text + std::to_string(text.token()->lineNumber);
    EXPECT_EQ(lines, "a1b2c3d5e7");
}

TEST_F(Scanner, ALineEndCountsForTheLineThatItEnds) {
    TextReader text("a\nb");
    text.modes(kLAYOUT);
    text.next();
    text.next();
    EXPECT_EQ(text.token()->lineNumber, 1u);
    text.next();
    EXPECT_EQ(text.token()->lineNumber, 2u);
}

TEST_F(Scanner, ATokenKnowsItsPlace) {
    TextReader text("one\n  two");
    text.next();
    text.next();
    EXPECT_EQ(text.token()->sourcePosition - text.token()->lineStart, 2);
    EXPECT_EQ(text.token()->lineNumber, 2u);
    EXPECT_EQ(text.token()->lineStart[0], ' ');
}

TEST_F(Scanner, TheEndOfTheTextIsDeliveredAgainAndAgain) {
    TextReader text("a");
    text.next();
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
}

TEST_F(Scanner, AFinalLineEndIsNoFailure) {
    EXPECT_EQ(read("a\n", kLAYOUT), "IDENTIFIER_TOKEN(a) END_OF_LINE(\\n)");
}

TEST_F(Scanner, TheEndMarkEndsAText) {
    TextReader text("a \xFF b");
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a)");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)"); // it is one character of the text, like any symbol
}

TEST_F(Scanner, ANulInsideATextIsALiteralCharacter) {
    TextReader text(std::string_view("a\0b", 3));
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(a)");
    EXPECT_EQ(text.next(), "LITERAL_CHARACTER_TOKEN(\\0)");
    EXPECT_EQ(text.token()->value, 0);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)");
}

TEST_F(Scanner, BytesAboveSevenBitsAreLiteralCharacters) {
    TextReader text("\xC3\xA4");
    text.next();
    EXPECT_EQ(text.token()->type, &kLITERAL_CHARACTER_TOKEN);
    EXPECT_EQ(text.token()->value, 0xC3);
    EXPECT_TRUE(text.token()->caseSensitive);
    text.next();
    EXPECT_EQ(text.token()->value, 0xA4);
}

TEST_F(Scanner, ControlCharactersWithoutAMeaningAreLiteral) {
    TextReader text("\x01\x7F");
    text.next();
    EXPECT_EQ(text.token()->value, 1);
    text.next();
    EXPECT_EQ(text.token()->value, 0x7F);
}

struct SymbolCase {
    const char* text;
    const char* tokens;
};

TEST_F(Scanner, SymbolsAreReadByTheTable) {
    constexpr SymbolCase kSYMBOLS[] = {
        {"!~ =~ >~ <~",
            "STRING_NOT_EQUAL(!~) STRING_EQUAL(=~) STRING_GREATER_THAN_EQUAL_TO(>~) STRING_LESS_THAN_EQUAL_TO(<~)"},
        {"!= ! && || ==", "NOT_EQUAL(!=) LOGICAL_NOT(!) LOGICAL_AND(&&) LOGICAL_OR(||) LOGICAL_EQUAL(==)"},
        {">= > <= <", "GREATER_THAN_EQUAL_TO(>=) GREATER_THAN(>) LESS_THAN_EQUAL_TO(<=) LESS_THAN(<)"},
        {"%= &= *= += -= /=",
            "MOD_EQUAL(%=) AND_EQUAL(&=) MULTIPLY_EQUAL(*=) PLUS_EQUAL(+=) MINUS_EQUAL(-=) DIVIDE_EQUAL(/=)"},
        {"^= |= =", "XOR_EQUAL(^=) OR_EQUAL(|=) EQUAL(=)"},
        {"++ -- ->", "PLUS_PLUS(++) MINUS_MINUS(--) POINTER_INDIRECT(->)"},
        {"+ - * / % & | ^ ~",
            "ADDITION(+) MINUS(-) MULTIPLY(*) DIVIDE(/) MODULUS(%) AND(&) OR(|) XOR(^) UNARY_NEGATION(~)"},
        {"# $ ( ) ,", "POUND_SIGN(#) DOLLAR_SIGN($) LEFT_PARENTHESIS(() RIGHT_PARENTHESIS()) COMMA(,)"},
        {".. . : ; ?", "FILE_ABOVE_DIR_TOKEN(..) PERIOD(.) COLON(:) SEMICOLON(;) QUESTION_MARK(?)"},
        {"@ [ ] ` { }", "AT_SIGN(@) LEFT_BRACKET([) RIGHT_BRACKET(]) TICK_MARK(`) LEFT_BRACES({) RIGHT_BRACES(})"},
        {"!=~", "NOT_EQUAL(!=) UNARY_NEGATION(~)"},
        {"---", "MINUS_MINUS(--) MINUS(-)"},
        {"...", "FILE_ABOVE_DIR_TOKEN(..) PERIOD(.)"},
    };
    for (const SymbolCase& c : kSYMBOLS) EXPECT_EQ(read(c.text), c.tokens) << c.text;
}

TEST_F(Scanner, QuotesArePunctuationOnDemand) {
    EXPECT_EQ(read("\"a'", kMODE_PLAIN_QUOTES), "STRING_QUOTE(\") IDENTIFIER_TOKEN(a) CHARACTER_QUOTE(')");
}

TEST_F(Scanner, ADirectiveIsTheWordBehindThePoundSign) {
    TextReader text("#if # \t endif #define-x #iff #");
    text.modes(kMODE_NO_DIRECTIVES);
    EXPECT_EQ(text.next(), "PREPROCESS_IF_KEYWORD(#if)");
    EXPECT_EQ(text.next(), "PREPROCESS_ENDIF_KEYWORD(# \t endif)");
    EXPECT_EQ(text.next(), "PREPROCESS_DEFINE_KEYWORD(#define)");
    EXPECT_EQ(text.next(), "MINUS(-)");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(x)");
    EXPECT_EQ(text.next(), "POUND_SIGN(#)");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(iff)");
    EXPECT_EQ(text.next(), "POUND_SIGN(#)");
}

TEST_F(Scanner, DirectivesCompareCase) {
    EXPECT_EQ(read("#IF", kMODE_NO_DIRECTIVES), "POUND_SIGN(#) IDENTIFIER_TOKEN(IF)");
}

TEST_F(Scanner, ABraceBehindThePoundSignOpensAnInlineMacro) {
    TextReader text("#{ # {");
    TokenOwner token(get_token_element());
    parse_token(text, token.get());
    EXPECT_EQ(memdata::testing::tokenText(*token), "PREPROCESS_INLINE_MACRO_KEYWORD(#{)");
    parse_token(text, token.get());
    parse_token(text, token.get());
    EXPECT_EQ(memdata::testing::tokenText(*token), "PREPROCESS_INLINE_MACRO_KEYWORD(# {)");
}

TEST_F(Scanner, APasteOutsideOfMacrosIsALineComment) {
    EXPECT_EQ(read("## whatever it's\nb"), "IDENTIFIER_TOKEN(b)");
    EXPECT_EQ(read("a # # b\nc"), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(c)");
}

TEST_F(Scanner, APasteInAMacroIsAPaste) {
    TextReader text("");
    push_parse_MemoryFile_stream("m", "a##b", 4, text, kCONTEXT_MACRO_BODY, nullptr, nullptr, nullptr);
    TokenOwner token(get_token_element());
    parse_token(text, token.get());
    parse_token(text, token.get());
    EXPECT_EQ(memdata::testing::tokenText(*token), "PREPROCESS_CONCAT_KEYWORD(##)");
}

TEST_F(Scanner, KeywordsOfTheContextComeAheadOfOperators) {
    TextReader text("*/a");
    push_keyword_stream(text, &instance_path_token_set);
    EXPECT_EQ(text.all(), "RELATIVE_INSTANCE_PATH_TOKEN(*/) IDENTIFIER_TOKEN(a)");
}

TEST_F(Scanner, BuiltInWordsComeAheadOfKeywords) {
    static constexpr token_type kTYPE{nullptr, 2, 0, 0};
    static constexpr keyword_row kROWS[] = {{"true", &kTYPE, true}, {"on", &kTYPE, true}, {}};
    static token_set words{kROWS};
    TextReader text("true on", &words);
    text.modes(kMODE_NO_MACROS);
    EXPECT_EQ(text.all(), "PREPROCESS_TRUE_KEYWORD(true) other(on)");
}

TEST_F(Scanner, WordsAreIdentifiersWhenNotLookedUp) {
    static constexpr token_type kTYPE{nullptr, 2, 0, 0};
    static constexpr keyword_row kROWS[] = {{"on", &kTYPE, true}, {"<<", &kTYPE, true}, {}};
    static token_set words{kROWS};
    TextReader text("true on <<", &words);
    text->noKeywordLookup = true;
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(true) IDENTIFIER_TOKEN(on) other(<<)");
}

TEST_F(Scanner, ATextWithoutATerminatorIsNotReadPastItsEnd) {
    for (const char* text : {"0x", "a", "a[", "-", "\\", "#", "# ", "#if", "\"a", "\"a\\", "'", "/", "/*", "//", "/* *",
             "\r", "\n", "1.", "!", "..", "<", "a\\\n", "\"\\x", "\\1", "\\x4"}) {
        CapturedAlerts alerts;
        read(text);
        read(text, kMODE_RAW_BACKSLASH | kLAYOUT | kMODE_COMMENTS | kMODE_NO_DIRECTIVES);
        read(text, kMODE_PLAIN_QUOTES, 16);
    }
}

TEST_F(Scanner, AWordOfTheLimitIsRead) {
    const std::string word(kMAX_TOKEN_BYTES, 'a');
    TextReader text(word);
    text.next();
    EXPECT_EQ(text.token()->length, kMAX_TOKEN_BYTES);
}

TEST_F(Scanner, ALongerWordIsRefusedAndPassedOver) {
    const std::string word = " " + std::string(kMAX_TOKEN_BYTES + 1, '1') + "\nb";
    TextReader text(word);
    CapturedAlerts alerts;
    EXPECT_EQ(text.next(), "status 3");
    const std::string said = alerts.text();
    EXPECT_EQ(said.substr(0, said.find(" 11")),
        "\nERROR:Lanefill - One word or text is longer than the limit of 1048576 bytes.\n"
        "   Line #1, File \"text.bmm\".\n");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)");
}

TEST_F(Scanner, ManyOpenBracketsAreLookedThroughOnce) {
    std::string brackets;
    for (int i = 0; i < 60000; ++i) brackets += "a[";
    TextReader text(brackets + ":");
    u32 count = 0;
    while (text.next() != "END_OF_FILE(\\xFF)") ++count;
    EXPECT_EQ(count, 120001u);
}

// Tokens of a pool without texts: none may be taken for another word because there was no memory for it.
TEST(ScannerFaults, AWordThatFindsNoMemoryIsNotReadAsAnother) {
    const auto sweep = memdata::testing::sweepAllocationFaults([] {
        int status = InitializeSystemResources();
        EnablePrintAlerts(0);
        parse_stream* stream = nullptr;
        if (status == 0) status = open_parse_MemoryFile("t", "defined;x", 9, nullptr, nullptr, nullptr, &stream);
        const token_type* const expected[] = {&kPREPROCESS_DEFINED_KEYWORD, &kSEMICOLON, &kIDENTIFIER_TOKEN};
        for (const token_type* type : expected) {
            token_element* cold = status == 0 ? get_token_element() : nullptr; // kept: the next one has no text either
            if (status == 0) status = cold == nullptr ? 7 : parse_token(stream, cold);
            if (status == 0) {
                EXPECT_EQ(cold->type, type);
            }
        }
        close_parse_stream(&stream);
        FinalizeSystemResources();
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 5u);
}

TEST_F(Scanner, ReadingAllocatesNothingPerToken) {
    std::string line =
        "ram/lane_3 RAMB16 [7:0] [0x1000:4095] INPUT = \"f.mem\" LOC = X3Y7; // lane\n/* c */ 1.5 'x' # \\n\n";
    std::string many;
    while (many.size() < 60 * 6000) many += line;
    TextReader text(many);
    text.modes(kLAYOUT);
    for (int i = 0; i < 5000; ++i) text.next();
    const u64 before = trackedAllocationCount();
    u32 count = 0;
    do {
        ASSERT_EQ(get_next_token(text, text.token()), 0);
        ++count;
    } while (text.token()->type != &kEND_OF_FILE);
    EXPECT_GT(count, 100000u);
    EXPECT_EQ(trackedAllocationCount(), before);
}

} // namespace

// quoted_test.cpp - strings and texts in quotes, escapes, joined strings.
// SPDX-License-Identifier: Apache-2.0
#include "support/alerts.h"
#include "support/parse.h"

#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::TextReader;

namespace {

constexpr u32 kLAYOUT = kMODE_WHITESPACE | kMODE_LINE_ENDS;

class Quoted : public ::testing::Test {
protected:
    Quoted() { RegisterSystemToolName("Lanefill"); }

    static std::string read(std::string_view text, u32 modes = 0) {
        TextReader reader(text);
        return reader.modes(modes).all();
    }

    SystemResources resources_;
};

TEST_F(Quoted, TheTextIsWhatStandsBetweenTheQuotes) {
    EXPECT_EQ(read("\"a b\" 'c \"d'"), "QUOTED_STRING_TOKEN(a b) QUOTED_TEXT_TOKEN(c \"d)");
}

TEST_F(Quoted, AnEmptyStringHasAnEmptyText) {
    TextReader text("\"\" ''");
    EXPECT_EQ(text.next(), "QUOTED_STRING_TOKEN()");
    ASSERT_NE(text.token()->text, nullptr);
    EXPECT_TRUE(text.token()->caseSensitive);
    EXPECT_EQ(text.next(), "QUOTED_TEXT_TOKEN()");
}

TEST_F(Quoted, EscapesAreReplaced) {
    EXPECT_EQ(read(R"("\"\'\\")"), "QUOTED_STRING_TOKEN(\"'\\)");
    EXPECT_EQ(read(R"("\a\b\f\r\t\v")"), "QUOTED_STRING_TOKEN(\a\b\f\r\t\v)");
    EXPECT_EQ(read(R"("\n")"), "QUOTED_STRING_TOKEN(\\n)");
    EXPECT_EQ(read(R"("\101\1012\7")"), "QUOTED_STRING_TOKEN(AA2\a)");
    EXPECT_EQ(read(R"("\x41\X414\xg")"), "QUOTED_STRING_TOKEN(AA4xg)");
    EXPECT_EQ(read(R"("\q")"), "QUOTED_STRING_TOKEN(q)");
    EXPECT_EQ(read(R"("a\0b")"), "QUOTED_STRING_TOKEN(a\\0b)");
}

TEST_F(Quoted, AnEscapedQuoteDoesNotEndTheString) {
    EXPECT_EQ(read(R"("a\"b" c)"), "QUOTED_STRING_TOKEN(a\"b) IDENTIFIER_TOKEN(c)");
    EXPECT_EQ(read(R"("a\\" c)"), "QUOTED_STRING_TOKEN(a\\) IDENTIFIER_TOKEN(c)");
}

TEST_F(Quoted, RawStringsEndAtTheNextQuote) {
    EXPECT_EQ(read(R"("c:\dir\")", kMODE_RAW_BACKSLASH), R"(QUOTED_STRING_TOKEN(c:\dir\))");
    EXPECT_EQ(read(R"("a\n" b)", kMODE_RAW_BACKSLASH), "QUOTED_STRING_TOKEN(a\\n) IDENTIFIER_TOKEN(b)");
}

TEST_F(Quoted, ABackslashAtTheEndOfALineContinuesTheString) {
    TextReader text("\"a\\\r\n\n\rb\" c\nd");
    EXPECT_EQ(text.next(), "QUOTED_STRING_TOKEN(ab)");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(c)");
    EXPECT_EQ(text.token()->lineNumber, 3u);
    EXPECT_EQ(text.token()->sourcePosition - text.token()->lineStart, 3);
    text.next();
    EXPECT_EQ(text.token()->lineNumber, 4u);
}

TEST_F(Quoted, NulCharactersStayInTheText) {
    EXPECT_EQ(read(std::string_view("\"a\0b\\n\"", 7)), "QUOTED_STRING_TOKEN(a\\0b\\n)");
}

TEST_F(Quoted, BytesAboveSevenBitsStayInTheText) {
    EXPECT_EQ(read("\"\xC3\xA4\""), "QUOTED_STRING_TOKEN(\xC3\xA4)");
}

TEST_F(Quoted, AnUnclosedStringEndsAtTheEndOfItsLine) {
    TextReader text("x = \"a b\nnext");
    text.next();
    text.next();
    CapturedAlerts alerts;
    EXPECT_EQ(text.next(), "status 3");
    EXPECT_EQ(alerts.text(), "\n"
                             "ERROR:Lanefill:111 - Missing symbol. 'end-of-line' found, '\"' expected.\n"
                             "   Line #1, File \"text.bmm\".\n"
                             "x = \"a b\n"
                             "    ^\n"
                             "\n");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(next)");
    EXPECT_EQ(text.token()->lineNumber, 2u);
}

TEST_F(Quoted, AnUnclosedTextEndsAtTheEndOfTheFile) {
    TextReader text("'a b");
    CapturedAlerts alerts;
    EXPECT_EQ(text.next(), "status 3");
    EXPECT_EQ(alerts.text(), "\n"
                             "ERROR:Lanefill:111 - Missing symbol. 'end-of-file' found, ''' expected.\n"
                             "   Line #1, File \"text.bmm\".\n"
                             "'a b\n"
                             "^\n"
                             "\n");
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
}

TEST_F(Quoted, AStringWithABackslashAtTheVeryEndIsUnclosed) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("\"a\\"), "status 3");
}

TEST_F(Quoted, TheEndMarkEndsAString) {
    TextReader text("\"a\xFF\" b");
    CapturedAlerts alerts;
    EXPECT_EQ(text.next(), "status 3");
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
}

TEST_F(Quoted, StringsAreBounded) {
    TextReader fits("\"" + std::string(kMAX_TOKEN_BYTES, 'a') + "\"");
    EXPECT_EQ(fits.next().size(), std::string("QUOTED_STRING_TOKEN()").size() + kMAX_TOKEN_BYTES);
    TextReader tooLong("\"" + std::string(kMAX_TOKEN_BYTES + 1, 'a') + "\" b");
    CapturedAlerts alerts;
    EXPECT_EQ(tooLong.next(), "status 3");
    EXPECT_EQ(tooLong.next(), "IDENTIFIER_TOKEN(b)");
}

TEST_F(Quoted, AdjacentStringsAreJoined) {
    EXPECT_EQ(read("\"a\" \t \"b\"\n\n\"c\"\"d\" e"), "QUOTED_STRING_TOKEN(abcd) IDENTIFIER_TOKEN(e)");
}

TEST_F(Quoted, StringsStayApartOnDemand) {
    EXPECT_EQ(read("\"a\" \"b\"", kMODE_NO_JOINING), "QUOTED_STRING_TOKEN(a) QUOTED_STRING_TOKEN(b)");
}

TEST_F(Quoted, TextsInSingleQuotesAreNotJoined) {
    EXPECT_EQ(read("'a' 'b' \"c\" 'd'"),
        "QUOTED_TEXT_TOKEN(a) QUOTED_TEXT_TOKEN(b) QUOTED_STRING_TOKEN(c) QUOTED_TEXT_TOKEN(d)");
}

TEST_F(Quoted, ACommentBetweenStringsDoesNotStopTheirJoining) {
    EXPECT_EQ(read("\"a\" /* x */ \"b\" // y\n\"c\" ## z\n\"d\" e"), "QUOTED_STRING_TOKEN(abcd) IDENTIFIER_TOKEN(e)");
}

TEST_F(Quoted, ManyCommentsBehindAStringAreLookedThroughOnce) {
    std::string comments;
    for (int i = 0; i < 100000; ++i) comments += "/**/\n";
    TextReader text("\"a\" " + comments + "b");
    EXPECT_STREQ(one_token_look_ahead(text, false, nullptr)->text, "a");
    EXPECT_EQ(text.all(), "QUOTED_STRING_TOKEN(a) IDENTIFIER_TOKEN(b)");
}

TEST_F(Quoted, BlanksAndLineEndsBehindTheLastStringAreDelivered) {
    EXPECT_EQ(read("\"a\"  \"b\" \n e", kLAYOUT),
        "QUOTED_STRING_TOKEN(ab) WHITESPACE_TOKEN( ) END_OF_LINE(\\n) WHITESPACE_TOKEN( ) IDENTIFIER_TOKEN(e)");
}

TEST_F(Quoted, ACommentBehindTheLastStringIsDelivered) {
    EXPECT_EQ(read("\"a\" /* b */ c", kLAYOUT | kMODE_COMMENTS),
        "QUOTED_STRING_TOKEN(a) WHITESPACE_TOKEN( ) COMMENT_BLOCK_TOKEN(/* b */) WHITESPACE_TOKEN( ) "
        "IDENTIFIER_TOKEN(c)");
}

TEST_F(Quoted, AFailureBehindAStringComesAfterTheString) {
    TextReader text("\"a\" \"b\nc");
    CapturedAlerts alerts;
    EXPECT_EQ(text.next(), "QUOTED_STRING_TOKEN(a)");
    EXPECT_EQ(text.next(), "status 3");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(c)");
}

TEST_F(Quoted, JoinedStringsAreBounded) {
    const std::string half = "\"" + std::string(kMAX_TOKEN_BYTES / 2, 'a') + "\" ";
    TextReader fits(half + half);
    fits.next();
    EXPECT_EQ(fits.token()->length, kMAX_TOKEN_BYTES);
    TextReader tooLong(half + half + "\"b\" c");
    CapturedAlerts alerts;
    EXPECT_EQ(tooLong.next(), "status 3");
}

TEST_F(Quoted, ABackslashJoinsLines) {
    EXPECT_EQ(read("a\\\r\nb\\\n\nc", kLAYOUT),
        "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b) END_OF_LINE(\\n) IDENTIFIER_TOKEN(c)");
}

TEST_F(Quoted, JoinedLinesAreCounted) {
    TextReader text("a\\\nb");
    text.next();
    text.next();
    EXPECT_EQ(text.token()->lineNumber, 2u);
}

TEST_F(Quoted, ABackslashOutsideOfStringsMakesALiteralCharacter) {
    TextReader text(R"(\n \x41 \101 \q \)");
    EXPECT_EQ(text.next(), "LITERAL_CHARACTER_TOKEN(\\n)");
    EXPECT_EQ(text.token()->value, 10);
    EXPECT_EQ(text.next(), "LITERAL_CHARACTER_TOKEN(A)");
    EXPECT_EQ(text.token()->value, 65);
    EXPECT_EQ(text.next(), "LITERAL_CHARACTER_TOKEN(A)");
    EXPECT_EQ(text.next(), "LITERAL_CHARACTER_TOKEN(q)");
    EXPECT_EQ(text.next(), "LITERAL_CHARACTER_TOKEN(\\)");
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
}

TEST_F(Quoted, ARawBackslashIsASymbol) {
    EXPECT_EQ(read("a\\\nb", kMODE_RAW_BACKSLASH | kMODE_LINE_ENDS),
        "IDENTIFIER_TOKEN(a) BACK_SLASH(\\) END_OF_LINE(\\n) IDENTIFIER_TOKEN(b)");
}

} // namespace

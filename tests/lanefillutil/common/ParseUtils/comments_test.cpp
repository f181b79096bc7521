// comments_test.cpp - comments of one line and of many, which nest.
// SPDX-License-Identifier: Apache-2.0
#include "support/alerts.h"
#include "support/parse.h"

#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::TextReader;

namespace {

class Comments : public ::testing::Test {
protected:
    Comments() { RegisterSystemToolName("Lanefill"); }

    static std::string read(std::string_view text, u32 modes = 0) {
        TextReader reader(text);
        return reader.modes(modes).all();
    }

    SystemResources resources_;
};

TEST_F(Comments, ACommentLeavesNothing) {
    EXPECT_EQ(read("a/* b */c // d\ne"), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(c) IDENTIFIER_TOKEN(e)");
}

TEST_F(Comments, CommentsNest) {
    EXPECT_EQ(read("/* /* */ */ a"), "IDENTIFIER_TOKEN(a)");
    EXPECT_EQ(read("/* /* */ */ a", kMODE_COMMENTS), "COMMENT_BLOCK_TOKEN(/* /* */ */) IDENTIFIER_TOKEN(a)");
}

TEST_F(Comments, ALineCommentLeavesTheLineEnd) {
    EXPECT_EQ(read("a // b\nc", kMODE_LINE_ENDS), "IDENTIFIER_TOKEN(a) END_OF_LINE(\\n) IDENTIFIER_TOKEN(c)");
}

TEST_F(Comments, ALineCommentEndsWithItsLineWhateverItHolds) {
    EXPECT_EQ(read("// it's \"open /* \\\na"), "IDENTIFIER_TOKEN(a)");
}

TEST_F(Comments, CommentsAreDeliveredOnDemand) {
    EXPECT_EQ(read("a /*b\r\nc*/ // d", kMODE_COMMENTS),
        "IDENTIFIER_TOKEN(a) COMMENT_BLOCK_TOKEN(/*b\\nc*/) COMMENT_BLOCK_TOKEN(// d)");
}

TEST_F(Comments, QuotesInCommentsAreNothingSpecial) {
    EXPECT_EQ(read("/* it's \" */ a"), "IDENTIFIER_TOKEN(a)");
}

TEST_F(Comments, DirectivesInCommentsAreNothingSpecial) {
    EXPECT_EQ(read("/* #if ## #{ */ a", kMODE_NO_DIRECTIVES), "IDENTIFIER_TOKEN(a)");
}

TEST_F(Comments, StarsAheadOfTheEndDoNotHideIt) {
    EXPECT_EQ(read("/**/ a /***/ b /****/ c"), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b) IDENTIFIER_TOKEN(c)");
}

TEST_F(Comments, TwoSlashesAreOneSymbolInAComment) {
    EXPECT_EQ(read("/* //* */ a"), "IDENTIFIER_TOKEN(a)");
    EXPECT_EQ(read("/* //*/ a"), "IDENTIFIER_TOKEN(a)");
    EXPECT_EQ(read("/*/ */ a"), "IDENTIFIER_TOKEN(a)");
}

TEST_F(Comments, KeywordSymbolsDoNotHideTheEnd) {
    TextReader text("/* a */ */b");
    push_keyword_stream(text, &instance_path_token_set);
    EXPECT_EQ(text.all(), "RELATIVE_INSTANCE_PATH_TOKEN(*/) IDENTIFIER_TOKEN(b)");
}

TEST_F(Comments, LinesInCommentsAreCounted) {
    TextReader text("/*\n\n\r\n*/ a // b\nc");
    text.next();
    EXPECT_EQ(text.token()->lineNumber, 4u);
    EXPECT_EQ(text.token()->sourcePosition - text.token()->lineStart, 3);
    text.next();
    EXPECT_EQ(text.token()->lineNumber, 5u);
}

TEST_F(Comments, AStrayEndIsLeftToTheReader) {
    EXPECT_EQ(read("a */ b"), "IDENTIFIER_TOKEN(a) END_C_COMMENT(*/) IDENTIFIER_TOKEN(b)");
}

TEST_F(Comments, AnOpenCommentRunsToTheEndAndIsReportedWhenTheStreamIsClosed) {
    TextReader text("a\n b /* c /* d */\ne");
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b)");
    EXPECT_EQ(get_comment_nest_level(text), 1u);
    CapturedAlerts alerts;
    EXPECT_EQ(text.close(), 21);
    EXPECT_EQ(alerts.text(),
        "\n"
        "ERROR:Lanefill:39 - Unmatched nested C style comment. A closing '*/' was expected before the end of the file.\n"
        "   Line #2, File \"text.bmm\".\n"
        " b /* c /* d */\n"
        "   ^\n"
        "\n");
}

TEST_F(Comments, AnOpenCommentDeliversNothing) {
    TextReader text("/* a");
    text.modes(kMODE_COMMENTS);
    EXPECT_EQ(text.all(), "");
    CapturedAlerts alerts;
    EXPECT_EQ(text.close(), 21);
}

TEST_F(Comments, AStreamThatIsClosedAheadOfItsEndSaysNothing) {
    TextReader text("a b /* c");
    text.next();
    CapturedAlerts alerts;
    EXPECT_EQ(text.close(), 0);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Comments, AnOpenCommentUnderAnOverlayIsReportedToo) {
    TextReader text("a /* b");
    push_keyword_stream(text, &instance_path_token_set);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a)");
    pop_parse_stream(text);
    EXPECT_EQ(get_comment_nest_level(text), 1u);
    CapturedAlerts alerts;
    EXPECT_EQ(text.close(), 21);
    EXPECT_NE(alerts.text().find("   Line #1, File \"text.bmm\".\na /* b\n  ^\n"), std::string::npos);
}

TEST_F(Comments, TheEndMarkEndsAnOpenComment) {
    TextReader text("/* a \xFF b */");
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
    EXPECT_EQ(get_comment_nest_level(text), 1u);
    CapturedAlerts alerts;
    EXPECT_EQ(text.close(), 21);
}

TEST_F(Comments, DeepNestingIsCounted) {
    std::string text;
    for (int i = 0; i < 200000; ++i) text += "/*";
    for (int i = 0; i < 200000; ++i) text += "*/";
    EXPECT_EQ(read(text + "a"), "IDENTIFIER_TOKEN(a)");
}

TEST_F(Comments, OnlyDeliveredCommentsAreBounded) {
    const std::string comment = "/*" + std::string(kMAX_TOKEN_BYTES, 'a') + "*/ b";
    EXPECT_EQ(read(comment), "IDENTIFIER_TOKEN(b)");
    TextReader text(comment);
    text.modes(kMODE_COMMENTS);
    CapturedAlerts alerts;
    EXPECT_EQ(text.next(), "status 3");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)");
}

} // namespace

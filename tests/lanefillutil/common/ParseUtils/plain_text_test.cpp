// plain_text_test.cpp - when the text of a stream may be looked at directly, and how the scanner goes on behind it.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/SystemUtils.h"
#include "SystemUtils/alert_location.h"
#include "support/parse.h"

#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::TextReader;

namespace {

class PlainTextAhead : public ::testing::Test {
protected:
    PlainTextAhead() { RegisterSystemToolName("Lanefill"); }

    // The text ahead, or "none".
    static std::string ahead(TextReader& text) {
        PlainText plain{};
        return plainTextAhead(text, &plain) ? std::string(plain.place.at, plain.end) : "none";
    }

    SystemResources resources_;
};

TEST_F(PlainTextAhead, AFileShowsWhatWasNotReadYet) {
    TextReader text("12 34");
    EXPECT_EQ(ahead(text), "12 34");
    text.next();
    EXPECT_EQ(ahead(text), " 34");
}

TEST_F(PlainTextAhead, QueuedTokensComeFirst) {
    TextReader text("12 34");
    look_ahead_stream_tokens(text, 0);
    EXPECT_EQ(ahead(text), "none");
    text.next();
    EXPECT_EQ(ahead(text), " 34");
}

TEST_F(PlainTextAhead, BodiesOfMacrosAreReadByTheScanner) {
    TextReader text("#define X 1 2\nX 3 4");
    EXPECT_EQ(text.next(), "INTEGER_NUMBER(1)");
    EXPECT_EQ(ahead(text), "none");
    text.next();
    text.next();
    EXPECT_EQ(ahead(text), " 4");
}

TEST_F(PlainTextAhead, RescannedTextsAreReadByTheScanner) {
    TextReader text("3");
    ASSERT_EQ(push_parse_MemoryFile_stream("rescan", "1 2", 3, text, kCONTEXT_RESCAN, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(ahead(text), "none");
}

TEST_F(PlainTextAhead, DeadTextIsReadByTheScanner) {
    TextReader text("1 2");
    PP_Directive_Element condition{};
    ASSERT_EQ(Stack_Push(text->root->directiveStack, &condition, nullptr), 0);
    EXPECT_EQ(ahead(text), "none");
    condition.active = true;
    EXPECT_EQ(ahead(text), "1 2");
    Stack_Pop(text->root->directiveStack, false);
}

TEST_F(PlainTextAhead, BlanksLineEndsTracesAndDiscardingAreTheScanners) {
    for (const u32 mode : {kMODE_WHITESPACE, kMODE_LINE_ENDS, kMODE_DISCARD, kMODE_TRACE_TOKENS}) {
        TextReader text("1 2");
        text.modes(mode);
        EXPECT_EQ(ahead(text), "none") << mode;
    }
}

TEST_F(PlainTextAhead, TheScannerGoesOnAtThePlaceWithItsLine) {
    TextReader text("1 2\n3 x 4");
    PlainText plain{};
    ASSERT_TRUE(plainTextAhead(text, &plain));
    EXPECT_EQ(plain.place.lineNumber, 1u);
    continueAt(text, {plain.place.at + 5, plain.place.at + 4, 2});
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(x)");
    EXPECT_EQ(CreateFileLocations(text, text.token()), "   Line #2, File \"text.bmm\".\n3 x 4\n  ^\n");
}

} // namespace

// stream_modes_test.cpp - modes, number bases and states, and how they pass from context to context.
// SPDX-License-Identifier: Apache-2.0
#include "streams_test.h"

namespace memdata::testing {
namespace {

class StreamModes : public StreamTest {};

TEST_F(StreamModes, APushedTextTakesOverModesAndBase) {
    TextReader text("a");
    text.modes(kMODE_COMMENTS).base(16);
    text->noKeywordLookup = true;
    pushText(text, "b");
    EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, true));
    EXPECT_EQ(get_stream_number_base(text), 16u);
    EXPECT_TRUE(activeContext(text)->noKeywordLookup);
}

TEST_F(StreamModes, ModesOfAnAutomaticTextStayThere) {
    TextReader text("a");
    pushText(text, "b");
    text.modes(kMODE_COMMENTS);
    pop_parse_stream(text);
    EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, false));
}

TEST_F(StreamModes, ModesOfAnOverlayGoDownWithIt) {
    TextReader text("a");
    push_keyword_stream(text, &gSetA);
    text.modes(kMODE_COMMENTS);
    pop_parse_stream(text);
    EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, true));
}

TEST_F(StreamModes, TheNumberBaseAlwaysGoesDown) {
    TextReader text("a");
    pushText(text, "b");
    EXPECT_EQ(set_stream_number_base(text, 2), 0u);
    pop_parse_stream(text);
    EXPECT_EQ(get_stream_number_base(text), 2u);
}

TEST_F(StreamModes, BlanksAndLineEndsOfAMacroBodyAreNotDelivered) {
    TextReader text("d");
    text.modes(kMODE_WHITESPACE | kMODE_LINE_ENDS);
    pushText(text, "a b\nc", kCONTEXT_MACRO_BODY);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b) IDENTIFIER_TOKEN(c) IDENTIFIER_TOKEN(d)");
}

TEST_F(StreamModes, BlanksAndLineEndsOfAMacroBodyAreDeliveredOnDemand) {
    TextReader text("");
    pushText(text, "a b\nc", kCONTEXT_MACRO_BODY);
    text.modes(kMODE_WHITESPACE | kMODE_LINE_ENDS | kMODE_MACRO_LAYOUT);
    EXPECT_EQ(
        text.all(), "IDENTIFIER_TOKEN(a) WHITESPACE_TOKEN( ) IDENTIFIER_TOKEN(b) END_OF_LINE(\\n) IDENTIFIER_TOKEN(c)");
}

TEST_F(StreamModes, ABlankAheadOfADirectiveIsDropped) {
    TextReader text("a #x  #if");
    text.modes(kMODE_WHITESPACE);
    TokenOwner token(get_token_element());
    std::string all;
    while (parse_filtered_token(text, token.get()) == 0 && token->type != &kEND_OF_FILE)
        all += memdata::testing::tokenText(*token) + " ";
    EXPECT_EQ(
        all, "IDENTIFIER_TOKEN(a) WHITESPACE_TOKEN( ) POUND_SIGN(#) IDENTIFIER_TOKEN(x) PREPROCESS_IF_KEYWORD(#if) ");
}

TEST_F(StreamModes, ABlankAheadOfADirectiveStaysWhereDirectivesAreText) {
    TextReader text("a #if");
    text.modes(kMODE_WHITESPACE | kMODE_NO_DIRECTIVES);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) WHITESPACE_TOKEN( ) PREPROCESS_IF_KEYWORD(#if)");
}

} // namespace
} // namespace memdata::testing

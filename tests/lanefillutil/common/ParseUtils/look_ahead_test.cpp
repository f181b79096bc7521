// look_ahead_test.cpp - tokens read early and tokens put back.
// SPDX-License-Identifier: Apache-2.0
#include "support/alerts.h"
#include "support/parse.h"

#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::TextReader;
using memdata::testing::tokenText;

namespace {

class LookAhead : public ::testing::Test {
protected:
    SystemResources resources_;
};

constexpr u32 kLAYOUT = kMODE_WHITESPACE | kMODE_LINE_ENDS;

TEST_F(LookAhead, TheNextTokenStaysToBeRead) {
    TextReader text("a b");
    long status = 9;
    const token_element* next = one_token_look_ahead(text, false, &status);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(tokenText(*next), "IDENTIFIER_TOKEN(a)");
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b)");
}

TEST_F(LookAhead, BlanksAndLineEndsAreLookedPastAndStayToBeRead) {
    TextReader text(" \n\ta");
    text.modes(kLAYOUT);
    EXPECT_EQ(tokenText(*one_token_look_ahead(text, false, nullptr)), "IDENTIFIER_TOKEN(a)");
    EXPECT_EQ(text.all(), "WHITESPACE_TOKEN( ) END_OF_LINE(\\n) WHITESPACE_TOKEN(\t) IDENTIFIER_TOKEN(a)");
}

TEST_F(LookAhead, ALineEndCountsOnDemand) {
    TextReader text(" \na");
    text.modes(kLAYOUT);
    EXPECT_EQ(tokenText(*one_token_look_ahead(text, true, nullptr)), "END_OF_LINE(\\n)");
}

TEST_F(LookAhead, LookingTwiceGivesTheSameToken) {
    TextReader text("\"a\" \"b\" \n c");
    text.modes(kLAYOUT);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(tokenText(*one_token_look_ahead(text, false, nullptr)), "QUOTED_STRING_TOKEN(ab)");
    EXPECT_EQ(text.all(),
        "QUOTED_STRING_TOKEN(ab) WHITESPACE_TOKEN( ) END_OF_LINE(\\n) WHITESPACE_TOKEN( ) IDENTIFIER_TOKEN(c)");
}

TEST_F(LookAhead, TheEndOfTheTextIsATokenToo) {
    TextReader text("");
    EXPECT_EQ(one_token_look_ahead(text, false, nullptr)->type, &kEND_OF_FILE);
}

TEST_F(LookAhead, AFailureComesWithItsStatus) {
    TextReader text("'a\nb");
    CapturedAlerts alerts;
    long status = 0;
    EXPECT_EQ(one_token_look_ahead(text, false, &status), nullptr);
    EXPECT_EQ(status, 3);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)");
}

TEST_F(LookAhead, AFailureThatNobodyAskedForComesWithTheNextRead) {
    TextReader text("'a\nb");
    CapturedAlerts alerts;
    EXPECT_EQ(one_token_look_ahead(text, false, nullptr), nullptr);
    EXPECT_EQ(text.next(), "status 3");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)");
}

TEST_F(LookAhead, TokensAreQueuedAsTheyAreScanned) {
    TextReader text("a /* b */ c");
    EXPECT_EQ(tokenText(*look_ahead_stream_tokens(text, 2)), "START_C_COMMENT(/*)");
    EXPECT_EQ(tokenText(*look_ahead_stream_tokens(text, 0)), "IDENTIFIER_TOKEN(a)");
    EXPECT_EQ(tokenText(*look_ahead_stream_tokens(text, 1)), "WHITESPACE_TOKEN( )");
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(c)");
}

TEST_F(LookAhead, TokensThatWereScannedInsideACommentAreDropped) {
    TextReader text("/* \"it */ c // it's\n d");
    text.modes(kMODE_PLAIN_QUOTES);
    look_ahead_stream_tokens(text, 4);
    text.modes(kMODE_PLAIN_QUOTES, false);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(c) IDENTIFIER_TOKEN(d)");
}

TEST_F(LookAhead, TokensThatWereScannedInsideAnEscapeAreDropped) {
    TextReader text("\\x41b c");
    look_ahead_stream_tokens(text, 2);
    EXPECT_EQ(text.all(), "LITERAL_CHARACTER_TOKEN(A) IDENTIFIER_TOKEN(b) IDENTIFIER_TOKEN(c)");
}

TEST_F(LookAhead, APushedBackTokenIsTheNextOne) {
    TextReader text("a b c");
    text.next();
    look_ahead_stream_tokens(text, 0);
    EXPECT_EQ(push_back_token(text, text.token()), 0);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b) IDENTIFIER_TOKEN(c)");
}

TEST_F(LookAhead, QueuedTokensCanBeTakenAndDropped) {
    TextReader text("a b c");
    look_ahead_stream_tokens(text, 4);
    EXPECT_TRUE(retrive_next_queued_token(text, text.token()));
    EXPECT_EQ(tokenText(*text.token()), "IDENTIFIER_TOKEN(a)");
    dequeue_look_ahead_token(text);
    dequeue_look_ahead_token(text);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(c)");
}

TEST_F(LookAhead, AnEmptyQueueGivesNothing) {
    TextReader text("a");
    EXPECT_FALSE(retrive_next_queued_token(text, text.token()));
    dequeue_look_ahead_token(text);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(a)");
}

TEST_F(LookAhead, QueuedTokensBelongToTheirContext) {
    TextReader text("a b");
    one_token_look_ahead(text, false, nullptr);
    push_parse_MemoryFile_stream("m", "x", 1, text, 0, nullptr, nullptr, nullptr);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(x) IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b)");
}

TEST_F(LookAhead, AnOverlaySharesTheQueue) {
    TextReader text("a b");
    one_token_look_ahead(text, false, nullptr);
    push_keyword_stream(text, &instance_path_token_set);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(a)");
    one_token_look_ahead(text, false, nullptr);
    pop_parse_stream(text);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(b)");
}

TEST_F(LookAhead, TheStreamStandsAtTheFirstQueuedToken) {
    TextReader text("a\nb c");
    text.next();
    EXPECT_EQ(get_stream_position(text), 1u);
    one_token_look_ahead(text, false, nullptr);
    EXPECT_EQ(get_stream_position(text), 2u);
    EXPECT_EQ(get_stream_line_number(text), 2u);
    set_stream_position(text, 0);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(a)");
}

TEST_F(LookAhead, TheQueueAllocatesNothingPerToken) {
    std::string many;
    for (int i = 0; i < 4000; ++i) many += "a b \"c\" /* d */ \"e\" f\n";
    TextReader text(many);
    const auto readOne = [&text] {
        one_token_look_ahead(text, false, nullptr);
        get_next_token(text, text.token());
        push_back_token(text, text.token());
        get_next_token(text, text.token());
    };
    for (int i = 0; i < 200; ++i) readOne();
    const u64 before = trackedAllocationCount();
    for (int i = 0; i < 10000; ++i) readOne();
    EXPECT_NE(text.token()->type, &kEND_OF_FILE);
    EXPECT_EQ(trackedAllocationCount(), before);
}

TEST_F(LookAhead, TextUpToATokenIsJoined) {
    TextReader text("a + \"b\" 1.5 ; c");
    const token_type* list[] = {&kSEMICOLON, nullptr};
    token_element* terminator = nullptr;
    EXPECT_EQ(parse_to_token(text, text.token(), &terminator, list), 0);
    EXPECT_EQ(tokenText(*text.token()), "TEXT_STRING_TOKEN(a+b1.5)");
    EXPECT_EQ(text.token()->sourcePosition - text.token()->lineStart, 0);
    EXPECT_EQ(tokenText(*terminator), "SEMICOLON(;)");
    release_token_element(terminator);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(c)");
}

TEST_F(LookAhead, JoinedTextKeepsBlanksThatAreDelivered) {
    TextReader text("a  b\nc");
    text.modes(kMODE_WHITESPACE);
    EXPECT_EQ(parse_to_EOL(text, text.token()), 0);
    EXPECT_EQ(tokenText(*text.token()), "TEXT_STRING_TOKEN(a  b)");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(c)");
}

TEST_F(LookAhead, TheEndOfTheTextEndsJoinedTextToo) {
    TextReader text("a b");
    token_element* terminator = nullptr;
    EXPECT_EQ(parse_to_token(text, text.token(), &terminator, EOLTerminators), 0);
    EXPECT_EQ(tokenText(*text.token()), "TEXT_STRING_TOKEN(ab)");
    EXPECT_EQ(terminator->type, &kEND_OF_FILE);
    release_token_element(terminator);
}

TEST_F(LookAhead, JoinedTextCanBeEmpty) {
    TextReader text("\na");
    EXPECT_EQ(parse_to_EOL(text, text.token()), 0);
    EXPECT_EQ(tokenText(*text.token()), "TEXT_STRING_TOKEN()");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(a)");
}

TEST_F(LookAhead, TheRestOfALineMayHoldAnything) {
    TextReader text("it's #if \" ## x\nnext");
    EXPECT_EQ(parse_to_EOL(text, text.token()), 0);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(next)");
    EXPECT_EQ(text->parseModes, 0u);
}

TEST_F(LookAhead, TheRestOfALineEndsInsideMacrosToo) {
    TextReader text("c");
    push_parse_MemoryFile_stream("m", "a\nb", 3, text, kCONTEXT_MACRO_BODY, nullptr, nullptr, nullptr);
    EXPECT_EQ(parse_to_EOL(text, text.token()), 0);
    EXPECT_EQ(tokenText(*text.token()), "TEXT_STRING_TOKEN(a)");
    EXPECT_EQ(parse_to_EOL(text, text.token()), 0);
    EXPECT_EQ(tokenText(*text.token()), "TEXT_STRING_TOKEN(b)");
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(c)");
}

TEST_F(LookAhead, JoinedTextIsBounded) {
    std::string half(kMAX_TOKEN_BYTES / 2, 'a');
    TextReader text(half + " " + half + " b\nc");
    CapturedAlerts alerts;
    EXPECT_EQ(parse_to_EOL(text, text.token()), 3);
}

} // namespace

// stream_overlays_test.cpp - keyword sets of contexts, and overlays that bring in others.
// SPDX-License-Identifier: Apache-2.0
#include "streams_test.h"

namespace memdata::testing {
namespace {

class StreamOverlays : public StreamTest {};

TEST_F(StreamOverlays, AnOverlaysWordsComeAheadOfThoseBelow) {
    TextReader text("a b x", &gSetA);
    push_keyword_stream(text, &gSetB);
    EXPECT_EQ(kindsOf(text), "ABB");
}

TEST_F(StreamOverlays, PoppingAnOverlayPutsTheWordsBelowInForceAgain) {
    TextReader text("x x", &gSetA);
    push_keyword_stream(text, &gSetB);
    text.next();
    EXPECT_EQ(text.token()->type, &kB);
    pop_parse_stream(text);
    EXPECT_EQ(kindsOf(text), "A");
}

TEST_F(StreamOverlays, AnOverlayReadsOnInTheTextAndHandsItsPlaceDown) {
    TextReader text("a\nb\nc\nd");
    text.next();
    push_keyword_stream(text, &gSetB);
    text.next();
    text.next();
    EXPECT_EQ(get_stream_line_number(text), 3u);
    pop_parse_stream(text);
    EXPECT_EQ(get_stream_line_number(text), 3u);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(d)");
    EXPECT_EQ(text.token()->lineNumber, 4u);
}

TEST_F(StreamOverlays, ATextWithoutWordsTakesOverThoseAroundIt) {
    TextReader text("x", &gSetA);
    pushText(text, "x");
    EXPECT_EQ(kindsOf(text), "AA");
}

TEST_F(StreamOverlays, AContextWithoutWordsEndsTheSearch) {
    TextReader text("a b");
    push_keyword_stream(text, &gSetB);
    EXPECT_EQ(kindsOf(text), "-B");
}

TEST_F(StreamOverlays, AnOverlayStaysInForceOverTheEndOfAPushedText) {
    TextReader text("b x", &gSetA);
    pushText(text, "x");
    push_keyword_stream(text, &gSetB);
    const u32 overlay = activeContext(text)->contextId;
    EXPECT_EQ(kindsOf(text), "BBB");
    EXPECT_EQ(activeContext(text)->contextId, overlay);
    EXPECT_EQ(activeContext(text)->contextState, kCONTEXT_OVERLAY);
    pop_parse_stream(text);
    EXPECT_EQ(activeContext(text), static_cast<parse_stream*>(text));
}

TEST_F(StreamOverlays, SeveralOverlaysStayInForceOverTheEndsOfSeveralTexts) {
    TextReader text("a b x");
    pushText(text, "x");
    pushText(text, "x");
    push_keyword_stream(text, &gSetA);
    push_keyword_stream(text, &gSetB);
    EXPECT_EQ(kindsOf(text), "BBABB");
}

TEST_F(StreamOverlays, ModesOfAnOverlayAreRestoredBehindTheEndOfAPushedText) {
    TextReader text("b");
    pushText(text, "a");
    push_keyword_stream(text, &gSetA);
    {
        ParseModes modes(text, kMODE_COMMENTS, true);
        text.next();
        text.next();
        EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, true));
    }
    EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, false));
    pop_parse_stream(text);
    EXPECT_EQ(text->parseModes, 0u);
}

TEST_F(StreamOverlays, AnOverlayScopeEndsUnderAMacroThatIsStillOpen) {
    TextReader text("x y", &gSetA);
    {
        KeywordOverlay overlay(text, &gSetB);
        ASSERT_EQ(overlay.status(), 0);
        overlay.setModes(kMODE_NO_MACROS, true);
        overlay.ignoreWords();
        pushText(text, "q x x", kCONTEXT_MACRO_BODY);
        text.next();
        EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(x)");
    }
    EXPECT_TRUE(test_context_state(text, kCONTEXT_MACRO_BODY, true));
    EXPECT_TRUE(test_parse_modes(text, kMODE_NO_MACROS, false));
    EXPECT_EQ(kindsOf(text), "AA-");
    EXPECT_EQ(text->parseModes, 0u);
}

TEST_F(StreamOverlays, AnOverlayScopeEndsOnTop) {
    TextReader text("x x", &gSetA);
    {
        KeywordOverlay overlay(text, &gSetB);
        text.next();
        EXPECT_EQ(text.token()->type, &kB);
        EXPECT_EQ(overlay.close(), 0);
        EXPECT_EQ(overlay.close(), 0);
    }
    EXPECT_EQ(kindsOf(text), "A");
}

TEST_F(StreamOverlays, ClosingTheRootDropsItsRunTimeWords) {
    TextReader text("word", &gSetA);
    extend_token_symbol_set(&gSetA, "word", true, &kNUMBER, nullptr);
    pushText(text, "word");
    pop_parse_stream(text);
    EXPECT_NE(gSetA.words, nullptr);
    text.close();
    EXPECT_EQ(gSetA.words, nullptr);
}

} // namespace
} // namespace memdata::testing

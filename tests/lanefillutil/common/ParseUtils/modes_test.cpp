// modes_test.cpp - switching how a context is read, and putting it back.
// SPDX-License-Identifier: Apache-2.0
#include "support/parse.h"

#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::TextReader;

namespace {

class Modes : public ::testing::Test {
protected:
    SystemResources resources_;
    TextReader text_{"a"};
    stream_state saver_{};
};

TEST_F(Modes, RestoringPutsBackOnlyWhatTheSaverChanged) {
    text_.modes(kMODE_COMMENTS);
    set_parse_modes(text_, &saver_, kMODE_WHITESPACE | kMODE_LINE_ENDS, true);
    set_parse_modes(text_, &saver_, kMODE_COMMENTS, false);
    set_parse_modes(text_, nullptr, kMODE_DISCARD, true);
    EXPECT_EQ(saver_.changedMask, kMODE_WHITESPACE | kMODE_LINE_ENDS | kMODE_COMMENTS);
    EXPECT_EQ(saver_.savedModes, kMODE_COMMENTS);
    restore_parse_modes(text_, &saver_);
    EXPECT_EQ(text_->parseModes, kMODE_COMMENTS | kMODE_DISCARD);
    EXPECT_FALSE(saver_.active);
}

TEST_F(Modes, RestoringInAnotherContextChangesNothing) {
    set_parse_modes(text_, &saver_, kMODE_WHITESPACE, true);
    push_parse_MemoryFile_stream("m", "b", 1, text_, 0, nullptr, nullptr, nullptr);
    restore_parse_modes(text_, &saver_);
    EXPECT_TRUE(test_parse_modes(text_, kMODE_WHITESPACE, true));
    EXPECT_FALSE(saver_.active);
}

TEST_F(Modes, AnUnusedSaverRestoresNothing) {
    text_.modes(kMODE_COMMENTS);
    restore_parse_modes(text_, &saver_);
    EXPECT_EQ(text_->parseModes, kMODE_COMMENTS);
}

TEST_F(Modes, TestingAsksForAllOrForNone) {
    text_.modes(kMODE_COMMENTS);
    EXPECT_TRUE(test_parse_modes(text_, kMODE_COMMENTS, true));
    EXPECT_FALSE(test_parse_modes(text_, kMODE_COMMENTS | kMODE_DISCARD, true));
    EXPECT_FALSE(test_parse_modes(text_, kMODE_COMMENTS | kMODE_DISCARD, false));
    EXPECT_TRUE(test_parse_modes(text_, kMODE_DISCARD, false));
}

TEST_F(Modes, ContextStatesAreSetAndPutBack) {
    const u32 old = set_context_state(text_, kCONTEXT_MACRO_DEFINITION, true);
    EXPECT_EQ(old, 0u);
    EXPECT_TRUE(test_context_state(text_, kCONTEXT_MACRO_DEFINITION, true));
    set_context_state(text_, kCONTEXT_RESCAN, true);
    restore_context_state(text_, old, kCONTEXT_MACRO_DEFINITION);
    EXPECT_EQ(text_->contextState, kCONTEXT_RESCAN);
}

TEST_F(Modes, AScopePutsBackAtItsEnd) {
    {
        ParseModes modes(text_, kMODE_DEFINED, true);
        modes.set(kMODE_NO_MACROS, true);
        EXPECT_TRUE(test_parse_modes(text_, kMODE_DEFINED | kMODE_NO_MACROS, true));
    }
    EXPECT_EQ(text_->parseModes, 0u);
}

TEST_F(Modes, DiscardedTokensAreNotDelivered) {
    TextReader text("a b");
    text.modes(kMODE_DISCARD);
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
}

} // namespace

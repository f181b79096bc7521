// stream_reuse_test.cpp - contexts over texts in memory that come and go: those that were popped are used again.
// SPDX-License-Identifier: Apache-2.0
#include "streams_test.h"

#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"

namespace memdata::testing {
namespace {

class StreamReuse : public StreamTest {};

TEST_F(StreamReuse, TextsThatComeAndGoAllocateNothing) {
    TextReader text("a");
    const auto pushNested = [&] {
        for (const char* name : {"a", "a_name_that_is_much_longer", "b", ""})
            ASSERT_EQ(
                push_parse_MemoryFile_stream(name, "x y", 3, text, kCONTEXT_MACRO_BODY, nullptr, nullptr, nullptr), 0);
        ASSERT_EQ(get_next_token(text, text.token()), 0);
        for (int i = 0; i < 4; ++i) ASSERT_EQ(pop_parse_stream(text), 0);
    };
    for (int i = 0; i < 4; ++i) pushNested();
    const u64 before = trackedAllocationCount();
    for (int i = 0; i < 1000; ++i) pushNested();
    EXPECT_EQ(trackedAllocationCount(), before);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a)");
}

TEST_F(StreamReuse, ExpansionsOfAMacroAllocateNothing) {
    std::string calls = "#define W word\n";
    for (int i = 0; i < 3000; ++i) calls += "W ";
    TextReader text(calls);
    for (int i = 0; i < 100; ++i) ASSERT_EQ(text.next(), "IDENTIFIER_TOKEN(word)");
    const u64 before = trackedAllocationCount();
    for (int i = 100; i < 3000; ++i) ASSERT_EQ(get_next_token(text, text.token()), 0);
    EXPECT_STREQ(text.token()->text, "word");
    EXPECT_EQ(trackedAllocationCount(), before);
}

TEST_F(StreamReuse, OverlaysThatComeAndGoAllocateNothing) {
    TextReader text("a b");
    const auto overlayTwice = [&] {
        KeywordOverlay lower(text, &instance_path_token_set);
        KeywordOverlay upper(text, &file_path_token_set);
        ASSERT_EQ(upper.status(), 0);
    };
    overlayTwice();
    const u64 before = trackedAllocationCount();
    for (int i = 0; i < 1000; ++i) overlayTwice();
    EXPECT_EQ(trackedAllocationCount(), before);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b)");
}

TEST_F(StreamReuse, AnOverlayThatIsUsedAgainRemembersNothing) {
    TextReader text("a */");
    u32 oldId = 0;
    {
        KeywordOverlay overlay(text, &instance_path_token_set);
        overlay.setModes(kMODE_WHITESPACE, true);
        overlay.ignoreWords();
        oldId = text->root->current->contextId;
        ASSERT_EQ(get_next_token(text, text.token()), 0);
    }
    KeywordOverlay overlay(text, nullptr);
    const parse_stream* context = text->root->current;
    EXPECT_EQ(context->contextId, oldId + 1);
    EXPECT_EQ(context->keywords, text->keywords);
    EXPECT_EQ(context->parseModes, text->parseModes);
    EXPECT_FALSE(context->noKeywordLookup);
    EXPECT_EQ(context->lastToken, nullptr);
    EXPECT_EQ(text.next(), "END_C_COMMENT(*/)");
}

TEST_F(StreamReuse, AContextThatIsUsedAgainRemembersNothing) {
    int data = 0;
    TextReader text("a");
    parse_stream* first = nullptr;
    ASSERT_EQ(push_parse_MemoryFile_stream("first", "x\ny", 3, text, kCONTEXT_MACRO_BODY, &data, nullptr, &first), 0);
    first->noKeywordLookup = true;
    first->parseModes |= kMODE_NO_MACROS;
    for (int i = 0; i < 2; ++i) ASSERT_EQ(get_next_token(text, text.token()), 0);
    const u32 oldId = first->contextId;
    ASSERT_EQ(pop_parse_stream(text), 0);

    parse_stream* second = nullptr;
    ASSERT_EQ(push_parse_MemoryFile_stream("second", "z", 1, text, kCONTEXT_RESCAN, nullptr, nullptr, &second), 0);
    EXPECT_EQ(second->contextId, oldId + 1);
    EXPECT_STREQ(get_stream_file_name(text), "second");
    EXPECT_EQ(second->contextState, kCONTEXT_RESCAN | kCONTEXT_AUTO_POP);
    EXPECT_EQ(second->parseModes, text->parseModes);
    EXPECT_FALSE(second->noKeywordLookup);
    EXPECT_EQ(second->userData, nullptr);
    EXPECT_EQ(second->lastToken, nullptr);
    EXPECT_EQ(second->lineNumber, 1u);
    EXPECT_EQ(get_stream_size(text), 1u);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(z) IDENTIFIER_TOKEN(a)");
}

TEST_F(StreamReuse, AnEmptyTextCanFollowAnother) {
    TextReader text("a");
    ASSERT_EQ(pushText(text, "x"), 0);
    ASSERT_EQ(pop_parse_stream(text), 0);
    ASSERT_EQ(pushText(text, ""), 0);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a)");
}

TEST_F(StreamReuse, AContextThatACallerTookOutlivesItsRoot) {
    parse_stream* taken = nullptr;
    {
        TextReader text("a");
        ASSERT_EQ(pushText(text, "x"), 0);
        taken = pop_parse_context(text);
    }
    EXPECT_EQ(close_parse_stream(&taken), 0);
    EXPECT_EQ(taken, nullptr);
}

TEST_F(StreamReuse, AChildWhoseFileWasClosedAheadOfItIsReleased) {
    TextReader text("a");
    parse_stream* child = nullptr;
    ASSERT_EQ(open_parse_MemoryFile("m", "x", 1, nullptr, nullptr, text, &child), 0);
    const u64 before = getCurrentMemoryUsage();
    EXPECT_EQ(close_parse_stream_file(child), 0);
    EXPECT_EQ(child->file, nullptr);
    EXPECT_EQ(close_parse_stream_file(child), 0);
    EXPECT_EQ(close_parse_stream(&child), 0);
    EXPECT_LT(getCurrentMemoryUsage(), before);
}

} // namespace
} // namespace memdata::testing

// streams_test.cpp - contexts opened, pushed, popped and closed.
// SPDX-License-Identifier: Apache-2.0
#include "streams_test.h"

#include "StringUtils/StringUtils.h"
#include "support/allocation_faults.h"

namespace memdata::testing {
namespace {

class Streams : public StreamTest {};

TEST_F(Streams, AStreamNeedsAFileOrAParent) {
    parse_stream* stream = nullptr;
    EXPECT_EQ(open_parse_stream(nullptr, nullptr, nullptr, &stream), 3);
    EXPECT_EQ(stream, nullptr);
}

TEST_F(Streams, ANewStreamIsItsOwnRoot) {
    TextReader text("a");
    EXPECT_EQ(text->root, static_cast<parse_stream*>(text));
    EXPECT_EQ(text->current, static_cast<parse_stream*>(text));
    EXPECT_EQ(text->parent, nullptr);
    EXPECT_EQ(text->lineNumber, 1u);
    EXPECT_EQ(text->lastToken, nullptr);
    EXPECT_EQ(text->numberBase, 0u);
    EXPECT_EQ(text->macroTable->size, create_symbol_table(1000)->size);
}

TEST_F(Streams, ContextsAreNumberedAndNumbersAreNotUsedAgain) {
    TextReader text("a");
    const u32 root = text->contextId;
    pushText(text, "b");
    const u32 first = activeContext(text)->contextId;
    pop_parse_stream(text);
    pushText(text, "b");
    EXPECT_GT(first, root);
    EXPECT_GT(activeContext(text)->contextId, first);
}

TEST_F(Streams, AnEmptyTextGivesAStreamAndStatusSeventeen) {
    TextReader text("");
    EXPECT_EQ(text.openStatus(), 17);
    EXPECT_EQ(get_stream_size(text), 0u);
    EXPECT_EQ(text.all(), "");
}

TEST_F(Streams, ATextKnowsItsNameAndSize) {
    TextReader text("abc", nullptr, "name.txt");
    EXPECT_STREQ(get_stream_file_name(text), "name.txt");
    EXPECT_EQ(get_stream_size(text), 3u);
}

TEST_F(Streams, ARescanTextIsReadFirst) {
    parse_stream* stream = nullptr;
    ASSERT_EQ(open_parse_MemoryFile("f", "b c", 3, nullptr, "a", nullptr, &stream), 0);
    EXPECT_EQ(stream->current->contextState, kCONTEXT_RESCAN | kCONTEXT_AUTO_POP);
    EXPECT_STREQ(get_stream_file_name(stream), "rescan");
    TokenOwner token(get_token_element());
    std::string all;
    while (get_next_token(stream, token.get()) == 0 && token->type != &kEND_OF_FILE) all += token->text;
    EXPECT_EQ(all, "abc");
    EXPECT_EQ(close_parse_stream(&stream), 0);
    EXPECT_EQ(stream, nullptr);
}

TEST_F(Streams, ARescanTextOfAChildIsReadFirstToo) {
    TextReader text("d");
    parse_stream* child = nullptr;
    ASSERT_EQ(open_parse_MemoryFile("f", "b c", 3, nullptr, "a", text, &child), 0);
    set_context_state(text, kCONTEXT_AUTO_POP, true);
    child->contextState |= kCONTEXT_AUTO_POP;
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b) IDENTIFIER_TOKEN(c) IDENTIFIER_TOKEN(d)");
}

TEST_F(Streams, AChildIsNotReadBeforeItIsPushed) {
    TextReader text("a");
    parse_stream* child = nullptr;
    ASSERT_EQ(open_parse_MemoryFile("f", "b", 1, nullptr, nullptr, text, &child), 0);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(a)");
    EXPECT_EQ(push_parse_context(child), 0);
    EXPECT_EQ(push_parse_context(child), 3);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)");
    EXPECT_EQ(close_parse_stream(&child), 0);
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
}

TEST_F(Streams, AChildThatWasNeverPushedCanBeClosed) {
    TextReader text("a");
    parse_stream* child = nullptr;
    ASSERT_EQ(open_parse_MemoryFile("f", "b", 1, nullptr, nullptr, text, &child), 0);
    EXPECT_EQ(close_parse_stream(&child), 0);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a)");
}

TEST_F(Streams, AMemoryTextIsReadWhereItWasPushed) {
    TextReader text("a d");
    text.next();
    pushText(text, "b c");
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(b) IDENTIFIER_TOKEN(c) IDENTIFIER_TOKEN(d)");
}

TEST_F(Streams, AnEmptyMemoryTextIsReadAsNothing) {
    TextReader text("a");
    EXPECT_EQ(pushText(text, ""), 0);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a)");
}

TEST_F(Streams, TheEndOfAPushedTextIsDeliveredOnDemand) {
    TextReader text("b");
    pushText(text, "a");
    text.modes(kMODE_NO_AUTO_POP);
    text.next();
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
    text.modes(kMODE_NO_AUTO_POP, false);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)");
}

TEST_F(Streams, TheHookRunsOnceWhenTheTextIsPopped) {
    static int calls;
    calls = 0;
    TextReader text("b");
    int value = 7;
    parse_stream* pushed = nullptr;
    const auto hook = [](parse_stream* context) -> long {
        ++calls;
        EXPECT_EQ(context->onPop, nullptr);
        *static_cast<int*>(context->userData) += 1;
        return 0;
    };
    ASSERT_EQ(push_parse_MemoryFile_stream("m", "a", 1, text, 0, &value, hook, &pushed), 0);
    EXPECT_EQ(retrive_user_context_data(text), &value);
    text.next();
    EXPECT_EQ(calls, 0);
    text.next();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(value, 8);
}

TEST_F(Streams, TheHooksStatusComesBack) {
    TextReader text("b");
    push_parse_MemoryFile_stream(
        "m", "a", 1, text, 0, nullptr, [](parse_stream*) -> long { return 5; }, nullptr);
    EXPECT_EQ(pop_parse_stream(text), 5);
}

TEST_F(Streams, ClosingAStreamClosesEverythingOnIt) {
    static int calls;
    calls = 0;
    TextReader text("a");
    const auto hook = [](parse_stream*) -> long {
        ++calls;
        return 0;
    };
    for (int i = 0; i < 3; ++i) push_parse_MemoryFile_stream("m", "a", 1, text, 0, nullptr, hook, nullptr);
    push_keyword_stream(text, &gSetA);
    EXPECT_EQ(text.close(), 0);
    EXPECT_EQ(calls, 3);
}

TEST_F(Streams, ClosingNothingIsFine) {
    parse_stream* stream = nullptr;
    EXPECT_EQ(close_parse_stream(nullptr), 0);
    EXPECT_EQ(close_parse_stream(&stream), 0);
}

TEST_F(Streams, UserDataBelongsToAContext) {
    int value = 0;
    TextReader text("a");
    attach_user_context_data(text, &value);
    push_keyword_stream(text, &gSetA);
    EXPECT_EQ(retrive_user_context_data(text), nullptr);
    pop_parse_stream(text);
    EXPECT_EQ(retrive_user_context_data(text), &value);
}

int readSomeTexts() {
    TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    parse_stream* stream = nullptr;
    int status = open_parse_MemoryFile("f", "a \"b\" \"c\" x", 11, &gSetA, "r", nullptr, &stream);
    for (int i = 0; i < 2 && status == 0; ++i) status = get_next_token(stream, token.get());
    if (status == 0) status = push_parse_MemoryFile_stream("m", "x", 1, stream, 1, nullptr, nullptr, nullptr);
    if (status == 0) status = push_keyword_stream(stream, &gSetB);
    for (int i = 0; i < 4 && status == 0; ++i) status = get_next_token(stream, token.get());
    const int closed = close_parse_stream(&stream);
    return status != 0 ? status : closed;
}

TEST(StreamFaults, EveryFailedAllocationEndsWithAStatusAndNoByteInUse) {
    const auto sweep = memdata::testing::sweepAllocationFaults([] {
        int status = InitializeSystemResources();
        EnablePrintAlerts(0);
        if (status == 0) status = readSomeTexts();
        FinalizeSystemResources();
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GE(sweep.faultCount, 20u);
}

// An overlay over a rescan text, which ends below it.
int readThroughOverlay() {
    const TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    StreamOwner stream;
    int status = open_parse_MemoryFile("f", "a b", 3, &gSetA, "r", nullptr, stream.out());
    if (status != 0) return status;
    KeywordOverlay overlay(stream.get(), &gSetB);
    status = overlay.status();
    for (int i = 0; i < 4 && status == 0; ++i) status = get_next_token(stream.get(), token.get());
    return status != 0 ? status : overlay.close();
}

TEST(StreamFaults, AnOverlayThatWasLostForWantOfMemoryIsNotClosedAgain) {
    const auto sweep = memdata::testing::sweepAllocationFaults([] {
        int status = InitializeSystemResources();
        EnablePrintAlerts(0);
        if (status == 0) status = readThroughOverlay();
        FinalizeSystemResources();
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 10u);
}

TEST(StreamLifetime, ShutDownLeavesNothing) {
    {
        SystemResources resources;
        parse_stream* stream = nullptr;
        open_parse_MemoryFile("f", "a b", 3, &gSetA, "r", nullptr, &stream);
        close_parse_stream(&stream);
    }
    EXPECT_EQ(getCurrentMemoryUsage(), 0u);
}

} // namespace
} // namespace memdata::testing

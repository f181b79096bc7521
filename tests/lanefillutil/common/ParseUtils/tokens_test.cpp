// tokens_test.cpp - token records, their texts and the pool.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/limits.h"
#include "ParseUtils/tokens.h"
#include "StringUtils/StringUtils.h"
#include "support/alerts.h"
#include "support/parse.h"

#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::tokenText;

namespace {

class Tokens : public ::testing::Test {
protected:
    SystemResources resources_;
    TokenOwner owner_{get_token_element()};
    token_element* token_ = owner_.get();
};

TEST_F(Tokens, ANewTokenIsBlank) {
    EXPECT_EQ(token_->type, nullptr);
    EXPECT_EQ(token_->text, nullptr);
    EXPECT_EQ(token_->length, 0u);
    EXPECT_EQ(token_->validMark, 0u);
    EXPECT_EQ(token_->value, 0);
}

TEST_F(Tokens, SettingCopiesThatManyCharacters) {
    EXPECT_EQ(set_token_element(token_, "abcdef", 3, true, &kIDENTIFIER_TOKEN, 7), 0);
    EXPECT_EQ(tokenText(*token_), "IDENTIFIER_TOKEN(abc)");
    EXPECT_STREQ(token_->text, "abc");
    EXPECT_TRUE(token_->caseSensitive);
    EXPECT_EQ(token_->value, 7);
    EXPECT_EQ(token_->validMark, kTOKEN_VALID_MARK);
}

TEST_F(Tokens, TheValidMarkIsTheBytesNkOt) {
    set_token_element(token_, "a", 0, true, &kIDENTIFIER_TOKEN, 0);
    EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(&token_->validMark), 4), "NkOt");
}

TEST_F(Tokens, LengthZeroCopiesTheWholeText) {
    EXPECT_EQ(set_token_element(token_, "abcdef", 0, false, &kIDENTIFIER_TOKEN, 0), 0);
    EXPECT_STREQ(token_->text, "abcdef");
    EXPECT_EQ(token_->length, 6u);
    EXPECT_FALSE(token_->caseSensitive);
}

TEST_F(Tokens, NullMakesAnEmptyText) {
    EXPECT_EQ(set_token_element(token_, nullptr, 0, true, &kIDENTIFIER_TOKEN, 0), 0);
    ASSERT_NE(token_->text, nullptr);
    EXPECT_STREQ(token_->text, "");
    EXPECT_EQ(token_->length, 0u);
}

TEST_F(Tokens, ANegativeLengthTakesTheTextOver) {
    char* text = StrDup("handed over");
    EXPECT_EQ(set_token_element(token_, text, -1, true, &kIDENTIFIER_TOKEN, 0), 0);
    EXPECT_EQ(token_->text, text);
    EXPECT_EQ(token_->length, 11u);
    set_token_element(token_, "next", 0, true, &kIDENTIFIER_TOKEN, 0);
    EXPECT_STREQ(token_->text, "next");
}

TEST_F(Tokens, ATextCanBeMadeFromTheOldOne) {
    set_token_element(token_, "abcdef", 0, true, &kIDENTIFIER_TOKEN, 0);
    EXPECT_EQ(set_token_element(token_, token_->text + 2, 3, true, &kIDENTIFIER_TOKEN, 0), 0);
    EXPECT_STREQ(token_->text, "cde");
}

TEST_F(Tokens, TextsCanHoldNulCharacters) {
    set_token_element(token_, "a\0b", 3, true, &kIDENTIFIER_TOKEN, 0);
    TokenOwner copy(dup_token_element(token_));
    EXPECT_EQ(tokenText(*copy), "IDENTIFIER_TOKEN(a\\0b)");
}

TEST_F(Tokens, InvalidatingDropsTheText) {
    set_token_element(token_, "abc", 0, true, &kIDENTIFIER_TOKEN, 5);
    invalidate_token_element(token_);
    EXPECT_EQ(token_->text, nullptr);
    EXPECT_EQ(token_->length, 0u);
    EXPECT_EQ(token_->validMark, 0u);
    EXPECT_EQ(token_->type, &kIDENTIFIER_TOKEN);
}

TEST_F(Tokens, InvalidatingReleasesATextWithoutAMark) {
    token_->text = StrDup("unmarked");
    const u64 before = getCurrentMemoryUsage();
    invalidate_token_element(token_);
    EXPECT_LT(getCurrentMemoryUsage(), before);
}

TEST_F(Tokens, InvalidatingLeavesATextUnderAnotherMarkAlone) {
    char* text = StrDup("not the token's");
    token_->text = text;
    token_->validMark = 1;
    invalidate_token_element(token_);
    EXPECT_STREQ(text, "not the token's");
    StrDelete(text);
}

TEST_F(Tokens, BlankingClearsEverything) {
    set_token_element(token_, "abc", 0, true, &kIDENTIFIER_TOKEN, 5);
    token_->lineNumber = 3;
    token_->numberBase = 16;
    blank_token_element(token_);
    EXPECT_EQ(token_->type, nullptr);
    EXPECT_EQ(token_->text, nullptr);
    EXPECT_EQ(token_->lineNumber, 0u);
    EXPECT_EQ(token_->numberBase, 0u);
}

TEST_F(Tokens, ACopyHasItsOwnText) {
    set_token_element(token_, "abc", 0, true, &kINTEGER_NUMBER, 18446744073709551615.0L);
    token_->lineNumber = 9;
    token_->numberBase = 16;
    TokenOwner copy(dup_token_element(token_));
    set_token_element(token_, "xyz", 0, true, &kIDENTIFIER_TOKEN, 0);
    EXPECT_STREQ(copy->text, "abc");
    EXPECT_EQ(copy->value, 18446744073709551615.0L);
    EXPECT_EQ(copy->lineNumber, 9u);
    EXPECT_EQ(copy->numberBase, 16u);
    EXPECT_EQ(dup_token_element(nullptr), nullptr);
}

TEST_F(Tokens, AppendingJoinsTextsAndSetsTheKind) {
    TokenOwner next(get_token_element());
    set_token_element(token_, "ab", 0, true, &kIDENTIFIER_TOKEN, 0);
    set_token_element(next.get(), "cd", 0, true, &kIDENTIFIER_TOKEN, 0);
    EXPECT_EQ(cat_token_element(token_, next.get(), &kTEXT_STRING_TOKEN), 0);
    EXPECT_EQ(tokenText(*token_), "TEXT_STRING_TOKEN(abcd)");
    EXPECT_STREQ(next->text, "cd");
}

TEST_F(Tokens, AppendingATokenToItselfDoublesIt) {
    set_token_element(token_, "ab", 0, true, &kIDENTIFIER_TOKEN, 0);
    EXPECT_EQ(cat_token_element(token_, token_, &kTEXT_STRING_TOKEN), 0);
    EXPECT_STREQ(token_->text, "abab");
}

TEST_F(Tokens, AppendingTakesThePlaceOnlyWhereThereIsNone) {
    const char line[] = "x y";
    TokenOwner next(get_token_element());
    set_token_element(token_, nullptr, 0, true, &kIDENTIFIER_TOKEN, 0);
    set_token_element(next.get(), "y", 0, true, &kIDENTIFIER_TOKEN, 0);
    next->sourcePosition = line + 2;
    next->lineStart = line;
    next->lineNumber = 4;
    cat_token_element(token_, next.get(), &kTEXT_STRING_TOKEN);
    EXPECT_EQ(token_->sourcePosition, line + 2);
    EXPECT_EQ(token_->lineNumber, 4u);
    next->sourcePosition = line;
    next->lineNumber = 5;
    cat_token_element(token_, next.get(), &kTEXT_STRING_TOKEN);
    EXPECT_EQ(token_->sourcePosition, line + 2);
    EXPECT_EQ(token_->lineNumber, 4u);
}

TEST_F(Tokens, JoinedTextsAreBounded) {
    TokenOwner next(get_token_element());
    set_token_element(token_, std::string(kMAX_TOKEN_BYTES - 1, 'a').c_str(), 0, true, &kIDENTIFIER_TOKEN, 0);
    set_token_element(next.get(), "b", 0, true, &kIDENTIFIER_TOKEN, 0);
    EXPECT_EQ(cat_token_element(token_, next.get(), &kIDENTIFIER_TOKEN), 0);
    EXPECT_EQ(cat_token_element(token_, next.get(), &kIDENTIFIER_TOKEN), 3);
    EXPECT_EQ(token_->length, kMAX_TOKEN_BYTES);
}

TEST_F(Tokens, TheLastReleasedTokenIsTheNextToBeGiven) {
    token_element* first = get_token_element();
    set_token_element(first, "abc", 0, true, &kIDENTIFIER_TOKEN, 0);
    release_token_element(first);
    TokenOwner second(get_token_element());
    EXPECT_EQ(second.get(), first);
    EXPECT_EQ(second->text, nullptr);
}

TEST_F(Tokens, ATokenOnTheStackKeepsNoMemory) {
    const u64 before = getCurrentMemoryUsage();
    token_element token{};
    set_token_element(&token, "a text of some length", 0, true, &kIDENTIFIER_TOKEN, 0);
    set_token_element(&token, "b", 0, true, &kIDENTIFIER_TOKEN, 0);
    invalidate_token_element(&token);
    EXPECT_EQ(getCurrentMemoryUsage(), before);
}

TEST_F(Tokens, WithoutMemoryATextIsEmpty) {
    memdata::testing::CapturedAlerts alerts;
    set_token_element(token_, "abc", 0, true, &kIDENTIFIER_TOKEN, 0);
    failTrackedAllocation(1);
    EXPECT_EQ(set_token_element(token_, std::string(500, 'x').c_str(), 0, true, &kIDENTIFIER_TOKEN, 0), 7);
    EXPECT_EQ(token_->length, 0u);
    EXPECT_STREQ(token_->text, "");
    failTrackedAllocation(1);
    EXPECT_EQ(cat_token_element(token_, token_, &kIDENTIFIER_TOKEN), 0);
    failTrackedAllocation(0);
}

TEST(TokenPool, ShutDownReleasesTokensThatWereNotGivenBack) {
    {
        SystemResources resources;
        token_element* token = get_token_element();
        set_token_element(token, "kept", 0, true, &kIDENTIFIER_TOKEN, 0);
        token_element* other = get_token_element();
        set_token_element(other, StrDup("taken over"), -1, true, &kIDENTIFIER_TOKEN, 0);
    }
    EXPECT_EQ(getCurrentMemoryUsage(), 0u);
}

TEST(TokenQueue, GivesTokensFirstInFirstOut) {
    SystemResources resources;
    TokenQueue queue;
    for (const char* text : {"a", "b", "c"}) {
        token_element* token = get_token_element();
        set_token_element(token, text, 0, true, &kIDENTIFIER_TOKEN, 0);
        putToken(&queue, token);
    }
    token_element* ahead = get_token_element();
    set_token_element(ahead, "0", 0, true, &kIDENTIFIER_TOKEN, 0);
    stuffToken(&queue, ahead);
    EXPECT_EQ(queue.depth, 4u);
    std::string order;
    while (token_element* token = takeToken(&queue)) {
        order += token->text;
        release_token_element(token);
    }
    EXPECT_EQ(order, "0abc");
    EXPECT_EQ(queue.depth, 0u);
    EXPECT_EQ(queue.tail, nullptr);
}

} // namespace

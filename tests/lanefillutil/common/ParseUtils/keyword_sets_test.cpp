// keyword_sets_test.cpp - looking words up, and words added while reading.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/keyword_sets.h"
#include "support/alerts.h"
#include "support/parse.h"

#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::TextReader;
using memdata::testing::tokenText;

namespace {

constexpr token_type kROOT{nullptr, 0, 0, 1};
constexpr token_type kCLASS{&kROOT, 1, 0, 2};
constexpr token_type kFIRST{&kCLASS, 2, 0, 0};
constexpr token_type kSECOND{&kCLASS, 2, 1, 0};
constexpr token_type kSHIFT{&kCLASS, 2, 1, 0};

constexpr keyword_row kWORDS[] = {
    {"RAM", &kFIRST, true}, {"ramb", &kSECOND, false}, {"KESTREL-LE", &kFIRST, false}, {"<<", &kSHIFT, true}, {}};

token_set gWords{kWORDS};
token_set gNoWords{kWORDS + 4};

class KeywordSets : public ::testing::Test {
protected:
    std::string lookUp(token_set* set, const char* text, int length) {
        const u32 used = lookup_symbol_token(set, text, length, token_.get());
        return used == 0 ? "0" : std::to_string(used) + " " + token_->text;
    }

    SystemResources resources_;
    TokenOwner token_{get_token_element()};
};

TEST_F(KeywordSets, AWholeWordMatches) {
    EXPECT_EQ(lookUp(&gWords, "RAM x", 3), "3 RAM");
    EXPECT_EQ(token_->type, &kFIRST);
    EXPECT_TRUE(token_->caseSensitive);
}

TEST_F(KeywordSets, AWordThatIgnoresCaseGivesItsOwnSpelling) {
    EXPECT_EQ(lookUp(&gWords, "RaMb", 4), "4 ramb");
    EXPECT_FALSE(token_->caseSensitive);
}

TEST_F(KeywordSets, CaseCountsWhereTheRowSaysSo) {
    EXPECT_EQ(lookUp(&gWords, "ram", 3), "0");
}

TEST_F(KeywordSets, ALongerIdentifierDoesNotMatchAShorterWord) {
    EXPECT_EQ(lookUp(&gWords, "RAMS", 4), "0");
}

TEST_F(KeywordSets, AShorterIdentifierDoesNotMatchALongerWord) {
    EXPECT_EQ(lookUp(&gWords, "RAM", 2), "3 RAM"); // the text goes on as the word does
    EXPECT_EQ(lookUp(&gWords, "RA", 2), "0");
}

TEST_F(KeywordSets, LengthOneMatchesTheWholeWordAsAPrefixOfTheText) {
    EXPECT_EQ(lookUp(&gWords, "<<5", 1), "2 <<");
    EXPECT_EQ(lookUp(&gWords, "<5", 1), "0");
}

TEST_F(KeywordSets, NoMatchLeavesTheTokenAlone) {
    set_token_element(token_.get(), "before", 0, true, &kIDENTIFIER_TOKEN, 0);
    EXPECT_EQ(lookUp(&gWords, "none", 4), "0");
    EXPECT_EQ(tokenText(*token_), "IDENTIFIER_TOKEN(before)");
}

TEST_F(KeywordSets, NullsAndEmptyTextsMatchNothing) {
    EXPECT_EQ(lookUp(nullptr, "RAM", 3), "0");
    EXPECT_EQ(lookUp(&gWords, nullptr, 3), "0");
    EXPECT_EQ(lookUp(&gWords, "", 3), "0");
    EXPECT_EQ(lookUp(&gWords, "RAM", 0), "0");
    EXPECT_EQ(lookUp(&gWords, "RAM", -1), "0");
}

TEST_F(KeywordSets, OperatorsMatchInTableOrder) {
    EXPECT_EQ(lookUp(&operator_symbol_set, ">>=", 1), "1 >");
    EXPECT_EQ(lookUp(&operator_symbol_set, "<<=", 1), "1 <");
    EXPECT_EQ(lookUp(&operator_symbol_set, ">=", 1), "2 >=");
    EXPECT_EQ(lookUp(&operator_symbol_set, "..", 1), "2 ..");
    EXPECT_EQ(lookUp(&operator_symbol_set, "\r\n", 1), "2 \r\n");
    EXPECT_EQ(lookUp(&operator_symbol_set, "\n\n", 1), "1 \n");
    EXPECT_EQ(lookUp(&operator_symbol_set, "\xFF", 1), "1 \xFF");
}

TEST_F(KeywordSets, RowsOfOneLetterMatchInTableOrder) {
    static constexpr keyword_row rows[] = {{"Ab", &kIDENTIFIER_TOKEN, true}, {"x", &kCOLON, true},
        {"aB", &kSEMICOLON, false}, {"AB", &kCOMMA, true}, {"ac", &kEQUAL, true}, {}};
    const token_set set(rows);
    const auto rowOf = [&](const std::string& text) {
        const keyword_row* row = findKeyword(set, text.data(), text.data() + text.size(), 2);
        return row == nullptr ? std::string("none") : std::to_string(row - rows);
    };
    EXPECT_EQ(rowOf("Ab"), "0");
    EXPECT_EQ(rowOf("AB"), "2"); // ahead of the row that is written so
    EXPECT_EQ(rowOf("ab"), "2");
    EXPECT_EQ(rowOf("ac"), "4");
    EXPECT_EQ(rowOf("Ac"), "none");
    EXPECT_EQ(rowOf("xb"), "none");
    EXPECT_EQ(rowOf("bb"), "none");
    EXPECT_EQ(rowOf(""), "none");
}

TEST_F(KeywordSets, TheTableIsSearchedByTheSameRule) {
    EXPECT_STREQ(search_token_symbol_table(kWORDS, "RAMB", 4)->word, "ramb");
    EXPECT_EQ(search_token_symbol_table(kWORDS, "none", 4), nullptr);
}

TEST_F(KeywordSets, ARunTimeWordFollowsItsClass) {
    const token_type* type = nullptr;
    EXPECT_EQ(extend_token_symbol_set(&gWords, "MYRAM", true, &kCLASS, &type), 0);
    EXPECT_EQ(type->parent, &kCLASS);
    EXPECT_EQ(type->level, 2u);
    EXPECT_EQ(type->ordinal, kCLASS.childCount + 1);
    EXPECT_EQ(lookUp(&gWords, "MYRAM", 5), "5 MYRAM");
    EXPECT_EQ(token_->type, type);
    EXPECT_EQ(token_->value, kCLASS.childCount + 1);
    EXPECT_EQ(lookUp(&gWords, "myram", 5), "0");
    const token_type* list[] = {&kCLASS, nullptr};
    EXPECT_TRUE(One_Of_Tokens(type, list));
}

TEST_F(KeywordSets, FurtherRunTimeWordsCountOn) {
    const token_type* first = nullptr;
    const token_type* second = nullptr;
    extend_token_symbol_set(&gWords, "one", true, &kCLASS, &first);
    extend_token_symbol_set(&gWords, "two", true, &kCLASS, &second);
    EXPECT_EQ(second->ordinal, first->ordinal + 1);
}

TEST_F(KeywordSets, TheFirstOfEqualRunTimeWordsWins) {
    const token_type* first = nullptr;
    extend_token_symbol_set(&gWords, "twice", false, &kCLASS, &first);
    extend_token_symbol_set(&gWords, "TWICE", true, &kCLASS, nullptr);
    lookUp(&gWords, "TWICE", 5);
    EXPECT_EQ(token_->type, first);
}

TEST_F(KeywordSets, RunTimeSymbolsMatchAsPrefixes) {
    extend_token_symbol_set(&gNoWords, "$(", true, &kCLASS, nullptr);
    EXPECT_EQ(lookUp(&gNoWords, "$(x", 1), "2 $(");
    EXPECT_EQ(lookUp(&gNoWords, "$x", 1), "0");
}

TEST_F(KeywordSets, RunTimeWordsWithBracketsAreWholeWords) {
    extend_token_symbol_set(&gNoWords, "ram[3]", true, &kCLASS, nullptr);
    EXPECT_EQ(lookUp(&gNoWords, "ram[3]", 6), "6 ram[3]");
    EXPECT_EQ(lookUp(&gNoWords, "ram[4]", 6), "0");
}

TEST_F(KeywordSets, ManyRunTimeWordsAreAllFound) {
    for (int i = 0; i < 3000; ++i)
        ASSERT_EQ(extend_token_symbol_set(&gNoWords, ("word" + std::to_string(i)).c_str(), false, &kCLASS, nullptr), 0);
    for (int i = 0; i < 3000; i += 7) {
        const std::string word = "WORD" + std::to_string(i);
        ASSERT_EQ(
            lookup_symbol_token(&gNoWords, word.c_str(), static_cast<int>(word.size()), token_.get()), word.size());
        ASSERT_EQ(token_->value, 3 + i);
    }
}

TEST_F(KeywordSets, ClosingASetDropsItsRunTimeWords) {
    extend_token_symbol_set(&gWords, "MYRAM", true, &kCLASS, nullptr);
    close_token_symbol_set(&gWords);
    EXPECT_EQ(lookUp(&gWords, "MYRAM", 5), "0");
    EXPECT_EQ(lookUp(&gWords, "RAM", 3), "3 RAM");
}

TEST_F(KeywordSets, TypesOutliveTheSetTheyWereMadeFor) {
    const token_type* first = nullptr;
    const token_type* second = nullptr;
    extend_token_symbol_set(&gWords, "MYRAM", true, &kCLASS, &first);
    close_token_symbol_set(&gWords);
    extend_token_symbol_set(&gWords, "MYRAM", true, &kCLASS, &second);
    EXPECT_NE(first, second);
    EXPECT_EQ(first->parent, &kCLASS);
    EXPECT_EQ(second->ordinal, first->ordinal + 1);
}

TEST_F(KeywordSets, BadArgumentsAreRefused) {
    EXPECT_EQ(extend_token_symbol_set(nullptr, "x", true, &kCLASS, nullptr), 3);
    EXPECT_EQ(extend_token_symbol_set(&gWords, nullptr, true, &kCLASS, nullptr), 3);
    EXPECT_EQ(extend_token_symbol_set(&gWords, "", true, &kCLASS, nullptr), 3);
    EXPECT_EQ(extend_token_symbol_set(&gWords, "x", true, nullptr, nullptr), 3);
    EXPECT_EQ(insert_token_symbol_list(&gWords, nullptr), 3);
}

TEST_F(KeywordSets, WithoutMemoryNoWordIsAdded) {
    memdata::testing::CapturedAlerts alerts;
    for (u64 n = 1; n < 20; ++n) {
        failTrackedAllocation(n);
        const int status = extend_token_symbol_set(&gNoWords, "faulty", true, &kCLASS, nullptr);
        failTrackedAllocation(0);
        if (status == 0) return;
        EXPECT_EQ(status, 7);
        EXPECT_EQ(lookUp(&gNoWords, "faulty", 6), "0");
    }
    FAIL() << "never succeeded";
}

TEST(KeywordSetLifetime, ShutDownDropsRunTimeWordsAndTheirCount) {
    for (int run = 0; run < 2; ++run) {
        SystemResources resources;
        const token_type* type = nullptr;
        EXPECT_EQ(extend_token_symbol_set(&gWords, "MYRAM", true, &kCLASS, &type), 0);
        EXPECT_EQ(type->ordinal, kCLASS.childCount + 1);
    }
    EXPECT_EQ(gWords.words, nullptr);
    EXPECT_EQ(getCurrentMemoryUsage(), 0u);
}

TEST(KeywordTables, BuiltInWordsCompareAsTheTableSays) {
    SystemResources resources;
    TextReader text("defined DEFINED TRUE False __FILE__ __file__");
    text.modes(kMODE_NO_MACROS);
    EXPECT_EQ(text.next(), "PREPROCESS_DEFINED_KEYWORD(defined)");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(DEFINED)");
    EXPECT_EQ(text.next(), "PREPROCESS_TRUE_KEYWORD(true)");
    EXPECT_EQ(text.next(), "PREPROCESS_FALSE_KEYWORD(false)");
    EXPECT_EQ(text.next(), "PREPROCESS_FILE_KEYWORD(__FILE__)");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(__file__)");
}

} // namespace

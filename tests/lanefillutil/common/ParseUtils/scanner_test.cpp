// scanner_test.cpp - characters to tokens.
// SPDX-License-Identifier: Apache-2.0
#include "support/alerts.h"
#include "support/parse.h"

#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::TextReader;

namespace {

class Scanner : public ::testing::Test {
protected:
    Scanner() { RegisterSystemToolName("Lanefill"); }

    static std::string read(std::string_view text, u32 modes = 0, u32 base = 0) {
        TextReader reader(text);
        return reader.modes(modes).base(base).all();
    }

    SystemResources resources_;
};

TEST_F(Scanner, APrefixWithoutDigitsIsAWord) {
    EXPECT_EQ(read("0x"), "IDENTIFIER_TOKEN(0x)");
}

TEST_F(Scanner, ADigitThatALetterFollowsBeginsAWord) {
    EXPECT_EQ(read("12abc"), "IDENTIFIER_TOKEN(12abc)");
}

TEST_F(Scanner, AShiftIsTwoTokens) {
    EXPECT_EQ(read("1<<2"), "INTEGER_NUMBER(1) LESS_THAN(<) LESS_THAN(<) INTEGER_NUMBER(2)");
}

} // namespace

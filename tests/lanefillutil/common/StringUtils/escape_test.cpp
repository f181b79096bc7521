// escape_test.cpp - one character at a time, plain or escaped.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/escape.h"

#include <gtest/gtest.h>
#include <string>

namespace memdata::testing {
namespace {

// What one call takes: the character in hexadecimal or "none", the rest of the text, and whether it was an escape.
std::string take(const char* text) {
    const char* cursor = text;
    bool hadEscape = false;
    unsigned count = 99;
    char c = 'Z';
    convert_escaped_char(&cursor, &hadEscape, &count, &c);
    char shown[32];
    std::snprintf(shown, sizeof shown, "%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    return (count == 0 ? "none" : count == 1 ? shown : "?") + std::string("|") + cursor + (hadEscape ? "|escape" : "");
}

struct EscapeCase {
    const char* text;
    const char* result;
};

TEST(Escape, LettersStandForControlCharacters) {
    constexpr EscapeCase kCASES[] = {
        {"\\ax", "07|x|escape"},
        {"\\bx", "08|x|escape"},
        {"\\fx", "0C|x|escape"},
        {"\\nx", "0A|x|escape"},
        {"\\rx", "0D|x|escape"},
        {"\\tx", "09|x|escape"},
        {"\\vx", "0B|x|escape"},
    };
    for (const EscapeCase& c : kCASES) EXPECT_EQ(take(c.text), c.result) << c.text;
}

TEST(Escape, QuotesAndBackslashAreThemselves) {
    EXPECT_EQ(take("\\\"x"), "22|x|escape");
    EXPECT_EQ(take("\\'x"), "27|x|escape");
    EXPECT_EQ(take("\\\\x"), "5C|x|escape");
}

TEST(Escape, AnyOtherCharacterYieldsThatCharacter) {
    EXPECT_EQ(take("\\qx"), "71|x|escape");
    EXPECT_EQ(take("\\8x"), "38|x|escape");
    EXPECT_EQ(take("\\%x"), "25|x|escape");
    EXPECT_EQ(take("\\Nx"), "4E|x|escape");
}

TEST(Escape, UpToThreeOctalDigits) {
    EXPECT_EQ(take("\\7x"), "07|x|escape");
    EXPECT_EQ(take("\\12x"), "0A|x|escape");
    EXPECT_EQ(take("\\1012"), "41|2|escape");
    EXPECT_EQ(take("\\08"), "00|8|escape");
    EXPECT_EQ(take("\\777"), "FF||escape"); // the low eight bits
}

TEST(Escape, UpToTwoHexadecimalDigits) {
    EXPECT_EQ(take("\\x4g"), "04|g|escape");
    EXPECT_EQ(take("\\x414"), "41|4|escape");
    EXPECT_EQ(take("\\Xfe"), "FE||escape");
}

TEST(Escape, WithoutAHexadecimalDigitTheLetterItself) {
    EXPECT_EQ(take("\\xg"), "78|g|escape");
    EXPECT_EQ(take("\\X"), "58||escape");
}

TEST(Escape, ALineEndAndAllThatFollowAreSwallowed) {
    EXPECT_EQ(take("\\\nx"), "none|x|escape");
    EXPECT_EQ(take("\\\r\n\n\rx"), "none|x|escape");
    EXPECT_EQ(take("\\\n"), "none||escape");
}

TEST(Escape, APlainCharacterIsItself) {
    EXPECT_EQ(take("abc"), "61|bc");
    EXPECT_EQ(take("\nb"), "0A|b");
}

TEST(Escape, TheEndOfTheTextYieldsNothing) {
    EXPECT_EQ(take(""), "none|");
}

TEST(Escape, ABackslashAtTheEndIsItself) {
    EXPECT_EQ(take("\\"), "5C|");
}

TEST(Escape, OneFlagServesAWholeText) {
    const char* cursor = "\\ab";
    bool hadEscape = false;
    convert_escaped_char(&cursor, &hadEscape, nullptr, nullptr);
    convert_escaped_char(&cursor, &hadEscape, nullptr, nullptr);
    EXPECT_TRUE(hadEscape);
    EXPECT_STREQ(cursor, "");
}

TEST(Escape, AnEscapedTextReadsBack) {
    std::string text;
    for (int c = 1; c < 256; ++c) text += {static_cast<char>(c), '7', '\\'};
    const std::string escaped = escapedText(text);
    std::string back;
    for (const char* cursor = escaped.c_str(); *cursor != '\0';) {
        char c = '\0';
        convert_escaped_char(&cursor, nullptr, nullptr, &c);
        back.push_back(c);
    }
    EXPECT_EQ(back, text);
}

TEST(Escape, AnEscapedTextShowsLettersWhereThereAreAnyElseOctalDigits) {
    EXPECT_EQ(escapedText("a\n\t\"'\\\x01\x7F"), "a\\n\\t\\\"'\\\\\\001\\177");
    EXPECT_EQ(escapedText(std::string_view("\0", 1)), "\\000");
}

} // namespace
} // namespace memdata::testing

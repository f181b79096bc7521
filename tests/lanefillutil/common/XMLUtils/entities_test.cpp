// entities_test.cpp - attribute values as they stand between quotes.
// SPDX-License-Identifier: Apache-2.0
#include "XMLUtils/entities.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string replaced(std::string text) {
    text.resize(memdata::replaceXmlEntities(text.data(), text.size()));
    return text;
}

std::string escaped(std::string_view value) {
    std::string text = "a";
    memdata::appendXmlValue(&text, value);
    return text.substr(1);
}

struct EntityCase {
    const char* text;
    const char* value;
};

TEST(XmlEntities, TheFiveStandardOnesAreReplaced) {
    EXPECT_EQ(replaced("&lt;&gt;&amp;&quot;&apos;"), "<>&\"'");
    EXPECT_EQ(replaced("a&lt;b&amp;&amp;c"), "a<b&&c");
    EXPECT_EQ(replaced("&amp;lt;"), "&lt;");
}

TEST(XmlEntities, CharactersCanBeGivenByNumber) {
    constexpr EntityCase kCASES[] = {
        {"&#65;&#x41;&#x4a;&#x4A;", "AAJJ"},
        {"&#9;|&#10;|&#13;", "\t|\n|\r"},
        {"&#127;&#128;&#x7FF;", "\x7F\xC2\x80\xDF\xBF"},
        {"&#x800;&#xFFFF;", "\xE0\xA0\x80\xEF\xBF\xBF"},
        {"&#x10000;&#x10FFFF;", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        {"&#0000000065;", "A"},
    };
    for (const EntityCase& c : kCASES) EXPECT_EQ(replaced(c.text), c.value) << c.text;
}

TEST(XmlEntities, WhatIsNoEntityStaysAsItIs) {
    constexpr const char* kTEXTS[] = {"", "&", "&;", "a & b", "&nbsp;", "&LT;", "&lt", "& lt;", "&#;", "&#x;", "&#0;",
        "&#x110000;", "&#99999999999;", "&#-65;", "&#6 5;", "&#xG;", "&#X41;", "&&", "a&"};
    for (const char* text : kTEXTS) EXPECT_EQ(replaced(text), text);
}

TEST(XmlEntities, AnAmpersandAheadOfAnEntityStays) {
    EXPECT_EQ(replaced("&&lt;"), "&<");
}

TEST(XmlEntities, AValueIsWrittenSoThatItComesBack) {
    EXPECT_EQ(escaped("a\"b<c&d"), "a&quot;b&lt;c&amp;d");
    EXPECT_EQ(escaped("x\ty\nz\r"), "x&#9;y&#10;z&#13;");
    EXPECT_EQ(escaped("C:\\dir\\'a'>"), "C:\\dir\\'a'>");
    EXPECT_EQ(escaped("\xC3\xA4"), "\xC3\xA4");
    std::string all;
    for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
    EXPECT_EQ(replaced(escaped(all)), all);
}

TEST(XmlEntities, EveryCutOfATextOfEntitiesStaysInsideIt) {
    const std::string whole = "&lt;&#x10FFFF;&quot;&#65;&amp;";
    for (size_t n = 0; n <= whole.size(); ++n) EXPECT_LE(replaced(whole.substr(0, n)).size(), n);
}

} // namespace

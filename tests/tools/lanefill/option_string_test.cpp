// option_string_test.cpp - words of a command line as one option text.
// SPDX-License-Identifier: Apache-2.0
#include "tools/lanefill/option_string.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace memdata {
namespace {

// The text, or "refused: " and the word.
std::string joined(std::vector<std::string> words) {
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    std::string text;
    std::string refused;
    return joinOptionWords(pointers, &text, &refused) ? text : "refused: " + refused;
}

// How a file's name is passed on.
std::string name(const std::string& file) {
    const std::string text = joined({"-bd", file});
    return text.starts_with("-bd ") ? text.substr(4) : text;
}

TEST(OptionString, NoWordsGiveNoText) {
    EXPECT_EQ(joined({}), "");
}

TEST(OptionString, WordsAreJoinedByBlanks) {
    EXPECT_EQ(joined({"-bm", "soc.bmm", "-bd", "app.elf", "tag", "ram", "-bx"}), "-bm soc.bmm -bd app.elf tag ram -bx");
}

TEST(OptionString, PlainNamesStayPlain) {
    for (const char* file : {"a", "app.elf", "/usr/lib/a_b.mem", "./x.mem", "../x.mem", "b64.mem"})
        EXPECT_EQ(name(file), file);
}

TEST(OptionString, OtherNamesAreQuoted) {
    for (const char* file : {"a b.mem", "a+b.mem", "a=b.mem", "@a.mem", "-a.mem", "7seg.mem", "a//b.mem", "*", "a.",
             "Gr\xC3\xB6\xC3\x9F"
             "e.mem",
             "#if.mem", "a;b.mem", "a:b.mem", "a,b", "[x]", "a\\b.mem", "_x", " x", "x ", "a\tb"})
        EXPECT_EQ(name(file), "\"" + std::string(file) + "\"");
}

TEST(OptionString, AnEmptyNameIsAnEmptyString) {
    EXPECT_EQ(name(""), "\"\"");
}

TEST(OptionString, QuotesChangeAroundAQuote) {
    EXPECT_EQ(name("it's"), R"("it's")");
    EXPECT_EQ(name(R"(say "x")"), R"("say "'"x"')");
    EXPECT_EQ(name(R"(a'b"c'd)"), R"("a'b"'"c'"'d")");
}

TEST(OptionString, ANameInQuotesOfItsOwnKeepsThem) {
    EXPECT_EQ(name(R"("x")"), R"('"x"')");
}

TEST(OptionString, NamesThatNoTextCanHoldAreRefused) {
    for (const char* file : {"a\nb.mem", "a\rb", "\n", "a\xFF"}) EXPECT_EQ(name(file), "refused: " + std::string(file));
    EXPECT_EQ(joined({"-I", "a\nb"}), "refused: a\nb");
    EXPECT_EQ(joined({"-Ia\nb"}), "refused: -Ia\nb");
}

TEST(OptionString, ASwitchIsNoName) {
    EXPECT_EQ(joined({"-bm", "-bd", "a b"}), "-bm -bd \"a b\"");
    EXPECT_EQ(joined({"-o", "p", "-w"}), "-o p -w");
    EXPECT_EQ(joined({"-bd", "-DX=a b"}), "-bd -DX=a b");
}

TEST(OptionString, ADashAheadOfAnyOtherWordMakesItAName) {
    EXPECT_EQ(joined({"-bd", "-bd.mem"}), "-bd \"-bd.mem\"");
    EXPECT_EQ(joined({"-bd", "-"}), "-bd \"-\"");
    EXPECT_EQ(joined({"-bd", "./-bd"}), "-bd \"./-bd\"");
}

TEST(OptionString, EverySwitchForAFileQuotesIt) {
    for (const char* word :
        {"-bd", "-md", "-bx", "-bm", "-mm", "-bt", "-log", "-dataset", "-f", "-image", "-pp", "-msgc", "-msg"})
        EXPECT_EQ(joined({word, "a b"}), std::string(word) + " \"a b\"");
}

TEST(OptionString, TheFileOfAnOutputStandsBehindItsLetters) {
    EXPECT_EQ(joined({"-o", "pb", "a b", "-u"}), "-o pb \"a b\" -u");
}

TEST(OptionString, WordsBehindAFileStayAsTheyAre) {
    EXPECT_EQ(joined({"-bd", "a b", "tag", "x.y[0]", "boot", "0x10"}), "-bd \"a b\" tag x.y[0] boot 0x10");
    EXPECT_EQ(joined({"-mf", "m ROM8 4096 8", "c", "*"}), "-mf m ROM8 4096 8 c *");
}

TEST(OptionString, FoldersOfAListAreQuotedOneByOne) {
    EXPECT_EQ(joined({"-I", "inc;../my lib:/x"}), "-I inc;\"../my lib\";/x");
    EXPECT_EQ(joined({"-Imy lib;inc", "-u"}), "-I \"my lib\";inc -u");
    EXPECT_EQ(joined({"-I", ";;inc;"}), "-I inc");
    EXPECT_EQ(joined({"-I", ""}), "-I \"\"");
}

TEST(OptionString, AnXmlTextIsAStringWithEscapes) {
    EXPECT_EQ(joined({"-mx", "<A n=\"x\"/>\n\\", "root", "top"}), "-mx \"<A n=\\\"x\\\"/>\\n\\\\\" root top");
}

TEST(OptionString, AnXmlTextKeepsBothLineEnds) {
    EXPECT_EQ(joined({"-mx", "<A>\r\n</A>"}), "-mx \"<A>\\r\\n</A>\"");
}

TEST(OptionString, AMegabyteIsJoined) {
    const std::string file(1 << 20, 'a');
    EXPECT_EQ(name(file), file);
    const std::string quotes(1 << 16, '"');
    EXPECT_EQ(name(quotes), "'" + quotes + "'");
}

} // namespace
} // namespace memdata

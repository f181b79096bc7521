// alert_levels_test.cpp - what an alert shows of the texts that led to its place.
// SPDX-License-Identifier: Apache-2.0
#include "support/alerts.h"
#include "support/parse.h"
#include "support/temporary_folder.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::TemporaryFolder;
using memdata::testing::TextReader;

namespace {

class AlertLevels : public ::testing::Test {
protected:
    AlertLevels() { RegisterSystemToolName("Lanefill"); }

    // The location part of an alert at the token.
    static std::string location(TextReader& text) {
        CapturedAlerts alerts;
        PrintErrorLocation(text, kERROR_MESSAGE_STRING, 3, text.token(), "x");
        const std::string said = alerts.text();
        const std::string head = "\nERROR:Lanefill:86 - x\n";
        EXPECT_EQ(said.substr(0, head.size()), head);
        return said.substr(head.size(), said.size() - head.size() - 1);
    }
    static void push(parse_stream* stream, const char* name, const char* text, u32 state) {
        ASSERT_EQ(
            push_parse_MemoryFile_stream(name, text, std::strlen(text), stream, state, nullptr, nullptr, nullptr), 0);
    }

    SystemResources resources_;
};

TEST_F(AlertLevels, ATextThatStandsForAFileShowsFileLineAndCaret) {
    TextReader text("a\n\tb c");
    for (int i = 0; i < 3; ++i) text.next();
    EXPECT_EQ(location(text), "   Line #2, File \"text.bmm\".\n        b c\n          ^\n");
}

TEST_F(AlertLevels, ATextInMemoryShowsOnlyItsLine) {
    TextReader text("-bm x");
    text->showsAsFile = false;
    text.next();
    EXPECT_EQ(location(text), "-bm x\n^\n");
}

TEST_F(AlertLevels, AtTheEndOfATextInMemoryTheCaretStandsBehindIt) {
    TextReader text("-bd a tag");
    text->showsAsFile = false;
    text.all();
    EXPECT_EQ(location(text), "-bd a tag\n         ^\n");
}

TEST_F(AlertLevels, AtTheEndOfAFileNoLineIsShown) {
    TextReader text("a\nb");
    text.all();
    EXPECT_EQ(location(text), "   Line #2, File \"text.bmm\".\n");
}

TEST_F(AlertLevels, AMacroShowsItsLineAndWhereItWasUsed) {
    TextReader text("a\nb");
    text.next();
    text.next();
    push(text, "WIDTH", "x\ny z", kCONTEXT_MACRO_BODY);
    for (int i = 0; i < 3; ++i) text.next();
    EXPECT_EQ(location(text), "   Line #2, Macro \"WIDTH\".\ny z\n  ^\n   Line #2, File \"text.bmm\".\n");
}

TEST_F(AlertLevels, ARescanShowsItsTextButNoLineOfItsOwn) {
    TextReader text("a");
    text.next();
    push(text, "rescan", "12", kCONTEXT_RESCAN);
    text.next();
    EXPECT_EQ(location(text), "12\n^\n   Line #1, File \"text.bmm\".\n");
}

TEST_F(AlertLevels, AnIncludedFileShowsTheLineThatIncludesIt) {
    TemporaryFolder folder;
    const std::string name = folder.write("b.h", "one\ntwo three\n");
    TextReader text("a\ninclude\nc");
    text.modes(kMODE_LINE_ENDS);
    for (int i = 0; i < 4; ++i) text.next(); // the line end of the second line is read already
    OwnedFileSpec spec(CreateFileSpec(name.c_str()));
    parse_stream* file = nullptr;
    ASSERT_EQ(open_parse_DiskFile(spec.get(), "+h", nullptr, nullptr, text, &file), 0);
    ASSERT_EQ(push_parse_context(file), 0);
    text.modes(kMODE_LINE_ENDS, false);
    for (int i = 0; i < 3; ++i) text.next();
    EXPECT_EQ(location(text), "   Line #2, File \"" + name + "\".\ntwo three\n    ^\n   Line #2, File \"text.bmm\".\n");
}

TEST_F(AlertLevels, OverlaysAreNoLevels) {
    TextReader text("a\nb");
    push_keyword_stream(text, &instance_path_token_set);
    push_keyword_stream(text, &file_path_token_set);
    text.next();
    text.next();
    push(text, "M", "x", kCONTEXT_MACRO_BODY);
    text.next();
    EXPECT_EQ(location(text), "   Line #1, Macro \"M\".\nx\n^\n   Line #2, File \"text.bmm\".\n");
}

TEST_F(AlertLevels, ATokenFromFurtherOutIsShownInItsOwnText) {
    TextReader text("a b");
    text.next();
    push(text, "M", "x", kCONTEXT_MACRO_BODY);
    EXPECT_EQ(location(text), "   Line #1, File \"text.bmm\".\na b\n^\n");
}

TEST_F(AlertLevels, ATokenOfATextThatIsClosedIsShownAtTheLastTokenOfTheActiveOne) {
    TextReader text("a b");
    text.next();
    std::string body = "x";
    push(text, "M", body.c_str(), kCONTEXT_MACRO_BODY);
    text.next();
    TokenOwner old(dup_token_element(text.token()));
    pop_parse_stream(text);
    CapturedAlerts alerts;
    PrintErrorLocation(text, kERROR_MESSAGE_STRING, 3, old.get(), "x");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - x\n   Line #1, File \"text.bmm\".\na b\n^\n\n");
}

TEST_F(AlertLevels, ATokenWithoutAPlaceIsShownTheSameWay) {
    TextReader text("a b");
    text.next();
    TokenOwner made(get_token_element());
    set_token_element(made.get(), "made", 0, true, &kIDENTIFIER_TOKEN, 0);
    CapturedAlerts alerts;
    PrintErrorLocation(text, kERROR_MESSAGE_STRING, 3, made.get(), "x");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - x\n   Line #1, File \"text.bmm\".\na b\n^\n\n");
}

TEST_F(AlertLevels, BeforeTheFirstTokenThereIsNoLineToShow) {
    TextReader text("a");
    EXPECT_EQ(location(text), "   Line #1, File \"text.bmm\".\n");
}

TEST_F(AlertLevels, AnUnterminatedTextIsShownToItsEnd) {
    TextReader text("\n a b");
    text.next();
    text.next();
    EXPECT_EQ(location(text), "   Line #2, File \"text.bmm\".\n a b\n   ^\n");
}

TEST_F(AlertLevels, AtTheEndOfATextWithANulNothingIsReadBehindIt) {
    TextReader text(std::string_view("a\0", 2));
    text->showsAsFile = false;
    text.all();
    EXPECT_EQ(location(text), "a\n ^\n");
}

TEST_F(AlertLevels, ALineEndsAtANul) {
    TextReader text(std::string_view("a b\0c d", 7));
    text.next();
    text.next();
    EXPECT_EQ(location(text), "   Line #1, File \"text.bmm\".\na b\n  ^\n");
}

} // namespace

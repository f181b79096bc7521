// streams_test.cpp - contexts opened, pushed, popped and closed.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/StringUtils.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"
#include "support/parse.h"
#include "support/temporary_folder.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::TemporaryFolder;
using memdata::testing::TextReader;

namespace {

using FileSpecOwner = Tracked<fileSpecType, DeleteFileSpec>;

constexpr token_type kA{nullptr, 2, 0, 0};
constexpr token_type kB{nullptr, 2, 1, 0};
constexpr keyword_row kROWS_A[] = {{"a", &kA, true}, {"x", &kA, true}, {}};
constexpr keyword_row kROWS_B[] = {{"b", &kB, true}, {"x", &kB, true}, {}};
token_set gSetA{kROWS_A};
token_set gSetB{kROWS_B};

std::string kindsOf(TextReader& text) {
    std::string kinds;
    for (;;) {
        if (get_next_token(text, text.token()) != 0) return kinds + "!";
        const token_type* type = text.token()->type;
        if (type == &kEND_OF_FILE) return kinds;
        kinds += type == &kA ? 'A' : type == &kB ? 'B' : '-';
    }
}

class Streams : public ::testing::Test {
protected:
    Streams() { RegisterSystemToolName("Lanefill"); }

    static int pushText(parse_stream* stream, const char* text, u32 state = 0) {
        return push_parse_MemoryFile_stream("m", text, std::strlen(text), stream, state, nullptr, nullptr, nullptr);
    }

    SystemResources resources_;
};

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

// Keyword sets

TEST_F(Streams, AnOverlaysWordsComeAheadOfThoseBelow) {
    TextReader text("a b x", &gSetA);
    push_keyword_stream(text, &gSetB);
    EXPECT_EQ(kindsOf(text), "ABB");
}

TEST_F(Streams, PoppingAnOverlayPutsTheWordsBelowInForceAgain) {
    TextReader text("x x", &gSetA);
    push_keyword_stream(text, &gSetB);
    text.next();
    EXPECT_EQ(text.token()->type, &kB);
    pop_parse_stream(text);
    EXPECT_EQ(kindsOf(text), "A");
}

TEST_F(Streams, AnOverlayReadsOnInTheTextAndHandsItsPlaceDown) {
    TextReader text("a\nb\nc\nd");
    text.next();
    push_keyword_stream(text, &gSetB);
    text.next();
    text.next();
    EXPECT_EQ(get_stream_line_number(text), 3u);
    pop_parse_stream(text);
    EXPECT_EQ(get_stream_line_number(text), 3u);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(d)");
    EXPECT_EQ(text.token()->lineNumber, 4u);
}

TEST_F(Streams, ATextWithoutWordsTakesOverThoseAroundIt) {
    TextReader text("x", &gSetA);
    pushText(text, "x");
    EXPECT_EQ(kindsOf(text), "AA");
}

TEST_F(Streams, AContextWithoutWordsEndsTheSearch) {
    TextReader text("a b");
    push_keyword_stream(text, &gSetB);
    EXPECT_EQ(kindsOf(text), "-B");
}

TEST_F(Streams, AnOverlayStaysInForceOverTheEndOfAPushedText) {
    TextReader text("b x", &gSetA);
    pushText(text, "x");
    push_keyword_stream(text, &gSetB);
    const u32 overlay = activeContext(text)->contextId;
    EXPECT_EQ(kindsOf(text), "BBB");
    EXPECT_EQ(activeContext(text)->contextId, overlay);
    EXPECT_EQ(activeContext(text)->contextState, kCONTEXT_OVERLAY);
    pop_parse_stream(text);
    EXPECT_EQ(activeContext(text), static_cast<parse_stream*>(text));
}

TEST_F(Streams, SeveralOverlaysStayInForceOverTheEndsOfSeveralTexts) {
    TextReader text("a b x");
    pushText(text, "x");
    pushText(text, "x");
    push_keyword_stream(text, &gSetA);
    push_keyword_stream(text, &gSetB);
    EXPECT_EQ(kindsOf(text), "BBABB");
}

TEST_F(Streams, ModesOfAnOverlayAreRestoredBehindTheEndOfAPushedText) {
    TextReader text("b");
    pushText(text, "a");
    push_keyword_stream(text, &gSetA);
    {
        ParseModes modes(text, kMODE_COMMENTS, true);
        text.next();
        text.next();
        EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, true));
    }
    EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, false));
    pop_parse_stream(text);
    EXPECT_EQ(text->parseModes, 0u);
}

TEST_F(Streams, AnOverlayScopeEndsUnderAMacroThatIsStillOpen) {
    TextReader text("x y", &gSetA);
    {
        KeywordOverlay overlay(text, &gSetB);
        ASSERT_EQ(overlay.status(), 0);
        overlay.setModes(kMODE_NO_MACROS, true);
        overlay.ignoreWords();
        pushText(text, "q x x", kCONTEXT_MACRO_BODY);
        text.next();
        EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(x)");
    }
    EXPECT_TRUE(test_context_state(text, kCONTEXT_MACRO_BODY, true));
    EXPECT_TRUE(test_parse_modes(text, kMODE_NO_MACROS, false));
    EXPECT_EQ(kindsOf(text), "AA-");
    EXPECT_EQ(text->parseModes, 0u);
}

TEST_F(Streams, AnOverlayScopeEndsOnTop) {
    TextReader text("x x", &gSetA);
    {
        KeywordOverlay overlay(text, &gSetB);
        text.next();
        EXPECT_EQ(text.token()->type, &kB);
        EXPECT_EQ(overlay.close(), 0);
        EXPECT_EQ(overlay.close(), 0);
    }
    EXPECT_EQ(kindsOf(text), "A");
}

TEST_F(Streams, ClosingTheRootDropsItsRunTimeWords) {
    TextReader text("word", &gSetA);
    extend_token_symbol_set(&gSetA, "word", true, &kNUMBER, nullptr);
    pushText(text, "word");
    pop_parse_stream(text);
    EXPECT_NE(gSetA.words, nullptr);
    text.close();
    EXPECT_EQ(gSetA.words, nullptr);
}

// Modes, bases and states

TEST_F(Streams, APushedTextTakesOverModesAndBase) {
    TextReader text("a");
    text.modes(kMODE_COMMENTS).base(16);
    text->noKeywordLookup = true;
    pushText(text, "b");
    EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, true));
    EXPECT_EQ(get_stream_number_base(text), 16u);
    EXPECT_TRUE(activeContext(text)->noKeywordLookup);
}

TEST_F(Streams, ModesOfAnAutomaticTextStayThere) {
    TextReader text("a");
    pushText(text, "b");
    text.modes(kMODE_COMMENTS);
    pop_parse_stream(text);
    EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, false));
}

TEST_F(Streams, ModesOfAnOverlayGoDownWithIt) {
    TextReader text("a");
    push_keyword_stream(text, &gSetA);
    text.modes(kMODE_COMMENTS);
    pop_parse_stream(text);
    EXPECT_TRUE(test_parse_modes(text, kMODE_COMMENTS, true));
}

TEST_F(Streams, TheNumberBaseAlwaysGoesDown) {
    TextReader text("a");
    pushText(text, "b");
    EXPECT_EQ(set_stream_number_base(text, 2), 0u);
    pop_parse_stream(text);
    EXPECT_EQ(get_stream_number_base(text), 2u);
}

TEST_F(Streams, BlanksAndLineEndsOfAMacroBodyAreNotDelivered) {
    TextReader text("d");
    text.modes(kMODE_WHITESPACE | kMODE_LINE_ENDS);
    pushText(text, "a b\nc", kCONTEXT_MACRO_BODY);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) IDENTIFIER_TOKEN(b) IDENTIFIER_TOKEN(c) IDENTIFIER_TOKEN(d)");
}

TEST_F(Streams, BlanksAndLineEndsOfAMacroBodyAreDeliveredOnDemand) {
    TextReader text("");
    pushText(text, "a b\nc", kCONTEXT_MACRO_BODY);
    text.modes(kMODE_WHITESPACE | kMODE_LINE_ENDS | kMODE_MACRO_LAYOUT);
    EXPECT_EQ(
        text.all(), "IDENTIFIER_TOKEN(a) WHITESPACE_TOKEN( ) IDENTIFIER_TOKEN(b) END_OF_LINE(\\n) IDENTIFIER_TOKEN(c)");
}

TEST_F(Streams, ABlankAheadOfADirectiveIsDropped) {
    TextReader text("a #x  #if");
    text.modes(kMODE_WHITESPACE);
    TokenOwner token(get_token_element());
    std::string all;
    while (parse_filtered_token(text, token.get()) == 0 && token->type != &kEND_OF_FILE)
        all += memdata::testing::tokenText(*token) + " ";
    EXPECT_EQ(
        all, "IDENTIFIER_TOKEN(a) WHITESPACE_TOKEN( ) POUND_SIGN(#) IDENTIFIER_TOKEN(x) PREPROCESS_IF_KEYWORD(#if) ");
}

TEST_F(Streams, ABlankAheadOfADirectiveStaysWhereDirectivesAreText) {
    TextReader text("a #if");
    text.modes(kMODE_WHITESPACE | kMODE_NO_DIRECTIVES);
    EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) WHITESPACE_TOKEN( ) PREPROCESS_IF_KEYWORD(#if)");
}

// Positions

TEST_F(Streams, MovingBackReadsAgain) {
    TextReader text("a b\nc d\ne");
    while (text.next() != "IDENTIFIER_TOKEN(b)") {
    }
    const u64 place = get_stream_position(text);
    const u32 line = get_stream_line_number(text);
    EXPECT_EQ(place, 3u);
    text.all();
    set_stream_position(text, place);
    set_stream_line_number(text, line);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(c)");
    EXPECT_EQ(text.token()->lineNumber, 2u);
}

TEST_F(Streams, MovingIntoALineFindsItsStart) {
    TextReader text("a b\ncd e");
    set_stream_position(text, 6);
    text.next();
    EXPECT_EQ(text.token()->sourcePosition - text.token()->lineStart, 3);
    EXPECT_EQ(text.token()->lineStart[0], 'c');
}

TEST_F(Streams, MovingInAVeryLongLineDoesNotLookForItsStart) {
    std::string line(4000, ' ');
    line += 'a';
    TextReader text(line);
    set_stream_position(text, 4000);
    text.next();
    EXPECT_EQ(text.token()->sourcePosition - text.token()->lineStart, 1024);
}

TEST_F(Streams, MovingBehindTheEndIsTheEnd) {
    TextReader text("a b");
    set_stream_position(text, 1000);
    EXPECT_EQ(get_stream_position(text), 3u);
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
}

// Limits

TEST_F(Streams, FilesNestUpToTheLimit) {
    TextReader text("a");
    text.next();
    for (u32 i = 0; i < kMAX_INCLUDE_DEPTH; ++i) ASSERT_EQ(pushText(text, "b"), 0) << i;
    CapturedAlerts alerts;
    text.next();
    EXPECT_EQ(pushText(text, "c"), 21);
    EXPECT_EQ(alerts.text(),
        "\nERROR:Lanefill - File 'm' can not be included, the limit of 200 nested files is reached.\n"
        "b\n^\n   Line #1, File \"text.bmm\".\n\n");
    pop_parse_stream(text);
    EXPECT_EQ(pushText(text, "d"), 0);
}

TEST_F(Streams, ExpansionsNestUpToTheLimit) {
    TextReader text("a");
    text.next();
    for (u32 i = 0; i < kMAX_EXPANSION_DEPTH; ++i)
        ASSERT_EQ(pushText(text, "b", i % 2 == 0 ? kCONTEXT_MACRO_BODY : kCONTEXT_RESCAN), 0) << i;
    CapturedAlerts alerts;
    text.next();
    EXPECT_EQ(pushText(text, "c", kCONTEXT_MACRO_BODY), 21);
    EXPECT_EQ(alerts.text().substr(0, alerts.text().find("b\n")),
        "\nERROR:Lanefill - Macro 'm' can not be expanded, the limit of 1000 nested expansions is reached.\n");
}

TEST_F(Streams, MacroTextIsCountedUpToTheLimit) {
    const std::string body(u64{1} << 20, ' ');
    TextReader text("a");
    for (u64 i = 0; i < kMAX_PUSHED_BYTES >> 20; ++i) {
        ASSERT_EQ(push_parse_MemoryFile_stream(
                      "m", body.data(), body.size(), text, kCONTEXT_MACRO_BODY, nullptr, nullptr, nullptr),
            0);
        pop_parse_stream(text);
    }
    EXPECT_EQ(pushText(text, "", kCONTEXT_MACRO_BODY), 0);
    text.next();
    CapturedAlerts alerts;
    EXPECT_EQ(pushText(text, "b", kCONTEXT_RESCAN), 21);
    EXPECT_EQ(alerts.text(),
        "\nERROR:Lanefill - Macro 'm' can not be expanded, the limit of 268435456 bytes of macro text is reached.\n"
        "   Line #1, File \"text.bmm\".\na\n^\n\n");
}

// Files on disk

class DiskStreams : public Streams {
protected:
    int open(const std::string& name, const char* extension = "bmm", parse_stream* parent = nullptr) {
        FileSpecOwner spec(CreateFileSpec(name.c_str()));
        return open_parse_DiskFile(spec.get(), extension, nullptr, nullptr, parent, &stream_);
    }
    std::string all() {
        TokenOwner token(get_token_element());
        std::string text;
        while (get_next_token(stream_, token.get()) == 0 && token->type != &kEND_OF_FILE) text += token->text;
        return text;
    }
    ~DiskStreams() override { close_parse_stream(&stream_); }

    TemporaryFolder folder_;
    parse_stream* stream_ = nullptr;
};

TEST_F(DiskStreams, AFileIsRead) {
    EXPECT_EQ(open(folder_.write("a.bmm", "x y\r\nz")), 0);
    EXPECT_EQ(get_stream_size(stream_), 6u);
    EXPECT_EQ(all(), "xyz");
}

TEST_F(DiskStreams, TheDefaultExtensionIsForNamesWithoutOne) {
    folder_.write("a.bmm", "x");
    const std::string other = folder_.write("a.txt", "y");
    EXPECT_EQ(open(folder_.file("a")), 0);
    EXPECT_EQ(all(), "x");
    close_parse_stream(&stream_);
    EXPECT_EQ(open(other), 0);
    EXPECT_EQ(all(), "y");
}

TEST_F(DiskStreams, APlusAheadOfTheExtensionIsPassedOver) {
    folder_.write("a.h", "x");
    EXPECT_EQ(open(folder_.file("a"), "+h"), 0);
}

TEST_F(DiskStreams, AnEmptyFileGivesAStreamAndStatusSeventeen) {
    EXPECT_EQ(open(folder_.write("a.bmm", "")), 17);
    ASSERT_NE(stream_, nullptr);
    EXPECT_EQ(get_stream_size(stream_), 0u);
    EXPECT_EQ(std::string(get_stream_file_name(stream_)), folder_.file("a.bmm"));
    EXPECT_EQ(all(), "");
}

TEST_F(DiskStreams, AnEmptyNameIsAnAlert) {
    FileSpecOwner spec(NewFileSpec());
    CapturedAlerts alerts;
    EXPECT_EQ(open_parse_DiskFile(spec.get(), "+h", nullptr, nullptr, nullptr, &stream_), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:55 - A null file name was given for a 'h' file.\n\n");
}

TEST_F(DiskStreams, AMissingFileIsAnAlert) {
    CapturedAlerts alerts;
    EXPECT_EQ(open("/nowhere/a.bmm"), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:1 - File '/nowhere/a.bmm' can not be found, or is busy.\n"
                             "    Please ensure that the file is available in the correct\n"
                             "    directory location, or isn't being locked by another\n"
                             "    application.\n\n");
    EXPECT_EQ(stream_, nullptr);
}

TEST_F(DiskStreams, AMissingFileOfAnotherTextIsReportedAtItsPlace) {
    TextReader text("a\nb c");
    while (text.next() != "IDENTIFIER_TOKEN(b)") {
    }
    CapturedAlerts alerts;
    EXPECT_EQ(open("/nowhere/a.h", "+h", text), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:1 - File '/nowhere/a.h' can not be found, or is busy.\n"
                             "    Please ensure that the file is available in the correct\n"
                             "    directory location, or isn't being locked by another\n"
                             "    application.\n"
                             "   Line #2, File \"text.bmm\".\nb c\n^\n\n");
}

TEST_F(DiskStreams, ACommentThatAnIncludedFileLeavesOpenIsReportedAtItsPlace) {
    TextReader text("a\nb");
    text.next();
    parse_stream* file = nullptr;
    const std::string name = folder_.write("c.h", "c\n d /* e\nf");
    FileSpecOwner spec(CreateFileSpec(name.c_str()));
    ASSERT_EQ(open_parse_DiskFile(spec.get(), "+h", nullptr, nullptr, text, &file), 0);
    ASSERT_EQ(push_parse_context(file), 0);
    set_context_state(text, kCONTEXT_AUTO_POP, true);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(c)");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(d)");
    CapturedAlerts alerts;
    EXPECT_EQ(text.next(), "status 21");
    EXPECT_EQ(alerts.text(),
        "\n"
        "ERROR:Lanefill:39 - Unmatched nested C style comment. A closing '*/' was expected before the end of the file.\n"
        "   Line #2, File \"" +
            name +
            "\".\n"
            " d /* e\n"
            "   ^\n"
            "   Line #1, File \"text.bmm\".\n"
            "\n");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)");
    EXPECT_EQ(text.close(), 0);
}

TEST_F(DiskStreams, AFolderIsNoFile) {
    TextReader text("a");
    text.next();
    CapturedAlerts alerts;
    EXPECT_EQ(open(folder_.path().string(), "", text), 1);
    EXPECT_NE(alerts.text().find("can not be found, or is busy"), std::string::npos);
}

TEST_F(DiskStreams, DataInTheSpecificationIsReadInstead) {
    FileSpecOwner spec(CreateFileSpecWithFileData("temp.xml", "<a/>", 4));
    EXPECT_EQ(open_parse_DiskFile(spec.get(), "xml", nullptr, nullptr, nullptr, &stream_), 0);
    EXPECT_EQ(all(), "<a/>");
}

TEST_F(DiskStreams, RegisteredFoldersAreSearched) {
    folder_.write("a.h", "x");
    StrList paths = nullptr;
    StrListExtend(&paths, newString(folder_.path().string() + "/"));
    register_parsing_include_search_paths(paths);
    EXPECT_EQ(open("a.h", "+h"), 0);
    EXPECT_EQ(all(), "x");
    register_parsing_include_search_paths(nullptr);
    StrListDelete(paths);
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
    EXPECT_GT(sweep.faultCount, 20u);
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

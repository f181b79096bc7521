// file_path_test.cpp - file names in a text.
// SPDX-License-Identifier: Apache-2.0
#include "hosts/standalone/parameters.h"
#include "support/alerts.h"
#include "support/host_messages.h"
#include "support/parse.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::CapturedMessages;
using memdata::testing::TextReader;
using memdata::testing::tokenText;

namespace {

constexpr token_type kTYPE{nullptr, 2, 0, 0};
constexpr keyword_row kROWS[] = {{"RAM", &kTYPE, false}, {"-bm", &kTYPE, true}, {}};
token_set gWords{kROWS};

class FilePath : public ::testing::Test {
protected:
    FilePath() { RegisterSystemToolName("Lanefill"); }

    // The name read behind the text's first token, and the token behind it.
    static std::string read(TextReader& text, bool quiet = false, bool eatTrailingSpace = true) {
        text.next();
        fileSpecType* spec = nullptr;
        const int status = parse_file_pathname(text, text.token(), true, quiet, eatTrailingSpace, &spec);
        if (status != 0) return "status " + std::to_string(status);
        const std::string name = spec->fullName;
        DeleteFileSpec(&spec);
        return name + " then " + tokenText(*text.token());
    }
    static std::string read(std::string_view path) {
        TextReader text("= " + std::string(path), &gWords);
        return read(text);
    }

    SystemResources resources_;
};

TEST_F(FilePath, NamesAreJoinedBySeparators) {
    EXPECT_EQ(read("a.mem;"), "a.mem then SEMICOLON(;)");
    EXPECT_EQ(read("dir/sub-1/a_b.c.mem ;"), "dir/sub-1/a_b.c.mem then SEMICOLON(;)");
    EXPECT_EQ(read("/home/x.mem ;"), "/home/x.mem then SEMICOLON(;)");
    EXPECT_EQ(read("dir/ ;"), "dir/ then SEMICOLON(;)");
}

TEST_F(FilePath, FoldersAboveAndHiddenFilesAreNames) {
    EXPECT_EQ(read("../../x.mem ;"), "../../x.mem then SEMICOLON(;)");
    EXPECT_EQ(read("./x.mem ;"), "./x.mem then SEMICOLON(;)");
    EXPECT_EQ(read("a/../b.mem ;"), "a/../b.mem then SEMICOLON(;)");
    EXPECT_EQ(read(".hidden.mem ;"), ".hidden.mem then SEMICOLON(;)");
    EXPECT_EQ(read(". ;").substr(0, 1), ".");
    EXPECT_EQ(read("a/.x ;").substr(0, 4), "a/.x");
}

TEST_F(FilePath, BackslashesBecomeSlashes) {
    EXPECT_EQ(read("dir\\new\\x.mem ;"), "dir/new/x.mem then SEMICOLON(;)");
    EXPECT_EQ(read("c:\\dir\\x.mem ;"), "c:/dir/x.mem then SEMICOLON(;)");
    EXPECT_EQ(read("c:/dir/x.mem ;"), "c:/dir/x.mem then SEMICOLON(;)");
    EXPECT_EQ(read("\\\\server\\x.mem ;"), "//server/x.mem then SEMICOLON(;)");
}

TEST_F(FilePath, NumbersQuotesTildesAndStarsAreNames) {
    EXPECT_EQ(read("2024/1.5/x.mem ;"), "2024/1.5/x.mem then SEMICOLON(;)");
    EXPECT_EQ(read("\"a b/c d.mem\" ;"), "a b/c d.mem then SEMICOLON(;)");
    EXPECT_EQ(read("dir/\"a b.mem\" ;"), "dir/a b.mem then SEMICOLON(;)");
    EXPECT_EQ(read("~/x.mem ;"), "~/x.mem then SEMICOLON(;)");
    EXPECT_EQ(read("* ;").substr(0, 1), "*");
}

TEST_F(FilePath, QuotesOfEitherKindThatTouchAreOneName) {
    EXPECT_EQ(read("'say \"x\".mem' ;"), "say \"x\".mem then SEMICOLON(;)");
    EXPECT_EQ(read(R"("a'b"'"'"c.mem" ;)"), "a'b\"c.mem then SEMICOLON(;)");
    EXPECT_EQ(read("\"a b/c=+@.mem\" ;"), "a b/c=+@.mem then SEMICOLON(;)");
}

TEST_F(FilePath, ABackslashInAQuotedNameIsNoEscape) {
    EXPECT_EQ(read("\"c:\\new.mem\" ;").find('\n'), std::string::npos);
}

TEST_F(FilePath, AKeywordIsANameToo) {
    EXPECT_EQ(read("ram/true/RAM.mem ;"), "ram/true/RAM.mem then SEMICOLON(;)");
}

TEST_F(FilePath, ASymbolOfAKeywordSetIsNone) {
    TextReader text("= -bm x", &gWords);
    EXPECT_EQ(read(text, true), "status 1");
    EXPECT_EQ(tokenText(*text.token()), "other(-bm)");
}

TEST_F(FilePath, ThePathBeginsBehindBlanksAndLineEnds) {
    EXPECT_EQ(read("\n\t \n a.mem ;"), "a.mem then SEMICOLON(;)");
}

TEST_F(FilePath, ThePathCanBeginWithTheToken) {
    TextReader text("a/b.mem ;");
    text.next();
    fileSpecType* spec = nullptr;
    ASSERT_EQ(parse_file_pathname(text, text.token(), false, false, true, &spec), 0);
    EXPECT_STREQ(spec->fullName, "a/b.mem");
    EXPECT_STREQ(spec->extension, "mem");
    EXPECT_EQ(spec->format, DecodeFileFormatType("mem"));
    DeleteFileSpec(&spec);
}

TEST_F(FilePath, ABeginningIsJoinedToTheTextSoFar) {
    TextReader text("=sub;");
    text.next();
    const KeywordOverlay overlay(text, &file_path_token_set);
    ASSERT_EQ(internal_get_next_token(text, text.token()), 0);
    const token_type* const read = text.token()->type;
    const token_type* last = nullptr;
    char* name = StrPostCat(nullptr, "lib/");
    EXPECT_EQ(parse_file_path_beginning(text, text.token(), false, &name, &last), 0);
    EXPECT_STREQ(name, "lib/sub");
    EXPECT_EQ(last, read);
    EXPECT_EQ(tokenText(*text.token()), "SEMICOLON(;)");

    // What cannot begin a path leaves both as they are.
    EXPECT_NE(parse_file_path_beginning(text, text.token(), true, &name, &last), 0);
    EXPECT_STREQ(name, "lib/sub");
    EXPECT_EQ(last, read);
    const OwnedString released(name);
}

TEST_F(FilePath, AListGrowsBehindThePathsThatItHas) {
    StrList paths = nullptr;
    TextReader text("= one;two, = three,");
    text.next();
    ASSERT_EQ(compile_file_paths(text, text.token(), &paths), 0);
    EXPECT_EQ(StrListCount(paths), 2U);
    text.next();
    ASSERT_EQ(compile_file_paths(text, text.token(), &paths), 0);
    ASSERT_EQ(StrListCount(paths), 3U);
    EXPECT_STREQ(StrListGet(paths, 0), "one/");
    EXPECT_STREQ(StrListGet(paths, 1), "two/");
    EXPECT_STREQ(StrListGet(paths, 2), "three/");
    StrListDelete(paths);
}

TEST_F(FilePath, ABlankBehindThePathStaysOnDemand) {
    TextReader text("= a.mem ;");
    EXPECT_EQ(read(text, false, false), "a.mem then WHITESPACE_TOKEN( )");
    TextReader line("= a.mem\n;");
    EXPECT_EQ(read(line, false, false), "a.mem then END_OF_LINE(\\n)");
}

TEST_F(FilePath, ACommentMayFollow) {
    EXPECT_EQ(read("a.mem /* c */ ;"), "a.mem then SEMICOLON(;)");
    EXPECT_EQ(read("a.mem // c\n;"), "a.mem then SEMICOLON(;)");
}

TEST_F(FilePath, TheStreamIsLeftAsItWas) {
    TextReader text("= a.mem RAM", &gWords);
    EXPECT_EQ(read(text), "a.mem then other(RAM)");
    EXPECT_EQ(text->current, static_cast<parse_stream*>(text));
    EXPECT_EQ(text->parseModes, 0u);
    EXPECT_FALSE(text->noKeywordLookup);
}

TEST_F(FilePath, APathInAMacroLeavesTheRestOfTheMacro) {
    TextReader text("= RAM", &gWords);
    text.next();
    const char* body = "x a.mem RAM";
    push_parse_MemoryFile_stream("m", body, std::strlen(body), text, kCONTEXT_MACRO_BODY, nullptr, nullptr, nullptr);
    EXPECT_EQ(read(text), "a.mem then other(RAM)");
    EXPECT_EQ(text.all(), "other(RAM)");
}

TEST_F(FilePath, AKeywordThatTouchesThePathIsAKeyword) {
    EXPECT_EQ(read("\"a.mem\"RAM"), "a.mem then other(RAM)");
}

TEST_F(FilePath, AMissingPathIsReportedToTheHost) {
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(read(";"), "status 3");
    EXPECT_EQ(read(""), "status 3");
    EXPECT_EQ(messages.text(), "ERROR 28-206 ;\nERROR 28-206 end-of-file\n");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(FilePath, AMissingPathIsAnAlertTooUnderTheLegacyParameter) {
    auto& parameters = dynamic_cast<StandaloneParameters&>(HPAParamMgr::getParamMgr());
    parameters.setValue("memdata.debugLegacyMessages", true);
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(read(";"), "status 3");
    parameters.setValue("memdata.debugLegacyMessages", false);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:37 - Illegal file or path name symbol ';'.\n"
                             "   Line #1, File \"text.bmm\".\n"
                             "= ;\n"
                             "  ^\n\n");
}

TEST_F(FilePath, AMissingPathIsSilentOnDemand) {
    TextReader text("= ;");
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(read(text, true), "status 1");
    EXPECT_EQ(messages.text(), "");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(FilePath, AVolumeAloneIsNoPath) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("c: ;"), "status 3");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:38 - Illegal file name symbol ' '.\n"
                             "   Line #1, File \"text.bmm\".\n"
                             "= c: ;\n"
                             "    ^\n\n");
}

TEST_F(FilePath, AZeroByteIsNoPartOfAName) {
    for (const std::string_view path : {std::string_view("\"\0b.mem\" ;", 10), std::string_view("\"a\"\"b\0\" ;", 9)}) {
        CapturedAlerts alerts;
        EXPECT_EQ(read(path), "status 3");
        EXPECT_NE(alerts.text().find("ERROR:Lanefill:38 - Illegal file name symbol '\\0'.\n"), std::string::npos);
    }
}

TEST_F(FilePath, AServerWithoutANameIsNoPath) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("\\\\ ;"), "status 3");
}

TEST_F(FilePath, APeriodAtTheEndLacksTheExtension) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("\"a b\". ;"), "status 3");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:36 - Missing file extension on file name 'a b.'.\n"
                             "   Line #1, File \"text.bmm\".\n"
                             "= \"a b\". ;\n"
                             "        ^\n\n");
}

TEST_F(FilePath, AFailureLeavesTheStreamAsItWas) {
    TextReader text("= 'x\nRAM", &gWords);
    CapturedAlerts alerts;
    EXPECT_EQ(read(text), "status 3");
    EXPECT_EQ(text->current, static_cast<parse_stream*>(text));
    EXPECT_EQ(text.all(), "other(RAM)");
}

} // namespace

// behaviour_test.cpp - what small golden files can not hold: tokens, records, files, several alerts.
// SPDX-License-Identifier: Apache-2.0
#include "preprocess_test.h"

#include <filesystem>
#include <fstream>

namespace memdata::testing {
namespace {

using Preprocessor = PreprocessTest;

TEST_F(Preprocessor, BuiltInsComeOutAsTokens) {
    TextReader reader("\n__LINE__ true __FILE__");
    EXPECT_EQ(reader.all(), "INTEGER_NUMBER(2) INTEGER_NUMBER(1) IDENTIFIER_TOKEN(text.bmm)");
}

TEST_F(Preprocessor, DateAndTimeAreThoseOfThisMoment) {
    // "Nov 21 2026", "05:03:09 PM"
    EXPECT_THAT(read("__DATE__"), ::testing::MatchesRegex("[A-Z][a-z][a-z] [0-9]+ 20[0-9][0-9]"));
    EXPECT_THAT(read("__TIME__"), ::testing::MatchesRegex("[0-9]+ : [0-9]+ : [0-9]+ [AP]M"));
}

TEST_F(Preprocessor, BuiltInsCanNotBeDefined) {
    EXPECT_NE(alertsOf("#define true 5\n").find("Unexpected keyword 'true', macro name expected."), std::string::npos);
}

TEST_F(Preprocessor, DirectivesAreTokensWhenTheyAreNotActedOn) {
    TextReader reader("#if X");
    EXPECT_EQ(reader.modes(kMODE_NO_DIRECTIVES).all(), "PREPROCESS_IF_KEYWORD(#if) IDENTIFIER_TOKEN(X)");
}

TEST_F(Preprocessor, MacrosStayWhenTheyAreNotExpanded) {
    TextReader reader("#define A 1\nA");
    EXPECT_EQ(reader.modes(kMODE_NO_MACROS).all(), "IDENTIFIER_TOKEN(A)");
}

TEST_F(Preprocessor, AnIncludedFileEndsWithoutALineEnd) {
    const TemporaryFolder folder;
    folder.write("x.h", "#define A 1");
    EXPECT_EQ(read("#include \"" + (folder.path() / "x.h").string() + "\"\nA b"), "1 b");
}

TEST_F(Preprocessor, AnOpenConditionalIsReportedInTheFileThatOpenedIt) {
    const TemporaryFolder folder;
    folder.write("x.h", "#ifndef A\n");
    const std::string name = (folder.path() / "x.h").string();
    EXPECT_EQ(alertsOf("#include \"" + name + "\"\nb\n"),
        "\nERROR:Lanefill:82 - Unmatched preprocessor directive '#ifndef', expected a #else or #endif, but encountered "
        "EOF instead.\n   Line #1, File \"" +
            name + "\".\n#ifndef A\n^\n   Line #1, File \"text.bmm\".\n\nstatus 21");
}

TEST_F(Preprocessor, AnIncludedFileDoesNotCloseWhatIsOpenAroundIt) {
    const TemporaryFolder folder;
    folder.write("x.h", "#endif\n");
    EXPECT_THAT(alertsOf("#if 1\n#include \"" + (folder.path() / "x.h").string() + "\"\n#endif\n"),
        ::testing::HasSubstr("Unmatched preprocessor directive '#endif'"));
}

struct EndOfFileCase {
    const char* text;
    const char* directive;
    const char* expected;
};
constexpr EndOfFileCase kENDS[] = {
    {"#if 1\n", "#if", "expected a #else or #endif, but encountered EOF instead"},
    {"#ifndef A\n", "#ifndef", "expected a #else or #endif, but encountered EOF instead"},
    {"#define A\n#ifdef A\n", "#ifdef", "expected a #else or #endif, but encountered EOF instead"},
    {"#if 1\n#elif 1\n", "#elif", "expected a #endif, but encountered EOF instead"},
    {"#if 1\n#else\n", "#else", "expected a #endif, but encountered EOF instead"},
    {"#for i 0; 1; i 0\n", "#for", "expected a #endfor, but encountered EOF instead"},
    {"#while 1\n", "#while", "expected a #endwhile, but encountered EOF instead"},
};

TEST_F(Preprocessor, WhatIsOpenAtTheEndIsReportedWhereItWasOpened) {
    for (const EndOfFileCase& row : kENDS) {
        const std::string said = alertsOf(row.text);
        EXPECT_THAT(said, ::testing::StartsWith("\nERROR:Lanefill:82 - Unmatched preprocessor directive '" +
                                                std::string(row.directive) + "', " + row.expected + ".\n"));
        EXPECT_THAT(said, ::testing::EndsWith("\n^\n\nstatus 21"));
    }
}

TEST_F(Preprocessor, AFailedConditionSaysWhatTheEvaluatorFoundAndThatItIsACondition) {
    EXPECT_EQ(alertsOf("#if 1-2\n"),
        alertAt("6 - Illegal token '-2', 'expression operator' expected.", "#if 1-2", 5) +
            alertAt("6 - Illegal token '-2', 'valid conditional expression' expected.", "#if 1-2", 5) + "status 21");
}

TEST_F(Preprocessor, AnExportOfANameThatExistsOutsideIsAnError) {
    EXPECT_EQ(alertsOf("#set V 1\n#function F()\n#set V 2\n#export V\n#endfunction\nF()\n"),
        "\nERROR:Lanefill:88 - Illegal identifier 'V', macro name already exists in previous scope.\n"
        "   Line #3, Macro \"F\".\n#export V\n        ^\n   Line #6, File \"text.bmm\".\n\nstatus 21");
}

TEST_F(Preprocessor, AThirdPartOfAForEndsWithItsLine) {
    EXPECT_THAT(alertsOf("#for i 0; i < 2; i i+1; i\n#endfor\n"),
        ::testing::HasSubstr("Unexpected keyword ';', EOL terminator expected."));
}

TEST_F(Preprocessor, WhatIsStringizedIsAWordOrANumber) {
    EXPECT_EQ(alertsOf("#define S #;\nS\n"),
        "\nERROR:Lanefill:6 - Illegal token ';', 'macro parameter' expected.\n   Line #1, Macro \"S\".\n#;\n ^\n"
        "   Line #2, File \"text.bmm\".\n\nstatus 21");
}

TEST_F(Preprocessor, OnlySimpleMacrosAreSet) {
    CapturedAlerts alerts;
    TextReader reader("x");
    reader.next();
    EXPECT_EQ(set_macro(reader, reader.token(), reader.token(), kPARAMETER_MACRO, macroTerminators), 21);
    EXPECT_THAT(alerts.text(), ::testing::HasSubstr("Unexpected keyword 'x', illegal token after macro name. Only "
                                                    "simple macro definitions are allowed."));
}

TEST_F(Preprocessor, AnUnclosedCallEndsWithItsText) {
    EXPECT_THAT(alertsOf("#define F(a) a\nF(1\n"),
        ::testing::HasSubstr("Unexpected keyword 'end-of-file', closing macro ')' expected."));
}

TEST_F(Preprocessor, MacrosCanRemoveAndReplaceThemselvesWhileTheyAreRead) {
    EXPECT_EQ(read("#define U #undef U\nU\nU\n"), "U");
    EXPECT_EQ(read("#define S #set S 2\nS\nS\n"), "2");
}

TEST_F(Preprocessor, ABreakInAFunctionEndsTheLoopOfItsCaller) {
    EXPECT_EQ(read("#function STOP()\n#break\n#endfunction\n#while 1\na STOP() b\n#endwhile\nc\n"), "a c");
}

TEST_F(Preprocessor, AContinueCountsInItsOwnTextOnly) {
    EXPECT_THAT(alertsOf("#function NEXT()\n#continue\n#endfunction\n#while 1\nNEXT()\n#endwhile\n"),
        ::testing::HasSubstr("loop was not found for the #continue statement."));
}

TEST_F(Preprocessor, AFunctionCanBeCalledInAConditionAndInAValue) {
    const std::string twice = "#function TWICE(x)\n#if x > 100\n0\n#return\n#endif\n(x*2)\n#endfunction\n";
    EXPECT_EQ(read(twice + "#if TWICE(4) == 8\nyes\n#endif\n#set V TWICE(5)\nV\n"), "yes 10");
}

TEST_F(Preprocessor, ValuesBeyondSixtyThreeBitsAreReadAsSigned) {
    EXPECT_EQ(read("#set X 0xFFFFFFFFFFFFFFFF\nX\n"), "-1");
}

TEST_F(Preprocessor, OutputThatIsDisabledKeepsDefinitionsAndTheEndOfTheText) {
    EXPECT_EQ(read("a\n#pragma output disabled\nb\n#define A 1\n"), "a");
}

TEST_F(Preprocessor, PathsAreListedWithASlashAtTheirEnds) {
    TextReader reader("/usr/inc:/opt/x/;sub");
    StrList paths = nullptr;
    EXPECT_EQ(compile_file_paths(reader, reader.token(), &paths), 0);
    ASSERT_EQ(StrListCount(paths), 3U);
    EXPECT_STREQ(StrListGet(paths, 0), "/usr/inc/");
    EXPECT_STREQ(StrListGet(paths, 1), "/opt/x/");
    EXPECT_STREQ(StrListGet(paths, 2), "sub/");
    StrListDelete(paths);
}

TEST_F(Preprocessor, FilesAreLookedForInTheRegisteredFolders) {
    const TemporaryFolder folder;
    folder.write("found.h", "here\n");
    StrList paths = nullptr;
    StrListExtend(&paths, StrDup((folder.path().string() + "/").c_str()));
    register_parsing_include_search_paths(paths);
    EXPECT_EQ(read("#include <found>\n"), "here");
    register_parsing_include_search_paths(nullptr);
    StrListDelete(paths);
}

class PreprocessedFile : public PreprocessTest {
protected:
    int run(const char* text) {
        folder_.write("in.bmm", text);
        const OwnedFileSpec in(CreateFileSpec((folder_.path() / "in.bmm").c_str()));
        const OwnedFileSpec out(CreateFileSpec((folder_.path() / "out").c_str()));
        return open_and_preprocess_file(in.get(), "bmm", nullptr, out.get());
    }
    std::string written() const {
        std::ifstream file(folder_.path() / "out.bmm", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    TemporaryFolder folder_;
};

TEST_F(PreprocessedFile, TakesTheDefaultExtension) {
    EXPECT_EQ(run("#define A 1\nA \"s\"\n"), 0);
    EXPECT_EQ(written(), "1 \"s\"\n");
}

TEST_F(PreprocessedFile, GoesToStandardOutputThroughItsSwitches) {
    const std::string text = "a %d \"s\"\n";
    folder_.write("in.bmm", text);
    const OwnedFileSpec in(CreateFileSpec((folder_.path() / "in.bmm").c_str()));
    const auto shown = [&] {
        CapturedAlerts output;
        EXPECT_EQ(open_and_preprocess_file(in.get(), "bmm", nullptr, nullptr), 0);
        return output.text();
    };
    EXPECT_EQ(shown(), text);
    const bool enabled = EnabledPutLineOutput(false);
    EXPECT_EQ(shown(), "");
    EnabledPutLineOutput(enabled);

    const OwnedFileSpec log(CreateFileSpec((folder_.path() / "run.log").c_str()));
    ASSERT_EQ(OpenJournalingFile(log.get()), 0);
    EXPECT_EQ(shown(), text);
    CloseJournalingFile();
    std::ifstream journal(folder_.path() / "run.log", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(journal), {}), text);
}

TEST_F(PreprocessedFile, DoesNotReplaceAnotherFile) {
    const CapturedAlerts alerts;
    folder_.write("out.bmm", "old\n");
    EXPECT_EQ(run("new\n"), 1);
    EXPECT_EQ(written(), "old\n");
}

TEST_F(PreprocessedFile, DoesNotReplaceWhatItIsMadeOf) {
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    SetDefaultFileAttributes(kOVERWRITING_ALLOWED, true);
    const std::string name = folder_.write("in.bmm", "#define A 1\nA\n");
    const std::string link = (folder_.path() / "link.bmm").string();
    std::filesystem::create_symlink(name, link);
    const OwnedFileSpec in(CreateFileSpec(name.c_str()));
    for (const std::string& output : {name, link}) {
        CapturedAlerts alerts;
        const OwnedFileSpec out(CreateFileSpec(output.c_str()));
        EXPECT_EQ(open_and_preprocess_file(in.get(), "bmm", nullptr, out.get()), 1);
        EXPECT_EQ(alerts.text(),
            "\nERROR:Lanefill:86 - Output file '" + output + "' would replace the file that it is made of.\n\n");
        std::ifstream file(name, std::ios::binary);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "#define A 1\nA\n");
    }
}

TEST_F(PreprocessedFile, ReplacesAnotherFileWhereThatIsAllowed) {
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    SetDefaultFileAttributes(kOVERWRITING_ALLOWED, true);
    folder_.write("out.bmm", "old\n");
    EXPECT_EQ(run("new\n"), 0);
    EXPECT_EQ(written(), "new\n");
}

TEST_F(PreprocessedFile, DoesNotAppearWhenTheRunFails) {
    const CapturedAlerts alerts;
    EXPECT_EQ(run("a\n#endif\n"), 21);
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "out.bmm"));
}

TEST_F(PreprocessedFile, KeepsBytesAsTheyAre) {
    EXPECT_EQ(run("a\x01\xC3\xA9 b\n"), 0);
    EXPECT_EQ(written(), "a\x01\xC3\xA9 b\n");
}

} // namespace
} // namespace memdata::testing

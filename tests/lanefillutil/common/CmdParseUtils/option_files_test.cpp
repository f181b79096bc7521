// option_files_test.cpp - options that stand in a file.
// SPDX-License-Identifier: Apache-2.0
#include "option_test.h"

namespace memdata::testing {
namespace {

class OptionFiles : public Options {
protected:
    // The working folder is that of the files.
    OptionFiles() : oldFolder_(std::filesystem::current_path()) { std::filesystem::current_path(folder.path()); }
    ~OptionFiles() override { std::filesystem::current_path(oldFolder_); }

    TemporaryFolder folder;

private:
    std::filesystem::path oldFolder_;
};

TEST_F(OptionFiles, HoldSwitchesOnAnyNumberOfLines) {
    folder.write("a.opt", "// the project\n"
                          "-bm soc.bmm\n"
                          "-bd boot.elf\n"
                          "    tag ram\n"
                          "        rom\n"
                          "-o p\n"
                          "    out.bmm\n"
                          "-D A=1\n"
                          "-D B=2\n"
                          "-a\n"
                          "off\n");
    EXPECT_EQ(record("-f a.opt -i"), "defines: #define A 1\n#define B 2\n\noptionFile: a.opt\nmap: b soc.bmm\n"
                                     "data: boot.elf tags 2 ram rom\nout bmm: out.bmm\nignoreUnmapped\n");
}

TEST_F(OptionFiles, AreFoundWithTheirExtension) {
    folder.write("a.opt", "-i");
    EXPECT_EQ(record("-f a"), "optionFile: a\nignoreUnmapped\n");
}

TEST_F(OptionFiles, AnEmptyOneHoldsNoSwitches) {
    folder.write("a.opt", "");
    EXPECT_EQ(record("-f a.opt -i"), "optionFile: a.opt\nignoreUnmapped\n");
}

TEST_F(OptionFiles, TheirSwitchesAreCounted) {
    folder.write("a.opt", "-i -u");
    ASSERT_EQ(parse("-f a.opt -pg"), 0);
    EXPECT_EQ(count, 4);
}

TEST_F(OptionFiles, AddToTheListsOfTheTextAroundThem) {
    folder.write("a.opt", "-bm b.bmm -bd b.elf -bx y -o i b.bin -workflow v -I t -D B=2");
    EXPECT_EQ(record("-bm a.bmm -bd a.elf -bx x -o i a.bin -workflow w -I s -D A=1 -f a.opt "
                     "-bm c.bmm -bd c.elf -bx z -o i c.bin -workflow u -I u -D C=3"),
        "defines: #define A 1\n#define B 2\n#define C 3\n\noptionFile: a.opt\n"
        "include: s/\ninclude: t/\ninclude: u/\nmap: b a.bmm\nmap: b b.bmm\nmap: b c.bmm\n"
        "data: a.elf\ndata: b.elf\ndata: c.elf\nmem folder: x\nmem folder: y\nmem folder: z\n"
        "out image: a.bin\nout image: b.bin\nout image: c.bin\nworkflow: w\nworkflow: v\nworkflow: u\n");
}

TEST_F(OptionFiles, MacrosAndConditionalsWork) {
    folder.write(
        "a.opt", "#define MAP soc\n#define KINDS pb\n-bm MAP\n#ifdef NOT_THERE\n-u\n#else\n-o KINDS x\n#endif\n");
    EXPECT_EQ(record("-f a.opt"), "optionFile: a.opt\nmap: b soc\nout bit: x\nout bmm: x\n");
}

TEST_F(OptionFiles, CanIncludeOtherTexts) {
    folder.write("common.h", "-i\n");
    folder.write("a.opt", "#include \"common.h\"\n-u");
    EXPECT_EQ(record("-f a.opt"), "optionFile: a.opt\nignoreUnmapped\nupdateAll\n");
}

TEST_F(OptionFiles, ASecondOneIsRefused) {
    folder.write("a.opt", "-i");
    EXPECT_EQ(failure("-f a.opt -f a.opt"), "14: ERROR:Lanefill:73 - Only one '-f' option file is allowed.\n"
                                            "    An option file can not use another option file.\n"
                                            "-f a.opt -f a.opt\n"
                                            "         ^");
}

TEST_F(OptionFiles, OneThatNamesItselfIsRefused) {
    folder.write("a.opt", "-i\n-f a.opt\n");
    EXPECT_EQ(failure("-u -f a.opt"), "14: ERROR:Lanefill:73 - Only one '-f' option file is allowed.\n"
                                      "    An option file can not use another option file.\n"
                                      "   Line #2, File \"a.opt\".\n"
                                      "-f a.opt\n"
                                      "^\n\n\n"
                                      "ERROR:Lanefill:72 - Option file 'a.opt' could not be read, or has an illegal "
                                      "option.\n"
                                      "-u -f a.opt\n"
                                      "   ^");
}

TEST_F(OptionFiles, OneThatIncludesItselfEnds) {
    folder.write("a.opt", "-i\n#include \"a.opt\"\n");
    EXPECT_EQ(parse("-f a.opt"), 14);
    EXPECT_NE(alerts.text().find("File 'a.opt' can not be included, the limit of 200 nested files is reached."),
        std::string::npos);
}

TEST_F(OptionFiles, AMissingOneIsNamedTwice) {
    EXPECT_EQ(failure("-f none"),
        "14: ERROR:Lanefill:1 - File 'none' can not be found, or is busy.\n"
        "    Please ensure that the file is available in the correct\n"
        "    directory location, or isn't being locked by another\n"
        "    application.\n\n\n"
        "ERROR:Lanefill:72 - Option file 'none' could not be read, or has an illegal option.\n"
        "-f none\n"
        "^");
}

TEST_F(OptionFiles, AnErrorInsideShowsItsLine) {
    folder.write("a.opt", "-i\n-bm a.bmm 5\n");
    EXPECT_EQ(failure("-f a.opt"), "14: ERROR:Lanefill:125 - Illegal '-bm' option modifier '5', 'root' expected.\n"
                                   "   Line #2, File \"a.opt\".\n"
                                   "-bm a.bmm 5\n"
                                   "          ^\n\n\n"
                                   "ERROR:Lanefill:72 - Option file 'a.opt' could not be read, or has an illegal "
                                   "option.\n"
                                   "-f a.opt\n"
                                   "^");
}

TEST_F(OptionFiles, WhatStandsBehindAFailedOneIsNotRead) {
    folder.write("a.opt", "-x");
    EXPECT_EQ(parse("-f a.opt -i"), 14);
    EXPECT_FALSE(options.ignoreUnmapped);
}

TEST_F(OptionFiles, HelpInsideIsNoFailure) {
    folder.write("a.opt", "-h bx");
    EXPECT_EQ(parse("-f a.opt -i"), -1);
    EXPECT_EQ(dumpOptions(options), "optionFile: a.opt\ntopic: bx\n");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(OptionFiles, AMessageFileInsideIsNoFailure) {
    folder.write("a.opt", "-msg m");
    EXPECT_EQ(parse("-f a.opt"), -2);
    EXPECT_EQ(folder.listing(), "a.opt\nm.msg\n");
}

TEST_F(OptionFiles, CanBeReadByThemselves) {
    folder.write("a.opt", "-i -u");
    options.optionFile = CreateFileSpec("a.opt");
    count = 5;
    EXPECT_EQ(ParseCmdFile(&options, &count), 0);
    EXPECT_EQ(count, 7);
    EXPECT_TRUE(options.updateAll);
}

TEST_F(OptionFiles, WhatTheyLeaveOpenIsTheirFailure) {
    folder.write("a.opt", "#if 1\n-i\n");
    EXPECT_EQ(parse("-f a.opt"), 14);
    EXPECT_NE(alerts.text().find("ERROR:Lanefill:82"), std::string::npos);
    EXPECT_NE(alerts.text().find("ERROR:Lanefill:72"), std::string::npos);
}

} // namespace
} // namespace memdata::testing

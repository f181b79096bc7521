// refusals_test.cpp - what is said about option texts that can not be read.
// SPDX-License-Identifier: Apache-2.0
#include "option_test.h"

#include "support/host_parameters.h"

namespace memdata::testing {
namespace {

struct RefusalCase {
    const char* text;
    const char* failure; // status and alert; the text and the caret under it follow
    int column;          // of the caret; -1 for a message without a place
};

constexpr RefusalCase kREFUSALS[] = {
    {"x", "14: ERROR:Lanefill:11 - Unexpected symbol 'x', 'a command switch' expected.", 0},
    {"-", "14: ERROR:Lanefill:11 - Unexpected symbol '-', 'a command switch' expected.", 0},
    {"-bm a.bmm 5", "14: ERROR:Lanefill:125 - Illegal '-bm' option modifier '5', 'root' expected.", 10},
    {"-encrypt x", "14: ERROR:Lanefill:11 - Unexpected symbol '-encrypt', 'a command switch' expected.", 0},
    {"-encrypt", "14: ERROR:Lanefill:11 - Unexpected symbol '-encrypt', 'a command switch' expected.", 0},
    {"-z", "14: ERROR:Lanefill:11 - Unexpected symbol '-', 'a command switch' expected.", 0},
    {"--help", "14: ERROR:Lanefill:11 - Unexpected symbol '--', 'a command switch' expected.", 0},
    {"-Q", "14: ERROR:Lanefill:11 - Unexpected symbol '-', 'a command switch' expected.", 0},
    {"-5", "14: ERROR:Lanefill:11 - Unexpected symbol '-5', 'a command switch' expected.", 0},
    {"-BM a", "14: ERROR:Lanefill:11 - Unexpected symbol '-', 'a command switch' expected.", 0},
    {"-bm", "14: ERROR:Lanefill:56 - Expected a BMM file name after the '-bm' option.", 3},
    {"-bm -i", "14: ERROR:Lanefill:56 - Expected a BMM file name after the '-bm' option.", 4},
    {"-bm -", "14: ERROR:Lanefill:56 - Expected a BMM file name after the '-bm' option.", 4},
    {"-bm )", "3: ERROR 28-206 )\n", -1},
    {"-bm \"\"", "1: ERROR:Lanefill:55 - A null file name was given for a 'bmm' file.", 0},
    {"-bm a.elf", "10: ERROR:Lanefill:143 - Unknown file extension on BMM file 'a.elf'.", 0},
    {"-bm a.bmm b.bmm", "14: ERROR:Lanefill:125 - Illegal '-bm' option modifier 'b.bmm', 'root' expected.", 10},
    {"-bm a.bmm tag x", "14: ERROR:Lanefill:125 - Illegal '-bm' option modifier 'tag', 'root' expected.", 10},
    {"-bm * root x", "14: ERROR:Lanefill:11 - Unexpected symbol 'root', 'a command switch' expected.", 6},
    {"-mx", "3: ERROR:Lanefill:11 - Unexpected symbol 'end-of-file', 'quoted XML string' expected.", 3},
    {"-mx <a/>", "3: ERROR:Lanefill:11 - Unexpected symbol '<', 'quoted XML string' expected.", 4},
    {"-mx -i", "3: ERROR:Lanefill:11 - Unexpected symbol '-i', 'quoted XML string' expected.", 4},
    {"-mx \"<a/>\" x", "14: ERROR:Lanefill:125 - Illegal '-bm' option modifier 'x', 'root' expected.", 11},
    {"-mx 5", "3: ERROR:Lanefill:11 - Unexpected symbol '5', 'quoted XML string' expected.", 4},
    {"-bd", "14: ERROR:Lanefill:58 - Expected an ELF or MEM file name after the '-bd' option.", 3},
    {"-bd -i", "14: ERROR:Lanefill:58 - Expected an ELF or MEM file name after the '-bd' option.", 4},
    {"-bd -", "14: ERROR:Lanefill:58 - Expected an ELF or MEM file name after the '-bd' option.", 4},
    {"-bd )", "3: ERROR 28-206 )\n", -1},
    {"-bd a.elf b.elf",
        "14: ERROR:Lanefill:59 - Illegal '-bd' option modifier 'b.elf', 'tag', 'boot' or 'start' expected.", 10},
    {"-bd a.elf 5", "14: ERROR:Lanefill:59 - Illegal '-bd' option modifier '5', 'tag', 'boot' or 'start' expected.",
        10},
    {"-bd a.elf boot boot", "14: ERROR:Lanefill:60 - Only one 'boot' specifier is allowed for each '-bd' option.", 15},
    {"-bd a.elf boot 1 boot 2", "14: ERROR:Lanefill:60 - Only one 'boot' specifier is allowed for each '-bd' option.",
        17},
    {"-bd a.elf boot 1.5",
        "14: ERROR:Lanefill:59 - Illegal '-bd' option modifier '1.5', 'tag', 'boot' or 'start' expected.", 15},
    {"-bd a.elf start start", "14: ERROR:Lanefill:108 - Only one 'start' specifier is allowed for each '-bd' option.",
        16},
    {"-bd a.elf start 4 4",
        "14: ERROR:Lanefill:59 - Illegal '-bd' option modifier '4', 'tag', 'boot' or 'start' expected.", 18},
    {"-bd a.elf tag", "14: ERROR:Lanefill:62 - Expected the 'tag' address space name", 13},
    {"-bd a.elf tag -i", "14: ERROR:Lanefill:62 - Expected the 'tag' address space name", 14},
    {"-bd a.elf tag 5", "14: ERROR:Lanefill:62 - Expected the 'tag' address space name", 14},
    {"-bd a.elf tag boot", "14: ERROR:Lanefill:62 - Expected the 'tag' address space name", 14},
    {"-bd a.elf tag a tag b",
        "14: ERROR:Lanefill:61 - Only one 'tag' specifier is allowed for each '-bd' option.\n    All address space names must follow that one specifier.",
        16},
    {"-bd a.elf tag a 5",
        "14: ERROR:Lanefill:59 - Illegal '-bd' option modifier '5', 'tag', 'boot' or 'start' expected.", 16},
    {"-bd a.elf root x",
        "14: ERROR:Lanefill:59 - Illegal '-bd' option modifier 'root', 'tag', 'boot' or 'start' expected.", 10},
    {"-bx )", "3: ERROR 28-206 )\n", -1},
    {"-bx a b", "14: ERROR:Lanefill:59 - Illegal '-bd' option modifier 'b', 'tag', 'boot' or 'start' expected.", 6},
    {"-bx . tag", "14: ERROR:Lanefill:62 - Expected the 'tag' address space name", 9},
    {"-bx a boot boot", "14: ERROR:Lanefill:60 - Only one 'boot' specifier is allowed for each '-bd' option.", 11},
    {"-bt", "3: ERROR 28-206 end-of-file\n", -1},
    {"-bt -i", "3: ERROR 28-206 -i\n", -1},
    {"-bt )", "3: ERROR 28-206 )\n", -1},
    {"-image", "3: ERROR 28-206 end-of-file\n", -1},
    {"-image -", "3: ERROR 28-206 -\n", -1},
    {"-pp", "3: ERROR 28-206 end-of-file\n", -1},
    {"-pp -u", "3: ERROR 28-206 -u\n", -1},
    {"-log", "3: ERROR 28-206 end-of-file\n", -1},
    {"-log -i", "3: ERROR 28-206 -i\n", -1},
    {"-msg", "3: ERROR 28-206 end-of-file\n", -1},
    {"-msgc -i", "3: ERROR 28-206 -i\n", -1},
    {"-f", "3: ERROR 28-206 end-of-file\n", -1},
    {"-f -i", "3: ERROR 28-206 -i\n", -1},
    {"-dataset", "3: ERROR 28-206 end-of-file\n", -1},
    {"-dataset -i", "3: ERROR 28-206 -i\n", -1},
    {"-o", "14: ERROR:Lanefill:70 - Expected the output file type characters after the '-o' option.", 2},
    {"-o -i", "14: ERROR:Lanefill:70 - Expected the output file type characters after the '-o' option.", 3},
    {"-o -", "14: ERROR:Lanefill:70 - Expected the output file type characters after the '-o' option.", 3},
    {"-o \"\" x", "14: ERROR:Lanefill:70 - Expected the output file type characters after the '-o' option.", 3},
    {"-o m", "14: ERROR:Lanefill:71 - Expected an output file name after the '-o' option.", 4},
    {"-o m -i", "14: ERROR:Lanefill:71 - Expected an output file name after the '-o' option.", 5},
    {"-o m )", "3: ERROR 28-206 )\n", -1},
    {"-o z x",
        "14: ERROR:Lanefill:67 - Illegal -o option character 'z'. Only the characters 'uUvVhHmMbBpPdDiIaA' are allowed.",
        3},
    {"-o 5 x",
        "14: ERROR:Lanefill:67 - Illegal -o option character '5'. Only the characters 'uUvVhHmMbBpPdDiIaA' are allowed.",
        3},
    {"-o mz x",
        "14: ERROR:Lanefill:67 - Illegal -o option character 'z'. Only the characters 'uUvVhHmMbBpPdDiIaA' are allowed.",
        3},
    {"-o pp x", "14: ERROR:Lanefill:68 - Duplicate -o option character 'p'.", 3},
    {"-o pP x", "14: ERROR:Lanefill:69 - Previous -o option already defined a BMM output name.", 3},
    {"-o m x.mem -o m y.mem", "14: ERROR:Lanefill:69 - Previous -o option already defined a MEM output name.", 14},
    {"-o a x -o a y", "14: ERROR:Lanefill:69 - Previous -o option already defined a Address Map output name.", 10},
    {"-o b x -o B y", "14: ERROR:Lanefill:69 - Previous -o option already defined a BIT output name.", 10},
    {"-o d x -o d y", "14: ERROR:Lanefill:69 - Previous -o option already defined a DMP output name.", 10},
    {"-o h x -o h y", "14: ERROR:Lanefill:69 - Previous -o option already defined a VHDL output name.", 10},
    {"-o p x -o p y", "14: ERROR:Lanefill:69 - Previous -o option already defined a BMM output name.", 10},
    {"-o u x -o u y", "14: ERROR:Lanefill:69 - Previous -o option already defined a UCF output name.", 10},
    {"-o v x -o v y", "14: ERROR:Lanefill:69 - Previous -o option already defined a Verilog output name.", 10},
    {"-d z",
        "14: ERROR:Lanefill:67 - Illegal -d option character 'z'. Only the characters 'aAbBeErRfFuUpP' are allowed.",
        3},
    {"-d ee", "14: ERROR:Lanefill:68 - Duplicate -d option character 'e'.", 3},
    {"-d 5", "14: ERROR:Lanefill:11 - Unexpected symbol '5', 'a command switch' expected.", 3},
    {"-d a b", "14: ERROR:Lanefill:11 - Unexpected symbol 'b', 'a command switch' expected.", 5},
    {"-q z", "14: ERROR:Lanefill:67 - Illegal -q option character 'z'. Only the characters 'sSiIwWeE' are allowed.", 3},
    {"-q SS", "14: ERROR:Lanefill:68 - Duplicate -q option character 'S'.", 3},
    {"-q 5", "14: ERROR:Lanefill:11 - Unexpected symbol '5', 'a command switch' expected.", 3},
    {"-fill 256", "3: ERROR:Lanefill:136 - Illegal '-fill' option byte '256', a value from 0 to 255 expected.", 6},
    {"-fill -1", "3: ERROR:Lanefill:136 - Illegal '-fill' option byte '-1', a value from 0 to 255 expected.", 6},
    {"-fill 1.5", "3: ERROR:Lanefill:136 - Illegal '-fill' option byte '1.5', a value from 0 to 255 expected.", 6},
    {"-fill x", "3: ERROR:Lanefill:136 - Illegal '-fill' option byte 'x', a value from 0 to 255 expected.", 6},
    {"-fill \"1\"", "3: ERROR:Lanefill:136 - Illegal '-fill' option byte '1', a value from 0 to 255 expected.", 6},
    {"-fill 1 2", "14: ERROR:Lanefill:11 - Unexpected symbol '2', 'a command switch' expected.", 8},
    {"-split", "14: ERROR:Lanefill:141 - Illegal output file format specifier 'end-of-file'.", 6},
    {"-split -i", "14: ERROR:Lanefill:141 - Illegal output file format specifier '-i'.", 7},
    {"-split vmf", "14: ERROR:Lanefill:141 - Illegal output file format specifier 'vmf'.", 7},
    {"-split vmem", "14: ERROR:Lanefill:141 - Illegal output file format specifier 'vmem'.", 7},
    {"-split x", "14: ERROR:Lanefill:141 - Illegal output file format specifier 'x'.", 7},
    {"-split 5", "14: ERROR:Lanefill:141 - Illegal output file format specifier '5'.", 7},
    {"-split mem hex", "14: ERROR:Lanefill:11 - Unexpected symbol 'hex', 'a command switch' expected.", 11},
    {"-bytewidth", "3: ERROR:Lanefill:6 - Illegal token 'end-of-file', 'valid byte width expression' expected.", 10},
    {"-bytewidth -i", "3: ERROR:Lanefill:6 - Illegal token '-i', 'valid byte width expression' expected.", 11},
    {"-bytewidth x", "3: ERROR:Lanefill:6 - Illegal token 'x', 'valid byte width expression' expected.", 11},
    {"-bytewidth 1 2",
        "3: ERROR:Lanefill:6 - Illegal token '2', 'expression operator' expected.\n-bytewidth 1 2\n             ^\n\n\nERROR:Lanefill:6 - Illegal token '2', 'valid byte width expression' expected.",
        13},
    {"-bytewidth (1",
        "3: ERROR:Lanefill:81 - Unmatched expression parenthesis '(', end of expression found instead.\n-bytewidth (1\n             ^\n\n\nERROR:Lanefill:6 - Illegal token 'end-of-file', 'valid byte width expression' expected.",
        13},
    {"-bytewidth 1)",
        "3: ERROR:Lanefill:81 - Unmatched expression parenthesis ')', end of sub expression found instead.\n-bytewidth 1)\n            ^\n\n\nERROR:Lanefill:6 - Illegal token ')', 'valid byte width expression' expected.",
        12},
    {"-bytewidth 1 x",
        "3: ERROR:Lanefill:6 - Illegal token 'x', 'expression operator' expected.\n-bytewidth 1 x\n             ^\n\n\nERROR:Lanefill:6 - Illegal token 'x', 'valid byte width expression' expected.",
        13},
    {"-p", "14: ERROR:Lanefill:11 - Unexpected symbol 'end-of-file', 'part name' expected.", 2},
    {"-p -i", "14: ERROR:Lanefill:11 - Unexpected symbol '-i', 'part name' expected.", 3},
    {"-p nosuchpart",
        "14: WARNING:Lanefill:74 - Unsupported FPGA device name 'nosuchpart'. Verify that the specified device is a valid customer supported device.",
        3},
    {"-p )", "14: ERROR:Lanefill:11 - Unexpected symbol ')', 'part name' expected.", 3},
    {"-p q5a20 x", "14: ERROR:Lanefill:11 - Unexpected symbol 'x', 'a command switch' expected.", 9},
    {"-p \"\"",
        "14: WARNING:Lanefill:74 - Unsupported FPGA device name ''. Verify that the specified device is a valid customer supported device.",
        3},
    {"-p 5",
        "14: WARNING:Lanefill:74 - Unsupported FPGA device name '5'. Verify that the specified device is a valid customer supported device.",
        3},
    {"-workflow",
        "3: ERROR:Lanefill:11 - Unexpected symbol 'end-of-file', 'non identifier WORKFLOW_OPERATION type' expected.",
        9},
    {"-workflow -i",
        "3: ERROR:Lanefill:11 - Unexpected symbol '-i', 'non identifier WORKFLOW_OPERATION type' expected.", 10},
    {"-workflow 5", "3: ERROR:Lanefill:11 - Unexpected symbol '5', 'non identifier WORKFLOW_OPERATION type' expected.",
        10},
    {"-workflow a,b",
        "3: ERROR:Lanefill:11 - Unexpected symbol ',', 'non identifier WORKFLOW_OPERATION type' expected.", 11},
    {"-workflow a 5",
        "3: ERROR:Lanefill:11 - Unexpected symbol '5', 'non identifier WORKFLOW_OPERATION type' expected.", 12},
    {"-a maybe", "14: ERROR:Lanefill:75 - Illegal option modifier 'maybe', 'on' or 'off' expected.", 3},
    {"-w maybe", "14: ERROR:Lanefill:75 - Illegal option modifier 'maybe', 'on' or 'off' expected.", 3},
    {"-w on off", "14: ERROR:Lanefill:11 - Unexpected symbol 'off', 'a command switch' expected.", 6},
    {"-w 1", "14: ERROR:Lanefill:75 - Illegal option modifier '1', 'on' or 'off' expected.", 3},
    {"-w 5", "14: ERROR:Lanefill:75 - Illegal option modifier '5', 'on' or 'off' expected.", 3},
    {"-a )", "14: ERROR:Lanefill:75 - Illegal option modifier ')', 'on' or 'off' expected.", 3},
    {"-i x", "14: ERROR:Lanefill:11 - Unexpected symbol 'x', 'a command switch' expected.", 3},
    {"-u on", "14: ERROR:Lanefill:11 - Unexpected symbol 'on', 'a command switch' expected.", 3},
    {"-pg on", "14: ERROR:Lanefill:11 - Unexpected symbol 'on', 'a command switch' expected.", 4},
    {"-I", "3: ERROR 28-206 end-of-file\n", -1},
    {"-I -i", "3: ERROR 28-206 -i\n", -1},
    {"-I a;", "3: ERROR 28-206 end-of-file\n", -1},
    {"-I )", "3: ERROR 28-206 )\n", -1},
    {"-D", "14: ERROR:Lanefill:11 - Unexpected symbol 'end-of-file', 'macro name' expected.", 2},
    {"-D -i", "14: ERROR:Lanefill:11 - Unexpected symbol '-i', 'macro name' expected.", 3},
    {"-D A",
        "14: ERROR:Lanefill:120 - Missing '=' symbol after the '-D' option macro name. 'end-of-file' found instead.",
        4},
    {"-D A -i", "14: ERROR:Lanefill:120 - Missing '=' symbol after the '-D' option macro name. '-i' found instead.", 5},
    {"-D A B", "14: ERROR:Lanefill:120 - Missing '=' symbol after the '-D' option macro name. 'B' found instead.", 5},
    {"-D A==B", "14: ERROR:Lanefill:120 - Missing '=' symbol after the '-D' option macro name. '==' found instead.", 4},
    {"-D 5=1", "14: ERROR:Lanefill:11 - Unexpected symbol '5', 'macro name' expected.", 3},
    {"-D =1", "14: ERROR:Lanefill:11 - Unexpected symbol '=', 'macro name' expected.", 3},
    {"-D true=1", "14: ERROR:Lanefill:11 - Unexpected symbol 'true', 'macro name' expected.", 3},
    {"-bm \"a.bmm", "3: ERROR:Lanefill:111 - Missing symbol. 'end-of-file' found, '\"' expected.", 4},
};

TEST_F(Options, WhatCannotBeReadIsRefusedAtItsPlace) {
    for (const RefusalCase& c : kREFUSALS) {
        std::string expected = c.failure;
        if (c.column >= 0)
            expected += std::string("\n") + c.text + "\n" + std::string(static_cast<size_t>(c.column), ' ') + "^";
        EXPECT_EQ(failure(c.text), expected) << c.text;
    }
}

TEST_F(Options, AMapKeepsNothingOfAFileThatIsRefused) {
    EXPECT_EQ(parse("-bm a.elf"), 10);
    EXPECT_EQ(options.bmmFiles, nullptr);
}

TEST_F(Options, TheStarKeepsNoFileAndTheListStaysEmpty) {
    EXPECT_EQ(parse("-bm *"), 0);
    EXPECT_EQ(options.bmmFiles, nullptr);
    EXPECT_TRUE(options.designBmm);
}

TEST_F(Options, LettersAheadOfABadOneHaveTakenEffect) {
    EXPECT_EQ(parse("-o mz x"), 14);
    EXPECT_STREQ(options.outputMemFile->fullName, "x");
}

TEST_F(Options, EncryptionIsRefusedAndEnds) {
    EXPECT_EQ(parse("-i -encrypt key.nky -u"), 14);
    EXPECT_TRUE(options.ignoreUnmapped);
    EXPECT_FALSE(options.updateAll);
    EXPECT_EQ(count, 1);
}

TEST_F(Options, AnUnknownDeviceIsAWarningAndEndsTheParse) {
    EXPECT_EQ(parse("-p nosuchpart -i"), 14);
    EXPECT_STREQ(options.partName, "nosuchpart");
    EXPECT_EQ(options.device, nullptr);
    EXPECT_FALSE(options.ignoreUnmapped);
}

TEST_F(Options, WhatIsLeftOpenAtTheEndIsReported) {
    EXPECT_EQ(failure("#if 1\n-i"),
        "21: ERROR:Lanefill:82 - Unmatched preprocessor directive '#if', expected a #else or "
        "#endif, but encountered EOF instead.\n#if 1\n^");
    EXPECT_EQ(failure("-i /* x"),
        "21: ERROR:Lanefill:39 - Unmatched nested C style comment. A closing '*/' was expected "
        "before the end of the file.\n-i /* x\n   ^");
}

TEST_F(Options, AlertsThatAreHeldBackStillEndTheParse) {
    EXPECT_EQ(failure("-q s w"), "14: ");
}

TEST_F(Options, PathsAreSpokenOfInTheEnginesOwnVoiceTooWhenAskedFor) {
    const ScopedParameter legacy("memdata.debugLegacyMessages", true);
    EXPECT_EQ(failure("-bt -i"),
        "3: ERROR:Lanefill:37 - Illegal file or path name symbol '-i'.\n-bt -i\n    ^ERROR 28-206 -i\n");
    EXPECT_EQ(
        failure("-bd )"), "3: ERROR:Lanefill:37 - Illegal file or path name symbol ')'.\n-bd )\n    ^ERROR 28-206 )\n");
}

} // namespace
} // namespace memdata::testing

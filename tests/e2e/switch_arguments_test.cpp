// switch_arguments_test.cpp - switches without their arguments, with two of them, and with wrong ones: status, message.
// SPDX-License-Identifier: Apache-2.0
#include "e2e/tool_folder.h"

#include <gmock/gmock.h>
#include <iterator>
#include <span>
#include <sstream>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;

struct Misuse {
    const char* words; // parted by blanks
    int status;
    const char* message; // its first line, behind "ERROR:Lanefill:" unless it names another beginning
};

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

std::string firstLine(const std::string& text) {
    const size_t start = text.find_first_not_of('\n');
    if (start == text.npos) return "";
    const std::string line = text.substr(start, text.find('\n', start) - start);
    constexpr std::string_view kERROR = "ERROR:Lanefill:";
    return line.starts_with(kERROR) ? line.substr(kERROR.size()) : line;
}

class SwitchArguments : public ToolFolder {
protected:
    // Each is refused with its message, and leaves no file behind.
    void expectRefused(std::span<const Misuse> rows) const {
        for (const Misuse& row : rows) {
            const ToolResult result = run(wordsOf(row.words));
            EXPECT_EQ(result.status, row.status) << row.words;
            EXPECT_EQ(firstLine(result.all()), row.message) << row.words;
            EXPECT_EQ(folder_.listing(), "data.mem\nsoc.bmm\n") << row.words;
        }
    }
};

constexpr char kNO_NAME[] =
    "ERROR: [memdata 28-206] 'end-of-file' cannot stand in a file name. Put names with blanks or "
    "other special characters into double quotes.";
constexpr char kNO_BMM[] = "56 - Expected a BMM file name after the '-bm' option.";
constexpr char kNO_DATA[] = "58 - Expected an ELF or MEM file name after the '-bd' option.";
constexpr char kNO_OUTPUT[] = "71 - Expected an output file name after the '-o' option.";

constexpr Misuse kMISSING[] = {
    {"-bm", 14, kNO_BMM},
    {"-mm", 14, kNO_BMM},
    {"-bm -bd data.mem", 14, kNO_BMM},
    {"-bd", 14, kNO_DATA},
    {"-md", 14, kNO_DATA},
    {"-bd -bx", 14, kNO_DATA},
    {"-bd data.mem tag", 14, "62 - Expected the 'tag' address space name"},
    {"-bd data.mem tag boot", 14, "62 - Expected the 'tag' address space name"},
    {"-bm soc.bmm root", 3, "11 - Unexpected symbol 'end-of-file', 'BRAM instance name' expected."},
    {"-bt", 3, kNO_NAME},
    {"-log", 3, kNO_NAME},
    {"-dataset", 3, kNO_NAME},
    {"-f", 3, kNO_NAME},
    {"-image", 3, kNO_NAME},
    {"-pp", 3, kNO_NAME},
    {"-I", 3, kNO_NAME},
    {"-msg", 3, kNO_NAME},
    {"-msgc", 3, kNO_NAME},
    {"-mx", 3, "11 - Unexpected symbol 'end-of-file', 'quoted XML string' expected."},
    {"-d", 1, "5 - A data file to dump was missing."},
    {"-bytewidth", 3, "6 - Illegal token 'end-of-file', 'valid byte width expression' expected."},
    {"-o", 14, "70 - Expected the output file type characters after the '-o' option."},
    {"-o p", 14, kNO_OUTPUT},
    {"-o p -w", 14, kNO_OUTPUT},
    {"-p", 14, "11 - Unexpected symbol 'end-of-file', 'part name' expected."},
    {"-workflow", 3, "11 - Unexpected symbol 'end-of-file', 'non identifier WORKFLOW_OPERATION type' expected."},
    {"-D", 14, "11 - Unexpected symbol 'end-of-file', 'macro name' expected."},
    {"-D X", 14, "120 - Missing '=' symbol after the '-D' option macro name. 'end-of-file' found instead."},
    {"-split", 14, "141 - Illegal output file format specifier 'end-of-file'."},
};
TEST_F(SwitchArguments, ThatAreMissingAreRefused) {
    expectRefused(kMISSING);
}

constexpr Misuse kDOUBLED[] = {
    {"-o p a -o p b", 14, "69 - Previous -o option already defined a BMM output name."},
    {"-o a a -o A b", 14, "69 - Previous -o option already defined a Address Map output name."},
    {"-o b a -o pb b", 14, "69 - Previous -o option already defined a BIT output name."},
    {"-o d a -o d b", 14, "69 - Previous -o option already defined a DMP output name."},
    {"-o m a -o m b", 14, "69 - Previous -o option already defined a MEM output name."},
    {"-o pp a", 14, "68 - Duplicate -o option character 'p'."},
    {"-q EE", 14, "68 - Duplicate -q option character 'E'."},
    {"-d ee", 14, "68 - Duplicate -d option character 'e'."},
    {"-bd data.mem boot boot", 14, "60 - Only one 'boot' specifier is allowed for each '-bd' option."},
    {"-bd data.mem start 4 start 8", 14, "108 - Only one 'start' specifier is allowed for each '-bd' option."},
    {"-bd data.mem tag a tag b", 14, "61 - Only one 'tag' specifier is allowed for each '-bd' option."},
    {"-bd data.mem data.mem", 14, "59 - Illegal '-bd' option modifier 'data.mem', 'tag', 'boot' or 'start' expected."},
    {"-bm soc.bmm soc.bmm", 14, "125 - Illegal '-bm' option modifier 'soc.bmm', 'root' expected."},
    {"-bt a.bit b.bit", 14, "11 - Unexpected symbol 'b.bit', 'a command switch' expected."},
    {"-p tq7a5 tq7a5", 14, "11 - Unexpected symbol 'tq7a5', 'a command switch' expected."},
    {"-fill 1 2", 14, "11 - Unexpected symbol '2', 'a command switch' expected."},
    {"-w on on", 14, "11 - Unexpected symbol 'on', 'a command switch' expected."},
    {"-split mem mem", 14, "11 - Unexpected symbol 'mem', 'a command switch' expected."},
    {"-i on", 14, "11 - Unexpected symbol 'on', 'a command switch' expected."},
};
TEST_F(SwitchArguments, ThatAreGivenTwiceAreRefused) {
    expectRefused(kDOUBLED);
}

constexpr Misuse kWRONG[] = {
    {"-bm data.mem", 10, "143 - Unknown file extension on BMM file 'data.mem'."},
    {"-bm soc.bmm frob", 14, "125 - Illegal '-bm' option modifier 'frob', 'root' expected."},
    {"-bm soc.bmm root 5", 3, "11 - Unexpected symbol '5', 'BRAM instance name' expected."},
    {"-bm soc.bmm -bd soc.bmm", 1, "3 - Unknown file extension on data file 'soc.bmm'."},
    {"-bm soc.bmm -bd a.bit", 1, "86 - Data file 'a.bit' is a bit file, which holds no software."},
    {"-bd data.mem tag 5", 14, "62 - Expected the 'tag' address space name"},
    {"-bd data.mem frob", 14, "59 - Illegal '-bd' option modifier 'frob', 'tag', 'boot' or 'start' expected."},
    {"-bx . frob", 14, "59 - Illegal '-bd' option modifier 'frob', 'tag', 'boot' or 'start' expected."},
    {"-dataset data.mem", 2, "11 - Unexpected symbol '@', 'valid XML syntax' expected."},
    {"-mx 5", 2, "11 - Unexpected symbol '5', 'valid XML syntax' expected."},
    {"-d z", 14, "67 - Illegal -d option character 'z'. Only the characters 'aAbBeErRfFuUpP' are allowed."},
    {"-q z", 14, "67 - Illegal -q option character 'z'. Only the characters 'sSiIwWeE' are allowed."},
    {"-o z a", 14, "67 - Illegal -o option character 'z'. Only the characters 'uUvVhHmMbBpPdDiIaA' are allowed."},
    {"-o 5 a", 14, "67 - Illegal -o option character '5'. Only the characters 'uUvVhHmMbBpPdDiIaA' are allowed."},
    {"-fill 256", 3, "136 - Illegal '-fill' option byte '256', a value from 0 to 255 expected."},
    {"-fill -1", 3, "136 - Illegal '-fill' option byte '-1', a value from 0 to 255 expected."},
    {"-fill x", 3, "136 - Illegal '-fill' option byte 'x', a value from 0 to 255 expected."},
    {"-bytewidth )", 3, "6 - Illegal token ')', 'valid byte width expression' expected."},
    {"-a maybe", 14, "75 - Illegal option modifier 'maybe', 'on' or 'off' expected."},
    {"-w maybe", 14, "75 - Illegal option modifier 'maybe', 'on' or 'off' expected."},
    {"-w 1", 14, "75 - Illegal option modifier '1', 'on' or 'off' expected."},
    {"-p zz9", 14,
        "WARNING:Lanefill:74 - Unsupported FPGA device name 'zz9'. Verify that the specified device is a valid customer "
        "supported device."},
    {"-workflow 5", 3, "11 - Unexpected symbol '5', 'non identifier WORKFLOW_OPERATION type' expected."},
    {"-D 1=2", 14, "11 - Unexpected symbol '1', 'macro name' expected."},
    {"-D X 2", 14, "120 - Missing '=' symbol after the '-D' option macro name. '2' found instead."},
    {"-split zip", 14, "141 - Illegal output file format specifier 'zip'."},
    {"-encrypt", 14, "11 - Unexpected symbol '-encrypt', 'a command switch' expected."},
    {"-frob", 14, "1 - File 'rob' can not be found, or is busy."}, // an option file,
    {"-BM soc.bmm", 14, "11 - Unexpected symbol '-', 'a command switch' expected."},
    {"-bm soc.bmm -o m x -bd data.mem", 14,
        "119 - \"-o m\" option syntax is no longer used to create individual MEM files for devices."},
};
TEST_F(SwitchArguments, OfAnotherKindAreRefused) {
    expectRefused(kWRONG);
}

class SwitchPlace : public ToolFolder {};

TEST_F(SwitchPlace, IsShownUnderTheOptionsAsTheyWereJoined) {
    EXPECT_EQ(run({"-bm", "a b.bmm", "-q", "z"}).out,
        "\n"
        "ERROR:Lanefill:67 - Illegal -q option character 'z'. Only the characters 'sSiIwWeE' are allowed.\n"
        "-bm \"a b.bmm\" -q z\n"
        "                 ^\n"
        "\n");
}

// Option files.

class OptionFiles : public ToolFolder {};

TEST_F(OptionFiles, HoldSwitchesOverSeveralLinesWithCommentsAndDirectives) {
    folder_.write(
        "job.opt", "-bm soc.bmm // the map\n#define OUT \"new map\"\n#if 1\n-o p\n OUT\n#else\n-zap\n#endif\n");
    const ToolResult result = run({"-f", "job"});
    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_EQ(folder_.listing(), "data.mem\njob.opt\nnew map.bmm\nsoc.bmm\n");
}

TEST_F(OptionFiles, CannotNameAnOptionFile) {
    folder_.write("self.opt", "-f self.opt\n");
    EXPECT_EQ(run({"-f", "self.opt"}).status, 14);
    EXPECT_EQ(run({"-f", "self.opt"}).out,
        "\n"
        "ERROR:Lanefill:73 - Only one '-f' option file is allowed.\n"
        "    An option file can not use another option file.\n"
        "   Line #1, File \"self.opt\".\n"
        "-f self.opt\n"
        "^\n"
        "\n"
        "\n"
        "ERROR:Lanefill:72 - Option file 'self.opt' could not be read, or has an illegal option.\n"
        "-f self.opt\n"
        "^\n"
        "\n");
}

TEST_F(OptionFiles, ThatIncludeThemselvesEndWithAnError) {
    folder_.write("loop.opt", "#include \"loop.opt\"\n-bm soc.bmm\n");
    const ToolResult result = run({"-f", "loop.opt"});
    EXPECT_EQ(result.status, 14);
    EXPECT_THAT(result.out, HasSubstr("ERROR:Lanefill:72 - Option file 'loop.opt' could not be read"));
    EXPECT_LT(result.out.size(), 100000u);
}

TEST_F(OptionFiles, ThatAreMissingAreReportedTwice) {
    const ToolResult result = run({"-f", "none"});
    EXPECT_EQ(result.status, 14);
    EXPECT_EQ(firstLine(result.all()), "1 - File 'none' can not be found, or is busy.");
    EXPECT_THAT(result.out, HasSubstr("ERROR:Lanefill:72 - Option file 'none' could not be read"));
}

TEST_F(OptionFiles, OnlyOneIsTaken) {
    folder_.write("a.opt", "-u\n");
    const ToolResult result = run({"-f", "a.opt", "-f", "a.opt"});
    EXPECT_EQ(result.status, 14);
    EXPECT_EQ(firstLine(result.all()), "73 - Only one '-f' option file is allowed.");
}

// Sizes.

class LongOptions : public ToolFolder {};

TEST_F(LongOptions, AMegabyteInAFileIsRead) {
    std::string text;
    while (text.size() < (1 << 20)) text += "-D NAME" + std::to_string(text.size()) + "=0x1234\n";
    folder_.write("long.opt", text + "-bm soc.bmm -bd data.mem -bx\n");
    const ToolResult result = run({"-f", "long.opt"});
    EXPECT_EQ(result.status, 0) << result.out.substr(0, 1000);
    EXPECT_THAT(read("cpu.ram_0.mem"), HasSubstr("\n    13 93\n"));
}

TEST_F(LongOptions, AMegabyteOfWordsIsRead) {
    std::vector<std::string> words; // a single word can not be that long
    for (int i = 0; i < 10; ++i)
        words.insert(words.end(), {"-D", "X" + std::to_string(i) + "=" + std::string(100000, '7')});
    words.insert(words.end(), {"-bm", "soc.bmm", "-o", "p", "out"});
    const ToolResult result = run(words);
    EXPECT_EQ(result.status, 0) << result.out.substr(0, 1000);
    EXPECT_THAT(read("out.bmm"), HasSubstr("ADDRESS_MAP cpu RISCV 0\n"));
}

TEST_F(LongOptions, ANameBeyondTheLimitOfFilesIsReported) {
    const std::string name(100000, 'a');
    const ToolResult result = run({"-bm", name, "-o", "p", "out"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(firstLine(result.all()).substr(0, 60), ::testing::StartsWith("1 - File 'aaaaaaaa"));
}

} // namespace
} // namespace memdata::testing

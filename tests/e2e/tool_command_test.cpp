// tool_command_test.cpp - the tool's own words, its help, and what it remarks on its runs.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/help_topics.h"
#include "e2e/tool_folder.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>

namespace memdata::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

// Words of its own.

TEST(ToolWords, WithoutAnyItIntroducesItselfInTenLines) {
    const ToolResult result = runTool({});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("lanefill puts software into the block RAMs of FPGA designs.\n"));
    EXPECT_EQ(std::ranges::count(result.out, '\n'), 10);
    EXPECT_EQ(result.err, "");
}

TEST(ToolWords, HelpListsEverySwitchAndSubCommand) {
    const ToolResult result = runTool({"--help"});
    EXPECT_EQ(result.status, 0);
    for (const HelpTopic& topic : allHelpTopics())
        EXPECT_THAT(result.out, HasSubstr("\n  -" + std::string(topic.name) + " ")) << topic.name;
    for (const char* word : {"  devices ", "  check ", "  map ", "  help ", "  --param ", "  --version"})
        EXPECT_THAT(result.out, HasSubstr(word));
    EXPECT_EQ(runTool({"help"}).out, result.out);
    EXPECT_EQ(runTool({"-bm", "no.bmm", "--help"}).out, result.out);
}

TEST(ToolWords, VersionIsALine) {
    const ToolResult result = runTool({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "lanefill of memdata 0.1.0\n");
}

TEST(ToolWords, ParametersAreListedWithDefaultsAndDescriptions) {
    const ToolResult result = runTool({"--params"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("memdata.debugLanefill=off\n    Parameter to turn on "));
    EXPECT_THAT(result.out, HasSubstr("\nmemdata.enableOPMCreationOfMMIFile=on\n    "));
}

TEST(ToolWords, OutputThatCannotBeWrittenIsAnError) {
    for (const char* word : {"--help", "--version", "--params", "help"}) {
        const ToolResult result = runTool({word}, {.outFile = "/dev/full"});
        EXPECT_EQ(result.status, 1) << word;
        EXPECT_EQ(result.err, "lanefill: standard output can not be written\n") << word;
    }
}

TEST(ToolWords, AnUnknownLongWordIsRefused) {
    const ToolResult result = runTool({"--bogus"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "lanefill: there is no option '--bogus'; 'lanefill --help' lists all\n");
}

TEST(ToolWords, AnUnknownSubCommandIsRefused) {
    const ToolResult result = runTool({"frob"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
        "lanefill: 'frob' is no sub-command; files follow a switch: -bm for an address map, -bd for a "
        "data file, -bt for a bit file\n");
}

// Parameters of a run.

class ToolParameters : public ToolFolder {
protected:
    // Data outside of the map gives a message of the older kind only with the parameter.
    std::string remarks(std::vector<std::string> words) const {
        folder_.write("far.mem", "@0 12\n");
        words.insert(words.end(), {"-bm", "soc.bmm", "-bd", "far.mem", "-bx"});
        const ToolResult result = run(words);
        EXPECT_EQ(result.status, 0);
        return result.out;
    }
};

TEST_F(ToolParameters, AParameterHoldsForTheRun) {
    constexpr char kOLDER[] = "Matching ADDRESS_SPACE for code segment #0 not found in 'soc.bmm'.\n";
    EXPECT_THAT(remarks({"--param", "memdata.debugLegacyMessages=on"}), HasSubstr(kOLDER));
    EXPECT_THAT(remarks({"--param=memdata.debugLegacyMessages=yes"}), HasSubstr(kOLDER));
    EXPECT_THAT(remarks({"--param", "memdata.debugLegacyMessages=off"}), ::testing::Not(HasSubstr(kOLDER)));
}

#ifdef __SANITIZE_ADDRESS__
constexpr std::array kPLAIN_MEMORY_VALUES{"on"}; // the sanitizer reports what is left to the end of the process
#else
constexpr std::array kPLAIN_MEMORY_VALUES{"on", "off"};
#endif

TEST_F(ToolParameters, PlainMemoryChangesNoResult) {
    EXPECT_THAT(runTool({"--params"}).out, HasSubstr("\nlanefill.plainMemory="));
    for (const char* value : kPLAIN_MEMORY_VALUES) {
        const std::string parameter = std::string("--param=lanefill.plainMemory=") + value;
        const ToolResult shown = run({parameter, "map", "soc.bmm"});
        EXPECT_EQ(shown.status, 0);
        EXPECT_EQ(shown.out, run({"map", "soc.bmm"}).out);
        EXPECT_EQ(run({parameter, "-w", "-bm", "soc.bmm", "-bd", "data.mem", "-bx", "."}).status, 0);
        EXPECT_EQ(run({parameter, "-bm", "none.bmm", "-bd", "data.mem", "-bx", "."}).status, 1);
    }
}

TEST_F(ToolParameters, TheLaterOneWins) {
    EXPECT_THAT(remarks({"--param", "memdata.debugLegacyMessages=on", "--param=memdata.debugLegacyMessages=off"}),
        ::testing::Not(HasSubstr("code segment #0")));
}

TEST_F(ToolParameters, CanStandAheadOfASubCommand) {
    const ToolResult result = run({"--param", "memdata.debugLegacyMessages=on", "help", "bx"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("-bx "));
}

TEST_F(ToolParameters, UnknownOnesAreRefused) {
    const ToolResult result = run({"--param", "memdata.frob=on"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "lanefill: there is no parameter 'memdata.frob'; 'lanefill --params' lists them\n");
}

TEST_F(ToolParameters, ValuesOtherThanOnAndOffAreRefused) {
    for (const char* word : {"memdata.debugLanefill=maybe", "memdata.debugLanefill=", "memdata.debugLanefill"}) {
        const ToolResult result = run({"--param", word});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "lanefill: --param takes NAME=on or NAME=off, not '" + std::string(word) + "'\n");
    }
}

TEST_F(ToolParameters, AMissingAssignmentIsRefused) {
    const ToolResult result = run({"-bm", "soc.bmm", "--param"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "lanefill: --param takes NAME=on or NAME=off\n");
}

// Help on topics.

TEST(ToolHelp, EverySwitchHasATopicWithAnExample) {
    for (const HelpTopic& topic : allHelpTopics()) {
        const ToolResult result = runTool({"help", std::string(topic.name)});
        EXPECT_EQ(result.status, 0) << topic.name;
        EXPECT_THAT(result.out, StartsWith(std::string(topic.syntax) + "\n")) << topic.name;
        EXPECT_THAT(result.out, HasSubstr("\n  Example: ")) << topic.name;
    }
}

TEST(ToolHelp, EverySubCommandAndLongWordHasATopicWithAnExample) {
    for (const char* topic : {"devices", "check", "map", "help", "--param", "--params", "--version", "--help"}) {
        const ToolResult result = runTool({"help", topic});
        EXPECT_EQ(result.status, 0) << topic;
        EXPECT_THAT(result.out, HasSubstr("\n  Example: lanefill ")) << topic;
    }
}

TEST(ToolHelp, TopicsCanBeWrittenWithTheirDash) {
    EXPECT_EQ(runTool({"help", "-bx"}).out, runTool({"help", "bx"}).out);
}

TEST(ToolHelp, SeveralTopicsFollowEachOther) {
    EXPECT_EQ(runTool({"help", "bx", "D"}).out, runTool({"help", "bx"}).out + "\n" + runTool({"help", "D"}).out);
}

TEST(ToolHelp, AnUnknownTopicIsAnError) {
    const ToolResult result = runTool({"help", "frob", "bx"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "lanefill: there is no help about 'frob'; 'lanefill help' lists all topics\n");
    EXPECT_THAT(result.out, StartsWith("-bx "));
}

TEST(ToolHelp, TheSwitchWorksAsMessagesPromise) {
    const ToolResult result = runTool({"-h", "bx"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, runTool({"help", "bx"}).out);
}

TEST(ToolHelp, TheSwitchEndsTheRunThere) {
    const ToolResult result = runTool({"-bm", "no.bmm", "-h", "-bd", "no.mem"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("  -bm FILE "));
    EXPECT_EQ(result.err, "");
}

TEST(ToolHelp, SubCommandsTellAboutThemselves) {
    for (const char* command : {"map", "check"}) {
        const ToolResult result = runTool({command, "-h"});
        EXPECT_EQ(result.status, 0) << command;
        EXPECT_EQ(result.out, runTool({"help", command}).out);
    }
}

TEST(ToolHelp, ACheckOfNothingSaysWhatItTakes) {
    const ToolResult result = runTool({"check"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
        "lanefill: check takes a bit file, a map and data: lanefill check new.bit -bm soc.bmm -bd app.elf\n");
}

// Runs.

class ToolRuns : public ToolFolder {};

TEST_F(ToolRuns, TheMainJobWritesAMemFileForEachLane) {
    const ToolResult result = run({"-bm", "soc.bmm", "-bd", "data.mem", "-bx"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_THAT(read("cpu.ram_0.mem"), HasSubstr("// Command: lanefill -bm soc.bmm -bd data.mem -bx\n"));
    EXPECT_THAT(read("cpu.ram_0.mem"), EndsWith("\n\n@00000000\n    13 93\n"));
    EXPECT_THAT(read("cpu.ram_3.mem"), EndsWith("\n\n@00000000\n    00 00\n"));
}

TEST_F(ToolRuns, NumberedMessagesGoToStandardOutputAndTheStatusIsTheEngines) {
    const ToolResult result = run({"-bm", "none.bmm", "-o", "p", "x"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, StartsWith("\nERROR:Lanefill:1 - File 'none.bmm' can not be found, or is busy.\n"));
    EXPECT_EQ(result.err, "");
}

TEST_F(ToolRuns, MessagesOfTheCatalogueGoToStandardError) {
    const ToolResult result = run({"-bm", "soc.bmm", "-bd", "data.mem", "tag", "rom", "-bx"});
    EXPECT_EQ(result.status, 11);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "ERROR: [memdata 28-203] No address space and no address map is named 'rom'. Check the tag "
                          "given with the data file against the names in the address map.\n");
}

TEST_F(ToolRuns, MessageFilesEndTheRunWithSuccess) {
    EXPECT_EQ(run({"-msg", "texts", "-bm", "none.bmm"}).status, 0);
    EXPECT_THAT(read("texts.msg"), HasSubstr("# Messages of Lanefill, for translation.\n"));
    EXPECT_EQ(run({"-msgc", "places"}).status, 0);
    EXPECT_THAT(read("places.c"), HasSubstr("// Messages of Lanefill.\n"));
}

TEST_F(ToolRuns, NothingAskedForIsRemarkedOn) {
    constexpr char kREMARK[] = "lanefill: nothing was asked for: name an address map (-bm) with data files (-bd) or "
                               "outputs (-o); 'lanefill --help' shows examples\n";
    const std::vector<std::string> runs[] = {{"-bm", "soc.bmm"}, {"-bx"}, {"-i"}, {"-bd", "data.mem"}, {"-bt", "a.bit"},
        {"-bm", "*"}, {"-q", "E"}, {"-image", "a.bif", "-bm", "soc.bmm"}};
    for (const std::vector<std::string>& words : runs) {
        const ToolResult result = run(words);
        EXPECT_EQ(result.status, 0) << words.front();
        EXPECT_EQ(result.err, kREMARK) << words.front();
    }
}

TEST_F(ToolRuns, DataWithoutAnOutputIsRemarkedOn) {
    const ToolResult result = run({"-bm", "soc.bmm", "-bd", "data.mem"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
        "lanefill: the data was translated, but nothing was written: -bx FOLDER writes MEM files, -o p FILE "
        "the map, -bt FILE with -o b FILE a bit file\n");
    EXPECT_EQ(folder_.listing(), "data.mem\nsoc.bmm\n");
}

TEST_F(ToolRuns, DataThatFitsNoSpaceIsRemarkedOn) {
    folder_.write("far.mem", "@1000 12 34\n");
    for (const char* ignore : {"-u", "-i"}) { // the remark does not depend on -i: nothing at all was done
        const ToolResult result = run({"-w", "-bm", "soc.bmm", "-bd", "far.mem", "-bx", ignore});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "lanefill: no data was translated: no ADDRESS_SPACE holds segment #0 of 'far.mem' "
                              "(0x1000 to 0x1001)\n");
    }
    folder_.write("farther.mem", "@1000 12 @2000 34\n");
    EXPECT_EQ(run({"-w", "-bm", "soc.bmm", "-bd", "farther.mem"}).err,
        "lanefill: no data was translated: no ADDRESS_SPACE holds segment #0 of 'farther.mem' (0x1000 to 0x1000), nor "
        "any other segment\n");
}

TEST_F(ToolRuns, SegmentsThatAreLeftOutAreCounted) {
    folder_.write("part.mem", "@0 12 @80000000 34 @90000000 56\n");
    const ToolResult result = run({"-bm", "soc.bmm", "-bd", "part.mem", "-bx", "all"});
    EXPECT_EQ(result.status, 1); // no such folder
    std::filesystem::create_directory(folder_.file("all"));
    EXPECT_EQ(run({"-bm", "soc.bmm", "-bd", "part.mem", "-bx", "all"}).err,
        "lanefill: 2 of 3 segments are in no ADDRESS_SPACE and were left out, first segment #0 of 'part.mem' (0x0 to "
        "0x0) (-i: leave them out without a word)\n");
    EXPECT_EQ(run({"-w", "-bm", "soc.bmm", "-bd", "part.mem", "-bx", "all", "-i"}).err, "");
}

TEST_F(ToolRuns, ProgressIsPrintedInLinesOnRequest) {
    const ToolResult result = run({"-pg", "-bm", "soc.bmm", "-bd", "data.mem", "-bx"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.all(), "Reading 'data.mem'... 100%\n"
                            "Translating 'data.mem'... 100%\n"
                            "Writing MEM files to '.'... 25%\n"
                            "Writing MEM files to '.'... 50%\n"
                            "Writing MEM files to '.'... 75%\n"
                            "Writing MEM files to '.'... 100%\n");
    EXPECT_THAT(read("cpu.ram_0.mem"), EndsWith("\n    13 93\n"));
}

} // namespace
} // namespace memdata::testing

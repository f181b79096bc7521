// completion_test.cpp - the completion of the command line in bash, and the manual page.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/keywords.h"
#include "support/temporary_folder.h"
#include "support/tool_run.h"

#include <gmock/gmock.h>
#include <sstream>

namespace memdata::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

const std::string kPROJECT = std::filesystem::path(MEMDATA_TEST_DATA).parent_path().string();
const std::string kSCRIPT = kPROJECT + "/tools/lanefill/lanefill.bash";

// Without -encrypt, which is always refused.
std::vector<std::string> usableSwitches() {
    std::vector<std::string> words;
    for (const keyword_row* row = cmd_line_keyword_set.rows; row->word != nullptr; ++row) words.emplace_back(row->word);
    std::erase(words, "-encrypt");
    return words;
}

class Completion : public ::testing::Test {
protected:
    Completion() {
        for (const char* name : {"soc.bmm", "soc.xml", "app.elf", "data.mem", "two words.mem", "top.bit", "notes.txt"})
            folder_.write(name, "");
        std::filesystem::create_directory(folder_.file("sim"));
    }

    // What is offered for the last of the words.
    std::vector<std::string> offered(const std::vector<std::string>& words) const {
        constexpr char kCOMMAND[] = "source \"$1\"; program=$2; shift 2\n"
                                    "COMP_WORDS=(\"$program\" \"$@\"); COMP_CWORD=$#; COMP_LINE=\"lanefill $*\"\n"
                                    "COMP_POINT=${#COMP_LINE}; _lanefill \"$program\" \"${@: -1}\"\n"
                                    "[ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\\n' \"${COMPREPLY[@]}\"\n";
        std::vector<std::string> arguments{"-uc", kCOMMAND, "bash", kSCRIPT, toolName()};
        arguments.insert(arguments.end(), words.begin(), words.end());
        const ToolResult result = runProgram("bash", arguments, {.folder = folder_.path()});
        EXPECT_EQ(result.err, "");
        std::vector<std::string> lines;
        std::istringstream text(result.out);
        for (std::string line; std::getline(text, line);) lines.push_back(line);
        return lines;
    }

    const TemporaryFolder folder_;
};

TEST_F(Completion, TheScriptIsSound) {
    EXPECT_EQ(runProgram("bash", {"-n", kSCRIPT}).status, 0);
}

TEST_F(Completion, EverySwitchIsOffered) {
    const std::vector<std::string> words = offered({"-"});
    EXPECT_THAT(words, IsSupersetOf(usableSwitches()));
    EXPECT_THAT(words, IsSupersetOf({"--help", "--version", "--param", "--params"}));
}

TEST_F(Completion, TheFirstWordCanBeASubCommand) {
    EXPECT_THAT(offered({"d"}), ElementsAre("devices"));
    EXPECT_THAT(offered({""}), IsSupersetOf({"-bm", "check", "devices", "help", "map"}));
    EXPECT_THAT(offered({"-u", "d"}), IsEmpty());
}

TEST_F(Completion, FilesAreOfferedByTheirExtensions) {
    EXPECT_THAT(offered({"-bm", ""}), UnorderedElementsAre("soc.bmm", "soc.xml", "sim"));
    EXPECT_THAT(offered({"-bd", ""}), UnorderedElementsAre("app.elf", "data.mem", "two words.mem", "soc.xml", "sim"));
    EXPECT_THAT(offered({"-bt", "t"}), ElementsAre("top.bit"));
    EXPECT_THAT(offered({"-bx", ""}), ElementsAre("sim"));
    EXPECT_THAT(offered({"-o", "p", "n"}), ElementsAre("notes.txt"));
    EXPECT_THAT(offered({"map", ""}), UnorderedElementsAre("soc.bmm", "soc.xml", "sim"));
    EXPECT_THAT(offered({"check", "t"}), ElementsAre("top.bit"));
}

TEST_F(Completion, DevicesAreOfferedByTheTool) {
    EXPECT_THAT(offered({"-p", "tq7a"}), IsSupersetOf({"tq7a5", "tq7a7"}));
    EXPECT_THAT(offered({"devices", "tq7a"}), Contains("tq7a5"));
    EXPECT_THAT(offered({"devices", "--"}), UnorderedElementsAre("--all", "--json"));
    EXPECT_THAT(offered({"-p", ""}), Not(Contains(HasSubstr(" "))));
}

TEST_F(Completion, ModifiersFollowTheirFiles) {
    EXPECT_THAT(offered({"-bd", "app.elf", ""}), UnorderedElementsAre("tag", "boot", "start"));
    EXPECT_THAT(offered({"-bm", "soc.bmm", "r"}), ElementsAre("root"));
    EXPECT_THAT(
        offered({"-bm", "soc.bmm", "-b"}), UnorderedElementsAre("-bd", "-bf", "-bm", "-bt", "-bx", "-bytewidth"));
}

TEST_F(Completion, WordsOfSwitchesAreOffered) {
    EXPECT_THAT(offered({"-w", "o"}), UnorderedElementsAre("on", "off"));
    EXPECT_THAT(offered({"-o", ""}), UnorderedElementsAre("a", "b", "d", "i", "p"));
    EXPECT_THAT(offered({"help", "da"}), ElementsAre("dataset"));
    EXPECT_THAT(offered({"-h", "bx"}), ElementsAre("bx"));
    EXPECT_THAT(offered({"--param", "memdata.debugLeg"}), ElementsAre("memdata.debugLegacyMessages="));
}

// The manual page.

std::string manualPage() {
    return readFile(kPROJECT + "/docs/lanefill.1");
}

TEST(ManualPage, RendersWithoutWarnings) {
    const ToolResult result = runProgram("man", {"--warnings", "-E", "UTF-8", "-l", kPROJECT + "/docs/lanefill.1"});
    if (result.status == 127) GTEST_SKIP() << "skipped: man is not installed";
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, HasSubstr("Write a MEM file for each memory."));
}

TEST(ManualPage, NamesEverySwitch) {
    const std::string page = manualPage();
    for (const std::string& word : usableSwitches()) EXPECT_THAT(page, HasSubstr("\\" + word)) << word;
}

} // namespace
} // namespace memdata::testing

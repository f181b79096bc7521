// documents_test.cpp - what the documents say holds: their examples run as pasted, and nothing is missing from them.
//
// A fenced block with a language and a file name is a file. A "console" block holds commands behind "$ ", which run in a
// folder with the files so far, and what they print; a line "..." stands for any lines.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/keywords.h"
#include "SystemUtils/messages.h"
#include "support/temporary_folder.h"
#include "support/tool_run.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <regex>
#include <sstream>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;

const std::filesystem::path kPROJECT = std::filesystem::path(MEMDATA_TEST_DATA).parent_path();

std::string document(const std::string& name) {
    return readFile(kPROJECT / name);
}

struct Block {
    std::string language;
    std::string file;
    std::string text;
};

std::vector<Block> blocksOf(const std::string& text) {
    std::vector<Block> blocks;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        if (!line.starts_with("```")) continue;
        std::istringstream head(line.substr(3));
        Block block;
        head >> block.language >> block.file;
        while (std::getline(lines, line) && line != "```") block.text += line + "\n";
        blocks.push_back(block);
    }
    return blocks;
}

// Whether a text is the expected one, where lines "..." match any lines.
bool matches(const std::string& text, const std::string& expected) {
    static const std::regex kSIGNS(R"([.^$|()\[\]{}*+?\\])");
    std::string pattern;
    std::istringstream lines(expected);
    for (std::string line; std::getline(lines, line);)
        pattern += line == "..." ? "(?:.*\n)*?" : std::regex_replace(line, kSIGNS, R"(\$&)") + "\n";
    return std::regex_match(text, std::regex(pattern));
}

// Runs the commands of a console block, each with what it prints.
void runConsole(const TemporaryFolder& folder, const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line);
    while (line.starts_with("$ ")) {
        const std::string command = line.substr(2);
        std::string expected;
        line.clear();
        while (std::getline(lines, line) && !line.starts_with("$ ")) {
            expected += line + "\n";
            line.clear();
        }
        const std::string path = std::filesystem::path(toolName()).parent_path().string();
        const ToolResult result =
            runProgram("sh", {"-c", "PATH='" + path + "':$PATH; exec 2>&1\n" + command}, {.folder = folder.path()});
        EXPECT_TRUE(matches(result.out, expected)) << command << "\n" << result.out << "--- expected\n" << expected;
    }
}

void runExamples(const std::string& name) {
    const TemporaryFolder folder;
    int commands = 0;
    for (const Block& block : blocksOf(document(name))) {
        if (!block.file.empty()) folder.write(block.file, block.text);
        if (block.language == "console") runConsole(folder, block.text);
        if (block.language == "bmm") { // every map stands on its own
            const ToolResult result =
                runTool({"-w", "-bm", block.file, "-o", "p", "of_the_test"}, {.folder = folder.path()});
            EXPECT_EQ(result.status, 0) << block.file << result.err;
        }
        commands += block.language == "console" || block.language == "bmm";
    }
    EXPECT_GT(commands, 0);
}

TEST(Documents, TheExamplesOfTheReadmeWork) {
    runExamples("README.md");
}

TEST(Documents, TheExamplesOfTheMapLanguageWork) {
    runExamples("docs/bmm.md");
}

TEST(Documents, TheExamplesOfTheCompactLanguageWork) {
    runExamples("docs/compact.md");
}

TEST(Documents, TheExamplesOfFileFormatsWork) {
    runExamples("docs/file-formats.md");
}

TEST(Documents, TheExampleOfAnOptionFileWorks) {
    const TemporaryFolder folder;
    for (const Block& block :
        blocksOf(document("docs/bmm.md") + document("docs/file-formats.md") + document("docs/options.md")))
        if (!block.file.empty()) folder.write(block.file, block.text);
    folder.write("app.mem", "@80000000 12\n");
    std::filesystem::create_directory(folder.file("mem files"));
    const ToolResult result = runTool({"-f", "job.opt"}, {.folder = folder.path()});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(std::filesystem::exists(folder.file("mem files/cpu.ram_0.mem")));
}

// Completeness.

TEST(Documents, EverySwitchStandsInTheOptions) {
    const std::string text = document("docs/options.md");
    for (const keyword_row* row = cmd_line_keyword_set.rows; row->word != nullptr; ++row)
        EXPECT_THAT(text, HasSubstr("| `" + std::string(row->word))) << row->word;
}

// The first line of a message as the documents show it: places of arguments as "…".
std::string shownText(const std::string& text) {
    static const std::regex kPLACES("%[0-9]*l*[sdcXu]");
    static const std::regex kSIGNS("([|<])");
    const std::string shown = std::regex_replace(text.substr(0, text.find('\n')), kPLACES, "\xE2\x80\xA6");
    return shown.empty() ? "(no text)" : std::regex_replace(shown, kSIGNS, "\\$1");
}

struct NumberedText {
    int number;
    const char* text;
};

TEST(Documents, EveryNumberedMessageHasARowWithItsText) {
    constexpr NumberedText kMESSAGES[] = {
#define ALERT_MESSAGE(name, number, text) {number, text},
#include "SystemUtils/messages.def"
#undef ALERT_MESSAGE
    };
    const std::string text = document("docs/messages.md");
    for (const NumberedText& message : kMESSAGES)
        EXPECT_THAT(text, HasSubstr("\n| " + std::to_string(message.number) + " | " + shownText(message.text) + " | "));
}

// A row of the catalogue: the last sentence of its text is the cure.
std::string catalogueRow(int number, const std::string& severity, const std::string& text) {
    static const std::regex kPLACES(R"(\{[0-9]\})");
    const std::string shown = std::regex_replace(text, kPLACES, "\xE2\x80\xA6");
    const size_t end = shown.rfind(". ");
    const std::string cells =
        end == shown.npos ? shown + " | Nothing to do." : shown.substr(0, end + 1) + " | " + shown.substr(end + 2);
    return "\n| 28-" + std::to_string(number) + " | " + severity + " | " + cells + " |\n";
}

TEST(Documents, EveryCatalogueCodeHasARowWithItsText) {
    const std::string documentText = document("docs/messages.md");
#define CATALOGUE_TEXT(number, severity, arguments, text)                                                              \
    EXPECT_THAT(documentText, HasSubstr(catalogueRow(number, #severity, text)));
#include "hosts/standalone/message_catalogue.def"
#undef CATALOGUE_TEXT
}

TEST(Documents, NoRowIsLeftOfAMessageThatIsGone) {
    const std::string text = document("docs/messages.md");
    size_t numbers = 0;
#define ALERT_MESSAGE(name, number, text) ++numbers;
#include "SystemUtils/messages.def"
#undef ALERT_MESSAGE
#define CATALOGUE_TEXT(number, severity, arguments, text_) ++numbers;
#include "hosts/standalone/message_catalogue.def"
#undef CATALOGUE_TEXT
    static const std::regex kROW("\n\\| (?:28-)?[0-9]+ \\| [^\n]* \\| [^\n]* \\| ");
    const auto rows = std::sregex_iterator(text.begin(), text.end(), kROW);
    EXPECT_EQ(std::distance(rows, {}), static_cast<std::ptrdiff_t>(numbers));
}

TEST(Documents, EveryLinkLeadsToAFile) {
    static const std::regex kLINK(R"(\]\(([^)#:]+)(?:#[^)]*)?\))");
    for (const char* name : {"README.md", "docs/README.md", "docs/manual.md", "docs/bmm.md", "docs/compact.md",
             "docs/options.md", "docs/file-formats.md", "docs/messages.md", "docs/performance.md"}) {
        const std::string text = document(name);
        const std::filesystem::path folder = (kPROJECT / name).parent_path();
        for (auto link = std::sregex_iterator(text.begin(), text.end(), kLINK); link != std::sregex_iterator(); ++link)
            EXPECT_TRUE(std::filesystem::exists(folder / (*link)[1].str())) << name << ": " << (*link)[1];
    }
}

} // namespace
} // namespace memdata::testing

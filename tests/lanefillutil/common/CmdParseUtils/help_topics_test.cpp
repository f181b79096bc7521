// help_topics_test.cpp - every switch has its help, and the help is true.
// SPDX-License-Identifier: Apache-2.0
#include "option_test.h"

#include <set>
#include <sstream>

namespace memdata::testing {
namespace {

TEST(HelpTopics, EverySwitchHasOne) {
    for (const keyword_row* row = cmd_line_keyword_set.rows; row->word != nullptr; ++row) {
        const HelpTopic* topic = findHelpTopic(row->word);
        if (row->type == &kKEY_SWITCH) {
            EXPECT_EQ(topic, nullptr);
            continue;
        }
        ASSERT_NE(topic, nullptr) << row->word;
        EXPECT_TRUE(topic->name == row->word + 1 || topic->alias == row->word + 1) << row->word;
    }
}

TEST(HelpTopics, EveryOneIsASwitch) {
    std::set<std::string_view> words;
    for (const keyword_row* row = cmd_line_keyword_set.rows; row->word != nullptr; ++row) words.insert(row->word + 1);
    for (const HelpTopic& topic : allHelpTopics()) {
        EXPECT_TRUE(words.contains(topic.name)) << topic.name;
        EXPECT_TRUE(topic.alias.empty() || words.contains(topic.alias)) << topic.alias;
        EXPECT_TRUE(topic.syntax.starts_with("-" + std::string(topic.name))) << topic.name;
        EXPECT_FALSE(topic.summary.empty() || topic.meaning.empty() || topic.example.empty()) << topic.name;
    }
}

TEST(HelpTopics, LinesFitATerminal) {
    std::string all = helpOverview();
    for (const HelpTopic& topic : allHelpTopics()) all += helpText(topic);
    std::istringstream lines(all);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80U) << line;
}

TEST(HelpTopics, AreFoundWithOrWithoutDashInEitherCase) {
    EXPECT_EQ(findHelpTopic("bx")->name, "bx");
    EXPECT_EQ(findHelpTopic("-bx")->name, "bx");
    EXPECT_EQ(findHelpTopic("BX")->name, "bx");
    EXPECT_EQ(findHelpTopic("md")->name, "bd");
    EXPECT_EQ(findHelpTopic("d")->name, "d");
    EXPECT_EQ(findHelpTopic("D")->name, "D");
    EXPECT_EQ(findHelpTopic("nothing"), nullptr);
    EXPECT_EQ(findHelpTopic("-"), nullptr);
    EXPECT_EQ(findHelpTopic(""), nullptr);
}

TEST(HelpTopics, ATopicShowsSyntaxMeaningAndExample) {
    EXPECT_EQ(helpText(*findHelpTopic("fill")), "-fill [BYTE]\n"
                                                "  BYTE is a number from 0 to 255, 0 when it is left out.\n"
                                                "  Images are not built by this version: it changes no output.\n"
                                                "  Example: -fill 0xFF\n");
    EXPECT_NE(helpText(*findHelpTopic("bd")).find("  -md is the same.\n"), std::string::npos);
}

TEST_F(Options, HelpShowsWhatItsTopicsAskFor) {
    EXPECT_EQ(parse("-h fill nothing"), -1);
    EXPECT_EQ(helpText(options.helpTopics), helpText(*findHelpTopic("fill")) + "\nThere is no help about 'nothing'.\n");
}

TEST_F(Options, HelpWithoutATopicListsAllSwitches) {
    EXPECT_EQ(parse("-h"), -1);
    const std::string text = helpText(options.helpTopics);
    EXPECT_EQ(text, helpOverview());
    for (const HelpTopic& topic : allHelpTopics())
        EXPECT_NE(text.find("  " + std::string(topic.syntax)), std::string::npos) << topic.name;
}

// Examples are what users paste. Those of files that must exist are not run here.
TEST_F(Options, ExamplesAreGoodOptions) {
    const TemporaryFolder folder;
    const std::filesystem::path old = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    for (const HelpTopic& topic : allHelpTopics()) {
        if (topic.name == "f" || topic.name == "dataset" || topic.name == "bm" || topic.name == "mx") continue;
        const bool stops = topic.name == "h" || topic.name == "msg" || topic.name == "msgc";
        const int status = parse(std::string(topic.example));
        EXPECT_EQ(status == -1 || status == -2, stops) << topic.name;
        EXPECT_TRUE(stops || status == 0) << topic.name << alerts.text() << messages.text();
        DeleteCmdStringOptions(&options);
        EnablePrintAlerts(62);
    }
    std::filesystem::current_path(old);
}

} // namespace
} // namespace memdata::testing

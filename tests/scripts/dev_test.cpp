// dev_test.cpp - the developers' script says what is wrong with its words.
// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

struct Outcome {
    int status;
    std::string text;
};

Outcome dev(const std::string& words) {
    FILE* pipe = popen((MEMDATA_TEST_DATA "/../dev " + words + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return {-1, ""};
    std::string text;
    for (int c; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    const int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text};
}

TEST(Dev, WithoutAVerbListsTheVerbs) {
    const Outcome outcome = dev("");
    EXPECT_EQ(outcome.status, 0);
    for (const char* verb : {"setup", "build", "demo", "test", "check", "bench", "fuzz", "format"})
        EXPECT_THAT(outcome.text, ::testing::HasSubstr(std::string("\n  ") + verb)) << verb;
}

TEST(Dev, AnUnknownVerbIsAnErrorAndTheVerbsAreListed) {
    const Outcome outcome = dev("polish");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.text, ::testing::StartsWith("dev: unknown verb 'polish'\n./dev VERB\n"));
}

TEST(Dev, FuzzSaysWhichTargetsThereAreWhenOneIsUnknown) {
    const Outcome outcome = dev("fuzz novel 1");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.text, ::testing::StartsWith("dev: there is no fuzz target 'novel'; there are: "));
    EXPECT_THAT(outcome.text, ::testing::HasSubstr(" preprocessor"));
}

} // namespace

// golden_test.cpp - the runner of golden files finds each kind of difference.
// SPDX-License-Identifier: Apache-2.0
#include "support/golden.h"
#include "support/temporary_folder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>

namespace memdata::testing {
namespace {

constexpr const char* kGOOD = "=== options\n-a -b\n"
                              "=== input one.txt\nfirst\nsecond\n"
                              "=== input two.txt\n"
                              "=== status\n0\n"
                              "=== expected\n-a -b: first\n";

// Answers with the options and the first line of one.txt, which it reads from its working directory.
GoldenResult echo(const GoldenFile& golden, const std::filesystem::path&) {
    std::string line;
    std::ifstream in("one.txt");
    std::getline(in, line);
    return {line == "fail" ? 3 : 0, golden.options + ": " + line + "\n"};
}

class Golden : public ::testing::Test {
protected:
    void TearDown() override { gRewriteGolden = false; }
    TemporaryFolder folder_;
};

TEST_F(Golden, HoldsWhenStatusAndTextAreAsExpected) {
    EXPECT_EQ(checkGolden(folder_.write("good.golden", kGOOD), echo), "");
}

TEST_F(Golden, WritesBackWhatItRead) {
    EXPECT_EQ(writeGolden(parseGolden(folder_.write("good.golden", kGOOD))), kGOOD);
}

TEST_F(Golden, ShowsBothTextsWhenTheyDiffer) {
    std::string text = kGOOD;
    text.replace(text.rfind("first"), 5, "other");
    EXPECT_EQ(checkGolden(folder_.write("good.golden", text), echo),
        "good.golden:\n--- expected\n-a -b: other\n--- given\n-a -b: first\n");
}

TEST_F(Golden, ARunThatFailsNeedsANameThatSaysSo) {
    const std::string text = "=== options\n\n=== input one.txt\nfail\n=== status\n3\n=== expected\n: fail\n";
    EXPECT_EQ(checkGolden(folder_.write("bad-case.golden", text), echo), "");
    EXPECT_EQ(
        checkGolden(folder_.write("case.golden", text), echo), "case.golden:\nthe name says that the run succeeds\n");
}

TEST_F(Golden, ABadFileWhoseRunSucceedsIsADifference) {
    EXPECT_EQ(checkGolden(folder_.write("bad-case.golden", kGOOD), echo),
        "bad-case.golden:\nthe name says that the run fails\n");
}

TEST_F(Golden, AWrongStatusIsADifference) {
    const std::string text = "=== options\n\n=== input one.txt\nfail\n=== status\n4\n=== expected\n: fail\n";
    EXPECT_EQ(checkGolden(folder_.write("bad-case.golden", text), echo), "bad-case.golden:\nstatus 3, expected 4\n");
}

TEST_F(Golden, TheFlagRewritesStatusAndText) {
    const std::string name = folder_.write("new.golden", "=== options\n-x\n=== input one.txt\nfirst\n");
    gRewriteGolden = true;
    EXPECT_EQ(checkGolden(name, echo), "");
    EXPECT_EQ(readFile(name), "=== options\n-x\n=== input one.txt\nfirst\n=== status\n0\n=== expected\n-x: first\n");
}

TEST_F(Golden, AFileWithoutAStatusOrWithAnUnknownSectionIsRefused) {
    EXPECT_THROW(parseGolden(folder_.write("a.golden", "=== options\n-x\n")), std::runtime_error);
    EXPECT_THROW(parseGolden(folder_.write("b.golden", "=== opinions\n-x\n")), std::runtime_error);
}

} // namespace
} // namespace memdata::testing

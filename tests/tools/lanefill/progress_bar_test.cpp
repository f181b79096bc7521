// progress_bar_test.cpp - the line of the bar, and when it comes and goes, on a terminal and a clock of the test's.
// SPDX-License-Identifier: Apache-2.0
#include "tools/lanefill/progress_bar.h"

#include <gtest/gtest.h>
#include <string>

namespace memdata {
namespace {

using std::chrono::milliseconds;

TEST(BarLines, ShowBarPercentAndStage) {
    EXPECT_EQ(barLine("Reading 'a.mem'...", 40, 80), "[#############.....................]  40% Reading 'a.mem'...");
    EXPECT_EQ(
        barLine("Reading 'a.mem'...", 0, 120), "[........................................]   0% Reading 'a.mem'...");
    EXPECT_EQ(
        barLine("Reading 'a.mem'...", 100, 120), "[########################################] 100% Reading 'a.mem'...");
}

TEST(BarLines, StayShorterThanTheTerminal) {
    const std::string name(300, 'x');
    for (int columns = 5; columns < 200; ++columns)
        EXPECT_LT(barLine(name, 100, columns).size(), static_cast<size_t>(columns)) << columns;
}

TEST(BarLines, GiveUpTheBarFirstThenTheStageThenAll) {
    EXPECT_EQ(barLine("Reading", 7, 31), "[..........]   7% Reading");
    EXPECT_EQ(barLine("Reading", 7, 30), "  7% Reading");
    EXPECT_EQ(barLine("Reading", 7, 10), "  7% Read");
    EXPECT_EQ(barLine("Reading", 7, 6), "  7%");
    EXPECT_EQ(barLine("Reading", 7, 5), "  7%");
    EXPECT_EQ(barLine("Reading", 7, 4), "");
    EXPECT_EQ(barLine("Reading", 7, -1), "");
}

TEST(BarLines, CountWideCharactersTwiceAndCutNone) {
    EXPECT_EQ(barLine("\xE6\x96\x87\xE6\x96\x87\xE6\x96\x87", 7, 11), "  7% \xE6\x96\x87\xE6\x96\x87");
}

TEST(BarLines, LetNoControlSignsOfNamesReachTheTerminal) {
    EXPECT_EQ(barLine("a\x1B[2Jb\nc\x7F", 7, 20), "  7% a?[2Jb?c?");
    EXPECT_EQ(barLine("\xC2\x9B"
                      "31m",
                  7, 20),
        "  7% ?31m");                                      // a control sign of eight bits
    EXPECT_EQ(barLine("\xFF\xE6\x96", 7, 20), "  7% ???"); // no UTF-8
}

TEST(BarLines, KeepPercentsInTheirRange) {
    EXPECT_EQ(barLine("", -3, 12), "  0% ");
    EXPECT_EQ(barLine("", 300, 12), "100% ");
}

class Bars : public ::testing::Test {
protected:
    BarTerminal terminal() {
        return {
            [this] { return time; }, [this] { return columns; }, [this](std::string_view text) { written += text; }};
    }
    // What was written since the last call.
    std::string news() { return std::exchange(written, ""); }

    milliseconds time{5000};
    int columns = 12;
    std::string written;
};

TEST_F(Bars, AShortRunShowsNothing) {
    ProgressBar bar(terminal(), milliseconds(1000));
    bar.show("Read", 0);
    time += milliseconds(999);
    bar.show("Read", 99);
    bar.clear();
    EXPECT_EQ(news(), "");
}

TEST_F(Bars, ALongRunShowsItsLineAfterTheDelay) {
    ProgressBar bar(terminal(), milliseconds(1000));
    time += milliseconds(1000);
    bar.show("Read", 5);
    EXPECT_EQ(news(), "\r\x1B[K  5% Read");
}

TEST_F(Bars, ALineIsDrawnAgainOnlyWhenItCanBeSeenToChange) {
    ProgressBar bar(terminal(), milliseconds(0));
    bar.show("Read", 5);
    news();
    time += milliseconds(99);
    bar.show("Read", 6);
    EXPECT_EQ(news(), "");
    time += milliseconds(1);
    bar.show("Read", 7);
    EXPECT_EQ(news(), "\r\x1B[K  7% Read");
    time += milliseconds(500);
    bar.show("Read", 7);
    EXPECT_EQ(news(), "");
}

TEST_F(Bars, ALineIsTakenAwayOnce) {
    ProgressBar bar(terminal(), milliseconds(0));
    bar.show("Read", 5);
    news();
    bar.clear();
    EXPECT_EQ(news(), "\r\x1B[K");
    bar.clear();
    EXPECT_EQ(news(), "");
}

TEST_F(Bars, ALineThatWasTakenAwayComesBack) {
    ProgressBar bar(terminal(), milliseconds(0));
    bar.show("Read", 5);
    bar.clear();
    news();
    time += milliseconds(100);
    bar.show("Read", 5);
    EXPECT_EQ(news(), "\r\x1B[K  5% Read");
}

TEST_F(Bars, TheLineGoesWithTheBar) {
    {
        ProgressBar bar(terminal(), milliseconds(0));
        bar.show("Read", 5);
        news();
    }
    EXPECT_EQ(news(), "\r\x1B[K");
}

TEST_F(Bars, TheWidthOfTheMomentCounts) {
    ProgressBar bar(terminal(), milliseconds(0));
    bar.show("Read", 5);
    news();
    columns = 8;
    time += milliseconds(100);
    bar.show("Read", 5);
    EXPECT_EQ(news(), "\r\x1B[K  5% Re");
}

TEST_F(Bars, NothingIsDrawnWithoutColumns) {
    columns = 0;
    ProgressBar bar(terminal(), milliseconds(0));
    bar.show("Read", 5);
    EXPECT_EQ(news(), "");
}

} // namespace
} // namespace memdata

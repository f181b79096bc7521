// progress_stages_test.cpp - which percents a stage tells, and whom.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/progress_stages.h"

#include "support/host_progress.h"

#include <gtest/gtest.h>
#include <string>

namespace memdata::testing {
namespace {

std::string gTold;
int gEndAt = 101; // percent

int keep(int percent, const char* text, void (*abort)(unsigned)) {
    gTold += std::string(text) + std::to_string(percent) + " ";
    if (percent >= gEndAt) abort(0);
    return 1; // means nothing
}

class ProgressStages : public ::testing::Test {
protected:
    ProgressStages() {
        gTold.clear();
        gEndAt = 101;
    }
};

TEST_F(ProgressStages, TellEachPercentOnce) {
    const ScopedProgressSink sink(keep);
    ProgressStage stage("a", 1000);
    for (int i = 0; i < 35; ++i) EXPECT_EQ(advanceProgress(1), 0);
    EXPECT_EQ(gTold, "a1 a2 a3 ");
}

TEST_F(ProgressStages, TellOnlyTheLastOfSeveralPercents) {
    const ScopedProgressSink sink(keep);
    ProgressStage stage("a", 10);
    advanceProgress(1);
    advanceProgress(7);
    EXPECT_EQ(gTold, "a10 a80 ");
}

TEST_F(ProgressStages, EndAtTheWholeWhenTheyAreFinished) {
    const ScopedProgressSink sink(keep);
    ProgressStage stage("a", 7);
    advanceProgress(7);
    EXPECT_EQ(gTold, "a100 ");
    EXPECT_EQ(stage.finish(), 0);
    EXPECT_EQ(gTold, "a100 ");
}

TEST_F(ProgressStages, ThatCountedTooLittleEndAtTheWholeToo) {
    const ScopedProgressSink sink(keep);
    ProgressStage stage("a", 7);
    advanceProgress(6);
    stage.finish();
    EXPECT_EQ(gTold, "a85 a100 ");
}

TEST_F(ProgressStages, OfNoUnitsAreWholeAtOnce) {
    const ScopedProgressSink sink(keep);
    ProgressStage stage("a", 0);
    stage.finish();
    EXPECT_EQ(gTold, "a100 ");
}

TEST_F(ProgressStages, CountUpToTheLargestNumbers) {
    const ScopedProgressSink sink(keep);
    ProgressStage stage("a", ~u64{0});
    advanceProgress(~u64{0} / 2 + 1);
    advanceProgress(~u64{0});
    EXPECT_EQ(gTold, "a50 a100 ");
}

TEST_F(ProgressStages, DoNotFallBack) {
    const ScopedProgressSink sink(keep);
    ProgressStage stage("a", 100);
    reachProgress(40);
    reachProgress(20);
    reachProgress(41);
    EXPECT_EQ(gTold, "a40 a41 ");
}

TEST_F(ProgressStages, ThatWereNotFinishedDoNotTellTheWhole) {
    const ScopedProgressSink sink(keep);
    {
        ProgressStage stage("a", 100);
        advanceProgress(50);
    }
    advanceProgress(50); // nobody's
    EXPECT_EQ(gTold, "a50 ");
}

TEST_F(ProgressStages, GiveTheirPlaceToAStageInside) {
    const ScopedProgressSink sink(keep);
    ProgressStage outer("a", 100);
    {
        ProgressStage inner("b", 10);
        advanceProgress(5);
    }
    advanceProgress(5);
    EXPECT_EQ(gTold, "b50 a5 ");
}

TEST_F(ProgressStages, PartsCountAsWhatTheyWereSaidToBe) {
    const ScopedProgressSink sink(keep);
    ProgressStage stage("a", 100);
    ProgressPart first(40);
    advanceProgress(30);
    advanceProgress(30); // more than the part
    first.finish();
    ProgressPart second(10);
    second.finish(); // without a word
    advanceProgress(1);
    EXPECT_EQ(gTold, "a30 a40 a50 a51 ");
}

TEST_F(ProgressStages, EndTheRunWhenTheSinkAsksForIt) {
    const ScopedProgressSink sink(keep);
    gEndAt = 20;
    ProgressStage stage("a", 100);
    EXPECT_EQ(advanceProgress(10), 0);
    EXPECT_EQ(advanceProgress(10), 15);
    EXPECT_EQ(advanceProgress(0), 15);
    EXPECT_EQ(progressStatus(), 15);
}

TEST_F(ProgressStages, AWishForTheEndEndsWithItsRun) {
    gEndAt = 0;
    {
        const ScopedProgressSink sink(keep);
        ProgressStage stage("a", 1);
        EXPECT_EQ(stage.finish(), 15);
    }
    EXPECT_EQ(progressStatus(), 0);
}

TEST_F(ProgressStages, WithoutASinkTellTheHostFromTheStartOn) {
    std::string told;
    const CapturedProgress host(
        [&](std::string_view text, int percent) { told += std::string(text) + std::to_string(percent) + " "; });
    ProgressStage stage("a", 100);
    advanceProgress(50);
    stage.finish();
    EXPECT_EQ(told, "a0 a50 a100 ");
}

TEST_F(ProgressStages, WithASinkTellTheHostNothing) {
    bool isTold = false;
    const CapturedProgress host([&](std::string_view, int) { isTold = true; });
    const ScopedProgressSink sink(keep);
    ProgressStage stage("a", 100);
    stage.finish();
    EXPECT_FALSE(isTold);
}

TEST(Progress, WithoutAStageMeansNothing) {
    EXPECT_EQ(advanceProgress(1), 0);
    EXPECT_EQ(reachProgress(1), 0);
    ProgressPart part(3);
    EXPECT_EQ(part.finish(), 0);
}

} // namespace
} // namespace memdata::testing

// option_run_test.cpp - whole runs from option texts.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/option_run.h"

#include "CmdParseUtils/help_topics.h"
#include "SystemUtils/SystemUtils.h"
#include "support/alerts.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

class OptionRuns : public ::testing::Test {
protected:
    OptionRuns() : oldFolder_(std::filesystem::current_path()) { std::filesystem::current_path(folder.path()); }
    ~OptionRuns() override { std::filesystem::current_path(oldFolder_); }

    SystemResources resources_;
    CapturedAlerts alerts;
    TemporaryFolder folder;

private:
    std::filesystem::path oldFolder_;
};

constexpr char kMAP[] = "ADDRESS_MAP cpu ARM 7 core\n"
                        "ADDRESS_SPACE ram RAMB16 [0x1000:0x1FFF] mem\n"
                        "BUS_BLOCK hi [15:8]; lo [7:0]; END_BUS_BLOCK;\n"
                        "END_ADDRESS_SPACE; END_ADDRESS_MAP;\n";

TEST_F(OptionRuns, AMapIsReadAndWrittenAsAsked) {
    folder.write("map.bmm", kMAP);
    const OptionRun run = runOptions("-bm map.bmm -o a out.xml");
    EXPECT_EQ(run.status, 0) << alerts.text();
    EXPECT_EQ(run.switchCount, 2);
    EXPECT_NE(readFile("out.xml").find("<Processor Name=\"cpu\""), std::string::npos);
}

TEST_F(OptionRuns, TheRootStandsAheadOfTheInstancesOfAMap) {
    folder.write("map.bmm", kMAP);
    ASSERT_EQ(runOptions("-bm map.bmm root sys/top/ -o a out.xml").status, 0) << alerts.text();
    const std::string rooted = readFile("out.xml");
    EXPECT_NE(rooted.find("Name=\"sys_top_cpu\""), std::string::npos) << rooted;
    EXPECT_NE(rooted.find("Instance=\"sys/top/core\""), std::string::npos) << rooted;
    ASSERT_EQ(runOptions("-bm map.bmm -o a plain.xml").status, 0) << alerts.text();
    ASSERT_EQ(runOptions("-bm plain.xml root sys/top -o a again.xml").status, 0) << alerts.text();
    EXPECT_EQ(readFile("again.xml"), rooted);
}

TEST_F(OptionRuns, MacrosAndPreprocessingReachTheRun) {
    folder.write("a.bmm", "DEPTH words\n");
    EXPECT_EQ(runOptions("-pp a.bmm -D DEPTH=64 -o p out.bmm").status, 0) << alerts.text();
    EXPECT_EQ(readFile("out.bmm"), "64 words\n");
}

TEST_F(OptionRuns, HelpComesBackAsText) {
    const OptionRun run = runOptions("-i -h bx");
    EXPECT_EQ(run.status, -1);
    EXPECT_EQ(run.help, helpText(*findHelpTopic("bx")));
    EXPECT_EQ(runOptions("-h").help, helpOverview());
}

TEST_F(OptionRuns, AMessageFileEndsTheRun) {
    EXPECT_EQ(runOptions("-msg m -bm none.bmm").status, -2);
    EXPECT_EQ(folder.listing(), "m.msg\n");
}

TEST_F(OptionRuns, NothingAskedForIsDone) {
    const OptionRun run = runOptions("");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.switchCount, 0);
}

TEST_F(OptionRuns, AFailureInTheTextCarriesNothingOut) {
    folder.write("map.bmm", kMAP);
    EXPECT_EQ(runOptions("-bm map.bmm -o a out.xml -encrypt").status, 14);
    EXPECT_EQ(folder.listing(), "map.bmm\n");
}

TEST_F(OptionRuns, TheLogHoldsTheAlertsOfTheRun) {
    EXPECT_EQ(runOptions("-log run -bm none.bmm").status, 1);
    EXPECT_NE(readFile("run.log").find("File 'none.bmm' can not be found"), std::string::npos);
}

} // namespace
} // namespace memdata::testing

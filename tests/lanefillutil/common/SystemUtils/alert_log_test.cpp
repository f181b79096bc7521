// alert_log_test.cpp - alerts in the log of a run: what stands ahead of them, and what journaling has to do with it.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/journal.h"
#include "FileUtils/opening.h"
#include "ListingUtils/ListingUtils.h"
#include "SystemUtils/alerts.h"
#include "alerts_fixture.h"
#include "support/alerts.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace memdata::testing {
namespace {

using ::testing::EndsWith;
using ::testing::StartsWith;

class AlertLog : public Alerts {
protected:
    void open(const char* name = "run.log") {
        fileSpecType* spec = CreateFileSpec(folder.file(name).c_str());
        ASSERT_EQ(OpenJournalingFile(spec), 0);
        DeleteFileSpec(&spec);
    }
    // Closes the log and gives what it holds.
    std::string close(const char* name = "run.log") {
        CloseJournalingFile();
        return readFile(folder.file(name));
    }

    TemporaryFolder folder;
};

TEST_F(AlertLog, AnAlertGoesToTheConsoleAndToTheLog) {
    CapturedAlerts alerts;
    open();
    print_unexpected_x();
    EXPECT_EQ(alerts.text(), kUNEXPECTED_X);
    EXPECT_THAT(close(), EndsWith(kUNEXPECTED_X));
}

TEST_F(AlertLog, TheFirstAlertWritesTheVersionHeaderAndLaterOnesDoNot) {
    CapturedAlerts alerts;
    open();
    print_unexpected_x();
    PrintInfo(kERROR_MESSAGE_STRING, "second");
    const std::string log = close();

    const std::string messages = alerts.text();
    ASSERT_THAT(log, EndsWith(messages));
    const std::string header = log.substr(0, log.size() - messages.size());
    open("expected.log");
    OutputVersionHeader(StandardLog, "//", nullptr);
    EXPECT_EQ(header, close("expected.log"));
    EXPECT_THAT(header, StartsWith("// "));
}

TEST_F(AlertLog, TheHeaderStaysOutOfTheConsole) {
    CapturedAlerts alerts;
    open();
    print_unexpected_x();
    CloseJournalingFile();
    EXPECT_EQ(alerts.text(), kUNEXPECTED_X);
}

TEST_F(AlertLog, EachLogHasAHeaderOfItsOwn) {
    CapturedAlerts alerts;
    open("one.log");
    print_unexpected_x();
    const std::string one = close("one.log");
    open("two.log");
    print_unexpected_x();
    EXPECT_EQ(close("two.log"), one);
    EXPECT_THAT(one, StartsWith("// "));
}

TEST_F(AlertLog, AnAlertReachesTheLogWithJournalingOffAndLeavesItOff) {
    CapturedAlerts alerts;
    open();
    EXPECT_TRUE(EnabledJournaling(false));
    print_unexpected_x();
    EXPECT_FALSE(EnabledJournaling(false));
    EXPECT_THAT(close(), EndsWith(kUNEXPECTED_X));
}

TEST_F(AlertLog, JournalingStaysOnBehindAnAlert) {
    CapturedAlerts alerts;
    open();
    print_unexpected_x();
    EXPECT_TRUE(EnabledJournaling(true));
    CloseJournalingFile();
}

TEST_F(AlertLog, AMaskedAlertWritesNoHeader) {
    CapturedAlerts alerts(0);
    open();
    print_unexpected_x();
    EXPECT_EQ(close(), "");
}

TEST_F(AlertLog, AFailureToWriteTheLogIsSaidBehindTheAlert) {
    std::filesystem::create_symlink("/dev/full", folder.file("run.log"));
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    CapturedAlerts alerts;
    open();
    const std::string longText(1000000, 'x'); // more than the log's buffer holds
    EXPECT_EQ(PrintError(kERROR_MESSAGE_STRING, 9, longText), 9);
    EXPECT_THAT(alerts.text(), StartsWith("\nERROR:Lanefill:86 - " + longText + "\n\n\nERROR:Lanefill:86 - File '"));
    EXPECT_THAT(alerts.text(), EndsWith("run.log' can not be written: No space left on device.\n\n"));
    CloseJournalingFile();
    EXPECT_EQ(count_of("ERROR", alerts.text()), 2u);
}

} // namespace
} // namespace memdata::testing

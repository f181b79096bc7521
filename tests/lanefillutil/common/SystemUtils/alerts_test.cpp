// alerts_test.cpp - what an alert says, what it returns, which are printed, and the registry of messages.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/alerts.h"

#include "SystemUtils/alert_registry.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "alerts_fixture.h"
#include "support/alerts.h"

#include <gmock/gmock.h>
#include <iterator>

namespace memdata::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

// The wording of a message.

TEST_F(Alerts, AnErrorHasSeverityToolAndNumberAheadAndABlankLineAround) {
    CapturedAlerts alerts;
    print_unexpected_x();
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:11 - Unexpected symbol 'x', 'y' expected.\n\n");
}

TEST_F(Alerts, AnInfoSaysSo) {
    CapturedAlerts alerts;
    PrintInfo(kERROR_MESSAGE_STRING, "all is well");
    EXPECT_EQ(alerts.text(), "\nINFO:Lanefill:86 - all is well\n\n");
}

TEST_F(Alerts, AWarningSaysSo) {
    CapturedAlerts alerts;
    PrintWarning(kERROR_MISSING_FILE_EXTENSION, 0, "code");
    EXPECT_EQ(alerts.text(), "\nWARNING:Lanefill:36 - Missing file extension on file name 'code'.\n\n");
}

TEST_F(Alerts, AStatusHasNoPrefix) {
    CapturedAlerts alerts(kALL_ALERTS);
    PrintStatus(kERROR_MESSAGE_STRING, "half way");
    EXPECT_EQ(alerts.text(), "\nhalf way\n\n");
}

TEST_F(Alerts, AnInternalErrorNamesTheSourceLine) {
    CapturedAlerts alerts;
    _PrintInternalError("lanes.cpp", 77, kERROR_MESSAGE_STRING, 3, "no lane");
    EXPECT_EQ(alerts.text(), "\nINTERNAL_ERROR:Lanefill:86 - no lane\n"
                             "    Source file \"lanes.cpp\", line number 77.\n\n");
}

TEST_F(Alerts, AFatalErrorNamesTheSourceLine) {
    CapturedAlerts alerts;
    _PrintFatalError("memory.cpp", 9, kFATAL_RELEASE_OF_NIL_POINTER, 0);
    EXPECT_EQ(alerts.text(), "\nFATAL:Lanefill:42 - Release of NIL pointer.\n"
                             "    Source file \"memory.cpp\", line number 9.\n\n");
}

TEST_F(Alerts, ADebugTextHasNoNumberAndNamesTheSourceLine) {
    CapturedAlerts alerts(kALL_ALERTS);
    EXPECT_EQ(_PrintDebug("lanes.cpp", 5, "lane %ld of %s", 2, "ram"), 0);
    EXPECT_EQ(alerts.text(), "\nDEBUG:Lanefill - lane 2 of ram\n"
                             "    Source file \"lanes.cpp\", line number 5.\n\n");
}

TEST_F(Alerts, TheMacrosGiveTheFileRelativeToTheTreeAndTheLine) {
    CapturedAlerts alerts(kALL_ALERTS);
    PrintDebug("here");
    EXPECT_EQ(alerts.text(), "\nDEBUG:Lanefill - here\n"
                             "    Source file \"tests/lanefillutil/common/SystemUtils/alerts_test.cpp\", line number " +
                                 std::to_string(__LINE__ - 3) + ".\n\n");
}

TEST_F(Alerts, OtherSeveritiesDoNotNameTheSourceLine) {
    for (const u32 severity : {kSTATUS_ALERT, kINFO_ALERT, kWARNING_ALERT, kERROR_ALERT}) {
        const std::string text = CreateAlertMsg({nullptr, nullptr, "lanes.cpp", 5}, severity, 86, "text", {});
        EXPECT_THAT(text, ::testing::Not(HasSubstr("Source file"))) << severity;
    }
}

TEST_F(Alerts, NumberZeroPrintsNoNumber) {
    CapturedAlerts alerts;
    PrintError(Alert_message_type{0, "plain %s"}, 1, "text");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill - plain text\n\n");
}

TEST_F(Alerts, TheNullMessageIsAPrefixOnly) {
    CapturedAlerts alerts;
    EXPECT_EQ(PrintError(kNULL_MESSAGE, 5), 5);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill - \n\n");
}

TEST_F(Alerts, ANullFormatIsAPrefixOnly) {
    CapturedAlerts alerts(kALL_ALERTS);
    EXPECT_EQ(_PrintDebug("a.cpp", 1, nullptr), 0);
    EXPECT_THAT(alerts.text(), StartsWith("\nDEBUG:Lanefill - \n"));
}

TEST_F(Alerts, TheNewlineOfATextLeavesAnEmptyLine) {
    CapturedAlerts alerts;
    PrintError(kERROR_SEGMENT_EXCEEDED_ADDRESSING, 2, u64{0xFFFFFFF0});
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:32 - Data segment starting at 0xFFFFFFF0, has exceeded 0xFFFFFFFF "
                             "addressing boundary.\n\n\n");
}

TEST_F(Alerts, ContinuationLinesStandAsTheyAreInTheText) {
    CapturedAlerts alerts;
    PrintError(kERROR_BIT_LANE_GAP, 17, "ram", "a", 15, 8, "b", 3, 0);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:18 - Bit lane GAP in ADDRESS_SPACE 'ram'.\n"
                             "    'a [15:8]'\n"
                             "    'b [3:0]'\n\n");
}

TEST_F(Alerts, ThePrefixNamesTheRegisteredTool) {
    RegisterSystemToolName("Other tool");
    CapturedAlerts alerts;
    print_unexpected_x();
    EXPECT_THAT(alerts.text(), StartsWith("\nERROR:Other tool:11 - "));
}

TEST_F(Alerts, AnArgumentWithAPercentSignOrABackslashPrintsAsItStands) {
    CapturedAlerts alerts;
    PrintError(kERROR_EMPTY_FILE_NAME, 1, "100%s\\n");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:55 - A null file name was given for a '100%s\\n' file.\n\n");
}

TEST_F(Alerts, TheTextsOfLineAndFileEndsAreNamed) {
    EXPECT_EQ(CreateWrappedAlertMsg(kSTATUS_ALERT, 11, "'%s' '%s' '%s'", formatArguments("\n", "\xFF", "a\n")),
        "'end-of-line' 'end-of-file' 'a\n'\n");
}

TEST_F(Alerts, ATextLongerThanAnyFileNameIsCut) {
    CapturedAlerts alerts;
    const std::string whole(4096, 'x');
    PrintError(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, 14, whole, "y");
    EXPECT_THAT(alerts.take(), HasSubstr("'" + whole + "'"));
    PrintError(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, 14, whole + "x", "y");
    EXPECT_EQ(
        alerts.take(), "\nERROR:Lanefill:11 - Unexpected symbol '" + whole.substr(0, 200) + "...', 'y' expected.\n\n");
    const std::string wide = std::string(199, 'x') + "\xC3\xA9" + whole; // a character across the cut
    PrintError(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, 14, wide, "y");
    EXPECT_THAT(alerts.take(), HasSubstr("'" + wide.substr(0, 199) + "...'"));
}

TEST_F(Alerts, ATextThatWasMadeUpForTheAlertIsNotCut) {
    CapturedAlerts alerts;
    const std::string text(5000, 'x');
    PrintError(kERROR_MESSAGE_STRING, 1, text);
    EXPECT_THAT(alerts.take(), HasSubstr(text));
}

TEST_F(Alerts, ANullTextArgumentPrintsAsNull) {
    CapturedAlerts alerts;
    PrintError(kERROR_EMPTY_FILE_NAME, 1, nullptr);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:55 - A null file name was given for a '(null)' file.\n\n");
}

TEST_F(Alerts, EveryMessageRendersWithoutItsArguments) {
    for (const NamedAlertMessage& message : kALERT_MESSAGES) {
        const std::string text = CreateWrappedAlertMsg(kERROR_ALERT, message.number, message.text, {});
        EXPECT_THAT(text, ::testing::Not(HasSubstr("%"))) << message.name;
        EXPECT_THAT(text, EndsWith("\n")) << message.name;
    }
}

TEST_F(Alerts, SeverityNamesAreIndexedByBitPositionPlusOne) {
    const char* const kNAMES[] = {"NONE", "STATUS", "INFO", "WARNING", "ERROR", "INTERNAL_ERROR", "FATAL", "DEBUG"};
    ASSERT_EQ(std::size(alert_names), std::size(kNAMES));
    for (size_t i = 0; i < std::size(kNAMES); ++i) EXPECT_STREQ(alert_names[i], kNAMES[i]);
}

// The status and the mask.

TEST_F(Alerts, EveryPrintFunctionReturnsItsStatus) {
    CapturedAlerts alerts(kALL_ALERTS);
    EXPECT_EQ(PrintStatus(kERROR_MESSAGE_STRING, "x"), 0);
    EXPECT_EQ(PrintInfo(kERROR_MESSAGE_STRING, "x"), 0);
    EXPECT_EQ(PrintWarning(kERROR_MESSAGE_STRING, 12, "x"), 12);
    EXPECT_EQ(PrintError(kERROR_MESSAGE_STRING, -2, "x"), -2);
    EXPECT_EQ(PrintWarningLocation(nullptr, kERROR_MESSAGE_STRING, 13, nullptr, "x"), 13);
    EXPECT_EQ(PrintErrorLocation(nullptr, kERROR_MESSAGE_STRING, 14, nullptr, "x"), 14);
    EXPECT_EQ(_PrintInternalError("a.cpp", 1, kERROR_MESSAGE_STRING, 15, "x"), 15);
    EXPECT_EQ(_PrintFatalError("a.cpp", 1, kERROR_MESSAGE_STRING, 16, "x"), 16);
    EXPECT_EQ(_PrintDebug("a.cpp", 1, "x"), 0);
    EXPECT_EQ(count_of("x\n", alerts.text()), 9u);
}

TEST_F(Alerts, AMaskedSeverityPrintsNothingAndStillReturnsItsStatus) {
    CapturedAlerts alerts(kALL_ALERTS & ~kERROR_ALERT);
    EXPECT_EQ(print_unexpected_x(), 14);
    EXPECT_EQ(PrintErrorLocation(nullptr, kERROR_MESSAGE_STRING, 21, nullptr, "x"), 21);
    EXPECT_EQ(alerts.text(), "");
    PrintWarning(kERROR_MESSAGE_STRING, 0, "still heard");
    EXPECT_EQ(alerts.text(), "\nWARNING:Lanefill:86 - still heard\n\n");
}

TEST_F(Alerts, EachSeverityIsMaskedByItsOwnBit) {
    for (u32 bit = 1; bit <= kDEBUG_ALERT; bit <<= 1) {
        CapturedAlerts alerts(bit);
        for (u32 severity = 1; severity <= kDEBUG_ALERT; severity <<= 1)
            EXPECT_EQ(PrintAlert({}, severity, 1, "text", 9, {}), 9);
        EXPECT_EQ(alerts.text(), CreateAlertMsg({}, bit, 1, "text", {})) << bit;
    }
}

TEST_F(Alerts, AllButStatusAndDebugArePrintedFromTheStart) {
    EXPECT_EQ(SavePrintAlerts(), 62u);
    EXPECT_EQ(gEnablePrintAlerts, 62u);
}

TEST_F(Alerts, EnablingGivesTheOldMaskBack) {
    EXPECT_EQ(EnablePrintAlerts(8), 62u);
    EXPECT_EQ(SavePrintAlerts(), 8u);
    EXPECT_EQ(EnablePrintAlerts(62), 8u);
}

TEST_F(Alerts, PrintingTakesNoTrackedMemory) {
    CapturedAlerts alerts(kALL_ALERTS);
    const u64 before = trackedAllocationCount();
    print_unexpected_x();
    PrintDebug("%s %ld %f", "text", 5, 0.5);
    EXPECT_EQ(trackedAllocationCount(), before);
}

TEST_F(Alerts, AnExhaustedAllocatorIsReportedOnce) {
    CapturedAlerts alerts;
    const u64 inUse = getCurrentMemoryUsage();
    failTrackedAllocation(1);
    EXPECT_EQ(_getMemory("lanes.cpp", 12, "a lane", 100), nullptr);
    EXPECT_THAT(
        alerts.text(), StartsWith("\nFATAL:Lanefill:44 - Out of memory allocating 'getMemory' object of 100 bytes.\n"
                                  "    Total memory already in use is " +
                                  std::to_string(inUse) + " bytes.\n"));
    EXPECT_EQ(count_of("FATAL", alerts.text()), 1u);
}

// The registry.

TEST_F(Alerts, TheRegistryIsEmptyWithOneEntry) {
    EXPECT_EQ(gAlertMessageArray, nullptr);
    ASSERT_NE(gAlertMessageLookupArray, nullptr);
    EXPECT_EQ(gAlertMessageLookupArray[0], nullptr);
}

TEST(AlertRegistry, ShutDownTakesTheTableAway) {
    { const SystemResources resources; }
    EXPECT_EQ(gAlertMessageLookupArray, nullptr);
    EXPECT_EQ(getCurrentMemoryUsage(), 0u);
}

TEST(AlertRegistry, ShutDownPutsTheMaskBack) {
    {
        const SystemResources resources;
        EnablePrintAlerts(0);
    }
    EXPECT_EQ(SavePrintAlerts(), 62u);
}

// A registry that holds messages for as long as this lives. Made ahead of the engine's start.
struct FilledRegistry {
    explicit FilledRegistry(const Alert_message_type* const* messages) { gAlertMessageArray = messages; }
    ~FilledRegistry() { gAlertMessageArray = nullptr; }
    FilledRegistry& operator=(FilledRegistry&&) = delete; // neither copied nor moved
};

TEST(AlertRegistry, MessagesAreEnteredByNumber) {
    const Alert_message_type* const kMESSAGES[] = {&kERROR_CREATING_FILE, &kERROR_OPENING_FILE, nullptr};
    const FilledRegistry registry(kMESSAGES);
    const SystemResources resources;
    ASSERT_NE(gAlertMessageLookupArray, nullptr);
    EXPECT_EQ(gAlertMessageLookupArray[0], nullptr);
    EXPECT_EQ(gAlertMessageLookupArray[1], &kERROR_OPENING_FILE);
    EXPECT_EQ(gAlertMessageLookupArray[2], &kERROR_CREATING_FILE);
}

TEST(AlertRegistry, ANumberThatIsTakenIsReportedAndKeepsItsFirstMessage) {
    constexpr Alert_message_type kFIRST{3, "first"};
    constexpr Alert_message_type kSECOND{3, "second"};
    const Alert_message_type* const kMESSAGES[] = {&kFIRST, &kSECOND, nullptr};
    const SystemResources resources;
    RegisterSystemToolName("Lanefill");
    const FilledRegistry registry(kMESSAGES);

    CapturedAlerts alerts;
    InitializeSystemAlertMessages();
    EXPECT_EQ(alerts.text(), "INTERNAL_ERROR:Lanefill:0 - Message number overloaded, '3'.\n");
    EXPECT_EQ(gAlertMessageLookupArray[3], &kFIRST);
}

} // namespace
} // namespace memdata::testing

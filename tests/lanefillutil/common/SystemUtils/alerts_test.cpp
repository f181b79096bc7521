// alerts_test.cpp - what an alert says and where it goes: prefix, place, caret, mask, log.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/alerts.h"

#include "FileUtils/journal.h"
#include "FileUtils/opening.h"
#include "ListingUtils/ListingUtils.h"
#include "SystemUtils/alert_location.h"
#include "SystemUtils/alert_registry.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "support/alerts.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <iterator>

namespace {

using memdata::AlertLevel;
using memdata::kLONGEST_WHOLE_LINE;
using memdata::locationText;
using memdata::SystemResources;
using memdata::testing::CapturedAlerts;
using memdata::testing::readFile;
using memdata::testing::TemporaryFolder;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr u32 kALL_ALERTS = 127;
constexpr const char* kUNEXPECTED_X = "\nERROR:Lanefill:11 - Unexpected symbol 'x', 'y' expected.\n\n";

int print_unexpected_x() {
    return PrintError(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, 14, "x", "y");
}

size_t count_of(const std::string& part, const std::string& text) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

// An engine lifetime, and a tool name that does not outlive its test.
class Alerts : public ::testing::Test {
protected:
    Alerts() { RegisterSystemToolName("Lanefill"); }
    ~Alerts() override { RegisterSystemToolName(oldToolName_.c_str()); }

private:
    SystemResources resources_;
    std::string oldToolName_ = GetSystemToolName();
};

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
    EXPECT_EQ(CreateWrappedAlertMsg(kSTATUS_ALERT, 11, "'%s' '%s' '%s'", memdata::formatArguments("\n", "\xFF", "a\n")),
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
    for (const memdata::NamedAlertMessage& message : memdata::kALERT_MESSAGES) {
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
    const u64 before = memdata::trackedAllocationCount();
    print_unexpected_x();
    PrintDebug("%s %ld %f", "text", 5, 0.5);
    EXPECT_EQ(memdata::trackedAllocationCount(), before);
}

TEST_F(Alerts, AnExhaustedAllocatorIsReportedOnce) {
    CapturedAlerts alerts;
    const u64 inUse = getCurrentMemoryUsage();
    memdata::failTrackedAllocation(1);
    EXPECT_EQ(_getMemory("lanes.cpp", 12, "a lane", 100), nullptr);
    EXPECT_THAT(
        alerts.text(), StartsWith("\nFATAL:Lanefill:44 - Out of memory allocating 'getMemory' object of 100 bytes.\n"
                                  "    Total memory already in use is " +
                                  std::to_string(inUse) + " bytes.\n"));
    EXPECT_EQ(count_of("FATAL", alerts.text()), 1u);
}

// The log.

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

// The place.

TEST(AlertLocation, ATokenOfAFileGivesFileLineSourceLineAndCaret) {
    const char* line = "  BUS_BLOK\n";
    const AlertLevel levels[] = {{AlertLevel::kDISK_FILE, "map.bmm", 12, line, line + 2}};
    EXPECT_EQ(locationText(levels), "   Line #12, File \"map.bmm\".\n"
                                    "  BUS_BLOK\n"
                                    "  ^\n");
}

TEST(AlertLocation, AMacroGivesItsNameAndTheSourceLineOfItsBody) {
    const char* body = "a + )";
    const AlertLevel levels[] = {{AlertLevel::kMACRO, "SIZE", 1, body, body + 4}};
    EXPECT_EQ(locationText(levels), "   Line #1, Macro \"SIZE\".\n"
                                    "a + )\n"
                                    "    ^\n");
}

TEST(AlertLocation, ATextInMemoryGivesNoLocationLine) {
    const char* text = "-bm x.bmm -zz";
    const AlertLevel levels[] = {{AlertLevel::kMEMORY_TEXT, "cmdString", 1, text, text + 10}};
    EXPECT_EQ(locationText(levels), "-bm x.bmm -zz\n"
                                    "          ^\n");
}

TEST(AlertLocation, OuterLevelsGiveTheirLocationLineOnly) {
    const char* body = "1 / 0";
    const char* call = "#if HALF";
    const char* include = "#include \"sizes.h\"";
    const AlertLevel levels[] = {
        {AlertLevel::kMACRO, "HALF", 1, body, body + 4},
        {AlertLevel::kDISK_FILE, "sizes.h", 7, call, call + 4},
        {AlertLevel::kDISK_FILE, "map.bmm", 3, include, include},
    };
    EXPECT_EQ(locationText(levels), "   Line #1, Macro \"HALF\".\n"
                                    "1 / 0\n"
                                    "    ^\n"
                                    "   Line #7, File \"sizes.h\".\n"
                                    "   Line #3, File \"map.bmm\".\n");
}

TEST(AlertLocation, ARescannedTextShowsItsSourceLineAndTheFileAroundIt) {
    const char* text = "0x";
    const AlertLevel levels[] = {
        {AlertLevel::kMEMORY_TEXT, "rescan", 1, text, text},
        {AlertLevel::kDISK_FILE, "map.bmm", 3, "line", nullptr},
    };
    EXPECT_EQ(locationText(levels), "0x\n"
                                    "^\n"
                                    "   Line #3, File \"map.bmm\".\n");
}

TEST(AlertLocation, NoLevelGivesNothing) {
    EXPECT_EQ(locationText({}), "");
}

TEST(AlertLocation, ALevelWithoutALineGivesItsLocationLineOnly) {
    const AlertLevel levels[] = {{AlertLevel::kDISK_FILE, "map.bmm", 1, nullptr, nullptr}};
    EXPECT_EQ(locationText(levels), "   Line #1, File \"map.bmm\".\n");
}

TEST(AlertLocation, WithoutStreamOrTokenThereIsNone) {
    EXPECT_EQ(CreateFileLocations(nullptr, nullptr), "");
}

std::string error_location(const char* line, size_t position) {
    std::string out;
    CreateErrorLocation(&out, line, line + position);
    return out;
}

TEST(AlertLocation, PositionZeroIsMarkedWithoutBlanks) {
    EXPECT_EQ(error_location("word", 0), "word\n^\n");
}

TEST(AlertLocation, ATabAheadMovesTheCaretByEight) {
    EXPECT_EQ(error_location("\tx = y", 3), "        x = y\n"
                                            "          ^\n");
}

TEST(AlertLocation, ATabMovesByEightWhereverItStands) {
    EXPECT_EQ(error_location("ab\tcd", 3), "ab        cd\n"
                                           "          ^\n");
}

TEST(AlertLocation, ATabBehindTheTokenLeavesTheCaret) {
    EXPECT_EQ(error_location("a\tb", 0), "a        b\n"
                                         "^\n");
}

TEST(AlertLocation, TheLineEndsAtEveryKindOfEnd) {
    using namespace std::string_literals;
    for (const std::string& end : {"\0"s, "\xFF"s, "\n"s, "\r"s, "\r\n"s, "\n\r"s})
        EXPECT_EQ(error_location(("line" + end + "next").c_str(), 1), "line\n ^\n");
}

TEST(AlertLocation, AnErrorAtTheEndOfTheFileShowsNoLine) {
    EXPECT_EQ(error_location("text\xFF", 4), "");
}

TEST(AlertLocation, AnErrorAtTheEndOfALineIsMarkedBehindIt) {
    EXPECT_EQ(error_location("text\nnext", 4), "text\n    ^\n");
}

TEST(AlertLocation, APositionOnALaterLineIsMarkedAtTheEndOfThisOne) {
    EXPECT_EQ(error_location("text\nnext", 7), "text\n    ^\n");
}

TEST(AlertLocation, APositionAheadOfTheLineIsMarkedAtItsStart) {
    const char* text = "one two";
    std::string out;
    CreateErrorLocation(&out, text + 4, text);
    EXPECT_EQ(out, "two\n^\n");
}

TEST(AlertLocation, AnEmptyLineHasACaretOnly) {
    EXPECT_EQ(error_location("", 0), "\n^\n");
}

// A line without repetitions in reach of a window, so that what is shown tells where it stands.
std::string long_line(size_t length) {
    std::string line;
    while (line.size() < length) line += std::to_string(line.size()) + " ";
    line.resize(length);
    return line;
}

std::string blanks(size_t count) {
    return std::string(count, ' ');
}

TEST(AlertLocation, TheLongestWholeLineIsShownWhole) {
    const std::string line = long_line(kLONGEST_WHOLE_LINE);
    EXPECT_EQ(error_location(line.c_str(), 500), line + "\n" + blanks(500) + "^\n");
    EXPECT_EQ(error_location(line.c_str(), line.size()), line + "\n" + blanks(line.size()) + "^\n");
}

TEST(AlertLocation, ALongerLineIsCutAtBothSidesOfTheCaret) {
    const std::string line = long_line(kLONGEST_WHOLE_LINE + 1);
    EXPECT_EQ(error_location(line.c_str(), 500), "..." + line.substr(400, 200) + "...\n" + blanks(3 + 100) + "^\n");
}

TEST(AlertLocation, ALongLineIsNotCutWhereItsStartOrItsEndIsNear) {
    const std::string line = long_line(5000);
    const std::string head = line.substr(0, 200) + "...\n";
    EXPECT_EQ(error_location(line.c_str(), 0), head + "^\n");
    EXPECT_EQ(error_location(line.c_str(), 100), head + blanks(100) + "^\n");
    EXPECT_EQ(error_location(line.c_str(), 101), "..." + line.substr(1, 200) + "...\n" + blanks(3 + 100) + "^\n");

    const std::string tail = "..." + line.substr(4800) + "\n";
    EXPECT_EQ(error_location(line.c_str(), 4899), "..." + line.substr(4799, 200) + "...\n" + blanks(3 + 100) + "^\n");
    EXPECT_EQ(error_location(line.c_str(), 4900), tail + blanks(3 + 100) + "^\n");
    EXPECT_EQ(error_location(line.c_str(), 5000), tail + blanks(3 + 200) + "^\n");
}

TEST(AlertLocation, APositionOutsideOfALongLineIsMarkedAtItsNearEnd) {
    const std::string line = long_line(2000);
    const std::string text = "ahead\n" + line + "\nbehind";
    std::string out;
    CreateErrorLocation(&out, text.c_str() + 6, text.c_str());
    EXPECT_EQ(out, line.substr(0, 200) + "...\n^\n");
    out.clear();
    CreateErrorLocation(&out, text.c_str() + 6, text.c_str() + text.size() - 1);
    EXPECT_EQ(out, "..." + line.substr(1800) + "\n" + blanks(3 + 200) + "^\n");
}

TEST(AlertLocation, TabsInAWindowAreEightBlanks) {
    std::string line = long_line(2000);
    line[990] = line[1010] = '\t';
    EXPECT_EQ(error_location(line.c_str(), 1000), "..." + line.substr(900, 90) + blanks(8) + line.substr(991, 19) +
                                                      blanks(8) + line.substr(1011, 89) + "...\n" +
                                                      blanks(3 + 100 + 7) + "^\n");
}

TEST(AlertLocation, TheTextIsAppended) {
    std::string out = "ahead\n";
    CreateErrorLocation(&out, "x", "x");
    const char* line = "  x";
    CreateErrorIndicator(&out, line, line + 2);
    EXPECT_THAT(out, StartsWith("ahead\nx\n"));
    EXPECT_THAT(out, EndsWith("  ^\n"));
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

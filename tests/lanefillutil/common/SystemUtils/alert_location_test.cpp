// alert_location_test.cpp - the place that an alert shows: files and macros around it, the source line and its caret.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/alert_location.h"

#include <gmock/gmock.h>

namespace memdata {
namespace {

using ::testing::EndsWith;
using ::testing::StartsWith;

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

} // namespace
} // namespace memdata

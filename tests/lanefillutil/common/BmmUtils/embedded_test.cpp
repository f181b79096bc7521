// embedded_test.cpp - numbers and locations inside a text.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/embedded.h"

#include "map_text.h"
#include "support/parse.h"

using namespace memdata;
using namespace memdata::testing;

namespace {

struct NumberCase {
    const char* text;
    long double value; // -1 for no number
    const char* rest;
};

constexpr NumberCase kNUMBERS[] = {
    {"7", 7, ""},
    {" 12 ", 12, ""},
    {"1+2*3", 9, ""}, // strictly from left to right
    {"10-2-3", 5, ""},
    {"7/2", 3.5L, ""},
    {"4 * 8 - 1Y", 31, "Y"},
    {"", -1, ""},
    {"x", -1, "x"},
    {"3+", -1, ""},
    {"18446744073709551615", 18446744073709551615.0L, ""},
};

TEST(EmbeddedNumbers, FoldFromLeftToRight) {
    for (const NumberCase& c : kNUMBERS) {
        const char* cursor = c.text;
        long double value = -1;
        EXPECT_EQ(parse_embedded_number(&cursor, &value), c.value >= 0) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
        EXPECT_STREQ(cursor, c.rest) << c.text;
    }
}

TEST(EmbeddedNumbers, ARangeIsOneNumberOrTwo) {
    u64 first = 0;
    u64 second = 0;
    EXPECT_EQ(parse_embedded_number_range(nullptr, nullptr, "7:0", &first, &second), 0);
    EXPECT_EQ(first, 7u);
    EXPECT_EQ(second, 0u);
    EXPECT_EQ(parse_embedded_number_range(nullptr, nullptr, "16*2 - 1", &first, &second), 0);
    EXPECT_EQ(first, 31u);
    EXPECT_EQ(second, 31u);
    for (const char* text : {"", ":", "7:", "7:0:1", "7;0", "a"})
        EXPECT_EQ(parse_embedded_number_range(nullptr, nullptr, text, &first, &second), 3) << text;
    EXPECT_EQ(parse_embedded_number_range(nullptr, nullptr, nullptr, &first, &second), 3);
}

TEST(EmbeddedNumbers, ARangeThatIsNoneIsToldWhereAStreamIsGiven) {
    const SystemResources resources;
    RegisterSystemToolName("Lanefill");
    TextReader reader("  here", &bmm_keyword_set, "map.bmm");
    reader.next();
    CapturedAlerts alerts;
    const auto said = [&](const char* text) {
        u64 first = 0;
        u64 second = 0;
        EXPECT_EQ(parse_embedded_number_range(reader, reader.token(), text, &first, &second), 3);
        return alerts.take();
    };
    EXPECT_EQ(
        said("x"), alertAt("6 - Illegal token 'x', 'invalid starting expression token' expected.", 1, "  here", 2));
    EXPECT_EQ(
        said("7:x"), alertAt("6 - Illegal token '7:x', 'invalid ending expression token' expected.", 1, "  here", 2));
    EXPECT_EQ(said("7;0"), alertAt("6 - Illegal token '7;0', 'range separator ':'' expected.", 1, "  here", 2));
}

struct LocationCase {
    const char* text;
    int status;
    unsigned row;
    unsigned column;
};

constexpr LocationCase kLOCATIONS[] = {
    {"X3Y7", 0, 7, 3},
    {"R7C3", 0, 7, 3},
    {"r1c0", 0, 1, 0},
    {"x0y1", 0, 1, 0},
    {"X1+2Y7", 0, 7, 3},
    {"", 3, 9, 9},
    {"Y7X3", 3, 9, 9},
    {"X3", 3, 9, 9},
    {"X3C7", 3, 9, 9},
    {"R3Y7", 3, 9, 9},
    {"XY", 3, 9, 9},
    {"X3Y", 3, 9, 9},
    {"X3Y7Z", 3, 9, 9},
    {"X4294967296Y0", 3, 9, 9},
    {"X1/0Y0", 3, 9, 9},
    {"X1-2Y0", 3, 9, 9},
};

TEST(Locations, RowAndColumnComeInTwoSpellings) {
    for (const LocationCase& c : kLOCATIONS) {
        unsigned row = 9;
        unsigned column = 9;
        EXPECT_EQ(parse_BRAM_location_string(nullptr, nullptr, c.text, &row, &column), c.status) << c.text;
        EXPECT_EQ(row, c.row) << c.text;
        EXPECT_EQ(column, c.column) << c.text;
    }
}

TEST(Locations, AnEmbeddedOneIsAnySequenceOfXAndY) {
    unsigned row = 9;
    unsigned column = 9;
    EXPECT_EQ(parse_embedded_location_string(nullptr, nullptr, "y5x2", &row, &column), 0);
    EXPECT_EQ(row, 5u);
    EXPECT_EQ(column, 2u);
    EXPECT_EQ(parse_embedded_location_string(nullptr, nullptr, "X1X4", &row, &column), 0);
    EXPECT_EQ(row, 5u);
    EXPECT_EQ(column, 4u);
    for (const char* text : {"", "R1C2", "X", "X1Z"})
        EXPECT_EQ(parse_embedded_location_string(nullptr, nullptr, text, &row, &column), 3) << text;
}

class LocationAlerts : public ::testing::Test {
protected:
    LocationAlerts() { RegisterSystemToolName("Lanefill"); }

    // What is said about a text that stands as the first word of a line.
    std::string said(int (*parse)(parse_stream*, const token_element*, const char*, unsigned*, unsigned*)) {
        TextReader reader("X3", nullptr, "map.bmm");
        reader.next();
        CapturedAlerts alerts;
        unsigned row = 0;
        unsigned column = 0;
        EXPECT_EQ(parse(reader, reader.token(), text_, &row, &column), 3);
        return alerts.text();
    }

    SystemResources resources_;
    const char* text_ = "";
};

TEST_F(LocationAlerts, TellWhichLetterOrNumberIsMissing) {
    text_ = "Q3";
    EXPECT_EQ(said(parse_BRAM_location_string), alertAt("11 - Unexpected symbol 'Q3', 'R or X' expected.", 1, "X3", 0));
    text_ = "X3";
    EXPECT_EQ(said(parse_BRAM_location_string), alertAt("11 - Unexpected symbol 'X3', 'C or Y' expected.", 1, "X3", 0));
    text_ = "XY";
    EXPECT_EQ(said(parse_BRAM_location_string),
        alertAt("6 - Illegal token 'XY', 'numeric BRAM LOC value' expected.", 1, "X3", 0));
    text_ = "R1C2";
    EXPECT_EQ(said(parse_embedded_location_string),
        alertAt("11 - Unexpected symbol 'R1C2', 'LOC indicator X or Y' expected.", 1, "X3", 0));
}

} // namespace

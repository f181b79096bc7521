// stream_places_test.cpp - moving in a text, and the limits of texts in texts.
// SPDX-License-Identifier: Apache-2.0
#include "streams_test.h"

namespace memdata::testing {
namespace {

class StreamPlaces : public StreamTest {};

TEST_F(StreamPlaces, MovingBackReadsAgain) {
    TextReader text("a b\nc d\ne");
    while (text.next() != "IDENTIFIER_TOKEN(b)") {
    }
    const u64 place = get_stream_position(text);
    const u32 line = get_stream_line_number(text);
    EXPECT_EQ(place, 3u);
    text.all();
    set_stream_position(text, place);
    set_stream_line_number(text, line);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(c)");
    EXPECT_EQ(text.token()->lineNumber, 2u);
}

TEST_F(StreamPlaces, MovingIntoALineFindsItsStart) {
    TextReader text("a b\ncd e");
    set_stream_position(text, 6);
    text.next();
    EXPECT_EQ(text.token()->sourcePosition - text.token()->lineStart, 3);
    EXPECT_EQ(text.token()->lineStart[0], 'c');
}

TEST_F(StreamPlaces, MovingInAVeryLongLineDoesNotLookForItsStart) {
    std::string line(4000, ' ');
    line += 'a';
    TextReader text(line);
    set_stream_position(text, 4000);
    text.next();
    EXPECT_EQ(text.token()->sourcePosition - text.token()->lineStart, 1024);
}

TEST_F(StreamPlaces, MovingBehindTheEndIsTheEnd) {
    TextReader text("a b");
    set_stream_position(text, 1000);
    EXPECT_EQ(get_stream_position(text), 3u);
    EXPECT_EQ(text.next(), "END_OF_FILE(\\xFF)");
}

// Limits

TEST_F(StreamPlaces, FilesNestUpToTheLimit) {
    TextReader text("a");
    text.next();
    for (u32 i = 0; i < kMAX_INCLUDE_DEPTH; ++i) ASSERT_EQ(pushText(text, "b"), 0) << i;
    CapturedAlerts alerts;
    text.next();
    EXPECT_EQ(pushText(text, "c"), 21);
    EXPECT_EQ(alerts.text(),
        "\nERROR:Lanefill - File 'm' can not be included, the limit of 200 nested files is reached.\n"
        "b\n^\n   Line #1, File \"text.bmm\".\n\n");
    pop_parse_stream(text);
    EXPECT_EQ(pushText(text, "d"), 0);
}

TEST_F(StreamPlaces, ExpansionsNestUpToTheLimit) {
    TextReader text("a");
    text.next();
    for (u32 i = 0; i < kMAX_EXPANSION_DEPTH; ++i)
        ASSERT_EQ(pushText(text, "b", i % 2 == 0 ? kCONTEXT_MACRO_BODY : kCONTEXT_RESCAN), 0) << i;
    CapturedAlerts alerts;
    text.next();
    EXPECT_EQ(pushText(text, "c", kCONTEXT_MACRO_BODY), 21);
    EXPECT_EQ(alerts.text().substr(0, alerts.text().find("b\n")),
        "\nERROR:Lanefill - Macro 'm' can not be expanded, the limit of 1000 nested expansions is reached.\n");
}

TEST_F(StreamPlaces, MacroTextIsCountedUpToTheLimit) {
    const std::string body(u64{1} << 20, ' ');
    TextReader text("a");
    for (u64 i = 0; i < kMAX_PUSHED_BYTES >> 20; ++i) {
        ASSERT_EQ(push_parse_MemoryFile_stream(
                      "m", body.data(), body.size(), text, kCONTEXT_MACRO_BODY, nullptr, nullptr, nullptr),
            0);
        pop_parse_stream(text);
    }
    EXPECT_EQ(pushText(text, "", kCONTEXT_MACRO_BODY), 0);
    text.next();
    CapturedAlerts alerts;
    EXPECT_EQ(pushText(text, "b", kCONTEXT_RESCAN), 21);
    EXPECT_EQ(alerts.text(),
        "\nERROR:Lanefill - Macro 'm' can not be expanded, the limit of 134217728 bytes of macro text is reached.\n"
        "   Line #1, File \"text.bmm\".\na\n^\n\n");
}

} // namespace
} // namespace memdata::testing

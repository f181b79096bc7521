// disk_streams_test.cpp - streams over files on disk.
// SPDX-License-Identifier: Apache-2.0
#include "streams_test.h"

#include "StringUtils/StringUtils.h"
#include "support/temporary_folder.h"

namespace memdata::testing {
namespace {

class DiskStreams : public StreamTest {
protected:
    int open(const std::string& name, const char* extension = "bmm", parse_stream* parent = nullptr) {
        OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        return open_parse_DiskFile(spec.get(), extension, nullptr, nullptr, parent, &stream_);
    }
    std::string all() {
        TokenOwner token(get_token_element());
        std::string text;
        while (get_next_token(stream_, token.get()) == 0 && token->type != &kEND_OF_FILE) text += token->text;
        return text;
    }
    ~DiskStreams() override { close_parse_stream(&stream_); }

    TemporaryFolder folder_;
    parse_stream* stream_ = nullptr;
};

TEST_F(DiskStreams, AFileIsRead) {
    EXPECT_EQ(open(folder_.write("a.bmm", "x y\r\nz")), 0);
    EXPECT_EQ(get_stream_size(stream_), 6u);
    EXPECT_EQ(all(), "xyz");
}

TEST_F(DiskStreams, TheDefaultExtensionIsForNamesWithoutOne) {
    folder_.write("a.bmm", "x");
    const std::string other = folder_.write("a.txt", "y");
    EXPECT_EQ(open(folder_.file("a")), 0);
    EXPECT_EQ(all(), "x");
    close_parse_stream(&stream_);
    EXPECT_EQ(open(other), 0);
    EXPECT_EQ(all(), "y");
}

TEST_F(DiskStreams, APlusAheadOfTheExtensionIsPassedOver) {
    folder_.write("a.h", "x");
    EXPECT_EQ(open(folder_.file("a"), "+h"), 0);
}

TEST_F(DiskStreams, AnEmptyFileGivesAStreamAndStatusSeventeen) {
    EXPECT_EQ(open(folder_.write("a.bmm", "")), 17);
    ASSERT_NE(stream_, nullptr);
    EXPECT_EQ(get_stream_size(stream_), 0u);
    EXPECT_EQ(std::string(get_stream_file_name(stream_)), folder_.file("a.bmm"));
    EXPECT_EQ(all(), "");
}

TEST_F(DiskStreams, AnEmptyNameIsAnAlert) {
    OwnedFileSpec spec(NewFileSpec());
    CapturedAlerts alerts;
    EXPECT_EQ(open_parse_DiskFile(spec.get(), "+h", nullptr, nullptr, nullptr, &stream_), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:55 - A null file name was given for a 'h' file.\n\n");
}

TEST_F(DiskStreams, AMissingFileIsAnAlert) {
    CapturedAlerts alerts;
    EXPECT_EQ(open("/nowhere/a.bmm"), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:1 - File '/nowhere/a.bmm' can not be found, or is busy.\n"
                             "    Please ensure that the file is available in the correct\n"
                             "    directory location, or isn't being locked by another\n"
                             "    application.\n\n");
    EXPECT_EQ(stream_, nullptr);
}

TEST_F(DiskStreams, AMissingFileOfAnotherTextIsReportedAtItsPlace) {
    TextReader text("a\nb c");
    while (text.next() != "IDENTIFIER_TOKEN(b)") {
    }
    CapturedAlerts alerts;
    EXPECT_EQ(open("/nowhere/a.h", "+h", text), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:1 - File '/nowhere/a.h' can not be found, or is busy.\n"
                             "    Please ensure that the file is available in the correct\n"
                             "    directory location, or isn't being locked by another\n"
                             "    application.\n"
                             "   Line #2, File \"text.bmm\".\nb c\n^\n\n");
}

TEST_F(DiskStreams, ACommentThatAnIncludedFileLeavesOpenIsReportedAtItsPlace) {
    TextReader text("a\nb");
    text.next();
    parse_stream* file = nullptr;
    const std::string name = folder_.write("c.h", "c\n d /* e\nf");
    OwnedFileSpec spec(CreateFileSpec(name.c_str()));
    ASSERT_EQ(open_parse_DiskFile(spec.get(), "+h", nullptr, nullptr, text, &file), 0);
    ASSERT_EQ(push_parse_context(file), 0);
    set_context_state(text, kCONTEXT_AUTO_POP, true);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(c)");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(d)");
    CapturedAlerts alerts;
    EXPECT_EQ(text.next(), "status 21");
    EXPECT_EQ(alerts.text(),
        "\n"
        "ERROR:Lanefill:39 - Unmatched nested C style comment. A closing '*/' was expected before the end of the file.\n"
        "   Line #2, File \"" +
            name +
            "\".\n"
            " d /* e\n"
            "   ^\n"
            "   Line #1, File \"text.bmm\".\n"
            "\n");
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(b)");
    EXPECT_EQ(text.close(), 0);
}

TEST_F(DiskStreams, AFolderIsNoFile) {
    TextReader text("a");
    text.next();
    CapturedAlerts alerts;
    EXPECT_EQ(open(folder_.path().string(), "", text), 1);
    EXPECT_NE(alerts.text().find("can not be found, or is busy"), std::string::npos);
}

TEST_F(DiskStreams, DataInTheSpecificationIsReadInstead) {
    OwnedFileSpec spec(CreateFileSpecWithFileData("temp.xml", "<a/>", 4));
    EXPECT_EQ(open_parse_DiskFile(spec.get(), "xml", nullptr, nullptr, nullptr, &stream_), 0);
    EXPECT_EQ(all(), "<a/>");
}

TEST_F(DiskStreams, RegisteredFoldersAreSearched) {
    folder_.write("a.h", "x");
    StrList paths = nullptr;
    StrListExtend(&paths, newString(folder_.path().string() + "/"));
    register_parsing_include_search_paths(paths);
    EXPECT_EQ(open("a.h", "+h"), 0);
    EXPECT_EQ(all(), "x");
    register_parsing_include_search_paths(nullptr);
    StrListDelete(paths);
}

} // namespace
} // namespace memdata::testing

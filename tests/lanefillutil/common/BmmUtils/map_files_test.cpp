// map_files_test.cpp - opening address maps, and the maps that come with the project.
// SPDX-License-Identifier: Apache-2.0
#include "map_text.h"
#include "support/temporary_folder.h"

#include <filesystem>

using namespace memdata;
using namespace memdata::testing;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

const std::filesystem::path kEXAMPLES = std::filesystem::path(MEMDATA_TEST_DATA).parent_path() / "examples" / "maps";

class MapFiles : public ::testing::Test {
protected:
    int open(const std::string& name, const char* rescan = nullptr, const char* root = nullptr) {
        const OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        parse_stream* stream = reinterpret_cast<parse_stream*>(1); // cleared on every way out
        alerts_.take();
        const int status = open_and_parse_bmm_file(spec.get(), map_.get(), root, rescan, nullptr, &stream);
        EXPECT_EQ(stream, nullptr);
        return status;
    }
    int openInfo(const std::string& text) {
        std::string own(text);
        alerts_.take();
        return open_and_parse_bmm_info(reinterpret_cast<unsigned char*>(own.data()), map_.get(), nullptr, nullptr);
    }

    MapText map_;
    CapturedAlerts alerts_;
    TemporaryFolder folder_;
};

TEST_F(MapFiles, AreReadAndClosed) {
    const auto name = folder_.write("cpu.bmm", byteSpace("ram", "u0"));
    EXPECT_EQ(open(name), 0);
    EXPECT_EQ(listSpaces(map_.get()), ": ram\n");
    EXPECT_EQ(alerts_.text(), "");
}

TEST_F(MapFiles, NeedNoExtension) {
    folder_.write("cpu.bmm", byteSpace("ram", "u0"));
    EXPECT_EQ(open(folder_.file("cpu")), 0);
    EXPECT_EQ(listSpaces(map_.get()), ": ram\n");
}

TEST_F(MapFiles, AreReadBehindTheTextOfDefinitions) {
    const auto name = folder_.write("cpu.bmm", "#ifdef SMALL\n" + byteSpace("ram", "u0") + "#endif\n");
    EXPECT_EQ(open(name, "#define SMALL 1\n"), 0);
    EXPECT_EQ(listSpaces(map_.get()), ": ram\n");
}

TEST_F(MapFiles, MayComeWithTheirSpecification) {
    const std::string text = byteSpace("ram", "u0");
    const OwnedFileSpec spec(CreateFileSpecWithFileData("cpu.bmm", text.data(), text.size()));
    EXPECT_EQ(open_and_parse_bmm_file(spec.get(), map_.get(), "top", nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(listSpaces(map_.get()), ": top_ram\n");
}

TEST_F(MapFiles, ShowTheirNameInAlerts) {
    const auto name = folder_.write("cpu.bmm", "\n  oops\n");
    EXPECT_EQ(open(name), 3);
    EXPECT_THAT(alerts_.text(), HasSubstr("   Line #2, File \"" + name + "\".\n  oops\n  ^\n"));
}

TEST_F(MapFiles, ThatAreMissingOrNamelessGiveStatus1) {
    EXPECT_EQ(open(folder_.file("none.bmm")), 1);
    EXPECT_THAT(alerts_.text(),
        StartsWith("\nERROR:Lanefill:1 - File '" + folder_.file("none.bmm") + "' can not be found, or is busy.\n"));
    EXPECT_EQ(open(""), 1);
    EXPECT_EQ(alerts_.text(), "\nERROR:Lanefill:55 - A null file name was given for a 'bmm' file.\n\n");
}

TEST_F(MapFiles, WithoutAStatementWarn) {
    for (const char* text : {"", "// nothing\n"}) {
        const auto name = folder_.write("empty.bmm", text);
        EXPECT_EQ(open(name), 17);
        EXPECT_EQ(alerts_.text(), "\nWARNING:Lanefill:53 - File '" + name + "' is empty or has no BMM content.\n\n");
    }
}

TEST_F(MapFiles, ThatFailAheadOfAnyStatementSaySo) {
    EXPECT_EQ(open(folder_.write("bad.bmm", "oops")), 3);
    EXPECT_THAT(alerts_.text(), HasSubstr("11 - Unexpected symbol 'oops'"));
}

TEST_F(MapFiles, WithAnOpenConditionalFailAtTheirEnd) {
    EXPECT_EQ(open(folder_.write("bad.bmm", "#if 1\n" + byteSpace("ram", "u0"))), 21);
}

TEST_F(MapFiles, InMemoryShowNoPlace) {
    EXPECT_EQ(openInfo(byteSpace("ram", "u0")), 0);
    EXPECT_EQ(listSpaces(map_.get()), ": ram\n");
    EXPECT_EQ(openInfo("oops"), 3);
    EXPECT_THAT(alerts_.text(), HasSubstr("11 - Unexpected symbol 'oops'"));
}

TEST_F(MapFiles, InMemoryMustNotBeEmpty) {
    EXPECT_EQ(openInfo(""), 17);
    EXPECT_EQ(alerts_.text(), "\nERROR:Lanefill:53 - File 'BMMInfo.bmm' is empty or has no BMM content.\n\n");
}

TEST_F(MapFiles, InMemoryAreShownWhenDebugging) {
    CapturedAlerts debugging(kDEBUG_ALERT);
    EXPECT_EQ(openInfo(byteSpace("ram", "u0")), 0);
    EXPECT_THAT(debugging.text(), HasSubstr("BMM Info results.\n\nADDRESS_SPACE ram RAMB16"));
}

TEST_F(MapFiles, AreReadOnBehalfOfAnOpenStream) {
    const auto name = folder_.write("cpu.bmm", byteSpace("ram", "u0"));
    parse_stream* outer = nullptr;
    ASSERT_EQ(open_parse_MemoryFile("outer", "rest", 4, nullptr, nullptr, nullptr, &outer), 0);
    const OwnedFileSpec spec(CreateFileSpec(name.c_str()));
    EXPECT_EQ(open_and_parse_bmm_file(spec.get(), map_.get(), nullptr, nullptr, outer, nullptr), 0);
    EXPECT_EQ(listSpaces(map_.get()), ": ram\n");
    EXPECT_EQ(close_parse_stream(&outer), 0);
}

TEST(ExampleMaps, ParseWithoutAWord) {
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kEXAMPLES)) {
        if (entry.path().extension() != ".bmm") continue;
        ++count;
        MapText map;
        CapturedAlerts alerts;
        const CapturedMessages messages;
        const OwnedFileSpec spec(CreateFileSpec(entry.path().string().c_str()));
        EXPECT_EQ(open_and_parse_bmm_file(spec.get(), map.get(), nullptr, nullptr, nullptr, nullptr), 0)
            << entry.path();
        EXPECT_EQ(alerts.text() + messages.text(), "") << entry.path();
        EXPECT_GE(map->addressSpaceCount, 1u) << entry.path();
    }
    EXPECT_GE(count, 8u);
}

TEST(ExampleMaps, GenerateTwoHundredAndFiftySixLanes) {
    MapText map;
    const OwnedFileSpec spec(CreateFileSpec((kEXAMPLES / "generated_lanes.bmm").string().c_str()));
    ASSERT_EQ(open_and_parse_bmm_file(spec.get(), map.get(), nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(map->addressMaps->addressSpaces->space->deviceCount, 256u);
}

TEST(ExampleMaps, TakeTheRootOfASubDesign) {
    MapText map;
    const OwnedFileSpec spec(CreateFileSpec((kEXAMPLES / "rooted_subdesign.bmm").string().c_str()));
    ASSERT_EQ(open_and_parse_bmm_file(spec.get(), map.get(), "top/left/dsp", nullptr, nullptr, nullptr), 0);
    EXPECT_STREQ(map.space()->name, "top_left_dsp_table");
    EXPECT_STREQ(map.lane()->lane->name, "top/left/dsp/table/ram_1");
}

} // namespace

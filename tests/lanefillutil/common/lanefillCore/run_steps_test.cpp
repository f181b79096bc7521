// run_steps_test.cpp - the steps of a run with an address map, in their order, over real files.
//
// Each step is seen by what it leaves behind, the order by what a step that fails keeps from happening.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/option_run.h"

#include "SystemUtils/SystemUtils.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/bit_maker.h"
#include "support/elf_builder.h"
#include "support/host_messages.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

constexpr char kMAP[] = "ADDRESS_SPACE ram RAMB16 [0x0:0x7FF]\n"
                        "BUS_BLOCK a [7:0] INIT = init.mem; END_BUS_BLOCK;\n"
                        "END_ADDRESS_SPACE;\n";

std::string notFound(const char* name) {
    return std::string("\nERROR:Lanefill:1 - File '") + name +
           "' can not be found, or is busy.\n"
           "    Please ensure that the file is available in the correct\n"
           "    directory location, or isn't being locked by another\n"
           "    application.\n\n";
}

std::string exists(const char* name) {
    return std::string("\nERROR:Lanefill:117 - File '") + name +
           "' already exists, and an attempt was made to overwrite it.\n"
           "    Use a different file name, or use the '-w on' option to force file overwrites.\n\n";
}

// Runs in a folder with a map, its INIT file and a data file.
class RunSteps : public ::testing::Test {
protected:
    RunSteps() : oldFolder_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder.path());
        std::filesystem::create_directory("out");
        folder.write("map.bmm", kMAP);
        folder.write("init.mem", "11 22 33\n");
        folder.write("app.mem", "@1 AA\n");
    }
    ~RunSteps() override { std::filesystem::current_path(oldFolder_); }

    int run(const std::string& text) { return runOptions(text.c_str()).status; }
    // What the run left beside its inputs.
    std::string outputs() const {
        std::string names;
        for (const char* name : {"out/init.mem", "out.bmm", "out.xml", "out.dmp", "out.bit", "top_rp.bit"})
            if (std::filesystem::exists(folder.file(name))) names += std::string(name) + " ";
        return names;
    }
    // The words of the only lane, up to the first line end behind "@00000000".
    std::string words() const {
        const std::string text = readFile(folder.file("out/init.mem"));
        const size_t at = text.find("\n@");
        return at == text.npos ? "" : text.substr(at + 1, 22);
    }
    void writeBitFile() { folder.write("top.bit", textOf(bitFileOf({}, makeBit({}).stream))); }

    SystemResources resources_;
    CapturedAlerts alerts;
    CapturedMessages messages;
    TemporaryFolder folder;

private:
    std::filesystem::path oldFolder_;
};

TEST_F(RunSteps, ADataFileGoesThroughToEveryOutput) {
    EXPECT_EQ(run("-bm map.bmm -bd app.mem -bx out -o p out.bmm -o a out.xml"), 0) << alerts.text();
    EXPECT_EQ(outputs(), "out/init.mem out.bmm out.xml ");
    EXPECT_EQ(words(), "@00000001\n    AA\n");
}

TEST_F(RunSteps, FilesOfTheMapAreStoredAheadOfDataFiles) {
    EXPECT_EQ(run("-bm map.bmm -a -bd app.mem -bx out"), 0) << alerts.text();
    EXPECT_EQ(words(), "@00000000\n    11 AA 33");
}

TEST_F(RunSteps, FilesOfTheMapAreLeftAloneWithoutTheSwitch) {
    std::filesystem::remove("init.mem");
    EXPECT_EQ(run("-bm map.bmm -bd app.mem -bx out"), 0) << alerts.text();
    EXPECT_EQ(run("-bm map.bmm -a off -bd app.mem"), 0) << alerts.text();
}

TEST_F(RunSteps, AFileOfTheMapThatFailsKeepsDataFilesFromBeingOpened) {
    std::filesystem::remove("init.mem");
    EXPECT_EQ(run("-bm map.bmm -a -bd none.mem -bx out -o p out.bmm"), 1);
    EXPECT_EQ(alerts.text(), notFound("init.mem"));
    EXPECT_EQ(outputs(), "");
}

TEST_F(RunSteps, ADataFileThatFailsKeepsOutputsFromBeingWritten) {
    EXPECT_EQ(run("-bm map.bmm -bd app.mem -bd none.mem -bx out -o p out.bmm -o a out.xml"), 1);
    EXPECT_EQ(alerts.text(), notFound("none.mem"));
    EXPECT_EQ(outputs(), "");
}

TEST_F(RunSteps, OutputFilesThatFailKeepMapsFromBeingWritten) {
    folder.write("out/init.mem", "mine\n");
    EXPECT_EQ(run("-bm map.bmm -bd app.mem -bx out -o p out.bmm -o a out.xml"), 1);
    EXPECT_EQ(alerts.text(), exists("out/init.mem"));
    EXPECT_EQ(outputs(), "out/init.mem ");
}

TEST_F(RunSteps, AMapThatFailsKeepsItsXmlFromBeingWrittenAndOutputFilesStay) {
    folder.write("out.bmm", "mine\n");
    EXPECT_EQ(run("-bm map.bmm -bd app.mem -bx out -o p out.bmm -o a out.xml"), 1);
    EXPECT_EQ(alerts.text(), exists("out.bmm"));
    EXPECT_EQ(outputs(), "out/init.mem out.bmm ");
}

TEST_F(RunSteps, AnXmlMapThatFailsIsTheLastStep) {
    folder.write("out.xml", "mine\n");
    EXPECT_EQ(run("-bm map.bmm -bd app.mem -bx out -o p out.bmm -o a out.xml"), 1);
    EXPECT_EQ(alerts.text(), exists("out.xml"));
    EXPECT_EQ(outputs(), "out/init.mem out.bmm out.xml ");
    EXPECT_EQ(readFile("out.xml"), "mine\n");
}

TEST_F(RunSteps, WithoutADataFileOnlyMapsAreWritten) {
    EXPECT_EQ(run("-bm map.bmm -a -bx out -u -o p out.bmm -o a out.xml"), 0) << alerts.text();
    EXPECT_EQ(outputs(), "out.bmm out.xml ");
}

TEST_F(RunSteps, AFileOfTheMapThatFailsKeepsMapsFromBeingWrittenAlsoWithoutADataFile) {
    std::filesystem::remove("init.mem");
    EXPECT_EQ(run("-bm map.bmm -a -o p out.bmm"), 1);
    EXPECT_EQ(alerts.text(), notFound("init.mem"));
    EXPECT_EQ(outputs(), "");
}

TEST_F(RunSteps, AMapThatFailsKeepsFilesFromBeingOpened) {
    folder.write("map.bmm", "ADDRESS_SPACE\n");
    EXPECT_NE(run("-bm map.bmm -a -bd none.mem -o p out.bmm"), 0);
    EXPECT_EQ(alerts.text().find("none.mem"), std::string::npos);
    EXPECT_EQ(outputs(), "");
}

// A dump takes the place of all other steps.
TEST_F(RunSteps, ADumpOfABitFileReadsNoFilesOfTheMapAndWritesNoMaps) {
    writeBitFile();
    std::filesystem::remove("init.mem");
    EXPECT_EQ(run("-d -bm map.bmm -bt top.bit -a -o d out.dmp -o p out.bmm -o a out.xml"), 0) << alerts.text();
    EXPECT_EQ(outputs(), "out.dmp ");
}

TEST_F(RunSteps, ADumpOfABitFileChecksTheLocationsOfTheMapFirst) {
    folder.write("top.bit", "no bit file");
    EXPECT_NE(run("-d -p td3c4 -bm map.bmm -bt top.bit -o d out.dmp"), 0);
    EXPECT_EQ(alerts.text(),
        "\nWARNING:Lanefill:47 - Not all BitLanes in ADDRESS_SPACE 'ram' have BMM location constraints.\n"
        "    Some data for this ADDRESS_SPACE may be lost during BIT file\n"
        "    replacement. Verify that the BMM file has location constraints for all Bit Lanes.\n\n"
        "      Bitlane(s)\n   ----------------\n   a [7:0]\n\n\n"
        "ERROR:Lanefill:4 - Unrecognized device type in .bit file, 'top.bit'.\n\n");
    EXPECT_EQ(outputs(), "");
}

TEST_F(RunSteps, BesideADataFileTheDumpIsIgnoredAndTheRunTranslates) {
    writeBitFile();
    EXPECT_EQ(run("-d -bm map.bmm -bt top.bit -a -bd app.mem -bx out -o b out.bit -o d out.dmp -o p out.bmm"), 0)
        << alerts.text();
    EXPECT_EQ(outputs(), "out/init.mem out.bmm out.bit ");
    EXPECT_EQ(words(), "@00000000\n    11 AA 33");
}

TEST_F(RunSteps, BesideADataFileAndADumpFilesOfTheMapAreStoredFirst) {
    writeBitFile();
    std::filesystem::remove("init.mem");
    EXPECT_EQ(run("-d -bm map.bmm -bt top.bit -a -bd none.mem"), 1);
    EXPECT_EQ(alerts.text(), notFound("init.mem"));
}

TEST_F(RunSteps, TheLastDataFileTellsWhetherAddressesAreWide) {
    folder.write("wide.elf", textOf(elfFile({.bits = 64, .segments = {{.address = 0, .bytes = {7}}}})));
    EXPECT_EQ(run("-bm map.bmm -bd app.mem -bd wide.elf -bx out"), 0) << alerts.text();
    EXPECT_EQ(words(), "@0000000000000000\n    ");
}

TEST_F(RunSteps, ADataFileOfAnUnknownFormatIsNamed) {
    EXPECT_EQ(run("-bm map.bmm -bd app.txt"), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:3 - Unknown file extension on data file 'app.txt'.\n\n");
}

TEST_F(RunSteps, AMapThatSpeaksOfAnErrorIsCarriedOut) {
    folder.write("map.bmm", formatted("#error old form\n%s", kMAP));
    EXPECT_EQ(run("-bm map.bmm -bd app.mem -bx out"), 0);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - old form\n   Line #1, File \"map.bmm\".\n#error old form\n^\n\n");
    EXPECT_EQ(outputs(), "out/init.mem ");
}

} // namespace
} // namespace memdata::testing

// output_files_test.cpp - what a run leaves behind, by its options.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/output_files.h"

#include "mem_files.h"
#include "support/alerts.h"
#include "support/host_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

class OutputFiles : public ::testing::Test {
protected:
    OutputFiles() { space = map.space("ram", 0, "RAMB16", {"a[7:0] OUTPUT=o.mem"}); }
    ~OutputFiles() override { DeleteCmdStringOptions(&options); }

    void folderFor(const std::string& name) {
        insert_BD_switch_data(&options.bxList, create_BD_switch_data(CreateFileSpec(name.c_str())));
    }
    int create(bool is64Bit = false) { return create_output_files(&options, map.get(), is64Bit, nullptr); }

    TestMap map;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    CapturedMessages messages;
    CmdStringOptionsType options{};
    AddressSpaceDefType* space = nullptr;
};

TEST_F(OutputFiles, OfNoRequestAreNone) {
    EXPECT_EQ(create(), 0);
    EXPECT_EQ(alerts.text(), "");
    EXPECT_EQ(messages.text(), "");
}

TEST_F(OutputFiles, AreMemFilesInTheFoldersThatWereNamed) {
    ASSERT_EQ(storeBytes(space, 0, {0x5A}), 0);
    folderFor(folder.path().string());
    EXPECT_EQ(create(true), 0);
    EXPECT_EQ(recordsOf(readFile(folder.file("o.mem"))), "\n@0000000000000000\n    5A\n");
}

TEST_F(OutputFiles, AreWrittenForUntouchedRangesOnRequest) {
    folderFor(folder.path().string());
    EXPECT_EQ(create(), 0);
    EXPECT_EQ(folder.listing(), "");
    options.updateAll = true;
    EXPECT_EQ(create(), 0);
    EXPECT_EQ(folder.listing(), "o.mem\n");
}

TEST_F(OutputFiles, OfFormerKindsAreToldToTheHostAndNotWritten) {
    for (fileSpecType** spec : {&options.outputUcfFile, &options.outputVerilogFile, &options.outputVhdlFile})
        *spec = CreateFileSpec(folder.file("x").c_str());
    EXPECT_EQ(create(), 0);
    EXPECT_EQ(messages.text(), "0 28-293\n0 28-292\n0 28-291\n");
    EXPECT_EQ(folder.listing(), "");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(OutputFiles, AsASingleMemFileAreRefusedAheadOfTheFolders) {
    ASSERT_EQ(storeBytes(space, 0, {0x5A}), 0);
    options.outputMemFile = CreateFileSpec(folder.file("all.mem").c_str());
    folderFor(folder.path().string());
    EXPECT_EQ(create(), 14);
    EXPECT_THAT(alerts.text(), ::testing::HasSubstr("ERROR:Lanefill:119 - "));
    EXPECT_THAT(alerts.text(), ::testing::HasSubstr("Instead, use the \"-bx\" option. Use \"-h bx\" option for more"));
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(OutputFiles, BeginWithACheckOfTheLocationsWhereABitFileIsGiven) {
    options.bitFile = CreateFileSpec(folder.write("top.bit", "no bit file").c_str());
    options.outputBitFile = CreateFileSpec(folder.file("new.bit").c_str());
    EXPECT_NE(create(), 0);
    EXPECT_THAT(alerts.text(),
        ::testing::StartsWith(
            "\nWARNING:Lanefill:47 - Not all BitLanes in ADDRESS_SPACE 'ram' have BMM location constraints.\n"));
    EXPECT_EQ(folder.listing(), "top.bit\n");
}

TEST_F(OutputFiles, EndWithTheBitFileWhenThatFails) {
    options.bitFile = CreateFileSpec(folder.file("no.bit").c_str());
    options.outputUcfFile = CreateFileSpec(folder.file("x").c_str());
    folderFor(folder.path().string());
    EXPECT_NE(create(), 0);
    EXPECT_EQ(messages.text(), "");
}

} // namespace
} // namespace memdata::testing

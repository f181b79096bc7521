// option_record_test.cpp - the option record and what hangs on it: requests, progress, release.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/option_record.h"

#include "FileUtils/FileUtils.h"
#include "ParseUtils/preprocessor.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "lanefillCore/records/data_file_names.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

class OptionRecord : public ::testing::Test {
protected:
    SystemResources resources_;
    CmdStringOptionsType options{};
};

TEST_F(OptionRecord, ReleasesEverythingThatHangsOnIt) {
    const u64 before = getCurrentMemoryUsage();
    options.cmdString = newString("-bm a.bmm");
    options.partName = newString("part");
    options.bmmInfoText = newString("text");
    options.preprocessFile = CreateFileSpec("a.bmm");
    options.imageFile = CreateFileSpec("a.img");
    FileSpecListExtend(&options.bmmFiles, CreateFileSpec("b.bmm"));
    FileSpecListExtend(&options.outputImageFiles, CreateFileSpec("b.img"));
    StrListExtend(&options.includePaths, newString("include"));
    StrListExtend(&options.workflowOps, newString("all"));
    insert_BD_switch_data(&options.bdList, create_BD_switch_data(CreateFileSpec("a.elf")));
    insert_BD_switch_data(&options.bxList, create_BD_switch_data(CreateFileSpec("out")));
    DeleteCmdStringOptions(&options);
    EXPECT_EQ(getCurrentMemoryUsage(), before);
    EXPECT_EQ(options.bmmFiles, nullptr);
    EXPECT_EQ(options.bdList, nullptr);
}

TEST_F(OptionRecord, ReleasesTheRootsOfItsMaps) {
    const u64 before = getCurrentMemoryUsage();
    fileSpecType* spec = CreateFileSpec("a.bmm");
    FileSpecSetAttribute(spec, newString("top/cpu"));
    FileSpecListExtend(&options.bmmFiles, spec);
    DeleteCmdStringOptions(&options);
    EXPECT_EQ(getCurrentMemoryUsage(), before);
}

TEST_F(OptionRecord, ItsIncludeFoldersAreNotLookedInAfterwards) {
    StrListExtend(&options.includePaths, newString("include/"));
    register_parsing_include_search_paths(options.includePaths);
    DeleteCmdStringOptions(&options);
    EXPECT_EQ(gPP_include_path_list, nullptr);
}

TEST_F(OptionRecord, ReleasingAnEmptyOneIsNothing) {
    const u64 before = getCurrentMemoryUsage();
    DeleteCmdStringOptions(&options);
    EXPECT_EQ(getCurrentMemoryUsage(), before);
}

TEST_F(OptionRecord, ReleasingTheLogsSpecClosesTheJournal) {
    const TemporaryFolder folder;
    options.logFile = CreateFileSpec(folder.file("run.log").c_str());
    ASSERT_EQ(OpenJournalingFile(options.logFile), 0);
    DeleteCmdStringOptions(&options);
    EXPECT_EQ(StandardLog, nullptr);
    EXPECT_EQ(folder.listing(), "run.log\n");
}

TEST_F(OptionRecord, RequestsStandInCommandOrder) {
    for (const char* name : {"a.elf", "b.elf", "c.elf"})
        insert_BD_switch_data(&options.bdList, create_BD_switch_data(CreateFileSpec(name)));
    std::string names;
    for (const BDSwitchDataType* node = options.bdList; node != nullptr; node = node->next)
        names += node->dataFile->fullName + std::string(" ");
    EXPECT_EQ(names, "a.elf b.elf c.elf ");
    DeleteCmdStringOptions(&options);
}

TEST_F(OptionRecord, ANewRequestAsksForNothing) {
    BDSwitchDataType* node = create_BD_switch_data(nullptr);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->boot.kind, kBOOT_NONE);
    EXPECT_FALSE(node->start.isSet);
    EXPECT_EQ(node->tagCount, -1);
    EXPECT_EQ(StrListCount(node->tagNames), 0u);
    delete_BD_switch_data_list(&node);
    EXPECT_EQ(node, nullptr);
}

TEST_F(OptionRecord, ARequestWithoutMemoryIsNullAndLosesNothing) {
    const FaultSweep sweep = sweepAllocationFaults([] {
        BDSwitchDataType* node = create_BD_switch_data(nullptr);
        if (node == nullptr) return 7;
        delete_BD_switch_data_list(&node);
        return 0;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.allocationCount, 2u);
}

TEST_F(OptionRecord, ProgressIsALineOfTextAndPercent) {
    CapturedAlerts out;
    EXPECT_EQ(OutputProgress(42, "Processing BIT image...", nullptr), 0);
    EXPECT_EQ(out.text(), "Processing BIT image... 42%\n");
}

TEST_F(OptionRecord, DataFileNamesStandInOneLine) {
    CapturedAlerts out;
    DataFileNameListType* list = create_data_filename_list(nullptr);
    EXPECT_EQ(output_data_filenames(&StandardOut, "//", list), 0);
    EXPECT_EQ(out.take(), "//     Data file(s) - none\n");
    insert_data_filename("a.elf", list);
    EXPECT_EQ(output_data_filenames(&StandardOut, "//", list), 0);
    EXPECT_EQ(out.take(), "//     Data file(s) - a.elf\n");
    insert_data_filename("b c.mem", list);
    EXPECT_EQ(output_data_filenames(&StandardOut, "//", list), 0);
    EXPECT_EQ(out.take(), "//     Data file(s) - a.elf, b c.mem\n");
    delete_data_filenames(&list);
    EXPECT_EQ(output_data_filenames(&StandardOut, "#", nullptr), 0);
    EXPECT_EQ(out.take(), "#     Data file(s) - none\n");
}

} // namespace
} // namespace memdata::testing

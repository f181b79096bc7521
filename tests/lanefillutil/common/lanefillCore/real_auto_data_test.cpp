// real_auto_data_test.cpp - memories filled from files on the disk that the address map itself names.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/memory.h"
#include "lanefillCore/auto_data.h"
#include "lanefillCore/data_files.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"
#include "support/bit_builder.h"
#include "support/elf_builder.h"
#include "support/gzip.h"
#include "support/host_messages.h"
#include "support/map_builder.h"
#include "support/map_dump.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

// Files are named without their folder.
class InitFiles : public ::testing::Test {
protected:
    InitFiles() : oldFolder_(std::filesystem::current_path()) { std::filesystem::current_path(folder.path()); }
    ~InitFiles() override { std::filesystem::current_path(oldFolder_); }

    int run(const char* macroDefines = "") { return transform_auto_data_files(map.get(), macroDefines); }

    TestMap map;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    CapturedMessages messages;

private:
    std::filesystem::path oldFolder_;
};

TEST_F(InitFiles, OfEveryFormatFillTheirLane) {
    const ElfFile elf = {.segments = {{.address = 2, .bytes = {0x11, 0x2F}}}};
    folder.write("a.mem", "@2 11 2f\n");
    folder.write("b.coe", "@2 memory_initialization_vector=11, 2f;\n");
    folder.write("c.mif", "@2 00010001 00101111\n");
    folder.write("d.elf", textOf(elfFile(elf)));
    folder.write("e.elf", gzipped(textOf(elfFile(elf))));
    AddressSpaceDefType* space = map.space("ram", 0x4000, "RAMB4",
        {"a[39:32] INIT=a.mem b[31:24] INIT=b.coe c[23:16] INIT=c.mif d[15:8] INIT=d.elf e[7:0] INIT=e.elf"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(space), "lane a 2: 11 2F\nlane b 2: 11 2F\nlane c 2: 11 2F\nlane d 2: 11 2F\nlane e 2: 11 2F\n");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(InitFiles, FillOnlyTheLanesThatNameOne) {
    folder.write("a.mem", "11 22\n");
    AddressSpaceDefType* one = map.space("one", 0, "RAMB4", {"a[15:8] b[7:0] INIT=a.mem"});
    AddressSpaceDefType* two = map.space("two", 0x1000, "RAMB4", {"c[7:0]"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(one), "lane b 0: 11 22\n");
    EXPECT_EQ(dumpData(two), "");
}

TEST_F(InitFiles, EachSectionGoesToItsAddressAndTheLastOneWins) {
    folder.write("a.mem", "@10 11 22 33\n@0 44\n@11 55\n");
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0] INIT=a.mem"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 44\nlane a 16: 11 55 33\n");
}

TEST_F(InitFiles, WordsOfAWideLaneBeginWithTheirFirstDigit) {
    folder.write("a.mem", "1234 5678\n");
    AddressSpaceDefType* byteSpace = map.space("ram", 0, "RAMB16", {"a[15:0] INIT=a.mem"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(byteSpace), "lane a 0: 34 12 78 56\n");
}

TEST_F(InitFiles, OfManySpacesAreAllRead) {
    folder.write("a.mem", "11\n");
    folder.write("b.mem", "22\n");
    AddressSpaceDefType* one = map.space("one", 0, "RAMB4", {"a[7:0] INIT=a.mem"});
    map.map("cpu", "ARM", 1);
    AddressSpaceDefType* two = map.space("two", 0, "RAMB4", {"b[7:0] INIT=b.mem"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(one), "lane a 0: 11\n");
    EXPECT_EQ(dumpData(two), "lane b 0: 22\n");
}

TEST_F(InitFiles, MacrosOfTheOptionsHoldInTexts) {
    folder.write("a.mem", "@AT VALUE\n");
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0] INIT=a.mem"});
    EXPECT_EQ(run("#define AT 5\n#define VALUE 6F\n"), 0);
    EXPECT_EQ(dumpData(space), "lane a 5: 6F\n");
}

TEST_F(InitFiles, OneThatIsNotThereEndsTheWalkAndIsNamed) {
    map.space("ram", 0, "RAMB4", {"a[7:0] INIT=none.mem"});
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:1 - File 'none.mem' can not be found, or is busy.\n"
                             "    Please ensure that the file is available in the correct\n"
                             "    directory location, or isn't being locked by another\n"
                             "    application.\n\n");
}

TEST_F(InitFiles, OneThatIsDamagedEndsTheWalkWhichBeginsWithTheLastLane) {
    folder.write("a.mem", "11\n");
    folder.write("b.mem", "22 zz\n");
    folder.write("c.mem", "33\n");
    AddressSpaceDefType* space =
        map.space("ram", 0, "RAMB4", {"a[23:16] INIT=a.mem b[15:8] INIT=b.mem c[7:0] INIT=c.mem"});
    EXPECT_EQ(run(), 2);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:11 - Unexpected symbol 'zz', 'valid data value' expected.\n"
                             "   Line #1, File \"b.mem\".\n22 zz\n   ^\n\n");
    EXPECT_EQ(dumpData(space), "lane c 0: 33\n");
}

TEST_F(InitFiles, AreNotAskedForTheirProcessor) {
    folder.write("a.elf", textOf(elfFile({.machine = 40, .segments = {{.address = 0, .bytes = {7}}}})));
    map.map("cpu", "KESTREL");
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0] INIT=a.elf"});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 07\n");
}

TEST_F(InitFiles, KeepWhatDataFilesDoNotReach) {
    folder.write("a.mem", "11 22 33 44\n");
    folder.write("b.mem", "@1001 AA BB\n");
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB4", {"a[7:0] INIT=a.mem"});
    ASSERT_EQ(run(), 0);
    CmdStringOptionsType options{};
    bool is64Bit = false;
    insert_BD_switch_data(&options.bdList, create_BD_switch_data(CreateFileSpec("b.mem")));
    EXPECT_EQ(transform_data_files(&options, map.get(), is64Bit, "", nullptr), 0);
    delete_BD_switch_data_list(&options.bdList);
    EXPECT_EQ(dumpData(space), "lane a 0: 11 AA BB 44\n");
}

TEST_F(InitFiles, MoreDataThanTheMemoryHoldsEndsWithTheMemory) {
    folder.write("a.mem", std::string(3 * 520, '1'));
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0] INIT=a.mem"});
    EXPECT_EQ(run(), 0);
    std::string filled = "lane a 0:";
    for (int i = 0; i < 512; ++i) filled += " 11";
    EXPECT_EQ(dumpData(space), filled + "\n");
}

TEST(InitFileFaults, MemoryThatRunsOutIsAStatusAndLosesNothing) {
    const TemporaryFolder folder;
    const std::string text = folder.write("a.mem", "11 22\n");
    const std::string elf = folder.write("b.elf", textOf(elfFile({.segments = {{.address = 0, .bytes = {7}}}})));
    int status = 7;
    u64 failing = 1;
    for (; status != 0; ++failing) {
        const u64 bytesBefore = getCurrentMemoryUsage();
        {
            TestMap fresh;
            EnablePrintAlerts(0);
            fresh.space("ram", 0, "RAMB4", {"a[15:8] INIT=" + text + " b[7:0] INIT=" + elf});
            failTrackedAllocation(failing);
            status = transform_auto_data_files(fresh.get(), "");
            failTrackedAllocation(0);
            EXPECT_TRUE(status == 0 || status == 7) << status << " at allocation " << failing;
        }
        ASSERT_EQ(getCurrentMemoryUsage(), bytesBefore) << "allocation " << failing << " failing";
        ASSERT_LT(failing, 1000u);
    }
    EXPECT_GT(failing, 20u);
}

} // namespace
} // namespace memdata::testing

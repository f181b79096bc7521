// elf_dumps_test.cpp - which dumps a run without a map writes, and where.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/elf_dumps.h"

#include "FileUtils/opening.h"
#include "SystemUtils/lifetime.h"
#include "lanefillCore/driver.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"
#include "support/elf_builder.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ElfDumps : public ::testing::Test {
protected:
    ElfDumps() { options.dumpEnabled = true; }
    ~ElfDumps() override { DeleteCmdStringOptions(&options); }

    std::string elf(const char* name, u64 address, Bytes bytes) {
        const Bytes file = elfFile({.segments = {{.address = address, .bytes = std::move(bytes)}}});
        return folder.write(name, std::string(file.begin(), file.end()));
    }
    void add(const std::string& name) {
        insert_BD_switch_data(&options.bdList, create_BD_switch_data(CreateFileSpec(name.c_str())));
    }
    void listTo(const char* name) { options.dumpFile = CreateFileSpec(folder.file(name).c_str()); }
    void memTo(const char* name) { options.outputMemFile = CreateFileSpec(folder.file(name).c_str()); }
    std::string file(const char* name) { return readFile(folder.file(name)); }

    SystemResources resources_;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    CmdStringOptionsType options{};
};

TEST_F(ElfDumps, NeedADataFile) {
    EXPECT_EQ(DoELFDumps(&options), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:5 - A data file to dump was missing.\n\n");
}

TEST_F(ElfDumps, GoToStandardOutputUnlessAFileIsNamed) {
    add(elf("a.elf", 0x1000, {1, 2}));
    options.dumpMask = 4;
    EXPECT_EQ(DoELFDumps(&options), 0);
    EXPECT_THAT(alerts.text(), HasSubstr("Lanefill ELF file dump.\n\nFile = \"" + folder.file("a.elf") + "\".\n"));
    EXPECT_THAT(alerts.text(), HasSubstr("ELF header\n"));
    EXPECT_EQ(folder.listing(), "a.elf\n");
}

TEST_F(ElfDumps, OfARunGoThroughTheDriver) {
    add(elf("a.elf", 0x1000, {1, 2}));
    EXPECT_EQ(execute_command_line_options(&options), 0);
    EXPECT_THAT(alerts.text(), HasSubstr("ELF file dump."));
}

TEST_F(ElfDumps, GoToTheDumpFileWithItsExtension) {
    add(elf("a.elf", 0x1000, {1, 2}));
    listTo("out");
    EXPECT_EQ(DoELFDumps(&options), 0);
    EXPECT_EQ(folder.listing(), "a.elf\nout.dmp\n");
    EXPECT_THAT(file("out.dmp"), HasSubstr("ELF file dump."));
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(ElfDumps, AsMemGoToTheMemFileAndPrintNoListing) {
    add(elf("a.elf", 0x1000, {1, 2}));
    memTo("out");
    EXPECT_EQ(DoELFDumps(&options), 0);
    EXPECT_EQ(folder.listing(), "a.elf\nout.mem\n");
    EXPECT_THAT(file("out.mem"), ::testing::EndsWith("@00001000\n    01 02\n"));
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(ElfDumps, AsListingAndAsMemGoToBothFiles) {
    add(elf("a.elf", 0x1000, {1, 2}));
    listTo("out");
    memTo("out");
    EXPECT_EQ(DoELFDumps(&options), 0);
    EXPECT_EQ(folder.listing(), "a.elf\nout.dmp\nout.mem\n");
}

TEST_F(ElfDumps, HoldAllDataFilesInOrder) {
    add(elf("a.elf", 0x1000, {1}));
    add(elf("b.elf", 0x2000, {2}));
    memTo("out");
    EXPECT_EQ(DoELFDumps(&options), 0);
    const std::string text = file("out.mem");
    EXPECT_LT(text.find("@00001000\n    01\n"), text.find("@00002000\n    02\n"));
    EXPECT_THAT(text, HasSubstr("@00002000\n    02\n"));
}

TEST_F(ElfDumps, FindADataFileThatIsNamedWithoutItsExtension) {
    elf("a.elf", 0x1000, {1, 2});
    add(folder.file("a"));
    memTo("out");
    EXPECT_EQ(DoELFDumps(&options), 0) << alerts.text();
    EXPECT_THAT(file("out.mem"), ::testing::EndsWith("@00001000\n    01 02\n"));
}

TEST_F(ElfDumps, PassOverAFileWithoutAnyByte) {
    add(folder.write("empty.elf", ""));
    add(elf("b.elf", 0x2000, {2}));
    EXPECT_EQ(DoELFDumps(&options), 0);
    EXPECT_THAT(alerts.text(), HasSubstr("b.elf"));
    EXPECT_THAT(alerts.text(), Not(HasSubstr("empty.elf")));
}

TEST_F(ElfDumps, PassOverAFileThatIsNotThereAndEndWithItsStatus) {
    add(folder.file("no.elf"));
    add(elf("b.elf", 0x2000, {2}));
    memTo("out");
    EXPECT_EQ(DoELFDumps(&options), 1);
    EXPECT_THAT(alerts.text(), HasSubstr("ERROR:Lanefill:1 - File '" + folder.file("no.elf") + "' can not be found"));
    EXPECT_THAT(file("out.mem"), HasSubstr("@00002000\n"));
}

TEST_F(ElfDumps, OfNoFileAtAllLeaveNoOutput) {
    add(folder.file("no.elf"));
    memTo("out");
    EXPECT_EQ(DoELFDumps(&options), 1);
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(ElfDumps, OfADamagedFileLeaveNoOutput) {
    add(elf("a.elf", 0x1000, {1}));
    add(folder.write("bad.elf", "\177ELF"));
    memTo("out");
    EXPECT_EQ(DoELFDumps(&options), 2);
    EXPECT_THAT(alerts.text(), HasSubstr("bad.elf"));
    EXPECT_EQ(folder.listing(), "a.elf\nbad.elf\n");
}

TEST_F(ElfDumps, AreRefusedWhereAFileExists) {
    add(elf("a.elf", 0x1000, {1}));
    folder.write("out.dmp", "old");
    listTo("out");
    EXPECT_EQ(DoELFDumps(&options), 1);
    EXPECT_THAT(alerts.text(), HasSubstr("ERROR:Lanefill:117 - File '" + folder.file("out.dmp") + "' already exists"));
    EXPECT_EQ(file("out.dmp"), "old");
}

TEST_F(ElfDumps, NeverReplaceTheFileThatTheyShow) {
    const std::string name = elf("a.mem", 0x1000, {1});
    const std::string before = readFile(name);
    add(name);
    memTo("a");
    const u32 saved = SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    EXPECT_EQ(DoELFDumps(&options), 1);
    gDefaultFileAttributes = saved;
    EXPECT_EQ(
        alerts.text(), "\nERROR:Lanefill:86 - File '" + name +
                           "' is an input of this run and can not be its output too. Please name another output.\n\n");
    EXPECT_EQ(readFile(name), before);
}

TEST_F(ElfDumps, ToAFullDiskAreAStatus) {
    add(elf("a.elf", 0x1000, Bytes(200'000, 1)));
    std::filesystem::create_symlink("/dev/full", folder.file("out.mem"));
    memTo("out");
    EXPECT_EQ(DoELFDumps(&options), 1);
    EXPECT_THAT(alerts.text(), HasSubstr("can not be written: No space left on device."));
}

TEST_F(ElfDumps, ThatRunOutOfMemoryGiveAStatusAndLoseNothing) {
    add(elf("a.elf", 0x1000, {1, 2}));
    memTo("out");
    listTo("out");
    const u32 saved = SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    const FaultSweep sweep = sweepAllocationFaults([this] { return DoELFDumps(&options); });
    gDefaultFileAttributes = saved;
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.allocationCount, 10u);
}

} // namespace
} // namespace memdata::testing

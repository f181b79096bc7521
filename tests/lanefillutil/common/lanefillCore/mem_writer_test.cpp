// mem_writer_test.cpp - the MEM files of a run: which there are, their names, their contents, and what stops them.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/mem_writer.h"

#include "FileUtils/opening.h"
#include "mem_files.h"
#include "platform/run_inputs.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"
#include "support/host_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;
using Bytes = std::vector<u8>;

constexpr const char* kSINGLE_FILE_VARIABLE = "OMBREL_LNV_SINGLEMEMFILE";

// While it lives files may be overwritten.
struct Overwriting {
    u32 saved = gDefaultFileAttributes;
    Overwriting() { SetDefaultFileAttributes(kOVERWRITING_REFUSED, false); }
    ~Overwriting() { gDefaultFileAttributes = saved; }
    Overwriting& operator=(Overwriting&&) = delete; // neither copied nor moved
};

struct SingleFiles {
    SingleFiles() { setenv(kSINGLE_FILE_VARIABLE, "1", 1); }
    ~SingleFiles() { unsetenv(kSINGLE_FILE_VARIABLE); }
    SingleFiles& operator=(SingleFiles&&) = delete; // neither copied nor moved
};

class MemWriter : public ::testing::Test {
protected:
    int write(bool updateAll = false, bool is64Bit = false) {
        return output_bitLane_mem_files(MemFolders(folder.path().string()).get(), updateAll, is64Bit, map.get());
    }
    int writeTagged(const std::vector<std::string>& tags) {
        return output_bitLane_mem_files(MemFolders(folder.path().string(), tags).get(), false, false, map.get());
    }
    std::string file(const std::string& name) { return readFile(folder.file(name)); }
    std::string records(const std::string& name) { return recordsOf(file(name)); }

    TestMap map;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    CapturedMessages messages;
};

TEST_F(MemWriter, WritesAFileForEachLaneOfASpaceWithData) {
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB16", {"hi[15:8] lo[7:0]"});
    map.space("other", 0x8000, "RAMB16", {"x[7:0]"});
    ASSERT_EQ(storeBytes(space, 0x1000, {0x11, 0x22, 0x33, 0x44}), 0);
    ASSERT_EQ(insert_data_filename("a.elf", map->dataFiles), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "ram_0.mem\nram_1.mem\n");
    EXPECT_EQ(withoutHostLines(file("ram_0.mem")), "// Mem file initialization records.\n"
                                                   "//\n"
                                                   "// Created on DATE, from:\n"
                                                   "//\n"
                                                   "//     Map file     - test.bmm\n"
                                                   "//     Data file(s) - a.elf\n"
                                                   "//\n"
                                                   "// Address space 'ram', bit lane [15:8].\n"
                                                   "//\n"
                                                   "// Bus width = 16 bits, number of bus blocks = 1.\n"
                                                   "\n"
                                                   "@00000000\n"
                                                   "    11 33\n");
    EXPECT_EQ(records("ram_1.mem"), "\n@00000000\n    22 44\n");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(MemWriter, WithUpdateAllWritesTheHeadOfRangesWithoutData) {
    map.space("ram", 0, "RAMB16", {"a[7:0]"});
    EXPECT_EQ(write(false), 0);
    EXPECT_EQ(folder.listing(), "");
    EXPECT_EQ(write(true), 0);
    EXPECT_EQ(folder.listing(), "ram_0.mem\n");
    EXPECT_EQ(records("ram_0.mem"), "");
}

TEST_F(MemWriter, GivesLanesWithoutDataInASpaceWithDataFilesOfTheHeadOnly) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0]", "c[15:8] d[7:0]"});
    ASSERT_EQ(storeBytes(space, 0, {0x11}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "ram_0.mem\nram_1.mem\nram_2.mem\nram_3.mem\n");
    EXPECT_EQ(records("ram_0.mem"), "\n@00000000\n    11\n");
    EXPECT_EQ(records("ram_1.mem"), "");
    EXPECT_EQ(records("ram_2.mem"), "");
}

TEST_F(MemWriter, PrintsLanesInTheWidthsOfTheirWords) {
    ASSERT_EQ(storeBytes(map.space("w32", 0, "RAMB16", {"a[31:0]"}), 0, {1, 2, 3, 4}), 0);
    ASSERT_EQ(storeBytes(map.space("w4", 0x10000, "RAMB16", {"b[7:4] c[3:0]"}), 0x10000, {0xA5}), 0);
    ASSERT_EQ(storeBytes(map.space("w36", 0, "RAMB36", {"d[35:0]"}, {.wordAddressing = true}), 0,
                  {0xF1, 0x23, 0x45, 0x67, 0x80}),
        0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("w32_0.mem"), "\n@00000000\n    01020304\n");
    EXPECT_EQ(records("w4_0.mem"), "\n@00000000\n    A\n");
    EXPECT_EQ(records("w4_1.mem"), "\n@00000000\n    5\n");
    EXPECT_EQ(records("w36_0.mem"), "\n@00000000\n    F12345678 000000000\n"); // a digit of a second word
}

TEST_F(MemWriter, PrintsEightBitLanesOfMemoriesThatDoNotCountParityWithTwoDigits) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB32", {"a[7:0]"}), 0, {0xAB}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000000\n    AB\n");
}

TEST_F(MemWriter, PrintsLanesThatLeaveTheParityOfTheirMemoryOutWithAParityDigitOfZero) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB36", {"a[7:0]"}), 0, {0xAB}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000000\n    0AB\n");
}

TEST_F(MemWriter, PrintsNarrowLanesOfMemoriesWithParityAsPlainWords) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB36", {"a[3:0]"}), 0, {0xAB}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000000\n    A B\n");
}

TEST_F(MemWriter, PrintsWideAddressesForRegularRecordsAndNeverForParityRecords) {
    ASSERT_EQ(storeBytes(map.space("plain", 0, "RAMB16", {"a[7:0]"}), 0, {0xAB}), 0);
    ASSERT_EQ(storeBytes(map.space("parity", 0, "RAMB18", {"b[8:0]"}, {.wordAddressing = true}), 0, {0x01, 0x20}), 0);
    EXPECT_EQ(write(false, true), 0);
    EXPECT_EQ(records("plain_0.mem"), "\n@0000000000000000\n    AB\n");
    EXPECT_EQ(records("parity_0.mem"), "\n@00000000\n    012 000\n");
}

TEST_F(MemWriter, BeginsEachRecordAtTheFirstWordThatItsLaneTook) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0]"});
    ASSERT_EQ(storeBytes(space, 3, {1, 2, 3, 4}), 0); // lane b of bus word 1 comes first
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000002\n    02 04\n");
    EXPECT_EQ(records("ram_1.mem"), "\n@00000001\n    01 03\n");
}

TEST_F(MemWriter, BeginsRecordsOfNarrowLanesInsideAByte) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:4] b[3:0]"});
    ASSERT_EQ(storeBytes(space, 5, {0x12}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000005\n    1\n");
    EXPECT_EQ(records("ram_1.mem"), "\n@00000005\n    2\n");
}

TEST_F(MemWriter, BeginsRecordsUnderWordAddressingAtTheirWord) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"a[17:9] b[8:0]"}, {.wordAddressing = true});
    ASSERT_EQ(storeBytes(space, 7, {0x01, 0x10, 0x22}), 0); // the lane step 7: bus word 3, lane b
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000004\n    022\n");
    EXPECT_EQ(records("ram_1.mem"), "\n@00000003\n    011\n");
}

TEST_F(MemWriter, CountsRecordsFromTheStartOfTheirBlock) {
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB16", {"a[7:0]", "b[7:0]"});
    ASSERT_EQ(storeBytes(space, 0x1802, {0x55}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_1.mem"), "\n@00000002\n    55\n");
}

TEST_F(MemWriter, WritesARecordForEachSegmentInTheOrderOfTheirAddresses) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0]"});
    ASSERT_EQ(storeBytes(space, 0x20, {3}), 0);
    ASSERT_EQ(storeBytes(space, 0x10, {1, 2}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000010\n    01 02\n"
                                    "\n@00000020\n    03\n");
}

TEST_F(MemWriter, CoversAllWordsOfARangeAlsoWhenAShorterSegmentFollowsAtItsStart) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0]"});
    ASSERT_EQ(storeBytes(space, 0, {1, 2, 3}), 0);
    ASSERT_EQ(storeBytes(space, 0, {9}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000000\n    09 02 03\n");
}

TEST_F(MemWriter, CoversAllWordsOfARangeOfAShorterSegmentAlsoWhereALaneStartsABusWordLater) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB18", {"a[17:9] b[8:0]"}, {.wordAddressing = true});
    // Three digits a word: lane b of bus word 3, both lanes of bus word 4, and the parity digit of lane a's word 5.
    ASSERT_EQ(storeBytes(space, 7, {0x01, 0x10, 0x22, 0x01, 0xA0}), 0);
    ASSERT_EQ(storeBytes(space, 7, {0x02, 0x00}), 0); // lane b of bus word 3 anew, and a parity digit
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000004\n    022 000\n");
    EXPECT_EQ(records("ram_1.mem"), "\n@00000003\n    020 01A\n");
}

TEST_F(MemWriter, HasNoRecordForALaneThatASegmentDidNotReach) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0]"});
    ASSERT_EQ(storeBytes(space, 0, {1, 2}), 0);
    ASSERT_EQ(storeBytes(space, 8, {3}), 0); // lane a alone
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000000\n    01\n\n@00000004\n    03\n");
    EXPECT_EQ(records("ram_1.mem"), "\n@00000000\n    02\n");
}

TEST_F(MemWriter, PrintsTheLanesOfLittleEndianProcessorsInProcessingOrder) {
    map.map("cpu", "ARM", 1, "");
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"b3[31:24] b2[23:16] b1[15:8] b0[7:0]"});
    ASSERT_EQ(storeBytes(space, 0, {0x10, 0x11, 0x12, 0x13}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "cpu.ram_0.mem\ncpu.ram_1.mem\ncpu.ram_2.mem\ncpu.ram_3.mem\n");
    EXPECT_THAT(file("cpu.ram_0.mem"), HasSubstr("'cpu.ram', bit lane [7:0]."));
    EXPECT_EQ(records("cpu.ram_0.mem"), "\n@00000000\n    10\n");
    EXPECT_THAT(file("cpu.ram_3.mem"), HasSubstr("'cpu.ram', bit lane [31:24]."));
    EXPECT_EQ(records("cpu.ram_3.mem"), "\n@00000000\n    13\n");
}

TEST_F(MemWriter, PrintsSwappedLanesAsTheMemoryHoldsThem) {
    map.map("cpu", "ARM", 1, "");
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0]"});
    ASSERT_EQ(storeBytes(space, 0, {0x11, 0x22, 0x33, 0x44}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("cpu.ram_0.mem"), "\n@00000000\n    44332211\n");
}

TEST_F(MemWriter, TakesTheNameOfInitAheadOfOutputAheadOfInput) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16",
        {"a[31:24] INIT=i.mem OUTPUT=o.mem INPUT=n.mem b[23:16] OUTPUT=p.mem INPUT=q.mem c[15:8] INPUT=r.mem d[7:0]"});
    ASSERT_EQ(storeBytes(space, 0, {1, 2, 3, 4}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "i.mem\np.mem\nr.mem\nram_3.mem\n");
    EXPECT_EQ(records("i.mem"), "\n@00000000\n    01\n");
    EXPECT_EQ(records("ram_3.mem"), "\n@00000000\n    04\n");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(MemWriter, ReplacesAnotherExtensionAndSaysSo) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0] OUTPUT=a.dat"});
    ASSERT_EQ(storeBytes(space, 0, {1}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "a.mem\n");
    EXPECT_THAT(alerts.text(), HasSubstr("WARNING"));
}

TEST_F(MemWriter, StoresTheDefaultNameAsTheInputFileWithoutTheFolder) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0] INPUT=b.mem"});
    ASSERT_EQ(storeBytes(space, 0, {1}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_STREQ(map.lane("a")->lane->inputFile->fullName, "ram_0.mem");
    EXPECT_STREQ(map.lane("b")->lane->inputFile->fullName, "b.mem");
}

TEST_F(MemWriter, NamesTheFilesOfAnotherFolderAlike) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0]"});
    ASSERT_EQ(storeBytes(space, 0, {1}), 0);
    const TemporaryFolder second;
    MemFolders folders(folder.path().string());
    folders.add(second.path().string() + "/");
    EXPECT_EQ(output_bitLane_mem_files(folders.get(), false, false, map.get()), 0);
    EXPECT_EQ(folder.listing(), "ram_0.mem\n");
    EXPECT_EQ(second.listing(), "ram_0.mem\n");
}

TEST_F(MemWriter, RunsTheIndexOnOverTheBlocksAndRangesOfASpaceAndStartsAnewForCheckLanes) {
    AddressSpaceDefType* space = map.space("ram", 0,
        {{"RAMB16", {"a[15:8] b[7:0] e[7:0] ECCH64-8", "c[15:8] d[7:0] f[7:0] ECCH64-8"}},
            {"RAMB16", {"g[15:8] h[7:0]"}}});
    ASSERT_EQ(storeBytes(space, 0, {1}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(),
        "ram_0.mem\nram_1.mem\nram_2.mem\nram_3.mem\nram_4.mem\nram_5.mem\nram_ecc_0.mem\nram_ecc_1.mem\n");
}

TEST_F(MemWriter, GivesNoDefaultNameTwice) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB16", {"a[7:0] e[7:0] ECCH64-8"}), 0, {1}), 0);
    ASSERT_EQ(storeBytes(map.space("ram_ecc", 0x8000, "RAMB16", {"b[7:0]"}), 0x8000, {2}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "ram_0.mem\nram_ecc_0.mem\nram_ecc_1.mem\n");
    EXPECT_THAT(file("ram_ecc_1.mem"), HasSubstr("Address space 'ram_ecc'"));
}

TEST_F(MemWriter, WritesTheSpacesOfItsTagsOnly) {
    for (const char* name : {"one", "two", "three"})
        ASSERT_EQ(storeBytes(map.space(name, 0, "RAMB16", {std::string(name) + "[7:0]"}), 0, {1}), 0);
    EXPECT_EQ(writeTagged({"three", "one"}), 0);
    EXPECT_EQ(folder.listing(), "one_0.mem\nthree_0.mem\n");
}

TEST_F(MemWriter, StopsAtAnUnknownTag) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB16", {"a[7:0]"}), 0, {1}), 0);
    EXPECT_EQ(writeTagged({"rom"}), 11);
    EXPECT_THAT(messages.text(), HasSubstr("28-203 rom"));
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(MemWriter, OfAMapWithoutSpacesFails) {
    EXPECT_EQ(write(), 4);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - Output folder '" + folder.path().string() +
                                 "' finds no ADDRESS_SPACE in 'test.bmm'.\n\n");
}

TEST_F(MemWriter, WithoutAFolderWritesIntoTheWorkingFolder) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB16", {"a[7:0]"}), 0, {1}), 0);
    const auto working = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    for (const char* name : {"", "."}) {
        EXPECT_EQ(output_bitLane_mem_files(MemFolders(name).get(), false, false, map.get()), 0);
        EXPECT_EQ(folder.listing(), "ram_0.mem\n");
        std::filesystem::remove("ram_0.mem");
    }
    std::filesystem::current_path(working);
}

TEST_F(MemWriter, PutsAnAbsoluteNameWhereItSays) {
    const TemporaryFolder second;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0] OUTPUT=" + second.file("x.mem")});
    ASSERT_EQ(storeBytes(space, 0, {1}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "");
    EXPECT_EQ(second.listing(), "x.mem\n");
}

// --- data and check lanes in one file ---

TEST_F(MemWriter, CombinesDataAndCheckLanesOfASpaceThatAsksForIt) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0] e[6:0] ECCHSIAO32-7"}, {.eccCombined = true});
    ASSERT_EQ(storeBytes(space, 0, {0x80, 0, 0, 0, 0, 0, 0, 1}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "ram_0.mem\n");
    EXPECT_THAT(file("ram_0.mem"), HasSubstr("// Mem file initialization records - for combined data and ECC.\n//\n"));
    EXPECT_EQ(records("ram_0.mem"), "\n@00000000\n    8000000038 0000000107\n");
}

TEST_F(MemWriter, CombinesAllSpacesWhenTheEnvironmentSaysSo) {
    const SingleFiles single;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0] e[7:0] ECCH64-8"});
    ASSERT_EQ(storeBytes(space, 0, {0, 0, 0, 1}), 0);
    EXPECT_EQ(write(false, true), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@0000000000000000\n    00000001E3\n");
}

TEST_F(MemWriter, DoesNotCombineSpacesOfTheCombinedStyle) {
    AddressSpaceDefType* space =
        map.space("ram", 0, "RAMB16", {"w[31:0] e[7:0] ECCH64-8"}, {.style = kAddressSpaceStyleCombined});
    ASSERT_EQ(storeBytes(space, 0, {0, 0, 0, 1}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "ram_0.mem\nram_ecc_0.mem\n");
}

TEST_F(MemWriter, CannotCombineABlockWithoutCheckLanes) {
    const SingleFiles single;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0]"});
    ASSERT_EQ(storeBytes(space, 0, {1}), 0);
    EXPECT_EQ(write(), 22);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - A bus block of address space 'ram' has no ECC bit lanes.\n"
                             "    MEM files of combined data and ECC need both.\n\n");
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(MemWriter, CannotCombineABlockWithoutDataLanes) {
    const SingleFiles single;
    map.space("ram", 0, "RAMB16", {"e[7:0] ECCH64-8"});
    EXPECT_EQ(write(true), 22);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - A bus block of address space 'ram' has no data bit lanes.\n"
                             "    MEM files of combined data and ECC need both.\n\n");
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(MemWriter, GivesCombinedSpacesWithoutDataTheHeadOnlyAndOnRequest) {
    map.space("ram", 0, "RAMB16", {"w[31:0] e[7:0] ECCH64-8"}, {.eccCombined = true});
    EXPECT_EQ(write(false), 0);
    EXPECT_EQ(folder.listing(), "");
    EXPECT_EQ(write(true), 0);
    EXPECT_EQ(folder.listing(), "ram_0.mem\n");
    EXPECT_EQ(records("ram_0.mem"), "");
}

TEST_F(MemWriter, NamesCombinedFilesByTheDataLane) {
    AddressSpaceDefType* space = map.space(
        "ram", 0, "RAMB16", {"w[31:0] OUTPUT=data.mem e[7:0] ECCH64-8 OUTPUT=check.mem"}, {.eccCombined = true});
    ASSERT_EQ(storeBytes(space, 0, {0, 0, 0, 1}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "data.mem\n");
}

TEST_F(MemWriter, GivesLanesWithoutAPartnerFilesOfTheirOwn) {
    AddressSpaceDefType* space =
        map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0] e[7:0] ECCH64-8"}, {.eccCombined = true});
    ASSERT_EQ(storeBytes(space, 0, {0, 1}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(folder.listing(), "ram_0.mem\nram_1.mem\n");
    EXPECT_EQ(records("ram_0.mem"), "\n@00000000\n    00E3\n");
    EXPECT_EQ(records("ram_1.mem"), "\n@00000000\n    01\n");
}

TEST_F(MemWriter, CombinesTheWordsOfOneBusWordAlsoForALaneThatTheAddressHasPassed) {
    AddressSpaceDefType* space =
        map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0] e[7:0] ECCH64-8"}, {.eccCombined = true});
    ASSERT_EQ(storeBytes(space, 4, {0x77, 0x00}), 0);       // bus word 2
    ASSERT_EQ(storeBytes(space, 5, {0x01, 0x00, 0x01}), 0); // from lane b on
    EXPECT_EQ(write(), 0);
    EXPECT_THAT(records("ram_0.mem"), HasSubstr("\n@00000002\n    77E3 00E3\n"));
}

TEST_F(MemWriter, CombinesCheckWordsThatCountTheirPlaceTheirOwnWay) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0] e[6:0] ECCHSIAO32-7"}, {.eccCombined = true});
    ASSERT_EQ(storeBytes(space, 8, {0x80, 0, 0, 0}), 0); // data word 2, check word 9
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000002\n    8000000038\n");
}

TEST_F(MemWriter, CombinesParityWordsWithCheckWords) {
    AddressSpaceDefType* space = map.space(
        "ram", 0, "RAMB36", {"w[35:0] e[7:0] ECCH64-8 RAMB32"}, {.wordAddressing = true, .eccCombined = true});
    ASSERT_EQ(storeBytes(space, 0, {0x00, 0x00, 0x00, 0x00, 0x10}), 0);
    EXPECT_EQ(write(false, true), 0);
    EXPECT_THAT(records("ram_0.mem"), ::testing::StartsWith("\n@00000000\n    000000001E3"));
}

TEST_F(MemWriter, WritesCheckLanesOfOddWidthInTheirDigits) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0] e[6:0] ECCHSIAO32-7"});
    ASSERT_EQ(storeBytes(space, 0, {0x80, 0, 0, 0, 0, 0, 0, 1}), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_ecc_0.mem"), "\n@00000000\n    38 07\n");
}

// --- what stops a run ---

TEST_F(MemWriter, RefusesAFileThatExists) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB16", {"a[15:8] b[7:0]"}), 0, {1, 2}), 0);
    folder.write("ram_1.mem", "old");
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(
        alerts.text(), "\nERROR:Lanefill:117 - File '" + folder.file("ram_1.mem") +
                           "' already exists, and an attempt was made to overwrite it.\n"
                           "    Use a different file name, or use the '-w on' option to force file overwrites.\n\n");
    EXPECT_EQ(folder.listing(), "ram_0.mem\nram_1.mem\n"); // what was finished before stays
    EXPECT_EQ(file("ram_1.mem"), "old");
}

TEST_F(MemWriter, OverwritesWhenThatIsAllowed) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB16", {"a[7:0]"}), 0, {1}), 0);
    folder.write("ram_0.mem", "old");
    const Overwriting allowed;
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(records("ram_0.mem"), "\n@00000000\n    01\n");
}

TEST_F(MemWriter, NeverOverwritesWhatTheRunHasRead) {
    const RunInputs inputs;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[7:0] OUTPUT=link.mem"});
    ASSERT_EQ(storeBytes(space, 0, {1}), 0);
    const std::string name = folder.write("boot.mem", "@0 01");
    std::filesystem::create_symlink(name, folder.file("link.mem"));
    fileIODescriptor* boot = nullptr;
    ASSERT_EQ(Open_File(name.c_str(), kBINARY_READ_WHOLE, &boot), 0);
    ASSERT_EQ(Close_File(&boot), 0);
    const Overwriting allowed;
    EXPECT_EQ(write(), 1);
    EXPECT_THAT(alerts.text(), HasSubstr("link.mem"));
    EXPECT_EQ(file("boot.mem"), "@0 01");
}

TEST_F(MemWriter, NeverWritesTwoLanesToOneFile) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"a[15:8] OUTPUT=x.mem b[7:0] OUTPUT=x.mem"});
    ASSERT_EQ(storeBytes(space, 0, {1, 2}), 0);
    const Overwriting allowed;
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - Output file '" + folder.file("x.mem") +
                                 "' was already written for another bit lane in this run.\n\n");
    EXPECT_EQ(records("x.mem"), "\n@00000000\n    01\n");
}

TEST_F(MemWriter, StopsWhereAFileCannotBeCreated) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB16", {"a[7:0]"}), 0, {1}), 0);
    const std::string missing = folder.file("no/such");
    EXPECT_EQ(output_bitLane_mem_files(MemFolders(missing).get(), false, false, map.get()), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:2 - File '" + missing +
                                 "/ram_0.mem' can not be created, or is write protected.\n"
                                 "    Please ensure that the directory path exists, or the file\n"
                                 "    isn't write protected or being locked by another application.\n\n");
}

TEST_F(MemWriter, ThatFailsInAFolderWritesNothingToTheNext) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB16", {"a[7:0]"}), 0, {1}), 0);
    MemFolders folders(folder.file("none"));
    folders.add(folder.path().string());
    EXPECT_EQ(output_bitLane_mem_files(folders.get(), false, false, map.get()), 1);
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(MemWriter, StopsAtAFolderThatTakesNoFiles) {
    ASSERT_EQ(storeBytes(map.space("ram", 0, "RAMB16", {"a[7:0]"}), 0, {1}), 0);
    for (const std::string& name : {std::string("/proc"), folder.write("file", "")}) {
        EXPECT_EQ(output_bitLane_mem_files(MemFolders(name).get(), false, false, map.get()), 1);
        EXPECT_THAT(alerts.take(), HasSubstr(name + "/ram_0.mem' can not be created, or is write protected."));
    }
}

TEST_F(MemWriter, StopsWhenTheDiskIsFullInTheMiddle) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB36", {"a[15:8] b[7:0]"});
    ASSERT_EQ(storeBytes(space, 0, Bytes(8192, 0x11)), 0);
    std::filesystem::create_symlink("/dev/full", folder.file("ram_1.mem"));
    EXPECT_EQ(write(), 1);
    EXPECT_THAT(
        alerts.text(), HasSubstr("'" + folder.file("ram_1.mem") + "' can not be written: No space left on device."));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("ram_1.mem")));
    EXPECT_EQ(folder.listing(), "ram_0.mem\nram_1.mem\n");
}

TEST_F(MemWriter, ThatRunsOutOfMemoryGivesAStatusAndLosesNothing) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB16", {"w[31:0] e[7:0] ECCH64-8"});
    ASSERT_EQ(storeBytes(space, 0, {1, 2, 3, 4}), 0);
    const Overwriting allowed;
    const MemFolders folders(folder.path().string());
    const FaultSweep sweep = sweepAllocationFaults([&] {
        const int status = output_bitLane_mem_files(folders.get(), false, false, map.get());
        for (const char* name : {"w", "e"}) DeleteFileSpec(&map.lane(name)->lane->inputFile);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.allocationCount, 10u);
    EXPECT_EQ(folder.listing(), "ram_0.mem\nram_ecc_0.mem\n"); // no temporaries
}

} // namespace
} // namespace memdata::testing

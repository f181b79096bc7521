// segments_test.cpp - data files and segments on their way to the spaces of a map.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/segments.h"

#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"
#include "fake_data_file.h"
#include "lanefillCore/data_files.h"
#include "support/alerts.h"
#include "support/host_messages.h"
#include "support/host_parameters.h"
#include "support/map_builder.h"
#include "support/map_dump.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;
using OwnedRequest = Tracked<BDSwitchDataType, delete_BD_switch_data_list>;

OwnedRequest request(std::vector<std::string> tags = {}) {
    OwnedRequest node(create_BD_switch_data(nullptr));
    if (!tags.empty()) node->tagCount = static_cast<i32>(tags.size());
    for (const std::string& tag : tags) StrListExtend(&node->tagNames, newString(tag));
    return node;
}

// Runs one file through a map, with all alerts and host messages caught.
class Segments : public ::testing::Test {
protected:
    int translate(const FakeFile& contents, BDSwitchDataType* node, bool ignoreUnmapped = false) {
        FakeDataFile file(contents);
        return translateDataFile(&file, node, map.get(), ignoreUnmapped, &walk);
    }
    int translate(const FakeFile& contents) { return translate(contents, request().get()); }

    TestMap map;
    DataFileWalk walk;
    CapturedAlerts alerts;
    CapturedMessages messages;
};

TEST_F(Segments, ASegmentGoesToTheSpaceThatHoldsIt) {
    AddressSpaceDefType* low = map.space("low", 0x0000, "RAMB4", {"a[7:0]"});
    AddressSpaceDefType* high = map.space("high", 0x1000, "RAMB4", {"b[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0x1004, {0x11, 0x22}}}}), 0);
    EXPECT_EQ(dumpData(low), "");
    EXPECT_EQ(dumpData(high), "lane b 4: 11 22\n");
    EXPECT_EQ(dumpRanges(high), "space 0x1004+2 app.elf\n"
                                "lane b 0x4+512 app.elf\n");
}

TEST_F(Segments, EverySpaceOfTheSameAddressesReceivesAllOfASegment) {
    AddressSpaceDefType* one = map.space("one", 0, "RAMB4", {"a[7:0]"});
    AddressSpaceDefType* two = map.space("two", 0, "RAMB4", {"b[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0, {7}}}}), 0);
    EXPECT_EQ(dumpData(one), "lane a 0: 07\n");
    EXPECT_EQ(dumpData(two), "lane b 0: 07\n");
}

TEST_F(Segments, OutsideOfEverySpaceTranslateNothingAndSucceed) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0x8000, {1}}, {0x9000, {2}}}}), 0);
    EXPECT_EQ(dumpData(space), "");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Segments, ThatAreNotMappedAreNamedWithLegacyMessages) {
    const ScopedParameter legacy("memdata.debugLegacyMessages", true);
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0x8000, {1, 2}}}}), 0);
    EXPECT_EQ(alerts.text(),
        "\nERROR:Lanefill:33 - Matching ADDRESS_SPACE for code segment #0 not found in 'test.bmm'.\n"
        "    Code segment #0 occupies [0x00008000:0x00008001]\n\n");
}

TEST_F(Segments, ThatAreNotMappedAreNeverNamedWhenTheyAreIgnored) {
    const ScopedParameter legacy("memdata.debugLegacyMessages", true);
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0x8000, {1, 2}}}}, request().get(), true), 0);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Segments, ThatBeginInsideASpaceAndEndBeyondItFailAndNameBothRanges) {
    map.space("ram", 0x1000, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0x11FE, {1, 2, 3, 4}}}}), 7);
    EXPECT_THAT(messages.text(), HasSubstr("ram"));
    EXPECT_THAT(messages.text(), HasSubstr("1000"));
    EXPECT_THAT(messages.text(), HasSubstr("11ff"));
    EXPECT_THAT(messages.text(), HasSubstr("11FE"));
    EXPECT_THAT(messages.text(), HasSubstr("1201"));
}

TEST_F(Segments, OfSizeZeroAreNothing) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0, {}}, {1, {5}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 1: 05\n");
}

TEST_F(Segments, ThatEndBehindTheLastAddressAreRefused) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0xFFFFFFFFFFFFFFFF, {1, 2}}}}), 7);
    EXPECT_THAT(
        alerts.text(), HasSubstr("Code segment #0 of 'app.elf' starts at 0xFFFFFFFFFFFFFFFF and has 0x2 bytes"));
}

TEST_F(Segments, AtTheLastAddressAreNotBehindIt) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0xFFFFFFFFFFFFFFFF, {1}}}}), 0);
}

TEST_F(Segments, AtTheEndOfAllAddressesReachTheLastWordOfTheirLane) {
    AddressSpaceDefType* space = map.space("top", 0xFFFFFFFFFFFFFE00, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0xFFFFFFFFFFFFFFFE, {0x11, 0x22}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 510: 11 22\n");
    EXPECT_EQ(dumpRanges(space), "space 0xFFFFFFFFFFFFFFFE+2 app.elf\n"
                                 "lane a 0x1FE+512 app.elf\n");
}

TEST_F(Segments, TheLaterOfTwoEqualOnesWins) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"one.elf", {{0, {1, 2}}}}), 0);
    EXPECT_EQ(translate({"two.elf", {{0, {3, 4}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 03 04\n");
    ASSERT_NE(space->transformRanges, nullptr);
    EXPECT_EQ(space->transformRanges->next, nullptr);
    EXPECT_EQ(space->transformRanges->ownedData[1], 4);
}

TEST_F(Segments, NoteTheirFileInTheMappingAndInTheirSpace) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0, {1}}}}), 0);
    EXPECT_EQ(translate({"app.elf", {{1, {1}}}}), 0);
    EXPECT_NE(lookup_data_filename("app.elf", map->dataFiles), nullptr);
    EXPECT_EQ(map->dataFiles->count, 1u);
    EXPECT_EQ(space->dataFiles->count, 1u);
}

TEST_F(Segments, AFileWithoutSectionsIsAnError) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"empty.elf"}), 2);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:9 - Data file 'empty.elf' had no section data.\n\n");
}

TEST_F(Segments, AFileWithoutSectionsIsTakenByTheMapOfADesign) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    map->isAutoGenerated = true;
    EXPECT_EQ(translate({"empty.elf"}), 0);
    EXPECT_THAT(messages.text(), HasSubstr("28-290"));
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Segments, AFileOfAnotherProcessorEndsWithItsStatusAndAWord) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({.name = "arm.elf", .sections = {{0, {1}}}, .processorStatus = 23}), 23);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - Data file 'arm.elf' was built for another processor than PPC405, "
                             "which counts for the spaces outside of any ADDRESS_MAP in 'test.bmm'.\n\n");
}

TEST_F(Segments, AMapWithoutSpacesTakesNoFile) {
    EXPECT_EQ(translate({"app.elf", {{0, {1}}}}), 4);
    EXPECT_THAT(alerts.text(), HasSubstr("'app.elf' finds no ADDRESS_SPACE in 'test.bmm'"));
}

TEST_F(Segments, AFailureThatTheReaderHasReportedIsNotReportedAgain) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    for (const int status : {4, 23}) {
        EXPECT_EQ(translate({.name = "app.elf", .sections = {{0, {1}}}, .sectionStatus = status}), status);
        EXPECT_EQ(alerts.take(), "\nERROR:Lanefill:86 - Cut section.\n\n");
    }
}

TEST_F(Segments, AnUnknownTagIsReportedOnce) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_NE(translate({"app.elf", {{0, {1}}}}, request({"none"}).get()), 0);
    EXPECT_THAT(messages.text(), HasSubstr("28-203"));
    EXPECT_EQ(alerts.text(), "");
}

// Tags.

TEST_F(Segments, ATagSelectsOneSpace) {
    AddressSpaceDefType* one = map.space("one", 0, "RAMB4", {"a[7:0]"});
    AddressSpaceDefType* two = map.space("two", 0, "RAMB4", {"b[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0, {7}}}}, request({"two"}).get()), 0);
    EXPECT_EQ(dumpData(one), "");
    EXPECT_EQ(dumpData(two), "lane b 0: 07\n");
}

TEST_F(Segments, ATagThatNamesAMapSelectsAllItsSpaces) {
    map.map("cpu", "PPC405");
    AddressSpaceDefType* one = map.space("one", 0x000, "RAMB4", {"a[7:0]"});
    AddressSpaceDefType* two = map.space("two", 0x200, "RAMB4", {"b[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0, {7}}, {0x200, {8}}}}, request({"cpu"}).get()), 0);
    EXPECT_EQ(dumpData(one), "lane a 0: 07\n");
    EXPECT_EQ(dumpData(two), "lane b 0: 08\n");
}

TEST_F(Segments, AnUnknownTagEndsTheFileWithTheStatusOfTheLookUp) {
    map.space("one", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0, {7}}}}, request({"other"}).get()), 11);
    EXPECT_THAT(messages.text(), HasSubstr("other"));
    const ScopedParameter legacy("memdata.debugLegacyMessages", true);
    EXPECT_EQ(translate({"app.elf", {{0, {7}}}}, request({"other"}).get()), 19);
    EXPECT_THAT(
        alerts.text(), HasSubstr("ERROR:Lanefill:80 - ADDRESS_SPACE or ADDRESS_MAP tag name 'other' was not found."));
}

TEST_F(Segments, FilesOfACountOfNoTagsTakeTheSpacesOneAfterTheOther) {
    AddressSpaceDefType* one = map.space("one", 0, "RAMB4", {"a[7:0]"});
    map.map("cpu", "PPC405");
    AddressSpaceDefType* two = map.space("two", 0, "RAMB4", {"b[7:0]"});
    const OwnedRequest next = request();
    next->tagCount = 0;
    EXPECT_EQ(translate({"one.elf", {{0, {1}}}}, next.get()), 0);
    EXPECT_EQ(translate({"two.elf", {{0, {2}}}}, next.get()), 0);
    EXPECT_EQ(dumpData(one), "lane a 0: 01\n");
    EXPECT_EQ(dumpData(two), "lane b 0: 02\n");
    EXPECT_EQ(translate({"three.elf", {{0, {3}}}}, next.get()), 4);
}

// Start addresses.

const TransformRangeType* rangeAt(const AddressSpaceDefType* space, u64 address) {
    const TransformRangeType* range = space->transformRanges;
    while (range != nullptr && range->start != address) range = range->next;
    return range;
}

TEST_F(Segments, AStartMovesTheFirstSectionAndLaterOnesKeepTheirGaps) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    const OwnedRequest node = request();
    node->start = {true, 0x4000};
    EXPECT_EQ(translate({"app.elf", {{0x10, {1, 2}}, {0x18, {3}}}}, node.get()), 0);
    ASSERT_NE(rangeAt(space, 0x10), nullptr);
    EXPECT_TRUE(rangeAt(space, 0x10)->hasStartAddress);
    EXPECT_EQ(rangeAt(space, 0x10)->startAddress, 0x4000u);
    EXPECT_EQ(rangeAt(space, 0x18)->startAddress, 0x4008u);                // 0x4002 and the gap of 6
    EXPECT_EQ(dumpData(space), "lane a 16: 01 02 00 00 00 00 00 00 03\n"); // no byte moved
}

TEST_F(Segments, AFileWithoutStartGoesBehindTheOneThatHadIt) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    const OwnedRequest first = request();
    first->start = {true, 0x4000};
    EXPECT_EQ(translate({"one.elf", {{0x10, {1, 2}}}}, first.get()), 0);
    const OwnedRequest second = request();
    EXPECT_EQ(translate({"two.elf", {{0x80, {3}}}}, second.get()), 0);
    EXPECT_EQ(rangeAt(space, 0x80)->startAddress, 0x4002u);
    EXPECT_TRUE(walk.nextStart.isSet);
    EXPECT_EQ(walk.nextStart.address, 0x4003u);
}

TEST_F(Segments, OverlappingSectionsHaveNoGap) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    const OwnedRequest node = request();
    node->start = {true, 0x4000};
    EXPECT_EQ(translate({"app.elf", {{0x10, {1, 2, 3, 4}}, {0x12, {9}}}}, node.get()), 0);
    EXPECT_EQ(rangeAt(space, 0x12)->startAddress, 0x4004u);
}

TEST_F(Segments, WithoutAnyStartThereIsNone) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({"app.elf", {{0x10, {1}}}}), 0);
    EXPECT_FALSE(rangeAt(space, 0x10)->hasStartAddress);
    EXPECT_FALSE(walk.nextStart.isSet);
}

// Boot addresses.

class Boot : public Segments {
protected:
    void SetUp() override { map.space("ram", 0, "RAMB4", {"a[7:0]"}); }
    int boot(u32 kind, u64 address, std::optional<u64> startup) {
        const OwnedRequest node = request();
        node->boot = {kind, address};
        return translate({"app.elf", {{0, {1}}}, startup}, node.get());
    }
    u64 kind() const { return map->defaultMap->mapWord1; }
    u64 address() const { return map->defaultMap->mapWord2; }
};

TEST_F(Boot, TheFirstRequestWithAValueStays) {
    EXPECT_EQ(boot(kBOOT_ADDRESS, 0x100, std::nullopt), 0);
    EXPECT_EQ(boot(kBOOT_ADDRESS, 0x200, 0x300), 0);
    EXPECT_EQ(boot(kBOOT_FROM_FILE, 0, 0x400), 0);
    EXPECT_EQ(kind(), kBOOT_ADDRESS);
    EXPECT_EQ(address(), 0x100u);
}

TEST_F(Boot, ARequestWithoutAValueTakesTheFilesAddress) {
    EXPECT_EQ(boot(kBOOT_FROM_FILE, 0, 0x300), 0);
    EXPECT_EQ(kind(), kBOOT_ADDRESS);
    EXPECT_EQ(address(), 0x300u);
}

TEST_F(Boot, ARequestWithoutAValueNeedsAFileWithAnAddress) {
    EXPECT_EQ(boot(kBOOT_FROM_FILE, 0, std::nullopt), 18);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:78 - CPU booting was requested from a file that doesn't contain a boot "
                             "address, 'app.elf'.\n\n");
}

TEST_F(Boot, WithoutRequestsTheLastFileWithAnAddressWins) {
    EXPECT_EQ(boot(kBOOT_NONE, 0, 0x300), 0);
    EXPECT_EQ(boot(kBOOT_NONE, 0, 0x400), 0);
    EXPECT_EQ(boot(kBOOT_NONE, 0, std::nullopt), 0);
    EXPECT_EQ(kind(), kBOOT_FROM_FILE);
    EXPECT_EQ(address(), 0x400u);
}

TEST_F(Boot, ARequestOverridesAFilesAddress) {
    EXPECT_EQ(boot(kBOOT_NONE, 0, 0x300), 0);
    EXPECT_EQ(boot(kBOOT_ADDRESS, 0x500, 0x300), 0);
    EXPECT_EQ(kind(), kBOOT_ADDRESS);
    EXPECT_EQ(address(), 0x500u);
}

// Files that can not be opened.

class OpenDataFile : public Segments {
protected:
    int open(const char* name) {
        OwnedFileSpec spec(CreateFileSpec(name));
        LNF_DataFile* file = nullptr;
        const int status = open_data_file(spec.get(), nullptr, 1, &file);
        EXPECT_EQ(file, nullptr);
        return status;
    }
};

TEST_F(OpenDataFile, ABitFileIsNoDataFile) {
    EXPECT_EQ(open("top.bit"), 1);
    EXPECT_EQ(open("top.rbt"), 1);
    EXPECT_EQ(messages.text(), "ERROR 28-294\nERROR 28-294\n");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - Data file 'top.bit' is a bit file, which holds no software.\n\n"
                             "\nERROR:Lanefill:86 - Data file 'top.rbt' is a bit file, which holds no software.\n\n");
}

TEST_F(OpenDataFile, AnUnknownFormatIsNoDataFile) {
    EXPECT_EQ(open("readme.txt"), 1);
    EXPECT_EQ(open("noextension"), 1);
    EXPECT_EQ(messages.text(), "ERROR 28-295\nERROR 28-295\n");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:3 - Unknown file extension on data file 'readme.txt'.\n\n"
                             "\nERROR:Lanefill:3 - Unknown file extension on data file 'noextension'.\n\n");
}

// The map is made undisturbed for each run; only what follows meets the failing allocation.
TEST_F(Segments, MemoryThatRunsOutIsAStatusAndLosesNothing) {
    const u32 mask = EnablePrintAlerts(0);
    int status = 7;
    u64 failing = 1;
    for (; status != 0; ++failing) {
        const u64 bytesBefore = getCurrentMemoryUsage();
        {
            TestMap fresh;
            fresh.space("ram", 0, "RAMB18", {"a[17:9] b[8:0]"});
            DataFileWalk freshWalk;
            FakeDataFile file({"app.elf", {{0, {1, 2, 3, 4}}, {8, {5}}}});
            const OwnedRequest node = request();
            failTrackedAllocation(failing);
            status = translateDataFile(&file, node.get(), fresh.get(), false, &freshWalk);
            failTrackedAllocation(0);
        }
        ASSERT_EQ(getCurrentMemoryUsage(), bytesBefore) << "allocation " << failing << " failing";
        ASSERT_LT(failing, 1000u);
    }
    EXPECT_GT(failing, 20u);
    EnablePrintAlerts(mask);
}

} // namespace
} // namespace memdata::testing

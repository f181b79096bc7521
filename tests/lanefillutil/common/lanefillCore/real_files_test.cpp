// real_files_test.cpp - data files of every format on their way from the disk into a map.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/memory.h"
#include "lanefillCore/data_files.h"
#include "lanefillCore/records/data_file_names.h"
#include "support/alerts.h"
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
class RealFiles : public ::testing::Test {
protected:
    RealFiles() : oldFolder_(std::filesystem::current_path()) { std::filesystem::current_path(folder.path()); }
    ~RealFiles() override {
        std::filesystem::current_path(oldFolder_);
        delete_BD_switch_data_list(&options.bdList);
    }

    BDSwitchDataType* add(const char* name) {
        BDSwitchDataType* request = create_BD_switch_data(CreateFileSpec(name));
        insert_BD_switch_data(&options.bdList, request);
        return request;
    }
    BDSwitchDataType* add(const char* name, std::string_view contents) {
        folder.write(name, contents);
        return add(name);
    }
    BDSwitchDataType* add(const char* name, const ElfFile& file) { return add(name, textOf(elfFile(file))); }
    static void tag(BDSwitchDataType* request, const char* name) {
        StrListExtend(&request->tagNames, newString(name));
        request->tagCount = static_cast<i32>(StrListCount(request->tagNames));
    }
    int run(const char* macroDefines = "") {
        return transform_data_files(&options, map.get(), is64Bit, macroDefines, nullptr);
    }
    static std::string names(const DataFileNameListType* list) {
        std::string text;
        for (const DataFileNameType* node = list->head; node != nullptr; node = node->next)
            text += std::string(text.empty() ? "" : " ") + node->name;
        return text;
    }

    // "ADDRESS:START" of each range, 0 for one without a start.
    static std::string starts(const AddressSpaceDefType* space) {
        std::string text;
        for (const TransformRangeType* range = space->transformRanges; range != nullptr; range = range->next)
            text += formatted("%llX:%llX ", range->start, range->hasStartAddress ? range->startAddress : 0);
        return text;
    }

    TestMap map;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    CapturedMessages messages;
    CmdStringOptionsType options{};
    bool is64Bit = false;

private:
    std::filesystem::path oldFolder_;
};

TEST_F(RealFiles, OfEveryFormatGiveTheSameBytes) {
    const ElfFile elf = {.segments = {{.address = 4, .bytes = {0x11, 0x22, 0x3F}}}};
    const std::string packed = gzipped(textOf(elfFile(elf)));
    const std::pair<const char*, std::string> files[] = {
        {"a.mem", "@4 11 22 3f\n"},
        {"b.vmem", "@4 11223F"},
        {"c.coe", "@4 memory_initialization_radix=16; memory_initialization_vector=11,22,3f;\n"},
        {"d.mif", "@4 00010001 00100010\n00111111\n"},
        {"e.elf", std::string(textOf(elfFile(elf)))},
        {"f.elf", packed},
        {"g.drf", packed},
    };
    for (const auto& [name, contents] : files) {
        TestMap fresh;
        AddressSpaceDefType* space = fresh.space("ram", 0, "RAMB4", {"hi[15:8] lo[7:0]"});
        delete_BD_switch_data_list(&options.bdList);
        add(name, contents);
        EXPECT_EQ(transform_data_files(&options, fresh.get(), is64Bit, "", nullptr), 0) << name;
        EXPECT_EQ(dumpData(space), "lane hi 2: 11 3F\nlane lo 2: 22\n") << name;
    }
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(RealFiles, AreStoredOneAfterTheOtherSoThatTheLastWins) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    add("first.mem", "@0 11 22 33\n");
    add("second.elf", {.segments = {{.address = 1, .bytes = {0xAA}}}});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 11 AA 33\n");
}

TEST_F(RealFiles, AreNotedInTheMappingAndInTheSpacesThatTookThem) {
    AddressSpaceDefType* low = map.space("low", 0, "RAMB4", {"a[7:0]"});
    AddressSpaceDefType* high = map.space("high", 0x1000, "RAMB4", {"b[7:0]"});
    add("both.mem", "@1000 1\n@0 2\n");
    add("high.mem", "@1008 3\n");
    add("none.mem", "@8000 4\n");
    add("both.mem");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(names(map->dataFiles), "both.mem high.mem none.mem");
    EXPECT_EQ(names(low->dataFiles), "both.mem");
    EXPECT_EQ(names(high->dataFiles), "both.mem high.mem");
}

TEST_F(RealFiles, TheLastOneTellsWhetherTheRunIsWide) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    add("wide.elf", {.bits = 64, .segments = {{.address = 0, .bytes = {1}}}});
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(is64Bit);
    add("narrow.elf", {.bits = 32, .segments = {{.address = 0, .bytes = {1}}}});
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(is64Bit);
    is64Bit = true;
    add("text.mem", "1");
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(is64Bit);
}

TEST_F(RealFiles, TheFirstOneThatFailsEndsTheRunBehindWhatWasStored) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    add("first.mem", "11");
    add("second.mem", "@1 22 zz\n");
    add("third.mem"); // is not there
    EXPECT_EQ(run(), 2);
    EXPECT_EQ(dumpData(space), "lane a 0: 11\n");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:11 - Unexpected symbol 'zz', 'valid data value' expected.\n"
                             "   Line #1, File \"second.mem\".\n@1 22 zz\n      ^\n\n");
}

TEST_F(RealFiles, MacrosOfTheOptionsHoldInTexts) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    add("a.mem", "@BASE VALUE\n");
    EXPECT_EQ(run("#define BASE 3\n#define VALUE 4F\n"), 0);
    EXPECT_EQ(dumpData(space), "lane a 3: 4F\n");
}

TEST_F(RealFiles, ATextThatSpeaksOfAnErrorIsReadToItsEnd) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    add("a.mem", "@0 11\n#error not this one\n22\n");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 11 22\n");
    EXPECT_EQ(
        alerts.text(), "\nERROR:Lanefill:86 - not this one\n   Line #2, File \"a.mem\".\n#error not this one\n^\n\n");
}

TEST_F(RealFiles, WithoutDataAreReportedByName) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    add("bare.elf", ElfFile{});
    EXPECT_EQ(run(), 2);
    EXPECT_EQ(alerts.take(), "\nERROR:Lanefill:9 - Data file 'bare.elf' had no section data.\n\n");
    delete_BD_switch_data_list(&options.bdList);
    add("blank.mem", "// nothing\n");
    EXPECT_EQ(run(), 2);
    EXPECT_EQ(alerts.take(), "\nERROR:Lanefill:9 - Data file 'blank.mem' had no section data.\n\n");
    delete_BD_switch_data_list(&options.bdList);
    add("empty.mif", "");
    EXPECT_EQ(run(), 17);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:53 - File 'empty.mif' is empty or has no MEM content.\n\n");
}

TEST_F(RealFiles, OfAnotherProcessorStopAheadOfTheirFirstSegment) {
    for (const char* processor : {"KESTREL", "KESTREL-LE", "RISCV", "PPC405"}) {
        TestMap fresh;
        fresh.map("cpu", processor, 0, "");
        AddressSpaceDefType* space = fresh.space("ram", 0, "RAMB4", {"a[7:0]"});
        delete_BD_switch_data_list(&options.bdList);
        add("arm.elf", {.machine = 40, .segments = {{.address = 0, .bytes = {7}}}});
        EXPECT_EQ(transform_data_files(&options, fresh.get(), is64Bit, "", nullptr), 23) << processor;
        EXPECT_EQ(dumpData(space), "") << processor;
    }
}

TEST_F(RealFiles, OfTheMapsProcessorOrOfAnyOtherArePassed) {
    const std::pair<const char*, u32> pairs[] = {
        {"ARM", 40}, {"KESTREL", 189}, {"KESTREL-LE", 189}, {"PPC405", 3}, {"ARM", 243}, {"KESTREL", 62}};
    for (const auto& [processor, machine] : pairs) {
        TestMap fresh;
        fresh.map("cpu", processor, 0, "");
        AddressSpaceDefType* space = fresh.space("ram", 0, "RAMB4", {"a[7:0]"});
        delete_BD_switch_data_list(&options.bdList);
        add("app.elf", {.machine = machine, .segments = {{.address = 0, .bytes = {7}}}});
        EXPECT_EQ(transform_data_files(&options, fresh.get(), is64Bit, "", nullptr), 0) << processor << machine;
        EXPECT_NE(dumpData(space), "") << processor << machine;
    }
}

TEST_F(RealFiles, ATagKeepsAFileToItsSpaces) {
    AddressSpaceDefType* one = map.space("one", 0, "RAMB4", {"a[7:0]"});
    AddressSpaceDefType* two = map.space("two", 0, "RAMB4", {"b[7:0]"});
    AddressSpaceDefType* three = map.space("three", 0, "RAMB4", {"c[7:0]"});
    tag(add("first.mem", "11"), "two");
    BDSwitchDataType* second = add("second.elf", {.segments = {{.address = 1, .bytes = {0x22}}}});
    tag(second, "three");
    tag(second, "two");
    add("third.mem", "@2 33\n");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(one), "lane a 2: 33\n");
    EXPECT_EQ(dumpData(two), "lane b 0: 11 22 33\n");
    EXPECT_EQ(dumpData(three), "lane c 1: 22 33\n");
}

TEST_F(RealFiles, AnUnknownTagStopsTheFilesBehindIt) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    tag(add("first.mem", "11"), "rom");
    add("second.mem", "22");
    EXPECT_NE(run(), 0);
    EXPECT_EQ(dumpData(space), "");
    EXPECT_EQ(messages.text(), "1 28-203 rom\n");
}

TEST_F(RealFiles, BehindAStartFollowWithoutOneOfTheirOwn) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    add("first.mem", "@10 1 2 3 4\n@20 5 6\n")->start = {true, 0x1000};
    add("second.elf", {.segments = {{.address = 0x40, .bytes = {1, 2}}}});
    add("third.mem", "@50 12 34\n")->start = {true, 0x8000};
    add("fourth.mem", "@60 56\n");
    EXPECT_EQ(run(), 0);
    // Two bytes at 0x10, a gap of 14, one at 0x20: 0x1011 is free then.
    EXPECT_EQ(starts(space), "10:1000 20:1010 40:1011 50:8000 60:8002 ");
}

TEST_F(RealFiles, AFileThatLiesOutsideOfEverySpaceUsesUpTheStartThatItTook) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    add("first.mem", "@10 1 2\n")->start = {true, 0x1000};
    add("second.mem", "@8000 3\n");
    add("third.mem", "@20 4\n");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(starts(space), "10:1000 20:0 ");
}

TEST_F(RealFiles, AnElfFileGivesTheBootAddressAndATextNone) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    const AddressMapType* stored = map.link("ram")->map;
    add("text.mem", "1");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(stored->mapWord1, 0u);
    delete_BD_switch_data_list(&options.bdList);
    add("app.elf", {.entry = 0x44, .segments = {{.address = 0, .bytes = {7}}}});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(stored->mapWord1, kBOOT_FROM_FILE);
    EXPECT_EQ(stored->mapWord2, 0x44u);
}

TEST_F(RealFiles, OfTwoBootRequestsTheFirstWithAnAddressStays) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    const AddressMapType* stored = map.link("ram")->map;
    add("plain.elf", {.entry = 0x10, .segments = {{.address = 0, .bytes = {7}}}});
    add("asked.elf", {.entry = 0x20, .segments = {{.address = 0, .bytes = {7}}}})->boot = {kBOOT_FROM_FILE, 0};
    add("text.mem", "1")->boot = {kBOOT_ADDRESS, 0x30};
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(stored->mapWord1, kBOOT_ADDRESS);
    EXPECT_EQ(stored->mapWord2, 0x20u);
}

TEST_F(RealFiles, ABootFromATextIsRefusedByName) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    add("text.mem", "1")->boot = {kBOOT_FROM_FILE, 0};
    EXPECT_EQ(run(), 18);
    EXPECT_EQ(alerts.text(),
        "\nERROR:Lanefill:78 - CPU booting was requested from a file that doesn't contain a boot address, 'text.mem'.\n\n");
}

TEST_F(RealFiles, AFileWhoseSegmentsLieOutsideOfEverySpaceSucceeds) {
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB4", {"a[7:0]"});
    add("app.elf", {.segments = {{.address = 0x80000000, .bytes = {1}}, {.address = 0x90000000, .bytes = {2}}}});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(dumpData(space), "");
    EXPECT_EQ(alerts.text(), "");
}

} // namespace
} // namespace memdata::testing

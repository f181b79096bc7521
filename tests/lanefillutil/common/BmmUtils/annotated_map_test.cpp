// annotated_map_test.cpp - mappings written back as map text.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_map.h"

#include "DeviceTableUtils/memory_lookup.h"
#include "FileUtils/FileUtils.h"
#include "ParseUtils/tokens.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"
#include "support/map_builder.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <regex>

using namespace memdata::testing;
using ::testing::HasSubstr;

namespace {

const char* const kBAR = "///////////////////////////////////////////////////////////////////////////////\n";

// A banner at an indent, with the blank lines about it.
std::string title(const std::string& text, const std::string& indent = "") {
    const std::string bar = indent + kBAR;
    return "\n" + bar + indent + "//\n" + indent + "// " + text + "\n" + indent + "//\n" + bar + "\n";
}

class AnnotatedMap : public ::testing::Test {
protected:
    // What an operation writes; it must give 0.
    static std::string written(const std::function<int(fileIODescriptor*)>& write, u32 attributes = kTEXT_WRITE) {
        fileIODescriptor* file = nullptr;
        EXPECT_EQ(OpenMemoryFile("map", attributes, nullptr, 0, &file), 0);
        EXPECT_EQ(write(file), 0);
        std::string text(GetFileStorageBase(file), GetFileLogicalSize(file));
        EXPECT_EQ(Close_File(&file), 0);
        return text;
    }
    std::string mapping() {
        return written([this](auto* file) { return output_BMM_addressMapping(file, map.get()); });
    }
    // The blocks of a space alone.
    static std::string blocks(AddressSpaceDefType* space) {
        return written([space](auto* file) { return output_BMM_busBlocks(file, space->ranges, 0); });
    }
    std::string lanes(const std::string& text, const char* memory = "RAMB16") {
        AddressSpaceDefType* space = map.space("s", 0, memory, {text});
        return written([space](auto* file) { return output_BMM_bitLanes(file, space->ranges->busBlocks[0], 0); });
    }

    TestMap map;
};

} // namespace

TEST_F(AnnotatedMap, ASpaceOfTheDefaultMapStandsAtTheMargin) {
    map.space("ram", 0x1000, "RAMB16", {"hi[15:8] lo[7:0]"});
    EXPECT_EQ(mapping(), title("Address space 'ram' 0X0000000000001000:0X0000000000001FFF (4 KBytes).") +
                             "ADDRESS_SPACE ram RAMB16 [0X0000000000001000:0X0000000000001FFF]\n"
                             "    BUS_BLOCK\n"
                             "        hi RAMB16 [15:8] [0:2047];\n"
                             "        lo RAMB16 [7:0] [0:2047];\n"
                             "    END_BUS_BLOCK;\n"
                             "END_ADDRESS_SPACE;\n\n");
}

TEST_F(AnnotatedMap, ANamedMapHoldsItsSpacesIndented) {
    map.map("cpu", "ARM", 7, "top/cpu");
    map.space("ram", 0, "RAMB16", {"hi[15:8] lo[7:0]", "hi2[15:8] lo2[7:0]"}, {.path = "top/ram/"});
    const std::string space = title("Processor 'cpu' address space 'ram' 0X0000000000000000:0X0000000000001FFF (8 "
                                    "KBytes).",
        "    ");
    EXPECT_EQ(mapping(), title("Processor 'cpu', ID 7, memory map.") + "ADDRESS_MAP cpu ARM 7 top/cpu\n" + space +
                             "    ADDRESS_SPACE ram RAMB16 [0X0000000000000000:0X0000000000001FFF] top/ram\n"
                             "        BUS_BLOCK\n"
                             "            hi RAMB16 [15:8] [0:2047];\n"
                             "            lo RAMB16 [7:0] [0:2047];\n"
                             "        END_BUS_BLOCK;\n"
                             "\n"
                             "        BUS_BLOCK\n"
                             "            hi2 RAMB16 [15:8] [2048:4095];\n"
                             "            lo2 RAMB16 [7:0] [2048:4095];\n"
                             "        END_BUS_BLOCK;\n"
                             "    END_ADDRESS_SPACE;\n\n"
                             "END_ADDRESS_MAP;\n\n");
}

TEST_F(AnnotatedMap, AMapWithoutAPathHasNoneWritten) {
    map.map("cpu", "KESTREL-LE", 4294967295, "");
    EXPECT_EQ(mapping(), title("Processor 'cpu', ID 4294967295, memory map.") +
                             "ADDRESS_MAP cpu KESTREL-LE 4294967295\nEND_ADDRESS_MAP;\n\n");
}

TEST_F(AnnotatedMap, WordsOfTheHeaderStandInTheirOrder) {
    map.space("ram", 0, "RAMB16", {"a[7:0]"}, {.wordAddressing = true, .eccCombined = true, .path = "top"});
    EXPECT_THAT(mapping(), HasSubstr("ADDRESS_SPACE ram RAMB16 WORD_ADDRESSING ECC_COMBINED_FOR_SIMULATION "
                                     "[0X0000000000000000:0X00000000000007FF] top\n"));
}

TEST_F(AnnotatedMap, AWordAddressedSpaceHasItsSizeInWords) {
    map.space("ram", 0, "RAMB16", {"a[7:0]"}, {.wordAddressing = true});
    EXPECT_THAT(mapping(), HasSubstr("// Address space 'ram' 0X0000000000000000:0X00000000000007FF (2 KWwords).\n"));
}

TEST_F(AnnotatedMap, AnInstanceKeepsTheEndOfItsPath) {
    AddressSpaceDefType* original = map.space("t", 0, "RAMB16", {"a[7:0]"}, {.isTemplate = true});
    AddressSpaceDefType* space = map.space("i", 0, "RAMB16", {"u/a[7:0]"}, {.path = "u/"});
    space->templateSpace = original;
    EXPECT_THAT(mapping(), HasSubstr(":0X00000000000007FF] u/\n"));
}

TEST_F(AnnotatedMap, ATemplatePrintsItsSize) {
    map.space("t", 0, "RAMB16", {"a[7:0]"}, {.wordAddressing = true, .isTemplate = true});
    EXPECT_EQ(mapping(), title("Address space template 't' 0X0000000000000800 (2 KWwords).") +
                             "ADDRESS_TEMPLATE t RAMB16 WORD_ADDRESSING [0X0000000000000800]\n"
                             "    BUS_BLOCK\n"
                             "        a RAMB16 [7:0] [0:2047];\n"
                             "    END_BUS_BLOCK;\n"
                             "END_ADDRESS_TEMPLATE;\n\n");
}

TEST_F(AnnotatedMap, TemplatesOfANamedMapNameIt) {
    AddressMapType* cpu = map.map("cpu", "ARM");
    map.space("t", 0, {{"RAMB16", {"a[7:0]"}}, {"RAMB4", {"b[7:0]"}}});
    EXPECT_THAT(written([cpu](auto* file) { return output_BMM_addressTemplates(file, cpu, 4); }),
        HasSubstr("    // Processor 'cpu' address space template 't' 0X0000000000000A00 (2 KBytes).\n    //\n    " +
                  std::string(kBAR) + "\n    ADDRESS_TEMPLATE t COMBINED [0X0000000000000A00]\n"));
}

TEST_F(AnnotatedMap, RangesHaveTitlesAndABlankLineBetweenThem) {
    map.space("mix", 0x100, {{"RAMB16", {"a[7:0]"}}, {"RAMB4", {"b[7:0]"}}});
    const std::string first = title("Address range 0X0000000000000100:0X00000000000008FF (2 KBytes).", "    ");
    const std::string second = title("Address range 0X0000000000000900:0X0000000000000AFF (512 Bytes).", "    ");
    EXPECT_EQ(mapping(), title("Address space 'mix' 0X0000000000000100:0X0000000000000AFF (2 KBytes).") +
                             "ADDRESS_SPACE mix COMBINED [0X0000000000000100:0X0000000000000AFF]\n" + first +
                             "    ADDRESS_RANGE RAMB16\n"
                             "        BUS_BLOCK\n"
                             "            a RAMB16 [7:0] [0:2047];\n"
                             "        END_BUS_BLOCK;\n"
                             "    END_ADDRESS_RANGE;\n\n" +
                             second +
                             "    ADDRESS_RANGE RAMB4\n"
                             "        BUS_BLOCK\n"
                             "            b RAMB4 [7:0] [0:511];\n"
                             "        END_BUS_BLOCK;\n"
                             "    END_ADDRESS_RANGE;\n"
                             "END_ADDRESS_SPACE;\n\n");
}

TEST_F(AnnotatedMap, CombinedWithOneRangePrintsTheRangesMemory) {
    map.space("ram", 0, {{"RAMB16", {"a[7:0]"}}}, {.style = kAddressSpaceStyleCombined});
    const std::string text = mapping();
    EXPECT_THAT(text, HasSubstr("ADDRESS_SPACE ram RAMB16 ["));
    EXPECT_THAT(text, ::testing::Not(HasSubstr("ADDRESS_RANGE")));
}

TEST_F(AnnotatedMap, ASpaceWithoutRangesHasNoBody) {
    AddressSpaceDefType* space = map.space("none", 0, std::vector<RangeText>{}, {.endAddress = 15});
    EXPECT_THAT(mapping(), HasSubstr("ADDRESS_SPACE none COMBINED [0X0000000000000000:0X000000000000000F]\n"
                                     "END_ADDRESS_SPACE;\n"));
    space->memoryTypeToken = get_token_element();
    set_token_element(space->memoryTypeToken, "RAMB36", 0, false, &kBRAM_RAMB36_KEYWORD, 0);
    EXPECT_THAT(mapping(), HasSubstr("ADDRESS_SPACE none RAMB36 ["));
    EXPECT_EQ(written([this](auto* file) { return output_BMM_addressRanges(file, map.link("none"), 4); }), "");
}

TEST_F(AnnotatedMap, OnlyTheLastPartOfADottedNameIsWritten) {
    map.space("a.b", 0, "RAMB16", {"x[7:0]"});
    EXPECT_THAT(mapping(), HasSubstr("ADDRESS_SPACE b RAMB16"));
}

TEST_F(AnnotatedMap, SpacesThatEndAlikeStandInTheOrderOfTheirMaking) {
    map.space("first", 0, "RAMB16", {"a[7:0]"});
    map.space("second", 0, "RAMB16", {"b[7:0]"});
    map.space("below", 0, "RAMB4", {"c[7:0]"});
    map.space("third", 0, "RAMB16", {"d[7:0]"});
    std::string names;
    const std::string text = mapping();
    const std::regex header("ADDRESS_SPACE (\\w+) RAMB");
    for (std::sregex_iterator at(text.begin(), text.end(), header); at != std::sregex_iterator(); ++at)
        names += (*at)[1].str() + " ";
    EXPECT_EQ(names, "below first second third ");
    EXPECT_EQ(map->defaultMap->addressSpaces->next->space->name, std::string("third")); // as they are held
}

TEST_F(AnnotatedMap, LanesPrintAsTheyWereWritten) {
    EXPECT_EQ(lanes("a[0:7] b[15:8][0:99] c[16:16][5:5] d[17:17][0:0]"), "a RAMB16 [0:7] [0:2047];\n"
                                                                         "b RAMB16 [15:8] [0:99];\n"
                                                                         "c RAMB16 [16:16] [5:5];\n"
                                                                         "d [17:17];\n");
}

TEST_F(AnnotatedMap, ALaneShowsItsOwnMemoryAndItsCode) {
    EXPECT_EQ(lanes("a[7:0] RAMB18 e[14:8] ECCH32-7 f[15:15][0:0] ECCHSIAO64-8"), "a RAMB18 [7:0] [0:2303];\n"
                                                                                  "e RAMB16 ECCH32-7 [14:8] [0:2339];\n"
                                                                                  "f ECCHSIAO64-8 [15:15];\n");
}

TEST_F(AnnotatedMap, ARelativePathBeginsWithItsMark) {
    EXPECT_EQ(lanes("top/a[7:0][0:0] */"), "*/top/a [7:0];\n");
}

TEST_F(AnnotatedMap, FilesStandInTheirOrderAheadOfTheLocation) {
    EXPECT_EQ(lanes("a[7:0][0:0] INIT=i.mem INPUT=d/in.mem OUTPUT=out.mem LOC=X3Y7 b[8:8][0:0] INPUT=x PLACED=X1Y2"),
        "a [7:0] OUTPUT = out.mem INPUT = d/in.mem INIT = i.mem LOC = X3Y7;\n"
        "b [8:8] INPUT = x PLACED = X1Y2;\n");
}

TEST_F(AnnotatedMap, AFileNameThatIsNoSingleWordIsQuoted) {
    map.space("s", 0, "RAMB16", {"a[7:0][0:0] INIT=i.mem"});
    DeleteFileSpec(&map.lane("a")->lane->initFile);
    map.lane("a")->lane->initFile = CreateFileSpec("my data/a 1.mem");
    EXPECT_EQ(blocks(map.link("s")->space), "BUS_BLOCK\n    a [7:0] INIT = \"my data/a 1.mem\";\nEND_BUS_BLOCK;\n");
}

TEST_F(AnnotatedMap, LocationsOfTheOldestMemoriesAreRowsAndColumns) {
    EXPECT_EQ(lanes("a[7:0][0:0] LOC=R7C3", "RAMB4"), "a [7:0] LOC = R7C3;\n");
}

TEST_F(AnnotatedMap, OnlyBlockRamsHaveALocation) {
    map.define("mine", 64, {8});
    EXPECT_EQ(lanes("a[7:0][0:0] LOC=X3Y7", "mine"), "a [7:0];\n");
}

TEST_F(AnnotatedMap, AFinishedGenericMemoryHasNoAddressesWritten) {
    map.define("MEMORY", 64, {8, 16});
    EXPECT_EQ(lanes("a[7:0] b[15:8][64:127] c[23:16][0:9]", "MEMORY"), "a [7:0];\n"
                                                                       "b [15:8];\n"
                                                                       "c MEMORY [23:16] [0:9];\n");
}

TEST_F(AnnotatedMap, AGenericMemoryIsNotNamedASecondTimeInItsRange) {
    map.define("MEMORY", 64, {8});
    EXPECT_EQ(blocks(map.space("s", 0, "MEMORY", {"a[7:0][3:9]"})), "BUS_BLOCK\n    a [7:0] [3:9];\nEND_BUS_BLOCK;\n");
}

TEST_F(AnnotatedMap, AGenericMemoryInARangeOfAnotherIsNamed) {
    map.define("MEMORY", 64, {8});
    EXPECT_EQ(blocks(map.space("s", 0, "RAMB16", {"a[7:0] MEMORY"})),
        "BUS_BLOCK\n    a MEMORY [7:0] [0:63];\nEND_BUS_BLOCK;\n");
}

TEST_F(AnnotatedMap, TheKindOfTheFirstLaneStandsFirst) {
    EXPECT_EQ(blocks(map.space("s", 0, "RAMB16",
                  {"e[14:8][0:0] ECCH32-7 d[7:0][0:0]", "d2[7:0][0:0] e2[14:8][0:0] "
                                                        "ECCH32-7"})),
        "BUS_BLOCK\n"
        "    e ECCH32-7 [14:8];\n"
        "    d [7:0];\n"
        "END_BUS_BLOCK;\n"
        "\n"
        "BUS_BLOCK\n"
        "    d2 [7:0];\n"
        "    e2 ECCH32-7 [14:8];\n"
        "END_BUS_BLOCK;\n");
}

TEST_F(AnnotatedMap, LanesOfABlockWithoutAnOrderStandDataFirst) {
    AddressSpaceDefType* space = map.space("s", 0, "RAMB16", {"e[14:8][0:0] ECCH32-7 d[7:0][0:0]"});
    space->ranges->busBlocks[0]->laneListOrder = kBitLaneListOrderNone;
    EXPECT_EQ(blocks(space), "BUS_BLOCK\n    d [7:0];\n    e ECCH32-7 [14:8];\nEND_BUS_BLOCK;\n");
}

TEST_F(AnnotatedMap, TurnedLanesStandInTheirWrittenPlace) {
    map.map("cpu", "ARM");
    AddressSpaceDefType* space = map.space("s", 0, "RAMB16", {"hi[15:8][0:0] lo[7:0][0:0]"});
    EXPECT_STREQ(space->ranges->busBlocks[0]->lanes[0]->lane->name, "lo");
    EXPECT_EQ(blocks(space), "BUS_BLOCK\n    hi [15:8];\n    lo [7:0];\nEND_BUS_BLOCK;\n");
}

TEST_F(AnnotatedMap, AListOfMemoriesIsWrittenByItself) {
    const u32 widths[] = {8, 16};
    create_MEMORY_extended_type("sram", kUSER_MEMORY_CLASS, nullptr, 16, widths, 2);
    const auto write = [](auto* file) { return output_user_defined_memories(file, get_MEMORY_extended_list(), 2); };
    EXPECT_EQ(written(write), title("User defined memory device of 0X0000000000000010 bytes (16 Bytes).", "  ") +
                                  "  DEFINE_MEMORY_TYPE sram [0X0000000000000010] 8 16;\n\n");
    EXPECT_EQ(written([](auto* file) { return output_user_defined_memories(file, nullptr, 2); }), "");
}

TEST_F(AnnotatedMap, TheUsersMemoriesComeFirst) {
    const u32 widths[] = {8, 16, 32};
    create_MEMORY_extended_type("sram", kUSER_MEMORY_CLASS, nullptr, 0x600, widths, 3);
    create_MEMORY_extended_type("MEMORY", kGENERIC_MEMORY_CLASS, nullptr, 0, widths, 1);
    create_MEMORY_extended_type("flash", kUSER_MEMORY_CLASS, nullptr, 16, widths, 1);
    EXPECT_EQ(mapping(), title("User defined memory device of 0X0000000000000600 bytes (1 KBytes).") +
                             "DEFINE_MEMORY_TYPE sram [0X0000000000000600] 8 16 32;\n\n" +
                             title("User defined memory device of 0X0000000000000010 bytes (16 Bytes).") +
                             "DEFINE_MEMORY_TYPE flash [0X0000000000000010] 8;\n\n");
}

TEST_F(AnnotatedMap, ATitleCanHaveItsTextTwice) {
    const auto twice = [](auto* file) { return output_BMM_title_comment(file, 2, "yes", "%s %ld", "map", 3u); };
    const std::string bar = std::string("  ") + kBAR;
    EXPECT_EQ(written(twice), "\n" + bar + "  //\n  // map 3\n  //\n  // map 3\n  //\n" + bar + "\n");
    const auto once = [](auto* file) { return output_BMM_title_comment(file, 0, nullptr, "%s", "map"); };
    EXPECT_EQ(written(once), title("map"));
    EXPECT_EQ(written([](auto* file) { return output_pad_position(file, 3); }), "   ");
}

TEST_F(AnnotatedMap, LinesEndAsTheFileSays) {
    map.space("s", 0, "RAMB16", {"a[7:0][0:0]"});
    const auto write = [this](auto* file) { return output_BMM_busBlocks(file, map.link("s")->space->ranges, 0); };
    EXPECT_EQ(written(write, kWRITE_ACCESS | kTEXT_CR_LF), "BUS_BLOCK\r\n    a [7:0];\r\nEND_BUS_BLOCK;\r\n");
}

TEST_F(AnnotatedMap, NumbersKeepAll64Bits) {
    AddressSpaceDefType* space = map.space("s", 0xFEDCBA9876543210, "RAMB16", {"a[7:0][0:18446744073709551615]"});
    EXPECT_EQ(blocks(space), "BUS_BLOCK\n    a RAMB16 [7:0] [0:18446744073709551615];\nEND_BUS_BLOCK;\n");
    EXPECT_THAT(mapping(), HasSubstr("[0XFEDCBA9876543210:0XFEDCBA9876543A0F]\n"));
}

TEST_F(AnnotatedMap, NullArgumentsWriteNothing) {
    EXPECT_EQ(output_BMM_addressMapping(nullptr, map.get()), 3);
    EXPECT_EQ(output_user_defined_memories(nullptr, nullptr, 0), 3);
    EXPECT_EQ(output_BMM_addressTemplates(nullptr, nullptr, 0), 3);
    EXPECT_EQ(output_BMM_addressSpaces(nullptr, nullptr, 0), 3);
    EXPECT_EQ(output_BMM_addressRanges(nullptr, nullptr, 0), 3);
    EXPECT_EQ(output_BMM_busBlocks(nullptr, nullptr, 0), 3);
    EXPECT_EQ(output_BMM_bitLanes(nullptr, nullptr, 0), 3);
    EXPECT_EQ(output_BMM_bitLanes_values(nullptr, nullptr, 0, 0), 3);
    EXPECT_EQ(output_BMM_title_comment(nullptr, 0, nullptr, "x"), 3);
    EXPECT_EQ(output_pad_position(nullptr, 1), 3);
    EXPECT_EQ(written([](auto* file) { return output_BMM_addressMapping(file, nullptr); }), "");
    EXPECT_EQ(written([](auto* file) { return output_BMM_addressSpaces(file, nullptr, 0); }), "");
    EXPECT_EQ(written([](auto* file) { return output_BMM_bitLanes_values(file, nullptr, 0, 0); }), "");
}

TEST_F(AnnotatedMap, AMapLargerThanItsBufferIsWhole) {
    std::vector<std::string> texts;
    for (int i = 0; i < 3000; ++i) texts.push_back("lane_number_" + std::to_string(i) + "[7:0][0:0]");
    const std::string text = blocks(map.space("s", 0, "RAMB16", texts));
    EXPECT_EQ(text.size(), std::string("BUS_BLOCK\n    lane_number_ [7:0];\nEND_BUS_BLOCK;\n\n").size() * 3000 - 1 +
                               10 + 90 * 2 + 900 * 3 + 2000 * 4);
    EXPECT_THAT(text, ::testing::EndsWith("lane_number_2999 [7:0];\nEND_BUS_BLOCK;\n"));
}

struct SizeCase {
    u64 size;
    const char* bytes;
    const char* words;
};

TEST(SpaceSizeString, RoundsDownToTheUnit) {
    const memdata::SystemResources resources;
    const SizeCase cases[] = {
        {1, "1 Bytes", "1 Wwords"},
        {1023, "1023 Bytes", "1023 Wwords"},
        {1024, "1 KBytes", "1 KWwords"},
        {1536, "1 KBytes", "1 KWwords"},
        {2048, "2 KBytes", "2 KWwords"},
        {0xFFFFF, "1023 KBytes", "1023 KWwords"},
        {0x100000, "1 MBytes", "1 MWwords"},
        {0x3FFFFFFF, "1023 MBytes", "1023 MWwords"},
        {0x40000000, "1 GBytes", "1 GWwords"},
        {UINT64_MAX, "17179869183 GBytes", "17179869183 GWwords"},
    };
    for (const SizeCase& c : cases) {
        const memdata::OwnedString bytes(create_space_size_string(1, c.size, false));
        const memdata::OwnedString words(create_space_size_string(1, c.size, true));
        EXPECT_STREQ(bytes.get(), c.bytes);
        EXPECT_STREQ(words.get(), c.words);
    }
}

namespace {

class AnnotatedMapFile : public ::testing::Test {
protected:
    int write(const std::string& name, const char* suffix = "") {
        const memdata::OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        return output_BMM_file(spec.get(), map.get(), suffix);
    }

    TemporaryFolder folder;
    TestMap map{folder.file("board.v").c_str()};
};

} // namespace

TEST_F(AnnotatedMapFile, BeginsWithWhatItIs) {
    map.space("s", 0, "RAMB16", {"a[7:0]"});
    EXPECT_EQ(write(folder.file("out")), 0);
    const std::string text = readFile(folder.file("out.bmm"));
    EXPECT_EQ(text.find("// BMM LOC annotation file.\n//\n// "), 0u);
    EXPECT_THAT(text, HasSubstr("\n\n" + title("Address space 's' 0X0000000000000000:0X00000000000007FF (2 KBytes).")));
    EXPECT_EQ(folder.listing(), "out.bmm\n");
}

TEST_F(AnnotatedMapFile, AStarMeansTheNameOfTheMapping) {
    EXPECT_EQ(write("*"), 0);
    EXPECT_EQ(folder.listing(), "board.bmm\n");
}

TEST_F(AnnotatedMapFile, TheSuffixStandsBehindTheBaseName) {
    EXPECT_EQ(write(folder.file("out.txt"), "_bd"), 0);
    EXPECT_EQ(folder.listing(), "out_bd.bmm\n");
}

TEST_F(AnnotatedMapFile, AnExistingFileIsKeptUnlessItMayBeOverwritten) {
    folder.write("out.bmm", "old");
    CapturedAlerts alerts;
    EXPECT_EQ(write(folder.file("out")), 1);
    EXPECT_THAT(alerts.text(), HasSubstr("ERROR:Lanefill:117 - "));
    EXPECT_EQ(readFile(folder.file("out.bmm")), "old");
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    EXPECT_EQ(write(folder.file("out")), 0);
    EXPECT_NE(readFile(folder.file("out.bmm")), "old");
}

TEST_F(AnnotatedMapFile, AFileThatCanNotBeMadeGivesOne) {
    CapturedAlerts alerts;
    EXPECT_EQ(write(folder.file("nowhere/out.bmm")), 1);
    EXPECT_THAT(alerts.text(), HasSubstr("ERROR:Lanefill:2 - "));
    EXPECT_EQ(folder.listing(), "");
}

TEST_F(AnnotatedMapFile, AFullDeviceGivesOne) {
    CapturedAlerts alerts;
    fileIODescriptor* file = nullptr;
    ASSERT_EQ(Open_File("/dev/full", kTEXT_WRITE, &file), 0);
    std::vector<std::string> texts;
    for (int i = 0; i < 4000; ++i) texts.push_back("l" + std::to_string(i) + "[7:0]");
    map.space("s", 0, "RAMB16", texts);
    EXPECT_EQ(output_BMM_addressMapping(file, map.get()), 1);
    memdata::abandonFile(&file);
}

TEST_F(AnnotatedMapFile, WithoutAMappingNothingIsDone) {
    const memdata::OwnedFileSpec spec(CreateFileSpec(folder.file("out.bmm").c_str()));
    EXPECT_EQ(output_BMM_file(spec.get(), nullptr, ""), 0);
    EXPECT_EQ(folder.listing(), "");
    EXPECT_EQ(output_BMM_file(nullptr, map.get(), ""), 3);
}

TEST_F(AnnotatedMapFile, WithoutMemoryNoFileIsLeft) {
    map.space("s", 0, "RAMB16", {"a[7:0] LOC=X0Y0"});
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    const auto sweep = sweepAllocationFaults([&] { return write("*"); });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 5u);
}

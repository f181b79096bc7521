// map_parser_test.cpp - statements of a map file, and the maps of processors.
// SPDX-License-Identifier: Apache-2.0
#include "map_text.h"

using namespace memdata;
using namespace memdata::testing;

namespace {

const std::string kRAM = byteSpace("ram", "u0");

TEST(MapFile, MayHoldNothing) {
    MapText map;
    EXPECT_EQ(map.read("// nothing\n"), 0);
    EXPECT_EQ(map->statementCount, 0u);
    EXPECT_EQ(map.dump(), "mapping map.bmm\n");
}

TEST(MapFile, PutsASpaceOutsideOfMapsIntoTheUnnamedOne) {
    MapText map;
    ASSERT_EQ(map.read(kRAM), 0) << map.alerts();
    EXPECT_EQ(map.dump(), "mapping map.bmm spaces 1 statements 1\n"
                          "map \"\" PPC405 0\n"
                          "  space ram 0x0-0x7FF\n"
                          "    range RAMB16 0x0-0x7FF bus 8 lane 8 words 2048 devices 1\n"
                          "      block 0x0-0x7FF\n"
                          "        u0[7:0][0:2047]\n");
}

TEST(MapFile, AddsToWhatEarlierFilesSaid) {
    MapText map;
    ASSERT_EQ(map.read(kRAM), 0);
    ASSERT_EQ(map.read(byteSpace("rom", "u1", "0x1000")), 0) << map.alerts();
    EXPECT_EQ(listSpaces(map.get()), ": ram rom\n");
    EXPECT_EQ(map->addressMapCount, 1u);
    EXPECT_EQ(map->statementCount, 2u);
}

TEST(MapFile, ExpectsAStatement) {
    MapText map;
    EXPECT_EQ(map.read("\nBUS_BLOCK\n"), 3);
    EXPECT_EQ(map.alerts(),
        alertAt("11 - Unexpected symbol 'BUS_BLOCK', 'DEFINE_MEMORY_TYPE, ADDRESS_INSTANCE, ADDRESS_TEMPLATE, "
                "ADDRESS_MAP, or ADDRESS_SPACE' expected.",
            2, "BUS_BLOCK", 0));
}

TEST(MapFile, NamesItsKeywordsInMessagesByTheirRequiredRows) {
    struct Row {
        const token_type* type;
        const char* word;
    };
    constexpr Row kROWS[] = {{&kADDRESS_MAP_KEYWORD, "ADDRESS_MAP"}, {&kEND_ADDRESS_MAP_KEYWORD, "END_ADDRESS_MAP"},
        {&kEND_ADDRESS_SPACE_KEYWORD, "END_ADDRESS_BLOCK"}, {&kEND_ADDRESS_TEMPLATE_KEYWORD, "END_ADDRESS_TEMPLATE"},
        {&kADDRESS_RANGE_KEYWORD, "ADDRESS_SPACE"}, {&kEND_ADDRESS_RANGE_KEYWORD, "END_ADDRESS_SPACE"},
        {&kBUS_BLOCK_KEYWORD, "ADDRESS_RANGE"}, {&kEND_BUS_BLOCK_KEYWORD, "END_ADDRESS_RANGE"}};
    for (const Row& row : kROWS) EXPECT_STREQ(blockStructureWord(*row.type), row.word);
}

TEST(MapFile, EndsAtTheFirstFailure) {
    MapText map;
    EXPECT_EQ(map.read(kRAM + "oops\n" + byteSpace("rom", "u1", "0x1000")), 3);
    EXPECT_EQ(listSpaces(map.get()), ": ram\n");
}

TEST(MapFile, KnowsDirectivesAndMacros) {
    MapText map;
    ASSERT_EQ(map.read("#define WIDTH 7\n"
                       "#function lane(n)\n"
                       "    ram_##n [WIDTH:0];\n"
                       "#endfunction\n"
                       "#if 1\n"
                       "ADDRESS_SPACE ram RAMB16 [0:0x7FF]\n"
                       "  BUS_BLOCK\n"
                       "#ifdef WIDTH\n"
                       "    lane(3)\n"
                       "#else\n"
                       "    nothing [1:0];\n"
                       "#endif\n"
                       "  END_BUS_BLOCK;\n"
                       "END_ADDRESS_SPACE;\n"
                       "#endif\n"),
        0)
        << map.alerts();
    EXPECT_STREQ(map.lane()->lane->name, "ram_3");
}

TEST(MapFile, TellsTheMacroInWhichATokenStands) {
    MapText map;
    EXPECT_EQ(map.read("#define BODY ADDRESS_SPACE ram 5\nBODY\n"), 3);
    EXPECT_EQ(map.alerts(), "\nERROR:Lanefill:11 - Unexpected symbol '5', 'ADDRESS_SPACE memory type' expected.\n"
                            "   Line #1, Macro \"BODY\".\nADDRESS_SPACE ram 5\n                  ^\n"
                            "   Line #2, File \"map.bmm\".\n\n");
}

TEST(Operations, OfOtherRunsEndTheFileSilently) {
    MapText map({"implementation"});
    EXPECT_EQ(map.read(kRAM + "WORKFLOW_OPERATION simulation, synthesis;\n this is not looked at ["), 0);
    EXPECT_EQ(map.alerts(), "");
    EXPECT_EQ(listSpaces(map.get()), ": ram\n");
}

TEST(Operations, OfThisRunLetTheFileGoOn) {
    MapText map({"implementation", "simulation"});
    EXPECT_EQ(map.read("WORKFLOW_OPERATION synthesis, simulation;\n" + kRAM), 0);
    EXPECT_EQ(listSpaces(map.get()), ": ram\n");
}

TEST(Operations, CompareWithCase) {
    MapText map({"implementation"});
    EXPECT_EQ(map.read("WORKFLOW_OPERATION Implementation;\n" + kRAM), 0);
    EXPECT_EQ(listSpaces(map.get()), "");
}

TEST(Operations, OfARunWithoutAListAreThoseOfOthers) {
    MapText map;
    EXPECT_EQ(map.read("WORKFLOW_OPERATION all;\n" + kRAM), 0);
    EXPECT_EQ(listSpaces(map.get()), "");
}

TEST(Operations, AreIdentifiersWithCommasBetween) {
    MapText map({"a"});
    EXPECT_EQ(map.read("WORKFLOW_OPERATION a, 5;\n"), 3);
    EXPECT_EQ(map.alerts(), alertAt("11 - Unexpected symbol '5', 'non identifier WORKFLOW_OPERATION type' expected.", 1,
                                "WORKFLOW_OPERATION a, 5;", 22));
    EXPECT_EQ(map.read("WORKFLOW_OPERATION a b;\n"), 3);
    EXPECT_EQ(map.alerts(),
        alertAt("15 - Missing statement terminator. 'b' found, ';' expected.", 1, "WORKFLOW_OPERATION a b;", 21));
}

TEST(ProcessorMap, HoldsItsSpacesUnderItsName) {
    MapText map;
    ASSERT_EQ(
        map.read("ADDRESS_MAP cpu0 RISCV 7 top/cpu0\n" + kRAM + byteSpace("rom", "u1", "0x1000") +
                 "END_ADDRESS_MAP;\nADDRESS_MAP cpu1 kestrel 0\n" + byteSpace("ram", "u0") + "END_ADDRESS_MAP;\n"),
        0)
        << map.alerts();
    EXPECT_EQ(listSpaces(map.get()), "cpu0: cpu0.ram cpu0.rom\ncpu1: cpu1.ram\n");
    const AddressMapType* first = map->addressMaps;
    EXPECT_EQ(first->processorType, kPROCESSOR_RISCV);
    EXPECT_EQ(first->processorId, 7u);
    EXPECT_STREQ(first->instancePath, "top/cpu0");
    EXPECT_EQ(first->next->processorType, kPROCESSOR_KESTREL);
    EXPECT_STREQ(first->next->instancePath, "");
    EXPECT_EQ(map->statementCount, 5u);
}

TEST(ProcessorMap, MayBeEmpty) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_MAP cpu ARM 0 END_ADDRESS_MAP;"), 0) << map.alerts();
    EXPECT_EQ(map.read("ADDRESS_MAP cpu1 ARM 0 top/cpu END_ADDRESS_MAP;"), 0) << map.alerts();
    EXPECT_EQ(map->addressMapCount, 2u);
}

TEST(ProcessorMap, KnowsAllProcessorWordsInAnyCase) {
    struct Row {
        const char* word;
        u64 type;
    };
    constexpr Row kROWS[] = {{"PPC405", kPROCESSOR_PPC405}, {"ppc440", kPROCESSOR_PPC440},
        {"Kestrel", kPROCESSOR_KESTREL}, {"WRENLET", kPROCESSOR_WRENLET}, {"kestrel-le", kPROCESSOR_KESTREL_LE},
        {"arm", kPROCESSOR_ARM}, {"CONFIGPROM", kPROCESSOR_CONFIGPROM}, {"riscv", kPROCESSOR_RISCV}};
    for (const Row& row : kROWS) {
        MapText map;
        EXPECT_EQ(map.read(std::string("ADDRESS_MAP cpu ") + row.word + " 1 END_ADDRESS_MAP;"), 0) << row.word;
        EXPECT_EQ(map->addressMaps->processorType, row.type) << row.word;
    }
}

TEST(ProcessorMap, OfAWordThatWasAddedHasATypeOfItsOwn) {
    MapText map;
    ASSERT_EQ(extend_token_symbol_set(&bmm_keyword_set, "MYCPU", true, &kPROCESSOR_TYPE_TOKEN, nullptr), 0);
    ASSERT_EQ(map.read("ADDRESS_MAP cpu MYCPU 1 END_ADDRESS_MAP;"), 0) << map.alerts();
    EXPECT_EQ(map->addressMaps->processorType, 0x100u);
}

TEST(ProcessorMap, KeepsThirtyTwoBitsOfItsNumber) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_MAP cpu ARM 0x123456789 END_ADDRESS_MAP;"), 0);
    EXPECT_EQ(map->addressMaps->processorId, 0x23456789u);
}

TEST(ProcessorMap, MayShareItsNumberWithAnother) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_MAP a ARM 1 END_ADDRESS_MAP; ADDRESS_MAP b ARM 1 END_ADDRESS_MAP;"), 0);
    EXPECT_EQ(map.alerts(), "");
}

TEST(ProcessorMap, HasAPathWithoutATrailingSlash) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_MAP cpu ARM 0 top/cpu/\n" + kRAM + "END_ADDRESS_MAP;"), 0) << map.alerts();
    EXPECT_STREQ(map->addressMaps->instancePath, "top/cpu");
}

TEST(ProcessorMap, ComplainsOfItsHeader) {
    struct Case {
        const char* text;
        const char* alert;
        size_t column;
    };
    constexpr Case kCASES[] = {
        {"ADDRESS_MAP ; ARM 0", "11 - Unexpected symbol ';', 'ADDRESS_MAP name' expected.", 12},
        {"ADDRESS_MAP cpu Z80 0", "6 - Illegal token 'Z80', 'proccesor type keyword (PPC405)' expected.", 16},
        {"ADDRESS_MAP cpu ARM x", "11 - Unexpected symbol 'x', 'numeric proccesor ID value' expected.", 20},
        {"ADDRESS_MAP cpu ARM 0 ; x", "11 - Unexpected symbol ';', 'BRAM instance name' expected.", 22},
        {"ADDRESS_MAP cpu ARM 0 top BUS_BLOCK", "14 - Missing keyword. 'BUS_BLOCK' found, 'END_ADDRESS_MAP' expected.",
            26},
        {"ADDRESS_MAP cpu ARM 0 END_ADDRESS_MAP x", "15 - Missing statement terminator. 'x' found, ';' expected.", 38},
    };
    for (const Case& c : kCASES) {
        MapText map;
        EXPECT_EQ(map.read(c.text + std::string("\n")), 3) << c.text;
        EXPECT_EQ(map.alerts(), alertAt(c.alert, 1, c.text, c.column));
    }
}

TEST(ProcessorMap, NeedsANameOfItsOwnAmongMapsAndSpaces) {
    for (const char* earlier : {"ADDRESS_MAP ram ARM 0 END_ADDRESS_MAP;\n", ""}) {
        MapText map;
        const std::string first = *earlier == '\0' ? kRAM : earlier;
        EXPECT_EQ(map.read(first + "ADDRESS_MAP ram ARM 1 END_ADDRESS_MAP;"), 3);
        EXPECT_EQ(map.messages(), "1 28-209 ram\n");
        EXPECT_EQ(map.alerts(), "");
    }
}

TEST(ProcessorMap, GivesTheNumberedAlertOfATakenNameOnlyWhenAsked) {
    MapText map;
    const ScopedParameter legacy("memdata.debugLegacyMessages", "true");
    EXPECT_EQ(map.read("ADDRESS_MAP a ARM 0 END_ADDRESS_MAP;\nADDRESS_MAP a ARM 1 END_ADDRESS_MAP;\n"), 3);
    EXPECT_EQ(map.messages(), "1 28-209 a\n");
    EXPECT_EQ(map.alerts(), alertAt("34 - Duplicate ADDRESS_SPACE or ADDRESS_MAP name usage 'a'.", 2,
                                "ADDRESS_MAP a ARM 1 END_ADDRESS_MAP;", 12));
}

TEST(RootedMap, PutsTheRootAheadOfNamesAndPaths) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_MAP cpu ARM 0 sub/cpu\nADDRESS_SPACE x RAMB16 [0:0x7FF] mem\nBUS_BLOCK\nu1 [7:0];\n"
                       "END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\nEND_ADDRESS_MAP;\n",
                  "a/b"),
        0)
        << map.alerts();
    EXPECT_STREQ(map->addressMaps->name, "a_b_cpu");
    EXPECT_STREQ(map->addressMaps->instancePath, "a/b/sub/cpu");
    EXPECT_EQ(listSpaces(map.get()), "a_b_cpu: a_b_cpu.a_b_x\n");
    EXPECT_STREQ(map->addressMaps->addressSpaces->space->instancePath, "a/b/mem");
}

TEST(RootedMap, NamesSpacesAndLanesOfTheUnnamedMapToo) {
    MapText map;
    ASSERT_EQ(map.read(byteSpace("x", "u1"), "a/b"), 0) << map.alerts();
    EXPECT_STREQ(map.space()->name, "a_b_x");
    EXPECT_STREQ(map.lane()->lane->name, "a/b/u1");
    EXPECT_EQ(map.space()->instancePath, nullptr);
}

TEST(RootedMap, TakesThePathOfAnOlderToolFromTheName) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_MAP kestrel_0 KESTREL 0\n" + byteSpace("kestrel_0_bus_combined", "u1") +
                           byteSpace("kestrel_1", "u2", "0x1000") + "END_ADDRESS_MAP;\n",
                  "top"),
        0)
        << map.alerts();
    EXPECT_STREQ(map->addressMaps->instancePath, "top/kestrel_0");
    const AddressSpaceLinkType* link = map->addressMaps->addressSpaces;
    EXPECT_STREQ(link->space->instancePath, "top/kestrel_0_bus/kestrel_0_bus");
    EXPECT_STREQ(link->next->space->instancePath, "top/kestrel_1");
}

TEST(RootedMap, PrefersAWrittenPathToThatOfAnOlderTool) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_MAP kestrel_0 KESTREL 0 cpu\n" + kRAM + "END_ADDRESS_MAP;\n", "top"), 0);
    EXPECT_STREQ(map->addressMaps->instancePath, "top/cpu");
}

TEST(MemoryType, IsAMemoryWordFromItsDefinitionOn) {
    MapText map;
    ASSERT_EQ(map.read("DEFINE_MEMORY_TYPE BIGRAM [4096] 8 16 32;\n"
                       "ADDRESS_SPACE ram BIGRAM [0:0x1FFF]\nBUS_BLOCK\nhi [15:8];\nlo [7:0];\nEND_BUS_BLOCK;\n"
                       "END_ADDRESS_SPACE;\n"),
        0)
        << map.alerts();
    const MEMORYType* type = map.space()->ranges->memory->type;
    EXPECT_STREQ(type->name, "BIGRAM");
    EXPECT_EQ(type->dataBits, 32768u);
    EXPECT_STREQ(type->widthsText, "8 16 32");
    EXPECT_EQ(type->sizeUnits, kUSER_MEMORY_CLASS);
    EXPECT_EQ(map.lane()->addressHigh, 4095u);
    EXPECT_EQ(map->statementCount, 2u);
}

TEST(MemoryType, ComparesWithCase) {
    MapText map;
    EXPECT_EQ(map.read("DEFINE_MEMORY_TYPE BIGRAM [4096] 8;\nADDRESS_SPACE ram bigram [0:0xFFF]\n"), 3);
    EXPECT_EQ(map.alerts(), alertAt("11 - Unexpected symbol 'bigram', 'ADDRESS_SPACE memory type' expected.", 2,
                                "ADDRESS_SPACE ram bigram [0:0xFFF]", 18));
}

TEST(MemoryType, KeepsItsFirstSizesWhenDefinedAgain) {
    MapText map;
    ASSERT_EQ(
        map.read("DEFINE_MEMORY_TYPE BIGRAM [4096] 8;\nDEFINE_MEMORY_TYPE BIGRAM [8192] 16 32;\n"
                 "ADDRESS_SPACE ram BIGRAM [0:0xFFF]\nBUS_BLOCK\nu0 [7:0];\nEND_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n"),
        0)
        << map.alerts();
    EXPECT_EQ(map.space()->ranges->memory->type->dataBits, 32768u);
}

TEST(MemoryType, IsAWordOfItsFileOnly) {
    MapText map;
    ASSERT_EQ(map.read("DEFINE_MEMORY_TYPE BIGRAM [4096] 8;\n"), 0);
    EXPECT_EQ(map.read("ADDRESS_SPACE ram BIGRAM [0:0xFFF]\n"), 3);
    EXPECT_EQ(map.alerts(), alertAt("11 - Unexpected symbol 'BIGRAM', 'ADDRESS_SPACE memory type' expected.", 1,
                                "ADDRESS_SPACE ram BIGRAM [0:0xFFF]", 18));
}

TEST(MemoryType, IsOneTypeForAllFilesThatDefineIt) {
    const std::string define = "DEFINE_MEMORY_TYPE BIGRAM [4096] 8;\n";
    MapText map;
    ASSERT_EQ(map.read(define + "ADDRESS_TEMPLATE t BIGRAM [4096]\nBUS_BLOCK\nu [7:0];\nEND_BUS_BLOCK;\n"
                                "END_ADDRESS_TEMPLATE;\n"),
        0);
    // A lane may name the memory again: it is still that of its range.
    ASSERT_EQ(map.read(define + "ADDRESS_SPACE ram BIGRAM [0:0xFFF]\nBUS_BLOCK\nu1 BIGRAM [7:0];\nEND_BUS_BLOCK;\n"
                                "END_ADDRESS_SPACE;\nADDRESS_INSTANCE t i [0x1000] top;\n"),
        0)
        << map.alerts();
    EXPECT_EQ(map.space(0)->ranges->memory, map.space(1)->ranges->memory);
    EXPECT_EQ(map.lane()->lane->memory, map.space()->ranges->memory);
}

TEST(MemoryType, MayHaveItsSizeTwice) {
    MapText map;
    EXPECT_EQ(map.read("DEFINE_MEMORY_TYPE BIGRAM [4096:0x1000] 8;\nADDRESS_SPACE ram BIGRAM [0:0xFFF]\nBUS_BLOCK\n"
                       "u0 [7:0];\nEND_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n"),
        0)
        << map.alerts();
}

TEST(MemoryType, MustNotTakeAWordOfTheLanguage) {
    for (const char* word : {"RAMB16", "ramb16", "ADDRESS_MAP", "5"}) {
        MapText map;
        EXPECT_EQ(map.read(std::string("DEFINE_MEMORY_TYPE ") + word + " [4096] 8;\n"), 3) << word;
        EXPECT_EQ(map.alerts(), "") << word;
        const std::string shown = std::string_view(word) == "ramb16" ? "RAMB16" : word;
        EXPECT_EQ(map.messages(), "1 28-300 " + shown + ", map.bmm\n");
    }
}

TEST(MemoryType, GivesTheNumberedAlertOfABadNameOnlyWhenAsked) {
    MapText map;
    const ScopedParameter legacy("memdata.debugLegacyMessages", "true");
    EXPECT_EQ(map.read("DEFINE_MEMORY_TYPE RAMB16 [4096] 8;\n"), 3);
    EXPECT_EQ(map.alerts(), alertAt("11 - Unexpected symbol 'RAMB16', 'DEFINE_MEMORY_TYPE memory name' expected.", 1,
                                "DEFINE_MEMORY_TYPE RAMB16 [4096] 8;", 19));
}

TEST(MemoryType, ComplainsOfItsSizeAndWidths) {
    const std::string size =
        "94 - Illegal ADDRESS_TEMPLATE size specification. Only one number is allowed, which is the "
        "total memory device byte size.";
    struct Case {
        std::string text;
        std::string alert;
        size_t column;
    };
    const Case kCASES[] = {
        {"DEFINE_MEMORY_TYPE X [0:4095] 8;", size, 21},
        {"DEFINE_MEMORY_TYPE X [0] 8;", size, 21},
        {"DEFINE_MEMORY_TYPE X [0x4000000000000000] 8;", size, 21},
        {"DEFINE_MEMORY_TYPE X 4096 8;", "6 - Illegal token '4096', 'opening range bracket '['' expected.", 21},
        {"DEFINE_MEMORY_TYPE X [4096];",
            "11 - Unexpected symbol ';', 'DEFINE_MEMORY_TYPE memory bus width value' expected.", 27},
        {"DEFINE_MEMORY_TYPE X [4096] 8 0;",
            "11 - Unexpected symbol '0', 'DEFINE_MEMORY_TYPE memory bus width value' expected.", 30},
        {"DEFINE_MEMORY_TYPE X [4096] 8 y;", "15 - Missing statement terminator. 'y' found, ';' expected.", 30},
    };
    for (const Case& c : kCASES) {
        MapText map;
        EXPECT_EQ(map.read(c.text + "\n"), 3) << c.text;
        EXPECT_EQ(map.alerts(), alertAt(c.alert, 1, c.text, c.column));
    }
}

} // namespace

// space_parser_test.cpp - address spaces, templates and their instances.
// SPDX-License-Identifier: Apache-2.0
#include "map_text.h"

using namespace memdata;
using namespace memdata::testing;

namespace {

const std::string kBODY = "BUS_BLOCK\nu0 [7:0];\nEND_BUS_BLOCK;\n";
const std::string kTEMPLATE = "ADDRESS_TEMPLATE t RAMB16 [2048]\n" + kBODY + "END_ADDRESS_TEMPLATE;\n";

// The alert of a text of one line that fails.
std::string said(const std::string& text, int status = 3) {
    MapText map;
    EXPECT_EQ(map.read(text + "\n"), status) << text;
    return map.alerts();
}

TEST(SpaceText, OfTheOlderWordsEqualsTheNewerOne) {
    MapText newer;
    MapText older;
    ASSERT_EQ(newer.read("ADDRESS_SPACE x RAMB16 [0:0x7FF]\n" + kBODY + "END_ADDRESS_SPACE;"), 0);
    ASSERT_EQ(older.read("ADDRESS_BLOCK x RAMB16 [0:0x7FF]\n" + kBODY + "END_ADDRESS_BLOCK;"), 0);
    EXPECT_EQ(newer.dump(), older.dump());
    EXPECT_EQ(newer.alerts() + older.alerts(), "");
}

TEST(SpaceText, SwapsAddressesSilently) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_SPACE x RAMB16 [0x7FF:0]\n" + kBODY + "END_ADDRESS_SPACE;"), 0);
    EXPECT_EQ(map.alerts(), "");
    EXPECT_EQ(map.space()->startAddress, 0u);
    EXPECT_EQ(map.space()->endAddress, 0x7FFu);
}

TEST(SpaceText, TakesExpressionsAsAddresses) {
    MapText map;
    EXPECT_EQ(
        map.read("#define K 1024\nADDRESS_SPACE x RAMB16 [0x1000+0:0x1000+(2*K) - 1]\n" + kBODY + "END_ADDRESS_SPACE;"),
        0)
        << map.alerts();
    EXPECT_EQ(map.space()->startAddress, 0x1000u);
    EXPECT_EQ(map.space()->endAddress, 0x17FFu);
}

TEST(SpaceText, CanBeNamedAsAMemoryIs) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_SPACE RAMB16 RAMB16 [0:0x7FF]\n" + kBODY + "END_ADDRESS_SPACE;"), 0) << map.alerts();
    ASSERT_EQ(map.read("ADDRESS_SPACE ram.RAMB16 RAMB16 [0x1000:0x17FF]\nBUS_BLOCK u1 [7:0]; END_BUS_BLOCK;"
                       "END_ADDRESS_SPACE;"),
        0)
        << map.alerts();
    EXPECT_EQ(listSpaces(map.get()), ": RAMB16 ram.RAMB16\n");
}

TEST(SpaceText, KeepsBracketsInItsName) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_SPACE a[3].b RAMB16 [0:0x7FF]\n" + kBODY + "END_ADDRESS_SPACE;"), 0) << map.alerts();
    EXPECT_STREQ(map.space()->name, "a[3].b");
}

TEST(SpaceText, TakesItsModifiersInEitherOrder) {
    for (const char* words :
        {"ECC_COMBINED_FOR_SIMULATION WORD_ADDRESSING", "INDEX_ADDRESSING ECC_COMBINED_FOR_SIMULATION"}) {
        MapText map;
        ASSERT_EQ(
            map.read(std::string("ADDRESS_SPACE x RAMB16 ") + words + " [0:0x7FF]\n" + kBODY + "END_ADDRESS_SPACE;"), 0)
            << words << map.alerts();
        EXPECT_TRUE(map.space()->eccCombinedForSimulation);
        EXPECT_TRUE(map.space()->wordAddressing);
    }
}

TEST(SpaceText, CountsBytesByDefault) {
    for (const char* word : {"", "BYTE_ADDRESSING"}) {
        MapText map;
        ASSERT_EQ(
            map.read(std::string("ADDRESS_SPACE x RAMB16 ") + word + " [0:0x7FF]\n" + kBODY + "END_ADDRESS_SPACE;"), 0);
        EXPECT_FALSE(map.space()->wordAddressing);
        EXPECT_FALSE(map.space()->eccCombinedForSimulation);
    }
}

TEST(SpaceText, HasAPathBehindItsAddresses) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_SPACE x RAMB16 [0:0x7FF] top/mem.0/\n" + kBODY + "END_ADDRESS_SPACE;"), 0)
        << map.alerts();
    EXPECT_STREQ(map.space()->instancePath, "top/mem.0");
}

TEST(SpaceText, RefusesAGridAtItsHeader) {
    EXPECT_EQ(said("ADDRESS_SPACE x GRID [0:0x7FF] END_ADDRESS_SPACE;"),
        alertAt("86 - Memory type 'GRID' of ADDRESS_SPACE 'x' holds no devices. Use the memory type of its BUS_BLOCKs.",
            1, "ADDRESS_SPACE x GRID [0:0x7FF] END_ADDRESS_SPACE;", 16));
}

TEST(SpaceText, ComplainsOfItsHeader) {
    struct Case {
        const char* text;
        const char* alert;
        size_t column;
    };
    constexpr Case kCASES[] = {
        {"ADDRESS_SPACE ; RAMB16", "11 - Unexpected symbol ';', 'ADDRESS_SPACE name' expected.", 14},
        {"ADDRESS_SPACE BUS_BLOCK RAMB16", "11 - Unexpected symbol 'BUS_BLOCK', 'ADDRESS_SPACE name' expected.", 14},
        {"ADDRESS_SPACE x rambx [0:1]", "11 - Unexpected symbol 'rambx', 'ADDRESS_SPACE memory type' expected.", 16},
        {"ADDRESS_SPACE x RAMB16 (0:1)", "6 - Illegal token '(', 'opening range bracket '['' expected.", 23},
        {"ADDRESS_SPACE x RAMB16 [;", "6 - Illegal token ';', 'invalid starting expression token' expected.", 24},
        {"ADDRESS_SPACE x RAMB16 [0:;", "6 - Illegal token ';', 'invalid ending expression token' expected.", 26},
        {"ADDRESS_SPACE x RAMB16 [0:1:", "6 - Illegal token ':', 'closing range bracket ']'' expected.", 27},
        {"ADDRESS_SPACE x RAMB16 [0:1] ;", "11 - Unexpected symbol ';', 'BRAM instance name' expected.", 29},
        {"ADDRESS_SPACE x RAMB16 [0:1] END_ADDRESS_SPACE;",
            "11 - Unexpected symbol 'END_ADDRESS_SPACE', 'BRAM instance name' expected.", 29},
        {"ADDRESS_SPACE x RAMB16 [0:1] ADDRESS_RANGE", "6 - Illegal token 'ADDRESS_RANGE', 'ADDRESS_RANGE' expected.",
            29},
        {"ADDRESS_SPACE x RAMB16 [0:1] top END_ADDRESS_SPACE;",
            "6 - Illegal token 'END_ADDRESS_SPACE', 'ADDRESS_RANGE' expected.", 33},
        {"ADDRESS_SPACE x COMBINED [0:1] BUS_BLOCK", "6 - Illegal token 'BUS_BLOCK', 'ADDRESS_SPACE' expected.", 31},
    };
    for (const Case& c : kCASES) EXPECT_EQ(said(c.text), alertAt(c.alert, 1, c.text, c.column)) << c.text;
}

TEST(SpaceText, TellsTheOperatorAndThePlaceOfABrokenExpression) {
    const std::string text = "ADDRESS_SPACE x RAMB16 [0 1:2]";
    EXPECT_EQ(
        said(text), alertAt("6 - Illegal token '1', 'expression operator' expected.", 1, text, 26) +
                        alertAt("6 - Illegal token '1', 'invalid starting expression token' expected.", 1, text, 26));
}

TEST(SpaceText, NeedsItsEnd) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_SPACE x RAMB16 [0:0x7FF]\n" + kBODY + "END_ADDRESS_MAP;"), 3);
    EXPECT_EQ(map.alerts(), alertAt("14 - Missing keyword. 'END_ADDRESS_MAP' found, 'END_ADDRESS_BLOCK' expected.", 5,
                                "END_ADDRESS_MAP;", 0));
    EXPECT_EQ(map.read("ADDRESS_SPACE x RAMB16 [0:0x7FF]\n" + kBODY + "END_ADDRESS_SPACE"), 3);
    EXPECT_EQ(map.alerts(), "\nERROR:Lanefill:15 - Missing statement terminator. 'end-of-file' found, ';' expected.\n"
                            "   Line #5, File \"map.bmm\".\n\n");
    EXPECT_EQ(map->addressSpaceCount, 0u);
}

TEST(SpaceText, NeedsANameOfItsOwn) {
    MapText map;
    ASSERT_EQ(map.read(byteSpace("x", "u0")), 0);
    EXPECT_EQ(map.read(byteSpace("x", "u1", "0x1000")), 3);
    EXPECT_EQ(map.messages(), "1 28-209 x\n");
    const ScopedParameter legacy("memdata.debugLegacyMessages", "true");
    EXPECT_EQ(map.read(byteSpace("x", "u1", "0x1000")), 3);
    EXPECT_EQ(map.alerts(), alertAt("34 - Duplicate ADDRESS_SPACE or ADDRESS_MAP name usage 'x'.", 1,
                                "ADDRESS_SPACE x RAMB16 [0x1000:0x1000+0x7FF]", 14));
}

TEST(SpaceText, PassesOnWhatItsChecksSay) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_SPACE x RAMB16 [0:0xFFF]\n" + kBODY + "END_ADDRESS_SPACE;"), 3);
    EXPECT_NE(map.alerts().find("ERROR:Lanefill:"), std::string::npos);
    EXPECT_EQ(map->addressSpaceCount, 0u);
}

TEST(SpaceText, NamesUnknownMemoryAndTheDevice) {
    MapText map({}, nullptr);
    const std::string text =
        "DEFINE_MEMORY_TYPE X [2048] 8;\nADDRESS_SPACE x X [0:0x7FF]\n" + kBODY + "END_ADDRESS_SPACE;\n";
    ASSERT_EQ(map.read(text), 0) << map.alerts();
    EXPECT_EQ(map.read("ADDRESS_SPACE y COMBINED [0:1] ADDRESS_RANGE COMBINED BUS_BLOCK"), 3);
    EXPECT_EQ(map.alerts(),
        alertAt(
            "104 - Unknown memory type, 'COMBINED', for the specified device ''. Or unknown user defined memory type.",
            1, "ADDRESS_SPACE y COMBINED [0:1] ADDRESS_RANGE COMBINED BUS_BLOCK", 45));
}

TEST(CombinedSpace, HasARangeForEachMemory) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_SPACE x COMBINED [0x1000:0x27FF]\n"
                       "  ADDRESS_RANGE RAMB16\n    BUS_BLOCK\n u0 [7:0];\n END_BUS_BLOCK;\n  END_ADDRESS_RANGE;\n"
                       "  ADDRESS_RANGE RAMB32\n    BUS_BLOCK\n u1 [7:0];\n END_BUS_BLOCK;\n  END_ADDRESS_RANGE;\n"
                       "END_ADDRESS_SPACE;\n"),
        0)
        << map.alerts();
    EXPECT_EQ(map.dump(), "mapping map.bmm spaces 1 statements 1\n"
                          "map \"\" PPC405 0\n"
                          "  space x 0x1000-0x27FF combined\n"
                          "    range RAMB16 0x1000-0x17FF bus 8 lane 8 words 2048 devices 1\n"
                          "      block 0x1000-0x17FF\n"
                          "        u0[7:0][0:2047]\n"
                          "    range RAMB32 0x1800-0x27FF bus 8 lane 8 words 4096 devices 1\n"
                          "      block 0x1800-0x27FF\n"
                          "        u1[7:0][0:4095]\n");
    EXPECT_EQ(map.space()->deviceCount, 2u);
}

TEST(CombinedSpace, ComplainsOfItsRanges) {
    struct Case {
        std::string text;
        std::string alert;
        size_t column;
    };
    const std::string start = "ADDRESS_SPACE x COMBINED [0:1] ADDRESS_RANGE ";
    const Case kCASES[] = {
        {start + "u0",
            "6 - Illegal token 'u0', 'memory type keyword (RAMB4, RAMB16, RAMB18, RAMB32, RAMB36, GRID, COMBINED, MEMORY) "
            "after ADDRESS_RANGE keyword' expected.",
            45},
        {start + "RAMB16 END_ADDRESS_RANGE;",
            "13 - Unexpected keyword 'END_ADDRESS_RANGE', ADDRESS_RANGE definition is empty.", 52},
        {start + "RAMB16 u0", "6 - Illegal token 'u0', 'ADDRESS_RANGE' expected.", 52},
        {start + "RAMB16 BUS_BLOCK a [7:0]; END_BUS_BLOCK; END_ADDRESS_SPACE;",
            "14 - Missing keyword. 'END_ADDRESS_SPACE' found, 'END_ADDRESS_SPACE' expected.", 86},
        {start + "RAMB16 BUS_BLOCK a [7:0]; END_BUS_BLOCK; END_ADDRESS_RANGE END_ADDRESS_SPACE;",
            "15 - Missing statement terminator. 'END_ADDRESS_SPACE' found, ';' expected.", 104},
    };
    for (const Case& c : kCASES) {
        const std::string alert = said(c.text);
        EXPECT_EQ(alert.substr(0, alert.find("   Line")), "\nERROR:Lanefill:" + c.alert + "\n") << c.text;
        EXPECT_EQ(alert.substr(alert.find("   Line")), alertAt("", 1, c.text, c.column).substr(17)) << c.text;
    }
}

TEST(TemplateText, IsSizedByOneNumber) {
    MapText map;
    ASSERT_EQ(map.read(kTEMPLATE), 0) << map.alerts();
    const AddressSpaceDefType* space = map->templateMap->addressSpaces->space;
    EXPECT_STREQ(map->templateMap->name, "ADDRESS_SPACE_TEMPLATES");
    EXPECT_TRUE(space->isTemplate);
    EXPECT_EQ(space->startAddress, 0u);
    EXPECT_EQ(space->endAddress, 2047u);
    EXPECT_EQ(map->addressMapCount, 0u);
}

TEST(TemplateText, MayEndAsASpaceDoes) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_TEMPLATE t RAMB16 [2048]\n" + kBODY + "END_ADDRESS_SPACE;\n"), 0) << map.alerts();
    EXPECT_EQ(
        map.read("ADDRESS_TEMPLATE s RAMB16 [2048]\nBUS_BLOCK\nu1 [7:0];\nEND_BUS_BLOCK;\nEND_ADDRESS_MAP;\n"), 3);
    EXPECT_EQ(map.alerts(), alertAt("14 - Missing keyword. 'END_ADDRESS_MAP' found, 'END_ADDRESS_TEMPLATE' expected.",
                                5, "END_ADDRESS_MAP;", 0));
}

TEST(TemplateText, MayHaveItsSizeTwice) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_TEMPLATE t RAMB16 [2048:0x800]\n" + kBODY + "END_ADDRESS_TEMPLATE;\n"), 0)
        << map.alerts();
    EXPECT_EQ(map->templateMap->addressSpaces->space->endAddress, 2047u);
}

TEST(TemplateText, CountsTowardsTheStatementsAndIsNoSpaceOfAMap) {
    MapText map;
    ASSERT_EQ(map.read(kTEMPLATE), 0);
    EXPECT_EQ(map->statementCount, 1u);
    EXPECT_EQ(map->defaultMap, nullptr);
    // Its name is its own: a space may have it too.
    EXPECT_EQ(map.read(byteSpace("t", "u1")), 0) << map.alerts();
}

TEST(TemplateText, NeedsANameOfItsOwnAmongTemplates) {
    MapText map;
    ASSERT_EQ(map.read(kTEMPLATE), 0);
    EXPECT_EQ(map.read("ADDRESS_TEMPLATE t RAMB16 [2048]\nBUS_BLOCK\nu1 [7:0];\nEND_BUS_BLOCK;\n"), 3);
    EXPECT_EQ(map.messages(), "1 28-209 t\n");
    EXPECT_EQ(map.alerts(), "");
}

TEST(TemplateText, OfAGenericMemoryMakesInstancesOfItsSize) {
    MapText map;
    ASSERT_EQ(map.read("ADDRESS_TEMPLATE t MEMORY [0x1000]\nBUS_BLOCK\nhi [31:16];\nlo [15:0];\nEND_BUS_BLOCK;\n"
                       "END_ADDRESS_TEMPLATE;\nADDRESS_INSTANCE t i [0x2000] top;\n"),
        0)
        << map.alerts();
    EXPECT_EQ(map.space()->startAddress, 0x2000u);
    EXPECT_EQ(map.space()->endAddress, 0x2FFFu);
    EXPECT_EQ(map.lane()->addressHigh, 0x3FFu);
}

TEST(TemplateText, HasOneSizeAboveZero) {
    for (const char* text : {"ADDRESS_TEMPLATE t RAMB16 [0]", "ADDRESS_TEMPLATE t RAMB16 [0:2047]"})
        EXPECT_EQ(said(text),
            alertAt("94 - Illegal ADDRESS_TEMPLATE size specification. Only one number is allowed, which is "
                    "the total memory device byte size.",
                1, text, 26))
            << text;
}

TEST(InstanceText, CopiesATemplateUnderItsPath) {
    MapText map;
    ASSERT_EQ(map.read(kTEMPLATE + "ADDRESS_INSTANCE t first [0x4000] top/a;\n"), 0) << map.alerts();
    EXPECT_EQ(map.dump(), "mapping map.bmm spaces 2 statements 2\n"
                          "map \"\" PPC405 0\n"
                          "  space t 0x4000-0x47FF path \"top/a/\" of \"t\"\n"
                          "    range RAMB16 0x4000-0x47FF bus 8 lane 8 words 2048 devices 1\n"
                          "      block 0x4000-0x47FF\n"
                          "        top/a/u0[7:0][0:2047]\n"
                          "map \"ADDRESS_SPACE_TEMPLATES\" PPC405 0\n"
                          "  space t 0x0-0x7FF template\n"
                          "    range RAMB16 0x0-0x7FF bus 8 lane 8 words 2048 devices 1\n"
                          "      block 0x0-0x7FF\n"
                          "        u0[7:0][0:2047]\n");
}

TEST(InstanceText, OfATemplateThatHasOneTakesItsOwnName) {
    MapText map;
    ASSERT_EQ(
        map.read(kTEMPLATE + "ADDRESS_INSTANCE t first [0x4000] top/a;\nADDRESS_INSTANCE t second [0x8000] top/b/;\n"),
        0)
        << map.alerts();
    EXPECT_EQ(listSpaces(map.get()), ": t second\n");
    EXPECT_STREQ(map.space(1)->instancePath, "top/b/");
    EXPECT_EQ(map->statementCount, 3u);
}

TEST(InstanceText, NeedsLanesThatNoOtherHas) {
    MapText map;
    EXPECT_EQ(
        map.read(kTEMPLATE + "ADDRESS_INSTANCE t first [0x4000] top;\nADDRESS_INSTANCE t second [0x8000] top;\n"), 3);
    EXPECT_EQ(map.alerts(), alertAt("97 - Duplicate instance name usage, 'top/u0', in address space 'second'.", 7,
                                "ADDRESS_INSTANCE t second [0x8000] top;", 19));
}

TEST(InstanceText, OfARootedTemplateIsFoundByItsWrittenName) {
    MapText map;
    ASSERT_EQ(map.read(kTEMPLATE + "ADDRESS_INSTANCE t first [0] top;\n", "a/b"), 0) << map.alerts();
    EXPECT_EQ(listSpaces(map.get()), ": a_b_t\n");
}

TEST(InstanceText, ComplainsOfItsWords) {
    struct Case {
        const char* text;
        const char* alert;
        size_t column;
    };
    constexpr Case kCASES[] = {
        {"ADDRESS_INSTANCE u i [0] top;", "11 - Unexpected symbol 'u', 'ADDRESS_TEMPLATE template name' expected.", 17},
        {"ADDRESS_INSTANCE RAMB16 i [0] top;",
            "11 - Unexpected symbol 'RAMB16', 'ADDRESS_TEMPLATE template name' expected.", 17},
        {"ADDRESS_INSTANCE t 5 [0] top;", "11 - Unexpected symbol '5', 'ADDRESS_INSTANCE instance name' expected.", 19},
        {"ADDRESS_INSTANCE t i [0:4] top;",
            "96 - Illegal ADDRESS_INSTANCE base address specification. Only one number is allowed, which is the instance base "
            "address.",
            21},
        {"ADDRESS_INSTANCE t i [0xFFFFFFFFFFFFFFFF] top;", "86 - ADDRESS_INSTANCE 'i' ends above the highest address.",
            21},
        {"ADDRESS_INSTANCE t i [0] */top;", "11 - Unexpected symbol '*/', 'absolute instance path' expected.", 25},
        {"ADDRESS_INSTANCE t i [0] /top;", "11 - Unexpected symbol '/', 'absolute instance path' expected.", 25},
        {"ADDRESS_INSTANCE t i [0] top x", "15 - Missing statement terminator. 'x' found, ';' expected.", 29},
    };
    for (const Case& c : kCASES) {
        MapText map;
        EXPECT_EQ(map.read(kTEMPLATE + c.text + "\n"), 3) << c.text;
        EXPECT_EQ(map.alerts(), alertAt(c.alert, 6, c.text, c.column)) << c.text;
    }
}

} // namespace

// compact_language_test.cpp - compact definitions and the map texts that they stand for.
// SPDX-License-Identifier: Apache-2.0
#include "compact_test.h"

namespace memdata::testing {
namespace {

// Four devices of a 32-bit bus, told from the low bits up.
constexpr const char* kRAM = "c ram u0 RAMB16 [7:0] [0:2047] c ram u1 RAMB16 [15:8] [0:2047] "
                             "c ram u2 RAMB16 [23:16] [0:2047] c ram u3 RAMB16 [31:24] [0:2047] ";
constexpr const char* kRAM_BLOCK = "\tBUS_BLOCK\n"
                                   "\t\tu3 [31:24] [0:2047];\n"
                                   "\t\tu2 [23:16] [0:2047];\n"
                                   "\t\tu1 [15:8] [0:2047];\n"
                                   "\t\tu0 [7:0] [0:2047];\n"
                                   "\tEND_BUS_BLOCK;\n";

std::string spaceText(const std::string& header, const std::string& body) {
    return "ADDRESS_SPACE " + header + "\n" + body + "END_ADDRESS_SPACE;\n\n";
}

TEST_F(Compact, AMemoryTypeIsDefined) {
    EXPECT_EQ(compiled("m sram 4096 8 16 32"), "DEFINE_MEMORY_TYPE sram [0x1000] 8 16 32;\n\n");
    EXPECT_EQ(compiled("m other 0x20"), "DEFINE_MEMORY_TYPE other [0x20];\n\n");
}

TEST_F(Compact, AMemoryTypeIsKnownAtOnce) {
    EXPECT_EQ(compiled("m sram 1024 8 c s u0 sram [7:0] [0:1023] a ram top 0 8 f sram 1024 8 s"),
        "DEFINE_MEMORY_TYPE sram [0x400] 8;\n\n" + spaceText("ram sram [0X0000000000000000:0X00000000000003FF] top",
                                                       "\tBUS_BLOCK\n\t\tu0 [7:0] [0:1023];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, ADefinitionOfABuiltInTypeLeavesTheTypeAlone) {
    EXPECT_EQ(compile("m RAMB16 16 8"), 0);
    EXPECT_NE(get_MEMORY_type_from_token(nullptr, &kBRAM_RAMB16_KEYWORD), nullptr);
}

TEST_F(Compact, AnInstanceOfATemplateIsWritten) {
    EXPECT_EQ(compiled("i tmpl one 0x8000 top/cpu0"), "ADDRESS_INSTANCE tmpl one [0x8000] top/cpu0;\n\n");
    EXPECT_EQ(compiled("i tmpl one 16 */a/c/"), "ADDRESS_INSTANCE tmpl one [0x10] */a/c/;\n\n");
    EXPECT_EQ(compiled("i tmpl one 16 /a"), "ADDRESS_INSTANCE tmpl one [0x10] */a;\n\n");
}

TEST_F(Compact, ASpaceOfAGroupWritesItsMembersInBitOrder) {
    EXPECT_EQ(compiled(std::string(kRAM) + "a mem top/cpu byte 0x1000 32 f RAMB16 8192 8 ram"),
        spaceText("mem RAMB16 BYTE_ADDRESSING [0X0000000000001000:0X0000000000002FFF] top/cpu", kRAM_BLOCK));
}

TEST_F(Compact, TheOldWordsOfStatementsMeanTheSame) {
    const std::string text = "c ram u0 RAMB16 [7:0] [0:2047] a mem top 0 8 f RAMB16 2048 8 ram p cpu PPC405 3 a mem";
    const std::string map = compiled(text);
    EXPECT_EQ(map, "ADDRESS_MAP cpu PPC405 3\n" +
                       spaceText("mem RAMB16 [0X0000000000000000:0X00000000000007FF] top",
                           "\tBUS_BLOCK\n\t\tu0 [7:0] [0:2047];\n\tEND_BUS_BLOCK;\n") +
                       "END_ADDRESS_MAP;\n\n");
    EXPECT_EQ(compiled("BMM_INFO_MEMORY_DEVICE ram u0 RAMB16 [7:0] [0:2047] bmm_info_address_space mem top 0 8 "
                       "F RAMB16 2048 8 ram BMM_INFO_PROCESSOR cpu PPC405 3 A mem"),
        map);
}

TEST_F(Compact, WordAddressingCountsSizesInWords) {
    // 1024 words of 32 bits are 4096 bytes: two devices.
    EXPECT_EQ(compiled("c ram u0 RAMB16 [31:0] [0:511] c ram u1 RAMB16 [31:0] [512:1023] "
                       "a mem top word 0x100 32 f RAMB16 1024 32 ram"),
        spaceText("mem RAMB16 WORD_ADDRESSING [0X0000000000000100:0X00000000000004FF] top",
            "\tBUS_BLOCK\n\t\tu0 [31:0] [0:511];\n\tEND_BUS_BLOCK;\n"
            "\tBUS_BLOCK\n\t\tu1 [31:0] [512:1023];\n\tEND_BUS_BLOCK;\n"));
    // Four lanes of a byte: the words are those of the lanes.
    EXPECT_NE(compiled(std::string(kRAM) + "a mem top word 0 32 f RAMB16 8192 8 ram").find(":0X0000000000001FFF]"),
        std::string::npos);
    EXPECT_NE(compiled("a mem top index 0 8 f RAMB16 2048 8 u").find("WORD_ADDRESSING"), std::string::npos);
}

TEST_F(Compact, ARangeThatDoesNotFillWholeBlocksIsRoundedDown) {
    EXPECT_EQ(compiled(std::string(kRAM) + "a mem top 0 32 f RAMB16 16383 8 ram"),
        spaceText("mem RAMB16 [0X0000000000000000:0X0000000000003FFE] top", kRAM_BLOCK));
}

TEST_F(Compact, ADeviceCountsWithItsParityBitsWhereWidthsDo) {
    // 18 kbit of 9 bits: 2304 bytes.
    EXPECT_EQ(compiled("a mem top 0 9 f RAMB18 2304 9 u0"),
        spaceText("mem RAMB18 [0X0000000000000000:0X00000000000008FF] top",
            "\tBUS_BLOCK\n\t\tu0 [8:0];\n\tEND_BUS_BLOCK;\n"));
    EXPECT_EQ(failure("a mem top 0 9 f RAMB18 2303 9 u0").substr(0, 2), "3:");
}

TEST_F(Compact, ANameThatIsNoGroupIsOneDevice) {
    EXPECT_EQ(compiled("a mem top 0 16 f RAMB16 2048 16 top/one[3]"),
        spaceText("mem RAMB16 [0X0000000000000000:0X00000000000007FF] top",
            "\tBUS_BLOCK\n\t\ttop/one[3] [15:0];\n\tEND_BUS_BLOCK;\n"));
    EXPECT_EQ(compiled("a mem top 0 16 f RAMB16 2048 16 */one"),
        spaceText("mem RAMB16 [0X0000000000000000:0X00000000000007FF] top",
            "\tBUS_BLOCK\n\t\t*/one [15:0];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, ARelativeGroupMarksEachOfItsLanes) {
    EXPECT_EQ(compiled("c g u0 RAMB16 [7:0] [0:0] c g u1 RAMB16 [15:8] [0:0] a mem top 0 16 f RAMB16 4096 8 */g"),
        spaceText("mem RAMB16 [0X0000000000000000:0X0000000000000FFF] top",
            "\tBUS_BLOCK\n\t\t*/u1 [15:8];\n\t\t*/u0 [7:0];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, SeveralRangesMakeACombinedSpace) {
    EXPECT_EQ(compiled("a mem top byte 0 16 f RAMB16 2048 16 u0 f RAMB18 2304 16 u1"),
        spaceText("mem COMBINED BYTE_ADDRESSING [0X0000000000000000:0X00000000000010FF] top",
            "ADDRESS_RANGE RAMB16\n\tBUS_BLOCK\n\t\tu0 [15:0];\n\tEND_BUS_BLOCK;\nEND_ADDRESS_RANGE;\n"
            "ADDRESS_RANGE RAMB18\n\tBUS_BLOCK\n\t\tu1 [15:0];\n\tEND_BUS_BLOCK;\nEND_ADDRESS_RANGE;\n"));
}

TEST_F(Compact, AGroupFillsOneBlockAfterTheOther) {
    EXPECT_EQ(compiled("c g u2 RAMB16 [7:0] [2048:4095] c g u3 RAMB16 [15:8] [2048:4095] "
                       "c g u0 RAMB16 [7:0] [0:2047] c g u1 RAMB16 [15:8] [0:2047] "
                       "a mem top 0 16 f RAMB16 8192 8 g"),
        spaceText("mem RAMB16 [0X0000000000000000:0X0000000000001FFF] top",
            "\tBUS_BLOCK\n\t\tu1 [15:8] [0:2047];\n\t\tu0 [7:0] [0:2047];\n\tEND_BUS_BLOCK;\n"
            "\tBUS_BLOCK\n\t\tu3 [15:8] [2048:4095];\n\t\tu2 [7:0] [2048:4095];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, CheckLanesComeOnTopOfTheBus) {
    EXPECT_EQ(compiled("c g u0 RAMB32 [31:0] [0:1023] c g e0 RAMB32 ECCH32-7 [38:32] [0:1023] "
                       "a mem top 0 32 f RAMB32 4096 32 g"),
        spaceText("mem RAMB32 [0X0000000000000000:0X0000000000000FFF] top",
            "\tBUS_BLOCK\n\t\te0 ECCH32-7 [38:32] [0:1023];\n\t\tu0 [31:0] [0:1023];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, CheckLanesThatCountTheirBitsFromZeroAreOneForEachBlock) {
    EXPECT_EQ(compiled("c g e1 RAMB32 ECCH32-7 [6:0] [1024:2047] c g u1 RAMB32 [31:0] [1024:2047] "
                       "c g u0 RAMB32 [31:0] [0:1023] c g e0 RAMB32 ECCH32-7 [6:0] [0:1023] "
                       "a mem top 0 32 f RAMB32 8192 32 g"),
        spaceText("mem RAMB32 [0X0000000000000000:0X0000000000001FFF] top",
            "\tBUS_BLOCK\n\t\te0 ECCH32-7 [6:0] [0:1023];\n\t\tu0 [31:0] [0:1023];\n\tEND_BUS_BLOCK;\n"
            "\tBUS_BLOCK\n\t\te1 ECCH32-7 [6:0] [1024:2047];\n\t\tu1 [31:0] [1024:2047];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, EveryCodeOfCheckLanesIsKnownAndOtherWordsArePassedOver) {
    for (const char* code : {"ECCH32-7", "ECCH64-8", "ECCHSIAO32-7", "ECCHSIAO64-8", "ECCHSIAO128-9"}) {
        const std::string text = std::string("c g e0 RAMB32 ") + code +
                                 " [15:8] [0:0] c g u0 RAMB32 [7:0] [0:0] a mem top 0 8 f RAMB32 4096 8 g";
        EXPECT_NE(compiled(text).find(std::string("\t\te0 ") + code + " [15:8];\n"), std::string::npos) << code;
    }
    EXPECT_NE(compiled("c g u0 RAMB32 eccH32-7 [7:0] [0:0] a mem top 0 8 f RAMB32 4096 8 g").find("\t\tu0 [7:0];\n"),
        std::string::npos);
}

TEST_F(Compact, BitsKeepTheOrderInWhichTheyAreWritten) {
    EXPECT_NE(compiled("c g u0 RAMB16 [0:7] [2047:0] a mem top 0 8 f RAMB16 2048 8 g").find("\t\tu0 [0:7] [2047:0];\n"),
        std::string::npos);
    EXPECT_NE(
        compiled("c g u0 RAMB16 [4 * 2 - 1:0] [0:0x7FF] a mem top 0 8 f RAMB16 2048 8 g").find(" [7:0] [0:2047];"),
        std::string::npos);
}

TEST_F(Compact, FilesOfAComponentAreAttributesOfItsLane) {
    const auto lane = [this](const std::string& files) {
        const std::string map = compiled("c g u0 RAMB16 [7:0] [0:0] " + files + " a mem top 0 8 f RAMB16 2048 8 g");
        const size_t start = map.find("\t\tu0 [7:0]") + 10;
        return map.substr(start, map.find('\n', start) - start);
    };
    EXPECT_EQ(lane(""), ";");
    EXPECT_EQ(lane("< in.mem"), " INPUT = in.mem;");
    EXPECT_EQ(lane("<<init.mem"), " INIT = init.mem;");
    EXPECT_EQ(lane("> out/o.mem"), " OUTPUT = out/o.mem;");
    EXPECT_EQ(lane("> o.mem < i.mem << a.mem"), " INIT = a.mem INPUT = i.mem OUTPUT = o.mem;");
    EXPECT_EQ(lane("< old.mem < new.mem"), " INPUT = new.mem;");
    EXPECT_EQ(lane("< \"my file.mem\""), " INPUT = \"my file.mem\";");
    EXPECT_EQ(lane("< \"a//b+c.mem\""), " INPUT = \"a//b+c.mem\";");
}

TEST_F(Compact, MacrosInFileNamesExpand) {
    EXPECT_NE(compiled("\n#define LIB lib\n#define RTL(x) x/rtl\nc g u0 RAMB16 [7:0] [0:0] < LIB/a.mem "
                       "a mem top 0 8 f RAMB16 2048 8 g")
                  .find("INPUT = lib/a.mem;"),
        std::string::npos);
}

TEST_F(Compact, AWildComponentTakesNameAndPathOfTheHierarchy) {
    EXPECT_EQ(compiled("h ram /top/u1 c * * RAMB16 [7:0] [0:0] a mem cpu 0 8 f RAMB16 2048 8 ram"),
        spaceText("mem RAMB16 [0X0000000000000000:0X00000000000007FF] cpu",
            "\tBUS_BLOCK\n\t\ttop/u1/ram [7:0];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, FurtherStarsTakePiecesOfTheHierarchyFromTheLastOneInward) {
    const std::string space = " a mem cpu 0 8 f RAMB16 2048 8 ";
    const std::string component = "h ram top/u1 c ";
    for (const auto& [stars, group] : {std::pair("**", "u1/ram"), std::pair("***", "top/u1/ram")}) {
        const std::string map = compiled(component + stars + " dev RAMB16 [7:0] [0:1]" + space + group);
        EXPECT_NE(map.find("\t\tdev [7:0] [0:1];\n"), std::string::npos) << stars;
    }
    EXPECT_EQ(failure(component + "**** dev RAMB16 [7:0] [0:1]"),
        "3: ERROR:Lanefill:111 - Missing symbol. '*' found, 'address space name' expected.\n"
        "   Line #1, File \"text.bmm\".\n"
        "h ram top/u1 c **** dev RAMB16 [7:0] [0:1]\n"
        "                  ^");
}

TEST_F(Compact, AnInstanceNameEndsTheHierarchy) {
    EXPECT_EQ(compiled("h ram top/u1 c g dev RAMB16 [7:0] [0:0] c * * RAMB16 [7:0] [0:0] a mem * 0 8 "
                       "f RAMB16 2048 8 dev"),
        spaceText("mem RAMB16 [0X0000000000000000:0X00000000000007FF] dev",
            "\tBUS_BLOCK\n\t\tdev [7:0];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, AHierarchyPathOfASlashIsNoPath) {
    for (const char* path : {"/ ", "/\n", "x ", "x/ ", "/x "}) {
        const bool isNone = path[0] == '/' && path[1] != 'x';
        EXPECT_EQ(compiled(std::string("h ram ") + path + "a mem * 0 8 f RAMB16 2048 8 u"),
            spaceText(std::string("mem RAMB16 [0X0000000000000000:0X00000000000007FF] ") + (isNone ? "ram" : "x/ram"),
                std::string("\tBUS_BLOCK\n\t\t") + (isNone ? "u" : "x/u") + " [7:0];\n\tEND_BUS_BLOCK;\n"))
            << path;
    }
}

TEST_F(Compact, HierarchiesCanBeSpelledLikeWordsOfTheLanguage) {
    EXPECT_NE(compiled("h a B/p a mem * 0 8 f RAMB16 2048 8 e/F").find("] B/p/a\n\tBUS_BLOCK\n\t\tB/p/e/F [7:0];"),
        std::string::npos);
}

TEST_F(Compact, ATemplateIsWritten) {
    EXPECT_EQ(compiled(std::string(kRAM) + "t tmpl byte 8192 32 f RAMB16 8192 8 ram i tmpl one 0 top"),
        std::string("ADDRESS_TEMPLATE tmpl RAMB16 BYTE_ADDRESSING [0X0000000000002000]\n") + kRAM_BLOCK +
            "END_ADDRESS_TEMPLATE;\n\nADDRESS_INSTANCE tmpl one [0x0] top;\n\n");
}

TEST_F(Compact, AReferenceReplaysItsRanges) {
    const std::string direct = "a mem top byte 0 16 f RAMB16 2048 16 u0 f RAMB18 2304 16 x/u1";
    EXPECT_EQ(
        compiled("e both f RAMB16 2048 16 u0 f RAMB18 2304 16 x/u1 a mem top byte 0 16 e both"), compiled(direct));
    EXPECT_EQ(compiled("e one f RAMB16\n2048/**/16 u0\ne two f RAMB18 2304 16 x/u1 a mem top byte 0 16 e one e two"),
        compiled(direct));
    EXPECT_EQ(compiled("e two f RAMB18 2304 16 x/u1 a mem top byte 0 16 f RAMB16 2048 16 u0 e two"), compiled(direct));
}

TEST_F(Compact, AReferenceRemembersItsHierarchy) {
    EXPECT_EQ(compiled("h x top/u1 e one f RAMB16 2048 8 dev h y / e two f RAMB16 2048 8 dev "
                       "h z other a mem * 0 8 e one f RAMB16 2048 8 own e two"),
        spaceText("mem COMBINED [0X0000000000000000:0X00000000000017FF] other/z",
            "ADDRESS_RANGE RAMB16\n\tBUS_BLOCK\n\t\ttop/u1/dev [7:0];\n\tEND_BUS_BLOCK;\nEND_ADDRESS_RANGE;\n"
            "ADDRESS_RANGE RAMB16\n\tBUS_BLOCK\n\t\tother/own [7:0];\n\tEND_BUS_BLOCK;\nEND_ADDRESS_RANGE;\n"
            "ADDRESS_RANGE RAMB16\n\tBUS_BLOCK\n\t\tdev [7:0];\n\tEND_BUS_BLOCK;\nEND_ADDRESS_RANGE;\n"));
}

TEST_F(Compact, PathsOfReferencesCanBeSpelledLikeWordsOfTheLanguage) {
    EXPECT_NE(
        compiled("e one f RAMB16 2048 8 A/p/t.h a mem top 0 8 e one").find("\t\tA/p/t.h [7:0];"), std::string::npos);
}

TEST_F(Compact, MacrosOfReferencesExpandWhereTheyAreKept) {
    EXPECT_EQ(compile("\n#define DEV u7\n#define SIZE 2048\ne one f RAMB16 SIZE 8 DEV"), 0);
    EXPECT_EQ(finalize_bmm_info(&options), 0);
    EXPECT_STREQ(options.bmmInfoText, "h one / f RAMB16 2048 8 u7 ");
}

TEST_F(Compact, TwoTextsShareComponentsAndReferences) {
    EXPECT_EQ(compile("c g u0 RAMB16 [7:0] [0:0] e ref f RAMB16 2048 8 g"), 0);
    EXPECT_EQ(takeMaps(), "");
    EXPECT_EQ(compiled("a mem top 0 8 e ref"), spaceText("mem RAMB16 [0X0000000000000000:0X00000000000007FF] top",
                                                   "\tBUS_BLOCK\n\t\tu0 [7:0];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, FinalizingForgetsComponentsAndReferences) {
    EXPECT_EQ(compile("e ref f RAMB16 2048 8 g"), 0);
    EXPECT_EQ(finalize_bmm_info(&options), 0);
    EXPECT_EQ(scratchBMMInfo, nullptr);
    EXPECT_EQ(failure("a mem top 0 8 e ref").substr(0, 2), "3:");
}

TEST_F(Compact, FinalizingKeepsTheWordsOfReferencesInTheOptions) {
    EXPECT_EQ(compile("h x top e one f RAMB16 2048 8 u0 h y / e two f RAMB16 2048 8 u1"), 0);
    EXPECT_EQ(finalize_bmm_info(&options), 0);
    EXPECT_STREQ(options.bmmInfoText, "h x top/ f RAMB16 2048 8 u0  h y / f RAMB16 2048 8 u1 ");
}

TEST_F(Compact, FinalizingNothingIsNoFailure) {
    EXPECT_EQ(finalize_bmm_info(&options), 0);
    EXPECT_EQ(options.bmmInfoText, nullptr);
}

TEST_F(Compact, AProcessorHoldsTheSpacesThatItNames) {
    const std::string spaces = "a one top 0 8 f RAMB16 2048 8 u1 a two top 4096 8 f RAMB16 2048 8 u2 "
                               "a three top 8192 8 f RAMB16 2048 8 u3 ";
    const auto space = [](const char* name, const char* range, const char* device) {
        return spaceText(std::string(name) + " RAMB16 " + range + " top",
            std::string("\tBUS_BLOCK\n\t\t") + device + " [7:0];\n\tEND_BUS_BLOCK;\n");
    };
    const std::string one = space("one", "[0X0000000000000000:0X00000000000007FF]", "u1");
    const std::string two = space("two", "[0X0000000000001000:0X00000000000017FF]", "u2");
    const std::string three = space("three", "[0X0000000000002000:0X00000000000027FF]", "u3");
    const std::string expected = two + "ADDRESS_MAP cpu KESTREL-LE 7 top/cpu\n" + three + one + "END_ADDRESS_MAP;\n\n";
    EXPECT_EQ(compiled(spaces + "p cpu KESTREL-LE 7 top/cpu a three a one a three"), expected);
    EXPECT_EQ(
        compiled("p cpu KESTREL-LE 7 /top/cpu a three h x y a one " + spaces.substr(0, 0) + "m sram 16 8 " + spaces),
        "DEFINE_MEMORY_TYPE sram [0x10] 8;\n\n" + expected);
    EXPECT_EQ(compiled("p cpu top/cpu KESTREL-LE 7 a three a one m sram 16 8 " + spaces),
        "DEFINE_MEMORY_TYPE sram [0x10] 8;\n\n" + expected);
    EXPECT_EQ(compiled("h cpu top p cpu * KESTREL-LE 7 a three a one m sram 16 8 " + spaces),
        "DEFINE_MEMORY_TYPE sram [0x10] 8;\n\n" + expected);
}

TEST_F(Compact, AProcessorHoldsTheSpacesThatAreToldInIt) {
    EXPECT_EQ(compiled("p cpu ARM 0 a mem top 0 8 f RAMB16 2048 8 u"),
        "ADDRESS_MAP cpu ARM 0\n" +
            spaceText("mem RAMB16 [0X0000000000000000:0X00000000000007FF] top",
                "\tBUS_BLOCK\n\t\tu [7:0];\n\tEND_BUS_BLOCK;\n") +
            "END_ADDRESS_MAP;\n\n");
}

TEST_F(Compact, AMapThatNamesAnUnknownSpaceWarnsAndGoesOn) {
    EXPECT_EQ(compile("p cpu ARM 0 a nowhere"), 0);
    EXPECT_EQ(alerts.take(),
        "\nWARNING:Lanefill:134 - Undefined Embedded Address Space 'nowhere' referenced in Address "
        "Map 'cpu'.\n    Please recheck the definition of this Embedded Address Space.\n\n");
    EXPECT_EQ(takeMaps(), "ADDRESS_MAP cpu ARM 0\nEND_ADDRESS_MAP;\n\n");
}

TEST_F(Compact, AMapWithoutSpacesIsRefused) {
    EXPECT_EQ(failure("p cpu ARM 0"),
        "10: ERROR:Lanefill:135 - The Embedded Address Map 'cpu' has no Address Spaces defined for it.\n"
        "    Please recheck the definition of this Embedded Address Map.");
}

TEST_F(Compact, AJoinBecomesASpaceOfItsMembersRanges) {
    EXPECT_EQ(compiled("e ref f RAMB16 2048 8 u1 h x top j both byte 0x1000 8 f RAMB16 2048 8 u0 e ref "
                       "j both word 0 16 f RAMB18 2304 8 u2"),
        spaceText("both COMBINED BYTE_ADDRESSING [0X0000000000001000:0X00000000000028FF]",
            "ADDRESS_RANGE RAMB16\n\tBUS_BLOCK\n\t\ttop/u0 [7:0];\n\tEND_BUS_BLOCK;\nEND_ADDRESS_RANGE;\n"
            "ADDRESS_RANGE RAMB16\n\tBUS_BLOCK\n\t\tu1 [7:0];\n\tEND_BUS_BLOCK;\nEND_ADDRESS_RANGE;\n"
            "ADDRESS_RANGE RAMB18\n\tBUS_BLOCK\n\t\ttop/u2 [7:0];\n\tEND_BUS_BLOCK;\nEND_ADDRESS_RANGE;\n"));
    EXPECT_EQ(compiled("j one word 0 8 f RAMB16 2048 8 u0 j two 4096 8 f RAMB16 2048 8 u1"),
        spaceText("one RAMB16 WORD_ADDRESSING [0X0000000000000000:0X00000000000007FF]",
            "\tBUS_BLOCK\n\t\tu0 [7:0];\n\tEND_BUS_BLOCK;\n") +
            spaceText("two RAMB16 BYTE_ADDRESSING [0X0000000000001000:0X00000000000017FF]",
                "\tBUS_BLOCK\n\t\tu1 [7:0];\n\tEND_BUS_BLOCK;\n"));
}

TEST_F(Compact, MembersOfAJoinCanComeInSeveralTexts) {
    EXPECT_EQ(compile("j both 0 8 f RAMB16 2048 8 u0"), 0);
    EXPECT_EQ(takeMaps(), "");
    EXPECT_EQ(compile("j both 0 8 f RAMB16 2048 8 u1"), 0);
    EXPECT_EQ(finalize_bmm_info(&options), 0);
    const std::string map = takeMaps();
    EXPECT_NE(map.find("u0 [7:0]"), std::string::npos);
    EXPECT_NE(map.find("u1 [7:0]"), std::string::npos);
}

TEST_F(Compact, AnOutputNameAloneMakesNoMapText) {
    EXPECT_EQ(compile("n out.bmm"), 0);
    ASSERT_EQ(FileSpecListCount(options.bmmFiles), 1U);
    const fileSpecType* spec = FileSpecListGet(options.bmmFiles, 0);
    EXPECT_EQ(spec->subType, kBMM_NAMING_FILE);
    EXPECT_STREQ(spec->fullName, "out.bmm");
}

TEST_F(Compact, EmptyWordsCompileToNothing) {
    EXPECT_EQ(compile(" "), 0);
    EXPECT_EQ(options.bmmFiles, nullptr);
}

TEST_F(Compact, TheCompiledTextIsShownToDebuggers) {
    EnablePrintAlerts(kDEBUG_ALERT);
    EXPECT_EQ(compile("m sram 16 8"), 0);
    const std::string said = alerts.take();
    EXPECT_NE(said.find("Words of -mf.\n\n m sram 16 8"), std::string::npos) << said;
    EXPECT_NE(said.find("Compiled -mf command.\n\nDEFINE_MEMORY_TYPE sram [0x10] 8;\n\n"), std::string::npos) << said;
}

TEST_F(Compact, ShutDownForgetsWhatNobodyFinalized) {
    EXPECT_EQ(compile("e ref f RAMB16 2048 8 u"), 0);
    FinalizeSystemResources();
    EXPECT_EQ(scratchBMMInfo, nullptr);
    InitializeSystemResources(); // the fixture's end takes it back
}

} // namespace
} // namespace memdata::testing

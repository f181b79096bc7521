// compact_refusals_test.cpp - what is said about compact texts that can not be compiled.
// SPDX-License-Identifier: Apache-2.0
#include "compact_test.h"

namespace memdata::testing {
namespace {

struct RefusalCase {
    const char* text;
    const char* alert; // behind "ERROR:Lanefill:"
    int column;        // of the caret; -1 where the text ends, which no line shows
};

constexpr RefusalCase kREFUSALS[] = {
    {"x", "11 - Unexpected symbol 'x', 'BMM info keyword - m, i, c, r, t, p, j, a, s, or f' expected.", 0},
    {"f RAMB16", "11 - Unexpected symbol 'f', 'BMM info keyword - m, i, c, r, t, p, j, a, s, or f' expected.", 0},
    {"byte", "11 - Unexpected symbol 'byte', 'BMM info keyword - m, i, c, r, t, p, j, a, s, or f' expected.", 0},
    {"h x y 5", "11 - Unexpected symbol '5', 'BMM info keyword - m, i, c, r, t, p, j, a, s, or f' expected.", 6},
    {"n", "66 - mf: option missing .bmm filename argument.", -1},

    {"m 5", "11 - Unexpected symbol '5', 'DEFINE_MEMORY_TYPE 'm' memory name' expected.", 2},
    {"m a", "11 - Unexpected symbol 'a', 'DEFINE_MEMORY_TYPE 'm' memory name' expected.", 2},
    {"m", "11 - Unexpected symbol 'end-of-file', 'DEFINE_MEMORY_TYPE 'm' memory name' expected.", -1},
    {"m ram x", "11 - Unexpected symbol 'x', 'DEFINE_MEMORY_TYPE 'm' memory size value' expected.", 6},
    {"m ram 0", "11 - Unexpected symbol '0', 'DEFINE_MEMORY_TYPE 'm' memory size value' expected.", 6},
    {"m ram -4", "11 - Unexpected symbol '-4', 'DEFINE_MEMORY_TYPE 'm' memory size value' expected.", 6},
    {"m ram 1.5", "11 - Unexpected symbol '1.5', 'DEFINE_MEMORY_TYPE 'm' memory size value' expected.", 6},
    {"m ram 0x2000000000000000",
        "11 - Unexpected symbol '0x2000000000000000', 'DEFINE_MEMORY_TYPE 'm' memory size value' expected.", 6},
    {"m ram 16 0", "11 - Unexpected symbol '0', 'DEFINE_MEMORY_TYPE 'm' memory bus width value' expected.", 9},
    {"m ram 16 8 -8", "11 - Unexpected symbol '-8', 'DEFINE_MEMORY_TYPE 'm' memory bus width value' expected.", 11},

    {"i 5", "11 - Unexpected symbol '5', 'ADDRESS_INSTANCE 'i' address template name' expected.", 2},
    {"i tmpl 5", "11 - Unexpected symbol '5', 'ADDRESS_INSTANCE 'i' address instance name' expected.", 7},
    {"i tmpl one x", "11 - Unexpected symbol 'x', 'ADDRESS_INSTANCE 'i' instance base address value' expected.", 11},
    {"i tmpl one 5 ;", "11 - Unexpected symbol ';', 'BRAM instance name' expected.", 13},

    {"c * 0 RAMB16 [7:0] [0:2047]", "111 - Missing symbol. '*' found, 'address space name' expected.", 2},
    {"c 5", "11 - Unexpected symbol '5', 'COMPONENT_INFO 'c' component name or '*' wild' expected.", 2},
    {"c g 0", "11 - Unexpected symbol '0', 'COMPONENT_INFO 'c' instance name or '*' wild' expected.", 4},
    {"c g *", "11 - Unexpected symbol '*', 'A component instance name instead of a '*' wild' expected.", 4},
    {"c g x 5", "11 - Unexpected symbol '5', 'BIT_LANE 'c' memory type name' expected.", 6},
    {"c g x RAMB", "11 - Unexpected symbol 'RAMB', 'BIT_LANE 'c' memory type not defined' expected.", 6},
    {"c g x MEMORY", "11 - Unexpected symbol 'MEMORY', 'BIT_LANE 'c' memory type not defined' expected.", 6},
    {"c g x RAMB16 <", "6 - Illegal token '<', 'opening range bracket '['' expected.", 13},
    {"c g x RAMB16 [7:0] ;", "6 - Illegal token ';', 'opening range bracket '['' expected.", 19},
    {"c g x RAMB16 [7:0] [0:1] 5",
        "11 - Unexpected symbol '5', 'BMM info keyword - m, i, c, r, t, p, j, a, s, or f' expected.", 25},

    {"e 5", "11 - Unexpected symbol '5', 'REFERENCE_INFO 'e' reference name' expected.", 2},
    {"e x e x", "64 - mf: reference name 'x' is already used.", 6},
    {"a mem top 0 8 e x", "79 - mf: reference name 'x' wasn't defined in a previous reference definition.", 16},
    {"a mem top 0 8 e 5", "11 - Unexpected symbol '5', 'REFERENCE_INFO 'e' reference name' expected.", 16},

    {"h 5", "11 - Unexpected symbol '5', 'BRAM instance name' expected.", 2},
    {"h x", "11 - Unexpected symbol 'end-of-file', 'BRAM instance name' expected.", -1},

    {"t 5", "11 - Unexpected symbol '5', 'ADDRESS_TEMPLATE 't' template name' expected.", 2},
    {"t x y", "11 - Unexpected symbol 'y', 'ADDRESS_TEMPLATE 't' memory size value' expected.", 4},
    {"t x word y", "11 - Unexpected symbol 'y', 'ADDRESS_TEMPLATE 't' memory size value' expected.", 9},
    {"t x 5 y", "11 - Unexpected symbol 'y', 'ADDRESS_TEMPLATE 't' bus width size value' expected.", 6},
    {"t x 5 0", "11 - Unexpected symbol '0', 'ADDRESS_TEMPLATE 't' bus width size value' expected.", 6},
    {"t x 5 8 y", "11 - Unexpected symbol 'y', 'ADDRESS_SPACE 's' keyword' expected.", 8},

    {"a 5", "11 - Unexpected symbol '5', 'ADDRESS_SPACE 'a' address space name' expected.", 2},
    {"a x 5", "11 - Unexpected symbol '5', 'COMPONENT_INFO 'c' instance name or '*' wild' expected.", 4},
    {"a x *", "11 - Unexpected symbol '*', 'A component instance name instead of a '*' wild' expected.", 4},
    {"a x y z", "11 - Unexpected symbol 'z', 'ADDRESS_SPACE 'a' memory base address value' expected.", 6},
    {"a x y byte -1", "11 - Unexpected symbol '-1', 'ADDRESS_SPACE 'a' memory base address value' expected.", 11},
    {"a x y 0 z", "11 - Unexpected symbol 'z', 'ADDRESS_SPACE 'a' bus width size value' expected.", 8},
    {"a x y 0 0", "11 - Unexpected symbol '0', 'ADDRESS_SPACE 'a' bus width size value' expected.", 8},
    {"a x y 0 4294967296", "11 - Unexpected symbol '4294967296', 'ADDRESS_SPACE 'a' bus width size value' expected.",
        8},
    {"a x y 0 8", "11 - Unexpected symbol 'end-of-file', 'ADDRESS_SPACE 's' keyword' expected.", -1},
    {"a x y 0 8 h q /", "11 - Unexpected symbol 'h', 'ADDRESS_SPACE 's' keyword' expected.", 10},
    {"a x y 0 8 f 5", "11 - Unexpected symbol '5', 'ADDRESS_SPACE 's' memory type name' expected.", 12},
    {"a x y 0 8 f q", "11 - Unexpected symbol 'q', 'ADDRESS_SPACE 's' memory type not defined' expected.", 12},
    {"a x y 0 8 f RAMB16 q", "11 - Unexpected symbol 'q', 'ADDRESS_SPACE 's' range byte size value' expected.", 19},
    {"a x y 0 8 f RAMB16 0", "11 - Unexpected symbol '0', 'ADDRESS_SPACE 's' range byte size value' expected.", 19},
    {"a x y 0 8 f RAMB16 9 q",
        "11 - Unexpected symbol 'q', 'ADDRESS_SPACE 's' address range bus width size value' expected.", 21},
    {"a x y 0 8 f RAMB16 9 0",
        "11 - Unexpected symbol '0', 'ADDRESS_SPACE 's' address range bus width size value' expected.", 21},
    {"a x y 0 8 f RAMB16 9 3",
        "11 - Unexpected symbol '3', 'ADDRESS_SPACE 's' address range bus width size value' expected.", 21},
    {"a x y word 0 8 f RAMB16 0xFFFFFFFFFFFFFFFF 8",
        "11 - Unexpected symbol '8', 'ADDRESS_SPACE 's' address range bus width size value' expected.", 43},
    {"a x y 0 8 f RAMB16 9 8 5", "11 - Unexpected symbol '5', 'BRAM instance name' expected.", 23},

    {"p 5", "11 - Unexpected symbol '5', 'ADDRESS_MAP 'p' address map name' expected.", 2},
    {"p x 5", "11 - Unexpected symbol '5', 'ADDRESS_MAP 'p' processor type name' expected.", 4},
    {"p x top/y 5", "11 - Unexpected symbol 'top/y', 'ADDRESS_MAP 'p' processor type name' expected.", 4},
    {"p x * 5", "11 - Unexpected symbol '*', 'A component instance name instead of a '*' wild' expected.", 4},
    {"p x y z q", "11 - Unexpected symbol 'q', 'ADDRESS_MAP 'p' processor ID value' expected.", 8},
    {"p x ARM", "11 - Unexpected symbol 'end-of-file', 'ADDRESS_MAP 'p' processor ID value' expected.", -1},

    {"j 5", "11 - Unexpected symbol '5', 'ADDRESS_SPACE 'j' address space join name' expected.", 2},
    {"j x y", "11 - Unexpected symbol 'y', 'ADDRESS_SPACE 'j' memory base address value' expected.", 4},
    {"j x byte y", "11 - Unexpected symbol 'y', 'ADDRESS_SPACE 'j' memory base address value' expected.", 9},
    {"j x 0 y", "11 - Unexpected symbol 'y', 'ADDRESS_SPACE 'j' bus width size value' expected.", 6},
};

std::string place(const std::string& text, int column) {
    const std::string line = "   Line #1, File \"text.bmm\".";
    return column < 0 ? line : line + "\n" + text + "\n" + std::string(static_cast<size_t>(column), ' ') + "^";
}

TEST_F(Compact, RefusalsPointAtTheWord) {
    for (const RefusalCase& refusal : kREFUSALS)
        EXPECT_EQ(failure(refusal.text),
            std::string("3: ERROR:Lanefill:") + refusal.alert + "\n" + place(refusal.text, refusal.column))
            << refusal.text;
}

TEST_F(Compact, AGroupThatIsNotAsWideAsTheBusIsRefused) {
    const std::string text = "c g u RAMB16 [7:0] [0:1] a mem top 0 16 f RAMB16 4096 8 g";
    EXPECT_EQ(
        failure(text), "3: ERROR:Lanefill:86 - \nValidation of component instances. The address space bus width is "
                       "'16' but the bit range is '8' for the component 'g'. \n\n" +
                           place(text, 40));
}

TEST_F(Compact, AGroupWithTooFewDevicesIsRefused) {
    const std::string text = "c g u RAMB16 [7:0] [0:1] a mem top 0 8 f RAMB16 4096 8 g";
    EXPECT_EQ(
        failure(text), "3: ERROR:Lanefill:86 - \nSetting the bit lane failed. Expecting 2 BRAMS only processed 1.\n\n" +
                           place(text, 39));
}

TEST_F(Compact, AGroupWithTooManyDevicesIsRefused) {
    const std::string text = "c g u RAMB16 [7:0] [0:1] c g v RAMB16 [7:0] [0:1] a mem top 0 8 f RAMB16 2048 8 g";
    EXPECT_EQ(failure(text),
        "3: ERROR:Lanefill:86 - \nCreation of the bit lane failed. Expecting 1 BRAMS found a total of 2 BRAMS. Improperly "
        "specified number of BRAM components, check the BMG core. Typically, this occurs because ECC has been "
        "specified.\n\n" +
            place(text, 64));
}

TEST_F(Compact, ASpaceThatEndsAboveTheHighestAddressIsRefused) {
    const std::string text = "a mem top 0xFFFFFFFFFFFFF801 8 f RAMB16 2048 8 u";
    EXPECT_EQ(
        failure(text), "3: ERROR:Lanefill:86 - ADDRESS_SPACE 'mem' ends above the highest address.\n" + place(text, 0));
    EXPECT_NE(
        compiled("a mem top 0xFFFFFFFFFFFFF800 8 f RAMB16 2048 8 u").find(":0XFFFFFFFFFFFFFFFF]"), std::string::npos);
}

TEST_F(Compact, AnAlertInAReferencePointsIntoItAndAtItsUse) {
    const std::string text = "e x f RAMB16 bad 8 u a mem top 0 8 e x";
    EXPECT_EQ(failure(text),
        "3: ERROR:Lanefill:11 - Unexpected symbol 'bad', 'ADDRESS_SPACE 's' range byte size value' "
        "expected.\n"
        "h x / f RAMB16 bad 8 u  \n"
        "               ^\n"
        "   Line #1, File \"text.bmm\".");
}

TEST_F(Compact, AnAlertInAJoinPointsIntoItsText) {
    EXPECT_EQ(compile("j x 0 8 f q"), 0);
    EXPECT_EQ(finalize_bmm_info(&options), 3);
    EXPECT_EQ(alerts.take(), "\nERROR:Lanefill:11 - Unexpected symbol 'q', 'ADDRESS_SPACE 's' memory type not defined' "
                             "expected.\n"
                             " a x * byte 0X0000000000000000 8 h x / f q \n"
                             "                                         ^\n\n");
    EXPECT_EQ(scratchBMMInfo, nullptr);
}

TEST_F(Compact, AReferenceWithoutRangesMakesNoSpace) {
    const std::string text = "e x a mem top 0 8 e x";
    EXPECT_EQ(failure(text),
        "3: ERROR:Lanefill:11 - Unexpected symbol 'end-of-file', 'ADDRESS_SPACE 's' keyword' expected.\n" +
            place(text, -1));
}

TEST_F(Compact, ASymbolThatCanNotBeginAnOutputNameIsRefused) {
    EXPECT_EQ(failure("n )"), "3: ERROR 28-206 )");
}

TEST_F(Compact, AFailureForgetsWhatEarlierTextsTold) {
    EXPECT_EQ(compile("e x f RAMB16 2048 8 u"), 0);
    EXPECT_EQ(compile("?"), 3);
    EXPECT_EQ(scratchBMMInfo, nullptr);
    alerts.take();
    EXPECT_EQ(compile("e x f RAMB16 2048 8 u"), 0);
}

} // namespace
} // namespace memdata::testing

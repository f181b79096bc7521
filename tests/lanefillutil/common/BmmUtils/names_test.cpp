// names_test.cpp - the names in an address map.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/names.h"

#include "map_text.h"
#include "support/parse.h"

using namespace memdata;
using namespace memdata::testing;

namespace {

std::string taken(char* text) {
    const OwnedString owner(text);
    return text == nullptr ? "(null)" : text;
}

class Names : public ::testing::Test {
protected:
    Names() { RegisterSystemToolName("Lanefill"); }

    // The name that a text begins with, "*" ahead of a relative one, and the token behind it.
    static std::string read(const std::string& text, bool haveFirst = false) {
        TextReader reader(text, &bmm_keyword_set, "map.bmm");
        if (haveFirst) reader.next();
        bool isRelative = false;
        char* name = nullptr;
        const int status = parse_instance_name(reader, reader.token(), haveFirst, &isRelative, &name);
        if (status != 0) return "status " + std::to_string(status);
        return (isRelative ? "*" : "") + taken(name) + " | " + reader.token()->text;
    }

    SystemResources resources_;
};

TEST_F(Names, KeepTheirSeparatorsAsWritten) {
    EXPECT_EQ(read("top/cpu.ram/u1 [7:0]"), "top/cpu.ram/u1 | [");
    EXPECT_EQ(read("u1;"), "u1 | ;");
    EXPECT_EQ(read("a/0/b ;"), "a/0/b | ;");
}

TEST_F(Names, TakeBracketedNumbersThatTouchThem) {
    EXPECT_EQ(read("gen[0].ram[7:0]"), "gen[0].ram | [");
    EXPECT_EQ(read("gen[0].ram[12] [7:0]"), "gen[0].ram[12] | [");
    EXPECT_EQ(read("ram[3][7:0]"), "ram[3] | [");
    EXPECT_EQ(read("a[1]/b[2][3].c[7:0]"), "a[1]/b[2][3].c | [");
    EXPECT_EQ(read("ram[7:0]"), "ram | [");
}

TEST_F(Names, ExpandMacrosInBracketsThatTouchThem) {
    EXPECT_EQ(read("#define N 4\nram[N][7:0]"), "ram[4] | [");
}

TEST_F(Names, LoseTheMarksOfARelativePath) {
    EXPECT_EQ(read("*/cpu/ram [7:0]"), "*cpu/ram | [");
    EXPECT_EQ(read("/cpu/ram [7:0]"), "*cpu/ram | [");
    EXPECT_EQ(read("*/./cpu [7:0]"), "*cpu | [");
    EXPECT_EQ(read("*/cpu [7:0]", true), "*cpu | ["); // read as the end of a comment
}

TEST_F(Names, MayBeSpelledAsKeywordsAre) {
    EXPECT_EQ(read("ramb16 [7:0]"), "ramb16 | [");
    EXPECT_EQ(read("arm/INPUT/LOC.x [7:0]"), "arm/INPUT/LOC.x | [");
    EXPECT_EQ(read("ram.RAMB16 [7:0]"), "ram.RAMB16 | [");
}

TEST_F(Names, EndAtABlankBehindWhichWordsAreKeywordsAgain) {
    TextReader reader("u1/ram ramb16 [7:0]", &bmm_keyword_set, "map.bmm");
    bool isRelative = false;
    OwnedString name;
    ASSERT_EQ(parse_instance_name(reader, reader.token(), false, &isRelative, name.out()), 0);
    EXPECT_EQ(reader.token()->type, &kBRAM_RAMB16_KEYWORD);
}

TEST_F(Names, AreEmptyWhereAKeywordThatCanBeANameStandsAtOnce) {
    EXPECT_EQ(read("INPUT = x", true), " | INPUT");
}

TEST_F(Names, StandBehindLineEndsCommentsAndDirectives) {
    EXPECT_EQ(read("\n\n// which one\n#if 1\n  u1\n#endif\n[7:0]"), "u1 | [");
}

TEST_F(Names, NeedAName) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("  ; x"), "status 3");
    EXPECT_EQ(alerts.take(), alertAt("11 - Unexpected symbol ';', 'BRAM instance name' expected.", 1, "  ; x", 2));
    EXPECT_EQ(read("* [7:0]"), "status 3");
    EXPECT_EQ(alerts.take(), alertAt("11 - Unexpected symbol '*', 'BRAM instance name' expected.", 1, "* [7:0]", 0));
    EXPECT_EQ(read("LOC = X", true), "status 3");
    EXPECT_EQ(alerts.take(), alertAt("11 - Unexpected symbol 'LOC', 'BRAM instance name' expected.", 1, "LOC = X", 0));
}

TEST_F(Names, NeedAPieceBehindASeparator) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("top/[7:0]"), "status 3");
    EXPECT_EQ(
        alerts.take(), alertAt("11 - Unexpected symbol '[', 'BRAM instance path name' expected.", 1, "top/[7:0]", 4));
    EXPECT_EQ(read("top/ x"), "status 3");
    EXPECT_EQ(
        alerts.take(), alertAt("11 - Unexpected symbol ' ', 'BRAM instance path name' expected.", 1, "top/ x", 4));
}

TEST_F(Names, OfAMapTakeWhatTouchesThemInBrackets) {
    for (const char* text : {"a[3].b RAMB16", "a[3].b\nRAMB16"}) {
        TextReader reader(text, &bmm_keyword_set, "map.bmm");
        reader.next();
        std::string name;
        ASSERT_EQ(readObjectName(reader, reader.token(), "name", &name), 0);
        EXPECT_EQ(name, "a[3].b");
        EXPECT_EQ(reader.token()->type, &kBRAM_RAMB16_KEYWORD);
    }
    TextReader reader("#function name(n)\na_##n\n#endfunction\nname(1)[3].b RAMB16", &bmm_keyword_set, "map.bmm");
    reader.next();
    std::string name;
    ASSERT_EQ(readObjectName(reader, reader.token(), "name", &name), 0);
    EXPECT_EQ(name, "a_1[3].b");
    EXPECT_EQ(reader.token()->type, &kBRAM_RAMB16_KEYWORD);
}

TEST_F(Names, UnderARootBeginWithItsWords) {
    EXPECT_EQ(taken(create_rootedObject_name("x", nullptr)), "x");
    EXPECT_EQ(taken(create_rootedObject_name("x", "a/b")), "a_b_x");
    EXPECT_EQ(taken(create_rootedObject_name("a_b_x", "a/b")), "a_b_x");
    EXPECT_EQ(taken(create_rootedObject_name("a_bc", "a/b")), "a_bc"); // by its letters, not its words
}

TEST_F(Names, OfDevicesGetTheRootUnlessTheyBeginWithIt) {
    std::string name = "u1";
    rootInstanceName("a/b", &name);
    EXPECT_EQ(name, "a/b/u1");
    rootInstanceName("a/b", &name);
    EXPECT_EQ(name, "a/b/u1");
    rootInstanceName(nullptr, &name);
    EXPECT_EQ(name, "a/b/u1");
}

TEST_F(Names, OfAnOlderToolTellThePath) {
    EXPECT_EQ(taken(createLegecyInstancePath(nullptr, "kestrel_0")), "(null)");
    EXPECT_EQ(taken(createLegecyInstancePath("top", "kestrel_0")), "top/kestrel_0");
    EXPECT_EQ(taken(createLegecyInstancePath("top", "my_kestrel_1")), "top/my_kestrel_1");
    EXPECT_EQ(taken(createLegecyInstancePath("top", "kestrel_0_lmb_combined")), "top/kestrel_0_lmb/kestrel_0_lmb");
    for (const char* name : {"kestrel_", "kestrel_a", "kestrel_01", "kestrel_0_lmb", "cpu_combined", ""})
        EXPECT_EQ(taken(createLegecyInstancePath("top", name)), "(null)") << name;
}

TEST_F(Names, OfPathsLoseOneTrailingSlash) {
    EXPECT_EQ(taken(stripInstancePath(StrDup("top/cpu/"))), "top/cpu");
    EXPECT_EQ(taken(stripInstancePath(StrDup("top/cpu//"))), "top/cpu/");
    EXPECT_EQ(taken(stripInstancePath(StrDup("top"))), "top");
    EXPECT_EQ(taken(stripInstancePath(StrDup(""))), "");
    EXPECT_EQ(stripInstancePath(nullptr), nullptr);
}

} // namespace

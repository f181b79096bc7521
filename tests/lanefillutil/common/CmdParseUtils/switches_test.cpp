// switches_test.cpp - what each switch with good arguments leaves in the record.
// SPDX-License-Identifier: Apache-2.0
#include "option_test.h"

#include "CmdParseUtils/keywords.h"
#include "DeviceTableUtils/DeviceTableUtils.h"
#include "ParseUtils/ParseUtils.h"

#include <cstdlib>

namespace memdata::testing {
namespace {

struct RecordCase {
    const char* text;
    const char* record;
};

constexpr RecordCase kSWITCHES[] = {
    {"", ""},
    {"  \n ", ""},
    // Maps.
    {"-bm a.bmm", "map: b a.bmm\n"},
    {"-mm a.bmm", "map: b a.bmm\n"},
    {"-bm a", "map: b a\n"},
    {"-bm a.xml", "map: x a.xml\n"},
    {"-bm A.BMM -bm b.XML", "map: b A.BMM\nmap: x b.XML\n"},
    {"-bm *", "designBmm\n"},
    {"-bm * -bm a.bmm", "map: b a.bmm\ndesignBmm\n"},
    {"-bm a.bmm root top", "map: b a.bmm root top\n"},
    {"-bm a.bmm root top/cpu -i", "map: b a.bmm root top/cpu\nignoreUnmapped\n"},
    {"-bm a.bmm root top/cpu/ -bm b", "map: b a.bmm root top/cpu\nmap: b b\n"},
    {"-bm a.bmm root a root b.c[2]", "map: b a.bmm root b.c[2]\n"},
    {"-bm a.xml ROOT top", "map: x a.xml root top\n"},
    {"-bm a.bmm root root", "map: b a.bmm root root\n"},
    {"-mx \"<a/>\" root top -i", "map: m tempXMLFile.xml {<a/>} root top\nignoreUnmapped\n"},
    {"-mx \"<a/>\" root top/cpu/", "map: m tempXMLFile.xml {<a/>} root top/cpu/\n"},
    {"-mx \"<a/>\"", "map: m tempXMLFile.xml {<a/>}\n"},
    {"-mx '<a b=\"1\"/>' -bm x.bmm", "map: m tempXMLFile.xml {<a b=\"1\"/>}\nmap: b x.bmm\n"},
    // Data files.
    {"-bd a.elf", "data: a.elf\n"},
    {"-md a.elf", "data: a.elf\n"},
    {"-bd a.elf -bd b.mem", "data: a.elf\ndata: b.mem\n"},
    {"-bd a.elf boot", "data: a.elf boot 1\n"},
    {"-bd a.elf boot 0x100", "data: a.elf boot 2 at 256\n"},
    {"-bd a.elf boot 0", "data: a.elf boot 2\n"},
    {"-bd a.elf boot 0x123456789", "data: a.elf boot 2 at 591751049\n"},
    {"-bd a.elf boot -1", "data: a.elf boot 2 at 4294967295\n"},
    {"-bd a.elf start", "data: a.elf\n"},
    {"-bd a.elf start 0x2000", "data: a.elf start 8192\n"},
    {"-bd a.elf start 0x100000010", "data: a.elf start 16\n"},
    {"-bd a.elf tag ram", "data: a.elf tags 1 ram\n"},
    {"-bd a.elf tag ram rom map.space", "data: a.elf tags 3 ram rom map.space\n"},
    {"-bd a.elf tag a.b[0].c d", "data: a.elf tags 2 a.b[0].c d\n"},
    {"-bd a.elf tag a . b c", "data: a.elf tags 2 a.b c\n"},
    {"-bd a.elf tag a [ 0 ] . c", "data: a.elf tags 1 a[0].c\n"},
    {"-bd a.elf tag ram boot 4 start 8", "data: a.elf boot 2 at 4 start 8 tags 1 ram\n"},
    {"-bd a.elf start 8 boot tag ram", "data: a.elf boot 1 start 8 tags 1 ram\n"},
    {"-bd a.elf BOOT TAG ram", "data: a.elf boot 1 tags 1 ram\n"},
    {"-bd tag tag boot-2", "data: tag tags 1 boot-2\n"},
    {"-bx", "mem folder: .\n"},
    {"-bx out", "mem folder: out\n"},
    {"-bx out/mem tag ram", "mem folder: out/mem tags 1 ram\n"},
    {"-bx -bx out", "mem folder: .\nmem folder: out\n"},
    // Files.
    {"-bt top.bit", "bit: top.bit\n"},
    {"-bt a.bit -bt b.bit", "bit: b.bit\n"},
    {"-image a.img", "image: a.img\n"},
    {"-image a.img -image b.img", "image: b.img\n"},
    {"-pp a.bmm", "preprocess: a.bmm\n"},
    {"-pp a.bmm -pp b.bmm", "preprocess: b.bmm\n"},
    // Outputs.
    {"-o a f", "out xml: f\n"},
    {"-o A f", "out xml: f\n"},
    {"-o b f", "out bit: f\n"},
    {"-o B f", "out bit: f\n"},
    {"-o d f", "out dump: f\n"},
    {"-o D f", "out dump: f\n"},
    {"-o h f", "out vhdl: f\n"},
    {"-o H f", "out vhdl: f\n"},
    {"-o i f", "out image: f\n"},
    {"-o I f", "out image: f\n"},
    {"-o m f", "out mem: f\n"},
    {"-o M f", "out mem: f\n"},
    {"-o p f", "out bmm: f\n"},
    {"-o P f", "out bmm: f\n"},
    {"-o u f", "out ucf: f\n"},
    {"-o U f", "out ucf: f\n"},
    {"-o v f", "out verilog: f\n"},
    {"-o V f", "out verilog: f\n"},
    {"-o pb x", "out bit: x\nout bmm: x\n"},
    {"-o m x.mem -o p y.bmm", "out mem: x.mem\nout bmm: y.bmm\n"},
    {"-o i b.bin -o i a.bin -o iI c.bin", "out image: b.bin\nout image: a.bin\nout image: c.bin\nout image: c.bin\n"},
    // Dumps.
    {"-d", "dumpEnabled\n"},
    {"-d a", "dumpEnabled\ndumpMask: 32\n"},
    {"-d b", "dumpEnabled\ndumpMask: 1\n"},
    {"-d e", "dumpEnabled\ndumpMask: 4\n"},
    {"-d f", "dumpEnabled\ndumpMask: 8\n"},
    {"-d p", "dumpEnabled\ndumpMask: 64\n"},
    {"-d r", "dumpEnabled\ndumpMask: 2\n"},
    {"-d u", "dumpEnabled\ndumpMask: 16\n"},
    {"-d abefpru", "dumpEnabled\ndumpMask: 127\n"},
    {"-d abefpruA", "dumpEnabled\ndumpMask: 32\n"},
    {"-d abefpruB", "dumpEnabled\ndumpMask: 1\n"},
    {"-d abefpruE", "dumpEnabled\ndumpMask: 123\n"},
    {"-d abefpruF", "dumpEnabled\ndumpMask: 119\n"},
    {"-d abefpruP", "dumpEnabled\ndumpMask: 63\n"},
    {"-d abefpruR", "dumpEnabled\ndumpMask: 125\n"},
    {"-d abefpruU", "dumpEnabled\ndumpMask: 111\n"},
    {"-d A", "dumpEnabled\n"},
    {"-d e -d f", "dumpEnabled\ndumpMask: 12\n"},
    // Flags.
    {"-i", "ignoreUnmapped\n"},
    {"-u", "updateAll\n"},
    {"-pg", "progress\n"},
    {"-i -i -u -pg", "ignoreUnmapped\nupdateAll\nprogress\n"},
    {"-a", "autoInit\n"},
    {"-a on", "autoInit\n"},
    {"-a yes", "autoInit\n"},
    {"-a true", "autoInit\n"},
    {"-a TRUE -i", "ignoreUnmapped\nautoInit\n"},
    {"-a -i", "ignoreUnmapped\nautoInit\n"},
    {"-a off", ""},
    {"-a no", ""},
    {"-a false", ""},
    {"-a -a Off", ""},
    {"-a false -a on", "autoInit\n"},
    // Values.
    {"-fill", "fillEnabled\n"},
    {"-fill 0", "fillEnabled\n"},
    {"-fill 255", "fillEnabled\nfillByte: 255\n"},
    {"-fill 0xA5 -i", "ignoreUnmapped\nfillEnabled\nfillByte: 165\n"},
    {"-fill 7 -fill", "fillEnabled\nfillByte: 7\n"},
    {"-split mcs", "splitFormat: 27\n"},
    {"-split MEM -i", "ignoreUnmapped\nsplitFormat: 13\n"},
    {"-split c -split v", "splitFormat: 12\n"},
    {"-bytewidth 4", "byteWidth: 4.000\n"},
    {"-bytewidth 32 / 8 + (1 * 2) -i", "ignoreUnmapped\nbyteWidth: 6.000\n"},
    {"-bytewidth 2.5 -bytewidth 8", "byteWidth: 8.000\n"},
    {"-p q5a20", "part: q5a20\ndevice\n"},
    {"-p q5a20ff676-1 -i", "ignoreUnmapped\npart: q5a20ff676-1\ndevice\n"},
    {"-p tq5a20 -p \"q5a20\"", "part: q5a20\ndevice\n"},
    // Lists and texts.
    {"-workflow sim", "workflow: sim\n"},
    {"-workflow a b -i -workflow c", "ignoreUnmapped\nworkflow: a\nworkflow: b\nworkflow: c\n"},
    {"-I inc", "include: inc/\n"},
    {"-I a;b/c/ -I d", "include: a/\ninclude: b/c/\ninclude: d/\n"},
    {"-I /x:/y", "include: /x/\ninclude: /y/\n"},
    {"-D A=1", "defines: #define A 1\n\n"},
    {"-D A = 1 -D B=2", "defines: #define A 1\n#define B 2\n\n"},
    {"-D A=", "defines: #define A\n\n"},
    {"-D A= -i", "defines: #define A\n\nignoreUnmapped\n"},
    {"-D A=(1 +  2) * x -bt t.bit", "defines: #define A (1 +  2) * x\n\nbit: t.bit\n"},
    {"-D A=\"x -bm y\" 'z'", "defines: #define A \"x -bm y\" 'z'\n\n"},
    {"-D A=\"a\\\\b\"", "defines: #define A \"a\\\\b\"\n\n"},
    {"-D A=-5 - b", "defines: #define A -5 - b\n\n"},
    {"-D A=1\n 2", "defines: #define A 1  2\n\n"},
    {"-D A=true", "defines: #define A true\n\n"},
    // Arguments that touch their switches.
    {"-DA=1", "defines: #define A 1\n\n"},
    {"-Iinc", "include: inc/\n"},
    {"-pq5a20", "part: q5a20\ndevice\n"},
    {"-df", "dumpEnabled\ndumpMask: 8\n"},
    {"-bt\"t.bit\"", "bit: t.bit\n"},
};

TEST_F(Options, EachSwitchSetsItsFields) {
    for (const RecordCase& c : kSWITCHES) EXPECT_EQ(record(c.text), c.record) << c.text;
}

TEST_F(Options, ARecordStartsEmptyAndStaysSo) {
    InitalizeCmdStringOptions(&options);
    EXPECT_EQ(dumpOptions(options), "");
    EXPECT_EQ(FinalizeCmdStringOptions(&options), 0);
    EXPECT_EQ(dumpOptions(options), "");
}

TEST_F(Options, EveryFormatOfTheTableCanBeNamedForSplitting) {
    for (u32 format = 2; format <= 28; ++format) {
        ASSERT_EQ(parse(std::string("-split ") + DecodeFileExtensionType(format)), 0) << format;
        EXPECT_EQ(options.splitFormat, format);
    }
}

TEST_F(Options, WordsThatNoSwitchUsesAnyMoreAreStillInTheirTables) {
    const auto words = [](const token_set& set) {
        std::string text;
        for (const keyword_row* row = set.rows; row->word != nullptr; ++row) text += std::string(row->word) + " ";
        return text;
    };
    EXPECT_EQ(words(intstyle_modifier_keywords), "silent vek tollflow ");
    EXPECT_EQ(words(key_modifier_keywords), "efuse bbram Key0 HMAC StartCBC ");
}

TEST_F(Options, NamesOfAnySpellingStandInQuotes) {
    EXPECT_EQ(record("-bm \"my files/a b.bmm\" -bd \"x+y=@\xC3\xA4.elf\" -bt dir/\"-bm 'x'.bit\""),
        "map: b my files/a b.bmm\nbit: dir/-bm 'x'.bit\ndata: x+y=@\xC3\xA4.elf\n");
}

// --- modifiers and modes -------------------------------------------------------------------------------------------

TEST_F(Options, ScopedTagNamesEndBehindTheSecondWord) {
    ASSERT_EQ(setenv("OMBREL_LNV_SCOPEDADDRESSSPACE_TAGNAME", "1", 1), 0);
    EXPECT_EQ(record("-bd a.elf tag cpu . ram rom"), "data: a.elf tags 2 cpu.ram rom\n");
    const std::string brackets = failure("-bd a.elf tag cpu [0]");
    ASSERT_EQ(unsetenv("OMBREL_LNV_SCOPEDADDRESSSPACE_TAGNAME"), 0);
    EXPECT_EQ(brackets.substr(0, 4), "14: ");
}

TEST_F(Options, OverwritingIsAllowedAndRefused) {
    struct OnOffCase {
        const char* text;
        bool isAllowed;
    };
    constexpr OnOffCase kCASES[] = {
        {"-w", true},
        {"-w off", false},
        {"-w on", true},
        {"-w no", false},
        {"-w yes", true},
        {"-w false", false},
        {"-w true", true},
        {"-w OFF -i", false},
        {"-w -i", true},
    };
    for (const OnOffCase& c : kCASES) {
        ASSERT_EQ(parse(c.text), 0) << c.text;
        EXPECT_EQ((gDefaultFileAttributes & kOVERWRITING_ALLOWED) != 0, c.isAllowed) << c.text;
        EXPECT_EQ((gDefaultFileAttributes & kOVERWRITING_REFUSED) != 0, !c.isAllowed) << c.text;
    }
}

struct QuietCase {
    const char* text;
    u32 mask;
};
constexpr QuietCase kQUIET[] = {
    {"-q S", 1},
    {"-q I", 2},
    {"-q W", 4},
    {"-q E", 8},
    {"-q X", 16},
    {"-q F", 32},
    {"-q D", 64},
    {"-q SIWEXFD", 127},
    {"-q SIWEXFDs", 126},
    {"-q SIWEXFDi", 125},
    {"-q SIWEXFDw", 123},
    {"-q SIWEXFDe", 119},
    {"-q SIWEXFDx", 111},
    {"-q SIWEXFDf", 95},
    {"-q SIWEXFDd", 63},
    {"-q W -q E", 12},
    {"-q WE -q w", 8},
    {"-q w", 0},
};

TEST_F(Options, QuietLettersReplaceTheEnabledAlerts) {
    for (const QuietCase& c : kQUIET) {
        EnablePrintAlerts(62);
        EXPECT_EQ(parse(c.text), 0) << c.text;
        EXPECT_EQ(options.quietMask, c.mask) << c.text;
        EXPECT_EQ(SavePrintAlerts(), c.mask) << c.text;
        DeleteCmdStringOptions(&options);
    }
}

TEST_F(Options, QuietWithoutLettersChangesNothing) {
    EnablePrintAlerts(62);
    EXPECT_EQ(record("-q -i"), "ignoreUnmapped\n");
    EXPECT_EQ(SavePrintAlerts(), 62U);
}

TEST_F(Options, IncludeFoldersAreSearchedUntilTheRecordGoes) {
    ASSERT_EQ(parse("-I inc;more"), 0);
    EXPECT_EQ(gPP_include_path_list, options.includePaths);
    ASSERT_EQ(parse("-I third"), 0);
    EXPECT_EQ(gPP_include_path_list, options.includePaths);
    DeleteCmdStringOptions(&options);
    EXPECT_EQ(gPP_include_path_list, nullptr);
}

TEST_F(Options, TheDeviceIsThatOfItsName) {
    ASSERT_EQ(parse("-p q5a20ff676"), 0);
    EXPECT_EQ(options.device, get_device_record_by_name("q5a20"));
}

TEST_F(Options, ALogIsOpenedAtOnceAndClosedWithTheRecord) {
    const TemporaryFolder folder;
    ASSERT_EQ(parse("-log \"" + folder.file("run") + "\" -i"), 0);
    EXPECT_NE(StandardLog, nullptr);
    EXPECT_TRUE(options.ignoreUnmapped);
    DeleteCmdStringOptions(&options);
    EXPECT_EQ(StandardLog, nullptr);
    EXPECT_EQ(folder.listing(), "run.log\n");
}

TEST_F(Options, ASecondLogTakesTheFirstOnesPlace) {
    const TemporaryFolder folder;
    ASSERT_EQ(parse("-log \"" + folder.file("a.log") + "\" -log \"" + folder.file("b.log") + "\""), 0);
    EXPECT_EQ(options.logFile->fullName, folder.file("b.log"));
    DeleteCmdStringOptions(&options);
    EXPECT_EQ(folder.listing(), "a.log\nb.log\n");
}

TEST_F(Options, AnExistingLogIsRefusedUnlessOverwritingIsAllowed) {
    const TemporaryFolder folder;
    const std::string name = folder.write("run.log", "old");
    EXPECT_EQ(failure("-log \"" + name + "\""),
        "1: ERROR:Lanefill:117 - File '" + name +
            "' already exists, and an attempt was made to overwrite it.\n"
            "    Use a different file name, or use the '-w on' option to force file overwrites.");
    EXPECT_EQ(readFile(name), "old");
    EXPECT_EQ(parse("-w on -log \"" + name + "\""), 0);
}

// --- help and message files ----------------------------------------------------------------------------------------

TEST_F(Options, HelpEndsTheParse) {
    EXPECT_EQ(parse("-i -h bx BD -u"), -1);
    EXPECT_EQ(dumpOptions(options), "ignoreUnmapped\ntopic: bx\ntopic: BD\n");
    EXPECT_EQ(count, 2);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Options, HelpWithoutTopics) {
    EXPECT_EQ(parse("-h"), -1);
    EXPECT_EQ(options.helpTopics, nullptr);
    EXPECT_EQ(parse("-h -bm x.bmm"), -1);
    EXPECT_EQ(options.bmmFiles, nullptr);
}

TEST_F(Options, TheMessageFilesAreWrittenAndEndTheParse) {
    const TemporaryFolder folder;
    EXPECT_EQ(parse("-msg \"" + folder.file("a") + "\" -i"), -2);
    EXPECT_EQ(parse("-msgc \"" + folder.file("b") + "\" -i"), -2);
    EXPECT_EQ(folder.listing(), "a.msg\nb.c\n");
    EXPECT_FALSE(options.ignoreUnmapped);
}

TEST_F(Options, AMessageFileThatExistsIsRefused) {
    const TemporaryFolder folder;
    const std::string name = folder.write("a.msg", "old");
    EXPECT_EQ(parse("-msg \"" + name + "\""), 1);
    EXPECT_EQ(readFile(name), "old");
}

// --- texts and counts ----------------------------------------------------------------------------------------------

TEST_F(Options, TheTextsAreKeptWithABlankBetweenThem) {
    ASSERT_EQ(parse("-i"), 0);
    ASSERT_EQ(parse(" -u "), 0);
    EXPECT_STREQ(options.cmdString, "-i  -u ");
}

TEST_F(Options, TheFirstWordOfTheFirstTextIsTheProgram) {
    count = 0;
    ASSERT_EQ(ParseCmdStringOptions("/opt/bin/lanefill -i -u", &options, &count), 0);
    EXPECT_EQ(dumpOptions(options), "program: /opt/bin/lanefill\nignoreUnmapped\nupdateAll\n");
    EXPECT_EQ(count, 2);
    count = 0;
    ASSERT_EQ(ParseCmdStringOptions("-pg", &options, &count), 0);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(options.progress, OutputProgress);
}

TEST_F(Options, AProgramAloneIsNoSwitch) {
    count = 0;
    ASSERT_EQ(ParseCmdStringOptions("\"C:\\my tools\\lanefill.exe\"", &options, &count), 0);
    EXPECT_EQ(dumpOptions(options), "program: C:\\my tools\\lanefill.exe\n");
    EXPECT_EQ(count, 0);
}

TEST_F(Options, OtherCountsReadSwitchesFromTheStart) {
    for (const int start : {-1, 1, 7}) {
        count = start;
        ASSERT_EQ(ParseCmdStringOptions("-i -bm a.bmm", &options, &count), 0);
        EXPECT_EQ(count, 2);
        EXPECT_EQ(options.programFile, nullptr);
    }
}

TEST_F(Options, TheCountHoldsTheSwitchThatFailed) {
    EXPECT_EQ(parse("-i -u -bd"), 14);
    EXPECT_EQ(count, 3);
}

TEST_F(Options, ARecordTakesFurtherTexts) {
    ASSERT_EQ(parse("-bm a.bmm -bd a.elf -D A=1 -bx x -o i a.bin -workflow w"), 0);
    ASSERT_EQ(parse("-bm b.bmm -bd b.elf -D B=2 -bx y -o i b.bin -workflow v"), 0);
    EXPECT_EQ(dumpOptions(options), "defines: #define A 1\n#define B 2\n\nmap: b a.bmm\nmap: b b.bmm\ndata: a.elf\n"
                                    "data: b.elf\nmem folder: x\nmem folder: y\nout image: a.bin\n"
                                    "out image: b.bin\nworkflow: w\nworkflow: v\n");
}

TEST_F(Options, CommentsMacrosAndConditionalsWorkInATextOfSeveralLines) {
    EXPECT_EQ(record("// a project\n"
                     "#define NAME soc\n"
                     "-bm NAME.bmm /* the map */\n"
                     "-bm NAME /* expanded */\n"
                     "#if 0\n"
                     "-u\n"
                     "#else\n"
                     "-i\n"
                     "#endif\n"),
        "map: b NAME.bmm\nmap: b soc\nignoreUnmapped\n");
}

TEST_F(Options, ADirectiveEndsTheValueOfADefinition) {
    EXPECT_EQ(record("-D A=1\n#if 1\n-D B=2\n#endif\n-i"), "defines: #define A 1\n#define B 2\n\nignoreUnmapped\n");
}

TEST_F(Options, AMacroOfTheTextDoesNotChangeADefinition) {
    EXPECT_EQ(record("#define A 3\n-D A=A"), "defines: #define A A\n\n");
}

} // namespace
} // namespace memdata::testing

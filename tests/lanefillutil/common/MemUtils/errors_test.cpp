// errors_test.cpp - what is said about texts that are no MEM files, whole and with its place.
// SPDX-License-Identifier: Apache-2.0
#include "mem_file_test.h"

#include "support/temporary_folder.h"

namespace memdata::testing {
namespace {

class MemErrors : public MemFileTest {
protected:
    // Reads a file on disk; its name in what is said becomes FILE.
    std::string readFromDisk(const std::string& name) {
        LNF_MEMDataFile onDisk(16);
        fileSpecType* spec = CreateFileSpec(name.c_str());
        const int status = onDisk.OpenDataFile(spec, nullptr, 1);
        EXPECT_EQ(onDisk.GetProgramSectionCount(), 0u);
        DeleteFileSpec(&spec);
        std::string said = alerts.take();
        for (size_t at; (at = said.find(name)) != std::string::npos;) said.replace(at, name.size(), "FILE");
        return "status " + std::to_string(status) + said;
    }

    // Alert 11 at a line of data.mem.
    static std::string unexpected(const char* symbol, const char* expected, int line, const char* lineAndCaret) {
        return formatted("status 2\nERROR:Lanefill:11 - Unexpected symbol '%s', '%s' expected.\n"
                         "   Line #%d, File \"data.mem\".\n%s\n",
            symbol, expected, line, lineAndCaret);
    }
};

TEST_F(MemErrors, AValueWithAPrefixIsIllegal) {
    EXPECT_EQ(read("@10 AB\n CD 0x12"), "status 2\n"
                                        "ERROR:Lanefill:40 - Illegal MEM file data value '0x12'.\n"
                                        "    Make sure that prefixes (such as '0x') aren't used.\n"
                                        "   Line #2, File \"data.mem\".\n"
                                        " CD 0x12\n"
                                        "    ^\n\n");
    EXPECT_EQ(read("RADIX 2\n0n101"), "status 2\n"
                                      "ERROR:Lanefill:40 - Illegal MEM file data value '0n101'.\n"
                                      "    Make sure that prefixes (such as '0x') aren't used.\n"
                                      "   Line #2, File \"data.mem\".\n"
                                      "0n101\n"
                                      "^\n\n");
}

TEST_F(MemErrors, ANegativeValueIsIllegal) {
    EXPECT_EQ(read("12-34"), "status 2\n"
                             "ERROR:Lanefill:40 - Illegal MEM file data value '-34'.\n"
                             "    Make sure that prefixes (such as '0x') aren't used.\n"
                             "   Line #1, File \"data.mem\".\n"
                             "12-34\n"
                             "  ^\n\n");
}

TEST_F(MemErrors, WordsFloatsAndStringsAreNoValues) {
    EXPECT_EQ(read("@10 AB\n12G"), unexpected("12G", "valid data value", 2, "12G\n^\n"));
    EXPECT_EQ(read("@10 AB 1.5"), unexpected("1.5", "valid data value", 1, "@10 AB 1.5\n       ^\n"));
    EXPECT_EQ(read("\"12\""), unexpected("12", "valid data value", 1, "\"12\"\n^\n"));
    EXPECT_EQ(read("12U"), unexpected("U", "valid data value", 1, "12U\n  ^\n"));
    EXPECT_EQ(read("0x"), unexpected("0x", "valid data value", 1, "0x\n^\n"));
}

TEST_F(MemErrors, ADigitOutsideOfTheRadixIsNoValue) {
    EXPECT_EQ(read("RADIX 2 101 12"), unexpected("12", "valid data value", 1, "RADIX 2 101 12\n            ^\n"));
    EXPECT_EQ(read("102", 2), unexpected("102", "valid data value", 1, "102\n^\n"));
}

TEST_F(MemErrors, TheReservedWordsAreRefusedWhereTheyStand) {
    EXPECT_EQ(read("@10 PACKED 1"), unexpected("PACKED", "valid data value", 1, "@10 PACKED 1\n    ^\n"));
    EXPECT_EQ(read("12\nunpacked"), unexpected("UNPACKED", "valid data value", 2, "unpacked\n^\n"));
    EXPECT_EQ(read("PACKING"), unexpected("PACKING", "valid data value", 1, "PACKING\n^\n"));
}

TEST_F(MemErrors, AValueInARadixThatCarriesNoDataIsRefusedWhereItStands) {
    EXPECT_EQ(read("RADIX 10 12"), unexpected("12", "valid data value", 1, "RADIX 10 12\n         ^\n"));
    EXPECT_EQ(read("RADIX 8\n7"), unexpected("7", "valid data value", 2, "7\n^\n"));
    EXPECT_EQ(read("RADIX 0\n1"), unexpected("1", "valid data value", 2, "1\n^\n"));
    EXPECT_EQ(read("@4 12", 10), unexpected("12", "valid data value", 1, "@4 12\n   ^\n"));
}

TEST_F(MemErrors, ARadixBeyondAllNumbersIsNotTakenForAnother) {
    EXPECT_EQ(read("RADIX 4294967312 1"), unexpected("1", "valid data value", 1,
                                              "RADIX 4294967312 1\n"
                                              "                 ^\n"));
    EXPECT_EQ(read("RADIX -16\n1"), unexpected("1", "valid data value", 2, "1\n^\n"));
}

TEST_F(MemErrors, ARadixThatIsNeverUsedIsNoError) {
    EXPECT_EQ(read("12 RADIX 10"), "0:12");
    EXPECT_EQ(read("RADIX 10 @4 RADIX 16 AB"), "4:AB");
}

TEST_F(MemErrors, ARadixIsANumber) {
    EXPECT_EQ(read("RADIX x 1"), unexpected("x", "radix value", 1, "RADIX x 1\n      ^\n"));
    EXPECT_EQ(read("RADIX"), unexpected("end-of-file", "radix value", 1, ""));
}

TEST_F(MemErrors, AnAddressIsANumber) {
    EXPECT_EQ(read("12\n@ZZ 1"), unexpected("ZZ", "section address value", 2, "@ZZ 1\n ^\n"));
    EXPECT_EQ(read("@1.5"), unexpected("1.5", "section address value", 1, "@1.5\n ^\n"));
    EXPECT_EQ(read("@@"), unexpected("@", "section address value", 1, "@@\n ^\n"));
    EXPECT_EQ(read("12 @"), unexpected("end-of-file", "section address value", 1, ""));
}

TEST_F(MemErrors, AnAddressBeyondSixtyFourBitsIsNoAddress) {
    EXPECT_EQ(read("@00000000000000000010 1"), "10:10/4");
    EXPECT_EQ(read("@10000000000000010 1"), unexpected("10000000000000010", "section address value", 1,
                                                "@10000000000000010 1\n"
                                                " ^\n"));
}

TEST_F(MemErrors, AValueThatRunsPastTheLastAddressStops) {
    EXPECT_EQ(read("@FFFFFFFF 12\n@FFFFFFFE 12 34"), "FFFFFFFF:12 FFFFFFFE:1234");
    EXPECT_EQ(read("@FFFFFFFE 12\n34 5 6"),
        "status 2\n"
        "ERROR:Lanefill:32 - Data segment starting at 0xFFFFFFFE, has exceeded 0xFFFFFFFF addressing boundary.\n"
        "\n"
        "   Line #2, File \"data.mem\".\n"
        "34 5 6\n"
        "   ^\n\n");
}

TEST_F(MemErrors, DataAtAnAddressBeyondThirtyTwoBitsStops) {
    EXPECT_EQ(read("@100000000 @10 12"), "100000000: 10:12");
    EXPECT_EQ(read("@123456789 @100000000\n1"),
        "status 2\n"
        "ERROR:Lanefill:32 - Data segment starting at 0x100000000, has exceeded 0xFFFFFFFF addressing boundary.\n"
        "\n"
        "   Line #2, File \"data.mem\".\n"
        "1\n"
        "^\n\n");
}

TEST_F(MemErrors, AnAddressThatWrapsAroundStops) {
    for (const char* text : {"@FFFFFFFFFFFFFFFF 0000000000000000", "@FFFFFFFFFFFFFFF8 0123456789ABCDEF 01"})
        EXPECT_NE(read(text).find("status 2\nERROR:Lanefill:32 - Data segment starting at 0xFFFFFFFFFFFFFFF"),
            std::string::npos);
}

TEST_F(MemErrors, AValueAcrossTheLastAddressStopsInTheMiddle) {
    EXPECT_EQ(read("@FFFFFFF0 00112233445566778899AABBCCDDEEFF0"),
        "status 2\n"
        "ERROR:Lanefill:32 - Data segment starting at 0xFFFFFFF0, has exceeded 0xFFFFFFFF addressing boundary.\n"
        "\n"
        "   Line #1, File \"data.mem\".\n"
        "@FFFFFFF0 00112233445566778899AABBCCDDEEFF0\n"
        "          ^\n\n");
}

TEST_F(MemErrors, ACommaOutsideOfAVectorIsRefused) {
    EXPECT_EQ(read("12, 34"),
        unexpected(",", "valid data value. Commas stand only between the values of a memory_initialization_vector", 1,
            "12, 34\n  ^\n"));
}

TEST_F(MemErrors, ASemicolonBeginsNoComment) {
    EXPECT_EQ(read("12\n; text"), unexpected(";", "valid data value", 2, "; text\n^\n"));
}

TEST_F(MemErrors, AMistakeInAMacroShowsBothPlaces) {
    EXPECT_EQ(read("#define X 12 zz\n@10\nX\n"),
        "status 2\n"
        "ERROR:Lanefill:11 - Unexpected symbol 'zz', 'valid data value' expected.\n"
        "   Line #1, Macro \"X\".\n"
        "12 zz\n"
        "   ^\n"
        "   Line #3, File \"data.mem\".\n\n");
}

TEST_F(MemErrors, AnUnclosedCommentIsReportedAtItsPlace) {
    EXPECT_EQ(read("12\n34 /* open /* */"),
        "status 2\n"
        "ERROR:Lanefill:39 - Unmatched nested C style comment. A closing '*/' was expected before the end of the "
        "file.\n"
        "   Line #2, File \"data.mem\".\n"
        "34 /* open /* */\n"
        "   ^\n\n");
}

TEST_F(MemErrors, AnUnclosedDirectiveIsReportedAtItsPlace) {
    EXPECT_EQ(read("12\n#if 1\n34"), "status 2\n"
                                     "ERROR:Lanefill:82 - Unmatched preprocessor directive '#if', expected a #else or "
                                     "#endif, but encountered EOF instead.\n"
                                     "   Line #2, File \"data.mem\".\n"
                                     "#if 1\n"
                                     "^\n\n");
}

TEST_F(MemErrors, AFailingDirectiveIsDamageOfTheFile) {
    EXPECT_EQ(read("12\n#endif\n").substr(0, 9), "status 2\n");
    EXPECT_EQ(read("12\n#include \"nowhere.mem\"\n").substr(0, 9), "status 2\n");
}

TEST_F(MemErrors, ATextWithoutDataHasNoSection) {
    EXPECT_EQ(read("// nothing\n"), "status 2\nERROR:Lanefill:9 - Data file 'data.mem' had no section data.\n\n");
    EXPECT_EQ(read(" \n\n"), "status 2\nERROR:Lanefill:9 - Data file 'data.mem' had no section data.\n\n");
}

TEST_F(MemErrors, AMissingFileIsReported) {
    const TemporaryFolder folder;
    EXPECT_EQ(readFromDisk(folder.file("gone.mem")), "status 1\n"
                                                     "ERROR:Lanefill:1 - File 'FILE' can not be found, or is busy.\n"
                                                     "    Please ensure that the file is available in the correct\n"
                                                     "    directory location, or isn't being locked by another\n"
                                                     "    application.\n\n");
}

TEST_F(MemErrors, AnEmptyFileIsReported) {
    const TemporaryFolder folder;
    EXPECT_EQ(readFromDisk(folder.write("empty.mem", "")),
        "status 17\nERROR:Lanefill:53 - File 'FILE' is empty or has no MEM content.\n\n");
}

TEST_F(MemErrors, AFileOnDiskShowsItsNameAndLine) {
    const TemporaryFolder folder;
    EXPECT_EQ(readFromDisk(folder.write("bad.mem", "@10\n AB ? CD")),
        "status 2\n"
        "ERROR:Lanefill:11 - Unexpected symbol '?', 'valid data value' expected.\n"
        "   Line #2, File \"FILE\".\n"
        " AB ? CD\n"
        "    ^\n\n");
}

} // namespace
} // namespace memdata::testing

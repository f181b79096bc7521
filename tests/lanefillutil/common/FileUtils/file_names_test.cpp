// file_names_test.cpp - names of files taken apart and put together, and the table of formats.
// SPDX-License-Identifier: Apache-2.0

#include "file_test.h"

namespace {

using namespace memdata;
using namespace memdata::testing;

class FileNames : public FileTest {
protected:
    // "volume|directory|base|extension"
    static std::string parts(const char* name) {
        OwnedString volume, directory, base, extension;
        if (SeparateFilePathAndName(name, volume.out(), directory.out(), base.out(), extension.out()) != 0) return "?";
        return std::string(volume.get()) + "|" + directory.get() + "|" + base.get() + "|" + extension.get();
    }
    static std::string built(
        const char* name, const char* directory, const char* extension, const char* suffix, u32 attributes = 0) {
        OwnedString out;
        EXPECT_EQ(BuildNewFileName(name, out.out(), directory, extension, suffix, attributes), 0);
        return out.get();
    }
};

TEST_F(FileNames, OnlyTheLastDotBeginsTheExtension) {
    EXPECT_EQ(parts("a.b.elf"), "||a.b|elf");
}

TEST_F(FileNames, ADotInTheDirectoryIsNoExtension) {
    EXPECT_EQ(parts("dir.x/file"), "|dir.x/|file|");
}

TEST_F(FileNames, TheDirectoryEndsWithTheLastSlash) {
    EXPECT_EQ(parts("/work/map/top.bmm"), "|/work/map/|top|bmm");
    EXPECT_EQ(parts("/top"), "|/|top|");
    EXPECT_EQ(parts("work/"), "|work/||");
}

TEST_F(FileNames, TheVolumeEndsWithTheColonOfTheFirstColonSlash) {
    EXPECT_EQ(parts("C:/work/top.bmm"), "C:|/work/|top|bmm");
    EXPECT_EQ(parts("a:/b:/c.d"), "a:|/b:/|c|d");
    EXPECT_EQ(parts("a:b.c"), "||a:b|c");
}

TEST_F(FileNames, FoldersOfDotsHaveNoExtension) {
    EXPECT_EQ(parts(".."), "||..|");
    EXPECT_EQ(parts("a/."), "|a/|.|");
}

TEST_F(FileNames, BlanksAndLettersBeyondAsciiStayAsTheyAre) {
    EXPECT_EQ(parts("my files/größe über.alles.mem"), "|my files/|größe über.alles|mem");
}

TEST_F(FileNames, PartsThatAreNotAskedForAreNotMade) {
    OwnedString base;
    EXPECT_EQ(SeparateFilePathAndName("x/y.z", nullptr, nullptr, base.out(), nullptr), 0);
    EXPECT_STREQ(base.get(), "y");
}

TEST_F(FileNames, ANullNameHasNoParts) {
    EXPECT_EQ(parts(nullptr), "?");
}

TEST_F(FileNames, ATranslatedPathHasForwardSlashesOnly) {
    OwnedString path(CopyAndTranslateFilePath("C:", "\\work\\map/"));
    EXPECT_STREQ(path.get(), "C:/work/map/");
    path.reset(CopyAndTranslateFilePath(nullptr, "\\\\server\\share\\"));
    EXPECT_STREQ(path.get(), "//server/share/");
}

TEST_F(FileNames, CopyFileNameCopies) {
    OwnedString copy(CopyFileName("a b.c"));
    EXPECT_STREQ(copy.get(), "a b.c");
    EXPECT_EQ(CopyFileName(nullptr), nullptr);
}

TEST_F(FileNames, CatFileNameAddsAMissingSlash) {
    OwnedString name(CatFileName("dir", "a.c"));
    EXPECT_STREQ(name.get(), "dir/a.c");
    name.reset(CatFileName("dir/", "a.c"));
    EXPECT_STREQ(name.get(), "dir/a.c");
    name.reset(CatFileName("", "a.c"));
    EXPECT_STREQ(name.get(), "a.c");
}

TEST_F(FileNames, ANameWithoutExtensionTakesTheDefault) {
    CapturedAlerts alerts;
    EXPECT_EQ(built("dir/x", "", "mem", "", kWARN_EXTENSION_REPLACED), "dir/x.mem");
    EXPECT_EQ(built("x.", "", "mem", ""), "x.mem");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(FileNames, AGivenExtensionIsReplacedByTheDefault) {
    CapturedAlerts alerts;
    EXPECT_EQ(built("x.txt", "", "mem", ""), "x.mem");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(FileNames, AReplacedExtensionIsWarnedAboutOnRequest) {
    RegisterSystemToolName("Lanefill");
    CapturedAlerts alerts;
    EXPECT_EQ(built("x.txt", "", "mem", "", kWARN_EXTENSION_REPLACED), "x.mem");
    EXPECT_EQ(alerts.text(), "\nWARNING:Lanefill:115 - The file extension on 'x.txt' was replaced with the default "
                             "extension .mem.\n\n");
}

TEST_F(FileNames, ExtensionsAreComparedExactlyForTheWarning) {
    CapturedAlerts alerts;
    EXPECT_EQ(built("x.mem", "", "mem", "", kWARN_EXTENSION_REPLACED), "x.mem");
    EXPECT_EQ(alerts.take(), "");
    EXPECT_EQ(built("x.MEM", "", "mem", "", kWARN_EXTENSION_REPLACED), "x.mem");
    EXPECT_NE(alerts.take(), "");
}

TEST_F(FileNames, AGivenExtensionIsKeptOnRequest) {
    EXPECT_EQ(built("x.txt", "", "mem", "", kKEEP_EXTENSION), "x.txt");
    EXPECT_EQ(built("x", "", "mem", "", kKEEP_EXTENSION), "x.mem");
}

TEST_F(FileNames, AKeptExtensionIsWarnedAboutWhenItIsNotTheDefault) {
    CapturedAlerts alerts;
    EXPECT_EQ(built("x.mem", "", "mem", "", kKEEP_EXTENSION | kWARN_EXTENSION_REPLACED), "x.mem");
    EXPECT_EQ(built("x", "", "mem", "", kKEEP_EXTENSION | kWARN_EXTENSION_REPLACED), "x.mem");
    EXPECT_EQ(alerts.take(), "");
    EXPECT_EQ(built("x.txt", "", "mem", "", kKEEP_EXTENSION | kWARN_EXTENSION_REPLACED), "x.txt");
    EXPECT_NE(alerts.take().find("Lanefill:115"), std::string::npos);
}

TEST_F(FileNames, ADirectoryReplacesThePathOfTheName) {
    EXPECT_EQ(built("old/x.txt", "new", "mem", ""), "new/x.mem");
    EXPECT_EQ(built("C:/old/x.txt", "new/", "mem", ""), "new/x.mem");
    EXPECT_EQ(built("C:/old/x.txt", nullptr, "mem", nullptr), "C:/old/x.mem");
}

TEST_F(FileNames, ASuffixFollowsTheBaseName) {
    EXPECT_EQ(built("a/x.y.txt", "", "txt", "_hard_ip"), "a/x.y_hard_ip.txt");
}

TEST_F(FileNames, AnEmptyExtensionBringsNoDot) {
    EXPECT_EQ(built("a/x", "", "", ""), "a/x");
}

TEST_F(FileNames, NamesAreNotCutAtAnyLength) {
    std::string longName(10001, 'n');
    longName[5000] = '/';
    EXPECT_EQ(built(longName.c_str(), "", "mem", "_s"), longName + "_s.mem");
}

TEST_F(FileNames, BuildingFromNothingIsAStatus) {
    OwnedString out;
    EXPECT_EQ(BuildNewFileName(nullptr, out.out(), "", "mem", "", 0), 3);
    EXPECT_EQ(BuildNewFileName("x", nullptr, "", "mem", "", 0), 3);
}

TEST(FileFormats, EachExtensionHasItsCode) {
    std::string table;
    for (const char* extension :
        {"", "txt", "xml", "nky", "dmp", "bmm", "log", "msg", "c", "ucf", "vhd", "v", "mem", "vmf", "vmem", "bit",
            "rbt", "elf", "drf", "bif", "int", "inb", "bin", "img", "mif", "coe", "dat", "hex", "mcs", "exo"})
        table += std::string(extension) + " " + std::to_string(DecodeFileFormatType(extension)) + ", ";
    EXPECT_EQ(table, " 1, txt 2, xml 3, nky 4, dmp 5, bmm 6, log 7, msg 8, c 9, ucf 10, vhd 11, v 12, mem 13, vmf 13, "
                     "vmem 13, bit 14, rbt 15, elf 16, drf 17, bif 18, int 19, inb 20, bin 21, img 22, mif 23, coe 24, "
                     "dat 25, hex 26, mcs 27, exo 28, ");
}

TEST(FileFormats, TheCaseOfAnExtensionDoesNotMatter) {
    EXPECT_EQ(DecodeFileFormatType("ELF"), 16u);
    EXPECT_EQ(DecodeFileFormatType("VmEm"), 13u);
}

TEST(FileFormats, AnUnknownExtensionIsFormatZero) {
    EXPECT_EQ(DecodeFileFormatType("elf2"), 0u);
    EXPECT_EQ(DecodeFileFormatType("el"), 0u);
}

TEST(FileFormats, EachCodeHasItsFirstExtension) {
    EXPECT_STREQ(DecodeFileExtensionType(1), "");
    EXPECT_STREQ(DecodeFileExtensionType(13), "mem");
    EXPECT_STREQ(DecodeFileExtensionType(28), "exo");
    EXPECT_EQ(DecodeFileExtensionType(0), nullptr);
    EXPECT_EQ(DecodeFileExtensionType(29), nullptr);
}

} // namespace

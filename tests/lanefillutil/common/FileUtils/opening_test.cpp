// opening_test.cpp - inputs and outputs on disk: found, refused, searched for.
// SPDX-License-Identifier: Apache-2.0

#include "file_test.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace memdata;
using namespace memdata::testing;

std::string openingAlert(const std::string& name) {
    return "\nERROR:Lanefill:1 - File '" + name +
           "' can not be found, or is busy.\n    Please ensure that the file is available in the correct\n"
           "    directory location, or isn't being locked by another\n    application.\n\n";
}

std::string creatingAlert(const std::string& name) {
    return "\nERROR:Lanefill:2 - File '" + name +
           "' can not be created, or is write protected.\n"
           "    Please ensure that the directory path exists, or the file\n"
           "    isn't write protected or being locked by another application.\n\n";
}

// Behind an alert that does not tell the cause.
std::string causeAlert(const std::string& name, const std::string& cause) {
    return "\nERROR:Lanefill:86 - File '" + name + "' can not be " + cause + ".\n\n";
}

std::string overwritingAlert(const std::string& name) {
    return "\nERROR:Lanefill:117 - File '" + name +
           "' already exists, and an attempt was made to overwrite it.\n"
           "    Use a different file name, or use the '-w on' option to force file overwrites.\n\n";
}

class Opening : public FileTest {
protected:
    Opening() { RegisterSystemToolName("Lanefill"); }

    // Status and alert of an attempt that must not give a handle.
    std::string refused(const std::string& name, u32 attributes, int expected = 1) {
        CapturedAlerts alerts;
        fileIODescriptor* file = &StandardOut;
        EXPECT_EQ(Open_File(name.c_str(), attributes, &file), expected);
        EXPECT_EQ(file, nullptr);
        return alerts.text();
    }
    int openDisk(const std::string& name, const char* extension, u32 attributes, fileIODescriptor** file) {
        OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        return OpenDiskFile(spec.get(), "", extension, "", attributes, file);
    }
    // Opens, writes and closes an output by its spec.
    int writeDisk(const std::string& name, const std::string& text, u32 attributes) {
        fileIODescriptor* file = nullptr;
        int status = openDisk(name, "mem", attributes, &file);
        if (status == 0) status = outputLine(file, text.c_str());
        return status == 0 ? Close_File(&file) : status;
    }
};

TEST_F(Opening, AnInputThatIsNotThereIsReported) {
    const std::string name = folder.file("none.elf");
    EXPECT_EQ(refused(name, kBINARY_READ_WHOLE), openingAlert(name));
}

TEST_F(Opening, AQuietFailureReportsNothing) {
    EXPECT_EQ(refused(folder.file("none.elf"), kBINARY_READ_WHOLE | kQUIET_OPEN), "");
    EXPECT_EQ(refused(folder.file("none/out.mem"), kTEXT_WRITE | kQUIET_OPEN), "");
}

TEST_F(Opening, ADirectoryIsNoInput) {
    const std::string name = folder.path().string();
    const std::string alerts = openingAlert(name) + causeAlert(name, "read: Is a directory");
    EXPECT_EQ(refused(name, kTEXT_READ), alerts);
    EXPECT_EQ(refused(name, kBINARY_READ_WHOLE), alerts);
}

TEST_F(Opening, ADirectoryIsNoOutput) {
    const std::string name = folder.path().string();
    EXPECT_EQ(refused(name, kTEXT_WRITE), creatingAlert(name));
    EXPECT_EQ(refused(name + "/", kTEXT_WRITE), creatingAlert(name + "/"));
}

TEST_F(Opening, AnOutputInAMissingDirectoryIsReported) {
    const std::string name = folder.file("none/out.mem");
    EXPECT_EQ(refused(name, kTEXT_WRITE), creatingAlert(name));
}

TEST_F(Opening, AnOutputWhereNoFilesCanBeMadeIsReported) {
    EXPECT_EQ(refused("/proc/memdata-test.mem", kTEXT_WRITE), creatingAlert("/proc/memdata-test.mem"));
}

TEST_F(Opening, AReadOnlyDirectoryTakesNoOutput) {
    ASSERT_EQ(chmod(folder.path().c_str(), 0555), 0);
    const std::string name = folder.file("out.mem");
    EXPECT_EQ(exitStatusOfChild([&] {
        if (geteuid() == 0 && setuid(65534) != 0) return 99;
        return refused(name, kTEXT_WRITE) == creatingAlert(name) ? 0 : 1;
    }),
        0);
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
}

TEST_F(Opening, AWriteProtectedFileIsNotReplaced) {
    const std::string name = folder.write("out.mem", "old");
    ASSERT_EQ(chmod(folder.path().c_str(), 0777), 0);
    ASSERT_EQ(chmod(name.c_str(), 0444), 0);
    EXPECT_EQ(exitStatusOfChild([&] {
        if (geteuid() == 0 && setuid(65534) != 0) return 99;
        return refused(name, kTEXT_WRITE) == creatingAlert(name) ? 0 : 1;
    }),
        0);
    EXPECT_EQ(readFile(name), "old");
}

TEST_F(Opening, AnEmptyInputGivesANullHandleAndStatusZero) {
    const std::string name = folder.write("empty", "");
    EXPECT_EQ(refused(name, kTEXT_READ, 0), "");
    EXPECT_EQ(refused(name, kBINARY_READ_WHOLE, 0), "");
    EXPECT_EQ(refused("/dev/null", kBINARY_READ_WHOLE, 0), "");
}

TEST_F(Opening, NullArgumentsAreAStatus) {
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(Open_File("x", kTEXT_READ, nullptr), 3);
    EXPECT_EQ(Open_File(nullptr, kTEXT_READ, &file), 3);
    EXPECT_EQ(OpenDiskFile(nullptr, "", "mem", "", kTEXT_READ, &file), 3);
    EXPECT_EQ(SearchAndOpenDiskReadFile(nullptr, "mem", "", nullptr, kTEXT_READ, &file), 3);
}

TEST_F(Opening, AFileWithoutANameIsRefused) {
    EXPECT_EQ(refused("", kTEXT_READ), openingAlert(""));
    EXPECT_EQ(refused("", kTEXT_WRITE), creatingAlert(""));
}

TEST_F(Opening, AnEmptyNameIsReported) {
    CapturedAlerts alerts;
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(openDisk("", "bmm", kTEXT_READ, &file), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:55 - A null file name was given for a 'bmm' file.\n\n");
}

TEST_F(Opening, NamesMayHoldBlanksAndLettersBeyondAscii) {
    const std::string name = folder.file("my größe – ファイル.mem");
    EXPECT_EQ(write(name, "text"), 0);
    fileIODescriptor* file = open(name, kTEXT_READ);
    EXPECT_STREQ(GetFileName(file), name.c_str());
    EXPECT_EQ(remainingLines(file), "[text]");
    Close_File(&file);
}

TEST_F(Opening, ANameOfTheGreatestLengthIsWritten) {
    std::string longName(255, 'n');
    longName.replace(251, 4, ".mem");
    const std::string name = folder.file(longName);
    EXPECT_EQ(write(name, "text"), 0);
    EXPECT_EQ(readFile(name), "text");
}

TEST_F(Opening, ANameThatIsTooLongIsReported) {
    const std::string name = folder.file(std::string(300, 'n'));
    EXPECT_EQ(refused(name, kTEXT_WRITE), creatingAlert(name) + causeAlert(name, "created: File name too long"));
    EXPECT_EQ(refused(name, kTEXT_READ), openingAlert(name) + causeAlert(name, "read: File name too long"));
}

TEST_F(Opening, DefaultAttributesAreAddedToThoseOfTheFile) {
    EXPECT_EQ(gDefaultFileAttributes, 0x2000000u);
    EXPECT_EQ(SetDefaultFileAttributes(kNEWLINE_AS_BLANK, true), 0x2000000u);
    EXPECT_EQ(write(folder.file("a"), "x\n"), 0);
    EXPECT_EQ(readFile(folder.file("a")), "x ");
    EXPECT_EQ(SetDefaultFileAttributes(kNEWLINE_AS_BLANK, false), 0x2200000u);
    EXPECT_EQ(gDefaultFileAttributes, 0x2000000u);
}

TEST_F(Opening, AnExistingOutputIsRefused) {
    const std::string name = folder.write("out.mem", "old");
    CapturedAlerts alerts;
    EXPECT_EQ(writeDisk(name, "new", kOUTPUT_FILE | kREFUSE_OVERWRITE), 1);
    EXPECT_EQ(alerts.text(), overwritingAlert(name));
    EXPECT_EQ(readFile(name), "old");
    EXPECT_EQ(folder.listing(), "out.mem\n");
}

TEST_F(Opening, AnEmptyExistingOutputIsRefusedToo) {
    const std::string name = folder.write("out.mem", "");
    CapturedAlerts alerts;
    EXPECT_EQ(writeDisk(name, "new", kOUTPUT_FILE | kREFUSE_OVERWRITE), 1);
    EXPECT_EQ(alerts.text(), overwritingAlert(name));
}

TEST_F(Opening, AnExistingOutputIsReplacedWhenOverwritingIsOn) {
    const std::string name = folder.write("out.mem", "old");
    SetDefaultFileAttributes(kOVERWRITING_ALLOWED, true);
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    EXPECT_EQ(writeDisk(name, "new", kOUTPUT_FILE | kREFUSE_OVERWRITE), 0);
    EXPECT_EQ(readFile(name), "new");
}

TEST_F(Opening, AnExistingOutputThatDoesNotAskForRefusalIsReplaced) {
    const std::string name = folder.write("out.mem", "old");
    EXPECT_EQ(writeDisk(name, "new", kOUTPUT_FILE), 0);
    EXPECT_EQ(readFile(name), "new");
}

TEST_F(Opening, ANewOutputIsNotRefused) {
    EXPECT_EQ(writeDisk(folder.file("out"), "new", kOUTPUT_FILE | kREFUSE_OVERWRITE), 0);
    EXPECT_EQ(readFile(folder.file("out.mem")), "new");
}

TEST_F(Opening, ADeviceIsNotRefused) {
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(openDisk("/dev/null", "", kTEXT_WRITE | kREFUSE_OVERWRITE, &file), 0);
    EXPECT_EQ(Close_File(&file), 0);
}

TEST_F(Opening, ASecondOutputUnderTheNameOfAnOpenOneIsRefused) {
    const std::string name = folder.file("out.mem");
    fileIODescriptor* first = nullptr;
    EXPECT_EQ(openDisk(name, "mem", kOUTPUT_FILE | kREFUSE_OVERWRITE, &first), 0);
    CapturedAlerts alerts;
    EXPECT_EQ(writeDisk(name, "new", kOUTPUT_FILE | kREFUSE_OVERWRITE), 1);
    EXPECT_EQ(alerts.take(), overwritingAlert(name));
    const std::string otherName = folder.file("./out.mem"); // the same file
    EXPECT_EQ(writeDisk(otherName, "new", kOUTPUT_FILE | kREFUSE_OVERWRITE), 1);
    EXPECT_EQ(alerts.take(), overwritingAlert(otherName));
    EXPECT_EQ(Close_File(&first), 0);
}

TEST_F(Opening, AnInputKeepsItsExtension) {
    CapturedAlerts alerts;
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(openDisk(folder.write("a.txt", "x"), "mem", kTEXT_READ | kWARN_EXTENSION_REPLACED, &file), 0);
    Close_File(&file);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Opening, AnInputWithoutExtensionTakesTheDefault) {
    folder.write("a.mem", "x");
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(openDisk(folder.file("a"), "mem", kTEXT_READ, &file), 0);
    EXPECT_EQ(GetFileName(file), folder.file("a.mem"));
    Close_File(&file);
}

TEST_F(Opening, TheOutputTakesTheDefaultExtensionAndSuffix) {
    OwnedFileSpec spec(CreateFileSpec("x/y.elf"));
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(OpenDiskFile(spec.get(), folder.path().c_str(), "txt", "_hard_ip", kTEXT_WRITE, &file), 0);
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(folder.listing(), "y_hard_ip.txt\n");
}

TEST_F(Opening, FilesAreDeletedAndRenamed) {
    const std::string name = folder.write("a", "x");
    EXPECT_EQ(Rename_File(name.c_str(), folder.file("b").c_str()), 0);
    EXPECT_EQ(folder.listing(), "b\n");
    EXPECT_EQ(Delete_File(folder.file("b").c_str()), 0);
    EXPECT_EQ(folder.listing(), "");
    EXPECT_EQ(Delete_File(name.c_str()), 1);
    EXPECT_EQ(Rename_File(name.c_str(), folder.file("b").c_str()), 1);
    EXPECT_EQ(Delete_File(nullptr), 1);
    EXPECT_EQ(Rename_File(nullptr, nullptr), 1);
}

class Searching : public Opening {
protected:
    void TearDown() override {
        StrListDelete(paths);
        Opening::TearDown();
    }
    void addFolder(const std::string& name) {
        std::filesystem::create_directories(folder.path() / name);
        StrListExtend(&paths, newString(folder.file(name)));
    }
    // The name that was opened, below the folder, or the status.
    std::string found(const std::string& name, const char* extension = "bmm") {
        OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        fileIODescriptor* file = nullptr;
        const int status = SearchAndOpenDiskReadFile(spec.get(), extension, "", paths, kTEXT_READ_WHOLE, &file);
        if (file == nullptr) return std::to_string(status);
        const std::string opened = GetFileName(file);
        Close_File(&file);
        return std::filesystem::relative(opened, folder.path()).string();
    }

    StrList paths = nullptr;
};

TEST_F(Searching, TheNameAsItStandsComesFirst) {
    addFolder("one");
    folder.write("one/a.bmm", "x");
    EXPECT_EQ(found(folder.write("a.bmm", "x")), "a.bmm");
}

TEST_F(Searching, FoldersAreTriedInOrder) {
    addFolder("one");
    addFolder("two");
    addFolder("three");
    folder.write("two/a.bmm", "x");
    folder.write("three/a.bmm", "x");
    EXPECT_EQ(found("a"), "two/a.bmm");
    EXPECT_EQ(found("a.bmm"), "two/a.bmm");
}

TEST_F(Searching, DirectoriesOfTheNameAreLookedForFirst) {
    addFolder("one");
    std::filesystem::create_directories(folder.path() / "one/sub");
    folder.write("one/a.bmm", "x");
    EXPECT_EQ(found("sub/a.bmm"), "one/a.bmm");
    folder.write("one/sub/a.bmm", "x");
    EXPECT_EQ(found("sub/a.bmm"), "one/sub/a.bmm");
}

TEST_F(Searching, ADirectoryOfThatNameIsPassedOver) {
    addFolder("one");
    addFolder("two");
    std::filesystem::create_directories(folder.path() / "one/a.bmm");
    folder.write("two/a.bmm", "x");
    EXPECT_EQ(found("a.bmm"), "two/a.bmm");
}

TEST_F(Searching, AFileThatIsNowhereIsReportedOnceByTheNameOfTheSpec) {
    addFolder("one");
    CapturedAlerts alerts;
    EXPECT_EQ(found("sub/a.bmm"), "1");
    EXPECT_EQ(alerts.text(), openingAlert("sub/a.bmm"));
}

TEST_F(Searching, AnEmptyFileEndsTheSearch) {
    addFolder("one");
    addFolder("two");
    folder.write("one/a.bmm", "");
    folder.write("two/a.bmm", "x");
    EXPECT_EQ(found("a.bmm"), "0");
}

TEST_F(Searching, NoFoldersAreNeeded) {
    EXPECT_EQ(found(folder.write("a.bmm", "x")), "a.bmm");
}

} // namespace

// output_target_test.cpp - outputs appear whole or not at all, whatever ends the run.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/state.h"
#include "file_test.h"
#include "platform/file_image.h"
#include "platform/run_inputs.h"
#include "platform/whole_file.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace memdata;
using namespace memdata::testing;

// Each test runs with each kind of temporary, as systems offer them.
class Outputs : public FileTest, public ::testing::WithParamInterface<TemporaryKind> {
protected:
    Outputs() {
        RegisterSystemToolName("Lanefill");
        gFileState.temporaryKind = GetParam();
    }
    mode_t modeOf(const std::string& name) {
        struct stat facts {};
        EXPECT_EQ(stat(name.c_str(), &facts), 0);
        return facts.st_mode & 07777;
    }
};

std::string kindName(const ::testing::TestParamInfo<TemporaryKind>& info) {
    constexpr const char* kNAMES[] = {"Nameless", "NamelessCopied", "Named"};
    return kNAMES[static_cast<size_t>(info.param)];
}
INSTANTIATE_TEST_SUITE_P(Temporaries, Outputs,
    ::testing::Values(TemporaryKind::kNAMELESS, TemporaryKind::kNAMELESS_COPIED, TemporaryKind::kNAMED), kindName);

TEST_P(Outputs, TheOldFileStaysUntilTheNewOneIsClosed) {
    const std::string name = folder.write("out.mem", "old");
    fileIODescriptor* file = open(name, kTEXT_WRITE);
    outputLine(file, "new");
    EXPECT_EQ(Flush_File(file), 0);
    EXPECT_EQ(readFile(name), "old");
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(readFile(name), "new");
    EXPECT_EQ(folder.listing(), "out.mem\n");
}

TEST_P(Outputs, ANewFileAppearsWhenItIsClosed) {
    const std::string name = folder.file("out.mem");
    fileIODescriptor* file = open(name, kTEXT_WRITE);
    outputLine(file, "new");
    EXPECT_EQ(Flush_File(file), 0);
    EXPECT_FALSE(std::filesystem::exists(name));
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(readFile(name), "new");
    EXPECT_EQ(folder.listing(), "out.mem\n");
}

TEST_P(Outputs, AnAbandonedFileLeavesNoTrace) {
    const std::string name = folder.write("out.mem", "old");
    fileIODescriptor* file = open(name, kTEXT_WRITE);
    outputLine(file, std::string(200000, 'x').c_str());
    abandonFile(&file);
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(readFile(name), "old");
    EXPECT_EQ(folder.listing(), "out.mem\n");
}

TEST_P(Outputs, AnEmptyOutputIsAnEmptyFile) {
    EXPECT_EQ(write(folder.write("out.mem", "old"), ""), 0);
    EXPECT_EQ(readFile(folder.file("out.mem")), "");
}

TEST_P(Outputs, AFileThatIsReadCanBeReplaced) {
    const std::string name = folder.write("a", "one\ntwo\n" + std::string(200000, 'x'));
    fileIODescriptor* in = open(name, kTEXT_READ);
    GetNextTextLine(in);
    EXPECT_EQ(write(name, "new"), 0);
    EXPECT_EQ(lineText(in, GetNextTextLine(in)), "two");
    EXPECT_EQ(lineText(in, GetNextTextLine(in)).size(), 200000u);
    Close_File(&in);
    EXPECT_EQ(readFile(name), "new");
}

TEST_P(Outputs, TheNewFileHasThePermissionsOfTheOldOne) {
    const std::string name = folder.write("run.sh", "old");
    ASSERT_EQ(chmod(name.c_str(), 0751), 0);
    EXPECT_EQ(write(name, "new"), 0);
    EXPECT_EQ(modeOf(name), 0751u);
}

TEST_P(Outputs, ANewFileHasThePermissionsThatTheUserAskedFor) {
    const mode_t old = umask(027);
    EXPECT_EQ(write(folder.file("a"), "new"), 0);
    umask(old);
    EXPECT_EQ(modeOf(folder.file("a")), 0640u);
}

TEST_P(Outputs, TheNewFileHasTheOwnerOfTheOldOne) {
    if (geteuid() != 0) GTEST_SKIP() << "only root may change owners";
    const std::string name = folder.write("a", "old");
    ASSERT_EQ(chown(name.c_str(), 1234, 1235), 0);
    EXPECT_EQ(write(name, "new"), 0);
    struct stat facts {};
    stat(name.c_str(), &facts);
    EXPECT_EQ(facts.st_uid, 1234u);
    EXPECT_EQ(facts.st_gid, 1235u);
}

TEST_P(Outputs, ALinkStaysALinkAndItsFileIsReplaced) {
    std::filesystem::create_directory(folder.path() / "sub");
    folder.write("sub/real", "old");
    std::filesystem::create_symlink("middle", folder.path() / "link");
    std::filesystem::create_symlink("sub/real", folder.path() / "middle");
    EXPECT_EQ(write(folder.file("link"), "new"), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "link"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "middle"));
    EXPECT_EQ(readFile(folder.file("sub/real")), "new");
    EXPECT_FALSE(std::filesystem::is_symlink(folder.path() / "sub/real"));
}

TEST_P(Outputs, ALinkToNothingYetMakesTheFile) {
    std::filesystem::create_symlink(folder.file("real"), folder.path() / "link");
    EXPECT_EQ(write(folder.file("link"), "new"), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "link"));
    EXPECT_EQ(readFile(folder.file("real")), "new");
}

TEST_P(Outputs, LinksThatGoInACircleAreRefused) {
    std::filesystem::create_symlink("b", folder.path() / "a");
    std::filesystem::create_symlink("a", folder.path() / "b");
    CapturedAlerts alerts;
    EXPECT_EQ(write(folder.file("a"), "new"), 1);
    EXPECT_NE(alerts.text().find("can not be created: Too many levels of symbolic links.\n"), std::string::npos);
}

TEST_P(Outputs, ARelativeNameStandsInTheWorkingFolder) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(write("plain.mem", "new"), 0);
    std::filesystem::current_path(before);
    EXPECT_EQ(folder.listing(), "plain.mem\n");
}

TEST_P(Outputs, TheWorkingFolderMayChangeWhileAFileIsOpen) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    fileIODescriptor* file = open("plain.mem", kTEXT_WRITE);
    std::filesystem::current_path(before);
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(folder.listing(), "plain.mem\n");
}

TEST_P(Outputs, AFullDiskIsReportedAndKeepsTheHandle) {
    fileIODescriptor* file = open("/dev/full", kTEXT_WRITE);
    CapturedAlerts alerts;
    EXPECT_EQ(outputLine(file, "small"), 0); // still in the buffer
    EXPECT_EQ(alerts.text(), "");
    EXPECT_EQ(Close_File(&file), 1);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - File '/dev/full' can not be written: No space left on device.\n\n");
    abandonFile(&file);
    EXPECT_EQ(file, nullptr);
}

TEST_P(Outputs, AFailedWriteIsReportedOnceAndRepeatsItsStatus) {
    fileIODescriptor* file = open("/dev/full", kTEXT_WRITE);
    CapturedAlerts alerts;
    const std::string block(300000, 'x');
    EXPECT_EQ(outputBlock(file, block.data(), block.size()), 1);
    EXPECT_NE(alerts.take(), "");
    EXPECT_EQ(outputByte(file, 'x'), 1);
    EXPECT_EQ(PutNextLine(file, "x"), 1);
    EXPECT_EQ(Flush_File(file), 1);
    EXPECT_EQ(Close_File(&file), 1);
    EXPECT_EQ(alerts.text(), "");
    abandonFile(&file);
}

// The size limit of a process stands in for the disk that fills up under a regular file.
TEST_P(Outputs, ADiskThatFillsUpLeavesTheOldFile) {
    const std::string name = folder.write("out.mem", "old");
    EXPECT_EQ(exitStatusOfChild([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{150000, 150000};
        setrlimit(RLIMIT_FSIZE, &limit);
        CapturedAlerts alerts;
        fileIODescriptor* file = open(name, kTEXT_WRITE);
        int status = 0;
        for (int i = 0; i < 1000; ++i) status = outputLine(file, std::string(1000, 'x').c_str());
        if (status != 1 || Close_File(&file) != 1 || file == nullptr) return 1;
        abandonFile(&file);
        return 0;
    }),
        0);
    EXPECT_EQ(readFile(name), "old");
    EXPECT_EQ(folder.listing(), "out.mem\n");
}

TEST_P(Outputs, ANameThatIsTakenByAFolderMeanwhileIsReportedAtTheEnd) {
    const std::string name = folder.file("out.mem");
    fileIODescriptor* file = open(name, kTEXT_WRITE);
    outputLine(file, "new");
    std::filesystem::create_directory(name);
    CapturedAlerts alerts;
    EXPECT_EQ(Close_File(&file), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - File '" + name + "' can not be written: Is a directory.\n\n");
    EXPECT_EQ(Close_File(&file), 1);
    abandonFile(&file);
    EXPECT_EQ(folder.listing(), "out.mem\n");
}

TEST_P(Outputs, ARunThatExitsLeavesTheOldFileAndNoDebris) {
    const std::string name = folder.write("out.mem", "old");
    EXPECT_EQ(exitStatusOfChild([&] {
        fileIODescriptor* file = open(name, kTEXT_WRITE);
        outputLine(file, std::string(200000, 'x').c_str());
        std::exit(5); // as a program does that gives up in the middle
        return 0;
    }),
        5);
    EXPECT_EQ(readFile(name), "old");
    EXPECT_EQ(folder.listing(), "out.mem\n");
}

TEST_F(FileTest, ARunThatIsKilledLeavesTheOldFileAndNoDebris) {
    const std::string name = folder.write("out.mem", "old");
    EXPECT_EQ(exitStatusOfChild([&] {
        fileIODescriptor* file = open(name, kTEXT_WRITE);
        outputLine(file, std::string(200000, 'x').c_str());
        return std::raise(SIGKILL);
    }),
        -1);
    EXPECT_EQ(readFile(name), "old");
    EXPECT_EQ(folder.listing(), "out.mem\n");
}

TEST_P(Outputs, TheEndOfTheEngineDropsWhatWasNotClosed) {
    const std::string name = folder.write("out.mem", "old");
    InitializeSystemResources();
    EXPECT_EQ(exitStatusOfChild([&] {
        fileIODescriptor* file = open(name, kTEXT_WRITE);
        outputLine(file, "new");
        FinalizeSystemResources();
        FinalizeSystemResources();
        return folder.listing() == "out.mem\n" && gFileState.openFiles == nullptr ? 0 : 1;
    }),
        0);
    FinalizeSystemResources();
    EXPECT_EQ(readFile(name), "old");
}

TEST_P(Outputs, AChildDoesNotTakeItsParentsOutputAway) {
    const std::string name = folder.file("out.mem");
    fileIODescriptor* file = open(name, kTEXT_WRITE);
    outputLine(file, "new");
    EXPECT_EQ(exitStatusOfChild([&] {
        abandonFile(&file);
        return 0;
    }),
        0);
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(readFile(name), "new");
}

TEST_P(Outputs, APipeIsWrittenDirectly) {
    const std::string name = folder.file("pipe");
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    std::string got;
    std::thread reader([&] { got = readFile(name); });
    EXPECT_EQ(write(name, "text"), 0);
    reader.join();
    EXPECT_EQ(got, "text");
    EXPECT_TRUE(std::filesystem::is_fifo(name));
}

// "lanefill ... /dev/stdout > file": what was said before stays ahead of it, and the file is no new one.
TEST_P(Outputs, AnOpenFileOfTheProcessIsWrittenOnFromWhereItStands) {
    const std::string name = folder.file("redirected");
    EXPECT_EQ(exitStatusOfChild([&] {
        const int descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT, 0600);
        if (dup2(descriptor, STDOUT_FILENO) < 0) return 99;
        PutNextLine(&StandardOut, "before\n");
        const int status = write("/dev/stdout", "text\n");
        PutNextLine(&StandardOut, "after\n");
        Flush_File(&StandardOut);
        return status;
    }),
        0);
    EXPECT_EQ(readFile(name), "before\ntext\nafter\n");
}

TEST_P(Outputs, EveryFailedAllocationIsCleanedUp) {
    const std::string name = folder.file("out.mem");
    const FaultSweep sweep = sweepAllocationFaults([&] { return write(name, "new"); });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GE(sweep.faultCount, 4u);
    EXPECT_EQ(folder.listing(), "out.mem\n");
}

class RunInputFiles : public FileTest {
protected:
    RunInputFiles() { RegisterSystemToolName("Lanefill"); }
    void readOnce(const std::string& name) {
        fileIODescriptor* file = nullptr;
        ASSERT_EQ(Open_File(name.c_str(), kREAD_ACCESS | kTEXT_LF, &file), 0);
        Close_File(&file);
    }
};

TEST_F(RunInputFiles, AreRefusedAsOutputsOfTheRunUnderAnyName) {
    const std::string name = folder.write("map.bmm", "text");
    const std::string link = folder.file("link.bmm");
    std::filesystem::create_symlink(name, link);
    RunInputs run;
    readOnce(name);
    for (const std::string& output : {name, link}) {
        CapturedAlerts alerts;
        fileIODescriptor* file = nullptr;
        EXPECT_EQ(Open_File(output.c_str(), kTEXT_WRITE, &file), 1);
        EXPECT_EQ(file, nullptr);
        EXPECT_NE(alerts.text().find("is an input of this run and can not be its output too."), std::string::npos);
    }
    EXPECT_EQ(readFile(name), "text");
}

TEST_F(RunInputFiles, AreForgottenBehindTheOutermostRun) {
    const std::string name = folder.write("map.bmm", "text");
    {
        RunInputs outer;
        {
            RunInputs inner;
            readOnce(name);
        }
        EXPECT_TRUE(isRunInput(name));
    }
    EXPECT_FALSE(isRunInput(name));
    readOnce(name);
    EXPECT_FALSE(isRunInput(name)) << "no run stands";
}

TEST_F(RunInputFiles, AreTakenFromEveryWayToRead) {
    const std::string image = folder.write("image.elf", "text");
    const std::string whole = folder.write("whole.bmm", "text");
    RunInputs run;
    FileImage mapped;
    std::string content;
    EXPECT_EQ(mapped.open(image, nullptr), WholeFile::kREAD);
    EXPECT_EQ(readWholeFile(whole, &content, nullptr), WholeFile::kREAD);
    EXPECT_TRUE(isRunInput(image));
    EXPECT_TRUE(isRunInput(whole));
    EXPECT_FALSE(isRunInput(folder.file("missing")));
}

} // namespace

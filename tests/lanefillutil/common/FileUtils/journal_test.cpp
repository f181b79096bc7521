// journal_test.cpp - the log, and the state that outlives no engine lifetime.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/state.h"
#include "file_test.h"

namespace {

using namespace memdata;
using namespace memdata::testing;

class Journal : public FileTest {
protected:
    int openLog(const std::string& name) {
        OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        return OpenJournalingFile(spec.get());
    }
    std::string closedLog(const std::string& name = "run.log") {
        CloseJournalingFile();
        return readFile(folder.file(name));
    }

    CapturedAlerts out;
};

TEST_F(Journal, WhatGoesToStandardOutIsCopied) {
    EXPECT_EQ(openLog(folder.file("run.log")), 0);
    PutNextLine(&StandardOut, "a\nb\n");
    EXPECT_EQ(out.text(), "a\nb\n");
    EXPECT_EQ(closedLog(), "a\nb\n");
}

TEST_F(Journal, ANameWithoutExtensionGetsLog) {
    EXPECT_EQ(openLog(folder.file("run")), 0);
    EXPECT_EQ(closedLog(), "");
}

TEST_F(Journal, AGivenExtensionIsKept) {
    EXPECT_EQ(openLog(folder.file("run.txt")), 0);
    EXPECT_EQ(closedLog("run.txt"), "");
}

TEST_F(Journal, OtherFilesAreNotCopied) {
    EXPECT_EQ(openLog(folder.file("run.log")), 0);
    fileIODescriptor* file = open(folder.file("other"), kTEXT_WRITE);
    PutNextLine(file, "a");
    Close_File(&file);
    EXPECT_EQ(closedLog(), "");
}

TEST_F(Journal, TheLogItselfTakesLinesOnlyWhileJournalingIsOn) {
    EXPECT_EQ(openLog(folder.file("run.log")), 0);
    PutNextLine(StandardLog, "a");
    EXPECT_TRUE(EnabledJournaling(false));
    PutNextLine(StandardLog, "b");
    PutNextLine(&StandardOut, "c");
    EXPECT_FALSE(EnabledJournaling(true));
    PutNextLine(StandardLog, "d");
    EXPECT_EQ(closedLog(), "ad");
}

TEST_F(Journal, TheLogItselfTakesNoLinesWhileOutputIsOff) {
    EXPECT_EQ(openLog(folder.file("run.log")), 0);
    EnabledPutLineOutput(false);
    PutNextLine(StandardLog, "a");
    EnabledPutLineOutput(true);
    PutNextLine(StandardLog, "b");
    EXPECT_EQ(closedLog(), "b");
}

TEST_F(Journal, ItsCopyGoesOnWhileOutputIsOff) {
    EXPECT_EQ(openLog(folder.file("run.log")), 0);
    EnabledPutLineOutput(false);
    PutNextLine(&StandardOut, "a");
    EXPECT_EQ(out.text(), "");
    EXPECT_EQ(closedLog(), "a");
}

TEST_F(Journal, JournalingIsSwitchedOnlyWhileALogIsOpen) {
    EXPECT_FALSE(EnabledJournaling(true));
    EXPECT_FALSE(EnabledJournaling(true));
    EXPECT_EQ(openLog(folder.file("run.log")), 0);
    EXPECT_TRUE(EnabledJournaling(true));
    CloseJournalingFile();
    EXPECT_EQ(StandardLog, nullptr);
    EXPECT_FALSE(EnabledJournaling(true));
}

TEST_F(Journal, AnExistingLogIsRefused) {
    const std::string name = folder.write("run.log", "old");
    EXPECT_EQ(openLog(name), 1);
    EXPECT_EQ(StandardLog, nullptr);
    EXPECT_NE(out.text().find("already exists"), std::string::npos);
    EXPECT_EQ(readFile(name), "old");
}

TEST_F(Journal, ASecondLogClosesTheFirst) {
    EXPECT_EQ(openLog(folder.file("one")), 0);
    PutNextLine(&StandardOut, "1");
    EXPECT_EQ(openLog(folder.file("two")), 0);
    PutNextLine(&StandardOut, "2");
    EXPECT_EQ(readFile(folder.file("one.log")), "1");
    EXPECT_EQ(closedLog("two.log"), "2");
}

TEST_F(Journal, ClosingTheLogAsAFileEndsTheJournal) {
    EXPECT_EQ(openLog(folder.file("run.log")), 0);
    fileIODescriptor* log = StandardLog;
    EXPECT_EQ(Close_File(&log), 0);
    EXPECT_EQ(StandardLog, nullptr);
    PutNextLine(&StandardOut, "a");
    EXPECT_EQ(out.text(), "a");
}

TEST_F(Journal, ClosingStandardLogItselfEndsTheJournal) {
    EXPECT_EQ(openLog(folder.file("run.log")), 0);
    EXPECT_EQ(Close_File(&StandardLog), 0);
    EXPECT_EQ(StandardLog, nullptr);
    EXPECT_FALSE(gJournalingEnabled);
}

TEST_F(Journal, ALogThatCanNotBeWrittenIsReportedAndHarmsNothing) {
    const std::string name = folder.file("full.log");
    std::filesystem::create_symlink("/dev/full", name);
    EXPECT_EQ(openLog(name), 0);
    const std::string line(60000, '~'); // a sign that no file name here has
    for (int i = 0; i < 4; ++i) EXPECT_EQ(PutNextLine(&StandardOut, "%s", line), 0);
    CloseJournalingFile();
    EXPECT_EQ(StandardLog, nullptr);
    std::string text = out.text();
    const size_t alert = text.find("ERROR");
    ASSERT_NE(alert, text.npos);
    EXPECT_NE(text.find("'" + name + "' can not be written: No space left on device."), text.npos);
    EXPECT_EQ(text.find("ERROR", alert + 1), text.npos); // once
    EXPECT_EQ(std::ranges::count(text, '~'), 4 * 60000);
}

// Outside of the fixture: each round is an engine lifetime of its own.
TEST(FileState, TwoRoundsInOneProcessEqualTwoProcesses) {
    const TemporaryFolder folder;
    for (int round = 0; round < 2; ++round) {
        const std::string name = folder.file("run" + std::to_string(round));
        const u64 before = getCurrentMemoryUsage();
        {
            const SystemResources resources;
            EXPECT_EQ(gDefaultFileAttributes, 0x2000000u);
            EXPECT_TRUE(EnabledPutLineOutput(false));
            EXPECT_FALSE(gJournalingEnabled);
            EXPECT_EQ(StandardLog, nullptr);
            SetDefaultFileAttributes(kOVERWRITING_ALLOWED, true);
            OwnedFileSpec spec(CreateFileSpec(name.c_str()));
            EXPECT_EQ(OpenJournalingFile(spec.get()), 0);
            EnabledPutLineOutput(true);
            PutNextLine(StandardLog, "kept");
        }
        EXPECT_EQ(readFile(name + ".log"), "kept"); // closed at the end of the engine, not dropped
        EXPECT_EQ(getCurrentMemoryUsage(), before);
    }
}

} // namespace

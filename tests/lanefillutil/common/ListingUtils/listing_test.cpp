// listing_test.cpp - version headers, dates, hex dumps and message files, compared as text.
// SPDX-License-Identifier: Apache-2.0
#include "ListingUtils/ListingUtils.h"

#include "FileUtils/journal.h"
#include "FileUtils/opening.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "platform/HUTEnv.h"
#include "platform/host.h"
#include "support/allocation_faults.h"
#include "support/temporary_folder.h"

#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

// A host of known texts.
class NamedHost : public Host {
public:
    NamedHost() : previous_(setHost(this)) {}
    ~NamedHost() override { setHost(previous_); }

    void message(const HostMessage&) override {}
    HPAParamMgr& parameters() override { return defaultHost().parameters(); }
    std::string fullProduct() const override { return "The product, 1.2"; }
    std::string fullBuild() const override { return "Build 77"; }
    std::string firstNotice() const override { return "First notice."; }
    std::string secondNotice() const override { return "Second notice."; }
    std::string date() const override { return "Jan  2 2025"; }
    std::string temporaryDirectory() const override { return "/tmp"; }

private:
    Host* previous_;
};

class Listing : public ::testing::Test {
protected:
    Listing() : usageAtStart_(getCurrentMemoryUsage()) {}
    ~Listing() override {
        RegisterSystemCommand(nullptr);
        EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_) << "bytes stay in use";
    }

    SystemResources system_;

private:
    u64 usageAtStart_;
};

// What write() writes to a file, and its status behind it when that is not 0.
std::string written(const std::function<int(fileIODescriptor*)>& write) {
    Tracked<fileIODescriptor, abandonFile> file;
    EXPECT_EQ(OpenMemoryFile("listing", kTEXT_WRITE, nullptr, 0, file.out()), 0);
    const int status = write(file.get());
    std::string text(GetFileStorageBase(file.get()), GetFileLogicalSize(file.get()));
    if (status != 0) text += "status " + std::to_string(status);
    return text;
}

std::string dump(int mode, unsigned address, std::string_view bytes, unsigned perLine) {
    return written([&](fileIODescriptor* file) {
        return DumpHex(file, mode, address, reinterpret_cast<const unsigned char*>(bytes.data()),
            static_cast<unsigned>(bytes.size()), perLine);
    });
}

TEST_F(Listing, ADumpLineHasAddressBytesAndCharacters) {
    EXPECT_EQ(dump(0, 0x1000, "ABCD", 4), " 00001000:   41 42 43 44   ABCD\n");
}

TEST_F(Listing, AShortDumpLineIsPaddedByThreeBlanksAByte) {
    EXPECT_EQ(dump(0, 0, "ABCDE", 4), " 00000000:   41 42 43 44   ABCD\n"
                                      " 00000004:   45            E\n");
}

TEST_F(Listing, WhatDoesNotPrintIsAPoint) {
    EXPECT_EQ(dump(0, 0, std::string_view("\x1F\x20\x7E\x7F\x80\xFF\0\n", 8), 8),
        " 00000000:   1F 20 7E 7F 80 FF 00 0A   . ~.....\n");
}

TEST_F(Listing, TheDumpAddressWrapsAtThirtyTwoBits) {
    EXPECT_EQ(dump(0, 0xFFFFFFFC, "ABCDE", 4), " FFFFFFFC:   41 42 43 44   ABCD\n"
                                               " 00000000:   45            E\n");
}

TEST_F(Listing, ModeSixteenDumpsTheBytesAlone) {
    EXPECT_EQ(dump(16, 0, "ABCDE", 4), "41424344\n45\n");
    EXPECT_EQ(dump(0x50, 0, "A", 4), "41\n");
    EXPECT_EQ(dump(0x6F, 0, "A", 1), " 00000000:   41   A\n");
}

TEST_F(Listing, ADumpOfNothingIsEmpty) {
    EXPECT_EQ(dump(0, 0, "", 4), "");
}

TEST_F(Listing, ADumpOfNoBytesPerLineIsRefused) {
    EXPECT_EQ(dump(0, 0, "A", 0), "status 3");
    EXPECT_EQ(written([](fileIODescriptor* file) { return DumpHex(file, 0, 0, nullptr, 1, 4); }), "status 3");
}

TEST_F(Listing, ALargeDumpKeepsEveryLine) {
    const std::string bytes(200001, 'A');
    std::string expected;
    for (int i = 0; i < 200001; ++i) expected += i % 32 == 31 ? "41\n" : "41";
    EXPECT_TRUE(dump(16, 0, bytes, 32) == expected + "\n");
}

TEST_F(Listing, TheLengthOfADumpLineIsBounded) {
    const std::string text = dump(0, 0, "AB", 0xFFFFFFFF);
    EXPECT_EQ(text.size(), 12 + 2 * 3 + (kMAX_DUMP_BYTES_PER_LINE - 2 + 1) * 3 + 3);
}

TEST_F(Listing, AFileThatIsNotOpenGivesItsStatus) {
    const unsigned char byte = 0;
    EXPECT_EQ(DumpHex(nullptr, 0, 0, &byte, 1, 4), -1);
    EXPECT_EQ(OutputConsoleMessage(nullptr, "text"), -1);
    EXPECT_EQ(OutputVersionHeader(nullptr, nullptr, nullptr), -1);
}

std::string date(int hour, bool longNames) {
    std::tm time{};
    time.tm_year = 125;
    time.tm_mon = 8;
    time.tm_mday = 3;
    time.tm_wday = 3;
    time.tm_hour = hour;
    time.tm_min = 4;
    time.tm_sec = 5;
    const OwnedString text(dateTimeString(time, longNames));
    return text.get();
}

TEST_F(Listing, DatesWithLongAndShortNames) {
    EXPECT_EQ(date(9, true), "Wednesday September 03, 2025 - 09:04:05 am");
    EXPECT_EQ(date(9, false), "Wed Sep 03, 2025 - 09:04:05 am");
}

TEST_F(Listing, HoursOnATwelveHourClock) {
    EXPECT_EQ(date(0, false), "Wed Sep 03, 2025 - 12:04:05 am");
    EXPECT_EQ(date(1, false), "Wed Sep 03, 2025 - 01:04:05 am");
    EXPECT_EQ(date(11, false), "Wed Sep 03, 2025 - 11:04:05 am");
    EXPECT_EQ(date(12, false), "Wed Sep 03, 2025 - 12:04:05 pm");
    EXPECT_EQ(date(13, false), "Wed Sep 03, 2025 - 01:04:05 pm");
    EXPECT_EQ(date(23, false), "Wed Sep 03, 2025 - 11:04:05 pm");
}

constexpr char kLONG_DATE[] =
    "[A-Z][a-z]+day [A-Z][a-z]+ [0-9]{2}, [0-9]{4} - (0[1-9]|1[0-2]):[0-5][0-9]:[0-6][0-9] [ap]m";

TEST_F(Listing, TheDateOfNowHasTheSameForm) {
    const OwnedString text(GetDateTimeString(true));
    EXPECT_THAT(text.get(), ::testing::MatchesRegex(kLONG_DATE));
}

TEST_F(Listing, NamesOfDaysAndMonths) {
    EXPECT_STREQ(dayNames[0], "Sunday");
    EXPECT_STREQ(dayNames[6], "Saturday");
    EXPECT_STREQ(monthNames[0], "January");
    EXPECT_STREQ(monthNames[11], "December");
}

// A header with "<date>" for the date that it was made on.
std::string header(const char* prefix, const char* format) {
    std::string text =
        written([&](fileIODescriptor* file) { return OutputVersionHeader(file, prefix, format, "map"); });
    if (const size_t created = text.find("Created on "); created != std::string::npos) {
        const size_t start = created + std::strlen("Created on ");
        const size_t end = text.find('m', text.find(" - ", start)) + 1;
        EXPECT_THAT(text.substr(start, end - start), ::testing::MatchesRegex(kLONG_DATE));
        text.replace(start, end - start, "<date>");
    }
    return text;
}

TEST_F(Listing, AHeaderWithoutAnythingNamesBuildProductAndNotices) {
    const NamedHost host;
    EXPECT_EQ(header(nullptr, nullptr), "Build 77\n"
                                        "The product, 1.2\n"
                                        "First notice. Second notice.\n");
}

TEST_F(Listing, APrefixLeadsEachLine) {
    const NamedHost host;
    EXPECT_EQ(header("//", nullptr), "// Build 77\n"
                                     "// The product, 1.2\n"
                                     "// First notice. Second notice.\n");
}

TEST_F(Listing, ARegisteredCommandStandsBetweenEmptyLines) {
    const NamedHost host;
    RegisterSystemCommand("-bm a.bmm");
    EXPECT_EQ(header("//", nullptr), "// Build 77\n"
                                     "// The product, 1.2\n"
                                     "// First notice. Second notice.\n"
                                     "//\n"
                                     "// Command: -bm a.bmm\n"
                                     "//\n");
}

TEST_F(Listing, WithoutPrefixAndFormatTheCommandIsNotTold) {
    const NamedHost host;
    RegisterSystemCommand("-bm a.bmm");
    EXPECT_EQ(header(nullptr, nullptr), "Build 77\n"
                                        "The product, 1.2\n"
                                        "First notice. Second notice.\n");
}

TEST_F(Listing, AFormatFollowsTheDate) {
    const NamedHost host;
    RegisterSystemCommand("-d");
    EXPECT_EQ(header(nullptr, "\n\n%s dump.\n"), "Build 77\n"
                                                 "The product, 1.2\n"
                                                 "First notice. Second notice.\n"
                                                 "\n"
                                                 "Command: -d\n"
                                                 "\n"
                                                 "Created on <date>\n"
                                                 "\n"
                                                 "map dump.\n"
                                                 "\n");
}

TEST_F(Listing, ACommandOfSeveralLinesStaysAComment) {
    const NamedHost host;
    RegisterSystemCommand("-p x\n-w on");
    EXPECT_EQ(header("#", ", for %s."), "# Build 77\n"
                                        "# The product, 1.2\n"
                                        "# First notice. Second notice.\n"
                                        "#\n"
                                        "# Command: -p x\n"
                                        "# -w on\n"
                                        "#\n"
                                        "# Created on <date>, for map.\n");
}

TEST_F(Listing, ACommandIsNoFormat) {
    const NamedHost host;
    RegisterSystemCommand("-o %s\\n");
    EXPECT_NE(header("//", nullptr).find("// Command: -o %s\\n\n"), std::string::npos);
}

TEST_F(Listing, AConsoleMessageIsWrittenAsItIs) {
    EXPECT_EQ(written([](fileIODescriptor* file) { return OutputConsoleMessage(file, "100% of C:\\new\n"); }),
        "100% of C:\\new\n");
    EXPECT_EQ(written([](fileIODescriptor* file) { return OutputConsoleMessage(file, nullptr); }), "");
}

TEST_F(Listing, AConsoleMessageIsCopiedToTheJournal) {
    const TemporaryFolder folder;
    OwnedFileSpec spec(CreateFileSpec(folder.file("run.log").c_str()));
    ASSERT_EQ(OpenJournalingFile(spec.get()), 0);
    ::testing::internal::CaptureStdout();
    OutputConsoleMessage(&StandardOut, "said once\n");
    Flush_File(&StandardOut);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "said once\n");
    CloseJournalingFile();
    EXPECT_EQ(readFile(folder.file("run.log")), "said once\n");
}

std::string format_string(const char* name, const char* text, bool last) {
    return written([&](fileIODescriptor* file) { return OutputFormatString(file, name, text, last); });
}

TEST_F(Listing, AMessageFormatHasNumberedPlaces) {
    EXPECT_EQ(format_string("kNAME", "File '%s' in '%s'.", false), "kNAME \"File '!s1!' in '!s2!'.\",\n");
    EXPECT_EQ(format_string("kNAME", "0x%08lX of %.*s, 100%%", true), "kNAME \"0x!X1! of !s2!, 100%%\"\n");
}

TEST_F(Listing, AMessageFormatHasEscapesForWhatDoesNotPrint) {
    EXPECT_EQ(format_string("k",
                  "a\n\t\"b\"\\\x01"
                  "7",
                  true),
        "k \"a\\n\\t\\\"b\\\"\\\\\\0017\"\n");
}

TEST_F(Listing, AMessageFormatThatIsCutOffOrMissingIsWrittenAsFarAsItGoes) {
    EXPECT_EQ(format_string("k", "a%08", true), "k \"a\"\n");
    EXPECT_EQ(format_string(nullptr, nullptr, true), " \"\"\n");
}

// Writes a message file under a name and gives the folder's files with their contents.
std::string message_file(int (*write)(fileSpecType*), const char* name, int expected = 0) {
    const TemporaryFolder folder;
    folder.write("kept.msg", "old");
    OwnedFileSpec spec(CreateFileSpec(folder.file(name).c_str()));
    EXPECT_EQ(write(spec.get()), expected);
    std::string all;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        if (entry.path().filename() != "kept.msg") all += entry.path().filename().string() + ":\n" + readFile(entry);
    EXPECT_EQ(readFile(folder.file("kept.msg")), "old");
    return all;
}

TEST_F(Listing, TheAlertMessageFileIsABannerWithARevisionKeyword) {
    RegisterSystemToolName("Lanefill");
    const std::string all = message_file(OutputAlertMsgFile, "messages");
    EXPECT_EQ(all, "messages.msg:\n"
                   "#\n"
                   "# Messages of Lanefill, for translation.\n"
                   "#\n"
                   "# $Revision$\n"
                   "#\n"
                   "# One message a line: its name, then its text in quotes.\n"
                   "#\n");
}

TEST_F(Listing, ThePortMessageFileIsABannerForTheExtractor) {
    RegisterSystemToolName("Lanefill");
    EXPECT_EQ(message_file(OutputPortLocMsgFile, "messages"),
        "messages.c:\n"
        "//\n"
        "// Messages of Lanefill.\n"
        "//\n"
        "// $Revision$\n"
        "//\n"
        "// This file lets the message extractor find the messages.\n"
        "//\n");
}

TEST_F(Listing, TheExtensionOfAMessageFileIsReplaced) {
    EXPECT_EQ(message_file(OutputAlertMsgFile, "messages.txt").substr(0, 13), "messages.msg:");
}

TEST_F(Listing, AnExistingMessageFileIsRefused) {
    const u32 saved = SavePrintAlerts();
    EnablePrintAlerts(0);
    EXPECT_EQ(message_file(OutputAlertMsgFile, "kept", 1), "");
    EnablePrintAlerts(saved);
}

TEST_F(Listing, AMessageFileThatCanNotBeMadeGivesStatusOne) {
    const u32 saved = SavePrintAlerts();
    EnablePrintAlerts(0);
    EXPECT_EQ(message_file(OutputAlertMsgFile, "no/such/folder/messages", 1), "");
    EnablePrintAlerts(saved);
    EXPECT_EQ(OutputAlertMsgFile(nullptr), 3);
    EXPECT_EQ(OutputPortLocMsgFile(nullptr), 3);
}

TEST_F(Listing, AMessageFileSurvivesEveryFailedAllocation) {
    const TemporaryFolder folder;
    const std::string name = folder.file("messages");
    const FaultSweep sweep = sweepAllocationFaults([&] {
        Delete_File((name + ".msg").c_str());
        OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        return spec == nullptr ? 7 : OutputAlertMsgFile(spec.get());
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.allocationCount, 0u);
}

TEST(VersionHeader, WithoutMemoryForItsDateIsNotWritten) {
    const TemporaryFolder folder;
    const std::string name = folder.file("listing");
    const FaultSweep sweep = sweepAllocationFaults([&] {
        fileIODescriptor* out = nullptr;
        int status = Open_File(name.c_str(), kTEXT_WRITE, &out);
        if (status == 0) status = OutputVersionHeader(out, "//", ", by %s", "a test");
        if (status == 0) status = Close_File(&out);
        abandonFile(&out);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
}

} // namespace
} // namespace memdata::testing

// byte_primitives_test.cpp - counted bytes, numbers and strings of bit files.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/byte_primitives.h"

#include "BitFileUtils/progress.h"
#include "FileUtils/FileUtils.h"
#include "bit_file_test.h"

namespace {

using namespace memdata;
using namespace memdata::testing;

constexpr u32 kREAD = 0x13;
constexpr u32 kWRITE = 0x23;

// Opens bytes for reading in memory.
class BytePrimitives : public ::testing::Test {
protected:
    ~BytePrimitives() override {
        Close_File(&file);
        DeleteHeaderString(&string);
    }
    fileIODescriptor* input(std::string_view text) {
        bytes = text;
        Close_File(&file);
        EXPECT_EQ(OpenMemoryFile("in.bit", kREAD, bytes.data(), bytes.size(), &file), 0);
        return file;
    }
    fileIODescriptor* output() {
        Close_File(&file);
        EXPECT_EQ(OpenMemoryFile("out.bit", kWRITE, nullptr, 0, &file), 0);
        return file;
    }
    std::string written() { return hexText(GetFileStorageBase(file), GetFilePosition(file)); }
    std::string_view stringText() { return {string.text, string.length}; }

    SystemResources system;
    CapturedAlerts alerts;
    std::string bytes;
    fileIODescriptor* file = nullptr;
    HeaderStringType string{};
};

TEST_F(BytePrimitives, NumbersAreReadMostSignificantByteFirst) {
    input("\xF1\x80\x02\xFE\xDC\xBA\x98");
    u8 byte = 0;
    u32 value = 0;
    EXPECT_EQ(ReadByte(file, &byte), 0);
    EXPECT_EQ(byte, 0xF1);
    EXPECT_EQ(ReadShort(file, &value), 0);
    EXPECT_EQ(value, 0x8002u);
    EXPECT_EQ(ReadLong(file, &value), 0);
    EXPECT_EQ(value, 0xFEDCBA98u);
}

TEST_F(BytePrimitives, NumbersAreWrittenMostSignificantByteFirst) {
    output();
    EXPECT_EQ(WriteByte(file, 0xF1), 0);
    EXPECT_EQ(WriteShort(file, 0x18002), 0);
    EXPECT_EQ(WriteLong(file, 0xFEDCBA98), 0);
    EXPECT_EQ(written(), "f1 80 02 fe dc ba 98");
}

TEST_F(BytePrimitives, ANumberThatEndsEarlyGivesTheStatusOfTheFile) {
    u32 value = 0;
    EXPECT_EQ(ReadShort(input("\x12"), &value), kEND_OF_CONTENTS);
    EXPECT_EQ(ReadLong(input("\x12\x34\x56"), &value), kEND_OF_CONTENTS);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(BytePrimitives, NoBytesOfDataSucceedAlsoAtTheEnd) {
    u8 byte = 0;
    EXPECT_EQ(ReadByte(input("a"), &byte), 0);
    EXPECT_EQ(ReadData(file, nullptr, 0), 0);
    EXPECT_EQ(WriteData(file, nullptr, 0), 0); // not even open for writing
}

TEST_F(BytePrimitives, DataIsReadAndWrittenAsItStands) {
    char data[4];
    EXPECT_EQ(ReadData(input("\xFF\r\n!"), data, 4), 0);
    EXPECT_EQ(WriteData(output(), data, 4), 0);
    EXPECT_EQ(written(), "ff 0d 0a 21");
    EXPECT_EQ(ReadData(input("abc"), data, 4), kEND_OF_CONTENTS);
}

TEST_F(BytePrimitives, APascalStringCountsItsTerminator) {
    EXPECT_EQ(ReadPascalString(input(std::string("\0\4abc\0", 6)), &string), 0);
    EXPECT_EQ(stringText(), "abc");
    EXPECT_EQ(WritePascalString(output(), &string), 0);
    EXPECT_EQ(written(), "00 04 61 62 63 00");
}

TEST_F(BytePrimitives, APascalStringOfLengthOneIsEmpty) {
    EXPECT_EQ(ReadPascalString(input(std::string("\0\1\0", 3)), &string), 0);
    EXPECT_EQ(stringText(), "");
    EXPECT_EQ(WritePascalString(output(), &string), 0);
    EXPECT_EQ(written(), "00 01 00");
}

TEST_F(BytePrimitives, APascalStringOfLengthZeroIsEmpty) {
    EXPECT_EQ(ReadPascalString(input(std::string("\0\0", 2)), &string), 0);
    EXPECT_EQ(string.length, 0u);
    EXPECT_STREQ(string.text, "");
}

TEST_F(BytePrimitives, APascalStringWithoutTerminatorIsTerminatedInMemoryAndWrittenBackAsItWas) {
    EXPECT_EQ(ReadPascalString(input(std::string("\0\3abc", 5)), &string), 0);
    EXPECT_EQ(string.length, 2u);
    EXPECT_STREQ(string.text, "abc");
    EXPECT_EQ(WritePascalString(output(), &string), 0);
    EXPECT_EQ(written(), "00 03 61 62 63");
}

TEST_F(BytePrimitives, TheLongestPascalStringGoesBothWays) {
    EXPECT_EQ(ReadPascalString(input("\xFF\xFF" + std::string(65534, 'x') + std::string(1, '\0')), &string), 0);
    EXPECT_EQ(stringText(), std::string(65534, 'x'));
    EXPECT_EQ(WritePascalString(output(), &string), 0);
    EXPECT_EQ(GetFilePosition(file), 65537u);
}

TEST_F(BytePrimitives, APascalStringThatItsLengthCannotHoldIsRefused) {
    ASSERT_EQ(setHeaderString(&string, newString(std::string(65535, 'x'))), 0);
    EXPECT_EQ(WritePascalString(output(), &string), 2);
    EXPECT_EQ(GetFilePosition(file), 0u);
    EXPECT_NE(alerts.text().find("'out.bit'"), std::string::npos);
}

TEST_F(BytePrimitives, APascalStringLongerThanTheFileIsTheEndOfTheFile) {
    EXPECT_EQ(ReadPascalString(input("\xFF\xFFxyz"), &string), kEND_OF_CONTENTS);
}

TEST_F(BytePrimitives, AStringThatWasNeverReadIsWrittenEmpty) {
    EXPECT_EQ(WritePascalString(output(), &string), 0);
    EXPECT_EQ(WriteCString(file, &string), 0);
    EXPECT_EQ(written(), "00 01 00 00");
}

TEST_F(BytePrimitives, ACStringEndsAtItsZeroByte) {
    u8 next = 0;
    EXPECT_EQ(ReadCString(input(std::string("abc\0d", 5)), &string), 0);
    EXPECT_EQ(stringText(), "abc");
    EXPECT_EQ(ReadByte(file, &next), 0);
    EXPECT_EQ(next, 'd');
    EXPECT_EQ(WriteCString(output(), &string), 0);
    EXPECT_EQ(written(), "61 62 63 00");
}

TEST_F(BytePrimitives, AnEmptyCStringHasAText) {
    EXPECT_EQ(ReadCString(input(std::string("\0", 1)), &string), 0);
    EXPECT_EQ(string.length, 0u);
    EXPECT_STREQ(string.text, "");
}

TEST_F(BytePrimitives, ACStringOfTenMegabytesIsOneString) {
    const std::string text(10'000'000, 'y');
    EXPECT_EQ(ReadCString(input(text + std::string(1, '\0')), &string), 0);
    EXPECT_EQ(stringText(), text);
}

TEST_F(BytePrimitives, ACStringWithoutAZeroByteIsTheEndOfTheFile) {
    EXPECT_EQ(ReadCString(input("abc"), &string), kEND_OF_CONTENTS);
    EXPECT_EQ(string.text, nullptr);
}

int reports = 0;
int lastPercent = 0;
int countReports(int percent, const char* message, void (*)(unsigned)) {
    EXPECT_STREQ(message, "Processing BIT image...");
    lastPercent = percent;
    return ++reports;
}
int abortAtThirdReport(int, const char*, void (*abort)(unsigned)) {
    if (++reports == 3) abort(0);
    return 0;
}

TEST_F(BytePrimitives, EachByteOfASmallRunIsReported) {
    reports = 0;
    SetupUpdateProgress(50, countReports);
    char data[10];
    u32 value = 0;
    EXPECT_EQ(ReadLong(input("0123456789abcd"), &value), 0);
    EXPECT_EQ(ReadData(file, data, 10), 0);
    EXPECT_EQ(reports, 14);
    EXPECT_EQ(lastPercent, 28);
}

TEST_F(BytePrimitives, EachByteOfASmallOutputIsReported) {
    reports = 0;
    SetupUpdateProgress(50, countReports);
    EXPECT_EQ(WriteData(output(), "0123456789", 10), 0);
    EXPECT_EQ(written(), hexText("0123456789", 10));
    EXPECT_EQ(reports, 10);
    EXPECT_EQ(lastPercent, 20);
}

TEST_F(BytePrimitives, APieceOfASmallRunIsOneUnitAndEachOfItsBytesIsReported) {
    reports = 0;
    SetupUpdateProgress(50, countReports);
    const u8* piece = nullptr;
    u64 count = 0;
    EXPECT_EQ(readPiece(input("0123456789"), 4, 8, &piece, &count), 0);
    EXPECT_EQ(std::string(piece, piece + count), "0123");
    EXPECT_EQ(reports, 4);
}

TEST_F(BytePrimitives, AnAbortStopsInsideOfAPieceAndAnOutput) {
    reports = 0;
    SetupUpdateProgress(50, abortAtThirdReport);
    const u8* piece = nullptr;
    u64 count = 0;
    EXPECT_EQ(readPiece(input("0123456789"), 4, 8, &piece, &count), 15);
    EXPECT_EQ(reports, 3);
    reports = 0;
    SetupUpdateProgress(50, abortAtThirdReport);
    EXPECT_EQ(WriteData(output(), "0123456789", 10), 15);
    EXPECT_EQ(written(), hexText("012", 3));
    SetupUpdateProgress(0, nullptr);
}

TEST_F(BytePrimitives, ARunOfRealSizeIsNotReported) {
    reports = 0;
    SetupUpdateProgress(100, countReports);
    char data[10];
    EXPECT_EQ(ReadData(input("0123456789"), data, 10), 0);
    EXPECT_EQ(reports, 0);
    EXPECT_EQ(gProgressUpdate.count, 10u);
}

TEST_F(BytePrimitives, AnAbortStopsAtTheNextByte) {
    reports = 0;
    SetupUpdateProgress(50, abortAtThirdReport);
    char data[10] = "---------";
    EXPECT_EQ(ReadData(input("0123456789"), data, 10), 15);
    EXPECT_STREQ(data, "012------");
    EXPECT_EQ(GetFilePosition(file), 3u);
    EXPECT_EQ(WriteByte(output(), 1), 15);
    SetupUpdateProgress(0, nullptr);
    EXPECT_EQ(WriteByte(file, 1), 0);
}

TEST(Progress, EndsWithTheLifetimeOfTheEngine) {
    {
        SystemResources system;
        SetupUpdateProgress(1000, countReports);
        ProcessAbort(0);
        EXPECT_EQ(UpdateProgress(7), 15);
    }
    SystemResources system;
    EXPECT_EQ(gProgressUpdate.callback, nullptr);
    EXPECT_EQ(UpdateProgress(1), 0);
}

TEST(Progress, ARunOfNoBytesReportsWithoutDividing) {
    SystemResources system;
    reports = 0;
    SetupUpdateProgress(0, countReports);
    EXPECT_EQ(UpdateProgress(1), 0);
    EXPECT_EQ(lastPercent, 100);
    SetupUpdateProgress(0, nullptr);
}

} // namespace

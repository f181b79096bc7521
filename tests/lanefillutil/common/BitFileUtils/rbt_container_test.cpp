// rbt_container_test.cpp - bit files as text.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/rbt_container.h"

#include "BitFileUtils/byte_primitives.h"
#include "ParseUtils/scanner.h"
#include "bit_file_test.h"
#include "support/allocation_faults.h"
#include "support/parse.h"

#include <algorithm>

namespace {

using namespace memdata;
using namespace memdata::testing;

constexpr const char* kUNKNOWN_A = "ERROR:Lanefill:52 - Unknown or corrupted data file format, 'a.rbt'.";

class RbtContainer : public BitFileTest {
protected:
    int openText(const std::string& text) { return BitFileTest::open(text, 0, "a.rbt"); }
    int open(const RbtFields& fields) { return openText(rbtText(fields)); }
    // The words of the stream; the status when the file is refused.
    std::string words(const std::vector<std::string>& lines, const std::string& bits = "") {
        const int status = open({.bits = bits, .lines = lines});
        return status != 0 ? "status " + std::to_string(status) : hexText(bit.header.dataPointer, bit.dataLength);
    }
};

TEST_F(RbtContainer, TheLabelledLinesAreTheHeader) {
    ASSERT_EQ(open(RbtFields{}), 0);
    EXPECT_EQ(bit.words(), "top.ncd|q5a20ff676|-|-|Sat Jul 10 12:52:21 2010|-|8");
    EXPECT_STREQ(bit.header.bitCount.text, "64");
    EXPECT_EQ(bit.device, get_device_record_by_name("tq5a20"));
    EXPECT_EQ(said(), "");
}

TEST_F(RbtContainer, EachLineOfDigitsIsAWordMostSignificantByteFirst) {
    ASSERT_EQ(open(RbtFields{}), 0);
    EXPECT_EQ(bit.dataLength, 8u);
    EXPECT_EQ(hexText(bit.header.dataPointer, 8), "aa 99 55 66 20 00 00 00");
}

TEST_F(RbtContainer, TheStreamIsAFileInMemoryNamedAfterTheText) {
    ASSERT_EQ(open(RbtFields{}), 0);
    EXPECT_EQ(GetFileName(bit.file), folder.file("a.rbt"));
    EXPECT_EQ(GetFilePosition(bit.file), 0u);
    u32 word = 0;
    EXPECT_EQ(ReadLong(bit.file, &word), 0);
    EXPECT_EQ(word, 0xAA995566u);
    EXPECT_EQ(ReadLong(bit.file, &word), 0);
    EXPECT_EQ(ReadLong(bit.file, &word), kEND_OF_CONTENTS);
}

TEST_F(RbtContainer, TheExtensionIsAddedToANameWithoutOne) {
    fileSpecType* spec = CreateFileSpec(folder.file("b").c_str());
    folder.write("b.rbt", rbtText({}));
    EXPECT_EQ(OpenRBTFile(spec, &bit.dataLength, &bit.device, &bit.header, &bit.file), 0);
    DeleteFileSpec(&spec);
}

TEST_F(RbtContainer, TheFirstWordsAreComparedIgnoringCase) {
    EXPECT_EQ(open({.firstLine = "ombrel ascii BITSTREAM"}), 0);
}

TEST_F(RbtContainer, LabelsAreComparedIgnoringCase) {
    EXPECT_EQ(openText("Ombrel ASCII Bitstream NAME:n\npart : q5a20\nDATE:d\nbits:32\n" + rbtLine(7)), 0);
    EXPECT_EQ(bit.words(), "n|q5a20|-|-|d|-|4");
}

TEST_F(RbtContainer, OtherFirstWordsAreRefused) {
    for (const char* line :
        {"Ombre ASCII Bitstream", "Ombrel Bitstream", "Ombrel ASCII Stream", "x Ombrel ASCII Bitstream", "", "1 2 3"}) {
        EXPECT_EQ(open({.firstLine = line}), 2) << line;
        EXPECT_EQ(said(), kUNKNOWN_A) << line;
        EXPECT_EQ(bit.file, nullptr);
    }
}

TEST_F(RbtContainer, AMissingLabelIsRefused) {
    const std::string good = rbtText({});
    for (const char* label : {"name", "Part", "Date", "Bits"}) {
        std::string text = good;
        text.replace(text.find(label), 4, "none");
        EXPECT_EQ(openText(text), 2) << label;
        EXPECT_EQ(said(), kUNKNOWN_A) << label;
    }
}

TEST_F(RbtContainer, LabelsInAnotherOrderAreNotFound) {
    EXPECT_EQ(openText("Ombrel ASCII Bitstream\nPart: q5a20\nname: n\nDate: d\nBits: 32\n1\n"), 2);
    EXPECT_EQ(said(), kUNKNOWN_A);
}

TEST_F(RbtContainer, ALabelWithoutAColonIsAnOrdinaryWord) {
    EXPECT_EQ(openText("Ombrel ASCII Bitstream\nname of tool\nname: n\nPart: q5a20\nDate: d\nBits: 32\n1\n"), 0);
    EXPECT_STREQ(bit.header.designName.text, "n");
}

TEST_F(RbtContainer, TheRestOfALineIsTakenAsItStands) {
    ASSERT_EQ(open({.designName = "  it's \"a/*b\" // c#d:e  x.ncd \t", .date = "Jul  1 2010"}), 0);
    EXPECT_STREQ(bit.header.designName.text, "it's \"a/*b\" // c#d:e  x.ncd");
    EXPECT_STREQ(bit.header.dateTime.text, "Jul  1 2010");
}

TEST_F(RbtContainer, LineEndsOfAllKindsEndALine) {
    for (const char* lineEnd : {"\r\n", "\r", "\n\r"}) {
        std::string text;
        for (char c : rbtText({})) text += c == '\n' ? lineEnd : std::string(1, c);
        ASSERT_EQ(openText(text), 0);
        EXPECT_STREQ(bit.header.partName.text, "q5a20ff676");
        EXPECT_EQ(bit.dataLength, 8u);
    }
}

TEST_F(RbtContainer, TheLowThirtyTwoBitsOfANumberCount) {
    EXPECT_EQ(words({"1" + rbtLine(0x80000001)}), "80 00 00 01");
    EXPECT_EQ(words({std::string(64, '1')}), "ff ff ff ff");
    EXPECT_EQ(words({std::string(100, '1') + rbtLine(0x12345678)}), "12 34 56 78");
}

TEST_F(RbtContainer, ShortLinesAreNumbersToo) {
    EXPECT_EQ(words({"1", "10", "0"}), "00 00 00 01 00 00 00 02 00 00 00 00");
}

TEST_F(RbtContainer, NumbersMayStandOnOneLine) {
    EXPECT_EQ(words({"1 10\t11"}), "00 00 00 01 00 00 00 02 00 00 00 03");
}

TEST_F(RbtContainer, ShortLinesGiveMoreDataThanAnEighthOfTheText) {
    std::vector<std::string> lines(20'000, "1");
    lines.push_back("10");
    ASSERT_EQ(open({.bits = "", .lines = lines}), 0);
    EXPECT_EQ(bit.dataLength, 80'004u);
    EXPECT_EQ(hexText(bit.header.dataPointer + 79'996, 8), "00 00 00 01 00 00 00 02");
}

TEST_F(RbtContainer, WhatIsNoNumberAheadOfTheFirstOneIsPassedOver) {
    EXPECT_EQ(words({"header text 2 x1 = ;", "1"}), "00 00 00 01");
}

TEST_F(RbtContainer, WhatIsNoNumberBehindTheFirstOneEndsTheData) {
    for (const char* end : {"end", "2", "12", "1x", "1.0", "=", "\x01", "1_1"})
        EXPECT_EQ(words({"101", end, "111"}), "00 00 00 05") << end;
}

TEST_F(RbtContainer, NumbersMayHavePrefixesAndComments) {
    EXPECT_EQ(words({"101", "0x11 // eleven", "/* one */ 1", "10"}), "00 00 00 05 00 00 00 11 00 00 00 01 00 00 00 02");
}

TEST_F(RbtContainer, ACommentThatIsLeftOpenIsRefused) {
    EXPECT_EQ(words({"101", "/* 111", "111"}), "status 21");
    EXPECT_NE(said(), "");
    EXPECT_EQ(bit.file, nullptr);
}

TEST_F(RbtContainer, OtherCharactersBeforeThePromisedEndAreRefused) {
    for (const char* line : {"10101010x", "twelve", "\xFE\xFE", "1.1"}) {
        EXPECT_EQ(words({"101", line, "111"}, "96"), "status 2") << line;
        EXPECT_EQ(said(), kUNKNOWN_A) << line;
        EXPECT_EQ(bit.file, nullptr);
    }
}

TEST_F(RbtContainer, LessThanThePromisedDataIsWarnedAbout) {
    EXPECT_EQ(words({rbtLine(5)}, "64"), "00 00 00 05");
    EXPECT_EQ(said(), "WARNING:Lanefill:86 - File 'a.rbt' ends after 32 bits of data, its header names '64'.");
}

TEST_F(RbtContainer, ATextWithoutWordsIsRefused) {
    for (const std::vector<std::string>& lines : {std::vector<std::string>{}, {"no words"}, {"2", "3"}, {"", ""}}) {
        EXPECT_EQ(words(lines), "status 17");
        EXPECT_EQ(said(), "ERROR:Lanefill:53 - File 'a.rbt' is empty or has no RBT content.");
    }
}

TEST_F(RbtContainer, AnEmptyFileIsRefused) {
    EXPECT_EQ(openText(""), 17);
    EXPECT_EQ(said(), "ERROR:Lanefill:53 - File 'a.rbt' is empty or has no RBT content.");
}

TEST_F(RbtContainer, AnUnknownDeviceIsNamedAndTheHeaderIsGone) {
    EXPECT_EQ(open({.partName = "zz99"}), 4);
    EXPECT_EQ(said(), "ERROR:Lanefill:4 - Unrecognized device type in .bit file, 'zz99'.");
    EXPECT_EQ(bit.words(), "-|-|-|-|-|-|8");
    EXPECT_EQ(bit.file, nullptr);
}

TEST_F(RbtContainer, EveryCutOfTheHeaderIsRefused) {
    const std::string text = rbtText({});
    const size_t headerEnd = text.find("Bits:");
    for (size_t n = 1; n < headerEnd; ++n) {
        EXPECT_NE(openText(text.substr(0, n)), 0) << n;
        EXPECT_NE(said().find("'a.rbt'"), std::string::npos) << n;
    }
}

TEST_F(RbtContainer, AnyBytesGiveAStatus) {
    for (u32 c = 0; c < 256; ++c) {
        std::string text = rbtText({});
        for (size_t at : {size_t{0}, text.find("name") + 4, text.find("Bits:") + 4, text.size() - 20})
            text[at] = static_cast<char>(c);
        const int status = openText(text);
        EXPECT_TRUE(status == 0 || !said().empty()) << c;
    }
}

TEST_F(RbtContainer, ALabelledLineCanBeReadFromAnyText) {
    TextReader text("about\nSpeed: -2  grade \nrest");
    ASSERT_EQ(ReadLabeledString(text, text.token(), "speed", &bit.header.designName), 0);
    EXPECT_STREQ(bit.header.designName.text, "-2  grade");
    EXPECT_EQ(bit.header.designName.length, 9u);
    EXPECT_EQ(text.next(), "IDENTIFIER_TOKEN(rest)");
}

TEST_F(RbtContainer, DataIsReadFromWhereTheTextStands) {
    TextReader text("skipped 1 10", nullptr, "t.rbt");
    fileIODescriptor* data = nullptr;
    ASSERT_EQ(OpenRBTData(text, text.token(), &bit.header, &data), 0);
    EXPECT_EQ(get_stream_number_base(text), 2u);
    EXPECT_EQ(hexText(bit.header.dataPointer, bit.header.dataLength), "00 00 00 01 00 00 00 02");
    Close_File(&data);
}

TEST_F(RbtContainer, TheTokenizerGivesTheSameWordsAsPlainDigits) {
    u32 state = 1;
    std::vector<std::string> plain;
    std::vector<std::string> read;
    for (u32 i = 0; i < 500; ++i) {
        state = state * 1664525 + 1013904223;
        std::string digits;
        for (u32 n = 0; n < 1 + state % 64; ++n) digits += (state * (2 * n + 1) >> 13 & 1) != 0 ? '1' : '0';
        plain.push_back(digits);
        read.push_back(digits + "/**/"); // not plain
    }
    const std::string expected = words(plain);
    EXPECT_EQ(words(read), expected);
}

TEST_F(RbtContainer, ItsHeaderCanBeCompletedToAT4kFile) {
    ASSERT_EQ(open(RbtFields{}), 0);
    ASSERT_EQ(completeRBTHeader(&bit.header), 0);
    const std::string name = folder.file("out.bit");
    fileIODescriptor* out = nullptr;
    ASSERT_EQ(Open_File(name.c_str(), 0x23, &out), 0);
    EXPECT_EQ(WriteBITHeader(out, &bit.header), 0);
    EXPECT_EQ(WriteData(out, bit.header.dataPointer, bit.dataLength), 0);
    EXPECT_EQ(Close_File(&out), 0);
    ASSERT_EQ(bit.open(name), 0) << said();
    EXPECT_EQ(bit.words(), "top.ncd|q5a20ff676|Sat Jul 10 2010|12:52:21|Sat Jul 10 2010 12:52:21|-|8");
    EXPECT_EQ(bit.header.fieldCount, 1u);
    EXPECT_EQ(bit.header.dataTag, 'e');
}

TEST_F(RbtContainer, ADateWithoutATimeGetsMidnight) {
    const struct {
        const char* dateTime;
        const char* date;
        const char* time;
    } cases[] = {
        {"2010/07/10", "2010/07/10", "00:00:00"},
        {"12:52:21", "unknown", "12:52:21"},
        {"", "unknown", "00:00:00"},
        {"a 1:2 b 3:4", "a b 3:4", "1:2"},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(open({.designName = "", .date = c.dateTime}), 0);
        ASSERT_EQ(completeRBTHeader(&bit.header), 0);
        EXPECT_STREQ(bit.header.date.text, c.date) << c.dateTime;
        EXPECT_STREQ(bit.header.time.text, c.time) << c.dateTime;
        EXPECT_STREQ(bit.header.designName.text, "unknown");
    }
}

// A lifetime for each run: the pool of tokens keeps memory within one.
TEST(RbtContainerMemory, EveryAllocationMayFail) {
    TemporaryFolder folder;
    const std::string name = folder.write("a.rbt", rbtText({.bits = "", .lines = std::vector<std::string>(2000, "1")}));
    u64 leaked = 0;
    const FaultSweep sweep = sweepAllocationFaults([&] {
        int status = InitializeSystemResources();
        EnablePrintAlerts(0);
        if (status == 0) {
            BitFile bit;
            status = bit.open(name);
            if (status == 0) status = completeRBTHeader(&bit.header);
        }
        FinalizeSystemResources();
        leaked += leakedBlockCount();
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(leaked, 0u);
    EXPECT_GT(sweep.faultCount, 10u);
}

} // namespace

// sections_test.cpp - what a MEM text gives: sections, their addresses, their bytes.
// SPDX-License-Identifier: Apache-2.0
#include "mem_file_test.h"

#include "FileUtils/FileUtils.h"
#include "support/temporary_folder.h"

namespace memdata::testing {
namespace {

class MemSections : public MemFileTest {};

TEST_F(MemSections, AnAddressOpensASectionOfTheValuesBehindIt) {
    EXPECT_EQ(read("@10 AB CD"), "10:ABCD");
}

TEST_F(MemSections, DataAheadOfAnyAddressIsAtAddressZero) {
    EXPECT_EQ(read("AB CD\n@10 EF"), "0:ABCD 10:EF");
}

TEST_F(MemSections, AnAddressIsHexadecimalWhateverTheRadix) {
    EXPECT_EQ(read("@FF 12"), "FF:12");
    EXPECT_EQ(read("RADIX 2\n@10 11110000\n@FF 1111"), "10:F0 FF:F0/4");
    EXPECT_EQ(read("@10 11110000", 2), "10:F0");
}

TEST_F(MemSections, TheRadixHoldsOnBehindAnAddress) {
    EXPECT_EQ(read("RADIX 2 @A 00000001 @B 10000000"), "A:01 B:80");
}

TEST_F(MemSections, AnAddressMayTouchItsMarkOrNot) {
    EXPECT_EQ(read("@ 10 AB@\n20 CD"), "10:AB 20:CD");
}

TEST_F(MemSections, AnAddressMayHaveAPrefix) {
    EXPECT_EQ(read("@0x20 01"), "20:01");
}

TEST_F(MemSections, EachAddressOpensASectionOfItsOwnEvenWhereOneEnds) {
    EXPECT_EQ(read("@10 AB @11 CD @10 EF"), "10:AB 11:CD 10:EF");
}

TEST_F(MemSections, SectionsKeepTheOrderOfTheText) {
    EXPECT_EQ(read("@30 3 @10 1 @20 2"), "30:30/4 10:10/4 20:20/4");
}

TEST_F(MemSections, ASectionMayBeWithoutData) {
    EXPECT_EQ(read("@10 @20 AB @30"), "10: 20:AB 30:");
}

TEST_F(MemSections, TheFirstDigitIsTheMostSignificantAndBlanksCountForNothing) {
    EXPECT_EQ(read("12 34"), "0:1234");
    EXPECT_EQ(read("1234"), "0:1234");
    EXPECT_EQ(read("1 2"), "0:12");
    EXPECT_EQ(read("1\n\t\f 2\r\n3\n\r4"), "0:1234");
}

TEST_F(MemSections, HexDigitsComeInEitherCase) {
    EXPECT_EQ(read("aBcDeF 01"), "0:ABCDEF01");
}

TEST_F(MemSections, AnOddNumberOfHexDigitsLeavesHalfAByte) {
    EXPECT_EQ(read("ABC"), "0:ABC0/12");
    EXPECT_EQ(read("00012"), "0:000120/20");
}

TEST_F(MemSections, LeadingZerosAreData) {
    EXPECT_EQ(read("0000 00 0"), "0:00000000/28");
}

TEST_F(MemSections, WordsWithParityDigitsFollowEachOtherBitByBit) {
    EXPECT_EQ(read("1FF 0AA 155"), "0:1FF0AA1550/36");
}

TEST_F(MemSections, AValueMayBeLongerThanAChunk) {
    EXPECT_EQ(read("00112233445566778899AABBCCDDEEFF0123456"), "0:00112233445566778899AABBCCDDEEFF01234560/156");
}

TEST_F(MemSections, BinaryDigitsAreOneBitEach) {
    EXPECT_EQ(read("1010 0101 1", 2), "0:A580/9");
    EXPECT_EQ(read(std::string(70, '1'), 2), "0:FFFFFFFFFFFFFFFFFC/70");
}

TEST_F(MemSections, RadixSwitchesInTheMiddle) {
    EXPECT_EQ(read("AB RADIX 2 11001100 RADIX 16 EF"), "0:ABCCEF");
    EXPECT_EQ(read("radix 2 1"), "0:80/1");
}

TEST_F(MemSections, TheRadixIsDecimalWhateverTheRadixBefore) {
    EXPECT_EQ(read("RADIX 2 RADIX 16 FF"), "0:FF");
    EXPECT_EQ(read("RADIX 0x10 FF"), "0:FF");
}

TEST_F(MemSections, ValuesOfBothRadixesFollowEachOtherWithoutAlignment) {
    EXPECT_EQ(read("RADIX 2 101 RADIX 16 F0 5 RADIX 2 1"), "0:BE0B");
    EXPECT_EQ(read("RADIX 2 1000000 RADIX 16 9"), "0:8120/11");
}

TEST_F(MemSections, ADefaultRadixOfZeroMeansSixteen) {
    EXPECT_EQ(read("12", 0), "0:12");
}

TEST_F(MemSections, CommentsAndMacrosWorkInData) {
    EXPECT_EQ(
        read("// head\n#define TWICE 12 12\n@10 /* a /* b */ c */ AB TWICE // tail\nCD ## line\nEF"), "10:AB1212CDEF");
    EXPECT_EQ(read("#if SIZE == 4\nAB\n#else\nCD\n#endif", 16, "#define SIZE 4\n"), "0:AB");
    EXPECT_EQ(read("@START 12", 16, "#define START 40\n"), "40:12");
}

TEST_F(MemSections, MacroTextsInheritTheRadix) {
    EXPECT_EQ(read("#define VALUE 11\nRADIX 2 VALUE VALUE RADIX 16 VALUE"), "0:F110/12");
    EXPECT_EQ(read("#define BINARY RADIX 2\nBINARY 1111"), "0:F0/4");
}

TEST_F(MemSections, LoopsMayGiveMoreDataThanTheTextIsLong) {
    std::string value(4000, 'A');
    value.front() = '1';
    std::string all;
    for (int i = 0; i < 9; ++i) all += value;
    EXPECT_EQ(read("@4 77 @10\n#for i 0; i < 9; i i+1\n" + value + "\n#endfor\n@20 55"), "4:77 10:" + all + " 20:55");
}

TEST_F(MemSections, IncludedFilesAddTheirData) {
    const TemporaryFolder folder;
    const std::string name = folder.write("more.h", "RADIX 2 11110000\n@40 1");
    EXPECT_EQ(read("AB\n#include \"" + name + "\"\n1"), "0:ABF0 40:C0/2");
}

TEST_F(MemSections, ASectionShowsItsFiveWordsAndItsKind) {
    ASSERT_EQ(open("@10 123"), 0);
    DataFileSectionTypeX<unsigned long> section{};
    EXPECT_EQ(file->GetProgramSectionData(0, &section), 0);
    EXPECT_EQ(section.address, 0x10u);
    EXPECT_EQ(section.reserved, 0x10u);
    EXPECT_EQ(section.size, 2u);
    EXPECT_EQ(section.bitCount, 12u);
    EXPECT_EQ(section.kind, 1026u);
    EXPECT_EQ(file->GetProgramSectionData(1, &section), 3);
}

TEST_F(MemSections, TheAddressRangeIsThatOfAllSections) {
    ASSERT_EQ(open("@30 1234 @10 AB @20"), 0);
    unsigned long low = 0;
    unsigned long high = 0;
    EXPECT_EQ(file->GetProgramSectionAddressRange(&low, &high), 0);
    EXPECT_EQ(low, 0x10u);
    EXPECT_EQ(high, 0x31u);
}

TEST_F(MemSections, ASectionWithoutDataAtZeroHasNoLastAddress) {
    ASSERT_EQ(open("@0 @4 12"), 0);
    unsigned long low = 1;
    unsigned long high = 1;
    EXPECT_EQ(file->GetProgramSectionAddressRange(&low, &high), 0);
    EXPECT_EQ(low, 0u);
    EXPECT_EQ(high, 4u);
}

TEST_F(MemSections, ATextHasNeitherOtherSectionsNorAStartNorAProcessor) {
    ASSERT_EQ(open("@10 AB"), 0);
    DataFileSectionTypeX<unsigned long> section{};
    EXPECT_STREQ(file->GetDataFileName(), "data.mem");
    EXPECT_STREQ(file->GetDataFileExtension(), "mem");
    EXPECT_EQ(file->GetDataFileStatupAddress(), nullptr);
    EXPECT_EQ(file->getAddressWidth(), kADDRESS_WIDTH_UNKNOWN);
    EXPECT_EQ(file->GetSectionCount(), 0u);
    EXPECT_EQ(file->GetSectionData(0, &section), 0);
    EXPECT_EQ(section.data, nullptr);
    EXPECT_EQ(file->GetSectionName(0), nullptr);
    EXPECT_EQ(file->IsMatchingProcessorType(1), 0);
}

TEST_F(MemSections, AnUnopenedFileHasNothing) {
    LNF_MEMDataFile unopened(16);
    unsigned long low = 0;
    unsigned long high = 0;
    DataFileSectionTypeX<unsigned long> section{};
    EXPECT_STREQ(unopened.GetDataFileName(), "");
    EXPECT_EQ(unopened.GetProgramSectionCount(), 0u);
    EXPECT_EQ(unopened.GetProgramSectionData(0, &section), 3);
    EXPECT_EQ(unopened.GetProgramSectionAddressRange(&low, &high), 3);
}

TEST_F(MemSections, AFileMayBeOpenedAgain) {
    ASSERT_EQ(open("@10 AB"), 0);
    const TemporaryFolder folder;
    fileSpecType* spec = CreateFileSpec(folder.write("other.mem", "@20 CD @30 EF").c_str());
    EXPECT_EQ(file->OpenDataFile(spec, nullptr, 1), 0);
    EXPECT_EQ(sectionsText(file.get()), "20:CD 30:EF");
    file.reset();
    DeleteFileSpec(&spec);
}

TEST_F(MemSections, ANameWithoutExtensionTakesMem) {
    const TemporaryFolder folder;
    folder.write("table.mem", "12 34");
    LNF_MEMDataFile table(16);
    fileSpecType* spec = CreateFileSpec(folder.file("table").c_str());
    EXPECT_EQ(table.OpenDataFile(spec, nullptr, 1), 0);
    EXPECT_EQ(sectionsText(&table), "0:1234");
    DeleteFileSpec(&spec);
}

} // namespace
} // namespace memdata::testing

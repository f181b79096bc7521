// bit_container_test.cpp - binary bit files: headers of both dialects, opened, written and damaged.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_container.h"

#include "BitFileUtils/byte_primitives.h"
#include "SystemUtils/memory.h"
#include "bit_file_test.h"
#include "support/allocation_faults.h"

namespace {

using namespace memdata;
using namespace memdata::testing;

const Bytes kSTREAM = {0xAA, 0x99, 0x55, 0x66, 0x20, 0, 0, 0};

class BitContainer : public BitFileTest {
protected:
    // What writing the header gives.
    Bytes writtenHeader() {
        fileIODescriptor* out = nullptr;
        EXPECT_EQ(OpenMemoryFile("out.bit", 0x23, nullptr, 0, &out), 0);
        EXPECT_EQ(WriteBITHeader(out, &bit.header), 0);
        const char* base = GetFileStorageBase(out);
        Bytes bytes(base, base + GetFilePosition(out));
        Close_File(&out);
        return bytes;
    }
    // The damaged file is refused as corrupted, and nothing stays open.
    void expectCorrupted(const Bytes& bytes, const std::string& what) {
        EXPECT_EQ(open(bytes), 2) << what;
        EXPECT_EQ(said(), kCORRUPTED_A) << what;
        EXPECT_EQ(bit.file, nullptr) << what;
    }
};

TEST_F(BitContainer, AT4kHeaderGivesItsFields) {
    ASSERT_EQ(open(t4kBitFile({}, kSTREAM)), 0);
    EXPECT_EQ(bit.words(), "top.ncd;UserID=0xFFFFFFFF|q5a20ff676|2010/07/10|12:52:21|2010/07/10 12:52:21|-|8");
    EXPECT_EQ(bit.header.dialect, 0);
    EXPECT_EQ(bit.header.fieldCount, 1u);
    EXPECT_EQ(bit.header.dataTag, 'e');
    EXPECT_EQ(hexText(bit.header.preamble.text, bit.header.preamble.length), "0f f0 0f f0 0f f0 0f f0");
    EXPECT_EQ(bit.header.bitCount.text, nullptr);
    EXPECT_EQ(said(), "");
}

TEST_F(BitContainer, TheFileStandsAtTheStreamAndTheHeaderPointsToIt) {
    for (const u32 flags : {0u, kWHOLE_FILE_BUFFER}) {
        ASSERT_EQ(open(t4kBitFile({}, kSTREAM), flags), 0);
        EXPECT_EQ(bit.dataLength, 8u);
        EXPECT_EQ(GetFilePosition(bit.file), t4kOffset({}, "stream"));
        EXPECT_EQ(hexText(bit.header.dataPointer, 8), hexText(kSTREAM));
        u32 word = 0;
        EXPECT_EQ(ReadLong(bit.file, &word), 0);
        EXPECT_EQ(word, 0xAA995566u);
    }
}

TEST_F(BitContainer, AStreamThatTheBufferDoesNotHoldIsPointedToOnlyInAWholeBuffer) {
    Bytes stream(300'000, 0x20);
    stream.back() = 0x5A;
    ASSERT_EQ(open(t4kBitFile({}, stream)), 0);
    EXPECT_EQ(bit.header.dataPointer, nullptr);
    ASSERT_EQ(open(t4kBitFile({}, stream), kWHOLE_FILE_BUFFER), 0);
    EXPECT_EQ(bit.header.dataPointer[299'999], 0x5A);
}

TEST_F(BitContainer, TheDeviceIsFoundByTheBeginningOfThePartName) {
    ASSERT_EQ(open(t4kBitFile({}, kSTREAM)), 0);
    EXPECT_EQ(bit.device, get_device_record_by_name("tq5a20"));
    ASSERT_EQ(open(fenwickBitFile({.partName = "tq7b100-2fg484"}, kSTREAM)), 0);
    EXPECT_EQ(bit.device, get_device_record_by_name("q7b100"));
    EXPECT_NE(bit.device, nullptr);
}

TEST_F(BitContainer, AnExtensionIsAddedToANameWithoutOne) {
    folder.write("b.bit", textOf(t4kBitFile({}, kSTREAM)));
    EXPECT_EQ(bit.open(folder.file("b")), 0);
}

TEST_F(BitContainer, BytesBehindTheStreamAreNoPartOfIt) {
    EXPECT_EQ(open(t4kBitFile({.dataLength = 4}, kSTREAM)), 0);
    EXPECT_EQ(bit.dataLength, 4u);
}

TEST_F(BitContainer, TheTagOfTheDataIsNotTested) {
    ASSERT_EQ(open(t4kBitFile({.tags = "abcdX"}, kSTREAM)), 0);
    EXPECT_EQ(bit.header.dataTag, 'X');
}

TEST_F(BitContainer, OnlyTheCountedBytesOfThePreambleAreSignificant) {
    Bytes bytes = t4kBitFile({.fieldCount = 0xBEEF}, kSTREAM);
    bytes[2 + 8] = 0x77; // in place of the terminator
    ASSERT_EQ(open(bytes), 0);
    EXPECT_EQ(hexText(writtenHeader()), hexText(cut_at(bytes, t4kOffset({}, "stream"))));
}

TEST_F(BitContainer, AT4kHeaderIsWrittenAsItWasRead) {
    const T4kFields fields{.fieldCount = 0x1234, .designName = std::string("a\0b", 3), .tags = "abcd!"};
    const Bytes bytes = t4kBitFile(fields, kSTREAM);
    ASSERT_EQ(open(bytes), 0);
    EXPECT_EQ(hexText(writtenHeader()), hexText(cut_at(bytes, t4kOffset(fields, "stream"))));
}

TEST_F(BitContainer, TheTextsOfTheDialectAreEachChecked) {
    const struct {
        const char* what;
        T4kFields fields;
    } cases[] = {
        {"design tag", {.tags = "Abcde"}},
        {"part tag", {.tags = "aBcde"}},
        {"date tag", {.tags = "abCde"}},
        {"time tag", {.tags = "abcDe"}},
        {"empty design name", {.designName = ""}},
        {"empty part name", {.partName = ""}},
        {"empty date", {.date = ""}},
        {"empty time", {.time = ""}},
        {"text of zero bytes", {.designName = std::string(3, '\0')}},
        {"preamble", {.preamble = "\x0F\xF0\x0F\xF0\x0F\xF0\x0F\xF1"}},
        {"short preamble", {.preamble = "\x0F\xF0\x0F\xF0"}},
        {"long preamble", {.preamble = "\x0F\xF0\x0F\xF0\x0F\xF0\x0F\xF0\x0F"}},
        {"empty preamble", {.preamble = ""}},
    };
    for (const auto& c : cases) expectCorrupted(t4kBitFile(c.fields, kSTREAM), c.what);
}

TEST_F(BitContainer, AMissingTerminatorIsRefused) {
    for (const char* field : {"designName", "partName", "date", "time"}) {
        Bytes bytes = t4kBitFile({}, kSTREAM);
        const size_t at = t4kOffset({}, field);
        bytes.at(at + 1 + bytes.at(at + 1)) = 'z'; // last byte of the string
        expectCorrupted(bytes, field);
    }
}

TEST_F(BitContainer, StringLengthsOfNothingAndEverythingAreRefused) {
    for (const char* field : {"preamble", "designName", "partName", "date", "time"})
        for (const u64 length : {0U, 65535U}) {
            // The first byte of the file is that of the preamble's length.
            const Bytes bytes = set_length(t4kBitFile({}, kSTREAM), t4kOffset({}, field), 2, length);
            if (bytes[0] != 0) continue;
            expectCorrupted(bytes, std::string(field) + " " + std::to_string(length));
        }
}

TEST_F(BitContainer, EveryCutOfAT4kFileIsRefused) {
    const Bytes good = t4kBitFile({}, kSTREAM);
    EXPECT_EQ(open(cut_at(good, 0)), 17);
    EXPECT_EQ(said(), "ERROR:Lanefill:53 - File 'a.bit' is empty or has no BIT content.");
    for (size_t n = 1; n < good.size(); ++n) expectCorrupted(cut_at(good, n), std::to_string(n));
}

TEST_F(BitContainer, EveryCutOfAFenwickFileIsRefused) {
    const Bytes good = fenwickBitFile({}, kSTREAM);
    for (size_t n = 1; n < good.size(); ++n) expectCorrupted(cut_at(good, n), std::to_string(n));
}

TEST_F(BitContainer, ALengthBeyondTheFileIsRefused) {
    for (const u64 length : {9ULL, 0x7FFFFFFFULL, 0x80000000ULL, 0xFFFFFFF8ULL, 0xFFFFFFFFULL})
        expectCorrupted(
            set_length(t4kBitFile({}, kSTREAM), t4kOffset({}, "dataLength"), 4, length), std::to_string(length));
    expectCorrupted(fenwickBitFile({.bitCount = 72}, kSTREAM), "Fenwick");
    expectCorrupted(fenwickBitFile({.bitCount = 0xFFFFFFFF}, kSTREAM), "Fenwick, all bits set");
}

TEST_F(BitContainer, ALengthBeyondAFileOfManyBuffersIsRefused) {
    const Bytes stream(250'000, 0);
    EXPECT_EQ(open(t4kBitFile({.dataLength = 250'000}, stream)), 0);
    expectCorrupted(t4kBitFile({.dataLength = 250'001}, stream), "one byte");
}

TEST_F(BitContainer, AFenwickHeaderGivesItsFields) {
    ASSERT_EQ(open(fenwickBitFile({}, kSTREAM)), 0);
    EXPECT_EQ(bit.words(), "top.ncd|q5a20ff676|-|-|Sat Jul 10 12:52:21 2010|0xFFFFFFFF|8");
    EXPECT_EQ(bit.header.dialect, 25);
    EXPECT_EQ(hexText(bit.header.fenwickStamp, 8), "01 02 03 04 05 06 07 80");
    EXPECT_EQ(hexText(bit.header.dataPointer, 8), hexText(kSTREAM));
}

TEST_F(BitContainer, AFenwickLengthCountsBits) {
    const Bytes stream(125, 0);
    const Bytes bytes = fenwickBitFile({.bitCount = 1000}, stream);
    ASSERT_EQ(open(bytes), 0);
    EXPECT_EQ(bit.dataLength, 125u);
    EXPECT_EQ(hexText(writtenHeader()), hexText(cut_at(bytes, bytes.size() - 125)));
}

TEST_F(BitContainer, AFenwickHeaderWithALengthBeyondItsFieldIsNotWritten) {
    ASSERT_EQ(open(fenwickBitFile({}, kSTREAM)), 0);
    bit.header.dataLength = 0x20000000;
    EXPECT_EQ(WriteBITHeader(bit.file, &bit.header), 2);
    EXPECT_EQ(said(), kCORRUPTED_A);
}

TEST_F(BitContainer, AFenwickStringOfTenMegabytesIsRead) {
    const std::string name(10'000'000, 'n');
    const Bytes bytes = fenwickBitFile({.designName = name}, kSTREAM);
    for (const u32 flags : {0u, kWHOLE_FILE_BUFFER}) {
        ASSERT_EQ(open(bytes, flags), 0);
        EXPECT_EQ(bit.header.designName.length, name.size());
        EXPECT_EQ(bit.dataLength, 8u);
        u32 word = 0;
        EXPECT_EQ(ReadLong(bit.file, &word), 0);
        EXPECT_EQ(word, 0xAA995566u);
    }
    Bytes open_ended = cut_at(bytes, 9'000'000);
    expectCorrupted(open_ended, "no zero byte");
}

TEST_F(BitContainer, AnotherDialectIsAnEmptyHeaderThatNamesNoDevice) {
    EXPECT_EQ(open(std::string_view("\7abc")), 4);
    EXPECT_THAT(said(), ::testing::MatchesRegex("ERROR:Lanefill:4 - Unrecognized device type in .bit file, '.+bit'."));
    EXPECT_EQ(bit.file, nullptr);
}

TEST_F(BitContainer, AnotherDialectIsNoFailureOfReadingOrWritingTheHeader) {
    std::string bytes = "\7abc";
    fileIODescriptor* in = nullptr;
    ASSERT_EQ(OpenMemoryFile("in.bit", 0x13, bytes.data(), bytes.size(), &in), 0);
    bit.header.dataLength = 5;
    EXPECT_EQ(ReadBITHeader(in, &bit.header), 0);
    EXPECT_EQ(bit.words(), "-|-|-|-|-|-|0");
    Close_File(&in);
    bit.header.dialect = 7;
    EXPECT_EQ(writtenHeader().size(), 0u);
}

TEST_F(BitContainer, AnUnknownDeviceIsNamedAndItsHeaderStays) {
    EXPECT_EQ(open(t4kBitFile({.partName = "zz99"}, kSTREAM)), 4);
    EXPECT_EQ(said(), "ERROR:Lanefill:4 - Unrecognized device type in .bit file, 'zz99'.");
    EXPECT_EQ(bit.file, nullptr);
    EXPECT_EQ(bit.device, nullptr);
    EXPECT_STREQ(bit.header.partName.text, "zz99");
    EXPECT_EQ(bit.header.dataPointer, nullptr);
}

TEST_F(BitContainer, AFileThatIsNotThereIsReportedByTheFileLayer) {
    EXPECT_EQ(bit.open(folder.file("none.bit")), 1);
    EXPECT_NE(said().find("'none.bit'"), std::string::npos);
}

TEST_F(BitContainer, AHeaderCanBeDeletedTwice) {
    ASSERT_EQ(open(t4kBitFile({}, kSTREAM)), 0);
    DeleteBITHeader(&bit.header);
    EXPECT_EQ(bit.words(), "-|-|-|-|-|-|8");
    EXPECT_EQ(bit.header.dataPointer, nullptr);
    EXPECT_EQ(bit.header.preamble.length, 0u);
    DeleteBITHeader(&bit.header);
    DeleteBITHeader(nullptr);
    EXPECT_EQ(said(), "");
}

TEST_F(BitContainer, TheDeviceCanBeLearntFromTheHeaderAlone) {
    fileSpecType* spec = CreateFileSpec(folder.write("a.bit", textOf(t4kBitFile({}, kSTREAM))).c_str());
    TarselDeviceType* device = nullptr;
    EXPECT_EQ(deviceOfBitFile(spec, &device), 0);
    EXPECT_EQ(device, get_device_record_by_name("q5a20"));
    DeleteFileSpec(&spec);
}

TEST_F(BitContainer, AHeaderIsDumpedAsLabelledLines) {
    ASSERT_EQ(open(t4kBitFile({}, kSTREAM)), 0);
    fileIODescriptor* out = nullptr;
    ASSERT_EQ(OpenMemoryFile("out.dmp", 0x22, nullptr, 0, &out), 0);
    EXPECT_EQ(DumpBITHeader(out, "a.bit", &bit.header), 0);
    EXPECT_EQ(std::string(GetFileStorageBase(out), GetFilePosition(out)), "Ombrel BIT Bitstream\n"
                                                                          "File:        \ta.bit\n"
                                                                          "Design name: \ttop.ncd;UserID=0xFFFFFFFF\n"
                                                                          "Part:        \tq5a20ff676\n"
                                                                          "Date:        \t2010/07/10 12:52:21\n"
                                                                          "Bits:        \t64\n"
                                                                          "\n");
    Close_File(&out);
}

TEST_F(BitContainer, TheBitsOfADumpNeedMoreThanThirtyTwoBits) {
    bit.header.dataLength = 600'000'000;
    fileIODescriptor* out = nullptr;
    ASSERT_EQ(OpenMemoryFile("out.dmp", 0x22, nullptr, 0, &out), 0);
    EXPECT_EQ(DumpBITHeader(out, "a.bit", &bit.header), 0);
    const std::string text(GetFileStorageBase(out), GetFilePosition(out));
    EXPECT_NE(text.find("Bits:        \t4800000000\n"), std::string::npos);
    Close_File(&out);
}

TEST_F(BitContainer, AnImageIsTheStreamWithoutItsWrapper) {
    fileSpecType* spec = CreateFileSpec(folder.write("a.bit", textOf(t4kBitFile({}, kSTREAM))).c_str());
    fileIODescriptor* image = nullptr;
    EXPECT_EQ(OpenBITFileData(spec, 0, &bit.dataLength, &bit.device, &bit.header, &image), 0);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(bit.dataLength, kSTREAM.size());
    EXPECT_EQ(bit.header.dataLength, kSTREAM.size());
    EXPECT_EQ(hexText(bit.header.dataPointer, bit.dataLength), hexText(kSTREAM));
    EXPECT_EQ(said(), "");
    Close_File(&image);
    releaseMemory(bit.header.dataPointer);
    bit.header.dataPointer = nullptr;
    DeleteFileSpec(&spec);
}

TEST_F(BitContainer, AnImageWithoutSyncWordsIsShorter) {
    fileSpecType* spec = CreateFileSpec(folder.write("a.bit", textOf(t4kBitFile({}, kSTREAM))).c_str());
    fileIODescriptor* image = nullptr;
    EXPECT_EQ(OpenBITFileData(spec, 0x80, &bit.dataLength, &bit.device, &bit.header, &image), 0);
    EXPECT_EQ(bit.dataLength, kSTREAM.size() - 4);
    Close_File(&image);
    releaseMemory(bit.header.dataPointer);
    bit.header.dataPointer = nullptr;
    DeleteFileSpec(&spec);
}

TEST(BitContainerMemory, EveryAllocationMayFail) {
    SystemResources system;
    TemporaryFolder folder;
    const std::string t4k = folder.write("a.bit", textOf(t4kBitFile({}, kSTREAM)));
    const std::string fenwick = folder.write("b.bit", textOf(fenwickBitFile({}, kSTREAM)));
    const FaultSweep sweep = sweepAllocationFaults([&] {
        for (const std::string& name : {t4k, fenwick}) {
            BitFile bit;
            if (int status = bit.open(name); status != 0) return status;
        }
        return 0;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 10u);
}

TEST(BitContainerMemory, AnImageThatFindsNoMemoryIsNone) {
    SystemResources system;
    TemporaryFolder folder;
    const std::string name = folder.write("a.bit", textOf(t4kBitFile({}, kSTREAM)));
    const FaultSweep sweep = sweepAllocationFaults([&] {
        BitFile bit;
        fileIODescriptor* image = nullptr;
        fileSpecType* spec = CreateFileSpec(name.c_str());
        const int status =
            spec == nullptr ? 7 : OpenBITFileData(spec, 0, &bit.dataLength, &bit.device, &bit.header, &image);
        DeleteFileSpec(&spec);
        EXPECT_EQ(image != nullptr, status == 0);
        EXPECT_EQ(bit.header.dataPointer != nullptr, status == 0);
        Close_File(&image);
        if (status == 0) releaseMemory(std::exchange(bit.header.dataPointer, nullptr));
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 5u);
}

} // namespace

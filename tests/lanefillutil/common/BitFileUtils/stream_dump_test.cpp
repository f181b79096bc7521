// stream_dump_test.cpp - what a dump says about each packet of a stream.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/frame_bursts.h"
#include "BitFileUtils/stream_walker.h"
#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/frame_sizes.h"
#include "FileUtils/FileUtils.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/golden.h"
#include "support/placed_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace memdata;
using namespace memdata::testing;

namespace {

class StreamDump : public ::testing::Test {
protected:
    explicit StreamDump(const char* device = "tq7a7") { use(device); }

    void use(const char* device) {
        device_ = get_device_record_by_name(device);
        stream = StreamWriter(device_);
        stream.sync();
    }
    // A command word that the writer would not make.
    void packet(u32 operation, u32 address, std::initializer_list<u32> words) {
        stream.word(stream.form().command(operation, address, static_cast<u32>(words.size())));
        for (u32 word : words) stream.word(word);
    }
    std::string dump(u32 flags = 0, AddressMappingType* map = nullptr) { return dumpOf(stream.bytes(), flags, map); }
    std::string dumpOf(Bytes bytes, u32 flags = 0, AddressMappingType* map = nullptr) {
        fileIODescriptor* input = nullptr;
        fileIODescriptor* output = nullptr;
        EXPECT_EQ(OpenMemoryFile("stream", kREAD_ACCESS | kBINARY_FILE, reinterpret_cast<char*>(bytes.data()),
                      bytes.size(), &input),
            0);
        EXPECT_EQ(OpenMemoryFile("dump", kTEXT_WRITE, nullptr, 0, &output), 0);
        remaining = static_cast<u32>(bytes.size());
        status = OutputBITData(input, nullptr, output, device_, flags, &remaining, map);
        std::string text(GetFileStorageBase(output), GetFileLogicalSize(output));
        Close_File(&input);
        Close_File(&output);
        return text;
    }

    SystemResources system;
    CapturedAlerts alerts;
    TarselDeviceType* device_ = nullptr;
    StreamWriter stream{get_device_record_by_name("tq7a7")};
    u32 remaining = 0;
    int status = 99;
};

std::string hexOfWord(u32 word) {
    char text[11];
    std::snprintf(text, sizeof text, "0x%08X", word);
    return text;
}

// Lines of a text in order, with other lines between them.
void expectLines(const std::string& text, std::initializer_list<std::string> lines) {
    size_t at = 0;
    for (const std::string& line : lines) {
        const size_t found = text.find(line, at);
        ASSERT_NE(found, text.npos) << line << "\nin\n" << text;
        at = found + line.size();
    }
}

struct ReadLine {
    u32 kind;
    const char* line;
};

} // namespace

TEST_F(StreamDump, SaysWhatIsRead) {
    for (const ReadLine& c : {ReadLine{reg::kCRC, "Read of CRC (CRC Check) register of the current CRC value.\n\n"},
             {reg::kFAR, "Read of FAR (Frame Address) register of the current frame address value.\n\n"},
             {reg::kCMD, "Read of CMD (Command) register of the current command value.\n\n"},
             {reg::kCTL, "Read of CTL (Control) register of the current CTL value.\n\n"},
             {reg::kCTL1, "Read of CTL1 (Second Control) register of the current CTL1 value.\n\n"},
             {reg::kMASK, "Read of MASK (Control Mask) register of the current control mask value.\n\n"},
             {reg::kLOUT, "Read of LOUT (Daisy Chain Data Output) register of the current LOUT value.\n\n"},
             {reg::kBOUT, "Read of BSPI (BPI (SPI Parameters) register of the current BOUT value.\n\n"},
             {reg::kCOR, "Read of COR (Configuration Options) register of the current COR value.\n\n"},
             {reg::kCOR1, "Read of COR1 (Second Configuration Options) register of the current COR1 value.\n\n"},
             {reg::kIDCODE, "Read of IDCODE (Device Identification) register of the current ID word.\n\n"},
             {reg::kWBSTAR, "Read of WBSTAR (Warm Boot Start Address) register of the current WBSTAR value.\n\n"},
             {reg::kTIMER, "Read of TIMER (Watchdog Timer) register of the current TIMER value.\n\n"},
             {reg::kMFWR, "Read of MFWR (Multiple Frame Write) register of the current command value.\n\n"},
             {20, "Read of AXSS (User Access Word) register of the current value.\n\n"}, {reg::kFDRO, ""},
             {reg::kSTAT, ""}, {reg::kFDRI, ""}}) {
        use("tq7a7");
        stream.read(c.kind, 3);
        EXPECT_EQ(dump(), c.line);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(remaining, 0U);
    }
    use("tq5a4");
    stream.read(reg::kRBCRC1);
    EXPECT_EQ(dump(), "Read of RBCRC1 (Readback CRC 1) register of the current RBCRC1 value.\n\n");
    use("tq1a8");
    stream.read(reg::kFLR);
    EXPECT_EQ(dump(), "Read of FLR (Frame Length) register of the current frame length.\n\n");
}

TEST_F(StreamDump, SaysWhatIsWritten) {
    for (const ReadLine& c :
        {ReadLine{reg::kMASK, "Write of MASK (Control Mask) register with 0x12345678 control mask value.\n\n"},
            {reg::kIDCODE, "Write of IDCODE (Device Identification) register with 0x12345678 ID word.\n\n"},
            {reg::kWBSTAR, "Write of WBSTAR (Warm Boot Start Address) register with 0x12345678 WBSTAR value.\n\n"},
            {reg::kTIMER, "Write of TIMER (Watchdog Timer) register with 0x12345678 TIMER value.\n\n"},
            {20, "Write of AXSS (User Access Word) register with 0x12345678 value.\n\n"},
            {69, "Write of BOUT (Cobalt intra-die daisy chain) register with 0x12345678 value.\n\n"},
            {reg::kLOUT, "Write of LOUT (Daisy Chain Data Output) register with 0x12345678 LOUT word.\n\n"
                         "\nReboot device and restart at last LOUT command offset value.\n\n\n"},
            {reg::kBOUT, "Write of BSPI (BPI (SPI Parameters) register with 0x12345678 BOUT word.\n\n"
                         "\nReboot device and restart at last BOUT command offset value.\n\n\n"}}) {
        use("tq7a7");
        stream.write(c.kind, 0x12345678);
        EXPECT_EQ(dump(), c.line);
    }
    use("tq7a7");
    packet(2, 31, {7}); // a register without a name
    EXPECT_EQ(dump(), "Write of  register with 0x00000007 value.\n\n");
    use("tq5a4");
    stream.write(reg::kRBCRC1, 5);
    EXPECT_EQ(dump(), "Write of RBCRC1 (Readback CRC 1) register with 0x00000005 RBCRC1 value.\n\n");
    use("tq1a8");
    stream.write(reg::kFLR, 11);
    EXPECT_EQ(dump(), "Write of FLR (Frame Length) register with a 12 - 1 word length, or 384 frame bit length.\n\n");
    use("td3a16");
    stream.write(reg::kFLR, 137);
    EXPECT_EQ(dump(), "Write of FLR (Frame Length) register with a 138 - 1 word length, or 2208 frame bit length.\n\n");
}

TEST_F(StreamDump, TheValueOfAWriteOfSeveralWordsIsTheLast) {
    packet(2, 6, {1, 2, 3});
    EXPECT_EQ(dump(), "Write of MASK (Control Mask) register with 0x00000003 control mask value.\n\n");
    use("td6a24");
    packet(2, 14, {0x0123, 0x4567});
    EXPECT_EQ(dump(), "Write of IDCODE (Device Identification) register with 0x01234567 ID word.\n\n");
}

TEST_F(StreamDump, AWriteWithACountOfZeroHasOneWord) {
    packet(2, 6, {});
    stream.word(9);
    EXPECT_EQ(dump(), "Write of MASK (Control Mask) register with 0x00000009 control mask value.\n\n");
}

TEST_F(StreamDump, NamesCommands) {
    for (const auto& [value, name] : {std::pair{0U, "NULL (Command Pipeline Shifting)"}, {7U, "RCRC (Reset CRC)"},
             {18U, "BSPI_READ ("}, {19U, "FALL_EDGE ("}}) {
        use("tq7a7");
        stream.cmd(value);
        EXPECT_THAT(dump(), ::testing::StartsWith(std::string("Write of CMD (Command) register with ") + name));
    }
    use("tq7a7");
    stream.cmd(command::kDESYNCH);
    EXPECT_EQ(dump(), "Write of CMD (Command) register with DESYNCH (Force Realignment to 32 Bits) command value.\n\n");
    use("tq1a8");
    stream.cmd(0);
    EXPECT_EQ(dump(), "Write of CMD (Command) register with Reserved command value.\n\n");
}

TEST_F(StreamDump, ASegmentEndsWithDesynchAndTheNextOneHasASyncWord) {
    stream.cmd(command::kDESYNCH);
    stream.write(reg::kMASK, 1); // outside of a segment: passed over
    stream.noOperation();
    stream.sync();
    stream.write(reg::kMASK, 2);
    EXPECT_EQ(dump(), "Write of CMD (Command) register with DESYNCH (Force Realignment to 32 Bits) command value.\n\n"
                      "Write of NOP command word 0x20000000.\n\n"
                      "Write of MASK (Control Mask) register with 0x00000002 control mask value.\n\n");
}

TEST_F(StreamDump, PrintsFieldsOfOptionAndControlRegisters) {
    stream.write(reg::kCOR, 1U << 27 | 3U << 12 | 5);
    expectLines(dump(),
        {"Write of COR (Configuration Options) register with 0x08003005 COR value.\n", "    PWRDWN_STAT ", " = on.\n",
            "    DONE_PIPE ", " = off.\n", "    DONE_CYCLE ", " = 3.\n", "    GWE_CYCLE ", " = 5.\n\n"});
    use("tq7a7");
    stream.write(reg::kCTL, 1U << 6 | 2U << 4);
    expectLines(dump(), {"Write of CTL (Control) register with 0x00000060 CTL value.\n", "    DEC ", " = on.\n",
                            "    SBITS ", " = 2.\n", "    PERSIST ", " = off.\n", "    GTS_USR_B ", " = off.\n\n"});
    use("tq7a7");
    stream.write(reg::kCTL1, 0x00800000);
    expectLines(dump(), {"Write of CTL1 (Second Control) register with 0x00800000 CTL1 value.\n", " = on.\n", "\n\n"});
    use("tq7a7");
    stream.write(reg::kCOR1, 0x00000100);
    expectLines(dump(),
        {"Write of COR1 (Second Configuration Options) register with 0x00000100 COR1 value.\n", " = on.\n", "\n\n"});
}

TEST_F(StreamDump, PrintsFieldsOfFrameAddresses) {
    stream.write(reg::kFAR, 0U << 21 | 1U << 20 | 2U << 15 | 3U << 7 | 4);
    EXPECT_EQ(dump(), "Write of FAR (Frame Address) register with 0x00110184 CLB FAR address value.\n"
                      "    Block type (CLB 0 or BRAM 1)             = 0.\n"
                      "    Top/Botton half rows (Top 0 or Bottom 1) = 1.\n"
                      "    Row address (Row group address)          = 2.\n"
                      "    Major address (Column address)           = 3.\n"
                      "    Minor address (Frame address)            = 4.\n"
                      "\n");
    use("tq7a7");
    stream.write(reg::kFAR, 1U << 21);
    EXPECT_THAT(dump(),
        ::testing::StartsWith("Write of FAR (Frame Address) register with 0x00200000 BRAM FAR address value.\n"));
    use("tq4a32"); // 1 is the interconnect there
    stream.write(reg::kFAR, 1U << 19);
    EXPECT_THAT(dump(),
        ::testing::StartsWith("Write of FAR (Frame Address) register with 0x00080000 CLB FAR address value.\n"));
    use("tq4a32");
    stream.write(reg::kFAR, 2U << 19);
    EXPECT_THAT(dump(),
        ::testing::StartsWith("Write of FAR (Frame Address) register with 0x00100000 BRAM FAR address value.\n"));
    use("td6a24");
    stream.write(reg::kFAR, 1U << 28 | 5, 2);
    expectLines(dump(), {"Write of FAR_MAJ (Frame Address, Block and Major) register with 0x10000005 BRAM FAR address "
                         "value.\n",
                            "    Block type", "(CLB 0, BRAM 1, IOB 2 or PCFG 3)", " = 1.\n\n"});
}

TEST_F(StreamDump, AFrameAddressOfAColumnWithoutBlockRamIsSilent) {
    use("tq1a8"); // two columns
    stream.write(reg::kFAR, 1U << 25 | 1U << 17);
    EXPECT_THAT(dump(),
        ::testing::StartsWith("Write of FAR (Frame Address) register with 0x02020000 BRAM FAR address value.\n"));
    use("tq1a8");
    stream.write(reg::kFAR, 1U << 25 | 2U << 17);
    stream.write(reg::kFAR, 1U << 25 | 255U << 17);
    EXPECT_EQ(dump(), "");
    stream.burst(reg::kFDRI, Bytes(8));
    EXPECT_EQ(dump(), "") << "nor is the burst told";
}

TEST_F(StreamDump, ComparesCrcs) {
    stream.write(reg::kMASK, 1);
    const u32 crc = stream.crc();
    packet(2, 0, {0xDEADBEEF});
    EXPECT_EQ(dump(), "Write of MASK (Control Mask) register with 0x00000001 control mask value.\n\n"
                      "Write of CRC (CRC Check) register with 0xDEADBEEF CRC value. Calculated CRC value = " +
                          hexOfWord(crc) + ".\n\n");
}

TEST_F(StreamDump, ReadsMoveNoDataAndNoCrc) {
    stream.write(reg::kMASK, 1);
    for (u32 kind : {reg::kCRC, reg::kIDCODE, reg::kSTAT, reg::kFDRO, reg::kFDRI, reg::kMFWR}) stream.read(kind, 2);
    stream.crcRegister();
    expectLines(dump(), {"CRC value. Calculated CRC value = "});
    const std::vector<StreamPiece> pieces = takeApart(device_, stream.bytes());
    EXPECT_EQ(wrongCrcs(pieces), std::vector<size_t>{});
    const u32 crc = pieces.back().value;
    EXPECT_THAT(dump(), ::testing::EndsWith("Write of CRC (CRC Check) register with " + hexOfWord(crc) +
                                            " CRC value. Calculated CRC value = " + hexOfWord(crc) + ".\n\n"));
}

TEST_F(StreamDump, TellsPadsFromAutoCrcWords) {
    use("tq2a4");
    stream.pad();
    stream.noOperation();
    stream.write(reg::kFAR, 0);
    stream.burst(reg::kFDRI, Bytes(8, 1), false);
    const u32 crc = stream.crc();
    stream.noOperation(); // still behind the burst
    stream.pad();         // an Auto CRC word, of a wrong value
    stream.pad();         // a pad again
    const std::string text = dump(1);
    expectLines(text, {"Write of PAD word 0x00000000.\n\nWrite of NOP command word 0x20000000.\n\n",
                          "Write of FDRI (Frame Data Input) register with 2 words of data.\n\n"
                          "Write of 2 words of CLB data.\n\n\n"
                          "Write of NOP command word 0x20000000.\n\n"
                          "Write of Auto CRC word 0x00000000. Calculated CRC value = " +
                              hexOfWord(crc) + ".\n\nWrite of PAD word 0x00000000.\n\n"});
}

TEST_F(StreamDump, AnAutoCrcWordIsAsLongAsASyncWord) {
    use("td6a24");
    stream.write(reg::kFAR, 0, 2);
    stream.burst(reg::kFDRI, Bytes(2080, 1));
    const u32 crc = stream.crc();
    stream.autoCrc();
    stream.noOperation();
    EXPECT_THAT(dump(1), ::testing::EndsWith("Write of Auto CRC word " + hexOfWord(crc) + ". Calculated CRC value = " +
                                             hexOfWord(crc) + ".\n\nWrite of NOP command word 0x00002000.\n\n"));
}

TEST_F(StreamDump, BypassedCrcsAreTheConstantOfTheFamily) {
    for (const auto& [device, value] : {std::pair{"tq2a4", "0x0000DEFC"}, {"td3c4", "0x0000DEFC"},
             {"tq5a4", "0x0000DEFC"}, {"tq7a7", "0x0000DEFC"}, {"td3a16", "0x9876DEFC"}, {"td6a24", "0x9876DEFC"}}) {
        use(device);
        const TarselFamilyType* family = device_->family;
        stream.write(reg::kCOR, 1U << family->corFields[family->corCrcBypassIndex].shift);
        stream.crcRegister();
        EXPECT_THAT(dump(), ::testing::EndsWith(std::string("Calculated CRC value = ") + value + ".\n\n")) << device;
    }
}

TEST_F(StreamDump, EncryptedStreamsAreDumped) {
    stream.write(reg::kCTL, 1U << 6);
    stream.write(reg::kMASK, 1);
    EXPECT_THAT(dump(), ::testing::EndsWith(" control mask value.\n\n"));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(StreamDump, MultiFrameWritesAreDumpedAsHex) {
    stream.burst(reg::kMFWR, Bytes(8, 0x41), false);
    EXPECT_EQ(dump(), "Write of MFWR (Multiple Frame Write) register with 2 words of sync data.\n\n"
                      " 00000000:   41 41 41 41 41 41 41 41" +
                          std::string(24 * 3 + 3, ' ') + "AAAAAAAA\n\n");
}

TEST_F(StreamDump, TheLongCountIsTheOneBehindAShortCountOfZero) {
    stream.write(reg::kFAR, 0);
    stream.burst(reg::kFDRI, Bytes(12), true);
    EXPECT_THAT(dump(1), ::testing::HasSubstr("Write of FDRI (Frame Data Input) register with 3 words of data.\n"));
    use("tq7a7");
    stream.write(reg::kFAR, 0);
    packet(2, 2, {});
    stream.word(0xF8000002); // only the low 27 bits count, whatever the type
    stream.word(1);
    stream.word(2);
    EXPECT_THAT(dump(1), ::testing::HasSubstr("Write of FDRI (Frame Data Input) register with 2 words of data.\n"));
    EXPECT_EQ(remaining, 0U);
    use("td3a16");
    stream.write(reg::kFAR, 0, 2);
    packet(2, 3, {});
    stream.word(0);
    stream.word(2);
    stream.word(1);
    stream.word(2);
    EXPECT_THAT(dump(1), ::testing::HasSubstr("Write of FDRI (Frame Data Input) register with 2 words of data.\n"));
    EXPECT_EQ(remaining, 0U);
}

TEST_F(StreamDump, WordsAheadOfTheSyncWordAreSilentUnlessTheyAreNoOperations) {
    stream = StreamWriter(device_);
    for (u32 word : {0xFFFFFFFFU, 0xBBU, 0xAA995566U, 0xAA995566U, 0x11220044U, 0x20000000U, 0xAA995566U})
        stream.word(word); // the two behind 0xBB are no sync words
    stream.write(reg::kMASK, 1);
    EXPECT_EQ(dump(), "Write of NOP command word 0x20000000.\n\n"
                      "Write of MASK (Control Mask) register with 0x00000001 control mask value.\n\n");
}

// What stands in the frames.

TEST_F(StreamDump, ClbDataIsHexOf32BytesALineWhereTheOffsetIsKnown) {
    use("tq2a4");
    stream.write(reg::kFAR, 0);
    stream.burst(reg::kFDRI, Bytes(64, 0x30), false);
    expectLines(dump(), {"Write of FDRI (Frame Data Input) register with 16 words of data.\n\n"
                         "Write of 16 words of CLB data.\n\n"
                         " 00000000:   30 30 30",
                            "\n 00000020:   30 30"});
    EXPECT_THAT(dump(1), ::testing::EndsWith("\nWrite of 16 words of CLB data.\n\n\n"));
    use("tq2p360"); // no offset: a line a frame, of 1224 bytes here
    stream.write(reg::kFAR, 0);
    stream.burst(reg::kFDRI, Bytes(2448, 0x30), false);
    expectLines(dump(), {" 00000000:   30", "\n 000004C8:   30"});
}

TEST_F(StreamDump, MemoriesOfADesignAreNamed) {
    const BitRecipe recipe{.device = "td3c4"};
    use("td3c4");
    PlacedMap map("td3c4");
    map.add({&device_->memoryLocs[1], 0, 1}, 9, "top/ram0");
    const std::string text = dumpOf(makeBit(recipe).stream, 1, map.get());
    EXPECT_EQ(status, 0);
    expectLines(
        text, {"\nWrite of 4033 words of CLB data.\n\n\nWrite of 2812 words of BRAM data.\n\n",
                  "BRAM data, Column 00, Row 03. Not used in this design.\n\n 00000000:   ",
                  "\nBRAM parity.\n\n 00000000:   ", "\n\n\nBRAM data, Column 00, Row 02. Not used in this design.\n\n",
                  "BRAM data, Column 00, Row 01. Design instance \"top/ram0\".\n\n",
                  "BRAM data, Column 00, Row 00. Not used in this design.\n\n",
                  "\n\n\nWrite of 37 words of CLB data.\n\n\nWrite of Auto CRC word "});
    const std::string used = dumpOf(makeBit(recipe).stream, 1 | 0x10, map.get());
    EXPECT_EQ(used.find("Not used in this design"), used.npos);
    expectLines(used, {"BRAM data, Column 00, Row 01. Design instance \"top/ram0\".\n\n"});
}

TEST_F(StreamDump, RawMemoriesAreFramesOfColumns) {
    const BitRecipe recipe{.device = "td3c4"};
    use("td3c4");
    const MadeBit made = makeBit(recipe);
    const std::string text = dumpOf(made.stream, 2 | 1);
    // A column counts 10 bytes of pad bits too.
    expectLines(text, {"\nWrite of 4033 words of CLB data.\n\n\nWrite of 2814 words of BRAM data starting at frame "
                       "offset 109.\n\nData for BRAM column 0.\n\n 00000000:   ",
                          "\n 00000094:   ", "\nWrite of 34 words of CLB data.\n\n\n"});
    use("tq1a8");
    const std::string first = dumpOf(makeBit({.device = "tq1a8"}).stream, 2 | 1);
    expectLines(first, {"\nWrite of 780 words of BRAM data starting at frame offset 0.\n\nData for BRAM column 0.\n\n",
                           "\nData for BRAM column 1.\n\n"});
    EXPECT_EQ(first.find("BRAM data, Column"), first.npos);
}

TEST_F(StreamDump, RawMemoriesOfAStackAreThoseOfTheirDie) {
    use("tq7c118");
    StreamWalk walk{nullptr, nullptr, nullptr, device_, 0, &remaining, nullptr, 0};
    BramColumns columns;
    for (u32 die = 0; die < 4; ++die) {
        walk.dieIndex = die;
        columnsOfDie(walk, &columns);
        EXPECT_EQ(columns.count, die < 3 ? 33U : 0U);
    }
    walk.dieIndex = 2;
    columnsOfDie(walk, &columns);
    EXPECT_EQ(columns.first, 66U);
}

TEST_F(StreamDump, BlockRamOfADeviceWhoseStreamLeavesColumnsOutFitsItsBurst) {
    for (const char* name : {"tq5d60", "tq6b99", "tq7a7", "td6a24", "tq2a4"}) {
        use(name);
        StreamWalk walk{nullptr, nullptr, nullptr, device_, 0, &remaining, nullptr, 0};
        gLast_frame_address_type = device_->family->clbBlockType;
        BramColumns columns;
        EXPECT_EQ(bramColumns(walk, frameDataBytes(device_), &columns), 0);
        EXPECT_EQ(columns.count, device_->physicalColumns) << name;
        EXPECT_EQ(bramColumns(walk, frameDataBytes(device_) / 2, &columns), 0);
        EXPECT_EQ(columns.count, 0U) << name;
    }
}

TEST_F(StreamDump, SignaturesAreSearchedByteByByte) {
    const u8 signature[] = {1, 1, 2};
    const u8 buffer[] = {1, 1, 1, 2, 1, 1, 2};
    EXPECT_EQ(FindBRAMDataSignature(buffer, 7, signature, 3), buffer + 1);
    EXPECT_EQ(FindBRAMDataSignature(buffer, 3, signature, 3), nullptr);
    EXPECT_EQ(FindBRAMDataSignature(buffer, 2, signature, 3), nullptr);
    EXPECT_EQ(FindBRAMDataSignature(buffer + 4, 3, signature, 3), buffer + 4);
}

TEST_F(StreamDump, TheOffsetBySignatureIsInWholeFrames) {
    Bytes modern(20000);
    const Bytes pattern = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0,
        0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
        0xFF, 0xFF};
    std::ranges::copy(pattern, modern.begin() + 404 * 7 + 30);
    for (const char* name : {"tq7a7", "tp7a18"})
        EXPECT_EQ(GetBRAMDataFrameOffset(get_device_record_by_name(name), modern.data(), modern.size()), 7U);
    EXPECT_EQ(GetBRAMDataFrameOffset(get_device_record_by_name("tq7a7"), modern.data(), 404 * 7 + 69), 0U);
    Bytes short6(20000, 1);
    Bytes signature(18);
    for (int i = 0; i < 4; ++i)
        signature.insert(signature.end(), {0x3F, 0xFF, 0xCF, 0xFF, 0xF3, 0xFF, 0xFC, 0xFF, 0xFF});
    ASSERT_EQ(signature.size(), 54U);
    std::ranges::copy(signature, short6.begin() + 130 * 3);
    EXPECT_EQ(GetBRAMDataFrameOffset(get_device_record_by_name("td6a144"), short6.data(), short6.size()), 3U);
    EXPECT_EQ(GetBRAMDataFrameOffset(get_device_record_by_name("tq2a4"), short6.data(), short6.size()), 0U);
    EXPECT_THAT(alerts.text(), ::testing::HasSubstr("'Tarsel-II'"));
}

TEST_F(StreamDump, SpoiltStreamsEndWithAStatus) {
    std::mt19937 random(6);
    for (const char* name : {"tq1a8", "tq2a4", "td3a16", "td6a24"}) {
        use(name);
        const MadeBit made = makeBit({.device = name, .separateBram = true, .clbFrames = 1});
        PlacedMap map(name);
        map.addOfEveryKind(2);
        std::vector<size_t> controlBytes; // outside of the data of bursts
        for (const StreamPiece& piece : takeApart(made.device, made.stream))
            for (size_t at = 0; at < piece.size; ++at)
                if (!piece.isBurst() || piece.offset + at < piece.dataOffset) controlBytes.push_back(piece.offset + at);
        for (int i = 0; i < 30; ++i) {
            Bytes bytes = made.stream;
            bytes[controlBytes[random() % controlBytes.size()]] = static_cast<u8>(random());
            bytes.resize(i % 2 == 0 ? bytes.size() : random() % bytes.size());
            dumpOf(bytes, 0x11 | (random() & 0x42), map.get());
            EXPECT_TRUE(status == 0 || status == 2 || status == 4) << status;
        }
    }
}

// Every register of every family, written and read: the text is kept in a file each.

namespace {

GoldenResult dumpRegisters(const GoldenFile& golden, const std::filesystem::path&) {
    const std::string name = golden.options.substr(0, golden.options.find('\n'));
    TarselDeviceType* device = get_device_record_by_name(name.c_str());
    if (device == nullptr) return {1, "no device " + name};
    StreamWriter stream(device);
    stream.sync();
    for (u32 address = 0; address < 72; ++address) {
        const u32 kind = device->family->registerKinds[address];
        const bool ends = kind == reg::kLOUT || kind == reg::kBOUT;
        const bool bursts = kind == reg::kFDRI || kind == reg::kMFWR;
        const bool silent = kind == reg::kFDRO || kind == reg::kSTAT;
        constexpr u32 kUNHANDLED[] = {13, 14, 15, 16, 19, 21, 24, 26, 27, 31, 32, 33, 34, 35, 36, 47, 64, 255};
        if (std::ranges::find(kUNHANDLED, kind) != std::end(kUNHANDLED)) continue;
        if (address != 0 && kind == 0 && device->family->registerNames[address] == nullptr) continue;
        stream.word(stream.form().command(1, address, 1));
        if (bursts || silent) continue;
        stream.word(stream.form().command(2, address, 1));
        stream.word(kind == reg::kCMD ? 5 : 0x00001234 + address);
        if (ends) stream.sync();
    }
    for (u32 value = 0; value < 20; ++value) {
        stream.cmd(value);
        if (value == 13 || value == 14) stream.sync();
    }
    Bytes bytes = stream.bytes();
    fileIODescriptor* input = nullptr;
    fileIODescriptor* output = nullptr;
    OpenMemoryFile("s", kREAD_ACCESS | kBINARY_FILE, reinterpret_cast<char*>(bytes.data()), bytes.size(), &input);
    OpenMemoryFile("d", kTEXT_WRITE, nullptr, 0, &output);
    u32 remaining = static_cast<u32>(bytes.size());
    const int status = OutputBITData(input, nullptr, output, device, 0, &remaining, nullptr);
    std::string text(GetFileStorageBase(output), GetFileLogicalSize(output));
    Close_File(&input);
    Close_File(&output);
    return {status, text};
}

class RegisterDumps : public ::testing::TestWithParam<std::filesystem::path> {};

} // namespace

TEST_P(RegisterDumps, AreAsKept) {
    const SystemResources system;
    EXPECT_EQ(checkGolden(GetParam(), dumpRegisters), "");
}

INSTANTIATE_TEST_SUITE_P(Families, RegisterDumps,
    ::testing::ValuesIn(goldenFiles("lanefillutil/common/BitFileUtils/registers")),
    [](const auto& golden) { return goldenName(golden.param); });

// bit_commands_test.cpp - dumps of bit files, their progress, and streams as images.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "FileUtils/FileUtils.h"
#include "bit_file_test.h"
#include "support/allocation_faults.h"
#include "support/bit_maker.h"
#include "support/placed_map.h"

#include <gmock/gmock.h>

using namespace memdata;
using namespace memdata::testing;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

std::vector<int> gPercents;
std::string gMessage;
constexpr int kNEVER = -1;
int gAbortAtCall = kNEVER;

int noteProgress(int percent, const char* message, void (*abort)(unsigned int)) {
    gPercents.push_back(percent);
    gMessage = message;
    if (static_cast<int>(gPercents.size()) == gAbortAtCall) abort(0);
    return 0;
}

class BitCommands : public ::testing::Test {
protected:
    BitCommands() {
        gPercents.clear();
        gAbortAtCall = kNEVER;
    }
    int dump(const Bytes& file, u32 flags, AddressMappingType* map = nullptr) {
        fileSpecType* input = CreateFileSpec(folder.write("top.bit", textOf(file)).c_str());
        fileSpecType* output = CreateFileSpec(folder.file("out").c_str());
        const int status = DoBITDump(input, output, flags, map, nullptr);
        DeleteFileSpec(&input);
        DeleteFileSpec(&output);
        return status;
    }
    std::string dumped(const char* name = "out.dmp") const { return readFile(folder.file(name)); }

    // A stream of one line in a dump.
    static Bytes shortStream() {
        StreamWriter stream(get_device_record_by_name("tq2a4"));
        stream.sync();
        stream.write(reg::kMASK, 1);
        return stream.take();
    }
    static constexpr const char* kSHORT_DUMP =
        "Write of MASK (Control Mask) register with 0x00000001 control mask value.\n\n";

    SystemResources system;
    TemporaryFolder folder;
    CapturedAlerts alerts;
};

} // namespace

TEST_F(BitCommands, ADumpWithoutHeadersIsTheStreamAlone) {
    EXPECT_EQ(dump(t4kBitFile({.partName = "tq2a4"}, shortStream()), 0x20), 0);
    EXPECT_EQ(dumped(), kSHORT_DUMP);
}

TEST_F(BitCommands, ADumpBeginsWithTheVersionAndTheFilesHeader) {
    EXPECT_EQ(dump(t4kBitFile({.partName = "tq2a4"}, shortStream()), 0), 0);
    const std::string text = dumped();
    const size_t title = text.find("\n\nLanefill BIT file dump.\n");
    ASSERT_NE(title, text.npos) << text;
    std::string expected = "\n\nLanefill BIT file dump.\n\nOmbrel BIT Bitstream\nFile:        \t";
    expected += folder.file("top.bit");
    expected += "\nDesign name: \ttop.ncd;UserID=0xFFFFFFFF\nPart:        \ttq2a4\n"
                "Date:        \t2010/07/10 12:52:21\nBits:        \t96\n\n";
    expected += kSHORT_DUMP;
    EXPECT_EQ(text.substr(title), expected);
}

TEST_F(BitCommands, ADumpWithoutAFileGoesToStandardOutputWhichStaysOpen) {
    fileSpecType* input =
        CreateFileSpec(folder.write("top.bit", textOf(t4kBitFile({.partName = "tq2a4"}, shortStream()))).c_str());
    EXPECT_EQ(DoBITDump(input, nullptr, 0x20, nullptr, nullptr), 0);
    EXPECT_EQ(DoBITDump(input, nullptr, 0x20, nullptr, nullptr), 0);
    DeleteFileSpec(&input);
    std::string twice = kSHORT_DUMP;
    twice += kSHORT_DUMP;
    EXPECT_EQ(alerts.take(), twice);
    EXPECT_EQ(folder.listing(), "top.bit\n");
}

TEST_F(BitCommands, ADumpThatFailsLeavesNoFile) {
    Bytes stream = shortStream();
    stream.resize(stream.size() - 2);
    EXPECT_EQ(dump(t4kBitFile({.partName = "tq2a4"}, stream), 0x20), 2);
    EXPECT_EQ(folder.listing(), "top.bit\n");
}

TEST_F(BitCommands, TheHeaderRecordIsClearedInTheEnd) {
    BitFileHeaderType header{};
    fileSpecType* input =
        CreateFileSpec(folder.write("top.bit", textOf(t4kBitFile({.partName = "tq2a4"}, shortStream()))).c_str());
    EXPECT_EQ(DoBITDump(input, nullptr, 0x20, nullptr, &header), 0);
    EXPECT_EQ(header.partName.text, nullptr);
    EXPECT_EQ(DoBITReplacement(input, nullptr, 0, nullptr, &header, nullptr), 0);
    EXPECT_EQ(header.designName.text, nullptr);
    DeleteFileSpec(&input);
}

TEST_F(BitCommands, ARunOfFiftyBytesCallsBackForEveryByte) {
    SetupUpdateProgress(50, noteProgress);
    for (int i = 0; i < 50; ++i) EXPECT_EQ(UpdateProgress(1), 0);
    ASSERT_EQ(gPercents.size(), 50U);
    EXPECT_EQ(gPercents[0], 2);
    EXPECT_EQ(gPercents[1], 4);
    EXPECT_EQ(gPercents[49], 100);
    EXPECT_EQ(gMessage, "Processing BIT image...");
}

TEST_F(BitCommands, ARunOfAHundredBytesOrMoreIsSilent) {
    SetupUpdateProgress(100, noteProgress);
    for (int i = 0; i < 300; ++i) EXPECT_EQ(UpdateProgress(1), 0);
    EXPECT_TRUE(gPercents.empty());
}

TEST_F(BitCommands, AReplacementInPlaceCountsEachByteTwice) {
    Bytes image = shortStream();
    ASSERT_EQ(image.size(), 12U);
    EXPECT_EQ(
        DoInplaceBITReplacement(get_device_record_by_name("tq2a4"), image.data(), image.size(), nullptr, noteProgress),
        0);
    EXPECT_FALSE(gPercents.empty());
    EXPECT_EQ(gPercents.back(), 100);
    EXPECT_TRUE(std::ranges::is_sorted(gPercents));
    EXPECT_EQ(image, shortStream());
}

TEST_F(BitCommands, AnAbortStopsAtTheNextByte) {
    Bytes image = shortStream();
    gAbortAtCall = 3;
    EXPECT_EQ(
        DoInplaceBITReplacement(get_device_record_by_name("tq2a4"), image.data(), image.size(), nullptr, noteProgress),
        15);
    EXPECT_EQ(gPercents.size(), 3U);
    EXPECT_EQ(alerts.text(), "");
    // The next run begins afresh.
    gAbortAtCall = kNEVER;
    EXPECT_EQ(
        DoInplaceBITReplacement(get_device_record_by_name("tq2a4"), image.data(), image.size(), nullptr, noteProgress),
        0);
}

TEST_F(BitCommands, AnImageWithoutSyncWordsKeepsItsFramesAndCrcs) {
    for (const char* device : {"tq2a4", "td3a16", "td6a24"}) {
        const MadeBit made = makeBit({.device = device});
        Bytes expected;
        bool inside = false;
        for (const StreamPiece& piece : takeApart(made.device, made.stream)) {
            const bool ends = piece.kind == StreamPiece::PACKET && piece.registerKind == reg::kCMD &&
                              piece.value == command::kDESYNCH;
            if (inside && !ends)
                expected.insert(expected.end(), made.stream.begin() + static_cast<std::ptrdiff_t>(piece.offset),
                    made.stream.begin() + static_cast<std::ptrdiff_t>(piece.offset + piece.size));
            if (piece.kind == StreamPiece::SYNC) inside = true;
            if (ends) inside = false;
        }
        fileSpecType* spec =
            CreateFileSpec(folder.write("a.bit", textOf(bitFileOf({.device = device}, made.stream))).c_str());
        u32 length = 0;
        TarselDeviceType* found = nullptr;
        BitFileHeaderType header{};
        fileIODescriptor* image = nullptr;
        ASSERT_EQ(OpenBITFileData(spec, 0x80, &length, &found, &header, &image), 0);
        EXPECT_TRUE(Bytes(header.dataPointer, header.dataPointer + length) == expected) << device;
        EXPECT_EQ(header.dataLength, length);
        Close_File(&image);
        releaseMemory(header.dataPointer);
        DeleteBITHeader(&header);
        DeleteFileSpec(&spec);
    }
}

TEST_F(BitCommands, FailingAllocationsOfADumpLeaveNoFile) {
    const BitRecipe recipe{.device = "tq1a8", .separateBram = true, .clbFrames = 1};
    const std::string name = folder.write("top.bit", textOf(bitFileOf(recipe, makeBit(recipe).stream)));
    PlacedMap map("tq1a8");
    map.addOfEveryKind(1);
    map.fill(1);
    u32 incomplete = 0;
    std::string whole;
    const FaultSweep sweep = sweepAllocationFaults([&] {
        fileSpecType* input = CreateFileSpec(name.c_str());
        fileSpecType* output = CreateFileSpec(folder.file("out.dmp").c_str());
        const int status =
            input == nullptr || output == nullptr ? 7 : DoBITDump(input, output, 0x21, map.get(), nullptr);
        DeleteFileSpec(&input);
        DeleteFileSpec(&output);
        if (!std::filesystem::exists(folder.file("out.dmp"))) return status;
        EXPECT_EQ(status, 0);
        const std::string text = dumped("out.dmp");
        std::filesystem::remove(folder.file("out.dmp"));
        if (whole.empty()) whole = text;
        if (text == whole) return status;
        // Without memory for a column's images its lines are left out, and the dump goes on.
        ++incomplete;
        return 7;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 20U);
    EXPECT_LE(incomplete, 2U);
}

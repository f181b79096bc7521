// replacement_errors_test.cpp - bit files that are cut, spoilt, refused or given up while they are replaced.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "FileUtils/FileUtils.h"
#include "FileUtils/copied_output.h"
#include "FileUtils/state.h"
#include "bit_file_test.h"
#include "support/allocation_faults.h"
#include "support/placed_map.h"

#include <optional>
#include <set>

using namespace memdata;
using namespace memdata::testing;

namespace {

constexpr const char* kOLD = "what stood there";

class BadReplacement : public ::testing::Test {
protected:
    BadReplacement() {
        SetDefaultFileAttributes(kOVERWRITING_ALLOWED, true);
        SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    }
    // Replaces in a file with these bytes, over an older output. Checks that a failure keeps that one and leaves
    // nothing else, and that the input stays as it was.
    int replace(const Bytes& file, AddressMappingType* map, u32 flags = 0, ProgressCallbackType progress = nullptr) {
        fileSpecType* input = CreateFileSpec(folder.write("top.bit", textOf(file)).c_str());
        fileSpecType* output = CreateFileSpec(folder.write("out.bit", kOLD).c_str());
        std::optional<CopiedOutput> copy;
        if (copiesAhead) copy.emplace(input, output);
        const int status = DoBITReplacement(input, output, flags, map, nullptr, progress);
        copy.reset();
        DeleteFileSpec(&input);
        DeleteFileSpec(&output);
        EXPECT_EQ(folder.listing(), "out.bit\ntop.bit\n");
        EXPECT_TRUE(readFile(folder.file("top.bit")) == textOf(file));
        result = readFile(folder.file("out.bit"));
        EXPECT_EQ(result == kOLD, status != 0) << "status " << status;
        return status;
    }
    // Alerts in one line, without the folder's name.
    std::string said() {
        std::string text = alerts.take();
        const std::string path = folder.path().string() + "/";
        for (size_t at = text.find(path); at != std::string::npos; at = text.find(path)) text.erase(at, path.size());
        std::string joined;
        for (char c : text) {
            if (c == '\n') c = ' ';
            if (c != ' ' || (!joined.empty() && joined.back() != ' ')) joined += c;
        }
        while (!joined.empty() && joined.back() == ' ') joined.pop_back();
        return joined;
    }

    SystemResources system;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    std::string result;
    bool copiesAhead = false; // the output
};

const char* const kSMALL_DEVICES[] = {"tq1a8", "tq2a4", "td3a16", "td6a24"};

// Streams that are small enough to be cut hundreds of times.
BitRecipe smallRecipe(const char* device) {
    return {.device = device, .separateBram = true, .readRegisters = true, .clbFrames = 1};
}

u32 gProgressCalls = 0;

int abortAtOnce(int, const char*, void (*abort)(unsigned int)) {
    ++gProgressCalls;
    abort(0);
    return 0;
}

} // namespace

TEST_F(BadReplacement, AStreamCutBetweenItsPacketsIsReplacedAsFarAsItGoes) {
    for (const char* device : {"tq2a4", "td3a16"}) {
        const BitRecipe recipe = smallRecipe(device);
        const MadeBit made = makeBit(recipe);
        PlacedMap map(device);
        map.addOfEveryKind(2);
        map.fill(1);
        for (const StreamPiece& piece : takeApart(made.device, made.stream)) {
            // The header goes with the cut: all packets there are are whole.
            EXPECT_EQ(replace(bitFileOf(recipe, cut_at(made.stream, piece.offset)), map.get()), 0)
                << device << " " << piece.offset;
            alerts.take(); // lanes whose frames are cut off are named
        }
    }
}

TEST_F(BadReplacement, AStreamCutInAPacketIsRefused) {
    for (const char* device : {"tq1a8", "td6a24"}) {
        const BitRecipe recipe = smallRecipe(device);
        const MadeBit made = makeBit(recipe);
        PlacedMap map(device);
        map.addOfEveryKind(2);
        map.fill(1);
        const PacketForm form(made.device->family);
        for (const StreamPiece& piece : takeApart(made.device, made.stream)) {
            if (piece.kind != StreamPiece::PACKET || piece.size == form.wordBytes) continue;
            for (const size_t cut : {size_t{form.wordBytes}, piece.size - form.wordBytes, piece.size - 1}) {
                EXPECT_EQ(replace(bitFileOf(recipe, cut_at(made.stream, piece.offset + cut)), map.get()), 2)
                    << device << " " << piece.offset << " " << cut;
                EXPECT_THAT(said(), ::testing::HasSubstr("The configuration stream of file 'top.bit' is cut: at "));
            }
        }
    }
}

TEST_F(BadReplacement, AStreamOfAnyFamilyCutAnywhereIsReplacedOrRefused) {
    std::mt19937 random(6);
    for (const char* device : {"tq1a8", "tq1e8", "td2a4", "td2e8", "tq2a4", "tq2p8", "tq4a32", "tq5a4", "tq6a10",
             "tq7a5", "tp7a11", "td3c4", "td3e4", "td3a4", "td6a24"}) {
        const BitRecipe recipe = smallRecipe(device);
        const MadeBit made = makeBit(recipe);
        PlacedMap map(device);
        map.addOfEveryKind(2);
        map.fill(1);
        const u32 wordBytes = PacketForm(made.device->family).wordBytes;
        const u32 share = made.stream.size() > 50'000 ? 20 : made.stream.size() > 10'000 ? 5 : 1; // of the packets
        for (const StreamPiece& piece : takeApart(made.device, made.stream)) {
            if (random() % share != 0) continue;
            // Behind the first word of a packet its other words are missed; less than that is a rest that is copied.
            const size_t cut = random() % piece.size;
            const bool isMissed = cut >= wordBytes && (piece.kind == StreamPiece::PACKET || piece.isCrc());
            EXPECT_EQ(replace(bitFileOf(recipe, cut_at(made.stream, piece.offset + cut)), map.get()), isMissed ? 2 : 0)
                << device << " " << piece.offset << " " << cut;
            const std::string text = said();
            EXPECT_EQ(text.starts_with("ERROR:"), isMissed) << text;
        }
    }
}

TEST_F(BadReplacement, AFileThatIsShorterThanItsHeaderSaysIsRefused) {
    std::mt19937 random(4);
    for (const char* device : kSMALL_DEVICES) {
        const BitRecipe recipe = smallRecipe(device);
        const Bytes file = bitFileOf(recipe, makeBit(recipe).stream);
        for (int i = 0; i < 20; ++i) {
            EXPECT_EQ(replace(cut_at(file, random() % file.size()), nullptr), 2) << device;
            EXPECT_THAT(said(), ::testing::HasSubstr("'top.bit'"));
        }
    }
}

TEST_F(BadReplacement, AStreamThatIsCutEndsAlikeInAFileThatIsCopiedAhead) {
    gFileState.smallestCopy = 0;
    gFileState.copiesOnOneProcessor = true;
    for (const char* device : {"tq7a7", "td3a16"}) {
        const BitRecipe recipe{.device = device};
        const Bytes stream = makeBit(recipe).stream;
        PlacedMap map(device);
        map.addOfEveryKind(18);
        map.fill(3);
        for (u64 i = 1; i <= 10; ++i) {
            Bytes part = bitFileOf(recipe, cut_at(stream, stream.size() * i / 10 - i));
            part.resize(part.size() + 1'100'000); // with what follows the stream: always mapped
            copiesAhead = false;
            const int status = replace(part, map.get());
            const std::string expected = said();
            const std::string expectedResult = result;
            copiesAhead = true;
            EXPECT_EQ(replace(part, map.get()), status);
            EXPECT_EQ(said(), expected) << device << " " << i;
            EXPECT_TRUE(result == expectedResult) << device << " " << i;
        }
    }
}

TEST_F(BadReplacement, SaysWhereAStreamIsCut) {
    StreamWriter stream(get_device_record_by_name("tq2a4"));
    stream.sync();
    stream.word(stream.form().command(2, 2, 0));
    stream.word(0x50000000 | 3);
    stream.word(1);
    EXPECT_EQ(replace(t4kBitFile({.partName = "tq2a4"}, stream.bytes()), nullptr), 2);
    EXPECT_EQ(said(), "ERROR:Lanefill:86 - The configuration stream of file 'top.bit' is cut: at 12 bytes into it, a "
                      "packet needs 12 bytes and 4 are left. Please make the file again, or fetch it again.");
}

TEST_F(BadReplacement, SpoiltStreamsEndWithAStatus) {
    std::mt19937 random(5);
    std::set<int> statuses;
    for (const char* device : kSMALL_DEVICES) {
        const BitRecipe recipe = smallRecipe(device);
        const MadeBit made = makeBit(recipe);
        PlacedMap map(device);
        map.addOfEveryKind(2);
        map.fill(1);
        std::vector<size_t> controlBytes; // outside of the data of bursts
        for (const StreamPiece& piece : takeApart(made.device, made.stream))
            for (size_t at = 0; at < piece.size; ++at)
                if (!piece.isBurst() || piece.offset + at < piece.dataOffset) controlBytes.push_back(piece.offset + at);
        for (int i = 0; i < 300; ++i) {
            Bytes stream = made.stream;
            for (int n = 0; n < 2; ++n)
                stream[controlBytes[random() % controlBytes.size()]] = static_cast<u8>(random());
            const int status = DoInplaceBITReplacement(map.device(), stream.data(), stream.size(), map.get(), nullptr);
            EXPECT_TRUE(status == 0 || status == 2 || status == 3 || status == 4) << status << said();
            statuses.insert(status);
        }
    }
    EXPECT_EQ(statuses, (std::set<int>{0, 2, 3, 4}));
    alerts.take();
}

TEST_F(BadReplacement, EncryptedStreamsAreRefused) {
    for (const char* device : {"tq1a8", "tq2a4", "tq4a32", "tq7a7", "td3c4", "td3a16", "td6a24"}) {
        const BitRecipe recipe{.device = device, .separateBram = true, .encrypted = true, .clbFrames = 1};
        EXPECT_EQ(replace(bitFileOf(recipe, makeBit(recipe).stream), nullptr), 3) << device;
        EXPECT_EQ(said(), "ERROR:Lanefill:114 - Currently Encrypted bit files are not supported by Lanefill during bit "
                          "stream replacement. Instead, use the same -bd option used on the Lanefill command line on "
                          "the Bitforge command line when making the Encrypted bit file. This will replace the same "
                          "BRAM contents, but instead during the bit file creation process.");
    }
}

TEST_F(BadReplacement, CompressedStreamsAreRefusedUnlessAFlagLetsThemThrough) {
    for (const char* device : {"tq1a8", "tq2a4", "tq4a32", "td3c4", "td3a16", "td6a24"})
        for (const bool shortCounts : {false, true}) {
            const BitRecipe recipe{
                .device = device, .separateBram = true, .shortCounts = shortCounts, .compressed = true, .clbFrames = 1};
            const Bytes file = bitFileOf(recipe, makeBit(recipe).stream);
            EXPECT_EQ(replace(file, nullptr), 3) << device;
            EXPECT_EQ(said(),
                "ERROR:Lanefill:114 - Currently Compressed bit files are not supported by Lanefill during "
                "bit stream replacement. Instead, use the same -bd option used on the Lanefill command "
                "line on the Bitforge command line when making the Compressed bit file. This will "
                "replace the same BRAM contents, but instead during the bit file creation process.");
            EXPECT_EQ(replace(file, nullptr, 0x100), 0) << device;
            EXPECT_TRUE(result == textOf(file)) << device;
        }
}

TEST_F(BadReplacement, ADeviceWhoseOffsetIsNotKnownIsRefused) {
    const BitRecipe recipe{.device = "tq2p360", .clbFrames = 10};
    PlacedMap map("tq2p360");
    EXPECT_EQ(replace(bitFileOf(recipe, makeBit(recipe).stream), map.get()), 3);
    EXPECT_EQ(said(),
        "ERROR:Lanefill:109 - Bit file replacement of BRAMs for this device is not yet supported. Support "
        "will be added in a later VEK release.");
}

TEST_F(BadReplacement, RegistersWithoutHandlerEndTheRun) {
    struct Unknown {
        const char* device;
        u32 address;
        const char* text;
    };
    for (const Unknown& c : {Unknown{"tq1a8", 72, "72 from command word value '0x30090001'"},
             {"tq1a8", 0x3FFF, "16383 from command word value '0x37FFE001'"},
             {"tq2a4", 12, "12 from command word value '0x30018001'"},
             {"td3c4", 12, "12 from command word value '0x30018001'"},
             {"tq7a7", 15, "15 from command word value '0x3001E001'"},
             {"td3a16", 2, "2 from command word value '0x00003041'"},
             {"td6a24", 34, "34 from command word value '0x00003441'"}}) {
        StreamWriter stream(get_device_record_by_name(c.device));
        stream.sync();
        stream.noOperation();
        stream.word(stream.form().command(2, c.address, 1));
        stream.word(0);
        const u32 position = stream.form().syncBytes + 2 * stream.form().wordBytes;
        EXPECT_EQ(replace(t4kBitFile({.partName = c.device}, stream.bytes()), nullptr), 4) << c.device;
        EXPECT_EQ(said(), std::string("ERROR:Lanefill:89 - Unrecognized register address ") + c.text +
                              " with accumulated CRC '0x00000000' at " + std::to_string(position) +
                              " bytes into .bit file, 'top.bit'.");
    }
}

TEST_F(BadReplacement, AMapOfAnotherDeviceIsRefused) {
    const BitRecipe recipe{.device = "tq2a4"};
    PlacedMap map("tq2a6");
    EXPECT_EQ(replace(bitFileOf(recipe, makeBit(recipe).stream), map.get()), 4);
    EXPECT_EQ(said(), "ERROR:Lanefill:86 - Bit file 'top.bit' is for device 'tq2a4', but the address map was read for "
                      "device 'tq2a6'. Please name the bit file's device, or none.");
}

TEST_F(BadReplacement, BlockRamThatDoesNotFitTheBurstIsLeftAlone) {
    BitRecipe recipe{.device = "td3c4"};
    const MadeBit made = makeBit(recipe);
    PlacedMap map("td3c4");
    map.addOfEveryKind(4);
    map.fill(2);
    for (const u32 clbFrames : {0U, 1U, 50U, made.device->bramFrameOffset - 2}) {
        recipe.clbFrames = clbFrames; // fewer frames than the row says: offset and columns pass the end
        const Bytes file = bitFileOf(recipe, makeBit(recipe).stream);
        EXPECT_EQ(replace(file, map.get()), 0);
        EXPECT_TRUE(result == textOf(file)) << clbFrames;
        EXPECT_THAT(said(), ::testing::HasSubstr("found no memory in the stream of file 'top.bit'"));
    }
}

TEST_F(BadReplacement, NamesTheLanesWhoseDataFoundNoPlace) {
    const BitRecipe recipe{.device = "tq2a4"};
    PlacedMap map("tq2a4");
    map.addOfEveryKind(2);
    map.fill(2);
    EXPECT_EQ(replace(t4kBitFile({.partName = "tq2a4"}, Bytes(100)), map.get()), 0);
    EXPECT_EQ(said(), "WARNING:Lanefill:86 - The data of 2 bit lanes found no memory in the stream of file 'top.bit': "
                      "m0 m1");
}

TEST_F(BadReplacement, TheOutputMayNotBeTheInput) {
    const BitRecipe recipe{.device = "tq2a4"};
    const Bytes file = bitFileOf(recipe, makeBit(recipe).stream);
    fileSpecType* input = CreateFileSpec(folder.write("top.bit", textOf(file)).c_str());
    fileSpecType* output = CreateFileSpec((folder.path() / "." / "top.bit").c_str());
    EXPECT_NE(DoBITReplacement(input, output, 0, nullptr, nullptr, nullptr), 0);
    EXPECT_NE(said(), "");
    DeleteFileSpec(&input);
    DeleteFileSpec(&output);
    EXPECT_TRUE(readFile(folder.file("top.bit")) == textOf(file));
    EXPECT_EQ(folder.listing(), "top.bit\n");
}

TEST_F(BadReplacement, WithoutAnOutputNameTheInputsGetsASuffix) {
    const BitRecipe recipe{.device = "tq2a4"};
    const Bytes file = bitFileOf(recipe, makeBit(recipe).stream);
    fileSpecType* input = CreateFileSpec(folder.write("top.bit", textOf(file)).c_str());
    EXPECT_EQ(DoBITReplacement(input, nullptr, 0, nullptr, nullptr, nullptr), 0);
    DeleteFileSpec(&input);
    EXPECT_EQ(folder.listing(), "top.bit\ntop_rp.bit\n");
    EXPECT_TRUE(readFile(folder.file("top_rp.bit")) == textOf(file));
}

TEST_F(BadReplacement, AnAbortFromTheCallbackLeavesNoOutput) {
    // Only a run of fewer than a hundred bytes calls back.
    gProgressCalls = 0;
    Bytes stream(8, 0xFF);
    Bytes image = stream;
    EXPECT_EQ(
        DoInplaceBITReplacement(get_device_record_by_name("tq2a4"), image.data(), image.size(), nullptr, abortAtOnce),
        15);
    EXPECT_EQ(gProgressCalls, 1U);
    EXPECT_EQ(replace(fenwickBitFile({.designName = "",
                                         .fenwickUser = "",
                                         .partName = "q2a4",
                                         .dateTime = "",
                                         .stamp = std::string(8, '\0')},
                          stream),
                  nullptr, 0, abortAtOnce),
        15);
}

TEST_F(BadReplacement, FailingAllocationsLeaveNoOutputAndLoseNothing) {
    const BitRecipe recipe{.device = "tq1a8", .separateBram = true, .clbFrames = 1};
    const std::string name = folder.write("top.bit", textOf(bitFileOf(recipe, makeBit(recipe).stream)));
    PlacedMap map("tq1a8");
    map.addOfEveryKind(1);
    map.fill(1);
    const FaultSweep sweep = sweepAllocationFaults([&] {
        fileSpecType* input = CreateFileSpec(name.c_str());
        fileSpecType* output = CreateFileSpec(folder.file("out.bit").c_str());
        const int status =
            input == nullptr || output == nullptr ? 7 : DoBITReplacement(input, output, 0, map.get(), nullptr, nullptr);
        DeleteFileSpec(&input);
        DeleteFileSpec(&output);
        EXPECT_EQ(std::filesystem::exists(folder.file("out.bit")), status == 0) << status;
        std::filesystem::remove(folder.file("out.bit"));
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 20U);
}

TEST_F(BadReplacement, AFileThatIsCopiedAheadLeavesNothingWhenItIsGivenUp) {
    const BitRecipe recipe = smallRecipe("td6a24");
    const MadeBit made = makeBit(recipe);
    PlacedMap map("td6a24");
    map.addOfEveryKind(2);
    map.fill(1);
    Bytes large = bitFileOf(recipe, cut_at(made.stream, made.stream.size() / 2 + 1)); // in a burst
    large.resize(2'000'000);                                                          // with what follows the stream
    gFileState.smallestCopy = 0;
    gFileState.copiesOnOneProcessor = true;
    const std::string oldOutput = folder.write("out.bit", kOLD);
    fileSpecType* input = CreateFileSpec(folder.write("top.bit", textOf(large)).c_str());
    fileSpecType* output = CreateFileSpec(oldOutput.c_str());
    {
        const CopiedOutput copy(input, output);
        ASSERT_NE(gFileState.copiedOutput, nullptr);
        EXPECT_EQ(DoBITReplacement(input, output, 0, map.get(), nullptr, nullptr), 2);
    }
    EXPECT_THAT(said(), ::testing::HasSubstr("The configuration stream of file 'top.bit' is cut: at "));
    DeleteFileSpec(&input);
    DeleteFileSpec(&output);
    EXPECT_EQ(folder.listing(), "out.bit\ntop.bit\n");
    EXPECT_EQ(readFile(oldOutput), kOLD);
}

TEST_F(BadReplacement, WithoutDeviceOrBytesNothingIsReplacedInPlace) {
    u8 image[4] = {};
    TarselDeviceType* device = get_device_record_by_name("td6a24");
    const char* const kREFUSED =
        "ERROR:Lanefill:86 - A stream cannot be changed in place without its device and bytes.";
    EXPECT_EQ(DoInplaceBITReplacement(nullptr, image, sizeof image, nullptr, nullptr), 3);
    EXPECT_EQ(said(), kREFUSED);
    EXPECT_EQ(DoInplaceBITReplacement(device, nullptr, sizeof image, nullptr, nullptr), 3);
    EXPECT_EQ(said(), kREFUSED);
}

TEST_F(BadReplacement, AStreamOfFourGigabytesIsRefusedInPlace) {
    u8 image[4] = {};
    TarselDeviceType* device = get_device_record_by_name("td6a24");
    EXPECT_EQ(DoInplaceBITReplacement(device, image, u64{1} << 32, nullptr, nullptr), 3);
    EXPECT_EQ(said(), "ERROR:Lanefill:86 - A stream of 4 GiB or more cannot be changed in place.");
}

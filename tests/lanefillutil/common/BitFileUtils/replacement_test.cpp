// replacement_test.cpp - new memory contents in bit files of every family and form.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "BitFileUtils/stream_state.h"
#include "FileUtils/copied_output.h"
#include "FileUtils/state.h"
#include "bit_file_test.h"
#include "support/placed_map.h"

using namespace memdata;
using namespace memdata::testing;

namespace {

struct Case {
    const char* device;
    bool separate = false;
    std::optional<u32> clbFrames = std::nullopt;
};

// A small device of each family, with what its bursts can be like. Devices of the first generation always have a burst
// for each column.
const Case kCASES[] = {{"tq1a8"}, {"tq1e8"}, {"td2a4"}, {"td2e8"}, {"td2e36"}, {"tq2a4"}, {"tq2a4", true}, {"tq2p8"},
    {"tq2p8", true}, {"tq4a32"}, {"tq4a32", true}, {"tq5a4"}, {"tq5a4", true, 1}, {"tq6a10"}, {"tq6a10", true, 1},
    {"tq7a7"}, {"tq7a7", true, 1}, {"tp7a11", true, 1}, {"td3c4"}, {"td3c4", true}, {"td3e4"}, {"td3a16"},
    {"td3a16", true}, {"td6a24"}, {"td6a24", true}, {"tq2p360", true, 0}}; // no offset: its first burst is block RAM

BitRecipe recipeOf(const Case& c) {
    return {.device = c.device, .separateBram = c.separate, .clbFrames = c.clbFrames};
}

class Replacement : public ::testing::Test {
protected:
    // Replaces in a file of these bytes; the new file, or nothing when there is none.
    std::optional<Bytes> replace(
        const Bytes& file, AddressMappingType* map, u32 flags = 0, const char* inputName = "top.bit") {
        fileSpecType* input = CreateFileSpec(folder.write(inputName, textOf(file)).c_str());
        std::filesystem::remove(folder.file("out.bit"));
        fileSpecType* output = CreateFileSpec(folder.file("out.bit").c_str());
        status = DoBITReplacement(input, output, flags, map, nullptr, nullptr);
        DeleteFileSpec(&input);
        DeleteFileSpec(&output);
        if (!std::filesystem::exists(folder.file("out.bit"))) return std::nullopt;
        return bytesOf(readFile(folder.file("out.bit")));
    }

    SystemResources system;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    int status = 99;
};

// Of two streams that should be alike: the first place where they are not.
std::string difference(const TarselDeviceType* device, const Bytes& stream, const Bytes& expected) {
    if (stream.size() != expected.size())
        return std::to_string(stream.size()) + " bytes, not " + std::to_string(expected.size());
    const auto [at, other] = std::ranges::mismatch(stream, expected);
    if (at == stream.end()) return "";
    const size_t offset = static_cast<size_t>(at - stream.begin());
    std::string text =
        "first at byte " + std::to_string(offset) + ": " + std::to_string(*at) + ", not " + std::to_string(*other);
    for (const StreamPiece& piece : takeApart(device, expected))
        if (offset >= piece.offset && offset < piece.offset + piece.size)
            text += ", in kind " + std::to_string(piece.kind) + " register " + std::to_string(piece.registerKind) +
                    " data " + std::to_string(offset - piece.dataOffset);
    return text;
}

Bytes streamOf(const Bytes& file, size_t streamBytes) {
    return {file.end() - static_cast<std::ptrdiff_t>(streamBytes), file.end()};
}

} // namespace

TEST_F(Replacement, ChangesTheBitsOfTheLanesAndTheCrcsAndNothingElse) {
    for (const Case& c : kCASES) {
        BitRecipe recipe = recipeOf(c);
        const MadeBit before = makeBit(recipe);
        PlacedMap map(c.device);
        map.addOfEveryKind(18);
        map.fill(11);
        const Bytes file = bitFileOf(recipe, before.stream);
        const std::optional<Bytes> replaced = replace(file, map.get());
        ASSERT_EQ(status, 0) << c.device << alerts.take();
        ASSERT_TRUE(replaced);
        recipe.contents = map.contents();
        const MadeBit expected = makeBit(recipe);
        const Bytes stream = streamOf(*replaced, expected.stream.size());
        EXPECT_EQ(difference(before.device, stream, expected.stream), "") << c.device << " " << c.separate;
        EXPECT_TRUE(*replaced == bitFileOf(recipe, expected.stream)) << c.device;
        EXPECT_NE(stream, before.stream);
        EXPECT_EQ(wrongCrcs(takeApart(before.device, stream)), std::vector<size_t>{}) << c.device;
        EXPECT_EQ(alerts.take(), "") << c.device;
    }
}

TEST_F(Replacement, WithWhatIsThereAlreadyGivesTheSameFile) {
    for (const Case& c : kCASES) {
        PlacedMap map(c.device);
        map.addOfEveryKind(8);
        map.fill(12);
        BitRecipe recipe = recipeOf(c);
        recipe.contents = map.contents();
        const Bytes file = bitFileOf(recipe, makeBit(recipe).stream);
        EXPECT_TRUE(replace(file, map.get()) == file) << c.device << " " << c.separate;
        EXPECT_EQ(status, 0) << alerts.take();
    }
}

TEST_F(Replacement, TakesEveryFormOfAStream) {
    const std::pair<const char*, void (*)(BitRecipe&)> forms[] = {
        {"Fenwick", [](BitRecipe& r) { r.container = BitContainer::FENWICK; }},
        {"short counts", [](BitRecipe& r) { r.shortCounts = true; }},
        {"reads", [](BitRecipe& r) { r.readRegisters = true; }},
        {"bare", [](BitRecipe& r) { r.busWidthWords = r.noOperations = r.pads = false; }},
        {"no CRC at the end", [](BitRecipe& r) { r.closingCrc = false; }},
        {"bypassed", [](BitRecipe& r) { r.crcBypassed = true; }},
        {"no Auto CRC", [](BitRecipe& r) { r.autoCrc = false; }},
    };
    for (const char* device : {"tq1a8", "tq2a4", "tq4a32", "td3c4", "td3a16", "td6a24"})
        for (const auto& [form, change] : forms) {
            BitRecipe recipe{.device = device};
            change(recipe);
            const MadeBit before = makeBit(recipe);
            PlacedMap map(device);
            map.addOfEveryKind(4);
            map.fill(13);
            const std::optional<Bytes> replaced = replace(bitFileOf(recipe, before.stream), map.get());
            ASSERT_EQ(status, 0) << device << " " << form << alerts.take();
            recipe.contents = map.contents();
            const MadeBit expected = makeBit(recipe);
            const Bytes stream = streamOf(*replaced, expected.stream.size());
            EXPECT_EQ(difference(before.device, stream, expected.stream), "") << device << " " << form;
            EXPECT_TRUE(*replaced == bitFileOf(recipe, expected.stream)) << device << " " << form;
            EXPECT_NE(stream, before.stream) << device << " " << form;
        }
}

TEST_F(Replacement, MakesABinaryFileOfAText) {
    BitRecipe recipe{.device = "tq2a4", .container = BitContainer::RBT};
    PlacedMap map("tq2a4");
    map.addOfEveryKind(4);
    map.fill(14);
    const Bytes text = bitFileOf(recipe, makeBit(recipe).stream);
    fileSpecType* input = CreateFileSpec(folder.write("top.rbt", textOf(text)).c_str());
    input->format = 15;
    fileSpecType* output = CreateFileSpec(folder.file("out.bit").c_str());
    EXPECT_EQ(DoBITReplacement(input, output, 0, map.get(), nullptr, nullptr), 0) << alerts.text();
    DeleteFileSpec(&input);
    DeleteFileSpec(&output);
    recipe.contents = map.contents();
    const Bytes expected =
        t4kBitFile({.designName = "top.ncd", .partName = "tq2a4", .date = "Sat Jul 10 2010"}, makeBit(recipe).stream);
    const Bytes file = bytesOf(readFile(folder.file("out.bit")));
    EXPECT_EQ(streamOf(file, makeBit(recipe).stream.size()), makeBit(recipe).stream);
    EXPECT_TRUE(file == expected) << hexText(cut_at(file, 120)) << "\n" << hexText(cut_at(expected, 120));
}

TEST_F(Replacement, OfAStackFindsEachMemoryInItsDie) {
    BitRecipe recipe{.device = "tq7c118", .separateBram = true, .clbFrames = 1};
    const MadeBit before = makeBit(recipe);
    PlacedMap map("tq7c118");
    map.addOfEveryKind(12);
    map.fill(15);
    const std::optional<Bytes> replaced = replace(bitFileOf(recipe, before.stream), map.get());
    ASSERT_EQ(status, 0) << alerts.take();
    recipe.contents = map.contents();
    const MadeBit expected = makeBit(recipe);
    EXPECT_EQ(difference(before.device, streamOf(*replaced, expected.stream.size()), expected.stream), "");
}

TEST_F(Replacement, LeavesSitesWithoutLaneOrDataAsTheyWere) {
    for (const char* device : {"tq1a8", "tq2a4", "td6a24"}) {
        BitRecipe recipe{.device = device};
        PlacedMap map(device);
        map.addOfEveryKind(4);
        std::mt19937 random(3);
        map.fill(random, map.lanes().back().lane); // the other lanes hold nothing
        map.lanes().front().lane->laneState = 0;
        const std::optional<Bytes> replaced = replace(bitFileOf(recipe, makeBit(recipe).stream), map.get());
        EXPECT_EQ(map.contents().size(), 1U);
        recipe.contents = map.contents();
        EXPECT_TRUE(replaced == bitFileOf(recipe, makeBit(recipe).stream)) << device;
    }
}

TEST_F(Replacement, WithoutAMapCopiesTheFileWithItsCrcs) {
    for (const char* device : {"tq1a8", "tq2a4", "tq4a32", "td3a16", "td6a24"}) {
        const BitRecipe recipe{.device = device};
        const MadeBit made = makeBit(recipe);
        const Bytes file = bitFileOf(recipe, made.stream);
        EXPECT_TRUE(replace(file, nullptr) == file) << device;
        // A wrong CRC word is put right.
        for (const StreamPiece& piece : takeApart(made.device, made.stream)) {
            if (!piece.isCrc()) continue;
            const size_t last = (file.size() - made.stream.size() + piece.offset + piece.size) * 8 - 1;
            EXPECT_TRUE(replace(flip_bit(file, last), nullptr) == file) << device << " " << piece.offset;
        }
    }
}

TEST_F(Replacement, AStreamWithoutSyncWordIsCopied) {
    Bytes stream(4001, 0x5A);
    const Bytes file = t4kBitFile({.partName = "tq2a4"}, stream);
    EXPECT_TRUE(replace(file, nullptr) == file);
    EXPECT_EQ(status, 0);
}

TEST_F(Replacement, CopiesWhatFollowsTheStream) {
    const BitRecipe recipe{.device = "tq2a4"};
    Bytes file = bitFileOf(recipe, makeBit(recipe).stream);
    file.insert(file.end(), {1, 2, 3, 4, 5});
    EXPECT_TRUE(replace(file, nullptr) == file);
}

TEST_F(Replacement, InPlaceGivesTheStreamOfTheFile) {
    for (const char* device : {"tq1a8", "tq2a4", "tq4a32", "td3c4", "td3a16", "td6a24"}) {
        BitRecipe recipe{.device = device};
        Bytes image = makeBit(recipe).stream;
        PlacedMap map(device);
        map.addOfEveryKind(6);
        map.fill(16);
        const std::optional<Bytes> replaced = replace(bitFileOf(recipe, image), map.get());
        EXPECT_EQ(DoInplaceBITReplacement(map.device(), image.data(), image.size(), map.get(), nullptr), 0);
        EXPECT_TRUE(image == streamOf(*replaced, image.size())) << device;
        recipe.contents = map.contents();
        EXPECT_TRUE(image == makeBit(recipe).stream) << device;
    }
}

TEST_F(Replacement, InPlaceKeepsWhatWasDoneAheadOfAFailure) {
    BitRecipe recipe{.device = "tq2a4", .compressed = true};
    Bytes image = makeBit(recipe).stream;
    PlacedMap map("tq2a4");
    map.addOfEveryKind(4);
    map.fill(17);
    EXPECT_EQ(DoInplaceBITReplacement(map.device(), image.data(), image.size(), map.get(), nullptr), 3);
    MemoryImages expected = map.contents()[0].second;
    clearLostBits(map.device(), map.lanes()[0].site, expected);
    EXPECT_EQ(memoryOf(map.device(), image, map.lanes()[0].site), expected);
}

TEST_F(Replacement, TwiceInARunGivesTheSame) {
    BitRecipe recipe{.device = "td6a24"};
    const Bytes file = bitFileOf(recipe, makeBit(recipe).stream);
    PlacedMap map("td6a24");
    map.addOfEveryKind(8);
    map.fill(18);
    const std::optional<Bytes> first = replace(file, map.get());
    EXPECT_TRUE(replace(file, map.get()) == first) << "lanes are only read";
    EXPECT_TRUE(replace(*first, map.get()) == first);
}

TEST_F(Replacement, IsTheSameInAFileThatIsCopiedAhead) {
    for (const Case& c : kCASES) {
        for (const u32 flags : {0u, kWALK_DROP_SYNC}) {
            const BitRecipe recipe = recipeOf(c);
            PlacedMap map(c.device);
            map.addOfEveryKind(18);
            map.fill(11);
            Bytes file = bitFileOf(recipe, makeBit(recipe).stream);
            for (u32 i = 0; i < 2'000'000; ++i) file.push_back(static_cast<u8>(i / 255)); // behind the stream
            const std::optional<Bytes> expected = replace(file, map.get(), flags);
            ASSERT_TRUE(expected.has_value()) << c.device;

            gFileState.smallestCopy = 0;
            gFileState.copiesOnOneProcessor = true;
            OwnedFileSpec input(CreateFileSpec(folder.file("top.bit").c_str()));
            OwnedFileSpec output(CreateFileSpec(folder.file("out.bit").c_str()));
            std::filesystem::remove(folder.file("out.bit"));
            const CopiedOutput copy(input.get(), output.get());
            ASSERT_NE(gFileState.copiedOutput, nullptr);
            EXPECT_EQ(DoBITReplacement(input.get(), output.get(), flags, map.get(), nullptr, nullptr), 0) << c.device;
            EXPECT_EQ(gFileState.copiedOutput, nullptr);
            EXPECT_TRUE(bytesOf(readFile(folder.file("out.bit"))) == *expected) << c.device << " " << flags;
        }
    }
}

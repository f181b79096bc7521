// mapped_input_test.cpp - large binary inputs through windows over the file, and pieces where they stand.
// SPDX-License-Identifier: Apache-2.0

#include "file_test.h"
#include "platform/watched_mapping.h"
#include "support/alerts.h"

#include <csignal>
#include <unistd.h>

namespace {

using namespace memdata;
using namespace memdata::testing;

class MappedInput : public FileTest {
protected:
    static std::string numbers(size_t size) {
        std::string contents;
        for (u32 i = 0; contents.size() < size; ++i) contents += std::to_string(i * 2654435761U) + ",";
        contents.resize(size);
        return contents;
    }
    // All pieces that a file gives, one behind the other, and the status at the end.
    static std::string pieces(fileIODescriptor* file, u64 unitBytes, u64 limit, int* status) {
        std::string all;
        const char* bytes = nullptr;
        u64 count = 0;
        while ((*status = inputPiece(file, unitBytes, limit, &bytes, &count)) == 0) {
            EXPECT_GE(count, unitBytes);
            EXPECT_LE(count, limit);
            EXPECT_EQ(count % unitBytes, 0u);
            all.append(bytes, count);
        }
        return all;
    }
};

TEST_F(MappedInput, TakesNoMemoryForTheContents) {
    const std::string name = folder.write("large", numbers(3'500'000));
    const u64 before = getCurrentMemoryUsage();
    fileIODescriptor* file = open(name, kBINARY_READ);
    EXPECT_NE(file->mappedBytes, 0u);
    EXPECT_LT(getCurrentMemoryUsage() - before, 10'000u);
    Close_File(&file);
}

TEST_F(MappedInput, GivesAllBytesInTheirPlaces) {
    const std::string contents = numbers(3'500'001);
    fileIODescriptor* file = open(folder.write("large", contents), kBINARY_READ);
    std::string read(1'500'000, '?');
    EXPECT_EQ(inputByte(file), contents[0]);
    EXPECT_EQ(inputBlock(file, read.data(), read.size()), 0);
    EXPECT_TRUE(read == contents.substr(1, read.size()));
    EXPECT_EQ(GetFilePosition(file), 1'500'001u);
    EXPECT_EQ(GetFileLogicalSize(file), contents.size());
    EXPECT_TRUE(bytesOf(file) == contents.substr(1'500'001));
    EXPECT_EQ(file->status, kEND_OF_CONTENTS);
    Close_File(&file);
}

TEST_F(MappedInput, ABlockThatEndsEarlyHoldsWhatThereIs) {
    const std::string contents = numbers(2'500'000);
    fileIODescriptor* file = open(folder.write("large", contents), kBINARY_READ);
    std::string read(contents.size() + 1, '?');
    EXPECT_EQ(inputBlock(file, read.data(), read.size()), kEND_OF_CONTENTS);
    EXPECT_TRUE(read == contents + "?");
    Close_File(&file);
}

TEST_F(MappedInput, ALineLongerThanAWindowIsGivenWhole) {
    const std::string contents = "a\n" + std::string(3'000'000, 'x') + "\nb\n";
    fileIODescriptor* file = open(folder.write("large", contents), kBINARY_READ);
    EXPECT_TRUE(remainingLines(file) == "[a][" + std::string(3'000'000, 'x') + "][b]");
    Close_File(&file);
}

TEST_F(MappedInput, OfAFileThatIsCutWhileItIsOpenEndsThere) {
    const std::string contents = numbers(3'500'000);
    const std::string name = folder.write("large", contents);
    fileIODescriptor* file = open(name, kBINARY_READ);
    ASSERT_EQ(truncate(name.c_str(), 1'500'000), 0);
    EXPECT_TRUE(bytesOf(file) == contents.substr(0, 1'500'000));
    EXPECT_EQ(file->status, kEND_OF_CONTENTS);
    RegisterSystemToolName("Lanefill");
    const CapturedAlerts alerts;
    EXPECT_EQ(checkInputUnchanged(file), 1);
    Close_File(&file);
}

TEST_F(MappedInput, OfAFileThatIsLeftAloneIsUnchanged) {
    fileIODescriptor* file = open(folder.write("large", numbers(2'500'000)), kBINARY_READ);
    EXPECT_EQ(bytesOf(file).size(), 2'500'000u);
    EXPECT_EQ(checkInputUnchanged(file), 0);
    Close_File(&file);
}

TEST_F(MappedInput, WhosePagesAreLostGivesZerosAndIsRefusedAfterwards) {
    surviveLostPages();
    RegisterSystemToolName("Lanefill");
    const std::string contents = numbers(1'500'000);
    const std::string name = folder.write("large", contents);
    fileIODescriptor* file = open(name, kBINARY_READ);
    ASSERT_NE(file->mappedBytes, 0u);
    ASSERT_EQ(truncate(name.c_str(), 500'000), 0);
    std::string read(1'000'000, '?');
    EXPECT_EQ(inputBlock(file, read.data(), read.size()), 0);
    EXPECT_TRUE(read.substr(0, 500'000) == contents.substr(0, 500'000));
    EXPECT_EQ(read.back(), '\0');
    ASSERT_EQ(truncate(name.c_str(), 1'500'000), 0);
    CapturedAlerts alerts;
    EXPECT_EQ(checkInputUnchanged(file), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - File '" + name +
                                 "' can not be read: it was changed or cut short while it was read.\n\n");
    Close_File(&file);
    std::signal(SIGBUS, SIG_DFL);
}

TEST_F(MappedInput, PiecesAreWholeUnitsAndTogetherTheFile) {
    const std::string contents = numbers(2'500'002);
    const std::string name = folder.write("large", contents);
    for (u64 unitBytes : {1U, 2U, 4U}) {
        for (u64 limit : {u64{4}, u64{999}, u64{300'000}, u64{9'000'000}}) {
            if (limit == 4 && unitBytes != 4) continue; // many pieces, once
            fileIODescriptor* file = open(name, kBINARY_READ);
            EXPECT_EQ(inputByte(file), contents[0]); // units need not begin at multiples of themselves
            int status = 0;
            EXPECT_TRUE(pieces(file, unitBytes, limit, &status) ==
                        contents.substr(1, (contents.size() - 1) / unitBytes * unitBytes));
            EXPECT_EQ(status, kEND_OF_CONTENTS);
            EXPECT_EQ(bytesOf(file), contents.substr(contents.size() - (contents.size() - 1) % unitBytes));
            Close_File(&file);
        }
    }
}

TEST_F(MappedInput, PiecesComeFromFilesInABufferToo) {
    const std::string contents = numbers(350'003);
    fileIODescriptor* file = open(folder.write("small", contents), kBINARY_READ);
    EXPECT_EQ(file->mappedBytes, 0u);
    int status = 0;
    EXPECT_TRUE(pieces(file, 4, 64'000, &status) == contents.substr(0, 350'000));
    EXPECT_EQ(status, kEND_OF_CONTENTS);
    Close_File(&file);
}

TEST_F(MappedInput, PiecesOfAMemoryFileStandInIt) {
    char data[] = "abcdefgh";
    fileIODescriptor* file = nullptr;
    ASSERT_EQ(OpenMemoryFile("m", kBINARY_READ, data, 8, &file), 0);
    const char* bytes = nullptr;
    u64 count = 0;
    EXPECT_EQ(inputPiece(file, 2, 5, &bytes, &count), 0);
    EXPECT_EQ(bytes, data);
    EXPECT_EQ(count, 4u);
    Close_File(&file);
}

TEST_F(MappedInput, PiecesOfATextEndAtItsEndMark) {
    fileIODescriptor* file = open(folder.write("text", "abc\xFFz"), kTEXT_READ);
    int status = 0;
    EXPECT_EQ(pieces(file, 1, 10, &status), "abc");
    EXPECT_EQ(status, kEND_MARK);
    Close_File(&file);
}

TEST_F(MappedInput, AnOutputGivesNoPieces) {
    fileIODescriptor* file = open(folder.file("out"), kBINARY_WRITE);
    const char* bytes = nullptr;
    u64 count = 0;
    EXPECT_EQ(inputPiece(file, 1, 1, &bytes, &count), kNOT_READABLE);
    abandonFile(&file);
}

} // namespace

// writing_test.cpp - bytes, blocks and lines of outputs, and what goes to standard output.
// SPDX-License-Identifier: Apache-2.0

#include "file_test.h"

namespace {

using namespace memdata;
using namespace memdata::testing;

class Writing : public FileTest {
protected:
    // What a file holds after outputLine of the text under the attributes.
    std::string written(const std::string& text, u32 attributes) {
        const std::string name = folder.file("written");
        EXPECT_EQ(write(name, text, attributes), 0);
        return readFile(name);
    }
};

TEST_F(Writing, ANewlineBecomesTheTextEndingOfTheFile) {
    EXPECT_EQ(written("a\nb\n", 0x20), "a\rb\r");
    EXPECT_EQ(written("a\nb\n", 0x21), "a\r\nb\r\n");
    EXPECT_EQ(written("a\nb\n", 0x22), "a\nb\n");
}

TEST_F(Writing, ANewlineIsNothingInABinaryFile) {
    EXPECT_EQ(written("a\nb\n", 0x23), "ab");
    EXPECT_EQ(written("a\nb\n", 0x2F), "ab");
}

TEST_F(Writing, ANewlineIsABlankOnRequest) {
    EXPECT_EQ(written("a\nb\n", 0x200022), "a b ");
    EXPECT_EQ(written("a\nb\n", 0x200023), "a b ");
}

TEST_F(Writing, TextWithoutANewlineIsWrittenAsItIs) {
    EXPECT_EQ(written("a\rb", 0x21), "a\rb");
    EXPECT_EQ(written("\n\n", 0x21), "\r\n\r\n");
}

TEST_F(Writing, BytesAndBlocksAreNotTranslated) {
    const std::string name = folder.file("a");
    fileIODescriptor* file = open(name, 0x21);
    EXPECT_EQ(outputByte(file, '\n'), 0);
    EXPECT_EQ(outputByte(file, 0xFF), 0);
    EXPECT_EQ(outputBlock(file, "\n\0x", 3), 0);
    EXPECT_EQ(GetFilePosition(file), 5u);
    EXPECT_EQ(GetFileLogicalSize(file), 5u);
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(readFile(name), std::string("\n\xFF\n\0x", 5));
}

TEST_F(Writing, BlocksOfAnySizeKeepTheirOrder) {
    const std::string name = folder.file("a");
    fileIODescriptor* file = open(name, kBINARY_WRITE);
    std::string expected;
    for (size_t size : {1u, 99999u, 100000u, 100001u, 0u, 7u, 250000u, 3u}) {
        std::string block;
        for (size_t i = 0; i < size; ++i) block += static_cast<char>(expected.size() + i * 7);
        EXPECT_EQ(outputBlock(file, block.data(), block.size()), 0);
        expected += block;
        EXPECT_EQ(GetFilePosition(file), expected.size());
    }
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_TRUE(readFile(name) == expected);
}

TEST_F(Writing, LongTextsAreTranslatedAcrossTheBuffer) {
    std::string text, expected;
    for (int i = 0; i < 60000; ++i) {
        text += "line\n";
        expected += "line\r\n";
    }
    EXPECT_TRUE(written(text, 0x21) == expected);
}

TEST_F(Writing, PutNextLineFormats) {
    const std::string name = folder.file("a");
    fileIODescriptor* file = open(name, 0x21);
    EXPECT_EQ(PutNextLine(file, "%s=%04lX\n", "x", 0xAB), 0);
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(readFile(name), "x=00AB\r\n");
}

int putLine(fileIODescriptor* file, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int status = vPutNextLine(file, format, arguments);
    va_end(arguments);
    return status;
}

TEST_F(Writing, VPutNextLineFormatsItsArgumentList) {
    const std::string name = folder.file("a");
    fileIODescriptor* file = open(name, kTEXT_WRITE);
    EXPECT_EQ(putLine(file, "%s=%d\n", "x", 5), 0);
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(readFile(name), "x=5\n");
}

TEST_F(Writing, AFileNotOpenForWritingGivesMinusOne) {
    fileIODescriptor* file = open(folder.write("a", "x"), kTEXT_READ);
    EXPECT_EQ(PutNextLine(file, "a"), -1);
    EXPECT_EQ(putLine(file, "a"), -1);
    EXPECT_EQ(PutNextLine(nullptr, "a"), -1);
    EXPECT_EQ(outputByte(file, 'a'), -1);
    EXPECT_EQ(outputBlock(file, "a", 1), -1);
    EXPECT_EQ(outputLine(file, "a"), -1);
    Close_File(&file);
}

TEST_F(Writing, StandardOutTakesNewlinesAsTheyAre) {
    CapturedAlerts out;
    EXPECT_EQ(PutNextLine(&StandardOut, "a\nb\n"), 0);
    EXPECT_EQ(outputByte(&StandardOut, 'c'), 0);
    EXPECT_EQ(out.text(), "a\nb\nc");
}

TEST_F(Writing, StandardOutIsNamedStdoutAndOpen) {
    EXPECT_STREQ(GetFileName(&StandardOut), "stdout");
    EXPECT_TRUE(FileIsOpen(&StandardOut));
    EXPECT_EQ(StandardOut.attributes, 0x120u);
}

TEST_F(Writing, StandardOutIsSilentWhileOutputIsOff) {
    CapturedAlerts out;
    EXPECT_TRUE(EnabledPutLineOutput(false));
    EXPECT_EQ(PutNextLine(&StandardOut, "a"), 0);
    EXPECT_FALSE(EnabledPutLineOutput(true));
    EXPECT_EQ(PutNextLine(&StandardOut, "b"), 0);
    EXPECT_EQ(out.text(), "b");
}

TEST_F(Writing, OtherFilesAreWrittenWhileOutputIsOff) {
    const std::string name = folder.file("a");
    EnabledPutLineOutput(false);
    fileIODescriptor* file = open(name, kTEXT_WRITE);
    EXPECT_EQ(PutNextLine(file, "a"), 0);
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(readFile(name), "a");
}

TEST_F(Writing, ClosingStandardOutOnlyFlushesIt) {
    fileIODescriptor* file = &StandardOut;
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(file, nullptr);
    EXPECT_TRUE(FileIsOpen(&StandardOut));
}

TEST_F(Writing, ClosingNothingIsFine) {
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(Close_File(&file), 0);
    EXPECT_EQ(Close_File(nullptr), 0);
    abandonFile(&file);
    abandonFile(nullptr);
    EXPECT_FALSE(FileIsOpen(nullptr));
}

class MemoryFiles : public FileTest {
protected:
    fileIODescriptor* over(std::string& data, u32 attributes) {
        fileIODescriptor* file = nullptr;
        EXPECT_EQ(OpenMemoryFile("memory", attributes, data.data(), data.size(), &file), 0);
        return file;
    }
};

TEST_F(MemoryFiles, DataIsReadInPlace) {
    std::string data = "one\r\ntwo";
    fileIODescriptor* file = over(data, kTEXT_READ);
    EXPECT_EQ(GetFileStorageBase(file), data.data());
    EXPECT_EQ(file->attributes & (kMEMORY_STORAGE | kWHOLE_FILE_BUFFER), kMEMORY_STORAGE | kWHOLE_FILE_BUFFER);
    EXPECT_EQ(GetNextTextLine(file), data.data());
    EXPECT_EQ(GetNextTextLine(file), data.data() + 5);
    EXPECT_EQ(GetNextTextLine(file), nullptr);
    EXPECT_EQ(file->status, -1);
    EXPECT_EQ(data, "one\r\ntwo");
    Close_File(&file);
    EXPECT_EQ(data, "one\r\ntwo");
}

TEST_F(MemoryFiles, DataCanBePositioned) {
    std::string data = "one\ntwo";
    fileIODescriptor* file = over(data, kTEXT_READ);
    EXPECT_EQ(SetFilePosition(file, 5), 0);
    EXPECT_EQ(GetFilePosition(file), 4u);
    Close_File(&file);
}

TEST_F(MemoryFiles, TheNameAndTheSizesAreTold) {
    std::string data = "abc";
    fileIODescriptor* file = over(data, kBINARY_READ_WHOLE);
    u64 logical = 0, physical = 0;
    GetFileSizes(file, &logical, &physical);
    EXPECT_EQ(logical, 3u);
    EXPECT_EQ(physical, 3u);
    EXPECT_STREQ(GetFileName(file), "memory");
    Close_File(&file);
}

TEST_F(MemoryFiles, WithoutDataTheBufferGrowsAsItIsWritten) {
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(OpenMemoryFile("memory", kTEXT_WRITE, nullptr, 0, &file), 0);
    std::string expected;
    for (int i = 0; i < 50000; ++i) {
        PutNextLine(file, "line %d\n", i);
        expected += "line " + std::to_string(i) + "\n";
    }
    EXPECT_EQ(GetFileLogicalSize(file), expected.size());
    EXPECT_TRUE(GetFileStorageBase(file) == expected); // terminated
    EXPECT_EQ(Close_File(&file), 0);
}

TEST_F(MemoryFiles, WithoutDataThereIsNothingToRead) {
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(OpenMemoryFile(nullptr, kTEXT_READ, nullptr, 0, &file), 0);
    EXPECT_EQ(GetNextTextLine(file), nullptr);
    EXPECT_EQ(inputByte(file), -1);
    EXPECT_STREQ(GetFileName(file), "");
    Close_File(&file);
}

TEST_F(MemoryFiles, WritingOverDataStopsAtItsEnd) {
    std::string data = "abcdef";
    fileIODescriptor* file = over(data, kTEXT_WRITE);
    CapturedAlerts alerts;
    EXPECT_EQ(outputLine(file, "XYZ"), 0);
    EXPECT_EQ(data, "XYZdef");
    EXPECT_EQ(outputLine(file, "1234"), 1);
    EXPECT_EQ(data, "XYZ123");
    EXPECT_NE(alerts.text().find("'memory'"), std::string::npos);
    EXPECT_EQ(Close_File(&file), 1);
    abandonFile(&file);
}

TEST_F(MemoryFiles, AHandleThatCanNotBeGivenIsAStatus) {
    EXPECT_EQ(OpenMemoryFile("x", kTEXT_READ, nullptr, 0, nullptr), 3);
}

} // namespace

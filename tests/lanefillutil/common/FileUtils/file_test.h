// file_test.h - what the tests of files share: an engine lifetime, a folder, and files read and written in one call.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_FILE_UTILS_FILE_TEST_H
#define MEMDATA_TESTS_FILE_UTILS_FILE_TEST_H

#include "FileUtils/FileUtils.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/SystemUtils.h"
#include "support/alerts.h"
#include "support/temporary_folder.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace memdata::testing {

// A folder and an engine; what a test took of tracked memory it has given back at its end.
class FileTest : public ::testing::Test {
protected:
    void SetUp() override { usageBefore_ = getCurrentMemoryUsage(); }
    void TearDown() override { EXPECT_EQ(getCurrentMemoryUsage(), usageBefore_); }

    SystemResources resources;
    TemporaryFolder folder;

    fileIODescriptor* open(const std::string& name, u32 attributes) {
        fileIODescriptor* file = nullptr;
        EXPECT_EQ(Open_File(name.c_str(), attributes, &file), 0) << name;
        return file;
    }
    // Opens the output, writes the text and closes it; the first status that is not 0.
    int write(const std::string& name, const std::string& text, u32 attributes = kTEXT_WRITE) {
        fileIODescriptor* file = nullptr;
        int status = Open_File(name.c_str(), attributes, &file);
        if (status == 0) status = outputLine(file, text.c_str());
        if (status == 0) status = Close_File(&file);
        abandonFile(&file);
        return status;
    }

private:
    u64 usageBefore_ = 0;
};

inline constexpr u32 kTEXT_READ = 0x12;
inline constexpr u32 kTEXT_READ_WHOLE = 0x112;
inline constexpr u32 kBINARY_READ = 0x13;
inline constexpr u32 kBINARY_WRITE = 0x23;

// A line as GetNextTextLine gives it, up to its end.
inline std::string lineText(const fileIODescriptor* file, const char* line) {
    const char* const end = file->buffer + file->textEnd;
    return {line, std::find_if(line, end, [](char c) { return c == '\n' || c == '\r'; })};
}

// All lines that are left, each in brackets: "[first][second]".
inline std::string remainingLines(fileIODescriptor* file) {
    std::string lines;
    while (char* line = GetNextTextLine(file)) lines += "[" + lineText(file, line) + "]";
    return lines;
}

inline std::string bytesOf(fileIODescriptor* file) {
    std::string bytes;
    for (int byte = inputByte(file); byte >= 0; byte = inputByte(file)) bytes += static_cast<char>(byte);
    return bytes;
}

// Runs action in a child process and gives its exit status, or -1 when a signal ended it.
int exitStatusOfChild(const std::function<int()>& action);

} // namespace memdata::testing

#endif

// mem_file_test.h - what the tests of text data files share: a text, read, and its sections worded.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_MEM_FILE_TEST_H
#define MEMDATA_TESTS_MEM_FILE_TEST_H

#include "MemUtils/MemUtils.h"
#include "SystemUtils/SystemUtils.h"
#include "support/alerts.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace memdata::testing {

// "10:ABCD", with the count of bits where the last byte is not full: "10:ABC0/12".
inline std::string sectionText(const DataFileSectionTypeX<unsigned long>& section) {
    std::string text = formatted("%llX:", section.address);
    for (u64 i = 0; i < section.size; ++i) text += formatted("%02X", u32{section.data[i]});
    if (section.bitCount != section.size * 8) text += formatted("/%ld", section.bitCount);
    return text;
}

// All sections of a file, with blanks between.
inline std::string sectionsText(LNF_DataFile* file) {
    std::string text;
    for (unsigned long i = 0; i < file->GetProgramSectionCount(); ++i) {
        DataFileSectionTypeX<unsigned long> section{};
        EXPECT_EQ(file->GetProgramSectionData(i, &section), 0);
        text += (i == 0 ? "" : " ") + sectionText(section);
    }
    return text;
}

// Nothing may be left when the lifetime behind it has ended.
struct LeakCheck {
    ~LeakCheck() { EXPECT_EQ(leakedBlockCount(), 0u); }
};

class MemFileTest : public ::testing::Test {
protected:
    MemFileTest() { RegisterSystemToolName("Lanefill"); }
    ~MemFileTest() override {
        file.reset();
        DeleteFileSpec(&spec_);
    }

    // Reads a text that stands for the file data.mem. Status.
    int open(std::string_view text, unsigned radix = 16, const char* macros = nullptr) {
        file = std::make_unique<LNF_MEMDataFile>(radix);
        DeleteFileSpec(&spec_);
        spec_ = CreateFileSpecWithFileData("data.mem", text.data(), text.size());
        return file->OpenDataFile(spec_, macros, 1);
    }
    // The sections of a text, or "status N" and what was said.
    std::string read(std::string_view text, unsigned radix = 16, const char* macros = nullptr) {
        alerts.take();
        const int status = open(text, radix, macros);
        const std::string said = alerts.take();
        const std::string sections = sectionsText(file.get());
        if (status == 0) return sections + said;
        return "status " + std::to_string(status) + sections + said;
    }

    LeakCheck leaks_;
    SystemResources resources_;
    CapturedAlerts alerts;
    std::unique_ptr<LNF_MEMDataFile> file;

private:
    fileSpecType* spec_ = nullptr;
};

} // namespace memdata::testing

#endif

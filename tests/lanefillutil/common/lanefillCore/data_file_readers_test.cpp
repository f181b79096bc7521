// data_file_readers_test.cpp - which formats are data files, and what their readers are.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/data_files.h"

#include "FileUtils/FileUtils.h"
#include "SystemUtils/lifetime.h"
#include "support/alerts.h"
#include "support/host_messages.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace memdata::testing {
namespace {

class DataFileReaders : public ::testing::Test {
protected:
    // The first byte of a text under a name, or "status N".
    static std::string firstByte(const char* name, const char* text) {
        fileSpecType* spec = CreateFileSpecWithFileData(name, text, std::char_traits<char>::length(text));
        LNF_DataFile* opened = nullptr;
        const int status = open_data_file(spec, nullptr, 1, &opened);
        const std::unique_ptr<LNF_DataFile> file(opened);
        DataFileSectionTypeX<unsigned long> section{};
        if (status == 0) {
            EXPECT_EQ(file->GetProgramSectionData(0, &section), 0);
        }
        const std::string result = status == 0 ? std::to_string(section.data[0]) : "status " + std::to_string(status);
        DeleteFileSpec(&spec);
        return result;
    }

    SystemResources resources_;
    CapturedAlerts alerts;
    CapturedMessages messages;
};

TEST_F(DataFileReaders, MemTextsAndTheirVariantsAreHexadecimal) {
    for (const char* name : {"a.mem", "a.vmf", "a.vmem", "A.MEM"}) EXPECT_EQ(firstByte(name, "10"), "16") << name;
    EXPECT_EQ(firstByte("a.coe", "memory_initialization_vector=11;"), "17");
}

TEST_F(DataFileReaders, MifTextsAreBinary) {
    EXPECT_EQ(firstByte("a.mif", "00000011"), "3");
}

TEST_F(DataFileReaders, OtherFormatsAreNoDataFiles) {
    for (const char* name : {"a.bit", "a.rbt", "a.txt", "a"}) EXPECT_EQ(firstByte(name, "10"), "status 1") << name;
}

TEST_F(DataFileReaders, TheFailureOfAReaderIsThatOfOpening) {
    EXPECT_EQ(firstByte("a.mem", "@"), "status 2");
}

TEST_F(DataFileReaders, ATextOfValuesHasProgramSectionsAndIsReadyForTranslation) {
    fileSpecType* spec = CreateFileSpecWithFileData("a.mem", "12", 2);
    LNF_DataFile* opened = nullptr;
    ASSERT_EQ(open_data_file(spec, nullptr, 1, &opened), 0);
    const std::unique_ptr<LNF_DataFile> file(opened);
    AddressMappingType mapping{};
    EXPECT_EQ(file->GetSectionCount(), 0u);
    EXPECT_EQ(prepare_data_file(file.get(), nullptr, &mapping), 0);
    EXPECT_EQ(alerts.text(), "");
    DeleteFileSpec(&spec);
}

} // namespace
} // namespace memdata::testing

// file_copier_test.cpp - a second thread that copies a file.
// SPDX-License-Identifier: Apache-2.0
#include "platform/file_copier.h"

#include "support/temporary_folder.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

using memdata::FileCopier;
using memdata::testing::readFile;

class FileCopierTest : public ::testing::Test {
protected:
    FileCopierTest() {
        for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * i / 100 + i);
        from = folder.write("from", bytes);
        to = folder.write("to", "");
    }
    static int reading(const std::string& name) { return ::open(name.c_str(), O_RDONLY); }
    static int writing(const std::string& name) { return ::open(name.c_str(), O_WRONLY); }

    memdata::testing::TemporaryFolder folder;
    std::string bytes = std::string(1'000'001, '\0');
    std::string from;
    std::string to;
};

TEST_F(FileCopierTest, CopiesAllBytesAndGivesTheirDescriptorAtItsStart) {
    FileCopier copier(reading(from), writing(to), bytes.size());
    const int whole = copier.wholeCopy();
    ASSERT_GE(whole, 0);
    EXPECT_EQ(::lseek(whole, 0, SEEK_CUR), 0);
    EXPECT_EQ(copier.wholeCopy(), whole);
    EXPECT_TRUE(readFile(to) == bytes);
}

TEST_F(FileCopierTest, CopiesNoMoreThanItIsAskedFor) {
    FileCopier copier(reading(from), writing(to), 300'000);
    EXPECT_GE(copier.wholeCopy(), 0);
    EXPECT_TRUE(readFile(to) == bytes.substr(0, 300'000));
}

TEST_F(FileCopierTest, AFileThatIsShorterGivesNoCopy) {
    FileCopier copier(reading(from), writing(to), bytes.size() + 1);
    EXPECT_EQ(copier.wholeCopy(), -1);
}

TEST_F(FileCopierTest, AFullDiskGivesNoCopy) {
    FileCopier copier(reading(from), writing("/dev/full"), bytes.size());
    EXPECT_EQ(copier.wholeCopy(), -1);
}

TEST_F(FileCopierTest, FilesThatCannotBeReadOrWrittenGiveNoCopy) {
    FileCopier reader(reading(from), reading(to), bytes.size());
    EXPECT_EQ(reader.wholeCopy(), -1);
    FileCopier writer(writing(from), writing(to), bytes.size());
    EXPECT_EQ(writer.wholeCopy(), -1);
}

TEST_F(FileCopierTest, IsLeftAtAnyTime) {
    for (int i = 0; i < 50; ++i) const FileCopier copier(reading(from), writing(to), bytes.size());
    EXPECT_LE(std::filesystem::file_size(to), bytes.size());
}

} // namespace

// mapped_copy_test.cpp - private copies that share the pages of a mapped file.
// SPDX-License-Identifier: Apache-2.0
#include "platform/mapped_copy.h"

#include "platform/file_image.h"
#include "support/temporary_folder.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <string_view>

namespace {

using memdata::FileImage;
using memdata::MappedCopy;
using memdata::WholeFile;

class MappedCopyTest : public ::testing::Test {
protected:
    MappedCopyTest() {
        for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i / 7 + i);
        name = folder.write("a", bytes);
        EXPECT_EQ(image.open(name), WholeFile::kREAD);
    }
    ~MappedCopyTest() override { std::signal(SIGBUS, SIG_DFL); }

    static std::string_view text(const MappedCopy& copy, size_t count) {
        return {reinterpret_cast<const char*>(copy.bytes()), count};
    }

    memdata::testing::TemporaryFolder folder;
    std::string bytes = std::string(40'000, '\0');
    std::string name;
    FileImage image;
};

TEST_F(MappedCopyTest, HoldsTheBytesFromAnyPlaceOn) {
    for (const size_t place : {0u, 1u, 4095u, 4096u, 8193u, 39'999u}) {
        const size_t count = bytes.size() - place;
        const auto copy = MappedCopy::of(image.data() + place, count);
        ASSERT_NE(copy, nullptr) << place;
        EXPECT_NE(reinterpret_cast<const char*>(copy->bytes()), image.data() + place);
        EXPECT_TRUE(text(*copy, count) == std::string_view(bytes).substr(place)) << place;
    }
}

TEST_F(MappedCopyTest, WritingToItChangesNeitherTheFileNorOtherCopies) {
    const auto copy = MappedCopy::of(image.data() + 100, 10'000);
    const auto other = MappedCopy::of(image.data() + 100, 10'000);
    ASSERT_NE(copy, nullptr);
    ASSERT_NE(other, nullptr);
    for (u64 i = 0; i < 10'000; ++i) copy->bytes()[i] = 0xA5;
    EXPECT_TRUE(std::string_view(image.data(), image.size()) == bytes);
    EXPECT_TRUE(text(*other, 10'000) == std::string_view(bytes).substr(100, 10'000));
    EXPECT_TRUE(memdata::testing::readFile(name) == bytes);
    EXPECT_TRUE(image.isUnchanged());
}

TEST_F(MappedCopyTest, IsOnlyMadeOfBytesThatLieInAMapping) {
    EXPECT_EQ(MappedCopy::of(bytes.data(), 10), nullptr);
    EXPECT_EQ(MappedCopy::of(image.data() + 1, image.size()), nullptr);
    EXPECT_EQ(MappedCopy::of(image.data(), 0), nullptr);
    EXPECT_NE(MappedCopy::of(image.data() + 1, image.size() - 1), nullptr);
    const char* const gone = image.data();
    image.close();
    EXPECT_EQ(MappedCopy::of(gone, 10), nullptr);
}

TEST_F(MappedCopyTest, OutlivesTheMappingButIsNotCopiedItself) {
    const auto copy = MappedCopy::of(image.data(), image.size());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(MappedCopy::of(copy->bytes(), 10), nullptr);
    image.close();
    EXPECT_EQ(MappedCopy::of(copy->bytes(), 10), nullptr);
    EXPECT_TRUE(text(*copy, bytes.size()) == bytes);
}

TEST_F(MappedCopyTest, PagesThatItLosesAreLostInTheMappingToo) {
    memdata::surviveLostPages();
    const auto time = std::filesystem::last_write_time(name);
    const auto copy = MappedCopy::of(image.data(), image.size());
    ASSERT_NE(copy, nullptr);
    std::filesystem::resize_file(name, 5);
    EXPECT_EQ(copy->bytes()[4], static_cast<u8>(bytes[4]));
    EXPECT_EQ(copy->bytes()[20'000], 0);
    copy->bytes()[20'000] = 7; // still its own
    std::filesystem::resize_file(name, bytes.size());
    std::filesystem::last_write_time(name, time);
    EXPECT_FALSE(image.isUnchanged());
}

TEST_F(MappedCopyTest, SurvivesLostPagesWhenTheMappingIsGone) {
    memdata::surviveLostPages();
    const auto copy = MappedCopy::of(image.data(), image.size());
    ASSERT_NE(copy, nullptr);
    image.close();
    std::filesystem::resize_file(name, 5);
    EXPECT_EQ(copy->bytes()[20'000], 0);
}

} // namespace

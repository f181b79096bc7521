// file_image_test.cpp - plain files are mapped, all others are read.
// SPDX-License-Identifier: Apache-2.0
#include "platform/file_image.h"

#include "platform/filtering_stream.h"
#include "support/temporary_folder.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using memdata::FileImage;
using memdata::WholeFile;

// "memory\n" as gzip writes it.
constexpr std::string_view kPACKED("\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xcb\x4d\xcd\xcd\x2f\xaa\xe4\x02\x00\x84"
                                   "\xaf\x8e\x64\x07\x00\x00\x00",
    27);

class FileImageTest : public ::testing::Test {
protected:
    std::string_view text() const { return {image.data(), image.size()}; }

    memdata::testing::TemporaryFolder folder;
    FileImage image;
};

TEST_F(FileImageTest, APlainFileIsMapped) {
    EXPECT_EQ(image.open(folder.write("a", "some bytes")), WholeFile::kREAD);
    EXPECT_TRUE(image.isMapped());
    EXPECT_EQ(text(), "some bytes");
}

TEST_F(FileImageTest, AMappingOutlivesTheNameOfItsFile) {
    const std::string name = folder.write("a", "some bytes");
    EXPECT_EQ(image.open(name), WholeFile::kREAD);
    std::filesystem::remove(name);
    EXPECT_EQ(text(), "some bytes");
}

TEST_F(FileImageTest, APackedFileIsUnpacked) {
    EXPECT_EQ(image.open(folder.write("a", kPACKED)), WholeFile::kREAD);
    EXPECT_FALSE(image.isMapped());
    EXPECT_EQ(text(), "memory\n");
}

TEST_F(FileImageTest, APipeKeepsItsFirstBytes) {
    const std::string name = folder.file("pipe");
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(name) << "through a pipe"; });
    EXPECT_EQ(image.open(name), WholeFile::kREAD);
    writer.join();
    EXPECT_EQ(text(), "through a pipe");
}

TEST_F(FileImageTest, AnEmptyFileHasNoBytes) {
    EXPECT_EQ(image.open(folder.write("a", "")), WholeFile::kREAD);
    EXPECT_EQ(image.size(), 0u);
}

TEST_F(FileImageTest, WhatCannotBeReadSaysWhy) {
    std::string reason;
    EXPECT_EQ(image.open(folder.file("none"), &reason), WholeFile::kCANNOT_OPEN);
    EXPECT_EQ(reason, "No such file or directory");
    EXPECT_EQ(image.open(folder.path().string(), &reason), WholeFile::kCANNOT_OPEN);
    EXPECT_EQ(reason, "Is a directory");
    EXPECT_EQ(image.open(folder.write("a", kPACKED.substr(0, 20)), &reason), WholeFile::kDAMAGED);
    EXPECT_EQ(image.size(), 0u);
}

TEST_F(FileImageTest, TheLimitHoldsForWhatIsUnpackedAndNotForMappings) {
    EXPECT_EQ(image.open(folder.write("a", kPACKED), nullptr, 6), WholeFile::kTOO_LARGE);
    EXPECT_EQ(image.size(), 0u);
    EXPECT_EQ(image.open(folder.write("a", "memory\n"), nullptr, 6), WholeFile::kREAD);
}

TEST_F(FileImageTest, OpeningAnotherFileLetsGoOfTheFirst) {
    EXPECT_EQ(image.open(folder.write("a", "one")), WholeFile::kREAD);
    EXPECT_EQ(image.open(folder.file("none")), WholeFile::kCANNOT_OPEN);
    EXPECT_EQ(image.size(), 0u);
}

u64 mappedBytesInMemory() { // of files, in this process
    std::ifstream facts("/proc/self/statm");
    u64 size = 0, resident = 0, shared = 0;
    facts >> size >> resident >> shared;
    return shared * static_cast<u64>(sysconf(_SC_PAGESIZE));
}

TEST_F(FileImageTest, ReleasedPagesTakeNoMemoryAndComeBackFromTheFile) {
    std::string bytes(4 << 20, 'x');
    bytes.front() = bytes.back() = 'y';
    ASSERT_EQ(image.open(folder.write("a", bytes)), WholeFile::kREAD);
    EXPECT_TRUE(text() == bytes); // all pages are touched
    const u64 before = mappedBytesInMemory();
    memdata::releaseMappedPages(image.data() + 1, image.size() - 1);
    EXPECT_GE(before, mappedBytesInMemory() + (3 << 20));
    EXPECT_TRUE(text() == bytes);
}

TEST_F(FileImageTest, AFileThatIsLeftAloneOrReplacedIsUnchanged) {
    const std::string name = folder.write("a", "some bytes");
    ASSERT_EQ(image.open(name), WholeFile::kREAD);
    EXPECT_TRUE(image.isUnchanged());
    std::filesystem::rename(folder.write("b", "others"), name);
    EXPECT_TRUE(image.isUnchanged());
}

TEST_F(FileImageTest, AFileThatIsWrittenToOrCutIsChanged) {
    const std::string name = folder.write("a", "some bytes");
    ASSERT_EQ(image.open(name), WholeFile::kREAD);
    std::filesystem::resize_file(name, 9);
    EXPECT_FALSE(image.isUnchanged());
    ASSERT_EQ(image.open(name), WholeFile::kREAD);
    EXPECT_TRUE(image.isUnchanged());
    std::filesystem::last_write_time(name, std::filesystem::last_write_time(name) + std::chrono::seconds(1));
    EXPECT_FALSE(image.isUnchanged());
}

TEST_F(FileImageTest, PagesThatWereLostReadAsZeros) {
    memdata::surviveLostPages();
    const std::string name = folder.write("a", std::string(100'000, 'x'));
    const std::string other = folder.write("b", std::string(100'000, 'y'));
    FileImage untouched;
    ASSERT_EQ(image.open(name), WholeFile::kREAD);
    ASSERT_EQ(untouched.open(other), WholeFile::kREAD);
    std::filesystem::resize_file(name, 5);
    EXPECT_EQ(text().substr(0, 6), std::string_view("xxxxx\0", 6));
    EXPECT_EQ(text().back(), '\0');
    EXPECT_EQ(text()[50'000], '\0');
    std::filesystem::resize_file(name, 100'000);
    EXPECT_FALSE(image.isUnchanged());
    EXPECT_TRUE(untouched.isUnchanged());
    EXPECT_EQ(untouched.data()[99'999], 'y');
    std::signal(SIGBUS, SIG_DFL);
}

TEST_F(FileImageTest, AFaultOutsideOfImagesStillEndsTheProcess) {
    const std::string name = folder.write("a", "some bytes");
    ASSERT_EQ(image.open(name), WholeFile::kREAD);
    EXPECT_EXIT(
        {
            memdata::surviveLostPages();
            const int file = ::open(folder.write("b", "bytes").c_str(), O_RDWR);
            const auto* pages = static_cast<volatile char*>(mmap(nullptr, 5, PROT_READ, MAP_SHARED, file, 0));
            if (ftruncate(file, 0) != 0) std::exit(1);
            std::exit(pages[0]);
        },
        ::testing::KilledBySignal(SIGBUS), "");
}

TEST_F(FileImageTest, LessThanAPageIsNotReleased) {
    const std::string bytes(100, 'x');
    ASSERT_EQ(image.open(folder.write("a", bytes)), WholeFile::kREAD);
    memdata::releaseMappedPages(image.data() + 1, image.size() - 1);
    EXPECT_EQ(text(), bytes);
}

TEST_F(FileImageTest, AStreamTellsWhetherItsFileIsPacked) {
    pql::iostreams::filtering_stream stream(folder.write("a", kPACKED));
    EXPECT_TRUE(stream.isPacked());
    stream.open(folder.write("b", "plain"));
    EXPECT_FALSE(stream.isPacked());
    stream.close();
    EXPECT_FALSE(stream.isPacked());
}

} // namespace

// filtering_stream_test.cpp - plain, gzip and bzip2 files through one stream, and all that can be wrong with them.
// SPDX-License-Identifier: Apache-2.0
#include "platform/filtering_stream.h"

#include "platform/whole_file.h"
#include "support/damage.h"
#include "support/temporary_folder.h"

#include <boost/iostreams/copy.hpp>
#include <boost/iostreams/device/array.hpp>
#include <boost/iostreams/device/back_inserter.hpp>
#include <boost/iostreams/filter/bzip2.hpp>
#include <boost/iostreams/filter/gzip.hpp>
#include <boost/iostreams/filtering_streambuf.hpp>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sys/stat.h>
#include <thread>

namespace {

using memdata::readWholeFile;
using memdata::WholeFile;
using memdata::testing::Bytes;
using memdata::testing::cut_at;
using memdata::testing::flip_bit;
using pql::iostreams::filtering_stream;

// "memory\n" as the packing programs of the system write it.
const Bytes kGZIP_FILE = {0x1f, 0x8b, 0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0x03, 0xcb, 0x4d, 0xcd, 0xcd, 0x2f,
    0xaa, 0xe4, 0x02, 0x00, 0x84, 0xaf, 0x8e, 0x64, 0x07, 0x00, 0x00, 0x00};
const Bytes kBZIP2_FILE = {0x42, 0x5a, 0x68, 0x39, 0x31, 0x41, 0x59, 0x26, 0x53, 0x59, 0x4e, 0xad, 0xd5, 0xcb, 0x00,
    0x00, 0x01, 0x41, 0x80, 0x00, 0x10, 0x02, 0x02, 0x90, 0x20, 0x20, 0x00, 0x21, 0x80, 0x0c, 0x03, 0x47, 0x1d, 0xdc,
    0x5d, 0xc9, 0x14, 0xe1, 0x42, 0x41, 0x3a, 0xb7, 0x57, 0x2c};
const Bytes kEMPTY_BZIP2_FILE = {0x42, 0x5a, 0x68, 0x39, 0x17, 0x72, 0x45, 0x38, 0x50, 0x90, 0x00, 0x00, 0x00, 0x00};

template<class Filter>
Bytes packed(const Filter& filter, const std::string& text) {
    namespace io = boost::iostreams;
    std::vector<char> out;
    io::filtering_streambuf<io::output> chain;
    chain.push(filter);
    chain.push(io::back_inserter(out));
    io::copy(io::array_source(text.data(), text.size()), chain);
    return {out.begin(), out.end()};
}

Bytes gzipped(const std::string& text) {
    return packed(boost::iostreams::gzip_compressor(), text);
}

Bytes bzipped(const std::string& text) {
    return packed(boost::iostreams::bzip2_compressor(), text);
}

Bytes joined(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Bytes plain(const std::string& text) {
    return {text.begin(), text.end()};
}

// Every byte value, no pattern that packs to nothing.
std::string noise(size_t byteCount) {
    std::mt19937 next(1);
    std::string text(byteCount, '\0');
    for (char& c : text) c = static_cast<char>(next());
    return text;
}

struct FilteringStream : ::testing::Test {
    memdata::testing::TemporaryFolder folder;

    std::string file(const Bytes& bytes) {
        return folder.write("file", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }
    std::string read(const Bytes& bytes) {
        filtering_stream in(file(bytes));
        EXPECT_TRUE(in.is_open());
        std::string text{std::istreambuf_iterator<char>(in), {}};
        EXPECT_FALSE(in.bad()) << in.failureReason();
        return text;
    }
    // What a reader finds who never asks for exceptions.
    bool isBad(const Bytes& bytes) {
        filtering_stream in(file(bytes));
        const std::string text{std::istreambuf_iterator<char>(in), {}};
        EXPECT_EQ(in.bad(), !in.failureReason().empty());
        return in.bad();
    }
};

} // namespace

TEST_F(FilteringStream, PlainGzipAndBzip2ReadEqual) {
    EXPECT_EQ(read(plain("memory\n")), "memory\n");
    EXPECT_EQ(read(kGZIP_FILE), "memory\n");
    EXPECT_EQ(read(kBZIP2_FILE), "memory\n");
}

TEST_F(FilteringStream, ReadsFilesOfManyBlocks) {
    const std::string text = noise(300'000) + std::string(700'000, 'a') + noise(70'000);
    EXPECT_EQ(read(plain(text)), text);
    EXPECT_EQ(read(gzipped(text)), text);
    EXPECT_EQ(read(bzipped(text)), text);
}

TEST_F(FilteringStream, MembersOfAGzipFileAreJoined) {
    EXPECT_EQ(read(joined(joined(kGZIP_FILE, gzipped("second\n")), kGZIP_FILE)), "memory\nsecond\nmemory\n");
    const std::string text = noise(100'000);
    EXPECT_EQ(read(joined(gzipped(text), gzipped(text))), text + text);
}

TEST_F(FilteringStream, StreamsOfABzip2FileAreJoined) {
    EXPECT_EQ(read(joined(kBZIP2_FILE, bzipped("second\n"))), "memory\nsecond\n");
}

TEST_F(FilteringStream, AnEmptyFileIsFine) {
    EXPECT_EQ(read({}), "");
    EXPECT_EQ(read(gzipped("")), "");
    EXPECT_EQ(read(kEMPTY_BZIP2_FILE), "");
}

TEST_F(FilteringStream, TheNameOfAFileDoesNotCount) {
    filtering_stream in(folder.write("text.gz", "not packed"));
    std::string word;
    in >> word;
    EXPECT_EQ(word, "not");
}

TEST_F(FilteringStream, FilesThatOnlyBeginLikePackedOnesArePlain) {
    for (const std::string text : {"\x1F", "\x1F\x8B", "\x1F\x8B\x07 and more", "BZ", "BZh", "BZh9",
             "BZh of plain text", "BZh91AY&S", "BZh01AY&SY"})
        EXPECT_EQ(read(plain(text)), text);
}

TEST_F(FilteringStream, KeepsAllBytesOfATextFile) {
    const std::string text("a\r\nb\0c\xFF\x1A\n", 10);
    EXPECT_EQ(read(plain(text)), text);
}

TEST_F(FilteringStream, ReadsLinesWordsAndBlocksInTurn) {
    filtering_stream in(file(gzipped("first line\nword " + std::string(200'000, 'x') + "end")));
    std::string line;
    std::string word;
    std::getline(in, line);
    in >> word;
    in.get();
    std::string block(200'000, '\0');
    in.read(block.data(), 200'000);
    EXPECT_EQ(line, "first line");
    EXPECT_EQ(word, "word");
    EXPECT_EQ(block, std::string(200'000, 'x'));
    in >> word;
    EXPECT_EQ(word, "end");
    EXPECT_TRUE(in.eof());
}

TEST_F(FilteringStream, AMissingFileFails) {
    filtering_stream in(folder.file("missing"));
    EXPECT_TRUE(in.fail());
    EXPECT_FALSE(in.is_open());
    EXPECT_EQ(in.failureReason(), "No such file or directory");
}

TEST_F(FilteringStream, ADirectoryFails) {
    filtering_stream in(folder.path().string());
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(in.failureReason(), "Is a directory");
}

TEST_F(FilteringStream, AnEmptyNameFails) {
    EXPECT_TRUE(filtering_stream("").fail());
}

TEST_F(FilteringStream, AModeThatWritesFails) {
    const std::string name = file(plain("text"));
    EXPECT_TRUE(filtering_stream(name, std::ios::out).fail());
    EXPECT_TRUE(filtering_stream(name, std::ios::in | std::ios::out).fail());
    EXPECT_FALSE(filtering_stream(name, std::ios::in).fail());
}

TEST_F(FilteringStream, EveryCutOfAGzipFileIsBad) {
    for (size_t count = 3; count < kGZIP_FILE.size(); ++count) EXPECT_TRUE(isBad(cut_at(kGZIP_FILE, count))) << count;
}

TEST_F(FilteringStream, EveryCutOfABzip2FileIsBad) {
    for (size_t count = 10; count < kBZIP2_FILE.size(); ++count)
        EXPECT_TRUE(isBad(cut_at(kBZIP2_FILE, count))) << count;
}

TEST_F(FilteringStream, LargePackedFilesThatEndEarlyAreBad) {
    const std::string text = noise(400'000);
    for (const Bytes& good : {gzipped(text), bzipped(text)}) {
        EXPECT_TRUE(isBad(cut_at(good, good.size() / 2)));
        EXPECT_TRUE(isBad(cut_at(good, good.size() - 1)));
        EXPECT_TRUE(isBad(cut_at(good, 64 * 1024)));
    }
}

TEST_F(FilteringStream, ACutInTheSecondMemberIsBad) {
    EXPECT_TRUE(isBad(joined(kGZIP_FILE, cut_at(kGZIP_FILE, 20))));
    EXPECT_TRUE(isBad(joined(kBZIP2_FILE, cut_at(kBZIP2_FILE, 30))));
}

TEST_F(FilteringStream, BytesBehindPackedDataAreBad) {
    EXPECT_TRUE(isBad(joined(kGZIP_FILE, plain("garbage behind the member"))));
    EXPECT_TRUE(isBad(joined(kBZIP2_FILE, plain("garbage behind the stream"))));
}

// Some bits mean nothing (the last bits of a byte, flags of the packing program); all others are protected.
TEST_F(FilteringStream, DamageIsNeverTakenForContent) {
    for (const Bytes& good : {kGZIP_FILE, kBZIP2_FILE}) {
        for (size_t bit = 10 * 8; bit < good.size() * 8; bit += 3) {
            const std::string name = file(flip_bit(good, bit));
            std::string text;
            const WholeFile result = readWholeFile(name, &text);
            EXPECT_EQ(text, result == WholeFile::kREAD ? "memory\n" : "") << bit;
        }
    }
}

TEST_F(FilteringStream, AWrongChecksumIsBad) {
    for (size_t bit = 19 * 8; bit < 23 * 8; ++bit) EXPECT_TRUE(isBad(flip_bit(kGZIP_FILE, bit))) << bit;
    for (size_t bit = 10 * 8; bit < 14 * 8; bit += 3) EXPECT_TRUE(isBad(flip_bit(kBZIP2_FILE, bit))) << bit;
}

TEST_F(FilteringStream, NoExceptionLeavesUnlessItIsAskedFor) {
    const std::string name = file(cut_at(kGZIP_FILE, 20));
    std::string text(100, '\0');
    filtering_stream quiet(name);
    EXPECT_NO_THROW(quiet.read(text.data(), 100));
    EXPECT_TRUE(quiet.bad());

    filtering_stream asked(name);
    asked.exceptions(std::ios::badbit);
    EXPECT_THROW(asked.read(text.data(), 100), std::ios_base::failure);
    EXPECT_TRUE(asked.bad());
}

TEST_F(FilteringStream, ServesAnotherFileAfterAFailure) {
    filtering_stream in("/missing/file");
    in.open(file(kGZIP_FILE));
    std::string word;
    EXPECT_TRUE(in >> word);
    EXPECT_EQ(word, "memory");
    EXPECT_EQ(in.failureReason(), "");
    in.close();
    EXPECT_FALSE(in.is_open());
    EXPECT_FALSE(in >> word);
}

TEST_F(FilteringStream, ReadsAPipeWhoseBytesComeOneByOne) {
    const std::string name = folder.file("pipe");
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    std::thread writer([&] {
        std::ofstream out(name, std::ios::binary);
        for (const u8 byte : kGZIP_FILE) out << static_cast<char>(byte) << std::flush;
    });
    filtering_stream in(name);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    writer.join();
    EXPECT_EQ(text, "memory\n");
}

TEST_F(FilteringStream, AWholeFileIsReadIntoTextOrBytes) {
    std::string text;
    std::vector<u8> bytes;
    EXPECT_EQ(readWholeFile(file(kGZIP_FILE), &text), WholeFile::kREAD);
    EXPECT_EQ(text, "memory\n");
    EXPECT_EQ(readWholeFile(file(kBZIP2_FILE), &bytes), WholeFile::kREAD);
    EXPECT_EQ(bytes, plain("memory\n"));
    EXPECT_EQ(readWholeFile(file({}), &text), WholeFile::kREAD);
    EXPECT_EQ(text, "");
}

TEST_F(FilteringStream, AWholeFileOfAnySizeIsReadWhole) {
    for (const size_t size : {size_t{1}, size_t{65'535}, size_t{65'536}, size_t{65'537}, size_t{1'000'000}}) {
        const std::string text = noise(size);
        std::string back;
        EXPECT_EQ(readWholeFile(file(plain(text)), &back), WholeFile::kREAD);
        EXPECT_TRUE(back == text) << size;
        EXPECT_EQ(readWholeFile(file(gzipped(text)), &back), WholeFile::kREAD);
        EXPECT_TRUE(back == text) << size;
    }
}

TEST_F(FilteringStream, AWholeFileThatCannotBeReadLeavesNothingAndAReason) {
    std::string text = "old";
    std::string reason;
    EXPECT_EQ(readWholeFile("/missing/file", &text, &reason), WholeFile::kCANNOT_OPEN);
    EXPECT_EQ(reason, "No such file or directory");
    EXPECT_EQ(text, "");
    EXPECT_EQ(readWholeFile(folder.path().string(), &text, &reason), WholeFile::kCANNOT_OPEN);
    EXPECT_EQ(readWholeFile(file(cut_at(kGZIP_FILE, 20)), &text, &reason), WholeFile::kDAMAGED);
    EXPECT_EQ(reason, "the packed data is damaged or ends early");
    EXPECT_EQ(text, "");
}

// Five gigabytes that take no room on the disk.
TEST_F(FilteringStream, AFileLargerThanMemoryIsReadInParts) {
    const std::string name = folder.write("large", "begin");
    std::filesystem::resize_file(name, u64{5} << 30);
    filtering_stream in(name);
    EXPECT_EQ(in.rdbuf()->in_avail(), std::streamsize{5} << 30);
    std::string part(3'000'000, 'x');
    in.read(part.data(), 3'000'000);
    EXPECT_EQ(part, "begin" + std::string(2'999'995, '\0'));
}

TEST_F(FilteringStream, AFileAboveTheLimitIsRefusedBeforeItIsRead) {
    const std::string name = folder.write("large", "begin");
    std::filesystem::resize_file(name, memdata::kMAX_WHOLE_FILE_BYTES + 1);
    std::string text;
    std::string reason;
    EXPECT_EQ(readWholeFile(name, &text, &reason), WholeFile::kTOO_LARGE);
    EXPECT_EQ(reason, "it holds more than 4294967296 bytes");
    EXPECT_LT(text.capacity(), 1'000U);
}

TEST_F(FilteringStream, AWholeFileStopsAtTheLimit) {
    const std::string name = file(gzipped(std::string(1'000'000, 'a'))); // about a kilobyte, packed
    std::string text;
    std::string reason;
    EXPECT_EQ(readWholeFile(name, &text, &reason, 1'000'000), WholeFile::kREAD);
    EXPECT_EQ(text.size(), 1'000'000U);
    EXPECT_EQ(readWholeFile(name, &text, &reason, 999'999), WholeFile::kTOO_LARGE);
    EXPECT_EQ(reason, "it holds more than 999999 bytes");
    EXPECT_EQ(text, "");
    EXPECT_EQ(readWholeFile(file(plain("abc")), &text, &reason, 2), WholeFile::kTOO_LARGE);
    EXPECT_EQ(readWholeFile(file({}), &text, &reason, 0), WholeFile::kREAD);
    EXPECT_EQ(readWholeFile(name, &text, &reason, UINT64_MAX), WholeFile::kREAD);
}

// elf_data_test.cpp - readers over bytes that end where memory ends, and that nobody may write to.
// SPDX-License-Identifier: Apache-2.0
#include "LNF_ELFDataFile/elf_data.h"

#include "SystemUtils/lifetime.h"
#include "support/elf_builder.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using namespace memdata;
using namespace memdata::testing;

// Bytes that can only be read, with a page behind the last one that cannot be touched: whoever does either of both
// ends the test, libraries without a sanitizer too.
class GuardedBytes {
public:
    explicit GuardedBytes(const Bytes& bytes) : size_(bytes.size()) {
        const auto page = static_cast<size_t>(::sysconf(_SC_PAGESIZE));
        roomBytes_ = (bytes.size() + page - 1) / page * page + page;
        room_ =
            static_cast<char*>(::mmap(nullptr, roomBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        std::ranges::copy(bytes, room_ + roomBytes_ - page - size_);
        data_ = room_ + roomBytes_ - page - size_;
        ::mprotect(room_, roomBytes_, PROT_READ);
        ::mprotect(room_ + roomBytes_ - page, page, PROT_NONE);
    }
    ~GuardedBytes() { ::munmap(room_, roomBytes_); }
    GuardedBytes& operator=(GuardedBytes&&) = delete; // neither copied nor moved

    const char* data() const { return data_; }
    u64 size() const { return size_; }

private:
    char* room_ = nullptr;
    size_t roomBytes_ = 0;
    const char* data_ = nullptr;
    u64 size_;
};

struct Shape {
    unsigned bits;
    bool isBigEndian;
};
constexpr Shape kSHAPES[] = {{32, false}, {32, true}, {64, false}, {64, true}};

// Section headers come last, so that the tables end where the file ends.
Bytes soundFile(const Shape& shape) {
    return elfFile({.bits = shape.bits,
        .isBigEndian = shape.isBigEndian,
        .segments = {{.address = 0x1000, .bytes = {1, 2, 3}}, {.address = 0x2000, .bytes = {5}, .bssBytes = 8}},
        .sections = {{.name = ".bss", .type = 8, .size = 64}}});
}

template<class Address>
int readAll(const GuardedBytes& bytes, u64* sum) {
    ElfXData<Address> elf;
    const int status = elf.readElfData(bytes.data(), bytes.size());
    if (status != 0) return elf.failureReason().empty() ? 99 : status;
    DataFileSectionTypeX<Address> section{};
    for (u64 i = 0; elf.getProgramSectionData(i, &section) == 0; ++i)
        for (u64 at = 0; at < section.size; ++at) *sum += section.data[at];
    for (u64 i = 0; elf.getSectionData(i, &section) == 0; ++i)
        for (u64 at = 0; at < section.size; ++at) *sum += section.data[at];
    std::ostringstream text;
    elf.dumpELF(text);
    *sum += text.str().size();
    return status;
}

class ElfReader : public ::testing::Test {
protected:
    int read(const Bytes& bytes, unsigned bits) {
        const GuardedBytes guarded(bytes);
        return bits == 64 ? readAll<unsigned long>(guarded, &sum_) : readAll<unsigned int>(guarded, &sum_);
    }

private:
    SystemResources system_;
    u64 sum_ = 0; // keeps the reads
};

TEST_F(ElfReader, ReadsNothingBehindAFileThatIsCut) {
    for (const Shape& shape : kSHAPES) {
        const Bytes sound = soundFile(shape);
        EXPECT_EQ(read(sound, shape.bits), 0);
        for (size_t count = 0; count < sound.size(); ++count)
            EXPECT_EQ(read(cut_at(sound, count), shape.bits), 2) << count;
    }
}

TEST_F(ElfReader, ReadsNothingBehindAFileWhateverItsHeadersSay) {
    std::mt19937_64 random(5);
    for (const Shape& shape : kSHAPES) {
        const Bytes sound = soundFile(shape);
        for (const ElfField& field : elfFields()) {
            const std::string name = field.name;
            const u64 headers = name.starts_with("p_") ? 2 : name.starts_with("sh_") ? 5 : 1;
            for (u64 index = 0; index < headers; ++index) {
                for (const u64 value : {u64{0}, u64{1}, ~u64{0}, random() % sound.size(), random()}) {
                    const int status = read(setElfField(sound, name, value, index), shape.bits);
                    EXPECT_TRUE(status == 0 || status == 2) << name << " " << index << " " << value << ": " << status;
                }
            }
        }
    }
}

TEST_F(ElfReader, TakesTablesThatAreNotAligned) {
    for (const Shape& shape : kSHAPES) {
        Bytes file = soundFile(shape);
        const u64 table = elfField(file, "e_shoff");
        file.insert(file.begin() + static_cast<std::ptrdiff_t>(table), 0);
        EXPECT_EQ(read(setElfField(file, "e_shoff", table + 1), shape.bits), 0);
    }
}

TEST_F(ElfReader, RefusesAFileOfTheOtherClass) {
    EXPECT_EQ(read(soundFile(kSHAPES[0]), 64), 2);
    EXPECT_EQ(read(soundFile(kSHAPES[2]), 32), 2);
}

TEST_F(ElfReader, SaysTrueOrFalseByItsOldName) {
    const Bytes sound = soundFile(kSHAPES[0]);
    const char* bytes = reinterpret_cast<const char*>(sound.data());
    EXPECT_TRUE(ElfXData<unsigned int>().readAndPopulateElfData(bytes, sound.size()));
    EXPECT_FALSE(ElfXData<unsigned int>().readAndPopulateElfData(bytes, 51));
}

TEST_F(ElfReader, DumpsNothingForHeadersThatDoNotExist) {
    const Bytes sound = soundFile(kSHAPES[0]);
    ElfXData<unsigned int> elf;
    ASSERT_EQ(elf.readElfData(reinterpret_cast<const char*>(sound.data()), sound.size()), 0);
    std::ostringstream text;
    elf.dumpELFProgramHdr(text, 2);
    elf.dumpELFSectionHdr(text, 5);
    EXPECT_EQ(text.str(), "");
}

} // namespace

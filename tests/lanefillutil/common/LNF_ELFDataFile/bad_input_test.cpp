// bad_input_test.cpp - ELF files that are cut, spoilt or made to harm: data, or status 2 and what is wrong.
// SPDX-License-Identifier: Apache-2.0
#include "elf_test.h"

#include "SystemUtils/memory.h"

#include <gmock/gmock.h>
#include <random>

namespace {

using namespace memdata;
using namespace memdata::testing;
using ::testing::StartsWith;

struct Shape {
    unsigned bits;
    bool isBigEndian;
};
constexpr Shape kSHAPES[] = {{32, false}, {32, true}, {64, false}, {64, true}};

// Two loadable segments, one of notes, a section of symbols and one of bss.
Bytes soundFile(const Shape& shape) {
    return elfFile({.bits = shape.bits,
        .isBigEndian = shape.isBigEndian,
        .entry = 0x1000,
        .segments = {{.address = 0x1000, .bytes = {1, 2, 3, 4}},
            {.address = 0x2000, .bytes = {5, 6}, .bssBytes = 8, .virtualAddress = 0x8000, .section = ".data"},
            {.address = 0x3000, .bytes = {7}, .section = ".note", .type = 4}},
        .sections = {{.name = ".symtab", .bytes = Bytes(32, 9), .type = 2}, {.name = ".bss", .type = 8, .size = 64}}});
}

class BadElf : public ElfTest {
protected:
    // The bytes stand in memory of their exact size, so that a sanitizer sees every read behind them. Everything that
    // can be asked is asked. The status, 0 or 2; 99 when what was said, or not said, does not go with it.
    int readAll(const Bytes& bytes) {
        fileIODescriptor* source = nullptr;
        char nothing = 0;
        char* exact = bytes.empty() ? &nothing : static_cast<char*>(getMemory("a test's bytes", bytes.size()));
        std::copy(bytes.begin(), bytes.end(), exact);
        OpenMemoryFile("mem.elf", kBINARY_READ_WHOLE, bytes.empty() ? nullptr : exact, bytes.size(), &source);
        elf = std::make_unique<LNF_ELFDataFile>();
        int status = elf->OpenDataFile(source);
        Close_File(&source);
        if (!bytes.empty()) releaseMemory(exact);
        const std::string text = alerts.take();
        const bool isExplained = text.find("Data file 'mem.elf' cannot be read as an ELF file: ") != text.npos;
        if (isExplained != (status == 2) || (!isExplained && !text.empty())) return 99;
        if (status == 0) askAll();
        return status;
    }

    u64 sum = 0; // keeps the reads

private:
    void askAll() {
        unsigned long low = 0;
        unsigned long high = 0;
        EXPECT_EQ(elf->GetProgramSectionAddressRange(&low, &high), 0);
        for (unsigned long i = 0; i < elf->GetProgramSectionCount(); ++i) {
            DataFileSectionTypeX<unsigned long> section{};
            EXPECT_EQ(elf->GetProgramSectionData(i, &section), 0);
            if (section.size == 0) continue;
            for (u64 at = 0; at < section.size; ++at) sum += section.data[at];
            EXPECT_GE(section.address, low);
            EXPECT_LE(section.address + (section.size - 1), high);
        }
        for (unsigned long i = 0; i < elf->GetSectionCount(); ++i) {
            DataFileSectionTypeX<unsigned long> section{};
            EXPECT_EQ(elf->GetSectionData(i, &section), 0);
            for (u64 at = 0; at < section.size; ++at) sum += section.data[at];
            sum += std::string(elf->GetSectionName(i)).size();
        }
        fileIODescriptor* out = nullptr;
        ASSERT_EQ(OpenMemoryFile("dump", kTEXT_WRITE, nullptr, 0, &out), 0);
        EXPECT_EQ(elf->DumpELF(out, kDUMP_ELF_HEADERS), 0);
        EXPECT_EQ(elf->DumpELFAsMEM(out, 0), 0);
        EXPECT_EQ(Close_File(&out), 0);
    }
};

TEST_F(BadElf, AHeaderOneByteShortIsRefusedAndAWholeOneReachesTheReader) {
    for (const Shape& shape : kSHAPES) {
        const u64 whole = shape.bits == 64 ? 64 : 52;
        const Bytes file = elfFile({.bits = shape.bits, .isBigEndian = shape.isBigEndian, .hasSections = false});
        ASSERT_EQ(file.size(), whole);
        EXPECT_EQ(open(cut_at(file, whole - 1)), 2);
        EXPECT_EQ(said(), refusal(formatted("it ends inside its header, after %lld of %lld bytes", whole - 1, whole)));
        EXPECT_EQ(elf->getAddressWidth(), 0u);
        EXPECT_EQ(open(file), 0);
        EXPECT_EQ(elf->getAddressWidth(), shape.bits / 32);
    }
}

TEST_F(BadElf, AFileWithoutAByteForItsClassIsRefused) {
    EXPECT_EQ(open(""), 2);
    EXPECT_EQ(said(), refusal("it has only 0 bytes"));
    EXPECT_EQ(open("\x7F"
                   "ELF"),
        2);
    EXPECT_EQ(said(), refusal("it has only 4 bytes"));
}

struct IdentCase {
    size_t offset;
    u8 value;
    const char* reason;
};
constexpr IdentCase kIDENTS[] = {
    {0, 0, "it does not begin as an ELF file does"},
    {3, 'X', "it does not begin as an ELF file does"},
    {4, 0, "its class 0 is unknown"},
    {4, 3, "its class 3 is unknown"},
    {4, 255, "its class 255 is unknown"},
    {5, 0, "its byte order 0 is unknown"},
    {5, 200, "its byte order 200 is unknown"},
    {6, 0, "its version 0 is unknown"},
    {6, 255, "its version 255 is unknown"},
};

TEST_F(BadElf, AnIdentificationThatIsUnknownIsRefused) {
    for (const IdentCase& c : kIDENTS) {
        Bytes file = soundFile(kSHAPES[0]);
        file[c.offset] = c.value;
        EXPECT_EQ(open(file), 2);
        EXPECT_EQ(said(), refusal(c.reason));
        EXPECT_EQ(elf->GetProgramSectionCount(), 0u);
    }
}

struct FieldCase {
    const char* field;
    u64 value;
    size_t index;
    const char* reason;
};
// The file has 3 program headers at 0x34, 7 section headers at 0xE8.
constexpr FieldCase kFIELDS[] = {
    {"e_phentsize", 31, 0, "its program headers have 31 bytes each, not 32"},
    {"e_phoff", 0, 0, "its header names 3 program headers, but no place for them"},
    {"e_phoff", 0xFFFFFFFF, 0, "its 3 program headers at offset 0xFFFFFFFF run past its end"},
    {"e_phnum", 60000, 0, "its 60000 program headers at offset 0x34 run past its end"},
    {"e_shentsize", 0, 0, "its section headers have 0 bytes each, not 40"},
    {"e_shoff", 0, 0, "its header names 7 section headers, but no place for them"},
    {"e_shoff", 0xFFFFFFF0, 0, "its section headers at offset 0xFFFFFFF0 lie behind its end"},
    {"e_shnum", 8, 0, "its 8 section headers at offset 0xE8 run past its end"},
    {"p_offset", 0xFFFFFFFF, 0, "segment 0, 0x4 bytes at offset 0xFFFFFFFF, runs past its end"},
    {"p_filesz", 0xFFFFFFFF, 1, "segment 1, 0xFFFFFFFF bytes at offset 0x98, runs past its end"},
    {"p_paddr", 0xFFFFFFFD, 0,
        "segment 0, 0x4 bytes at offset 0x94, has the address 0xFFFFFFFD and runs past 0xFFFFFFFF"},
    {"sh_offset", 0xFFFFFFFF, 1, "section 1, 0x4 bytes at offset 0xFFFFFFFF, runs past its end"},
    {"sh_size", 0x1000, 2, "section 2, 0x1000 bytes at offset 0x98, runs past its end"},
};

TEST_F(BadElf, WhatAHeaderClaimsBeyondTheFileIsRefusedAndNamed) {
    for (const FieldCase& c : kFIELDS) {
        EXPECT_EQ(open(setElfField(soundFile(kSHAPES[0]), c.field, c.value, c.index)), 2) << c.field;
        EXPECT_EQ(said(), refusal(c.reason));
    }
}

TEST_F(BadElf, AWideSegmentThatWrapsTheAddressSpaceIsRefused) {
    EXPECT_EQ(open({.bits = 64, .segments = {{.address = ~u64{0} - 2, .bytes = {1, 2, 3, 4}}}}), 2);
    EXPECT_EQ(said(), refusal("segment 0, 0x4 bytes at offset 0x78, has the address 0xFFFFFFFFFFFFFFFD and runs past "
                              "0xFFFFFFFFFFFFFFFF"));
}

TEST_F(BadElf, EveryFieldOfEveryHeaderMayHoldAnything) {
    std::mt19937_64 random(7);
    for (const Shape& shape : kSHAPES) {
        const Bytes sound = soundFile(shape);
        ASSERT_EQ(readAll(sound), 0);
        u64 refused = 0;
        for (const ElfField& field : elfFields()) {
            const std::string name = field.name;
            const u64 headers = name.starts_with("p_") ? 3 : name.starts_with("sh_") ? 7 : 1;
            const unsigned bits = static_cast<unsigned>(8 * field.bytes[shape.bits == 64 ? 1 : 0]);
            const u64 top = u64{1} << (bits - 1);
            for (u64 index = 0; index < headers; ++index) {
                for (const u64 value : {u64{0}, u64{1}, ~u64{0}, top, top - 1, ~u64{15}, random(),
                         random() % sound.size(), random() % 256}) {
                    const int status = readAll(setElfField(sound, name, value, index));
                    EXPECT_TRUE(status == 0 || status == 2) << name << " " << index << " " << value << ": " << status;
                    refused += status == 2 ? 1 : 0;
                }
            }
        }
        EXPECT_GT(refused, 100u);
    }
}

TEST_F(BadElf, SeveralFieldsAtOnceMayHoldAnything) {
    std::mt19937_64 random(11);
    for (const Shape& shape : kSHAPES) {
        const Bytes sound = soundFile(shape);
        for (int run = 0; run < 400; ++run) {
            Bytes file = sound;
            for (int i = 0; i < 4; ++i) {
                const ElfField& field = elfFields()[random() % elfFields().size()];
                const std::string name = field.name;
                const u64 headers = name.starts_with("p_") ? 3 : name.starts_with("sh_") ? 7 : 1;
                const size_t offset = elfOffset(sound, name, random() % headers);
                for (size_t byte = 0; byte < field.bytes[shape.bits == 64 ? 1 : 0]; ++byte)
                    if (random() % 2 == 0) file[offset + byte] = static_cast<u8>(random());
            }
            const int status = readAll(file);
            EXPECT_TRUE(status == 0 || status == 2) << run << ": " << status;
        }
    }
}

TEST_F(BadElf, AFileThatIsCutAnywhereIsRefused) {
    for (const Shape& shape : kSHAPES) {
        const Bytes sound = soundFile(shape); // its section headers come last
        for (size_t count = 0; count < sound.size(); ++count) EXPECT_EQ(readAll(cut_at(sound, count)), 2) << count;
    }
}

TEST_F(BadElf, AFileThatIsCutBehindItsHeadersIsReadAsFarAsNoneIsMissing) {
    Bytes sound = elfFile({.segments = {{.address = 0, .bytes = {1, 2}}}, .hasSections = false});
    const size_t whole = sound.size();
    sound.resize(whole + 10);
    for (size_t count = 0; count <= sound.size(); ++count)
        EXPECT_EQ(readAll(cut_at(sound, count)), count < whole ? 2 : 0) << count;
}

TEST_F(BadElf, SegmentsThatOverlapAreEachReadWhole) {
    Bytes file = elfFile({.segments = {{.address = 0x10, .bytes = {1, 2, 3}}, {.address = 0x11, .bytes = {4}}}});
    file = setElfField(setElfField(file, "p_offset", elfField(file, "p_offset", 0) + 1, 1), "p_filesz", 2, 1);
    ASSERT_EQ(open(file), 0);
    EXPECT_EQ(programSections(), "0x10: 01 02 03 | 0x11: 02 03");
}

// A file of 84 bytes and more: header, count program headers over the same bytes, no sections.
Bytes manySegments(u64 count, u64 dataBytes) {
    Bytes file = elfFile({.segments = {{.address = 0x1000, .bytes = {1}, .section = ""}}, .hasSections = false});
    const Bytes record(file.begin() + 52, file.begin() + 84);
    file.resize(52);
    for (u64 i = 0; i < count; ++i) file.insert(file.end(), record.begin(), record.end());
    const u64 offset = file.size();
    file.resize(offset + dataBytes);
    for (u64 i = 0; i < count; ++i) {
        file = setElfField(std::move(file), "p_offset", offset, i);
        file = setElfField(std::move(file), "p_filesz", dataBytes, i);
    }
    return setElfField(std::move(file), "e_phnum", count);
}

TEST_F(BadElf, SegmentsMayHoldSixteenTimesTheFileAndNoMore) {
    // 52 + 32 * n + d bytes hold n * d: 32 segments of 1076 bytes in 2152 make 16 times.
    const Bytes most = manySegments(32, 1076);
    ASSERT_EQ(most.size() * 16, 32u * 1076u);
    EXPECT_EQ(open(most), 0);
    EXPECT_EQ(open(cut_at(setElfField(most, "p_filesz", 1075), most.size())), 0);
    EXPECT_EQ(open(manySegments(32, 1078)), 2);
    EXPECT_EQ(said(), refusal("its segments hold more than 16 times its bytes: they overlap"));
}

TEST_F(BadElf, ManySegmentsAreReadInLittleMemory) {
    Bytes file = manySegments(65534, 1);
    const u64 before = getCurrentMemoryUsage();
    ASSERT_EQ(open(file), 0);
    EXPECT_EQ(elf->GetProgramSectionCount(), 65534u);
    EXPECT_LT(getMaxMemoryUsage() - before, 2 * file.size());
}

TEST_F(BadElf, TheNumber65535StandsForACountInSectionZero) {
    // Without sections it is the number itself.
    EXPECT_EQ(open(manySegments(65535, 1)), 0);
    EXPECT_EQ(elf->GetProgramSectionCount(), 65535u);
    for (const Shape& shape : kSHAPES) {
        Bytes file = soundFile(shape);
        file = setElfField(setElfField(file, "e_phnum", 65535), "sh_info", 3, 0);
        EXPECT_EQ(open(file), 0);
        EXPECT_EQ(programSections(), "0x1000: 01 02 03 04 | 0x2000: 05 06");
        EXPECT_EQ(open(setElfField(file, "sh_info", 70000, 0)), 2);
        EXPECT_THAT(said(), StartsWith("ERROR:Lanefill:86 - Data file 'a.elf' cannot be read as an ELF file: its 70000 "
                                       "program headers at offset"));
    }
}

TEST_F(BadElf, ACountOfSectionsInSectionZeroIsTaken) {
    for (const Shape& shape : kSHAPES) {
        Bytes file = setElfField(soundFile(shape), "e_shnum", 0);
        EXPECT_EQ(open(setElfField(file, "sh_size", 7, 0)), 0);
        EXPECT_EQ(elf->GetSectionCount(), 7u);
        file = setElfField(setElfField(setElfField(file, "sh_size", 7, 0), "e_shstrndx", 0xFFFF), "sh_link", 6, 0);
        EXPECT_EQ(open(file), 0);
        EXPECT_STREQ(elf->GetSectionName(1), ".text");
        for (const u64 count : {u64{8}, u64{0xFFFFFF}, ~u64{0}})
            EXPECT_EQ(readAll(setElfField(file, "sh_size", count, 0)), 2);
    }
}

TEST_F(BadElf, NamesThatAreNotInTheirTableAreEmpty) {
    const Bytes sound = soundFile(kSHAPES[0]);
    ASSERT_EQ(open(setElfField(sound, "sh_name", 0x7FFFFFFF, 1)), 0);
    EXPECT_STREQ(elf->GetSectionName(1), "");
    ASSERT_EQ(open(setElfField(sound, "e_shstrndx", 200)), 0);
    EXPECT_STREQ(elf->GetSectionName(1), "");
    // A table that ends inside its last name.
    ASSERT_EQ(open(setElfField(sound, "sh_size", elfField(sound, "sh_size", 6) - 1, 6)), 0);
    EXPECT_STREQ(elf->GetSectionName(1), ".text");
    EXPECT_STREQ(elf->GetSectionName(6), "");
}

TEST_F(BadElf, AnythingElseIsNoElfFile) {
    std::mt19937 random(3);
    for (size_t count = 0; count < 300; ++count) {
        Bytes noise(count);
        for (u8& byte : noise) byte = static_cast<u8>(random());
        EXPECT_EQ(readAll(noise), 2) << count;
    }
    EXPECT_EQ(open("@00000000 12 34 56 78\n"), 2);
    EXPECT_EQ(said(), refusal("it does not begin as an ELF file does"));
}

} // namespace

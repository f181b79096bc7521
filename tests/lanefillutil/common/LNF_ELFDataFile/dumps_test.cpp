// dumps_test.cpp - ELF files as listings of their headers and as MEM texts.
// SPDX-License-Identifier: Apache-2.0
#include "elf_test.h"

#include "ListingUtils/ListingUtils.h"
#include "MemUtils/MemUtils.h"
#include "support/allocation_faults.h"

#include <gmock/gmock.h>

namespace {

using namespace memdata;
using namespace memdata::testing;
using ::testing::EndsWith;
using ::testing::HasSubstr;

class ElfDump : public ElfTest {
protected:
    template<class Write>
    std::string written(Write write) {
        const std::string name = folder.file("out.txt");
        fileIODescriptor* out = nullptr;
        EXPECT_EQ(Open_File(name.c_str(), kTEXT_WRITE, &out), 0);
        EXPECT_EQ(write(out), 0);
        EXPECT_EQ(Close_File(&out), 0);
        std::string text = readFile(name);
        for (size_t at; (at = text.find(folder.path().string() + "/")) != text.npos;)
            text.erase(at, folder.path().string().size() + 1);
        return text;
    }
    std::string listing(u32 mask) {
        return written([&](fileIODescriptor* out) { return elf->DumpELF(out, mask); });
    }
    std::string memText() {
        return written([&](fileIODescriptor* out) { return elf->DumpELFAsMEM(out, 0); });
    }
    // Without the head, which holds a version.
    std::string memRecords() {
        const std::string text = memText();
        const std::string name = "//     a.elf\n";
        const size_t at = text.find(name);
        return at == text.npos ? "no head: " + text : text.substr(at + name.size());
    }
};

const ElfFile kONE_SEGMENT = {.entry = 0x1004, .segments = {{.address = 0x1000, .bytes = {1, 2, 3}, .bssBytes = 5}}};

TEST_F(ElfDump, WithoutTheHeaderBitIsABannerWithTheNameOfTheFile) {
    ASSERT_EQ(open(kONE_SEGMENT), 0);
    for (const u32 mask : {0u, ~4u}) {
        const std::string text = listing(mask);
        EXPECT_THAT(text, HasSubstr("\n\nLanefill ELF file dump.\n\nFile = \"a.elf\".\n\n"));
        EXPECT_THAT(text, EndsWith("File = \"a.elf\".\n\n\n"));
    }
}

TEST_F(ElfDump, WithTheHeaderBitShowsEveryHeaderInClearText) {
    ASSERT_EQ(open(kONE_SEGMENT), 0);
    const std::string text = listing(4);
    EXPECT_EQ(text.substr(std::min(text.size(), text.find("ELF header"))),
        "ELF header\n"
        "  Class             32-bit\n"
        "  Byte order        little-endian\n"
        "  System interface  0\n"
        "  Type              2, executable\n"
        "  Machine           243, RISC-V\n"
        "  Flags             0x0\n"
        "  Entry             0x1004\n"
        "  Program headers   1 of 32 bytes at offset 0x34\n"
        "  Section headers   3 of 40 bytes at offset 0x68\n"
        "  Section names     section 2\n"
        "\n"
        "Program header 0\n"
        "  Type              1, loadable\n"
        "  Flags             0x5, read execute\n"
        "  Offset            0x54\n"
        "  Virtual address   0x1000\n"
        "  Physical address  0x1000\n"
        "  Size in file      0x3\n"
        "  Size in memory    0x8\n"
        "  Alignment         0x4\n"
        "\n"
        "Section header 0\n"
        "  Name              \"\"\n"
        "  Type              0, unused\n"
        "  Flags             0x0\n"
        "  Address           0x0\n"
        "  Offset            0x0\n"
        "  Size              0x0\n"
        "  Link              0\n"
        "  Information       0\n"
        "  Alignment         0x0\n"
        "  Size of an entry  0x0\n"
        "\n"
        "Section header 1\n"
        "  Name              \".text\"\n"
        "  Type              1, contents\n"
        "  Flags             0x6, allocated execute\n"
        "  Address           0x1000\n"
        "  Offset            0x54\n"
        "  Size              0x3\n"
        "  Link              0\n"
        "  Information       0\n"
        "  Alignment         0x1\n"
        "  Size of an entry  0x0\n"
        "\n"
        "Section header 2\n"
        "  Name              \".shstrtab\"\n"
        "  Type              3, strings\n"
        "  Flags             0x0\n"
        "  Address           0x0\n"
        "  Offset            0x57\n"
        "  Size              0x11\n"
        "  Link              0\n"
        "  Information       0\n"
        "  Alignment         0x1\n"
        "  Size of an entry  0x0\n");
}

TEST_F(ElfDump, NumbersWithoutANameAreShownAsTheyAre) {
    ASSERT_EQ(open({.bits = 64,
                  .isBigEndian = true,
                  .type = 0xFE00,
                  .machine = 9999,
                  .segments = {{.address = 1, .bytes = {1}, .type = 0x70000003}}}),
        0);
    const std::string text = listing(4);
    EXPECT_THAT(text, HasSubstr("\n  Class             64-bit\n  Byte order        big-endian\n"));
    EXPECT_THAT(text, HasSubstr("\n  Type              65024\n  Machine           9999\n"));
    EXPECT_THAT(text, HasSubstr("\nProgram header 0\n  Type              1879048195\n"));
}

TEST_F(ElfDump, AFileWithoutHeadersSaysSo) {
    ASSERT_EQ(open(ElfFile{.hasSections = false}), 0);
    EXPECT_THAT(listing(4), EndsWith("\n"
                                     "  Program headers   none\n"
                                     "  Section headers   none\n"
                                     "  Section names     none\n"));
}

TEST_F(ElfDump, NamesStayOnTheirLine) {
    ASSERT_EQ(open({.sections = {{.name = "a\nb\x1B\xC3\xBC"}, {.name = std::string(300, 'x')}}}), 0);
    const std::string text = listing(4);
    EXPECT_THAT(text, HasSubstr("\n  Name              \"a?b???\"\n"));
    EXPECT_THAT(text, HasSubstr("\n  Name              \"" + std::string(256, 'x') + "...\"\n"));
}

TEST_F(ElfDump, AMemTextBeginsWithItsKindTheVersionAndTheName) {
    ASSERT_EQ(open(ElfFile{}), 0);
    const std::string text = memText();
    EXPECT_EQ(text, "// MEM file.\n//\n" + written([](fileIODescriptor* out) {
        return OutputVersionHeader(out, "//", nullptr);
    }) + "//     a.elf\n");
}

TEST_F(ElfDump, AMemTextHasARecordForEachProgramSection) {
    ASSERT_EQ(open({.segments = {{.address = 0x1000, .bytes = {1, 0xAB, 3}}, {.address = 0x20, .bytes = {0xFF}}}}), 0);
    EXPECT_EQ(memRecords(), "\n\n// Program header record #0, Size = 0x3, at 0x00001000 to 0x00001002.\n\n"
                            "@00001000\n"
                            "    01 AB 03\n"
                            "\n\n// Program header record #1, Size = 0x1, at 0x00000020 to 0x00000020.\n\n"
                            "@00000020\n"
                            "    FF\n");
}

TEST_F(ElfDump, ASectionOfSizeZeroIsNotInTheMemTextAndItsNumberIsPassedOver) {
    ASSERT_EQ(open({.segments = {{.address = 0x10, .bytes = {1}}, {.address = 0x20, .bssBytes = 8, .section = ""},
                        {.address = 0x30, .bytes = {2}}}}),
        0);
    EXPECT_EQ(memRecords(), "\n\n// Program header record #0, Size = 0x1, at 0x00000010 to 0x00000010.\n\n"
                            "@00000010\n"
                            "    01\n"
                            "\n\n// Program header record #2, Size = 0x1, at 0x00000030 to 0x00000030.\n\n"
                            "@00000030\n"
                            "    02\n");
}

TEST_F(ElfDump, ALineOfAMemTextHas32Bytes) {
    std::string line = "   ";
    for (int i = 0; i < 32; ++i) line += " 5A";
    for (const size_t count : {31u, 32u, 33u, 64u}) {
        ASSERT_EQ(open({.segments = {{.address = 0, .bytes = Bytes(count, 0x5A)}}}), 0);
        std::string expected;
        for (size_t left = count; left > 0; left -= std::min<size_t>(left, 32))
            expected += line.substr(0, 3 + 3 * std::min<size_t>(left, 32)) + "\n";
        const std::string text = memRecords();
        EXPECT_EQ(text.substr(text.find("@00000000\n") + 10), expected) << count;
    }
}

TEST_F(ElfDump, AMemTextOfManyBlocksHoldsEveryByteInOrder) {
    Bytes bytes(100001);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<u8>(i * 7 + i / 256);
    ASSERT_EQ(open({.segments = {{.address = 0, .bytes = bytes}}}), 0);
    const std::string text = memRecords();
    std::istringstream in(text.substr(text.find("@00000000\n") + 10));
    Bytes read;
    for (std::string word; in >> word;) read.push_back(static_cast<u8>(std::stoul(word, nullptr, 16)));
    EXPECT_EQ(read, bytes);
}

TEST_F(ElfDump, AWideFileHasEightDigitsForAddressesThatFitAndAllForOthers) {
    ASSERT_EQ(open({.bits = 64,
                  .segments = {{.address = 0x80000000, .bytes = {1}}, {.address = 0x123456789A, .bytes = {2}}}}),
        0);
    const std::string text = memRecords();
    EXPECT_THAT(text, HasSubstr("at 0x80000000 to 0x80000000.\n\n@80000000\n    01\n"));
    EXPECT_THAT(text, HasSubstr("at 0x123456789A to 0x123456789A.\n\n@123456789A\n    02\n"));
}

TEST_F(ElfDump, AMemTextReadsBackAsTheSameSections) {
    Bytes bytes(1000);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<u8>(i * 7);
    ASSERT_EQ(open({.bits = 64,
                  .segments = {{.address = 0x80000001, .bytes = bytes}, {.address = 0x20, .bytes = {0xFF, 0}}}}),
        0);
    const std::string name = folder.write("back.mem", memText());
    fileSpecType* spec = CreateFileSpec(name.c_str());
    LNF_MEMDataFile back(16);
    EXPECT_EQ(back.OpenDataFile(spec, nullptr, 1), 0);
    ASSERT_EQ(back.GetProgramSectionCount(), elf->GetProgramSectionCount());
    for (unsigned long i = 0; i < 2; ++i) {
        DataFileSectionTypeX<unsigned long> section{};
        DataFileSectionTypeX<unsigned long> read{};
        EXPECT_EQ(elf->GetProgramSectionData(i, &section), 0);
        EXPECT_EQ(back.GetProgramSectionData(i, &read), 0);
        EXPECT_EQ(read.address, section.address);
        EXPECT_EQ(hexText(read.data, read.size), hexText(section.data, section.size));
    }
    DeleteFileSpec(&spec);
}

TEST_F(ElfDump, AnOutputThatIsNotOpenGivesItsStatus) {
    ASSERT_EQ(open(kONE_SEGMENT), 0);
    fileIODescriptor* input = nullptr;
    ASSERT_EQ(Open_File(folder.file("a.elf").c_str(), kBINARY_READ_WHOLE, &input), 0);
    EXPECT_EQ(elf->DumpELF(input, 4), -1);
    EXPECT_EQ(elf->DumpELFAsMEM(input, 4), -1);
    Close_File(&input);
}

TEST(ElfDumpAllocations, EachFailureEndsWithAStatusAndNoByteInUse) {
    const TemporaryFolder folder;
    const std::string name = folder.write("a.elf", textOf(elfFile(kONE_SEGMENT)));
    const FaultSweep sweep = sweepAllocationFaults([&] {
        fileSpecType* spec = CreateFileSpec(name.c_str());
        if (spec == nullptr) return 7;
        int status = 0;
        {
            LNF_ELFDataFile elf;
            fileIODescriptor* out = nullptr;
            status = elf.OpenDataFile(spec, nullptr, 1);
            if (status == 0) status = Open_File(folder.file("out.txt").c_str(), kTEXT_WRITE, &out);
            if (status == 0) status = elf.DumpELF(out, 4);
            if (status == 0) status = elf.DumpELFAsMEM(out, 4);
            if (status == 0) status = Close_File(&out);
            abandonFile(&out);
        }
        DeleteFileSpec(&spec);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GE(sweep.faultCount, 8u);
}

} // namespace

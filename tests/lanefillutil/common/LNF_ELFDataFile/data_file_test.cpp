// data_file_test.cpp - sound ELF files: what of them is data, where it goes, what else they tell.
// SPDX-License-Identifier: Apache-2.0
#include "elf_test.h"

#include "support/allocation_faults.h"
#include "support/gzip.h"

#include <fstream>
#include <sys/stat.h>
#include <thread>

namespace {

using namespace memdata;
using namespace memdata::testing;

struct Shape {
    unsigned bits;
    bool isBigEndian;
};
constexpr Shape kSHAPES[] = {{32, false}, {32, true}, {64, false}, {64, true}};

const ElfFile kTWO_SEGMENTS = {
    .entry = 0x1004, .segments = {{.address = 0x1000, .bytes = {1, 2, 3}}, {.address = 0x2000, .bytes = {4}}}};

class ElfDataFile : public ElfTest {};

TEST_F(ElfDataFile, AFileThatIsCutShortAfterItsOpeningIsChanged) {
    ASSERT_EQ(open(ElfFile{.segments = {{.address = 0x1000, .bytes = {1, 2, 3}}}}), 0);
    EXPECT_EQ(elf->CheckUnchanged(), 0);
    EXPECT_EQ(said(), "");
    std::filesystem::resize_file(folder.file("a.elf"), 60);
    EXPECT_EQ(elf->CheckUnchanged(), 2);
    EXPECT_EQ(said(), refusal("it was changed or cut short while it was read"));
}

TEST_F(ElfDataFile, SegmentsComeWithAddressAndBytesInEveryClassAndByteOrder) {
    for (const Shape& shape : kSHAPES) {
        ElfFile file = kTWO_SEGMENTS;
        file.bits = shape.bits;
        file.isBigEndian = shape.isBigEndian;
        ASSERT_EQ(open(file), 0) << shape.bits << shape.isBigEndian;
        EXPECT_EQ(programSections(), "0x1000: 01 02 03 | 0x2000: 04") << shape.bits << shape.isBigEndian;
        EXPECT_EQ(elf->getAddressWidth(), shape.bits / 32);
        EXPECT_EQ(elf->GetDataFileStatupAddress()->address, 0x1004u);
    }
    EXPECT_EQ(said(), "");
}

TEST_F(ElfDataFile, AFileThatIsNotOpenHasNothing) {
    elf = std::make_unique<LNF_ELFDataFile>();
    unsigned long low = 7;
    unsigned long high = 7;
    DataFileSectionTypeX<unsigned long> section{};
    EXPECT_EQ(elf->getAddressWidth(), 0u);
    EXPECT_EQ(elf->GetProgramSectionCount(), 0u);
    EXPECT_EQ(elf->GetProgramSectionData(0, &section), 3);
    EXPECT_EQ(elf->GetSectionCount(), 0u);
    EXPECT_EQ(elf->GetSectionData(0, &section), 3);
    EXPECT_EQ(elf->GetSectionName(0), nullptr);
    EXPECT_EQ(elf->GetDataFileStatupAddress(), nullptr);
    EXPECT_EQ(elf->GetProgramSectionAddressRange(&low, &high), 3);
    EXPECT_EQ(elf->IsMatchingProcessorType(1), 0);
    EXPECT_STREQ(elf->GetDataFileName(), "");
    EXPECT_STREQ(elf->GetDataFileExtension(), "");
    EXPECT_EQ(elf->DumpELF(&StandardOut, 4), 3);
    EXPECT_EQ(elf->DumpELFAsMEM(&StandardOut, 4), 3);
}

TEST_F(ElfDataFile, TheNameIsThatOfTheSpec) {
    ASSERT_EQ(open(kTWO_SEGMENTS), 0);
    EXPECT_EQ(elf->GetDataFileName(), folder.file("a.elf"));
    EXPECT_STREQ(elf->GetDataFileExtension(), "elf");
}

TEST_F(ElfDataFile, ThePhysicalAddressCountsAndNotTheVirtualOne) {
    ASSERT_EQ(open({.segments = {{.address = 0x100, .bytes = {1}, .virtualAddress = 0x8000},
                        {.address = 0, .bytes = {2}, .virtualAddress = 0x9000}}}),
        0);
    EXPECT_EQ(programSections(), "0x100: 01 | 0x0: 02");
}

TEST_F(ElfDataFile, VirtualAddressesCountWhenAllPhysicalOnesAreZero) {
    ASSERT_EQ(open({.segments = {{.address = 0, .bytes = {1}, .virtualAddress = 0x8000},
                        {.address = 0, .bytes = {2}, .virtualAddress = 0x9000}}}),
        0);
    EXPECT_EQ(programSections(), "0x8000: 01 | 0x9000: 02");
}

TEST_F(ElfDataFile, PhysicalAddressesOfSegmentsThatAreNotLoadedDoNotCount) {
    ASSERT_EQ(open({.segments = {{.address = 0, .bytes = {1}, .virtualAddress = 0x8000},
                        {.address = 0x77, .bytes = {2}, .section = "", .type = 4}}}),
        0);
    EXPECT_EQ(programSections(), "0x8000: 01");
}

TEST_F(ElfDataFile, OnlyLoadableSegmentsAreProgramSections) {
    ASSERT_EQ(open({.segments = {{.address = 1, .bytes = {9}, .section = "", .type = 4}, {.address = 2, .bytes = {8}},
                        {.address = 3, .bytes = {7}, .section = "", .type = 0x70000003}}}),
        0);
    EXPECT_EQ(programSections(), "0x2: 08");
}

TEST_F(ElfDataFile, MemoryBeyondTheFileSizeIsNoData) {
    ASSERT_EQ(open({.segments = {{.address = 0x10, .bytes = {1, 2}, .bssBytes = 0x10000}}}), 0);
    EXPECT_EQ(programSections(), "0x10: 01 02");
    unsigned long low = 0;
    unsigned long high = 0;
    EXPECT_EQ(elf->GetProgramSectionAddressRange(&low, &high), 0);
    EXPECT_EQ(high, 0x11u);
}

TEST_F(ElfDataFile, ASegmentOfBssAloneIsAProgramSectionOfSizeZero) {
    ASSERT_EQ(open({.segments = {{.address = 0x10, .bssBytes = 64, .section = ""}, {.address = 4, .bytes = {1}}}}), 0);
    EXPECT_EQ(programSections(), "0x10: | 0x4: 01");
}

TEST_F(ElfDataFile, HeadersAheadOfTheFirstSectionAreNoData) {
    for (const Shape& shape : kSHAPES) {
        ASSERT_EQ(open({.bits = shape.bits,
                      .isBigEndian = shape.isBigEndian,
                      .segments = {{.address = 0x1100, .bytes = {1, 2, 3}, .headerRoom = 0x100}}}),
            0);
        EXPECT_EQ(programSections(), "0x1100: 01 02 03");
    }
}

TEST_F(ElfDataFile, WithoutSectionsExactlyTheHeadersAreNoData) {
    const u64 headers = 52 + 32;
    ASSERT_EQ(open({.segments = {{.address = 0x1000 + headers + 2, .bytes = {7}, .headerRoom = headers + 2}},
                  .hasSections = false}),
        0);
    EXPECT_EQ(programSections(), "0x1054: 00 00 07");
}

TEST_F(ElfDataFile, ASegmentThatHoldsOnlyHeadersHasNoData) {
    ASSERT_EQ(open({.segments = {{.address = 0x1054, .section = "", .headerRoom = 0x54}}}), 0);
    EXPECT_EQ(programSections(), "0x1000:");
}

TEST_F(ElfDataFile, ASegmentOfTheProgramHeadersBeginsBehindThemToo) {
    Bytes file = elfFile({.segments = {{.address = 0x1100, .bytes = {5}, .headerRoom = 0x100}}});
    file = setElfField(setElfField(setElfField(file, "p_offset", 52), "p_paddr", 0x1034), "p_filesz", 0x100 - 52 + 1);
    ASSERT_EQ(open(file), 0);
    EXPECT_EQ(programSections(), "0x1100: 05");
}

TEST_F(ElfDataFile, BytesAheadOfASectionAreDataWhereNoHeadersStand) {
    Bytes file = elfFile({.segments = {{.address = 0x10, .bytes = {1, 2, 3, 4}}}});
    file = setElfField(file, "sh_offset", elfField(file, "sh_offset", 1) + 2, 1);
    ASSERT_EQ(open(setElfField(file, "sh_size", 2, 1)), 0);
    EXPECT_EQ(programSections(), "0x10: 01 02 03 04");
}

TEST_F(ElfDataFile, TheAddressRangeSpansAllSegmentsWithData) {
    ASSERT_EQ(open({.segments = {{.address = 0x2000, .bytes = {1, 2}}, {.address = 0x1000, .bytes = {3}},
                        {.address = 0x10, .bssBytes = 4, .section = ""}}}),
        0);
    unsigned long low = 0;
    unsigned long high = 0;
    EXPECT_EQ(elf->GetProgramSectionAddressRange(&low, &high), 0);
    EXPECT_EQ(low, 0x1000u);
    EXPECT_EQ(high, 0x2001u);
}

TEST_F(ElfDataFile, TheLastAddressOfAClassCanHoldData) {
    ASSERT_EQ(open({.segments = {{.address = 0xFFFFFFFE, .bytes = {1, 2}}}}), 0);
    EXPECT_EQ(programSections(), "0xFFFFFFFE: 01 02");
    ASSERT_EQ(open({.bits = 64, .segments = {{.address = ~u64{0}, .bytes = {1}}}}), 0);
    EXPECT_EQ(programSections(), "0xFFFFFFFFFFFFFFFF: 01");
}

TEST_F(ElfDataFile, AnEntryOfZeroIsAnEntry) {
    ASSERT_EQ(open({.segments = {{.address = 0, .bytes = {1}}}}), 0);
    ASSERT_NE(elf->GetDataFileStatupAddress(), nullptr);
    EXPECT_EQ(elf->GetDataFileStatupAddress()->kind, kBOOT_FROM_FILE);
    EXPECT_EQ(elf->GetDataFileStatupAddress()->address, 0u);
}

TEST_F(ElfDataFile, AWideEntryKeepsAllItsBits) {
    ASSERT_EQ(open({.bits = 64, .entry = 0xFFFFFFFF80000000, .segments = {{.address = 0, .bytes = {1}}}}), 0);
    EXPECT_EQ(elf->GetDataFileStatupAddress()->address, 0xFFFFFFFF80000000u);
}

TEST_F(ElfDataFile, SectionsComeByIndexWithNameAddressAndBytes) {
    for (const Shape& shape : kSHAPES) {
        ElfFile file = kTWO_SEGMENTS;
        file.bits = shape.bits;
        file.isBigEndian = shape.isBigEndian;
        file.segments[1].section = ".data";
        file.sections = {
            {.name = ".comment", .bytes = {'h', 'i'}}, {.name = ".bss", .type = 8, .address = 0x3000, .size = 64}};
        ASSERT_EQ(open(file), 0);
        std::string text;
        for (unsigned long i = 0; i < elf->GetSectionCount(); ++i) {
            DataFileSectionTypeX<unsigned long> section{};
            EXPECT_EQ(elf->GetSectionData(i, &section), 0);
            text += formatted("%s %lld 0x%llX ", elf->GetSectionName(i), section.kind, section.address) +
                    (i == 5 ? "..." : hexText(section.data, section.size)) + "\n";
        }
        EXPECT_EQ(text, " 0 0x0 \n"
                        ".text 1 0x1000 01 02 03\n"
                        ".data 1 0x2000 04\n"
                        ".comment 1 0x0 68 69\n"
                        ".bss 8 0x3000 \n"
                        ".shstrtab 3 0x0 ...\n");
    }
}

TEST_F(ElfDataFile, IndexesThatDoNotExistAreRefused) {
    ASSERT_EQ(open(kTWO_SEGMENTS), 0);
    DataFileSectionTypeX<unsigned long> section{};
    EXPECT_EQ(elf->GetProgramSectionData(2, &section), 3);
    EXPECT_EQ(elf->GetSectionData(4, &section), 3);
    EXPECT_EQ(elf->GetSectionName(4), nullptr);
}

TEST_F(ElfDataFile, AFileWithoutSectionHeadersLoadsByItsSegments) {
    ElfFile file = kTWO_SEGMENTS;
    file.hasSections = false;
    ASSERT_EQ(open(file), 0);
    EXPECT_EQ(programSections(), "0x1000: 01 02 03 | 0x2000: 04");
    EXPECT_EQ(elf->GetSectionCount(), 0u);
}

struct MachineCase {
    u32 machine;
    unsigned long mask;
    int status;
};
// 1 PPC405, 2 KESTREL, 4 WRENLET, 8 PPC440, 16 KESTREL-LE, 32 ARM, 0x100 CONFIGPROM, 0x200 RISCV
constexpr MachineCase kMACHINES[] = {
    {40, 32, 0}, {40, 2, 23}, {40, 16, 23}, {40, 0x200, 23}, {40, 0, 23}, // ARM
    {189, 2, 0}, {189, 16, 0}, {189, 1, 23}, {189, 32, 23}, {189, 0, 23}, // the soft processor
    {3, 1, 0}, {3, 2, 0}, {3, 32, 0}, {3, 0, 0},                          // x86
    {243, 0x200, 0}, {243, 32, 0}, {20, 2, 0},                            // RISC-V, PowerPC
};

TEST_F(ElfDataFile, TwoMachinesPassOnlyForTheirProcessorsAllOthersForAny) {
    for (const Shape& shape : kSHAPES) {
        u32 openMachine = 0;
        for (const MachineCase& c : kMACHINES) {
            if (c.machine != openMachine) {
                ASSERT_EQ(open({.bits = shape.bits, .isBigEndian = shape.isBigEndian, .machine = c.machine}), 0);
            }
            openMachine = c.machine;
            EXPECT_EQ(elf->IsMatchingProcessorType(c.mask), c.status) << c.machine << " " << c.mask;
        }
    }
    EXPECT_EQ(said(), "");
}

TEST_F(ElfDataFile, APackedFileLoadsLikeAPlainOne) {
    const Bytes plain = elfFile(kTWO_SEGMENTS);
    ASSERT_EQ(open(gzipped(textOf(plain))), 0);
    EXPECT_EQ(programSections(), "0x1000: 01 02 03 | 0x2000: 04");
    EXPECT_STREQ(elf->GetSectionName(1), ".text");
}

TEST_F(ElfDataFile, APackedFileThatIsCutIsRefused) {
    const std::string packed = gzipped(textOf(elfFile(kTWO_SEGMENTS)));
    EXPECT_EQ(open(packed.substr(0, packed.size() - 9)), 2);
    EXPECT_EQ(said(), refusal("the packed data is damaged or ends early"));
    EXPECT_EQ(elf->GetProgramSectionCount(), 0u);
}

TEST_F(ElfDataFile, APipeIsReadToItsEnd) {
    const std::string name = folder.file("pipe.elf");
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    const Bytes contents = elfFile(kTWO_SEGMENTS);
    std::thread writer([&] { std::ofstream(name, std::ios::binary) << textOf(contents); });
    EXPECT_EQ(openFile(name), 0);
    writer.join();
    EXPECT_EQ(programSections(), "0x1000: 01 02 03 | 0x2000: 04");
}

TEST_F(ElfDataFile, AFileThatIsNotThereIsReported) {
    EXPECT_EQ(openFile(folder.file("none.elf")), 1);
    EXPECT_EQ(said(),
        "ERROR:Lanefill:1 - File 'none.elf' can not be found, or is busy. Please ensure that the file is available in "
        "the correct directory location, or isn't being locked by another application.");
    EXPECT_EQ(elf->getAddressWidth(), 0u);
}

TEST_F(ElfDataFile, ADirectoryIsReportedAsAFileThatDoesNotOpen) {
    EXPECT_EQ(openFile(folder.path().string()), 1);
}

TEST_F(ElfDataFile, AnObjectOpensSeveralFilesInTurn) {
    ASSERT_EQ(open(kTWO_SEGMENTS), 0);
    fileSpecType* spec = CreateFileSpec(
        folder.write("b.elf", textOf(elfFile({.bits = 64, .segments = {{.address = 5, .bytes = {6}}}}))).c_str());
    EXPECT_EQ(elf->OpenDataFile(spec, nullptr, 1), 0);
    EXPECT_EQ(programSections(), "0x5: 06");
    EXPECT_EQ(elf->getAddressWidth(), 2u);
    folder.write("b.elf", "");
    EXPECT_EQ(elf->OpenDataFile(spec, nullptr, 1), 2);
    EXPECT_EQ(elf->GetProgramSectionCount(), 0u);
    elf.reset();
    DeleteFileSpec(&spec);
}

class ElfOfADescriptor : public ElfTest {
protected:
    int openDescriptor(const Bytes& contents, u32 attributes = kBINARY_READ_WHOLE) {
        const std::string name = folder.write("d.elf", textOf(contents));
        fileIODescriptor* source = nullptr;
        if (int status = Open_File(name.c_str(), attributes, &source); status != 0) return 100 + status;
        elf = std::make_unique<LNF_ELFDataFile>();
        const int status = elf->OpenDataFile(source);
        Close_File(&source); // the reader has a copy
        return status;
    }
};

TEST_F(ElfOfADescriptor, ReadsACopyOfItsBytes) {
    ASSERT_EQ(openDescriptor(elfFile(kTWO_SEGMENTS)), 0);
    EXPECT_EQ(programSections(), "0x1000: 01 02 03 | 0x2000: 04");
    EXPECT_EQ(elf->GetDataFileName(), folder.file("d.elf"));
}

TEST_F(ElfOfADescriptor, RefusesWhatIsNoElfFile) {
    EXPECT_EQ(openDescriptor({1, 2, 3, 4}), 2);
    EXPECT_EQ(said(), refusal("it has only 4 bytes", "d.elf"));
}

TEST_F(ElfOfADescriptor, NeedsAFileThatIsOneBuffer) {
    LNF_ELFDataFile file;
    EXPECT_EQ(file.OpenDataFile(static_cast<fileIODescriptor*>(nullptr)), 3);
    Bytes large = elfFile(kTWO_SEGMENTS);
    large.resize(300000);
    EXPECT_EQ(openDescriptor(large, kREAD_ACCESS | kBINARY_FILE), 3);
}

TEST(ElfAllocations, EachFailureEndsWithAStatusAndNoByteInUse) {
    const TemporaryFolder folder;
    const std::string name = folder.write("a.elf", textOf(elfFile(kTWO_SEGMENTS)));
    const std::string packed =
        folder.write("b.elf", gzipped(textOf(elfFile({.bits = 64, .segments = {{.address = 5, .bytes = {6}}}}))));
    for (const std::string& file : {name, packed}) {
        const FaultSweep sweep = sweepAllocationFaults([&file] {
            fileSpecType* spec = CreateFileSpec(file.c_str());
            if (spec == nullptr) return 7;
            const std::unique_ptr<LNF_ELFDataFile> elf(new LNF_ELFDataFile);
            const int status = elf == nullptr ? 7 : elf->OpenDataFile(spec, nullptr, 1);
            DeleteFileSpec(&spec);
            return status;
        });
        EXPECT_EQ(sweep.failures, "");
        EXPECT_GE(sweep.faultCount, 5u);
    }
}

TEST(ElfAllocations, EachFailureWithADescriptorEndsWithAStatusAndNoByteInUse) {
    const TemporaryFolder folder;
    const std::string name = folder.write("a.elf", textOf(elfFile(kTWO_SEGMENTS)));
    const FaultSweep sweep = sweepAllocationFaults([&name] {
        fileIODescriptor* source = nullptr;
        int status = Open_File(name.c_str(), kBINARY_READ_WHOLE, &source);
        if (status != 0) return status;
        {
            LNF_ELFDataFile elf;
            status = elf.OpenDataFile(source);
        }
        Close_File(&source);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GE(sweep.faultCount, 4u);
}

} // namespace

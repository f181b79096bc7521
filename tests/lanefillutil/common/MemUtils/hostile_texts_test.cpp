// hostile_texts_test.cpp - texts that nobody writes: each gives data or an alert, in bounded memory.
// SPDX-License-Identifier: Apache-2.0
#include "mem_file_test.h"

#include "ParseUtils/limits.h"
#include "support/allocation_faults.h"
#include "support/parse.h"

#include <gmock/gmock.h>

#include <random>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;

constexpr u64 kSECTIONS = 1'000'000;

class HostileMemTexts : public MemFileTest {
protected:
    // Data without a word, or status 2 with an alert that names the file.
    void expectDataOrAlert(std::string_view text, unsigned radix = 16) {
        const int status = open(text, radix);
        const std::string said = alerts.take();
        if (status == 0) {
            EXPECT_GT(file->GetProgramSectionCount(), 0u);
            return;
        }
        EXPECT_EQ(status, 2) << text;
        EXPECT_EQ(file->GetProgramSectionCount(), 0u);
        EXPECT_THAT(said, HasSubstr("data.mem")) << text;
    }
};

TEST_F(HostileMemTexts, AMillionSectionsAreRead) {
    std::string text;
    for (u64 i = 0; i < kSECTIONS; ++i) text += "@12 AB\n";
    ASSERT_EQ(open(text), 0);
    ASSERT_EQ(file->GetProgramSectionCount(), kSECTIONS);
    DataFileSectionTypeX<unsigned long> section{};
    EXPECT_EQ(file->GetProgramSectionData(kSECTIONS - 1, &section), 0);
    EXPECT_EQ(sectionText(section), "12:AB");
    // Text, data, and 64 bytes a section.
    EXPECT_LT(getMaxMemoryUsage(), 12 * text.size());
}

TEST_F(HostileMemTexts, SectionsOfThreeCharactersTakeMemoryInProportion) {
    std::string text;
    for (u64 i = 0; i < kSECTIONS; ++i) text += "@1\n";
    ASSERT_EQ(open(text), 0);
    EXPECT_EQ(file->GetProgramSectionCount(), kSECTIONS);
    EXPECT_LT(getMaxMemoryUsage(), 32 * text.size());
}

TEST_F(HostileMemTexts, AValueMayBeAsLongAsATokenAndNotLonger) {
    const std::string longest(kMAX_TOKEN_BYTES, 'A');
    ASSERT_EQ(open("@10 " + longest + "\n@20 1"), 0);
    DataFileSectionTypeX<unsigned long> section{};
    EXPECT_EQ(file->GetProgramSectionData(0, &section), 0);
    EXPECT_EQ(section.size, kMAX_TOKEN_BYTES / 2);
    EXPECT_EQ(section.data[section.size - 1], 0xAA);

    EXPECT_EQ(open("@10 1\n" + longest + "A\n"), 2);
    const std::string said = alerts.take();
    EXPECT_THAT(said, HasSubstr("One word or text is longer than the limit of 1048576 bytes.\n   Line #2, File "
                                "\"data.mem\".\n"));
}

TEST_F(HostileMemTexts, AnEndlessTokenTakesNoMemoryBesideItsText) {
    const std::string text(4'000'000, '1');
    EXPECT_EQ(open(text), 2);
    EXPECT_LT(getMaxMemoryUsage(), 2 * text.size());
}

TEST_F(HostileMemTexts, ManyValuesTakeHalfTheirTextMore) {
    std::string text;
    while (text.size() < 4'000'000) text += "0123456789ABCDEF0123456789ABCDEF\n";
    ASSERT_EQ(open(text), 0);
    EXPECT_LT(getMaxMemoryUsage(), 3 * text.size());
}

TEST_F(HostileMemTexts, DataOfMacrosAndLoopsHasALimit) {
    TextReader stream(
        "12\n#for i 0; i < 9; i i+1\n0123456789ABCDEF0123456789ABCDEF\n#endfor\n", &mem_symbol_set, "data.mem");
    BlockOwner block;
    ASSERT_EQ(InitializeDataStructureBlock(10, 16, block.out()), 0);
    block->sizeLimit = 100;
    EXPECT_EQ(ParseTextDataFile(stream, block.get()), 2);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:86 - The data of file 'data.mem' has exceeded the limit of 100 bytes.\n"
                             "   Line #3, File \"data.mem\".\n"
                             "0123456789ABCDEF0123456789ABCDEF\n"
                             "^\n\n");
}

TEST_F(HostileMemTexts, ATextCutAtEveryByteGivesDataOrAnAlert) {
    const std::string_view text = "// head\n@10 12 3456\r\n789 /* note */ AB\n#define V 55\nV @20 RADIX 2 1010 1\n"
                                  "memory_initialization_radix=16; memory_initialization_vector=\n01, 02\n03;\n"
                                  "#if 1\n\"text\"\n#endif";
    for (size_t n = 1; n <= text.size(); ++n) expectDataOrAlert(text.substr(0, n));
}

TEST_F(HostileMemTexts, RandomBytesGiveDataOrAnAlert) {
    std::mt19937_64 random(20240607); // NOLINT(bugprone-random-generator-seed)
    for (int i = 0; i < 3000; ++i) {
        std::string text = "1 "; // an empty text is another case
        for (u64 n = random() % 60; n != 0; --n)
            text += random() % 2 == 0 ? static_cast<char>(random())
                                      : "@ 0123456789abcdefABCDEF,;=\n\r\t#/*\"'\\"[random() % 37];
        expectDataOrAlert(text, random() % 2 == 0 ? 16 : 2);
    }
}

TEST_F(HostileMemTexts, RunsOfMarksGiveDataOrAnAlert) {
    for (const char mark : std::string_view("@,;.-/*\\\"'#=x\x7F\x80[("))
        for (const size_t count : {1u, 2u, 1000u}) expectDataOrAlert("12\n" + std::string(count, mark));
}

int readOnce(std::string_view text) {
    fileSpecType* spec = CreateFileSpecWithFileData("data.mem", text.data(), text.size());
    if (spec == nullptr) return 7;
    int status = 0;
    {
        LNF_MEMDataFile swept(16);
        status = swept.OpenDataFile(spec, "#define W 1\n", 1);
    }
    DeleteFileSpec(&spec);
    return status;
}

TEST(MemTextFaults, EveryFailingAllocationEndsWithAStatusAndGivesAllBytesBack) {
    const std::string text = "@10 12 3456\n#define V 55\nV @20 RADIX 2 1010 1 // x\n"
                             "memory_initialization_radix=16; memory_initialization_vector=\n01, 02\n03;\n"
                             "#for i 0; i < 9; i i+1\n0123456789ABCDEF0123456789ABCDEF\n#endfor\n";
    const FaultSweep sweep = sweepAllocationFaults([&] {
        int status = InitializeSystemResources();
        EnablePrintAlerts(0);
        if (status == 0) status = readOnce(text);
        FinalizeSystemResources();
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 20u);
}

} // namespace
} // namespace memdata::testing

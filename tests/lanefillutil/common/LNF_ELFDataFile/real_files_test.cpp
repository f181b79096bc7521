// real_files_test.cpp - ELF files of real toolchains, compared with what binutils says of them.
//
// tests/data/elf holds the files with their facts; where the toolchains are installed both are made anew.
// SPDX-License-Identifier: Apache-2.0
#include "elf_test.h"

#include <cstdlib>
#include <sstream>

namespace {

using namespace memdata;
using namespace memdata::testing;

struct RealFile {
    const char* name;
    const char* compiler;
};
constexpr RealFile kFILES[] = {
    {"riscv32", "riscv64-unknown-elf-gcc"},
    {"riscv64", "riscv64-unknown-elf-gcc"},
    {"arm", "arm-none-eabi-gcc"},
};

class RealElf : public ElfTest, public ::testing::WithParamInterface<RealFile> {
protected:
    // The open file in the words of the file of facts.
    std::string facts() {
        unsigned long segmentHeaders = 0;
        const std::string headers = dump();
        for (size_t at = 0; (at = headers.find("\nProgram header ", at)) != headers.npos; ++at) ++segmentHeaders;
        std::ostringstream text;
        text << "width " << elf->getAddressWidth() << "\nmachine " << machine(headers)
             << formatted("\nentry 0x%llx", elf->GetDataFileStatupAddress()->address) << "\nheaders " << segmentHeaders
             << ' ' << elf->GetSectionCount() << '\n';
        for (unsigned long i = 0; i < elf->GetSectionCount(); ++i) {
            DataFileSectionTypeX<unsigned long> section{};
            EXPECT_EQ(elf->GetSectionData(i, &section), 0);
            text << "section " << i << " \"" << elf->GetSectionName(i) << '"'
                 << formatted(" 0x%llX %lld\n", section.address, section.size);
        }
        for (unsigned long i = 0; i < elf->GetProgramSectionCount(); ++i) {
            DataFileSectionTypeX<unsigned long> section{};
            EXPECT_EQ(elf->GetProgramSectionData(i, &section), 0);
            if (section.size == 0)
                text << "segment without data\n";
            else
                text << formatted("segment 0x%llX: ", section.address) << hexText(section.data, section.size) << '\n';
        }
        return text.str();
    }
    std::string dump() {
        const std::string name = folder.file("dump.txt");
        fileIODescriptor* out = nullptr;
        if (Open_File(name.c_str(), kTEXT_WRITE, &out) != 0) return "";
        EXPECT_EQ(elf->DumpELF(out, kDUMP_ELF_HEADERS), 0);
        EXPECT_EQ(Close_File(&out), 0);
        return readFile(name);
    }
    static std::string machine(const std::string& headers) {
        const size_t line = headers.find("\n  Machine ");
        const size_t word = headers.find(", ", line) + 2;
        return headers.substr(word, headers.find('\n', word) - word);
    }
};

TEST_P(RealElf, IsReadAsBinutilsReadsIt) {
    const std::string base = MEMDATA_TEST_DATA "/data/elf/" + std::string(GetParam().name);
    ASSERT_EQ(openFile(base + ".elf"), 0);
    EXPECT_EQ(facts(), readFile(base + ".facts"));
}

TEST_P(RealElf, CompiledAnewIsReadAsBinutilsReadsIt) {
    if (std::system(("command -v " + std::string(GetParam().compiler) + " >/dev/null").c_str()) != 0)
        GTEST_SKIP() << GetParam().compiler << " is not installed (./dev setup --toolchains)";
    const std::string command =
        MEMDATA_TEST_DATA "/data/elf/rebuild '" + folder.path().string() + "' " + GetParam().name;
    ASSERT_EQ(std::system(command.c_str()), 0);
    ASSERT_EQ(openFile(folder.file(GetParam().name + std::string(".elf"))), 0);
    EXPECT_EQ(facts(), readFile(folder.file(GetParam().name + std::string(".facts"))));
}

INSTANTIATE_TEST_SUITE_P(
    , RealElf, ::testing::ValuesIn(kFILES), [](const auto& file) { return std::string(file.param.name); });

} // namespace

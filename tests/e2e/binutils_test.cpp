// binutils_test.cpp - what the tool makes of ELF files, against what readelf and objcopy make of them.
// SPDX-License-Identifier: Apache-2.0
#include "platform/BasicTypes.h"
#include "support/bit_builder.h"
#include "support/elf_builder.h"
#include "support/temporary_folder.h"
#include "support/tool_run.h"

#include <gmock/gmock.h>
#include <map>
#include <random>
#include <regex>
#include <sstream>

namespace memdata::testing {
namespace {

using Words = std::map<u64, u64>;                 // index -> word
using Records = std::vector<std::pair<u64, u64>>; // first index, number of words

bool hasBinutils() {
    return runProgram("objcopy", {"--version"}).status == 0 && runProgram("readelf", {"--version"}).status == 0;
}

struct MemText {
    Words words;
    Records records;
};

// Any text that $readmemh takes, with comments of one line.
MemText readMemText(const std::string& name) {
    MemText text;
    std::istringstream lines(readFile(name));
    u64 index = 0;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line.substr(0, line.find("//")));
        for (std::string word; fields >> word;) {
            if (word[0] == '@') {
                index = std::stoull(word.substr(1), nullptr, 16);
                text.records.emplace_back(index, 0);
            } else {
                if (!text.records.empty()) ++text.records.back().second;
                text.words[index++] = std::stoull(word, nullptr, 16);
            }
        }
    }
    return text;
}

std::string shippedElf(const std::string& name) {
    return std::string(MEMDATA_TEST_DATA) + "/data/elf/" + name;
}

// Address and size of each loadable segment, as readelf prints them.
Records segmentsByReadelf(const std::string& elf) {
    const ToolResult result = runProgram("env", {"LC_ALL=C", "readelf", "-lW", elf});
    EXPECT_EQ(result.status, 0);
    Records segments;
    const std::regex row(R"(\n +LOAD +0x\w+ +0x\w+ +0x(\w+) +0x(\w+))");
    for (std::sregex_iterator at(result.out.begin(), result.out.end(), row), end; at != end; ++at)
        if (const u64 size = std::stoull((*at)[2], nullptr, 16); size != 0)
            segments.emplace_back(std::stoull((*at)[1], nullptr, 16), size);
    return segments;
}

constexpr char kBYTE_MAP[] = "ADDRESS_MAP cpu %s 0\n"
                             "  ADDRESS_SPACE ram MEMORY [0:0x3FFF]\n"
                             "    BUS_BLOCK a [7:0] [0:0x3FFF] OUTPUT = a.mem; END_BUS_BLOCK;\n"
                             "  END_ADDRESS_SPACE;\n"
                             "END_ADDRESS_MAP;\n";
constexpr char kFOUR_LANE_MAP[] = "ADDRESS_MAP cpu %s 0\n"
                                  "  ADDRESS_SPACE ram MEMORY [0:0x3FFF]\n"
                                  "    BUS_BLOCK\n"
                                  "      d [31:24] [0:0xFFF] OUTPUT = d.mem;\n"
                                  "      c [23:16] [0:0xFFF] OUTPUT = c.mem;\n"
                                  "      b [15:8] [0:0xFFF] OUTPUT = b.mem;\n"
                                  "      a [7:0] [0:0xFFF] OUTPUT = a.mem;\n"
                                  "    END_BUS_BLOCK;\n"
                                  "  END_ADDRESS_SPACE;\n"
                                  "END_ADDRESS_MAP;\n";

std::string mapFor(const char* pattern, const std::string& processor) {
    std::string text = pattern;
    return text.replace(text.find("%s"), 2, processor);
}

void translate(const TemporaryFolder& folder, const std::string& map, const std::string& elf) {
    folder.write("soc.bmm", map);
    const ToolResult result = runTool({"-bm", "soc.bmm", "-bd", elf, "-bx"}, {.folder = folder.path()});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
}

// An ELF file that is shipped, or made here.
struct Program {
    const char* name;
    const char* processor;
    bool isBigEndian;
    const char* shipped; // or null
};

class Binutils : public ::testing::TestWithParam<Program> {
protected:
    std::string elf() const {
        const Program& program = GetParam();
        if (program.shipped != nullptr) return shippedElf(program.shipped);
        std::mt19937 random(2);
        std::vector<ElfSegment> segments;
        for (const auto& [address, size] : std::vector<std::pair<u64, u64>>{{0, 64}, {0x100, 4}, {0x1000, 2048}}) {
            segments.push_back({.address = address, .bytes = Bytes(size), .section = ".s" + std::to_string(address)});
            for (u8& byte : segments.back().bytes) byte = static_cast<u8>(random());
        }
        return folder_.write("app.elf", textOf(elfFile({.isBigEndian = program.isBigEndian,
                                            .machine = program.isBigEndian ? 20u : 243u,
                                            .segments = segments})));
    }

    const TemporaryFolder folder_;
};

TEST_P(Binutils, RecordsOfAMemoryAreTheSegmentsOfReadelf) {
    if (!hasBinutils()) GTEST_SKIP() << "binutils are not installed";
    const std::string name = elf();
    translate(folder_, mapFor(kBYTE_MAP, GetParam().processor), name);
    const Records segments = segmentsByReadelf(name);
    EXPECT_FALSE(segments.empty());
    EXPECT_EQ(readMemText(folder_.file("a.mem")).records, segments);
}

TEST_P(Binutils, FourLanesHoldWhatFourRunsOfObjcopyWrite) {
    if (!hasBinutils()) GTEST_SKIP() << "binutils are not installed";
    const std::string name = elf();
    translate(folder_, mapFor(kFOUR_LANE_MAP, GetParam().processor), name);
    for (unsigned byte = 0; byte < 4; ++byte) {
        const std::string byObjcopy = folder_.file("objcopy.hex");
        const ToolResult result =
            runProgram("objcopy", {"-I", GetParam().isBigEndian ? "elf32-big" : "elf32-little", "-O", "verilog",
                                      "--interleave=4", "--byte=" + std::to_string(byte), name, byObjcopy});
        ASSERT_EQ(result.status, 0) << result.err;
        const unsigned lane = GetParam().isBigEndian ? 3 - byte : byte; // the first byte is on top
        const std::string file = std::string(1, static_cast<char>('a' + lane)) + ".mem";
        const Words expected = readMemText(byObjcopy).words;
        EXPECT_FALSE(expected.empty());
        EXPECT_EQ(readMemText(folder_.file(file)).words, expected) << file;
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, Binutils,
    ::testing::Values(Program{"Riscv", "RISCV", false, "riscv32.elf"}, Program{"Arm", "ARM", false, "arm.elf"},
        Program{"LittleEndian", "RISCV", false, nullptr}, Program{"BigEndian", "PPC405", true, nullptr}),
    [](const ::testing::TestParamInfo<Program>& program) { return program.param.name; });

} // namespace
} // namespace memdata::testing

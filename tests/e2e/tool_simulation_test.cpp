// tool_simulation_test.cpp - from an ELF file through the tool into a simulated memory: every byte is where the
// processor reads it.
//
// A model of ours holds each memory of the map as a register array that $readmemh fills, puts the words of one row
// together to a word of the bus, and prints its bytes by address. Skipped where iverilog is not installed.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/ecc_codes.h"
#include "simulator.h"
#include "support/bit_builder.h"
#include "support/elf_builder.h"
#include "support/temporary_folder.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>
#include <iomanip>
#include <map>
#include <random>
#include <sstream>

namespace memdata::testing {
namespace {

constexpr u64 kBASE = 0x10000;
constexpr u64 kMEMORY_BITS = 2048 * 8; // data bits of a RAMB16
constexpr unsigned kROWS = 2;

using Memory = std::map<u64, u8>; // address -> byte

struct Shape {
    const char* name;
    const char* processor;
    u32 machine;
    bool isBigEndian;
    unsigned elfBits;
    unsigned busBits;
    unsigned laneBits;
    const char* ecc = nullptr; // the word of a check lane above the bus, or null
    unsigned eccBits = 0;
    u32 eccType = kECC_NONE;

    // Check lanes of another width than the data lanes count their words by it, on purpose: they are where they belong
    // when data begins at the start of a row.
    bool needsRowStarts() const { return ecc != nullptr && eccBits != laneBits; }
    unsigned busBytes() const { return busBits / 8; }
    unsigned laneCount() const { return busBits / laneBits; }
    u64 rowBytes() const { return kMEMORY_BITS / laneBits * busBytes(); }
};

std::string laneName(unsigned row, unsigned lane) {
    return "row" + std::to_string(row) + "_lane" + std::to_string(lane);
}

// The map: kROWS rows over each other, the file of each lane named after it.
std::string mapText(const Shape& shape) {
    std::ostringstream text;
    text << "ADDRESS_MAP cpu " << shape.processor << " 0\n ADDRESS_SPACE ram RAMB16 [" << kBASE << ":"
         << kBASE + kROWS * shape.rowBytes() - 1 << "]\n";
    for (unsigned row = 0; row < kROWS; ++row) {
        text << "  BUS_BLOCK\n";
        for (unsigned lane = shape.laneCount(); lane-- > 0;) {
            const std::string name = laneName(row, lane);
            text << "   " << name << " [" << (lane + 1) * shape.laneBits - 1 << ":" << lane * shape.laneBits
                 << "] OUTPUT = " << name << ".mem;\n";
        }
        if (shape.ecc != nullptr)
            text << "   row" << row << "_check " << shape.ecc << " [" << shape.busBits + shape.eccBits - 1 << ":"
                 << shape.busBits << "] OUTPUT = row" << row << "_check.mem;\n";
        text << "  END_BUS_BLOCK;\n";
    }
    text << " END_ADDRESS_SPACE;\nEND_ADDRESS_MAP;\n";
    return text.str();
}

// "byte ADDRESS VALUE" for each byte that was loaded, "check WORD VALUE" for each whole word with check bits.
std::string modelText(const Shape& shape) {
    const u64 words = shape.rowBytes() / shape.busBytes();
    std::ostringstream text;
    text << "module memory;\n integer i, k;\n reg [" << shape.busBits - 1 << ":0] bus;\n";
    const auto forAllLanes = [&](auto&& visit) {
        for (unsigned row = 0; row < kROWS; ++row)
            for (unsigned lane = 0; lane < shape.laneCount(); ++lane) visit(row, lane);
    };
    forAllLanes([&](unsigned row, unsigned lane) {
        text << " reg [" << shape.laneBits - 1 << ":0] " << laneName(row, lane) << " [0:" << words - 1 << "];\n";
    });
    for (unsigned row = 0; shape.ecc != nullptr && row < kROWS; ++row)
        text << " reg [" << shape.eccBits - 1 << ":0] check" << row << " [0:" << words - 1 << "];\n";
    text << " initial begin\n";
    forAllLanes([&](unsigned row, unsigned lane) {
        text << "  $readmemh(\"" << laneName(row, lane) << ".mem\", " << laneName(row, lane) << ");\n";
    });
    for (unsigned row = 0; row < kROWS; ++row) {
        if (shape.ecc != nullptr) text << "  $readmemh(\"row" << row << "_check.mem\", check" << row << ");\n";
        text << "  for (i = 0; i < " << words << "; i = i + 1) begin\n";
        for (unsigned lane = 0; lane < shape.laneCount(); ++lane)
            text << "   bus[" << (lane + 1) * shape.laneBits - 1 << ":" << lane * shape.laneBits
                 << "] = " << laneName(row, lane) << "[i];\n";
        const std::string part = shape.isBigEndian ? "bus[" + std::to_string(shape.busBits - 8) + " - 8 * k +: 8]"
                                                   : std::string("bus[8 * k +: 8]");
        text << "   for (k = 0; k < " << shape.busBytes() << "; k = k + 1)\n"
             << "    if (^" << part << " !== 1'bx) $display(\"byte %0d %0d\", " << kBASE + row * shape.rowBytes()
             << " + i * " << shape.busBytes() << " + k, " << part << ");\n";
        if (shape.ecc != nullptr)
            text << "   if (^bus !== 1'bx) $display(\"check %0d %0d\", bus, check" << row << "[i]);\n";
        text << "  end\n";
    }
    text << " end\nendmodule\n";
    return text.str();
}

Bytes randomBytes(u64 count, std::mt19937& random) {
    Bytes bytes(count);
    for (u8& byte : bytes) byte = static_cast<u8>(random());
    return bytes;
}

// Segments that begin and end inside of words of bus and lane, that cross from one row to the next, that fill the last
// byte.
std::vector<ElfSegment> segmentsFor(const Shape& shape) {
    std::mt19937 random(5);
    const u64 bus = shape.busBytes();
    const u64 row = kBASE + shape.rowBytes(); // the second one
    const u64 end = kBASE + kROWS * shape.rowBytes();
    std::vector<std::pair<u64, u64>> places{{kBASE, 3 * bus + bus / 2}, {kBASE + 8 * bus + 1, 1},
        {kBASE + 20 * bus + 3, 7 * bus}, {row - 2 * bus - 1, 5 * bus}, {end - bus - 1, bus + 1}};
    if (shape.needsRowStarts()) places = {{kBASE, 3 * bus + bus / 2}, {row, 7 * bus + 1}};
    std::vector<ElfSegment> segments;
    for (const auto& [address, count] : places)
        segments.push_back({.address = address, .bytes = randomBytes(count, random)});
    return segments;
}

Memory memoryOf(const std::vector<ElfSegment>& segments) {
    Memory memory;
    for (const ElfSegment& segment : segments)
        for (size_t i = 0; i < segment.bytes.size(); ++i) memory[segment.address + i] = segment.bytes[i];
    return memory;
}

struct Loaded {
    Memory memory;
    std::vector<std::pair<u64, u32>> checkWords; // word of the bus, its check bits
};

Loaded load(const TemporaryFolder& folder, const Shape& shape) {
    Loaded loaded;
    for (const std::string& line : simulate(folder, modelText(shape))) {
        std::istringstream fields(line);
        std::string kind;
        u64 first = 0;
        u32 second = 0;
        if (fields >> kind >> first >> second && kind == "byte")
            loaded.memory[first] = static_cast<u8>(second);
        else if (kind == "check" && fields)
            loaded.checkWords.emplace_back(first, second);
        else
            ADD_FAILURE() << line;
    }
    return loaded;
}

// Every byte of one is in the other; what else a word of a lane holds is 0.
void expectSame(const Memory& loaded, const Memory& expected) {
    for (const auto& [address, byte] : expected) {
        const auto found = loaded.find(address);
        ASSERT_NE(found, loaded.end()) << "no byte at " << address;
        ASSERT_EQ(found->second, byte) << "at " << address;
    }
    for (const auto& [address, byte] : loaded) {
        if (expected.contains(address)) continue;
        ASSERT_EQ(byte, 0) << "from nowhere, at " << address;
    }
}

ToolResult translate(const TemporaryFolder& folder) {
    return runTool({"-bm", "soc.bmm", "-bd", "app.elf", "-bx"}, {.folder = folder.path()});
}

class ToolSimulation : public ::testing::TestWithParam<Shape> {};

TEST_P(ToolSimulation, GivesEveryByteOfTheElfFileWhereTheProcessorReadsIt) {
    if (!hasSimulator()) GTEST_SKIP() << "iverilog is not installed";
    const Shape& shape = GetParam();
    const TemporaryFolder folder;
    const std::vector<ElfSegment> segments = segmentsFor(shape);
    folder.write("soc.bmm", mapText(shape));
    folder.write("app.elf", textOf(elfFile({.bits = shape.elfBits,
                                .isBigEndian = shape.isBigEndian,
                                .machine = shape.machine,
                                .segments = segments})));
    const ToolResult result = translate(folder);
    ASSERT_EQ(result.status, 0) << result.out << result.err;

    const Loaded loaded = load(folder, shape);
    expectSame(loaded.memory, memoryOf(segments));
    EXPECT_EQ(loaded.checkWords.empty(), shape.ecc == nullptr);
    for (const auto& [word, check] : loaded.checkWords)
        ASSERT_EQ(check, eccCheckValue(shape.eccType, {0, word})) << "of word " << word;
}

constexpr u32 kRISCV_MACHINE = 243;
constexpr u32 kPOWER_MACHINE = 20;
constexpr u32 kARM_MACHINE = 40;

constexpr Shape kSHAPES[] = {
    {"FourByteLanesLittleEndian", "RISCV", kRISCV_MACHINE, false, 32, 32, 8},
    {"FourByteLanesBigEndian", "PPC405", kPOWER_MACHINE, true, 32, 32, 8},
    {"TwoHalfWordLanesLittleEndian", "ARM", kARM_MACHINE, false, 32, 32, 16},
    {"TwoHalfWordLanesBigEndian", "PPC405", kPOWER_MACHINE, true, 32, 32, 16},
    {"OneWordLaneLittleEndian", "RISCV", kRISCV_MACHINE, false, 32, 32, 32},
    {"OneWordLaneBigEndian", "PPC440", kPOWER_MACHINE, true, 32, 32, 32},
    {"EightByteLanesLittleEndian", "RISCV", kRISCV_MACHINE, false, 64, 64, 8},
    {"EightByteLanesBigEndian", "PPC440", kPOWER_MACHINE, true, 64, 64, 8},
    {"TwoWordLanesLittleEndian", "RISCV", kRISCV_MACHINE, false, 64, 64, 32},
    {"TwoWordLanesBigEndian", "PPC440", kPOWER_MACHINE, true, 64, 64, 32},
    {"SixteenPairsOfBitsLittleEndian", "RISCV", kRISCV_MACHINE, false, 32, 32, 2},
    {"CheckedWordsLittleEndian", "RISCV", kRISCV_MACHINE, false, 32, 32, 8, "ECCH32-7", 7, kECC_H32_7},
    {"CheckedWordsBigEndian", "PPC405", kPOWER_MACHINE, true, 32, 32, 8, "ECCH32-7", 7, kECC_H32_7},
    {"CheckedDoubleWordsLittleEndian", "RISCV", kRISCV_MACHINE, false, 64, 64, 8, "ECCHSIAO64-8", 8, kECC_HSIAO64_8},
    {"CheckedDoubleWordsBigEndian", "PPC440", kPOWER_MACHINE, true, 32, 64, 8, "ECCH64-8", 8, kECC_H64_8},
};

INSTANTIATE_TEST_SUITE_P(Shapes, ToolSimulation, ::testing::ValuesIn(kSHAPES),
    [](const ::testing::TestParamInfo<Shape>& shape) { return shape.param.name; });

// A word with parity is whole hex digits of parity, then of data, in the ELF file as in the MEM file. Addresses count
// words of lanes.
class ToolParitySimulation : public ::testing::TestWithParam<unsigned> {};

TEST_P(ToolParitySimulation, GivesParityBitsBackAboveTheDataBits) {
    if (!hasSimulator()) GTEST_SKIP() << "iverilog is not installed";
    constexpr unsigned kBUS_BITS = 36;
    constexpr unsigned kBUS_WORDS = 40;
    constexpr unsigned kRAMB36_BITS = 36 * 1024; // with parity
    const unsigned width = GetParam();
    const unsigned laneCount = kBUS_BITS / width;
    const TemporaryFolder folder;

    const unsigned last = laneCount * kRAMB36_BITS / width - 1;
    std::string map = "ADDRESS_SPACE ram RAMB36 WORD_ADDRESSING [0:" + std::to_string(last) + "]\n BUS_BLOCK\n";
    std::ostringstream model;
    model << "module memory;\n integer i;\n";
    for (unsigned lane = laneCount; lane-- > 0;) {
        const std::string name = "lane" + std::to_string(lane);
        map += name + " [" + std::to_string((lane + 1) * width - 1) + ":" + std::to_string(lane * width) +
               "] OUTPUT = " + name + ".mem;\n";
        model << " reg [" << width - 1 << ":0] " << name << " [0:" << kBUS_WORDS - 1
              << "];\n initial begin\n  $readmemh(\"" << name << ".mem\", " << name << ");\n  for (i = 0; i < "
              << kBUS_WORDS << "; i = i + 1) $display(\"" << lane << " %0d %0d\", i, " << name << "[i]);\n end\n";
    }
    folder.write("soc.bmm", map + " END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n");
    model << "endmodule\n";

    std::mt19937_64 random(width);
    std::map<std::pair<unsigned, u64>, u64> expected; // lane and word -> value
    std::string digits;
    for (u64 word = 0; word < kBUS_WORDS; ++word)
        for (unsigned lane = laneCount; lane-- > 0;) {
            const u64 value = random() >> (64 - width);
            expected[{lane, word}] = value;
            std::ostringstream text;
            text << std::hex << std::setfill('0') << std::setw(static_cast<int>((width + 3) / 4)) << value;
            digits += text.str();
        }
    Bytes bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<u8>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    folder.write(
        "app.elf", textOf(elfFile({.isBigEndian = true, .machine = kPOWER_MACHINE, .segments = {{.bytes = bytes}}})));
    const ToolResult result = translate(folder);
    ASSERT_EQ(result.status, 0) << result.out << result.err;

    const std::vector<std::string> lines = simulate(folder, model.str());
    EXPECT_EQ(lines.size(), expected.size());
    for (const std::string& line : lines) {
        std::istringstream fields(line);
        unsigned lane = 0;
        u64 word = 0;
        u64 value = 0;
        ASSERT_TRUE(fields >> lane >> word >> value) << line;
        EXPECT_EQ(value, (expected[{lane, word}])) << line;
    }
}

INSTANTIATE_TEST_SUITE_P(Widths, ToolParitySimulation, ::testing::Values(9u, 18u, 36u),
    [](const ::testing::TestParamInfo<unsigned>& width) { return std::to_string(width.param); });

} // namespace
} // namespace memdata::testing

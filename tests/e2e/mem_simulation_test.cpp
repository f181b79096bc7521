// mem_simulation_test.cpp - MEM files in a Verilog simulator: every byte comes back from the bus words.
//
// A memory model of ours loads the file of each lane with $readmemh and prints the word that each lane holds at each
// bus address; the bytes of the segments are found again in them. Skipped where iverilog is not installed.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/AddressMapModel.h"
#include "lanefillCore/lanes/bus_blocks.h"
#include "lanefillCore/lanes/ecc_codes.h"
#include "lanefillCore/mem_writer.h"
#include "simulator.h"
#include "support/map_builder.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace memdata::testing {
namespace {

using Bytes = std::vector<u8>;

constexpr u64 kMODEL_WORDS = 64; // that the segments of these tests reach

// What a lane's memory is to the simulator.
struct ModelLane {
    std::string file;
    unsigned bits; // of a word in the file
};

// A module with a memory for each lane: it loads them and prints "lane index word" for each word that was loaded.
std::string model(const std::vector<ModelLane>& lanes) {
    std::ostringstream text;
    text << "module lanes;\n  integer i;\n";
    for (size_t lane = 0; lane < lanes.size(); ++lane)
        text << "  reg [" << lanes[lane].bits - 1 << ":0] lane" << lane << " [0:" << kMODEL_WORDS - 1 << "];\n";
    text << "  initial begin\n";
    for (size_t lane = 0; lane < lanes.size(); ++lane) {
        text << "    $readmemh(\"" << lanes[lane].file << "\", lane" << lane << ");\n"
             << "    for (i = 0; i < " << kMODEL_WORDS << "; i = i + 1)\n"
             << "      if (^lane" << lane << "[i] !== 1'bx) $display(\"" << lane << " %0d %h\", i, lane" << lane
             << "[i]);\n";
    }
    text << "  end\nendmodule\n";
    return text.str();
}

// By lane, then word: the digits that the simulator prints; empty where nothing was loaded.
using LoadedWords = std::vector<std::vector<std::string>>;

LoadedWords load(const TemporaryFolder& folder, const std::vector<ModelLane>& lanes) {
    LoadedWords words(lanes.size(), std::vector<std::string>(kMODEL_WORDS));
    for (const std::string& line : simulate(folder, model(lanes))) {
        size_t lane = 0;
        size_t index = 0;
        std::string digits;
        std::istringstream fields(line);
        if (fields >> lane >> index >> digits && lane < words.size() && index < kMODEL_WORDS)
            words[lane][index] = digits;
        else
            ADD_FAILURE() << line;
    }
    return words;
}

// The bits of a bus word as text, most significant first, taken from the lanes' words: bit b of the bus is bit
// b - low of its lane, or counted from the other end where the lane was written low bit first.
std::string busBits(const BusBlockType* block, const LoadedWords& words, u64 index) {
    std::string bits(block->busWidth, 'x');
    for (u64 i = 0; i < block->laneCount; ++i) {
        const BitLaneGridElemType* element = block->lanes[i];
        const std::string& digits = words[i][index];
        if (digits.empty()) continue;
        const u64 width = element->laneWidth;
        for (u64 bit = 0; bit < width; ++bit) {
            const size_t digit = digits.size() - 1 - bit / 4;
            const unsigned value = static_cast<unsigned>(std::stoul(digits.substr(digit, 1), nullptr, 16));
            bits[block->busWidth - 1 - (element->bitLow + bit)] = (value >> (bit % 4) & 1) != 0 ? '1' : '0';
        }
    }
    return bits;
}

u8 byteAt(const std::string& bits, size_t first) {
    return static_cast<u8>(std::stoul(bits.substr(first, 8), nullptr, 2));
}

struct Shape {
    const char* name;
    const char* processor;
    const char* memory;
    const char* lanes;
    bool littleEndian;
};

std::vector<ModelLane> dataLanes(const TemporaryFolder& folder, const BusBlockType* block) {
    std::vector<ModelLane> lanes;
    for (u64 i = 0; i < block->laneCount; ++i)
        lanes.push_back({folder.file(block->lanes[i]->lane->inputFile->fullName),
            static_cast<unsigned>(block->lanes[i]->laneWidth)});
    return lanes;
}

class MemSimulation : public ::testing::TestWithParam<Shape> {};

// Segments that begin and end inside bus words, at whole words of a lane, with gaps between them.
TEST_P(MemSimulation, GivesEveryByteOfTheSegmentsBackFromTheBusWords) {
    if (!hasSimulator()) GTEST_SKIP() << "iverilog is not installed";
    const Shape shape = GetParam();
    TestMap map;
    const TemporaryFolder folder;
    map.map("cpu", shape.processor, 1, "");
    AddressSpaceDefType* space = map.space("ram", 0x1000, shape.memory, {shape.lanes});
    const BusBlockType* block = space->ranges->busBlocks[0];
    const u64 busBytes = block->busWidth / 8;
    const u64 inBusWord = block->laneCount / 2 * block->laneWidth / 8;
    std::mt19937 random(7);
    std::map<u64, u8> stored;
    for (const auto& [begin, count] : std::vector<std::pair<u64, u64>>{{0, 3 * busBytes}, {5 * busBytes, 1},
             {8 * busBytes + inBusWord, 9 * busBytes}, {30 * busBytes, 33 * busBytes}}) {
        Bytes bytes(count);
        for (u64 i = 0; i < count; ++i) stored[begin + i] = bytes[i] = static_cast<u8>(random());
        ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
        ASSERT_EQ(transform_segment_data("a.elf", space, 0x1000 + begin, bytes.data(), bytes.size()), 0);
    }
    BDSwitchDataType* node = create_BD_switch_data(CreateFileSpec(folder.path().c_str()));
    ASSERT_EQ(output_bitLane_mem_files(node, false, false, map.get()), 0);
    delete_BD_switch_data_list(&node);

    const LoadedWords words = load(folder, dataLanes(folder, block));
    for (const auto& [address, value] : stored) {
        const std::string bits = busBits(block, words, address / busBytes);
        const u64 place = address % busBytes; // big-endian: the first byte is the top of the bus
        const u64 first = shape.littleEndian ? block->busWidth - 8 * (place + 1) : 8 * place;
        ASSERT_EQ(bits.find('x', first) < first + 8, false) << "no word for byte " << address << ": " << bits;
        ASSERT_EQ(byteAt(bits, first), value) << "byte " << address << " of " << bits;
    }
}

constexpr Shape kSHAPES[] = {
    {"FourByteLanesBigEndian", "PPC405", "RAMB16", "a[31:24] b[23:16] c[15:8] d[7:0]", false},
    {"FourByteLanesLittleEndian", "ARM", "RAMB16", "a[31:24] b[23:16] c[15:8] d[7:0]", true},
    {"TwoHalfWordLanesBigEndian", "PPC405", "RAMB16", "a[31:16] b[15:0]", false},
    {"TwoHalfWordLanesLittleEndian", "RISCV", "RAMB16", "a[31:16] b[15:0]", true},
    {"OneWordLaneBigEndian", "PPC405", "RAMB32", "a[31:0]", false},
    {"OneWordLaneLittleEndian", "RISCV", "RAMB32", "a[31:0]", true},
    {"EightDigitLanesBigEndian", "PPC405", "RAMB16",
        "a[31:28] b[27:24] c[23:20] d[19:16] e[15:12] f[11:8] g[7:4] h[3:0]", false},
    {"EightDigitLanesLittleEndian", "ARM", "RAMB16",
        "a[31:28] b[27:24] c[23:20] d[19:16] e[15:12] f[11:8] g[7:4] h[3:0]", true},
    {"EightByteLanesOfAWideBus", "PPC405", "RAMB16",
        "a[63:56] b[55:48] c[47:40] d[39:32] e[31:24] f[23:16] g[15:8] h[7:0]", false},
    {"EightByteLanesOfAWideLittleEndianBus", "ARM", "RAMB16",
        "a[63:56] b[55:48] c[47:40] d[39:32] e[31:24] f[23:16] g[15:8] h[7:0]", true},
    {"TwoWordLanesOfAWideBus", "PPC405", "RAMB32", "a[63:32] b[31:0]", false},
    {"OneLaneOfAWideLittleEndianBus", "ARM", "RAMB32", "a[63:0]", true},
};

INSTANTIATE_TEST_SUITE_P(Shapes, MemSimulation, ::testing::ValuesIn(kSHAPES),
    [](const ::testing::TestParamInfo<Shape>& shape) { return shape.param.name; });

// Words of 9, 18 and 36 bits come as whole hex digits of parity, then of data.
class ParitySimulation : public ::testing::TestWithParam<std::pair<const char*, unsigned>> {};

TEST_P(ParitySimulation, GivesTheParityBitsBackAtTheTopOfTheWord) {
    if (!hasSimulator()) GTEST_SKIP() << "iverilog is not installed";
    const auto [lanes, width] = GetParam();
    TestMap map;
    const TemporaryFolder folder;
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB36", {lanes}, {.wordAddressing = true});
    const BusBlockType* block = space->ranges->busBlocks[0];
    const unsigned digits = (width + 8) / 9 * 2 + (width == 72 ? 2 : 1); // data digits, parity digits
    std::mt19937_64 random(11);
    std::string source; // hex digits, one lane word after the other
    std::vector<std::string> expected;
    for (u64 word = 0; word < 40 * block->laneCount; ++word) {
        std::string text;
        const u64 parity = random() & ((1u << width / 9) - 1);
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, width == 72 ? "%02lX" : "%01lX", parity);
        text = buffer;
        for (unsigned byte = 0; byte < width / 9; ++byte) {
            std::snprintf(buffer, sizeof buffer, "%02lX", random() & 0xFF);
            text += buffer;
        }
        ASSERT_EQ(text.size(), digits);
        source += text;
        expected.push_back(text);
    }
    Bytes bytes;
    for (size_t i = 0; i + 1 < source.size(); i += 2)
        bytes.push_back(static_cast<u8>(std::stoul(source.substr(i, 2), nullptr, 16)));
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    ASSERT_EQ(transform_segment_data("a.mem", space, 0, bytes.data(), bytes.size()), 0);
    BDSwitchDataType* node = create_BD_switch_data(CreateFileSpec(folder.path().c_str()));
    ASSERT_EQ(output_bitLane_mem_files(node, false, false, map.get()), 0);
    delete_BD_switch_data_list(&node);

    const LoadedWords words = load(folder, dataLanes(folder, block));
    for (size_t i = 0; i < expected.size(); ++i) {
        const std::string& loaded = words[i % block->laneCount][i / block->laneCount];
        EXPECT_STRCASEEQ(loaded.c_str(), expected[i].c_str()) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Widths, ParitySimulation,
    ::testing::Values(std::pair("a[35:27] b[26:18] c[17:9] d[8:0]", 9u), std::pair("a[35:18] b[17:0]", 18u),
        std::pair("a[35:0]", 36u), std::pair("a[71:0]", 72u)),
    [](const auto& shape) { return std::to_string(shape.param.second); });

// The check words of each bus word, from a file of their own and from the one that holds both.
class EccSimulation : public ::testing::TestWithParam<bool> {};

TEST_P(EccSimulation, GivesTheCheckWordsOfTheBusWords) {
    if (!hasSimulator()) GTEST_SKIP() << "iverilog is not installed";
    const bool combined = GetParam();
    TestMap map;
    const TemporaryFolder folder;
    AddressSpaceDefType* space =
        map.space("ram", 0, "RAMB32", {"w[63:0] e[7:0] ECCHSIAO64-8"}, {.eccCombined = combined});
    Bytes bytes(8 * 20);
    std::mt19937 random(3);
    for (u8& byte : bytes) byte = static_cast<u8>(random());
    ASSERT_TRUE(allocate_addressSpace_transform_buffers(space));
    ASSERT_EQ(transform_segment_data("a.elf", space, 0, bytes.data(), bytes.size()), 0);
    BDSwitchDataType* node = create_BD_switch_data(CreateFileSpec(folder.path().c_str()));
    ASSERT_EQ(output_bitLane_mem_files(node, false, false, map.get()), 0);
    delete_BD_switch_data_list(&node);

    const std::vector<ModelLane> lanes =
        combined ? std::vector<ModelLane>{{folder.file("ram_0.mem"), 72}}
                 : std::vector<ModelLane>{{folder.file("ram_0.mem"), 64}, {folder.file("ram_ecc_0.mem"), 8}};
    const LoadedWords words = load(folder, lanes);
    for (u64 word = 0; word < bytes.size() / 8; ++word) {
        u64 data = 0;
        for (u64 byte = 0; byte < 8; ++byte) data = data << 8 | bytes[word * 8 + byte];
        const u32 check = eccCheckValue(kECC_HSIAO64_8, {0, data});
        const std::string dataDigits = words[0][word].substr(0, 16);
        const std::string checkDigits = combined ? words[0][word].substr(16) : words[1][word];
        EXPECT_EQ(std::stoull(dataDigits, nullptr, 16), data) << word;
        EXPECT_EQ(std::stoul(checkDigits, nullptr, 16), check) << word;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, EccSimulation, ::testing::Bool(),
    [](const auto& shape) { return shape.param ? "OneForBoth" : "OneForEach"; });

} // namespace
} // namespace memdata::testing

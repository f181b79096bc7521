// mem_text_test.cpp - the lines of MEM records, against a plain form that takes and prints word by word.
//
// MEMDATA_MEM_TEXT_SEED and MEMDATA_MEM_TEXT_SHAPES in the environment replace the seed and the number of shapes.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/mem_text.h"

#include "FileUtils/opening.h"
#include "SystemUtils/lifetime.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/records/chunk_access.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace memdata::testing {
namespace {

u64 fromEnvironment(const char* name, u64 otherwise) {
    const char* text = std::getenv(name);
    return text == nullptr ? otherwise : std::strtoull(text, nullptr, 0);
}

struct OpenedMemory {
    fileIODescriptor* file = nullptr;
    OpenedMemory() { EXPECT_EQ(OpenMemoryFile("memory", kTEXT_WRITE, nullptr, 0, &file), 0); }
    ~OpenedMemory() { Close_File(&file); }
    OpenedMemory& operator=(OpenedMemory&&) = delete; // neither copied nor moved
    std::string text() const { return {GetFileStorageBase(file), GetFileLogicalSize(file)}; }
};

std::string fastLines(const std::vector<MemColumn>& columns, u64 words, u64 wordsPerLine) {
    const OpenedMemory memory;
    EXPECT_EQ(outputMemLines(memory.file, columns, words, wordsPerLine), 0);
    return memory.text();
}

std::string hex(u64 value, u32 digits) {
    char text[32];
    std::snprintf(text, sizeof text, "%0*lX", static_cast<int>(digits), value);
    return text;
}

// The plain form: one value after the other, and a line ends when it is full.
std::string plainLines(const std::vector<MemColumn>& columns, u64 words, u64 countedBits, u64 characters) {
    std::vector<BufferChunkAccess> cursors;
    for (const MemColumn& column : columns)
        cursors.push_back(BufferChunkAccess::OverWholeBuffer(const_cast<u8*>(column.buffer), column.bufferBits,
            kBIT_LANE_ORDER, column.firstBit / column.stepBits, static_cast<unsigned>(column.stepBits)));
    std::string text;
    u64 bitsOnLine = 0;
    u64 charactersOnLine = 0;
    for (u64 word = 0; word < words; ++word) {
        if (bitsOnLine == 0) text += "   ";
        text += ' ';
        for (size_t i = 0; i < columns.size(); ++i) {
            unsigned bits = columns[i].bits;
            text += hex(cursors[i].GetNextTransformChunk(&bits), columns[i].digits);
            cursors[i].SkipBits(columns[i].stepBits - bits);
        }
        bitsOnLine += countedBits;
        charactersOnLine += characters;
        if (bitsOnLine > 255 || charactersOnLine > 127) {
            text += '\n';
            bitsOnLine = charactersOnLine = 0;
        }
    }
    if (bitsOnLine > 0) text += '\n';
    return text;
}

class Dice {
public:
    explicit Dice(u64 seed) : random_(seed) {}
    u64 below(u64 limit) { return random_() % limit; }
    u64 from(u64 low, u64 high) { return low + below(high - low + 1); }

private:
    std::mt19937_64 random_;
};

u64 charactersOf(const std::vector<MemColumn>& columns) {
    u64 characters = 1;
    for (const MemColumn& column : columns) characters += column.digits;
    return characters;
}

TEST(MemText, IsThatOfThePlainFormOverRandomShapes) {
    const SystemResources resources;
    const u64 seed = fromEnvironment("MEMDATA_MEM_TEXT_SEED", 20250117);
    const u64 shapes = fromEnvironment("MEMDATA_MEM_TEXT_SHAPES", 5000);
    for (u64 shape = 0; shape < shapes; ++shape) {
        Dice dice(seed + shape);
        std::vector<std::vector<u8>> buffers;
        std::vector<MemColumn> columns;
        const u64 words = dice.below(150);
        const u64 countedBits = dice.from(1, 64);
        const u64 columnCount = dice.below(3) == 0 ? dice.from(2, kMAX_MEM_COLUMNS) : 1;
        const bool parity = dice.below(3) == 0; // a second column of a byte for each bit of the first
        for (u64 i = 0; i < columnCount; ++i) {
            u32 bits = static_cast<u32>(dice.below(2) == 0 ? u64{4} << dice.below(5) : dice.from(1, 64));
            if (parity && columnCount == 2) bits = i == 0 ? 1u << dice.below(4) : columns[0].bits * 8;
            const u64 slot = laneSlotBits(bits);
            const u64 first = dice.below(40);
            // A third of the buffers end ahead of the last word, some inside a word.
            u64 bitCount = (first + words) * slot;
            if (dice.below(3) == 0) bitCount = dice.below(bitCount + 1);
            buffers.emplace_back((bitCount + 7) / 8);
            for (u8& byte : buffers.back()) byte = static_cast<u8>(dice.below(256));
            columns.push_back({nullptr, bitCount, std::min(first, bitCount / slot) * slot, slot, bits,
                hexDigits(bits) + (bits <= 60 && dice.below(4) == 0 ? 1 : 0)});
        }
        for (size_t i = 0; i < columns.size(); ++i) columns[i].buffer = buffers[i].data();
        const u64 characters = charactersOf(columns);
        ASSERT_EQ(fastLines(columns, words, memWordsPerLine(countedBits, characters)),
            plainLines(columns, words, countedBits, characters))
            << "seed " << seed + shape;
    }
}

TEST(MemText, OfManyBlocksIsThatOfThePlainForm) {
    const SystemResources resources;
    std::vector<u8> bytes(300'000);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<u8>(i * 7 + i / 251);
    for (const u32 bits : {4u, 8u, 16u, 32u, 64u}) {
        const std::vector<MemColumn> columns = {{bytes.data(), bytes.size() * 8, 0, bits, bits, hexDigits(bits)}};
        const u64 words = bytes.size() * 8 / bits;
        EXPECT_EQ(fastLines(columns, words, memWordsPerLine(bits, hexDigits(bits) + 1)),
            plainLines(columns, words, bits, hexDigits(bits) + 1))
            << bits;
    }
}

TEST(MemText, ALineEndsBehind255BitsOr127Characters) {
    EXPECT_EQ(memWordsPerLine(32, 9), 8u);  // 256 bits
    EXPECT_EQ(memWordsPerLine(8, 3), 32u);  // 256 bits
    EXPECT_EQ(memWordsPerLine(8, 4), 32u);  // 128 characters
    EXPECT_EQ(memWordsPerLine(4, 2), 64u);  // 256 bits
    EXPECT_EQ(memWordsPerLine(1, 2), 64u);  // 128 characters
    EXPECT_EQ(memWordsPerLine(7, 3), 37u);  // 259 bits
    EXPECT_EQ(memWordsPerLine(64, 17), 4u); // 256 bits
}

TEST(MemText, OfNoWordsIsEmpty) {
    const SystemResources resources;
    const u8 byte = 1;
    EXPECT_EQ(fastLines({{&byte, 8, 0, 8, 8, 2}}, 0, 32), "");
}

TEST(MemText, WithoutMemoryIsAStatus) {
    const SystemResources resources;
    const FaultSweep sweep = sweepAllocationFaults([] {
        fileIODescriptor* file = nullptr;
        if (int status = OpenMemoryFile("memory", kTEXT_WRITE, nullptr, 0, &file); status != 0) return status;
        const std::vector<u8> bytes(1000);
        const MemColumn column{bytes.data(), bytes.size() * 8, 0, 8, 8, 2};
        const int status = outputMemLines(file, std::span(&column, 1), bytes.size(), 32);
        Close_File(&file);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
}

} // namespace
} // namespace memdata::testing

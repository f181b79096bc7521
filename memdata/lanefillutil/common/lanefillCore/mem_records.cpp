// mem_records.cpp - see mem_records.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/mem_records.h"

#include "FileUtils/descriptor.h"
#include "lanefillCore/lanes/lane_positions.h"

#include <algorithm>
#include <array>

namespace memdata {
namespace {

struct ParityWordRow {
    u32 widths[2]; // bits of a lane, without and with its parity bits
    ParityWord word;
};
constexpr ParityWordRow kPARITY_WORDS[] = {
    // lane widths  data bits, digits  parity bits, digits
    {{8, 9}, {8, 2, 1, 1}},
    {{16, 18}, {16, 4, 2, 1}},
    {{32, 36}, {32, 8, 4, 1}},
    {{64, 72}, {64, 16, 8, 2}},
};
static_assert(std::ranges::all_of(kPARITY_WORDS, [](const ParityWordRow& row) {
    return row.word.dataBits == row.widths[0] && row.word.dataBits + row.word.parityBits == row.widths[1] &&
           row.word.dataDigits == hexDigits(row.word.dataBits) &&
           row.word.parityDigits == hexDigits(row.word.parityBits);
}));

constexpr int kNO_SUCH_RECORD = 3;

u64 wordIndexOf(u64 width, u64 byteAddress, u64 lanes) {
    return convert_from_byte_to_bitLane_address(width, byteAddress) / lanes;
}

// Words in steps of stepBits from a word of a buffer on, as many as maxBits begin.
u64 wordsWithin(u64 totalBits, u64 maxBits, u64 wordIndex, u64 stepBits) {
    if (wordIndex >= totalBits / stepBits) return 0;
    const u64 bits = std::min(totalBits - wordIndex * stepBits, maxBits);
    return bits / stepBits + (bits % stepBits != 0 ? 1 : 0);
}

bool isSound(const void* buffer, u64 lanes, u64 width) {
    return buffer != nullptr && lanes > 0 && width >= 1 && width <= 64;
}

MemColumn columnOf(const u8* buffer, u64 totalBits, u64 wordIndex, u64 width) {
    const u64 slotBits = laneSlotBits(static_cast<unsigned>(width));
    return {buffer, totalBits, wordIndex * slotBits, slotBits, static_cast<u32>(width), hexDigits(width)};
}

} // namespace

ParityWord parityWordOf(u64 laneWidth) {
    for (const ParityWordRow& row : kPARITY_WORDS)
        if (laneWidth == row.widths[0] || laneWidth == row.widths[1]) return row.word;
    return {};
}

int outputMemRecord(fileIODescriptor* file, const MemRecord& record) {
    const char* const format = record.wide ? "\n@%016llX\n" : "\n@%08llX\n";
    if (int status = PutNextLine(file, format, record.wordIndex); status != 0) return status;
    u64 characters = 1; // the blank ahead of a word
    for (const MemColumn& column : record.columns) characters += column.digits;
    return outputMemLines(file, record.columns, record.wordCount, memWordsPerLine(record.countedBits, characters));
}

} // namespace memdata

int output_regular_mem_data_records(fileIODescriptor* file, unsigned long byteAddress, unsigned char* buffer,
    unsigned long totalBits, unsigned long maxBits, unsigned long lanes, unsigned long width, bool wide) {
    using namespace memdata;
    if (!isSound(buffer, lanes, width)) return kNO_SUCH_RECORD;
    const u64 index = wordIndexOf(width, byteAddress, lanes);
    const MemColumn column = columnOf(buffer, totalBits, index, width);
    return outputMemRecord(
        file, {index, wide, wordsWithin(totalBits, maxBits, index, column.stepBits), width, std::span(&column, 1)});
}

int output_parity_mem_data_records(fileIODescriptor* file, unsigned long byteAddress, unsigned char* dataBuffer,
    unsigned long dataTotalBits, unsigned long dataMaxBits, unsigned char* parityBuffer, unsigned long parityTotalBits,
    unsigned long lanes, unsigned long width) {
    using namespace memdata;
    const ParityWord word = parityWordOf(width);
    if (parityBuffer == nullptr || width == 0 || !isSound(dataBuffer, lanes, std::max(word.dataBits, 1u)))
        return kNO_SUCH_RECORD;
    const u64 index = wordIndexOf(width, byteAddress, lanes);
    if (word.dataBits == 0) return outputMemRecord(file, {index, false, 0, 0, {}});
    const MemColumn columns[] = {columnOf(parityBuffer, parityTotalBits, index, word.parityBits),
        columnOf(dataBuffer, dataTotalBits, index, word.dataBits)};
    return outputMemRecord(
        file, {index, false, wordsWithin(dataTotalBits, dataMaxBits, index, word.dataBits), word.dataBits, columns});
}

int output_combined_mem_data_records(fileIODescriptor* file, unsigned long byteAddress, unsigned char* dataBuffer,
    unsigned long dataTotalBits, unsigned long maxBits, unsigned long lanes, unsigned long width,
    unsigned char* eccBuffer, unsigned long eccTotalBits, unsigned long eccLanes, unsigned long eccWidth, bool wide) {
    using namespace memdata;
    if (!isSound(dataBuffer, lanes, width) || !isSound(eccBuffer, eccLanes, eccWidth)) return kNO_SUCH_RECORD;
    const u64 index = wordIndexOf(width, byteAddress, lanes);
    const MemColumn columns[] = {columnOf(dataBuffer, dataTotalBits, index, width),
        columnOf(eccBuffer, eccTotalBits, wordIndexOf(eccWidth, byteAddress, eccLanes), eccWidth)};
    return outputMemRecord(
        file, {index, wide, wordsWithin(dataTotalBits, maxBits, index, columns[0].stepBits), width, columns});
}

// plain_mem_text.cpp - see plain_mem_text.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/plain_mem_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace memdata::testing {

namespace {

std::string hex(u64 value, unsigned digits) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%0*llX", static_cast<int>(digits), static_cast<unsigned long long>(value));
    return text.data();
}

// Lanes of memories that count their parity print it ahead of the data, in digits of its own. Check lanes have none,
// and print so only where their widths are those of data.
bool showsParity(const PlainLaneImage& lane) {
    const unsigned width = lane.lane->width;
    const bool hasDataWidth = width == 8 || width == 16 || width == 32 || width == 64;
    return lane.lane->type->countsParity && (lane.parityBits != 0 || hasDataWidth);
}

std::string digitsOf(const PlainLaneImage& lane, u64 word) {
    const auto at = [word](const std::vector<u64>& words) { return word < words.size() ? words[word] : 0; };
    if (!showsParity(lane)) return hex(at(lane.data), (lane.dataBits + 3) / 4);
    const unsigned parityDigits = lane.dataBits == 64 ? 2 : 1;
    return hex(at(lane.parity), parityDigits) + hex(at(lane.data), lane.dataBits / 4);
}

struct Record {
    u64 address;
    std::vector<std::string> words;
};

u64 countOf(const PlainLaneImage::Written& written) {
    return written.first > written.last ? 0 : written.last - written.first + 1;
}

Record recordOf(const PlainLaneImage& lane, const PlainLaneImage::Written& written) {
    Record record{written.first, {}};
    for (u64 i = 0; i < countOf(written); ++i) record.words.push_back(digitsOf(lane, written.first + i));
    return record;
}

// A line for each bus word of which the lane or its check lane holds a word. Each counts words in its own way.
Record recordOf(const PlainLaneImage& lane, const PlainLaneImage& check, u64 start) {
    const auto find = [start](const PlainLaneImage& image) {
        const auto found = image.written.find(start);
        return found == image.written.end() ? PlainLaneImage::Written{} : found->second;
    };
    const PlainLaneImage::Written data = find(lane);
    const PlainLaneImage::Written checks = find(check);
    const bool hasChecks = countOf(checks) != 0;
    const u64 begin = countOf(data) != 0 && !hasChecks ? data.first : data.begin;
    const u64 dataLines = countOf(data) == 0 ? 0 : data.last - begin + 1;
    Record record{begin, {}};
    for (u64 i = 0; i < std::max(dataLines, countOf(checks)); ++i)
        record.words.push_back(
            digitsOf(lane, begin + i) + digitsOf(check, (hasChecks ? checks.first : data.begin) + i));
    return record;
}

std::vector<Record> recordsIn(const PlainLaneImage& lane, const PlainLaneImage* check) {
    std::vector<Record> records;
    for (const auto& [start, written] : lane.written) {
        Record record = check == nullptr ? recordOf(lane, written) : recordOf(lane, *check, start);
        if (!record.words.empty()) records.push_back(std::move(record)); // else the data ended ahead of this lane
    }
    return records;
}

} // namespace

LoadedWords loadMemText(const std::string& text) {
    LoadedWords words;
    std::istringstream lines(text);
    u64 address = 0;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream tokens(line.substr(0, line.find("//")));
        for (std::string token; tokens >> token;) {
            const bool isAddress = token[0] == '@';
            const std::string digits = token.substr(isAddress ? 1 : 0);
            if (digits.empty() || digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos)
                throw std::runtime_error("'" + token + "' is no number");
            if (isAddress)
                address = std::stoull(digits, nullptr, 16);
            else
                words[address++] = digits;
        }
    }
    return words;
}

LoadedWords wordsOf(const PlainLaneImage& lane, const PlainLaneImage* check) {
    LoadedWords words;
    for (const Record& record : recordsIn(lane, check))
        for (size_t i = 0; i < record.words.size(); ++i) words[record.address + i] = record.words[i];
    return words;
}

std::string recordText(const PlainLaneImage& lane, const PlainLaneImage* check, bool is64Bit) {
    constexpr size_t kBITS_OF_LINE = 255;
    constexpr size_t kCHARACTERS_OF_LINE = 127;
    const unsigned wordBits = showsParity(lane) ? lane.dataBits : lane.lane->width;
    std::string text;
    for (const Record& record : recordsIn(lane, check)) {
        text += "\n@" + hex(record.address, is64Bit && !showsParity(lane) ? 16 : 8) + "\n";
        size_t bits = 0;
        size_t characters = 0;
        for (const std::string& word : record.words) {
            text += (bits == 0 ? "    " : " ") + word;
            bits += wordBits;
            characters += word.size() + 1;
            if (bits <= kBITS_OF_LINE && characters <= kCHARACTERS_OF_LINE && &word != &record.words.back()) continue;
            text += "\n";
            bits = characters = 0;
        }
    }
    return text;
}

std::string headOf(const std::string& text) {
    return text.substr(0, text.size() - recordsOf(text).size());
}

std::string recordsOf(const std::string& text) {
    size_t at = 0;
    while (at < text.size() && text.compare(at, 2, "//") == 0) at = std::min(text.find('\n', at), text.size() - 1) + 1;
    return text.substr(at);
}

} // namespace memdata::testing

// bit_builder.cpp - see bit_builder.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/bit_builder.h"

#include <cstdio>
#include <map>
#include <stdexcept>

namespace memdata::testing {

namespace {

void putNumber(Bytes* to, u32 byteCount, u64 value) {
    for (u32 shift = 8 * byteCount; shift > 0;) {
        shift -= 8;
        to->push_back(static_cast<u8>(value >> shift));
    }
}

void putText(Bytes* to, std::string_view text) {
    to->insert(to->end(), text.begin(), text.end());
}

void putTerminated(Bytes* to, std::string_view text) {
    putText(to, text);
    to->push_back(0);
}

void putPascal(Bytes* to, std::string_view text) {
    putNumber(to, 2, text.size() + 1);
    putTerminated(to, text);
}

struct BuiltHeader {
    Bytes bytes;
    std::map<std::string, size_t, std::less<>> offsets;
};

BuiltHeader buildT4k(const T4kFields& fields, u32 dataLength) {
    BuiltHeader built;
    Bytes* to = &built.bytes;
    const auto mark = [&](const char* field) { built.offsets[field] = to->size(); };
    mark("preamble");
    putPascal(to, fields.preamble);
    mark("fieldCount");
    putNumber(to, 2, fields.fieldCount);
    const struct {
        const char* field;
        const std::string& text;
    } strings[] = {
        {"designName", fields.designName}, {"partName", fields.partName}, {"date", fields.date}, {"time", fields.time}};
    size_t tag = 0;
    for (const auto& string : strings) {
        to->push_back(static_cast<u8>(fields.tags.at(tag++)));
        mark(string.field);
        putPascal(to, string.text);
    }
    mark("dataTag");
    to->push_back(static_cast<u8>(fields.tags.at(tag)));
    mark("dataLength");
    putNumber(to, 4, dataLength);
    mark("stream");
    return built;
}

void append(Bytes* to, const Bytes& bytes) {
    to->insert(to->end(), bytes.begin(), bytes.end());
}

} // namespace

Bytes t4kBitFile(const T4kFields& fields, const Bytes& stream) {
    Bytes file = buildT4k(fields, fields.dataLength.value_or(static_cast<u32>(stream.size()))).bytes;
    append(&file, stream);
    return file;
}

size_t t4kOffset(const T4kFields& fields, std::string_view field) {
    const BuiltHeader built = buildT4k(fields, 0);
    const auto found = built.offsets.find(field);
    if (found == built.offsets.end()) throw std::invalid_argument("no field " + std::string(field));
    return found->second;
}

Bytes fenwickBitFile(const FenwickFields& fields, const Bytes& stream) {
    Bytes file = {25};
    for (const std::string* text : {&fields.designName, &fields.fenwickUser, &fields.partName, &fields.dateTime})
        putTerminated(&file, *text);
    putText(&file, fields.stamp);
    putNumber(&file, 4, fields.bitCount.value_or(static_cast<u32>(8 * stream.size())));
    append(&file, stream);
    return file;
}

std::string rbtText(const RbtFields& fields) {
    std::string text = fields.firstLine + "\nCreated by Bitstream O.40\nDesign name: \t" + fields.designName +
                       "\nArchitecture:\ttarsel\nPart:        \t" + fields.partName + "\nDate:        \t" +
                       fields.date + "\nBits:        \t" +
                       fields.bits.value_or(std::to_string(32 * fields.lines.size())) + "\n";
    for (const std::string& line : fields.lines) text += line + "\n";
    return text;
}

std::string rbtLine(u32 word) {
    std::string line;
    for (u32 bit = 32; bit > 0; --bit) line += (word >> (bit - 1) & 1) != 0 ? '1' : '0';
    return line;
}

std::string hexText(const Bytes& bytes) {
    return hexText(bytes.data(), bytes.size());
}

std::string hexText(const void* bytes, size_t byteCount) {
    std::string text;
    for (size_t i = 0; i < byteCount; ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, i == 0 ? "%02x" : " %02x", static_cast<const u8*>(bytes)[i]);
        text += digits;
    }
    return text;
}

} // namespace memdata::testing

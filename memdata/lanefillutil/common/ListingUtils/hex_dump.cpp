// hex_dump.cpp - bytes as lines of hexadecimal digits.
// SPDX-License-Identifier: Apache-2.0
#include "ListingUtils/ListingUtils.h"

#include <algorithm>

namespace {

constexpr int kBYTES_ALONE = 16; // in the mode
constexpr unsigned kCOLUMNS_PER_BYTE = 3;
constexpr size_t kBLOCK_CHARACTERS = size_t{64} << 10; // lines are written in blocks of about this size
constexpr char kHEX_DIGITS[] = "0123456789ABCDEF";

void append_byte(std::string* out, unsigned char byte) {
    out->push_back(kHEX_DIGITS[byte >> 4]);
    out->push_back(kHEX_DIGITS[byte & 0xF]);
}

void append_plain_line(std::string* out, std::span<const unsigned char> bytes) {
    for (const unsigned char byte : bytes) append_byte(out, byte);
    out->push_back('\n');
}

void append_address(std::string* out, u32 address) {
    out->push_back(' ');
    for (int shift = 24; shift >= 0; shift -= 8) append_byte(out, static_cast<unsigned char>(address >> shift));
    out->append(":  ");
}

void append_full_line(std::string* out, u32 address, std::span<const unsigned char> bytes, unsigned perLine) {
    append_address(out, address);
    for (const unsigned char byte : bytes) {
        out->push_back(' ');
        append_byte(out, byte);
    }
    // Missing bytes, and one more column, set the characters apart.
    out->append((perLine - bytes.size() + 1) * kCOLUMNS_PER_BYTE, ' ');
    for (const unsigned char byte : bytes) out->push_back(byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '.');
    out->push_back('\n');
}

} // namespace

int DumpHex(
    fileIODescriptor* file, int mode, unsigned address, const unsigned char* data, unsigned size, unsigned perLine) {
    if (perLine == 0 || (data == nullptr && size != 0)) return 3;
    perLine = std::min(perLine, memdata::kMAX_DUMP_BYTES_PER_LINE);

    std::string block;
    std::span<const unsigned char> rest(data, size);
    while (!rest.empty()) {
        const std::span<const unsigned char> line = rest.first(std::min<size_t>(perLine, rest.size()));
        if ((mode & kBYTES_ALONE) != 0)
            append_plain_line(&block, line);
        else
            append_full_line(&block, address, line, perLine);
        address += perLine; // wraps with the 32 bits that are shown
        rest = rest.subspan(line.size());
        if (block.size() < kBLOCK_CHARACTERS && !rest.empty()) continue;
        if (int status = PutNextLine(file, "%s", block); status != 0) return status;
        block.clear();
    }
    return 0;
}

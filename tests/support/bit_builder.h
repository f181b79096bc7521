// bit_builder.h - bit files for tests: headers with sound contents unless a test says otherwise, around any stream.
//
//   Bytes file = t4kBitFile({.partName = "q7b100fg484"}, {0xAA, 0x99, 0x55, 0x66});
//   Bytes damaged = set_length(file, t4kOffset({}, "partName"), 2, 65535);
//   std::string text = rbtText({.lines = {"1", "10"}});
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_BIT_BUILDER_H
#define MEMDATA_TESTS_SUPPORT_BIT_BUILDER_H

#include "support/damage.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace memdata::testing {

struct T4kFields {
    std::string preamble = "\x0F\xF0\x0F\xF0\x0F\xF0\x0F\xF0";
    u32 fieldCount = 1;
    std::string designName = "top.ncd;UserID=0xFFFFFFFF";
    std::string partName = "q5a20ff676";
    std::string date = "2010/07/10";
    std::string time = "12:52:21";
    std::string tags = "abcde";
    std::optional<u32> dataLength = std::nullopt; // without it that of the stream
};
Bytes t4kBitFile(const T4kFields& fields, const Bytes& stream);
// Where a field begins: "preamble", "fieldCount", "designName", "partName", "date" or "time" (their lengths, behind the
// tag), "dataTag", "dataLength", "stream".
size_t t4kOffset(const T4kFields& fields, std::string_view field);

struct FenwickFields {
    std::string designName = "top.ncd";
    std::string fenwickUser = "0xFFFFFFFF";
    std::string partName = "q5a20ff676";
    std::string dateTime = "Sat Jul 10 12:52:21 2010";
    std::string stamp = "\1\2\3\4\5\6\7\x80"; // eight bytes
    std::optional<u32> bitCount = std::nullopt;
};
Bytes fenwickBitFile(const FenwickFields& fields, const Bytes& stream);

struct RbtFields {
    std::string firstLine = "Ombrel ASCII Bitstream";
    std::string designName = "top.ncd";
    std::string partName = "q5a20ff676";
    std::string date = "Sat Jul 10 12:52:21 2010";
    std::optional<std::string> bits = std::nullopt; // without it 32 for each line
    std::vector<std::string> lines = {"10101010100110010101010101100110", "00100000000000000000000000000000"};
};
std::string rbtText(const RbtFields& fields);
// A word as the 32 digits of its line.
std::string rbtLine(u32 word);

// "aa 99 55 66"
std::string hexText(const Bytes& bytes);
std::string hexText(const void* bytes, size_t byteCount);

inline std::string_view textOf(const Bytes& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace memdata::testing

#endif

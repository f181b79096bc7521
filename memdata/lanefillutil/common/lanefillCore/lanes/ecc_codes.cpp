// ecc_codes.cpp - see ecc_codes.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/ecc_codes.h"

#include "lanefillCore/lanes/ecc_tables.h"

#include <bit>
#include <span>

namespace {

// The matrix record of a code, from its columns.
template<u32 CheckBits, size_t DataBits>
constexpr std::array<unsigned char, 2 + DataBits * CheckBits> matrixRecord(const u16 (&columns)[DataBits]) {
    std::array<unsigned char, 2 + DataBits * CheckBits> record{};
    record[0] = static_cast<unsigned char>(DataBits);
    record[1] = static_cast<unsigned char>(CheckBits);
    size_t at = 2;
    for (const u16 column : columns)
        for (u32 check = CheckBits; check-- > 0;) record[at++] = static_cast<unsigned char>(column >> check & 1);
    return record;
}

// Check values of every byte value at every place of a word, for one look-up per byte. Place 0 is the
// least significant byte.
template<size_t Bytes>
using ByteTable = std::array<std::array<u16, 256>, Bytes>;

// columns: the check value of each data bit, data bit 0 first.
template<size_t DataBits>
constexpr ByteTable<DataBits / 8> byteTable(const std::array<u16, DataBits>& columns) {
    ByteTable<DataBits / 8> table{};
    for (size_t place = 0; place < DataBits / 8; ++place)
        for (size_t value = 1; value < 256; ++value) {
            const size_t rest = value & (value - 1); // without its lowest set bit
            const auto lowest = static_cast<size_t>(std::countr_zero(value));
            table[place][value] = static_cast<u16>(table[place][rest] ^ columns[8 * place + lowest]);
        }
    return table;
}

template<size_t DataBits>
constexpr std::array<u16, DataBits> columnsOfHsiao(const u16 (&columns)[DataBits]) {
    std::array<u16, DataBits> ascending{};
    for (size_t bit = 0; bit < DataBits; ++bit) ascending[bit] = columns[DataBits - 1 - bit];
    return ascending;
}

template<size_t DataBits, class Mask, size_t CheckBits>
constexpr std::array<u16, DataBits> columnsOfMasks(const Mask (&masks)[CheckBits]) {
    std::array<u16, DataBits> columns{};
    for (size_t bit = 0; bit < DataBits; ++bit)
        for (size_t check = 0; check < CheckBits; ++check)
            columns[bit] = static_cast<u16>(columns[bit] | (masks[check] >> bit & 1) << check);
    return columns;
}

constexpr auto kH32_7 = byteTable(columnsOfMasks<32>(memdata::kHAMMING_32_7_MASKS));
constexpr auto kH64_8 = byteTable(columnsOfMasks<64>(memdata::kHAMMING_64_8_MASKS));
constexpr auto kHSIAO32_7 = byteTable(columnsOfHsiao(memdata::kHSIAO_32_7_COLUMNS));
constexpr auto kHSIAO64_8 = byteTable(columnsOfHsiao(memdata::kHSIAO_64_8_COLUMNS));
constexpr auto kHSIAO128_9 = byteTable(columnsOfHsiao(memdata::kHSIAO_128_9_COLUMNS));

template<size_t Bytes>
u32 lookUp(const ByteTable<Bytes>& table, u64 word, size_t firstPlace = 0) {
    u32 check = 0;
    for (size_t place = firstPlace; place < Bytes && place < firstPlace + 8; ++place, word >>= 8)
        check ^= table[place][word & 0xFF];
    return check;
}

template<class Value, class Mask, size_t CheckBits>
unsigned parities(Value value, const Mask (&masks)[CheckBits]) {
    unsigned result = 0;
    for (size_t check = 0; check < CheckBits; ++check)
        result |= static_cast<unsigned>(std::popcount(static_cast<Mask>(value & masks[check])) & 1) << check;
    return result;
}

} // namespace

constinit const std::array<unsigned char, 226> h_matrix_32_7 = matrixRecord<7>(memdata::kHSIAO_32_7_COLUMNS);
constinit const std::array<unsigned char, 514> h_matrix_64_8 = matrixRecord<8>(memdata::kHSIAO_64_8_COLUMNS);
constinit const std::array<unsigned char, 1154> h_matrix_128_9 = matrixRecord<9>(memdata::kHSIAO_128_9_COLUMNS);

unsigned CalculateECCH32_7(unsigned value) {
    return parities(value, memdata::kHAMMING_32_7_MASKS);
}

unsigned CalculateECCH64_8(unsigned long value) {
    return parities(value, memdata::kHAMMING_64_8_MASKS);
}

unsigned CalculateECCHsiao(EndianConvert::UInt128 value, const unsigned char* matrix) {
    const unsigned dataBits = matrix[0];
    const unsigned checkBits = matrix[1];
    unsigned bits[128];
    convert_accumulated_value_to_bit_array(value, dataBits, bits);
    unsigned result = 0;
    for (unsigned check = 0; check < checkBits; ++check) {
        unsigned parity = 0;
        for (unsigned i = 0; i < dataBits && i < 128; ++i) parity ^= matrix[2 + i * checkBits + check] & bits[i];
        result = result << 1 | parity;
    }
    return result;
}

namespace memdata {

u32 eccCheckValue(u32 eccType, EndianConvert::UInt128 word) {
    switch (eccType) {
    case kECC_H32_7:
        return lookUp(kH32_7, word.low);
    case kECC_H64_8:
        return lookUp(kH64_8, word.low);
    case kECC_HSIAO32_7:
        return lookUp(kHSIAO32_7, word.low);
    case kECC_HSIAO64_8:
        return lookUp(kHSIAO64_8, word.low);
    case kECC_HSIAO128_9:
        return lookUp(kHSIAO128_9, word.low) ^ lookUp(kHSIAO128_9, word.high, 8);
    default:
        return 0;
    }
}

} // namespace memdata

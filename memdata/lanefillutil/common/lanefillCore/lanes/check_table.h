// check_table.h - the check values of bus words straight from their bytes, by one lookup a byte.
// SPDX-License-Identifier: Apache-2.0
//
// The codes are linear over single bits, and what lies between the bytes of a source and the word that a code sees
// (lanes turned round, bytes in the other order, bits that do not count) only moves bits. So the check value of
// a word is the exclusive or of what each of its bytes gives at its place, and a table that was made from the
// check values of single bits knows the whole way.
#ifndef MEMDATA_LANEFILL_CORE_CHECK_TABLE_H
#define MEMDATA_LANEFILL_CORE_CHECK_TABLE_H

#include "platform/BasicTypes.h"

#include <array>
#include <span>
#include <utility>

namespace memdata {

class CheckTable {
public:
    static constexpr u64 kMAX_BUS_BYTES = 16;

    // busBytes: of a bus word, 1 to 16. checkOf: the check value of a bus word from its bytes, at most 16 bits.
    CheckTable(u64 busBytes, const auto& checkOf) : busBytes_(busBytes), values_{} {
        for (u64 place = 0; place < busBytes; ++place)
            for (unsigned bit = 0; bit < 8; ++bit)
                addBit(place, bit, static_cast<u16>(checkOf(&kSINGLE_BITS[bit][kMAX_BUS_BYTES - 1 - place])));
    }

    // The check values of words that follow one another.
    void checksOf(const u8* bytes, std::span<u16> checks) const;

private:
    using ByteValues = std::array<u16, 256>;

    // For each bit, bytes of which the middle one has it: a bus word with that bit at any place is a window of them. One
    // word whose bytes are set and cleared in turn would do, but gcc 12 drops the clearing store at -O2.
    static constexpr auto kSINGLE_BITS = [] {
        std::array<std::array<u8, 2 * kMAX_BUS_BYTES - 1>, 8> bytes{};
        for (unsigned bit = 0; bit < bytes.size(); ++bit) bytes[bit][kMAX_BUS_BYTES - 1] = static_cast<u8>(1u << bit);
        return bytes;
    }();

    // The values of bytes whose highest bit this is.
    void addBit(u64 place, unsigned bit, u16 check) {
        ByteValues& values = values_[place];
        for (u64 byte = u64{1} << bit, rest = 0; rest < u64{1} << bit; ++byte, ++rest)
            values[byte] = values[rest] ^ check;
    }

    template<size_t... Place>
    void checksOfWords(const u8* bytes, std::span<u16> checks, std::index_sequence<Place...>) const;

    u64 busBytes_;
    std::array<ByteValues, kMAX_BUS_BYTES> values_; // byte 0 of the places that count is set with bit 0
};

} // namespace memdata

#endif

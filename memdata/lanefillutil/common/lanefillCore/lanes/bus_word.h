// bus_word.h - one word of the bus as its lanes assemble it, up to 128 bits.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_BUS_WORD_H
#define MEMDATA_LANEFILL_CORE_BUS_WORD_H

#include "platform/BasicTypes.h"

namespace EndianConvert {

struct UInt128 {
    u64 high;
    u64 low;

    friend bool operator==(const UInt128&, const UInt128&) = default;
};

// Bytes in the other order: of the low two bytes (the rest is kept), of the low four (the rest is dropped),
// of all eight.
constexpr u64 swapTwoBytes(u64 value) {
    return (value & ~u64{0xFFFF}) | (value & 0xFF) << 8 | (value >> 8 & 0xFF);
}
constexpr u64 swapFourBytes(u64 value) {
    return __builtin_bswap32(static_cast<u32>(value));
}
constexpr u64 swapEightBytes(u64 value) {
    return __builtin_bswap64(value);
}

} // namespace EndianConvert

// Appends a lane's word to the bus word: what is there moves up by width bits. Width 0 clears the bus word.
// The shift counts are taken modulo 64, so that a width of 64 does not move, and the value is not masked to
// the width.
inline void accumulate_bus_width_value(long width, unsigned long value, EndianConvert::UInt128* bus) {
    if (width == 0) {
        *bus = {0, 0};
        return;
    }
    // On purpose modulo 64, also for the distance from 64: a width of 64 merges the words where they stand.
    const unsigned up = static_cast<unsigned>(width) % 64;
    const unsigned down = (64 - up) % 64;
    bus->high = bus->high << up | bus->low >> down;
    bus->low = bus->low << up | value;
}

// One array word per bit, each 0 or 1, the most significant of the low width bits (0 to 128) first.
void convert_accumulated_value_to_bit_array(EndianConvert::UInt128 value, unsigned width, unsigned* bits);

#endif

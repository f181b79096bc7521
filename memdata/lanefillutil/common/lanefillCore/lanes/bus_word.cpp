// bus_word.cpp - see bus_word.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/bus_word.h"

#include <algorithm>

void accumulate_bus_width_value(long width, unsigned long value, EndianConvert::UInt128* bus) {
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

void convert_accumulated_value_to_bit_array(EndianConvert::UInt128 value, unsigned width, unsigned* bits) {
    for (unsigned bit = std::min(width, 128u); bit-- > 0; ++bits)
        *bits = static_cast<unsigned>((bit >= 64 ? value.high : value.low) >> bit % 64 & 1);
}

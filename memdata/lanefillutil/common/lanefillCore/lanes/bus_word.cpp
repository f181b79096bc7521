// bus_word.cpp - see bus_word.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/bus_word.h"

#include <algorithm>

void convert_accumulated_value_to_bit_array(EndianConvert::UInt128 value, unsigned width, unsigned* bits) {
    for (unsigned bit = std::min(width, 128u); bit-- > 0; ++bits)
        *bits = static_cast<unsigned>((bit >= 64 ? value.high : value.low) >> bit % 64 & 1);
}

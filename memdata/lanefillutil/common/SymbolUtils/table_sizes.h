// table_sizes.h - the sizes that a symbol table may have.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYMBOL_UTILS_TABLE_SIZES_H
#define MEMDATA_SYMBOL_UTILS_TABLE_SIZES_H

#include "platform/BasicTypes.h"

#include <algorithm>
#include <array>

namespace memdata {

inline constexpr u32 kTABLE_SIZE_BOUND = 4096;
inline constexpr u32 kTABLE_SIZE_COUNT = 565;

// 1 and the odd primes below the bound, rising, then a 0. The even prime is left out on purpose.
constexpr std::array<u32, kTABLE_SIZE_COUNT> list_table_sizes() {
    std::array<bool, kTABLE_SIZE_BOUND> composite{};
    for (u32 factor = 3; factor * factor < kTABLE_SIZE_BOUND; factor += 2)
        for (u32 multiple = factor * factor; multiple < kTABLE_SIZE_BOUND; multiple += 2 * factor)
            composite[multiple] = true;
    std::array<u32, kTABLE_SIZE_COUNT> sizes{};
    u32 count = 0;
    for (u32 number = 1; number < kTABLE_SIZE_BOUND; number += 2)
        if (!composite[number]) sizes[count++] = number; // at compile time: a store behind the end is an error
    return sizes;
}

} // namespace memdata

inline constexpr std::array<u32, memdata::kTABLE_SIZE_COUNT> primes_under_4096 = memdata::list_table_sizes();

static_assert(primes_under_4096[0] == 1 && primes_under_4096[1] == 3 && primes_under_4096[4] == 11);
static_assert(primes_under_4096[memdata::kTABLE_SIZE_COUNT - 2] == 4093);
static_assert(std::ranges::count(primes_under_4096, 0u) == 1 && primes_under_4096.back() == 0);

#endif

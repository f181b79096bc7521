// keywords.cpp - see keywords.h.
// SPDX-License-Identifier: Apache-2.0
#include "MemUtils/keywords.h"

namespace {

// In either case, as users write them.
constexpr keyword_row kMEM_WORDS[] = {
    {"RADIX", &kMEM_RADIX},
    {"PACKED", &kMEM_PACKED},
    {"UNPACKED", &kMEM_UNPACKED},
    {"PACKING", &kMEM_PACKING},
    {"memory_initialization_radix", &kCOE_RADIX},
    {"memory_initialization_vector", &kCOE_VECTOR},
    {},
};

} // namespace

constinit token_set mem_symbol_set{kMEM_WORDS};

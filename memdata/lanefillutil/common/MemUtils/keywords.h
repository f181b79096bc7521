// keywords.h - the words of MEM and COE texts.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_MEM_UTILS_KEYWORDS_H
#define MEMDATA_MEM_UTILS_KEYWORDS_H

#include "ParseUtils/keyword_sets.h"

inline constexpr token_type kMEM_OPERATOR{&kMEM_OPERATOR_TOKEN, 1, 0, 6};

inline constexpr token_type kMEM_RADIX{&kMEM_OPERATOR, 2, 0, 0};
inline constexpr token_type kMEM_PACKED{&kMEM_OPERATOR, 2, 1, 0};   // reserved, like the next two
inline constexpr token_type kMEM_UNPACKED{&kMEM_OPERATOR, 2, 2, 0}; //
inline constexpr token_type kMEM_PACKING{&kMEM_OPERATOR, 2, 3, 0};  //
inline constexpr token_type kCOE_RADIX{&kMEM_OPERATOR, 2, 4, 0};
inline constexpr token_type kCOE_VECTOR{&kMEM_OPERATOR, 2, 5, 0};

extern token_set mem_symbol_set;

#endif

// symbol_tables.cpp - the sets over the front end's own words, and the operators by their first character.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/symbol_tables.h"

#include <iterator>

constinit token_set operator_symbol_set{memdata::kOPERATOR_SYMBOLS};
constinit token_set builtin_keywords_set{memdata::kBUILTIN_KEYWORDS};
constinit token_set preprocess_keyword_set{memdata::kPREPROCESS_KEYWORDS};
constinit token_set pragma_keyword_set{memdata::kPRAGMA_KEYWORDS};
constinit token_set file_path_token_set{memdata::kFILE_PATH_SYMBOLS};
constinit token_set instance_path_token_set{memdata::kINSTANCE_PATH_SYMBOLS};

namespace {

using memdata::kOPERATOR_SYMBOLS;

constexpr size_t kROW_COUNT = std::size(kOPERATOR_SYMBOLS) - 1;

// Row numbers ordered by first character, in table order within one character. Those of character c stand at
// first[c] to first[c + 1] - 1.
struct OperatorIndexType {
    u8 first[257];
    u8 rows[kROW_COUNT];
};

consteval OperatorIndexType index_operators() {
    OperatorIndexType index{};
    u8 filled = 0;
    for (u32 c = 0; c < 256; ++c) {
        index.first[c] = filled;
        for (u8 row = 0; row < kROW_COUNT; ++row)
            if (static_cast<u8>(kOPERATOR_SYMBOLS[row].word[0]) == c) index.rows[filled++] = row;
    }
    index.first[256] = filled;
    return index;
}

constexpr OperatorIndexType kOPERATOR_INDEX = index_operators();
static_assert(kOPERATOR_INDEX.first[256] == kROW_COUNT);

} // namespace

const keyword_row* memdata::operatorAt(const char* text, const char* end) {
    const u32 letter = static_cast<u8>(*text);
    for (u32 i = kOPERATOR_INDEX.first[letter]; i < kOPERATOR_INDEX.first[letter + 1]; ++i) {
        const keyword_row& row = kOPERATOR_SYMBOLS[kOPERATOR_INDEX.rows[i]];
        const char* at = text + 1;
        const char* word = row.word + 1;
        while (*word != '\0' && at < end && *at == *word) ++at, ++word;
        if (*word == '\0') return &row;
    }
    return nullptr;
}

// keyword_sets.h - words that are more than identifiers: constant tables, and words added while reading.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_KEYWORD_SETS_H
#define MEMDATA_PARSE_UTILS_KEYWORD_SETS_H

#include "ParseUtils/characters.h"
#include "ParseUtils/tokens.h"

#include <array>
#include <utility>

// One word of a constant table. A table ends with a row without a word:
//     constexpr keyword_row kWORDS[] = {{"on", &kON_KEYWORD, false}, {}};
struct keyword_row {
    const char* word = nullptr;
    const token_type* type = nullptr;
    bool caseSensitive = false;
};

namespace memdata {
struct RuntimeWords;
}

// A table and a list of run-time words. Sets are global objects; only their run-time words change, and those go
// with close_token_symbol_set, at the latest at shut-down.
struct token_set {
    static constexpr u32 kMOST_ROWS = 128;

    const keyword_row* rows;
    memdata::RuntimeWords* words; // null while none was added
    std::array<u64, 4>
        firstLetters{}; // bit c: some word begins with the character c, in either case if it ignores case
    // Rows that begin with one letter, in either case, are chained in the order of the table: from 1, 0 ends a chain.
    std::array<u8, 256> firstRow{};
    std::array<u8, kMOST_ROWS> nextRow{};

    constexpr explicit token_set(const keyword_row* table) : rows(table), words(nullptr) {
        std::array<u8, 256> lastRow{}; // of each chain so far
        for (u8 number = 1; table[number - 1].word != nullptr; ++number) {
            const keyword_row& row = table[number - 1];
            addFirstLetter(row.word[0], row.caseSensitive);
            const auto letter = static_cast<u8>(memdata::foldedCase(row.word[0]));
            const u8 previous = std::exchange(lastRow[letter], number);
            (previous == 0 ? firstRow[letter] : nextRow[previous - 1]) = number;
        }
    }
    constexpr void addFirstLetter(char letter, bool caseSensitive) {
        const auto mark = [this](
                              char c) { firstLetters[static_cast<u8>(c) / 64] |= u64{1} << (static_cast<u8>(c) % 64); };
        mark(letter);
        if (caseSensitive) return;
        if (letter >= 'a' && letter <= 'z') mark(static_cast<char>(letter - 'a' + 'A'));
        if (letter >= 'A' && letter <= 'Z') mark(static_cast<char>(letter - 'A' + 'a'));
    }
    constexpr bool hasFirstLetter(char letter) const {
        return ((firstLetters[static_cast<u8>(letter) / 64] >> (static_cast<u8>(letter) % 64)) & 1) != 0;
    }
};

extern token_set operator_symbol_set;
extern token_set builtin_keywords_set;
extern token_set preprocess_keyword_set;
extern token_set pragma_keyword_set;
extern token_set file_path_token_set;
extern token_set instance_path_token_set;

// Looks up the start of a text, first in the constant table, then among the run-time words, in their order. For
// each word the longer of the word and length counts: with length 1 words match as prefixes of the text, with an
// identifier's length only whole words do.
//   text    NUL ends it early
//   length  characters
//   out     set to the word as the set spells it, its case flag, type and value; untouched when nothing matches
// The count of characters compared, 0 for no match.
u32 lookup_symbol_token(token_set* set, const char* text, int length, token_element* out);

// The row of a constant table that matches as above; null for none.
const keyword_row* search_token_symbol_table(const keyword_row* rows, const char* text, int length);

// Adds a word under a class, with a new type whose ordinal follows the class's last child. Types live until
// shut-down, so that records may keep them; the word itself goes with close_token_symbol_set.
//   parent  a class
//   out     the new type; may be null
// Status 0; 3 for a null argument or an empty word; 7.
int extend_token_symbol_set(
    token_set* set, const char* word, bool caseSensitive, const token_type* parent, const token_type** out);
// Appends a keyword token to a set, which takes it over, also on failure. Status 0; 3; 7.
int insert_token_symbol_list(token_set* set, token_element* word);
// Drops the run-time words of a set.
void close_token_symbol_set(token_set* set);
// Drops the run-time words of all sets and all run-time types. Runs at shut-down.
void close_token_types();

namespace memdata {

inline constexpr u32 kLOOKUP_WITHOUT_MEMORY = UINT32_MAX; // there is a match, but out can not hold it: reported

// The row of a set's table that matches the start of a text which ends at end; null for none.
const keyword_row* findKeyword(const token_set& set, const char* text, const char* end, u32 length);

// lookup_symbol_token over a text that ends at end and need not be terminated. The compared length, 0, or
// kLOOKUP_WITHOUT_MEMORY.
u32 lookupSymbol(token_set* set, const char* text, const char* end, u32 length, token_element* out);

} // namespace memdata

#endif

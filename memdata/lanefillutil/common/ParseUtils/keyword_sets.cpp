// keyword_sets.cpp - looking words up, and words added while reading.
// SPDX-License-Identifier: Apache-2.0
//
// Constant tables are small and looked through row by row. Run-time words can be many (a text defines them), so those
// that look like identifiers stand in buckets by their spelling without case; the others are looked through.
#include "ParseUtils/keyword_sets.h"

#include "ParseUtils/characters.h"
#include "ParseUtils/state.h"
#include "ParseUtils/symbol_tables.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace memdata {

struct RuntimeWord {
    token_element* token;
    u32 number; // order of adding
    RuntimeWord* next;
};

struct RuntimeWordList {
    RuntimeWord* first;
    RuntimeWord* last;
};

constexpr u32 kBUCKETS = 512;

struct RuntimeWords {
    token_set* owner;
    RuntimeWords* next; // of another set
    u32 count;
    RuntimeWordList buckets[kBUCKETS]; // words of word characters only, by spelling
    RuntimeWordList others;
};

struct RuntimeType {
    token_type type;
    RuntimeType* next;
};

} // namespace memdata

using memdata::foldedCase;
using memdata::gParseState;
using memdata::isOf;
using memdata::kWORD_PART;
using memdata::kWORD_START;
using memdata::RuntimeType;
using memdata::RuntimeWord;
using memdata::RuntimeWordList;
using memdata::RuntimeWords;

namespace {

// The count of characters compared when a word matches the start of a text, else 0.
u32 match_word(const char* word, bool caseSensitive, const char* text, const char* end, u32 length) {
    const char* at = text;
    for (; *word != '\0'; ++word, ++at) {
        if (at == end) return 0;
        if (*at != *word && (caseSensitive || foldedCase(*at) != foldedCase(*word))) return 0;
    }
    const auto wordLength = static_cast<u32>(at - text);
    return wordLength >= length ? wordLength : 0;
}

bool row_matches(const keyword_row& row, const char* text, const char* end, u32 length) {
    return match_word(row.word, row.caseSensitive, text, end, length) != 0;
}

u32 bucket_of(const char* text, u32 length) {
    u32 sum = 2166136261U;
    for (u32 i = 0; i < length; ++i) sum = (sum ^ static_cast<u8>(foldedCase(text[i]))) * 16777619U;
    return (sum ^ (sum >> 16)) % memdata::kBUCKETS;
}

bool is_plain_word(const char* word, u32 length) {
    return isOf(word[0], kWORD_START) && std::all_of(word, word + length, [](char c) { return isOf(c, kWORD_PART); });
}

// The earliest word of a list that matches, if it was added ahead of best.
const RuntimeWord* earlier_match(
    const RuntimeWordList& list, const char* text, const char* end, u32 length, const RuntimeWord* best) {
    for (const RuntimeWord* word = list.first; word != nullptr; word = word->next) {
        if (best != nullptr && word->number > best->number) break;
        if (match_word(word->token->text, word->token->caseSensitive, text, end, length) != 0) return word;
    }
    return best;
}

const RuntimeWord* find_runtime_word(const RuntimeWords& words, const char* text, const char* end, u32 length) {
    const RuntimeWord* found = earlier_match(words.others, text, end, length, nullptr);
    // A word of word characters can only match as a whole when no more of them follow in the text.
    const bool isWholeWord = text + length >= end || !isOf(text[length], kWORD_PART);
    if (isWholeWord) return earlier_match(words.buckets[bucket_of(text, length)], text, end, length, found);
    for (const RuntimeWordList& bucket : words.buckets) found = earlier_match(bucket, text, end, length, found);
    return found;
}

RuntimeWords* words_of(token_set* set) {
    if (set->words != nullptr) return set->words;
    memdata::registerParseFinalizer();
    auto* words = NEW_RECORD(memdata::RuntimeWords);
    if (words == nullptr) return nullptr;
    words->owner = set;
    words->next = std::exchange(gParseState.runtimeWords, words);
    set->words = words;
    return words;
}

void delete_words(RuntimeWordList* list) {
    while (RuntimeWord* word = list->first) {
        list->first = word->next;
        delete_token_element(word->token);
        releaseMemory(word);
    }
    list->last = nullptr;
}

u32 next_ordinal(const token_type* parent) {
    for (const RuntimeType* type = gParseState.runtimeTypes; type != nullptr; type = type->next)
        if (type->type.parent == parent) return type->type.ordinal + 1; // the newest stands first
    return parent->childCount + 1;
}

token_type* new_runtime_type(const token_type* parent) {
    memdata::registerParseFinalizer();
    auto* type = NEW_RECORD(memdata::RuntimeType);
    if (type == nullptr) return nullptr;
    type->type = {parent, parent->level + 1, next_ordinal(parent), 0};
    type->next = std::exchange(gParseState.runtimeTypes, type);
    return &type->type;
}

} // namespace

const keyword_row* memdata::findKeyword(const token_set& set, const char* text, const char* end, u32 length) {
    if (length == 0 || text == end) return nullptr;
    u8 number = set.firstRow[static_cast<u8>(foldedCase(*text))];
    while (number != 0 && !row_matches(set.rows[number - 1], text, end, length)) number = set.nextRow[number - 1];
    return number == 0 ? nullptr : set.rows + number - 1;
}

u32 memdata::lookupSymbol(token_set* set, const char* text, const char* end, u32 length, token_element* out) {
    if (length == 0 || text == end || !set->hasFirstLetter(*text)) return 0;
    const bool isOperatorStart = set == &operator_symbol_set && length == 1;
    const keyword_row* row = isOperatorStart ? operatorAt(text, end) : findKeyword(*set, text, end, length);
    if (row != nullptr) {
        const auto used = static_cast<u32>(std::strlen(row->word));
        return set_token_element(out, row->word, used, row->caseSensitive, row->type, 0) == 0 ? used
                                                                                              : kLOOKUP_WITHOUT_MEMORY;
    }
    if (set->words == nullptr) return 0;
    const RuntimeWord* word = find_runtime_word(*set->words, text, end, length);
    if (word == nullptr) return 0;
    const token_element* token = word->token;
    if (set_token_element(out, token->text, token->length, token->caseSensitive, token->type, token->value) != 0)
        return kLOOKUP_WITHOUT_MEMORY;
    return token->length;
}

u32 lookup_symbol_token(token_set* set, const char* text, int length, token_element* out) {
    if (set == nullptr || text == nullptr || out == nullptr || length <= 0) return 0;
    const size_t available = std::strlen(text);
    const auto wanted = static_cast<u32>(std::min(available, static_cast<size_t>(length)));
    const u32 used = memdata::lookupSymbol(set, text, text + available, wanted, out);
    return used == memdata::kLOOKUP_WITHOUT_MEMORY ? 0 : used;
}

const keyword_row* search_token_symbol_table(const keyword_row* rows, const char* text, int length) {
    if (rows == nullptr || text == nullptr || *text == '\0' || length <= 0) return nullptr;
    const char* end = text + std::strlen(text);
    while (rows->word != nullptr && !row_matches(*rows, text, end, static_cast<u32>(length))) ++rows;
    return rows->word == nullptr ? nullptr : rows;
}

int insert_token_symbol_list(token_set* set, token_element* word) {
    memdata::TokenOwner token(word);
    if (set == nullptr || word == nullptr || word->text == nullptr || word->length == 0) return 3;
    RuntimeWords* words = words_of(set);
    auto* entry = words == nullptr ? nullptr : NEW_RECORD(memdata::RuntimeWord);
    if (entry == nullptr) return 7;
    const bool isPlain = is_plain_word(word->text, word->length);
    RuntimeWordList& list = isPlain ? words->buckets[bucket_of(word->text, word->length)] : words->others;
    entry->token = token.release();
    entry->number = words->count++;
    (list.first == nullptr ? list.first : list.last->next) = entry;
    list.last = entry;
    set->addFirstLetter(word->text[0], word->caseSensitive);
    return 0;
}

int extend_token_symbol_set(
    token_set* set, const char* word, bool caseSensitive, const token_type* parent, const token_type** out) {
    if (set == nullptr || parent == nullptr || word == nullptr || *word == '\0') return 3;
    memdata::TokenOwner token(create_token_element());
    const token_type* type = token == nullptr ? nullptr : new_runtime_type(parent);
    if (type == nullptr) return 7;
    if (int status = set_token_element(token.get(), word, 0, caseSensitive, type, type->ordinal); status != 0)
        return status;
    if (int status = insert_token_symbol_list(set, token.release()); status != 0) return status;
    if (out != nullptr) *out = type;
    return 0;
}

void close_token_symbol_set(token_set* set) {
    if (set == nullptr || set->words == nullptr) return;
    RuntimeWords* words = std::exchange(set->words, nullptr);
    for (RuntimeWordList& bucket : words->buckets) delete_words(&bucket);
    delete_words(&words->others);
    for (RuntimeWords** link = &gParseState.runtimeWords; *link != nullptr; link = &(*link)->next) {
        if (*link != words) continue;
        *link = words->next;
        break;
    }
    releaseMemory(words);
    *set = token_set(set->rows);
}

void close_token_types() {
    while (gParseState.runtimeWords != nullptr) close_token_symbol_set(gParseState.runtimeWords->owner);
    while (RuntimeType* type = gParseState.runtimeTypes) {
        gParseState.runtimeTypes = type->next;
        releaseMemory(type);
    }
}

// table.cpp - the hash table of symbols.
// SPDX-License-Identifier: Apache-2.0
#include "SymbolUtils/SymbolUtils.h"

#include "SymbolUtils/index.h"
#include "SymbolUtils/internal.h"
#include "SymbolUtils/table_sizes.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

using namespace memdata;

namespace {

constexpr unsigned kLEAST_EXPECTED_SYMBOLS = 26;

bool stands_in(const symbol_entry* entry, u32 space, u32 scope) {
    return space == 0 || (entry->space == space && entry->scope == scope);
}

symbol_entry** bucket_head(symbol_table* table, u32 index) {
    return table->buckets + index;
}

// Where the chain of a name points at its entry, or where it ends. On the way from entry to entry this is also the
// pointer that the entry's owner field names.
symbol_entry** find_place(const char* name, symbol_table* table, u32 bucket, u32 space, u32 scope) {
    symbol_entry** place = bucket_head(table, bucket);
    while (*place != nullptr && !isSymbol(*place, name, space, scope)) place = &(*place)->next;
    return place;
}

bool is_indexed(const SymbolIndexType* index, u32 space) {
    return index->slotCount != 0 && space != 0;
}

u32 begin_search(const SymbolIndexType* index, const char* name, u32 space, u32 scope) {
    return index->slotCount == 0 ? 0 : beginIndexSearch(index, name, space, scope);
}

// The end of the chain where a name is to be entered; null when the scope has it already.
symbol_entry** find_end(const char* name, symbol_table* table, u32 bucket, u32 slotHash, u32 space, u32 scope) {
    const SymbolIndexType* index = indexOf(table);
    if (is_indexed(index, space))
        return findIndexed(index, slotHash, name, space, scope) == nullptr ? index->ends[bucket] : nullptr;
    symbol_entry** place = find_place(name, table, bucket, space, scope);
    return *place == nullptr ? place : nullptr;
}

symbol_entry* create_entry(const char* name) {
    const size_t nameBytes = std::strlen(name) + 1;
    const size_t bytes = std::max(sizeof(symbol_entry), offsetof(symbol_entry, name) + nameBytes);
    auto* entry = static_cast<symbol_entry*>(getMemory("a 'symbol_entry' record", bytes));
    if (entry == nullptr) return nullptr;
    std::memcpy(reinterpret_cast<char*>(entry) + offsetof(symbol_entry, name), name, nameBytes);
    return entry;
}

} // namespace

bool memdata::isSymbol(const symbol_entry* entry, const char* name, u32 space, u32 scope) {
    return stands_in(entry, space, scope) && std::strcmp(symbolName(entry), name) == 0;
}

void memdata::enterSymbolLink(symbol_entry* entry, symbol_link** list) {
    symbol_link* link = &entry->ownLink;
    *link = {list, *list, entry};
    if (link->next != nullptr) link->next->owner = &link->next;
    *list = link;
    entry->link = link;
}

void memdata::leaveSymbolLink(symbol_link* link) {
    *link->owner = link->next;
    if (link->next != nullptr) link->next->owner = link->owner;
    link->entry->link = nullptr;
}

void* memdata::extractSymbolEntry(symbol_entry* entry) {
    removeFromIndex(entry);
    *entry->owner = entry->next;
    if (entry->next != nullptr) entry->next->owner = entry->owner;
    if (entry->link != nullptr) leaveSymbolLink(entry->link);
    void* value = entry->value;
    releaseMemory(entry);
    return value;
}

void memdata::deleteSymbolEntry(symbol_entry* entry) {
    const SymbolReleaserType releaser = entry->releaser;
    void* value = extractSymbolEntry(entry);
    // Last: a releaser may itself look into the table, or take symbols from it.
    if (releaser != nullptr) releaser(value);
}

u32 hash(const char* name, u32 size) {
    if (name == nullptr || size == 0) return 0;
    u32 value = 0;
    for (; *name != '\0'; ++name) {
        // (value << 4) ^ character, its top four bits folded into bits 4 to 7: each part by itself, which waits less.
        const u32 character = (u32{static_cast<u8>(*name)} ^ 0x80) - 0x80; // sign-extended
        value =
            (value << 4 & 0x0FFFFFFF) ^ (value >> 20 & 0xF0) ^ ((character & 0x0FFFFFFF) ^ (character >> 24 & 0xF0));
    }
    return value % size;
}

symbol_table* create_symbol_table(unsigned expectedSymbols) {
    const u32 bound = std::max(expectedSymbols, kLEAST_EXPECTED_SYMBOLS) / 2;
    // The terminator is no size: it is not searched.
    const auto above = std::lower_bound(primes_under_4096.begin(), primes_under_4096.end() - 1, bound);
    const u32 size = *(above - 1);
    auto* table = static_cast<symbol_table*>(getMemory("a 'symbol_table' record", symbolTableBytes(size)));
    if (table != nullptr) table->size = size;
    return table;
}

void delete_symbol_table(symbol_table** table) {
    if (table == nullptr || *table == nullptr) return;
    symbol_table* old = *table;
    *table = nullptr;
    dropIndex(old); // no need to keep it up to date
    for (u32 i = 0; i < old->size; ++i)
        while (*bucket_head(old, i) != nullptr) deleteSymbolEntry(*bucket_head(old, i));
    releaseMemory(old);
}

unsigned count_table_symbols(const symbol_table* table, u32 space, u32 scope) {
    if (table == nullptr) return 0;
    unsigned count = 0;
    for (u32 i = 0; i < table->size; ++i)
        for (const symbol_entry* entry = table->buckets[i]; entry != nullptr; entry = entry->next)
            if (stands_in(entry, space, scope)) ++count;
    return count;
}

symbol_entry* insert_symbol(
    const char* name, symbol_table* table, u32 space, u32 scope, void* value, SymbolReleaserType releaser) {
    if (name == nullptr || table == nullptr) {
        PrintInternalError(kERROR_MESSAGE_STRING, 3, "A symbol was to be entered without a name or without a table.");
        return nullptr;
    }
    if (!makeRoomInIndex(table)) return nullptr;
    const u32 slotHash = begin_search(indexOf(table), name, space, scope);
    const u32 bucket = hash(name, table->size);
    symbol_entry** end = find_end(name, table, bucket, slotHash, space, scope);
    if (end == nullptr) return nullptr;
    symbol_entry* entry = create_entry(name);
    if (entry == nullptr) return nullptr;
    entry->slotHash = slotHash;
    entry->owner = end;
    entry->table = table;
    entry->space = space;
    entry->scope = scope;
    entry->value = value;
    entry->releaser = releaser;
    *end = entry;
    enterInIndex(table, entry, bucket);
    return entry;
}

void delete_symbol(const char* name, symbol_table* table, u32 space, u32 scope) {
    symbol_entry* entry = lookup_symbol(name, table, space, scope);
    if (entry != nullptr) deleteSymbolEntry(entry);
}

void* extract_symbol(const char* name, symbol_table* table, u32 space, u32 scope) {
    symbol_entry* entry = lookup_symbol(name, table, space, scope);
    return entry == nullptr ? nullptr : extractSymbolEntry(entry);
}

symbol_entry* lookup_symbol(const char* name, const symbol_table* table, u32 space, u32 scope) {
    if (name == nullptr || table == nullptr) return nullptr;
    auto* readOnly = const_cast<symbol_table*>(table);
    const SymbolIndexType* index = indexOf(readOnly);
    if (index->symbolCount == 0) return nullptr;
    if (is_indexed(index, space))
        return findIndexed(index, begin_search(index, name, space, scope), name, space, scope);
    return *find_place(name, readOnly, hash(name, table->size), space, scope);
}

symbol_entry* enter_symbol(
    const char* name, symbol_table* table, u32 space, u32 scope, void* value, SymbolReleaserType releaser) {
    symbol_entry* entry = lookup_symbol(name, table, space, scope);
    return entry != nullptr ? entry : insert_symbol(name, table, space, scope, value, releaser);
}

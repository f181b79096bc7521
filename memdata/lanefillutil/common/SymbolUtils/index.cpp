// index.cpp - see index.h.
// SPDX-License-Identifier: Apache-2.0
#include "SymbolUtils/index.h"

#include "SymbolUtils/internal.h"
#include "SystemUtils/memory.h"

#include <bit>
#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>

using memdata::SymbolIndexType;
using memdata::symbolName;

namespace {

constexpr u32 kSYMBOLS_PER_CHAIN = 2; // on average, where an index begins
constexpr u32 kLARGEST_SLOT_COUNT = u32{1} << 31;

constexpr size_t index_offset(u32 size) {
    static_assert(alignof(SymbolIndexType) == alignof(symbol_entry*));
    return offsetof(symbol_table, buckets) + size * sizeof(void*);
}

// Not the hash of the chains: that one tells names apart that differ near their ends.
u32 slot_hash(const char* name, u32 space, u32 scope) {
    const u64 place = (u64{space} << 32 | scope) * 0x9E3779B97F4A7C15; // odd: no two places fall together
    const u64 value = std::hash<std::string_view>()(name) ^ place;
    return static_cast<u32>(value ^ (value >> 32));
}

void link(const SymbolIndexType* index, symbol_entry* entry) {
    symbol_entry** slot = index->slots + (entry->slotHash & (index->slotCount - 1));
    entry->nextInSlot = *slot;
    *slot = entry;
}

// From slot to slot, where neighbours are read at once: along the chains each entry would wait for the one before.
bool set_slot_count(SymbolIndexType* index, u32 slotCount) {
    auto* slots =
        static_cast<symbol_entry**>(getMemory("slots of 'symbol_table' index", size_t{slotCount} * sizeof(void*)));
    if (slots == nullptr) return false;
    const SymbolIndexType old = std::exchange(*index, {index->symbolCount, slotCount, slots, index->ends});
    for (u32 i = 0; i < old.slotCount; ++i)
        for (symbol_entry* entry = old.slots[i]; entry != nullptr;)
            link(index, std::exchange(entry, entry->nextInSlot));
    if (old.slots != nullptr) releaseMemory(old.slots);
    return true;
}

// Ends of chains and hashes of entries are kept only while there is an index.
bool begin_index(symbol_table* table, SymbolIndexType* index) {
    index->ends =
        static_cast<symbol_entry***>(getMemory("ends of 'symbol_table' chains", table->size * sizeof(symbol_entry**)));
    if (index->ends == nullptr || !set_slot_count(index, std::bit_ceil(index->symbolCount * 2))) return false;
    for (u32 bucket = 0; bucket < table->size; ++bucket) {
        symbol_entry** end = table->buckets + bucket;
        for (; *end != nullptr; end = &(*end)->next) {
            (*end)->slotHash = slot_hash(symbolName(*end), (*end)->space, (*end)->scope);
            link(index, *end);
        }
        index->ends[bucket] = end;
    }
    return true;
}

} // namespace

size_t memdata::symbolTableBytes(u32 size) {
    return index_offset(size) + sizeof(SymbolIndexType);
}

SymbolIndexType* memdata::indexOf(symbol_table* table) {
    return reinterpret_cast<SymbolIndexType*>(reinterpret_cast<char*>(table) + index_offset(table->size));
}

symbol_entry* memdata::findIndexed(const SymbolIndexType* index, const char* name, u32 space, u32 scope) {
    const u32 hash = slot_hash(name, space, scope);
    symbol_entry* entry = index->slots[hash & (index->slotCount - 1)];
    while (entry != nullptr && !(entry->slotHash == hash && isSymbol(entry, name, space, scope)))
        entry = entry->nextInSlot;
    return entry;
}

bool memdata::makeRoomInIndex(symbol_table* table) {
    SymbolIndexType* index = indexOf(table);
    if (index->slotCount != 0) {
        if (index->symbolCount < index->slotCount || index->slotCount == kLARGEST_SLOT_COUNT) return true;
        return set_slot_count(index, index->slotCount * 2);
    }
    if (index->symbolCount < table->size * kSYMBOLS_PER_CHAIN) return true;
    if (begin_index(table, index)) return true;
    dropIndex(table);
    return false;
}

void memdata::enterInIndex(symbol_table* table, symbol_entry* entry, u32 bucket) {
    SymbolIndexType* index = indexOf(table);
    ++index->symbolCount;
    if (index->slotCount == 0) return;
    index->ends[bucket] = &entry->next;
    entry->slotHash = slot_hash(symbolName(entry), entry->space, entry->scope);
    link(index, entry);
}

void memdata::removeFromIndex(symbol_entry* entry) {
    SymbolIndexType* index = indexOf(entry->table);
    --index->symbolCount;
    if (index->slotCount == 0) return;
    if (entry->next == nullptr) index->ends[hash(symbolName(entry), entry->table->size)] = entry->owner;
    symbol_entry** place = index->slots + (entry->slotHash & (index->slotCount - 1));
    while (*place != entry) place = &(*place)->nextInSlot;
    *place = entry->nextInSlot;
}

void memdata::dropIndex(symbol_table* table) {
    SymbolIndexType* index = indexOf(table);
    if (index->ends != nullptr) releaseMemory(index->ends);
    if (index->slots != nullptr) releaseMemory(index->slots);
    *index = {index->symbolCount, 0, nullptr, nullptr};
}

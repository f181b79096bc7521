// index.cpp - see index.h.
// SPDX-License-Identifier: Apache-2.0
#include "SymbolUtils/index.h"

#include "SymbolUtils/internal.h"
#include "SystemUtils/memory.h"
#include "platform/memory_pages.h"

#include <bit>
#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>

using memdata::SymbolIndexType;
using memdata::symbolName;
using memdata::SymbolSlotType;

namespace {

constexpr u32 kSYMBOLS_PER_CHAIN = 2; // on average, where an index begins
constexpr u32 kSLOTS_PER_SYMBOL = 2;  // at least: searches stay short
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

u32 home_slot(const SymbolIndexType* index, u32 hash) {
    return hash & (index->slotCount - 1);
}

u32 next_slot(const SymbolIndexType* index, u32 slot) {
    return (slot + 1) & (index->slotCount - 1);
}

// Slots from one to another, along the way of a search.
u32 distance(const SymbolIndexType* index, u32 from, u32 to) {
    return (to - from) & (index->slotCount - 1);
}

void put(const SymbolIndexType* index, SymbolSlotType filled) {
    u32 slot = home_slot(index, filled.hash);
    while (index->slots[slot].entry != nullptr) slot = next_slot(index, slot);
    index->slots[slot] = filled;
}

// Entries behind a slot that becomes free move up, as far as their searches pass it.
void free_slot(const SymbolIndexType* index, u32 slot) {
    SymbolSlotType* const slots = index->slots;
    for (u32 next = next_slot(index, slot); slots[next].entry != nullptr; next = next_slot(index, next)) {
        const u32 home = home_slot(index, slots[next].hash);
        if (distance(index, home, next) < distance(index, slot, next)) continue;
        slots[slot] = slots[next];
        slot = next;
    }
    slots[slot] = {};
}

bool set_slot_count(SymbolIndexType* index, u32 slotCount) {
    const size_t bytes = size_t{slotCount} * sizeof(SymbolSlotType);
    auto* slots = static_cast<SymbolSlotType*>(getMemory("slots of 'symbol_table' index", bytes));
    if (slots == nullptr) return false;
    memdata::preferLargePages(slots, bytes); // a search goes anywhere
    const SymbolIndexType old = std::exchange(*index, {index->symbolCount, slotCount, slots, index->ends});
    for (u32 i = 0; i < old.slotCount; ++i)
        if (old.slots[i].entry != nullptr) put(index, old.slots[i]);
    if (old.slots != nullptr) releaseMemory(old.slots);
    return true;
}

// Ends of chains and hashes of entries are kept only while there is an index.
bool begin_index(symbol_table* table, SymbolIndexType* index) {
    index->ends =
        static_cast<symbol_entry***>(getMemory("ends of 'symbol_table' chains", table->size * sizeof(symbol_entry**)));
    if (index->ends == nullptr || !set_slot_count(index, std::bit_ceil(index->symbolCount * kSLOTS_PER_SYMBOL * 2)))
        return false;
    for (u32 bucket = 0; bucket < table->size; ++bucket) {
        symbol_entry** end = table->buckets + bucket;
        for (; *end != nullptr; end = &(*end)->next) {
            (*end)->slotHash = slot_hash(symbolName(*end), (*end)->space, (*end)->scope);
            put(index, {*end, (*end)->slotHash});
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

bool memdata::makeRoomInIndex(symbol_table* table) {
    SymbolIndexType* index = indexOf(table);
    if (index->slotCount != 0) {
        const bool hasRoom = index->symbolCount < index->slotCount / kSLOTS_PER_SYMBOL;
        return hasRoom || index->slotCount == kLARGEST_SLOT_COUNT || set_slot_count(index, index->slotCount * 2);
    }
    if (index->symbolCount < table->size * kSYMBOLS_PER_CHAIN) return true;
    if (begin_index(table, index)) return true;
    dropIndex(table);
    return false;
}

u32 memdata::beginIndexSearch(const SymbolIndexType* index, const char* name, u32 space, u32 scope) {
    const u32 hash = slot_hash(name, space, scope);
    __builtin_prefetch(index->slots + home_slot(index, hash));
    return hash;
}

symbol_entry* memdata::findIndexed(const SymbolIndexType* index, u32 slotHash, const char* name, u32 space, u32 scope) {
    for (u32 slot = home_slot(index, slotHash);; slot = next_slot(index, slot)) {
        const SymbolSlotType& place = index->slots[slot];
        if (place.entry == nullptr || (place.hash == slotHash && isSymbol(place.entry, name, space, scope)))
            return place.entry;
    }
}

void memdata::enterInIndex(symbol_table* table, symbol_entry* entry, u32 bucket) {
    SymbolIndexType* index = indexOf(table);
    ++index->symbolCount;
    if (index->slotCount == 0) return;
    index->ends[bucket] = &entry->next;
    put(index, {entry, entry->slotHash});
}

void memdata::removeFromIndex(symbol_entry* entry) {
    SymbolIndexType* index = indexOf(entry->table);
    --index->symbolCount;
    if (index->slotCount == 0) return;
    if (entry->next == nullptr) index->ends[hash(symbolName(entry), entry->table->size)] = entry->owner;
    u32 slot = home_slot(index, entry->slotHash);
    while (index->slots[slot].entry != entry) slot = next_slot(index, slot);
    free_slot(index, slot);
}

void memdata::dropIndex(symbol_table* table) {
    SymbolIndexType* index = indexOf(table);
    if (index->ends != nullptr) releaseMemory(index->ends);
    if (index->slots != nullptr) releaseMemory(index->slots);
    *index = {index->symbolCount, 0, nullptr, nullptr};
}

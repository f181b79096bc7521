// live_blocks.cpp - the set of all live tracked blocks.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/live_blocks.h"

#include <cstdlib>

namespace memdata {

namespace {

constexpr u32 kFIRST_BITS = 10;

u64 slot_mask(const LiveBlockSetType& set) {
    return (u64{1} << set.bits) - 1;
}

// Multiplicative: blocks at equal distances, whatever the distance, spread over the slots.
u64 home_slot(const LiveBlockSetType& set, const void* user) {
    return (reinterpret_cast<std::uintptr_t>(user) >> 4) * 0x9E3779B97F4A7C15u >> (64 - set.bits);
}

// The slot that holds the block, or the free one where its search ends.
u64 find_slot(const LiveBlockSetType& set, const void* user) {
    u64 slot = home_slot(set, user);
    while (set.slots[slot] != nullptr && set.slots[slot] != user) slot = (slot + 1) & slot_mask(set);
    return slot;
}

} // namespace

bool reserveLiveBlock(LiveBlockSetType* set) {
    if (set->slots != nullptr && (set->count + 1) * 2 <= slot_mask(*set) + 1) return true;
    LiveBlockSetType grown;
    grown.bits = set->slots == nullptr ? kFIRST_BITS : set->bits + 1;
    grown.slots = static_cast<const void**>(std::calloc(size_t{1} << grown.bits, sizeof(void*)));
    if (grown.slots == nullptr) return false;
    for (u64 slot = 0; set->slots != nullptr && slot <= slot_mask(*set); ++slot)
        if (set->slots[slot] != nullptr) insertLiveBlock(&grown, set->slots[slot]);
    deleteLiveBlocks(set);
    *set = grown;
    return true;
}

void insertLiveBlock(LiveBlockSetType* set, const void* user) {
    set->slots[find_slot(*set, user)] = user;
    ++set->count;
}

bool containsLiveBlock(const LiveBlockSetType& set, const void* user) {
    return set.slots != nullptr && user != nullptr && set.slots[find_slot(set, user)] == user;
}

void eraseLiveBlock(LiveBlockSetType* set, const void* user) {
    if (!containsLiveBlock(*set, user)) return;
    const u64 mask = slot_mask(*set);
    u64 gap = find_slot(*set, user);
    // A later block of the same run moves into the gap unless its home lies behind the gap.
    for (u64 slot = (gap + 1) & mask; set->slots[slot] != nullptr; slot = (slot + 1) & mask) {
        const u64 home = home_slot(*set, set->slots[slot]);
        if (((slot - home) & mask) < ((slot - gap) & mask)) continue;
        set->slots[gap] = set->slots[slot];
        gap = slot;
    }
    set->slots[gap] = nullptr;
    --set->count;
}

void deleteLiveBlocks(LiveBlockSetType* set) {
    std::free(static_cast<void*>(set->slots));
    *set = LiveBlockSetType{};
}

} // namespace memdata

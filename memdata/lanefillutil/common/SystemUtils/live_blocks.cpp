// live_blocks.cpp - the set of all live tracked blocks.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/live_blocks.h"

#include <cstdlib>

namespace memdata {

namespace {

constexpr u32 kFIRST_BITS = 8;      // of a place in the table of regions
constexpr u32 kREGION_SHIFT = 16;   // address bits inside a region
constexpr u32 kALIGNMENT_SHIFT = 4; // address bits that are 0 in every block
constexpr u32 kWORD_SHIFT = 6;      // bits in a word of the map
constexpr u32 kWORDS = 1u << (kREGION_SHIFT - kALIGNMENT_SHIFT - kWORD_SHIFT);

} // namespace

struct LiveRegionType {
    u64 number;        // address >> kREGION_SHIFT
    u64 words[kWORDS]; // bit b of word w: a block stands 16 * (64 * w + b) bytes into the region
};

namespace {

u64 address_of(const void* user) {
    return reinterpret_cast<std::uintptr_t>(user);
}

u64 region_number(const void* user) {
    return address_of(user) >> kREGION_SHIFT;
}

u64& map_word(LiveRegionType* region, const void* user) {
    return region->words[(address_of(user) >> (kALIGNMENT_SHIFT + kWORD_SHIFT)) % kWORDS];
}

u64 map_bit(const void* user) {
    return u64{1} << ((address_of(user) >> kALIGNMENT_SHIFT) % (1u << kWORD_SHIFT));
}

u64 place_count(const LiveBlockSetType& set) {
    return set.regions == nullptr ? 0 : u64{1} << set.bits;
}

// The place of a region in the table, or the free one where its search ends. The table must have places.
LiveRegionType** find_place(const LiveBlockSetType& set, u64 number) {
    // Multiplicative: regions at equal distances, whatever the distance, spread over the table.
    u64 place = number * 0x9E3779B97F4A7C15u >> (64 - set.bits);
    while (set.regions[place] != nullptr && set.regions[place]->number != number)
        place = (place + 1) % place_count(set);
    return set.regions + place;
}

LiveRegionType* find_region(LiveBlockSetType* set, u64 number) {
    if (set->latest != nullptr && set->latest->number == number) return set->latest;
    LiveRegionType* region = set->regions == nullptr ? nullptr : *find_place(*set, number);
    if (region != nullptr) set->latest = region;
    return region;
}

bool make_place(LiveBlockSetType* set) {
    if ((set->regionCount + 1) * 2 <= place_count(*set)) return true;
    LiveBlockSetType grown = *set;
    grown.bits = set->regions == nullptr ? kFIRST_BITS : set->bits + 1;
    grown.regions = static_cast<LiveRegionType**>(std::calloc(size_t{1} << grown.bits, sizeof(void*)));
    if (grown.regions == nullptr) return false;
    for (u64 place = 0; place < place_count(*set); ++place)
        if (set->regions[place] != nullptr) *find_place(grown, set->regions[place]->number) = set->regions[place];
    std::free(static_cast<void*>(set->regions));
    *set = grown;
    return true;
}

LiveRegionType* create_region(LiveBlockSetType* set, u64 number) {
    if (!make_place(set)) return nullptr;
    auto* region = static_cast<LiveRegionType*>(std::calloc(1, sizeof(LiveRegionType)));
    if (region == nullptr) return nullptr;
    region->number = number;
    *find_place(*set, number) = region;
    ++set->regionCount;
    return region;
}

} // namespace

bool insertLiveBlock(LiveBlockSetType* set, const void* user) {
    LiveRegionType* region = find_region(set, region_number(user));
    if (region == nullptr) region = create_region(set, region_number(user));
    if (region == nullptr) return false;
    map_word(region, user) |= map_bit(user);
    ++set->count;
    return true;
}

bool containsLiveBlock(LiveBlockSetType* set, const void* user) {
    if (address_of(user) % (1u << kALIGNMENT_SHIFT) != 0) return false;
    LiveRegionType* region = find_region(set, region_number(user));
    return region != nullptr && (map_word(region, user) & map_bit(user)) != 0;
}

void eraseLiveBlock(LiveBlockSetType* set, const void* user) {
    map_word(find_region(set, region_number(user)), user) &= ~map_bit(user);
    --set->count;
}

void deleteLiveBlocks(LiveBlockSetType* set) {
    for (u64 place = 0; place < place_count(*set); ++place) std::free(set->regions[place]);
    std::free(static_cast<void*>(set->regions));
    *set = LiveBlockSetType{};
}

} // namespace memdata

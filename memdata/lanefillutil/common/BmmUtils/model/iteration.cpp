// iteration.cpp - walks over address spaces, and look-ups of maps and spaces.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/iteration.h"

#include "BmmUtils/model/internal.h"

#include <cstring>

namespace {

bool counts(const AddressSpaceLinkType* link, u32 memoryClassMask) {
    const MEMORYType* type = memdata::firstMemoryType(link->space);
    return type == nullptr || (type->sizeUnits & memoryClassMask) != 0;
}

// On to the next link of the map; a space that is left behind counts.
void pass_link(AddressSpaceIteratorType* at) {
    if (counts(at->link, at->memoryClassMask)) {
        ++at->spaceIndex;
        ++at->indexInMap;
    }
    at->link = at->link->next;
}

// To the next counted space from the present link on, itself included. False at the end of the map.
bool reach_counted(AddressSpaceIteratorType* at) {
    while (at->link != nullptr && !counts(at->link, at->memoryClassMask)) at->link = at->link->next;
    return at->link != nullptr;
}

// To the counted space of this index in the map, or to the present one when that lies behind it.
bool reach_in_map(AddressSpaceIteratorType* at, u64 target) {
    while (reach_counted(at) && at->indexInMap < target) pass_link(at);
    return at->link != nullptr;
}

// To the first link of the next map. False when there is no map, or none of its spaces.
bool enter_next_map(AddressSpaceIteratorType* at) {
    while (at->link != nullptr) pass_link(at);
    at->map = at->map->next;
    if (at->map == nullptr || at->map->addressSpaces == nullptr) return false;
    ++at->mapIndex;
    at->indexInMap = 0;
    at->link = at->map->addressSpaces;
    return true;
}

AddressSpaceLinkType* settle(AddressSpaceIteratorType* iterator, const AddressSpaceIteratorType& at) {
    *iterator = at;
    return iterator->link;
}

template<class T>
int found(const symbol_entry* entry, T** out) {
    if (out != nullptr) *out = entry == nullptr ? nullptr : static_cast<T*>(entry->value);
    return entry == nullptr ? 11 : 0;
}

} // namespace

const MEMORYType* memdata::firstMemoryType(const AddressSpaceDefType* space) {
    if (space == nullptr || space->ranges == nullptr || space->ranges->memory == nullptr) return nullptr;
    return space->ranges->memory->type;
}

AddressSpaceLinkType* next_addressSpace_in_addressMap(AddressSpaceIteratorType* iterator, u64 target) {
    if (iterator == nullptr || iterator->map == nullptr) return nullptr;
    AddressSpaceIteratorType at = *iterator;
    return reach_in_map(&at, target) ? settle(iterator, at) : nullptr;
}

AddressSpaceLinkType* next_addressSpace_in_addressMapping(AddressSpaceIteratorType* iterator, u64 target) {
    if (iterator == nullptr || iterator->map == nullptr) return nullptr;
    AddressSpaceIteratorType at = *iterator;
    const u64 before = static_cast<u64>(at.spaceIndex < 0 ? 0 : at.spaceIndex);
    if (target < before) return nullptr; // a walk does not go back
    while (!reach_in_map(&at, at.indexInMap + (target - static_cast<u64>(at.spaceIndex))))
        if (!enter_next_map(&at)) return nullptr;
    return settle(iterator, at);
}

// The step to indexTarget is made in every map on the way: one with fewer spaces ends the walk.
AddressSpaceLinkType* next_addressMap_in_addressMapping(
    AddressSpaceIteratorType* iterator, u64 mapTarget, u64 indexTarget) {
    if (iterator == nullptr || iterator->map == nullptr) return nullptr;
    AddressSpaceIteratorType at = *iterator;
    for (;;) {
        if (!reach_in_map(&at, indexTarget)) return nullptr;
        if (at.mapIndex >= mapTarget) break;
        if (!enter_next_map(&at)) return nullptr;
    }
    return at.mapIndex == mapTarget && at.indexInMap == indexTarget ? settle(iterator, at) : nullptr;
}

AddressSpaceLinkType* iterate_first_addressSpace(AddressMappingType* mapping, unsigned mode,
    AddressSpaceIteratorType* iterator, u64 spaceIndex, u64 mapIndex, u64 indexInMap, unsigned memoryClassMask) {
    if (iterator == nullptr) return nullptr;
    *iterator = {};
    iterator->memoryClassMask = memoryClassMask;
    if (mapping == nullptr || mapping->addressMaps == nullptr) return nullptr;
    iterator->map = mapping->addressMaps;
    iterator->link = iterator->map->addressSpaces;
    switch (mode) {
    case kFIRST_SPACE_OF_MAPPING:
        return next_addressSpace_in_addressMapping(iterator, spaceIndex);
    case kFIRST_SPACE_OF_MAP:
        return next_addressMap_in_addressMapping(iterator, mapIndex, indexInMap);
    default:
        return nullptr;
    }
}

AddressSpaceLinkType* iterate_next_addressSpace(unsigned mode, AddressSpaceIteratorType* iterator) {
    if (iterator == nullptr) return nullptr;
    switch (mode) {
    case kNEXT_SPACE_OF_MAPPING:
        return next_addressSpace_in_addressMapping(iterator, static_cast<u64>(iterator->spaceIndex + 1));
    case kNEXT_SPACE_OF_MAP:
        return next_addressSpace_in_addressMap(iterator, iterator->indexInMap + 1);
    default:
        return nullptr;
    }
}

int lookup_addressSpace_by_name(const char* name, const symbol_context* names, AddressSpaceLinkType** out) {
    return found(lookup_context_symbol(name, false, names), out);
}

int lookup_addressMap_by_name(const char* name, const SymbolSpacesType* spaces, AddressMapType** out) {
    return found(spaces == nullptr ? nullptr : lookup_context_symbol(name, true, spaces->addressMapNames), out);
}

AddressMapType* find_addressMap_by_index(const AddressMappingType* mapping, u64 index) {
    AddressMapType* map = mapping == nullptr ? nullptr : mapping->addressMaps;
    for (; map != nullptr && index != 0; --index) map = map->next;
    return map;
}

AddressMapType* find_addressMap_by_name(AddressMapType* head, const char* name, u64* index) {
    u64 position = 0;
    AddressMapType* map = name == nullptr ? nullptr : head;
    while (map != nullptr && std::strcmp(map->name, name) != 0) {
        map = map->next;
        if (map != nullptr) ++position;
    }
    if (index != nullptr) *index = position;
    return map;
}

AddressMapType* find_addressMap_by_ID(const AddressMappingType*, u64, u64*) {
    return nullptr;
}

AddressSpaceLinkType* find_addressSpace_by_name(const AddressMapType* map, const char* name, u64* index) {
    u64 position = 0;
    AddressSpaceLinkType* link = map == nullptr || name == nullptr ? nullptr : map->addressSpaces;
    while (link != nullptr && std::strcmp(link->space->name, name) != 0) {
        link = link->next;
        if (link != nullptr) ++position;
    }
    if (index != nullptr) *index = position;
    return link;
}

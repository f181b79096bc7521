// iteration.h - walking the spaces of a mapping and looking maps and spaces up.
//
// A walk counts spaces whose first range's memory class has a bit of the mask, and spaces without a memory
// type; others are stepped over and not counted. A walk that ends leaves the iterator where it stood.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MODEL_ITERATION_H
#define MEMDATA_BMM_UTILS_MODEL_ITERATION_H

#include "BmmUtils/model/records.h"

// Modes of a walk.
inline constexpr unsigned kFIRST_SPACE_OF_MAPPING = 1;
inline constexpr unsigned kFIRST_SPACE_OF_MAP = 2;
inline constexpr unsigned kNEXT_SPACE_OF_MAPPING = 3;
inline constexpr unsigned kNEXT_SPACE_OF_MAP = 4;

// Sets the iterator on a space of the mapping and gives its link: mode 1 the spaceIndex-th of all, mode 2
// the indexInMap-th of the mapIndex-th map, both from 0. Null when there is none, for a null or empty mapping
// and for any other mode.
// A map without spaces that follows another one ends a walk of the whole mapping: later maps are not
// reached. This is on purpose.
AddressSpaceLinkType* iterate_first_addressSpace(AddressMappingType* mapping, unsigned mode,
    AddressSpaceIteratorType* iterator, u64 spaceIndex, u64 mapIndex, u64 indexInMap, unsigned memoryClassMask);
// Mode 3 the next of the mapping, 4 the next of the map; null at the end and for any other mode.
AddressSpaceLinkType* iterate_next_addressSpace(unsigned mode, AddressSpaceIteratorType* iterator);

// The steppers: to the target-th counted space of the map, of the mapping, and of a map.
AddressSpaceLinkType* next_addressSpace_in_addressMap(AddressSpaceIteratorType* iterator, u64 target);
AddressSpaceLinkType* next_addressSpace_in_addressMapping(AddressSpaceIteratorType* iterator, u64 target);
AddressSpaceLinkType* next_addressMap_in_addressMapping(
    AddressSpaceIteratorType* iterator, u64 mapTarget, u64 indexTarget);

// By name, hashed. Status 0 found, 11 not; out may be null and is null when nothing is found.
int lookup_addressSpace_by_name(const char* name, const symbol_context* names, AddressSpaceLinkType** out);
int lookup_addressMap_by_name(const char* name, const SymbolSpacesType* spaces, AddressMapType** out);

// Along the lists. index receives the position of the hit, or the last position tried; may be null.
AddressMapType* find_addressMap_by_index(const AddressMappingType* mapping, u64 index);
AddressMapType* find_addressMap_by_name(AddressMapType* head, const char* name, u64* index);
// Always null, on purpose: a processor ID is no key, two maps may have the same.
AddressMapType* find_addressMap_by_ID(const AddressMappingType* mapping, u64 id, u64* index);
AddressSpaceLinkType* find_addressSpace_by_name(const AddressMapType* map, const char* name, u64* index);

namespace memdata {

// All blocks of all spaces, in order: visit(space, block).
void visitBusBlocks(const AddressMappingType* mapping, auto&& visit) {
    for (AddressMapType* map = mapping->addressMaps; map != nullptr; map = map->next)
        for (AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next)
            for (AddressRangeDefType* range = link->space->ranges; range != nullptr; range = range->next)
                for (u64 i = 0; i < range->busBlockCount; ++i) visit(*link->space, *range->busBlocks[i]);
}

// All elements of all blocks, the check lanes of a block behind its data lanes: visit(space, block, element).
void visitLanes(const AddressMappingType* mapping, auto&& visit) {
    visitBusBlocks(mapping, [&visit](const AddressSpaceDefType& space, const BusBlockType& block) {
        for (u64 i = 0; i < block.laneCount; ++i) visit(space, block, *block.lanes[i]);
        for (u64 i = 0; i < block.eccLaneCount; ++i) visit(space, block, *block.eccLanes[i]);
    });
}

} // namespace memdata

#endif

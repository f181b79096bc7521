// selection.h - choosing the spaces that a data file may fill, and the one that holds a segment.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MODEL_SELECTION_H
#define MEMDATA_BMM_UTILS_MODEL_SELECTION_H

#include "BmmUtils/model/records.h"

// The target mapping's map that stands for a map of the source. A null *target becomes a new mapping, filtered
// from source; a map that is missing there becomes a new one of the same name, path, type, ID and boot
// state. index receives its position; may be null. Status: 0 and the map in out; 3 a null argument; 7
// without memory.
int lookup_or_insert_addressMap(
    AddressMappingType* source, AddressMappingType** target, AddressMapType* map, u64* index, AddressMapType** out);
// Links the space into its map's stand-in, unless the mask is not zero and the first range's memory class
// has no bit of it. Status as above.
int test_and_add_addressSpace(
    AddressMappingType* source, unsigned memoryClassMask, AddressSpaceLinkType* link, AddressMappingType** target);
// Links all spaces of the map into its stand-in. The spaces are shared, not copied.
int dup_addressMap_into_addressMapping(AddressMappingType* source, AddressMapType* map, AddressMappingType** target);

// Makes the filtered mapping that a data file may fill.
//   selector   -1 all spaces; 0 the one behind the iterator (the first when spaceIndex is below 0); n without
//              names the n-th space of all, from 1; n with names the spaces and maps of these n names
//   mask       0, or the memory classes that a space must have one of
//   iterator   left at the last space handled
//   target     cleared first; null or what was made so far when the status is not 0; the caller's to delete
// Status: 0; 4 nothing eligible; 11 an unknown name (19 with legacy messages on); 7 without memory.
int filter_eligible_addressSpaces(AddressMappingType* source, long selector, const char* const* names, bool* unused,
    unsigned memoryClassMask, AddressSpaceIteratorType* iterator, AddressMappingType** target);

// The last address that a run of bytes start to end needs in a space. Without word addressing that is end.
// With it, the number of whole bus words less one, not offset by start, on purpose; the bus counts rounded up
// to a multiple of 4 bits. Less than one word gives 0, more than 64 bits hold the largest address.
u64 compute_ending_address(const AddressSpaceLinkType* link, u64 start, u64 end);

// Finds the next space, from first on, that holds the address start, and makes its buffers.
//   segmentNumber   for the alert
//   end             inclusive; below start when the segment passes the last address
// Status: 0 and the link in out; 4 no space is left; 7 the space does not hold all of the segment, or without
// memory. out is null unless the status is 0.
int lookup_matching_addressSpace(AddressMappingType* mapping, u64 segmentNumber, u64 start, u64 end,
    AddressSpaceLinkType* first, AddressSpaceIteratorType* iterator, AddressSpaceLinkType** out);

#endif

// validation.h - makes a consistent space of what a map states, and says where that cannot be done.
//
// Readers call finish_addressSpace_data (declared in model/template_copy.h) once for each space, when its ranges are
// filled and before it is inserted; the other checks are its parts. All of them give 0, or the status of the last
// alert: 3, or 7 without memory. Lanes are told as they were written. The time that a check takes is linear in
// lanes and bus bits.
//
// Beyond what a map may state wrongly the checks refuse, status 3, what the engine cannot hold: bus bits from
// kMAX_BUS_BITS on, more than 64 data bits in a lane, check lanes over a bus of more than 128 bits, blocks
// without data lanes, devices without room for one lane word, addresses that pass 64 bits.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_VALIDATION_H
#define MEMDATA_BMM_UTILS_VALIDATION_H

#include "BmmUtils/model/records.h"
#include "BmmUtils/model/template_copy.h"

// The blocks of a range against each other and against the range. The first difference between two neighbours ends
// the check; blocks with bad lanes are reported, one after the other, ahead of that.
int check_busBlock_addresses(AddressSpaceDefType* space, AddressRangeDefType* range);

// The lanes of a block: widths, paths, bits, size. Turns the lanes of little-endian processors at the end.
int check_bitLanes(AddressSpaceDefType* space, AddressRangeDefType* range, BusBlockType* block);

// The index of the element's width in the type's list, or -1. A hit sets the parity width of the element and its lane.
int check_for_valid_bitLanes(BitLaneGridElemType* element, const MEMORYType* type);

// Every bus bit from 0 on must have one user, data or ECC lane. Only as many bits above the lowest one are looked at
// as the data lanes have together.
int check_bitLane_gaps_overlaps(const char* spaceName, BusBlockType* block);

// Maps of little-endian processors are written big end first. Reverses the bytes of the bus in a block's lanes, keeps
// the written order in writtenLanes, and sets lanePitch for lanes wider than a byte. Does nothing for other processors,
// for a bus that is no multiple of 8 bits, and for a block that was turned before. ECC lanes stay.
int le_bmm_order_hack(AddressSpaceDefType* space, AddressRangeDefType* range, BusBlockType* block);

// Ahead of the replacement of data in a bit stream. Warns about block-RAM spaces with lanes that have no location, and
// lists these; the status stays 0. Status 12 for a mapping without block-RAM spaces, 0 for a null mapping.
int check_addressMapping_Locs(AddressMappingType* mapping);

namespace memdata {

inline constexpr u64 kMAX_BUS_BITS = 2048;     // bits of a bus, numbered from 0
inline constexpr u64 kMAX_LANE_DATA_BITS = 64; // data bits of one lane word; parity bits come on top

// Whether the memory has its size from the map; false for null.
bool isGenericMemory(const MEMORYLocType* memory);

// The bits of a device that lane words share: data bits, and parity bits where lane widths count them.
u64 deviceBits(const MEMORYType* type);

} // namespace memdata

#endif

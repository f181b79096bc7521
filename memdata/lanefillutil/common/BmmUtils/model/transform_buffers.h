// transform_buffers.h - the memory in which devices hold their data: one allocation a range, cut into slivers.
//
// Layout of a range's buffer: block by block, the data lanes, then the ECC lanes, in their order in the block;
// each device takes (data bits + parity bits) / 8 bytes, its data first, then its parity.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MODEL_TRANSFORM_BUFFERS_H
#define MEMDATA_BMM_UTILS_MODEL_TRANSFORM_BUFFERS_H

#include "BmmUtils/model/records.h"

// Gives each range that has none its buffer, zero-filled, and each of its lanes its slivers. False without
// memory: the space has no buffers then.
bool allocate_addressSpace_transform_buffers(AddressSpaceDefType* space);
// Releases the buffers; the lanes lose their slivers and the accesses over them. True.
bool deallocate_addressSpace_transform_buffers(AddressSpaceDefType* space);
// The same for all spaces of the mapping.
bool deallocate_bmm_transform_buffers(AddressMappingType* mapping);

namespace memdata {

// Takes the memory of the buffers at once when a segment of so many bytes fills nearly all of them. Only speed changes.
void populateTransformBuffers(AddressSpaceDefType* space, u64 segmentBytes);

} // namespace memdata

// total plus the bytes of count devices; the largest value when 64 bits do not hold the sum.
u64 get_bitLane_list_BRAM_byte_size(const BitLaneArrayType* lanes, u64 count, u64 total);
// Hands out slivers from cursor on; returns the cursor behind them.
unsigned char* set_bitLane_sliver_buffers(BitLaneArrayType* lanes, u64 count, unsigned char* cursor);

#endif

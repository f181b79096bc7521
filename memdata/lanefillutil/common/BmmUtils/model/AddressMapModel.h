// AddressMapModel.h - the in-memory form of address maps: which bits of which addresses of a processor's
// memory live in which memory devices. Records, and the operations that make, walk, search and copy them.
//
//   AddressMappingType         all address maps of a run
//     AddressMapType           one per processor; one unnamed map; one that holds templates
//       AddressSpaceLinkType   a list sorted by end address
//         AddressSpaceDefType  one contiguous range of the processor's addresses
//           AddressRangeDefType  one run of addresses built from one kind of memory device
//             BusBlockType       one row of devices, together as wide as the bus
//               BitLaneGridElemType -> BitLaneType   one device in its bit-lane column
//
// One thread at a time. Every record is zero-filled when it is made.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MODEL_ADDRESS_MAP_MODEL_H
#define MEMDATA_BMM_UTILS_MODEL_ADDRESS_MAP_MODEL_H

#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/iteration.h"
#include "BmmUtils/model/memory_types.h"
#include "BmmUtils/model/records.h"
#include "BmmUtils/model/selection.h"
#include "BmmUtils/model/template_copy.h"
#include "BmmUtils/model/text.h"
#include "BmmUtils/model/transform_buffers.h"

#endif

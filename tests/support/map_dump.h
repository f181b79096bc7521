// map_dump.h - address maps, and the data in their lanes, as canonical text for comparison.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_MAP_DUMP_H
#define MEMDATA_TESTS_SUPPORT_MAP_DUMP_H

#include "BmmUtils/model/AddressMapModel.h"

#include <string>

namespace memdata::testing {

// All that a mapping says, a line for each record, indented by depth; fields that hold their usual value (0, empty,
// false) are left out:
//   mapping test.bmm spaces 1
//   map "" PPC405 0
//     space ram 0x1000-0x1FFF
//       range RAMB16 0x1000-0x1FFF bus 16 lane 8 words 2048 devices 2
//         block 0x1000-0x1FFF
//           hi[15:8][0:2047]
//           lo[7:0][0:2047]
// Lanes stand in processing order; the ECC lanes follow with their code. The template map comes last.
std::string dumpMapping(const AddressMappingType* mapping);
std::string dumpSpace(const AddressSpaceDefType* space);

// The spaces of each map in their order: "map: a b c", a line for each map.
std::string listSpaces(const AddressMappingType* mapping);

// The bytes in the lanes of a space that are not 0, a line for each run: "lane hi 4: 11 22", "parity hi 0: 03". The
// position is the byte in the sliver, decimal. Runs are cut where 8 or more zero bytes follow.
std::string dumpData(const AddressSpaceDefType* space);

// What was written where, a line for each range: "space 0x1000+16 a.elf", "lane hi 0x0+2048 a.elf".
std::string dumpRanges(const AddressSpaceDefType* space);

} // namespace memdata::testing

#endif

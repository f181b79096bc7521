// map_rounds.h - what holds of a map that was written and read again.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FUZZ_SUPPORT_MAP_ROUNDS_H
#define MEMDATA_FUZZ_SUPPORT_MAP_ROUNDS_H

#include "BmmUtils/model/AddressMapModel.h"

#include <string>
#include <string_view>

namespace memdata::fuzz {

// An empty mapping. Null is a finding.
OwnedMapping newMapping(TarselDeviceType* device = nullptr);

// Reads map text into the mapping, as the file map.bmm. The status of reading.
int readMap(std::string_view text, AddressMappingType* mapping);

// The mapping as annotated map text.
std::string annotatedText(AddressMappingType* mapping);

// The model as text, without what a map may lose when it is written: the order of its statements, which shows in their
// number and in the chain of lanes with an INIT file; that a space is an instance of a template, with the last "/" of
// its path; path and ECC word of templates.
std::string modelText(const AddressMappingType* mapping);
bool hasInstances(const AddressMappingType* mapping);
// Whether the text has the whole name of each space: of a name with dots it has the part behind the last one.
bool keepsNames(const AddressMappingType* mapping);
// Whether all lanes have their addresses when they are written: [0:0] is not, and is then read as the default.
bool keepsAddresses(const AddressMappingType* mapping);

} // namespace memdata::fuzz

#endif

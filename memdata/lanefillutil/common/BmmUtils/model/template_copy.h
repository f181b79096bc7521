// template_copy.h - address spaces as copies of a template.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MODEL_TEMPLATE_COPY_H
#define MEMDATA_BMM_UTILS_MODEL_TEMPLATE_COPY_H

#include "BmmUtils/model/records.h"

struct parse_stream;

// A space with the ranges, blocks and data lanes of a template, finished, in no list.
//   names            the scope in which the new space's name must be free
//   map              the map that the space is for; the lanes' names are entered in its instanceNames
//   token            where alerts point; may be null
//   start, end       bytes (words), absolute, inclusive
//   instancePrefix   goes in front of the lanes' names and becomes the space's instancePath
// The space takes the template's name. ECC lanes are not copied, on purpose: an instance has data lanes only.
// Status: 0 and the space in out; 3 a name is taken; 7 without memory; or the finishing step's.
int dup_addressSpace_element(parse_stream* stream, symbol_context* names, AddressMapType* map,
    AddressSpaceDefType* templateSpace, token_element* token, u64 start, u64 end, const char* instancePrefix,
    bool wordAddressing, AddressSpaceDefType** out);

// Computes the sizes and addresses of a space whose ranges are filled, and checks it. Defined with the
// checks, above this room.
int finish_addressSpace_data(AddressSpaceDefType* space);

namespace memdata {

// The same with a name of its own, for a template's second instance.
int copyTemplateAs(parse_stream* stream, symbol_context* names, AddressMapType* map, AddressSpaceDefType* templateSpace,
    const char* name, token_element* token, u64 start, u64 end, const char* instancePrefix, bool wordAddressing,
    AddressSpaceDefType** out);

} // namespace memdata

#endif

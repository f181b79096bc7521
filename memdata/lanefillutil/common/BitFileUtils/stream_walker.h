// stream_walker.h - one pass over a configuration stream.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_STREAM_WALKER_H
#define MEMDATA_BIT_FILE_UTILS_STREAM_WALKER_H

#include "platform/BasicTypes.h"

struct AddressMappingType;
struct TarselDeviceType;
struct fileIODescriptor;

// Copies a stream word by word to output, or tells in dump what it does; exactly one of the two is given.
//   flags           0x80: sync words and the closing DESYNCH command are left out of the copy
//   remaining       bytes of stream left from the input's position on; counted down
//   addressMapping  null when no block RAM is to be changed
// Status: 0, or that of the first failure.
int OutputBITData(fileIODescriptor* input, fileIODescriptor* output, fileIODescriptor* dump, TarselDeviceType* device,
    u32 flags, u32* remaining, AddressMappingType* addressMapping);

namespace memdata {

struct StreamCheck;

// OutputBITData with a copy that is thrown away: memories of the mapping's lanes and CRC words are compared instead.
int checkStream(fileIODescriptor* input, fileIODescriptor* output, TarselDeviceType* device, u32* remaining,
    AddressMappingType* addressMapping, StreamCheck* check);

} // namespace memdata

#endif

// memory_types.cpp - sizes and names of memory types.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/memory_types.h"

const char* get_memory_type_string(const MEMORYType* type) {
    return type == nullptr || type->name == nullptr ? "" : type->name;
}

void memdata::setMemoryDataBits(const MEMORYLocType* memory, u64 dataBits) {
    if (memory == nullptr || memory->type == nullptr || (memory->type->sizeUnits & kNON_BLOCK_RAM_CLASSES) == 0) return;
    const_cast<MEMORYType*>(memory->type)->dataBits = dataBits; // made at run time, see the declaration
}

u64 memdata::memoryByteSize(const MEMORYLocType* memory) {
    if (memory == nullptr || memory->type == nullptr) return 0;
    const u64 dataBits = memory->type->dataBits;
    const u64 parityBits = memory->type->parityBits;
    return dataBits / 8 + parityBits / 8 + (dataBits % 8 + parityBits % 8) / 8; // their sum may pass 64 bits
}

// memory_types.h - the nineteen static memory types, by name and as the list that answers without a device.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_MEMORY_TYPES_H
#define MEMDATA_DEVICE_TABLE_UTILS_MEMORY_TYPES_H

#include "DeviceTableUtils/records.h"

// One block RAM each, as one family or group of families has it. Constant, but for token, which a user's definition
// of the same name may replace until the end of the engine's lifetime.
extern MEMORYType RAMB4_BRAM;
extern MEMORYType T2RAMB16_BRAM;
extern MEMORYType T2RAMB18_BRAM;
extern MEMORYType T4RAMB16_BRAM;
extern MEMORYType T4RAMB18_BRAM;
extern MEMORYType D3RAMB16_BRAM;
extern MEMORYType D3RAMB18_BRAM;
extern MEMORYType T5RAMB16_BRAM;
extern MEMORYType T5RAMB18_BRAM;
extern MEMORYType T5RAMB32_BRAM;
extern MEMORYType T5RAMB36_BRAM;
extern MEMORYType T6RAMB16_BRAM;
extern MEMORYType T6RAMB18_BRAM;
extern MEMORYType T6RAMB32_BRAM;
extern MEMORYType T6RAMB36_BRAM;
extern MEMORYType D6RAMB8_BRAM;
extern MEMORYType D6RAMB9_BRAM;
extern MEMORYType D6RAMB16_BRAM;
extern MEMORYType D6RAMB18_BRAM;

inline constexpr size_t kSTATIC_MEMORY_TYPES = 19;

// All nineteen without location arrays, in the order above, ended by an element without a type.
extern MEMORYLocType definedStaticMEMORYTypes[kSTATIC_MEMORY_TYPES + 1];

namespace memdata {

// Name of the static record, as in "T6RAMB36_BRAM"; empty for a type of the user's.
const char* memoryTypeRecordName(const MEMORYType* type);

// Gives every static type the token of its own keyword back.
void restoreMemoryTypeTokens();

} // namespace memdata

#endif

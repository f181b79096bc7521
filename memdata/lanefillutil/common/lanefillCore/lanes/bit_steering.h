// bit_steering.h - a value put together from fields of another one.
// SPDX-License-Identifier: Apache-2.0
//
// For steering records that device tables may carry; the translation itself has no use for it.
#ifndef MEMDATA_LANEFILL_CORE_BIT_STEERING_H
#define MEMDATA_LANEFILL_CORE_BIT_STEERING_H

#include "platform/BasicTypes.h"

struct BitSteeringFieldListType {
    BitSteeringFieldListType* next;
    bool reverse;       // the field's bits are mirrored
    u32 width;          // bits
    u32 sourceBit;      // lowest bit of the field in the value, 0 to 63
    u32 destinationBit; // lowest bit of the field in the result, 0 to 63
    u64 mask;           // of the field in the result
};

// The fields of a list moved to their places and or-ed; an empty list gives 0.
u64 GetBitSteeringValue(unsigned long value, const BitSteeringFieldListType* list);

#endif

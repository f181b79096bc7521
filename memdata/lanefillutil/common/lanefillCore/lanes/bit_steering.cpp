// bit_steering.cpp - see bit_steering.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/bit_steering.h"

#include "lanefillCore/records/chunk_access.h"

namespace {

u64 shiftedUp(u64 value, u32 bits) {
    return bits < 64 ? value << bits : 0;
}
u64 shiftedDown(u64 value, u32 bits) {
    return bits < 64 ? value >> bits : 0;
}

u64 fieldInPlace(u64 value, const BitSteeringFieldListType& field) {
    if (field.reverse)
        return shiftedUp(reverseDataBits(field.width, shiftedDown(value, field.sourceBit)), field.destinationBit);
    return field.destinationBit >= field.sourceBit ? shiftedUp(value, field.destinationBit - field.sourceBit)
                                                   : shiftedDown(value, field.sourceBit - field.destinationBit);
}

} // namespace

u64 GetBitSteeringValue(unsigned long value, const BitSteeringFieldListType* list) {
    u64 result = 0;
    for (; list != nullptr; list = list->next) result |= fieldInPlace(value, *list) & list->mask;
    return result;
}

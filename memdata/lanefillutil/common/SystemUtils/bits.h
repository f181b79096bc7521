// bits.h - mask and bit helpers.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_BITS_H
#define MEMDATA_SYSTEM_UTILS_BITS_H

#include "platform/BasicTypes.h"

unsigned setModesMask(unsigned* mask, unsigned bits, bool set); // the old mask
bool testModesMask(unsigned mask, unsigned bits, bool all);
u64 getBitMask(unsigned width);
unsigned getValueBitWidth(unsigned long value);
u64 getValueBitMask(unsigned long value);

#endif

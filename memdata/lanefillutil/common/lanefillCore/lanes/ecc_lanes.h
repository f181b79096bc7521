// ecc_lanes.h - the check bits of a bus word, cut by width into the ECC lanes of its block.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_ECC_LANES_H
#define MEMDATA_LANEFILL_CORE_ECC_LANES_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/lanes/bus_word.h"

// Computes the check value of a bus word by the block's ECC type and appends it to the ECC lanes, the first
// lane taking the top bits. With byteSwap the word is read in the other byte order. Type 0 does nothing; a
// type above 5 gives check bits 0. A lane without a cursor takes nothing.
void transform_bus_access_ECC_value(BusBlockType* block, bool byteSwap, EndianConvert::UInt128 value);

namespace memdata {

// The word that a code sees: in the other byte order with byteSwap, cut to the low 32 bits for type 1.
EndianConvert::UInt128 eccInput(u32 eccType, bool byteSwap, EndianConvert::UInt128 word);

// Appends a check value to the block's ECC lanes.
void appendCheckValue(BusBlockType* block, u64 check);

} // namespace memdata

#endif

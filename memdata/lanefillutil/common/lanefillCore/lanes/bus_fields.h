// bus_fields.h - what a bus word is made of in its source, and where each part goes.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_BUS_FIELDS_H
#define MEMDATA_LANEFILL_CORE_BUS_FIELDS_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/lanes/lane_positions.h"

#include <algorithm>

namespace memdata {

// The data bits of one lane, or its parity bits.
struct BusField {
    BufferChunkAccess* access; // where its words go
    u64 firstBit;              // from the start of the bus word in the source
    unsigned bits;
    unsigned slotBits;  // of a word in the buffer
    unsigned swapWidth; // see swapLaneBytes
    bool mirror;        // its bits are turned round
};

// Calls use(BusField) for all fields of a bus word in their order: of each lane, the parity bits behind the pad bits
// that make whole hex digits of them, then the data bits.
void forEachBusField(const BusBlockType* block, const auto& use) {
    u64 bit = 0;
    for (u64 i = 0; i < block->laneCount; ++i) {
        const BitLaneGridElemType* element = block->lanes[i];
        if (const unsigned parityBits = element->parityWidth; parityBits > 0) {
            bit += (4 - parityBits % 4) % 4;
            use(BusField{element->lane->parityChunks, bit, parityBits, parityBits, 0, false});
            bit += parityBits;
        }
        const unsigned dataBits = laneDataBits(element);
        use(BusField{element->lane->dataChunks, bit, dataBits, laneSlotBits(dataBits),
            static_cast<unsigned>(block->lanePitch), element->bitOrdering == kBIT_ORDERING_ASCENDING});
        bit += dataBits;
    }
}

// Bits of a bus word in its source; at least 1, which no word of a block without lanes has.
inline u64 busWordBits(const BusBlockType* block) {
    u64 bits = 0;
    forEachBusField(block, [&](const BusField& field) { bits = field.firstBit + field.bits; });
    return std::max<u64>(bits, 1);
}

} // namespace memdata

#endif

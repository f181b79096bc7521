// lane_positions.h - where in its lanes an address of a bus block falls, and the lanes' cursors put there.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_LANE_POSITIONS_H
#define MEMDATA_LANEFILL_CORE_LANE_POSITIONS_H

#include "BmmUtils/model/records.h"

// byteAddress * 8 / width, truncating. Bits; width 0 gives 0.
unsigned long convert_from_byte_to_bitLane_address(unsigned long width, unsigned long byteAddress);
// laneAddress * width / 8, truncating.
unsigned long convert_from_bitLane_address_to_byte(unsigned long width, unsigned long laneAddress);

// Where an address (bytes, or words under word addressing) falls in a block of so many lanes of width bits.
//   word   out: bus word from the start of the block
//   count  out: lane steps from the address to the block's end; not bus words
// Returns the lane at which the address falls: the absolute address in lane steps, modulo lanes; it is not
// taken from the block's start. No lanes or no width give 0, word 0 and count 0.
unsigned long calculate_starting_bitLane_offset_positions(bool wordAddressing, unsigned long blockStart,
    unsigned long blockEnd, unsigned long lanes, unsigned long width, unsigned long address, unsigned long* word,
    unsigned long* count);

// Puts the lane's cursors at a word and opens the range that the lane is about to take at offset, bytes from
// the start of the block. Status: 0; 7 without memory or when the lane has no buffer.
int initialize_bitLane_transform_positions(
    const char* fileName, BitLaneGridElemType* element, unsigned long word, unsigned long offset);

// Puts the cursors of all data lanes of a block at an address, 0 meaning the block's start; lanes that the
// address has passed stand one bus word later. count: lane steps to the block's end; startLane: the first
// lane to be written. Status: 0; 7 without memory.
int initialize_busBlock_transform_positions(const char* fileName, const AddressRangeDefType* range,
    const BusBlockType* block, unsigned long address, unsigned long* count, unsigned long* startLane);

// The same for the ECC lanes, from the first on. They count words with the width of the first ECC lane and
// the number of data lanes. On purpose the walk wraps at the number of data lanes too: with more ECC lanes
// than data lanes, the others have no cursor and take nothing.
int initialize_busBlock_ECC_transform_positions(const char* fileName, const AddressRangeDefType* range,
    const BusBlockType* block, unsigned long address, unsigned long* count);

// Records how far the lane's cursors have come in its current range, and in its parity part.
inline void update_max_transform_buffer_addresses(BitLaneGridElemType* element) {
    const BitLaneType* lane = element->lane;
    if (lane->currentRange == nullptr) return;
    set_max_transform_buffer_addresses(lane->dataChunks, lane->currentRange);
    if (lane->currentRange->parityRange != nullptr && lane->parityChunks != nullptr)
        set_max_transform_buffer_addresses(lane->parityChunks, lane->currentRange->parityRange);
}

namespace memdata {

// Bits that one word of dataBits bits takes in a lane's buffer: dataBits where it divides 8 or is a multiple
// of 8, else the next such width, so that no word crosses a byte against the order of bits.
constexpr unsigned laneSlotBits(unsigned dataBits) {
    if (dataBits >= 8) return (dataBits + 7) / 8 * 8;
    if (dataBits > 4) return 8;
    return dataBits == 3 ? 4 : dataBits;
}

// Bits of a word of width bits that lie ahead of a byte address. 0 for a width of 0.
constexpr unsigned bitsIntoWord(u64 width, u64 byteAddress) {
    return width == 0 ? 0 : static_cast<unsigned>(byteAddress % width * 8 % width);
}

// Data bits of one word of the lane, without its parity bits.
inline unsigned laneDataBits(const BitLaneGridElemType* element) {
    return static_cast<unsigned>(element->laneWidth - element->parityWidth);
}

} // namespace memdata

#endif

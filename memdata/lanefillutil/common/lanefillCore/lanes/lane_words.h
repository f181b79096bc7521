// lane_words.h - one word of one lane, from the source to the lane's buffers: the plain form of the transform.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_LANE_WORDS_H
#define MEMDATA_LANEFILL_CORE_LANE_WORDS_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/lanes/bus_word.h"

// Takes one word of the lane from the source: where the lane has parity bits, pad bits up to a whole hex digit
// and the parity bits, then the data bits. A source that ends inside gives the top bits, the old contents keep
// the rest. Stores the word, bytes swapped by swapWidth (16: the low two, 32: four, 64: eight; else none), low
// byte first, and appends its logical value to the bus word.
void transform_bitLane_value(
    BitLaneGridElemType* element, unsigned swapWidth, BufferChunkAccess* source, EndianConvert::UInt128* bus);

namespace memdata {

// The same for a source that begins headBits inside the word of a lane without parity bits: the bits ahead keep what
// the lane holds. headBits is below the lane's data bits.
void transformRestOfLaneValue(BitLaneGridElemType* element, unsigned headBits, unsigned swapWidth,
    BufferChunkAccess* source, EndianConvert::UInt128* bus);

// Whether swapLaneBytes changes anything.
constexpr bool swapsLaneBytes(unsigned swapWidth) {
    return swapWidth == 16 || swapWidth == 32 || swapWidth == 64;
}

inline u64 swapLaneBytes(unsigned swapWidth, u64 word) {
    switch (swapWidth) {
    case 16:
        return EndianConvert::swapTwoBytes(word); // on purpose only these two, also in a wider lane
    case 32:
        return EndianConvert::swapFourBytes(word);
    case 64:
        return EndianConvert::swapEightBytes(word);
    default:
        return word;
    }
}

// Appends the word under the lane's cursors to the bus word and changes nothing: what a lane contributes to
// the check bits after the source has run out. The data bits are cut to 32.
void accumulateStoredWord(const BitLaneGridElemType* element, unsigned swapWidth, EndianConvert::UInt128* bus);

} // namespace memdata

#endif

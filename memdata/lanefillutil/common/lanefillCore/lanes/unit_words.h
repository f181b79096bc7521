// unit_words.h - the plain form for blocks whose lane words are one unit of a cursor each: fewer tests a word.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_UNIT_WORDS_H
#define MEMDATA_LANEFILL_CORE_UNIT_WORDS_H

#include "BmmUtils/model/records.h"

namespace memdata {

// Whether the words of all lanes have 1, 2, 4 or 8 bits and none for parity, and keep their bytes where they are: each
// then lies inside one byte of its lane.
bool hasUnitWords(const BusBlockType* block);

// Whole bus words from lane 0 on, as many as the source (data order) holds and no more than maxWords: each lane word as
// transform_bitLane_value takes it. Each lane has taken a word at this address already, so that its range knows where
// the words begin, and is told only behind the last one: cursors move one way. Gives the number of words.
u64 transformUnitWords(BusBlockType* block, BufferChunkAccess* source, u64 maxWords, bool byteSwapEcc);

} // namespace memdata

#endif

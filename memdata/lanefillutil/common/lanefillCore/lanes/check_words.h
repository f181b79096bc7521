// check_words.h - the check values of a run of whole bus words.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_CHECK_WORDS_H
#define MEMDATA_LANEFILL_CORE_CHECK_WORDS_H

#include "BmmUtils/model/records.h"

namespace memdata {

// Appends the check values of bus words to the block's check lanes. The words stand in bytes one after the
// other, the first byte most significant; each has laneCount lanes of dataBits bits (8 to 64, whole bytes) and
// no more than 128 bits in all.
void transformCheckWords(BusBlockType* block, const u8* bytes, u64 words, unsigned dataBits, bool byteSwapEcc);

} // namespace memdata

#endif

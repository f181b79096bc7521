// check_words.h - the check values of a run of whole bus words.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_CHECK_WORDS_H
#define MEMDATA_LANEFILL_CORE_CHECK_WORDS_H

#include "BmmUtils/model/records.h"

namespace memdata {

// Appends the check values of bus words to the block's check lanes. The words stand one after the other from the
// source's cursor on, which holds so many; each is of lanes of 1 to 64 data bits.
void transformCheckWords(BusBlockType* block, const BufferChunkAccess* source, u64 words, bool byteSwapEcc);

} // namespace memdata

#endif

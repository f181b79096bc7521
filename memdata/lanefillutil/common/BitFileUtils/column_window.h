// column_window.h - the block-RAM columns of a burst on their way through a copy.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_COLUMN_WINDOW_H
#define MEMDATA_BIT_FILE_UTILS_COLUMN_WINDOW_H

#include "BitFileUtils/frame_bursts.h"

namespace memdata {

// Copies the wordCount words of a burst that follow. Its columns take what bit lanes hold, or are compared with it when
// the walk only checks; all else stays. Status 7 without memory; otherwise that of the copy.
int copyColumns(StreamWalk& walk, u32 commandWord, u64 wordCount, const BramColumns& columns);

} // namespace memdata

#endif

// BRAMDecodeUtils.h - how memories lie in configuration frames, and the way in and out.
//
//   decode_tables  which frame bit holds which memory bit, for all forms of memories
//   bit_access     bits of images and frames, bit order inside bytes
//   frame_codec    one memory between its images and its frames
//   codec_plan     its fast form, many rows of a table at once; bit_transpose turns their bits
//   column_walk    all memories of one configuration column, dumped or replaced
//   memory_check   the same, compared with what bit lanes hold
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BRAM_DECODE_UTILS_H
#define MEMDATA_BRAM_DECODE_UTILS_H

#include "BRAMDecodeUtils/bit_access.h"
#include "BRAMDecodeUtils/column_walk.h"
#include "BRAMDecodeUtils/decode_tables.h"
#include "BRAMDecodeUtils/frame_codec.h"
#include "BRAMDecodeUtils/memory_check.h"

#endif

// BitFileUtils.h - bit files: the containers of configuration streams, and the streams themselves.
// SPDX-License-Identifier: Apache-2.0
//
// Lowest first:
//   progress         how far a run over a bit file has come, and its abort
//   byte_primitives  counted bytes, big-endian numbers and strings
//   header           the record of a parsed header
//   bit_container    binary files, in two dialects of header
//   rbt_container    text files of 0s and 1s
//   header_dump      a header as text
//   stream_crc       the CRC of configuration words
//   stream_walker    one pass over a configuration stream
//   config_words     words of a stream: values, sync words, Auto CRC words
//   register_ops     what a walk does with a packet, by the kind of its register
//   burst_crc        the CRC of a large burst, taken by a second thread
//   frame_bursts     frame data: read whole, changed in place, written back; burst_dump tells it as text
//   bit_image        the stream of a file as an image in memory
//   bit_commands     dump and replacement of whole files
#ifndef MEMDATA_BIT_FILE_UTILS_H
#define MEMDATA_BIT_FILE_UTILS_H

#include "BitFileUtils/bit_commands.h"
#include "BitFileUtils/bit_container.h"
#include "BitFileUtils/bit_image.h"
#include "BitFileUtils/byte_primitives.h"
#include "BitFileUtils/header.h"
#include "BitFileUtils/header_dump.h"
#include "BitFileUtils/progress.h"
#include "BitFileUtils/rbt_container.h"
#include "BitFileUtils/stream_crc.h"
#include "BitFileUtils/stream_walker.h"

#endif

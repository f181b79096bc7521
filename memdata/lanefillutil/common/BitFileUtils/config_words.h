// config_words.h - words of a configuration stream: single ones, register values, sync words, Auto CRC words.
//
// A word is configWordBytes of the family, 2 or 4, big-endian. All reads count down remaining. Status: 0; 15 when the
// progress callback has aborted the run; 2 with an alert when the stream ends inside; the failure of a file.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_CONFIG_WORDS_H
#define MEMDATA_BIT_FILE_UTILS_CONFIG_WORDS_H

#include "BitFileUtils/stream_state.h"

// One word as it stands, without counting. Another word size reads and writes nothing, and succeeds.
int ReadConfigWord(fileIODescriptor* input, const TarselDeviceType* device, u32* value);
int WriteConfigWord(fileIODescriptor* output, const TarselDeviceType* device, u32 value);

// The value as wordCount words, the most significant first; a count of 0 writes nothing.
int WriteRegValue(fileIODescriptor* output, const TarselDeviceType* device, u32 value, u32 wordCount);

// The data words of a register write into walk.words: as many as the short count says, one when it is 0. value is the
// last word; in families with 16-bit words the last two of them.
int ReadRegValue(memdata::StreamWalk& walk, u32 commandWord, u32* value);

// A value of as many words as a sync word has, the first the most significant; copied, unless kWALK_DROP_SYNC.
int ReadWriteSyncWord(memdata::StreamWalk& walk, u32* value);

// Passes over the stream up to behind the next sync word, or to its end. A copy takes all of it, unless kWALK_DROP_SYNC.
int OutputSyncData(memdata::StreamWalk& walk);

// An Auto CRC word of which the first word stands in value: the words that still follow it; and one in a copy.
int ReadWriteAutoCRCWord(memdata::StreamWalk& walk, u32* value);
int WriteAutoCRCWord(fileIODescriptor* output, const TarselDeviceType* device, u32 crc);

namespace memdata {

// One word of the stream, counted.
int readStreamWord(StreamWalk& walk, u32* value);

// The command word and the words of its packet into the copy.
int copyPacket(StreamWalk& walk, u32 commandWord);

// The CRC so far, as it stands in so many words: short ones need two for all of it.
u32 crcInWords(const StreamWalk& walk, u64 wordCount);

// The Auto CRC word behind a burst, of which first has been read: exchanged in a copy, compared in a dump.
int passAutoCRCWord(StreamWalk& walk, u32 first);

// Bytes at the end of the stream that are fewer than a word.
int passRest(StreamWalk& walk, bool isCopied);

} // namespace memdata

#endif

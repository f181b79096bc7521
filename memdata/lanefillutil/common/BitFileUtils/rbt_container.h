// rbt_container.h - bit files as text: four labelled lines, then lines of binary digits.
// SPDX-License-Identifier: Apache-2.0
//
//   Ombrel ASCII Bitstream        in any case; the text begins with these words
//   Design name: top.ncd          "name": what follows the colon up to the end of the line, without blanks around it
//   Part: q5a20ff676              likewise "Part", "Date" and "Bits", in this order, in any case; other lines between
//   Date: Sat Jul 10 12:52:21 2010
//   Bits: 64
//   10101010100110010101010101100110      a number in base 2: the low 32 bits are one word of the stream
//   00100000000000000000000000000000
//
// Ahead of the first number anything may stand; what is no number behind it ends the data. Texts are read as they
// stand: quotes, macros and directives mean nothing here, comments between numbers are passed over.
#ifndef MEMDATA_BIT_FILE_UTILS_RBT_CONTAINER_H
#define MEMDATA_BIT_FILE_UTILS_RBT_CONTAINER_H

#include "BitFileUtils/header.h"
#include "DeviceTableUtils/records.h"
#include "FileUtils/FileUtils.h"
#include "ParseUtils/streams.h"

// Searches the tokens for a label (case ignored) with a ":" behind it and keeps the rest of that line.
//   token   works as the cursor; its contents are lost
//   string  out: the caller's; what it held before is not released
// Status: 0; 2 with kERROR_UNKNOWN_OR_CORRUPTED_DATA_FILE_FORMAT when the label does not come; 7; that of a token that
// cannot be read.
int ReadLabeledString(parse_stream* stream, token_element* token, const char* label, HeaderStringType* string);

// Reads the whole of an RBT text. The header is cleared first and is the caller's afterwards, also after a failure.
//   memoryFile  out: see OpenRBTData; null unless the status is 0
// Status: 0; 2 with kERROR_UNKNOWN_OR_CORRUPTED_DATA_FILE_FORMAT: other first words, a missing label; that of
// OpenRBTData.
int ReadRBTHeader(parse_stream* stream, token_element* token, BitFileHeaderType* header, fileIODescriptor** memoryFile);

// Reads the numbers from where the stream stands, four bytes a word, most significant first; dataLength counts them.
//   memoryFile  out: a binary file in memory over the words, named after the stream, at its start. The words (also
//               dataPointer) stay in memory until the end of the engine's lifetime
// Less than the "Bits" line of the header promises is an error when something else than a number has ended the data,
// and warned about at the end of the text.
// Status: 0; 2 with kERROR_UNKNOWN_OR_CORRUPTED_DATA_FILE_FORMAT for this; 17 with kERROR_EMPTY_INPUT_FILE when there
// is no word; 7; that of a token that cannot be read.
int OpenRBTData(parse_stream* stream, token_element* token, BitFileHeaderType* header, fileIODescriptor** memoryFile);

// Opens an RBT file as OpenBITFile does a binary one; the text is closed again in all cases.
// Status: 0; 4 with kERROR_UNRECOGNIZED_BIT_DEVICE_TYPE; 17 with kERROR_EMPTY_INPUT_FILE; that of opening the file or
// of ReadRBTHeader. After a failure the header is empty and file is null.
int OpenRBTFile(fileSpecType* fileSpec, u32* dataLength, TarselDeviceType** device, BitFileHeaderType* header,
    fileIODescriptor** file);

namespace memdata {

// Fills what a t4k file needs and an RBT text does not have, so that the header can be written: preamble, tags, and
// date and time out of dateTime. The time is the word that holds ":" ("00:00:00" when there is none), the date is the
// rest, its words parted by single blanks. An empty name or date becomes "unknown", since no reader takes an empty one.
// Status 0, 7.
int completeRBTHeader(BitFileHeaderType* header);

} // namespace memdata

#endif

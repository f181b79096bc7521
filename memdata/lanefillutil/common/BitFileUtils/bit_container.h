// bit_container.h - binary bit files: two dialects of header around a configuration stream.
// SPDX-License-Identifier: Apache-2.0
//
// Numbers are big-endian. A Pascal string is a 16-bit length L and L bytes, the last of which is zero.
//
// t4k (first byte 0)                            Fenwick (first byte 25)
//   preamble    Pascal, 0F F0 four times and 00   1 byte      25
//   fieldCount  2 bytes                           designName  through a zero byte
//   "a"         designName, Pascal                fenwickUser through a zero byte
//   "b"         partName, Pascal                  partName    through a zero byte
//   "c"         date, Pascal                      dateTime    through a zero byte
//   "d"         time, Pascal                      fenwickStamp 8 bytes
//   dataTag     1 byte, "e" but not tested        4 bytes     length of the stream in bits
//   dataLength  4 bytes, bytes of stream          stream
//   stream
//
// What follows the stream is no part of it.
#ifndef MEMDATA_BIT_FILE_UTILS_BIT_CONTAINER_H
#define MEMDATA_BIT_FILE_UTILS_BIT_CONTAINER_H

#include "BitFileUtils/header.h"
#include "DeviceTableUtils/records.h"
#include "FileUtils/FileUtils.h"

// Reads the header of a file that stands at its start. The record is cleared first (what it held is not released)
// and is the caller's afterwards, to be given to DeleteBITHeader also after a failure. A first byte of another dialect
// is no failure here: the header stays cleared.
// Status: 0; 2 with kERROR_INVALID_OR_CORRUPTED_BIT_STREAM_HEADER: a tag, an empty or unterminated string, another
// preamble, the file ends inside the header or before dataLength bytes of stream; 3 a null argument; 7; 15 aborted;
// below 0 the file cannot be read (reported).
int ReadBITHeader(fileIODescriptor* file, BitFileHeaderType* header);
int ReadBITHeader_t4k(fileIODescriptor* file, BitFileHeaderType* header);
int ReadBITHeader_Fenwick(fileIODescriptor* file, BitFileHeaderType* header);

// Writes the header as it was read, with its dataLength, by its dialect; another dialect writes nothing. Missing
// strings are written as empty ones. Status 0; 2 with the alert above: a string or the length does not fit its field;
// 15 aborted; else the failure of the output.
int WriteBITHeader(fileIODescriptor* file, const BitFileHeaderType* header);
int WriteBITHeader_t4k(fileIODescriptor* file, const BitFileHeaderType* header);
int WriteBITHeader_Fenwick(fileIODescriptor* file, const BitFileHeaderType* header); // length: dataLength * 8 bits

// Opens a bit file (a specification of RBT format through OpenRBTFile) and leaves it at the first byte of the stream.
//   openFlags   attributes besides those of reading a binary file. With kWHOLE_FILE_BUFFER the header's dataPointer
//               is set whatever the size of the file; without, for files that fit the first buffer (100000 bytes)
//   dataLength  out: bytes of stream
//   device      out: the device that the header names
//   header      out: the caller deletes it in all cases
//   file        out: null unless the status is 0
// Status: 0; 4 with kERROR_UNRECOGNIZED_BIT_DEVICE_TYPE; 17 with kERROR_EMPTY_INPUT_FILE; that of opening the file or
// of ReadBITHeader.
int OpenBITFile(fileSpecType* fileSpec, u32 openFlags, u32* dataLength, TarselDeviceType** device,
    BitFileHeaderType* header, fileIODescriptor** file);

namespace memdata {

// Opens a bit file only to learn the device that its header names. Status as OpenBITFile.
int deviceOfBitFile(fileSpecType* bitFile, TarselDeviceType** device);

} // namespace memdata

#endif

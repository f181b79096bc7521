// bit_image.h - the configuration stream of a file as an image in memory.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_BIT_IMAGE_H
#define MEMDATA_BIT_FILE_UTILS_BIT_IMAGE_H

#include "BitFileUtils/bit_container.h"

// Copies the stream of a bit file once through the stream walker into memory.
//   dumpFlags   as of the walker; 0x80 leaves out sync words and the closing DESYNCH command
//   dataLength  out: bytes of the image, as in header->dataLength
//   header      out: dataPointer is the image, a tracked block that the caller releases; the caller deletes the
//               header in all cases
//   memoryFile  out: the file over the image as it was written; null unless the status is 0. Closed by the caller,
//               before the image is released
// The source is closed in all cases. Status as OpenBITFile and OutputBITData; 7 no memory. Without status 0 there is
// no image.
int OpenBITFileData(fileSpecType* fileSpec, u32 dumpFlags, u32* dataLength, TarselDeviceType** device,
    BitFileHeaderType* header, fileIODescriptor** memoryFile);

#endif

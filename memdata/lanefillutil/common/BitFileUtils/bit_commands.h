// bit_commands.h - what a run asks of bit files: a dump, a copy with other memory contents, the same in place.
//
// The device is the one that the bit file names; a mapping must have been made for it, or for none. One command at a
// time per process.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_BIT_COMMANDS_H
#define MEMDATA_BIT_FILE_UTILS_BIT_COMMANDS_H

#include "BitFileUtils/header.h"
#include "BitFileUtils/progress.h"
#include "BmmUtils/model/records.h"
#include "FileUtils/file_spec.h"

// The stream of a bit file as text, to a file (default extension "dmp") or, without a spec, to standard output.
//   flags           0x01 no hex of CLB data         0x10 only memories of the design, hex without addresses
//                   0x02 block RAM as frames        0x20 neither version header nor file header
//                   0x08 block RAM by signature     0x40 parity of every memory
//   addressMapping  names the memories; may be null or without lanes
//   header          a place for the file's header, cleared at the end; may be null
// Status: 0; 4 with an alert: the mapping is for another device; that of OpenBITFile, OutputBITData, or the output.
int DoBITDump(fileSpecType* inputSpec, fileSpecType* outputSpec, u32 flags, AddressMappingType* addressMapping,
    BitFileHeaderType* header);

// A copy of a bit file in which the memories hold what the mapping's lanes hold, and the CRC words are right. Lanes
// without data leave their memories as they are. Without a spec the output is the input's name with "_rp". A failed
// run leaves no output; an old file keeps its contents. What follows the stream is copied. A lane with data that found
// no place in the stream is named in a warning.
//   flags  0x100 multi-frame writes are let through
// Status as DoBITDump; 3 with an alert: the stream is encrypted, compressed, or of a device without known frames; 15
// the callback has stopped the run.
int DoBITReplacement(fileSpecType* inputSpec, fileSpecType* outputSpec, u32 flags, AddressMappingType* addressMapping,
    BitFileHeaderType* header, ProgressCallbackType progress);

// The same over a configuration stream in memory, without a header. A failure leaves what was done until then.
int DoInplaceBITReplacement(TarselDeviceType* device, u8* image, u64 imageSize, AddressMappingType* addressMapping,
    ProgressCallbackType progress);

namespace memdata {

struct StreamCheck;

// Compares the memories of a bit file with what the mapping's lanes hold, and its CRC words with what they should be.
// Nothing is written. A lane with data and a location that the stream does not hold stays unmarked
// (BitLaneType::isReplaced). Status as DoBITReplacement; what was found is in *check.
int checkBitFile(fileSpecType* inputSpec, AddressMappingType* addressMapping, StreamCheck* check);

} // namespace memdata

#endif

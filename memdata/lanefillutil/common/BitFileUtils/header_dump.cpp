// header_dump.cpp - see header_dump.h.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/header_dump.h"

int DumpBITHeader(fileIODescriptor* out, const char* fileName, const BitFileHeaderType* header) {
    using memdata::headerText;
    int status = PutNextLine(out, "Ombrel BIT Bitstream\n");
    if (status == 0) status = PutNextLine(out, "File:        \t%s\n", fileName);
    if (status == 0) status = PutNextLine(out, "Design name: \t%s\n", headerText(header->designName));
    if (status == 0) status = PutNextLine(out, "Part:        \t%s\n", headerText(header->partName));
    if (status == 0) status = PutNextLine(out, "Date:        \t%s\n", headerText(header->dateTime));
    // Two length letters: the bits of a stream above 256 MB need more than 32 of them.
    if (status == 0) status = PutNextLine(out, "Bits:        \t%lld\n", u64{header->dataLength} * 8);
    return status != 0 ? status : PutNextLine(out, "\n");
}

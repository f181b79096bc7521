// data_header.cpp - see data_header.h.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/data_header.h"

#include "FileUtils/descriptor.h"
#include "ListingUtils/ListingUtils.h"

namespace {

int outputTitle(fileIODescriptor* file, const char* prefix, const char* title) {
    if (title == nullptr) return 0;
    return PutNextLine(file, "%s %s.\n%s\n", prefix, title, prefix);
}

// The version header leads each line by the prefix and a blank, so that the names of map and data files stand in one
// column.
int outputOrigin(fileIODescriptor* file, const char* prefix, const AddressMappingType* mapping) {
    int status = OutputVersionHeader(file, prefix, ", from:\n\n    Map file     - %s", mapping->bmmBaseName);
    if (status == 0) status = output_data_filenames(file, prefix, mapping->dataFiles);
    return status == 0 ? PutNextLine(file, "%s\n", prefix) : status;
}

int outputPlace(fileIODescriptor* file, const char* prefix, const BitLaneGridElemType* lane, const char* spaceName,
    const AddressRangeDefType* range) {
    if (lane != nullptr)
        return PutNextLine(file, "%s Address space '%s', bit lane [%ld:%ld].\n", prefix, spaceName,
            return_bitLane_left_value(lane), return_bitLane_right_value(lane));
    return PutNextLine(file, "%s Address space '%s' [0x%08llX:0x%08llX], %lld bytes in size.\n", prefix, spaceName,
        range->startAddress, range->endAddress, range->endAddress - range->startAddress + 1);
}

} // namespace

int output_data_header(fileIODescriptor* file, const char* prefix, const char* title, BitLaneGridElemType** lanes,
    unsigned long laneIndex, const char* spaceName, const AddressRangeDefType* range,
    const AddressMappingType* mapping) {
    int status = outputTitle(file, prefix, title);
    if (status != 0) return status;
    if (mapping == nullptr) return OutputVersionHeader(file, prefix, nullptr);

    status = outputOrigin(file, prefix, mapping);
    if (status != 0 || range == nullptr) return status;
    status = outputPlace(file, prefix, lanes == nullptr ? nullptr : lanes[laneIndex], spaceName, range);
    if (status != 0) return status;
    return PutNextLine(file, "%s\n%s Bus width = %ld bits, number of bus blocks = %ld.\n", prefix, prefix,
        range->busWidth, range->busBlockCount);
}

// absent_walker.cpp - stands in for the stream walker, which this build does not have yet.
// SPDX-License-Identifier: Apache-2.0
//
// Reports by an alert that the build lacks it and gives status 3: a run that needs it fails and says so.
#include "BitFileUtils/stream_walker.h"
#include "SystemUtils/alerts.h"

int OutputBITData(
    fileIODescriptor*, fileIODescriptor*, fileIODescriptor*, TarselDeviceType*, u32, u32*, AddressMappingType*) {
    return PrintError(kERROR_MESSAGE_STRING, 3, "This build cannot walk configuration streams yet.");
}

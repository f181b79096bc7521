// ListingUtils.h - version headers, dates, hex dumps and message files.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LISTING_UTILS_H
#define MEMDATA_LISTING_UTILS_H

#include "FileUtils/descriptor.h"
#include "FileUtils/file_spec.h"

char* GetDateTimeString(bool longNames);
int OutputConsoleMessage(fileIODescriptor* file, const char* text);
int DumpHex(
    fileIODescriptor* file, int mode, unsigned address, const unsigned char* data, unsigned size, unsigned perLine);
int OutputFormatString(fileIODescriptor* file, const char* name, const char* text, bool last);
int OutputAlertMsgFile(fileSpecType* spec);
int OutputPortLocMsgFile(fileSpecType* spec);

namespace memdata {
int outputVersionHeader(
    fileIODescriptor* file, const char* prefix, const char* format, std::span<const FormatArgument> arguments);
}

template<class... Arguments>
int OutputVersionHeader(fileIODescriptor* file, const char* prefix, const char* format, const Arguments&... arguments) {
    return memdata::outputVersionHeader(file, prefix, format, memdata::formatArguments(arguments...));
}

#endif

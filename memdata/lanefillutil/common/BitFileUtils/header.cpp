// header.cpp - the strings of a header, and the device that it names.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/header.h"

#include "DeviceTableUtils/device_lookup.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/alerts.h"

#include <cstring>

void DeleteHeaderString(HeaderStringType* string) {
    if (string == nullptr) return;
    StrDelete(string->text);
    *string = {};
}

void DeleteBITHeader(BitFileHeaderType* header) {
    if (header == nullptr) return;
    for (HeaderStringType* string : {&header->preamble, &header->designName, &header->partName, &header->date,
             &header->time, &header->bitCount, &header->fenwickUser, &header->dateTime})
        DeleteHeaderString(string);
    header->dataPointer = nullptr;
}

int memdata::setHeaderString(HeaderStringType* string, char* text) {
    DeleteHeaderString(string);
    if (text == nullptr) return 7;
    *string = {static_cast<u32>(std::strlen(text)), text};
    return 0;
}

int memdata::deviceOfHeader(const BitFileHeaderType* header, const char* fileName, TarselDeviceType** device) {
    const char* name = headerText(header->partName);
    *device = get_device_record_by_name(name);
    return *device != nullptr ? 0 : PrintError(kERROR_UNRECOGNIZED_BIT_DEVICE_TYPE, 4, *name != '\0' ? name : fileName);
}

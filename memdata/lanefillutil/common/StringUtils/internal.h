// internal.h - shared inside StringUtils: texts of the standard library as managed strings.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_STRING_UTILS_INTERNAL_H
#define MEMDATA_STRING_UTILS_INTERNAL_H

#include "StringUtils/StringUtils.h"

#include <new>

namespace memdata {

// Raises the fatal alert for a text that outgrew the machine; null, for the caller to return.
char* reportTextOutOfMemory();

// The managed string of what make() builds; null after the alert when memory is exhausted on the way.
template<class Make>
char* managedText(Make make) {
    try {
        return newString(make());
    } catch (const std::bad_alloc&) {
        return reportTextOutOfMemory();
    }
}

} // namespace memdata

#endif

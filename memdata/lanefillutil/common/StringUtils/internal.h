// internal.h - shared inside StringUtils: texts of the standard library as managed strings.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_STRING_UTILS_INTERNAL_H
#define MEMDATA_STRING_UTILS_INTERNAL_H

#include "StringUtils/StringUtils.h"

#include <new>

namespace memdata {

// Raises the fatal alert for a text that could not grow beyond its byteCount; null, for the caller to return.
char* reportTextOutOfMemory(size_t byteCount);

// The managed string of what fill(std::string*) writes; null after the alert when memory is exhausted on the way.
template<class Fill>
char* managedText(Fill fill) {
    std::string text;
    try {
        fill(&text);
    } catch (const std::bad_alloc&) {
        return reportTextOutOfMemory(text.size());
    }
    return newString(text);
}

} // namespace memdata

#endif

// init_strings.cpp - see init_strings.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/init_strings.h"

#include <algorithm>

unsigned char* construct_initialization_string(char* out, unsigned char* data) {
    constexpr char kDIGITS[] = "0123456789ABCDEF";
    out[kINIT_STRING_TEXT_BYTES - 1] = '\0';
    if (data == nullptr) {
        std::fill_n(out, kINIT_STRING_TEXT_BYTES - 1, '0');
        return nullptr;
    }
    for (size_t i = kINIT_STRING_BYTES; i-- > 0;) {
        *out++ = kDIGITS[data[i] >> 4];
        *out++ = kDIGITS[data[i] & 15];
    }
    return data + kINIT_STRING_BYTES;
}

// console.cpp - see console.h.
// SPDX-License-Identifier: Apache-2.0
#include "console.h"

#include <cstdio>

namespace memdata {

int print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return 0;
    printError("standard output can not be written");
    return 1;
}

void printError(std::string_view text) {
    std::fprintf(stderr, "lanefill: %.*s\n", static_cast<int>(text.size()), text.data());
}

} // namespace memdata

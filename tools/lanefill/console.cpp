// console.cpp - see console.h.
// SPDX-License-Identifier: Apache-2.0
#include "console.h"

#include "platform/host.h"

#include <cstdio>

namespace memdata {

int print(std::string_view text) {
    host().beforeOutput();
    std::fwrite(text.data(), 1, text.size(), stdout);
    return finishPrinting(0);
}

int finishPrinting(int status) {
    if ((std::fflush(stdout) == 0 && std::ferror(stdout) == 0) || status != 0) return status;
    printError("standard output can not be written");
    return 1;
}

void printError(std::string_view text) {
    host().beforeOutput();
    std::fprintf(stderr, "lanefill: %.*s\n", static_cast<int>(text.size()), text.data());
}

} // namespace memdata

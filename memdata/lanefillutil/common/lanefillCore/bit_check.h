// bit_check.h - whether a bit file holds what an address map and data files say.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_BIT_CHECK_H
#define MEMDATA_LANEFILL_CORE_BIT_CHECK_H

#include <string>

namespace memdata {

inline constexpr int kBIT_FILE_DIFFERS = 4;

struct BitCheckRun {
    // 0 all is equal; kBIT_FILE_DIFFERS; else that of the step that failed, which has raised its alert.
    int status = 0;
    bool isCompared = false; // the bit file was read to its end: a status of 4 means a difference
    std::string report;      // lines: lanes that differ with their first differing word, wrong CRC words, a summary
};

// Reads an option text with an address map (-bm), data files (-bd) and a bit file (-bt), translates the data and
// compares. Writes nothing. Inside an engine lifetime.
BitCheckRun runBitCheck(const char* text);

} // namespace memdata

#endif

// run_report.h - what the last run came to, for whoever speaks to the user behind it.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_RUN_REPORT_H
#define MEMDATA_LANEFILL_CORE_RECORDS_RUN_REPORT_H

#include "platform/BasicTypes.h"

#include <string>

namespace memdata {

struct RunReport {
    u64 jobs = 0;                 // dumps, translations, outputs that were begun
    bool namesOutput = false;     // somewhere for the results to go
    u64 segments = 0;             // of the data files, those with bytes
    u64 unmappedSegments = 0;     // that no eligible address space holds
    bool ignoresUnmapped = false; // the user wanted these left out without a word
    std::string firstUnmapped;    // the first of them: "segment #0 of 'app.elf' (0x80000000 to 0x80000FFF)"
};

// Of the one run at a time. Begins afresh with every run, and with the end of the engine's lifetime.
RunReport& runReport();

} // namespace memdata

#endif

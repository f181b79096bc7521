// progress.h - how long work tells how far it is.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_PROGRESS_H
#define MEMDATA_LANEFILL_CORE_RECORDS_PROGRESS_H

// percent: 0 to 100. text: what is being done. abort: ends the work when it is called; its argument is not used.
using ProgressSinkType = int (*)(int percent, const char* text, void (*abort)(unsigned));

// A line on standard output: "Processing BIT image... 42%". Gives 0.
int OutputProgress(int percent, const char* text, void (*abort)(unsigned));

#endif

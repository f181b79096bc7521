// lifetime.h - start-up and shut-down of the engine, and the names under which it runs.
// SPDX-License-Identifier: Apache-2.0
//
// A run stands between InitializeSystemResources and FinalizeSystemResources. Calls are counted, so that several
// objects share one lifetime: the first starts it, the last ends it. Afterwards all process state of the engine has
// its initial values again: two runs in one process give the result of two processes.
#ifndef MEMDATA_SYSTEM_UTILS_LIFETIME_H
#define MEMDATA_SYSTEM_UTILS_LIFETIME_H

#include "platform/BasicTypes.h"

using SystemFinalizationFunctionType = void (*)();

// Must come before the first allocation of a run. The first call forgets blocks that were made earlier (they can
// still be released, no sweep finds them), registers CheckMemoryLeaks below all other finalization functions, and
// starts the alert registry and the file layer. Every call counts, also one that fails.
// Status: 0; 3 called by a finalization function, reported and not counted; 7 out of memory, reported.
int InitializeSystemResources();

// When the last start is taken back: releases the system command, then runs the finalization functions from the last
// registered to the first, popping each before its call; the sweep of memory runs last. Then names, counters and
// masks go back to their initial values.
// Status: 0; 3 there was no start to take back, nothing happens.
int FinalizeSystemResources();

// Has a function run at the end of this lifetime (of the next one when none has begun). There is room for 32, the
// sweep and those of start-up itself included.
// Status: 0; 3 no function, or the shut-down is running; 7 no room. All but 0 are reported and register nothing.
int RegisterSystemFinalizationFunction(SystemFinalizationFunctionType function);

// Keeps a copy of the command line of this run for headers of outputs; null forgets it. Until FinalizeSystemResources.
// Status: 0; 7 out of memory, the old command stays.
int RegisterSystemCommand(const char* command);
const char* GetSystemCommand(); // null when there is none

// The name under which alerts speak, up to 256 characters; a longer name or a null is ignored. It belongs to the
// lifetime like the rest: the last FinalizeSystemResources puts "Lanefill" back.
void RegisterSystemToolName(const char* name);
const char* GetSystemToolName();

namespace memdata {

// One engine lifetime as a scope: initialises on entry, finalises on exit.
class SystemResources {
public:
    SystemResources() : status_(InitializeSystemResources()) {}
    ~SystemResources() { FinalizeSystemResources(); }
    SystemResources& operator=(SystemResources&&) = delete; // neither copied nor moved

    int status() const { return status_; } // of the start; nothing may be run when it is not 0

private:
    int status_;
};

} // namespace memdata

#endif

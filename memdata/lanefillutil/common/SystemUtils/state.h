// state.h - all process state of SystemUtils, in one place. One thread, no locks.
// SPDX-License-Identifier: Apache-2.0
//
// The last FinalizeSystemResources puts everything here back to the values below (resetSystemState), so that two
// runs in one process give the result of two processes. The two counters for tests are the exception: they belong
// to whoever watches the runs. gMemoryBlockList, gCurrentMemoryUsage and gMaxMemoryUsage (memory.h) are part of this
// state and stand beside the record only because they are globals by name. The alert layer keeps its own.
#ifndef MEMDATA_SYSTEM_UTILS_STATE_H
#define MEMDATA_SYSTEM_UTILS_STATE_H

#include "SystemUtils/block_pool.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/live_blocks.h"

namespace memdata {

inline constexpr u32 kFINALIZATION_FUNCTION_LIMIT = 32;
inline constexpr u32 kTOOL_NAME_LIMIT = 256; // characters; the buffer has one more for the terminator
inline constexpr char kDEFAULT_TOOL_NAME[] = "Lanefill";

struct SystemStateType {
    u32 startCount = 0;        // InitializeSystemResources without their FinalizeSystemResources
    bool shuttingDown = false; // while finalization functions run
    bool endsWithRun = false;  // the process ends with this lifetime
    u32 finalizationCount = 0;
    SystemFinalizationFunctionType finalization[kFINALIZATION_FUNCTION_LIMIT] = {}; // first registered first
    char* command = nullptr;                                                        // a tracked copy
    char toolName[kTOOL_NAME_LIMIT + 1] = {};

    BlockPool pool;              // of small blocks, open in a process that ends with its run
    LiveBlockSetType liveBlocks; // user pointers of all tracked blocks, listed or not
    u64 leakedBlockCount = 0;    // of the latest sweep; kept until the next one
    u64 allocationCount = 0;     // for tests: tracked allocations asked for, ever
    u64 allocationsToFault = 0;  // for tests: the fault strikes when this comes down to 0
};

extern SystemStateType gSystemState;

// Puts names and counters back to their initial values. Blocks that are still live (made before the first
// InitializeSystemResources, so that no sweep knows them) stay releasable and stay counted.
void resetSystemState();

} // namespace memdata

#endif

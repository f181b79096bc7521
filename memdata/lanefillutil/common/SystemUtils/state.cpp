// state.cpp - the process state of SystemUtils and its way back to the initial values.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/state.h"

#include "SystemUtils/memory.h"
#include "SystemUtils/process_end.h"

#include <cstring>

MemoryBlockListType gMemoryBlockList = {nullptr, nullptr};
u64 gCurrentMemoryUsage = 0;
u64 gMaxMemoryUsage = 0;

namespace memdata {

namespace {

SystemStateType initial_state() {
    SystemStateType state;
    std::memcpy(state.toolName, kDEFAULT_TOOL_NAME, sizeof kDEFAULT_TOOL_NAME);
    return state;
}

} // namespace

SystemStateType gSystemState = initial_state();

void expectProcessEnd() {
    gSystemState.endsWithRun = true;
    gSystemState.pool.open();
}

bool isProcessEndExpected() {
    return gSystemState.endsWithRun;
}

void resetSystemState() {
    SystemStateType next = initial_state();
    next.liveBlocks = gSystemState.liveBlocks;
    next.pool = gSystemState.pool;
    next.leakedBlockCount = gSystemState.leakedBlockCount;
    next.allocationCount = gSystemState.allocationCount;
    next.allocationsToFault = gSystemState.allocationsToFault;
    gSystemState = next;

    if (gSystemState.liveBlocks.count == 0) {
        deleteLiveBlocks(&gSystemState.liveBlocks);
        gSystemState.pool.close();
        gCurrentMemoryUsage = 0; // blocks beyond 4 GiB leave a rest behind
    }
    gMaxMemoryUsage = gCurrentMemoryUsage;
}

} // namespace memdata

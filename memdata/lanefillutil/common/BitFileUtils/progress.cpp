// progress.cpp - see progress.h.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/progress.h"

#include "SystemUtils/lifetime.h"

ProgressUpdateType gProgressUpdate{};

namespace {

bool gFinalizerRegistered = false;

void resetProgress() {
    gProgressUpdate = {};
    gFinalizerRegistered = false;
}

} // namespace

void SetupUpdateProgress(u32 total, ProgressCallbackType callback) {
    if (!gFinalizerRegistered) gFinalizerRegistered = RegisterSystemFinalizationFunction(resetProgress) == 0;
    gProgressUpdate = {};
    gProgressUpdate.total = total;
    gProgressUpdate.callback = callback;
    gProgressUpdate.step = total / 100;
}

i64 UpdateProgress(u32 byteCount) {
    ProgressUpdateType& progress = gProgressUpdate;
    if (progress.callback == nullptr) return progress.abortStatus;
    progress.count += byteCount;
    if (progress.sinceReport >= progress.step) {
        const u64 percent = progress.total == 0 ? 100 : u64{progress.count} * 100 / progress.total;
        progress.callback(static_cast<int>(percent), "Processing BIT image...", ProcessAbort);
    }
    progress.sinceReport = 0;
    return progress.abortStatus;
}

void ProcessAbort(unsigned) {
    gProgressUpdate.abortStatus = kPROGRESS_ABORTED;
}

// progress.h - how far a run over a bit file has come, and how a caller stops it.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_PROGRESS_H
#define MEMDATA_BIT_FILE_UTILS_PROGRESS_H

#include "platform/BasicTypes.h"

// Told how much is done; may call abort (its argument means nothing) to stop the run. The result is not used.
using ProgressCallbackType = int (*)(int percent, const char* message, void (*abort)(unsigned int));

struct ProgressUpdateType {
    u32 total; // bytes of the whole run; every byte counts once read and once written
    u32 count; // bytes done
    u32 step;  // total / 100
    u32 sinceReport;
    ProgressCallbackType callback; // or null
    i64 abortStatus;               // 0, or 15 once the caller has asked for the end
};

// Of the one run at a time; all zero again at the end of the engine's lifetime.
extern ProgressUpdateType gProgressUpdate;

inline constexpr i64 kPROGRESS_ABORTED = 15;

// A new run of total bytes begins; callback may be null.
void SetupUpdateProgress(u32 total, ProgressCallbackType callback);

// Counts bytes and gives abortStatus. Only runs below 100 bytes in total report, and these at each call: sinceReport
// never grows, so files of real size stay silent. This is on purpose: hosts count on it.
i64 UpdateProgress(u32 byteCount);

// Every later UpdateProgress of this run gives 15.
void ProcessAbort(unsigned unused);

namespace memdata {

// Whether each single byte is reported: bytes must then be moved one at a time.
inline bool progressReportsEachByte() {
    return gProgressUpdate.callback != nullptr && gProgressUpdate.step == 0;
}

} // namespace memdata

#endif

// state.h - all process state of FileUtils besides StandardOut and StandardLog. One thread, no locks. Back to these
// values at shutdown, by the function that InitializeFileIO registers: two runs in one process equal two processes.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_STATE_H
#define MEMDATA_FILE_UTILS_STATE_H

#include "FileUtils/descriptor.h"

#include <string>

namespace memdata {

struct FileStateType {
    u32 defaultAttributes = kOVERWRITING_REFUSED; // written by SetDefaultFileAttributes
    bool outputEnabled = true;                    // written by EnabledPutLineOutput
    bool journalingEnabled = false;               // written by EnabledJournaling
    fileIODescriptor* openFiles = nullptr;        // all open files but StandardOut, newest first
    std::string outputFileNameBuffer;             // the name that OpenDiskFile built last
    u32 temporaryCount = 0;                       // makes the names of temporaries differ
    bool nameTemporaries = false;                 // for tests: as on a system without nameless files
};
extern FileStateType gFileState;

} // namespace memdata

#endif

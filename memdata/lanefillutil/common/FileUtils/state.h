// state.h - all process state of FileUtils besides StandardOut and StandardLog. One thread, no locks. Back to these
// values at shutdown, by the function that InitializeFileIO registers: two runs in one process equal two processes.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_STATE_H
#define MEMDATA_FILE_UTILS_STATE_H

#include "FileUtils/descriptor.h"

#include <string>

namespace memdata {

class CopiedOutput;

// How an output that replaces a file is kept until it is closed. Systems differ in what they can do; tests go
// through all of it.
enum class TemporaryKind : u8 {
    kNAMELESS,        // a file without a name that is given one
    kNAMELESS_COPIED, // ... that can not be given one and is copied
    kNAMED,
};

struct FileStateType {
    u32 defaultAttributes = kOVERWRITING_REFUSED; // written by SetDefaultFileAttributes
    bool outputEnabled = true;                    // written by EnabledPutLineOutput
    bool journalingEnabled = false;               // written by EnabledJournaling
    fileIODescriptor* openFiles = nullptr;        // all open files but StandardOut, newest first
    std::string outputFileNameBuffer;             // the name that OpenDiskFile built last
    const char* openFailure = nullptr; // why the latest disk file could not be opened, when its alert does not tell it
    u32 temporaryCount = 0;            // makes the names of temporaries differ
    CopiedOutput* copiedOutput = nullptr; // the copy in the making
    u64 smallestCopy = u64{8} << 20;      // bytes of an input that is copied ahead; changed by tests only
    bool copiesOnOneProcessor = false;    // although nothing is gained there; changed by tests only
    TemporaryKind temporaryKind = TemporaryKind::kNAMELESS; // the best one to try; changed by tests only
};
extern FileStateType gFileState;

} // namespace memdata

#endif

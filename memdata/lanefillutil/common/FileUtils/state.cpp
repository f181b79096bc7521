// state.cpp - the process state of FileUtils, its start and its end.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/state.h"

#include "FileUtils/journal.h"
#include "SystemUtils/lifetime.h"

memdata::FileStateType memdata::gFileState;

u32& gDefaultFileAttributes = memdata::gFileState.defaultAttributes;
bool& gOutputEnabled = memdata::gFileState.outputEnabled;
bool& gJournalingEnabled = memdata::gFileState.journalingEnabled;

namespace {

// Written to directly, without a buffer of its own; its text ending is never applied.
fileIODescriptor standardOutRecord() {
    static char name[] = "stdout";
    fileIODescriptor record{};
    record.isOpen = 1;
    record.stream = stdout;
    record.attributes = kWRITE_ACCESS | kWHOLE_FILE_BUFFER;
    record.name = name;
    return record;
}

// Files that nobody closed belong to a run that failed: their outputs are dropped.
void closeFileIO() {
    Flush_File(&StandardOut);
    while (memdata::gFileState.openFiles != nullptr) {
        fileIODescriptor* file = memdata::gFileState.openFiles;
        memdata::abandonFile(&file);
    }
    memdata::gFileState = {};
    StandardOut = standardOutRecord();
}

} // namespace

fileIODescriptor StandardOut = standardOutRecord();
fileIODescriptor* StandardLog = nullptr;

void InitializeFileIO() {
    StandardOut = standardOutRecord();
    // Run from last to first: the journal is closed and kept, then the rest is dropped.
    RegisterSystemFinalizationFunction(closeFileIO);
    RegisterSystemFinalizationFunction(CloseJournalingFile);
}

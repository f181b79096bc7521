// journal.cpp - opens and closes the log.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/journal.h"

#include "FileUtils/opening.h"
#include "SystemUtils/alerts.h"

#include <utility>

int OpenJournalingFile(fileSpecType* spec) {
    CloseJournalingFile();
    fileIODescriptor* log = nullptr;
    // Like every output of a run, a log that is there already is not lost by accident.
    constexpr u32 kATTRIBUTES = kKEEP_EXTENSION | kTEXT_WRITE | kREFUSE_OVERWRITE;
    if (int status = OpenDiskFile(spec, nullptr, "log", nullptr, kATTRIBUTES, &log); status != 0) return status;
    StandardLog = log;
    memdata::beginAlertLog();
    gJournalingEnabled = true;
    return 0;
}

void CloseJournalingFile() {
    if (StandardLog == nullptr) return;
    gJournalingEnabled = false;
    fileIODescriptor* log = StandardLog;
    if (Close_File(&log) != 0) memdata::abandonFile(&log);
}

bool EnabledJournaling(bool enabled) {
    return StandardLog == nullptr ? gJournalingEnabled : std::exchange(gJournalingEnabled, enabled);
}

// journal.h - the log: a copy of what goes to standard output.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_JOURNAL_H
#define MEMDATA_FILE_UTILS_JOURNAL_H

#include "FileUtils/file_spec.h"

// Opens the log, with the extension "log" when the name has none, as StandardLog, and turns journaling on. A log that
// was open is closed first. An existing file is refused unless overwriting was allowed. Status as OpenDiskFile.
int OpenJournalingFile(fileSpecType* spec);
void CloseJournalingFile();           // no log is accepted; also done at shutdown
bool EnabledJournaling(bool enabled); // the old value; changes nothing while no log is open

#endif

// journal.h - the log: a copy of what goes to standard output.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_JOURNAL_H
#define MEMDATA_FILE_UTILS_JOURNAL_H

#include "FileUtils/file_spec.h"

int OpenJournalingFile(fileSpecType* spec);
void CloseJournalingFile();
bool EnabledJournaling(bool enabled); // the old value

#endif

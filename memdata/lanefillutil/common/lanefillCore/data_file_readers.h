// data_file_readers.h - which reader a data file has.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_DATA_FILE_READERS_H
#define MEMDATA_LANEFILL_CORE_DATA_FILE_READERS_H

#include "lanefillCore/records/data_file.h"

namespace memdata {

// Makes the reader for the format code of a file. *file: the caller's, to delete; null on a failure. Status: 0;
// 3 with an alert, the format has no reader; 7 no memory, reported.
int newDataFileReader(const fileSpecType* spec, LNF_DataFile** file);

} // namespace memdata

#endif

// elf_dumps.h - ELF files as listings of their headers and as MEM text, without any map.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_ELF_DUMPS_H
#define MEMDATA_LANEFILL_CORE_ELF_DUMPS_H

#include "lanefillCore/records/option_record.h"

// Dumps every data file of the options: as a listing to dumpFile, or to standard output when neither that nor
// outputMemFile is set; as MEM text to outputMemFile. A file that is empty or cannot be opened is passed over, the
// latter with its alert and its status at the end. One that is damaged ends the run, and then no output appears.
// Status: 0; 1 without a data file, or when a file cannot be opened, read or created, or an output is an input; 2 a
// damaged file; 7 without memory.
int DoELFDumps(CmdStringOptionsType* options);

#endif

// output_files.h - what a run leaves behind, besides maps: MEM files and a rewritten bit file.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_OUTPUT_FILES_H
#define MEMDATA_LANEFILL_CORE_OUTPUT_FILES_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/records/option_record.h"

// Writes what the options ask for from the filled lanes of the mapping, until something fails. UCF, Verilog and VHDL
// files are not written any more: the host is told so. is64Bit: the data has 64-bit addresses.
// Status: 0; 14 a single MEM file was asked for; else that of the bit file or of the MEM files.
int create_output_files(
    CmdStringOptionsType* options, AddressMappingType* mapping, bool is64Bit, ProgressSinkType progress);

#endif

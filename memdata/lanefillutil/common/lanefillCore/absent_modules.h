// absent_modules.h - operations of modules that this build does not have yet, under their own names.
// SPDX-License-Identifier: Apache-2.0
//
// Each reports by an alert that the build lacks it and gives status 3: a run that needs one fails and says so.
// A module that arrives takes its lines out of here.
#ifndef MEMDATA_LANEFILL_CORE_ABSENT_MODULES_H
#define MEMDATA_LANEFILL_CORE_ABSENT_MODULES_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/records/option_record.h"

struct BitFileHeaderType;
struct parse_stream;

int open_and_parse_bmm_XML(fileSpecType* spec, AddressMappingType* mapping, const char* root, const char* rescanText,
    parse_stream* parent, parse_stream** out);
int output_XML_BMM_file(fileSpecType* spec, const char* fileName, int flags, AddressMappingType* mapping);
int create_output_files(
    CmdStringOptionsType* options, AddressMappingType* mapping, bool is64Bit, ProgressSinkType progress);
int DoELFDumps(CmdStringOptionsType* options);
int DoBITDump(
    fileSpecType* input, fileSpecType* output, u32 flags, AddressMappingType* mapping, BitFileHeaderType** header);

#endif

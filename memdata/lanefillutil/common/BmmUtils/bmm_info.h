// bmm_info.h - the compact language of -mf: a few words that stand for an address map.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_BMM_INFO_H
#define MEMDATA_BMM_UTILS_BMM_INFO_H

#include "BmmUtils/model/records.h"
#include "ParseUtils/streams.h"
#include "lanefillCore/records/option_record.h"

// Compiles the words behind the token up to the next switch or the end of the text. Specs that it makes go to
// bmmFiles.
//   token  in: the switch; out: what ended the words
// Status 0; 3 syntax, with an alert; 10; 7.
int parse_bmm_info(parse_stream* stream, token_element* token, CmdStringOptionsType* options);

// Compiles what could only be told after all options were read: joins become spaces. What -mf has kept until here is
// forgotten. Called once for an option record. Status as above.
int finalize_bmm_info(CmdStringOptionsType* options);

// Makes a map of one processor with one space, bytes of a memory of its own, for a data file that no map tells of. The
// space is named by the file, and its name becomes a tag of the switch.
//   start, end  bytes, absolute, inclusive; an end above 32 bits counts as the last address of 32 bits
// Compiled from an option text: the definition is CmdParseUtils', which reads those. Status 0; 3 with an alert; 7.
int insert_auto_BMM_address_space(
    AddressMappingType* mapping, unsigned long start, unsigned long end, BDSwitchDataType* file);

#endif

// bmm_info.h - the compact language of -mf: a few words that stand for an address map.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_BMM_INFO_H
#define MEMDATA_BMM_UTILS_BMM_INFO_H

#include "ParseUtils/streams.h"
#include "lanefillCore/records/option_record.h"

// Compiles the words behind the token up to the next switch or the end of the text. Specs that it makes go to
// bmmFiles.
//   token  in: the switch; out: what ended the words
// Status 0; 3 syntax, with an alert; 10; 7.
int parse_bmm_info(parse_stream* stream, token_element* token, CmdStringOptionsType* options);

// Compiles what could only be told after all options were read. Status as above.
int finalize_bmm_info(CmdStringOptionsType* options);

#endif

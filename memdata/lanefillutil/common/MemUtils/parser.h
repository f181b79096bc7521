// parser.h - the grammar of MEM, COE and MIF texts.
// SPDX-License-Identifier: Apache-2.0
//
//   text       = { "@" address | value | "RADIX" radix | coe radix | coe vector }
//   coe radix  = "memory_initialization_radix" "=" radix ";"
//   coe vector = "memory_initialization_vector" "=" [ value { [ "," ] value } ] ";"
//
// Values are in the radix in force: 2 or 16, others carry no data. Addresses are always hexadecimal, a radix is always
// decimal. Macros, directives and comments are those of every text of the engine; ";" does not begin a comment.
#ifndef MEMDATA_MEM_UTILS_PARSER_H
#define MEMDATA_MEM_UTILS_PARSER_H

#include "MemUtils/data_block.h"
#include "ParseUtils/streams.h"

// Reads a text to its end into the block: sections and their array.
//   stream  at its start, opened with mem_symbol_set
//   block   from InitializeDataStructureBlock; its radix holds at the start
// Status 0; 7; 2 with an alert, also for a text without any section. The block stays the caller's in any case.
int ParseTextDataFile(parse_stream* stream, DataStructureBlockType* block);

namespace memdata {

// Whether runs of plain values may be packed without the scanner.
enum class ValueReading { kPLAIN_RUNS, kTOKENS_ONLY };

// ParseTextDataFile in one way or the other: both give the same.
int parseDataText(parse_stream* stream, DataStructureBlockType* block, ValueReading reading);

} // namespace memdata

#endif

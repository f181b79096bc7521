// parser.h - address maps from their text form.
// SPDX-License-Identifier: Apache-2.0
//
// A recursive-descent parser over get_next_token, with bmm_keyword_set as the keywords of the stream, so that all that
// the preprocessor knows works in maps. What can stand in any number (statements, spaces, blocks, lanes) is read by
// loops.
//
//   file      { WORKFLOW_OPERATION ... | DEFINE_MEMORY_TYPE ... | ADDRESS_INSTANCE ... | ADDRESS_MAP ...
//             | ADDRESS_TEMPLATE space | ADDRESS_SPACE space }
//   map       name processor id (path)? { ADDRESS_SPACE space } END_ADDRESS_MAP ";"
//   space     name memory (ECC_COMBINED_FOR_SIMULATION)? (addressing)? "[" start ":" end "]" (path)? ranges
//             END_ADDRESS_SPACE ";"                              a template has "[" size "]"
//   ranges    { block }, under COMBINED { ADDRESS_RANGE memory { block } END_ADDRESS_RANGE ";" }
//   block     BUS_BLOCK { lane } END_BUS_BLOCK ";"
//   lane      name (memory)? (ECC)? "[" bit ":" bit "]" ("[" address ":" address "]")?
//             { LOC = l | PLACED = l | INPUT = f | OUTPUT = f | INIT = f } ";"
//
// Unless a comment says otherwise: token is the current token, at the start the first one behind the keyword of the
// construct, at the end the first one behind the construct. root is the instance under which a design is placed, null
// for none. Status 0; 3 syntax and duplicates, with an alert at the token; 7; that of reading, or of the checks of a
// space. What was built in part is deleted.
#ifndef MEMDATA_BMM_UTILS_PARSER_H
#define MEMDATA_BMM_UTILS_PARSER_H

#include "BmmUtils/embedded.h"
#include "BmmUtils/keywords.h"
#include "BmmUtils/model/records.h"
#include "BmmUtils/names.h"
#include "BmmUtils/syntax.h"

// Reads a map file and adds it to the mapping. A name without an extension gets "bmm" when there is no such file.
//   rescanText  read ahead of the file, such as "#define A 1"; may be null
//   parent      the stream on whose behalf the file is read; may be null
//   out         cleared: the stream is closed again; may be null
// Status 0; 1 no name, no such file, or it can not be read; 17 with a warning when it holds nothing; as above.
int open_and_parse_bmm_file(fileSpecType* spec, AddressMappingType* mapping, const char* root, const char* rescanText,
    parse_stream* parent, parse_stream** out);
// The same for a text in memory, "BMMInfo.bmm", where an empty one is an error. The text is shown first by a debug
// message.
int open_and_parse_bmm_info(unsigned char* text, AddressMappingType* mapping, parse_stream* parent, parse_stream** out);

// Reads an open stream to its end, or to the first statement that fails, or to a WORKFLOW_OPERATION that this run is
// not for. The stream stays open.
int parse_bmm_file(parse_stream* stream, const char* root, AddressMappingType* mapping);

// WORKFLOW_OPERATION, then names to ";". The list is the caller's; empty lists come as null.
int parse_workflow_op_definition(parse_stream* stream, token_element* token, StrList* operations);
// Names with "," between them, from token on. They are appended.
int parse_workflow_op_list(parse_stream* stream, token_element* token, StrList* operations);
// Whether a name of the second list stands in the first one, with case.
bool compare_workflow_operations(StrList accepted, StrList operations);

int parse_memory_type_definition(parse_stream* stream, token_element* token, AddressMappingType* mapping);
// An instance of a template; map is the default map.
int parse_addressSpace_Instance(
    parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping, AddressMapType* map);

int parse_addressMap(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping);
// Up to the first space. The map is in the mapping's list with status 0.
int parse_addressMap_hdr(
    parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping, AddressMapType** out);

// A space, finished, checked and inserted. names: the scope that its name is entered in.
int parse_addressSpace(parse_stream* stream, symbol_context* names, token_element* token, const char* root,
    AddressMappingType* mapping, AddressMapType* map, bool isTemplate);
// Up to the first range or block. The space in *out is the caller's.
int parse_addressSpace_hdr(parse_stream* stream, symbol_context* names, token_element* token, const char* root,
    AddressMappingType* mapping, AddressMapType* map, bool isTemplate, AddressSpaceDefType** out);

// The ranges of a space, by its style. From their first keyword on.
int parse_addressRanges(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping,
    AddressSpaceDefType* space);
int parse_addressRanges_legecy(parse_stream* stream, token_element* token, const char* root,
    AddressMappingType* mapping, AddressSpaceDefType* space);
int parse_addressRanges_combined(parse_stream* stream, token_element* token, const char* root,
    AddressMappingType* mapping, AddressSpaceDefType* space);
// All blocks of a range, from the first BUS_BLOCK on.
int parse_busBlocks(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping,
    AddressSpaceDefType* space, AddressRangeDefType* range);
// All lanes of a block; token is read here.
//   nextAddress  device words: where lanes without an address range begin
int parse_bitLanes(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping,
    AddressSpaceDefType* space, AddressRangeDefType* range, BusBlockType* block, u64 nextAddress);

// "[bit:bit]", as written.
int parse_bitLane_range_nums(parse_stream* stream, token_element* token, u64* first, u64* second);
// How the bits were written, see kBIT_ORDERING_...; swaps them so that the first is the lower one.
u32 get_bitLane_ordering(u64* first, u64* second);

// From "LOC" or "PLACED" on.
int parse_BRAM_location(parse_stream* stream, token_element* token, unsigned* row, unsigned* column);
// From the keyword on. *out is deleted and replaced.
int parse_filename_spec(parse_stream* stream, token_element* token, fileSpecType** out);

namespace memdata {

// The addresses that a lane has when its map gives none: all words of the device from nextAddress on. Device bits are
// the data bits, with the parity bits where the type has lane widths with parity and the lane is at least 5 bits wide.
// 0 and 0 for a device whose size is not known yet.
void defaultLaneAddresses(const MEMORYLocType* memory, u64 laneWidth, u64 nextAddress, u64* low, u64* high);

// Reports a memory word that the mapping's device does not have. Status 3.
int unknownMemoryType(
    parse_stream* stream, const token_element* token, const AddressMappingType* mapping, const char* word);

} // namespace memdata

#endif

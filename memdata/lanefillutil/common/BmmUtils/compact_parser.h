// compact_parser.h - the statements of the compact language.
// SPDX-License-Identifier: Apache-2.0
//
//   text      { m name size width... | i template instance base path | c component | e name items
//             | h name path | t name (addressing)? size width ranges
//             | a name instance (addressing)? base width ranges
//             | p name (instance)? type id (instance)? { a name | a space | h name path }
//             | j name (addressing)? base width items | n file }
//   component group instance memory (ECC)? "[" bit ":" bit "]" "[" word ":" word "]" { "<" f | "<<" f | ">" f }
//   ranges    { f memory size width instance | e name }
//   items     ranges that are kept as words, and compiled where they are used
//
// Unless a comment says otherwise, the token of the reader is the statement's own word at the start, and the first
// word behind the statement at the end. Status 0; 3 syntax, with an alert at the word; 7; that of reading.
#ifndef MEMDATA_BMM_UTILS_COMPACT_PARSER_H
#define MEMDATA_BMM_UTILS_COMPACT_PARSER_H

#include "BmmUtils/compact_keywords.h"
#include "BmmUtils/compact_records.h"

#include <span>

namespace memdata {

// How the addresses of a space or template count.
enum class InfoAddressing { kNOT_TOLD, kBYTE, kWORD };

} // namespace memdata

int parse_memory_type_info(const memdata::InfoReader& in);
int parse_addressSpace_Instance_info(const memdata::InfoReader& in);
int parse_hierarchy_info(const memdata::InfoReader& in);
int parse_component_info(const memdata::InfoReader& in);
int parse_reference_info(const memdata::InfoReader& in);
int parse_addressJoin_info(const memdata::InfoReader& in);
int parse_addressTemplate_info(const memdata::InfoReader& in);
// The space is queued. name: its name, for a map that holds it; may be null.
int parse_addressSpace_info(const memdata::InfoReader& in, std::string* name);
int parse_addressMap_info(const memdata::InfoReader& in);

// The optional addressing word, and how it reads in a map.
int parse_addressing_info_type(const memdata::InfoReader& in, memdata::InfoAddressing* addressing);
void set_addressing_info_type(std::string* text, memdata::InfoAddressing addressing);

// A name with what touches it in brackets, or "*", the current name; each further "*" that touches it puts the next
// piece of the hierarchy in front, the last one first.
int parse_component_name(const memdata::InfoReader& in, const char* expected, std::string* name);
// "*", which keeps the current name and hierarchy, or an instance name, which takes their places.
int parse_component_instance_name(const memdata::InfoReader& in);
// The files of a component, as a map writes them.
int parse_info_expanded_file_pathname(const memdata::InfoReader& in, std::string* file);

// The pieces of a path, in order.
std::vector<std::string> separate_instance_hierarchy_names(const std::string& path);
// "path/name", or the name alone; the path's own slashes at both ends do not count.
std::string construct_instance_path_hierarchy(const std::string& path, const std::string& name);

// A word of a memory type that is known. *byteSize: of one device, parity counted where lane widths count it.
int parse_info_memory_type(const memdata::InfoReader& in, const char* nameExpected, const char* typeExpected,
    std::string* name, u64* byteSize);

// The devices of a group in writing order, with the bus block that each belongs to.
struct component_place_info {
    const component_ref_info* component;
    u64 block;
};
// Orders by bit numbers, the highest first; of components of the same bits the lower addresses come first.
bool sort_componentRef_info(const component_ref_info* a, const component_ref_info* b);
// Orders by block.
bool sort_component_instance_order(const component_place_info& a, const component_place_info& b);
// Bits that a component adds to the bus, or to the check lanes.
u64 get_component_instance_bit_size(const component_ref_info& component, bool ofCheckLanes);
// Checks that the data lanes of the first block are as wide as the bus.
int validate_component_instances(const memdata::InfoReader& in, const token_element* place,
    std::span<const component_place_info> places, u64 busWidth, const std::string& group);
// The devices of a group, each with its place.
int expand_component_references(const memdata::InfoReader& in, const token_element* place,
    const component_group_info& group, u64 busWidth, std::vector<component_place_info>* places);
// The name under which a map knows a component.
std::string expand_component_instance_names(const component_ref_info& component);
// " [7:0]", and " [0:2047]" behind it where the addresses are not both 0.
std::string construct_bitLane_bitRange_string(const component_ref_info& component);

// Ranges of a space or template, up to the first word that begins none. total: addresses of all ranges together.
int parse_addressRange_info(const memdata::InfoReader& in, memdata::InfoAddressing addressing, u64 busWidth, u64* total,
    address_range_list* list);
int parse_addressRange_info_data(const memdata::InfoReader& in, memdata::InfoAddressing addressing, u64 busWidth,
    u64* total, address_range_list* list);
int parse_addressRange_info_reference(const memdata::InfoReader& in, memdata::InfoAddressing addressing, u64 busWidth,
    u64* total, address_range_list* list);
// The bus blocks of a range. place: the word that alerts point at.
int construct_info_busBlocks(
    const memdata::InfoReader& in, const token_element* place, address_range_info* range, u64 blocks);
void output_addressRange_info(std::string* text, const address_range_list& list);

// Ends the header of a space or template, behind its name. Without hasEnd, start is a template's size. Both count as
// the addressing says.
void complete_addressSpace_info_hdr(std::string* text, const address_range_list& ranges, const std::string& path,
    memdata::InfoAddressing addressing, bool hasEnd, u64 start, u64 end);

// Items from the word on, kept as text, each behind the hierarchy that it was told in.
//   definition         whose items they are: it stands where no hierarchy was told
//   acceptsReferences  `e` is an item too; else it ends them
int parse_elaboration_info(
    const memdata::InfoReader& in, const std::string& definition, bool acceptsReferences, std::string* text);
void add_elaboration_hierarchy(const scratch_BMM_Info& scratch, const std::string& definition, std::string* text);
// The reference of the word, or an alert.
int lookup_reference_info(const memdata::InfoReader& in, const reference_info** reference);

// Spaces, and maps, whose text waits for the end of a -mf.
int queue_addressSpace_info(scratch_BMM_Info* scratch, addressSpace_info space);
void dequeue_addressSpace_info(scratch_BMM_Info* scratch);
// Status 0; 10 with an alert for a map without spaces.
int dequeue_addressMap_info(scratch_BMM_Info* scratch);
// The joins as statements of the language.
std::string output_addressJoin_info(const scratch_BMM_Info& scratch);

#endif

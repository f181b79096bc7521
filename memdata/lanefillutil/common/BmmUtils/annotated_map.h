// annotated_map.h - a mapping written back as map text, with its computed facts in comment banners and the locations of
// its lanes.
//
// What is written reads back as the same model, but for the path and the ECC word of templates, which have no place in
// the text, and for instances of templates, which come back as plain spaces. Lanes stand in the order and with the bit
// numbers that they were written with; addresses are "0X" and 16 hexadecimal digits. BYTE_ADDRESSING is never written,
// INDEX_ADDRESSING comes back as WORD_ADDRESSING. Spaces stand in the order of their end addresses; those that end
// alike stand oldest first, so that reading inserts them in the same order again.
//
// indent counts blanks ahead of each line. Status: that of the file, 0 or its first failure; 3 a null file.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_ANNOTATED_MAP_H
#define MEMDATA_BMM_UTILS_ANNOTATED_MAP_H

#include "BmmUtils/model/records.h"
#include "FileUtils/descriptor.h"
#include "StringUtils/format.h"

#include <string_view>

// Writes the file of a spec, whole or not at all.
//   spec      the name "*" means the mapping's bmmBaseName; a name without an extension gets "bmm"
//   mapping   null does nothing, status 0
//   fileName  put behind the base name; may be ""
// Status also: 1 the file can not be made, or exists and must not be overwritten; 3 a null spec; 7.
int output_BMM_file(fileSpecType* spec, AddressMappingType* mapping, const char* fileName);

int output_BMM_addressMapping(fileIODescriptor* file, AddressMappingType* mapping);
// The user's memory types of a list (its header); generic memories are left out.
int output_user_defined_memories(fileIODescriptor* file, MEMORYLocType* list, unsigned indent);
int output_BMM_addressTemplates(fileIODescriptor* file, AddressMapType* map, unsigned indent);
int output_BMM_addressSpaces(fileIODescriptor* file, AddressMapType* map, unsigned indent);
// The body of a space: blocks for one range, ADDRESS_RANGEs for more.
int output_BMM_addressRanges(fileIODescriptor* file, AddressSpaceLinkType* link, unsigned indent);
int output_BMM_busBlocks(fileIODescriptor* file, AddressRangeDefType* range, unsigned indent);
int output_BMM_bitLanes(fileIODescriptor* file, BusBlockType* block, unsigned indent);
int output_BMM_bitLanes_values(fileIODescriptor* file, BitLaneArrayType* lanes, u64 count, unsigned indent);

int output_pad_position(fileIODescriptor* file, unsigned indent); // that many blanks

// "2 KBytes" or "2 KWwords" (spelled so on purpose): the size rounded down to its unit. A managed string of the
// caller's; null without memory. end is inclusive.
char* create_space_size_string(u64 start, u64 end, bool words);

namespace memdata {

// The typed core of output_BMM_title_comment.
int outputTitleComment(fileIODescriptor* file, unsigned indent, bool twoLines, std::string_view text);

} // namespace memdata

// A banner of comment lines around a text, with blank lines about it. A firstLine puts the text there twice.
template<class... Arguments>
int output_BMM_title_comment(
    fileIODescriptor* file, unsigned indent, const char* firstLine, const char* format, const Arguments&... arguments) {
    return memdata::outputTitleComment(
        file, indent, firstLine != nullptr, memdata::formatText(format, memdata::formatArguments(arguments...)));
}

#endif

// xml_map.h - address maps as XML documents.
// SPDX-License-Identifier: Apache-2.0
//
//   AddressMap     Version "1", Minor "0", ProcessorElementCount
//     Processor    Name, Type, Id, Instance, SpaceElementCount
//       AddressSpace  Name, Style, StartAddress, EndAddress, Instance, RangeElementCount
//         Range    Type, BusBlockElementCount
//           Block  DeviceElementCount, ECCElementCount
//             Device  Instance, Type, Ecc, Width, Depth, Output, Input, Init, Loc
//
// The document has all of a model but what a reader derives from it, templates, memory types of the user, and the
// words ECC_COMBINED_FOR_SIMULATION and PLACED. Every space reads back as a combined one. The unnamed map is a
// Processor with an empty Name.
#ifndef MEMDATA_BMM_UTILS_XML_MAP_H
#define MEMDATA_BMM_UTILS_XML_MAP_H

#include "BmmUtils/model/records.h"
#include "XMLUtils/XMLUtils.h"

struct parse_stream;

// Reads a document and adds it to the mapping.
//   root        instance that the design is placed under; null for none
//   rescanText  read ahead of the file, such as "#define A 1"; may be null
//   parent      not used: a document is read in a stream of its own
//   out         cleared; may be null
// Status 0; 17 with a warning for a document without an AddressMap; that of reading, with the same warning, when it
// cannot be read; 3 with an alert for a document that is cut off and for a bad or doubled device, name or number; 7; that
// of the checks of a space.
int open_and_parse_bmm_XML(fileSpecType* spec, AddressMappingType* mapping, const char* root, const char* rescanText,
    parse_stream* parent, parse_stream** out);

// The levels of a document, outermost first; the element is that of the level above. Status as above. An attribute
// that is absent reads as an empty text or 0.
int parse_XML_bmm_file(LNF_XML* document, const char* root, AddressMappingType* mapping); // 17 without an AddressMap
int parse_XML_addressMaps(LNF_XML_Element* element, const char* root, AddressMappingType* mapping);
int parse_XML_addressSpaces(
    LNF_XML_Element* element, const char* root, AddressMapType* map, AddressMappingType* mapping);
int parse_XML_addressRanges(
    LNF_XML_Element* element, const char* root, AddressSpaceDefType* space, AddressMappingType* mapping);
int parse_XML_addressBusBlocks(LNF_XML_Element* element, const char* root, AddressSpaceDefType* space,
    AddressRangeDefType* range, AddressMappingType* mapping);
// The devices of a block, in document order.
//   address  device words: where devices without a Depth begin
int parse_XML_addressBitLanes(LNF_XML_Element* element, const char* root, AddressSpaceDefType* space,
    AddressRangeDefType* range, BusBlockType* block, AddressMappingType* mapping, u64 address);

// Writes the mapping; a null one writes nothing. The file appears whole or not at all.
//   fileName  suffix of the base name; may be null
//   flags     open flags
// Status 0; 7; that of opening or writing.
int output_XML_BMM_file(fileSpecType* spec, const char* fileName, int flags, AddressMappingType* mapping);
// The blocks of a range with all their devices, as children of its element. Status 0; 7.
int output_XML_busBlocks(const AddressRangeDefType* range, LNF_XML_Element* element);
// Devices in their order, as children of a block's element.
//   eccWord  their code; null or empty for data lanes
int output_XML_bitLanes_values(BitLaneArrayType const* lanes, u64 count, const char* eccWord, LNF_XML_Element* element);

#endif

// xml_reader.cpp - address maps from XML: the document, its maps, spaces, ranges and blocks.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/model/internal.h"
#include "BmmUtils/model/template_copy.h"
#include "BmmUtils/parser.h"
#include "BmmUtils/xml_map.h"
#include "BmmUtils/xml_words.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "platform/ComMsgMgr.h"

#include <algorithm>
#include <cstring>
#include <strings.h>

using namespace memdata;

namespace {

constexpr int kNO_CONTENT_STATUS = 17;
constexpr u64 kUNNAMED_MAP_PROCESSOR = 1;
constexpr char kGENERIC_MEMORY_WORD[] = "MEMORY";

const char* text_of(const LNF_XML_Element* element, const char* name) {
    const char* text = LNF_XML_Element_Get_Attribute(element, name, nullptr);
    return text == nullptr ? "" : text;
}

u64 number_of(const LNF_XML_Element* element, const char* name) {
    u64 number = 0;
    LNF_XML_Element_Get_Attribute_Integer(element, name, &number);
    return number;
}

int refuse_empty(const char* element, const char* reason) {
    return PrintError(kERROR_UNEXPECTED_KEYWORD, kSYNTAX_STATUS, element, reason);
}

// The path that an element states, under the root if there is one, else the one that an old tool left to its name. A
// managed string in *path, null for none.
int read_path(const LNF_XML_Element* element, const char* name, const char* root, OwnedString* path) {
    const char* stated = LNF_XML_Element_Get_Attribute(element, xml::kINSTANCE, nullptr);
    if (stated == nullptr || *stated == '\0') {
        path->reset(createLegecyInstancePath(root, name));
        return 0;
    }
    path->reset(root == nullptr ? StrDup(stated) : appendFormat(nullptr, "%s/%s", root, stated));
    return *path == nullptr ? 7 : 0;
}

bool is_taken(const char* name, const symbol_context* names) {
    return lookup_context_symbol(name, true, names) != nullptr;
}

int read_named_map(
    const LNF_XML_Element* element, const char* root, AddressMappingType* mapping, AddressMapType** map) {
    const char* text = text_of(element, xml::kNAME);
    OwnedString path;
    if (int status = read_path(element, text, root, &path); status != 0) return status;
    const OwnedString name(create_rootedObject_name(text, root));
    if (name == nullptr) return 7;
    const SymbolSpacesType* spaces = mapping->symbolSpaces;
    if (is_taken(name.get(), spaces->addressSpaceNames) || is_taken(name.get(), spaces->addressMapNames))
        return reportTakenName(nullptr, nullptr, name.get());
    ++mapping->statementCount;
    return create_and_insert_addressMap(mapping, true, name.get(), path == nullptr ? "" : path.get(),
        get_processorType(text_of(element, xml::kTYPE)), static_cast<u32>(number_of(element, xml::kID)), map);
}

int read_map(LNF_XML_Element* element, const char* root, AddressMappingType* mapping) {
    const bool isNamed = *text_of(element, xml::kNAME) != '\0';
    AddressMapType* map = nullptr;
    const int status = isNamed ? read_named_map(element, root, mapping, &map)
                               : create_and_insert_addressMap(mapping, false, "", "", kUNNAMED_MAP_PROCESSOR, 0, &map);
    return status == 0 ? parse_XML_addressSpaces(element, root, map, mapping) : status;
}

// The token that a text would have had.
int make_token(const char* text, const token_type* type, TokenOwner* token) {
    token->reset(create_token_element());
    return *token == nullptr ? 7 : set_token_element(token->get(), text, 0, true, type, 0);
}

// The space without its ranges.
int read_space_head(const LNF_XML_Element* element, const char* root, AddressMapType* map, AddressMappingType* mapping,
    OwnedSpace* space) {
    const char* text = text_of(element, xml::kNAME);
    OwnedString path;
    if (int status = read_path(element, text, root, &path); status != 0) return status;
    const OwnedString name(create_rootedObject_name(text, root));
    TokenOwner nameToken;
    TokenOwner memoryToken;
    if (name == nullptr || make_token(name.get(), &kIDENTIFIER_TOKEN, &nameToken) != 0 ||
        make_token("COMBINED", &kCOMBINED_MEMORY_KEYWORD, &memoryToken) != 0)
        return 7;
    const bool isWordAddressed = std::strcmp(text_of(element, xml::kSTYLE), xml::kSTYLE_WORD) == 0;
    const int status =
        create_addressSpace_element(nullptr, mapping->symbolSpaces->addressSpaceNames, nameToken.get(), name.get(),
            path.get(), mapping, map, number_of(element, xml::kSTART_ADDRESS), number_of(element, xml::kEND_ADDRESS),
            memoryToken.get(), kAddressSpaceStyleCombined, false, false, isWordAddressed, space->out());
    if (status != 0) return status;
    path.release(); // the space owns them now
    memoryToken.release();
    return 0;
}

int read_space(LNF_XML_Element* element, const char* root, AddressMapType* map, AddressMappingType* mapping) {
    ++mapping->statementCount;
    OwnedSpace space;
    int status = read_space_head(element, root, map, mapping, &space);
    if (status == 0) status = parse_XML_addressRanges(element, root, space.get(), mapping);
    if (status == 0) status = finish_addressSpace_data(space.get());
    if (status == 0)
        status = insert_addressSpace_element(mapping, mapping->symbolSpaces->addressSpaceNames, space.get(), map);
    if (status == 0) space.release(); // the map owns it now
    return status;
}

// Without the device: a range is told from others by its word alone, its devices resolve their own types. The generic
// word makes a type of its own for each range, whose size follows from the space.
MEMORYLocType* range_memory(const char* word) {
    if (*word == '\0') return nullptr;
    if (strcasecmp(word, kGENERIC_MEMORY_WORD) == 0)
        return get_MEMORY_type_from_token(nullptr, &kGENERIC_MEMORY_KEYWORD);
    return get_MEMORY_type_from_name(nullptr, word);
}

int read_range(LNF_XML_Element* element, const char* root, AddressSpaceDefType* space, AddressMappingType* mapping) {
    const char* word = text_of(element, xml::kTYPE);
    MEMORYLocType* memory = range_memory(word);
    if (memory == nullptr) return unknownMemoryType(nullptr, nullptr, mapping, word);
    AddressRangeDefType* range = create_addressRange_element(memory, 0, 0);
    if (range == nullptr) return OUT_OF_MEMORY("addressRange", sizeof(AddressRangeDefType));
    insert_addressRange_element(space, range);
    if (int status = parse_XML_addressBusBlocks(element, root, space, range, mapping); status != 0) return status;
    if (range->busBlockCount == 0) return refuse_empty(xml::kRANGE, "ADDRESS_RANGE definition is empty");
    space->deviceCount += range->deviceCount;
    return 0;
}

// How many blocks are to be read: a count that is too high allocates nothing for blocks that are not there.
u64 block_count(const LNF_XML_Element* element) {
    return std::min<u64>(number_of(element, xml::kBUS_BLOCK_COUNT), element->Get_Child_Count());
}

int warn_about_content(const fileSpecType* spec, int status) {
    return PrintWarning(kERROR_EMPTY_INPUT_FILE, status, spec->fullName, "XML");
}

// What was said about the contents had no place to point at: the file is told at least.
int tell_file(const fileSpecType* spec, int status) {
    return PrintError(kERROR_MESSAGE_STRING, status, formatted("Address map '%s' is refused.", spec->fullName));
}

} // namespace

int parse_XML_addressBusBlocks(LNF_XML_Element* element, const char* root, AddressSpaceDefType* space,
    AddressRangeDefType* range, AddressMappingType* mapping) {
    const u64 count = block_count(element);
    range->busBlocks = newBusBlockArray(count);
    if (range->busBlocks == nullptr) return OUT_OF_MEMORY("addressRange", count * sizeof(void*));
    u64 address = 0;
    while (range->busBlockCount < count) {
        LNF_XML_Element* child = LNF_XML_Element_Get_Next_Child(element, xml::kBLOCK);
        if (child == nullptr) break;
        BusBlockType* block = create_busBlock_element(0, 0);
        if (block == nullptr) return OUT_OF_MEMORY("busBlock", sizeof(BusBlockType));
        range->busBlocks[range->busBlockCount++] = block;
        const int status = parse_XML_addressBitLanes(child, root, space, range, block, mapping, address);
        if (status != 0) return status;
        if (block->laneCount == 0) return refuse_empty(xml::kBLOCK, "BUS_BLOCK definition is empty");
        address = block->lanes[0]->addressHigh + 1;
    }
    return 0;
}

int parse_XML_addressRanges(
    LNF_XML_Element* element, const char* root, AddressSpaceDefType* space, AddressMappingType* mapping) {
    while (LNF_XML_Element* child = LNF_XML_Element_Get_Next_Child(element, xml::kRANGE))
        if (int status = read_range(child, root, space, mapping); status != 0) return status;
    if (space->ranges == nullptr) return refuse_empty(xml::kADDRESS_SPACE, "ADDRESS_SPACE definition is empty");
    return 0;
}

int parse_XML_addressSpaces(
    LNF_XML_Element* element, const char* root, AddressMapType* map, AddressMappingType* mapping) {
    while (LNF_XML_Element* child = LNF_XML_Element_Get_Next_Child(element, xml::kADDRESS_SPACE))
        if (int status = read_space(child, root, map, mapping); status != 0) return status;
    return 0;
}

int parse_XML_addressMaps(LNF_XML_Element* element, const char* root, AddressMappingType* mapping) {
    while (LNF_XML_Element* child = LNF_XML_Element_Get_Next_Child(element, xml::kPROCESSOR))
        if (int status = read_map(child, root, mapping); status != 0) return status;
    return 0;
}

int parse_XML_bmm_file(LNF_XML* document, const char* root, AddressMappingType* mapping) {
    LNF_XML_Element* element = LNF_XML_Element_Get_Next_Child(document, xml::kADDRESS_MAP);
    if (element == nullptr) return kNO_CONTENT_STATUS;
    // The spaces that are missing would not be missed by any check.
    if (element->Is_Cut_Off())
        return PrintError(kERROR_MISSING_KEYWORD_AND_EXPECTED, kSYNTAX_STATUS, "end-of-file", "</AddressMap>");
    return parse_XML_addressMaps(element, root, mapping);
}

int open_and_parse_bmm_XML(fileSpecType* spec, AddressMappingType* mapping, const char* root, const char* rescanText,
    parse_stream*, parse_stream** out) {
    if (out != nullptr) *out = nullptr;
    if (spec == nullptr || mapping == nullptr) return 3;
    LNF_XML document;
    if (int status = LNF_XML_ReadXML(&document, spec, rescanText, 0); status != 0)
        return warn_about_content(spec, status);
    const int status = parse_XML_bmm_file(&document, root, mapping);
    if (status == kNO_CONTENT_STATUS) return warn_about_content(spec, status);
    return status == kSYNTAX_STATUS ? tell_file(spec, status) : status;
}

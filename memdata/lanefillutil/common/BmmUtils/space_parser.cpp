// space_parser.cpp - address spaces and templates: their headers and their ends.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/parser.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

#include <utility>

using namespace memdata;

namespace {

// What the header of a space says.
struct HeaderType {
    OwnedString name; // under the root
    OwnedString path;
    TokenOwner memory;
    AddressSpaceStyleEnum style = kAddressSpaceStyleSingle;
    bool isEccCombined = false;
    bool isWordAddressed = false;
    u64 start = 0;
    u64 end = 0; // inclusive
};

AddressSpaceStyleEnum style_of(const token_element* memory) {
    if (memory->type == &kCOMBINED_MEMORY_KEYWORD) return kAddressSpaceStyleCombined;
    return memory->type == &kGRID_MEMORY_KEYWORD ? kAddressSpaceStyleGrid : kAddressSpaceStyleSingle;
}

int read_name(parse_stream* stream, token_element* token, const char* root, HeaderType* header) {
    std::string text;
    if (int status = readObjectName(stream, token, "ADDRESS_SPACE name", &text); status != 0) return status;
    header->path.reset(createLegecyInstancePath(root, text.c_str()));
    header->name.reset(create_rootedObject_name(text.c_str(), root));
    return header->name == nullptr ? 7 : 0;
}

// A grid would have no devices: nothing in the language says what stands in it.
int refuse_grid(parse_stream* stream, const token_element* token, const HeaderType& header) {
    return PrintErrorLocation(stream, kERROR_MESSAGE_STRING, kSYNTAX_STATUS, token,
        formatted("Memory type 'GRID' of ADDRESS_SPACE '%s' holds no devices. Use the memory type of its BUS_BLOCKs.",
            header.name.get()));
}

int read_memory_word(parse_stream* stream, token_element* token, HeaderType* header) {
    if (!isOfClass(token->type, kMEMORY_TYPE_TOKEN)) return refuseSymbol(stream, token, "ADDRESS_SPACE memory type");
    header->style = style_of(token);
    if (header->style == kAddressSpaceStyleGrid) return refuse_grid(stream, token, *header);
    header->memory.reset(dup_token_element(token));
    return header->memory == nullptr ? 7 : get_next_token(stream, token);
}

// Both words are optional and come in either order.
int read_modifiers(parse_stream* stream, token_element* token, HeaderType* header) {
    bool hasAddressing = false;
    for (;;) {
        if (token->type == &kADDRESS_ECC_SIMULATION_KEYWORD && !header->isEccCombined) {
            header->isEccCombined = true;
        } else if (isOfClass(token->type, kADDRESS_MODIFIER_TOKEN) && !hasAddressing) {
            hasAddressing = true;
            header->isWordAddressed = token->type == &kWORD_ADDRESSING_KEYWORD;
        } else {
            return 0;
        }
        if (int status = get_next_token(stream, token); status != 0) return status;
    }
}

int read_addresses(parse_stream* stream, token_element* token, bool isTemplate, HeaderType* header) {
    const token_element place = placeOf(token);
    if (int status = parseNumberRange(stream, token, &header->start, &header->end); status != 0) return status;
    if (!isTemplate) {
        if (header->start > header->end) std::swap(header->start, header->end);
        return 0;
    }
    if (header->start != header->end || header->start == 0)
        return PrintErrorLocation(stream, kERROR_ILLEAGAL_ADDRESSTEMPLATE_SIZE_SPEC, kSYNTAX_STATUS, &place);
    header->end = std::exchange(header->start, 0) - 1;
    return 0;
}

// Replaces the path that was made from the name.
int read_path(parse_stream* stream, token_element* token, const char* root, HeaderType* header) {
    if (token->type == &kBUS_BLOCK_KEYWORD || token->type == &kADDRESS_RANGE_KEYWORD) return 0;
    return readInstancePath(stream, token, true, root, header->path.out());
}

int read_end(parse_stream* stream, token_element* token, bool isTemplate) {
    const bool isEnd =
        token->type == &kEND_ADDRESS_SPACE_KEYWORD || (isTemplate && token->type == &kEND_ADDRESS_TEMPLATE_KEYWORD);
    if (!isEnd)
        return refuseMissingKeyword(
            stream, token, isTemplate ? kEND_ADDRESS_TEMPLATE_KEYWORD : kEND_ADDRESS_SPACE_KEYWORD);
    if (int status = get_next_token(stream, token); status != 0) return status;
    return parse_statement_terminator(stream, token);
}

} // namespace

int parse_addressSpace_hdr(parse_stream* stream, symbol_context* names, token_element* token, const char* root,
    AddressMappingType* mapping, AddressMapType* map, bool isTemplate, AddressSpaceDefType** out) {
    token_element place = placeOf(token);
    HeaderType header;
    int status = read_name(stream, token, root, &header);
    if (status == 0) status = read_memory_word(stream, token, &header);
    if (status == 0) status = read_modifiers(stream, token, &header);
    if (status == 0) status = read_addresses(stream, token, isTemplate, &header);
    if (status == 0) status = read_path(stream, token, root, &header);
    if (status != 0) return status;
    status = create_addressSpace_element(stream, names, &place, header.name.get(), header.path.get(), mapping, map,
        header.start, header.end, header.memory.get(), header.style, header.isEccCombined, isTemplate,
        header.isWordAddressed, out);
    if (status != 0) return status;
    header.path.release(); // the space owns them now
    header.memory.release();
    return 0;
}

int parse_addressSpace(parse_stream* stream, symbol_context* names, token_element* token, const char* root,
    AddressMappingType* mapping, AddressMapType* map, bool isTemplate) {
    ++mapping->statementCount;
    OwnedSpace space;
    int status = parse_addressSpace_hdr(stream, names, token, root, mapping, map, isTemplate, space.out());
    if (status == 0) status = parse_addressRanges(stream, token, root, mapping, space.get());
    if (status == 0) status = read_end(stream, token, isTemplate);
    if (status == 0) status = finish_addressSpace_data(space.get());
    if (status == 0) status = insert_addressSpace_element(mapping, names, space.get(), map);
    if (status == 0) space.release(); // the map owns it now
    return status;
}

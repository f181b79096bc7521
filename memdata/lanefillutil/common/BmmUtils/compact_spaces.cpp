// compact_spaces.cpp - compact spaces, templates and processors, and the order in which their texts leave.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_text.h"
#include "BmmUtils/compact_parser.h"
#include "BmmUtils/names.h"
#include "BmmUtils/syntax.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

using namespace memdata;

namespace {

constexpr const char* kTEMPLATE_NAME = "ADDRESS_TEMPLATE 't' template name";
constexpr const char* kTEMPLATE_SIZE = "ADDRESS_TEMPLATE 't' memory size value";
constexpr const char* kTEMPLATE_WIDTH = "ADDRESS_TEMPLATE 't' bus width size value";
constexpr const char* kSPACE_NAME = "ADDRESS_SPACE 'a' address space name";
constexpr const char* kSPACE_BASE = "ADDRESS_SPACE 'a' memory base address value";
constexpr const char* kSPACE_WIDTH = "ADDRESS_SPACE 'a' bus width size value";
constexpr const char* kMAP_NAME = "ADDRESS_MAP 'p' address map name";
constexpr const char* kPROCESSOR_TYPE = "ADDRESS_MAP 'p' processor type name";
constexpr const char* kPROCESSOR_ID = "ADDRESS_MAP 'p' processor ID value";

constexpr int kMAP_STATUS = 10;
// Widths beyond are no buses; what the checks of maps hold is far less.
constexpr u64 kMOST_BUS_BITS = UINT32_MAX;

int take_bus_width(const InfoReader& in, const char* expected, u64* width) {
    const bool isInteger = in.token->type == &kINTEGER_NUMBER;
    if (isInteger && (in.token->value < 1 || in.token->value > kMOST_BUS_BITS))
        return refuseSymbol(in.stream, in.token, expected);
    return takeInteger(in, expected, width);
}

// What the words behind a space's name say.
struct SpaceWords {
    InfoAddressing addressing{};
    std::string path;
    u64 base = 0;
    u64 width = 0; // bits
    u64 total = 0; // addresses: bytes, under word addressing words of the ranges' lanes
    address_range_list ranges;
};

std::string current_path(const InfoReader& in) {
    const scratch_BMM_Info& scratch = *in.scratch;
    if (scratch.currentSpaceName.empty()) return "";
    return construct_instance_path_hierarchy(scratch.hierarchyPath, scratch.currentSpaceName);
}

int queue_text(const InfoReader& in, const std::string& name, std::string text) {
    if (int status = keepBytes(in, text.size()); status != 0) return status;
    return queue_addressSpace_info(in.scratch, {name, std::move(text), false});
}

// Whether the word behind a space's name tells more of the space.
bool continues_space(const token_element* token) {
    return token->type == &kIDENTIFIER_TOKEN || token->type == &kMULTIPLY;
}

// `a` inside a map: the name of a space, or a whole space.
int parse_map_space(const InfoReader& in, addressMap_info* map) {
    std::string name;
    if (int status = parse_addressSpace_info(in, &name); status != 0) return status;
    if (map->knownNames.insert(name).second) map->spaceNames.push_back(name);
    return keepBytes(in, name.size());
}

int parse_map_items(const InfoReader& in, addressMap_info* map) {
    for (;;) {
        int status = 0;
        if (in.token->type == &kSADDRESS_SPACE_KEYWORD)
            status = parse_map_space(in, map);
        else if (in.token->type == &kSHIERARCHY_LOCATION_KEYWORD)
            status = parse_hierarchy_info(in);
        else
            return 0;
        if (status != 0) return status;
    }
}

// An instance's name, whose first piece is the word.
int take_path(const InfoReader& in, std::string* path) {
    bool isRelative = false;
    const int status = readInstanceName(in.stream, in.token, true, true, &isRelative, path);
    if (status == 0) collect_MF_info(&in.scratch->commandText, path->c_str(), " ");
    return status;
}

bool begins_path(const token_element* token) {
    return token->type == &kIDENTIFIER_TOKEN || token->type == &kDIVIDE;
}

// The processor's type, with the instance in front of it where there is one. Both are names: the type is the one that
// the number follows.
int parse_processor(const InfoReader& in, std::string* type, std::string* instance) {
    const token_element place = placeOf(in.token);
    if (in.token->type == &kMULTIPLY) {
        *instance = current_path(in);
        if (int status = parse_component_instance_name(in); status != 0) return status;
        return takeIdentifier(in, kPROCESSOR_TYPE, type);
    }
    if (!begins_path(in.token)) return refuseSymbol(in.stream, in.token, kPROCESSOR_TYPE);
    if (int status = take_path(in, type); status != 0) return status;
    if (in.token->type != &kIDENTIFIER_TOKEN) {
        if (type->find_first_of("/.") == type->npos) return 0;
        return PrintErrorLocation(
            in.stream, kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, kSYNTAX_STATUS, &place, *type, kPROCESSOR_TYPE);
    }
    *instance = std::move(*type);
    return takeIdentifier(in, kPROCESSOR_TYPE, type);
}

int parse_map_header(const InfoReader& in, addressMap_info* map) {
    std::string type;
    std::string instance;
    u64 id = 0;
    int status = nextWord(in);
    if (status == 0) status = takeIdentifier(in, kMAP_NAME, &map->name);
    if (status == 0) status = parse_processor(in, &type, &instance);
    if (status == 0) status = takeInteger(in, kPROCESSOR_ID, &id);
    if (status == 0 && instance.empty() && begins_path(in.token)) status = take_path(in, &instance);
    if (status != 0) return status;
    map->header = " " + type + " " + std::to_string(id);
    if (!instance.empty()) map->header += " " + instance;
    return keepBytes(in, map->name.size() + map->header.size());
}

int take_space_name(const InfoReader& in, std::string* name) {
    const int status = nextWord(in);
    return status == 0 ? parse_component_name(in, kSPACE_NAME, name) : status;
}

int parse_space_words(const InfoReader& in, SpaceWords* space) {
    int status = parse_component_instance_name(in);
    if (status == 0 && !in.isJoinText) space->path = current_path(in); // a join is at no place
    if (status == 0) status = parse_addressing_info_type(in, &space->addressing);
    if (status == 0) status = takeInteger(in, kSPACE_BASE, &space->base);
    if (status == 0) status = take_bus_width(in, kSPACE_WIDTH, &space->width);
    if (status == 0)
        status = parse_addressRange_info(in, space->addressing, space->width, &space->total, &space->ranges);
    return status;
}

addressSpace_info* find_space(const scratch_BMM_Info& scratch, const std::string& name) {
    symbol_entry* entry = lookup_context_symbol(name.c_str(), true, scratch.spaceInfoNames);
    return entry == nullptr ? nullptr : static_cast<addressSpace_info*>(entry->value);
}

void forget_spaces(scratch_BMM_Info* scratch) {
    for (const addressSpace_info& space : scratch->addressSpaces)
        if (find_space(*scratch, space.name) != nullptr)
            delete_context_symbol(space.name.c_str(), scratch->spaceInfoNames);
    scratch->addressSpaces.clear();
}

void put_map(scratch_BMM_Info* scratch, const addressMap_info& map) {
    scratch->text += "ADDRESS_MAP " + map.name + map.header + "\n";
    for (const std::string& name : map.spaceNames) {
        if (const addressSpace_info* space = find_space(*scratch, name))
            scratch->text += space->text;
        else
            PrintWarning(kERROR_UNDEFINED_ADDRESS_SPACE_IN_ADDRESS_MAP, kMAP_STATUS, name, map.name);
    }
    scratch->text += "END_ADDRESS_MAP;\n\n";
}

} // namespace

int parse_addressing_info_type(const InfoReader& in, InfoAddressing* addressing) {
    *addressing = InfoAddressing::kNOT_TOLD;
    if (!isOfClass(in.token->type, kSADDRESS_MODIFIER_TOKEN)) return 0;
    *addressing = in.token->type == &kSWORD_ADDRESSING_KEYWORD ? InfoAddressing::kWORD : InfoAddressing::kBYTE;
    return nextWord(in);
}

void set_addressing_info_type(std::string* text, InfoAddressing addressing) {
    if (addressing == InfoAddressing::kBYTE) *text += " BYTE_ADDRESSING";
    if (addressing == InfoAddressing::kWORD) *text += " WORD_ADDRESSING";
}

void complete_addressSpace_info_hdr(std::string* text, const address_range_list& ranges, const std::string& path,
    InfoAddressing addressing, bool hasEnd, u64 start, u64 end) {
    *text += ranges.size() == 1 ? " " + ranges.front().memory : " COMBINED";
    set_addressing_info_type(text, addressing);
    *text += " [" + addressText(start);
    if (hasEnd) *text += ":" + addressText(end);
    *text += "]";
    if (!path.empty()) *text += " " + path;
    *text += "\n";
}

int parse_addressTemplate_info(const InfoReader& in) {
    std::string name;
    InfoAddressing addressing{};
    u64 size = 0;
    u64 width = 0;
    u64 total = 0;
    address_range_list ranges;
    int status = nextWord(in);
    if (status == 0) status = takeIdentifier(in, kTEMPLATE_NAME, &name);
    if (status == 0) status = parse_addressing_info_type(in, &addressing);
    if (status == 0) status = takeInteger(in, kTEMPLATE_SIZE, &size);
    if (status == 0) status = take_bus_width(in, kTEMPLATE_WIDTH, &width);
    if (status == 0) status = parse_addressRange_info(in, addressing, width, &total, &ranges);
    if (status != 0) return status;
    std::string text = "ADDRESS_TEMPLATE " + name;
    complete_addressSpace_info_hdr(&text, ranges, "", addressing, false, size, 0);
    output_addressRange_info(&text, ranges);
    text += "END_ADDRESS_TEMPLATE;\n\n";
    in.scratch->text += text;
    return keepBytes(in, text.size());
}

int parse_addressSpace_info(const InfoReader& in, std::string* name) {
    std::string own;
    if (name == nullptr) name = &own;
    const bool isInMap = name != &own;
    const token_element place = placeOf(in.token);
    if (int status = take_space_name(in, name); status != 0) return status;
    if (isInMap && !continues_space(in.token)) return 0; // told elsewhere
    SpaceWords space;
    if (int status = parse_space_words(in, &space); status != 0) return status;
    u64 last = 0;
    if (__builtin_add_overflow(space.base, space.total - 1, &last))
        return PrintErrorLocation(in.stream, kERROR_MESSAGE_STRING, kSYNTAX_STATUS, &place,
            formatted("ADDRESS_SPACE '%s' ends above the highest address.", *name));
    std::string text = "ADDRESS_SPACE " + *name;
    complete_addressSpace_info_hdr(&text, space.ranges, space.path, space.addressing, true, space.base, last);
    output_addressRange_info(&text, space.ranges);
    text += "END_ADDRESS_SPACE;\n\n";
    return queue_text(in, *name, std::move(text));
}

int parse_addressMap_info(const InfoReader& in) {
    addressMap_info map;
    int status = parse_map_header(in, &map);
    if (status == 0) status = parse_map_items(in, &map);
    if (status == 0) in.scratch->addressMaps.push_back(std::move(map));
    return status;
}

// A second space of a name stays without one: it is not for maps, and the map's reader refuses it.
int queue_addressSpace_info(scratch_BMM_Info* scratch, addressSpace_info space) {
    addressSpace_info* queued = &scratch->addressSpaces.emplace_back(std::move(space));
    if (find_space(*scratch, queued->name) != nullptr) return 0;
    if (insert_context_symbol(queued->name.c_str(), scratch->spaceInfoNames, queued, nullptr) != nullptr) return 0;
    scratch->addressSpaces.pop_back();
    return 7;
}

void dequeue_addressSpace_info(scratch_BMM_Info* scratch) {
    for (const addressMap_info& map : scratch->addressMaps)
        for (const std::string& name : map.spaceNames)
            if (addressSpace_info* space = find_space(*scratch, name)) space->isReferenced = true;
    for (const addressSpace_info& space : scratch->addressSpaces)
        if (!space.isReferenced) scratch->text += space.text;
}

int dequeue_addressMap_info(scratch_BMM_Info* scratch) {
    for (const addressMap_info& map : scratch->addressMaps) {
        if (map.spaceNames.empty())
            return PrintError(kERROR_MISSING_ADDRESS_SPACES_IN_ADDRESS_MAP, kMAP_STATUS, map.name);
        put_map(scratch, map);
    }
    scratch->addressMaps.clear();
    forget_spaces(scratch);
    return 0;
}

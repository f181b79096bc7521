// compact_components.cpp - memory components of the compact language, and the names that they are told by.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_text.h"
#include "BmmUtils/compact_parser.h"
#include "BmmUtils/model/text.h"
#include "BmmUtils/names.h"
#include "BmmUtils/syntax.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "ParseUtils/file_path.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

using namespace memdata;

namespace {

constexpr const char* kGROUP_NAME = "COMPONENT_INFO 'c' component name or '*' wild";
constexpr const char* kINSTANCE_NAME = "COMPONENT_INFO 'c' instance name or '*' wild";
constexpr const char* kNO_WILD = "A component instance name instead of a '*' wild";
constexpr const char* kMEMORY_NAME = "BIT_LANE 'c' memory type name";
constexpr const char* kMEMORY_TYPE = "BIT_LANE 'c' memory type not defined";
constexpr const char* kSPACE_NAME = "address space name";

int refuse_missing(const InfoReader& in, const char* expected) {
    return PrintErrorLocation(
        in.stream, kERROR_MISSING_SYMBOL_AND_EXPECTED, kSYNTAX_STATUS, in.token, in.token->text, expected);
}

bool wild_follows(const InfoReader& in) {
    const token_element* next = look_ahead_stream_tokens(in.stream, 0);
    return next != nullptr && next->type == &kMULTIPLY;
}

int parse_wild_name(const InfoReader& in, std::string* name) {
    const scratch_BMM_Info& scratch = *in.scratch;
    if (scratch.currentSpaceName.empty()) return refuse_missing(in, kSPACE_NAME);
    const std::vector<std::string> pieces = separate_instance_hierarchy_names(scratch.hierarchyPath);
    size_t first = pieces.size(); // the first piece that is part of the name
    while (wild_follows(in)) {
        if (int status = nextWord(in); status != 0) return status;
        if (first == 0) return refuse_missing(in, kSPACE_NAME);
        --first;
    }
    name->clear();
    for (size_t i = first; i < pieces.size(); ++i) *name += pieces[i] + "/";
    *name += scratch.currentSpaceName;
    return nextWord(in);
}

// Both orders are kept: a map reads lanes by them.
int parse_component_instance_order(const InfoReader& in, component_ref_info* component) {
    const int status = parseNumberRange(in.stream, in.token, &component->bitFirst, &component->bitSecond);
    if (status != 0) return status;
    return parseNumberRange(in.stream, in.token, &component->addressFirst, &component->addressSecond);
}

int parse_ecc_word(const InfoReader& in, u32* eccType) {
    if (in.token->type != &kIDENTIFIER_TOKEN) return 0;
    *eccType = get_ECC_type(in.token->text);
    return nextWord(in);
}

int parse_files(const InfoReader& in, component_ref_info* component) {
    while (isOfClass(in.token->type, kCOMPONENT_INIT_TOKEN)) {
        std::string* file = &component->outputFile;
        if (in.token->type == &kCOMPONENT_INIT_AUTO_KEYWORD) file = &component->initFile;
        if (in.token->type == &kCOMPONENT_INIT_INPUT_KEYWORD) file = &component->inputFile;
        if (int status = parse_info_expanded_file_pathname(in, file); status != 0) return status;
    }
    return 0;
}

// The group of a name, made on its first use.
component_group_info* group_of(scratch_BMM_Info* scratch, const std::string& name) {
    symbol_entry* entry = lookup_context_symbol(name.c_str(), true, scratch->componentNames);
    if (entry != nullptr) return static_cast<component_group_info*>(entry->value);
    component_group_info* group = &scratch->componentGroups.emplace_back();
    group->name = name;
    if (insert_context_symbol(name.c_str(), scratch->componentNames, group, nullptr) != nullptr) return group;
    scratch->componentGroups.pop_back();
    return nullptr;
}

u64 kept_size(const component_ref_info& component) {
    return sizeof component + component.instanceName.size() + component.path.size() + component.memory.size() +
           component.initFile.size() + component.inputFile.size() + component.outputFile.size();
}

} // namespace

std::vector<std::string> separate_instance_hierarchy_names(const std::string& path) {
    std::vector<std::string> pieces;
    for (size_t at = 0; at < path.size();) {
        const size_t end = std::min(path.find('/', at), path.size());
        if (end > at) pieces.push_back(path.substr(at, end - at));
        at = end + 1;
    }
    return pieces;
}

std::string construct_instance_path_hierarchy(const std::string& path, const std::string& name) {
    const size_t first = path.find_first_not_of('/');
    if (first == path.npos) return name;
    return path.substr(first, path.find_last_not_of('/') + 1 - first) + "/" + name;
}

int parse_component_name(const InfoReader& in, const char* expected, std::string* name) {
    if (in.token->type == &kMULTIPLY) return parse_wild_name(in, name);
    if (int status = readObjectName(in.stream, in.token, expected, name); status != 0) return status;
    collect_MF_info(&in.scratch->commandText, name->c_str(), " ");
    return 0;
}

int parse_component_instance_name(const InfoReader& in) {
    scratch_BMM_Info* scratch = in.scratch;
    if (in.token->type == &kMULTIPLY) {
        if (scratch->currentSpaceName.empty() && !in.isJoinText) return refuseSymbol(in.stream, in.token, kNO_WILD);
        return nextWord(in);
    }
    if (in.token->type != &kIDENTIFIER_TOKEN) return refuseSymbol(in.stream, in.token, kINSTANCE_NAME);
    bool isRelative = false;
    std::string name;
    if (int status = readInstanceName(in.stream, in.token, true, false, &isRelative, &name); status != 0) return status;
    collect_MF_info(&scratch->commandText, name.c_str(), " ");
    scratch->hierarchyPath = "/";
    scratch->currentSpaceName = name;
    return 0;
}

int parse_info_memory_type(
    const InfoReader& in, const char* nameExpected, const char* typeExpected, std::string* name, u64* byteSize) {
    if (in.token->type != &kIDENTIFIER_TOKEN) return refuseSymbol(in.stream, in.token, nameExpected);
    const MEMORYLocType* memory = get_MEMORY_type_from_name(in.options->device, in.token->text);
    const MEMORYType* type = memory == nullptr ? nullptr : memory->type;
    *byteSize = type == nullptr ? 0 : (type->dataBits + (type->hasParityWidths ? type->parityBits : 0)) / 8;
    if (*byteSize == 0) return refuseSymbol(in.stream, in.token, typeExpected); // one without a size of its own too
    *name = in.token->text;
    return nextWord(in);
}

int parse_info_expanded_file_pathname(const InfoReader& in, std::string* file) {
    collect_MF_info(&in.scratch->commandText, in.token->text, " ");
    OwnedFileSpec spec;
    // Macros of the path expand while it is read.
    if (int status = parse_file_pathname(in.stream, in.token, true, false, true, spec.out()); status != 0)
        return status;
    *file = fileNameText(spec->fullName);
    collect_MF_info(&in.scratch->commandText, file->c_str(), " ");
    return 0;
}

int parse_component_info(const InfoReader& in) {
    std::string name;
    component_ref_info component;
    u64 byteSize = 0;
    int status = nextWord(in);
    if (status == 0) status = parse_component_name(in, kGROUP_NAME, &name);
    if (status == 0) status = parse_component_instance_name(in);
    if (status != 0) return status;
    component.instanceName = in.scratch->currentSpaceName;
    component.path = in.scratch->hierarchyPath;
    status = parse_info_memory_type(in, kMEMORY_NAME, kMEMORY_TYPE, &component.memory, &byteSize);
    if (status == 0) status = parse_ecc_word(in, &component.eccType);
    if (status == 0) status = parse_component_instance_order(in, &component);
    if (status == 0) status = parse_files(in, &component);
    if (status == 0) status = keepBytes(in, kept_size(component));
    if (status != 0) return status;
    component_group_info* group = group_of(in.scratch, name);
    if (group == nullptr) return 7;
    group->components.push_back(std::move(component));
    return 0;
}

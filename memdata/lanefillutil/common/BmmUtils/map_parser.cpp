// map_parser.cpp - the statements of a map file, and the maps of processors.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/model/internal.h"
#include "BmmUtils/parser.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/scanner.h"

using namespace memdata;

namespace {

constexpr const char* kSTATEMENTS =
    "DEFINE_MEMORY_TYPE, ADDRESS_INSTANCE, ADDRESS_TEMPLATE, ADDRESS_MAP, or ADDRESS_SPACE";
constexpr const char* kTEMPLATE_MAP_NAME = "ADDRESS_SPACE_TEMPLATES";
constexpr u64 kRUN_TIME_PROCESSOR = 0x100; // of a processor word that is not in the table
constexpr u64 kUNNAMED_MAP_PROCESSOR = 1;

// What the statements of one file share.
struct FileType {
    parse_stream* stream;
    token_element* token;
    const char* root;
    AddressMappingType* mapping;
    bool isForOtherOperations; // the rest of the file is not for this run
};

int default_map(const FileType& file, AddressMapType** map) {
    return create_and_insert_addressMap(file.mapping, false, "", "", kUNNAMED_MAP_PROCESSOR, 0, map);
}

int template_map(const FileType& file, AddressMapType** map) {
    AddressMapType*& templates = file.mapping->templateMap;
    if (templates == nullptr)
        templates = create_addressMap_element(file.mapping, false, kTEMPLATE_MAP_NAME, "", kUNNAMED_MAP_PROCESSOR, 0);
    *map = templates;
    return templates == nullptr ? OUT_OF_MEMORY("addressMap", sizeof(AddressMapType)) : 0;
}

int read_space(const FileType& file) {
    AddressMapType* map = nullptr;
    if (int status = default_map(file, &map); status != 0) return status;
    return parse_addressSpace(
        file.stream, file.mapping->symbolSpaces->addressSpaceNames, file.token, file.root, file.mapping, map, false);
}

int read_template(const FileType& file) {
    AddressMapType* map = nullptr;
    if (int status = template_map(file, &map); status != 0) return status;
    return parse_addressSpace(
        file.stream, file.mapping->symbolSpaces->templateNames, file.token, file.root, file.mapping, map, true);
}

int read_instance(const FileType& file) {
    AddressMapType* map = nullptr;
    if (int status = default_map(file, &map); status != 0) return status;
    return parse_addressSpace_Instance(file.stream, file.token, file.root, file.mapping, map);
}

int read_operations(FileType* file) {
    StrList operations = nullptr;
    const int status = parse_workflow_op_definition(file->stream, file->token, &operations);
    file->isForOtherOperations =
        status == 0 && !compare_workflow_operations(file->mapping->workflowOperations, operations);
    StrListDelete(operations);
    return status;
}

// One statement, token being its keyword. Keywords that begin one are followed by what the readers look at.
int read_statement(FileType* file) {
    const token_type* type = file->token->type;
    const bool isStatement = type == &kADDRESS_WORKFLOW_OP_KEYWORD || type == &kDEFINE_MEM_TYPE_KEYWORD ||
                             type == &kADDRESS_MAP_KEYWORD || type == &kADDRESS_TEMPLATE_KEYWORD ||
                             type == &kADDRESS_SPACE_KEYWORD || type == &kADDRESS_INSTANCE_KEYWORD;
    if (!isStatement) return refuseSymbol(file->stream, file->token, kSTATEMENTS);
    if (int status = get_next_token(file->stream, file->token); status != 0) return status;
    if (type == &kADDRESS_WORKFLOW_OP_KEYWORD) return read_operations(file);
    if (type == &kDEFINE_MEM_TYPE_KEYWORD)
        return parse_memory_type_definition(file->stream, file->token, file->mapping);
    if (type == &kADDRESS_MAP_KEYWORD) return parse_addressMap(file->stream, file->token, file->root, file->mapping);
    if (type == &kADDRESS_TEMPLATE_KEYWORD) return read_template(*file);
    return type == &kADDRESS_SPACE_KEYWORD ? read_space(*file) : read_instance(*file);
}

bool is_taken(const std::string& name, const symbol_context* names) {
    return lookup_context_symbol(name.c_str(), true, names) != nullptr;
}

// Name and path as a design under a root has them.
int read_map_name(parse_stream* stream, token_element* token, const char* root, const AddressMappingType* mapping,
    OwnedString* name, OwnedString* path) {
    const token_element place = placeOf(token);
    std::string text;
    if (int status = readObjectName(stream, token, "ADDRESS_MAP name", &text); status != 0) return status;
    path->reset(createLegecyInstancePath(root, text.c_str()));
    name->reset(create_rootedObject_name(text.c_str(), root));
    if (*name == nullptr) return 7;
    const SymbolSpacesType* spaces = mapping->symbolSpaces;
    if (is_taken(name->get(), spaces->addressSpaceNames) || is_taken(name->get(), spaces->addressMapNames))
        return reportTakenName(stream, &place, name->get());
    return 0;
}

int read_processor(parse_stream* stream, token_element* token, u64* type, u32* id) {
    if (!isOfClass(token->type, kPROCESSOR_TYPE_TOKEN))
        return refuseIllegalToken(stream, token, "proccesor type keyword (PPC405)");
    *type = get_processorType(token->text);
    if (*type == 0) *type = kRUN_TIME_PROCESSOR;
    if (int status = get_next_token(stream, token); status != 0) return status;
    if (token->type != &kINTEGER_NUMBER) return refuseSymbol(stream, token, "numeric proccesor ID value");
    *id = static_cast<u32>(unsignedFromValue(token->value));
    return 0;
}

// The path behind the processor's number, if there is one; else the path that was made from the name stays. An empty
// map ends at once: the keyword is no path.
int read_map_path(parse_stream* stream, token_element* token, const char* root, OwnedString* path) {
    long status = 0;
    const token_element* next = one_token_look_ahead(stream, true, &status);
    if (next == nullptr) return static_cast<int>(status);
    if (next->type == &kADDRESS_SPACE_KEYWORD || next->type == &kEND_ADDRESS_MAP_KEYWORD)
        return get_next_token(stream, token);
    return readInstancePath(stream, token, false, root, path->out());
}

int end_map(parse_stream* stream, token_element* token) {
    if (token->type != &kEND_ADDRESS_MAP_KEYWORD) return refuseMissingKeyword(stream, token, kEND_ADDRESS_MAP_KEYWORD);
    if (int status = get_next_token(stream, token); status != 0) return status;
    return parse_statement_terminator(stream, token);
}

} // namespace

int parse_bmm_file(parse_stream* stream, const char* root, AddressMappingType* mapping) {
    const TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    FileType file{stream, token.get(), root, mapping, false};
    int status = get_next_token(stream, token.get());
    while (status == 0 && token->type != &kEND_OF_FILE && !file.isForOtherOperations) status = read_statement(&file);
    return status;
}

int parse_addressMap_hdr(
    parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping, AddressMapType** out) {
    OwnedString name;
    OwnedString path;
    u64 type = 0;
    u32 id = 0;
    int status = read_map_name(stream, token, root, mapping, &name, &path);
    if (status == 0) status = read_processor(stream, token, &type, &id);
    if (status == 0) status = read_map_path(stream, token, root, &path);
    if (status != 0) return status;
    return create_and_insert_addressMap(mapping, true, name.get(), path.get(), type, id, out);
}

int parse_addressMap(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping) {
    ++mapping->statementCount;
    AddressMapType* map = nullptr;
    int status = parse_addressMap_hdr(stream, token, root, mapping, &map);
    while (status == 0 && token->type == &kADDRESS_SPACE_KEYWORD) {
        status = get_next_token(stream, token);
        if (status == 0)
            status =
                parse_addressSpace(stream, mapping->symbolSpaces->addressSpaceNames, token, root, mapping, map, false);
    }
    return status == 0 ? end_map(stream, token) : status;
}

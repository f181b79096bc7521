// instance_parser.cpp - address spaces as instances of a template.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/parser.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

using namespace memdata;

namespace {

// What an instance statement says.
struct InstanceType {
    AddressSpaceDefType* original = nullptr;
    TokenOwner name;
    u64 base = 0;
    std::string path; // ends in "/"
};

AddressSpaceDefType* find_template(const AddressMappingType* mapping, const char* root, const char* name) {
    AddressSpaceLinkType* link = nullptr;
    const OwnedString rooted(create_rootedObject_name(name, root));
    if (rooted == nullptr) return nullptr;
    const symbol_context* names = mapping->symbolSpaces->templateNames;
    return lookup_addressSpace_by_name(rooted.get(), names, &link) == 0 ? link->space : nullptr;
}

int read_template_name(parse_stream* stream, token_element* token, const char* root, const AddressMappingType* mapping,
    InstanceType* instance) {
    if (token->type == &kIDENTIFIER_TOKEN) instance->original = find_template(mapping, root, token->text);
    if (instance->original == nullptr) return refuseSymbol(stream, token, "ADDRESS_TEMPLATE template name");
    return get_next_token(stream, token);
}

int read_instance_name(parse_stream* stream, token_element* token, InstanceType* instance) {
    if (token->type != &kIDENTIFIER_TOKEN) return refuseSymbol(stream, token, "ADDRESS_INSTANCE instance name");
    instance->name.reset(dup_token_element(token));
    return instance->name == nullptr ? 7 : get_next_token(stream, token);
}

int read_base(parse_stream* stream, token_element* token, InstanceType* instance) {
    const token_element place = placeOf(token);
    u64 other = 0;
    if (int status = parseNumberRange(stream, token, &instance->base, &other); status != 0) return status;
    if (instance->base != other)
        return PrintErrorLocation(stream, kERROR_ILLEAGAL_ADDRESSINSTANCE_BASE_SPEC, kSYNTAX_STATUS, &place);
    if (instance->base > UINT64_MAX - instance->original->endAddress)
        return PrintErrorLocation(stream, kERROR_MESSAGE_STRING, kSYNTAX_STATUS, &place,
            formatted("ADDRESS_INSTANCE '%s' ends above the highest address.", instance->name->text));
    return 0;
}

int read_path(parse_stream* stream, token_element* token, InstanceType* instance) {
    const TokenOwner first(dup_token_element(token));
    if (first == nullptr) return 7;
    bool isRelative = false;
    if (int status = readInstanceName(stream, token, true, true, &isRelative, &instance->path); status != 0)
        return status;
    if (isRelative) return refuseSymbol(stream, first.get(), "absolute instance path");
    if (!instance->path.ends_with('/')) instance->path += '/';
    return parse_statement_terminator(stream, token);
}

// The space takes the template's name. A further instance, for which it is taken, takes its own.
int space_name(const InstanceType& instance, const symbol_context* names, const char* root, OwnedString* name) {
    const bool isTaken = lookup_addressSpace_by_name(instance.original->name, names, nullptr) == 0;
    name->reset(isTaken ? create_rootedObject_name(instance.name->text, root) : StrDup(instance.original->name));
    return *name == nullptr ? 7 : 0;
}

} // namespace

int parse_addressSpace_Instance(
    parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping, AddressMapType* map) {
    ++mapping->statementCount;
    InstanceType instance;
    int status = read_template_name(stream, token, root, mapping, &instance);
    if (status == 0) status = read_instance_name(stream, token, &instance);
    if (status == 0) status = read_base(stream, token, &instance);
    if (status == 0) status = read_path(stream, token, &instance);

    symbol_context* names = mapping->symbolSpaces->addressSpaceNames;
    OwnedString name;
    if (status == 0) status = space_name(instance, names, root, &name);
    OwnedSpace space;
    if (status == 0)
        status = copyTemplateAs(stream, names, map, instance.original, name.get(), instance.name.get(),
            instance.original->startAddress + instance.base, instance.original->endAddress + instance.base,
            instance.path.c_str(), instance.original->wordAddressing, space.out());
    if (status == 0) status = insert_addressSpace_element(mapping, names, space.get(), map);
    if (status == 0) space.release(); // the map owns it now
    return status;
}

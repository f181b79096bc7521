// memory_type_parser.cpp - memory types that a map defines.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/internal.h"
#include "BmmUtils/parser.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/scanner.h"
#include "platform/ComMsgMgr.h"

#include <string>
#include <vector>

using namespace memdata;

namespace {

constexpr u64 kMOST_BYTES = UINT64_MAX / 8; // sizes are kept in bits

int refuse_name(parse_stream* stream, const token_element* token) {
    ComMsgMgr::sendMsg::eval(
        "memdata", kENGINE_ERROR_MESSAGE, "@28-300@%s%s", token->text, get_stream_file_name(stream));
    if (legacyMessagesEnabled()) refuseSymbol(stream, token, "DEFINE_MEMORY_TYPE memory name");
    return kSYNTAX_STATUS;
}

// A word that an earlier definition made; those of the language itself stay what they are.
bool is_users_word(const token_element* token) {
    return isOfClass(token->type, kMEMORY_TYPE_TOKEN) && token->type->ordinal > kMEMORY_TYPE_TOKEN.childCount;
}

// The name and its token, which later text meets as a memory word. A second definition meets it too.
int read_name(parse_stream* stream, token_element* token, std::string* name, const token_type** type) {
    name->assign(token->text, token->length);
    if (is_users_word(token)) {
        *type = token->type;
        return get_next_token(stream, token);
    }
    if (token->type != &kIDENTIFIER_TOKEN) return refuse_name(stream, token);
    token_set* words = activeContext(stream)->keywords;
    const int status = extend_token_symbol_set(
        words == nullptr ? &bmm_keyword_set : words, name->c_str(), true, &kMEMORY_TYPE_TOKEN, type);
    return status == 0 ? get_next_token(stream, token) : status;
}

int read_size(parse_stream* stream, token_element* token, u64* bytes) {
    const token_element place = placeOf(token);
    u64 other = 0;
    if (int status = parseNumberRange(stream, token, bytes, &other); status != 0) return status;
    if (*bytes == other && *bytes != 0 && *bytes <= kMOST_BYTES) return 0;
    return PrintErrorLocation(stream, kERROR_ILLEAGAL_ADDRESSTEMPLATE_SIZE_SPEC, kSYNTAX_STATUS, &place);
}

bool is_width(const token_element* token) {
    return token->type == &kINTEGER_NUMBER && token->value >= 1 && token->value <= UINT32_MAX;
}

int read_widths(parse_stream* stream, token_element* token, std::vector<u32>* widths) {
    do {
        if (!is_width(token)) return refuseSymbol(stream, token, "DEFINE_MEMORY_TYPE memory bus width value");
        widths->push_back(static_cast<u32>(token->value));
        if (int status = get_next_token(stream, token); status != 0) return status;
    } while (token->type == &kINTEGER_NUMBER);
    return 0;
}

} // namespace

int parse_memory_type_definition(parse_stream* stream, token_element* token, AddressMappingType* mapping) {
    ++mapping->statementCount;
    std::string name;
    const token_type* type = nullptr;
    u64 bytes = 0;
    std::vector<u32> widths;
    int status = read_name(stream, token, &name, &type);
    if (status == 0) status = read_size(stream, token, &bytes);
    if (status == 0) status = read_widths(stream, token, &widths);
    if (status == 0) status = parse_statement_terminator(stream, token);
    if (status != 0) return status;
    const bool isMade = create_MEMORY_extended_type(name.c_str(), kUSER_MEMORY_CLASS, type, bytes, widths.data(),
                            static_cast<u32>(widths.size())) != nullptr;
    return isMade ? 0 : 7;
}

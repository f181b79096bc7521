// memory_lookup.cpp - finding memory types, and the types that address maps define.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/memory_lookup.h"

#include "DeviceTableUtils/state.h"
#include "DeviceTableUtils/table_builders.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <strings.h>

using memdata::gDeviceTableState;
using memdata::OwnedString;
using memdata::Tracked;

constinit MEMORYLocType definedExtendedMEMORYTypes = {nullptr, nullptr, nullptr, 1, nullptr};

namespace {

constexpr char kGENERIC_NAME[] = "MEMORY";
constexpr u32 kGENERIC_WIDTHS[] = {8, 16, 32};

void deleteType(MEMORYType* type) {
    StrDelete(const_cast<char*>(type->name)); // made here, from managed strings
    StrDelete(const_cast<char*>(type->widthsText));
    releaseMemory(type);
}

void deleteNode(MEMORYLocType* node) {
    if (node->type != nullptr) deleteType(const_cast<MEMORYType*>(node->type));
    releaseMemory(node);
}

// The allowed widths as an alert prints them; null without memory.
char* widthsText(const u32* widths, u32 widthCount) {
    OwnedString text(StrDup(""));
    for (u32 i = 0; i < widthCount && text; ++i)
        text = OwnedString(memdata::appendFormat(text.release(), i == 0 ? "%ld" : " %ld", widths[i]));
    return text.release();
}

MEMORYLocType* newNode(
    const char* name, u32 sizeUnits, const token_type* token, u64 byteSize, const u32* widths, u32 widthCount) {
    Tracked<MEMORYLocType, deleteNode> node(NEW_RECORD(MEMORYLocType));
    if (node == nullptr) return nullptr;
    node->isListLink = 1;
    MEMORYType* type = NEW_RECORD(MEMORYType);
    if (type == nullptr) return nullptr;
    node->type = type;
    type->name = StrDup(name);
    type->sizeUnits = sizeUnits;
    type->token = token;
    type->dataBits = 8 * byteSize;
    type->widthsText = widthsText(widths, widthCount);
    std::copy_n(widths, std::min<u32>(widthCount, kMAX_LANE_WIDTHS - 1), type->widths);
    if (type->name == nullptr || type->widthsText == nullptr) return nullptr;
    return node.release();
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

// lookup_MEMORY_type_by_name among the user's types. A map may define thousands.
MEMORYLocType* lookupExtendedType(const char* name) {
    if (name == nullptr) return definedExtendedMEMORYTypes.next;
    const auto found = gDeviceTableState.extendedTypes.find(lowerCase(name));
    return found == gDeviceTableState.extendedTypes.end() ? nullptr : found->second;
}

} // namespace

MEMORYLocType* get_MEMORY_next_record(MEMORYLocType** cursor, bool firstCall) {
    MEMORYLocType* at = *cursor;
    if (at == nullptr) return nullptr;
    if (at->isListLink == 1)
        at = at->next;
    else if (!firstCall)
        ++at;
    if (at != nullptr && at->isListLink == 0 && at->type == nullptr) at = nullptr;
    return *cursor = at;
}

MEMORYLocType* lookup_MEMORY_type_by_token(MEMORYLocType* collection, const token_type* token) {
    for (MEMORYLocType *cursor = collection, *at = get_MEMORY_next_record(&cursor, true); at != nullptr;
         at = get_MEMORY_next_record(&cursor, false))
        if (at->type->token == token) return at;
    return nullptr;
}

MEMORYLocType* lookup_MEMORY_type_by_name(MEMORYLocType* collection, const char* name) {
    for (MEMORYLocType *cursor = collection, *at = get_MEMORY_next_record(&cursor, true); at != nullptr;
         at = get_MEMORY_next_record(&cursor, false))
        if (name == nullptr || strcasecmp(at->type->name, name) == 0) return at;
    return nullptr;
}

MEMORYLocType* get_MEMORY_type_from_name(TarselDeviceType* device, const char* name) {
    MEMORYLocType* found = lookup_MEMORY_type_by_name(
        device != nullptr ? device->memoryLocs : static_cast<MEMORYLocType*>(definedStaticMEMORYTypes), name);
    if (found == nullptr) found = lookupExtendedType(name);
    if (found != nullptr && device != nullptr) build_missing_lookup_tables(device, found);
    return found;
}

MEMORYLocType* get_MEMORY_type_from_token(TarselDeviceType* device, const token_type* token) {
    if (token == &kGENERIC_MEMORY_KEYWORD)
        return create_MEMORY_extended_type(
            kGENERIC_NAME, kGENERIC_MEMORY_CLASS, token, 0, kGENERIC_WIDTHS, std::size(kGENERIC_WIDTHS));
    MEMORYLocType* found = lookup_MEMORY_type_by_token(
        device != nullptr ? device->memoryLocs : static_cast<MEMORYLocType*>(definedStaticMEMORYTypes), token);
    if (found != nullptr && device != nullptr) build_missing_lookup_tables(device, found);
    if (found == nullptr) found = lookup_MEMORY_type_by_token(&definedExtendedMEMORYTypes, token);
    return found;
}

MEMORYLocType* create_MEMORY_extended_type(
    const char* name, u32 sizeUnits, const token_type* token, u64 byteSize, const u32* widths, u32 widthCount) {
    memdata::registerDeviceTableFinalizer();
    if (std::strcmp(name, kGENERIC_NAME) != 0) {
        if (MEMORYLocType* found = get_MEMORY_type_from_name(nullptr, name)) {
            const_cast<MEMORYType*>(found->type)->token = token; // of a static type too, until the engine ends
            return found;
        }
    }
    MEMORYLocType* node = newNode(name, sizeUnits, token, byteSize, widths, widthCount);
    if (node == nullptr) return nullptr;
    MEMORYLocType*& last = gDeviceTableState.lastExtendedType;
    (last == nullptr ? definedExtendedMEMORYTypes.next : last->next) = node;
    gDeviceTableState.extendedTypes.emplace(lowerCase(name), node);
    return last = node;
}

void delete_MEMORY_extended_types() {
    MEMORYLocType* node = definedExtendedMEMORYTypes.next;
    definedExtendedMEMORYTypes.next = nullptr;
    gDeviceTableState.lastExtendedType = nullptr;
    gDeviceTableState.extendedTypes.clear();
    while (node != nullptr) {
        MEMORYLocType* next = node->next;
        deleteNode(node);
        node = next;
    }
}

MEMORYLocType* get_MEMORY_extended_list() {
    return &definedExtendedMEMORYTypes;
}

u8* get_BRAM_largest_from_device(const TarselDeviceType* device, u8** parityBuffer) {
    const MEMORYType* largest = nullptr;
    u64 largestBytes = 0;
    if (device == nullptr) return nullptr;
    for (const MEMORYLocType& memory : device->memoryLocs) {
        if (memory.type == nullptr) break;
        const u64 bytes = memdata::memoryByteSize(&memory);
        if (bytes <= largestBytes) continue;
        largest = memory.type;
        largestBytes = bytes;
    }
    if (largest == nullptr) return nullptr;
    u8* data = static_cast<u8*>(getMemory("'std::uint8_t' data", largestBytes));
    if (data != nullptr) *parityBuffer = data + largest->dataBits / 8;
    return data;
}

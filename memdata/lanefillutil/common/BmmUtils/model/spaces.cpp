// spaces.cpp - address spaces and the sorted lists of links to them.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/internal.h"
#include "BmmUtils/model/iteration.h"
#include "ParseUtils/tokens.h"
#include "platform/ComMsgMgr.h"

#include <cstring>
#include <utility>

namespace {

// The pointer of the map's list that a space with this end address is hung at: that of the first link whose space
// does not end below.
AddressSpaceLinkType** find_place(AddressMapType* map, u64 endAddress) {
    AddressSpaceLinkType* last = map->lastAddressSpace;
    const bool endsBehindAll = last != nullptr && last->space->endAddress < endAddress;
    AddressSpaceLinkType** place = endsBehindAll ? &last->next : &map->addressSpaces;
    while (*place != nullptr && (*place)->space->endAddress < endAddress) place = &(*place)->next;
    return place;
}

// Whether the map has the space's full name already. place: where the space would be hung.
bool holds_name(const AddressMapType* map, const AddressSpaceDefType* space, const symbol_context* names,
    AddressSpaceLinkType* const* place) {
    AddressSpaceLinkType* known = nullptr;
    if (lookup_addressSpace_by_name(space->name, names, &known) != 0) return false;
    if (known->map == map) return true;
    if (known->space != space) return find_addressSpace_by_name(map, space->name, nullptr) != nullptr;
    // The name stands for the parent's link of this very space: a view of it can only be among its like.
    for (const AddressSpaceLinkType* link = *place; link != nullptr && link->space->endAddress == space->endAddress;
         link = link->next)
        if (link->space == space) return true;
    return false;
}

// A link's space must still be there to tell whether the name stands for it.
void remove_name(AddressSpaceDefType* space, symbol_context* names) {
    if (space->name == nullptr || names == nullptr) return;
    AddressSpaceLinkType* link = nullptr;
    if (lookup_addressSpace_by_name(space->name, names, &link) == 0 && link->space == space)
        memdata::removeSymbolOf(space->name, names, link);
}

} // namespace

int memdata::reportTakenName(parse_stream* stream, const token_element* token, const char* name) {
    ComMsgMgr::sendMsg::eval("memdata", kENGINE_ERROR_MESSAGE, "@28-209@%s", name);
    if (legacyMessagesEnabled()) return PrintErrorLocation(stream, kERROR_ADDRESS_BLOCK_NAME_DUPLICATE, 3, token, name);
    return 3;
}

char* construct_addressSpace_name(const char* name, const AddressMapType* map) {
    if (name == nullptr) return nullptr;
    if (map == nullptr || !map->isNamed) return StrDup(name);
    return memdata::appendFormat(nullptr, "%s.%s", map->name, name);
}

int create_addressSpace_element(parse_stream* stream, symbol_context* names, token_element* token, const char* name,
    char* path, AddressMappingType* mapping, AddressMapType* map, u64 start, u64 end, token_element* memoryToken,
    AddressSpaceStyleEnum style, bool eccCombined, bool isTemplate, bool wordAddressing, AddressSpaceDefType** out) {
    if (name == nullptr || map == nullptr || out == nullptr) return 3;
    *out = nullptr;
    memdata::OwnedSpace space(NEW_RECORD(AddressSpaceDefType));
    if (space == nullptr) return OUT_OF_MEMORY("addressSpace", sizeof(AddressSpaceDefType));
    space->map = map;
    space->style = style;
    space->eccCombinedForSimulation = eccCombined;
    space->isTemplate = isTemplate;
    space->wordAddressing = wordAddressing;
    space->nextAddress = start;
    space->startAddress = start;
    space->endAddress = end;

    space->name = isTemplate ? StrDup(name) : construct_addressSpace_name(name, map);
    if (space->name == nullptr) return OUT_OF_MEMORY("addressSpace name", std::strlen(name));
    if (lookup_addressSpace_by_name(space->name, names, nullptr) == 0)
        return memdata::reportTakenName(stream, token, space->name);
    if (!isTemplate) {
        space->dataFiles = create_data_filename_list(mapping == nullptr ? nullptr : mapping->dataFiles);
        if (space->dataFiles == nullptr) return OUT_OF_MEMORY("addressSpace file list", sizeof(DataFileNameListType));
    }
    space->instancePath = path;
    space->memoryTypeToken = memoryToken;
    *out = space.release();
    return 0;
}

AddressSpaceLinkType* create_addressSpace_link(
    AddressMapType* map, AddressSpaceDefType* space, AddressSpaceLinkType* next) {
    AddressSpaceLinkType* link = NEW_RECORD(AddressSpaceLinkType);
    if (link == nullptr) return nullptr;
    link->map = map;
    link->next = next;
    link->space = space;
    return link;
}

int insert_addressSpace_element(
    AddressMappingType* mapping, symbol_context* names, AddressSpaceDefType* space, AddressMapType* map) {
    if (mapping == nullptr || names == nullptr || space == nullptr || space->name == nullptr || map == nullptr)
        return 3;
    AddressSpaceLinkType** place = find_place(map, space->endAddress);
    if (holds_name(map, space, names, place)) return 0;

    AddressSpaceLinkType* link = create_addressSpace_link(map, space, *place);
    if (link == nullptr) return OUT_OF_MEMORY("addressSpaceLink", sizeof(AddressSpaceLinkType));
    // In a filtered mapping the name goes on standing for the parent's link.
    if (enter_context_symbol(space->name, names, link, nullptr) == nullptr) {
        releaseMemory(link);
        return OUT_OF_MEMORY("addressSpaceLink", sizeof(symbol_entry));
    }
    *place = link;
    if (link->next == nullptr) map->lastAddressSpace = link;
    ++map->addressSpaceCount;
    ++mapping->addressSpaceCount;
    return 0;
}

AddressSpaceLinkType* delete_addressSpace_link(AddressSpaceLinkType* link, symbol_context* names, bool ownSpaces) {
    if (link == nullptr) return nullptr;
    AddressSpaceLinkType* next = link->next;
    if (ownSpaces)
        delete_addressSpace_element(&link->space, names);
    else if (link->space != nullptr)
        memdata::removeSymbolOf(link->space->name, names, link);
    releaseMemory(link);
    return next;
}

void delete_addressSpace_list(AddressSpaceListType* list, symbol_context* names, bool ownSpaces) {
    if (list == nullptr) return;
    while (list->head != nullptr) list->head = delete_addressSpace_link(list->head, names, ownSpaces);
    list->count = 0;
}

void delete_addressSpace_element(AddressSpaceDefType** space, symbol_context* names) {
    if (space == nullptr || *space == nullptr) return;
    AddressSpaceDefType* old = *space;
    while (old->ranges != nullptr) delete_addressRange_element(std::exchange(old->ranges, old->ranges->next));
    remove_name(old, names);
    *space = nullptr; // behind the look-up: this may be the pointer of the link that the name stands for
    StrDelete(old->name);
    StrDelete(old->instancePath);
    delete_transform_range_list(&old->transformRanges);
    delete_data_filenames(&old->dataFiles);
    release_token_element(old->memoryTypeToken);
    releaseMemory(old);
}

void memdata::deleteAddressSpace(AddressSpaceDefType* space) {
    delete_addressSpace_element(&space, nullptr);
}

// maps.cpp - address maps and their list.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/internal.h"

#include <utility>

namespace {

// Everything but the map's own name in the mapping's table.
void release_map(AddressMapType* map, symbol_context* names, bool ownSpaces) {
    // All at once, ahead of the lanes, which would leave one by one.
    delete_symbol_space(&map->instanceNames);
    map->lastAddressSpace = nullptr;
    AddressSpaceListType list{std::exchange(map->addressSpaceCount, 0), std::exchange(map->addressSpaces, nullptr)};
    delete_addressSpace_list(&list, names, ownSpaces);
    delete_data_filenames(&map->dataFiles);
    StrDelete(map->name);
    StrDelete(map->instancePath);
    releaseMemory(map);
}

void release_new_map(AddressMapType* map) {
    release_map(map, nullptr, true);
}

} // namespace

AddressMapType* create_addressMap_element(
    AddressMappingType* mapping, bool named, const char* name, const char* path, u64 processorType, unsigned id) {
    if (mapping == nullptr || mapping->symbolSpaces == nullptr) return nullptr;
    memdata::Tracked<AddressMapType, release_new_map> map(NEW_RECORD(AddressMapType));
    if (map == nullptr) return nullptr;
    map->isNamed = named;
    map->processorType = processorType;
    map->processorId = id;
    map->instanceNames = create_symbol_space(mapping->symbolSpaces->symbolTable);
    map->name = StrDup(name == nullptr ? "" : name);
    map->instancePath = StrDup(path == nullptr ? "" : path);
    map->dataFiles = create_data_filename_list(nullptr);
    if (map->instanceNames == nullptr || map->name == nullptr || map->instancePath == nullptr ||
        map->dataFiles == nullptr)
        return nullptr;
    // In a filtered mapping the name goes on standing for the parent's map.
    if (enter_context_symbol(map->name, mapping->symbolSpaces->addressMapNames, map.get(), nullptr) == nullptr)
        return nullptr;
    return map.release();
}

void insert_namedAddressMaps_list(AddressMapType* map, AddressMappingType* mapping) {
    if (map == nullptr || mapping == nullptr) return;
    AddressMapType** place =
        mapping->lastAddressMap == nullptr ? &mapping->addressMaps : &mapping->lastAddressMap->next;
    while (*place != nullptr) place = &(*place)->next;
    *place = map;
    mapping->lastAddressMap = map;
    map->mapping = mapping;
    ++mapping->addressMapCount;
}

int create_and_insert_addressMap(AddressMappingType* mapping, bool named, const char* name, const char* path,
    u64 processorType, unsigned id, AddressMapType** out) {
    if (mapping == nullptr || out == nullptr) return 3;
    *out = nullptr;
    if (!named && mapping->defaultMap != nullptr) {
        *out = mapping->defaultMap;
        return 0;
    }
    AddressMapType* map = create_addressMap_element(mapping, named, name, path, processorType, id);
    if (map == nullptr) return OUT_OF_MEMORY("addressMap", sizeof(AddressMapType));
    if (!named) mapping->defaultMap = map;
    insert_namedAddressMaps_list(map, mapping);
    *out = map;
    return 0;
}

void delete_addressMap_element(
    AddressMappingType* mapping, symbol_context* names, bool ownSpaces, AddressMapType** map) {
    if (map == nullptr || *map == nullptr) return;
    AddressMapType* old = std::exchange(*map, nullptr);
    // The name stands for the map that owns its spaces. One that another map has stays that one's.
    if (mapping != nullptr && mapping->symbolSpaces != nullptr)
        memdata::removeSymbolOf(old->name, mapping->symbolSpaces->addressMapNames, old);
    release_map(old, names, ownSpaces);
}

void delete_addressMap_list(AddressMappingType* mapping, symbol_context* names, bool ownSpaces, AddressMapType** head) {
    if (head == nullptr) return;
    while (*head != nullptr) {
        AddressMapType* first = *head;
        *head = first->next;
        delete_addressMap_element(mapping, names, ownSpaces, &first);
    }
}

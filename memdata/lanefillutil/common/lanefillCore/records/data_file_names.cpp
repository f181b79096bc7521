// data_file_names.cpp - lists of data-file names.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/data_file_names.h"

#include "FileUtils/descriptor.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"

#include <cstring>
#include <utility>

namespace {

void delete_name(DataFileNameType* node) {
    StrDelete(node->name);
    releaseMemory(node);
}

// Where a node of this name hangs, or where one would be appended.
DataFileNameType** find_place(const char* name, DataFileNameListType* list) {
    DataFileNameType** place = &list->head;
    while (*place != nullptr && std::strcmp((*place)->name, name) != 0) place = &(*place)->next;
    return place;
}

} // namespace

DataFileNameListType* create_data_filename_list(const DataFileNameListType* source) {
    memdata::Tracked<DataFileNameListType, delete_data_filenames> list(NEW_RECORD(DataFileNameListType));
    if (list == nullptr) return nullptr;
    for (const DataFileNameType* node = source == nullptr ? nullptr : source->head; node != nullptr; node = node->next)
        if (insert_data_filename(node->name, list.get()) != 0) return nullptr;
    return list.release();
}

DataFileNameType* lookup_data_filename(const char* name, const DataFileNameListType* list) {
    if (name == nullptr || list == nullptr) return nullptr;
    DataFileNameType* node = list->head;
    while (node != nullptr && std::strcmp(node->name, name) != 0) node = node->next;
    return node;
}

int insert_data_filename(const char* name, DataFileNameListType* list) {
    if (name == nullptr || list == nullptr) return 3;
    DataFileNameType** place = find_place(name, list);
    if (*place != nullptr) return 0;
    memdata::Tracked<DataFileNameType, delete_name> node(NEW_RECORD(DataFileNameType));
    if (node == nullptr) return 7;
    node->name = StrDup(name);
    if (node->name == nullptr) return 7;
    *place = node.release();
    ++list->count;
    return 0;
}

void delete_data_filenames(DataFileNameListType** list) {
    if (list == nullptr || *list == nullptr) return;
    DataFileNameListType* old = std::exchange(*list, nullptr);
    while (old->head != nullptr) delete_name(std::exchange(old->head, old->head->next));
    releaseMemory(old);
}

int output_data_filenames(fileIODescriptor* file, const char* prefix, const DataFileNameListType* list) {
    int status = PutNextLine(file, "%s     Data file(s) -", prefix);
    const DataFileNameType* node = list == nullptr ? nullptr : list->head;
    if (node == nullptr && status == 0) status = PutNextLine(file, " none");
    for (; node != nullptr && status == 0; node = node->next)
        status = PutNextLine(file, node->next == nullptr ? " %s" : " %s,", node->name);
    return status == 0 ? PutNextLine(file, "\n") : status;
}

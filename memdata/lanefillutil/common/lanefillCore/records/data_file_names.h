// data_file_names.h - lists of the data files that reached a mapping, a map or a space.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_DATA_FILE_NAMES_H
#define MEMDATA_LANEFILL_CORE_RECORDS_DATA_FILE_NAMES_H

#include "platform/BasicTypes.h"

struct fileIODescriptor;

struct DataFileNameType {
    DataFileNameType* next;
    char* name; // managed
};

// Names are unique in a list, byte by byte, and stand in the order in which they came.
struct DataFileNameListType {
    u64 count;
    DataFileNameType* head;
};

// A new list that begins with the names of source; empty when source is null. Null without memory.
DataFileNameListType* create_data_filename_list(const DataFileNameListType* source);

// The node of exactly this name, or null. Null arguments find nothing.
DataFileNameType* lookup_data_filename(const char* name, const DataFileNameListType* list);

// Appends a copy of the name unless the list has it. Status: 0 the list has the name now; 3 a null
// argument; 7 without memory, the list is as it was.
int insert_data_filename(const char* name, DataFileNameListType* list);

// One line of a file's head: "<prefix>     Data file(s) - a.elf, b.mem", or "none" for an empty or null list.
// Status: that of writing.
int output_data_filenames(fileIODescriptor* file, const char* prefix, const DataFileNameListType* list);

// Releases the list with its names and clears the pointer; a null list is allowed.
void delete_data_filenames(DataFileNameListType** list);

#endif

// bd_switch.h - the data files that a run was asked to translate, in command order.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_BD_SWITCH_H
#define MEMDATA_LANEFILL_CORE_RECORDS_BD_SWITCH_H

#include "FileUtils/file_spec.h"
#include "StringUtils/StringUtils.h"
#include "lanefillCore/records/data_addresses.h"

struct BDSwitchDataType {
    BDSwitchDataType* next;
    fileSpecType* dataFile; // owned
    BootAddressTypeX<unsigned long> boot;
    StartAddressTypeX<unsigned long> start;
    i32 tagCount;     // -1: no tag was given
    StrList tagNames; // owned
};

// A node without requests: kinds 0, tagCount -1, an empty list of tags. Takes the file. Null without memory;
// the file is the caller's then.
BDSwitchDataType* create_BD_switch_data(fileSpecType* dataFile);

// Appends at the tail.
void insert_BD_switch_data(BDSwitchDataType** list, BDSwitchDataType* node);

// Releases the whole list with its files and tags, and clears the head.
void delete_BD_switch_data_list(BDSwitchDataType** list);

#endif

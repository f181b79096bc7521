// bd_switch.cpp - see bd_switch.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/bd_switch.h"

#include "SystemUtils/memory.h"
#include "platform/HEXAll.h"

BDSwitchDataType* create_BD_switch_data(fileSpecType* dataFile) {
    memdata::Tracked<BDSwitchDataType, delete_BD_switch_data_list> node(NEW_RECORD(BDSwitchDataType));
    if (node == nullptr) return nullptr;
    try {
        node->tagNames = StrListNew(0);
    } catch (const HEXInternalException&) {
        return nullptr; // lists throw where records give null
    }
    node->tagCount = -1;
    node->dataFile = dataFile;
    return node.release();
}

void insert_BD_switch_data(BDSwitchDataType** list, BDSwitchDataType* node) {
    while (*list != nullptr) list = &(*list)->next;
    *list = node;
}

void delete_BD_switch_data_list(BDSwitchDataType** list) {
    while (BDSwitchDataType* node = *list) {
        *list = node->next;
        DeleteFileSpec(&node->dataFile);
        StrListDelete(node->tagNames);
        releaseMemory(node);
    }
}

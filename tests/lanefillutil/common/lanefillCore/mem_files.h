// mem_files.h - MEM files of a map in a folder of their own, for tests.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_LANEFILL_CORE_MEM_FILES_H
#define MEMDATA_TESTS_LANEFILL_CORE_MEM_FILES_H

#include "lanefillCore/lanes/bus_blocks.h"
#include "lanefillCore/mem_writer.h"
#include "support/map_builder.h"
#include "support/temporary_folder.h"

#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

namespace memdata::testing {

// A list of one node for output_bitLane_mem_files.
class MemFolders {
public:
    explicit MemFolders(const std::string& folder, const std::vector<std::string>& tags = {}) { add(folder, tags); }
    ~MemFolders() { delete_BD_switch_data_list(&list_); }
    MemFolders& operator=(MemFolders&&) = delete; // neither copied nor moved

    void add(const std::string& folder, const std::vector<std::string>& tags = {}) {
        BDSwitchDataType* node = create_BD_switch_data(folder.empty() ? nullptr : CreateFileSpec(folder.c_str()));
        if (!tags.empty()) node->tagCount = static_cast<i32>(tags.size());
        for (const std::string& tag : tags) StrListExtend(&node->tagNames, newString(tag));
        insert_BD_switch_data(&list_, node);
    }
    BDSwitchDataType* get() const { return list_; }

private:
    BDSwitchDataType* list_ = nullptr;
};

// Stores bytes in the lanes of a space, as a data file would.
inline int storeBytes(AddressSpaceDefType* space, u64 address, std::vector<u8> bytes) {
    if (!allocate_addressSpace_transform_buffers(space)) return 7;
    return transform_segment_data("a.elf", space, address, bytes.data(), bytes.size());
}

// The file with "DATE" for its date, and without the three lines of build, product and notices, which are the host's.
inline std::string withoutHostLines(const std::string& text) {
    const std::string dated = std::regex_replace(text, std::regex("Created on .*(am|pm)"), "Created on DATE");
    const size_t date = dated.find("// Created on DATE");
    if (date == dated.npos) throw std::runtime_error("a file without a head: " + text);
    size_t first = date;
    for (int line = 0; line < 3; ++line) first = dated.rfind('\n', first - 2) + 1;
    return dated.substr(0, first) + dated.substr(date);
}

// What stands behind the head.
inline std::string recordsOf(const std::string& text) {
    const size_t head = text.find("// Bus width = ");
    if (head == text.npos) throw std::runtime_error("a file without a head: " + text);
    return text.substr(text.find('\n', head) + 1);
}

} // namespace memdata::testing

#endif

// map_text.h - parses address-map texts in tests, and shows what came of them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_BMM_UTILS_MAP_TEXT_H
#define MEMDATA_TESTS_BMM_UTILS_MAP_TEXT_H

#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/parser.h"
#include "DeviceTableUtils/device_lookup.h"
#include "SystemUtils/SystemUtils.h"
#include "support/alerts.h"
#include "support/host_messages.h"
#include "support/host_parameters.h"
#include "support/map_dump.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace memdata::testing {

// A root mapping and the texts that are read into it. Texts are shown as the file "map.bmm" by alerts.
//
//     MapText map;
//     EXPECT_EQ(map.read("ADDRESS_SPACE ram RAMB16 [0:0x7FF] BUS_BLOCK a [7:0]; END_BUS_BLOCK; END_ADDRESS_SPACE;"), 0);
//     EXPECT_EQ(map.dump(), ...);
class MapText {
public:
    explicit MapText(const std::vector<const char*>& operations = {}, const char* part = nullptr) {
        RegisterSystemToolName("Lanefill");
        for (const char* word : operations) StrListExtend(&operations_, StrDup(word));
        TarselDeviceType* device = part == nullptr ? nullptr : get_device_record_by_name(part);
        mapping_ = create_addressMapping_element("map.bmm", device, false, operations_, nullptr);
    }
    ~MapText() {
        delete_addressMapping(&mapping_);
        StrListDelete(operations_);
    }
    MapText& operator=(MapText&&) = delete; // neither copied nor moved

    AddressMappingType* get() const { return mapping_; }
    AddressMappingType* operator->() const { return mapping_; }

    // The status of parse_bmm_file, and of closing the stream when that one is 0. Alerts and the host's messages are
    // kept.
    int read(const std::string& text, const char* root = nullptr) {
        const CapturedAlerts alerts;
        const CapturedMessages messages;
        const std::string own(text); // of its exact size, so that a sanitizer sees every read behind it
        parse_stream* stream = nullptr;
        int status =
            open_parse_MemoryFile("map.bmm", own.data(), own.size(), &bmm_keyword_set, nullptr, nullptr, &stream);
        if (stream != nullptr) {
            showAsFile(stream);
            status = parse_bmm_file(stream, root, mapping_);
            const int closed = close_parse_stream(&stream);
            if (status == 0) status = closed;
        }
        alerts_ = const_cast<CapturedAlerts&>(alerts).text();
        messages_ = messages.text();
        return status;
    }
    const std::string& alerts() const { return alerts_; }
    const std::string& messages() const { return messages_; }
    std::string dump() const { return dumpMapping(mapping_); }

    // The only range of the n-th space of the default map, and its first block.
    const AddressSpaceDefType* space(unsigned n = 0) const {
        const AddressSpaceLinkType* link = mapping_->defaultMap->addressSpaces;
        for (; n != 0; --n) link = link->next;
        return link->space;
    }
    const BitLaneGridElemType* lane(u64 n = 0) const { return space()->ranges->busBlocks[0]->lanes[n]; }

private:
    SystemResources resources_;
    StrList operations_ = nullptr;
    AddressMappingType* mapping_;
    std::string alerts_;
    std::string messages_;
};

// One block of one 8-bit RAMB16 lane: 2048 bytes.
inline std::string byteSpace(const std::string& name, const std::string& lane, const std::string& start = "0") {
    return "ADDRESS_SPACE " + name + " RAMB16 [" + start + ":" + start + "+0x7FF]\n  BUS_BLOCK\n    " + lane +
           " [7:0];\n  END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n";
}

// The same, with a lane line of one's own.
inline std::string laneSpace(const std::string& laneLine, const std::string& memory = "RAMB16") {
    return "ADDRESS_SPACE ram " + memory + " [0:0x7FF]\n  BUS_BLOCK\n    " + laneLine +
           "\n  END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n";
}

// An alert of status 3 as it is printed: the message, the line of the place, the source line and the caret.
inline std::string alertAt(const std::string& message, unsigned line, const std::string& source, size_t column,
    const char* severity = "ERROR") {
    return std::string("\n") + severity + ":Lanefill:" + message + "\n   Line #" + std::to_string(line) +
           ", File \"map.bmm\".\n" + source + "\n" + std::string(column, ' ') + "^\n\n";
}

} // namespace memdata::testing

#endif

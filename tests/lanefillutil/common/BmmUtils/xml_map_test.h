// xml_map_test.h - XML address maps for tests in a few readable lines, and what reading them says.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_XML_MAP_TEST_H
#define MEMDATA_TESTS_XML_MAP_TEST_H

#include "BmmUtils/xml_map.h"
#include "support/alerts.h"
#include "support/host_messages.h"
#include "support/map_builder.h"
#include "support/map_dump.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace memdata::testing {

inline std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) text += part;
    return text;
}
// An element with its attributes as they are written, and what is in it.
inline std::string element(const std::string& tag, const std::string& attributes, const std::string& contents) {
    return "<" + tag + " " + attributes + ">\n" + contents + "</" + tag + ">\n";
}
// Devices by their attributes.
inline std::string block(const std::vector<std::string>& devices, u32 eccCount = 0) {
    std::string attributes = "DeviceElementCount=\"" + std::to_string(devices.size() - eccCount) + "\"";
    if (eccCount != 0) attributes += " ECCElementCount=\"" + std::to_string(eccCount) + "\"";
    std::string contents;
    for (const std::string& device : devices) contents += "<Device " + device + "/>\n";
    return element("Block", attributes, contents);
}
inline std::string range(const std::string& memory, const std::vector<std::string>& blocks) {
    return element("Range", "Type=\"" + memory + "\" BusBlockElementCount=\"" + std::to_string(blocks.size()) + "\"",
        joined(blocks));
}
inline std::string space(const std::string& attributes, const std::vector<std::string>& ranges) {
    return element("AddressSpace", attributes, joined(ranges));
}
inline std::string document(const std::vector<std::string>& processors) {
    return "<?xml version=\"1.0\"?>\n" + element("AddressMap", "Version=\"1\" Minor=\"0\"", joined(processors));
}
inline std::string processor(const std::string& attributes, const std::vector<std::string>& spaces) {
    return element("Processor", attributes, joined(spaces));
}
// One space "ram" from 0 on in the default map.
inline std::string lone_space(
    const char* endAddress, const std::string& memory, const std::vector<std::string>& blocks) {
    return document(
        {processor("Name=\"\"", {space(std::string("Name=\"ram\" StartAddress=\"0\" EndAddress=\"") + endAddress + "\"",
                                    {range(memory, blocks)})})});
}

inline constexpr std::string_view kREFUSED = "\nERROR:Lanefill:86 - Address map 'map.xml' is refused.\n\n";

class XmlMapTest : public ::testing::Test {
protected:
    XmlMapTest() { RegisterSystemToolName("Lanefill"); }

public:
    // Adds a document to the mapping; the status.
    int read(AddressMappingType* mapping, const std::string& text, const char* root = nullptr) {
        OwnedFileSpec spec(CreateFileSpecWithFileData("map.xml", text.data(), text.size()));
        return open_and_parse_bmm_XML(spec.get(), mapping, root, nullptr, nullptr, nullptr);
    }

protected:
    // The mapping that a document makes: its dump without the first line, or "status N".
    std::string dumpOf(const std::string& text, const char* root = nullptr) {
        TestMap map;
        const int status = read(map.get(), text, root);
        return status == 0 ? dump(map.get()) : "status " + std::to_string(status);
    }
    // "STATUS: alerts" of reading a document; a refusal without the last alert, which has to name the file.
    std::string said(const std::string& text) {
        TestMap map;
        CapturedAlerts alerts;
        const int status = read(map.get(), text);
        std::string all = alerts.text();
        if (status == 3) {
            EXPECT_TRUE(all.ends_with(kREFUSED)) << all;
            all.resize(all.size() - std::min(all.size(), kREFUSED.size()));
        }
        return std::to_string(status) + ":" + all;
    }
    static std::string dump(const AddressMappingType* mapping) {
        const std::string text = dumpMapping(mapping);
        return text.substr(text.find('\n') + 1);
    }
    // The file that a mapping is written to.
    std::string written(AddressMappingType* mapping) {
        const std::string name = folder_.file("written.xml");
        std::filesystem::remove(name);
        OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        EXPECT_EQ(output_XML_BMM_file(spec.get(), "", 0, mapping), 0);
        return readFile(name);
    }

    SystemResources resources_;
    TemporaryFolder folder_;
};

} // namespace memdata::testing

#endif

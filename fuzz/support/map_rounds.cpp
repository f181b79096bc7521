// map_rounds.cpp - maps read from texts and worded again.
// SPDX-License-Identifier: Apache-2.0
#include "support/map_rounds.h"

#include "BmmUtils/annotated_map.h"
#include "BmmUtils/model/iteration.h"
#include "BmmUtils/parser.h"
#include "FileUtils/FileUtils.h"
#include "support/engine_run.h"
#include "support/map_dump.h"

#include <sstream>

namespace memdata::fuzz {

namespace {

constexpr const char* kINSTANCE_MARK = "/\" of \""; // behind the path of a space, ahead of its template's name
constexpr std::string_view kECC_MARK = " ecc-combined";

// Of a template the text has neither the path, which no instance takes, nor the word for ECC.
std::string asWritten(std::string line) {
    if (line.starts_with("mapping ")) return line.substr(0, line.find(" statements "));
    if (const size_t at = line.find(kINSTANCE_MARK); at != line.npos) return line.substr(0, at) + '"';
    if (line.find(" space ") == line.npos || line.find(" template") == line.npos) return line;
    line = line.substr(0, line.find(" path \""));
    if (const size_t at = line.find(kECC_MARK); at != line.npos) line.erase(at, kECC_MARK.size());
    return line;
}

bool keepsNamesOf(const AddressMapType* map) {
    const std::string lead = std::string(map->name) + ".";
    for (const AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next) {
        std::string_view name = link->space->name;
        if (name.starts_with(lead)) name.remove_prefix(lead.size());
        if (name.find('.') != name.npos) return false;
    }
    return true;
}

} // namespace

OwnedMapping newMapping(TarselDeviceType* device) {
    OwnedMapping mapping(create_addressMapping_element("map.bmm", device, false, nullptr, nullptr));
    require(mapping.get() != nullptr, "no mapping could be made");
    return mapping;
}

int readMap(std::string_view text, AddressMappingType* mapping) {
    parse_stream* stream = nullptr;
    int status =
        open_parse_MemoryFile("map.bmm", text.data(), text.size(), &bmm_keyword_set, nullptr, nullptr, &stream);
    if (stream == nullptr) return status;
    showAsFile(stream);
    if (status == 0) status = parse_bmm_file(stream, nullptr, mapping);
    const int closed = close_parse_stream(&stream);
    return status != 0 ? status : closed;
}

std::string annotatedText(AddressMappingType* mapping) {
    fileIODescriptor* file = nullptr;
    require(OpenMemoryFile("map", kTEXT_WRITE, nullptr, 0, &file) == 0, "no file in memory could be made");
    require(output_BMM_addressMapping(file, mapping) == 0, "a map that was read can not be written");
    std::string text(GetFileStorageBase(file), GetFileLogicalSize(file));
    Close_File(&file);
    return text;
}

std::string modelText(const AddressMappingType* mapping) {
    std::istringstream all(testing::dumpMapping(mapping));
    std::string text;
    for (std::string line; std::getline(all, line);)
        if (!line.starts_with("init ")) text += asWritten(line) + "\n";
    return text;
}

bool hasInstances(const AddressMappingType* mapping) {
    return testing::dumpMapping(mapping).find(kINSTANCE_MARK) != std::string::npos;
}

bool keepsNames(const AddressMappingType* mapping) {
    const AddressMapType* map = mapping->addressMaps;
    while (map != nullptr && keepsNamesOf(map)) map = map->next;
    return map == nullptr && (mapping->templateMap == nullptr || keepsNamesOf(mapping->templateMap));
}

bool keepsAddresses(const AddressMappingType* mapping) {
    bool keeps = true;
    visitLanes(mapping, [&keeps](const AddressSpaceDefType&, const BusBlockType&, const BitLaneGridElemType& element) {
        if (element.addressLow == 0 && element.addressHigh == 0) keeps = false;
    });
    return keeps;
}

} // namespace memdata::fuzz

// xml_lane_reader.cpp - the devices of a block from XML.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/model/internal.h"
#include "BmmUtils/parser.h"
#include "BmmUtils/stated_lane.h"
#include "BmmUtils/xml_map.h"
#include "BmmUtils/xml_words.h"
#include "DeviceTableUtils/cross_coordinates.h"
#include "DeviceTableUtils/memory_lookup.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <strings.h>

using namespace memdata;

namespace {

// What the devices of one block share.
struct BlockReaderType {
    const char* root;
    AddressMappingType* mapping;
    AddressSpaceDefType* space;
    AddressRangeDefType* range;
    BusBlockType* block;
    u64 laneRoom; // entries of block->lanes
    u64 eccRoom;  // entries of block->eccLanes
    u64 nextAddress;
};

const char* attribute(const LNF_XML_Element* element, const char* name) {
    return LNF_XML_Element_Get_Attribute(element, name, nullptr);
}

// "*/" and "/" ahead of a name make it a relative one, as in map texts.
std::string_view without_relative_mark(std::string_view name, bool* isRelative) {
    *isRelative = name.starts_with('/') || name.starts_with(xml::kRELATIVE_MARK);
    if (!*isRelative) return name;
    while (name.starts_with('/') || name.starts_with('.') || name.starts_with(xml::kRELATIVE_MARK))
        name.remove_prefix(name[0] == '*' ? 2 : 1);
    return name;
}

void read_name(const BlockReaderType& reader, const LNF_XML_Element* element, StatedLane* device) {
    const char* text = attribute(element, xml::kINSTANCE);
    device->name = without_relative_mark(text == nullptr ? "" : text, &device->isRelative);
    rootInstanceName(reader.root, &device->name);
}

// A device without a word is of its range's type, and so is one of the range's generic memory, which is no other's.
int read_memory(const BlockReaderType& reader, const LNF_XML_Element* element, StatedLane* device) {
    const char* word = attribute(element, xml::kTYPE);
    const MEMORYType* rangeType = reader.range->memory->type;
    const bool isRangeMemory =
        word == nullptr || (rangeType->sizeUnits == kGENERIC_MEMORY_CLASS && strcasecmp(word, rangeType->name) == 0);
    device->memory = isRangeMemory ? reader.range->memory : get_MEMORY_type_from_name(reader.mapping->device, word);
    return device->memory == nullptr ? unknownMemoryType(nullptr, nullptr, reader.mapping, word) : 0;
}

// Two numbers, "7:0". An absent attribute leaves them alone.
int read_pair(const LNF_XML_Element* element, const char* name, u64* first, u64* second) {
    const char* text = attribute(element, name);
    if (text == nullptr || parse_embedded_number_range(nullptr, nullptr, text, first, second) == 0) return 0;
    return PrintError(kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, kSYNTAX_STATUS, text, formatted("%s range", name));
}

int read_width(const LNF_XML_Element* element, StatedLane* device) {
    if (int status = read_pair(element, xml::kWIDTH, &device->bitLow, &device->bitHigh); status != 0) return status;
    device->bitOrdering = get_bitLane_ordering(&device->bitLow, &device->bitHigh);
    return 0;
}

int read_depth(const BlockReaderType& reader, const LNF_XML_Element* element, StatedLane* device) {
    if (attribute(element, xml::kDEPTH) != nullptr)
        return read_pair(element, xml::kDEPTH, &device->addressLow, &device->addressHigh);
    defaultLaneAddresses(device->memory, device->bitHigh + 1 - device->bitLow, reader.nextAddress, &device->addressLow,
        &device->addressHigh);
    return 0;
}

int read_location(const LNF_XML_Element* element, StatedLane* device) {
    const char* text = attribute(element, xml::kLOC);
    if (text == nullptr) return 0;
    device->locKind = kLOC_KIND_LOC;
    if (parse_embedded_location_string(nullptr, nullptr, text, &device->locRow, &device->locColumn) == 0) return 0;
    return PrintError(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, kSYNTAX_STATUS, text, "LOC indicator X or Y");
}

int read_file(const LNF_XML_Element* element, const char* name, OwnedFileSpec* file) {
    const char* text = attribute(element, name);
    if (text == nullptr || *text == '\0') return 0;
    file->reset(CreateFileSpec(text));
    return *file == nullptr ? OUT_OF_MEMORY("bitLane", sizeof(fileSpecType)) : 0;
}

int read_device(const BlockReaderType& reader, const LNF_XML_Element* element, StatedLane* device) {
    read_name(reader, element, device);
    int status = read_width(element, device);
    if (status == 0) status = read_location(element, device);
    if (status == 0) status = read_memory(reader, element, device);
    const char* ecc = attribute(element, xml::kECC);
    device->eccType = ecc == nullptr ? kECC_NONE : get_ECC_type(ecc);
    if (status == 0) status = read_depth(reader, element, device);
    if (status == 0) status = read_file(element, xml::kINPUT, &device->input);
    if (status == 0) status = read_file(element, xml::kOUTPUT, &device->output);
    if (status == 0) status = read_file(element, xml::kINIT, &device->init);
    return status;
}

int record_location(const BlockReaderType& reader, const StatedLane& device, BitLaneType* lane) {
    if (!isLocatedBlockRam(device)) return 0;
    if (int status = record_bitLane_LOC_constraint(nullptr, nullptr, reader.mapping, lane); status != 0) return status;
    ++reader.range->locatedDeviceCount;
    return 0;
}

// One walk of the name's chain, which is long in a map of many devices: what cannot be entered is looked for only then.
int enter_name(const BlockReaderType& reader, BitLaneGridElemType* element) {
    symbol_context* names = reader.space->map->instanceNames;
    const char* name = element->lane->name;
    if (insert_context_symbol(name, names, element, nullptr) != nullptr) return 0;
    if (lookup_context_symbol(name, true, names) == nullptr) return OUT_OF_MEMORY("bitLane", sizeof(symbol_entry));
    return PrintError(kERROR_BRAM_INSTANCE_NAME_DUPLICATE, kSYNTAX_STATUS, reader.space->name);
}

int store_element(const BlockReaderType& reader, const StatedLane& device, OwnedLaneElement* owned) {
    BusBlockType* block = reader.block;
    const bool isEcc = (*owned)->eccType != kECC_NONE;
    if ((isEcc ? block->eccLaneCount : block->laneCount) == (isEcc ? reader.eccRoom : reader.laneRoom))
        return PrintError(kERROR_MESSAGE_STRING, kSYNTAX_STATUS,
            formatted("A %s of ADDRESS_SPACE '%s' has more devices than its %s says.", xml::kBLOCK, reader.space->name,
                isEcc ? xml::kECC_COUNT : xml::kDEVICE_COUNT));
    if (int status = enter_name(reader, owned->get()); status != 0) return status;
    BitLaneGridElemType* element = owned->release();
    if (block->laneListOrder == kBitLaneListOrderNone)
        block->laneListOrder = isEcc ? kBitLaneListOrderEccFirst : kBitLaneListOrderDataFirst;
    if (isEcc) {
        if (block->eccLaneCount == 0) block->eccType = element->eccType;
        block->eccLanes[block->eccLaneCount++] = element;
        block->eccBusWidth += element->laneWidth;
    } else {
        if (block->laneCount == 0) block->hasRelativePaths = element->lane->isRelativePath;
        block->lanes[block->laneCount++] = element;
        block->busWidth += element->laneWidth;
    }
    ++reader.range->deviceCount;
    return record_location(reader, device, element->lane);
}

// Room for as many lanes as a count says, but not for more than there are devices.
int make_lanes(const LNF_XML_Element* element, const char* countName, BitLaneArrayType** lanes, u64* room) {
    *room = 0;
    LNF_XML_Element_Get_Attribute_Integer(element, countName, room);
    *room = std::min<u64>(*room, element->Get_Child_Count());
    if (*room == 0) return 0;
    *lanes = newBitLaneArray(*room);
    return *lanes == nullptr ? OUT_OF_MEMORY("bitLane", *room * sizeof(void*)) : 0;
}

} // namespace

int parse_XML_addressBitLanes(LNF_XML_Element* element, const char* root, AddressSpaceDefType* space,
    AddressRangeDefType* range, BusBlockType* block, AddressMappingType* mapping, u64 address) {
    BlockReaderType reader{root, mapping, space, range, block, 0, 0, address};
    int status = make_lanes(element, xml::kDEVICE_COUNT, &block->lanes, &reader.laneRoom);
    if (status == 0) status = make_lanes(element, xml::kECC_COUNT, &block->eccLanes, &reader.eccRoom);
    while (status == 0) {
        const LNF_XML_Element* child = LNF_XML_Element_Get_Next_Child(element, xml::kDEVICE);
        if (child == nullptr) break;
        StatedLane device;
        OwnedLaneElement lane;
        status = read_device(reader, child, &device);
        if (status == 0) status = makeLaneElement(&device, space, &lane);
        if (status == 0) status = store_element(reader, device, &lane);
    }
    return status;
}

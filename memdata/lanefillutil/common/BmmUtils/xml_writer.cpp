// xml_writer.cpp - address maps to XML.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/model/internal.h"
#include "BmmUtils/xml_map.h"
#include "BmmUtils/xml_words.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

using namespace memdata;

namespace {

// Adds attributes to one element; the first failure stays.
class Attributes {
public:
    explicit Attributes(LNF_XML_Element* element) : element_(element), status_(element == nullptr ? 7 : 0) {}

    Attributes& text(const char* name, const char* value) {
        if (status_ == 0) status_ = LNF_XML_Element_Add_Attribute(element_, name, value);
        return *this;
    }
    Attributes& textIfSet(const char* name, const char* value) {
        return value == nullptr || *value == '\0' ? *this : text(name, value);
    }
    Attributes& decimal(const char* name, u64 value) {
        if (status_ == 0) status_ = LNF_XML_Element_Add_Attribute_Value_Decimal(element_, name, value);
        return *this;
    }
    Attributes& hex(const char* name, u64 value) {
        if (status_ == 0) status_ = LNF_XML_Element_Add_Attribute_Value_Hex(element_, name, value);
        return *this;
    }
    int status() const { return status_; }

private:
    LNF_XML_Element* element_;
    int status_;
};

LNF_XML_Element* add_child(LNF_XML_Element* parent, const char* tag) {
    return LNF_XML_Element_Add_Child_Element(parent, tag, kXML_PARENT_ELEMENT);
}

const char* name_or_null(const fileSpecType* file) {
    return file == nullptr ? nullptr : file->fullName;
}

std::string pair_text(u64 first, u64 second) {
    return std::to_string(first) + ":" + std::to_string(second);
}

// The words of a generic memory follow from the space.
bool has_depth(const BitLaneGridElemType* element) {
    const MEMORYLocType* memory = element->lane->memory;
    const bool isGeneric = memory != nullptr && (memory->type->sizeUnits & kGENERIC_MEMORY_CLASS) != 0;
    return !isGeneric && (element->addressLow != 0 || element->addressHigh != 0);
}

bool has_location(const BitLaneType* lane) {
    return lane->locKind != kLOC_KIND_NONE && lane->memory != nullptr &&
           (lane->memory->type->sizeUnits & kBLOCK_RAM_CLASSES) != 0;
}

int add_device(const BitLaneGridElemType* element, const char* eccWord, LNF_XML_Element* parent) {
    const BitLaneType* lane = element->lane;
    Attributes device(add_child(parent, xml::kDEVICE));
    device.text(xml::kINSTANCE, ((lane->isRelativePath ? xml::kRELATIVE_MARK : "") + std::string(lane->name)).c_str());
    device.text(xml::kTYPE, get_memory_type_string(lane->memory == nullptr ? nullptr : lane->memory->type));
    device.textIfSet(xml::kECC, eccWord);
    device.text(
        xml::kWIDTH, pair_text(return_bitLane_left_value(element), return_bitLane_right_value(element)).c_str());
    if (has_depth(element)) device.text(xml::kDEPTH, pair_text(element->addressLow, element->addressHigh).c_str());
    device.textIfSet(xml::kOUTPUT, name_or_null(lane->outputFile));
    device.textIfSet(xml::kINPUT, name_or_null(lane->inputFile));
    device.textIfSet(xml::kINIT, name_or_null(lane->initFile));
    if (has_location(lane))
        device.text(xml::kLOC, ("X" + std::to_string(lane->locColumn) + "Y" + std::to_string(lane->locRow)).c_str());
    return device.status();
}

int add_data_lanes(const BusBlockType* block, LNF_XML_Element* element) {
    BitLaneArrayType const* lanes = block->writtenLanes != nullptr ? block->writtenLanes : block->lanes;
    return output_XML_bitLanes_values(lanes, block->laneCount, nullptr, element);
}

// Each with its own code: one block may hold several.
int add_ecc_lanes(const BusBlockType* block, LNF_XML_Element* element) {
    int status = 0;
    for (u64 i = 0; i < block->eccLaneCount && status == 0; ++i)
        status = output_XML_bitLanes_values(
            block->eccLanes + i, 1, get_ECCAlgorithmType_string(block->eccLanes[i]->eccType), element);
    return status;
}

int add_block(const BusBlockType* block, LNF_XML_Element* parent) {
    LNF_XML_Element* element = add_child(parent, xml::kBLOCK);
    Attributes attributes(element);
    attributes.decimal(xml::kDEVICE_COUNT, block->laneCount);
    if (block->eccLaneCount != 0) attributes.decimal(xml::kECC_COUNT, block->eccLaneCount);
    int status = attributes.status();
    const bool isEccFirst = block->laneListOrder == kBitLaneListOrderEccFirst;
    if (status == 0) status = isEccFirst ? add_ecc_lanes(block, element) : add_data_lanes(block, element);
    if (status == 0) status = isEccFirst ? add_data_lanes(block, element) : add_ecc_lanes(block, element);
    return status;
}

int add_range(const AddressRangeDefType* range, LNF_XML_Element* parent) {
    LNF_XML_Element* element = add_child(parent, xml::kRANGE);
    Attributes attributes(element);
    attributes.text(xml::kTYPE, get_memory_type_string(range->memory == nullptr ? nullptr : range->memory->type));
    return attributes.status() == 0 ? output_XML_busBlocks(range, element) : attributes.status();
}

// The name without that of its map.
const char* short_name(const AddressSpaceDefType* space, const AddressMapType* map) {
    const size_t length = map->isNamed ? std::strlen(map->name) : 0;
    const bool hasPrefix =
        length != 0 && std::strncmp(space->name, map->name, length) == 0 && space->name[length] == '.';
    return hasPrefix ? space->name + length + 1 : space->name;
}

int add_space(const AddressSpaceDefType* space, const AddressMapType* map, LNF_XML_Element* parent) {
    LNF_XML_Element* element = add_child(parent, xml::kADDRESS_SPACE);
    Attributes attributes(element);
    attributes.text(xml::kNAME, short_name(space, map))
        .text(xml::kSTYLE, space->wordAddressing ? xml::kSTYLE_WORD : xml::kSTYLE_BYTE)
        .hex(xml::kSTART_ADDRESS, space->startAddress)
        .hex(xml::kEND_ADDRESS, space->endAddress)
        .textIfSet(xml::kINSTANCE, space->instancePath)
        .decimal(xml::kRANGE_COUNT, space->rangeCount);
    int status = attributes.status();
    for (const AddressRangeDefType* range = space->ranges; range != nullptr && status == 0; range = range->next)
        status = add_range(range, element);
    return status;
}

// Spaces that end alike stand newest first in a map: they are written the other way round, so that a reader, who
// inserts them one by one, has them in the same order again.
std::vector<const AddressSpaceDefType*> spaces_in_order_of_insertion(const AddressMapType* map) {
    std::vector<const AddressSpaceDefType*> spaces;
    for (const AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next)
        spaces.push_back(link->space);
    for (auto first = spaces.begin(); first != spaces.end();) {
        const auto last = std::find_if(first, spaces.end(),
            [first](const AddressSpaceDefType* space) { return space->endAddress != (*first)->endAddress; });
        std::reverse(first, last);
        first = last;
    }
    return spaces;
}

int add_map(const AddressMapType* map, LNF_XML_Element* parent) {
    LNF_XML_Element* element = add_child(parent, xml::kPROCESSOR);
    Attributes attributes(element);
    attributes.text(xml::kNAME, map->isNamed ? map->name : "")
        .text(xml::kTYPE, get_processorType_string(map->processorType))
        .decimal(xml::kID, map->processorId);
    if (map->isNamed) attributes.textIfSet(xml::kINSTANCE, map->instancePath);
    attributes.decimal(xml::kSPACE_COUNT, map->addressSpaceCount);
    int status = attributes.status();
    for (const AddressSpaceDefType* space : spaces_in_order_of_insertion(map))
        if (status == 0) status = add_space(space, map, element);
    return status;
}

int add_mapping(const AddressMappingType* mapping, LNF_XML* document) {
    LNF_XML_Element* element = add_child(document, xml::kADDRESS_MAP);
    Attributes attributes(element);
    attributes.text(xml::kVERSION, "1").text(xml::kMINOR, "0").decimal(xml::kPROCESSOR_COUNT, mapping->addressMapCount);
    int status = attributes.status();
    for (const AddressMapType* map = mapping->addressMaps; map != nullptr && status == 0; map = map->next)
        status = add_map(map, element);
    return status;
}

} // namespace

int output_XML_bitLanes_values(
    BitLaneArrayType const* lanes, u64 count, const char* eccWord, LNF_XML_Element* element) {
    int status = 0;
    for (u64 i = 0; i < count && status == 0; ++i)
        if (lanes[i] != nullptr) status = add_device(lanes[i], eccWord, element); // a copy of a template has gaps
    return status;
}

int output_XML_busBlocks(const AddressRangeDefType* range, LNF_XML_Element* element) {
    Attributes attributes(element);
    attributes.decimal(xml::kBUS_BLOCK_COUNT, range->busBlockCount);
    int status = attributes.status();
    for (u64 i = 0; i < range->busBlockCount && status == 0; ++i) status = add_block(range->busBlocks[i], element);
    return status;
}

int output_XML_BMM_file(fileSpecType* spec, const char* fileName, int flags, AddressMappingType* mapping) {
    if (mapping == nullptr) return 0;
    LNF_XML document;
    if (int status = add_mapping(mapping, &document); status != 0) return status;
    return LNF_XML_WriteXML(&document, spec, fileName, flags);
}

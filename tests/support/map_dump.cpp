// map_dump.cpp - address maps as text.
// SPDX-License-Identifier: Apache-2.0
#include "support/map_dump.h"

#include <functional>
#include <sstream>
#include <string_view>

namespace memdata::testing {
namespace {

constexpr u64 kCUT_RUN_AT_ZEROS = 8;

std::string hex(u64 value) {
    std::ostringstream text;
    text << "0x" << std::uppercase << std::hex << value;
    return text.str();
}

std::string span_text(u64 start, u64 end) {
    return hex(start) + "-" + hex(end);
}

// " word value" unless the value is 0.
std::string field(const char* word, u64 value) {
    return value == 0 ? "" : std::string(" ") + word + " " + std::to_string(value);
}

std::string flag(const char* word, bool set) {
    return set ? std::string(" ") + word : "";
}

std::string quoted(const char* word, const char* text) {
    return text == nullptr || *text == '\0' ? "" : std::string(" ") + word + " \"" + text + "\"";
}

std::string file_field(const char* word, const fileSpecType* file) {
    return file == nullptr ? "" : std::string(" ") + word + "=" + file->fullName;
}

std::string type_name(const MEMORYLocType* memory) {
    return memory == nullptr ? "none" : get_memory_type_string(memory->type);
}

std::string location(const BitLaneType* lane) {
    if (lane->locKind == kLOC_KIND_NONE) return "";
    return std::string(lane->locKind == kLOC_KIND_LOC ? " LOC" : " PLACED") + "=X" + std::to_string(lane->locColumn) +
           "Y" + std::to_string(lane->locRow);
}

std::string lane_line(const BitLaneGridElemType* element, const AddressRangeDefType* range) {
    if (element == nullptr) return "        (none)\n";
    const BitLaneType* lane = element->lane;
    std::ostringstream text;
    text << "        " << (lane->isRelativePath ? "*/" : "") << lane->name << "[" << return_bitLane_left_value(element)
         << ":" << return_bitLane_right_value(element) << "][" << element->addressLow << ":" << element->addressHigh
         << "]";
    if (element->eccType != kECC_NONE) text << " " << get_ECCAlgorithmType_string(element->eccType);
    if (lane->memory != range->memory) text << " " << type_name(lane->memory);
    text << field("parity", element->parityWidth) << location(lane) << file_field("INIT", lane->initFile)
         << file_field("INPUT", lane->inputFile) << file_field("OUTPUT", lane->outputFile) << "\n";
    return text.str();
}

std::string lane_names(const BitLaneArrayType* lanes, u64 count) {
    std::string names;
    for (u64 i = 0; i < count; ++i) names += std::string(" ") + lanes[i]->lane->name;
    return names;
}

std::string block_lines(const BusBlockType* block, const AddressRangeDefType* range) {
    std::string text = "      block " + span_text(block->startAddress, block->endAddress);
    if (block->busWidth != range->busWidth) text += " bus " + std::to_string(block->busWidth);
    text += field("pitch", block->lanePitch) + flag("ecc-first", block->laneListOrder == kBitLaneListOrderEccFirst);
    if (block->writtenLanes != nullptr) text += " written" + lane_names(block->writtenLanes, block->laneCount);
    text += "\n";
    for (u64 i = 0; i < block->laneCount; ++i) text += lane_line(block->lanes[i], range);
    for (u64 i = 0; i < block->eccLaneCount; ++i) text += lane_line(block->eccLanes[i], range);
    return text;
}

std::string range_lines(const AddressRangeDefType* range) {
    std::string text =
        "    range " + type_name(range->memory) + " " + span_text(range->startAddress, range->endAddress);
    text += field("bus", range->busWidth) + field("lane", range->laneWidth) + field("words", range->wordsPerDevice) +
            field("devices", range->deviceCount) + field("located", range->locatedDeviceCount) + "\n";
    for (u64 i = 0; i < range->busBlockCount; ++i) text += block_lines(range->busBlocks[i], range);
    return text;
}

std::string style_word(AddressSpaceStyleEnum style) {
    if (style == kAddressSpaceStyleSingle) return "";
    return style == kAddressSpaceStyleCombined ? " combined" : " grid";
}

std::string map_lines(const AddressMapType* map) {
    std::string text = std::string("map \"") + map->name + "\" " + get_processorType_string(map->processorType) + " " +
                       std::to_string(map->processorId) + quoted("path", map->instancePath) + "\n";
    for (const AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next)
        text += dumpSpace(link->space);
    return text;
}

void each_lane(const AddressSpaceDefType* space, const std::function<void(const BitLaneType*)>& visit) {
    for (const AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next)
        for (u64 i = 0; i < range->busBlockCount; ++i) {
            const BusBlockType* block = range->busBlocks[i];
            for (u64 k = 0; k < block->laneCount; ++k) visit(block->lanes[k]->lane);
            for (u64 k = 0; k < block->eccLaneCount; ++k) visit(block->eccLanes[k]->lane);
        }
}

std::string byte_runs(std::string_view kind, const char* name, const u8* bytes, u64 count) {
    std::ostringstream text;
    text << std::uppercase;
    u64 zeros = kCUT_RUN_AT_ZEROS; // behind the last byte that was shown
    bool open = false;
    for (u64 i = 0; bytes != nullptr && i < count; ++i) {
        if (bytes[i] == 0) {
            ++zeros;
            continue;
        }
        if (zeros >= kCUT_RUN_AT_ZEROS) {
            text << (open ? "\n" : "") << kind << " " << name << " " << std::dec << i << ":";
            zeros = 0;
        }
        for (; zeros != 0; --zeros) text << " 00";
        text << " " << std::hex << (bytes[i] < 16 ? "0" : "") << u32{bytes[i]};
        open = true;
    }
    if (open) text << "\n";
    return text.str();
}

std::string range_list(const std::string& heading, const TransformRangeType* range) {
    std::string text;
    for (; range != nullptr; range = range->next) {
        text += heading + " " + hex(range->start) + "+" + std::to_string(range->size);
        if (range->hasStartAddress) text += " start " + hex(range->startAddress);
        text += std::string(" ") + (range->name == nullptr ? "" : range->name) + "\n";
    }
    return text;
}

} // namespace

std::string dumpSpace(const AddressSpaceDefType* space) {
    std::string text = std::string("  space ") + space->name + " " + span_text(space->startAddress, space->endAddress) +
                       style_word(space->style) + flag("words", space->wordAddressing) +
                       flag("ecc-combined", space->eccCombinedForSimulation) + flag("template", space->isTemplate) +
                       flag("turned", space->leLaneOrderApplied) + quoted("path", space->instancePath);
    if (space->templateSpace != nullptr) text += quoted("of", space->templateSpace->name);
    text += "\n";
    for (const AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next)
        text += range_lines(range);
    return text;
}

std::string dumpMapping(const AddressMappingType* mapping) {
    std::string text = std::string("mapping ") + mapping->bmmBaseName + field("spaces", mapping->addressSpaceCount) +
                       field("statements", mapping->statementCount) + "\n";
    for (const AddressMapType* map = mapping->addressMaps; map != nullptr; map = map->next) text += map_lines(map);
    if (mapping->templateMap != nullptr) text += map_lines(mapping->templateMap);
    if (mapping->initLanes == nullptr) return text;
    text += "init";
    for (const BitLaneGridElemType* element = mapping->initLanes; element != nullptr;
         element = element->lane->nextInitLane)
        text += std::string(" ") + element->lane->name;
    return text + "\n";
}

std::string listSpaces(const AddressMappingType* mapping) {
    std::string text;
    for (const AddressMapType* map = mapping->addressMaps; map != nullptr; map = map->next) {
        text += std::string(map->name) + ":";
        for (const AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next)
            text += std::string(" ") + link->space->name;
        text += "\n";
    }
    return text;
}

std::string dumpData(const AddressSpaceDefType* space) {
    std::string text;
    each_lane(space, [&](const BitLaneType* lane) {
        text += byte_runs("lane", lane->name, lane->dataSliver, lane->memory->type->dataBits / 8);
        text += byte_runs("parity", lane->name, lane->paritySliver, lane->memory->type->parityBits / 8);
    });
    return text;
}

std::string dumpRanges(const AddressSpaceDefType* space) {
    std::string text = range_list("space", space->transformRanges);
    each_lane(space,
        [&](const BitLaneType* lane) { text += range_list(std::string("lane ") + lane->name, lane->transformRanges); });
    return text;
}

} // namespace memdata::testing

// map_command.cpp - see map_command.h.
// SPDX-License-Identifier: Apache-2.0
#include "map_command.h"

#include "BmmUtils/location_strings.h"
#include "BmmUtils/model/records.h"
#include "BmmUtils/model/text.h"
#include "CmdParseUtils/CmdParseUtils.h"
#include "DeviceTableUtils/DeviceTableUtils.h"
#include "StringUtils/format.h"
#include "console.h"
#include "help_command.h"
#include "lanefillCore/driver.h"
#include "option_string.h"
#include "progress_bar.h"
#include "run_command.h"
#include "run_resources.h"

#include <algorithm>
#include <array>
#include <new>
#include <vector>

namespace memdata {
namespace {

enum Column : size_t { kADDRESSES, kBITS, kMEMORY, kKIND, kWORDS, kPLACE, kCOLUMN_COUNT };
using Row = std::array<std::string, kCOLUMN_COUNT>;

constexpr const char* kHEADING[kCOLUMN_COUNT] = {"addresses", "bits", "memory", "type", "words", "location"};

std::string address(u64 value) {
    return value > UINT32_MAX ? formatted("0x%016llX", value) : formatted("0x%08llX", value);
}

std::string addresses(u64 first, u64 last) {
    return address(first) + " to " + address(last);
}

std::string place(const BitLaneType* lane) {
    if (lane->locKind == kLOC_KIND_NONE) return "-";
    std::array<char, kLOCATION_TEXT_BYTES> text;
    return get_BRAM_LOC_string(lane, text.data());
}

Row laneRow(const BitLaneGridElemType* element) {
    const BitLaneType* lane = element->lane;
    Row row;
    row[kBITS] = formatted("[%lld:%lld]", return_bitLane_left_value(element), return_bitLane_right_value(element));
    row[kMEMORY] = lane->name;
    row[kKIND] = lane->memory->type->name;
    if (element->eccType != kECC_NONE) row[kKIND] += std::string(" ") + get_ECCAlgorithmType_string(element->eccType);
    row[kWORDS] = formatted("[%lld:%lld]", element->addressLow, element->addressHigh);
    row[kPLACE] = place(lane);
    return row;
}

// A row for each lane as the map lists them; the first one of a block shows the block's addresses.
void addBlock(std::vector<Row>& rows, const BusBlockType* block) {
    const size_t first = rows.size();
    BitLaneArrayType* const lanes = block->writtenLanes != nullptr ? block->writtenLanes : block->lanes;
    for (u64 i = 0; i < block->laneCount; ++i) rows.push_back(laneRow(lanes[i]));
    const size_t behindData = rows.size();
    for (u64 i = 0; i < block->eccLaneCount; ++i) rows.push_back(laneRow(block->eccLanes[i]));
    if (block->laneListOrder == kBitLaneListOrderEccFirst)
        std::rotate(rows.begin() + static_cast<std::ptrdiff_t>(first),
            rows.begin() + static_cast<std::ptrdiff_t>(behindData), rows.end());
    if (rows.size() > first) rows[first][kADDRESSES] = addresses(block->startAddress, block->endAddress);
}

std::string tableOf(const std::vector<Row>& rows) {
    std::array<size_t, kCOLUMN_COUNT> widths{};
    for (size_t column = 0; column < kCOLUMN_COUNT; ++column)
        for (const Row& row : rows) widths[column] = std::max(widths[column], row[column].size());
    std::string text;
    for (const Row& row : rows) {
        std::string line = "   ";
        for (size_t column = 0; column < kCOLUMN_COUNT; ++column)
            line += " " + row[column] + std::string(widths[column] - row[column].size() + 1, ' ');
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

std::string spaceTable(const AddressSpaceDefType* space) {
    std::vector<Row> rows(1);
    std::copy_n(kHEADING, kCOLUMN_COUNT, rows.front().begin());
    u64 busWidth = 0;
    for (const AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next) {
        busWidth = std::max(busWidth, range->busWidth);
        for (u64 i = 0; i < range->busBlockCount; ++i) addBlock(rows, range->busBlocks[i]);
    }
    return "  ADDRESS_SPACE " + std::string(space->name) + ", " + addresses(space->startAddress, space->endAddress) +
           formatted(", %lld %s, bus of %lld bits, %lld memories\n", space->rangeByteTotal,
               space->wordAddressing ? "words" : "bytes", busWidth, space->deviceCount) +
           tableOf(rows);
}

std::string headOf(const AddressMapType* map) {
    if (!map->isNamed) return "Without a processor\n";
    std::string text = "ADDRESS_MAP " + std::string(map->name) + ", " + get_processorType_string(map->processorType) +
                       formatted(" %lld", map->processorId);
    if (map->instancePath != nullptr && *map->instancePath != '\0') text += std::string(", ") + map->instancePath;
    return text + "\n";
}

int showMap(CmdStringOptionsType* options) {
    if (options->bmmFiles == nullptr) {
        printError("map takes an address map: lanefill map soc.bmm");
        return 1;
    }
    Tracked<AddressMappingType, close_bmm_addressMapping> mapping;
    if (int status = open_bmm_addressMapping(options, mapping.out()); status != 0) return status;
    return print(mapTable(mapping.get()));
}

int runOnOptions(const char* text) {
    OwnedOptions options;
    int count = -1; // no program name ahead of the switches
    int status = ParseCmdStringOptions(text, options.get(), &count);
    if (status == 0) status = FinalizeCmdStringOptions(options.get());
    if (status == 0) status = showMap(options.get());
    return status;
}

} // namespace

std::string mapTable(const AddressMappingType* mapping) {
    std::string text;
    if (mapping->device != nullptr) text += std::string("Device ") + deviceName(mapping->device) + "\n\n";
    for (const AddressMapType* map = mapping->addressMaps; map != nullptr; map = map->next) {
        if (map != mapping->addressMaps) text += "\n";
        text += headOf(map);
        for (const AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next)
            text += (link == map->addressSpaces ? "" : "\n") + spaceTable(link->space);
    }
    return text;
}

int runMapCommand(std::span<char* const> words) {
    try {
        // A map ahead of the switches stands for itself.
        std::string mapSwitch = "-bm";
        std::vector<char*> options(words.begin(), words.end());
        if (!options.empty() && options.front()[0] != '-') options.insert(options.begin(), mapSwitch.data());
        std::string text;
        if (int status = optionTextOf(options, &text); status != 0) return status;
        const RunResources resources;
        if (resources.status() != 0) return finishPrinting(resources.status());
        const ShownProgress bar;
        const int status = runOnOptions(text.c_str());
        return status == kHELP_WANTED ? printTopic("map") : exitStatusOf(status);
    } catch (const std::bad_alloc&) {
        return reportExhaustedMemory();
    }
}

} // namespace memdata

// map_builder.cpp - address maps for tests.
// SPDX-License-Identifier: Apache-2.0
#include "support/map_builder.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace memdata::testing {
namespace {

struct MemoryRow {
    const char* name;
    u32 sizeUnits;
    u64 dataBits;
    u32 parityBits;
    bool hasParityWidths;
    bool hasInterleavedParity;
    u32 subRowFactor;
    std::vector<u32> widths;
};

// The memories of a modern device, and the smaller ones of others.
const std::vector<MemoryRow>& memory_rows() {
    static const std::vector<MemoryRow> rows = {
        // name    units   data parity  widths inter- sub  lane widths
        //                 bits   bits   count leaved rows
        {"RAMB4", 1, 4096, 0, false, false, 1, {1, 2, 4, 8, 16}},
        {"RAMB8", 2, 8192, 1024, false, true, 1, {1, 2, 4, 8, 16, 32}},
        {"RAMB9", 2, 8192, 1024, true, true, 1, {1, 2, 4, 8, 16, 32}},
        {"RAMB16", 4, 16384, 2048, false, true, 2, {1, 2, 4, 8, 16, 32}},
        {"RAMB18", 4, 16384, 2048, true, true, 2, {1, 2, 4, 9, 18, 36}},
        {"RAMB32", 8, 32768, 4096, false, true, 1, {1, 2, 4, 8, 16, 32, 64}},
        {"RAMB36", 8, 32768, 4096, true, true, 1, {1, 2, 4, 9, 18, 36, 72}},
    };
    return rows;
}

[[noreturn]] void refuse(const std::string& what, const std::string& text) {
    throw std::invalid_argument("map_builder: " + what + " '" + text + "'");
}

template<class T>
T* made(T* record) {
    if (record == nullptr) throw std::runtime_error("map_builder: out of memory");
    return record;
}

void succeed(int status, const char* step) {
    if (status != 0) throw std::runtime_error(std::string("map_builder: ") + step + " gave " + std::to_string(status));
}

// One lane as it is written.
struct LaneText {
    std::string name;
    u64 left = 0, right = 0;
    bool hasAddresses = false;
    u64 addressLow = 0, addressHigh = 0;
    u32 eccType = kECC_NONE;
    bool relative = false;
    u32 locKind = kLOC_KIND_NONE, locRow = 0, locColumn = 0;
    std::string memory, init, input, output;
};

// "name[7:0]" or "name[7:0][0:2047]"
LaneText read_lane(const std::string& word) {
    LaneText lane;
    lane.name = word.substr(0, word.find('['));
    int used = 0;
    const char* rest = word.c_str() + lane.name.size();
    if (std::sscanf(rest, "[%lu:%lu]%n", &lane.left, &lane.right, &used) != 2 || used == 0) refuse("no lane", word);
    rest += used;
    if (*rest == '\0') return lane;
    used = 0;
    if (std::sscanf(rest, "[%lu:%lu]%n", &lane.addressLow, &lane.addressHigh, &used) != 2 || rest[used] != '\0')
        refuse("no lane", word);
    lane.hasAddresses = true;
    return lane;
}

void read_location(LaneText& lane, u32 kind, const std::string& value) {
    lane.locKind = kind;
    if (std::sscanf(value.c_str(), "X%uY%u", &lane.locColumn, &lane.locRow) == 2) return;
    if (std::sscanf(value.c_str(), "R%uC%u", &lane.locRow, &lane.locColumn) != 2) refuse("no location", value);
}

void read_modifier(LaneText& lane, const std::string& word) {
    const size_t equals = word.find('=');
    const std::string key = word.substr(0, equals);
    const std::string value = equals == word.npos ? "" : word.substr(equals + 1);
    if (key == "INIT")
        lane.init = value;
    else if (key == "INPUT")
        lane.input = value;
    else if (key == "OUTPUT")
        lane.output = value;
    else if (key == "LOC")
        read_location(lane, kLOC_KIND_LOC, value);
    else if (key == "PLACED")
        read_location(lane, kLOC_KIND_PLACED, value);
    else if (word == "*/")
        lane.relative = true;
    else if (const u32 ecc = get_ECC_type(word.c_str()); ecc != kECC_NONE)
        lane.eccType = ecc;
    else
        lane.memory = word;
}

std::vector<LaneText> read_block(const std::string& text) {
    std::vector<LaneText> lanes;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (word.find('[') != word.npos)
            lanes.push_back(read_lane(word));
        else if (lanes.empty())
            refuse("a word ahead of all lanes", word);
        else
            read_modifier(lanes.back(), word);
    }
    return lanes;
}

fileSpecType* file_or_null(const std::string& name) {
    return name.empty() ? nullptr : made(CreateFileSpec(name.c_str()));
}

u64 device_bits(const MEMORYType* type) {
    return type->dataBits + (type->hasParityWidths ? type->parityBits : 0);
}

BitLaneGridElemType* make_lane(AddressSpaceDefType* space, MEMORYLocType* memory, const LaneText& text, u64 next) {
    const u64 low = std::min(text.left, text.right);
    const u64 high = std::max(text.left, text.right);
    const u64 width = high + 1 - low;
    const u64 bits = width >= 5 ? device_bits(memory->type) : memory->type->dataBits;
    const u64 addressLow = text.hasAddresses ? text.addressLow : next;
    const u64 addressHigh = text.hasAddresses ? text.addressHigh : next + bits / width - 1;
    const u32 ordering = text.right > text.left ? kBIT_ORDERING_ASCENDING : kBIT_ORDERING_DESCENDING;
    BitLaneGridElemType* element = made(create_bitLane_grid_element(nullptr, text.name.c_str(), memory, text.relative,
        low, high, addressLow, addressHigh, ordering, text.eccType, text.locRow, text.locColumn, text.locKind, space,
        file_or_null(text.init), file_or_null(text.input), file_or_null(text.output)));
    enter_context_symbol(text.name.c_str(), space->map->instanceNames, element, nullptr);
    return element;
}

BitLaneArrayType* make_array(const std::vector<BitLaneGridElemType*>& elements) {
    BitLaneArrayType* array = made(newBitLaneArray(elements.size()));
    std::ranges::copy(elements, array);
    return array;
}

u64 width_of(const std::vector<BitLaneGridElemType*>& elements) {
    u64 width = 0;
    for (const BitLaneGridElemType* element : elements) width += element->laneWidth;
    return width;
}

void set_parity_width(BitLaneGridElemType* element, const MEMORYType* type) {
    for (size_t i = 0; i < kMAX_LANE_WIDTHS && type->widths[i] != 0; ++i)
        if (type->widths[i] == element->laneWidth)
            element->parityWidth = element->lane->parityWidth = type->parityWidths[i];
}

bool is_little_endian(const AddressMapType* map) {
    return (map->processorType & (kPROCESSOR_KESTREL_LE | kPROCESSOR_ARM | kPROCESSOR_RISCV)) != 0;
}

// Little-endian maps are written big end first: the bytes of the bus change sides, the lanes of a byte do not.
void turn_lanes(AddressSpaceDefType* space, const AddressRangeDefType* range, BusBlockType* block) {
    if (!is_little_endian(space->map) || range->busWidth % 8 != 0) return;
    space->leLaneOrderApplied = true;
    if (range->laneWidth > 8) block->lanePitch = range->laneWidth;
    if (block->laneCount < 2 || range->busWidth < 8) return;
    block->writtenLanes = made(newBitLaneArray(block->laneCount));
    std::copy_n(block->lanes, block->laneCount, block->writtenLanes);
    const u64 group = range->laneWidth > 8 ? 1 : 8 / range->laneWidth;
    for (u64 i = 0; i + group <= block->laneCount; i += group)
        std::copy_n(block->writtenLanes + i, group, block->lanes + (block->laneCount - group - i));
}

void lay_out_block(AddressSpaceDefType* space, const AddressRangeDefType* range, BusBlockType* block) {
    const u64 bits = device_bits(range->memory->type);
    block->laneWidth = block->laneCount == 0 ? 0 : block->lanes[0]->laneWidth;
    block->wordsPerDevice = block->laneWidth == 0 ? 0 : bits / block->laneWidth;
    block->byteSize = (range->wordAddressing ? block->wordsPerDevice : bits / 8) * block->laneCount;
    block->startAddress = space->nextAddress;
    block->endAddress = block->startAddress + block->byteSize - 1;
    space->nextAddress = block->endAddress + 1;
    for (u64 i = 0; i < block->laneCount; ++i) set_parity_width(block->lanes[i], range->memory->type);
}

void lay_out_range(AddressSpaceDefType* space, AddressRangeDefType* range) {
    range->wordAddressing = space->wordAddressing;
    range->startAddress = space->nextAddress;
    for (u64 i = 0; i < range->busBlockCount; ++i) {
        lay_out_block(space, range, range->busBlocks[i]);
        range->byteTotal += range->busBlocks[i]->byteSize;
    }
    range->endAddress = space->nextAddress - 1;
    space->rangeByteTotal += range->byteTotal;
    if (range->busBlockCount == 0) return;
    const BusBlockType* block = range->busBlocks[0];
    range->wordsPerDevice = block->wordsPerDevice;
    range->laneWidth = block->laneWidth;
    range->blockByteSize = block->byteSize;
    range->busWidth = block->busWidth;
    range->hasRelativePaths = block->hasRelativePaths;
    for (u64 i = 0; i < range->busBlockCount; ++i) turn_lanes(space, range, range->busBlocks[i]);
}

} // namespace

void layOut(AddressSpaceDefType* space) {
    space->nextAddress = space->startAddress;
    for (AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next) lay_out_range(space, range);
    if (space->ranges != nullptr) space->hasRelativePaths = space->ranges->hasRelativePaths;
}

TestMap::TestMap(const char* baseFile, StrList workflowOps)
    : mapping_(made(create_addressMapping_element(baseFile, nullptr, false, workflowOps, nullptr))) {}

TestMap::~TestMap() {
    delete_addressMapping(&mapping_);
}

AddressMapType* TestMap::map(const char* name, const char* processor, u32 id, const char* path) {
    succeed(
        create_and_insert_addressMap(mapping_, name != nullptr, name, path, get_processorType(processor), id, &map_),
        "create_and_insert_addressMap");
    return map_;
}

MEMORYLocType* TestMap::define(const char* name, u64 bytes, const std::vector<u32>& widths) {
    names_.emplace_back(name);
    MEMORYType type{};
    type.name = names_.back().c_str();
    type.cellName = type.name;
    type.sizeUnits = names_.back() == "MEMORY" ? kGENERIC_MEMORY_CLASS : kUSER_MEMORY_CLASS;
    type.dataBits = bytes * 8;
    type.subRowFactor = 1;
    std::ranges::copy(widths, type.widths);
    types_.push_back(type);
    memories_.push_back({&types_.back(), nullptr, nullptr, 1, nullptr});
    return &memories_.back();
}

MEMORYLocType* TestMap::memory_(const std::string& name) {
    for (MEMORYLocType& memory : memories_)
        if (memory.type->name == name) return &memory;
    for (const MemoryRow& row : memory_rows()) {
        if (row.name != name) continue;
        MEMORYType type{};
        type.name = type.cellName = row.name;
        type.sizeUnits = row.sizeUnits;
        type.dataBits = row.dataBits;
        type.parityBits = row.parityBits;
        type.isBlockRam = true;
        type.hasParityWidths = row.hasParityWidths;
        type.hasInterleavedParity = row.hasInterleavedParity;
        type.subRowFactor = row.subRowFactor;
        std::ranges::copy(row.widths, type.widths);
        for (size_t i = 0; i < row.widths.size(); ++i)
            if (row.hasParityWidths && row.widths[i] % 9 == 0) type.parityWidths[i] = row.widths[i] / 9;
        types_.push_back(type);
        memories_.push_back({&types_.back(), nullptr, nullptr, 0, nullptr});
        return &memories_.back();
    }
    refuse("no memory", name);
}

AddressMapType* TestMap::currentMap_(bool isTemplate) {
    if (!isTemplate) return map_ != nullptr ? map_ : map(nullptr);
    if (mapping_->templateMap == nullptr)
        mapping_->templateMap = made(create_addressMap_element(mapping_, false, "ADDRESS_SPACE_TEMPLATES", "", 1, 0));
    return mapping_->templateMap;
}

BusBlockType* TestMap::makeBlock_(
    AddressSpaceDefType* space, MEMORYLocType* memory, const std::string& text, u64 next) {
    const std::vector<LaneText> texts = read_block(text);
    std::vector<MEMORYLocType*> memories; // texts that cannot be read throw here, ahead of the first record
    for (const LaneText& lane : texts) memories.push_back(lane.memory.empty() ? memory : memory_(lane.memory));

    std::vector<BitLaneGridElemType*> lanes, eccLanes;
    BusBlockType* block = made(create_busBlock_element(0, 0));
    for (size_t i = 0; i < texts.size(); ++i) {
        const LaneText& lane = texts[i];
        BitLaneGridElemType* element = make_lane(space, memories[i], lane, next);
        (lane.eccType == kECC_NONE ? lanes : eccLanes).push_back(element);
        if (block->laneListOrder == kBitLaneListOrderNone) {
            block->laneListOrder = lane.eccType == kECC_NONE ? kBitLaneListOrderDataFirst : kBitLaneListOrderEccFirst;
            block->hasRelativePaths = lane.relative;
        }
        if (lane.locKind != kLOC_KIND_NONE) ++space->lastRange->locatedDeviceCount;
    }
    block->lanes = make_array(lanes);
    block->laneCount = lanes.size();
    block->busWidth = width_of(lanes);
    if (!eccLanes.empty()) {
        block->eccLanes = make_array(eccLanes);
        block->eccLaneCount = eccLanes.size();
        block->eccBusWidth = width_of(eccLanes);
        block->eccType = eccLanes[0]->eccType;
    }
    return block;
}

void TestMap::addRange_(AddressSpaceDefType* space, const RangeText& text) {
    AddressRangeDefType* range = made(create_addressRange_element(memory_(text.memory), 0, 0));
    insert_addressRange_element(space, range);
    range->busBlocks = made(newBusBlockArray(text.blocks.size()));
    u64 next = 0;
    for (const std::string& blockText : text.blocks) {
        BusBlockType* block = makeBlock_(space, range->memory, blockText, next);
        range->busBlocks[range->busBlockCount++] = block;
        range->deviceCount += block->laneCount + block->eccLaneCount;
        if (block->laneCount != 0) next = block->lanes[0]->addressHigh + 1;
    }
    space->deviceCount += range->deviceCount;
}

AddressSpaceDefType* TestMap::space(const char* name, u64 start, const std::string& memory,
    const std::vector<std::string>& blocks, const SpaceOptions& options) {
    return space(name, start, std::vector<RangeText>{{memory, blocks}}, options);
}

AddressSpaceDefType* TestMap::space(
    const char* name, u64 start, const std::vector<RangeText>& ranges, const SpaceOptions& options) {
    AddressMapType* map = currentMap_(options.isTemplate);
    symbol_context* names = options.isTemplate ? mapping_->symbolSpaces->templateNames : spaceNames();
    const AddressSpaceStyleEnum style =
        options.style.value_or(ranges.size() > 1 ? kAddressSpaceStyleCombined : kAddressSpaceStyleSingle);
    OwnedString path(options.path == nullptr ? nullptr : made(StrDup(options.path)));
    OwnedSpace space;
    succeed(create_addressSpace_element(nullptr, names, nullptr, name, path.get(), mapping_, map, start, start, nullptr,
                style, options.eccCombined, options.isTemplate, options.wordAddressing, space.out()),
        "create_addressSpace_element");
    path.release();
    for (const RangeText& range : ranges) addRange_(space.get(), range);
    if (options.finished)
        layOut(space.get());
    else if (!options.endAddress)
        refuse("no end address for an unfinished space", name);
    space->endAddress = options.endAddress.value_or(space->nextAddress - 1);
    if (!options.finished && style == kAddressSpaceStyleSingle && space->ranges != nullptr) {
        space->ranges->startAddress = start;
        space->ranges->endAddress = space->endAddress;
    }
    succeed(insert_addressSpace_element(mapping_, names, space.get(), map), "insert_addressSpace_element");
    return space.release();
}

AddressSpaceLinkType* TestMap::link(const char* spaceName) const {
    AddressSpaceLinkType* found = nullptr;
    if (lookup_addressSpace_by_name(spaceName, spaceNames(), &found) != 0) refuse("no space", spaceName);
    return found;
}

BitLaneGridElemType* TestMap::lane(const char* laneName) const {
    for (AddressMapType* map = mapping_->addressMaps; map != nullptr; map = map->next)
        if (const symbol_entry* entry = lookup_context_symbol(laneName, true, map->instanceNames); entry != nullptr)
            return static_cast<BitLaneGridElemType*>(entry->value);
    refuse("no lane", laneName);
}

} // namespace memdata::testing

// annotated_ranges.cpp - ranges, blocks and lanes of an annotated map.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_map.h"
#include "BmmUtils/annotated_parts.h"
#include "BmmUtils/location_strings.h"
#include "BmmUtils/model/text.h"
#include "BmmUtils/validation.h"

#include <span>

namespace {

using namespace memdata;

constexpr unsigned kSTEP = 4; // blanks of one level

u32 memory_class(const MEMORYLocType* memory) {
    return memory == nullptr || memory->type == nullptr ? 0 : memory->type->sizeUnits;
}

const char* memory_word(const MEMORYLocType* memory) {
    return get_memory_type_string(memory == nullptr ? nullptr : memory->type);
}

// Whether a reader gives the lane the same memory and the same addresses when none are written. Those of a generic
// memory follow from the map. rangeMemory: null when it is not known.
bool has_usual_addresses(const BitLaneGridElemType* element, const MEMORYLocType* rangeMemory) {
    if (element->addressLow == 0 && element->addressHigh == 0) return true;
    const MEMORYLocType* memory = element->lane->memory;
    if (!isGenericMemory(memory) || (rangeMemory != nullptr && !isGenericMemory(rangeMemory))) return false;
    const u64 words = element->laneWidth == 0 ? 0 : memory->type->dataBits / element->laneWidth;
    return words != 0 && element->wordCount == words && element->addressLow % words == 0;
}

void put_file(AnnotatedText& text, std::string_view word, const fileSpecType* file) {
    if (file == nullptr) return;
    text << word << fileNameText(file->fullName == nullptr ? "" : file->fullName);
}

void put_location(AnnotatedText& text, const BitLaneType* lane) {
    if (lane->locKind == kLOC_KIND_NONE || (memory_class(lane->memory) & kBLOCK_RAM_CLASSES) == 0) return;
    char place[kLOCATION_TEXT_BYTES];
    text << (lane->locKind == kLOC_KIND_LOC ? " LOC = " : " PLACED = ") << get_BRAM_LOC_string(lane, place);
}

void put_lane(
    AnnotatedText& text, const BitLaneGridElemType* element, const MEMORYLocType* rangeMemory, unsigned indent) {
    const BitLaneType* lane = element->lane;
    text.line(indent) << (lane->isRelativePath ? "*/" : "") << static_cast<const char*>(lane->name) << " ";
    const bool usual = has_usual_addresses(element, rangeMemory);
    // A second word MEMORY would make a second memory.
    const bool sharesGeneric = lane->memory == rangeMemory && isGenericMemory(rangeMemory);
    if (!usual && !sharesGeneric) text << memory_word(lane->memory) << " ";
    if (element->eccType != kECC_NONE) text << get_ECCAlgorithmType_string(element->eccType) << " ";
    text << "[" << return_bitLane_left_value(element) << ":" << return_bitLane_right_value(element) << "]";
    if (!usual) text << " [" << element->addressLow << ":" << element->addressHigh << "]";
    put_file(text, " OUTPUT = ", lane->outputFile);
    put_file(text, " INPUT = ", lane->inputFile);
    put_file(text, " INIT = ", lane->initFile);
    put_location(text, lane);
    text << ";\n";
}

void put_lanes(AnnotatedText& text, std::span<BitLaneGridElemType* const> elements, const MEMORYLocType* rangeMemory,
    unsigned indent) {
    for (const BitLaneGridElemType* element : elements)
        if (element != nullptr) put_lane(text, element, rangeMemory, indent);
}

void put_block_lanes(
    AnnotatedText& text, const BusBlockType* block, const MEMORYLocType* rangeMemory, unsigned indent) {
    const std::span<BitLaneGridElemType* const> eccLanes{block->eccLanes, block->eccLaneCount};
    const std::span<BitLaneGridElemType* const> lanes{
        block->writtenLanes != nullptr ? block->writtenLanes : block->lanes, block->laneCount};
    const bool eccFirst = block->laneListOrder == kBitLaneListOrderEccFirst;
    put_lanes(text, eccFirst ? eccLanes : lanes, rangeMemory, indent);
    put_lanes(text, eccFirst ? lanes : eccLanes, rangeMemory, indent);
}

void put_blocks(AnnotatedText& text, const AddressRangeDefType* range, unsigned indent) {
    for (u64 i = 0; i < range->busBlockCount; ++i) {
        if (i > 0) text << "\n";
        text.line(indent) << "BUS_BLOCK\n";
        put_block_lanes(text, range->busBlocks[i], range->memory, indent + kSTEP);
        text.line(indent) << "END_BUS_BLOCK;\n";
    }
}

void put_range(AnnotatedText& text, const AddressRangeDefType* range, unsigned indent) {
    putTitle(text, indent,
        "Address range " + addressText(range->startAddress) + ":" + addressText(range->endAddress) + " (" +
            sizeText(range->startAddress, range->endAddress, range->wordAddressing) + ").");
    text.line(indent) << "ADDRESS_RANGE " << memory_word(range->memory) << "\n";
    put_blocks(text, range, indent + kSTEP);
    text.line(indent) << "END_ADDRESS_RANGE;\n";
}

} // namespace

void memdata::putRanges(AnnotatedText& text, const AddressSpaceDefType* space, unsigned indent) {
    if (space->rangeCount == 1) return put_blocks(text, space->ranges, indent);
    for (const AddressRangeDefType* range = space->ranges; range != nullptr; range = range->next) {
        if (range != space->ranges) text << "\n";
        put_range(text, range, indent);
    }
}

int output_BMM_addressRanges(fileIODescriptor* file, AddressSpaceLinkType* link, unsigned indent) {
    if (file == nullptr) return 3;
    AnnotatedText text(file);
    if (link != nullptr) putRanges(text, link->space, indent);
    return text.flush();
}

int output_BMM_busBlocks(fileIODescriptor* file, AddressRangeDefType* range, unsigned indent) {
    if (file == nullptr) return 3;
    AnnotatedText text(file);
    if (range != nullptr) put_blocks(text, range, indent);
    return text.flush();
}

int output_BMM_bitLanes(fileIODescriptor* file, BusBlockType* block, unsigned indent) {
    if (file == nullptr) return 3;
    AnnotatedText text(file);
    if (block != nullptr) put_block_lanes(text, block, nullptr, indent);
    return text.flush();
}

int output_BMM_bitLanes_values(fileIODescriptor* file, BitLaneArrayType* lanes, u64 count, unsigned indent) {
    if (file == nullptr) return 3;
    AnnotatedText text(file);
    if (lanes != nullptr) put_lanes(text, {lanes, count}, nullptr, indent);
    return text.flush();
}

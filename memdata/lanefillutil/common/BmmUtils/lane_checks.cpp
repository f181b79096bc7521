// lane_checks.cpp - the lanes of one bus block: widths, paths, bits.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/messages.h"
#include "BmmUtils/validation.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <span>

namespace {

using namespace memdata;

constexpr u64 kMAX_CHECKED_BUS_BITS = 128; // what the codes of check lanes are computed over

std::span<BitLaneGridElemType* const> data_lanes(const BusBlockType* block) {
    return {block->lanes, block->laneCount};
}
std::span<BitLaneGridElemType* const> ecc_lanes(const BusBlockType* block) {
    return {block->eccLanes, block->eccLaneCount};
}

int report_width(const char* spaceName, const BitLaneGridElemType* element, const char* widthsText) {
    return PrintError(kERROR_ILLEAGAL_BIT_LANE_WIDTH, 3, spaceName, element->lane->name,
        return_bitLane_left_value(element), return_bitLane_right_value(element), element->laneWidth, widthsText);
}

bool is_too_wide(const BitLaneGridElemType* element) {
    return element->laneWidth > kMAX_LANE_DATA_BITS + element->parityWidth;
}

// One report for the whole block. The widths of ECC lanes are free, as far as they fit.
int check_widths(const AddressSpaceDefType* space, const BusBlockType* block, const MEMORYType* type) {
    constexpr const char* kWIDTHS_THAT_FIT = "1 to 64";
    for (BitLaneGridElemType* element : data_lanes(block)) {
        if (check_for_valid_bitLanes(element, type) < 0)
            return report_width(space->name, element, type == nullptr ? "" : type->widthsText);
        if (is_too_wide(element)) return report_width(space->name, element, kWIDTHS_THAT_FIT);
    }
    for (const BitLaneGridElemType* element : ecc_lanes(block))
        if (is_too_wide(element)) return report_width(space->name, element, kWIDTHS_THAT_FIT);
    return 0;
}

int check_bus_for_codes(const AddressSpaceDefType* space, const BusBlockType* block) {
    if (block->eccLaneCount == 0 || block->busWidth <= kMAX_CHECKED_BUS_BITS) return 0;
    return PrintError(kERROR_MESSAGE_STRING, 3,
        formatted("Illegal bus width in ADDRESS_SPACE '%s'.\n"
                  "    ECC lanes check a bus of up to %lld bits, but this one has %lld.",
            space->name, kMAX_CHECKED_BUS_BITS, block->busWidth));
}

// Neighbours, up to the first two that differ in width.
int check_likeness(const AddressSpaceDefType* space, const BusBlockType* block) {
    int status = 0;
    for (u64 i = 1; i < block->laneCount; ++i) {
        const BitLaneGridElemType* before = block->lanes[i - 1];
        const BitLaneGridElemType* element = block->lanes[i];
        if (before->laneWidth != element->laneWidth)
            return PrintError(kERROR_INCONSISTENT_BIT_LANE_WIDTH, 3, space->name, before->lane->name,
                return_bitLane_left_value(before), return_bitLane_right_value(before), before->laneWidth,
                element->lane->name, return_bitLane_left_value(element), return_bitLane_right_value(element),
                element->laneWidth);
        if (before->lane->isRelativePath != element->lane->isRelativePath)
            status = PrintError(kERROR_INCONSISTENT_INSTANCE_PATH, 3, element->lane->name, space->name);
    }
    return status;
}

// The bus bits that the lanes of a block use.
struct BusSpan {
    u64 low = UINT64_MAX;
    u64 end = 0;                                  // behind the highest one
    const BitLaneGridElemType* tooHigh = nullptr; // the first lane with a bit that no bus has

    void add(std::span<BitLaneGridElemType* const> elements) {
        for (const BitLaneGridElemType* element : elements) {
            if (element->bitHigh >= kMAX_BUS_BITS || element->bitLow > element->bitHigh) {
                if (tooHigh == nullptr) tooHigh = element;
                continue;
            }
            low = std::min(low, element->bitLow);
            end = std::max(end, element->bitHigh + 1);
        }
    }
};

int report_bit_too_high(const char* spaceName, const BitLaneGridElemType* element) {
    return PrintError(kERROR_MESSAGE_STRING, 3,
        formatted("Illegal bus bit in ADDRESS_SPACE '%s'.\n"
                  "    '%s [%lld:%lld]'\n"
                  "    The highest bit of a bus is %lld.",
            spaceName, element->lane->name, return_bitLane_left_value(element), return_bitLane_right_value(element),
            kMAX_BUS_BITS - 1));
}

// The first two lanes count; a third one takes the place of the second.
void enter_users(std::span<BitLaneGridElemType* const> elements, BitLaneUsageType* usage) {
    for (BitLaneGridElemType* element : elements) {
        for (u64 bit = element->bitLow; bit <= element->bitHigh; ++bit) {
            BitLaneUsageType& users = usage[bit];
            (users.firstUser == nullptr ? users.firstUser : users.secondUser) = element;
        }
    }
}

int report_one(const Alert_message_type& message, const char* spaceName, const BitLaneGridElemType* element) {
    return PrintError(message, 3, spaceName, element->lane->name, return_bitLane_left_value(element),
        return_bitLane_right_value(element));
}

int report_two(const Alert_message_type& message, const char* spaceName, const BitLaneGridElemType* first,
    const BitLaneGridElemType* second) {
    return PrintError(message, 3, spaceName, first->lane->name, return_bitLane_left_value(first),
        return_bitLane_right_value(first), second->lane->name, return_bitLane_left_value(second),
        return_bitLane_right_value(second));
}

// Walks the bits below limit, which may lie behind those that usage tells of.
int walk_bits(const char* spaceName, std::span<const BitLaneUsageType> usage, u64 limit) {
    int status = 0;
    const BitLaneGridElemType* previous = nullptr;
    const u64 end = std::min<u64>(limit, usage.size());
    bool inGap = false;
    for (u64 bit = 0; bit < end; ++bit) {
        const BitLaneUsageType& users = usage[bit];
        if (users.firstUser == nullptr) {
            inGap = true;
            continue;
        }
        // The bit that ends a gap tells of the gap only.
        if (inGap && previous != nullptr)
            status = report_two(kERROR_BIT_LANE_GAP, spaceName, previous, users.firstUser);
        else if (inGap)
            status = report_one(kERROR_BIT_LANE_BEGINNING_GAP, spaceName, users.firstUser);
        else if (users.secondUser != nullptr)
            status = report_two(kERROR_BIT_LANE_OVERLAP, spaceName, users.firstUser, users.secondUser);
        inGap = false;
        previous = users.firstUser;
    }
    if ((inGap || limit > end) && previous != nullptr)
        status = report_one(kERROR_BIT_LANE_ENDING_GAP, spaceName, previous);
    return status;
}

} // namespace

int check_for_valid_bitLanes(BitLaneGridElemType* element, const MEMORYType* type) {
    if (element == nullptr || type == nullptr) return -1;
    for (u32 i = 0; i < kMAX_LANE_WIDTHS && type->widths[i] != 0; ++i) {
        if (type->widths[i] != element->laneWidth) continue;
        element->parityWidth = type->parityWidths[i];
        element->lane->parityWidth = type->parityWidths[i];
        return static_cast<int>(i);
    }
    return -1;
}

int check_bitLane_gaps_overlaps(const char* spaceName, BusBlockType* block) {
    if (block == nullptr) return 3;
    BusSpan span;
    span.add(data_lanes(block));
    span.add(ecc_lanes(block));
    if (span.tooHigh != nullptr) return report_bit_too_high(spaceName, span.tooHigh);
    if (span.end == 0) return 0; // no lanes, no bits

    u64 limit = 0;
    if (__builtin_add_overflow(span.low, block->busWidth, &limit)) limit = UINT64_MAX;
    if (limit == 0) return 0;
    // As many entries as this bus has bits: a map may have any number of blocks.
    const u64 byteCount = span.end * sizeof(BitLaneUsageType);
    auto* usage = static_cast<BitLaneUsageType*>(getMemory("'BitLaneUsageType' data", byteCount));
    if (usage == nullptr)
        return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "bitUsageArray", byteCount, getCurrentMemoryUsage());
    enter_users(data_lanes(block), usage);
    enter_users(ecc_lanes(block), usage);
    const int status = walk_bits(spaceName, {usage, span.end}, limit);
    releaseMemory(usage);
    return status;
}

int check_bitLanes(AddressSpaceDefType* space, AddressRangeDefType* range, BusBlockType* block) {
    if (space == nullptr || range == nullptr || block == nullptr) return 3;
    int failure = check_widths(space, block, range->memory == nullptr ? nullptr : range->memory->type);
    if (int status = check_bus_for_codes(space, block); status != 0) failure = status;
    if (int status = check_likeness(space, block); status != 0) failure = status;
    if (int status = check_bitLane_gaps_overlaps(space->name, block); status != 0) return status;

    const u64 size = block->endAddress + 1 - block->startAddress;
    if (size != block->byteSize)
        return PrintError(kERROR_ILLEAGAL_BLOCK_BYTE_SIZE, 3, space->name, kBUS_BLOCK_MESSAGE_WORD, block->startAddress,
            block->endAddress, size, block->byteSize);
    if (int status = le_bmm_order_hack(space, range, block); status != 0) return status;
    return failure;
}

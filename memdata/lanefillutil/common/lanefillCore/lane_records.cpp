// lane_records.cpp - see lane_records.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lane_records.h"

#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/mem_records.h"

#include <algorithm>
#include <array>

namespace memdata {
namespace {

constexpr u64 kMIN_PARITY_WIDTH = 8; // narrower lanes have no parity bits on any memory

// How the words of a lane are printed: its data bits, or its parity bits and then its data bits.
class LaneColumns {
public:
    explicit LaneColumns(const BitLaneGridElemType* element) : element_(element) {
        const MEMORYType* type = element->lane->memory->type;
        parity_ =
            type->hasParityWidths && element->laneWidth >= kMIN_PARITY_WIDTH && element->lane->paritySliver != nullptr
                ? parityWordOf(element->laneWidth)
                : ParityWord{};
        // A lane that keeps whole words in its data buffer, check lanes for example, has no bits in the other.
        if (parity_.dataBits != laneDataBits(element)) parity_ = {};
    }

    bool hasParity() const { return parity_.parityBits != 0; }
    u64 countedBits() const { return hasParity() ? parity_.dataBits : element_->laneWidth; }
    u64 slotBits() const { return laneSlotBits(laneDataBits(element_)); }

    // Appends the columns of the words from wordIndex on.
    MemColumn* append(MemColumn* columns, u64 wordIndex) const {
        const BitLaneType* lane = element_->lane;
        const MEMORYType* type = lane->memory->type;
        if (hasParity())
            *columns++ = {lane->paritySliver, type->parityBits, wordIndex * parity_.parityBits, parity_.parityBits,
                parity_.parityBits, parity_.parityDigits};
        const u32 bits = std::min(laneDataBits(element_), 64u);
        const u32 digits = hasParity() ? parity_.dataDigits : hexDigits(bits);
        *columns++ = {lane->dataSliver, type->dataBits, wordIndex * slotBits(), slotBits(), bits, digits};
        return columns;
    }

    // Words of the lane that the range wrote: the first, and behind the last.
    std::pair<u64, u64> wordsOf(const TransformRangeType* range) const {
        if (range == nullptr || range->firstBit == range->endBit) return {0, 0};
        const u64 bits = std::max<u64>(slotBits(), 1); // a lane without data bits has no words
        return {range->firstBit / bits, (range->endBit + bits - 1) / bits};
    }

private:
    const BitLaneGridElemType* element_;
    ParityWord parity_;
};

const TransformRangeType* rangeAt(const TransformRangeType* list, u64 start) {
    while (list != nullptr && list->start != start) list = list->next;
    return list;
}

// The bus word of a range's first address.
u64 firstBusWord(const AddressRangeDefType* range, const BusBlockType* block, const TransformRangeType* written) {
    unsigned long word = 0;
    unsigned long count = 0;
    calculate_starting_bitLane_offset_positions(range->wordAddressing, block->startAddress, block->endAddress,
        block->laneCount, range->laneWidth, block->startAddress + written->start, &word, &count);
    return word;
}

struct LanePair {
    LaneColumns data;
    LaneColumns ecc;
    bool is64Bit;
};

// Bus words from the one where data and check lane begin, which need not have the same index in both: lanes that
// the first address has passed are written from the next bus word on, and check lanes may count words their own way.
int outputPair(fileIODescriptor* file, const LanePair& lanes, u64 busWord, const TransformRangeType* data,
    const TransformRangeType* ecc) {
    const auto [dataFirst, dataEnd] = lanes.data.wordsOf(data);
    const auto [eccFirst, eccEnd] = lanes.ecc.wordsOf(ecc);
    const u64 dataCount = dataEnd - dataFirst;
    const u64 eccCount = eccEnd - eccFirst;
    if (dataCount == 0 && eccCount == 0) return 0;

    const bool passed = dataCount > 0 && dataFirst == busWord + 1;
    const u64 base = dataCount == 0 || passed ? busWord : dataFirst;
    const u64 skipped = passed && eccCount == 0 ? 1 : 0; // no word of the two
    const u64 count = std::max(dataCount + (passed ? 1 : 0), eccCount) - skipped;
    const u64 eccBase = eccCount == 0 ? base : eccFirst;

    std::array<MemColumn, kMAX_MEM_COLUMNS> columns;
    MemColumn* end = lanes.data.append(columns.data(), base + skipped);
    end = lanes.ecc.append(end, eccBase + skipped);
    const bool wide = lanes.is64Bit && !lanes.data.hasParity();
    return outputMemRecord(
        file, {base + skipped, wide, count, lanes.data.countedBits(), std::span(columns.data(), end)});
}

} // namespace

int outputLaneRecords(fileIODescriptor* file, const BitLaneGridElemType* element, bool is64Bit) {
    if (element->lane->dataSliver == nullptr) return 0;
    const LaneColumns lane(element);
    std::array<MemColumn, kMAX_MEM_COLUMNS> columns;
    for (const TransformRangeType* range = element->lane->transformRanges; range != nullptr; range = range->next) {
        const auto [first, end] = lane.wordsOf(range);
        if (first == end) continue; // the data ended ahead of this lane
        const MemColumn* behind = lane.append(columns.data(), first);
        const int status = outputMemRecord(file, {first, is64Bit && !lane.hasParity(), end - first, lane.countedBits(),
                                                     std::span<const MemColumn>(columns.data(), behind)});
        if (status != 0) return status;
    }
    return 0;
}

int outputCombinedRecords(fileIODescriptor* file, const AddressRangeDefType* range, const BusBlockType* block,
    const BitLaneGridElemType* dataElement, const BitLaneGridElemType* eccElement, bool is64Bit) {
    if (dataElement->lane->dataSliver == nullptr || eccElement->lane->dataSliver == nullptr) return 0;
    const LanePair lanes{LaneColumns(dataElement), LaneColumns(eccElement), is64Bit};
    const TransformRangeType* const dataRanges = dataElement->lane->transformRanges;
    const TransformRangeType* const eccRanges = eccElement->lane->transformRanges;
    for (const TransformRangeType* data = dataRanges; data != nullptr; data = data->next) {
        const int status =
            outputPair(file, lanes, firstBusWord(range, block, data), data, rangeAt(eccRanges, data->start));
        if (status != 0) return status;
    }
    for (const TransformRangeType* ecc = eccRanges; ecc != nullptr; ecc = ecc->next) {
        if (rangeAt(dataRanges, ecc->start) != nullptr) continue;
        const int status = outputPair(file, lanes, lanes.ecc.wordsOf(ecc).first, nullptr, ecc);
        if (status != 0) return status;
    }
    return 0;
}

} // namespace memdata

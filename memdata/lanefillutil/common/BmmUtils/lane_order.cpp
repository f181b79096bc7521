// lane_order.cpp - the lanes of little-endian processors, from written to processing order.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/text.h"
#include "BmmUtils/validation.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"

#include <algorithm>

namespace {

using namespace memdata;

bool is_little_endian(const AddressMapType* map) {
    if (map == nullptr) return false;
    const u64 type = map->processorType;
    return type == kPROCESSOR_KESTREL_LE || type == kPROCESSOR_ARM || type == kPROCESSOR_RISCV;
}

int keep_written_order(BusBlockType* block) {
    const u64 byteCount = block->laneCount * sizeof(void*);
    auto* array = static_cast<BitLaneArrayType*>(
        getMemory("a 'BitLaneArrayType' pointer for an array of 'BitLaneGridElemType *' records", byteCount));
    if (array == nullptr)
        return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "bitLaneArray", byteCount, getCurrentMemoryUsage());
    std::copy_n(block->lanes, block->laneCount, array);
    block->writtenLanes = array;
    return 0;
}

// The bytes of the bus change sides; the lanes of one byte keep their order.
void reverse_byte_groups(const AddressRangeDefType* range, BusBlockType* block) {
    const u64 lanesPerByte = 8 / range->laneWidth;
    const u64 byteCount = range->busWidth / 8;
    // Widths that do not make whole bytes have been reported; their lanes stay.
    if (byteCount > block->laneCount / lanesPerByte) return;
    for (u64 i = 0; i < byteCount; ++i)
        std::copy_n(
            block->writtenLanes + i * lanesPerByte, lanesPerByte, block->lanes + (byteCount - 1 - i) * lanesPerByte);
}

} // namespace

int le_bmm_order_hack(AddressSpaceDefType* space, AddressRangeDefType* range, BusBlockType* block) {
    if (space == nullptr || range == nullptr || block == nullptr) return 3;
    if (!is_little_endian(space->map) || range->busWidth % 8 != 0) return 0;
    space->leLaneOrderApplied = true;
    if (range->laneWidth > 8) block->lanePitch = range->laneWidth;
    if (block->laneCount < 2 || block->writtenLanes != nullptr) return 0;

    if (int status = keep_written_order(block); status != 0) return status;
    if (range->laneWidth > 8)
        std::reverse_copy(block->writtenLanes, block->writtenLanes + block->laneCount, block->lanes);
    else if (range->laneWidth > 0)
        reverse_byte_groups(range, block);
    return 0;
}

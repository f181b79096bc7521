// segment_lookup.cpp - finding the space that holds a segment of data.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/internal.h"
#include "BmmUtils/model/iteration.h"
#include "BmmUtils/model/selection.h"
#include "BmmUtils/model/transform_buffers.h"
#include "platform/ComMsgMgr.h"

namespace {

bool holds(const AddressSpaceDefType* space, u64 address) {
    return space->startAddress <= address && address <= space->endAddress;
}

// The bus counts in steps of 4 bits. 0 for a space without a bus.
u64 counted_bus_width(const AddressSpaceDefType* space) {
    const u64 width = space->ranges == nullptr ? 0 : space->ranges->busWidth;
    return width > UINT64_MAX - 3 ? UINT64_MAX - 3 : (width + 3) / 4 * 4;
}

int report_out_of_bounds(
    const AddressMappingType* mapping, const AddressSpaceDefType* space, u64 segmentNumber, u64 start, u64 end) {
    const char* mappingName = mapping == nullptr ? nullptr : mapping->bmmBaseName;
    ComMsgMgr::sendMsg::eval("memdata", memdata::kENGINE_ERROR_MESSAGE, "@28-207@%s%s%08lX%0x%ld%08lX%08lX",
        mappingName, space->name, space->startAddress, space->endAddress, segmentNumber, start, end);
    if (memdata::legacyMessagesEnabled())
        return PrintError(kERROR_OUT_OF_BOUNDS_CODE_SEGMENT, 7, mappingName, space->name, space->startAddress,
            space->endAddress, segmentNumber, start, end);
    return 7;
}

} // namespace

u64 compute_ending_address(const AddressSpaceLinkType* link, u64 start, u64 end) {
    if (link == nullptr || !link->space->wordAddressing || end < start) return end;
    const u64 width = counted_bus_width(link->space);
    if (width == 0) return end;
    // (n * 8 + 8) / width without passing 64 bits on the way; width is 4 at the least.
    const u64 n = end - start;
    const u64 wholeWords = n / width;
    if (wholeWords > UINT64_MAX / 8 - 2) return UINT64_MAX;
    const u64 words = wholeWords * 8 + (n % width * 8 + 8) / width;
    return words == 0 ? 0 : words - 1;
}

int lookup_matching_addressSpace(AddressMappingType* mapping, u64 segmentNumber, u64 start, u64 end,
    AddressSpaceLinkType* first, AddressSpaceIteratorType* iterator, AddressSpaceLinkType** out) {
    if (out == nullptr) return 3;
    *out = nullptr;
    AddressSpaceLinkType* link = first;
    while (link != nullptr && !holds(link->space, start))
        link = iterate_next_addressSpace(kNEXT_SPACE_OF_MAPPING, iterator);
    if (link == nullptr) return 4;
    // A segment that passes the last address of all ends below its start.
    if (end < start || !holds(link->space, compute_ending_address(link, start, end)))
        return report_out_of_bounds(mapping, link->space, segmentNumber, start, end);
    if (!allocate_addressSpace_transform_buffers(link->space)) return 7;
    *out = link;
    return 0;
}

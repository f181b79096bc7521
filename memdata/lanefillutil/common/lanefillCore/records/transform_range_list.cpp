// transform_range_list.cpp - making, finding, inserting and widening ranges.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/transform_ranges.h"

#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"
#include "lanefillCore/records/chunk_access.h"
#include "platform/mapped_copy.h"
#include "platform/memory_pages.h"

#include <algorithm>
#include <cstring>

namespace {

using OwnedRange = memdata::Tracked<TransformRangeType, delete_transform_range>;

constexpr u64 kMAPPED_COPY_BYTES = u64{1} << 20; // below that a plain copy costs less than pages do

u8* plainCopy(const u8* data, u64 dataSize) {
    auto* copy = static_cast<u8*>(getMemory("'std::uint8_t' data", dataSize));
    if (copy == nullptr) return nullptr;
    memdata::populatePages(copy, dataSize);
    if (dataSize > 0) std::memcpy(copy, data, dataSize);
    return copy;
}

// Gives a range its own copy of data in place of the one that it had. False without memory: nothing changes.
bool takeCopy(TransformRangeType* range, const u8* data, u64 dataSize) {
    std::unique_ptr<memdata::MappedCopy> pages;
    if (dataSize >= kMAPPED_COPY_BYTES) pages = memdata::MappedCopy::of(data, dataSize);
    u8* const copy = pages != nullptr ? pages->bytes() : plainCopy(data, dataSize);
    if (copy == nullptr) return false;
    memdata::releaseOwnedData(range);
    range->ownedPages = pages.release();
    range->ownedData = copy;
    range->dataFirst = copy;
    range->dataLast = dataSize > 0 ? copy + dataSize - 1 : copy;
    range->dataSize = dataSize;
    range->bitCount = dataSize * 8;
    return true;
}

bool takeName(TransformRangeType* range, const char* name) {
    char* copy = StrDup(name);
    if (name != nullptr && copy == nullptr) return false;
    StrDelete(range->name);
    range->name = copy;
    return true;
}

void link(TransformRangeType** list, TransformRangeType* range) {
    TransformRangeType** at = list;
    // On purpose: at the head only a lower start goes in front, behind it an equal one does too.
    if (*at != nullptr && range->start >= (*at)->start) {
        at = &(*at)->next;
        while (*at != nullptr && (*at)->start < range->start) at = &(*at)->next;
    }
    range->next = *at;
    *at = range;
}

} // namespace

TransformRangeType* create_transform_range(
    const char* name, u64 start, u64 size, const u8* data, u64 dataSize, bool copy) {
    OwnedRange range(NEW_RECORD(TransformRangeType));
    if (range == nullptr || !takeName(range.get(), name)) return nullptr;
    range->start = start;
    range->size = size;
    range->end = start + size - 1;
    if (copy) {
        if (!takeCopy(range.get(), data, dataSize)) return nullptr;
    } else {
        range->dataFirst = const_cast<u8*>(data);
        range->dataLast = range->dataFirst;
        range->dataSize = dataSize;
    }
    return range.release();
}

TransformRangeType* lookup_transform_range(TransformRangeType* list, u64 start, u64 size) {
    for (; list != nullptr; list = list->next)
        if (list->start == start && list->size == size && !list->hasStartAddress) return list;
    return nullptr;
}

TransformRangeType* insert_transform_range(
    const char* name, TransformRangeType** list, u64 start, u64 size, const u8* data, u64 dataSize, bool copy) {
    if (TransformRangeType* range = lookup_transform_range(*list, start, size)) {
        if (copy && !takeCopy(range, data, dataSize)) return nullptr;
        return takeName(range, name) ? range : nullptr;
    }
    TransformRangeType* range = create_transform_range(name, start, size, data, dataSize, copy);
    if (range != nullptr) link(list, range);
    return range;
}

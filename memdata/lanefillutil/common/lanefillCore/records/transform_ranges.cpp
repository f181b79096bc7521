// transform_ranges.cpp - release of transform ranges.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/transform_ranges.h"

#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"

#include "platform/mapped_copy.h"

#include <utility>

void memdata::releaseOwnedData(TransformRangeType* range) {
    if (range->ownedPages != nullptr)
        delete range->ownedPages;
    else if (range->ownedData != nullptr)
        releaseMemory(range->ownedData);
    range->ownedPages = nullptr;
    range->ownedData = nullptr;
}

void delete_transform_range(TransformRangeType** range) {
    if (range == nullptr) return;
    TransformRangeType* old = std::exchange(*range, nullptr);
    while (old != nullptr) {
        TransformRangeType* parity = old->parityRange;
        memdata::releaseOwnedData(old);
        StrDelete(old->name);
        releaseMemory(old);
        old = parity;
    }
}

void delete_transform_range_list(TransformRangeType** head) {
    if (head == nullptr) return;
    while (*head != nullptr) {
        TransformRangeType* first = *head;
        *head = first->next;
        delete_transform_range(&first);
    }
}

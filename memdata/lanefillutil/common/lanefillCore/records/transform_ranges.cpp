// transform_ranges.cpp - release of transform ranges.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/transform_ranges.h"

#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"

#include <utility>

void delete_transform_range(TransformRangeType** range) {
    if (range == nullptr) return;
    TransformRangeType* old = std::exchange(*range, nullptr);
    while (old != nullptr) {
        TransformRangeType* parity = old->parityRange;
        if (old->ownedData != nullptr) releaseMemory(old->ownedData);
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

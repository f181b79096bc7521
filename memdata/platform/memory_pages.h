// memory_pages.h - memory from the system, page by page or at once.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_MEMORY_PAGES_H
#define MEMDATA_PLATFORM_MEMORY_PAGES_H

#include "platform/BasicTypes.h"

namespace memdata {

// Fresh memory that is about to be written as a whole: the system gives all of its pages now, large ones where it has
// them, which takes less than half the time of giving them one by one at their first touch. Changes no byte; a system
// that can not do it is left to its own way.
void populatePages(void* bytes, u64 byteCount);

// A range of addresses, zero at their first touch, that takes no memory before; null when there is none. Given back as a
// whole.
void* reservePages(u64 byteCount);
void returnPages(void* bytes, u64 byteCount);
// The system gives large pages at a touch inside of such a range, where it has them.
void preferLargePages(void* bytes, u64 byteCount);

} // namespace memdata

#endif

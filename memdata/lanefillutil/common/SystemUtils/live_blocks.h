// live_blocks.h - the set of all live tracked blocks, so that a bad pointer is known without being read.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_LIVE_BLOCKS_H
#define MEMDATA_SYSTEM_UTILS_LIVE_BLOCKS_H

#include "platform/BasicTypes.h"

namespace memdata {

struct LiveRegionType; // 64 KiB of addresses

// A bit for every 16 bytes of each region of addresses that ever held a block, and a hash table of these regions:
// neighbours in memory are neighbours here. It lives in system memory, not in tracked memory, for the allocator must
// not enter itself. A region stays until the set is deleted (1/128 of the memory that it stands for).
struct LiveBlockSetType {
    LiveRegionType** regions = nullptr; // 1 << bits places, at most half of them taken; null when free
    u32 bits = 0;
    u64 regionCount = 0;
    u64 count = 0;                    // blocks
    LiveRegionType* latest = nullptr; // the region that was found last
};

// Enters a block that is not in the set; user is 16-aligned. False when the system has no memory, the set is then as
// before.
bool insertLiveBlock(LiveBlockSetType* set, const void* user);
// Any pointer may be asked for; it is not read.
bool containsLiveBlock(LiveBlockSetType* set, const void* user);
// Removes a block that is in the set.
void eraseLiveBlock(LiveBlockSetType* set, const void* user);
// Gives the memory of the set back and leaves it empty.
void deleteLiveBlocks(LiveBlockSetType* set);

} // namespace memdata

#endif

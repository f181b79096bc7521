// live_blocks.h - the set of all live tracked blocks, so that a bad pointer is known without being read.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_LIVE_BLOCKS_H
#define MEMDATA_SYSTEM_UTILS_LIVE_BLOCKS_H

#include "platform/BasicTypes.h"

namespace memdata {

// Open addressing with linear probing over user pointers, at most half full, no tombstones. It lives in system
// memory, not in tracked memory: the allocator must not enter itself.
struct LiveBlockSetType {
    const void** slots = nullptr; // 1 << bits of them, null when free
    u32 bits = 0;
    u64 count = 0;
};

// Room for one block more; false when the system has no memory, the set is then as before.
bool reserveLiveBlock(LiveBlockSetType* set);
// Enters a block that is not in the set. reserveLiveBlock must have made the room.
void insertLiveBlock(LiveBlockSetType* set, const void* user);
bool containsLiveBlock(const LiveBlockSetType& set, const void* user);
// Removes a block; one that is not in the set changes nothing.
void eraseLiveBlock(LiveBlockSetType* set, const void* user);
// Gives the memory of an empty or forgotten set back.
void deleteLiveBlocks(LiveBlockSetType* set);

} // namespace memdata

#endif

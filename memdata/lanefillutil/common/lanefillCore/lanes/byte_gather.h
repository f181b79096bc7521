// byte_gather.h - bytes that lie interleaved in a source, gathered lane by lane.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_BYTE_GATHER_H
#define MEMDATA_LANEFILL_CORE_BYTE_GATHER_H

#include "platform/BasicTypes.h"

#include <span>

namespace memdata {

struct GatherForm {
    unsigned laneBytes; // of one word: 1, 2, 4 or 8
    bool reverseBytes;  // each word is stored with its bytes in the other order
    bool mirrorBits;    // each byte is stored with its bits in the other order
};

// Word i of lane k, source[(i * lanes.size() + k) * laneBytes], goes to lanes[k] + i * laneBytes.
void gatherLanes(const GatherForm& form, const u8* source, std::span<u8* const> lanes, u64 wordCount);

} // namespace memdata

#endif

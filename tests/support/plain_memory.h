// plain_memory.h - what the memories of a map hold after data were put into them, word by word and bit by bit.
//
// The plain counterpart of the engine's translation: no fast path, no shared table, nothing of the engine in it.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_PLAIN_MEMORY_H
#define MEMDATA_TESTS_SUPPORT_PLAIN_MEMORY_H

#include "support/damage.h"
#include "support/plain_map.h"

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace memdata::testing {

struct PlainSegment {
    u64 address = 0;
    Bytes bytes;
    u64 bitCount = 0; // of the bytes, from the top bit of the first
};

struct PlainData {
    enum Processor : u8 { ANY, ARM, SOFT }; // that the file is for

    std::vector<PlainSegment> segments;
    std::vector<std::string> tags; // of spaces and maps; empty: all
    Processor processor = ANY;
};

// A memory of a lane. Words are as they stand in it: number i in slot i.
struct PlainLaneImage {
    const PlainLane* lane = nullptr;
    unsigned dataBits = 0;   // of a word
    unsigned parityBits = 0; // of a word
    unsigned slotBits = 0;   // that a word takes
    std::vector<u64> data;   // as many as the memory has room for
    std::vector<u64> parity; // of the words; empty without
    bool isTouched = false;  // a word was dealt to it
    bool holdsWords = false; // one of them found room
    struct Written {
        u64 begin = 0; // bus word in which the data begin
        u64 first = UINT64_MAX, last = 0;
    };
    std::map<u64, Written> written; // words, by where in the block the data begin

    // The memory's bits in the order of its cells: bit 0 of byte 0 first, low bits of a word first.
    Bytes dataBytes() const;
    Bytes parityBytes() const;
};

struct PlainBlockImage {
    const PlainBlock* block;
    u64 start, end;                            // addresses, inclusive
    std::vector<PlainLaneImage> lanes, checks; // in the order in which data reach them
};

struct PlainRangeImage {
    const PlainRange* range;
    u64 start, end;
    std::vector<PlainBlockImage> blocks;
};

struct PlainSpaceImage {
    const PlainProcessor* processor;
    const PlainSpace* space;
    std::string name;
    u64 start, end;
    bool isByteReversed;
    bool isTouched = false; // data fell into it
    std::deque<PlainRangeImage> ranges;
};

class PlainMemory {
public:
    explicit PlainMemory(const PlainMap& map); // keeps it

    // The whole file, in front of what is there. 0, or the status with which a run ends there: 7 a segment leaves its
    // space, 11 a tag that names nothing, 23 another processor's file.
    int put(const PlainData& data);
    // What a memory starts from.
    void putInit(const PlainLane& lane, const std::vector<PlainSegment>& segments);

    // Spaces that tags choose, in order; nothing when a tag names nothing.
    std::optional<std::vector<PlainSpaceImage*>> choose(const std::vector<std::string>& tags);
    const std::deque<PlainSpaceImage>& spaces() const { return spaces_; }

private:
    const PlainMap& map_;
    std::deque<PlainSpaceImage> spaces_; // in the order in which they are asked for data
};

} // namespace memdata::testing

#endif

// plain_map.h - address maps as a test thinks of them: a second, tiny description that shares nothing with the engine's.
//
// A map that is described here is written as text in any form that the engine reads, and dealt with by PlainMemory.
// Sizes and addresses are worked out from the description alone.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_PLAIN_MAP_H
#define MEMDATA_TESTS_SUPPORT_PLAIN_MAP_H

#include "platform/BasicTypes.h"

#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace memdata::testing {

struct PlainType {
    enum Kind : u8 { BLOCK_RAM, USERS, GENERIC };

    std::string name;
    u64 dataBits = 0;
    u64 parityBits = 0;
    bool countsParity = false; // in sizes and in widths of lanes
    std::vector<unsigned> widths;
    Kind kind = BLOCK_RAM;

    unsigned parityOf(unsigned width) const; // bits of a lane of this width
    u64 sizeBits() const { return dataBits + (countsParity ? parityBits : 0); }
};

// Kinds of block RAM, by name; throws std::out_of_range for others.
const PlainType& plainType(const std::string& name);
const std::deque<PlainType>& plainTypes();

struct PlainPlace {
    u32 x, y;
    bool isPlaced; // PLACED in place of LOC
};

struct PlainLane {
    std::string name;
    unsigned low = 0; // bit of the bus
    unsigned width = 0;
    bool ascends = false;            // written [low:high]
    const PlainType* type = nullptr; // the range's, or its own
    bool namesType = false;          // also where it is the range's
    std::optional<u64> words = {};   // addresses are written, 0 to this one less
    std::optional<PlainPlace> place = {};
    std::string output = {}, init = {}; // files
};

struct PlainBlock {
    std::vector<PlainLane> lanes; // as written
    std::vector<PlainLane> checks;
    bool checksFirst = false; // as written
};

struct PlainRange {
    const PlainType* type = nullptr;
    unsigned check = 0; // kind of the check lanes, 0 to 5; their words are kPLAIN_CHECKS
    std::vector<PlainBlock> blocks;

    unsigned laneWidth() const { return blocks[0].lanes[0].width; }
    unsigned busWidth() const { return laneWidth() * static_cast<unsigned>(blocks[0].lanes.size()); }
};

inline constexpr const char* kPLAIN_CHECKS[] = {
    "", "ECCH32-7", "ECCH64-8", "ECCHSIAO32-7", "ECCHSIAO64-8", "ECCHSIAO128-9"};

struct PlainSpace {
    std::string name; // without that of its map
    u64 start = 0;
    bool countsWords = false;      // addresses are words of lanes
    bool isCombined = false;       // written with ranges
    bool checksInSameFile = false; // ECC_COMBINED_FOR_SIMULATION
    std::string path = {};
    std::vector<PlainRange> ranges;

    u64 sizeOf(const PlainRange& range, const PlainBlock& block) const; // bytes, or words
    u64 end() const;                                                    // last address
};

struct PlainProcessor {
    std::string name; // "" for the default map
    std::string kind = "PPC405";
    unsigned id = 0;
    std::string path = {};
    std::vector<PlainSpace> spaces; // as written

    bool isLittleEndian() const { return kind == "RISCV" || kind == "ARM" || kind == "KESTREL-LE"; }
    std::string fullName(const PlainSpace& space) const { return name.empty() ? space.name : name + "." + space.name; }
    // In the order in which they are asked for data: by last address, of equal ones the later written first.
    std::vector<const PlainSpace*> inOrder() const;
};

struct PlainMap {
    std::deque<PlainType> ownTypes;
    std::vector<PlainProcessor> processors;
};

// The lanes of a block in the order in which data reach them.
std::vector<const PlainLane*> lanesInOrder(
    const PlainProcessor& processor, const PlainRange& range, const PlainBlock& block);
// Whether the space is held in reversed byte order somewhere: its check words are too.
bool isByteReversed(const PlainProcessor& processor, const PlainSpace& space);

} // namespace memdata::testing

#endif

// plain_map.cpp - see plain_map.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/plain_map.h"

#include <algorithm>
#include <stdexcept>

namespace memdata::testing {

const std::deque<PlainType>& plainTypes() {
    static const std::deque<PlainType> types = {
        {"RAMB4", 4096, 0, false, {1, 2, 4, 8, 16}},
        {"RAMB8", 8192, 1024, false, {1, 2, 4, 8, 16, 32}},
        {"RAMB9", 8192, 1024, true, {1, 2, 4, 8, 16, 32}},
        {"RAMB16", 16384, 2048, false, {1, 2, 4, 8, 16, 32}},
        {"RAMB18", 16384, 2048, true, {1, 2, 4, 9, 18, 36}},
        {"RAMB32", 32768, 4096, false, {1, 2, 4, 8, 16, 32, 64}},
        {"RAMB36", 32768, 4096, true, {1, 2, 4, 9, 18, 36, 72}},
    };
    return types;
}

const PlainType& plainType(const std::string& name) {
    for (const PlainType& type : plainTypes())
        if (type.name == name) return type;
    throw std::out_of_range("no memory is called " + name);
}

unsigned PlainType::parityOf(unsigned width) const {
    return width % 9 == 0 ? width / 9 : 0;
}

u64 PlainSpace::sizeOf(const PlainRange& range, const PlainBlock& block) const {
    return range.type->sizeBits() / (countsWords ? block.lanes[0].width : 8) * block.lanes.size();
}

u64 PlainSpace::end() const {
    u64 size = 0;
    for (const PlainRange& range : ranges)
        for (const PlainBlock& block : range.blocks) size += sizeOf(range, block);
    return start + size - 1;
}

std::vector<const PlainSpace*> PlainProcessor::inOrder() const {
    std::vector<const PlainSpace*> order;
    for (auto space = spaces.rbegin(); space != spaces.rend(); ++space) order.push_back(&*space);
    std::ranges::stable_sort(order, {}, [](const PlainSpace* space) { return space->end(); });
    return order;
}

std::vector<const PlainLane*> lanesInOrder(
    const PlainProcessor& processor, const PlainRange& range, const PlainBlock& block) {
    std::vector<const PlainLane*> lanes;
    for (const PlainLane& lane : block.lanes) lanes.push_back(&lane);
    if (!processor.isLittleEndian() || range.busWidth() % 8 != 0) return lanes;
    // Groups of a byte, or single wider lanes, change places from end to end.
    const size_t group = std::max(1U, 8 / range.laneWidth());
    std::vector<const PlainLane*> turned;
    for (size_t at = lanes.size(); at >= group; at -= group)
        turned.insert(turned.end(), lanes.begin() + static_cast<std::ptrdiff_t>(at - group),
            lanes.begin() + static_cast<std::ptrdiff_t>(at));
    return turned;
}

bool isByteReversed(const PlainProcessor& processor, const PlainSpace& space) {
    return processor.isLittleEndian() &&
           std::ranges::any_of(space.ranges, [](const PlainRange& range) { return range.busWidth() % 8 == 0; });
}

} // namespace memdata::testing

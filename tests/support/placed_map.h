// placed_map.h - maps whose lanes stand on memories of a device and hold data, for replacements and dumps.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_PLACED_MAP_H
#define MEMDATA_TESTS_SUPPORT_PLACED_MAP_H

#include "BmmUtils/model/transform_buffers.h"
#include "DeviceTableUtils/cross_coordinates.h"
#include "DeviceTableUtils/device_lookup.h"
#include "support/bit_maker.h"
#include "support/map_builder.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace memdata::testing {

struct PlacedLane {
    BitLaneType* lane;
    MemorySite site;
};

class PlacedMap {
public:
    explicit PlacedMap(const std::string& device) : device_(get_device_record_by_name(device.c_str())) {
        map_->device = device_;
    }

    AddressMappingType* get() const { return map_.get(); }
    TarselDeviceType* device() const { return device_; }
    const std::vector<PlacedLane>& lanes() const { return lanes_; }

    // One space of one lane on a memory.
    BitLaneType* add(const MemorySite& site, u64 width, const std::string& name = "") {
        const std::string lane = name.empty() ? "m" + std::to_string(lanes_.size()) : name;
        AddressSpaceDefType* space = map_.space(("s_" + lane).c_str(), lanes_.size() * 0x100000,
            site.memory->type->name, {lane + "[" + std::to_string(width - 1) + ":0]"});
        return place(space->ranges, space->ranges->busBlocks[0]->lanes[0], site);
    }
    // An element of a space made by hand.
    BitLaneType* place(AddressRangeDefType* range, BitLaneGridElemType* element, const MemorySite& site) {
        BitLaneType* lane = element->lane;
        lane->memory = range->memory = const_cast<MEMORYLocType*>(site.memory); // NOLINT: records hold it so
        lane->locKind = site.memory->type->sizeUnits == 1 ? kLOC_KIND_PLACED : kLOC_KIND_LOC;
        lane->locRow = site.y;
        lane->locColumn = site.x;
        lane->parityWidth = element->parityWidth = parityWidth(site.memory->type, lane->laneWidth);
        if (record_bitLane_LOC_constraint(nullptr, nullptr, get(), lane) != 0)
            throw std::runtime_error("a lane could not be placed");
        lanes_.push_back({lane, site});
        return lane;
    }
    TestMap& map() { return map_; }

    // Random data and parity in a lane, or in all of them.
    void fill(std::mt19937& random, BitLaneType* lane) {
        if (!allocate_addressSpace_transform_buffers(lane->addressSpace)) throw std::bad_alloc();
        const MEMORYType* type = lane->memory->type;
        for (u64 i = 0; i < type->dataBits / 8; ++i) lane->dataSliver[i] = static_cast<u8>(random());
        for (u64 i = 0; i < type->parityBits / 8; ++i) lane->paritySliver[i] = static_cast<u8>(random());
        lane->laneState = 1;
    }
    void fill(u32 seed) {
        std::mt19937 random(seed);
        for (const PlacedLane& placed : lanes_) fill(random, placed.lane);
    }

    // What the frames hold when the lanes that have data are in them.
    std::vector<std::pair<MemorySite, MemoryImages>> contents() const {
        std::vector<std::pair<MemorySite, MemoryImages>> all;
        for (const auto& [lane, site] : lanes_) {
            if (lane->laneState == 0) continue;
            const MEMORYType* type = lane->memory->type;
            MemoryImages images{Bytes(lane->dataSliver, lane->dataSliver + type->dataBits / 8), {}};
            if (type->parityBits != 0)
                images.parity.assign(lane->paritySliver, lane->paritySliver + type->parityBits / 8);
            all.emplace_back(site, imagesOfLane(device_, type, lane->laneWidth, lane->parityWidth, images));
        }
        return all;
    }

    static u32 parityWidth(const MEMORYType* type, u64 width) {
        for (size_t i = 0; i < kMAX_LANE_WIDTHS && type->widths[i] != 0; ++i)
            if (type->widths[i] == width) return type->parityWidths[i];
        return 0;
    }

    // Lanes of all types and widths on up to count large places: a large memory, two small ones, one small one, none.
    void addOfEveryKind(size_t count) {
        if (count == 0) return;
        const u32 large = lastType_();
        const bool twoSizes = device_->memoryLocs[large].type->sizeUnits > device_->memoryLocs[0].type->sizeUnits;
        const u32 smallTypes = twoSizes ? 2 : large + 1;
        const std::vector<MemorySite> sites = sitesOf(device_, large);
        const size_t step = std::max<size_t>(1, sites.size() / count);
        for (size_t i = 0; i < sites.size() && i / step < count; i += step) {
            const MemorySite& site = sites[sites.size() - 1 - i];
            const u32 n = static_cast<u32>(i / step);
            if (!twoSizes) {
                if (n % 4 != 3) addKind_(n % smallTypes, site.x, site.y);
                continue;
            }
            const bool pairs = device_->physicalRows == 1;
            const u32 y = pairs ? site.y : site.y * 2;
            if (n % 4 == 0) addKind_(2 + n / 4 % 2, site.x, site.y);
            if (n % 4 == 1) addKind_(0, site.x, y);
            if (n % 4 == 1 || n % 4 == 2) addKind_(1, site.x, y + 1);
        }
    }

private:
    u32 lastType_() const {
        u32 last = 0;
        while (device_->memoryLocs[last + 1].type != nullptr) ++last;
        return last;
    }
    void addKind_(u32 typeIndex, u32 x, u32 y) {
        const MEMORYLocType* memory = &device_->memoryLocs[typeIndex];
        u32 widths = 0;
        while (widths < kMAX_LANE_WIDTHS && memory->type->widths[widths] != 0) ++widths;
        add({memory, x, y}, memory->type->widths[nextWidth_++ % widths]);
    }

    TestMap map_;
    TarselDeviceType* device_;
    std::vector<PlacedLane> lanes_;
    u32 nextWidth_ = 0;
};

} // namespace memdata::testing

#endif

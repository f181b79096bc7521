// plain_map_text.cpp - see plain_map_text.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/plain_map_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <sstream>

namespace memdata::testing {

namespace {

std::string hex(u64 value) {
    std::array<char, 24> text;
    std::snprintf(text.data(), text.size(), "0x%llX", static_cast<unsigned long long>(value));
    return text.data();
}

std::string bitsText(const PlainLane& lane) {
    const std::string low = std::to_string(lane.low);
    const std::string high = std::to_string(lane.low + lane.width - 1);
    return lane.ascends ? low + ":" + high : high + ":" + low;
}

class BmmWriter {
public:
    explicit BmmWriter(std::mt19937_64& dice) : dice_(dice) {}

    std::string write(const PlainMap& map) {
        for (const PlainType& type : map.ownTypes) {
            if (type.kind != PlainType::USERS) continue;
            out_ << "DEFINE_MEMORY_TYPE " << type.name << " [" << number_(type.dataBits / 8) << "]";
            for (const unsigned width : type.widths) out_ << " " << width;
            out_ << ";\n";
        }
        for (const PlainProcessor& processor : map.processors) {
            if (!processor.name.empty()) {
                out_ << "ADDRESS_MAP " << processor.name << " " << processor.kind << " " << processor.id;
                if (!processor.path.empty()) out_ << " " << processor.path;
                out_ << "\n";
            }
            for (const PlainSpace& space : processor.spaces) space_(space);
            if (!processor.name.empty()) out_ << "END_ADDRESS_MAP;\n";
        }
        return out_.str();
    }

private:
    bool oneIn_(unsigned count) { return dice_() % count == 0; }

    std::string number_(u64 value) {
        if (oneIn_(4)) return std::to_string(value);
        if (oneIn_(4)) return std::to_string(value / 2) + " + " + hex(value - value / 2);
        return hex(value);
    }

    void space_(const PlainSpace& space) {
        const std::string word = oneIn_(5) ? "ADDRESS_BLOCK" : "ADDRESS_SPACE";
        out_ << word << " " << space.name << " " << (space.isCombined ? "COMBINED" : space.ranges[0].type->name);
        if (space.checksInSameFile) out_ << " ECC_COMBINED_FOR_SIMULATION";
        if (space.countsWords)
            out_ << (oneIn_(2) ? " WORD_ADDRESSING" : " INDEX_ADDRESSING");
        else if (oneIn_(4))
            out_ << " BYTE_ADDRESSING";
        const bool isTurned = oneIn_(6);
        out_ << " [" << number_(isTurned ? space.end() : space.start) << ":"
             << number_(isTurned ? space.start : space.end()) << "]";
        if (!space.path.empty()) out_ << " " << space.path;
        out_ << (oneIn_(4) ? " // a remark\n" : "\n");
        for (const PlainRange& range : space.ranges) {
            if (space.isCombined) out_ << "  ADDRESS_RANGE " << range.type->name << "\n";
            for (const PlainBlock& block : range.blocks) block_(range, block);
            if (space.isCombined) out_ << "  END_ADDRESS_RANGE;\n";
        }
        out_ << "END_" << word << ";\n";
    }

    void block_(const PlainRange& range, const PlainBlock& block) {
        out_ << "    BUS_BLOCK\n";
        const auto checks = [&] {
            for (const PlainLane& lane : block.checks) lane_(range, lane, kPLAIN_CHECKS[range.check]);
        };
        if (block.checksFirst) checks();
        for (const PlainLane& lane : block.lanes) lane_(range, lane, "");
        if (!block.checksFirst) checks();
        out_ << "    END_BUS_BLOCK;\n";
    }

    void lane_(const PlainRange& range, const PlainLane& lane, const std::string& check) {
        out_ << "        " << lane.name;
        if (lane.namesType || lane.type != range.type) out_ << " " << lane.type->name;
        if (!check.empty()) out_ << " " << check;
        out_ << " [" << bitsText(lane) << "]";
        if (lane.words) out_ << " [0:" << *lane.words - 1 << "]";
        if (lane.place && oneIn_(2)) place_(lane);
        if (!lane.output.empty()) out_ << " OUTPUT = " << lane.output;
        if (!lane.init.empty()) out_ << " INIT = " << lane.init;
        if (lane.place && !isPlaced_) place_(lane);
        isPlaced_ = false;
        out_ << ";\n";
    }
    void place_(const PlainLane& lane) {
        out_ << (lane.place->isPlaced ? " PLACED = " : " LOC = ") << placeText(*lane.type, *lane.place);
        isPlaced_ = true;
    }

    std::mt19937_64& dice_;
    std::ostringstream out_;
    bool isPlaced_ = false;
};

class XmlWriter {
public:
    std::string write(const PlainMap& map) {
        out_ << "<?xml version=\"1.0\"?>\n<AddressMap Version=\"1\" Minor=\"0\" ProcessorElementCount=\""
             << map.processors.size() << "\">\n";
        for (const PlainProcessor& processor : map.processors) {
            out_ << "<Processor Name=\"" << processor.name << "\" Type=\"" << processor.kind << "\" Id=\""
                 << processor.id << "\"";
            if (!processor.path.empty()) out_ << " Instance=\"" << processor.path << "\"";
            out_ << " SpaceElementCount=\"" << processor.spaces.size() << "\">\n";
            for (const PlainSpace& space : processor.spaces) space_(space);
            out_ << "</Processor>\n";
        }
        out_ << "</AddressMap>\n";
        return out_.str();
    }

private:
    void space_(const PlainSpace& space) {
        out_ << "<AddressSpace Name=\"" << space.name << "\" Style=\"" << (space.countsWords ? "word" : "byte")
             << "\" StartAddress=\"" << hex(space.start) << "\" EndAddress=\"" << hex(space.end()) << "\"";
        if (!space.path.empty()) out_ << " Instance=\"" << space.path << "\"";
        out_ << " RangeElementCount=\"" << space.ranges.size() << "\">\n";
        for (const PlainRange& range : space.ranges) {
            out_ << "<Range Type=\"" << range.type->name << "\" BusBlockElementCount=\"" << range.blocks.size()
                 << "\">\n";
            for (const PlainBlock& block : range.blocks) block_(range, block);
            out_ << "</Range>\n";
        }
        out_ << "</AddressSpace>\n";
    }

    void block_(const PlainRange& range, const PlainBlock& block) {
        out_ << "<Block DeviceElementCount=\"" << block.lanes.size() << "\"";
        if (!block.checks.empty()) out_ << " ECCElementCount=\"" << block.checks.size() << "\"";
        out_ << ">\n";
        const auto checks = [&] {
            for (const PlainLane& lane : block.checks) lane_(lane, kPLAIN_CHECKS[range.check]);
        };
        if (block.checksFirst) checks();
        for (const PlainLane& lane : block.lanes) lane_(lane, "");
        if (!block.checksFirst) checks();
        out_ << "</Block>\n";
    }

    void lane_(const PlainLane& lane, const std::string& check) {
        out_ << "<Device Instance=\"" << lane.name << "\" Type=\"" << lane.type->name << "\"";
        if (!check.empty()) out_ << " Ecc=\"" << check << "\"";
        out_ << " Width=\"" << bitsText(lane) << "\"";
        if (lane.words) out_ << " Depth=\"0:" << *lane.words - 1 << "\"";
        if (!lane.output.empty()) out_ << " Output=\"" << lane.output << "\"";
        if (!lane.init.empty()) out_ << " Init=\"" << lane.init << "\"";
        if (lane.place) out_ << " Loc=\"X" << lane.place->x << "Y" << lane.place->y << "\"";
        out_ << "/>\n";
    }

    std::ostringstream out_;
};

template<class Test>
bool everySpace(const PlainMap& map, Test test) {
    return std::ranges::all_of(
        map.processors, [&](const PlainProcessor& processor) { return std::ranges::all_of(processor.spaces, test); });
}

bool descends(const PlainBlock& block) {
    for (size_t i = 1; i < block.lanes.size(); ++i)
        if (block.lanes[i].low > block.lanes[i - 1].low) return false;
    return std::ranges::none_of(block.lanes, &PlainLane::ascends);
}

bool isCompactLane(const PlainRange& range, const PlainLane& lane) {
    return lane.type == range.type && !lane.place;
}

} // namespace

std::string placeText(const PlainType& type, const PlainPlace& place) {
    const bool isOld = type.name == "RAMB4";
    const std::string x = std::to_string(place.x);
    const std::string y = std::to_string(place.y);
    return isOld ? "R" + y + "C" + x : "X" + x + "Y" + y;
}

std::string bmmText(const PlainMap& map, std::mt19937_64& dice) {
    return BmmWriter(dice).write(map);
}

bool canBeXml(const PlainMap& map) {
    return map.ownTypes.empty() && everySpace(map, [](const PlainSpace& space) { return !space.checksInSameFile; });
}
std::string xmlText(const PlainMap& map) {
    return XmlWriter().write(map);
}

bool canBeCompact(const PlainMap& map) {
    return map.ownTypes.empty() && std::ranges::none_of(map.processors, [](const PlainProcessor& processor) {
        return processor.name.empty();
    }) && everySpace(map, [](const PlainSpace& space) {
        return !space.checksInSameFile && !space.countsWords &&
               std::ranges::all_of(space.ranges,
                   [](const PlainRange& range) {
                       return range.check == 0 && std::ranges::all_of(range.blocks, [&](const PlainBlock& block) {
                           return descends(block) && std::ranges::all_of(block.lanes, [&](const PlainLane& lane) {
                               return isCompactLane(range, lane);
                           });
                       });
                   }) &&
               std::ranges::all_of(space.ranges,
                   [&](const PlainRange& range) { return range.busWidth() == space.ranges[0].busWidth(); });
    });
}

std::string compactText(const PlainMap& map) {
    std::ostringstream out;
    std::ostringstream components;
    unsigned groups = 0;
    for (const PlainProcessor& processor : map.processors) {
        out << "p " << processor.name << " " << processor.kind << " " << processor.id << "\n";
        for (const PlainSpace& space : processor.spaces) {
            out << "  a " << space.name << " top/" << space.name << " byte " << hex(space.start) << " "
                << space.ranges[0].busWidth() << "\n";
            for (const PlainRange& range : space.ranges) {
                const std::string group = "group" + std::to_string(groups++);
                u64 size = 0;
                u64 row = 0;
                for (const PlainBlock& block : range.blocks) {
                    size += space.sizeOf(range, block);
                    const u64 words = range.type->sizeBits() / range.laneWidth();
                    for (const PlainLane& lane : block.lanes) {
                        components << "c " << group << " " << lane.name << " " << range.type->name << " ["
                                   << bitsText(lane) << "] [" << row * words << ":" << (row + 1) * words - 1 << "]";
                        if (!lane.init.empty()) components << " << " << lane.init;
                        if (!lane.output.empty()) components << " > " << lane.output;
                        components << "\n";
                    }
                    ++row;
                }
                out << "    f " << range.type->name << " " << hex(size) << " " << range.laneWidth() << " " << group
                    << "\n";
            }
        }
    }
    return components.str() + out.str();
}

} // namespace memdata::testing

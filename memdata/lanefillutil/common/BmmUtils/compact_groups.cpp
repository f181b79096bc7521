// compact_groups.cpp - the components of a group, in the order and under the names in which a map lists them.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/compact_parser.h"
#include "BmmUtils/model/text.h"
#include "BmmUtils/syntax.h"
#include "SystemUtils/alerts.h"

#include <algorithm>
#include <tuple>

using namespace memdata;

namespace {

u64 lowest_bit(const component_ref_info& component) {
    return std::min(component.bitFirst, component.bitSecond);
}
u64 lowest_address(const component_ref_info& component) {
    return std::min(component.addressFirst, component.addressSecond);
}

bool is_check_lane(const component_ref_info& component) {
    return component.eccType != kECC_NONE;
}

bool share_bits(const component_ref_info& a, const component_ref_info& b) {
    return lowest_bit(a) == lowest_bit(b) && is_check_lane(a) == is_check_lane(b);
}

std::string range_text(u64 first, u64 second) {
    return " [" + std::to_string(first) + ":" + std::to_string(second) + "]";
}

} // namespace

bool sort_componentRef_info(const component_ref_info* a, const component_ref_info* b) {
    // Top bits first, as maps are written: data arrives from the top of the bus on.
    return std::tuple(lowest_bit(*b), is_check_lane(*b), lowest_address(*a)) <
           std::tuple(lowest_bit(*a), is_check_lane(*a), lowest_address(*b));
}

bool sort_component_instance_order(const component_place_info& a, const component_place_info& b) {
    return a.block < b.block;
}

u64 get_component_instance_bit_size(const component_ref_info& component, bool ofCheckLanes) {
    if (is_check_lane(component) != ofCheckLanes) return 0;
    const u64 width = std::max(component.bitFirst, component.bitSecond) - lowest_bit(component);
    return width == UINT64_MAX ? width : width + 1;
}

int validate_component_instances(const InfoReader& in, const token_element* place,
    std::span<const component_place_info> places, u64 busWidth, const std::string& group) {
    u64 bits = 0;
    for (const component_place_info& at : places) {
        const u64 width = at.block == 0 ? get_component_instance_bit_size(*at.component, false) : 0;
        if (__builtin_add_overflow(bits, width, &bits)) bits = UINT64_MAX;
    }
    if (bits == busWidth) return 0;
    return PrintErrorLocation(in.stream, kERROR_MESSAGE_STRING, kSYNTAX_STATUS, place,
        formatted("\nValidation of component instances. The address space bus width is '%s' but the bit range is "
                  "'%s' for the component '%s'. \n",
            std::to_string(busWidth), std::to_string(bits), group));
}

int expand_component_references(const InfoReader& in, const token_element* place, const component_group_info& group,
    u64 busWidth, std::vector<component_place_info>* places) {
    std::vector<const component_ref_info*> sorted;
    for (const component_ref_info& component : group.components) sorted.push_back(&component);
    std::ranges::stable_sort(sorted, sort_componentRef_info);
    // Components of the same bits are neighbours now: one for each block.
    for (size_t i = 0; i < sorted.size(); ++i) {
        const bool sharesBits = i > 0 && share_bits(*sorted[i - 1], *sorted[i]);
        places->push_back({sorted[i], sharesBits ? places->back().block + 1 : 0});
    }
    std::ranges::stable_sort(*places, sort_component_instance_order);
    return validate_component_instances(in, place, *places, busWidth, group.name);
}

std::string expand_component_instance_names(const component_ref_info& component) {
    return construct_instance_path_hierarchy(component.path, component.instanceName);
}

std::string construct_bitLane_bitRange_string(const component_ref_info& component) {
    std::string text = range_text(component.bitFirst, component.bitSecond);
    if (component.addressFirst != 0 || component.addressSecond != 0)
        text += range_text(component.addressFirst, component.addressSecond);
    return text;
}

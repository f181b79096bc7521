// location_strings.cpp - see location_strings.h.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/location_strings.h"

#include "StringUtils/format.h"

#include <cstring>
#include <string_view>

namespace {

// The oldest memories are found by the row and column of their tile.
bool standsInRowAndColumn(const BitLaneType* lane) {
    return std::string_view(lane->memory->type->name) == "RAMB4";
}

char* put(char* out, const std::string& text) {
    std::memcpy(out, text.c_str(), text.size() + 1);
    return out;
}

std::string location(const BitLaneType* lane) {
    const std::string row = std::to_string(lane->locRow);
    const std::string column = std::to_string(lane->locColumn);
    return standsInRowAndColumn(lane) ? "R" + row + "C" + column : "X" + column + "Y" + row;
}

} // namespace

char* get_BRAM_LOC_string(const BitLaneType* lane, char* out) {
    return put(out, location(lane));
}

char* get_BRAM_device_LOC_string(const BitLaneType* lane, char* out) {
    return put(out, memdata::formatted("%s_%s", lane->memory->type->cellName, location(lane)));
}

char* get_BRAM_type_string(const BitLaneType* lane, char* out) {
    return put(out, memdata::formatted("%s_S%lld", lane->memory->type->name, lane->laneWidth));
}

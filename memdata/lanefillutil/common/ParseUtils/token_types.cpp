// token_types.cpp - membership in lists of token kinds.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/token_types.h"

namespace {

constexpr u32 kROOT_LEVEL = 0;
constexpr u32 kCLASS_LEVEL = 1;

bool stands_for(const token_type* entry, const token_type* type) {
    if (entry->level > kCLASS_LEVEL) return entry == type;
    if (type->parent == nullptr) return entry == type;
    return entry->level == kROOT_LEVEL ? type->parent->parent == entry : type->parent == entry;
}

} // namespace

bool One_Of_Tokens(const token_type* type, const token_type* const* list) {
    if (type == nullptr || list == nullptr) return false;
    for (; *list != nullptr; ++list)
        if (stands_for(*list, type)) return true;
    return false;
}

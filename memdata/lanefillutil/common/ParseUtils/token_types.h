// token_types.h - the kinds of tokens, as a fixed tree of three levels: root, class, leaf.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_TOKEN_TYPES_H
#define MEMDATA_PARSE_UTILS_TOKEN_TYPES_H

#include "platform/BasicTypes.h"

#include <string_view>

// A node of the tree. Nodes are compared by identity: take their addresses, never copies.
struct token_type {
    const token_type* parent; // null for roots and for free-standing kinds
    u32 level;                // 0 root, 1 class, 2 leaf
    u32 ordinal;              // place in the parent
    u32 childCount;           // as built; words added at run time count on from here
};

namespace memdata {

struct TokenTreeRow {
    std::string_view name;
    std::string_view parent;
};

inline constexpr TokenTreeRow kTOKEN_TREE[] = {
#define TOKEN_ROOT(name)                {#name, ""},
#define TOKEN_NODE(level, name, parent) {#name, #parent},
#include "ParseUtils/token_types.def"
#undef TOKEN_ROOT
#undef TOKEN_NODE
};

consteval u32 tokenOrdinal(std::string_view name) {
    std::string_view parent;
    for (const TokenTreeRow& row : kTOKEN_TREE)
        if (row.name == name) parent = row.parent;
    u32 ordinal = 0;
    for (const TokenTreeRow& row : kTOKEN_TREE) {
        if (row.name == name) break;
        if (row.parent == parent) ++ordinal;
    }
    return ordinal;
}

consteval u32 tokenChildCount(std::string_view name) {
    u32 count = 0;
    for (const TokenTreeRow& row : kTOKEN_TREE)
        if (row.parent == name) ++count;
    return count;
}

} // namespace memdata

#define TOKEN_ROOT(name) inline constexpr token_type name{nullptr, 0, 0, memdata::tokenChildCount(#name)};
#define TOKEN_NODE(level, name, parent)                                                                                \
    inline constexpr token_type name{&parent, level, memdata::tokenOrdinal(#name), memdata::tokenChildCount(#name)};
#include "ParseUtils/token_types.def"
#undef TOKEN_ROOT
#undef TOKEN_NODE

// Roots of the languages that are read with this front end. Each language defines its classes and leaves beside
// its keyword table:
//     inline constexpr token_type kMEMORY_TYPE_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 5, 10};
inline constexpr token_type kBMM_KEYWORD_TOKEN{nullptr, 0, 0, 0};
inline constexpr token_type kCMD_KEYWORD_TOKEN{nullptr, 0, 0, 0};
inline constexpr token_type kMEM_OPERATOR_TOKEN{nullptr, 0, 0, 0};
inline constexpr token_type kXML_OPERATOR_TOKEN{nullptr, 0, 0, 0};

// The class of the command's switches. It stands here because languages that are written behind a switch end where the
// next one begins.
inline constexpr token_type kCMD_LINE_SWITCH{&kCMD_KEYWORD_TOKEN, 1, 0, 30};

// Kinds that stand by themselves.
inline constexpr token_type kWHITESPACE_TOKEN{nullptr, 2, 0, 0};
inline constexpr token_type kIDENTIFIER_TOKEN{nullptr, 2, 0, 0};
inline constexpr token_type kQUOTED_STRING_TOKEN{nullptr, 2, 0, 0};     // "..."
inline constexpr token_type kQUOTED_TEXT_TOKEN{nullptr, 2, 0, 0};       // '...'
inline constexpr token_type kLITERAL_CHARACTER_TOKEN{nullptr, 2, 0, 0}; // its code is the value
inline constexpr token_type kTEXT_STRING_TOKEN{nullptr, 2, 0, 0};       // joined by parse_to_token
inline constexpr token_type kCOMMENT_BLOCK_TOKEN{nullptr, 2, 0, 0};

// Whether a type is in a list.
//   type  may be null, which is in no list
//   list  ended by null; a leaf stands for itself, a class for its leaves, a root for the leaves of its classes.
//         A class or root that has no parent also stands for itself.
bool One_Of_Tokens(const token_type* type, const token_type* const* list);

namespace memdata {

// Whether a type is a leaf of a class.
inline bool isOfClass(const token_type* type, const token_type& tokenClass) {
    return type != nullptr && type->parent == &tokenClass;
}

} // namespace memdata

#endif

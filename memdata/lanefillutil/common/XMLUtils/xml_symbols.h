// xml_symbols.h - the marks of XML as keywords.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_XML_UTILS_XML_SYMBOLS_H
#define MEMDATA_XML_UTILS_XML_SYMBOLS_H

#include "ParseUtils/keyword_sets.h"

inline constexpr token_type kXML_MARK_TOKEN{&kXML_OPERATOR_TOKEN, 1, 0, 8};
inline constexpr token_type kXML_DECLARATION_BEGIN{&kXML_MARK_TOKEN, 2, 0, 0}; // <?
inline constexpr token_type kXML_DECLARATION_END{&kXML_MARK_TOKEN, 2, 1, 0};   // ?>
inline constexpr token_type kXML_COMMENT_BEGIN{&kXML_MARK_TOKEN, 2, 2, 0};     // <!--
inline constexpr token_type kXML_COMMENT_END{&kXML_MARK_TOKEN, 2, 3, 0};       // -->
inline constexpr token_type kXML_END_TAG_START{&kXML_MARK_TOKEN, 2, 4, 0};     // </
inline constexpr token_type kXML_START_TAG_BEGIN{&kXML_MARK_TOKEN, 2, 5, 0};   // <
inline constexpr token_type kXML_TAG_END{&kXML_MARK_TOKEN, 2, 6, 0};           // >
inline constexpr token_type kXML_EMPTY_TAG_END{&kXML_MARK_TOKEN, 2, 7, 0};     // />

extern token_set xml_symbol_set;

#endif

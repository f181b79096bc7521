// xml_symbols.cpp - see xml_symbols.h.
// SPDX-License-Identifier: Apache-2.0
#include "XMLUtils/xml_symbols.h"

namespace {

// The first row that matches the text wins: the longer marks stand ahead of those that they begin with.
constexpr keyword_row kXML_SYMBOLS[] = {
    {"<?", &kXML_DECLARATION_BEGIN, true},
    {"?>", &kXML_DECLARATION_END, true},
    {"<!--", &kXML_COMMENT_BEGIN, true},
    {"-->", &kXML_COMMENT_END, true},
    {"</", &kXML_END_TAG_START, true},
    {"<", &kXML_START_TAG_BEGIN, true},
    {">", &kXML_TAG_END, true},
    {"/>", &kXML_EMPTY_TAG_END, true},
    {},
};

} // namespace

token_set xml_symbol_set{kXML_SYMBOLS};

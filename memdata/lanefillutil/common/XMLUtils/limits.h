// limits.h - what a document may not exceed, with what is said when it does.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_XML_UTILS_LIMITS_H
#define MEMDATA_XML_UTILS_LIMITS_H

#include "SystemUtils/messages.h"

namespace memdata {

// Elements inside each other, the outermost counted. Arguments: the element, the limit.
inline constexpr u32 kMAX_XML_DEPTH = 1000;
inline constexpr Alert_message_type kERROR_XML_TOO_DEEP{
    0, "Element '%s' can not be read, the limit of %ld nested elements is reached."};

// Attributes of one element. Arguments: the element, the limit.
inline constexpr u32 kMAX_XML_ATTRIBUTES = 10000;
inline constexpr Alert_message_type kERROR_TOO_MANY_XML_ATTRIBUTES{
    0, "Element '%s' can not be read, it has more than the limit of %ld attributes."};

// Values are C strings. Arguments: the attribute, the element.
inline constexpr Alert_message_type kERROR_XML_ZERO_BYTE{
    0, "Attribute '%s' of element '%s' can not be read, its value holds a zero byte."};

} // namespace memdata

#endif

// message_arguments.h - catalogue codes taken apart, and their arguments made texts.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_MESSAGE_ARGUMENTS_H
#define MEMDATA_PLATFORM_MESSAGE_ARGUMENTS_H

#include "platform/FormatArgument.h"

#include <string>
#include <string_view>
#include <vector>

namespace memdata {

// Splits "@28-207@%s" into area 28, number 207 and the rest, which is returned. A text that begins with no
// code is returned whole, area and number being 0.
std::string_view takeMessageCode(std::string_view message, u32* area, u32* number);

// One text for each argument, in order. The conversions of the format are taken in turn: %s, %c, %d, %i, %u,
// %x, %X, %o with `0`, `-` and a width; lengths (l, ll, h, z) are read and change only this: a negative
// number in %x, %X, %o or %u without an `l` shows its low 32 bits, otherwise all 64. An argument of another
// kind than its conversion, or without one, is rendered by its own kind: decimal, or the text itself.
std::vector<std::string> renderedArguments(std::string_view format, std::span<const FormatArgument> arguments);

} // namespace memdata

#endif

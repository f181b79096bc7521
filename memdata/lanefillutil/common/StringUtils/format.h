// format.h - the formatter of the engine over typed arguments.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_STRING_UTILS_FORMAT_H
#define MEMDATA_STRING_UTILS_FORMAT_H

#include "platform/FormatArgument.h"

#include <cstdarg>
#include <span>
#include <string>
#include <string_view>

namespace memdata {

// The one core: renders format over arguments. An argument that the format asks for and that was not passed
// renders as nothing; one of another kind than the conversion is rendered by its own kind.
std::string formatText(const char* format, std::span<const FormatArgument> arguments);

template<class... Arguments>
std::string formatted(const char* format, const Arguments&... arguments) {
    return formatText(format, formatArguments(arguments...));
}

} // namespace memdata

#endif

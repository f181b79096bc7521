// FormatArgument.h - one typed argument of a message or text format.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_FORMAT_ARGUMENT_H
#define MEMDATA_PLATFORM_FORMAT_ARGUMENT_H

#include "platform/BasicTypes.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>

namespace memdata {

// One argument of a format: an integer, a float or a text. A pointer to anything but char counts as an
// unsigned integer; a null text prints "(null)".
struct FormatArgument {
    enum Kind : u8 { kSIGNED, kUNSIGNED, kFLOAT, kTEXT };

    Kind kind;
    union {
        u64 integer; // the value, sign-extended when kSIGNED
        long double real;
        const char* text;
    };

    template<class T>
    requires std::integral<T> || std::is_enum_v<T> FormatArgument(
        T value) // NOLINT(google-explicit-constructor): arguments convert by themselves
        : kind(std::is_signed_v<T> ? kSIGNED : kUNSIGNED), integer(static_cast<u64>(value)) {}
    template<std::floating_point T>
    FormatArgument(T value) : kind(kFLOAT), real(value) {}
    FormatArgument(const char* value) : kind(kTEXT), text(value) {}
    FormatArgument(std::nullptr_t) : kind(kTEXT), text(nullptr) {}
    FormatArgument(const std::string& value) : kind(kTEXT), text(value.c_str()) {}
    template<class T>
    requires(!std::same_as<std::remove_cv_t<T>, char>) FormatArgument(T* value)
        : kind(kUNSIGNED), integer(reinterpret_cast<std::uintptr_t>(value)) {}
};

template<class... Arguments>
std::array<FormatArgument, sizeof...(Arguments)> formatArguments(const Arguments&... arguments) {
    return {FormatArgument(arguments)...};
}

} // namespace memdata

#endif

// message_arguments.cpp - catalogue codes taken apart, and their arguments made texts.
// SPDX-License-Identifier: Apache-2.0
#include "platform/message_arguments.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace {

using memdata::FormatArgument;

constexpr size_t kMAX_FIELD_WIDTH = 64; // characters; a wider field than a number can fill is a slip of the pen

struct Conversion {
    char letter = 0; // 0: none is left
    bool zeroPadded = false;
    bool leftJustified = false;
    bool isLong = false;
    size_t width = 0;
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isConversionLetter(char c) {
    return std::string_view("scdiuxXofFgGeEp").find(c) != std::string_view::npos;
}

// Takes the next conversion off the format.
Conversion nextConversion(std::string_view* format) {
    std::string_view& rest = *format;
    while (true) {
        const size_t percent = rest.find('%');
        if (percent == std::string_view::npos) {
            rest = {};
            return {};
        }
        rest.remove_prefix(percent + 1);
        if (rest.starts_with('%')) {
            rest.remove_prefix(1);
            continue;
        }
        Conversion found;
        while (!rest.empty() && found.letter == 0) {
            const char c = rest.front();
            if (isConversionLetter(c))
                found.letter = c;
            else if (c == '0' && found.width == 0)
                found.zeroPadded = true;
            else if (c == '-')
                found.leftJustified = true;
            else if (c == 'l')
                found.isLong = true;
            else if (isDigit(c))
                found.width = std::min(found.width * 10 + static_cast<size_t>(c - '0'), kMAX_FIELD_WIDTH);
            rest.remove_prefix(1);
        }
        return found;
    }
}

std::string digitsOf(u64 value, int radix, bool upperCase) {
    char digits[64];
    char* end = std::to_chars(digits, std::end(digits), value, radix).ptr;
    std::string text(digits, end);
    if (upperCase)
        std::ranges::transform(text, text.begin(), [](char c) { return c >= 'a' ? static_cast<char>(c - 32) : c; });
    return text;
}

std::string signedText(u64 bits) {
    return std::to_string(static_cast<i64>(bits));
}

std::string floatText(long double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%Lg", value);
    return text;
}

std::string byOwnKind(const FormatArgument& argument) {
    switch (argument.kind) {
    case FormatArgument::kSIGNED:
        return signedText(argument.integer);
    case FormatArgument::kUNSIGNED:
        return std::to_string(argument.integer);
    case FormatArgument::kFLOAT:
        return floatText(argument.real);
    case FormatArgument::kTEXT:
        return argument.text == nullptr ? "(null)" : argument.text;
    }
    return {};
}

std::string integerText(const Conversion& conversion, const FormatArgument& argument) {
    const bool isNegative = argument.kind == FormatArgument::kSIGNED && static_cast<i64>(argument.integer) < 0;
    const u64 pattern = isNegative && !conversion.isLong ? static_cast<u32>(argument.integer) : argument.integer;
    switch (conversion.letter) {
    case 'x':
        return digitsOf(pattern, 16, false);
    case 'X':
        return digitsOf(pattern, 16, true);
    case 'o':
        return digitsOf(pattern, 8, false);
    case 'u':
        return digitsOf(pattern, 10, false);
    case 'c':
        return std::string(1, static_cast<char>(argument.integer));
    default:
        return byOwnKind(argument);
    }
}

std::string padded(std::string text, const Conversion& conversion, bool isNumber) {
    if (text.size() >= conversion.width) return text;
    const size_t missing = conversion.width - text.size();
    if (conversion.leftJustified)
        text.append(missing, ' ');
    else if (conversion.zeroPadded && isNumber)
        text.insert(text.starts_with('-') ? 1 : 0, missing, '0'); // inside the sign
    else
        text.insert(0, missing, ' ');
    return text;
}

std::string rendered(const Conversion& conversion, const FormatArgument& argument) {
    const bool isInteger = argument.kind == FormatArgument::kSIGNED || argument.kind == FormatArgument::kUNSIGNED;
    std::string text = isInteger ? integerText(conversion, argument) : byOwnKind(argument);
    return padded(std::move(text), conversion, isInteger && conversion.letter != 'c');
}

// The number that the text begins with; nothing is taken when it begins with none.
bool takeNumber(std::string_view* text, u32* number) {
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), *number);
    if (error != std::errc()) return false;
    text->remove_prefix(static_cast<size_t>(end - text->data()));
    return true;
}

bool takeCharacter(std::string_view* text, char c) {
    if (!text->starts_with(c)) return false;
    text->remove_prefix(1);
    return true;
}

} // namespace

namespace memdata {

std::string_view takeMessageCode(std::string_view message, u32* area, u32* number) {
    std::string_view rest = message;
    if (takeCharacter(&rest, '@') && takeNumber(&rest, area) && takeCharacter(&rest, '-') &&
        takeNumber(&rest, number) && takeCharacter(&rest, '@'))
        return rest;
    *area = *number = 0;
    return message;
}

std::vector<std::string> renderedArguments(std::string_view format, std::span<const FormatArgument> arguments) {
    std::vector<std::string> texts;
    texts.reserve(arguments.size());
    for (const FormatArgument& argument : arguments) texts.push_back(rendered(nextConversion(&format), argument));
    return texts;
}

} // namespace memdata

// format.cpp - the formatter: one state loop over a format, fed from typed arguments or from a va_list.
//
//   format      literal text with backslash escapes, and conversions
//   conversion  '%', then in any order flags, width, precision and length, then one letter of kCONVERSIONS
// A character that belongs to no conversion is passed over and the scan of the conversion goes on, on purpose:
// "%u" eats the text behind it up to the next letter that converts.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/format.h"

#include "StringUtils/escape.h"
#include "StringUtils/internal.h"
#include "StringUtils/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

namespace {

using memdata::FormatArgument;

enum class ConversionKind : u8 { PERCENT, CHARACTER, SIGNED, UNSIGNED, REAL, TEXT };

struct ConversionRowType {
    char letter;
    ConversionKind kind;
    unsigned radix; // of integers
};
constexpr ConversionRowType kCONVERSIONS[] = {
    {'%', ConversionKind::PERCENT, 10},
    {'b', ConversionKind::UNSIGNED, 2},
    {'B', ConversionKind::UNSIGNED, 2},
    {'c', ConversionKind::CHARACTER, 10},
    {'d', ConversionKind::SIGNED, 10},
    {'f', ConversionKind::REAL, 10},
    {'F', ConversionKind::REAL, 10},
    {'o', ConversionKind::UNSIGNED, 8},
    {'O', ConversionKind::UNSIGNED, 8},
    {'s', ConversionKind::TEXT, 10},
    {'x', ConversionKind::UNSIGNED, 16}, // upper case digits for both letters
    {'X', ConversionKind::UNSIGNED, 16},
};

constexpr unsigned kDEFAULT_FRACTION_DIGITS = 6;
constexpr i64 kLARGEST_FIELD_NUMBER = INT32_MAX; // where the digits of a width or precision stop counting

// One conversion as it was scanned.
struct ConversionType {
    const ConversionRowType* row = nullptr; // null: the format ended inside the conversion
    bool leftJustify = false;
    bool plusSign = false;
    bool blankSign = false;
    bool zeroPad = false;
    bool showRadix = false;
    bool longReal = false; // an upper case L was among the length letters
    bool hasPrecision = false;
    unsigned lengthLetters = 0;
    i64 width = 0;
    i64 precision = 0;
};

// What a conversion takes; only a va_list has to know.
enum class Wanted : u8 { INTEGER_32, INTEGER_64, REAL, LONG_REAL, TEXT };

class ArgumentSource {
public:
    virtual ~ArgumentSource() = default;
    virtual const FormatArgument* next(Wanted wanted) = 0; // null when there is none left; good until the next call
};

class TypedArguments final : public ArgumentSource {
public:
    explicit TypedArguments(std::span<const FormatArgument> arguments) : rest_(arguments) {}
    const FormatArgument* next(Wanted) override {
        if (rest_.empty()) return nullptr;
        const FormatArgument* taken = rest_.data();
        rest_ = rest_.subspan(1);
        return taken;
    }

private:
    std::span<const FormatArgument> rest_;
};

// A va_list knows neither types nor an end: the caller's format answers for both.
class VariableArguments final : public ArgumentSource {
public:
    explicit VariableArguments(va_list arguments) { va_copy(list_, arguments); }
    ~VariableArguments() override { va_end(list_); }
    VariableArguments& operator=(VariableArguments&&) = delete; // neither copied nor moved

    const FormatArgument* next(Wanted wanted) override {
        switch (wanted) {
        case Wanted::INTEGER_32:
            taken_ = va_arg(list_, int);
            break; // of a long, the low half is read
        case Wanted::INTEGER_64:
            taken_ = va_arg(list_, long long);
            break;
        case Wanted::REAL:
            taken_ = va_arg(list_, double);
            break;
        case Wanted::LONG_REAL:
            taken_ = va_arg(list_, long double);
            break;
        case Wanted::TEXT:
            taken_ = va_arg(list_, const char*);
            break;
        }
        return &taken_;
    }

private:
    va_list list_;
    FormatArgument taken_{0};
};

const ConversionRowType* find_conversion(char letter) {
    const auto* row = std::ranges::find(kCONVERSIONS, letter, &ConversionRowType::letter);
    return row == std::end(kCONVERSIONS) ? nullptr : row;
}

// Takes the digits at the cursor, at least one.
i64 scan_field_number(const char** cursor) {
    i64 value = 0;
    for (; **cursor >= '0' && **cursor <= '9'; ++*cursor)
        value = std::min(value * 10 + (**cursor - '0'), kLARGEST_FIELD_NUMBER);
    return value;
}

// A width or precision from the arguments; nothing when the argument is missing or no integer.
std::optional<i64> take_field_number(ArgumentSource* arguments) {
    const FormatArgument* argument = arguments->next(Wanted::INTEGER_32);
    if (argument == nullptr ||
        (argument->kind != FormatArgument::kSIGNED && argument->kind != FormatArgument::kUNSIGNED))
        return std::nullopt;
    return static_cast<i32>(argument->integer);
}

void set_field_number(ConversionType* conversion, bool isPrecision, i64 number) {
    if (isPrecision) {
        conversion->hasPrecision = number >= 0; // a negative precision is none
        conversion->precision = std::max<i64>(number, 0);
    } else {
        if (number < 0) conversion->leftJustify = true;
        conversion->width = std::abs(number);
    }
}

// Scans one conversion from behind its percent sign up to and with its letter.
ConversionType scan_conversion(const char** cursor, ArgumentSource* arguments) {
    ConversionType conversion;
    bool inPrecision = false;
    while (**cursor != '\0' && conversion.row == nullptr) {
        const char c = **cursor;
        if ((c >= '1' && c <= '9') || (c == '0' && inPrecision)) {
            set_field_number(&conversion, inPrecision, scan_field_number(cursor));
            continue;
        }
        ++*cursor;
        switch (c) {
        case ' ':
            conversion.blankSign = true;
            break;
        case '#':
            conversion.showRadix = true;
            break;
        case '+':
            conversion.plusSign = true;
            break;
        case '-':
            conversion.leftJustify = true;
            break;
        case '0':
            conversion.zeroPad = true;
            break;
        case '.':
            inPrecision = true;
            set_field_number(&conversion, inPrecision, 0);
            break;
        case '*':
            if (const std::optional<i64> number = take_field_number(arguments))
                set_field_number(&conversion, inPrecision, *number);
            break;
        case 'L':
            conversion.longReal = true;
            [[fallthrough]];
        case 'l':
            ++conversion.lengthLetters;
            break;
        default:
            conversion.row = find_conversion(c);
            break;
        }
    }
    return conversion;
}

size_t bounded(i64 fieldNumber) {
    return static_cast<size_t>(std::min<i64>(fieldNumber, memdata::kMAX_FIELD_CHARACTERS));
}

// The sign position of a number: '-', what the flags ask for, or nothing.
std::string_view sign_text(const ConversionType& conversion, bool isNegative) {
    if (isNegative) return "-";
    if (conversion.plusSign) return "+";
    return conversion.blankSign ? " " : "";
}

// The one place where numbers are padded. lead (sign or radix prefix) and digits stay apart, so that zeros on the
// left go between them. With '-' the same pad character goes to the right, zeros too, on purpose.
void append_number(std::string* out, const ConversionType& conversion, std::string_view lead, std::string_view digits,
    size_t precision, bool zeroPad) {
    const size_t extension = precision > digits.size() ? precision - digits.size() : 0;
    const size_t length = lead.size() + extension + digits.size();
    const size_t width = bounded(conversion.width);
    const size_t fill = width > length ? width - length : 0;

    if (!conversion.leftJustify && !zeroPad) out->append(fill, ' ');
    out->append(lead);
    if (!conversion.leftJustify && zeroPad) out->append(fill, '0');
    out->append(extension, '0');
    out->append(digits);
    if (conversion.leftJustify) out->append(fill, zeroPad ? '0' : ' ');
}

void append_integer(std::string* out, const ConversionType& conversion, u64 value, bool isSigned, unsigned radix) {
    const bool isNegative = isSigned && static_cast<i64>(value) < 0;
    const memdata::Digits digits(isNegative ? 0 - value : value, radix);
    std::string_view lead;
    if (isSigned)
        lead = sign_text(conversion, isNegative);
    else if (conversion.showRadix)
        lead = memdata::radixPrefix(radix);
    const size_t precision = conversion.hasPrecision ? bounded(conversion.precision) : 0;
    append_number(out, conversion, lead, digits.text(), precision, conversion.zeroPad);
}

void append_real(std::string* out, const ConversionType& conversion, long double value) {
    const size_t fractionDigits = conversion.hasPrecision ? bounded(conversion.precision) : kDEFAULT_FRACTION_DIGITS;
    const std::string digits = memdata::floatDigits(std::fabs(value), static_cast<unsigned>(fractionDigits));
    // Zeros in front of "inf" and "nan" would make no number of them.
    const bool zeroPad = conversion.zeroPad && std::isfinite(value);
    append_number(out, conversion, sign_text(conversion, value < 0), digits, 0, zeroPad);
}

// Texts are padded with blanks; zeros belong to numbers.
void append_text(std::string* out, const ConversionType& conversion, std::string_view text) {
    const size_t width = bounded(conversion.width);
    const size_t fill = width > text.size() ? width - text.size() : 0;
    if (!conversion.leftJustify) out->append(fill, ' ');
    out->append(text);
    if (conversion.leftJustify) out->append(fill, ' ');
}

// A precision cuts a text, and no more of it is read: with one, the text need not be terminated.
void append_text_argument(std::string* out, const ConversionType& conversion, const char* text) {
    if (text == nullptr) text = "(null)";
    const bool isCut = conversion.hasPrecision;
    append_text(out, conversion,
        isCut ? std::string_view(text, strnlen(text, static_cast<size_t>(conversion.precision)))
              : std::string_view(text));
}

// A character of -1 stands for the end of a file. NUL yields no character: it would end the text.
void append_character(std::string* out, const ConversionType& conversion, u64 value) {
    if (static_cast<i32>(value) == -1) return append_text(out, conversion, "EOF");
    const char c = static_cast<char>(value & 0xFF);
    append_text(out, conversion, std::string_view(&c, c == '\0' ? 0 : 1));
}

Wanted wanted_argument(const ConversionType& conversion) {
    switch (conversion.row->kind) {
    case ConversionKind::TEXT:
        return Wanted::TEXT;
    case ConversionKind::REAL:
        return conversion.longReal || conversion.lengthLetters >= 2 ? Wanted::LONG_REAL : Wanted::REAL;
    default:
        return conversion.lengthLetters >= 2 ? Wanted::INTEGER_64 : Wanted::INTEGER_32;
    }
}

void append_integer_argument(std::string* out, const ConversionType& conversion, const FormatArgument& argument) {
    u64 value = argument.integer;
    switch (conversion.row->kind) {
    case ConversionKind::CHARACTER:
        return append_character(out, conversion, value);
    case ConversionKind::SIGNED:
        // Fewer than two length letters read 32 bits, whatever was passed; two read 64.
        if (conversion.lengthLetters < 2) value = static_cast<u64>(i64{static_cast<i32>(value)});
        return append_integer(out, conversion, value, true, conversion.row->radix);
    case ConversionKind::UNSIGNED:
        if (conversion.lengthLetters < 2) value = static_cast<u32>(value);
        return append_integer(out, conversion, value, false, conversion.row->radix);
    default: // not meant for integers: shown as the integer that it is
        return append_integer(out, conversion, value, argument.kind == FormatArgument::kSIGNED, 10);
    }
}

// The kind of the argument decides, the conversion only shapes: a mismatch never reads what is not there.
void append_conversion(std::string* out, const ConversionType& conversion, ArgumentSource* arguments) {
    if (conversion.row == nullptr) return;
    if (conversion.row->kind == ConversionKind::PERCENT) return out->push_back('%');
    const FormatArgument* argument = arguments->next(wanted_argument(conversion));
    if (argument == nullptr) return;
    switch (argument->kind) {
    case FormatArgument::kTEXT:
        return append_text_argument(out, conversion, argument->text);
    case FormatArgument::kFLOAT:
        return append_real(out, conversion, argument->real);
    default:
        return append_integer_argument(out, conversion, *argument);
    }
}

void append_format(std::string* out, const char* format, ArgumentSource* arguments) {
    if (format == nullptr) return;
    out->reserve(out->size() + 2 * std::strlen(format)); // room for a usual line
    while (*format != '\0') {
        const char* plain = format;
        while (*format != '\0' && *format != '%' && *format != '\\') ++format;
        out->append(plain, format);
        if (*format == '%') {
            ++format;
            append_conversion(out, scan_conversion(&format, arguments), arguments);
        } else if (*format == '\\') {
            char c = '\0';
            convert_escaped_char(&format, nullptr, nullptr, &c);
            if (c != '\0') out->push_back(c); // as with %c
        }
    }
}

// The text of s, which is released at the end: the arguments may point into it.
char* append_to_string(char* s, const char* format, ArgumentSource* arguments) {
    const memdata::OwnedString released(s);
    return memdata::managedText([&](std::string* text) {
        if (s != nullptr) text->append(s);
        append_format(text, format, arguments);
    });
}

} // namespace

std::string memdata::formatText(const char* format, std::span<const FormatArgument> arguments) {
    std::string text;
    TypedArguments source(arguments);
    append_format(&text, format, &source);
    return text;
}

char memdata::skipConversion(const char** cursor) {
    TypedArguments none({});
    ++*cursor;
    const ConversionType conversion = scan_conversion(cursor, &none);
    return conversion.row == nullptr ? '\0' : conversion.row->letter;
}

char* memdata::appendFormatted(char* s, const char* format, std::span<const FormatArgument> arguments) {
    TypedArguments source(arguments);
    return append_to_string(s, format, &source);
}

char* vStrPrintf(char* s, const char* format, va_list arguments) {
    VariableArguments source(arguments);
    return append_to_string(s, format, &source);
}

char* StrPrintf(char* s, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char* text = vStrPrintf(s, format, arguments);
    va_end(arguments);
    return text;
}

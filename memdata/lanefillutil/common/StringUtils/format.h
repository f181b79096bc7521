// format.h - the formatter of the engine over typed arguments.
//
// Literal text of a format may hold backslash escapes, which are expanded (escape.h). A conversion is a percent
// sign, then flags, width, precision and length in any order, then a letter:
//   blank +      what stands before a number that is not negative, in d and f; a plus wins
//   -            left justify
//   0            pad numbers with zeros between sign or radix prefix and digits; a digit inside a width. Left
//                justified, the zeros follow the digits
//   #            radix prefix of b, o and x: "0b", "0o", "0x"
//   1 to 9 ...   width; behind a point, precision (with 0 too)
//   *            width or precision from an argument; a negative width justifies left, a negative precision is none
//   l L          none or one: an integer is cut to its low 32 bits; two: all 64
//   b B o O x X  unsigned binary, octal, hexadecimal with upper case digits; precision: at least so many digits
//   d            signed decimal; precision likewise
//   f F          float; precision: fraction digits, cut and not rounded, 6 when not given
//   c            one character; -1 prints "EOF", NUL nothing
//   s            text; precision: at most so many characters, and no more are read; null prints "(null)"
//   %            a percent sign
// There is no u, e, g, p or n: any other character is passed over without output and the scan goes on, so that
// "%u" eats its text up to the next letter that converts. A conversion that the format's end cuts off prints nothing.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_STRING_UTILS_FORMAT_H
#define MEMDATA_STRING_UTILS_FORMAT_H

#include "platform/FormatArgument.h"

#include <cstdarg>
#include <span>
#include <string>
#include <string_view>

namespace memdata {

// Widths and precisions count up to here, so that no format asks for more memory than its texts need.
inline constexpr unsigned kMAX_FIELD_CHARACTERS = 1U << 20;

// The one core: renders format over arguments. An argument that the format asks for and that was not passed
// renders as nothing; one of another kind than the conversion is rendered by its own kind. A null format is empty.
// Linear in the format and its texts; the result holds no NUL. Throws std::bad_alloc only.
std::string formatText(const char* format, std::span<const FormatArgument> arguments);

template<class... Arguments>
std::string formatted(const char* format, const Arguments&... arguments) {
    return formatText(format, formatArguments(arguments...));
}

// Passes over one conversion of a format; the cursor stands at its percent sign and is left behind its letter. The
// letter, or NUL when the format ends inside the conversion.
char skipConversion(const char** cursor);

} // namespace memdata

#endif

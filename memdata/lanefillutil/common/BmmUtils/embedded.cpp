// embedded.cpp - numbers and locations inside a text.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/embedded.h"

#include "BmmUtils/syntax.h"
#include "ParseUtils/characters.h"
#include "ParseUtils/numbers.h"
#include "SystemUtils/alerts.h"

using namespace memdata;

namespace {

constexpr const char* kNUMBER_EXPECTED = "numeric BRAM LOC value";

bool is_space(char c) {
    return isOf(c, kBLANK_CHARACTER | kLINE_END_CHARACTER);
}

void pass_space(const char** cursor) {
    while (is_space(**cursor)) ++*cursor;
}

long double fold(long double left, char op, long double right) {
    if (op == '*') return left * right;
    if (op == '+') return left + right;
    return op == '-' ? left - right : left / right;
}

bool is_fold_operator(char c) {
    return c == '*' || c == '+' || c == '-' || c == '/';
}

int refuse(parse_stream* stream, const token_element* token, const Alert_message_type& message, const char* found,
    const char* expected) {
    if (stream == nullptr) return kSYNTAX_STATUS;
    return PrintErrorLocation(stream, message, kSYNTAX_STATUS, token, found, expected);
}

int refuse_letter(parse_stream* stream, const token_element* token, const char* text, const char* expected) {
    return refuse(stream, token, kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, text, expected);
}

// A coordinate, which takes 32 bits.
int read_coordinate(
    parse_stream* stream, const token_element* token, const char* text, const char** cursor, unsigned* coordinate) {
    long double value = 0;
    const bool isNumber = parse_embedded_number(cursor, &value) && value >= 0 && value <= UINT32_MAX;
    if (!isNumber) return refuse(stream, token, kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, text, kNUMBER_EXPECTED);
    *coordinate = static_cast<unsigned>(value);
    return 0;
}

} // namespace

bool parse_number(const char** cursor, long double* value) {
    pass_space(cursor);
    if (!isOf(**cursor, kDIGIT_CHARACTER)) return false;
    long double number = 0;
    for (; isOf(**cursor, kDIGIT_CHARACTER); ++*cursor) number = number * 10 + (**cursor - '0');
    pass_space(cursor);
    *value = number;
    return true;
}

bool parse_embedded_number(const char** cursor, long double* value) {
    long double number = 0;
    if (!parse_number(cursor, &number)) return false;
    while (is_fold_operator(**cursor)) {
        const char op = *(*cursor)++;
        long double operand = 0;
        if (!parse_number(cursor, &operand)) return false;
        number = fold(number, op, operand);
    }
    *value = number;
    return true;
}

int parse_embedded_number_range(
    parse_stream* stream, const token_element* token, const char* text, u64* first, u64* second) {
    const char* cursor = text == nullptr ? "" : text;
    const char* shown = cursor;
    long double low = 0;
    if (!parse_embedded_number(&cursor, &low))
        return refuse(stream, token, kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, shown, "invalid starting expression token");
    long double high = low;
    if (*cursor == ':') {
        ++cursor;
        if (!parse_embedded_number(&cursor, &high))
            return refuse(stream, token, kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, shown, "invalid ending expression token");
    }
    if (*cursor != '\0') return refuse(stream, token, kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, shown, "range separator ':'");
    *first = unsignedFromValue(low);
    *second = unsignedFromValue(high);
    return 0;
}

int parse_BRAM_location_string(
    parse_stream* stream, const token_element* token, const char* text, unsigned* row, unsigned* column) {
    const char* cursor = text;
    const char first = foldedCase(*cursor);
    if (first != 'r' && first != 'x') return refuse_letter(stream, token, text, "R or X");
    ++cursor;
    unsigned firstNumber = 0;
    if (int status = read_coordinate(stream, token, text, &cursor, &firstNumber); status != 0) return status;
    // R goes with C, X with Y: otherwise one coordinate would be given twice and the other one not at all.
    if (foldedCase(*cursor) != (first == 'r' ? 'c' : 'y')) return refuse_letter(stream, token, text, "C or Y");
    ++cursor;
    unsigned secondNumber = 0;
    if (int status = read_coordinate(stream, token, text, &cursor, &secondNumber); status != 0) return status;
    if (*cursor != '\0') return refuse(stream, token, kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, text, kNUMBER_EXPECTED);
    *row = first == 'r' ? firstNumber : secondNumber;
    *column = first == 'r' ? secondNumber : firstNumber;
    return 0;
}

int parse_embedded_location_string(
    parse_stream* stream, const token_element* token, const char* text, unsigned* row, unsigned* column) {
    const char* cursor = text;
    pass_space(&cursor);
    do {
        const char letter = foldedCase(*cursor);
        if (letter != 'x' && letter != 'y') return refuse_letter(stream, token, text, "LOC indicator X or Y");
        ++cursor;
        unsigned* coordinate = letter == 'x' ? column : row;
        if (int status = read_coordinate(stream, token, text, &cursor, coordinate); status != 0) return status;
    } while (*cursor != '\0');
    return 0;
}

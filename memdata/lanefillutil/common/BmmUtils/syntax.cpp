// syntax.cpp - what the statements of an address map are built from.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/syntax.h"

#include "ParseUtils/expressions.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

using namespace memdata;

namespace {

constexpr const token_type* terminationTokens[] = {&kCOLON, &kRIGHT_BRACKET, nullptr};

// The number behind token, up to its terminator.
int read_bound(parse_stream* stream, token_element* token, const char* expected, long double* value) {
    const int status = Get_Expression_Value(stream, token, value, terminationTokens);
    if (status == kSYNTAX_STATUS) return refuseIllegalToken(stream, token, expected);
    if (status == 0) *value = static_cast<long double>(unsignedFromValue(*value));
    return status;
}

} // namespace

int memdata::refuseSymbol(parse_stream* stream, const token_element* token, const char* expected) {
    return PrintErrorLocation(
        stream, kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, kSYNTAX_STATUS, token, token->text, expected);
}

int memdata::refuseIllegalToken(parse_stream* stream, const token_element* token, const char* expected) {
    return PrintErrorLocation(stream, kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, kSYNTAX_STATUS, token, token->text, expected);
}

int memdata::refuseKeyword(parse_stream* stream, const token_element* token, const char* clause) {
    return PrintErrorLocation(stream, kERROR_UNEXPECTED_KEYWORD, kSYNTAX_STATUS, token, token->text, clause);
}

int memdata::refuseMissingKeyword(parse_stream* stream, const token_element* token, const token_type& expected) {
    return PrintErrorLocation(
        stream, kERROR_MISSING_KEYWORD_AND_EXPECTED, kSYNTAX_STATUS, token, token->text, blockStructureWord(expected));
}

token_element memdata::placeOf(const token_element* token) {
    token_element place{};
    place.sourcePosition = token->sourcePosition;
    place.lineStart = token->lineStart;
    place.lineNumber = token->lineNumber;
    place.textId = token->textId;
    return place;
}

int parse_statement_terminator(parse_stream* stream, token_element* token) {
    if (token->type != &kSEMICOLON)
        return PrintErrorLocation(stream, kERROR_MISSING_STATEMENT_TERMINATOR, kSYNTAX_STATUS, token, token->text, ";");
    return get_next_token(stream, token);
}

int parse_number_range(parse_stream* stream, token_element* token, long double* first, long double* second) {
    if (token->type != &kLEFT_BRACKET) return refuseIllegalToken(stream, token, "opening range bracket '['");
    if (int status = read_bound(stream, token, "invalid starting expression token", first); status != 0) return status;
    *second = *first;
    if (token->type != &kRIGHT_BRACKET) {
        if (token->type != &kCOLON) return refuseIllegalToken(stream, token, "range separator ':'");
        if (int status = read_bound(stream, token, "invalid ending expression token", second); status != 0)
            return status;
        if (token->type != &kRIGHT_BRACKET) return refuseIllegalToken(stream, token, "closing range bracket ']'");
    }
    return get_next_token(stream, token);
}

int memdata::parseNumberRange(parse_stream* stream, token_element* token, u64* first, u64* second) {
    long double low = 0;
    long double high = 0;
    const int status = parse_number_range(stream, token, &low, &high);
    *first = unsignedFromValue(low);
    *second = unsignedFromValue(high);
    return status;
}

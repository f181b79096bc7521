// parser.cpp - see parser.h.
// SPDX-License-Identifier: Apache-2.0
#include "MemUtils/parser.h"

#include "MemUtils/keywords.h"
#include "MemUtils/plain_values.h"
#include "MemUtils/text_values.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

#include <cstring>

namespace {

using namespace memdata;

constexpr u32 kDECIMAL = 10;
constexpr u32 kHEXADECIMAL = 16;
constexpr u64 kADDRESS_DIGITS = 16;
constexpr const char* kSECTION_ADDRESS = "section address value";
constexpr const char* kRADIX_VALUE = "radix value";
constexpr const char* kNO_COMMA_HERE =
    "valid data value. Commas stand only between the values of a memory_initialization_vector";

struct TextReader {
    parse_stream* stream;
    DataStructureBlockType* block;
    ValueReading reading;
    token_element* token; // the last one read
};

// Whatever is wrong with a text, down to its macros, is damage of the file.
int textStatus(int status) {
    return status == 0 || status == 7 ? status : 2;
}

int nextToken(TextReader* text) {
    return textStatus(get_next_token(text->stream, text->token));
}

int unexpected(const TextReader& text, const char* expected) {
    return unexpectedSymbol(text.stream, text.token, expected);
}

int expectToken(TextReader* text, const token_type& type, const char* expected) {
    if (int status = nextToken(text); status != 0) return status;
    return text->token->type == &type ? 0 : unexpected(*text, expected);
}

// Where a value was expected. A comma is named as what it is: users bring it along from vectors.
int noValue(const TextReader& text) {
    return unexpected(text, text.token->type == &kCOMMA ? kNO_COMMA_HERE : kVALID_DATA_VALUE);
}

int passPlain(TextReader* text, LastInList* last) {
    return text->reading == ValueReading::kPLAIN_RUNS ? passPlainValues(text->stream, text->block, last) : 0;
}

// Addresses beyond 64 bits would lose their top.
bool isAddress(const token_element* token) {
    if (token->type != &kINTEGER_NUMBER) return false;
    const char* digits = token->text + std::strspn(token->text, "0");
    return token->numberBase != kHEXADECIMAL || std::strlen(digits) <= kADDRESS_DIGITS;
}

int ParseMEM_SectionAddress(TextReader* text) {
    const u32 base = set_stream_number_base(text->stream, kHEXADECIMAL);
    const int status = nextToken(text);
    set_stream_number_base(text->stream, base);
    if (status != 0) return status;
    if (!isAddress(text->token)) return unexpected(*text, kSECTION_ADDRESS);
    return InsertNewSectionHeader(text->block, unsignedFromValue(text->token->value));
}

// A number that is no radix at all becomes one that carries no data.
u32 radixOf(long double value) {
    return value >= 0 && value <= UINT32_MAX ? static_cast<u32>(value) : UINT32_MAX;
}

int readRadix(TextReader* text, u32* radix) {
    if (int status = expectToken(text, kINTEGER_NUMBER, kRADIX_VALUE); status != 0) return status;
    *radix = radixOf(text->token->value);
    return 0;
}

int ParseMEM_Radix(TextReader* text) {
    set_stream_number_base(text->stream, kDECIMAL);
    u32 radix = 0;
    if (int status = readRadix(text, &radix); status != 0) return status;
    set_stream_number_base(text->stream, radix);
    return 0;
}

int ParseCOE_Radix(TextReader* text) {
    set_stream_number_base(text->stream, kDECIMAL);
    u32 radix = 0;
    int status = expectToken(text, kEQUAL, "=");
    if (status == 0) status = readRadix(text, &radix);
    if (status == 0) status = expectToken(text, kSEMICOLON, ";");
    if (status == 0) set_stream_number_base(text->stream, radix);
    return status;
}

// A token behind values that are not finished by it.
int endOfValues(const TextReader& text, LastInList last) {
    if (text.token->type == &kCOMMA) return noValue(text);
    // Behind a comma there must be a value.
    if (last == LastInList::kCOMMA) return parse_MEM_data_value(text.stream, text.block, text.token);
    return text.token->type == &kSEMICOLON ? 0 : unexpected(text, ";");
}

int ParseCOE_Vector_Initalizer(TextReader* text) {
    if (int status = expectToken(text, kEQUAL, "="); status != 0) return status;
    LastInList last = LastInList::kSTART;
    for (;;) {
        if (int status = passPlain(text, &last); status != 0) return status;
        if (int status = nextToken(text); status != 0) return status;
        const token_type* type = text->token->type;
        if (type == &kINTEGER_NUMBER) {
            if (int status = parse_MEM_data_value(text->stream, text->block, text->token); status != 0) return status;
            last = LastInList::kVALUE;
        } else if (type == &kCOMMA && last == LastInList::kVALUE) {
            last = LastInList::kCOMMA;
        } else {
            return endOfValues(*text, last);
        }
    }
}

int parseStatement(TextReader* text) {
    const token_type* type = text->token->type;
    if (type == &kAT_SIGN) return ParseMEM_SectionAddress(text);
    if (type == &kINTEGER_NUMBER) return parse_MEM_data_value(text->stream, text->block, text->token);
    if (type == &kMEM_RADIX) return ParseMEM_Radix(text);
    if (type == &kCOE_RADIX) return ParseCOE_Radix(text);
    if (type == &kCOE_VECTOR) return ParseCOE_Vector_Initalizer(text);
    // The reserved words about packing select nothing, so they are refused like any other word.
    return noValue(*text);
}

int parseStatements(TextReader* text) {
    for (;;) {
        LastInList last = LastInList::kNO_LIST;
        if (int status = passPlain(text, &last); status != 0) return status;
        if (int status = nextToken(text); status != 0) return status;
        if (text->token->type == &kEND_OF_FILE) return 0;
        if (int status = parseStatement(text); status != 0) return status;
    }
}

int finishBlock(const parse_stream* stream, DataStructureBlockType* block) {
    if (block->sectionCount == 0) return PrintError(kERROR_DATA_FILE_WAS_EMPTY, 2, GetFileName(stream->root->file));
    closeLastSection(block);
    return BuildSectionArrayTable(block);
}

} // namespace

int ParseTextDataFile(parse_stream* stream, DataStructureBlockType* block) {
    return memdata::parseDataText(stream, block, memdata::ValueReading::kPLAIN_RUNS);
}

int memdata::parseDataText(parse_stream* stream, DataStructureBlockType* block, ValueReading reading) {
    const TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    KeywordOverlay keywords(stream, &mem_symbol_set);
    if (int status = keywords.status(); status != 0) return textStatus(status);
    set_stream_number_base(stream, block->radix);

    TextReader text{stream, block, reading, token.get()};
    if (int status = parseStatements(&text); status != 0) return status;
    if (int status = keywords.close(); status != 0) return textStatus(status);
    return finishBlock(stream, block);
}

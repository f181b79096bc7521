// text_values.cpp - see text_values.h.
// SPDX-License-Identifier: Apache-2.0
#include "MemUtils/text_values.h"

#include "SystemUtils/alerts.h"

#include <algorithm>

namespace {

using namespace memdata;

constexpr const char* kVALUE_WITHOUT_PREFIX = "valid data value. Make sure that prefix values (such as 0x) aren't used";

// kERROR_SEGMENT_EXCEEDED_ADDRESSING for sections that begin where 32 bits do not reach.
constexpr Alert_message_type kERROR_WIDE_SEGMENT_EXCEEDED_ADDRESSING{kERROR_SEGMENT_EXCEEDED_ADDRESSING.number,
    "Data segment starting at 0x%08llX, has exceeded 0xFFFFFFFF addressing boundary.\n"};

int illegalValue(parse_stream* stream, const token_element* token) {
    return PrintErrorLocation(stream, kERROR_ILLEGAL_MEM_DATA_VALUE, 2, token, token->text);
}

// A digit can cross into the next byte where values in both radixes follow each other. It is then put bit by bit,
// since units that cross do not keep their value.
void putDigit(BufferChunkAccess* access, u32 digit, u32 bits) {
    if (access->bitOffset + bits <= 8) return access->PutNextTransformChunk(bits, digit);
    while (bits-- != 0) access->PutNextTransformChunk(1, digit >> bits & 1);
}

int packDigits(parse_stream* stream, const token_element* token, DataSectionHdrType* section, const char** text,
    u32 bitLimit, u32 radix) {
    const u32 bits = digitBits(radix);
    for (u32 left = bitLimit / bits; left != 0 && **text != '\0'; --left, ++*text) {
        const u32 digit = dataDigit(**text);
        if (digit >= radix) return illegalValue(stream, token);
        putDigit(section->access, digit, bits);
    }
    return 0;
}

// Room for the next chunk of a token that has so many characters left.
int makeRoom(parse_stream* stream, DataStructureBlockType* block, const token_element* token, u64 characterCount) {
    const u64 bits = characterCount * digitBits(get_stream_number_base(stream));
    if (poolBitsLeft(block) >= std::min<u64>(bits, kVALUE_CHUNK_BITS)) return 0;
    if (block->dataSize >= block->sizeLimit)
        return PrintErrorLocation(stream, kERROR_MESSAGE_STRING, 2, token,
            formatted("The data of file '%s' has exceeded the limit of %lld bytes.", GetFileName(stream->root->file),
                block->sizeLimit));
    return growPool(block);
}

bool hasPassedLastAddress(const DataSectionHdrType* section) {
    if (section->address > kLAST_DATA_ADDRESS) return true;
    return section->access->GetBufferByteCount() > kLAST_DATA_ADDRESS - section->address + 1;
}

int exceededAddressing(parse_stream* stream, const token_element* token, u64 address) {
    const bool isWide = address > kLAST_DATA_ADDRESS;
    return PrintErrorLocation(stream,
        isWide ? kERROR_WIDE_SEGMENT_EXCEEDED_ADDRESSING : kERROR_SEGMENT_EXCEEDED_ADDRESSING, 2, token, address);
}

} // namespace

int memdata::unexpectedSymbol(parse_stream* stream, const token_element* token, const char* expected) {
    return PrintErrorLocation(stream, kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, 2, token, token->text, expected);
}

int parse_MEM_data_value(parse_stream* stream, DataStructureBlockType* block, const token_element* token) {
    if (token->type != &kINTEGER_NUMBER) return unexpectedSymbol(stream, token, kVALUE_WITHOUT_PREFIX);
    if (block->lastSection == nullptr) {
        if (int status = InsertNewSectionHeader(block, 0); status != 0) return status;
    }
    DataSectionHdrType* section = block->lastSection;
    const char* text = token->text;
    do {
        const u64 left = token->length - static_cast<u64>(text - token->text);
        if (int status = makeRoom(stream, block, token, left); status != 0) return status;
        if (int status = PackTextDataValue(stream, token, section, &text, kVALUE_CHUNK_BITS); status != 0)
            return status;
        if (hasPassedLastAddress(section)) return exceededAddressing(stream, token, section->address);
    } while (*text != '\0');
    return 0;
}

int PackTextDataValue(
    parse_stream* stream, const token_element* token, DataSectionHdrType* section, const char** text, u32 bitLimit) {
    switch (get_stream_number_base(stream)) {
    case 2:
        return PackTextBinaryValue(stream, token, section, text, bitLimit);
    case 16:
        return PackTextHexValue(stream, token, section, text, bitLimit);
    default:
        return unexpectedSymbol(stream, token, kVALID_DATA_VALUE);
    }
}

int PackTextHexValue(
    parse_stream* stream, const token_element* token, DataSectionHdrType* section, const char** text, u32 bitLimit) {
    return packDigits(stream, token, section, text, bitLimit, 16);
}

int PackTextBinaryValue(
    parse_stream* stream, const token_element* token, DataSectionHdrType* section, const char** text, u32 bitLimit) {
    return packDigits(stream, token, section, text, bitLimit, 2);
}

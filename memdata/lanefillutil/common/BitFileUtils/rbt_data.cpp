// rbt_data.cpp - the numbers of an RBT text become words in memory.
// SPDX-License-Identifier: Apache-2.0
//
// Nearly all of a text is lines of digits and nothing else: these are taken straight from it. What else may stand
// there (prefixes, signs, comments, other words) goes through the tokenizer, which gives the same words for digits.
#include "BitFileUtils/rbt_container.h"
#include "ParseUtils/characters.h"
#include "ParseUtils/numbers.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

using namespace memdata;

constexpr u32 kWORD_BYTES = 4;
constexpr u64 kSMALLEST_ROOM = 4096;      // bytes
constexpr u64 kLARGEST_ROOM = 0xFFFFFFFC; // bytes; dataLength has 32 bits

// Words in memory, most significant byte first. Room grows as words come: a short line of digits gives more bytes of
// stream than it has characters.
struct WordBufferType {
    u8* bytes = nullptr;
    u64 byteCount = 0;
    u64 room = 0;
};

void releaseBytes(u8* bytes) {
    releaseMemory(bytes);
}

using BytesOwner = Tracked<u8, releaseBytes>;

int reserve(WordBufferType* words, BytesOwner* owner, u64 room) {
    room = std::clamp(room, kSMALLEST_ROOM, kLARGEST_ROOM);
    BytesOwner grown(static_cast<u8*>(getMemory("'std::uint8_t' data", room)));
    if (grown == nullptr) return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "RBTData", room, getCurrentMemoryUsage());
    if (words->byteCount != 0) std::memcpy(grown.get(), words->bytes, words->byteCount);
    *owner = std::move(grown);
    words->bytes = owner->get();
    words->room = room;
    return 0;
}

// The stream's words, while they are being read.
struct RBTReaderType {
    parse_stream* stream;
    token_element* token;
    WordBufferType words;
    BytesOwner owner;
};

int appendWord(RBTReaderType* reader, u32 word) {
    WordBufferType& words = reader->words;
    if (words.room - words.byteCount < kWORD_BYTES) {
        if (words.room == kLARGEST_ROOM)
            return PrintError(kERROR_UNKNOWN_OR_CORRUPTED_DATA_FILE_FORMAT, 2, get_stream_file_name(reader->stream));
        if (int status = reserve(&words, &reader->owner, 2 * words.room); status != 0) return status;
    }
    u8* to = words.bytes + words.byteCount;
    to[0] = static_cast<u8>(word >> 24);
    to[1] = static_cast<u8>(word >> 16);
    to[2] = static_cast<u8>(word >> 8);
    to[3] = static_cast<u8>(word);
    words.byteCount += kWORD_BYTES;
    return 0;
}

void passBlanksAndLineEnds(parse_stream* context) {
    while (context->position < context->textEnd) {
        if (isOf(*context->position, kLINE_END_CHARACTER)) {
            context->position += lineEndLength(context->position, context->textEnd);
            context->lineStart = context->position;
            ++context->lineNumber;
        } else if (isOf(*context->position, kBLANK_CHARACTER)) {
            ++context->position;
        } else {
            return;
        }
    }
}

// Eight digits 0 and 1 as a byte, the first one on top. False, and nothing done, when others are among them.
bool takeEightDigits(const char* at, u32* word) {
    u64 digits = 0;
    std::memcpy(&digits, at, sizeof digits);
    digits ^= 0x3030303030303030;
    if ((digits & 0xFEFEFEFEFEFEFEFE) != 0) return false;
    // The digit of byte i goes from bit 8i to bit 63 - i.
    *word = *word << 8 | static_cast<u32>(digits * 0x8040201008040201 >> 56);
    return true;
}

// Behind the digits 0 and 1 at a place; the low 32 bits of their number.
const char* takeDigits(const char* at, const char* end, u32* word) {
    *word = 0;
    if constexpr (std::endian::native == std::endian::little)
        while (end - at >= 8 && takeEightDigits(at, word)) at += 8;
    for (; at < end && (*at == '0' || *at == '1'); ++at) *word = *word << 1 | (*at == '1' ? 1U : 0U);
    return at;
}

// Takes numbers that are digits 0 and 1 only, with blanks, line ends or the end of the text behind them, up to what is
// none of it.
int takePlainNumbers(RBTReaderType* reader) {
    parse_stream* context = activeContext(reader->stream);
    if (context->lookAhead->depth != 0 || context->pendingStatus != 0) return 0;
    const char* end = context->textEnd;
    for (;;) {
        passBlanksAndLineEnds(context);
        u32 word = 0;
        const char* behind = takeDigits(context->position, end, &word);
        const bool isPlain =
            behind > context->position && (behind == end || isOf(*behind, kBLANK_CHARACTER | kLINE_END_CHARACTER));
        if (!isPlain) return 0;
        if (int status = appendWord(reader, word); status != 0) return status;
        context->position = behind;
    }
}

// Up to the first token behind the numbers, which stays in the reader's token.
int readNumbers(RBTReaderType* reader) {
    for (;;) {
        if (int status = takePlainNumbers(reader); status != 0) return status;
        if (int status = get_next_token(reader->stream, reader->token); status != 0) return status;
        const token_element* token = reader->token;
        if (token->type == &kINTEGER_NUMBER) {
            const auto word = static_cast<u32>(unsignedFromValue(token->value));
            if (int status = appendWord(reader, word); status != 0) return status;
        } else if (reader->words.byteCount != 0 || token->type == &kEND_OF_FILE) {
            return 0;
        }
    }
}

// A count that is no number promises nothing.
u64 promisedBits(const BitFileHeaderType* header) {
    long double value = 0;
    if (StrToNum(headerText(header->bitCount), 10, false, nullptr, nullptr, &value) == 0) return 0;
    return value < 0 ? 0 : unsignedFromValue(value);
}

int checkLength(const RBTReaderType* reader, const BitFileHeaderType* header) {
    const char* name = get_stream_file_name(reader->stream);
    const u64 bitCount = reader->words.byteCount * 8;
    if (bitCount == 0) return PrintError(kERROR_EMPTY_INPUT_FILE, 17, name, "RBT");
    if (bitCount >= promisedBits(header)) return 0;
    if (reader->token->type != &kEND_OF_FILE) return PrintError(kERROR_UNKNOWN_OR_CORRUPTED_DATA_FILE_FORMAT, 2, name);
    return PrintWarning(kERROR_MESSAGE_STRING, 0,
        formatted("File '%s' ends after %lld bits of data, its header names '%s'.", name, bitCount,
            headerText(header->bitCount)));
}

} // namespace

int OpenRBTData(parse_stream* stream, token_element* token, BitFileHeaderType* header, fileIODescriptor** memoryFile) {
    *memoryFile = nullptr;
    header->dataLength = 0;
    RBTReaderType reader{stream, token, {}, BytesOwner()};
    if (int status = reserve(&reader.words, &reader.owner, get_stream_size(stream) / 8); status != 0) return status;
    set_stream_number_base(stream, 2);
    if (int status = readNumbers(&reader); status != 0) return status;
    if (int status = checkLength(&reader, header); status != 0) return status;

    constexpr u32 kBINARY_READ = kREAD_ACCESS | kBINARY_FILE;
    char* bytes = reinterpret_cast<char*>(reader.words.bytes);
    if (int status =
            OpenMemoryFile(get_stream_file_name(stream), kBINARY_READ, bytes, reader.words.byteCount, memoryFile);
        status != 0)
        return status;
    header->dataLength = static_cast<u32>(reader.words.byteCount);
    header->dataPointer = reader.words.bytes;
    autoReleaseMemory(reader.owner.release());
    return 0;
}

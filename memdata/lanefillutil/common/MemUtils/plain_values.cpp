// plain_values.cpp - see plain_values.h.
// SPDX-License-Identifier: Apache-2.0
#include "MemUtils/plain_values.h"

#include "MemUtils/text_values.h"
#include "ParseUtils/characters.h"
#include "ParseUtils/plain_text.h"
#include "lanefillCore/records/progress_stages.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using namespace memdata;

constexpr u64 kLONGEST_PLAIN_VALUE = u64{1} << 16; // digits; below what a token may have
constexpr u8 kSEPARATOR = kBLANK_CHARACTER | kLINE_END_CHARACTER;
constexpr u32 kGROUP_DIGITS = 8;          // that are packed at once
constexpr u64 kADDRESS_DIGITS = 16;       // of an address that 64 bits hold
constexpr u64 kSTEP_BYTES = u64{1} << 20; // of text between two reports of progress

constexpr std::array<u8, 256> kDIGITS = [] {
    std::array<u8, 256> digits{};
    for (u32 c = 0; c < 256; ++c) digits[c] = static_cast<u8>(dataDigit(static_cast<char>(c)));
    return digits;
}();

// Appends bits to bytes that are 0 from there on.
class BitAppender {
public:
    BitAppender(u8* at, u64 bitOffset)
        : at_(at), pending_(bitOffset == 0 ? 0 : u64{*at} >> (8 - bitOffset)),
          pendingBits_(static_cast<u32>(bitOffset)) {}
    BitAppender& operator=(BitAppender&&) = delete; // neither copied nor moved

    // bits: up to 32
    void append(u64 value, u32 bits) {
        pending_ = pending_ << bits | value;
        for (pendingBits_ += bits; pendingBits_ >= 8; *at_++ = static_cast<u8>(pending_ >> pendingBits_))
            pendingBits_ -= 8;
    }
    void finish() {
        if (pendingBits_ != 0) *at_ = static_cast<u8>(pending_ << (8 - pendingBits_));
    }

private:
    u8* at_;
    u64 pending_; // the low pendingBits_ count
    u32 pendingBits_;
};

template<u32 radix>
const char* endOfDigits(const char* at, const char* end) {
    while (at != end && kDIGITS[static_cast<u8>(*at)] < radix) ++at;
    return at;
}

template<u32 radix>
u64 valueOf(const char* at, u64 count) {
    u64 value = 0;
    for (u64 i = 0; i < count; ++i) value = value * radix + kDIGITS[static_cast<u8>(at[i])];
    return value;
}

template<u32 radix>
void appendDigits(BitAppender* bits, const char* at, u64 count) {
    for (; count >= kGROUP_DIGITS; at += kGROUP_DIGITS, count -= kGROUP_DIGITS)
        bits->append(valueOf<radix>(at, kGROUP_DIGITS), kGROUP_DIGITS * digitBits(radix));
    if (count != 0) bits->append(valueOf<radix>(at, count), static_cast<u32>(count) * digitBits(radix));
}

void passSeparators(TextPlace* place, const char* end) {
    for (; place->at != end; ++place->at) {
        if (isOf(*place->at, kBLANK_CHARACTER)) continue;
        if (!isOf(*place->at, kLINE_END_CHARACTER)) return;
        place->at += lineEndLength(place->at, end) - 1;
        place->lineStart = place->at + 1;
        ++place->lineNumber;
    }
}

// Digits that the last section can still take, by its addresses and by the pool.
u64 digitsLeft(const DataStructureBlockType* block, u32 bitsOfDigit) {
    const DataSectionHdrType* section = block->lastSection;
    if (section->address > kLAST_DATA_ADDRESS) return 0;
    const u64 addressable = (kLAST_DATA_ADDRESS - section->address + 1) * 8;
    const u64 passed = section->access->GetBufferBitCount();
    return std::min(addressable - std::min(passed, addressable), poolBitsLeft(block)) / bitsOfDigit;
}

// Up to the first thing that is no value.
template<u32 radix>
void passValues(PlainText* text, DataStructureBlockType* block, LastInList* last) {
    BufferChunkAccess* access = block->lastSection->access;
    BitAppender bits(access->current, access->bitOffset);
    const u64 room = digitsLeft(block, digitBits(radix));
    u64 packed = 0; // digits
    TextPlace place = text->place;
    for (;;) {
        passSeparators(&place, text->end);
        if (*last == LastInList::kVALUE && place.at != text->end && *place.at == ',') {
            *last = LastInList::kCOMMA;
            ++place.at;
            continue;
        }
        const char* const valueEnd = endOfDigits<radix>(place.at, text->end);
        const u64 count = static_cast<u64>(valueEnd - place.at);
        if (count == 0 || valueEnd == text->end) break;
        if (!isOf(*valueEnd, kSEPARATOR) && (*valueEnd != ',' || *last == LastInList::kNO_LIST)) break;
        if (count > room - packed || count > kLONGEST_PLAIN_VALUE) break;
        appendDigits<radix>(&bits, place.at, count);
        packed += count;
        place.at = valueEnd;
        if (*last != LastInList::kNO_LIST) *last = LastInList::kVALUE;
    }
    bits.finish();
    access->SkipBits(packed * digitBits(radix));
    text->place = place;
}

// A step ends inside of no line end, whose characters count as one line together.
const char* endOfStep(const char* at, const char* end) {
    while (at != end && isOf(*at, kLINE_END_CHARACTER)) ++at;
    return at;
}

// A section mark with its address right behind it opens a section. False when something else stands there.
bool passAddress(PlainText* text, DataStructureBlockType* block, int* status) {
    const char* const mark = text->place.at;
    if (mark == text->end || *mark != '@') return false;
    const char* const end = endOfDigits<16>(mark + 1, text->end);
    const u64 count = static_cast<u64>(end - mark) - 1;
    if (count == 0 || count > kADDRESS_DIGITS || end == text->end || !isOf(*end, kSEPARATOR)) return false;
    *status = InsertNewSectionHeader(block, valueOf<16>(mark + 1, count));
    text->place.at = end;
    return *status == 0;
}

} // namespace

int memdata::passPlainValues(parse_stream* stream, DataStructureBlockType* block, LastInList* last) {
    PlainText text{};
    const u32 radix = get_stream_number_base(stream);
    if (digitBits(radix) == 0 || !plainTextAhead(stream, &text)) return 0;
    const char* const begin = text.place.at;
    if (static_cast<u64>(text.end - begin) > kSTEP_BYTES) text.end = endOfStep(begin + kSTEP_BYTES, text.end);
    int status = 0;
    do {
        if (block->lastSection == nullptr)
            passSeparators(&text.place, text.end);
        else if (radix == 16)
            passValues<16>(&text, block, last);
        else
            passValues<2>(&text, block, last);
    } while (*last == LastInList::kNO_LIST && passAddress(&text, block, &status));
    continueAt(stream, text.place);
    const int ended = advanceProgress(static_cast<u64>(text.place.at - begin));
    return status != 0 ? status : ended;
}

// byte_gather.cpp - see byte_gather.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/byte_gather.h"

#include <algorithm>
#include <concepts>
#include <cstring>

namespace memdata {
namespace {

constexpr u64 kTILE_BYTES = 8192; // of the source at a time: stays in the first cache over all lanes

template<std::unsigned_integral Word>
Word load(const u8* at) {
    Word word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

template<std::unsigned_integral Word>
void store(u8* at, Word word) {
    std::memcpy(at, &word, sizeof word);
}

template<std::unsigned_integral Word>
Word reversed(Word word) {
    if constexpr (sizeof(Word) == 2) return __builtin_bswap16(word);
    if constexpr (sizeof(Word) == 4) return __builtin_bswap32(word);
    if constexpr (sizeof(Word) == 8) return __builtin_bswap64(word);
    return word;
}

u64 mirroredBytes(u64 bytes) {
    bytes = (bytes >> 1 & 0x5555555555555555) | (bytes & 0x5555555555555555) << 1;
    bytes = (bytes >> 2 & 0x3333333333333333) | (bytes & 0x3333333333333333) << 2;
    return (bytes >> 4 & 0x0F0F0F0F0F0F0F0F) | (bytes & 0x0F0F0F0F0F0F0F0F) << 4;
}

void mirrorBytes(u8* at, u64 byteCount) {
    for (; byteCount >= 8; at += 8, byteCount -= 8) store(at, mirroredBytes(load<u64>(at)));
    for (; byteCount > 0; ++at, --byteCount) *at = static_cast<u8>(mirroredBytes(*at));
}

template<std::unsigned_integral Word, bool Reverse>
void gatherLane(const u8* source, u64 stride, u8* lane, u64 wordCount) {
    for (; wordCount > 0; --wordCount, source += stride, lane += sizeof(Word)) {
        const Word word = load<Word>(source);
        store(lane, Reverse ? reversed(word) : word);
    }
}

template<std::unsigned_integral Word>
void gatherEachLane(bool reverse, const u8* source, std::span<u8* const> lanes, u64 done, u64 wordCount) {
    const u64 stride = lanes.size() * sizeof(Word);
    for (u8* lane : lanes) {
        if (reverse)
            gatherLane<Word, true>(source, stride, lane + done * sizeof(Word), wordCount);
        else
            gatherLane<Word, false>(source, stride, lane + done * sizeof(Word), wordCount);
        source += sizeof(Word);
    }
}

constexpr u64 kLINE_BYTES = 64; // of the caches
// How far ahead of a loop the caches are told: far enough for memory to answer, near enough to be there still.
constexpr u64 kSOURCE_AHEAD = 2048; // bytes
constexpr u64 kLANE_AHEAD = 512;    // bytes

// Asks for what a loop that stands at a place of its source and at byte at of its lanes will come to: each line of a lane
// takes as much of the source. The processor follows one stream well enough by itself, but not a source and its lanes.
// In place always: the compiler takes a call that does nothing but this for one that does nothing.
[[gnu::always_inline]] inline void fetchAhead(const u8* source, std::span<u8* const> lanes, u64 at) {
    if (at % kLINE_BYTES != 0) return;
    source += kSOURCE_AHEAD;
    for (u8* lane : lanes) {
        __builtin_prefetch(source);
        __builtin_prefetch(lane + at + kLANE_AHEAD, 1);
        source += kLINE_BYTES;
    }
}

// Exchanges the fields of a and b that mask (in b's place, shifted down in a) tells: one step of a transposition.
void exchange(u64& a, u64& b, unsigned shift, u64 mask) {
    const u64 both = (a >> shift ^ b) & mask;
    b ^= both;
    a ^= both << shift;
}

// Exchanges the bytes that mask tells with those shift bits above them.
u64 exchangedWithin(u64 bytes, unsigned shift, u64 mask) {
    const u64 both = (bytes >> shift ^ bytes) & mask;
    return bytes ^ both ^ both << shift;
}

// Two bus words of four bytes, lane by lane: bytes 0 4 1 5 2 6 3 7.
u64 pairedByLane(u64 twoWords) {
    return exchangedWithin(exchangedWithin(twoWords, 16, 0x00000000FFFF0000), 8, 0x0000FF000000FF00);
}

// Four byte lanes, eight bus words at a time: a transposition of pairs of bytes, four by four.
u64 gatherFourByteLanes(const u8* source, std::span<u8* const> lanes, u64 done, u64 wordCount) {
    u64 word = 0;
    for (; word + 8 <= wordCount; word += 8, source += 32) {
        fetchAhead(source, lanes, done + word);
        u64 r0 = pairedByLane(load<u64>(source));
        u64 r1 = pairedByLane(load<u64>(source + 8));
        u64 r2 = pairedByLane(load<u64>(source + 16));
        u64 r3 = pairedByLane(load<u64>(source + 24));
        exchange(r0, r2, 32, 0x00000000FFFFFFFF);
        exchange(r1, r3, 32, 0x00000000FFFFFFFF);
        exchange(r0, r1, 16, 0x0000FFFF0000FFFF);
        exchange(r2, r3, 16, 0x0000FFFF0000FFFF);
        store(lanes[0] + done + word, r0);
        store(lanes[1] + done + word, r1);
        store(lanes[2] + done + word, r2);
        store(lanes[3] + done + word, r3);
    }
    return word;
}

// Eight byte lanes, eight bus words at a time: an 8 by 8 transposition of bytes.
u64 gatherEightByteLanes(const u8* source, std::span<u8* const> lanes, u64 done, u64 wordCount) {
    u64 word = 0;
    for (; word + 8 <= wordCount; word += 8, source += 64) {
        fetchAhead(source, lanes, done + word);
        u64 rows[8];
        for (unsigned i = 0; i < 8; ++i) rows[i] = load<u64>(source + 8 * i);
        for (unsigned i = 0; i < 4; ++i) exchange(rows[i], rows[i + 4], 32, 0x00000000FFFFFFFF);
        for (const unsigned i : {0u, 1u, 4u, 5u}) exchange(rows[i], rows[i + 2], 16, 0x0000FFFF0000FFFF);
        for (const unsigned i : {0u, 2u, 4u, 6u}) exchange(rows[i], rows[i + 1], 8, 0x00FF00FF00FF00FF);
        for (unsigned i = 0; i < 8; ++i) store(lanes[i] + done + word, rows[i]);
    }
    return word;
}

void gatherByteLanes(const u8* source, std::span<u8* const> lanes, u64 done, u64 wordCount) {
    u64 gathered = 0;
    if (lanes.size() == 4) gathered = gatherFourByteLanes(source, lanes, done, wordCount);
    if (lanes.size() == 8) gathered = gatherEightByteLanes(source, lanes, done, wordCount);
    gatherEachLane<u8>(false, source + gathered * lanes.size(), lanes, done + gathered, wordCount - gathered);
}

using EightWords = u16 __attribute__((vector_size(16)));

EightWords loadEight(const u8* at) {
    EightWords words;
    std::memcpy(&words, at, sizeof words);
    return words;
}

void storeEight(bool reverse, u8* at, EightWords words) {
    if (reverse) words = words >> 8 | words << 8;
    std::memcpy(at, &words, sizeof words);
}

// Two lanes of two bytes, eight bus words at a time, both lanes in one pass: the compiler makes a few shuffles of it.
u64 gatherTwoWordLanes(bool reverse, const u8* source, std::span<u8* const> lanes, u64 done, u64 wordCount) {
    u64 word = 0;
    for (; word + 8 <= wordCount; word += 8, source += 32) {
        fetchAhead(source, lanes, 2 * (done + word));
        const EightWords first = loadEight(source);
        const EightWords second = loadEight(source + 16);
        const u64 at = 2 * (done + word);
        storeEight(reverse, lanes[0] + at, __builtin_shufflevector(first, second, 0, 2, 4, 6, 8, 10, 12, 14));
        storeEight(reverse, lanes[1] + at, __builtin_shufflevector(first, second, 1, 3, 5, 7, 9, 11, 13, 15));
    }
    return word;
}

void gatherWordLanes(bool reverse, const u8* source, std::span<u8* const> lanes, u64 done, u64 wordCount) {
    const u64 gathered = lanes.size() == 2 ? gatherTwoWordLanes(reverse, source, lanes, done, wordCount) : 0;
    gatherEachLane<u16>(reverse, source + gathered * 2 * lanes.size(), lanes, done + gathered, wordCount - gathered);
}

void gatherTile(const GatherForm& form, const u8* source, std::span<u8* const> lanes, u64 done, u64 wordCount) {
    switch (form.laneBytes) {
    case 1:
        return gatherByteLanes(source, lanes, done, wordCount);
    case 2:
        return gatherWordLanes(form.reverseBytes, source, lanes, done, wordCount);
    case 4:
        return gatherEachLane<u32>(form.reverseBytes, source, lanes, done, wordCount);
    default:
        return gatherEachLane<u64>(form.reverseBytes, source, lanes, done, wordCount);
    }
}

} // namespace

void gatherLanes(const GatherForm& form, const u8* source, std::span<u8* const> lanes, u64 wordCount) {
    const u64 busBytes = lanes.size() * form.laneBytes;
    const u64 tileWords = std::max<u64>(8, kTILE_BYTES / busBytes);
    for (u64 done = 0; done < wordCount;) {
        const u64 words = std::min(tileWords, wordCount - done);
        gatherTile(form, source + done * busBytes, lanes, done, words);
        if (form.mirrorBits)
            for (u8* lane : lanes) mirrorBytes(lane + done * form.laneBytes, words * form.laneBytes);
        done += words;
    }
}

} // namespace memdata

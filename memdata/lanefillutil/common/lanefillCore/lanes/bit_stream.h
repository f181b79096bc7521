// bit_stream.h - the bits of bytes, taken one field after the other.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_BIT_STREAM_H
#define MEMDATA_LANEFILL_CORE_BIT_STREAM_H

#include "lanefillCore/records/chunk_access.h"

#include <cstring>

namespace memdata {

// The most significant bit of a byte is its first.
class BitStream {
public:
    // Bits from firstBit of bytes on; nothing from end on is read.
    BitStream(const u8* bytes, const u8* end, u64 firstBit) : bytes_(bytes), end_(end), at_(firstBit) {}
    // What is under a cursor.
    explicit BitStream(const BufferChunkAccess* source)
        : BitStream(source->current, source->buffer + source->byteSize, source->bitOffset) {}

    const u8* bytes() const { return bytes_; }
    u64 nextBit() const { return at_; } // from there
    void skip(u64 count) { at_ += count; }

    // The next count bits (1 to 64), the first one highest; the stream has them.
    u64 take(unsigned count) {
        const u8* first = bytes_ + at_ / 8;
        const auto passed = static_cast<unsigned>(at_ % 8); // bits of the first byte that are taken already
        at_ += count;
        if (passed + count <= 64 && end_ - first >= 8) {
            u64 word;
            std::memcpy(&word, first, sizeof word);
            return __builtin_bswap64(word) << passed >> (64 - count);
        }
        return takeBytes(first, passed, count);
    }

private:
    static u64 takeBytes(const u8* at, unsigned passed, unsigned count) {
        unsigned have = 8 - passed;
        u64 value = *at++ & (0xFFu >> passed);
        for (; have + 8 <= count; have += 8) value = value << 8 | *at++;
        if (have >= count) return value >> (have - count);
        const unsigned rest = count - have;
        return value << rest | static_cast<u64>(*at) >> (8 - rest);
    }

    const u8* bytes_;
    const u8* end_;
    u64 at_; // bits
};

} // namespace memdata

#endif

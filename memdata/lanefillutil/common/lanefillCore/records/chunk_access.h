// chunk_access.h - a bit cursor over a byte buffer, in the order of data or in the order of a bit lane.
// SPDX-License-Identifier: Apache-2.0
//
// Data order: bit 7 of a byte is its first bit, and the first unit of a chunk is the most significant.
// Bit-lane order: bit 0 of a byte is its first bit, and the first unit is the least significant.
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_CHUNK_ACCESS_H
#define MEMDATA_LANEFILL_CORE_RECORDS_CHUNK_ACCESS_H

#include "platform/BasicTypes.h"

#include <algorithm>

// How n bits at an offset of a byte are reached: mask selects them, keep selects the others, shift is their
// distance from bit 0. Where they cross into the next byte by s bits: mask 0, keep (1 << s) - 1, shift s.
struct TransformLookupType {
    u32 mask;
    u32 keep;
    u32 shift;
};

enum TransformEndiannessType : u32 { kDATA_ORDER = 0, kBIT_LANE_ORDER = 1 };

extern const TransformLookupType dataTransformUnitLookup[8][9];    // [bit offset][bit count]
extern const TransformLookupType bitLaneTransformUnitLookup[8][9]; // [bit offset][bit count]
extern const u8* const reverseBitValueTable[9];                    // [width 1 to 8][value] -> mirrored value
extern const u32 reverseValueMask[8];                              // [width 0 to 7] -> mask of so many bits

struct BufferChunkAccess {
    // Stands at unit startUnit of a buffer of totalBits bits and passes maxBits bits at the most. On purpose
    // counted in signed 32-bit numbers: a start behind totalBits gives a count that reads as non-zero; no
    // access leaves the buffer all the same.
    BufferChunkAccess(unsigned char* buffer, unsigned long totalBits, unsigned long maxBits,
        TransformEndiannessType endianness, unsigned long startUnit, unsigned unitBits);
    // Takes all fields as they stand; byteSize is the length of the buffer.
    BufferChunkAccess(unsigned char* buffer, unsigned unitBits, const TransformLookupType (*lookup)[8][9],
        TransformEndiannessType endianness, unsigned char* current, u64 bitOffset, u64 bitsRemaining, u64 bitCount,
        u64 byteCount, u64 byteSize);
    // A cursor over all of a buffer from unit startUnit on, counted in 64 bits: a buffer of 2^31 bits and more
    // passes whole. A start behind the end leaves nothing to pass.
    static BufferChunkAccess OverWholeBuffer(
        unsigned char* buffer, u64 totalBits, TransformEndiannessType endianness, u64 startUnit, unsigned unitBits);
    // A tracked copy of the cursor; null when memory is exhausted. The caller deletes it.
    BufferChunkAccess* DupBufferChunkAccess() const;

    // Cursors are tracked records: new gives null when memory is exhausted.
    static void* operator new(size_t byteCount) noexcept;
    static void operator delete(void* cursor);

    u64 GetNumberBufferBitsRemaining() const { return bitsRemaining; }
    u64 GetBufferByteCount() const { return byteCount; }
    u64 GetBufferBitCount() const { return bitCount; }
    unsigned char* GetCurrentBufferByteAddress() const { return current; }

    // One unit of at most 8 bits. Outside of the buffer reads give 0 and writes do nothing.
    u64 ReadTransformUnitValue(unsigned bits);
    void WriteTransformUnitValue(unsigned bits, unsigned long value);

    // Up to 64 bits; *bits is lowered to what remains.
    u64 GetNextTransformChunk(unsigned* bits);
    // The same, the first unit being the most significant in either order.
    u64 GetNextBitLaneTransformChunk(unsigned* bits);
    // Writes up to 64 bits. When fewer remain, the value's top bits are written.
    void PutNextTransformChunk(unsigned bits, unsigned long value);
    // Passes over bits without touching them, no more than remain.
    void SkipBits(u64 bits);

    unsigned char* buffer;
    u32 unitBits;
    const TransformLookupType (*lookup)[8][9];
    TransformEndiannessType endianness;
    unsigned char* current;
    u64 bitOffset;     // 0 to 7, in the byte under the cursor
    u64 bitsRemaining; // that may still pass
    u64 bitCount;      // that have passed
    u64 byteCount;     // bitCount in bytes, rounded up; refreshed after each chunk
    u64 byteSize;      // length of the buffer: nothing outside of it is touched

private:
    static constexpr unsigned kUNIT_BITS = 8;   // the most that one unit holds
    static constexpr unsigned kCHUNK_BITS = 64; // the most that one chunk holds

    bool insideBuffer() const { return static_cast<u64>(current - buffer) < byteSize; }
    // Passes a unit from the byte under the cursor on, up to bit end of it. The caller has read both fields ahead of any
    // write to the byte: for all that the compiler knows, such a write changes them.
    void advance(u8* byte, u64 end, unsigned bits);
    u64 readCrossing(unsigned bits, const TransformLookupType& entry);
    void writeCrossing(unsigned bits, unsigned long value, const TransformLookupType& entry);
    u64 readUnits(unsigned* bits);                       // a chunk of several units, or one that is cut short
    void writeUnits(unsigned bits, unsigned long value); // the same
    void refreshByteCount() { byteCount = (bitCount + 7) / 8; }
};

// The steps of every bit of a translation stand here, so that its loops hold no calls.

inline void BufferChunkAccess::advance(u8* byte, u64 end, unsigned bits) {
    current = byte + end / 8;
    bitOffset = end % 8;
    bitsRemaining -= bits;
    bitCount += bits;
}

inline u64 BufferChunkAccess::ReadTransformUnitValue(unsigned bits) {
    if (bits > kUNIT_BITS) return 0;
    const TransformLookupType& entry = (*lookup)[bitOffset][bits];
    if (entry.mask == 0) return readCrossing(bits, entry);
    const u64 value = insideBuffer() ? (*current & entry.mask) >> entry.shift : 0;
    advance(current, bitOffset + bits, bits);
    return value;
}

inline void BufferChunkAccess::WriteTransformUnitValue(unsigned bits, unsigned long value) {
    if (bits > kUNIT_BITS) return;
    const TransformLookupType& entry = (*lookup)[bitOffset][bits];
    if (entry.mask == 0) return writeCrossing(bits, value, entry);
    u8* const byte = current;
    const u64 end = bitOffset + bits;
    if (insideBuffer())
        *byte = static_cast<u8>((entry.mask & static_cast<u32>(value << entry.shift)) | (entry.keep & *byte));
    advance(byte, end, bits);
}

inline u64 BufferChunkAccess::GetNextTransformChunk(unsigned* bits) {
    if (*bits > kUNIT_BITS || *bits > bitsRemaining) return readUnits(bits);
    const u64 value = ReadTransformUnitValue(*bits);
    refreshByteCount();
    return value;
}

inline void BufferChunkAccess::PutNextTransformChunk(unsigned bits, unsigned long value) {
    if (bits > kUNIT_BITS || bits > bitsRemaining) return writeUnits(bits, value);
    if (bitsRemaining == 0) return; // of a chunk of no bits too
    WriteTransformUnitValue(bits, value);
    refreshByteCount();
}

inline void BufferChunkAccess::SkipBits(u64 bits) {
    bits = std::min(bits, bitsRemaining);
    current += (bitOffset + bits) / 8;
    bitOffset = (bitOffset + bits) % 8;
    bitsRemaining -= bits;
    bitCount += bits;
    refreshByteCount();
}

// Mirrors the low width bits of a value (width 0 to 64): bit 0 becomes bit width - 1. Bits above are dropped.
u64 reverseDataBits(unsigned width, unsigned long value);

namespace memdata {

// Null is allowed. The buffer under a cursor belongs to others.
inline void deleteChunkAccess(BufferChunkAccess* access) {
    delete access;
}

} // namespace memdata

#endif

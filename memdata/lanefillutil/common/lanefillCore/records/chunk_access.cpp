// chunk_access.cpp - reading and writing bits at the cursor, in units that stay inside a byte.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/chunk_access.h"

#include "SystemUtils/memory.h"

#include <algorithm>

namespace {

constexpr unsigned kBYTE_BITS = 8;
constexpr unsigned kWORD_BITS = 64;

const TransformLookupType (*lookupOf(TransformEndiannessType endianness))[8][9] {
    return endianness == kDATA_ORDER ? &dataTransformUnitLookup : &bitLaneTransformUnitLookup;
}

// The engine counts the bits of an access in 32 signed bits.
u64 bitsLeft(u64 totalBits, u64 start, u64 maxBits) {
    const i32 left = static_cast<i32>(static_cast<u32>(totalBits - start));
    return static_cast<u64>(std::min(left, static_cast<i32>(static_cast<u32>(maxBits))));
}

} // namespace

BufferChunkAccess::BufferChunkAccess(unsigned char* buffer_, unsigned long totalBits, unsigned long maxBits,
    TransformEndiannessType endianness_, unsigned long startUnit, unsigned unitBits_)
    : buffer(buffer_), unitBits(unitBits_), lookup(lookupOf(endianness_)), endianness(endianness_),
      current(buffer_ + static_cast<u32>(startUnit * unitBits_ / 8)), bitOffset(startUnit * unitBits_ % 8),
      bitsRemaining(bitsLeft(totalBits, startUnit * unitBits_, maxBits)), bitCount(0), byteCount(0),
      byteSize(totalBits / 8 + (totalBits % 8 != 0 ? 1 : 0)) {}

BufferChunkAccess::BufferChunkAccess(unsigned char* buffer_, unsigned unitBits_,
    const TransformLookupType (*lookup_)[8][9], TransformEndiannessType endianness_, unsigned char* current_,
    u64 bitOffset_, u64 bitsRemaining_, u64 bitCount_, u64 byteCount_, u64 byteSize_)
    : buffer(buffer_), unitBits(unitBits_), lookup(lookup_), endianness(endianness_), current(current_),
      bitOffset(bitOffset_), bitsRemaining(bitsRemaining_), bitCount(bitCount_), byteCount(byteCount_),
      byteSize(byteSize_) {}

BufferChunkAccess BufferChunkAccess::OverWholeBuffer(
    unsigned char* buffer, u64 totalBits, TransformEndiannessType endianness, u64 startUnit, unsigned unitBits) {
    const u64 byteSize = totalBits / 8 + (totalBits % 8 != 0 ? 1 : 0);
    const bool inside = unitBits == 0 || startUnit <= totalBits / unitBits;
    const u64 start = inside ? startUnit * unitBits : totalBits;
    return {buffer, unitBits, lookupOf(endianness), endianness, buffer + start / 8, start % 8, totalBits - start, 0, 0,
        byteSize};
}

BufferChunkAccess* BufferChunkAccess::DupBufferChunkAccess() const {
    return new BufferChunkAccess(
        buffer, unitBits, lookup, endianness, current, bitOffset, bitsRemaining, bitCount, byteCount, byteSize);
}

void* BufferChunkAccess::operator new(size_t byteCount) noexcept {
    return _getMemory(__FILE__, __LINE__, "a 'BufferChunkAccess' object", byteCount);
}

void BufferChunkAccess::operator delete(void* cursor) {
    if (cursor != nullptr) releaseMemory(cursor);
}

// What is read first is the high part, in both orders. A unit of no bits comes here too: its mask is empty.
u64 BufferChunkAccess::readCrossing(unsigned bits, const TransformLookupType& entry) {
    if (bits == 0) return 0;
    const u64 first = ReadTransformUnitValue(bits - entry.shift);
    return first << entry.shift | ReadTransformUnitValue(entry.shift);
}

// On purpose not the mirror of a crossing read: the second part passes over a byte, and its width and value
// are taken from the mask and the count of the bits that cross, not the other way round. What was written
// this way once is found again only by writing the same way. Lanes never come here: theirs are slots that
// no unit crosses. A width above a unit's has no row in the tables and ends the write.
void BufferChunkAccess::writeCrossing(unsigned bits, unsigned long value, const TransformLookupType& entry) {
    if (bits == 0) return;
    const unsigned here = bits - entry.shift;
    WriteTransformUnitValue(here, value >> here);
    bitOffset = 0;
    ++current;
    WriteTransformUnitValue(entry.keep, value & entry.shift);
}

u64 BufferChunkAccess::readUnits(unsigned* bits) {
    *bits = static_cast<unsigned>(std::min<u64>({*bits, bitsRemaining, kCHUNK_BITS}));
    u64 value = 0;
    for (unsigned done = 0; done < *bits;) {
        const unsigned unit = std::min(*bits - done, kUNIT_BITS);
        const u64 part = ReadTransformUnitValue(unit);
        value = endianness == kDATA_ORDER ? value << unit | part : value | part << done;
        done += unit;
    }
    refreshByteCount();
    return value;
}

void BufferChunkAccess::writeUnits(unsigned bits, unsigned long value) {
    if (bitsRemaining == 0) return;
    bits = std::min(bits, kCHUNK_BITS);
    if (bitsRemaining < bits) { // the top bits survive
        value >>= bits - bitsRemaining;
        bits = static_cast<unsigned>(bitsRemaining);
    }
    for (unsigned left = bits; left > 0;) {
        const unsigned unit = std::min(left, kUNIT_BITS);
        left -= unit;
        if (endianness == kDATA_ORDER) {
            WriteTransformUnitValue(unit, value >> left);
        } else {
            WriteTransformUnitValue(unit, value);
            value >>= unit;
        }
    }
    refreshByteCount();
}

u64 BufferChunkAccess::GetNextBitLaneTransformChunk(unsigned* bits) {
    *bits = static_cast<unsigned>(std::min<u64>({*bits, bitsRemaining, kCHUNK_BITS}));
    u64 value = 0;
    for (unsigned left = *bits; left > 0;) {
        const unsigned unit = std::min(left, kUNIT_BITS);
        value = value << unit | ReadTransformUnitValue(unit);
        left -= unit;
    }
    refreshByteCount();
    return value;
}

u64 reverseDataBits(unsigned width, unsigned long value) {
    u64 mirrored = 0;
    unsigned left = std::min(width, kWORD_BITS);
    for (; left >= kBYTE_BITS; left -= kBYTE_BITS, value >>= kBYTE_BITS)
        mirrored |= u64{reverseBitValueTable[kBYTE_BITS][value & 0xFF]} << (left - kBYTE_BITS);
    if (left > 0) mirrored |= reverseBitValueTable[left][value & reverseValueMask[left]];
    return mirrored;
}

// narrow_gather.cpp - see narrow_gather.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/narrow_gather.h"

#include <algorithm>
#include <array>

namespace memdata {
namespace {

constexpr u64 kTILE_BYTES = 8192; // of the source at a time: stays in the first cache over all lanes

// As many words as fill a byte of a lane are as many bytes of the source as there are lanes. So the words of the next
// byte of a lane stand at the same bits, that many bytes on.
struct Field {
    u64 byte;
    unsigned shift;
};

template<unsigned kBITS>
using Fields = std::array<Field, wordsPerLaneByte(kBITS)>;

template<unsigned kBITS>
Fields<kBITS> fieldsOf(u64 firstBit, u64 busBits) {
    Fields<kBITS> fields;
    for (Field& field : fields) {
        field = {firstBit / 8, static_cast<unsigned>(8 - kBITS - firstBit % 8)};
        firstBit += busBits;
    }
    return fields;
}

template<unsigned kBITS>
void gatherLane(const Fields<kBITS>& fields, const u8* source, u64 stride, u8* lane, u64 byteCount) {
    constexpr unsigned kMASK = (1u << kBITS) - 1;
    for (u8* end = lane + byteCount; lane != end; ++lane, source += stride) {
        unsigned byte = 0;
        for (unsigned i = 0; i < fields.size(); ++i)
            byte |= (static_cast<unsigned>(source[fields[i].byte]) >> fields[i].shift & kMASK) << i * kBITS;
        *lane = static_cast<u8>(byte);
    }
}

// The bits inside each field of a byte, turned round.
template<unsigned kBITS>
void mirrorFields(u8* at, u64 byteCount) {
    for (u8* end = at + byteCount; at != end; ++at) {
        unsigned byte = *at;
        if constexpr (kBITS == 4) byte = (byte >> 2 & 0x33) | (byte & 0x33) << 2;
        if constexpr (kBITS > 1) byte = (byte >> 1 & 0x55) | (byte & 0x55) << 1;
        *at = static_cast<u8>(byte);
    }
}

template<unsigned kBITS>
void gather(bool mirrorBits, const u8* source, u64 firstBit, std::span<u8* const> lanes, u64 byteCount) {
    const u64 stride = lanes.size();
    const u64 tileBytes = std::max<u64>(1, kTILE_BYTES / stride); // of each lane
    for (u64 done = 0; done < byteCount; done += tileBytes) {
        const u64 count = std::min(tileBytes, byteCount - done);
        u64 bit = firstBit;
        for (u8* lane : lanes) {
            gatherLane<kBITS>(fieldsOf<kBITS>(bit, stride * kBITS), source + done * stride, stride, lane + done, count);
            if (mirrorBits) mirrorFields<kBITS>(lane + done, count);
            bit += kBITS;
        }
    }
}

} // namespace

void gatherNarrowLanes(
    unsigned laneBits, bool mirrorBits, const u8* source, u64 firstBit, std::span<u8* const> lanes, u64 byteCount) {
    switch (laneBits) {
    case 1:
        return gather<1>(mirrorBits, source, firstBit, lanes, byteCount);
    case 2:
        return gather<2>(mirrorBits, source, firstBit, lanes, byteCount);
    default:
        return gather<4>(mirrorBits, source, firstBit, lanes, byteCount);
    }
}

} // namespace memdata

// narrow_gather.cpp - see narrow_gather.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/narrow_gather.h"

#include <array>

namespace memdata {
namespace {

// As many words as fill a byte of the lane are whole bytes of the source. So the words of the lane's next byte stand at
// the same bits, that many bytes on.
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
void gather(const NarrowForm& form, const u8* source, u64 firstBit, u8* lane, u64 byteCount) {
    gatherLane<kBITS>(fieldsOf<kBITS>(firstBit, form.busBits), source, form.busBits / kBITS, lane, byteCount);
    if (form.mirrorBits) mirrorFields<kBITS>(lane, byteCount);
}

} // namespace

void gatherNarrowLane(const NarrowForm& form, const u8* source, u64 firstBit, u8* lane, u64 byteCount) {
    switch (form.laneBits) {
    case 1:
        return gather<1>(form, source, firstBit, lane, byteCount);
    case 2:
        return gather<2>(form, source, firstBit, lane, byteCount);
    default:
        return gather<4>(form, source, firstBit, lane, byteCount);
    }
}

} // namespace memdata

// damage.h - verbs that spoil good bytes, each giving the spoilt copy.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_DAMAGE_H
#define MEMDATA_TESTS_SUPPORT_DAMAGE_H

#include "platform/BasicTypes.h"

#include <functional>
#include <vector>

namespace memdata::testing {

using Bytes = std::vector<u8>;

// Bit 0 is the top bit of byte 0. A bit outside of the bytes throws std::out_of_range, as do all verbs here.
Bytes flip_bit(Bytes bytes, size_t bitIndex);

// Keeps the first byteCount bytes.
Bytes cut_at(const Bytes& bytes, size_t byteCount);

// Overwrites a length field of fieldBytes bytes (1 to 8) at an offset, most significant byte first.
Bytes set_length(Bytes bytes, size_t offset, size_t fieldBytes, u64 length);

// Overwrites the four bytes at offset, most significant first, with what a checksum gives over the bytes
// before them: makes damage ahead of a CRC pass as undamaged.
Bytes fix_crc(Bytes bytes, size_t offset, const std::function<u32(const u8* bytes, size_t byteCount)>& checksum);

} // namespace memdata::testing

#endif

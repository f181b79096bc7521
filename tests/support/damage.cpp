// damage.cpp - see damage.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/damage.h"

#include <stdexcept>

namespace memdata::testing {

Bytes flip_bit(Bytes bytes, size_t bitIndex) {
    bytes.at(bitIndex / 8) ^= static_cast<u8>(0x80u >> (bitIndex % 8));
    return bytes;
}

Bytes cut_at(const Bytes& bytes, size_t byteCount) {
    if (byteCount > bytes.size()) throw std::out_of_range("cut_at: behind the end");
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(byteCount)};
}

Bytes set_length(Bytes bytes, size_t offset, size_t fieldBytes, u64 length) {
    if (fieldBytes < 1 || fieldBytes > 8) throw std::out_of_range("set_length: a field has 1 to 8 bytes");
    for (size_t i = 0; i < fieldBytes; ++i)
        bytes.at(offset + i) = static_cast<u8>(length >> (8 * (fieldBytes - 1 - i)));
    return bytes;
}

Bytes fix_crc(Bytes bytes, size_t offset, const std::function<u32(const u8*, size_t)>& checksum) {
    if (offset > bytes.size()) throw std::out_of_range("fix_crc: behind the end");
    const u32 crc = checksum(bytes.data(), offset);
    return set_length(std::move(bytes), offset, 4, crc);
}

} // namespace memdata::testing

// stream_crc.cpp - the running CRC of a configuration stream: word by word, and runs of words.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/stream_crc.h"

#include "BitFileUtils/stream_state.h"
#include "DeviceTableUtils/families.h"

#include <array>
#include <cstring>

u32 gAccumulated_CRC = 0;
u32 gCRC_Address_Length = 0;
void (*gCRC_Word)(u32 address, u32 word) = CRC_Word;

namespace {

constexpr u32 kCRC_16_POLYNOMIAL = 0xA001;
constexpr u32 kCRC_32C_POLYNOMIAL = 0x82F63B78;
constexpr u32 kADDRESS_BITS = 5; // that CRC-32C streams enter with each word
constexpr u32 kUNIT_BITS = 32 + kADDRESS_BITS;

// What count zero bits behind a value do to a CRC that shifts right.
constexpr u32 shiftedOut(u32 crc, u32 polynomial, u32 count) {
    for (u32 i = 0; i < count; ++i) crc = crc >> 1 ^ ((crc & 1) != 0 ? polynomial : 0);
    return crc;
}

consteval std::array<u32, 256> byteTable(u32 polynomial) {
    std::array<u32, 256> table{};
    for (u32 byte = 0; byte < 256; ++byte) table[byte] = shiftedOut(byte, polynomial, 8);
    return table;
}

constexpr std::array<u32, 256> kCRC_16_TABLE = byteTable(kCRC_16_POLYNOMIAL);
constexpr std::array<u32, 256> kCRC_32C_TABLE = byteTable(kCRC_32C_POLYNOMIAL);

constexpr u32 enterByte(u32 crc, u32 byte, const std::array<u32, 256>& table) {
    return crc >> 8 ^ table[(crc ^ byte) & 0xFF];
}

// The low count bits of value, fewer than 32.
u32 enterBits(u32 crc, u32 value, u32 count, u32 polynomial) {
    const u32 mask = (1U << count) - 1;
    return shiftedOut(crc ^ (value & mask), polynomial, count);
}

u32 bigEndianWord(const u8* at) {
    u32 word = 0;
    std::memcpy(&word, at, sizeof word);
    return __builtin_bswap32(word);
}

u32 enterQuadByTable(u32 crc, u64 quad) {
    for (int i = 0; i < 8; ++i, quad >>= 8) crc = enterByte(crc, static_cast<u32>(quad & 0xFF), kCRC_32C_TABLE);
    return crc;
}

// Units strung together, least significant bits first. A full 64 bits go to enterQuad; held of the last ones stay in quad.
struct UnitString {
    u64 quad = 0;
    u32 held = 0;

    [[gnu::always_inline]] void append(u64 unit, u32& crc, auto enterQuad) {
        quad |= unit << held;
        held += kUNIT_BITS;
        if (held < 64) return;
        crc = enterQuad(crc, quad);
        held -= 64;
        quad = held == 0 ? 0 : unit >> (kUNIT_BITS - held);
    }
};

[[gnu::always_inline]] inline u32 enterUnits(u32 crc, u32 address, const u8* data, u64 wordCount, auto enterQuad) {
    constexpr u64 kROUND_WORDS = 64; // whose units fill 37 times 64 bits: all shifts are constants
    const u64 addressBits = u64{address & ((1U << kADDRESS_BITS) - 1)} << 32;
    for (; wordCount >= kROUND_WORDS; wordCount -= kROUND_WORDS, data += 4 * kROUND_WORDS) {
        UnitString units;
#pragma GCC unroll 64
        for (u64 i = 0; i < kROUND_WORDS; ++i) units.append(addressBits | bigEndianWord(data + 4 * i), crc, enterQuad);
    }
    UnitString units;
    for (; wordCount > 0; --wordCount, data += 4) units.append(addressBits | bigEndianWord(data), crc, enterQuad);
    for (; units.held >= 8; units.held -= 8, units.quad >>= 8)
        crc = enterByte(crc, static_cast<u32>(units.quad & 0xFF), kCRC_32C_TABLE);
    return enterBits(crc, static_cast<u32>(units.quad), units.held, kCRC_32C_POLYNOMIAL);
}

#ifdef __x86_64__
[[gnu::target("sse4.2")]] u32 enterQuadByInstruction(u32 crc, u64 quad) {
    return static_cast<u32>(__builtin_ia32_crc32di(crc, quad));
}

[[gnu::target("sse4.2")]] u32 enterUnitsByInstruction(u32 crc, u32 address, const u8* data, u64 wordCount) {
    return enterUnits(crc, address, data, wordCount, enterQuadByInstruction);
}
#endif

} // namespace

namespace memdata {

u32 crcOfWordsByTable(u32 crc, u32 address, const u8* data, u64 wordCount) {
    return enterUnits(crc, address, data, wordCount, enterQuadByTable);
}

u32 crcOfWords(u32 crc, u32 address, const u8* data, u64 wordCount) {
#ifdef __x86_64__
    if (__builtin_cpu_supports("sse4.2")) return enterUnitsByInstruction(crc, address, data, wordCount);
#endif
    return crcOfWordsByTable(crc, address, data, wordCount);
}

} // namespace memdata

void CRC_Reset(const TarselDeviceType* device) {
    gAccumulated_CRC = 0;
    gCRC_Word = device->family->crcWordFunction;
    gCRC_Address_Length = device->family->crcAddressBits;
}

void CRC_Bit(u32 bit) {
    gAccumulated_CRC = shiftedOut(gAccumulated_CRC ^ (bit & 1), kCRC_16_POLYNOMIAL, 1);
}

void CRC_Word(u32 address, u32 word) {
    u32 crc = gAccumulated_CRC;
    for (u32 i = 0; i < 4; ++i, word >>= 8) crc = enterByte(crc, word & 0xFF, kCRC_16_TABLE);
    gAccumulated_CRC = enterBits(crc, address, gCRC_Address_Length < 32 ? gCRC_Address_Length : 31, kCRC_16_POLYNOMIAL);
}

void CRC_32_37(u32 address, u32 word) {
    u32 crc = gAccumulated_CRC;
    for (u32 i = 0; i < 4; ++i, word >>= 8) crc = enterByte(crc, word & 0xFF, kCRC_32C_TABLE);
    gAccumulated_CRC = enterBits(crc, address, kADDRESS_BITS, kCRC_32C_POLYNOMIAL);
}

void CRC_16_37(u32 address, u32 word) {
    const u32 top = gAccumulated_CRC >> 21 & 1;
    u32 next = (gAccumulated_CRC << 1 & 0x3FFFFF) | top;
    if (top != 0) next ^= 0x9080;
    gAccumulated_CRC = next ^ ((address & 0x3F) << 16 | (word & 0xFFFF));
}

void CRC_Data(const TarselDeviceType* device, u32 commandWord, const u8* data, u64 wordCount) {
    const TarselFamilyType& family = *device->family;
    const RegisterBitFieldType& field = family.commandFields[memdata::kADDRESS_FIELD];
    const u32 address = (commandWord & field.mask) >> field.shift;
    if (gCRC_Word == CRC_32_37 && family.configWordBytes == 4) {
        gAccumulated_CRC = memdata::crcOfWords(gAccumulated_CRC, address, data, wordCount);
    } else if (family.configWordBytes == 4) {
        for (u64 i = 0; i < wordCount; ++i) gCRC_Word(address, bigEndianWord(data + 4 * i));
    } else {
        for (u64 i = 0; i < wordCount; ++i) gCRC_Word(address, u32{data[2 * i]} << 8 | data[2 * i + 1]);
    }
}

void CRCRegValue(const TarselDeviceType* device, u32 address, u32 value, u32 wordCount) {
    for (u32 n = wordCount; n > 0; --n)
        gCRC_Word(address, value >> (device->family->configWordBytes * (n - 1) * 8 & 31));
}

void CRC_Disabled_Check(const TarselDeviceType* device) {
    const TarselFamilyType& family = *device->family;
    if (family.corCrcBypassIndex < 0 || family.corFields == nullptr) return;
    const RegisterBitFieldType& field = family.corFields[family.corCrcBypassIndex];
    if ((gCurrCORregValue >> field.shift & field.mask) != 0) gAccumulated_CRC = family.crcBypassValue;
}

bool Encryption_Enabled_Check(const TarselDeviceType* device) {
    const TarselFamilyType& family = *device->family;
    if (family.encryptFieldIndex < 0 || family.ctlFields == nullptr) return false;
    const RegisterBitFieldType& field = family.ctlFields[family.encryptFieldIndex];
    return (gCurrCTLregValue >> field.shift & field.mask) != 0;
}

// stream_crc.cpp - the running CRC of a configuration stream: word by word, and runs of words.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/stream_crc.h"

#include "BitFileUtils/stream_state.h"
#include "DeviceTableUtils/families.h"

#include <array>
#include <cstring>

#ifdef __x86_64__
#include <immintrin.h>
#endif

u32 gAccumulated_CRC = 0;
u32 gCRC_Address_Length = 0;
void (*gCRC_Word)(u32 address, u32 word) = CRC_Word;

namespace {

constexpr u32 kCRC_16_POLYNOMIAL = 0xA001;
constexpr u32 kCRC_32C_POLYNOMIAL = 0x82F63B78;
constexpr u32 kADDRESS_BITS = 5; // that CRC-32C streams enter with each word
constexpr u32 kADDRESS_MASK = (1U << kADDRESS_BITS) - 1;
constexpr u32 kUNIT_BITS = 32 + kADDRESS_BITS;

// What count zero bits behind a value do to a CRC that shifts right.
constexpr u32 shiftedOut(u32 crc, u32 polynomial, u32 count) {
    for (u32 i = 0; i < count; ++i) crc = crc >> 1 ^ ((crc & 1) != 0 ? polynomial : 0);
    return crc;
}

// The same for all values of so many bits.
template<u32 bits>
consteval std::array<u32, 1U << bits> shiftTable(u32 polynomial) {
    std::array<u32, 1U << bits> table{};
    for (u32 value = 0; value < table.size(); ++value) table[value] = shiftedOut(value, polynomial, bits);
    return table;
}

constexpr std::array<u32, 256> kCRC_16_TABLE = shiftTable<8>(kCRC_16_POLYNOMIAL);
constexpr std::array<u32, 256> kCRC_32C_TABLE = shiftTable<8>(kCRC_32C_POLYNOMIAL);
constexpr std::array<u32, 32> kCRC_32C_ADDRESS_TABLE = shiftTable<kADDRESS_BITS>(kCRC_32C_POLYNOMIAL);

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

// A unit of a CRC-32C stream: a word and the address bits.
u32 enterUnit(u32 crc, u32 address, u32 word) {
    for (u32 i = 0; i < 4; ++i, word >>= 8) crc = enterByte(crc, word & 0xFF, kCRC_32C_TABLE);
    return crc >> kADDRESS_BITS ^ kCRC_32C_ADDRESS_TABLE[(crc ^ address) & kADDRESS_MASK];
}

#ifdef __x86_64__

// A round of units at once. A CRC is the remainder of one long polynomial, whose first bit has the highest power of x. So
// each word of the round may be multiplied by the power of x that the units behind it make of it; the products, without
// carries and 63 bits wide, are added up, and one CRC step takes the remainder of the sum. What was entered before the
// round stands in its first word. The address bits are the same in all rounds: their share is a constant.
constexpr u64 kROUND_WORDS = 64;

// x to the power of count; the bits of a 32-bit value are x^31 to x^0, the least significant first.
constexpr u32 powerOfX(u32 count) {
    return shiftedOut(0x80000000, kCRC_32C_POLYNOMIAL, count);
}

// By word: the address bits of its own unit and whole units follow. The instruction that takes the remainder multiplies
// by x^32, and a product stands one bit away from the end of its 64; a CRC is the remainder of the words times x^32.
consteval std::array<u64, kROUND_WORDS> wordPowers() {
    std::array<u64, kROUND_WORDS> powers{};
    for (u32 i = 0; i < kROUND_WORDS; ++i)
        powers[i] = powerOfX(kADDRESS_BITS - 1 + kUNIT_BITS * (static_cast<u32>(kROUND_WORDS) - 1 - i));
    return powers;
}
alignas(16) constexpr std::array<u64, kROUND_WORDS> kWORD_POWERS = wordPowers();

// By address: the CRC of a round of zero words.
consteval std::array<u32, kADDRESS_MASK + 1> addressShares() {
    std::array<u32, kADDRESS_MASK + 1> shares{};
    for (u32 address = 0; address < shares.size(); ++address)
        for (u64 i = 0; i < kROUND_WORDS; ++i)
            shares[address] = shiftedOut(
                shiftedOut(shares[address], kCRC_32C_POLYNOMIAL, 32) ^ address, kCRC_32C_POLYNOMIAL, kADDRESS_BITS);
    return shares;
}
constexpr std::array<u32, kADDRESS_MASK + 1> kADDRESS_SHARES = addressShares();

[[gnu::target("pclmul,sse4.2")]] u32 enterRounds(u32 crc, u32 address, const u8* data, u64 rounds) {
    // Two of four big-endian words, each as a number of 64 bits.
    const __m128i firstTwo = _mm_set_epi8(-1, -1, -1, -1, 4, 5, 6, 7, -1, -1, -1, -1, 0, 1, 2, 3);
    const __m128i lastTwo = _mm_set_epi8(-1, -1, -1, -1, 12, 13, 14, 15, -1, -1, -1, -1, 8, 9, 10, 11);
    for (; rounds > 0; --rounds) {
        __m128i before = _mm_cvtsi32_si128(static_cast<int>(crc));
        __m128i sum = _mm_setzero_si128();
        for (u64 i = 0; i < kROUND_WORDS; i += 4, data += 16) {
            const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
            const __m128i a = _mm_xor_si128(_mm_shuffle_epi8(words, firstTwo), before);
            const __m128i b = _mm_shuffle_epi8(words, lastTwo);
            const __m128i powersOfA = _mm_load_si128(reinterpret_cast<const __m128i*>(&kWORD_POWERS[i]));
            const __m128i powersOfB = _mm_load_si128(reinterpret_cast<const __m128i*>(&kWORD_POWERS[i + 2]));
            const __m128i low =
                _mm_xor_si128(_mm_clmulepi64_si128(a, powersOfA, 0x00), _mm_clmulepi64_si128(b, powersOfB, 0x00));
            const __m128i high =
                _mm_xor_si128(_mm_clmulepi64_si128(a, powersOfA, 0x11), _mm_clmulepi64_si128(b, powersOfB, 0x11));
            sum = _mm_xor_si128(sum, _mm_xor_si128(low, high));
            before = _mm_setzero_si128();
        }
        crc = static_cast<u32>(_mm_crc32_u64(0, static_cast<u64>(_mm_cvtsi128_si64(sum)))) ^
              kADDRESS_SHARES[address & kADDRESS_MASK];
    }
    return crc;
}

#endif

} // namespace

namespace memdata {

u32 crcOfWordsByTable(u32 crc, u32 address, const u8* data, u64 wordCount) {
    for (; wordCount > 0; --wordCount, data += 4) crc = enterUnit(crc, address, bigEndianWord(data));
    return crc;
}

u32 crcOfWords(u32 crc, u32 address, const u8* data, u64 wordCount) {
#ifdef __x86_64__
    if (__builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.2")) {
        const u64 rounds = wordCount / kROUND_WORDS;
        crc = enterRounds(crc, address, data, rounds);
        data += rounds * kROUND_WORDS * 4;
        wordCount %= kROUND_WORDS;
    }
#endif
    return crcOfWordsByTable(crc, address, data, wordCount);
}

bool entersRunsOfWords(const TarselDeviceType* device) {
    return gCRC_Word == CRC_32_37 && device->family->configWordBytes == 4;
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
    gAccumulated_CRC = enterUnit(gAccumulated_CRC, address, word);
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
    if (memdata::entersRunsOfWords(device)) {
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

// bit_stream.h - configuration streams, packet by packet: written, and taken apart again.
//
// Made to check the engine: packets, sync words and CRCs are done here a second time, bit by bit. Only the families'
// register addresses and fields come from the engine's tables.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_BIT_STREAM_H
#define MEMDATA_TESTS_SUPPORT_BIT_STREAM_H

#include "DeviceTableUtils/records.h"
#include "support/damage.h"

#include <optional>
#include <vector>

namespace memdata::testing {

// Kinds of registers that tests name.
namespace reg {
inline constexpr u32 kCRC = 0, kFAR = 1, kFDRI = 2, kFDRO = 3, kCMD = 4, kCTL = 5, kMASK = 6, kSTAT = 7, kLOUT = 8,
                     kCOR = 9, kMFWR = 10, kFLR = 11, kIDCODE = 12, kCTL1 = 17, kCOR1 = 18, kWBSTAR = 22, kTIMER = 23,
                     kRBCRC1 = 25, kBOUT = 70;
}
namespace command {
inline constexpr u32 kWCFG = 1, kMFW = 2, kLFRM = 3, kSTART = 5, kRCRC = 7, kDESYNCH = 13;
}

// Facts about the packets of a family.
struct PacketForm {
    explicit PacketForm(const TarselFamilyType* family);

    u32 command(u32 operation, u32 address, u32 count) const; // a word of type 1
    // The first address of a kind; none where the family has no such register.
    std::optional<u32> addressOf(u32 kind) const;

    const TarselFamilyType* family;
    bool shortWords; // 16-bit words
    u32 wordBytes;
    u32 syncBytes;
    u32 sync;
    u32 dummy;
    u32 shortCountLimit;
    bool crcFedBack;
    bool resetsAfterAutoCrc;
    u32 bypassValue;
};

// The CRC of a family, one bit at a time.
class StreamCrc {
public:
    explicit StreamCrc(const TarselFamilyType* family);
    void reset() { value_ = 0; }
    void force(u32 value) { value_ = value; }
    void enter(u32 address, u32 word);
    u32 value() const { return value_; }

private:
    enum Kind { SIXTEEN_BITS, CASTAGNOLI, SIGNATURE };
    void enterBits_(u32 bits, u32 count);
    Kind kind_;
    u32 addressBits_;
    u32 value_ = 0;
};

class StreamWriter {
public:
    explicit StreamWriter(const TarselDeviceType* device) : form_(device->family), crc_(device->family) {}

    const Bytes& bytes() const { return bytes_; }
    Bytes take() { return std::move(bytes_); }
    const PacketForm& form() const { return form_; }
    // 16-bit families need two for what others hold in one.
    u32 wordsOf32Bits() const { return 4 / form_.wordBytes; }

    void byte(u8 value) { bytes_.push_back(value); } // outside of packets, not in the CRC, as the next two
    void word(u32 value);
    void syncValue(u32 value);
    void sync(); // and a fresh CRC
    void noOperation();
    void pad() { word(0); }
    // A write of a register; nothing where the family has none. Values have wordCount words, most significant first.
    void write(u32 kind, u32 value, u32 wordCount = 1);
    void read(u32 kind, u32 wordCount = 1);
    void cmd(u32 command) { write(reg::kCMD, command); }
    // A burst of FDRI or MFWR. Counts that fit a command word stand there unless longCount asks otherwise.
    void burst(u32 kind, const Bytes& data, bool longCount = true);
    void crcRegister(); // the sum so far
    void autoCrc();     // the same behind a burst, without a command word
    u32 crc() const { return crc_.value(); }
    // From here on the sum is the family's bypass value wherever it is written.
    void bypassCrc() { bypassed_ = true; }

private:
    void enter_(u32 address, u32 word) { crc_.enter(address, word); }
    PacketForm form_;
    StreamCrc crc_;
    Bytes bytes_;
    bool bypassed_ = false;
};

// A unit of a stream that was taken apart.
struct StreamPiece {
    enum Kind { OUTSIDE, SYNC, NO_OPERATION, PAD, AUTO_CRC, PACKET };
    Kind kind;
    size_t offset;     // first byte
    size_t size;       // bytes, all words of it
    u32 operation = 0; // of a PACKET, as the next three
    u32 registerKind = 0;
    size_t dataOffset = 0; // first data byte
    size_t dataBytes = 0;
    u32 value = 0;       // of a register, or of an AUTO_CRC; of several words all of them, most significant first
    u32 crc = 0;         // of a CRC write or an AUTO_CRC: what it has to be
    u32 blockType = 0;   // of a burst: from the last frame address
    u32 frameColumn = 0; // of a burst in the first generation
    u32 die = 0;         // BOUT writes ahead of it
    u32 burstNumber = 0; // of a burst in its segment, from 1
    bool isCrc() const { return kind == AUTO_CRC || (kind == PACKET && operation == 2 && registerKind == reg::kCRC); }
    bool isBurst() const { return kind == PACKET && operation == 2 && registerKind == reg::kFDRI; }
};

// Throws std::runtime_error where the stream is not sound: what is left behind it counts as OUTSIDE.
std::vector<StreamPiece> takeApart(const TarselDeviceType* device, const Bytes& stream);

// Offsets of CRC words that are not what the words ahead of them give.
std::vector<size_t> wrongCrcs(const std::vector<StreamPiece>& pieces);

} // namespace memdata::testing

#endif

// bit_stream.cpp - see bit_stream.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/bit_stream.h"

#include <stdexcept>
#include <string>

namespace memdata::testing {

namespace {

constexpr u64 kFIRST_FAMILIES = 0x000F;
constexpr u64 kSECOND_FAMILIES = 0x3030;
constexpr u64 kSHORT_WORD_FAMILIES = 0xC000;
constexpr u64 kDUNMARE_3A = 0x4000;
constexpr u64 kDUNMARE_6 = 0x8000;
constexpr u32 kREAD = 1;
constexpr u32 kWRITE = 2;
constexpr u32 kBUS_WIDTH = 0xBB;

u64 numberAt(const Bytes& bytes, size_t offset, size_t count) {
    if (offset + count > bytes.size()) throw std::runtime_error("stream ends in a word at " + std::to_string(offset));
    u64 value = 0;
    for (size_t i = 0; i < count; ++i) value = value << 8 | bytes[offset + i];
    return value;
}

u32 fieldOf(const RegisterBitFieldType& row, u32 value) {
    return value >> row.shift & row.mask;
}

bool bypasses(const TarselFamilyType* family, u32 cor) {
    return family->corCrcBypassIndex >= 0 && fieldOf(family->corFields[family->corCrcBypassIndex], cor) != 0;
}

} // namespace

PacketForm::PacketForm(const TarselFamilyType* of)
    : family(of), shortWords((of->familyMask & kSHORT_WORD_FAMILIES) != 0), wordBytes(shortWords ? 2 : 4),
      syncBytes(of->familyMask == kDUNMARE_3A ? 2 : 4), sync(syncBytes == 2 ? 0xAA99 : 0xAA995566),
      dummy(syncBytes == 2 ? 0xFFFF : 0xFFFFFFFF), shortCountLimit(shortWords ? 31 : 2047), crcFedBack(!shortWords),
      resetsAfterAutoCrc(of->familyMask != kDUNMARE_6), bypassValue(shortWords ? 0x9876DEFC : 0xDEFC) {}

u32 PacketForm::command(u32 operation, u32 address, u32 count) const {
    return shortWords ? 1U << 13 | operation << 11 | address << 5 | count
                      : 1U << 29 | operation << 27 | address << 13 | count;
}

std::optional<u32> PacketForm::addressOf(u32 kind) const {
    for (u32 address = 0; address < 72; ++address)
        if (family->registerKinds[address] == kind && family->registerNames[address] != nullptr) return address;
    return std::nullopt;
}

StreamCrc::StreamCrc(const TarselFamilyType* family)
    : kind_((family->familyMask & kSHORT_WORD_FAMILIES) != 0                   ? SIGNATURE
            : (family->familyMask & (kFIRST_FAMILIES | kSECOND_FAMILIES)) != 0 ? SIXTEEN_BITS
                                                                               : CASTAGNOLI),
      addressBits_((family->familyMask & kFIRST_FAMILIES) != 0 ? 4 : 5) {}

void StreamCrc::enterBits_(u32 bits, u32 count) {
    const u32 polynomial = kind_ == CASTAGNOLI ? 0x82F63B78 : 0xA001;
    for (u32 i = 0; i < count; ++i, bits >>= 1) value_ = value_ >> 1 ^ (((value_ ^ bits) & 1) != 0 ? polynomial : 0);
}

void StreamCrc::enter(u32 address, u32 word) {
    if (kind_ != SIGNATURE) {
        enterBits_(word, 32);
        enterBits_(address, addressBits_);
        return;
    }
    // The top bit goes round to bit 0 and into the taps.
    const u32 top = value_ >> 21;
    value_ = (value_ << 1) % (1U << 22);
    for (u32 tap : {0U, 7U, 12U, 15U}) value_ ^= top << tap;
    value_ ^= (address % 64) << 16 ^ word % 65536;
}

void StreamWriter::word(u32 value) {
    for (u32 i = form_.wordBytes; i > 0; --i) bytes_.push_back(static_cast<u8>(value >> 8 * (i - 1)));
}

void StreamWriter::syncValue(u32 value) {
    if (form_.syncBytes > form_.wordBytes) word(value >> 16);
    word(value);
}

void StreamWriter::sync() {
    syncValue(form_.sync);
    crc_.reset();
}

void StreamWriter::noOperation() {
    word(form_.command(0, 0, 0));
}

void StreamWriter::write(u32 kind, u32 value, u32 wordCount) {
    const std::optional<u32> address = form_.addressOf(kind);
    if (!address) return;
    word(form_.command(kWRITE, *address, wordCount));
    for (u32 i = wordCount; i > 0; --i) {
        const u32 part = form_.shortWords ? value >> 16 * (i - 1) & 0xFFFF : value;
        word(part);
        enter_(*address, part);
    }
    if (kind == reg::kCMD && value == command::kRCRC) crc_.reset();
}

void StreamWriter::read(u32 kind, u32 wordCount) {
    if (const std::optional<u32> address = form_.addressOf(kind)) word(form_.command(kREAD, *address, wordCount));
}

void StreamWriter::burst(u32 kind, const Bytes& data, bool longCount) {
    const u32 address = form_.addressOf(kind).value();
    const u64 count = data.size() / form_.wordBytes;
    if (longCount || count > form_.shortCountLimit || count == 0) {
        word(form_.command(kWRITE, address, 0));
        if (form_.shortWords) {
            word(static_cast<u32>(count >> 16));
            word(static_cast<u32>(count));
        } else {
            word(2U << 29 | kWRITE << 27 | static_cast<u32>(count));
        }
    } else {
        word(form_.command(kWRITE, address, static_cast<u32>(count)));
    }
    bytes_.insert(bytes_.end(), data.begin(), data.end());
    for (size_t at = 0; at < count * form_.wordBytes; at += form_.wordBytes)
        enter_(address, static_cast<u32>(numberAt(data, at, form_.wordBytes)));
}

void StreamWriter::crcRegister() {
    if (bypassed_) crc_.force(form_.bypassValue);
    const u32 value = crc_.value();
    word(form_.command(kWRITE, 0, wordsOf32Bits()));
    if (form_.shortWords) word(value >> 16);
    word(value);
    if (form_.crcFedBack) enter_(0, value);
}

void StreamWriter::autoCrc() {
    if (bypassed_) crc_.force(form_.bypassValue);
    syncValue(crc_.value());
    if (form_.resetsAfterAutoCrc) crc_.reset();
}

namespace {

// One pass over a stream.
class Parts {
public:
    Parts(const TarselDeviceType* device, const Bytes& stream)
        : device_(device), form_(device->family), crc_(device->family), stream_(stream) {}

    std::vector<StreamPiece> all() {
        while (at_ < stream_.size()) {
            if (inSegment_)
                insideSegment_();
            else
                outside_();
        }
        return std::move(pieces_);
    }

private:
    StreamPiece& add_(StreamPiece::Kind kind, size_t size) {
        pieces_.push_back({.kind = kind, .offset = at_, .size = size});
        at_ += size;
        return pieces_.back();
    }

    u32 wordAt_(size_t offset) const { return static_cast<u32>(numberAt(stream_, offset, form_.wordBytes)); }

    void outside_() {
        const size_t left = stream_.size() - at_;
        if (left < form_.syncBytes) {
            add_(StreamPiece::OUTSIDE, left);
            return;
        }
        const u64 value = numberAt(stream_, at_, form_.syncBytes);
        if (value == form_.sync) {
            add_(StreamPiece::SYNC, form_.syncBytes);
            crc_.reset();
            inSegment_ = true;
            lastKind_ = 255;
            bursts_ = 0;
        } else {
            const size_t size = form_.syncBytes * (value == kBUS_WIDTH ? 3 : 1);
            add_(StreamPiece::OUTSIDE, std::min(size, left));
        }
    }

    void insideSegment_() {
        const u32 word = wordAt_(at_);
        const u32 type = form_.shortWords ? word >> 13 : word >> 29;
        const u32 operation = form_.shortWords ? word >> 11 & 3 : word >> 27 & 3;
        if (operation != 0) {
            packet_(word, operation);
        } else if (type == 1) {
            add_(StreamPiece::NO_OPERATION, form_.wordBytes);
        } else if (word == 0 && lastKind_ != reg::kFDRI) {
            add_(StreamPiece::PAD, form_.wordBytes);
        } else {
            const u32 value = static_cast<u32>(numberAt(stream_, at_, form_.syncBytes));
            if (bypasses(device_->family, cor_)) crc_.force(form_.bypassValue);
            StreamPiece& piece = add_(StreamPiece::AUTO_CRC, form_.syncBytes);
            piece.value = value;
            piece.crc = form_.syncBytes == 2 ? crc_.value() & 0xFFFF : crc_.value();
            lastKind_ = 255;
            if (form_.resetsAfterAutoCrc) crc_.reset();
        }
    }

    void packet_(u32 word, u32 operation) {
        const u32 address = form_.shortWords ? word >> 5 & 63 : (word & device_->family->commandFields[2].mask) >> 13;
        const u32 kind = address < 72 ? device_->family->registerKinds[address] : 255;
        size_t headerBytes = form_.wordBytes;
        u64 count = form_.shortWords ? word & 31 : word & 2047;
        const bool isLong = operation == kWRITE && (kind == reg::kFDRI || kind == reg::kMFWR) && count == 0;
        if (isLong) {
            count = numberAt(stream_, at_ + form_.wordBytes, 4) & (form_.shortWords ? 0xFFFFFFFF : 0x07FFFFFF);
            headerBytes += 4;
        }
        if (operation != kWRITE) count = 0;
        if (operation == kWRITE && count == 0 && !isLong) count = 1;
        if (operation == kWRITE && (kind == reg::kCOR || kind == reg::kCOR1)) count = 1;
        const size_t dataBytes = count * form_.wordBytes;
        if (dataBytes > stream_.size() - at_ - headerBytes)
            throw std::runtime_error("stream ends in a packet at " + std::to_string(at_));
        StreamPiece& piece = add_(StreamPiece::PACKET, headerBytes + dataBytes);
        piece.operation = operation;
        piece.registerKind = lastKind_ = kind;
        piece.dataOffset = piece.offset + headerBytes;
        piece.dataBytes = dataBytes;
        piece.die = die_;
        if (operation == kWRITE) take_(piece, address);
    }

    void take_(StreamPiece& piece, u32 address) {
        for (size_t at = 0; at < piece.dataBytes; at += form_.wordBytes) {
            const u32 word = wordAt_(piece.dataOffset + at);
            piece.value = form_.shortWords ? piece.value << 16 | word : word;
            if (piece.registerKind != reg::kCRC) crc_.enter(address, word);
        }
        switch (piece.registerKind) {
        case reg::kCRC:
            if (bypasses(device_->family, cor_)) crc_.force(form_.bypassValue);
            piece.crc = crc_.value();
            if (form_.crcFedBack) crc_.enter(address, piece.value);
            break;
        case reg::kCMD:
            if (piece.value == command::kRCRC) crc_.reset();
            if (piece.value == command::kDESYNCH || piece.value == 14) inSegment_ = false;
            break;
        case reg::kFAR:
            far_ = piece.value;
            break;
        case reg::kCOR:
            cor_ = piece.value;
            break;
        case reg::kFDRI:
            piece.blockType = fieldOf(device_->family->farFields[0], far_);
            piece.frameColumn = far_ >> 17 & 0xFF;
            piece.burstNumber = ++bursts_;
            break;
        case reg::kBOUT:
            ++die_;
            inSegment_ = false;
            break;
        case reg::kLOUT:
            inSegment_ = false;
            break;
        default:
            break;
        }
    }

    const TarselDeviceType* device_;
    PacketForm form_;
    StreamCrc crc_;
    const Bytes& stream_;
    std::vector<StreamPiece> pieces_;
    size_t at_ = 0;
    bool inSegment_ = false;
    u32 lastKind_ = 255;
    u32 far_ = 0;
    u32 cor_ = 0;
    u32 die_ = 0;
    u32 bursts_ = 0;
};

} // namespace

std::vector<StreamPiece> takeApart(const TarselDeviceType* device, const Bytes& stream) {
    return Parts(device, stream).all();
}

std::vector<size_t> wrongCrcs(const std::vector<StreamPiece>& pieces) {
    std::vector<size_t> offsets;
    for (const StreamPiece& piece : pieces)
        if (piece.isCrc() && piece.value != piece.crc) offsets.push_back(piece.offset);
    return offsets;
}

} // namespace memdata::testing

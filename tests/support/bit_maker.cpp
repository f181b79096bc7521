// bit_maker.cpp - see bit_maker.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/bit_maker.h"

#include "DeviceTableUtils/device_lookup.h"
#include "DeviceTableUtils/frame_sizes.h"
#include "support/bit_builder.h"

#include <algorithm>
#include <random>
#include <stdexcept>

namespace memdata::testing {

namespace {

constexpr u64 kFIRST_FAMILIES = 0x000F;
constexpr u64 kSECOND_FAMILIES = 0x3030;
constexpr u64 kDUNMARE_6 = 0x8000;
constexpr u32 kFIRST_GENERATION_CLB_FRAMES = 3; // enough to stand for what is not block RAM
constexpr u32 kPAD_FRAMES = 1;                  // behind a burst
constexpr u32 kSMALL_BURST_WORDS = 20;

class Maker {
public:
    Maker(const BitRecipe& recipe, const TarselDeviceType* device)
        : recipe_(recipe), device_(device), out_(device), random_(recipe.seed) {}

    Bytes make() {
        const u32 dice = std::max(device_->dieCount, 1U);
        for (u32 die = 0; die < dice; ++die) die_(die, die + 1 == dice);
        if (recipe_.pads)
            for (int i = 0; i < 4; ++i) out_.syncValue(0);
        return out_.take();
    }

private:
    bool isFirstGeneration_() const { return (device_->family->familyMask & kFIRST_FAMILIES) != 0; }

    bool hasAutoCrc_() const {
        return recipe_.autoCrc.value_or(
            (device_->family->familyMask & (kFIRST_FAMILIES | kSECOND_FAMILIES | kDUNMARE_6)) != 0);
    }

    void filler_() {
        if (recipe_.noOperations) out_.noOperation();
        if (recipe_.pads) out_.pad();
    }

    Bytes frames_(size_t byteCount) {
        Bytes bytes(byteCount);
        for (u8& byte : bytes) byte = static_cast<u8>(random_());
        return bytes;
    }

    void die_(u32 die, bool isLast) {
        head_();
        registers_();
        if (isFirstGeneration_())
            columns_();
        else
            bursts_(die);
        if (recipe_.compressed) {
            out_.cmd(command::kMFW);
            frameAddress_(device_->family->clbBlockType, 0);
            out_.burst(reg::kMFWR, Bytes(2 * size_t{out_.form().wordBytes}), !recipe_.shortCounts);
        }
        tail_(isLast);
    }

    void head_() {
        for (int i = 0; i < 4; ++i) out_.syncValue(out_.form().dummy);
        if (recipe_.busWidthWords && out_.form().syncBytes == 4) {
            out_.syncValue(0xBB);
            out_.syncValue(0x11220044);
            out_.syncValue(out_.form().dummy);
        }
        out_.sync();
    }

    void registers_() {
        const TarselFamilyType* family = device_->family;
        filler_();
        out_.cmd(command::kRCRC);
        out_.write(reg::kFLR, device_->clbFrameBits / 8 / out_.form().wordBytes - 1);
        u32 cor = 0x00000005;
        if (recipe_.crcBypassed && family->corCrcBypassIndex >= 0) {
            cor |= 1U << family->corFields[family->corCrcBypassIndex].shift;
            out_.bypassCrc();
        }
        out_.write(reg::kCOR, cor);
        out_.write(reg::kCOR1, 1);
        out_.write(reg::kIDCODE, 0x01234093, out_.wordsOf32Bits());
        if (recipe_.readRegisters) {
            out_.read(reg::kCRC);
            out_.read(reg::kIDCODE, out_.wordsOf32Bits());
            out_.read(reg::kSTAT);
        }
        out_.write(reg::kMASK, 0xFF);
        u32 ctl = 1;
        if (recipe_.encrypted) ctl |= 1U << family->ctlFields[family->encryptFieldIndex].shift;
        out_.write(reg::kCTL, ctl);
        filler_();
    }

    void frameAddress_(u32 blockType, u32 column) {
        const u32 shift = device_->family->farFields[0].shift;
        out_.write(reg::kFAR, blockType << shift | column << 17, out_.wordsOf32Bits());
        out_.cmd(command::kWCFG);
        if (recipe_.noOperations) out_.noOperation();
    }

    void burst_(const Bytes& data) {
        out_.burst(reg::kFDRI, data, !recipe_.shortCounts);
        if (hasAutoCrc_()) {
            out_.autoCrc();
            filler_();
        } else if (recipe_.noOperations) {
            out_.noOperation(); // a zero word here would be an Auto CRC word
        }
    }

    void place_(Bytes& burst, size_t start, u32 firstColumn, u32 columnCount) const {
        for (const auto& [site, images] : recipe_.contents) {
            const MemoryFrames frames(device_, site);
            if (frames.column() < firstColumn || frames.column() >= firstColumn + columnCount) continue;
            frames.write(burst, start + columnStart(device_, frames.column()), images);
        }
    }

    // The first generation: other frames, then each column of block RAM under its own frame address.
    void columns_() {
        frameAddress_(device_->family->clbBlockType, 0);
        burst_(frames_(size_t{recipe_.clbFrames.value_or(kFIRST_GENERATION_CLB_FRAMES)} * device_->clbFrameBits / 8));
        for (u32 address = 0; address < kCOLUMN_MAP_ENTRIES; ++address) {
            const i32 column = device_->columnMap[address];
            if (column < 0) continue;
            Bytes data =
                frames_(size_t{device_->bramFrameBits / 8} * (device_->memoryLocs[0].type->frameCount + kPAD_FRAMES));
            data[0] &= 0x3F; // a replacement gives these two pad bits back as zeros
            for (const auto& [site, images] : recipe_.contents) {
                const MemoryFrames frames(device_, site);
                if (frames.column() == static_cast<u32>(column)) frames.write(data, 0, images);
            }
            frameAddress_(device_->family->bramBlockType, address);
            burst_(data);
        }
    }

    // All columns of the die in one burst, behind the other frames or on their own.
    void bursts_(u32 die) {
        const u32 perDie = columnsPerDie(device_);
        const u32 first = die * perDie;
        size_t bramBytes = 0;
        for (u32 i = 0; i < perDie; ++i) bramBytes += blockRamColumnBytes(device_, first + i);
        const size_t padBytes = size_t{kPAD_FRAMES} * (device_->bramFrameBits / 8);
        const u32 clbFrames = recipe_.clbFrames.value_or(device_->bramFrameOffset);
        const size_t clbBytes = size_t{clbFrames} * (device_->clbFrameBits / 8);
        if (!recipe_.separateBram) {
            Bytes data = frames_(clbBytes + bramBytes + padBytes);
            place_(data, clbBytes, first, perDie);
            frameAddress_(device_->family->clbBlockType, 0);
            burst_(data);
        } else {
            if (clbBytes != 0) {
                frameAddress_(device_->family->clbBlockType, 0);
                burst_(frames_(clbBytes));
            }
            Bytes data = frames_(bramBytes + padBytes);
            place_(data, 0, first, perDie);
            frameAddress_(device_->family->bramBlockType, 0);
            burst_(data);
        }
        if (!recipe_.shortCounts) return;
        frameAddress_(device_->family->clbBlockType, 0);
        burst_(frames_(size_t{kSMALL_BURST_WORDS} * out_.form().wordBytes));
    }

    void tail_(bool isLast) {
        out_.cmd(command::kLFRM);
        filler_();
        out_.cmd(command::kSTART);
        if (recipe_.closingCrc) out_.crcRegister();
        filler_();
        if (!isLast)
            out_.write(reg::kBOUT, 0);
        else
            out_.cmd(command::kDESYNCH);
    }

    const BitRecipe& recipe_;
    const TarselDeviceType* device_;
    StreamWriter out_;
    std::mt19937 random_;
};

std::string partName(const TarselDeviceType* device) {
    return std::string(device->names[0]);
}

} // namespace

MadeBit makeBit(const BitRecipe& recipe) {
    const TarselDeviceType* device = get_device_record_by_name(recipe.device.c_str());
    if (device == nullptr) throw std::invalid_argument("no device '" + recipe.device + "'");
    if (device->memoryLocs[0].type == nullptr || device->physicalColumns == 0)
        throw std::invalid_argument("device '" + recipe.device + "' has no memories");
    return {device, Maker(recipe, device).make()};
}

Bytes bitFileOf(const BitRecipe& recipe, const Bytes& stream) {
    const std::string part = partName(get_device_record_by_name(recipe.device.c_str()));
    switch (recipe.container) {
    case BitContainer::FENWICK:
        return fenwickBitFile({.partName = part}, stream);
    case BitContainer::RBT: {
        RbtFields fields{.partName = part, .lines = {}};
        Bytes padded = stream; // a line is four bytes
        padded.resize((stream.size() + 3) / 4 * 4);
        for (size_t at = 0; at < padded.size(); at += 4)
            fields.lines.push_back(rbtLine(
                u32{padded[at]} << 24 | u32{padded[at + 1]} << 16 | u32{padded[at + 2]} << 8 | u32{padded[at + 3]}));
        const std::string text = rbtText(fields);
        return {text.begin(), text.end()};
    }
    case BitContainer::T4K:
        break;
    }
    return t4kBitFile({.partName = part}, stream);
}

MemoryImages memoryOf(const TarselDeviceType* device, const Bytes& stream, const MemorySite& site) {
    return memoryOf(device, stream, takeApart(device, stream), site);
}

MemoryImages memoryOf(const TarselDeviceType* device, const Bytes& stream, const std::vector<StreamPiece>& pieces,
    const MemorySite& site) {
    const MemoryFrames frames(device, site);
    const bool firstGeneration = (device->family->familyMask & kFIRST_FAMILIES) != 0;
    const u32 die = frames.column() / columnsPerDie(device);
    for (const StreamPiece& piece : pieces) {
        if (!piece.isBurst()) continue;
        const bool isBram = piece.blockType == device->family->bramBlockType;
        size_t start = piece.dataOffset;
        if (firstGeneration) {
            if (!isBram || device->columnMap[piece.frameColumn] != static_cast<i32>(frames.column())) continue;
        } else {
            if (piece.die != die) continue;
            const size_t clbBytes = size_t{device->bramFrameOffset} * (device->clbFrameBits / 8);
            // A first burst holds block RAM only behind the other frames; a later one is all block RAM.
            if (!isBram && (piece.burstNumber != 1 || piece.dataBytes <= clbBytes)) continue;
            if (piece.burstNumber == 1) start += clbBytes;
            start += columnStart(device, frames.column());
        }
        return frames.read(stream, start);
    }
    throw std::runtime_error("the stream does not hold column " + std::to_string(frames.column()));
}

} // namespace memdata::testing

// stream_model.cpp - see stream_model.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/stream_model.h"

#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/frame_sizes.h"
#include "support/bit_stream.h"

#include <algorithm>
#include <cstring>

namespace memdata::fuzz {

namespace {

using namespace memdata::testing;

constexpr int kCUT = 2;
constexpr int kREFUSED = 3;
constexpr int kUNKNOWN_REGISTER = 4;
constexpr u32 kNO_KIND = 255;
constexpr u32 kBUS_WIDTH = 0xBB;
constexpr u32 kREBOOT = 14;

// Kinds of registers that a walk knows.
bool isKnownKind(u32 kind) {
    constexpr u32 kKINDS[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 17, 18, 20, 22, 23, 25, 28, 29, 30, 37, 38, 39,
        40, 41, 42, 43, 44, 45, 46, 48, 49, 50, 51, 52, 65, 66, 67, 68, 69, 70, 71};
    return std::ranges::find(kKINDS, kind) != std::end(kKINDS);
}

u32 fieldOf(const RegisterBitFieldType& row, u32 value) {
    return value >> row.shift & row.mask;
}

class Walk {
public:
    Walk(StreamModel& model, const Bytes& stream)
        : model_(model), device_(model.device), family_(*model.device->family), form_(&family_), crc_(&family_),
          stream_(stream) {}

    void run() {
        while (model_.status == 0 && left_() > 0) {
            if (!findSync_()) break;
            segment_();
        }
    }

private:
    bool isDump_() const { return model_.job == StreamModel::DUMP; }
    size_t left_() const { return stream_.size() - at_; }

    u32 take_(u32 bytes) {
        u32 value = 0;
        for (u32 i = 0; i < bytes; ++i) value = value << 8 | stream_[at_++];
        return value;
    }
    void put_(u32 value, u32 bytes) {
        for (u32 i = bytes; i > 0; --i) model_.copy.push_back(static_cast<u8>(value >> 8 * (i - 1)));
    }
    void putWord_(u32 word) { put_(word, form_.wordBytes); }
    void copy_(size_t bytes) {
        const auto from = stream_.begin() + static_cast<std::ptrdiff_t>(at_);
        model_.copy.insert(model_.copy.end(), from, from + static_cast<std::ptrdiff_t>(bytes));
        at_ += bytes;
    }
    void stop_(int status) { model_.status = status; }

    // False where there is none: all that is left was passed.
    bool findSync_() {
        while (left_() >= form_.syncBytes) {
            const size_t before = at_;
            const u32 value = take_(form_.syncBytes);
            at_ = before;
            copy_(form_.syncBytes);
            if (value == form_.sync) return true;
            for (int i = 0; i < 2 && value == kBUS_WIDTH && left_() >= form_.syncBytes; ++i) copy_(form_.syncBytes);
        }
        copy_(left_());
        return false;
    }

    void segment_() {
        crc_.reset();
        bursts_ = 0;
        ended_ = false;
        while (model_.status == 0 && !ended_ && left_() >= form_.wordBytes) word_(take_(form_.wordBytes));
        if (model_.status == 0 && left_() < form_.wordBytes) copy_(left_());
    }

    u32 operationOf_(u32 word) const { return form_.shortWords ? word >> 11 & 3 : word >> 27 & 3; }
    bool isPlain_(u32 word) const {
        const u32 type = form_.shortWords ? word >> 13 : word >> 29;
        return (word == 0 && lastKind_ != reg::kFDRI) || type == 1;
    }

    void word_(u32 word) {
        if (const u32 operation = operationOf_(word); operation != 0)
            packet_(word, operation);
        else if (isPlain_(word))
            putWord_(word);
        else
            autoCrc_(word);
    }

    void bypass_() {
        if (family_.corCrcBypassIndex >= 0 && fieldOf(family_.corFields[family_.corCrcBypassIndex], cor_) != 0)
            crc_.force(form_.bypassValue);
    }

    void autoCrc_(u32 first) {
        bypass_();
        u32 value = first;
        if (form_.syncBytes > form_.wordBytes) {
            if (left_() < form_.wordBytes) return stop_(kCUT);
            value = value << 16 | take_(form_.wordBytes);
        }
        const u32 sum = form_.syncBytes == 2 ? crc_.value() & 0xFFFF : crc_.value();
        model_.crcWords.push_back({value, crc_.value(), value == sum});
        // A new sum can look like a packet or a pad.
        const u32 lead = form_.syncBytes > form_.wordBytes ? sum >> 16 : sum;
        model_.hasOpaqueWords |= operationOf_(lead) != 0 || isPlain_(lead);
        put_(crc_.value(), form_.syncBytes);
        lastKind_ = kNO_KIND;
        if (form_.resetsAfterAutoCrc) crc_.reset();
    }

    void packet_(u32 word, u32 operation) {
        const u32 address = form_.shortWords ? word >> 5 & 63 : (word & family_.commandFields[2].mask) >> 13;
        if (address >= std::size(family_.registerKinds)) return stop_(kUNKNOWN_REGISTER);
        const u32 kind = lastKind_ = family_.registerKinds[address];
        if (!isKnownKind(kind)) return stop_(kUNKNOWN_REGISTER);
        if (operation != 2) return putWord_(word);
        if (kind == reg::kFDRI || kind == reg::kMFWR) return burst_(word, address, kind);
        // Written blocks of these are no packets to a dump.
        const bool isOpaque = kind == reg::kFDRO || kind == reg::kSTAT;
        if (isOpaque && isDump_()) return;
        model_.hasOpaqueWords |= isOpaque;

        u32 count = form_.shortWords ? word & 31 : word & 2047;
        if (count == 0 || kind == reg::kCOR || kind == reg::kCOR1) count = 1;
        if (u64{count} * form_.wordBytes > left_()) return stop_(kCUT);
        std::vector<u32> words;
        u32 value = 0;
        for (u32 i = 0; i < count; ++i) {
            words.push_back(take_(form_.wordBytes));
            value = form_.shortWords ? value << 16 | words.back() : words.back();
        }
        if (kind == reg::kCRC) return crcRegister_(word, address, value, count);
        if (kind == reg::kCMD && value == command::kRCRC)
            crc_.reset();
        else if (!isOpaque)
            for (u32 each : words) crc_.enter(address, each);
        if (!meaning_(kind, value)) return;
        putWord_(word);
        for (u32 each : words) putWord_(each);
    }

    // False when the walk stops at what was written.
    bool meaning_(u32 kind, u32 value) {
        switch (kind) {
        case reg::kFAR:
            blockType_ = fieldOf(family_.farFields[0], value);
            if (blockType_ == family_.bramBlockType) frameColumn_ = value >> 17 & 0xFF;
            break;
        case reg::kCMD:
            ended_ = value == command::kDESYNCH || value == kREBOOT;
            break;
        case reg::kCTL:
            if (!isDump_() && family_.encryptFieldIndex >= 0 &&
                fieldOf(family_.ctlFields[family_.encryptFieldIndex], value) != 0) {
                stop_(kREFUSED);
                return false;
            }
            break;
        case reg::kCOR:
            cor_ = value;
            break;
        case reg::kBOUT:
            ++die_;
            ended_ = true;
            break;
        case reg::kLOUT:
            ended_ = true;
            break;
        default:
            break;
        }
        return true;
    }

    void crcRegister_(u32 word, u32 address, u32 value, u32 count) {
        bypass_();
        const u32 right = crc_.value();
        const bool isHalf = form_.shortWords && count == 1;
        model_.crcWords.push_back({value, right, value == (isHalf ? right & 0xFFFF : right)});
        const u32 stays = isDump_() ? value : right;
        putWord_(word);
        for (u32 n = count; n > 0; --n) {
            const u32 part = form_.shortWords ? stays >> ((n - 1) % 2 * 16) : stays;
            putWord_(part);
            if (form_.crcFedBack) crc_.enter(address, part);
        }
    }

    void burst_(u32 word, u32 address, u32 kind) {
        putWord_(word);
        u64 count = form_.shortWords ? word & 31 : word & 2047;
        if (count == 0) // else in the words behind; a 0 there is one
            for (u32 got = 0; got < 4; got += form_.wordBytes) {
                if (left_() < form_.wordBytes) return stop_(kCUT);
                const u32 part = take_(form_.wordBytes);
                putWord_(part);
                count = form_.shortWords ? count << 16 | part : part & 0x07FFFFFF;
            }
        const u64 bytes = count * form_.wordBytes;
        if (bytes > left_()) return stop_(kCUT);
        const auto from = stream_.begin() + static_cast<std::ptrdiff_t>(at_);
        Bytes data(from, from + static_cast<std::ptrdiff_t>(bytes));
        at_ += bytes;
        if (kind == reg::kFDRI) {
            ++bursts_;
            if (model_.hasMap) replace_(data);
            if (model_.status != 0) return;
        }
        for (size_t i = 0; i < data.size(); i += form_.wordBytes) {
            u32 each = 0;
            for (u32 n = 0; n < form_.wordBytes; ++n) each = each << 8 | data[i + n];
            crc_.enter(address, each);
        }
        model_.copy.insert(model_.copy.end(), data.begin(), data.end());
        if (kind == reg::kMFWR && !isDump_() && !model_.allowsMultiFrame) stop_(kREFUSED);
    }

    // The columns that a burst holds, first and one behind the last, and where the first begins.
    struct Columns {
        u32 first = 0, end = 0;
        size_t start = 0;
    };

    Columns columns_(size_t burstBytes) {
        const bool isBram = blockType_ == family_.bramBlockType;
        if ((family_.familyMask & kFIRST_GENERATION_MASK) != 0) {
            const i32 column = isBram && frameColumn_ < kCOLUMN_MAP_ENTRIES ? device_->columnMap[frameColumn_] : -1;
            return column < 0 ? Columns{} : Columns{static_cast<u32>(column), static_cast<u32>(column) + 1, 0};
        }
        const u32 perDie = die_ < std::max(device_->dieCount, 1U) ? columnsPerDie(device_) : 0;
        const Columns all{perDie * die_, perDie * (die_ + 1), 0};
        if (bursts_ > 1) return isBram ? all : Columns{};
        // A dump tells block RAM behind CLB frames only, a replacement looks for it in every first burst.
        const bool isClb = blockType_ == family_.clbBlockType;
        if (isDump_() && (!isClb || device_->bramFrameOffset == 0)) return {};
        if (isClb && device_->bramFrameOffset == 0) {
            stop_(kREFUSED);
            return {};
        }
        const size_t start = size_t{device_->bramFrameOffset} * (device_->clbFrameBits / 8);
        const size_t longest = size_t{device_->bramFrameBits / 8} * device_->memoryLocs[0].type->frameCount * perDie;
        size_t present = 0; // columns without frames take less
        for (u32 column = all.first; column < all.end; ++column) present += blockRamColumnBytes(device_, column);
        const bool fits = burstBytes > longest && start + std::min(present, longest) <= burstBytes;
        return fits ? Columns{all.first, all.end, start} : Columns{};
    }

    void replace_(Bytes& data) {
        const Columns columns = columns_(data.size());
        // The first generation's data is off the byte grid, and comes back without two pad bits.
        const bool isAlone = (family_.familyMask & kFIRST_GENERATION_MASK) != 0; // a column
        if (isAlone && model_.job == StreamModel::REPLACEMENT && columns.end != 0 && !data.empty()) data[0] &= 0x3F;
        model_.reached.resize(model_.contents.size());
        for (size_t i = 0; i < model_.contents.size(); ++i) {
            const auto& [site, images] = model_.contents[i];
            const MemoryFrames frames(device_, site);
            if (frames.column() < columns.first || frames.column() >= columns.end) continue;
            const size_t start = columns.start + (isAlone ? 0 : columnStart(device_, frames.column()));
            if (start + frames.reach() > data.size()) continue;
            Bytes changed = data;
            frames.write(changed, start, images);
            model_.differences += changed != data ? 1U : 0U;
            if (model_.job == StreamModel::REPLACEMENT) data = std::move(changed);
            ++model_.reached[i];
        }
    }

    StreamModel& model_;
    const TarselDeviceType* device_;
    const TarselFamilyType& family_;
    PacketForm form_;
    StreamCrc crc_;
    const Bytes& stream_;
    size_t at_ = 0;
    u32 lastKind_ = kNO_KIND;
    bool ended_ = false;
    u32 bursts_ = 0; // of the segment
    u32 die_ = 0;
    u32 blockType_ = 0;
    u32 frameColumn_ = 0;
    u32 cor_ = 0;
};

} // namespace

void StreamModel::walk(const Bytes& stream) {
    Walk(*this, stream).run();
}

Bytes withRightCrcs(const TarselDeviceType* device, Bytes stream) {
    StreamModel model{.device = device, .allowsMultiFrame = true};
    model.walk(stream);
    std::ranges::copy(model.copy, stream.begin());
    return stream;
}

} // namespace memdata::fuzz

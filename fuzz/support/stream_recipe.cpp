// stream_recipe.cpp - see stream_recipe.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/stream_recipe.h"

#include "DeviceTableUtils/frame_sizes.h"
#include "support/bit_frames.h"
#include "support/bit_stream.h"
#include "support/stream_model.h"

#include <algorithm>
#include <iterator>

namespace memdata::fuzz {

namespace {

using namespace memdata::testing;

constexpr size_t kPACKET_BYTES = 8;
constexpr size_t kLARGE_STREAM = 64'000;    // bytes: a burst with all columns of most small devices
constexpr size_t kLARGEST_STREAM = 140'000; // the same for those that need more
constexpr u32 kREPEATED_PACKETS = 8;
constexpr u32 kREPEATS = 16;
constexpr u32 kREGISTER_ADDRESSES = 80; // some behind the last one that any family knows
constexpr u32 kRAW_BYTES = 6;

// Small devices of each family, some of them large but for bursts of few words, a stack, and one that has no rows of
// its own. The small ones stand several times, so that most inputs are quick.
constexpr const char* kDEVICES[] = {"tq1a8", "td2a4", "tq2a4", "td3c4", "td3a4", "td6a24", "tq1e8", "td2e8", "td2e36",
    "tq2p8", "td3e4", "td3a16", "tq4a32", "tq5a4", "tq6a10", "tq7a5", "tp7a11", "tq7c118", "tq8a", "td2a4", "tq2a4",
    "td3c4", "td3a4", "tq2p360"};
static_assert(std::size(kDEVICES) == kRECIPE_DEVICES);

u16 shortAt(const u8* at) {
    return static_cast<u16>(at[0] << 8 | at[1]);
}

// Bytes that look like what stands in frames.
Bytes frameBytes(size_t count, u32 fill) {
    constexpr u8 kSIGNATURE[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0xFF, 0xFF,
        0xFF, 0xFF, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0xFF, 0xFF,
        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    if (fill <= 1) return Bytes(count, fill == 0 ? 0x00 : 0xFF);
    Bytes bytes(count);
    u32 state = fill;
    for (u8& byte : bytes) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = static_cast<u8>(state >> 24);
    }
    if (fill % 8 == 2 && count >= sizeof kSIGNATURE)
        std::ranges::copy(
            kSIGNATURE, bytes.begin() + static_cast<std::ptrdiff_t>(fill % (count - sizeof kSIGNATURE + 1)));
    return bytes;
}

class Expansion {
public:
    Expansion(const StreamRecipe& recipe, const TarselDeviceType* device)
        : recipe_(recipe), device_(device), out_(device) {
        const size_t whole = clbBytes_() + dieBytes_() + 1000;
        if (whole <= kLARGEST_STREAM) room_ = std::max(room_, whole);
    }

    Bytes make() {
        for (size_t i = 0; i < recipe_.packets.size() && !isFull_(); ++i) packet_(i);
        Bytes stream = out_.take();
        stream.insert(stream.end(), recipe_.tail.begin(), recipe_.tail.end());
        const size_t cut = shortAt(recipe_.choices + StreamRecipe::CUT_HIGH);
        stream.resize(stream.size() - std::min(cut, stream.size()));
        return stream;
    }

private:
    bool isFull_() const { return out_.bytes().size() >= room_; }

    void packet_(size_t index) {
        const PacketRecord& packet = recipe_.packets[index];
        const PacketForm& form = out_.form();
        switch (packet.kind) {
        case PacketKind::HEAD:
            out_.syncValue(form.dummy);
            if (form.syncBytes == 4) {
                out_.syncValue(0xBB);
                out_.syncValue(0x11220044);
                out_.syncValue(form.dummy);
            }
            out_.sync();
            out_.cmd(command::kRCRC);
            break;
        case PacketKind::SYNC:
            out_.sync();
            break;
        case PacketKind::NO_OPERATION:
            out_.noOperation();
            break;
        case PacketKind::PAD:
            for (u32 i = 0; i <= packet.count % 8U; ++i) out_.pad();
            break;
        case PacketKind::VALUE:
            if (packet.detail % 2 != 0) out_.syncValue(0xBB);
            out_.syncValue(packet.value);
            break;
        case PacketKind::WORD:
            out_.word(packet.value);
            break;
        case PacketKind::WRITE:
            write_(packet);
            break;
        case PacketKind::READ:
            out_.word(command_(packet.detail >= 0x80 ? 3 : 1, packet.detail, packet.count));
            break;
        case PacketKind::COMMAND:
            out_.cmd(packet.value);
            break;
        case PacketKind::FRAME_ADDRESS:
            frameAddress_(packet);
            break;
        case PacketKind::BURST:
            burst_(packet);
            break;
        case PacketKind::CRC_REGISTER:
            crcRegister_(packet);
            break;
        case PacketKind::AUTO_CRC:
            if (packet.detail == 0)
                out_.autoCrc();
            else
                out_.syncValue(out_.crc() ^ packet.value);
            break;
        case PacketKind::NEXT_DIE:
            out_.write(reg::kBOUT, packet.value);
            break;
        case PacketKind::REPEAT:
            repeat_(index);
            break;
        case PacketKind::RAW:
            raw_(packet);
            break;
        case PacketKind::TAIL:
        case PacketKind::KIND_COUNT:
            break;
        }
    }

    u32 command_(u32 operation, u32 address, u32 count) const {
        const PacketForm& form = out_.form();
        return form.shortWords ? form.command(operation, address % 64, count % 32)
                               : form.command(operation, address % kREGISTER_ADDRESSES, count % 2048);
    }

    // As many words as the packet says, and at the end of the stream perhaps fewer.
    void write_(const PacketRecord& packet) {
        const u32 count = std::min<u32>(packet.count % 32, 31);
        out_.word(command_(2, packet.detail, count));
        for (u32 i = 0; i < std::max(count, 1U); ++i) out_.word(packet.value + i);
    }

    void frameAddress_(const PacketRecord& packet) {
        u32 value = packet.value;
        if (packet.detail < 8) {
            const std::vector<u32> columns = bramFrameColumns(device_);
            const u32 column = columns[packet.count % columns.size()];
            const u32 type = packet.detail == 0   ? device_->family->clbBlockType
                             : packet.detail == 1 ? device_->family->bramBlockType
                                                  : packet.detail;
            value = type << device_->family->farFields[0].shift | column << 17;
        }
        out_.write(reg::kFAR, value, out_.wordsOf32Bits());
    }

    size_t dieBytes_() const {
        size_t bytes = 0;
        for (u32 i = 0; i < columnsPerDie(device_); ++i) bytes += blockRamColumnBytes(device_, i);
        return bytes;
    }
    size_t clbBytes_() const { return size_t{device_->bramFrameOffset} * (device_->clbFrameBits / 8); }

    size_t burstBytes_(const PacketRecord& packet) const {
        const size_t frame = device_->bramFrameBits / 8;
        const size_t column = frame * device_->memoryLocs[0].type->frameCount;
        const size_t columns = dieBytes_();
        const size_t clb = clbBytes_();
        const size_t words = size_t{packet.count} * out_.form().wordBytes;
        switch (BurstDetail(packet.detail).size) {
        case BurstDetail::WORDS:
            return words % 4096;
        case BurstDetail::FRAMES:
            return frame * (packet.count % 8U);
        case BurstDetail::COLUMN:
            return column + frame;
        case BurstDetail::COLUMNS:
            return columns;
        case BurstDetail::COLUMNS_PADDED:
            return columns + frame;
        case BurstDetail::WHOLE:
            return clb + columns + frame;
        case BurstDetail::WHOLE_CUT:
            return clb + columns + frame - std::min(words, clb + columns + frame);
        case BurstDetail::ABOUT_A_COLUMN:
            break;
        }
        return column + words % 256 - std::min<size_t>(column, 128);
    }

    void burst_(const PacketRecord& packet) {
        const BurstDetail detail(packet.detail);
        const PacketForm& form = out_.form();
        const u32 kind = detail.multiFrame ? reg::kMFWR : reg::kFDRI;
        if (!form.addressOf(kind)) return;
        size_t bytes = burstBytes_(packet) / form.wordBytes * form.wordBytes;
        if (bytes > room_ - std::min(room_, out_.bytes().size())) bytes = size_t{packet.count} % 2048 * form.wordBytes;
        const Bytes data = frameBytes(bytes, packet.value);
        if (detail.lie == BurstDetail::NONE) {
            out_.burst(kind, data, !detail.shortCount);
            return;
        }
        const u32 told = static_cast<u32>(data.size()) / form.wordBytes;
        const u32 by = packet.value % 32;
        const u32 count = detail.lie == BurstDetail::MORE   ? told + by
                          : detail.lie == BurstDetail::LESS ? told - by
                                                            : packet.value;
        if (detail.shortCount) {
            out_.word(command_(2, *form.addressOf(kind), count));
        } else {
            out_.word(command_(2, *form.addressOf(kind), 0));
            if (form.shortWords) out_.word(count >> 16);
            out_.word(count);
        }
        for (size_t at = 0; at < data.size(); at += form.wordBytes)
            out_.word(
                form.shortWords ? u32{shortAt(&data[at])} : u32{shortAt(&data[at])} << 16 | shortAt(&data[at + 2]));
    }

    void crcRegister_(const PacketRecord& packet) {
        if (packet.detail == 0 && packet.count == 0) {
            out_.crcRegister();
            return;
        }
        const u32 count = packet.count % 4;
        out_.word(command_(2, 0, count));
        for (u32 i = 0; i < std::max(count, 1U); ++i) out_.word(out_.crc() ^ packet.value);
    }

    void repeat_(size_t index) {
        const size_t count = std::min<size_t>(index, recipe_.packets[index].detail % kREPEATED_PACKETS + 1U);
        const u32 times = recipe_.packets[index].count % kREPEATS + 1U;
        for (u32 n = 0; n < times; ++n)
            for (size_t i = index - count; i < index && !isFull_(); ++i)
                if (recipe_.packets[i].kind != PacketKind::REPEAT) packet_(i);
    }

    void raw_(const PacketRecord& packet) {
        const u64 bytes = u64{packet.count} << 32 | packet.value;
        const u32 count = packet.detail % (kRAW_BYTES + 1);
        for (u32 i = 0; i < count; ++i) out_.byte(static_cast<u8>(bytes >> 8 * (kRAW_BYTES - 1 - i)));
    }

    const StreamRecipe& recipe_;
    const TarselDeviceType* device_;
    StreamWriter out_;
    size_t room_ = kLARGE_STREAM;
};

} // namespace

StreamRecipe readRecipe(std::span<const u8> input) {
    StreamRecipe recipe;
    const size_t choices = std::min<size_t>(input.size(), StreamRecipe::CHOICE_COUNT);
    std::ranges::copy(input.first(choices), recipe.choices);
    input = input.subspan(choices);
    while (input.size() >= kPACKET_BYTES) {
        const u8* at = input.data();
        const auto kind = static_cast<PacketKind>(at[0] % static_cast<u8>(PacketKind::KIND_COUNT));
        const u32 value = u32{shortAt(at + 4)} << 16 | shortAt(at + 6);
        recipe.packets.push_back({kind, at[1], shortAt(at + 2), value});
        input = input.subspan(kPACKET_BYTES);
        if (kind == PacketKind::TAIL) break;
    }
    recipe.tail.assign(input.begin(), input.end());
    return recipe;
}

Bytes writeRecipe(const StreamRecipe& recipe) {
    Bytes bytes(std::begin(recipe.choices), std::end(recipe.choices));
    for (const PacketRecord& packet : recipe.packets) {
        bytes.insert(bytes.end(), {static_cast<u8>(packet.kind), packet.detail, static_cast<u8>(packet.count >> 8),
                                      static_cast<u8>(packet.count)});
        for (u32 shift = 32; shift > 0; shift -= 8) bytes.push_back(static_cast<u8>(packet.value >> (shift - 8)));
    }
    bytes.insert(bytes.end(), recipe.tail.begin(), recipe.tail.end());
    return bytes;
}

const char* deviceNameOf(const StreamRecipe& recipe) {
    return kDEVICES[recipe.choices[StreamRecipe::DEVICE] % std::size(kDEVICES)];
}

std::vector<u32> bramFrameColumns(const TarselDeviceType* device) {
    std::vector<u32> columns;
    if (device->columnMap[0] >= -1)
        for (u32 i = 0; i < kCOLUMN_MAP_ENTRIES; ++i)
            if (device->columnMap[i] >= 0) columns.push_back(i);
    if (columns.empty()) columns.push_back(0);
    return columns;
}

Bytes streamOf(const StreamRecipe& recipe, const TarselDeviceType* device) {
    Bytes stream = Expansion(recipe, device).make();
    return recipe.has(StreamRecipe::RIGHT_CRCS) ? withRightCrcs(device, std::move(stream)) : stream;
}

} // namespace memdata::fuzz

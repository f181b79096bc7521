// stream_mutator.cpp - changes recipes of streams packet by packet.
// SPDX-License-Identifier: Apache-2.0
#include "support/stream_target.h"

#include <algorithm>
#include <cstring>
#include <random>

// libFuzzer's own changes to bytes; not there in a replay, where nothing is changed.
extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize) __attribute__((weak));

namespace memdata::fuzz {

namespace {

constexpr size_t kMOST_CHANGES = 4; // of a recipe at a time
constexpr size_t kTAIL_ROOM = 64;   // bytes that a tail may grow by

class Mutation {
public:
    Mutation(StreamRecipe& recipe, unsigned seed) : recipe_(recipe), packets_(recipe.packets), random_(seed) {}

    void change() {
        for (size_t n = below_(kMOST_CHANGES) + 1; n > 0; --n) changeOnce_();
    }

private:
    size_t below_(size_t limit) { return limit == 0 ? 0 : random_() % limit; }
    std::ptrdiff_t place_() { return static_cast<std::ptrdiff_t>(below_(packets_.size() + 1)); }

    void changeOnce_() {
        if (packets_.empty()) return insertStream_();
        switch (below_(16)) {
        case 0:
            return insertStream_();
        case 1:
        case 2:
            packets_.insert(packets_.begin() + place_(), anyPacket_());
            return;
        case 3:
            return insertBurst_(place_());
        case 4:
        case 5: {
            const size_t first = below_(packets_.size());
            const size_t count = std::min(packets_.size() - first, below_(3) + 1);
            const auto from = packets_.begin() + static_cast<std::ptrdiff_t>(first);
            packets_.erase(from, from + static_cast<std::ptrdiff_t>(count));
            return;
        }
        case 6: {
            const size_t first = below_(packets_.size());
            const size_t count = std::min(packets_.size() - first, below_(8) + 1);
            const auto from = packets_.begin() + static_cast<std::ptrdiff_t>(first);
            const std::vector<PacketRecord> run(from, from + static_cast<std::ptrdiff_t>(count));
            packets_.insert(packets_.begin() + place_(), run.begin(), run.end());
            return;
        }
        case 7:
            std::swap(any_(), any_());
            return;
        case 8:
            any_().detail = static_cast<u8>(random_() >> 7);
            return;
        case 9:
            any_().count = interestingCount_();
            return;
        case 10: {
            PacketRecord& packet = any_();
            packet.count = static_cast<u16>(packet.count + below_(7) - 3);
            return;
        }
        case 11:
            any_().value = interestingValue_();
            return;
        case 12:
            any_().value ^= 1U << below_(32);
            return;
        case 13:
            return changeChoice_();
        case 14:
            return changeTail_();
        default:
            return changeBytes_();
        }
    }

    PacketRecord& any_() { return packets_[below_(packets_.size())]; }

    u16 interestingCount_() {
        constexpr u16 kCOUNTS[] = {0, 1, 2, 3, 7, 15, 31, 32, 33, 63, 64, 65, 255, 256, 2047, 2048, 0x7FFF, 0xFFFF};
        return below_(2) == 0 ? kCOUNTS[below_(std::size(kCOUNTS))] : static_cast<u16>(random_() % 4096);
    }
    u32 interestingValue_() {
        constexpr u32 kVALUES[] = {0, 1, 2, 4, 5, 7, 13, 14, 15, 0x40, 0xBB, 0x2000, 0x4000, 0x10000000, 0x20000000,
            0x40000000, 0x4FFFFFFF, 0x07FFFFFF, 0x7FFFFFFF, 0x80000000, 0xAA995566, 0xAA99AA99, 0xFFFFFFFF};
        return below_(4) != 0 ? kVALUES[below_(std::size(kVALUES))] : static_cast<u32>(random_());
    }
    PacketRecord anyPacket_() {
        const auto kind = static_cast<PacketKind>(below_(static_cast<size_t>(PacketKind::TAIL)));
        return {
            kind, static_cast<u8>(below_(2) == 0 ? below_(8) : random_()), interestingCount_(), interestingValue_()};
    }

    // The packets with which a column of block RAM is written.
    std::vector<PacketRecord> burst_() {
        const u8 size = static_cast<u8>(below_(8) << 2);
        const u8 blockType = below_(4) == 0 ? static_cast<u8>(0) : static_cast<u8>(1);
        const u16 column = static_cast<u16>(below_(4));
        std::vector<PacketRecord> packets{{PacketKind::FRAME_ADDRESS, blockType, column, 0},
            {PacketKind::COMMAND, 0, 0, 1},
            {PacketKind::BURST, size, static_cast<u16>(below_(64)), static_cast<u32>(random_())}};
        if (below_(2) == 0) packets.push_back({PacketKind::AUTO_CRC, 0, 0, 0});
        if (below_(2) == 0) packets.push_back({PacketKind::NO_OPERATION, 0, 0, 0});
        return packets;
    }
    void insertBurst_(std::ptrdiff_t at) {
        const std::vector<PacketRecord> burst = burst_();
        packets_.insert(packets_.begin() + at, burst.begin(), burst.end());
    }
    // A segment from its sync word to its end.
    void insertStream_() {
        std::vector<PacketRecord> all{{PacketKind::HEAD, 0, 0, 0}};
        for (size_t n = below_(3) + 1; n > 0; --n) {
            const std::vector<PacketRecord> burst = burst_();
            all.insert(all.end(), burst.begin(), burst.end());
        }
        all.push_back({PacketKind::CRC_REGISTER, 0, 0, 0});
        all.push_back(
            below_(4) == 0 ? PacketRecord{PacketKind::NEXT_DIE, 0, 0, 0} : PacketRecord{PacketKind::COMMAND, 0, 0, 13});
        packets_.insert(packets_.begin() + place_(), all.begin(), all.end());
    }

    void changeChoice_() {
        u8* choices = recipe_.choices;
        switch (below_(8)) {
        case 0:
        case 1:
            choices[StreamRecipe::DEVICE] = static_cast<u8>(below_(kRECIPE_DEVICES));
            break;
        case 2:
            choices[StreamRecipe::FORM] ^= static_cast<u8>(1 << below_(5));
            break;
        case 3:
            choices[StreamRecipe::LANES] = static_cast<u8>(below_(8));
            break;
        case 4:
            choices[StreamRecipe::DUMP_FLAGS] ^= static_cast<u8>(1 << below_(8));
            break;
        case 5:
            choices[StreamRecipe::CUT_HIGH] = 0;
            choices[StreamRecipe::CUT_LOW] = static_cast<u8>(below_(2) == 0 ? 0 : below_(64));
            break;
        default:
            choices[below_(StreamRecipe::CHOICE_COUNT)] = static_cast<u8>(random_());
            break;
        }
    }

    // Bytes as libFuzzer would change them.
    void changeRun_(uint8_t* bytes, size_t* size, size_t room) {
        if (LLVMFuzzerMutate != nullptr) *size = LLVMFuzzerMutate(bytes, *size, room);
    }
    void changeTail_() {
        if (packets_.back().kind != PacketKind::TAIL) packets_.push_back({PacketKind::TAIL, 0, 0, 0});
        size_t size = recipe_.tail.size();
        recipe_.tail.resize(size + kTAIL_ROOM);
        changeRun_(recipe_.tail.data(), &size, recipe_.tail.size());
        recipe_.tail.resize(size);
    }
    void changeBytes_() {
        StreamRecipe alone;
        alone.packets.push_back(any_());
        Bytes bytes = writeRecipe(alone);
        size_t size = bytes.size() - StreamRecipe::CHOICE_COUNT;
        changeRun_(bytes.data() + StreamRecipe::CHOICE_COUNT, &size, size);
        alone = readRecipe(bytes);
        any_() = alone.packets.front();
    }

    StreamRecipe& recipe_;
    std::vector<PacketRecord>& packets_;
    std::minstd_rand random_;
};

size_t store(const StreamRecipe& recipe, uint8_t* out, size_t maxSize) {
    const Bytes bytes = writeRecipe(recipe);
    const size_t size = std::min(bytes.size(), maxSize);
    std::copy_n(bytes.begin(), size, out);
    return size;
}

} // namespace

size_t mutateStream(uint8_t* data, size_t size, size_t maxSize, unsigned seed) {
    StreamRecipe recipe = readRecipe({data, size});
    Mutation(recipe, seed).change();
    return store(recipe, data, maxSize);
}

size_t crossStreams(const uint8_t* one, size_t oneSize, const uint8_t* other, size_t otherSize, uint8_t* out,
    size_t maxSize, unsigned seed) {
    std::minstd_rand random(seed);
    StreamRecipe recipe = readRecipe({one, oneSize});
    const StreamRecipe second = readRecipe({other, otherSize});
    recipe.packets.resize(random() % (recipe.packets.size() + 1));
    const auto from = second.packets.begin() + static_cast<std::ptrdiff_t>(random() % (second.packets.size() + 1));
    recipe.packets.insert(recipe.packets.end(), from, second.packets.end());
    recipe.tail = second.tail;
    return store(recipe, out, maxSize);
}

} // namespace memdata::fuzz

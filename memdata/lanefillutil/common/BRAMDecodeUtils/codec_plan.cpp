// codec_plan.cpp - the fast form of the frame codec: many rows of a decode table at once.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/codec_plan.h"

#include "BRAMDecodeUtils/frame_codec.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <span>
#include <tuple>

namespace memdata {

namespace {

constexpr u64 kWORD_BITS = 64;
constexpr u64 kBATCH_ROWS = 64;
constexpr u64 kMAX_WINDOW_WORDS = 16; // data and parity of a row together
constexpr u64 kMAX_SLICE_WORDS = 5;

// The columns of up to 64 rows: before a transposition a word a row, behind it a word a bit.
using Block = std::array<u64, kBATCH_ROWS>;

u64 bytesOfWord(const CodecWindow& window, u64 word) {
    return std::min<u64>(8, window.bytes - word * 8);
}

// The first byte becomes the most significant one; bytes that are not there are zero.
u64 loadWord(const u8* from, u64 bytes) {
    u64 word = 0;
    std::memcpy(&word, from, bytes);
    return __builtin_bswap64(word);
}

void storeWord(u8* to, u64 bytes, u64 word) {
    word = __builtin_bswap64(word);
    std::memcpy(to, &word, bytes);
}

void loadWindow(std::span<Block> blocks, u64 row, const CodecWindow& window, const u8* from) {
    for (u64 word = 0; word < blocks.size(); ++word)
        blocks[word][row] = loadWord(from + word * 8, bytesOfWord(window, word));
}

// The bits of the window's mask, among whatever stands around them.
void mergeWindow(std::span<const Block> blocks, u64 row, const CodecWindow& window, u8* to) {
    for (u64 word = 0; word < blocks.size(); ++word) {
        const u64 bytes = bytesOfWord(window, word);
        u8* at = to + word * 8;
        storeWord(at, bytes, (loadWord(at, bytes) & ~window.mask[word]) | (blocks[word][row] & window.mask[word]));
    }
}

void transposeAll(std::span<Block> blocks) {
    for (Block& block : blocks) transpose(block);
}

u64& bitColumn(std::span<Block> blocks, u64 bit) {
    return blocks[bit / kWORD_BITS][bit % kWORD_BITS];
}

void takeBit(CodecWindow& window, u64 bit) {
    window.bytes = std::max(window.bytes, bit / 8 + 1);
    window.mask.resize(std::max<u64>(window.mask.size(), bit / kWORD_BITS + 1));
    window.mask[bit / kWORD_BITS] |= u64{1} << (kWORD_BITS - 1 - bit % kWORD_BITS);
}

// The least bit of an image that a row uses, rounded down to a byte.
u64 firstByte(const std::vector<BitPlace>& places, BitPlace::Image image) {
    u64 least = ~u64{0};
    for (const BitPlace& place : places)
        if (place.image == image) least = std::min(least, place.bit);
    return least == ~u64{0} ? 0 : least / 8;
}

// The moves and masks of rows whose bits lie like this.
CodecGroup groupOf(const std::vector<BitPlace>& places) {
    CodecGroup group;
    for (u32 bit = 0; bit < places.size(); ++bit) {
        if (places[bit].image == BitPlace::NONE) continue;
        takeBit(group.slice, bit);
        takeBit(places[bit].image == BitPlace::DATA ? group.data : group.parity, places[bit].bit);
    }
    for (u32 bit = 0; bit < places.size(); ++bit) {
        if (places[bit].image == BitPlace::NONE) continue;
        const u64 base = places[bit].image == BitPlace::DATA ? 0 : group.data.mask.size() * kWORD_BITS;
        group.moves.push_back({bit, static_cast<u32>(base + places[bit].bit)});
    }
    return group;
}

} // namespace

// Exchanges ever smaller quarters: the upper right with the lower left one of each square. Compiled for wider registers
// too, which the processor takes where it has them.
#if defined(__x86_64__) && !defined(__clang__)
[[gnu::target_clones("avx2", "default"), gnu::optimize("O3")]]
#endif
void transpose(std::array<u64, 64>& a) {
    u64 right = 0xFFFFFFFF; // columns of the right halves of the squares
    for (u32 half = 32; half != 0; half /= 2, right ^= right << half)
        for (u32 square = 0; square < 64; square += 2 * half)
            for (u32 i = square; i < square + half; ++i) {
                const u64 differ = (a[i] ^ a[i + half] >> half) & right;
                a[i] ^= differ;
                a[i + half] ^= differ << half;
            }
}

CodecPlan::CodecPlan(
    const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table, u64 laneWidth) {
    std::vector<std::vector<BitPlace>> shapes; // of the groups: places from the row's own windows on
    std::vector<u64> lastRows;
    for (u64 row = 0; row < type->frameCount; ++row) {
        std::vector<BitPlace> places;
        for (u64 bit = 0; bit < type->frameSliceBits; ++bit)
            places.push_back(placeOfEntry(device, type, table, laneWidth, row, bit));
        const u64 dataByte = firstByte(places, BitPlace::DATA);
        const u64 parityByte = firstByte(places, BitPlace::PARITY);
        for (BitPlace& place : places) {
            if (place.image == BitPlace::DATA) place.bit -= dataByte * 8;
            if (place.image == BitPlace::PARITY) place.bit -= parityByte * 8;
        }
        const auto index = static_cast<size_t>(std::ranges::find(shapes, places) - shapes.begin());
        if (index == shapes.size()) {
            groups_.push_back(groupOf(places));
            lastRows.push_back(row);
            shapes.push_back(std::move(places));
        }
        groups_[index].rows.push_back({table[row].frame, static_cast<u32>(dataByte), static_cast<u32>(parityByte)});
        lastRows[index] = row;
    }
    // Where two rows place the same image bit the later one decides: the group that ends first goes first.
    std::vector<CodecGroup> sorted;
    while (sorted.size() < groups_.size()) {
        const auto first = std::ranges::min_element(lastRows);
        sorted.push_back(std::move(groups_[static_cast<size_t>(first - lastRows.begin())]));
        *first = type->frameCount;
    }
    groups_ = std::move(sorted);
}

bool CodecPlan::fits() const {
    return std::ranges::all_of(groups_, [](const CodecGroup& group) {
        return group.data.mask.size() + group.parity.mask.size() <= kMAX_WINDOW_WORDS &&
               group.slice.mask.size() <= kMAX_SLICE_WORDS;
    });
}

void CodecPlan::decode(const TarselDeviceType* device, const u8* frames, u8* data, u8* parity) const {
    std::array<Block, kMAX_SLICE_WORDS> sliceBlocks{}; // the last batch need not fill it
    std::array<Block, kMAX_WINDOW_WORDS> windowBlocks;
    for (const CodecGroup& group : groups_) {
        const auto slice = std::span(sliceBlocks).first(group.slice.mask.size());
        const auto window = std::span(windowBlocks).first(group.data.mask.size() + group.parity.mask.size());
        for (std::span rows(group.rows); !rows.empty(); rows = rows.subspan(std::min(rows.size(), kBATCH_ROWS))) {
            const auto batch = rows.first(std::min(rows.size(), kBATCH_ROWS));
            std::ranges::fill(window, Block{});
            for (u64 i = 0; i < batch.size(); ++i)
                loadWindow(slice, i, group.slice, frames + u64{batch[i].frame} * (device->bramFrameBits / 8));
            transposeAll(slice);
            for (const CodecGroup::Move& move : group.moves)
                bitColumn(window, move.windowBit) = bitColumn(slice, move.sliceBit);
            transposeAll(window);
            for (u64 i = 0; i < batch.size(); ++i) {
                mergeWindow(window.first(group.data.mask.size()), i, group.data, data + batch[i].dataByte);
                mergeWindow(window.subspan(group.data.mask.size()), i, group.parity, parity + batch[i].parityByte);
            }
        }
    }
}

void CodecPlan::encode(const TarselDeviceType* device, u8* frames, const u8* data, const u8* parity) const {
    std::array<Block, kMAX_SLICE_WORDS> sliceBlocks;
    std::array<Block, kMAX_WINDOW_WORDS> windowBlocks{}; // the last batch need not fill it
    for (const CodecGroup& group : groups_) {
        const auto slice = std::span(sliceBlocks).first(group.slice.mask.size());
        const auto window = std::span(windowBlocks).first(group.data.mask.size() + group.parity.mask.size());
        for (std::span rows(group.rows); !rows.empty(); rows = rows.subspan(std::min(rows.size(), kBATCH_ROWS))) {
            const auto batch = rows.first(std::min(rows.size(), kBATCH_ROWS));
            std::ranges::fill(slice, Block{});
            for (u64 i = 0; i < batch.size(); ++i) {
                loadWindow(window.first(group.data.mask.size()), i, group.data, data + batch[i].dataByte);
                loadWindow(window.subspan(group.data.mask.size()), i, group.parity, parity + batch[i].parityByte);
            }
            transposeAll(window);
            for (const CodecGroup::Move& move : group.moves)
                bitColumn(slice, move.sliceBit) = bitColumn(window, move.windowBit);
            transposeAll(slice);
            for (u64 i = 0; i < batch.size(); ++i)
                mergeWindow(slice, i, group.slice, frames + u64{batch[i].frame} * (device->bramFrameBits / 8));
        }
    }
}

const CodecPlan* codecPlan(
    const TarselDeviceType* device, const MEMORYType* type, const TranslationTableType* table, u64 laneWidth) {
    // What the places depend on. The plans are constants of the tables: they stay.
    using Key = std::tuple<const MEMORYType*, const TranslationTableType*, u64, u64>;
    static std::map<Key, std::unique_ptr<CodecPlan>> plans;
    const u64 order = AdjustBitIndexes(device, laneWidth, 0) == 0 ? 0 : laneWidth;
    const Key key{type, table, device->family->familyMask, order};
    try {
        const auto found = plans.find(key);
        if (found != plans.end()) return found->second.get();
        auto plan = std::make_unique<CodecPlan>(device, type, table, laneWidth);
        if (!plan->fits()) plan.reset(); // no table of ours
        return plans.emplace(key, std::move(plan)).first->second.get();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace memdata

// codec_plan.cpp - the fast form of the frame codec: many rows of a decode table at once.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/codec_plan.h"

#include "BRAMDecodeUtils/bit_transpose.h"
#include "BRAMDecodeUtils/frame_codec.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <span>
#include <tuple>
#include <type_traits>

namespace memdata {

namespace {

constexpr u64 kWORD_BITS = 64;
constexpr u64 kBATCH_ROWS = 128;
constexpr u64 kMAX_WINDOW_WORDS = 16; // data and parity of a row together
constexpr u64 kMAX_SLICE_WORDS = 6;

// The blocks of a batch of rows.
template<u64 maxWords>
struct Batch {
    std::array<u64, maxWords / 2 * kBLOCK_WORDS> words;
    u64 used;

    explicit Batch(u64 wordsOfRow) : used((wordsOfRow + 1) / 2 * kBLOCK_WORDS) { std::fill_n(words.data(), used, 0); }
    std::span<u64> blocks() { return std::span(words).first(used); }
};

// From a row's word 0 to its word w.
constexpr u64 stepTo(u64 word) {
    return word / 2 * kBLOCK_WORDS + word % 2 * 2;
}

// Where the rows' bit b of a window stands, b counted from the most significant bit of the window's first byte.
constexpr u32 placeOfBit(u64 bit) {
    return static_cast<u32>(stepTo(bit / kWORD_BITS) + (bit % kWORD_BITS ^ 7) * 4);
}

u64 merged(u64 old, u64 word, u64 mask) {
    return old ^ ((old ^ word) & mask);
}

// Visits the words of a window in each row of a batch with visit(word, at, byteCount, mask). firstWord is the first; at is
// where the word's bytes stand, by startOf(row). The number of its bytes comes as a constant for all words but odd ends.
template<u64 maxWords>
[[gnu::always_inline]] inline void visitWords(Batch<maxWords>& batch, u64 firstWord, const CodecWindow& window,
    std::span<const CodecGroup::Row> rows, auto startOf, auto visit) {
    const auto visitWord = [&](u64 word, auto byteCount) {
        const u64 mask = window.mask[word];
        for (u64 first = 0; first < rows.size(); first += 64) {
            u64* const column = &batch.words[stepTo(firstWord + word) + first / 64];
            const auto half = rows.subspan(first, std::min<u64>(64, rows.size() - first));
            for (u64 i = 0; i < half.size(); ++i) visit(column[i * 4], startOf(half[i]) + word * 8, byteCount, mask);
        }
    };
    const u64 whole = window.bytes / 8;
    for (u64 word = 0; word < whole; ++word) visitWord(word, std::integral_constant<u64, 8>());
    if (window.bytes % 8 == 4)
        visitWord(whole, std::integral_constant<u64, 4>());
    else if (window.bytes % 8 != 0)
        visitWord(whole, window.bytes % 8);
}

template<u64 maxWords>
void loadWindows(Batch<maxWords>& batch, u64 firstWord, const CodecWindow& window,
    std::span<const CodecGroup::Row> rows, auto startOf) {
    visitWords(batch, firstWord, window, rows, startOf,
        [](u64& word, const u8* at, u64 byteCount, u64) { std::memcpy(&word, at, byteCount); });
}

// The bits of the window's mask, among whatever stands around them.
template<u64 maxWords>
void mergeWindows(Batch<maxWords>& batch, u64 firstWord, const CodecWindow& window,
    std::span<const CodecGroup::Row> rows, auto startOf) {
    visitWords(batch, firstWord, window, rows, startOf, [](u64 word, u8* at, u64 byteCount, u64 mask) {
        u64 old = 0;
        std::memcpy(&old, at, byteCount);
        old = merged(old, word, mask);
        std::memcpy(at, &old, byteCount);
    });
}

void takeBit(CodecWindow& window, u64 bit) {
    window.bytes = std::max(window.bytes, bit / 8 + 1);
    window.mask.resize(std::max<u64>(window.mask.size(), bit / kWORD_BITS + 1));
    window.mask[bit / kWORD_BITS] |= u64{1} << (bit % kWORD_BITS ^ 7);
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
        group.moves.push_back({placeOfBit(bit), placeOfBit(base + places[bit].bit)});
    }
    return group;
}

} // namespace

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
        return group.windowWords() <= kMAX_WINDOW_WORDS && group.slice.mask.size() <= kMAX_SLICE_WORDS;
    });
}

void CodecPlan::decode(const TarselDeviceType* device, const u8* frames, u8* data, u8* parity) const {
    const u64 frameBytes = device->bramFrameBits / 8;
    for (const CodecGroup& group : groups_) {
        Batch<kMAX_SLICE_WORDS> slice(group.slice.mask.size());
        Batch<kMAX_WINDOW_WORDS> window(group.windowWords());
        for (u64 first = 0; first < group.rows.size(); first += kBATCH_ROWS) {
            const auto rows = std::span(group.rows).subspan(first, std::min(kBATCH_ROWS, group.rows.size() - first));
            loadWindows(slice, 0, group.slice, rows, [=](auto& row) { return frames + row.frame * frameBytes; });
            transpose(slice.blocks());
            for (const CodecGroup::Move& move : group.moves)
                std::copy_n(&slice.words[move.slice], 2, &window.words[move.window]);
            transpose(window.blocks());
            mergeWindows(window, 0, group.data, rows, [=](auto& row) { return data + row.dataByte; });
            mergeWindows(
                window, group.data.mask.size(), group.parity, rows, [=](auto& row) { return parity + row.parityByte; });
        }
    }
}

void CodecPlan::encode(const TarselDeviceType* device, u8* frames, const u8* data, const u8* parity) const {
    const u64 frameBytes = device->bramFrameBits / 8;
    for (const CodecGroup& group : groups_) {
        Batch<kMAX_SLICE_WORDS> slice(group.slice.mask.size());
        Batch<kMAX_WINDOW_WORDS> window(group.windowWords());
        for (u64 first = 0; first < group.rows.size(); first += kBATCH_ROWS) {
            const auto rows = std::span(group.rows).subspan(first, std::min(kBATCH_ROWS, group.rows.size() - first));
            loadWindows(window, 0, group.data, rows, [=](auto& row) { return data + row.dataByte; });
            loadWindows(
                window, group.data.mask.size(), group.parity, rows, [=](auto& row) { return parity + row.parityByte; });
            transpose(window.blocks());
            for (const CodecGroup::Move& move : group.moves)
                std::copy_n(&window.words[move.window], 2, &slice.words[move.slice]);
            transpose(slice.blocks());
            mergeWindows(slice, 0, group.slice, rows, [=](auto& row) { return frames + row.frame * frameBytes; });
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
